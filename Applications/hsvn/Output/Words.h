#pragma once

#include <HSVN/HSVN.h>

#include <string>
#include <string_view>

// The words of Subversion's output where they are not those of the library (HSVNTextOfDepth and its like).

const char* wordOf(HSVNNodeKind kind);
const char* wordOf(HSVNStatusKind status);
/// Whether a configuration's value says yes.
bool isTrueWord(const std::string& value);
/// Whether it says no.
bool isFalseWord(const std::string& value);
/// The letter of a status column.
char letterOf(HSVNStatusKind status);

const char* wordOf(HSVNConflictReason reason);

/// "incoming file edit upon update", of a text or property conflict
std::string descriptionOfIncomingEdit(const HSVNConflictRecord& conflict);
/// "local file edit, incoming file delete or move upon update"
std::string descriptionOfTreeConflict(const HSVNConflictRecord& conflict);

/// Whether files of a MIME type are neither merged nor shown as lines; what follows the type's name is left out.
bool isBinaryMIMEType(std::string_view type);
