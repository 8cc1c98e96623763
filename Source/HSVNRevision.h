#pragma once

#include "HSVNCoder.h"
#include "HSVNDate.h"
#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNTypes.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

struct svn_opt_revision_t;

/// The forms of text that `HSVNRevision::revisionFromString` accepts; combined by bitwise OR.
enum HSVNRevisionBehavior : std::uint32_t
{
    HSVNRevisionAllowsHead = 1,       ///< "HEAD"
    HSVNRevisionAllowsBase = 2,       ///< "BASE"
    HSVNRevisionAllowsPrevious = 4,   ///< "PREV"
    HSVNRevisionAllowsWorking = 8,    ///< "WORK"
    HSVNRevisionAllowsCommitted = 16, ///< "COMMITTED"
    HSVNRevisionAllowsNumber = 32,    ///< a whole number
    HSVNRevisionAllowsDate = 64,      ///< a date in one of the current locale's four styles
    HSVNRevisionAllowsAll = 127
};

/// One state of a versioned item: a number, a moment, a symbolic revision of Subversion, or MINE, the user's side of a
/// conflict. An immutable value; may be shared between threads.
class HSVN_EXPORT HSVNRevision : public HSVNArchivable
{
  public:
    /// The shared symbolic revisions; each call returns the same object.
    static const HSVNRevisionRef& HEAD();
    /// The shared PREV: the last changed revision before COMMITTED.
    static const HSVNRevisionRef& PREVIOUS();
    /// The shared BASE: the revision that a working copy's item is based on.
    static const HSVNRevisionRef& BASE();
    /// The shared WORKING: an item as it is in the working copy.
    static const HSVNRevisionRef& WORKING();
    /// The shared COMMITTED: the last revision, up to BASE, in which an item changed.
    static const HSVNRevisionRef& COMMITTED();
    /// The shared UNSPECIFIED: no revision in particular.
    static const HSVNRevisionRef& UNSPECIFIED();
    /// The shared MINE: the user's side of a conflict.
    static const HSVNRevisionRef& MINE();

    /// A plainly made revision, which is a new HEAD.
    static HSVNRevisionRef revision();
    /// A new numbered revision; the number must not be negative ("number >= 0").
    static HSVNRevisionRef revisionWithNumber(HSVNRevisionNumber number);
    /// A new dated revision; the date must not be nil ("date != nil"). Subversion is given whole seconds, so that a
    /// commit later in the same second is not found: `HSVNRevisionAtExactDate` finds it.
    static HSVNRevisionRef revisionAtDate(const std::optional<HSVNDate>& date);

    /// The revision that a user's text means, every form accepted.
    static HSVNRevisionRef revisionFromString(const std::optional<std::string>& text);
    /// The revision that a user's text means.
    ///
    /// @param text      names ignore case; a number may follow white space and must end the text
    /// @param behavior  the accepted forms, `HSVNRevisionBehavior` bits
    /// @return UNSPECIFIED for a nil or empty text whatever the flags; nil for a text of no accepted form and for a
    ///         number beyond 32 bits
    /// @throws HSVNAssertionException for a negative number
    static HSVNRevisionRef revisionFromString(const std::optional<std::string>& text, std::uint32_t behavior);
    /// The date that a whole text means in the current locale's short, medium, long or full style, tried in this order;
    /// local midnight of that day, or nil.
    static std::optional<HSVNDate> parseDateString(const std::string& text);
    /// The revision of a Subversion record; not null.
    ///
    /// @throws HSVNInvalidArgumentException "Unrecognised revision kind", or for a number beyond 32 bits
    static HSVNRevisionRef revisionFromSVNRevision(const svn_opt_revision_t* revision);

    /// The number; `HSVNInvalidRevision` for every other kind.
    virtual HSVNRevisionNumber number() const;
    /// The moment of a dated revision, else nil.
    virtual std::optional<HSVNDate> date() const;
    /// Whether the revision moves with the repository or the working copy; not so for UNSPECIFIED.
    virtual bool isRelative() const;
    /// The record that Subversion takes. There is none of a negative number, which Subversion takes for HEAD here, for
    /// a fault there.
    ///
    /// @throws an assertion "number >= 0"
    /// @throws HSVNException "Cannot convert from HSVNMineRevision to svn_opt_revision_t"
    svn_opt_revision_t SVNRevision() const;
    /// A new object of the same class.
    virtual HSVNRevisionRef copy() const = 0;

    /// Numbers before dates before symbolic revisions by kind; every revision after nil.
    ///
    /// UNSPECIFIED and MINE answer "same" for a numbered or dated revision, which itself answers "ascending" for them:
    /// a sort must not compare these two with the others.
    HSVNComparisonResult compare(const HSVNRevisionRef& other) const;
    /// Equality by kind and value; nil gives false. Symbolic revisions of the same kind are equal.
    bool isEqual(const HSVNRevisionRef& other) const { return other && isEqualToRevision(*other); }
    /// Equal revisions have equal hashes.
    virtual std::size_t hash() const;

    /// A revision without fields; subclasses add theirs.
    void encodeWithCoder(HSVNCoder* encoder) const override;

    /// Equality by kind and value.
    friend bool operator==(const HSVNRevision& a, const HSVNRevision& b) { return a.isEqualToRevision(b); }

