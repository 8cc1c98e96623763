#pragma once

#include "HSVNRevision.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

class HSVNMutableRevisionSpec;

using HSVNMutableRevisionSpecRef = std::shared_ptr<HSVNMutableRevisionSpec>;

/// The ways to make a `HSVNRevisionSpec`, or a `HSVNMutableRevisionSpec`.
template <class Spec, class Made>
class HSVNRevisionSpecFactories
{
  public:
    /// The peg revision stays UNSPECIFIED; `operativeRevision` is not nil ("theOperativeRevision != nil").
    static std::shared_ptr<Made> revisionWithRevision(const HSVNRevisionRef& operativeRevision)
    {
        return std::make_shared<Spec>(operativeRevision);
    }
    /// Neither may be nil ("theOperativeRevision != nil", "thePegRevision != nil").
    static std::shared_ptr<Made> revisionWithRevision(const HSVNRevisionRef& operativeRevision,
                                                      const HSVNRevisionRef& pegRevision)
    {
        return std::make_shared<Spec>(operativeRevision, pegRevision);
    }
    /// The operative revision stays UNSPECIFIED; `pegRevision` is not nil ("thePegRevision != nil").
    static std::shared_ptr<Made> pegRevisionWithRevision(const HSVNRevisionRef& pegRevision)
    {
        return std::make_shared<Spec>(HSVNRevision::UNSPECIFIED(), pegRevision);
    }
    /// A number, not negative ("number >= 0"), as the operative revision.
    static std::shared_ptr<Made> revisionWithNumber(HSVNRevisionNumber number)
    {
        return revisionWithRevision(HSVNRevision::revisionWithNumber(number));
    }
    /// A date, not nil ("date != nil"), as the operative revision.
    static std::shared_ptr<Made> revisionAtDate(const std::optional<HSVNDate>& date)
    {
        return revisionWithRevision(HSVNRevision::revisionAtDate(date));
    }
    /// A number, not negative ("number >= 0"), as the peg revision.
    static std::shared_ptr<Made> pegRevisionWithNumber(HSVNRevisionNumber number)
    {
        return pegRevisionWithRevision(HSVNRevision::revisionWithNumber(number));
    }
    /// A date, not nil ("date != nil"), as the peg revision.
    static std::shared_ptr<Made> pegRevisionAtDate(const std::optional<HSVNDate>& date)
    {
        return pegRevisionWithRevision(HSVNRevision::revisionAtDate(date));
    }
};

