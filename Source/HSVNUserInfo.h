#pragma once

#include "HSVNExport.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <variant>

/// Keys of an exception's user information.
inline constexpr const char* HSVNExceptionMessageKey = "message"; ///< text: the message
inline constexpr const char* HSVNExceptionCauseKey = "cause";     ///< dictionary of the next error in the chain
inline constexpr const char* HSVNExceptionLineNumberKey = "line"; ///< number: source line of the error
inline constexpr const char* HSVNExceptionFileNameKey = "file";   ///< text: source file of the error
inline constexpr const char* HSVNExceptionStatusKey = "status";   ///< number: status code of the error
/// Number: the revision that an operation committed although it failed, as when a delegate throws at what it is told of
/// the commit. Any `HSVNPlatformException` has it, also one of a delegate; exceptions outside that class reach the
/// caller as they are, and the system log tells the revision.
inline constexpr const char* HSVNExceptionRevisionKey = "revision";

struct HSVNUserInfoValue;

/// An exception's user information: texts, numbers and nested dictionaries by key.
using HSVNUserInfo = std::map<std::string, HSVNUserInfoValue>;

/// One value of an exception's user information. Copies share a nested dictionary, which is immutable.
struct HSVNUserInfoValue
{
    /// A text, UTF-8.
    HSVNUserInfoValue(std::string text) : value{std::move(text)} {} // NOLINT(google-explicit-constructor)
    /// A text, UTF-8; not null ("text != NULL").
    HSVN_EXPORT HSVNUserInfoValue(const char* text); // NOLINT(google-explicit-constructor)
    /// A number.
    HSVNUserInfoValue(std::int64_t number) : value{number} {} // NOLINT(google-explicit-constructor)
    /// A nested dictionary; not nil.
    HSVNUserInfoValue(std::shared_ptr<const HSVNUserInfo> dictionary) : value{std::move(dictionary)} {}

    /// The text, or null when the value is of another kind.
    const std::string* text() const { return std::get_if<std::string>(&value); }
    /// The number, or null when the value is of another kind.
    const std::int64_t* number() const { return std::get_if<std::int64_t>(&value); }
    /// The nested dictionary, or null when the value is of another kind.
    const HSVNUserInfo* dictionary() const
    {
        const auto* nested = std::get_if<std::shared_ptr<const HSVNUserInfo>>(&value);
        return nested ? nested->get() : nullptr;
    }

    /// The value itself.
    std::variant<std::string, std::int64_t, std::shared_ptr<const HSVNUserInfo>> value;
};
