#include "HSVNDirectory.h"
#include "HSVNLocalPath.h"
#include "HSVNURL.h"
#include "Internal/CheckOut.h"
#include "Internal/OperationNotifications.h"

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
        HSVNCheckOut(operation, url->string(), path->string(), *options->revision(), options->choices());
        return directoryAtPath(path, HSVNRevisionSpec::BASE(), context);
    });
}
