#pragma once

#include "HSVNExport.h"

#include <memory>
#include <type_traits>
#include <utility>

/// Fields that few objects of a class have: stored apart, and only once one of them is set. Copies have their own.
template <class Fields>
class HSVNRareFields
{
  public:
    HSVNRareFields() = default;
    /// Fields of its own with the same values.
    HSVNRareFields(const HSVNRareFields& other)
        : _fields{other._fields ? std::make_unique<Fields>(*other._fields) : nullptr}
    {
    }
    HSVNRareFields& operator=(const HSVNRareFields&) = delete;
    ~HSVNRareFields() = default;

    /// A field's value; its default while nothing is stored.
    template <class Value>
    const Value& get(Value Fields::*field) const
    {
        return (_fields ? *_fields : defaults()).*field;
    }
    /// Sets a field; a value that it has already stores nothing.
    template <class Value>
    void set(Value Fields::*field, std::type_identity_t<Value> value)
    {
        if (get(field) == value) {
            return;
        }
        if (!_fields) {
            _fields = std::make_unique<Fields>();
        }
        (*_fields).*field = std::move(value);
    }
    /// Gives every field its default again.
    void reset() { _fields = nullptr; }

  private:
    static const Fields& defaults()
    {
        static const auto* const fields = new Fields{}; // never destroyed: objects are read until the process ends
        return *fields;
    }

    std::unique_ptr<Fields> _fields;
};
