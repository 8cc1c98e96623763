#pragma once

#include "HSVNTypes.h"

/// A revision number of a Subversion record, checked.
///
/// @param number  a svn_revnum_t; negative for none, which gives `HSVNInvalidRevision`
/// @throws HSVNInvalidArgumentException for a number beyond 32 bits
HSVNRevisionNumber HSVNRevisionNumberFromSubversion(long number);
