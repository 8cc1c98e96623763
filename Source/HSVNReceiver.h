#pragma once

#include "HSVNExport.h"

#include <concepts>
#include <cstddef>
#include <functional>
#include <string_view>
#include <type_traits>
#include <utility>

/// Who takes the items that an operation streams, one call an item, on the operation's thread: any function object of
/// one item. One that answers a bool stops the operation with false, which then returns as if there were no more; an
/// exception stops it, too, and reaches the operation's caller.
template <class Item>
class HSVNReceiver
{
  public:
    /// Nil, which no operation takes.
    HSVNReceiver() = default;
    /// The same, where nil is written out.
    HSVNReceiver(std::nullptr_t /*nobody*/) {} // NOLINT(google-explicit-constructor)
    template <class Function>
    requires(!std::same_as<std::remove_cvref_t<Function>, HSVNReceiver> && std::invocable<Function&, Item>)
        HSVNReceiver(Function function) // NOLINT(google-explicit-constructor): written in place of an argument
    {
        if constexpr (requires { function == nullptr; }) {
            if (function == nullptr) {
                return; // an empty std::function is no receiver
            }
        }
        if constexpr (std::convertible_to<std::invoke_result_t<Function&, Item>, bool>) {
            _receive = std::move(function);
        } else {
            _receive = [taken = std::move(function)](Item item) mutable {
                taken(item);
                return true;
            };
        }
    }

    /// Whether there is anyone to take items.
    explicit operator bool() const { return static_cast<bool>(_receive); }
    friend bool operator==(const HSVNReceiver& receiver, std::nullptr_t) { return !receiver; }
    /// Hands an item over.
    ///
    /// @return false to stop
    bool operator()(Item item) const { return _receive(item); }

  private:
    std::function<bool(Item)> _receive;
};

/// Who takes a text or a file piece by piece, in order.
using HSVNContentsReceiver = HSVNReceiver<std::string_view>;
