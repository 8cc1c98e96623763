#include "HSVNContext.h"
#include "Internal/ExtensionCall.h"

void HSVNContext::patch(const HSVNTarget& file, const HSVNTarget& directory, const HSVNPatchChoices& choices)
{
    HSVNOperation operation{*this, "patch", {{"path", file.text()}, {"target", directory.text()}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_patch);
    operation.check(function(operation.cString(file.text()), operation.changed(directory.text()), choices.dryRun,
                             choices.strip, choices.reverse, choices.ignoreWhitespace, operation.ctx(),
                             operation.pool()));
}
