#pragma once

#include "HSVNRevision.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

/// A pair of inclusive bounds, each a numbered revision, a dated one, or UNSPECIFIED for an open end; answers whether a
/// number or a date lies inside. Numbers and dates are not compared with each other.
class HSVN_EXPORT HSVNRevisionRange : public HSVNObject
{
  public:
    /// The whole history.
    HSVNRevisionRange();
    /// The given bounds, tested as `setFirst` and `setLast` do.
    HSVNRevisionRange(const HSVNRevisionRef& first, const HSVNRevisionRef& last);

    /// The whole history.
    static std::shared_ptr<HSVNRevisionRange> all();
    /// The constructor of that signature by another name.
    static std::shared_ptr<HSVNRevisionRange> from(const HSVNRevisionRef& first, const HSVNRevisionRef& last);
    /// Open at the upper end.
    static std::shared_ptr<HSVNRevisionRange> from(const HSVNRevisionRef& first);
    /// Open at the lower end.
    static std::shared_ptr<HSVNRevisionRange> to(const HSVNRevisionRef& last);

    /// The lower bound; never nil.
    const HSVNRevisionRef& first() const { return _first; }
    /// The upper bound; never nil.
    const HSVNRevisionRef& last() const { return _last; }
    /// Changes a bound; not nil ("first != nil"), and numbered, dated or UNSPECIFIED.
    void setFirst(const HSVNRevisionRef& first);
    /// Changes a bound; not nil ("last != nil"), and numbered, dated or UNSPECIFIED.
    void setLast(const HSVNRevisionRef& last);

    /// Whether the lower bound is other than UNSPECIFIED.
    bool hasLowerBound() const;
    /// Whether the upper bound is other than UNSPECIFIED.
    bool hasUpperBound() const;
    /// Whether either bound has a number.
    bool isNumberRange() const;
    /// Whether either bound has a date.
    bool isDateRange() const;
    /// The bound's number, `HSVNInvalidRevision` when it has none.
    HSVNRevisionNumber firstNumber() const { return _first->number(); }
    /// The bound's number, `HSVNInvalidRevision` when it has none.
    HSVNRevisionNumber lastNumber() const { return _last->number(); }
    /// The bound's date, nil when it has none.
    std::optional<HSVNDate> firstDate() const { return _first->date(); }
    /// The bound's date, nil when it has none.
    std::optional<HSVNDate> lastDate() const { return _last->date(); }

    /// Whether a number, which must not be negative ("number >= 0"), lies inside; a dated bound lets no number pass.
    bool containsNumber(HSVNRevisionNumber number) const;
    /// Whether a date, which must not be nil ("date != nil"), lies inside; a numbered bound lets no date pass.
    bool containsDate(const std::optional<HSVNDate>& date) const;
    /// Whether a numbered or dated revision, not nil ("revision != nil"), lies inside.
    ///
    /// @throws HSVNException "Date or numeric revision required for range match" for a symbolic revision
    bool containsRevision(const HSVNRevisionRef& revision) const;

    /// A new range of the same class with the same bounds. A subclass overrides it: the range is of its base class
    /// otherwise.
    virtual std::shared_ptr<HSVNRevisionRange> copy() const;
    /// Equality of both bounds; nil gives false.
    bool isEqual(const HSVNRevisionRangeRef& other) const { return other && *this == *other; }
    /// Equal ranges have equal hashes.
    std::size_t hash() const { return _first->hash() ^ _last->hash(); }

    std::string className() const override { return "HSVNRevisionRange"; }
    /// "{ 10 - * }", where "*" is an open end.
    std::string description() const override;

    /// Equality of both bounds.
    HSVN_EXPORT friend bool operator==(const HSVNRevisionRange& a, const HSVNRevisionRange& b);

  private:
    HSVNRevisionRef _first;
    HSVNRevisionRef _last;
};

/// For unordered containers: by `hash`.
template <>
struct std::hash<HSVNRevisionRange>
{
    std::size_t operator()(const HSVNRevisionRange& range) const noexcept { return range.hash(); }
};
