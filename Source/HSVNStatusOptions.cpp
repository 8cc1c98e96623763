#include "HSVNStatusOptions.h"

#include "HSVNRevision.h"

#include <fmt/format.h>

HSVNStatusOptions::HSVNStatusOptions() : _revision{HSVNRevision::UNSPECIFIED()} {}

HSVNStatusChoices HSVNStatusOptions::choices() const
{
    return {.depth = _recursive ? HSVNDepthInfinity : HSVNDepthImmediates,
            .getAll = _includeNormal,
            .contactRepository = _compareAgainstRepository,
            .revision = _revision,
            .matchIgnorePatterns = _respectIgnoreProperties,
            .processExternals = _processExternals};
}

std::string HSVNStatusOptions::description() const
{
    return fmt::format("{{ {} revision: {}, recursive: {:d}, includeNormalFiles: {:d}, compareAgainstRepository: {:d}, "
                       "respectIgnoreProperties: {:d}, processExternals: {:d}, propagateStatusToAncestor: {:d}, "
                       "includeConflictVersionFiles: {:d} }}",
                       HSVNOptions::description(), HSVNDescription(_revision.get()), _recursive, _includeNormal,
                       _compareAgainstRepository, _respectIgnoreProperties, _processExternals,
                       _propagateStatusToAncestor, _includeConflictVersionFiles);
}
