#include "Internal/CommittedRevision.h"

#include "HSVNDebug.h"
#include "HSVNException.h"
#include "Internal/CaughtException.h"

void HSVNCommittedRevision::tell(HSVNRevisionNumber revision)
{
    if (revision < 0) {
        return;
    }
    try {
        throw;
    } catch (HSVNPlatformException& exception) {
        exception._userInfo.insert_or_assign(HSVNExceptionRevisionKey, std::int64_t{revision});
    } catch (...) {
        // The application's own, to be passed on as it is.
        HSVNDebug::logAtLevel(HSVNDebugLevelOff, "Revision %d is committed, though a delegate threw: %@", revision,
                              HSVNCaughtException()->reason());
    }
}
