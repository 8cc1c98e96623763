#include "ExtensionTable.h"

#include <initializer_list>

namespace HSVNAdapter {
namespace {

/// A family, made once, filled by each of the functions.
template <class Family>
const Family* filled(std::initializer_list<void (*)(Family&)> sources)
{
    static const Family family = [&] {
        Family made{};
        for (const auto fill : sources) {
            fill(made);
        }
        return made;
    }();
    return &family;
}

HSVNBundleExtensions makeExtensions()
{
    HSVNBundleExtensions table{};
    table.targets = filled<HSVNTargetFunctions>({fillTargets});
    table.authentication =
        filled<HSVNAuthenticationFunctions>({fillAuthentication, fillStoredCredentials, fillTerminalPrompts});
    table.reading = filled<HSVNReadingFunctions>({fillBlame, fillContents, fillInfo, fillList, fillLog});
    table.status = filled<HSVNStatusFunctions>({fillLayout, fillStatus, fillStatusOnThreads});
    table.properties = filled<HSVNPropertyFunctions>({fillProperties, fillPropertyCommits});
    table.changes = filled<HSVNChangeFunctions>({fillPatch, fillWorkingCopyChanges});
    table.conflicts = filled<HSVNConflictFunctions>({fillConflicts});
    table.updates = filled<HSVNUpdateFunctions>({fillCheckOut, fillExport, fillSwitchTo, fillUpdate});
    table.merges = filled<HSVNMergeFunctions>({fillMerge, fillMergeInformation});
    table.commits = filled<HSVNCommitFunctions>(
        {fillCommit, fillCopyAndMove, fillImport, fillLock, fillMakeDirectories, fillRemove});
    table.differences = filled<HSVNDifferenceFunctions>({fillDiff, fillTextComparison});
#if HSVN_LINE_MINOR >= 7
    table.databases = filled<HSVNDatabaseFunctions>({fillNestedDatabases, fillOpenWorkingCopies});
#endif
    table.line = filled<HSVNLineFunctions>({fillErrorCodes, fillRepositoryAdministration, fillVersionDetails});
    return table;
}

} // namespace
} // namespace HSVNAdapter

extern "C" __attribute__((visibility("default"))) const HSVNBundleExtensions* HSVNBundleExtensionsTable()
{
    static const HSVNBundleExtensions table = HSVNAdapter::makeExtensions();
    return &table;
}
