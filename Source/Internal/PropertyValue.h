#pragma once

#include "Internal/Subversion.h"

#include <optional>
#include <string>

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
