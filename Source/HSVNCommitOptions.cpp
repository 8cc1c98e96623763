#include "HSVNCommitOptions.h"

#include <fmt/format.h>

std::string HSVNCommitOptions::description() const
{
    return fmt::format("{{ {} depth: {:d}, releaseLocks: {:d} }}", HSVNOptions::description(), std::int32_t{_depth},
                       _releaseLocks);
}
