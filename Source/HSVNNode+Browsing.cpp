#include "HSVNContext.h"
#include "HSVNNode.h"
#include "HSVNURL.h"
#include "Internal/Browsing.h"
#include "Internal/Operation.h"

namespace {

svn_error_t* HSVNGetNodeKindFunc(void* baton, const char*, const svn_info_t* info, apr_pool_t*)
{
    *static_cast<HSVNNodeKind*>(baton) = static_cast<HSVNNodeKind>(info->kind);
    return SVN_NO_ERROR;
}

struct URLReceiver
{
    HSVNContext& context;
    HSVNURLRef url = nullptr;
};

svn_error_t* HSVNGetURLFunc(void* baton, const char*, const svn_info_t* info, apr_pool_t*)
{
    auto& receiver = *static_cast<URLReceiver*>(baton);
    return HSVNGuardCallback(receiver.context, [&]() -> svn_error_t* {
        if (info->URL) {
            receiver.url = HSVNURL::URLWithString(info->URL);
        }
        return SVN_NO_ERROR;
    });
}

} // namespace

HSVNURLRef HSVNURLForListing(const HSVNPathRef& path, const HSVNContextRef& context)
{
    auto url = std::dynamic_pointer_cast<const HSVNURL>(path);
    return url ? url : HSVNNode::URLForNodeAtPath(path, context);
}

HSVNNodeKind HSVNNode::kindOfNodeAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                        const HSVNContextRef& context)
{
    HSVNOperation operation{context,
                            "HSVNNode",
                            "kindOfNodeAtPath:revision:withContext:",
                            {{"path", path}, {"revision", revision}, {"context", context}}};
    const HSVNRevisionRecords revisions{*revision};
    auto kind = HSVNNodeKindUnknown;
    operation.check(operation->client_info(operation.cString(path->string()), &revisions.peg, &revisions.operative,
                                           HSVNGetNodeKindFunc, &kind, false, operation.ctx(), operation.pool()));
    return kind;
}

bool HSVNNode::isDirectoryAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                 const HSVNContextRef& context)
{
    return kindOfNodeAtPath(path, revision, context) == HSVNNodeKindDirectory;
}

HSVNURLRef HSVNNode::URLForNodeAtPath(const HSVNPathRef& path, const HSVNContextRef& context)
{
    HSVNOperation operation{
        context, "HSVNNode", "URLForNodeAtPath:withContext:", {{"path", path}, {"context", context}}};
    const HSVNRevisionRecords unspecified{*HSVNRevisionSpec::UNSPECIFIED()};
    URLReceiver receiver{*context};
    operation.check(operation->client_info(operation.cString(path->string()), &unspecified.peg, &unspecified.operative,
                                           HSVNGetURLFunc, &receiver, false, operation.ctx(), operation.pool()));
    return receiver.url;
}
