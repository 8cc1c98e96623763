#include "HSVNRepositoryCreation.h"

#include "Internal/ExtensionCall.h"

#include <array>
#include <fmt/format.h>

namespace {

/// Names and values in turn.
std::vector<std::string> configurationOf(const HSVNRepositoryCreationChoices& choices)
{
    std::vector<std::string> texts{"bdb-txn-nosync", choices.syncAtTransactionCommit ? "0" : "1", "bdb-log-autoremove",
                                   choices.automaticLogFileRemoval ? "1" : "0"};
    if (choices.type) {
        texts.insert(texts.end(), {"fs-type", *choices.type});
    }
    if (const auto& version = choices.compatibleVersion) {
        // Each line knows some of these.
        for (const std::int32_t minor : std::array{4, 5, 6, 8}) {
            if (version->isLessThan({1, minor})) {
                texts.insert(texts.end(), {fmt::format("pre-1.{}-compatible", minor), "1"});
            }
        }
        texts.insert(texts.end(), {"compatible-version", version->versionString()});
    }
    return texts;
}

} // namespace

void HSVNCreateRepository(const HSVNTarget& path, const HSVNRepositoryCreationChoices& choices,
                          const HSVNContextRef& context)
{
    HSVNOperation operation{context,
                            "HSVNRepositoryCreation",
                            "createRepository:withOptions:withContext:",
                            {{"path", path.text()}, {"context", context}}};
    operation.call(&HSVNLineFunctions::repos_create, operation.cString(path.text()),
                   HSVNTextArray(operation, configurationOf(choices)), operation.pool());
}
