#include "HSVNCheckOutOptions.h"

#include "HSVNRevisionSpec.h"

#include <fmt/format.h>

HSVNCheckOutOptions::HSVNCheckOutOptions() { setRevision(HSVNRevisionSpec::HEAD()); }

HSVNCheckOutChoices HSVNCheckOutOptions::choices() const
{
    return {.depth = _depth, .processExternals = _processExternals, .allowObstructions = _allowUnversionedObstructions};
}

std::string HSVNCheckOutOptions::description() const
{
    return fmt::format("{{ {}, depth: {:d},  processExternals: {:d}, allowUnversionedObstructions: {:d}}}",
                       HSVNOptionsWithRevision::description(), std::int32_t{_depth}, _processExternals,
                       _allowUnversionedObstructions);
}
