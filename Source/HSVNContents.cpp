#include "HSVNContents.h"

#include "HSVNBrowsingPrivate.h"
#include "HSVNExtensionCallPrivate.h"

namespace {

struct ContentsCall
{
    HSVNContext& context;
    const HSVNContentsReceiver& receiver;
};

svn_error_t* receiveBytes(void* baton, const char* bytes, apr_size_t* length)
{
    const auto& call = *static_cast<ContentsCall*>(baton);
    return HSVNGuardCallback(call.context, [&]() -> svn_error_t* {
        call.receiver({bytes, *length});
        return nullptr;
    });
}

} // namespace

void HSVNReadContents(const std::string& target, const HSVNRevisionSpecRef& revision, bool expandKeywords,
                      const HSVNContentsReceiver& receiver, const HSVNContextRef& context)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNContents",
                            "readContents:revision:expandKeywords:receiver:withContext:",
                            {{"target", target}, {"revision", revision}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_cat);
    const HSVNRevisionRecords revisions{*revision};
    ContentsCall call{*context, receiver};
    svn_stream_t* const stream = operation->stream_create(&call, operation.pool());
    operation->stream_set_write(stream, receiveBytes);
    operation.check(function(stream, operation.cString(target), &revisions.peg, &revisions.operative, expandKeywords,
                             operation.ctx(), operation.pool()));
}
