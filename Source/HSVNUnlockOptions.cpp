#include "HSVNUnlockOptions.h"

#include <fmt/format.h>

std::string HSVNUnlockOptions::description() const
{
    return fmt::format("{{ {} breakLocks: {:d} }}", HSVNOptions::description(), _breakLocks);
}
