#include "HSVNDeleteOptions.h"

#include <fmt/format.h>

std::string HSVNDeleteOptions::description() const
{
    return fmt::format("{{ {} force: {:d} }}", HSVNOptions::description(), _force);
}
