#pragma once

#include "HSVNTypes.h"

/// Exceptions that must not cost the caller a revision that is in the repository already.
struct HSVNCommittedRevision
{
    /// Writes the revision into the user information of the exception that is being handled, under
    /// `HSVNExceptionRevisionKey`. One that has no user information stays as it is, and the system log tells the
    /// revision. Nothing is done when there is none.
    static void tell(HSVNRevisionNumber revision);
};
