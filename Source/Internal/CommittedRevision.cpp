#include "Internal/CommittedRevision.h"

#include "HSVNException.h"

void HSVNCommittedRevision::tell(HSVNRevisionNumber revision)
{
    if (revision < 0) {
        return;
    }
    try {
        throw;
    } catch (HSVNPlatformException& exception) {
        exception._userInfo.insert_or_assign(HSVNExceptionRevisionKey, std::int64_t{revision});
    } catch (...) { // NOLINT(bugprone-empty-catch): nowhere to write it
    }
}
