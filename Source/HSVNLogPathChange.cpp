#include "HSVNLogPathChange.h"

#include "HSVNPlatformException.h"
#include "Internal/SharedText.h"

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

bool isAtOrBelow(std::string_view path, std::string_view root)
{
    return path.starts_with(root) && (path.size() == root.size() || path[root.size()] == '/');
}

} // namespace

HSVNLogPathChange::HSVNLogPathChange() : HSVNLogPathChange(std::string{}, HSVNLogActionNone) {}

HSVNLogPathChange::HSVNLogPathChange(std::string path, HSVNLogAction action)
    : HSVNLogPathChange(std::move(path), action, std::nullopt, HSVNInvalidRevision)
{
}

HSVNLogPathChange::HSVNLogPathChange(std::string path, HSVNLogAction action, std::optional<std::string> copyPath,
                                     HSVNRevisionNumber copyRevision)
    : HSVNLogPathChange(HSVNMakeSharedText(std::move(path)), action, HSVNMakeSharedText(std::move(copyPath)),
                        copyRevision)
{
}

HSVNLogPathChange::HSVNLogPathChange(HSVNSharedText path, HSVNLogAction action, HSVNSharedText copyPath,
                                     HSVNRevisionNumber copyRevision)
    : _action{action}, _copyRevision{copyRevision}, _path{std::move(path)}, _copyPath{std::move(copyPath)}
{
    HSVNAssertParameter(_path != nullptr, "path != nil");
}

void HSVNLogPathChange::setPath(std::string path) { _path = HSVNMakeSharedText(std::move(path)); }

std::optional<std::string> HSVNLogPathChange::copyPath() const { return HSVNTextValue(_copyPath); }
void HSVNLogPathChange::setCopyPath(std::optional<std::string> path)
{
    _copyPath = HSVNMakeSharedText(std::move(path));
}

void HSVNLogPathChange::adjustPath(std::string_view path)
{
    const auto tail = commonTailLength(*_path, path);
    const auto oldRoot = std::string_view{*_path}.substr(0, _path->size() - tail);
    const auto newRoot = path.substr(0, path.size() - tail);
    if (_copyPath && isAtOrBelow(*_copyPath, oldRoot)) {
        auto moved = std::string{newRoot} + _copyPath->substr(oldRoot.size());
        if (moved.size() > 1 && moved.back() == '/') {
            moved.pop_back();
        }
        setCopyPath(moved.empty() ? "/" : std::move(moved));
    }
    setPath(std::string{path});
}
