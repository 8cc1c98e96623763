#pragma once

#include <utility>

/// Gives a variable another value for as long as the object lives.
template <class Value>
class HSVNScopedValue
{
  public:
    template <class Other>
    HSVNScopedValue(Value& variable, Other&& value)
        : _variable{variable}, _former{std::exchange(variable, std::forward<Other>(value))}
    {
    }
    ~HSVNScopedValue() { _variable = std::move(_former); }
    HSVNScopedValue(const HSVNScopedValue&) = delete;
    HSVNScopedValue& operator=(const HSVNScopedValue&) = delete;

  private:
    Value& _variable;
    Value _former;
};
