#pragma once

#include "HSVNExport.h"
#include "HSVNObject.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// Levels of the debug log, in the order of how much is written.
enum HSVNDebugLevel : std::int32_t
{
    HSVNDebugLevelOff = 0,
    HSVNDebugLevelNormal = 1, ///< what the environment does not change
    HSVNDebugLevelDebug = 2,
    HSVNDebugLevelVerbose = 3 ///< the calls of operations with their arguments
};

/// One argument of a log line, as text.
class HSVN_EXPORT HSVNDebugArgument
{
  public:
    /// The text itself, UTF-8; nil as "(null)".
    HSVNDebugArgument(std::string_view text) : _text{text} {}                                     // NOLINT
    HSVNDebugArgument(const std::string& text) : _text{text} {}                                   // NOLINT
    HSVNDebugArgument(const char* text) : _text{text ? text : "(null)"} {}                        // NOLINT
    HSVNDebugArgument(const std::optional<std::string>& text) : _text{text.value_or("(null)")} {} // NOLINT
    /// The object's description; nil as "(null)".
    HSVNDebugArgument(const HSVNObject* object) : _text{HSVNDescription(object)} {} // NOLINT
    HSVNDebugArgument(const HSVNObject& object) : HSVNDebugArgument(&object) {}     // NOLINT
    template <std::derived_from<HSVNObject> Class>
    HSVNDebugArgument(const std::shared_ptr<Class>& object) // NOLINT
        : HSVNDebugArgument(static_cast<const HSVNObject*>(object.get()))
    {
    }
    /// The number in decimal.
    template <std::integral Number>
    HSVNDebugArgument(Number number) : _text{std::to_string(number)} // NOLINT
    {
    }

    /// The argument as the log shows it.
    const std::string& text() const { return _text; }

  private:
    std::string _text;
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
    /// @param format     the line; every placeholder (%@, %s, %d and the like) stands for the next argument, "%%" for
    ///                   a per cent sign, and a placeholder too many for "(null)"
    /// @param arguments  objects, texts and whole numbers; not read when nothing is written
    template <class... Arguments>
    static void logAtLevel(std::int32_t lineLevel, std::string_view format, const Arguments&... arguments)
    {
        if (lineLevel <= level()) {
            write(format, {HSVNDebugArgument(arguments)...});
        }
    }

  private:
    static void write(std::string_view format, std::initializer_list<HSVNDebugArgument> arguments);
};

/// A text as log lines and descriptions show it: its first `maxLength` characters, followed by "..." when there are
/// more, every line feed written as a backslash and the letter n; nil for nil.
HSVN_EXPORT std::optional<std::string> HSVNDebugSubstring(const std::optional<std::string>& text,
                                                          std::size_t maxLength);
