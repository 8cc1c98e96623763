#include "HSVNPath.h"

#include "HSVNPlatformException.h"
#include "Internal/PathText.h"
#include "Internal/Unicode.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <string_view>
#include <utility>

namespace {

std::optional<std::string> convertedFromUTF8(const std::string& text, const std::string& encoding)
{
    const auto encoded = HSVNUnicode::shared().encoded(text, encoding);
    if (!encoded.isKnownEncoding) {
        throw HSVNInvalidArgumentException(fmt::format("Unknown encoding \"{}\"", encoding));
    }
    return encoded.bytes;
}

/// What follows the base's text in the path's, when that begins with it.
std::optional<std::string> textAfter(const std::string& path, const std::string& base)
{
    return path.starts_with(base) ? std::optional{path.substr(base.size())} : std::nullopt;
}

/// The deepest of the ancestors of two paths, whatever their classes.
HSVNPathRef commonAncestorByParents(HSVNPathRef own, HSVNPathRef other)
{
    while (own && other && !own->isEqualToPath(other)) {
        // An ancestor's text is the shorter one.
        auto& longer = own->string().size() > other->string().size() ? own : other;
        longer = longer->parent();
    }
    return own ? other : nullptr;
}

/// The largest of the sizes that are in both, which are ordered downwards, and not above a limit; nil for none.
std::optional<std::size_t> largestCommon(const std::vector<std::size_t>& sizes, const std::vector<std::size_t>& others,
                                         std::size_t limit)
{
    std::vector<std::size_t> common;
    std::ranges::set_intersection(sizes, others, std::back_inserter(common), std::greater{});
    const auto found = std::ranges::lower_bound(common, limit, std::greater{});
    return found == common.end() ? std::nullopt : std::optional{*found};
}

/// The way from an ancestor down to a path: empty or begun with a "/", also below a root whose text ends with one.
std::string wayDown(const HSVNPath& path, const HSVNPathRef& ancestor)
{
    if (const auto relative = path.pathRelativeTo(ancestor)) {
        return *relative;
    }
    return "/" + textAfter(path.denormalizedString(), ancestor->denormalizedString()).value_or(path.string());
}

} // namespace

HSVNPath::HSVNPath(HSVNCoder* decoder) { HSVNRequireKeyedUnarchiver(decoder); }

HSVNPathRef HSVNPath::commonAncestorForPaths(const std::vector<HSVNPathRef>& paths)
{
    if (paths.empty()) {
        return nullptr;
    }
    HSVNPathRef ancestor = paths.front();
    for (auto path = paths.begin() + 1; path != paths.end() && ancestor; ++path) {
        ancestor = ancestor->commonAncestorFor(*path);
    }
    return ancestor;
}

const std::string& HSVNPath::string() const { failUnrecognised("string"); }

std::string HSVNPath::denormalizedString() const { failUnrecognised("denormalizedString"); }

std::vector<std::string> HSVNPath::pathAndFile() const { failUnrecognised("pathAndFile"); }

bool HSVNPath::isRoot() const { failUnrecognised("isRoot"); }

std::optional<std::string> HSVNPath::location() const { failUnrecognised("location"); }

std::optional<std::string> HSVNPath::denormalizedLocation() const { failUnrecognised("denormalizedLocation"); }

std::string HSVNPath::lastComponent() const { failUnrecognised("lastComponent"); }

std::string HSVNPath::denormalizedLastComponent() const { failUnrecognised("denormalizedLastComponent"); }

HSVNPathRef HSVNPath::childByAdding(const std::string&) const { failUnrecognised("pathByAddingComponent:"); }

HSVNPathRef HSVNPath::childByNormalizingAndAdding(const std::string&) const
{
    failUnrecognised("pathByNormalizingAndAddingComponent:");
}

HSVNPathRef HSVNPath::parentPath() const { failUnrecognised("parent"); }

HSVNURLRef HSVNPath::itemURL() const { failUnrecognised("URL"); }

HSVNLocalPathRef HSVNPath::itemLocalPath() const { failUnrecognised("localPath"); }

std::vector<HSVNPathRef>
HSVNPath::pathsForChildrenWithLastComponents(const std::vector<std::string>& lastComponents) const
{
    std::vector<HSVNPathRef> children;
    children.reserve(lastComponents.size());
    for (const auto& component : lastComponents) {
        children.push_back(pathByAddingComponent(component));
    }
    return children;
}

std::string HSVNPath::displayName() const
{
    auto name = denormalizedLastComponent();
    if (name == "branches" || name == "tags" || name == "trunk") {
        if (const auto container = parent()) {
            return HSVNPathText::joined(container->denormalizedLastComponent(), name);
        }
    }
    return name;
}

