#include "FuzzInput.h"

namespace {

void askEverything(const HSVNURLRef& url, const std::string& other)
{
    passes([&] { url->denormalizedString(); });
    passes([&] { url->hostAndScheme(); });
    passes([&] { url->denormalizedRelativePath(); });
    passes([&] { url->displayName(); });
    passes([&] { url->denormalizedLocation(); });
    passes([&] { url->localPath(); });
    passes([&] { url->stripUser(); });
    passes([&] { url->canonicalize(); });
    passes([&] { url->URLWithScheme(other); });
    passes([&] { url->URLWithUser(other); });
    passes([&] { url->URLWithPort(other.size()); });
    passes([&] { url->pathByAddingRelativePathWithSymlinks(other); });
    passes([&] { url->extension(); });
    for (HSVNURLRef parent = url; parent;) {
        HSVNURLRef next;
        passes([&] { next = parent->parent(); });
        require(!next || next->string().size() < parent->string().size() + sizeof ":///", "a parent is no longer");
        parent = next && next->string().size() < parent->string().size() ? next : nullptr;
    }
}

} // namespace

// Two lines: a URL's text, and a text that is put to it as a component, a user, a scheme and another URL.
HSVN_FUZZ_TARGET
{
    FuzzInput input{data, size};
    const std::string text = input.line();
    const std::string other = input.rest();
    HSVNURLRef url;
    passes([&] { HSVNURL::URLEncodeString(text); });
    passes([&] { HSVNPath::pathWithDenormalizedString(text); });
    if (!passes([&] { url = HSVNURL::URLWithString(text); })) {
        return 0;
    }
    askEverything(url, other);
    passes([&] { HSVNURL::URLWithString(url->string()); });
    passes([&] { url->pathByAddingComponent(other); });
    passes([&] {
        const auto child = url->pathByNormalizingAndAddingComponent(other);
        child->pathRelativeTo(url);
        url->pathWithSymlinksRelativeTo(child);
        child->commonAncestorFor(url);
    });
    return 0;
}
