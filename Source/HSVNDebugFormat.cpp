// The placeholders of log lines.

#include "HSVNDebug.h"
#include "Internal/Characters.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <fmt/format.h>
#include <fmt/printf.h>

HSVNDebugArgument::HSVNDebugArgument(const void* address)
    : _text{address ? fmt::format("{}", address) : nilText},
      _number{std::uint64_t{std::bit_cast<std::uintptr_t>(address)}}, _bits{std::bit_cast<std::uintptr_t>(address)}
{
}

HSVNDebugArgument::HSVNDebugArgument(double number, int) : _text{fmt::format("{}", number)}, _number{number} {}

std::string HSVNDebugArgument::reasonOf(const std::exception& exception)
{
    const char* const reason = exception.what();
    return reason ? reason : nilText;
}

namespace {

constexpr int greatestWidth = 1000;
constexpr std::string_view decimalDigits = "0123456789";

/// What stands between "%" and the conversion's letter, and that letter.
struct Placeholder
{
    std::size_t argument = 0; ///< counted from 1; 0 is the next one
    std::string flags;
    int width = 0;
    std::optional<int> precision;
    char conversion = 0;

    bool isOneOf(std::string_view letters) const { return letters.find(conversion) != std::string_view::npos; }
    /// For the printing of a number of 64 bits.
    std::string specification(char letter) const
    {
        return "%" + flags + (width > 0 ? std::to_string(width) : "") +
               (precision ? "." + std::to_string(*precision) : "") + letter;
    }
};

/// A character by its number in UTF-8; U+FFFD for a number that is no character's.
std::string characterWithNumber(std::uint64_t number)
{
    const bool isSurrogate = number >= 0xD800 && number < 0xE000;
    const auto code = static_cast<std::uint32_t>(number > 0x10FFFF || isSurrogate ? 0xFFFD : number);
    const auto byte = [&](std::uint32_t lead, unsigned shift) {
        return static_cast<char>(lead | (lead == 0x80 ? code >> shift & 0x3FU : code >> shift));
    };
    if (code < 0x80) {
        return {byte(0, 0)};
    }
    if (code < 0x800) {
        return {byte(0xC0, 6), byte(0x80, 0)};
    }
    if (code < 0x10000) {
        return {byte(0xE0, 12), byte(0x80, 6), byte(0x80, 0)};
    }
    return {byte(0xF0, 18), byte(0x80, 12), byte(0x80, 6), byte(0x80, 0)};
}

/// The text within the placeholder's width and precision, which count characters.
std::string shownText(const Placeholder& placeholder, std::string_view text)
{
    const auto limit = placeholder.precision;
    const auto shown = limit ? HSVNText::prefix(text, static_cast<std::size_t>(*limit)) : text;
    const auto width = static_cast<std::size_t>(placeholder.width);
    const std::string blanks(width - std::min(width, HSVNText::length(shown)), ' ');
    const bool isLeft = placeholder.flags.find('-') != std::string::npos;
    return isLeft ? std::string{shown} + blanks : blanks + std::string{shown};
}

/// The number as its conversion shows it; none for a conversion that does not suit the argument.
std::optional<std::string> shownNumber(const Placeholder& placeholder, const HSVNDebugArgument& argument)
{
    const auto* const number = std::get_if<std::int64_t>(&argument.number());
    const auto* const magnitude = std::get_if<std::uint64_t>(&argument.number());
    const auto* const fraction = std::get_if<double>(&argument.number());
    const bool isWhole = number || magnitude;
    if (placeholder.isOneOf("fFeEgGaA") && (isWhole || fraction)) {
        const double value = fraction    ? *fraction
                             : magnitude ? static_cast<double>(*magnitude)
                                         : static_cast<double>(*number);
        return fmt::sprintf(placeholder.specification(placeholder.conversion), value);
    }
    if (!isWhole) {
        return std::nullopt;
    }
    if (placeholder.isOneOf("cC")) {
        return shownText(placeholder, characterWithNumber(argument.bits()));
    }
    if (placeholder.isOneOf("dDi")) {
        return number ? fmt::sprintf(placeholder.specification('d'), *number)
                      : fmt::sprintf(placeholder.specification('u'), *magnitude);
    }
    if (placeholder.isOneOf("uUoOxX")) {
        const char letter = placeholder.conversion == 'U'   ? 'u'
                            : placeholder.conversion == 'O' ? 'o'
                                                            : placeholder.conversion;
        return fmt::sprintf(placeholder.specification(letter), argument.bits());
    }
    if (placeholder.conversion == 'p') {
        return shownText(placeholder, fmt::format("{:#x}", argument.bits()));
    }
    return std::nullopt;
}

/// Fills one line; reads the format from its start to its end.
class Line
{
  public:
    Line(std::string_view format, const HSVNDebugArgument* begin, const HSVNDebugArgument* end)
        : _rest{format}, _begin{begin}, _next{begin}, _end{end}
    {
    }

