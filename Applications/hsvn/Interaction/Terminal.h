#pragma once

#include <string>

/// The user at the terminal, or whoever stands at standard input where there is none.
namespace Terminal {

/// Shows a question and reads the line that answers it.
///
/// @return the answer as UTF-8, without the end of its line
/// @throws HSVNException at the end of the input, or "The operation was interrupted" when a signal asks to end,
///         which is answered with that
std::string ask(const std::string& question);

} // namespace Terminal
