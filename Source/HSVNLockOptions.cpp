#include "HSVNLockOptions.h"

#include <fmt/format.h>

std::string HSVNLockOptions::description() const
{
    return fmt::format("{{ {} stealLocks: {:d} }}", HSVNOptions::description(), _stealLocks);
}
