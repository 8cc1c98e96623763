#include "PropertyNames.h"

#include "Errors.h"

#include <algorithm>
#include <fmt/format.h>
#include <string_view>

namespace {

bool isPropertyName(std::string_view name)
{
    constexpr std::string_view first = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ:_";
    constexpr std::string_view further = "0123456789-.";
    return !name.empty() && first.find(name.front()) != std::string_view::npos &&
           std::all_of(name.begin(), name.end(), [&](char character) {
               return first.find(character) != std::string_view::npos ||
                      further.find(character) != std::string_view::npos;
           });
}

} // namespace

void requirePropertyName(const std::string& name)
{
    if (!isPropertyName(name)) {
        fail(PropertyName, fmt::format("'{}' is not a valid Subversion property name", name));
    }
}
