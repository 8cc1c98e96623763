#include "Internal/CleanUp.h"

#include "HSVNItemsSetAside.h"

void HSVNCleanUp(HSVNOperation& operation, const std::string& directory, const HSVNCleanUpChoices& choices)
{
    const char* const path = operation.cString(directory);
    if (const auto cleanUp = operation.newest(&HSVNChangeFunctions::client_cleanup)) {
        operation.check(cleanUp(path, choices.breakLocks, choices.fixTimestamps, choices.clearWebCache,
                                choices.vacuumPristines, choices.includeExternals, operation.ctx(), operation.pool()));
        return;
    }
    operation.refuse(!choices.breakLocks, "breakLocks");
    operation.refuse(!choices.fixTimestamps, "fixTimestamps");
    operation.refuse(!choices.clearWebCache, "clearWebCache");
    operation.refuse(!choices.vacuumPristines, "vacuumPristines");
    operation.refuse(choices.includeExternals, "includeExternals");
    operation.check(operation->client_cleanup(path, operation.ctx(), operation.pool()));
}

void HSVNTellOfItemsSetAside(const std::string& directory)
{
    for (const auto& item : HSVNFindItemsSetAside(directory.empty() ? "." : directory)) {
        HSVNDebug::logAtLevel(HSVNDebugLevelNormal,
                              "'%@' holds what was set aside by an operation that was interrupted", item);
    }
}

void HSVNCleanUpAlone(const HSVNPathRef& directory, const HSVNContextRef& context)
{
    HSVNOperation operation{
        context, "HSVNDirectory", "cleanUpWorkingCopyAtPath:withContext:", {{"path", directory}, {"context", context}}};
    HSVNCleanUp(operation, directory->string(), {});
}
