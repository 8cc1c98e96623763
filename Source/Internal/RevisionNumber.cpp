#include "Internal/RevisionNumber.h"
#include "HSVNPlatformException.h"
#include "Internal/Subversion.h"

#include <fmt/format.h>
#include <limits>

HSVNRevisionNumber HSVNRevisionNumberFromSubversion(long number)
{
    if (number > std::numeric_limits<HSVNRevisionNumber>::max()) {
        throw HSVNInvalidArgumentException(fmt::format("Revision number does not fit 32 bits: {}", number));
    }
    return number < 0 ? HSVNInvalidRevision : static_cast<HSVNRevisionNumber>(number);
}

svn_opt_revision_t HSVNCheckedRevision(const svn_opt_revision_t& revision)
{
    HSVNAssertParameter(revision.kind != svn_opt_revision_number || revision.value.number >= 0, "number >= 0");
    return revision;
}
