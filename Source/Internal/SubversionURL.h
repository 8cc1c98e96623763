#pragma once

#include "HSVNForward.h"

/// The URL of a field in a Subversion record. Some lines leave such a text unescaped, so a failed parse is tried again
/// on the escaped text.
///
/// @param text  not null
/// @throws HSVNInvalidArgumentException when that does not parse either
HSVNURLRef HSVNURLWithSubversionText(const char* text);
