#include "HSVNDeleteOptions.h"

#include <fmt/format.h>

HSVNDeleteChoices HSVNDeleteOptions::choices() const { return {.force = _force}; }

std::string HSVNDeleteOptions::description() const
{
    return fmt::format("{{ {} force: {:d} }}", HSVNOptions::description(), _force);
}
