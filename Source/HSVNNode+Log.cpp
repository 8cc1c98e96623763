#include "HSVNLogOptions.h"
#include "HSVNNode.h"
#include "HSVNRevision.h"
#include "Internal/ExtensionCall.h"
#include "Internal/LogReceiver.h"
#include "Internal/Operation.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Text.h"

namespace {

HSVNLogPathChangeRef makeChange(HSVNSharedText path, const svn_log_changed_path_t& change, HSVNTextCache& paths)
{
    return std::make_shared<HSVNLogPathChange>(std::move(path), HSVNLogActionFromChar(change.action),
                                               paths.sharedText(change.copyfrom_path),
                                               HSVNRevisionNumberFromSubversion(change.copyfrom_rev));
}

// Allocates nothing in the pool but the iterator.
void addChanges(HSVNLogItem& item, apr_hash_t* changedPaths, HSVNTextCache& paths, apr_pool_t* pool)
{
    const auto& entryPoints = HSVNCurrentEntryPoints();
    for (auto* index = entryPoints.apr_hash_first(pool, changedPaths); index; index = entryPoints.apr_hash_next(index))
    {
        const void* path = nullptr;
        void* change = nullptr;
        entryPoints.apr_hash_this(index, &path, nullptr, &change);
        item.addChange(makeChange(paths.sharedText(static_cast<const char*>(path)),
                                  *static_cast<const svn_log_changed_path_t*>(change), paths));
    }
}

} // namespace

HSVNLogItemRef HSVNCreateLogItem(apr_hash_t* changedPaths, svn_revnum_t revision, const char* author, const char* date,
                                 const char* message, HSVNTextCache& paths, apr_pool_t* pool)
{
    auto item = std::make_shared<HSVNLogItem>(HSVNTextOrNil(message), HSVNRevisionNumberFromSubversion(revision),
                                              HSVNDate::dateWithISO8601CString(date, pool), HSVNTextOrNil(author));
    if (changedPaths) {
        addChanges(*item, changedPaths, paths, pool);
    }
    return item;
}

svn_error_t* HSVNLogReceiver::receive(void* baton, apr_hash_t* changedPaths, svn_revnum_t revision, const char* author,
                                      const char* date, const char* message, apr_pool_t* pool)
{
    auto& receiver = *static_cast<HSVNLogReceiver*>(baton);
    return HSVNGuardCallback(receiver.context, [&]() -> svn_error_t* {
        auto item = HSVNCreateLogItem(changedPaths, revision, author, date, message, receiver.paths, pool);
        if (receiver.delegate && !receiver.delegate->logItemReceived(item)) {
            return HSVN_SUBVERSION_ERROR(SVN_ERR_CANCELLED, "Operation was cancelled");
        }
        receiver.items.push_back(std::move(item));
        return SVN_NO_ERROR;
    });
}

std::vector<HSVNLogItemRef> HSVNNode::readLogForNodeAtPath(const HSVNPathRef& path, HSVNLogDelegate* delegate,
                                                           const std::shared_ptr<const HSVNLogOptions>& options,
                                                           const HSVNContextRef& context)
{
    HSVNAssertParameter(options != nullptr, "options != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(options->pegRevision() != nullptr, "[options pegRevision] != nil");
    HSVNAssertParameter(options->fromRevision() != nullptr, "[options fromRevision] != nil");
    HSVNAssertParameter(options->toRevision() != nullptr, "[options toRevision] != nil");
    HSVNOperation operation{context,
                            "HSVNNode",
                            "readLogForNodeAtPath:delegate:options:withContext:",
                            {{"path", path}, {"options", options}, {"context", context}}};
    const auto peg = options->pegRevision()->SVNRevision();
    const auto from = options->fromRevision()->SVNRevision();
    const auto to = options->toRevision()->SVNRevision();
    HSVNLogReceiver receiver{*context, delegate};
    operation.check(operation->client_log3(
        HSVNTextArray(operation, {path->string()}), &peg, &from, &to, options->limit(), options->discoverChangedPaths(),
        !options->traverseCopyHistory(), HSVNLogReceiver::receive, &receiver, operation.ctx(), operation.pool()));
    return std::move(receiver.items);
}
