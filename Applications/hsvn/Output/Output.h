#pragma once

#include <string>
#include <string_view>

/// Standard output and standard error. Text is UTF-8 and is written in the locale's encoding. On a terminal, nothing in
/// what is written controls it (see TerminalText); anywhere else every byte stays as it is.
namespace Output {

/// The line between two entries.
inline constexpr const char* separator = "------------------------------------------------------------------------\n";

/// Keeps files that are opened later from taking the place of a standard stream that is closed.
void reserveStandardStreams();

/// Writes text to standard output, buffered.
///
/// @throws HSVNException "Write error: REASON" with the system's code
void write(std::string_view text);
/// The same for bytes that are no text.
void writeBytes(std::string_view bytes);
/// Writes a control sequence of the program's own.
void writeControl(std::string_view sequence);
/// @throws as `write`
void flush();
/// Whether something could not be written, told or not.
bool hasFailed();
/// Writes what is left, whether or not that can be told, and waits until the user leaves the pager.
void end();
/// Shows what was written, has the user leave the pager and gives the terminal to a question; what is written after
/// goes through the pager again.
void makeWayForQuestion() noexcept;
/// Writes text to standard error at once; what standard output still holds comes first.
void writeError(std::string_view text);
/// The same for bytes that may be no text.
void writeErrorBytes(std::string_view bytes);

/// The bytes as they are shown on a terminal.
std::string shownOnTerminal(std::string_view bytes);

/// Shows a text behind the cursor of a terminal until anything else is written. It must fit into ASCII.
void showTransient(std::string_view text);

} // namespace Output
