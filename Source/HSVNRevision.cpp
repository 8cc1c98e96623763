#include "HSVNRevision.h"

#include "HSVNException.h"
#include "Internal/Characters.h"
#include "Internal/Everlasting.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Subversion.h"
#include "Internal/Unicode.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <limits>

namespace {

HSVNComparisonResult comparisonResult(std::int64_t a, std::int64_t b)
{
    if (a == b) {
        return HSVNOrderedSame;
    }
    return a < b ? HSVNOrderedAscending : HSVNOrderedDescending;
}

/// The shared symbolic revision that a text names, or null.
const HSVNRevisionRef* revisionNamed(const std::string& text, std::uint32_t behavior)
{
    struct Name
    {
        HSVNRevisionBehavior flag;
        const HSVNRevisionRef& (*revision)();
    };
    constexpr Name names[] = {{HSVNRevisionAllowsHead, HSVNRevision::HEAD},
                              {HSVNRevisionAllowsPrevious, HSVNRevision::PREVIOUS},
                              {HSVNRevisionAllowsBase, HSVNRevision::BASE},
                              {HSVNRevisionAllowsWorking, HSVNRevision::WORKING},
                              {HSVNRevisionAllowsCommitted, HSVNRevision::COMMITTED}};
    const auto* match = std::ranges::find_if(names, [&](const Name& name) {
        return (behavior & name.flag) != 0 && HSVNText::equalIgnoringCase(text, name.revision()->description());
    });
    return match == std::end(names) ? nullptr : &match->revision();
}

/// The number that ends a text and that only white space precedes; nil for anything else and beyond 32 bits.
std::optional<std::int32_t> scannedNumber(std::string_view text)
{
    std::string_view digits{HSVNText::trimmed(text).data(), text.data() + text.size()};
    if (digits.starts_with('+') && !digits.starts_with("+-")) {
        digits.remove_prefix(1);
    }
    std::int32_t number = 0;
    const auto* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    return error == std::errc{} && stop == end ? std::optional{number} : std::nullopt;
}

svn_opt_revision_t makeSVNRevision(svn_opt_revision_kind kind)
{
    svn_opt_revision_t revision{};
    revision.kind = kind;
    return revision;
}

bool isSymbolicKind(std::int32_t kind)
{
    return kind == svn_opt_revision_unspecified || (kind > svn_opt_revision_date && kind <= svn_opt_revision_head);
}

/// What rule six of the order compares: relative revisions by kind, all others as UNSPECIFIED.
std::int32_t orderingKind(const HSVNRevision& revision)
{
    const auto* relative = dynamic_cast<const HSVNRelativeRevision*>(&revision);
    return relative ? relative->kind() : std::int32_t{svn_opt_revision_unspecified};
}

template <class Class, class... Arguments>
HSVNRevisionRef made(Arguments... arguments)
{
    return std::make_shared<Class>(arguments...);
}

/// The symbolic revisions of the process.
struct SharedRevisions
{
    HSVNRevisionRef head = made<HSVNHeadRevision>();
    HSVNRevisionRef previous = made<HSVNRelativeRevision>(svn_opt_revision_previous, "PREV");
    HSVNRevisionRef base = made<HSVNRelativeRevision>(svn_opt_revision_base, "BASE");
    HSVNRevisionRef working = made<HSVNRelativeRevision>(svn_opt_revision_working, "WORK");
    HSVNRevisionRef committed = made<HSVNRelativeRevision>(svn_opt_revision_committed, "COMMITTED");
    HSVNRevisionRef unspecified = made<HSVNRelativeRevision>(svn_opt_revision_unspecified, "UNSPECIFIED");
    HSVNRevisionRef mine = made<HSVNMineRevision>();
};

const SharedRevisions& sharedRevisions()
{
    static const HSVNEverlasting<SharedRevisions> shared;
    return *shared;
}

} // namespace

const HSVNRevisionRef& HSVNRevision::HEAD() { return sharedRevisions().head; }
const HSVNRevisionRef& HSVNRevision::PREVIOUS() { return sharedRevisions().previous; }
const HSVNRevisionRef& HSVNRevision::BASE() { return sharedRevisions().base; }
const HSVNRevisionRef& HSVNRevision::WORKING() { return sharedRevisions().working; }
const HSVNRevisionRef& HSVNRevision::COMMITTED() { return sharedRevisions().committed; }
const HSVNRevisionRef& HSVNRevision::UNSPECIFIED() { return sharedRevisions().unspecified; }
const HSVNRevisionRef& HSVNRevision::MINE() { return sharedRevisions().mine; }

HSVNRevisionRef HSVNRevision::revision() { return std::make_shared<HSVNHeadRevision>(); }

HSVNRevisionRef HSVNRevision::revisionWithNumber(HSVNRevisionNumber number)
{
    HSVNAssertParameter(number >= 0, "number >= 0");
    return std::make_shared<HSVNNumberedRevision>(number);
}

