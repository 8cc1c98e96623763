#pragma once

#include <string>
#include <string_view>

/// Makes text in the locale's encoding, or in UTF-8 where that is ASCII, fit for a terminal, which whoever wrote a name
/// or a message must not control.
///
/// Control characters and bytes that are no text become ?\NNN, as Subversion writes what it cannot show; the characters
/// that turn the direction of a line, or end it, become {U+NNNN}. Line ends and tabs stay.
class TerminalText
{
  public:
    /// Whether the text stays as it is, whatever comes before it.
    static bool isPlain(std::string_view text);

    /// The next piece as it is shown. Of a character that may go on in the piece after it, what is there is kept back.
    std::string shown(std::string_view piece);
    /// What was kept back; nothing is afterwards.
    std::string rest();
    bool hasRest() const { return !_rest.empty(); }

  private:
    std::string _rest;
};
