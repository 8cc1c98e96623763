#pragma once

#include "HSVNExport.h"

#include <cstdint>
#include <optional>
#include <string>

/// What a revision did to one path.
enum HSVNLogAction : std::int32_t
{
    HSVNLogActionUnknown = -1,
    HSVNLogActionNone = 0,
    HSVNLogActionAdded = 1,
    HSVNLogActionDeleted = 2,
    HSVNLogActionReplaced = 3,
    HSVNLogActionModified = 4
};

/// The action of Subversion's character: "-", "A", "D", "R" or "M"; unknown for any other.
HSVN_EXPORT HSVNLogAction HSVNLogActionFromChar(char character);
/// The character of an action, "O" for unknown.
///
/// @throws HSVNException "Unrecognized action" for a value outside the enumeration
HSVN_EXPORT char HSVNCharFromLogAction(HSVNLogAction action);
/// The same as a text of one character.
HSVN_EXPORT std::string HSVNStringFromLogAction(HSVNLogAction action);
/// The action of a text's first character; nil gives none, which is not unknown.
HSVN_EXPORT HSVNLogAction HSVNLogActionFromString(const std::optional<std::string>& text);
