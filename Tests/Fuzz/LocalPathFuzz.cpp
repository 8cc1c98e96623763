#include "FuzzInput.h"

// Two lines: a local path and a text that is put to it as a component and as another path.
HSVN_FUZZ_TARGET
{
    FuzzInput input{data, size};
    const std::string text = input.line();
    const std::string other = input.rest();
    HSVNLocalPathRef path;
    if (!passes([&] { path = HSVNLocalPath::pathWithString(text); })) {
        return 0;
    }
    path->denormalizedString();
    path->denormalizedLocation();
    path->displayName();
    path->extension();
    passes([&] { path->URL(); });
    passes([&] { path->pathByAddingRelativePathWithSymlinks(other); });
    passes([&] {
        const auto child = path->pathByAddingComponent(other);
        child->pathRelativeTo(path);
        path->pathWithSymlinksRelativeTo(child);
        require(child->commonAncestorFor(path) != nullptr, "local paths have a common ancestor");
    });
    std::size_t levels = 0;
    for (auto parent = path; parent && levels <= text.size(); ++levels) {
        parent = parent->parent();
    }
    require(levels <= text.size() + 1, "the parents of a path end");
    return 0;
}
