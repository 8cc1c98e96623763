#include "HSVNLockOptions.h"

#include <fmt/format.h>

HSVNLockChoices HSVNLockOptions::choices() const { return {.steal = _stealLocks}; }

std::string HSVNLockOptions::description() const
{
    return fmt::format("{{ {} stealLocks: {:d} }}", HSVNOptions::description(), _stealLocks);
}
