#include "HSVNUpdateOptions.h"

#include <fmt/format.h>

HSVNUpdateChoices HSVNUpdateOptions::choices() const
{
    return {.depth = _depth,
            .depthIsSticky = _depthIsSticky,
            .processExternals = _processExternals,
            .allowObstructions = _allowUnversionedObstructions};
}

std::string HSVNUpdateOptions::description() const
{
    return fmt::format(
        "{{ {} depth: {:d}, depthIsSticky: {:d}, processExternals: {:d}, allowUnversionedObstructions: {:d} }}",
        HSVNOptions::description(), std::int32_t{_depth}, _depthIsSticky, _processExternals,
        _allowUnversionedObstructions);
}