  protected:
    HSVNRevision() = default;
    explicit HSVNRevision(HSVNCoder* decoder);
    /// The record, untested: `SVNRevision` tests it.
    virtual svn_opt_revision_t record() const = 0;
    /// Identity unless a subclass knows better.
    virtual bool isEqualToRevision(const HSVNRevision& other) const;
};

/// A repository revision number.
class HSVN_EXPORT HSVNNumberedRevision : public HSVNRevision
{
  public:
    /// @param number  untested; `HSVNRevision::revisionWithNumber` and operations refuse negative ones
    explicit HSVNNumberedRevision(HSVNRevisionNumber number);
    /// @throws HSVNInvalidArgumentException for a number that is missing or does not fit 32 bits
    explicit HSVNNumberedRevision(HSVNCoder* decoder);

    std::string className() const override { return "HSVNNumberedRevision"; }
    /// The number in decimal.
    std::string description() const override;
    HSVNRevisionNumber number() const override { return _number; }
    HSVNRevisionRef copy() const override;
    std::size_t hash() const override;
    /// Key: "number".
    void encodeWithCoder(HSVNCoder* encoder) const override;

  protected:
    svn_opt_revision_t record() const override;
    bool isEqualToRevision(const HSVNRevision& other) const override;

  private:
    HSVNRevisionNumber _number;
};

/// A symbolic revision of Subversion.
class HSVN_EXPORT HSVNRelativeRevision : public HSVNRevision
{
  public:
    /// @param kind         a value of `svn_opt_revision_kind` other than number and date
    /// @param description  the display name
    HSVNRelativeRevision(std::int32_t kind, std::string description);
    /// @throws HSVNInvalidArgumentException for a kind that is missing or none of the symbolic ones
    explicit HSVNRelativeRevision(HSVNCoder* decoder);

    std::string className() const override { return "HSVNRelativeRevision"; }
    /// The display name.
    std::string description() const override { return _description; }
    /// The `svn_opt_revision_kind`.
    std::int32_t kind() const { return _kind; }
    bool isRelative() const override;
    HSVNRevisionRef copy() const override;
    /// The kind.
    std::size_t hash() const override;
    /// Keys: "kind", "description".
    void encodeWithCoder(HSVNCoder* encoder) const override;

  protected:
    svn_opt_revision_t record() const override;
    bool isEqualToRevision(const HSVNRevision& other) const override;

  private:
    std::int32_t _kind;
    std::string _description;
};

/// The newest revision of the repository.
class HSVN_EXPORT HSVNHeadRevision : public HSVNRelativeRevision
{
  public:
    /// A HEAD of its own, equal to every other.
    HSVNHeadRevision();
    /// @throws HSVNInvalidArgumentException for a kind that is missing or not that of HEAD
    explicit HSVNHeadRevision(HSVNCoder* decoder);

    std::string className() const override { return "HSVNHeadRevision"; }
    HSVNRevisionRef copy() const override;
};

/// The newest revision at a moment.
class HSVN_EXPORT HSVNRevisionAtDate : public HSVNRevision
{
  public:
    /// The newest revision at that moment.
    explicit HSVNRevisionAtDate(const HSVNDate& date);
    /// @throws HSVNInvalidArgumentException for a missing date
    explicit HSVNRevisionAtDate(HSVNCoder* decoder);

    std::string className() const override { return "HSVNRevisionAtDate"; }
    /// The date's `ISO8601StringValue`.
    std::string description() const override;
    std::optional<HSVNDate> date() const override { return _date; }
    HSVNRevisionRef copy() const override;
    std::size_t hash() const override;
    /// Key: "date".
    void encodeWithCoder(HSVNCoder* encoder) const override;

  protected:
    /// The record holds whole seconds.
    svn_opt_revision_t record() const override;
    bool isEqualToRevision(const HSVNRevision& other) const override;
    /// The revision's record with a time in microseconds since 1970.
    static svn_opt_revision_t recordAtTime(std::int64_t time);

  private:
    HSVNDate _date;
};

/// The newest revision at a moment, to the microsecond, as the dates of log entries are: of two revisions in one second
/// the first is found too. Equal to the revision at the same date, and archived as one.
class HSVN_EXPORT HSVNRevisionAtExactDate : public HSVNRevisionAtDate
{
  public:
    using HSVNRevisionAtDate::HSVNRevisionAtDate;

    HSVNRevisionRef copy() const override;

  protected:
    /// The record holds microseconds.
    svn_opt_revision_t record() const override;
};

/// The user's side of a conflict; has no Subversion record, so callers map it before any call.
class HSVN_EXPORT HSVNMineRevision : public HSVNRevision
{
  public:
    HSVNMineRevision() = default;
    /// @throws HSVNInvalidArgumentException "Keyed unarchiver required"
    explicit HSVNMineRevision(HSVNCoder* decoder);

    std::string className() const override { return "HSVNMineRevision"; }
    /// ".mine"
    std::string description() const override { return ".mine"; }
    bool isRelative() const override { return true; }
    HSVNRevisionRef copy() const override;
    std::size_t hash() const override;

  protected:
    svn_opt_revision_t record() const override;
    bool isEqualToRevision(const HSVNRevision& other) const override;
};

/// For unordered containers: by `hash`.
template <>
struct std::hash<HSVNRevision>
{
    std::size_t operator()(const HSVNRevision& revision) const noexcept { return revision.hash(); }
};
