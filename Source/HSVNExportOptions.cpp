#include "HSVNExportOptions.h"

#include "Internal/Text.h"

#include <fmt/format.h>

HSVNExportChoices HSVNExportOptions::choices() const
{
    return {.depth = _depth,
            .overwrite = _overwriteExisting,
            .processExternals = _processExternals,
            .nativeEndOfLine = _eolMarkers};
}

std::string HSVNExportOptions::description() const
{
    return fmt::format("{{ {} depth: {:d}, processExternals: {:d}, overwriteExisting: {:d}, EOLMarkers: {} }}",
                       HSVNOptionsWithRevision::description(), std::int32_t{_depth}, _processExternals,
                       _overwriteExisting, HSVNDescription(_eolMarkers));
}
