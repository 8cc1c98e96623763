#include "HSVNCommitOptions.h"

#include <fmt/format.h>

HSVNCommitChoices HSVNCommitOptions::choices() const { return {.depth = _depth, .keepLocks = !_releaseLocks}; }

std::string HSVNCommitOptions::description() const
{
    return fmt::format("{{ {} depth: {:d}, releaseLocks: {:d} }}", HSVNOptions::description(), std::int32_t{_depth},
                       _releaseLocks);
}
