#include "UnchangedNodes.h"

#ifdef HSVN_FAST_STATUS

#include <algorithm>

namespace HSVNAdapter {

void UnchangedNodes::reserveAs(const UnchangedNodes& other)
{
    _names.reserve(other._names.size());
    _items.reserve(other._items.size());
}

void UnchangedNodes::add(std::string_view name, const UnchangedNode& node)
{
    _items.push_back({_names.size(), node});
    _names += name;
}

void UnchangedNodes::dropLast()
{
    _names.resize(_items.back().nameBegin);
    _items.pop_back();
}

const UnchangedNode* UnchangedNodes::find(std::string_view name)
{
    if (_next >= _items.size() || nameAt(_next) != name) {
        const auto place = std::partition_point(_items.begin(), _items.end(), [&](const Item& item) {
            return nameAt(static_cast<std::size_t>(&item - _items.data())) < name;
        });
        _next = static_cast<std::size_t>(place - _items.begin());
    }
    return _next < _items.size() && nameAt(_next) == name ? &_items[_next++].node : nullptr;
}

std::string_view UnchangedNodes::nameAt(std::size_t index) const
{
    const std::size_t begin = _items[index].nameBegin;
    const std::size_t end = index + 1 < _items.size() ? _items[index + 1].nameBegin : _names.size();
    return std::string_view{_names}.substr(begin, end - begin);
}

} // namespace HSVNAdapter

#endif
