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
/// Whether a skeleton has all that a conflict has, with marker files inside of the working copy with that root.
bool isConflict(std::string_view skeleton, const std::string& root);
/// Whether a skeleton has all that a piece of work has, with files inside of the working copy with that root.
bool isPieceOfWork(std::string_view skeleton, const std::string& root);

} // namespace HSVNAdapter