/// The two revisions that address an item in a repository: the peg revision says in which revision the path is looked
/// up, the operative revision which state of that item is wanted. An unset side is UNSPECIFIED, never nil. Immutable.
class HSVN_EXPORT HSVNRevisionSpec : public HSVNArchivable,
                                     public HSVNRevisionSpecFactories<HSVNRevisionSpec, const HSVNRevisionSpec>
{
  public:
    /// The peg revision stays UNSPECIFIED. Not nil ("theOperativeRevision != nil").
    explicit HSVNRevisionSpec(HSVNRevisionRef theOperativeRevision);
    /// A null that is written out is such a revision, not a decoder ("theOperativeRevision != nil").
    explicit HSVNRevisionSpec(std::nullptr_t) : HSVNRevisionSpec{HSVNRevisionRef{}} {}
    /// Neither may be nil ("theOperativeRevision != nil", "thePegRevision != nil").
    HSVNRevisionSpec(HSVNRevisionRef theOperativeRevision, HSVNRevisionRef thePegRevision);
    /// @throws HSVNInvalidArgumentException "Keyed archiver required", or for a revision that is missing
    explicit HSVNRevisionSpec(HSVNCoder* decoder);

    /// The shared specifications: this operative revision, peg UNSPECIFIED; each call returns the same object.
    static const HSVNRevisionSpecRef& HEAD();
    /// The shared WORKING.
    static const HSVNRevisionSpecRef& WORKING();
    /// The shared BASE.
    static const HSVNRevisionSpecRef& BASE();
    /// The shared PREVIOUS.
    static const HSVNRevisionSpecRef& PREVIOUS();
    /// The shared COMMITTED.
    static const HSVNRevisionSpecRef& COMMITTED();
    /// Both revisions UNSPECIFIED.
    static const HSVNRevisionSpecRef& UNSPECIFIED();
    /// The shared MINE.
    static const HSVNRevisionSpecRef& MINE();

    /// Which state of the item is wanted; never nil.
    const HSVNRevisionRef& operativeRevision() const { return _operativeRevision; }
    /// The revision in which the path is looked up; never nil.
    const HSVNRevisionRef& pegRevision() const { return _pegRevision; }
    /// The operative revision unless it is UNSPECIFIED, else the peg revision.
    const HSVNRevisionRef& keyRevision() const;
    /// The key revision's number, `HSVNInvalidRevision` when it has none.
    HSVNRevisionNumber number() const { return keyRevision()->number(); }
    /// The key revision's date, nil when it has none.
    std::optional<HSVNDate> date() const { return keyRevision()->date(); }
    /// Whether the key revision is a relative one.
    bool isRelative() const { return keyRevision()->isRelative(); }

    /// An immutable specification with the same revisions.
    HSVNRevisionSpecRef copy() const;
    /// A specification with the same revisions that can be changed.
    HSVNMutableRevisionSpecRef mutableCopy() const;
    /// Equality of both revisions, whether mutable or not; nil gives false.
    bool isEqual(const HSVNRevisionSpecRef& other) const { return other && *this == *other; }
    /// Equal specifications have equal hashes.
    std::size_t hash() const { return _operativeRevision->hash() ^ _pegRevision->hash(); }

    std::string className() const override { return "HSVNRevisionSpec"; }
    /// Both descriptions, such as "123@HEAD" and "HEAD@UNSPECIFIED".
    std::string description() const override;
    /// Keys: "operativeRevision", "pegRevision".
    void encodeWithCoder(HSVNCoder* encoder) const override;

    /// Equality of both revisions.
    HSVN_EXPORT friend bool operator==(const HSVNRevisionSpec& a, const HSVNRevisionSpec& b);

  protected:
    /// Nil unsets the side: it becomes UNSPECIFIED.
    void assignOperativeRevision(const HSVNRevisionRef& revision);
    /// Nil unsets the side: it becomes UNSPECIFIED.
    void assignPegRevision(const HSVNRevisionRef& revision);

  private:
    HSVNRevisionRef _operativeRevision;
    HSVNRevisionRef _pegRevision;
};

/// A revision specification that can be changed; for use by one thread.
class HSVN_EXPORT HSVNMutableRevisionSpec
    : public HSVNRevisionSpec,
      public HSVNRevisionSpecFactories<HSVNMutableRevisionSpec, HSVNMutableRevisionSpec>
{
  public:
    /// The same constructors.
    using HSVNRevisionSpec::HSVNRevisionSpec;

    using Factories = HSVNRevisionSpecFactories<HSVNMutableRevisionSpec, HSVNMutableRevisionSpec>;
    using Factories::pegRevisionAtDate;
    using Factories::pegRevisionWithNumber;
    using Factories::pegRevisionWithRevision;
    using Factories::revisionAtDate;
    using Factories::revisionWithNumber;
    using Factories::revisionWithRevision;

    /// Nil unsets the operative revision.
    void setOperativeRevision(const HSVNRevisionRef& revision) { assignOperativeRevision(revision); }
    /// Nil unsets the peg revision.
    void setPegRevision(const HSVNRevisionRef& revision) { assignPegRevision(revision); }

    std::string className() const override { return "HSVNMutableRevisionSpec"; }
};

/// For unordered containers: by `hash`.
template <>
struct std::hash<HSVNRevisionSpec>
{
    std::size_t operator()(const HSVNRevisionSpec& spec) const noexcept { return spec.hash(); }
};
