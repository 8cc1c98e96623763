#pragma once

#include "CommandLine/Errors.h"
#include "CommandLine/Options.h"

#include <cstdint>
#include <string>

class Session;

constexpr std::int32_t noSuchRevision = 160006; // SVN_ERR_FS_NO_SUCH_REVISION, which the library has no name for

/// A text whose numbers are revisions' numbers; the last one stands for any that is beyond it, which is kept as
/// missing.
std::string clampedText(Options& options, const std::string& text);
/// A failure of a missing revision, told by the number that was asked for.
HSVNException withMissingRevision(const HSVNException& exception, const Options& options);

bool isUnspecified(const HSVNRevisionRef& revision);

/// "; did you mean 'HEAD'?" for a text that is no revision, as `suggestion`.
std::string suggestedRevision(const std::string& text);

/// -r: one revision or a range, as Subversion reads it.
///
/// @throws HSVNException "Syntax error in revision argument"
void applyRevision(Session& session, Options& options, const std::string& argument);

/// -c: changes by number, separated by commas: "5", "-5", "3-7".
///
/// @throws HSVNException for a text that is none, or for change 0
void applyChange(Session& session, Options& options, const std::string& argument);
