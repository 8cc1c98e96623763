#include "Internal/RevisionNumber.h"
#include "HSVNPlatformException.h"

#include <fmt/format.h>
#include <limits>

HSVNRevisionNumber HSVNRevisionNumberFromSubversion(long number)
{
    if (number > std::numeric_limits<HSVNRevisionNumber>::max()) {
        throw HSVNInvalidArgumentException(fmt::format("Revision number does not fit 32 bits: {}", number));
    }
    return number < 0 ? HSVNInvalidRevision : static_cast<HSVNRevisionNumber>(number);
}
