#include "HSVNLogItem.h"

#include "HSVNDebug.h"
#include "HSVNPlatformException.h"
#include "Internal/CompactDate.h"
#include "Internal/Everlasting.h"
#include "Internal/LogChanges.h"
#include "Internal/PathText.h"
#include "Internal/Text.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>

// A log makes one of each for every revision and path: what few have is stored apart.
static_assert(sizeof(void*) != 8 || (sizeof(HSVNLogItem) <= 136 && sizeof(HSVNLogPathChange) <= 56));

namespace {

constexpr std::size_t describedMessageLength = 50;
constexpr std::size_t dashedLineLength = 72;

// "/a/b" gives "/a", "/a" gives "/", "a" and "/" give the empty text.
std::string_view withoutLastComponent(std::string_view path)
{
    const auto lastCharacter = path.find_last_not_of('/');
    if (lastCharacter == std::string_view::npos) {
        return {};
    }
    const auto separator = path.find_last_of('/', lastCharacter);
    if (separator == std::string_view::npos) {
        return {};
    }
    return path.substr(0, separator == 0 ? 1 : separator);
}

/// The changes as objects; null has none.
const HSVNLogChanges::Map& objectsOf(const std::shared_ptr<HSVNLogChanges>& changes)
{
    static const HSVNEverlasting<HSVNLogChanges::Map> none;
    return changes ? std::as_const(*changes).objects() : *none;
}

/// The same to be changed; what other items have, too, they keep.
HSVNLogChanges::Map& ownObjects(std::shared_ptr<HSVNLogChanges>& changes)
{
    if (!changes || changes.use_count() > 1) {
        changes = std::make_shared<HSVNLogChanges>(objectsOf(changes));
    }
    return changes->objects();
}

} // namespace

HSVNLogItem::HSVNLogItem(std::optional<std::string> message, HSVNRevisionNumber revision, std::optional<HSVNDate> date,
                         std::optional<std::string> author, const std::vector<HSVNLogPathChangeRef>& changes)
    : _message{std::move(message)}, _author{std::move(author)}, _date{HSVNCompactDate::of(date)}, _revision{revision}
{
    for (const auto& change : changes) {
        addChange(change);
    }
}

std::optional<HSVNDate> HSVNLogItem::date() const
{
    return _tellsSeconds ? HSVNCompactDate::seconds(_date) : HSVNCompactDate::value(_date);
}

std::optional<HSVNDate> HSVNLogItem::exactDate() const { return HSVNCompactDate::value(_date); }

void HSVNLogItem::setDate(const std::optional<HSVNDate>& date)
{
    _date = HSVNCompactDate::of(date);
    _tellsSeconds = false;
}

void HSVNLogItem::setExactDate(const std::optional<HSVNDate>& date)
{
    _date = HSVNCompactDate::of(date);
    _tellsSeconds = true;
}

const std::map<std::string, std::string>& HSVNLogItem::properties() const
{
    static const HSVNEverlasting<std::map<std::string, std::string>> none;
    return _properties ? *_properties : *none;
}

void HSVNLogItem::setProperties(std::map<std::string, std::string> properties)
{
    _properties = std::make_shared<const std::map<std::string, std::string>>(std::move(properties));
}

std::vector<std::string> HSVNLogItem::changedPaths() const
{
    std::vector<std::string> paths;
    for (const auto& [path, change] : objectsOf(_changes)) {
        paths.push_back(*path);
    }
    return paths;
}

std::vector<HSVNLogPathChangeRef> HSVNLogItem::changes() const
{
    const auto& objects = objectsOf(_changes);
    std::vector<HSVNLogPathChangeRef> changes;
    changes.reserve(objects.size());
    for (const auto& [path, change] : objects) {
        changes.push_back(change);
    }
    return changes;
}

std::vector<HSVNLogPathChangeRef> HSVNLogItem::sortedChanges() const
{
    auto sorted = changes();
    const auto isBefore = [](const auto& a, const auto& b) { return HSVNIsPathBefore(a->path(), b->path()); };
    // The order of their bytes, which they come in, is mostly that one.
    if (!std::is_sorted(sorted.begin(), sorted.end(), isBefore)) {
        std::sort(sorted.begin(), sorted.end(), isBefore);
    }
    return sorted;
}

std::vector<HSVNLogPathChangeRef> HSVNLogItem::changesWithAction(HSVNLogAction action) const
{
    auto matching = changes();
    std::erase_if(matching, [action](const auto& change) { return change->action() != action; });
    return matching;
}

HSVNLogPathChangeRef HSVNLogItem::changeForPath(std::string_view path) const
{
    const auto& objects = objectsOf(_changes);
    const auto found = objects.find(path);
    return found == objects.end() ? nullptr : found->second;
}

HSVNLogPathChangeRef HSVNLogItem::changeForAncestorOfPath(const std::optional<std::string>& path) const
{
    HSVNAssertParameter(path.has_value(), "path != nil");
    for (std::string_view ancestor = *path; !ancestor.empty(); ancestor = withoutLastComponent(ancestor)) {
        if (auto change = changeForPath(ancestor)) {
            return change;
        }
    }
    return nullptr;
}

void HSVNLogItem::addChange(const HSVNLogPathChangeRef& change)
{
    HSVNAssertParameter(change != nullptr, "change != nil");
    ownObjects(_changes).insert_or_assign(change->_path, change);
}

void HSVNLogItem::removeChange(const HSVNLogPathChangeRef& change)
{
    HSVNAssertParameter(change != nullptr, "change != nil");
    removeChangeWithPath(change->path());
}

void HSVNLogItem::removeChangeWithPath(std::string_view path)
{
    auto& objects = ownObjects(_changes);
    if (const auto found = objects.find(path); found != objects.end()) {
        objects.erase(found);
    }
}

void HSVNLogItem::assignFrom(const std::shared_ptr<const HSVNLogItem>& item)
{
    HSVNAssertParameter(item != nullptr, "item != nil");
    *this = *item;
}

bool HSVNLogItem::isInRange(const HSVNRevisionRangeRef& range) const
{
    HSVNAssertParameter(range != nullptr, "range != nil");
    if (range->isNumberRange()) {
        return range->containsNumber(_revision);
    }
    return !range->isDateRange() || range->containsDate(date());
}

std::string HSVNLogItem::description() const
{
    return fmt::format(R"({{ {} revision: {}, date: {}, author: "{}", message: "{}" }})", objectDescription(),
                       _revision, HSVNDescription(date()), HSVNDescription(_author),
                       HSVNDescription(HSVNDebugSubstring(_message, describedMessageLength)));
}

std::string HSVNLogItem::stringValue() const
{
    std::string text(dashedLineLength, '-');
    text += '\n';
    const auto output = std::back_inserter(text);
    fmt::format_to(output, "r{} | {} | {}\nChanged paths:\n", _revision, HSVNDescription(_author),
                   HSVNDescription(date()));
    for (const auto& [path, change] : objectsOf(_changes)) {
        fmt::format_to(output, "  {} {}", HSVNCharFromLogAction(change->action()), *path);
        if (const auto copyPath = change->copyPath()) {
            fmt::format_to(output, " (from {}:{})", *copyPath, change->copyRevision());
        }
        text += '\n';
    }
    fmt::format_to(output, "\n{}\n", HSVNDescription(_message));
    return text;
}