    std::string filled() &&
    {
        while (!_rest.empty()) {
            _text += takeLength(_rest.find('%'));
            if (!_rest.empty()) {
                takePlaceholder();
            }
        }
        return std::move(_text);
    }

  private:
    void takePlaceholder()
    {
        const auto whole = _rest;
        const auto* const next = _next;
        _rest.remove_prefix(1);
        if (take('%')) {
            _text += '%';
        } else if (const auto placeholder = readPlaceholder()) {
            fill(*placeholder);
        } else {
            _rest = whole.substr(1);
            _next = next;
            _text += '%';
        }
    }

    /// None when what stands there is no placeholder.
    std::optional<Placeholder> readPlaceholder()
    {
        Placeholder placeholder;
        placeholder.argument = takeArgumentNumber();
        placeholder.flags = takeAnyOf("-+ #0'");
        std::erase(placeholder.flags, '\'');
        placeholder.width = takeNumber().value_or(0);
        if (placeholder.width < 0) {
            placeholder.flags += '-';
            placeholder.width = -placeholder.width;
        }
        if (take('.')) {
            placeholder.precision = std::max(takeNumber().value_or(0), 0);
        }
        takeAnyOf("hlqzjtL");
        constexpr std::string_view conversions = "@sScCdDiuUoOxXpfFeEgGaAn";
        if (_rest.empty() || conversions.find(_rest.front()) == std::string_view::npos) {
            return std::nullopt;
        }
        placeholder.conversion = _rest.front();
        _rest.remove_prefix(1);
        return placeholder;
    }

    void fill(const Placeholder& placeholder)
    {
        const auto* const argument = takeArgument(placeholder.argument);
        if (placeholder.conversion == 'n') {
            return; // elsewhere it writes to its argument
        }
        auto number = argument ? shownNumber(placeholder, *argument) : std::nullopt;
        _text += number ? *std::move(number) : shownText(placeholder, argument ? argument->text() : "(null)");
    }

    bool take(char character)
    {
        const bool isThere = _rest.starts_with(character);
        _rest.remove_prefix(isThere ? 1 : 0);
        return isThere;
    }

    std::string_view takeLength(std::size_t length)
    {
        const auto taken = _rest.substr(0, length);
        _rest.remove_prefix(taken.size());
        return taken;
    }

    std::string_view takeAnyOf(std::string_view characters) { return takeLength(_rest.find_first_not_of(characters)); }

    /// "2$"; 0 for none.
    std::size_t takeArgumentNumber()
    {
        const auto whole = _rest;
        const auto text = takeAnyOf(decimalDigits);
        std::size_t number = 0;
        std::from_chars(text.data(), text.data() + text.size(), number);
        if (number == 0 || !take('$')) {
            _rest = whole;
            return 0;
        }
        return number;
    }

    /// A width or precision within its bounds.
    std::optional<int> takeNumber()
    {
        if (take('*')) {
            const auto* const argument = takeArgument(0);
            const auto* const number = argument ? std::get_if<std::int64_t>(&argument->number()) : nullptr;
            return number ? std::optional{static_cast<int>(
                                std::clamp<std::int64_t>(*number, -greatestWidth, greatestWidth))}
                          : std::nullopt;
        }
        const auto text = takeAnyOf(decimalDigits);
        int number = greatestWidth;
        std::from_chars(text.data(), text.data() + text.size(), number); // leaves it for what does not fit
        return text.empty() ? std::nullopt : std::optional{std::min(number, greatestWidth)};
    }

    /// Null when there is none.
    const HSVNDebugArgument* takeArgument(std::size_t number)
    {
        if (number > 0) {
            return number <= static_cast<std::size_t>(_end - _begin) ? _begin + (number - 1) : nullptr;
        }
        return _next == _end ? nullptr : _next++;
    }

    std::string_view _rest;
    const HSVNDebugArgument* _begin;
    const HSVNDebugArgument* _next;
    const HSVNDebugArgument* _end;
    std::string _text;
};

} // namespace

std::string HSVNDebug::filled(std::string_view format, std::initializer_list<HSVNDebugArgument> arguments)
{
    return Line{format, arguments.begin(), arguments.end()}.filled();
}
