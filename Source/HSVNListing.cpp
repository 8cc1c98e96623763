#include "HSVNListing.h"

#include "HSVNLock.h"
#include "HSVNStringPaths.h"
#include "Internal/Browsing.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Text.h"

#include <algorithm>
#include <iterator>

namespace {

struct ListingCall
{
    HSVNContext& context;
    const HSVNListingReceiver& receiver;
};

svn_error_t* receiveItem(void* baton, const char* path, const svn_dirent_t* dirent, const svn_lock_t* lock,
                         const char* absolutePath, const char* externalParentURL, const char* externalTarget,
                         apr_pool_t*)
{
    const auto& call = *static_cast<ListingCall*>(baton);
    return HSVNGuardCallback(call.context, [&]() -> svn_error_t* {
        call.receiver({path, absolutePath, static_cast<HSVNNodeKind>(dirent->kind), dirent->size,
                       dirent->has_props != 0, HSVNRevisionNumberFromSubversion(dirent->created_rev),
                       HSVNDateOrNil(dirent->time), HSVNTextOrNil(dirent->last_author),
                       HSVNLock::lockWithSVNLock(lock, absolutePath), HSVNTextOrNil(externalParentURL),
                       HSVNTextOrNil(externalTarget)});
        return nullptr;
    });
}

} // namespace

void HSVNListItems(const std::string& target, const HSVNRevisionSpecRef& revision, const HSVNListingOptions& options,
                   const HSVNListingReceiver& receiver, const HSVNContextRef& context)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNListing",
                            "listItems:revision:withOptions:receiver:withContext:",
                            {{"target", target}, {"revision", revision}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_list);
    const HSVNRevisionRecords revisions{*revision};
    ListingCall call{*context, receiver};
    std::vector<std::string> patterns;
    std::transform(options.patterns.begin(), options.patterns.end(), std::back_inserter(patterns),
                   HSVNString::stringForSearching);
    operation.check(function(operation.cString(target), &revisions.peg, &revisions.operative,
                             HSVNFilterArray(operation, patterns), HSVNDepthForSubversion(options.depth),
                             options.allFields ? SVN_DIRENT_ALL : SVN_DIRENT_KIND, options.fetchLocks,
                             options.includeExternals, receiveItem, &call, operation.ctx(), operation.pool()));
}
