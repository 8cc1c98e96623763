#include "HSVNUpdateOptions.h"

#include <fmt/format.h>

std::string HSVNUpdateOptions::description() const
{
    return fmt::format(
        "{{ {} depth: {:d}, depthIsSticky: {:d}, processExternals: {:d}, allowUnversionedObstructions: {:d} }}",
        HSVNOptions::description(), std::int32_t{_depth}, _depthIsSticky, _processExternals,
        _allowUnversionedObstructions);
}
