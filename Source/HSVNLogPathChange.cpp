#include "HSVNLogPathChange.h"

#include <algorithm>

namespace {

// How many characters two paths end in alike, counted in whole components ("/x/a" and "/y/a" share "/a").
std::size_t commonTailLength(std::string_view a, std::string_view b)
{
    const auto limit = std::min(a.size(), b.size());
    std::size_t tail = 0;
    for (std::size_t length = 1; length <= limit && a[a.size() - length] == b[b.size() - length]; ++length) {
        if (a[a.size() - length] == '/') {
            tail = length;
        }
    }
    return tail;
}

} // namespace

void HSVNLogPathChange::adjustPath(std::string_view path)
{
    const auto tail = commonTailLength(_path, path);
    const auto oldRoot = std::string_view{_path}.substr(0, _path.size() - tail);
    const auto newRoot = path.substr(0, path.size() - tail);
    const bool isBelowOldRoot = _copyPath && _copyPath->starts_with(oldRoot) &&
                                (_copyPath->size() == oldRoot.size() || (*_copyPath)[oldRoot.size()] == '/');
    if (isBelowOldRoot) {
        _copyPath->replace(0, oldRoot.size(), newRoot);
        if (_copyPath->size() > 1 && _copyPath->back() == '/') {
            _copyPath->pop_back();
        } else if (_copyPath->empty()) {
            *_copyPath = '/';
        }
    }
    _path = path;
}
