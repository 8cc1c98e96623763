#include "HSVNWorkingCopyChanges.h"

#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/ReplacedItem.h"
#include "Internal/RevisionNumber.h"

namespace {

constexpr const char* className = "HSVNWorkingCopyChanges";

/// The value for Subversion, its bytes not copied; null for nil.
class Value
{
  public:
    explicit Value(const std::optional<std::string>& value)
        : _record{value ? svn_string_t{value->data(), value->size()} : svn_string_t{nullptr, 0}}
    {
    }
    const svn_string_t* get() const { return _record.data ? &_record : nullptr; }

  private:
    svn_string_t _record;
};

struct ConflictWalk
{
    HSVNOperation& operation;
    const std::function<void(const std::string& path)>& receiver;
};

svn_error_t* receiveConflict(void* baton, const char* path)
{
    const auto& walk = *static_cast<ConflictWalk*>(baton);
    return HSVNGuardCallback(*walk.operation.context(), [&]() -> svn_error_t* {
        walk.receiver(path);
        return nullptr;
    });
}

} // namespace

void HSVNAddItem(const std::string& target, const HSVNItemAddOptions& options, const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{
        context, className, "addItem:withOptions:withContext:", {{"target", target}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_add);
    operation.check(function(operation.changed(target), HSVNDepthForSubversion(options.depth), options.force,
                             !options.matchIgnorePatterns, !options.automaticProperties, options.addParents,
                             operation.ctx(), operation.pool()));
}

void HSVNRevertItems(const std::vector<std::string>& targets, const HSVNItemRevertOptions& options,
                     const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{
        context, className, "revertItems:withOptions:withContext:", {{"targets", targets}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_revert);
    operation.check(function(HSVNChangedArray(operation, targets), HSVNDepthForSubversion(options.depth),
                             HSVNFilterArray(operation, options.changelists), options.clearChangelists,
                             options.metadataOnly, options.keepAddedItems, operation.ctx(), operation.pool()));
}

void HSVNResolveItem(const std::string& target, HSVNDepth depth, HSVNConflictChoice choice,
                     const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{
        context, className, "resolveItem:depth:choice:withContext:", {{"target", target}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_resolve);
    operation.check(
        function(operation.changed(target), HSVNDepthForSubversion(depth), choice, operation.ctx(), operation.pool()));
}

void HSVNFindConflicts(const std::string& target, HSVNDepth depth,
                       const std::function<void(const std::string& path)>& receiver, const HSVNContextRef& context)
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{
        context, className, "findConflicts:depth:receiver:withContext:", {{"target", target}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::conflict_walk);
    ConflictWalk walk{operation, receiver};
    operation.check(function(operation.cString(target), HSVNDepthForSubversion(depth), receiveConflict, &walk,
                             operation.ctx(), operation.pool()));
}

void HSVNChangeProperty(const std::string& name, const std::optional<std::string>& value,
                        const std::vector<std::string>& targets, const HSVNPropertyChangeOptions& options,
                        const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            className,
                            "changeProperty:value:targets:withOptions:withContext:",
                            {{"name", name}, {"targets", targets}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_propset);
    operation.check(function(operation.cString(name), Value{value}.get(), HSVNChangedArray(operation, targets),
                             HSVNDepthForSubversion(options.depth), options.force,
                             HSVNFilterArray(operation, options.changelists), operation.ctx(), operation.pool()));
}

HSVNRevisionNumber HSVNChangeRevisionProperty(const std::string& name, const std::optional<std::string>& value,
                                              const std::string& url, const HSVNRevisionRef& revision, bool force,
                                              const HSVNContextRef& context)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            className,
                            "changeRevisionProperty:value:url:revision:force:withContext:",
                            {{"name", name}, {"url", url}, {"revision", revision}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_revprop_set);
    const auto record = revision->SVNRevision();
    svn_revnum_t number = HSVNInvalidRevision;
    operation.check(function(operation.cString(name), Value{value}.get(), operation.cString(url), &record, &number,
                             force, operation.ctx(), operation.pool()));
    return HSVNRevisionNumberFromSubversion(number);
}

void HSVNLockItems(const std::vector<std::string>& targets, const std::optional<std::string>& comment, bool steal,
                   const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{
        context, className, "lockItems:comment:steal:withContext:", {{"targets", targets}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_lock);
    operation.check(function(HSVNChangedArray(operation, targets), comment ? operation.cString(*comment) : nullptr,
                             steal, operation.ctx(), operation.pool()));
}

void HSVNUnlockItems(const std::vector<std::string>& targets, bool breakLock, const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{
        context, className, "unlockItems:breakLock:withContext:", {{"targets", targets}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_unlock);
    operation.check(function(HSVNChangedArray(operation, targets), breakLock, operation.ctx(), operation.pool()));
}

void HSVNCleanUpFolder(const std::string& folder, const HSVNCleanUpOptions& options, const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{
        context, className, "cleanUpFolder:withOptions:withContext:", {{"folder", folder}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_cleanup);
    operation.check(function(operation.cString(folder), options.breakLocks, options.fixTimestamps,
                             options.clearWebCache, options.vacuumPristines, options.includeExternals, operation.ctx(),
                             operation.pool()));
    HSVNTellOfItemsSetAside(folder);
}

void HSVNVacuumFolder(const std::string& folder, const HSVNVacuumOptions& options, const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{
        context, className, "vacuumFolder:withOptions:withContext:", {{"folder", folder}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_vacuum);
    operation.check(function(operation.cString(folder), options.removeUnversioned, options.removeIgnored,
                             options.fixTimestamps, options.vacuumPristines, options.includeExternals, operation.ctx(),
                             operation.pool()));
}

void HSVNUpgradeFolder(const std::string& folder, const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{
        context, className, "upgradeFolder:withContext:", {{"folder", folder}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_upgrade);
    operation.check(function(operation.cString(folder), operation.ctx(), operation.pool()));
}

void HSVNRelocateFolder(const std::string& folder, const std::string& from, const std::string& to, bool ignoreExternals,
                        const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            className,
                            "relocateFolder:from:to:ignoreExternals:withContext:",
                            {{"folder", folder}, {"from", from}, {"to", to}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_relocate);
    operation.check(function(operation.changed(folder), operation.cString(from), operation.cString(to), ignoreExternals,
                             operation.ctx(), operation.pool()));
}

void HSVNChangeChangelist(const std::optional<std::string>& changelist, const std::vector<std::string>& targets,
                          HSVNDepth depth, const std::vector<std::string>& changelists, const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            className,
                            "changeChangelist:targets:depth:changelists:withContext:",
                            {{"changelist", changelist}, {"targets", targets}, {"context", context}}};
    auto* const array = HSVNChangedArray(operation, targets);
    auto* const filter = HSVNFilterArray(operation, changelists);
    if (changelist) {
        const auto function = operation.extension(&HSVNBundleExtensions::client_add_to_changelist);
        operation.check(function(array, operation.cString(*changelist), HSVNDepthForSubversion(depth), filter,
                                 operation.ctx(), operation.pool()));
    } else {
        const auto function = operation.extension(&HSVNBundleExtensions::client_remove_from_changelists);
        operation.check(function(array, HSVNDepthForSubversion(depth), filter, operation.ctx(), operation.pool()));
    }
}
