#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <utility>

/// An object that is made once and never destroyed, for the static objects that functions of the library share.
///
/// An application's own static objects may use the library in their destructors, when the library's would be gone.
template <class Value>
class HSVNEverlasting
{
  public:
    template <class... Arguments>
    explicit HSVNEverlasting(Arguments&&... arguments)
        : _value{std::construct_at(reinterpret_cast<Value*>(_place.data()), std::forward<Arguments>(arguments)...)}
    {
    }
    ~HSVNEverlasting() = default; // the value stays
    HSVNEverlasting(const HSVNEverlasting&) = delete;
    HSVNEverlasting& operator=(const HSVNEverlasting&) = delete;

    Value& operator*() { return *_value; }
    const Value& operator*() const { return *_value; }

  private:
    alignas(Value) std::array<std::byte, sizeof(Value)> _place;
    Value* _value;
};
