#include "HSVNRevisionRange.h"

#include "HSVNException.h"

#include <fmt/format.h>

namespace {

bool isOpen(const HSVNRevision& bound) { return bound == *HSVNRevision::UNSPECIFIED(); }

bool hasNumber(const HSVNRevision& revision) { return revision.number() != HSVNInvalidRevision; }

void requireBound(const HSVNRevision& bound)
{
    HSVNAssertParameter(hasNumber(bound) || bound.date() || isOpen(bound),
                        "revision is numbered, dated or UNSPECIFIED");
}

std::string describeBound(const HSVNRevision& bound) { return isOpen(bound) ? "*" : bound.description(); }

} // namespace

HSVNRevisionRange::HSVNRevisionRange() : _first{HSVNRevision::UNSPECIFIED()}, _last{HSVNRevision::UNSPECIFIED()} {}

HSVNRevisionRange::HSVNRevisionRange(const HSVNRevisionRef& first, const HSVNRevisionRef& last)
{
    setFirst(first);
    setLast(last);
}

std::shared_ptr<HSVNRevisionRange> HSVNRevisionRange::all() { return std::make_shared<HSVNRevisionRange>(); }

std::shared_ptr<HSVNRevisionRange> HSVNRevisionRange::from(const HSVNRevisionRef& first, const HSVNRevisionRef& last)
{
    return std::make_shared<HSVNRevisionRange>(first, last);
}

std::shared_ptr<HSVNRevisionRange> HSVNRevisionRange::from(const HSVNRevisionRef& first)
{
    return from(first, HSVNRevision::UNSPECIFIED());
}

std::shared_ptr<HSVNRevisionRange> HSVNRevisionRange::to(const HSVNRevisionRef& last)
{
    return from(HSVNRevision::UNSPECIFIED(), last);
}

void HSVNRevisionRange::setFirst(const HSVNRevisionRef& first)
{
    HSVNAssertParameter(first != nullptr, "first != nil");
    requireBound(*first);
    _first = first;
}

void HSVNRevisionRange::setLast(const HSVNRevisionRef& last)
{
    HSVNAssertParameter(last != nullptr, "last != nil");
    requireBound(*last);
    _last = last;
}

bool HSVNRevisionRange::hasLowerBound() const { return !isOpen(*_first); }

bool HSVNRevisionRange::hasUpperBound() const { return !isOpen(*_last); }

bool HSVNRevisionRange::isNumberRange() const { return hasNumber(*_first) || hasNumber(*_last); }

bool HSVNRevisionRange::isDateRange() const { return _first->date() || _last->date(); }

bool HSVNRevisionRange::containsNumber(HSVNRevisionNumber number) const
{
    HSVNAssertParameter(number >= 0, "number >= 0");
    const bool isAboveFirst = hasNumber(*_first) ? number >= firstNumber() : !hasLowerBound();
    const bool isBelowLast = hasNumber(*_last) ? number <= lastNumber() : !hasUpperBound();
    return isAboveFirst && isBelowLast;
}

bool HSVNRevisionRange::containsDate(const std::optional<HSVNDate>& date) const
{
    HSVNAssertParameter(date.has_value(), "date != nil");
    const bool isAfterFirst = firstDate() ? *date >= *firstDate() : !hasLowerBound();
    const bool isBeforeLast = lastDate() ? *date <= *lastDate() : !hasUpperBound();
    return isAfterFirst && isBeforeLast;
}

bool HSVNRevisionRange::containsRevision(const HSVNRevisionRef& revision) const
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    if (hasNumber(*revision)) {
        return containsNumber(revision->number());
    }
    if (const auto date = revision->date()) {
        return containsDate(date);
    }
    throw HSVNException("Date or numeric revision required for range match");
}

std::shared_ptr<HSVNRevisionRange> HSVNRevisionRange::copy() const
{
    return std::make_shared<HSVNRevisionRange>(*this);
}

std::string HSVNRevisionRange::description() const
{
    return fmt::format("{{ {} - {} }}", describeBound(*_first), describeBound(*_last));
}

bool operator==(const HSVNRevisionRange& a, const HSVNRevisionRange& b)
{
    return *a._first == *b._first && *a._last == *b._last;
}
