#include "HSVNCheckOutOptions.h"
#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "HSVNURL.h"
#include "Internal/DepthTranslation.h"
#include "Internal/Operation.h"
#include "Internal/OperationNotifications.h"

namespace {

/// Refuses a depth that Subversion 1.4 cannot express: an exception of the library's class under the platform's name.
class IncompatibleDepthException : public HSVNException
{
  public:
    IncompatibleDepthException()
        : HSVNException("NSInvalidArgumentException",
                        "Incompatible depth argument for 1.4 (HSVNDepthInfinity and HSVNDepthFiles supported)",
                        {{HSVNExceptionStatusKey, std::int64_t{HSVNExceptionGeneralStatus}}})
    {
    }
};

svn_boolean_t recurseForDepth(HSVNDepth depth)
{
    if (depth != HSVNDepthInfinity && depth != HSVNDepthFiles) {
        throw HSVNException{IncompatibleDepthException{}};
    }
    return depth == HSVNDepthInfinity;
}

void checkOut(HSVNOperation& operation, const HSVNURL& url, const HSVNPath& path, const HSVNCheckOutOptions& options)
{
    const svn_opt_revision_t revision = options.revision()->operativeRevision()->SVNRevision();
    const svn_opt_revision_t pegRevision = options.revision()->pegRevision()->SVNRevision();
    const char* source = operation.cString(url.string());
    const char* target = operation.changed(path.string());
    const svn_boolean_t ignoreExternals = !options.processExternals();
    svn_revnum_t result = SVN_INVALID_REVNUM;
    if (operation.isAtLeast(HSVNVersion::version1_5())) {
        operation.check(operation->client_checkout3(
            &result, source, target, &pegRevision, &revision, HSVNDepthForSubversion(options.depth()), ignoreExternals,
            options.allowUnversionedObstructions(), operation.ctx(), operation.pool()));
    } else {
        operation.check(operation->client_checkout2(&result, source, target, &pegRevision, &revision,
                                                    recurseForDepth(options.depth()), ignoreExternals, operation.ctx(),
                                                    operation.pool()));
    }
}

} // namespace

HSVNDirectoryRef HSVNDirectory::checkoutDirectoryAtURL(const HSVNURLRef& url, const HSVNPathRef& path,
                                                       const std::shared_ptr<const HSVNCheckOutOptions>& options,
                                                       const HSVNContextRef& context)
{
    HSVNAssertParameter(url != nullptr, "url != nil");
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(options != nullptr, "options != nil");
    HSVNAssertParameter(options->depth() != HSVNDepthUnknown, "[options depth] != HSVNDepthUnknown");
    HSVNAssertParameter(options->depth() != HSVNDepthExclude, "[options depth] != HSVNDepthExclude");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNDirectory",
                            "checkoutDirectoryAtURL:intoDirectoryAtPath:withOptions:withContext:",
                            {{"url", url}, {"path", path}, {"options", options}, {"context", context}}};
    HSVNOperationNotifications notifications{
        {HSVNNotifyActionCheckOutStarted, HSVNNotifyActionCheckOutSucceeded, HSVNNotifyActionCheckOutFailed},
        *path,
        url};
    return notifications.run(*context, [&] {
        checkOut(operation, *url, *path, *options);
        return directoryAtPath(path, HSVNRevisionSpec::BASE(), context);
    });
}
