#include "HSVNContext.h"
#include "HSVNException.h"
#include "HSVNPatchedItem.h"
#include "Internal/ExtensionCall.h"
#include "Internal/PatchGuard.h"
#include "Internal/PatchOutcomes.h"
#include "Internal/PatchSource.h"
#include "Internal/ScopedValue.h"

namespace {

/// The patch for the library to read; nil for what Subversion refuses to open, and says why.
std::optional<HSVNPatchFile> openedPatch(const std::string& path)
{
    try {
        return HSVNOpenPatch(path);
    } catch (const HSVNException&) {
        return std::nullopt;
    }
}

} // namespace

std::vector<HSVNPatchedItem> HSVNContext::patch(const HSVNTarget& file, const HSVNTarget& directory,
                                                const HSVNPatchChoices& choices)
{
    HSVNOperation operation{*this, "patch", {{"path", file.text()}, {"target", directory.text()}}};
    const auto function = operation.extension(&HSVNChangeFunctions::client_patch);
    const char* const target = operation.changed(directory.text());
    const char* path = operation.cString(file.text());
    const auto patch = openedPatch(file.text());
    const auto apply = [&](bool dryRun) {
        return function(path, target, dryRun, choices.strip, choices.reverse, choices.ignoreWhitespace, operation.ctx(),
                        operation.pool());
    };
    if (patch) {
        const bool leadsThroughLink = HSVNRequireHarmlessPatch(*patch->source, directory.text(), choices);
        path = operation.cString(patch->path);
        if (leadsThroughLink && !choices.dryRun) { // what would be refused amid it is refused before
            const HSVNScopedValue unheard{operation.ctx()->notify_func2, nullptr};
            operation.check(apply(true));
        }
    }
    HSVNPatchOutcomes outcomes{operation};
    operation.check(apply(choices.dryRun));
    return outcomes.take();
}
