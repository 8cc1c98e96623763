#include "HSVNAddOptions.h"

#include <fmt/format.h>

HSVNAddChoices HSVNAddOptions::choices() const
{
    return {.depth = _recursive ? HSVNDepthInfinity : HSVNDepthEmpty,
            .force = _force,
            .matchIgnorePatterns = _matchIgnorePatterns};
}

std::string HSVNAddOptions::description() const
{
    return fmt::format("{{ {} recursive: {:d}, force: {:d}, matchIgnore: {:d} }}", HSVNOptions::description(),
                       _recursive, _force, _matchIgnorePatterns);
}
