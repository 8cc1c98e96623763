#include "HSVNAddOptions.h"

#include <fmt/format.h>

std::string HSVNAddOptions::description() const
{
    return fmt::format("{{ {} recursive: {:d}, force: {:d}, matchIgnore: {:d} }}", HSVNOptions::description(),
                       _recursive, _force, _matchIgnorePatterns);
}