HSVNRevisionRef HSVNRevision::revisionAtDate(const std::optional<HSVNDate>& date)
{
    HSVNAssertParameter(date.has_value(), "date != nil");
    return std::make_shared<HSVNRevisionAtDate>(*date);
}

HSVNRevisionRef HSVNRevision::revisionFromString(const std::optional<std::string>& text)
{
    return revisionFromString(text, HSVNRevisionAllowsAll);
}

HSVNRevisionRef HSVNRevision::revisionFromString(const std::optional<std::string>& text, std::uint32_t behavior)
{
    if (!text || text->empty()) {
        return UNSPECIFIED();
    }
    if (const auto* named = revisionNamed(*text, behavior)) {
        return *named;
    }
    if ((behavior & HSVNRevisionAllowsDate) != 0) {
        if (const auto date = parseDateString(*text)) {
            return revisionAtDate(date);
        }
    }
    if ((behavior & HSVNRevisionAllowsNumber) == 0) {
        return nullptr;
    }
    const auto number = scannedNumber(*text);
    return number ? revisionWithNumber(*number) : nullptr;
}

std::optional<HSVNDate> HSVNRevision::parseDateString(const std::string& text)
{
    const auto milliseconds = HSVNUnicode::shared().dateInLocaleStyle(text);
    return milliseconds ? std::optional{HSVNDate{*milliseconds * 1000}} : std::nullopt;
}

HSVNRevisionRef HSVNRevision::revisionFromSVNRevision(const svn_opt_revision_t* revision)
{
    HSVNAssertParameter(revision != nullptr, "revision != NULL");
    switch (revision->kind) {
    case svn_opt_revision_unspecified:
        return UNSPECIFIED();
    case svn_opt_revision_number:
        return revisionWithNumber(HSVNRevisionNumberFromSubversion(revision->value.number));
    case svn_opt_revision_date:
        return revisionAtDate(HSVNDate::dateWithAPRTime(revision->value.date));
    case svn_opt_revision_committed:
        return COMMITTED();
    case svn_opt_revision_previous:
        return PREVIOUS();
    case svn_opt_revision_base:
        return BASE();
    case svn_opt_revision_working:
        return WORKING();
    case svn_opt_revision_head:
        return HEAD();
    }
    throw HSVNInvalidArgumentException("Unrecognised revision kind");
}

HSVNRevision::HSVNRevision(HSVNCoder* decoder) { HSVNRequireKeyedUnarchiver(decoder); }

HSVNRevisionNumber HSVNRevision::number() const { return HSVNInvalidRevision; }

std::optional<HSVNDate> HSVNRevision::date() const { return std::nullopt; }

bool HSVNRevision::isRelative() const { return false; }

svn_opt_revision_t HSVNRevision::SVNRevision() const
{
    const auto checked = record();
    HSVNAssertParameter(checked.kind != svn_opt_revision_number || checked.value.number >= 0, "number >= 0");
    return checked;
}

HSVNComparisonResult HSVNRevision::compare(const HSVNRevisionRef& other) const
{
    if (!other) {
        return HSVNOrderedDescending;
    }
    const bool hasNumber = number() != HSVNInvalidRevision;
    const bool otherHasNumber = other->number() != HSVNInvalidRevision;
    const auto ownDate = date();
    const auto otherDate = other->date();
    if (hasNumber && otherHasNumber) {
        return comparisonResult(number(), other->number());
    }
    if (ownDate && otherDate) {
        return comparisonResult(ownDate->microsecondsSince1970(), otherDate->microsecondsSince1970());
    }
    if (hasNumber) {
        return HSVNOrderedAscending;
    }
    if (ownDate) {
        return otherHasNumber ? HSVNOrderedDescending : HSVNOrderedAscending;
    }
    return comparisonResult(orderingKind(*this), orderingKind(*other));
}

std::size_t HSVNRevision::hash() const { return std::hash<const HSVNRevision*>{}(this); }

void HSVNRevision::encodeWithCoder(HSVNCoder* encoder) const { HSVNRequireKeyedArchiver(encoder); }

bool HSVNRevision::isEqualToRevision(const HSVNRevision& other) const { return this == &other; }

HSVNNumberedRevision::HSVNNumberedRevision(HSVNRevisionNumber number) : _number{number} {}

HSVNNumberedRevision::HSVNNumberedRevision(HSVNCoder* decoder)
    : HSVNRevision{decoder}, _number{decoder->decodeRequiredInt32("number")}
{
}

std::string HSVNNumberedRevision::description() const { return fmt::format("{}", _number); }

svn_opt_revision_t HSVNNumberedRevision::record() const
{
    auto revision = makeSVNRevision(svn_opt_revision_number);
    revision.value.number = _number;
    return revision;
}

HSVNRevisionRef HSVNNumberedRevision::copy() const { return std::make_shared<HSVNNumberedRevision>(_number); }

std::size_t HSVNNumberedRevision::hash() const { return static_cast<std::size_t>(_number); }

void HSVNNumberedRevision::encodeWithCoder(HSVNCoder* encoder) const
{
    HSVNRevision::encodeWithCoder(encoder);
    encoder->encodeInteger(_number, "number");
}

