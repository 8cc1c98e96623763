#include "HSVNOptions.h"

#include "HSVNPlatformException.h"

#include <fmt/format.h>
#include <typeinfo>

std::shared_ptr<HSVNOptions> HSVNOptions::checkedCopy() const
{
    auto copy = makeCopy();
    const HSVNOptions* const made = copy.get();
    if (!made || typeid(*made) != typeid(*this)) {
        throw HSVNInternalInconsistencyException(
            fmt::format("{} does not override makeCopy: a copy would lose what the class adds", typeid(*this).name()));
    }
    return copy;
}
