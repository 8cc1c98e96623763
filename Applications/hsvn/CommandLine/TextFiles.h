#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The pieces between the separators, white space around them and empty ones left out.
std::vector<std::string> split(std::string_view text, std::string_view separators);

/// The number that the text is.
///
/// @throws HSVNException for a text that is no number, and for a number of more than 32 bits
std::int32_t numberOf(const std::string& text);

/// The whole of a file, or of standard input for "-", its bytes unchanged.
///
/// @throws HSVNException with the system's code for a file that cannot be read
std::string contentsOfFile(const std::string& path);

/// Where files that nobody keeps are made: the first folder that the environment names and that can be written to.
std::string temporaryFolder();

/// The lines of a file of further arguments, as UTF-8.
std::vector<std::string> linesOfTargetsFile(const std::string& path);

/// The text with "\n" at its line ends.
///
/// @throws HSVNException "Inconsistent line ending style" for a text with several kinds of line end
std::string withUnixLineEnds(const std::string& text);

/// Replaces the contents of a file.
///
/// @throws HSVNException with the system's code for a file that cannot be written
void writeFile(const std::string& path, std::string_view contents);
/// Writes everything to an open file and closes it; the path is for the messages.
///
/// @throws as `writeFile`
void writeAndClose(int descriptor, std::string_view contents, const std::string& path);
