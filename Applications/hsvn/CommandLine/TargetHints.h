#pragma once

#include <string>
#include <vector>

class HSVNException;
class Session;

/// What the user at a terminal may have meant by a target that is not there: a sibling with a similar name, on disk or,
/// asked for once, in the repository; or the youngest revision in the place of one that is still to come.
///
/// @param exception  what the subcommand failed with
/// @return sentences; none where standard error is no terminal, or when there is nothing to say
std::vector<std::string> targetHints(Session& session, const HSVNException& exception);
