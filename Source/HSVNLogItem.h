#pragma once

#include "HSVNExport.h"
#include "HSVNLogPathChange.h"
#include "HSVNObject.h"
#include "HSVNRevisionRange.h"
#include "HSVNTypes.h"

#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class HSVNLogChanges;

/// One revision of a node's history: number, author, date, message and the paths changed in it.
class HSVN_EXPORT HSVNLogItem : public HSVNObject
{
  public:
    /// No values, `HSVNInvalidRevision`.
    HSVNLogItem() = default;
    /// @param message  the log message, nil when there is none
    /// @param author   who committed, nil when the repository does not say
    /// @param changes  each is recorded under its path as by `addChange`; none when not given
    HSVNLogItem(std::optional<std::string> message, HSVNRevisionNumber revision, std::optional<HSVNDate> date,
                std::optional<std::string> author, const std::vector<HSVNLogPathChangeRef>& changes = {});

    /// The log message, UTF-8; nil when there is none.
    const std::optional<std::string>& message() const { return _message; }
    void setMessage(std::optional<std::string> message) { _message = std::move(message); }
    /// The number of the revision; `HSVNInvalidRevision` when not set.
    HSVNRevisionNumber revision() const { return _revision; }
    void setRevision(HSVNRevisionNumber revision) { _revision = revision; }
    /// When it was committed; nil when the repository does not say.
    std::optional<HSVNDate> date() const;
    void setDate(const std::optional<HSVNDate>& date);
    /// The same to the microsecond, where a log that was read leaves `date` the whole seconds.
    std::optional<HSVNDate> exactDate() const;
    /// Sets `date`, too, to the whole seconds.
    void setExactDate(const std::optional<HSVNDate>& date);
    /// Who committed it; nil when the repository does not say.
    const std::optional<std::string>& author() const { return _author; }
    void setAuthor(std::optional<std::string> author) { _author = std::move(author); }

    /// All revision properties that the verb `log` was asked for, by name; among them "svn:date" as the repository has
    /// it, which need not be a date. Empty of an item that the class operation read.
    const std::map<std::string, std::string>& properties() const;
    void setProperties(std::map<std::string, std::string> properties);
    /// Whether a log was asked for the changed paths and told them.
    bool tellsChangedPaths() const { return _tellsChangedPaths; }
    void setTellsChangedPaths(bool tells) { _tellsChangedPaths = tells; }
    /// Whether the revisions that this one merged come next, up to the end of the children.
    bool hasChildren() const { return _hasChildren; }
    void setHasChildren(bool hasChildren) { _hasChildren = hasChildren; }
    /// Whether it was merged in reverse.
    bool isSubtractiveMerge() const { return _isSubtractiveMerge; }
    void setSubtractiveMerge(bool isSubtractive) { _isSubtractiveMerge = isSubtractive; }
    /// Whether it is merged, of what `mergedRevisions` tells, into some of what lies below the target only.
    bool isPartlyMerged() const { return _isPartlyMerged; }
    void setPartlyMerged(bool isPartly) { _isPartlyMerged = isPartly; }
    /// Whether it only ends the children of an earlier item; such an item has no revision.
    bool isEndOfChildren() const { return _isEndOfChildren; }
    void setEndOfChildren(bool isEnd) { _isEndOfChildren = isEnd; }

    /// The paths that changes are recorded under, in no particular order.
    std::vector<std::string> changedPaths() const;
    /// All changes, in no particular order.
    std::vector<HSVNLogPathChangeRef> changes() const;
    /// All changes, those in a directory right after the directory's own.
    std::vector<HSVNLogPathChangeRef> sortedChanges() const;
    /// The changes of one action.
    std::vector<HSVNLogPathChangeRef> changesWithAction(HSVNLogAction action) const;
    /// The changes that added a path, in no particular order, as in the next three.
    std::vector<HSVNLogPathChangeRef> additions() const { return changesWithAction(HSVNLogActionAdded); }
    /// The changes that deleted a path.
    std::vector<HSVNLogPathChangeRef> deletions() const { return changesWithAction(HSVNLogActionDeleted); }
    /// The changes that replaced a path by a new item.
    std::vector<HSVNLogPathChangeRef> replacements() const { return changesWithAction(HSVNLogActionReplaced); }
    /// The changes of a text or of properties.
    std::vector<HSVNLogPathChangeRef> modifications() const { return changesWithAction(HSVNLogActionModified); }
    /// The change recorded for exactly that path, or nil.
    HSVNLogPathChangeRef changeForPath(std::string_view path) const;
    /// The change recorded for the path or for the nearest folder above it, "/" included, or nil.
    ///
    /// @param path  not nil ("path != nil")
    HSVNLogPathChangeRef changeForAncestorOfPath(const std::optional<std::string>& path) const;

    /// Records a change, not nil ("change != nil"), under its path, in place of any earlier one of that path. A change
    /// whose path is set anew later stays recorded under this one.
    void addChange(const HSVNLogPathChangeRef& change);
    /// Removes what is recorded under the path of the change, which must not be nil ("change != nil").
    void removeChange(const HSVNLogPathChangeRef& change);
    /// Removes what is recorded under a path; does nothing when that is nothing.
    void removeChangeWithPath(std::string_view path);
    /// Removes every recorded change.
    void removeAllChanges() { _changes = nullptr; }
    /// Takes the changes that a log was read with, in place of all others; nil for none.
    void setReadChanges(std::shared_ptr<HSVNLogChanges> changes) { _changes = std::move(changes); }

    /// Takes over revision, date, author, message and the changes of another item, not nil ("item != nil").
    void assignFrom(const std::shared_ptr<const HSVNLogItem>& item);
    /// Whether the range, not nil ("range != nil"), holds the revision, when it is one of numbers, or else the date; a
    /// range without bounds holds every item.
    bool isInRange(const HSVNRevisionRangeRef& range) const;

    /// A new item with the same values; the changes themselves are shared.
    std::shared_ptr<HSVNLogItem> copy() const { return std::make_shared<HSVNLogItem>(*this); }
    std::string className() const override { return "HSVNLogItem"; }
    /// "{ %@ revision: %d, date: %@, author: "%@", message: "%@" }" with at most 50 characters of the message.
    std::string description() const override;
    /// The customary text form: a dashed line, revision, author and date, the changed paths in order, the message.
    ///
    /// @throws HSVNException "Unrecognized action" for a change whose action is none of the enumeration
    std::string stringValue() const;

  private:
    std::optional<std::string> _message;
    std::optional<std::string> _author;
    std::int64_t _date = (std::numeric_limits<std::int64_t>::min)(); // in microseconds since 1970; this one is nil
    HSVNRevisionNumber _revision = HSVNInvalidRevision;
    bool _tellsSeconds : 1 = false; // alone of `_date`, as `date`
    bool _tellsChangedPaths : 1 = false;
    bool _hasChildren : 1 = false;
    bool _isSubtractiveMerge : 1 = false;
    bool _isEndOfChildren : 1 = false;
    bool _isPartlyMerged : 1 = false;
    std::shared_ptr<const std::map<std::string, std::string>> _properties; // null for none
    std::shared_ptr<HSVNLogChanges> _changes; // by the path when it was recorded; null for none
};

using HSVNLogItemRef = std::shared_ptr<HSVNLogItem>;
