#pragma once

#include "HSVNDate.h"
#include "HSVNExport.h"
#include "HSVNObject.h"
#include "HSVNVersion.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

/// Levels of the debug log, in the order of how much is written.
enum HSVNDebugLevel : std::int32_t
{
    HSVNDebugLevelOff = 0,
    HSVNDebugLevelNormal = 1, ///< what the environment does not change
    HSVNDebugLevelDebug = 2,
    HSVNDebugLevelVerbose = 3 ///< the calls of operations with their arguments
};

/// One argument of a log line: a text, or a number that its placeholder may show in several ways.
class HSVN_EXPORT HSVNDebugArgument
{
  public:
    /// The text itself, UTF-8; nil as "(null)".
    HSVNDebugArgument(std::string_view text) : _text{text} {} // NOLINT
    /// The same.
    HSVNDebugArgument(const std::string& text) : _text{text} {} // NOLINT
    /// The same; null as "(null)".
    HSVNDebugArgument(const char* text) : _text{text ? text : nilText} {} // NOLINT
    /// "(null)"
    HSVNDebugArgument(std::nullptr_t) : _text{nilText} {} // NOLINT
    /// The value's description.
    HSVNDebugArgument(const HSVNVersion& version) : _text{version.description()} {} // NOLINT
    /// The same.
    HSVNDebugArgument(const HSVNDate& date) : _text{date.description()} {} // NOLINT
    /// The reason of one of the library's, of others `what()`.
    HSVNDebugArgument(const std::exception& exception) : _text{reasonOf(exception)} {} // NOLINT
    /// The object's description; nil as "(null)".
    HSVNDebugArgument(const HSVNObject* object) : _text{HSVNDescription(object)} {} // NOLINT
    /// The object's description.
    HSVNDebugArgument(const HSVNObject& object) : HSVNDebugArgument(&object) {} // NOLINT
    /// The address.
    HSVNDebugArgument(const void* address); // NOLINT
    /// The number; of an enumeration its value, of a boolean 0 or 1.
    template <class Number>
    requires std::integral<Number> || std::is_enum_v<Number> HSVNDebugArgument(Number number) // NOLINT
    {
        const auto whole = +wholeNumber(number); // no longer a boolean or a character
        _text = std::to_string(whole);
        _bits = static_cast<std::make_unsigned_t<decltype(+wholeNumber(number))>>(whole);
        if constexpr (std::signed_integral<decltype(+wholeNumber(number))>) {
            _number = std::int64_t{whole};
        } else {
            _number = std::uint64_t{whole};
        }
    }
    /// The number with its fraction.
    template <std::floating_point Number>
    HSVNDebugArgument(Number number) : HSVNDebugArgument(static_cast<double>(number), 0) // NOLINT
    {
    }
    /// What the pointer leads to; nil as "(null)".
    template <class Class>
    HSVNDebugArgument(const std::shared_ptr<Class>& object) // NOLINT
        : HSVNDebugArgument(object ? HSVNDebugArgument(*object) : HSVNDebugArgument(nullptr))
    {
    }
    /// The value; nil as "(null)".
    template <class Value>
    HSVNDebugArgument(const std::optional<Value>& value) // NOLINT
        : HSVNDebugArgument(value ? HSVNDebugArgument(*value) : HSVNDebugArgument(nullptr))
    {
    }
    /// "(first, second)"
    template <class First, class Second>
    HSVNDebugArgument(const std::pair<First, Second>& pair) // NOLINT
        : _text{"(" + HSVNDebugArgument(pair.first).text() + ", " + HSVNDebugArgument(pair.second).text() + ")"}
    {
    }
    /// "(first, second, ...)"
    template <class Value>
    HSVNDebugArgument(const std::vector<Value>& values) : _text{"("} // NOLINT
    {
        for (const auto& value : values) {
            _text.append(_text.size() > 1 ? ", " : "").append(HSVNDebugArgument(value).text());
        }
        _text += ')';
    }

    /// The argument as "%@" shows it.
    const std::string& text() const { return _text; }
    /// The number; nothing for what is none.
    const std::variant<std::monostate, std::int64_t, std::uint64_t, double>& number() const { return _number; }
    /// A whole number without its sign, in as many bits as it was given in.
    std::uint64_t bits() const { return _bits; }

  private:
    static constexpr const char* nilText = "(null)"; // "nil" is a macro of Objective-C

    HSVNDebugArgument(double number, int);
    static std::string reasonOf(const std::exception& exception);
    template <class Number>
    static constexpr auto wholeNumber(Number number)
    {
        if constexpr (std::is_enum_v<Number>) {
            return static_cast<std::underlying_type_t<Number>>(number);
        } else {
            return number;
        }
    }

    std::string _text;
    std::variant<std::monostate, std::int64_t, std::uint64_t, double> _number;
    std::uint64_t _bits = 0;
};

/// The debug log: lines on the standard error stream, each with a time stamp and the process's name.
///
/// The level is that of the environment variable "SkerryLogLevel" ("off", "normal", "debug" or "verbose", in any case)
/// when the log is first used; later changes of the environment have no effect. Any thread may log.
class HSVN_EXPORT HSVNDebug
{
  public:
    HSVNDebug() = delete;

    /// The level up to which lines are written.
    static std::int32_t level();

    /// Writes one line when `lineLevel` is at most the current level, else does nothing.
    ///
    /// @param format     the line, as `lineWithFormat` reads it
    /// @param arguments  not read when nothing is written
    template <class... Arguments>
    static void logAtLevel(std::int32_t lineLevel, std::string_view format, const Arguments&... arguments)
    {
        if (lineLevel <= level()) {
            write(format, {HSVNDebugArgument(arguments)...});
        }
    }

    /// The text of a format in which each placeholder is replaced by the next argument, or by that of its number.
    ///
    /// A placeholder is "%", then at will "2$" (the argument's number), flags ("-+ #0"), a width, "." and a precision
    /// (either may be "*", the next argument), a length such as "ll", and a conversion: "@" for an object or anything
    /// else, "sS" for a text, "cC" for a character, "dDi" for a whole number, "uUoOxXp" for one without a sign,
    /// "fFeEgGaA" for a number with a fraction. "%%" is a per cent sign; "%n" writes nothing.
    ///
    /// No format does harm: an argument that its conversion does not suit is shown as "%@" shows it, one that is
    /// missing as "(null)", what is no placeholder as it stands, and no width or precision reaches beyond 1000.
    template <class... Arguments>
    static std::string lineWithFormat(std::string_view format, const Arguments&... arguments)
    {
        return filled(format, {HSVNDebugArgument(arguments)...});
    }

  private:
    static void write(std::string_view format, std::initializer_list<HSVNDebugArgument> arguments);
    static std::string filled(std::string_view format, std::initializer_list<HSVNDebugArgument> arguments);
};

/// A text as log lines and descriptions show it: its first `maxLength` characters, followed by "..." when there are
/// more, every line feed written as a backslash and the letter n; nil for nil.
HSVN_EXPORT std::optional<std::string> HSVNDebugSubstring(const std::optional<std::string>& text,
                                                          std::size_t maxLength);
