#include "Output/TerminalText.h"

#include <algorithm>
#include <cwchar>
#include <fmt/format.h>
#include <langinfo.h>
#include <locale.h> // NOLINT(modernize-deprecated-headers): POSIX has more in it than C++
#include <utility>

namespace {

bool isPlainByte(char byte) { return (byte >= ' ' && byte <= '~') || byte == '\n' || byte == '\t'; }

/// Whether the character controls a terminal: C0, DEL and C1.
bool isControl(wchar_t character)
{
    return (character >= 0 && character < 0x20) || (character >= 0x7f && character < 0xa0);
}

/// Whether it ends a line or has what follows run in another direction, so that a text reads as another one.
bool isDeceptive(wchar_t character)
{
    return character == 0x061c || character == 0x200e || character == 0x200f ||
           (character >= 0x2028 && character <= 0x202e) || (character >= 0x2066 && character <= 0x2069);
}

/// Reads characters as the locale has them while it lives; where that is ASCII alone, as UTF-8, which the terminal may
/// well show all the same.
class Encoding
{
  public:
    Encoding()
    {
        static const locale_t widest = newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
        if (std::string_view{nl_langinfo(CODESET)} == "ANSI_X3.4-1968" && widest) {
            _former = uselocale(widest);
        }
    }
    ~Encoding()
    {
        if (_former) {
            uselocale(_former);
        }
    }
    Encoding(const Encoding&) = delete;
    Encoding& operator=(const Encoding&) = delete;

  private:
    locale_t _former = nullptr;
};

std::string escaped(std::string_view bytes)
{
    std::string text;
    for (const char byte : bytes) {
        text += fmt::format("?\\{:03}", static_cast<unsigned char>(byte));
    }
    return text;
}

} // namespace

bool TerminalText::isPlain(std::string_view text) { return std::all_of(text.begin(), text.end(), isPlainByte); }

std::string TerminalText::shown(std::string_view piece)
{
    const std::string whole = std::exchange(_rest, {}).append(piece);
    const Encoding encoding;
    std::string result;
    for (std::string_view left{whole}; !left.empty();) {
        const auto plain =
            static_cast<std::size_t>(std::find_if_not(left.begin(), left.end(), isPlainByte) - left.begin());
        result += left.substr(0, plain);
        left.remove_prefix(plain);
        if (left.empty()) {
            break;
        }
        wchar_t character = 0;
        std::mbstate_t state{};
        const std::size_t count = std::mbrtowc(&character, left.data(), left.size(), &state);
        const bool goesOn = count == static_cast<std::size_t>(-2) || left == "\r";
        if (goesOn) {
            _rest = left;
            break;
        }
        const bool isText = count <= left.size();
        const auto bytes = left.substr(0, isText ? std::max<std::size_t>(count, 1) : 1); // NUL is no byte to the system
        if (left.starts_with("\r\n")) {
            result += bytes; // which leads back to a line that has ended
        } else if (!isText || isControl(character)) {
            result += escaped(bytes);
        } else {
            result += isDeceptive(character) ? fmt::format("{{U+{:04X}}}", static_cast<std::uint32_t>(character))
                                             : std::string{bytes};
        }
        left.remove_prefix(bytes.size());
    }
    return result;
}

std::string TerminalText::rest() { return escaped(std::exchange(_rest, {})); }