bool HSVNNumberedRevision::isEqualToRevision(const HSVNRevision& other) const
{
    const auto* numbered = dynamic_cast<const HSVNNumberedRevision*>(&other);
    return numbered && numbered->_number == _number;
}

HSVNRelativeRevision::HSVNRelativeRevision(std::int32_t kind, std::string description)
    : _kind{kind}, _description{std::move(description)}
{
    if (!isSymbolicKind(kind)) {
        throw HSVNInvalidArgumentException(fmt::format("Not a kind of a relative revision: {}", kind));
    }
}

HSVNRelativeRevision::HSVNRelativeRevision(HSVNCoder* decoder)
    : HSVNRelativeRevision{HSVNRequireKeyedUnarchiver(decoder)->decodeRequiredInt32("kind"),
                           decoder->decodeRequiredString("description")}
{
}

bool HSVNRelativeRevision::isRelative() const { return _kind > svn_opt_revision_date; }

svn_opt_revision_t HSVNRelativeRevision::record() const
{
    return makeSVNRevision(static_cast<svn_opt_revision_kind>(_kind));
}

HSVNRevisionRef HSVNRelativeRevision::copy() const
{
    return std::make_shared<HSVNRelativeRevision>(_kind, _description);
}

std::size_t HSVNRelativeRevision::hash() const { return static_cast<std::size_t>(_kind); }

void HSVNRelativeRevision::encodeWithCoder(HSVNCoder* encoder) const
{
    HSVNRevision::encodeWithCoder(encoder);
    encoder->encodeInteger(_kind, "kind");
    encoder->encodeString(_description, "description");
}

bool HSVNRelativeRevision::isEqualToRevision(const HSVNRevision& other) const
{
    const auto* relative = dynamic_cast<const HSVNRelativeRevision*>(&other);
    return relative && relative->_kind == _kind;
}

HSVNHeadRevision::HSVNHeadRevision() : HSVNRelativeRevision{svn_opt_revision_head, "HEAD"} {}

HSVNHeadRevision::HSVNHeadRevision(HSVNCoder* decoder) : HSVNHeadRevision{}
{
    const auto kind = HSVNRequireKeyedUnarchiver(decoder)->decodeRequiredInt32("kind");
    if (kind != svn_opt_revision_head) {
        throw HSVNInvalidArgumentException(fmt::format("Value of \"kind\" is not HEAD: {}", kind));
    }
}

HSVNRevisionRef HSVNHeadRevision::copy() const { return std::make_shared<HSVNHeadRevision>(); }

HSVNRevisionAtDate::HSVNRevisionAtDate(const HSVNDate& date) : _date{date} {}

HSVNRevisionAtDate::HSVNRevisionAtDate(HSVNCoder* decoder)
    : HSVNRevision{decoder}, _date{decoder->decodeRequiredDate("date")}
{
}

std::string HSVNRevisionAtDate::description() const { return _date.ISO8601StringValue(); }

svn_opt_revision_t HSVNRevisionAtDate::recordAtTime(std::int64_t time)
{
    auto revision = makeSVNRevision(svn_opt_revision_date);
    revision.value.date = time;
    return revision;
}

svn_opt_revision_t HSVNRevisionAtDate::record() const { return recordAtTime(_date.APRTime()); }

HSVNRevisionRef HSVNRevisionAtDate::copy() const { return std::make_shared<HSVNRevisionAtDate>(_date); }

std::size_t HSVNRevisionAtDate::hash() const { return std::hash<HSVNDate>{}(_date); }

void HSVNRevisionAtDate::encodeWithCoder(HSVNCoder* encoder) const
{
    HSVNRevision::encodeWithCoder(encoder);
    encoder->encodeDate(_date, "date");
}

bool HSVNRevisionAtDate::isEqualToRevision(const HSVNRevision& other) const
{
    const auto* dated = dynamic_cast<const HSVNRevisionAtDate*>(&other);
    return dated && dated->_date == _date;
}

svn_opt_revision_t HSVNRevisionAtExactDate::record() const { return recordAtTime(date()->microsecondsSince1970()); }

HSVNRevisionRef HSVNRevisionAtExactDate::copy() const { return std::make_shared<HSVNRevisionAtExactDate>(*date()); }

HSVNMineRevision::HSVNMineRevision(HSVNCoder* decoder) : HSVNRevision{decoder} {}

svn_opt_revision_t HSVNMineRevision::record() const
{
    throw HSVNException("Cannot convert from HSVNMineRevision to svn_opt_revision_t");
}

HSVNRevisionRef HSVNMineRevision::copy() const { return std::make_shared<HSVNMineRevision>(); }

std::size_t HSVNMineRevision::hash() const { return std::hash<std::string>{}(description()); }

bool HSVNMineRevision::isEqualToRevision(const HSVNRevision& other) const
{
    return dynamic_cast<const HSVNMineRevision*>(&other) != nullptr;
}