std::optional<std::string> HSVNPath::extension() const
{
    const auto name = lastComponent();
    const auto dot = name.rfind('.');
    return dot == std::string::npos ? std::nullopt : std::optional{name.substr(dot + 1)};
}

bool HSVNPath::isDescendentOfPath(const HSVNPathRef& other) const
{
    if (!other) {
        return false;
    }
    const auto& text = string();
    const auto& base = other->string();
    return text.size() > base.size() && text[base.size()] == '/' && text.starts_with(base);
}

bool HSVNPath::isEqualToPathOrDescendentOf(const HSVNPathRef& other) const
{
    return isEqualToPath(other) || isDescendentOfPath(other);
}

HSVNPathRef HSVNPath::commonAncestorFor(const HSVNPathRef& path) const
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    const auto sizes = ancestorSizes();
    const auto others = path->ancestorSizes();
    if (sizes.empty() || others.empty()) {
        return commonAncestorByParents(self(), path);
    }
    const auto sameUntil = std::ranges::mismatch(string(), path->string()).in1;
    const auto size = largestCommon(sizes, others, static_cast<std::size_t>(sameUntil - string().begin()));
    return size ? path->ancestorOfSize(*size) : nullptr;
}

std::optional<std::string> HSVNPath::pathRelativeTo(const HSVNPathRef& base) const
{
    HSVNAssertParameter(base != nullptr, "base != nil");
    if (isEqualToPath(base)) {
        return "";
    }
    if (!isDescendentOfPath(base)) {
        return std::nullopt;
    }
    // A base above the home directory is not abbreviated while this path is: the normalized texts are told apart then.
    if (auto relative = textAfter(denormalizedString(), base->denormalizedString())) {
        return relative;
    }
    return textAfter(string(), base->string());
}

std::optional<std::string> HSVNPath::pathWithSymlinksRelativeTo(const HSVNPathRef& base) const
{
    HSVNAssertParameter(base != nullptr, "base != nil");
    if (isEqualToPath(base)) {
        return ".";
    }
    if (isDescendentOfPath(base)) {
        return "." + pathRelativeTo(base).value_or("");
    }
    const auto ancestor = commonAncestorFor(base);
    if (!ancestor) {
        return std::nullopt;
    }
    std::string relative;
    for (auto steps = stepsUp(base, *ancestor); steps > 0; --steps) {
        relative += relative.empty() ? ".." : "/..";
    }
    return relative + wayDown(*this, ancestor);
}

HSVNPathRef HSVNPath::pathAtRelative(const std::string& path) const
{
    HSVNPathRef current = self();
    HSVNPathText::forEachStep(path, [&](const std::string& step) {
        current = step == ".." ? current->parent() : current->pathByAddingComponent(step);
        return current != nullptr;
    });
    return current;
}

HSVNPathRef HSVNPath::ancestorOfSize(std::size_t /*size*/) const { return nullptr; }

/// How many parents lie between the two, or how many the path has at all when the other is none of them.
std::size_t HSVNPath::stepsUp(const HSVNPathRef& path, const HSVNPath& ancestor)
{
    const auto& text = ancestor.string();
    if (const auto sizes = path->ancestorSizes(); !sizes.empty()) {
        const auto found = path->string().starts_with(text) ? std::ranges::find(sizes, text.size()) : sizes.end();
        return static_cast<std::size_t>(found - sizes.begin());
    }
    std::size_t steps = 0;
    for (auto step = path; step && step->string() != text; step = step->parent()) {
        ++steps;
    }
    return steps;
}

HSVNPathRef HSVNPath::resolve() const
{
    bool wasLink = false;
    return resolve(&wasLink);
}

HSVNPathRef HSVNPath::resolvedPath(bool* wasLink) const
{
    HSVNAssertParameter(wasLink != nullptr, "wasLink != nil");
    *wasLink = false;
    return self();
}

std::optional<std::string> HSVNPath::cStringUsingEncoding(const std::string& encoding) const
{
    return convertedFromUTF8(string(), encoding);
}

HSVNComparisonResult HSVNPath::compare(const HSVNPathRef& other) const
{
    if (!other) {
        return HSVNOrderedDescending;
    }
    const int order = string().compare(other->string());
    return order == 0 ? HSVNOrderedSame : order < 0 ? HSVNOrderedAscending : HSVNOrderedDescending;
}

void HSVNPath::encodeWithCoder(HSVNCoder* encoder) const { HSVNRequireKeyedArchiver(encoder); }

HSVNPathRef HSVNPath::self() const
{
    auto owned = weak_from_this().lock();
    return owned ? owned : copy();
}

void HSVNPath::failUnrecognised(const char* operation) const
{
    throw HSVNInvalidArgumentException(fmt::format("[{} {}]: unrecognised operation", className(), operation));
}
