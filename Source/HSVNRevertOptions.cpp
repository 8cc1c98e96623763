#include "HSVNRevertOptions.h"

#include <fmt/format.h>

std::string HSVNRevertOptions::description() const
{
    return fmt::format("{{ {} recursive: {:d} }}", HSVNOptions::description(), _recursive);
}
