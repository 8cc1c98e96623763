#pragma once

#include "HSVNExport.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What the library asks of ICU. The code behind it is a module of its own, loaded when it is first needed: ICU's
/// libraries take longer to load than all others together, and a process that meets nothing but ASCII needs none of it.
///
/// Every operation can be called on several threads at a time.
class HSVN_EXPORT HSVNUnicode
{
  public:
    /// A moment in the calendar and time zone of the user.
    struct LocalTime
    {
        std::int32_t year;
        std::int32_t month; ///< from 1
        std::int32_t day;
        std::int32_t hour;
        std::int32_t minute;
        std::int32_t second;
    };
    /// A text in another encoding.
    struct EncodedText
    {
        bool isKnownEncoding;
        std::optional<std::string> bytes; ///< nil when a character has none there
    };

    /// The module, loaded by the first call. Throws HSVNException with the module's path and APR's code for a library
    /// that can't be opened when it can't be.
    static const HSVNUnicode& shared();

    virtual ~HSVNUnicode() = default;
    HSVNUnicode() = default;
    HSVNUnicode(const HSVNUnicode&) = delete;
    HSVNUnicode& operator=(const HSVNUnicode&) = delete;

    /// Offset behind the character at `offset`; an ill-formed byte sequence is one.
    virtual std::size_t offsetAfterCharacter(std::string_view text, std::size_t offset) const = 0;
    /// The text without white space at either end.
    virtual std::string_view trimmed(std::string_view text) const = 0;
    /// The text, which is well-formed, in ASCII: accents dropped, dashes and quotation marks made plain, and any other
    /// character as its number, "{U+03B1}".
    virtual std::string plainForm(std::string_view text) const = 0;
    /// The text, which is well-formed, without accents and in lower case, as searches compare it.
    virtual std::string searchForm(std::string_view text) const = 0;
    /// The text in an encoding that has one of ICU's names.
    virtual EncodedText encoded(std::string_view text, const std::string& encoding) const = 0;
    /// Nil without a calendar for the user's locale.
    virtual std::optional<LocalTime> localTime(std::int64_t secondsSince1970) const = 0;
    /// The date that the whole text is in one of the styles of the user's locale, in milliseconds since 1970, small
    /// enough to be counted in microseconds.
    virtual std::optional<std::int64_t> dateInLocaleStyle(std::string_view text) const = 0;
};

/// The function "HSVNUnicodeModule" by which the module gives its one object, which lives as long as the process.
using HSVNUnicodeEntryFunction = const HSVNUnicode* (*)();
