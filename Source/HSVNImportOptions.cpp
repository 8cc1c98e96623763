#include "HSVNImportOptions.h"

#include <fmt/format.h>

std::string HSVNImportOptions::description() const
{
    return fmt::format("{{ {} recursive: {:d}, matchIgnorePatterns: {:d} }}", HSVNOptions::description(), _recursive,
                       _matchIgnorePatterns);
}
