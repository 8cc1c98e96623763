#include "HSVNResolveOptions.h"

#include <fmt/format.h>

std::string HSVNResolveOptions::description() const
{
    return fmt::format("{{ {} recursive: {:d} }}", HSVNOptions::description(), _recursive);
}
