#include "HSVNMoveOptions.h"

#include <fmt/format.h>

std::string HSVNMoveOptions::description() const
{
    return fmt::format("{{ {} force: {:d} }}", HSVNOptions::description(), _force);
}
