#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Writes a comparison in the unified format to a terminal, with what differs within changed lines in colours. Bytes
/// stay as they are otherwise.
class WordColours
{
  public:
    /// Takes the next piece of the text.
    void take(std::string_view bytes);
    /// Writes what was kept back of the text.
    void finish();

  private:
    void takeLine(std::string_view line);
    bool takeHunkLine(std::string_view line);
    void writeChange();

    std::string _rest;     ///< of a line that goes on
    std::string _original; ///< changed lines whose words are not compared yet, marks and all
    std::string _modified;
    std::string _markers; ///< what says that the original's last line has no end
    std::uint64_t _originalLeft = 0;
    std::uint64_t _modifiedLeft = 0;
};
