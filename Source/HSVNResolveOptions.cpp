#include "HSVNResolveOptions.h"

#include <fmt/format.h>

HSVNResolveChoices HSVNResolveOptions::choices() const
{
    return {.depth = _recursive ? HSVNDepthInfinity : HSVNDepthEmpty};
}

std::string HSVNResolveOptions::description() const
{
    return fmt::format("{{ {} recursive: {:d} }}", HSVNOptions::description(), _recursive);
}
