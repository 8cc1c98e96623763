#pragma once

#include "HSVNReadingChoices.h"
#include "HSVNRevisionSpec.h"
#include "Internal/Operation.h"

#include <string>

/// Writes a file's contents in a revision into a stream.
///
/// @param operation  of `HSVNContext::contents` or of the class operation
/// @param target     a path or a URL
void HSVNContents(HSVNOperation& operation, svn_stream_t* out, const std::string& target,
                  const HSVNRevisionSpec& revision, const HSVNContentsChoices& choices);
