#pragma once

#include "Internal/Subversion.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

/// Whether Subversion lets a property have that name: ASCII letters, digits and ":_-.", not a digit, "-" or "." first.
inline bool HSVNIsPropertyName(std::string_view name)
{
    const auto begins = [](char character) {
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') || character == ':' ||
               character == '_';
    };
    return !name.empty() && begins(name.front()) && std::ranges::all_of(name, [&](char character) {
        return begins(character) || (character >= '0' && character <= '9') || character == '-' || character == '.';
    });
}

/// A property's value for Subversion, its bytes not copied: it is gone with the text.
class HSVNPropertyValue
{
  public:
    explicit HSVNPropertyValue(const std::optional<std::string>& value)
        : _record{value ? svn_string_t{value->data(), value->size()} : svn_string_t{nullptr, 0}}
    {
    }
    /// Null for nil, which deletes the property.
    const svn_string_t* get() const { return _record.data ? &_record : nullptr; }

  private:
    svn_string_t _record;
};
