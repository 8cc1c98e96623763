#pragma once

#include <string>
#include <string_view>

namespace HSVNAdapter {

// The nested lists in a working copy's database, which Subversion calls skeletons. It reads their parts without asking
// whether they are there.

/// Whether a text can be the URL of a repository's root.
bool isRepositoryRoot(std::string_view text);
/// Whether lists are nested so deeply that reading them, list in list, would exhaust the stack.
bool isNestedTooDeeply(std::string_view skeleton);
/// Whether a skeleton has all that a conflict has, with marker files below the working copy's root. A link above them
/// is no fault of it: they are not removed through one.
bool isConflict(std::string_view skeleton);
/// Whether a skeleton has all that a piece of work has, with files below the working copy's root, and through no link
/// where it writes them. What only sets the flags of a file and reads its time is there for items below links, too.
bool isPieceOfWork(std::string_view skeleton, const std::string& root);

} // namespace HSVNAdapter
