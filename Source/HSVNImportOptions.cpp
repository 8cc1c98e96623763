#include "HSVNImportOptions.h"

#include <fmt/format.h>

HSVNImportChoices HSVNImportOptions::choices() const
{
    return {.depth = _recursive ? HSVNDepthInfinity : HSVNDepthFiles, .matchIgnorePatterns = _matchIgnorePatterns};
}

std::string HSVNImportOptions::description() const
{
    return fmt::format("{{ {} recursive: {:d}, matchIgnorePatterns: {:d} }}", HSVNOptions::description(), _recursive,
                       _matchIgnorePatterns);
}
