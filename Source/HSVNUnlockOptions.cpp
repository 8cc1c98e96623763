#include "HSVNUnlockOptions.h"

#include <fmt/format.h>

HSVNUnlockChoices HSVNUnlockOptions::choices() const { return {.breakLocks = _breakLocks}; }

std::string HSVNUnlockOptions::description() const
{
    return fmt::format("{{ {} breakLocks: {:d} }}", HSVNOptions::description(), _breakLocks);
}
