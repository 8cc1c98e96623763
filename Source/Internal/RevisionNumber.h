#pragma once

#include "HSVNTypes.h"

struct svn_opt_revision_t;

/// A revision number of a Subversion record, checked.
///
/// @param number  a svn_revnum_t; negative for none, which gives `HSVNInvalidRevision`
/// @throws HSVNInvalidArgumentException for a number beyond 32 bits
HSVNRevisionNumber HSVNRevisionNumberFromSubversion(long number);

/// A revision's record as Subversion is to have it: it takes a negative number for HEAD here, for a fault there.
///
/// @throws an assertion "number >= 0"
svn_opt_revision_t HSVNCheckedRevision(const svn_opt_revision_t& revision);
