#include "HSVNLocalPath.h"

#include "HSVNPlatformException.h"
#include "Internal/Everlasting.h"
#include "Internal/PathText.h"
#include "Internal/TrustedText.h"

#include <fmt/format.h>

#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace {

namespace fs = std::filesystem;

std::string normalizedPath(const std::string& string)
{
    HSVNAssertParameter(!string.empty(), "string != nil && [string length] > 0");
    HSVNPathText::requireText(string);
    std::string path = HSVNPathText::expandingTilde(string);
    if (path.size() > 1 && path.ends_with('/')) {
        path.pop_back();
    }
    return path;
}

std::string decodedPath(HSVNCoder* decoder)
{
    auto path = HSVNRequireKeyedUnarchiver(decoder)->decodeRequiredString("path");
    if (path.empty()) {
        throw HSVNInvalidArgumentException("The archived path is empty");
    }
    HSVNPathText::requireText(path);
    return path;
}

/// The text of what contains an item, which begins the item's own; nil for what lies in nothing.
std::optional<std::string_view> parentText(std::string_view path)
{
    const auto container = HSVNPathText::deletingLastComponent(path);
    return container.empty() || path == "/" ? std::nullopt : std::optional{container};
}

/// Where a link leads, every link on the way resolved as far as the items exist.
std::string destinationOfLink(const fs::path& link)
{
    std::error_code error;
    // A relative destination is joined to the link's folder, an absolute one replaces it.
    const fs::path target = link.parent_path() / fs::read_symlink(link, error);
    const fs::path resolved = fs::weakly_canonical(target, error);
    return (error ? target.lexically_normal() : resolved).string();
}

} // namespace

const HSVNLocalPathRef& HSVNLocalPath::fileSystemRoot()
{
    static const HSVNEverlasting<HSVNLocalPathRef> root{pathWithString("/")};
    return *root;
}

HSVNLocalPath::HSVNLocalPath(const std::string& string) : _path{normalizedPath(string)} {}

HSVNLocalPath::HSVNLocalPath(HSVNCoder* decoder) : HSVNPath{decoder}, _path{decodedPath(decoder)} {}

HSVNLocalPath::HSVNLocalPath(const Trusted& /*key*/, std::string path) : _path{std::move(path)} {}

HSVNLocalPathRef HSVNLocalPath::pathWithString(const std::string& string)
{
    return std::make_shared<HSVNLocalPath>(string);
}

HSVNLocalPathRef HSVNLocalPathOfTrustedText(std::string path)
{
    return std::make_shared<HSVNLocalPath>(HSVNLocalPath::Trusted{}, std::move(path));
}

std::string HSVNLocalPath::denormalizedString() const { return HSVNPathText::abbreviatingHome(_path); }

std::optional<std::string> HSVNLocalPath::location() const
{
    const auto container = parent();
    return container ? std::optional{container->string()} : std::nullopt;
}

std::optional<std::string> HSVNLocalPath::denormalizedLocation() const
{
    const auto container = parent();
    return container ? std::optional{container->denormalizedString()} : std::nullopt;
}

std::string HSVNLocalPath::lastComponent() const { return std::string{HSVNPathText::lastComponent(_path)}; }

HSVNLocalPathRef HSVNLocalPath::pathByAddingComponent(const std::string& component) const
{
    HSVNAssertParameter(!component.empty(), "component != nil && [component length] > 0");
    if (component == "/") {
        return selfPath();
    }
    HSVNPathText::requireText(component);
    return HSVNLocalPathOfTrustedText(HSVNPathText::joined(_path, component));
}

HSVNLocalPathRef HSVNLocalPath::parent() const
{
    const auto container = parentText(_path);
    return container ? HSVNLocalPathOfTrustedText(std::string{*container}) : nullptr;
}

HSVNLocalPathRef HSVNLocalPath::resolve(bool* wasLink) const
{
    HSVNAssertParameter(wasLink != nullptr, "wasLink != nil");
    std::error_code error;
    *wasLink = fs::symlink_status(_path, error).type() == fs::file_type::symlink;
    return *wasLink ? pathWithString(destinationOfLink(_path)) : selfPath();
}

HSVNLocalPathRef HSVNLocalPath::resolve() const
{
    bool wasLink = false;
    return resolve(&wasLink);
}

HSVNLocalPathRef HSVNLocalPath::copy() const { return std::make_shared<HSVNLocalPath>(*this); }

HSVNPathRef HSVNLocalPath::commonAncestorFor(const HSVNPathRef& thePath) const
{
    HSVNAssertParameter(thePath != nullptr, "thePath != nil");
    auto ancestor = HSVNPath::commonAncestorFor(thePath);
    return ancestor ? ancestor : fileSystemRoot();
}

std::optional<std::string> HSVNLocalPath::pathRelativeTo(const HSVNPathRef& base) const
{
    HSVNAssertParameter(base != nullptr, "base != nil");
    return *base == *fileSystemRoot() ? _path : HSVNPath::pathRelativeTo(base);
}

void HSVNLocalPath::encodeWithCoder(HSVNCoder* encoder) const
{
    HSVNPath::encodeWithCoder(encoder);
    encoder->encodeString(_path, "path");
}

HSVNLocalPathRef HSVNLocalPath::selfPath() const { return std::static_pointer_cast<const HSVNLocalPath>(self()); }

HSVNPathRef HSVNLocalPath::childByAdding(const std::string& component) const
{
    return pathByAddingComponent(component);
}

HSVNPathRef HSVNLocalPath::childByNormalizingAndAdding(const std::string& component) const
{
    return pathByAddingComponent(component);
}

HSVNURLRef HSVNLocalPath::itemURL() const { return URL(); }

HSVNPathRef HSVNLocalPath::pathAtRelative(const std::string& path) const
{
    HSVNPathText::requireText(path);
    std::optional<std::string> text = _path;
    HSVNPathText::forEachStep(path, [&](const std::string& step) {
        if (step != "..") {
            text->append(text->ends_with('/') ? "" : "/").append(step);
        } else if (const auto container = parentText(*text)) {
            text->resize(container->size());
        } else {
            text.reset();
        }
        return text.has_value();
    });
    return !text ? nullptr : *text == _path ? selfPath() : HSVNLocalPathOfTrustedText(*std::move(text));
}

std::vector<std::size_t> HSVNLocalPath::ancestorSizes() const { return HSVNSizesOfAncestors(_path, parentText); }

HSVNPathRef HSVNLocalPath::ancestorOfSize(std::size_t size) const
{
    return size == _path.size() ? selfPath() : HSVNLocalPathOfTrustedText(_path.substr(0, size));
}
