#include "HSVNRevertOptions.h"

#include <fmt/format.h>

HSVNRevertChoices HSVNRevertOptions::choices() const
{
    return {.depth = _recursive ? HSVNDepthInfinity : HSVNDepthEmpty};
}

std::string HSVNRevertOptions::description() const
{
    return fmt::format("{{ {} recursive: {:d} }}", HSVNOptions::description(), _recursive);
}
