#pragma once

#include "HSVNCoder.h"
#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNRareFields.h"
#include "HSVNStatusKind.h"
#include "HSVNTypes.h"

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct svn_wc_entry_t;
struct svn_wc_status2_t;

/// Working-copy status of one item: what changed here, what changed in the repository since, and the item's last
/// commit.
///
/// A plain record with setters and no lock. It is kept small, since a scan makes one per item: fields that few items
/// have are stored apart and only when set.
class HSVN_EXPORT HSVNStatus : public HSVNArchivable
{
  public:
    /// Every kind none, every flag false, every object nil, revisions `HSVNInvalidRevision`, the schedule normal and
    /// the depth `HSVNDepthUnknown`.
    HSVNStatus();
    /// The record that an archive holds; its depth, which archives lack, is `HSVNDepthEmpty`.
    ///
    /// @throws HSVNInvalidArgumentException "Keyed unarchiver required", or for a value that does not fit its field
    explicit HSVNStatus(HSVNCoder* decoder);
    /// Copies every field, the depth included; `copy` does not.
    HSVNStatus(const HSVNStatus& other);
    HSVNStatus& operator=(const HSVNStatus&) = delete;
    ~HSVNStatus() override;

    /// A new record of an unchanged item: text and properties normal.
    static HSVNStatusRef normal();
    /// A new record of an item that is not under version control.
    static HSVNStatusRef unversioned();
    /// A new record of an item that is to be ignored.
    static HSVNStatusRef ignored();

    std::string className() const override { return "HSVNStatus"; }
    /// Keys: see HSVNStatus.cpp; the depth is not archived, and of the fields further below those alone that are set.
    void encodeWithCoder(HSVNCoder* encoder) const override;
    /// A new record with every field but the depth, which is `HSVNDepthUnknown`; objects are shared.
    HSVNStatusRef copy() const;

    /// Neither unversioned nor ignored.
    bool isVersioned() const;
    /// Whether text or properties are other than none, normal, ignored and external.
    bool isAbnormal() const;
    /// The revision in a conflict file's extension, such as 1234 of "file.c.r1234".
    ///
    /// @return `HSVNInvalidRevision` unless there is an extension "r" followed by one character at least; 0 when no
    ///         digit follows; the nearest revision number for digits beyond the range
    static HSVNRevisionNumber revisionFromFilename(const std::optional<std::string>& fileName);
    /// `revisionFromFilename` of `conflictOldVersion`.
    HSVNRevisionNumber conflictOldRevision() const { return revisionFromFilename(conflictOldVersion()); }
    /// `revisionFromFilename` of `conflictNewVersion`.
    HSVNRevisionNumber conflictNewRevision() const { return revisionFromFilename(conflictNewVersion()); }

    /// State of the item's text in the working copy.
    HSVNStatusKind textStatus() const { return _textStatus; }
    void setTextStatus(HSVNStatusKind status) { _textStatus = status; }
    /// State of its properties in the working copy.
    HSVNStatusKind propertyStatus() const { return _propertyStatus; }
    void setPropertyStatus(HSVNStatusKind status) { _propertyStatus = status; }
    /// Change of the text in the repository; none unless the repository was asked.
    HSVNStatusKind repositoryTextStatus() const { return _repositoryTextStatus; }
    void setRepositoryTextStatus(HSVNStatusKind status) { _repositoryTextStatus = status; }
    /// Change of the properties in the repository; none unless the repository was asked.
    HSVNStatusKind repositoryPropertyStatus() const { return _repositoryPropertyStatus; }
    void setRepositoryPropertyStatus(HSVNStatusKind status) { _repositoryPropertyStatus = status; }

    /// The folder is locked by an operation that runs or was interrupted.
    bool locked() const { return _flags.locked; }
    void setLocked(bool locked) { _flags.locked = locked; }
    /// Added with history.
    bool copied() const { return _flags.copied; }
    void setCopied(bool copied) { _flags.copied = copied; }
    /// Its URL is not that of its place in the working copy.
    bool switched() const { return _flags.switched; }
    void setSwitched(bool switched) { _flags.switched = switched; }
    /// Deleted in the repository, its parent not yet updated.
    bool deleted() const { return _flags.deleted; }
    void setDeleted(bool deleted) { _flags.deleted = deleted; }
    /// Known, but left out by the repository for want of access.
    bool absent() const { return _flags.absent; }
    void setAbsent(bool absent) { _flags.absent = absent; }
    /// The item has versioned properties.
    bool hasProperties() const { return _flags.hasProperties; }
    void setHasProperties(bool has) { _flags.hasProperties = has; }
    /// Its properties were changed in the working copy.
    bool hasPropertyModifications() const { return _flags.hasPropertyModifications; }
    void setHasPropertyModifications(bool has) { _flags.hasPropertyModifications = has; }

    /// Revision of the item's last commit, as the working copy knows it; `HSVNInvalidRevision` when it does not.
    HSVNRevisionNumber lastChangedRevision() const { return _lastChangedRevision; }
    void setLastChangedRevision(HSVNRevisionNumber revision) { _lastChangedRevision = revision; }
    /// Date of that commit; nil when not known.
    std::optional<HSVNDate> lastChangedDate() const;
    void setLastChangedDate(const std::optional<HSVNDate>& date);
    /// Its author, UTF-8; nil when not known.
    std::optional<std::string> lastChangedAuthor() const;
    void setLastChangedAuthor(std::optional<std::string> author);

    /// Revision of the last commit in the repository; `HSVNInvalidRevision` when the item is up to date or the
    /// repository was not asked.
    HSVNRevisionNumber outOfDateLastCommitRevision() const;
    void setOutOfDateLastCommitRevision(HSVNRevisionNumber revision);
    /// Date of that commit; nil where there is no such revision.
    std::optional<HSVNDate> outOfDateLastCommitDate() const;
    void setOutOfDateLastCommitDate(const std::optional<HSVNDate>& date);
    /// Its author, in the same way.
    std::optional<std::string> outOfDateLastCommitAuthor() const;
    void setOutOfDateLastCommitAuthor(std::optional<std::string> author);

    /// What the next commit will do with the item.
    HSVNSchedule schedule() const { return static_cast<HSVNSchedule>(_schedule); }
    void setSchedule(HSVNSchedule schedule) { _schedule = static_cast<std::int8_t>(schedule); }
    /// Where the item was copied from; nil unless it is added with history.
    HSVNURLRef copyFromURL() const;
    void setCopyFromURL(HSVNURLRef url);
    /// The revision of that URL; `HSVNInvalidRevision` unless the item is added with history.
    HSVNRevisionNumber copyFromRevision() const;
    void setCopyFromRevision(HSVNRevisionNumber revision);

    /// Name, in the item's folder, of the file that a conflict left of the base; nil without a conflict.
    std::optional<std::string> conflictOldVersion() const;
    void setConflictOldVersion(std::optional<std::string> fileName);
    /// The same of what came in.
    std::optional<std::string> conflictNewVersion() const;
    void setConflictNewVersion(std::optional<std::string> fileName);
    /// The same of what was there.
    std::optional<std::string> conflictWorkingVersion() const;
    void setConflictWorkingVersion(std::optional<std::string> fileName);
    /// Name of the file with the properties in conflict; nil without a property conflict.
    std::optional<std::string> propertyRejectFilePath() const;
    void setPropertyRejectFilePath(std::optional<std::string> fileName);

    /// When the text was last known to be unchanged; nil when not known.
    std::optional<HSVNDate> upToDateTextDate() const;
    void setUpToDateTextDate(const std::optional<HSVNDate>& date);
    /// When the properties were; nil from Subversion, which since 1.4 does not tell.
    std::optional<HSVNDate> upToDatePropertyDate() const;
    void setUpToDatePropertyDate(const std::optional<HSVNDate>& date);
    /// Checksum of the unchanged text, as Subversion writes it (MD5 in hexadecimal digits).
    std::optional<std::string> checksum() const;
    void setChecksum(std::optional<std::string> checksum);

    /// The lock in the repository; nil unless the repository was asked.
    HSVNLockRef repositoryLock() const;
    void setRepositoryLock(HSVNLockRef lock);
    /// The folder's depth; `HSVNDepthUnknown` from a Subversion before 1.5.
    HSVNDepth depth() const { return static_cast<HSVNDepth>(_depth); }
    void setDepth(HSVNDepth depth) { _depth = static_cast<std::int8_t>(depth); }

    // Further fields: what lines before 1.7 do not tell keeps its default, as do moves unless the verb `status` tells
    // them.

    /// The revision that the working copy has of the item; `HSVNInvalidRevision` when it has none. Of an item that
    /// goes, or that another took the place of, what was there until now.
    HSVNRevisionNumber revision() const { return _revision; }
    void setRevision(HSVNRevisionNumber revision) { _revision = revision; }
    /// State of the item as a whole: of its text, or that its properties alone are modified or in conflict.
    HSVNStatusKind nodeStatus() const { return _nodeStatus; }
    void setNodeStatus(HSVNStatusKind status) { _nodeStatus = status; }
    /// Change of the item as a whole in the repository; none when there is none, or the repository was not asked.
    HSVNStatusKind repositoryNodeStatus() const;
    void setRepositoryNodeStatus(HSVNStatusKind status);
    /// Known to the working copy. `isVersioned` goes by the text status and takes a tree conflict's victim that is gone
    /// for versioned.
    bool versioned() const { return _flags.versioned; }
    void setVersioned(bool versioned) { _flags.versioned = versioned; }
    /// In conflict by its text.
    bool textConflicted() const { return _flags.textConflicted; }
    void setTextConflicted(bool conflicted) { _flags.textConflicted = conflicted; }
    /// In conflict by its properties.
    bool propertiesConflicted() const { return _flags.propertiesConflicted; }
    void setPropertiesConflicted(bool conflicted) { _flags.propertiesConflicted = conflicted; }
    /// In conflict as a part of the tree.
    bool treeConflicted() const { return _flags.treeConflicted; }
    void setTreeConflicted(bool conflicted) { _flags.treeConflicted = conflicted; }
    /// In conflict in any of these ways.
    bool conflicted() const { return textConflicted() || propertiesConflicted() || treeConflicted(); }
    /// A file that an externals definition placed.
    bool fileExternal() const { return _flags.fileExternal; }
    void setFileExternal(bool fileExternal) { _flags.fileExternal = fileExternal; }
    /// A directory whose update was interrupted.
    bool incomplete() const { return _flags.incomplete; }
    void setIncomplete(bool incomplete) { _flags.incomplete = incomplete; }
    /// The changelist that the item belongs to; nil for none.
    std::optional<std::string> changelist() const;
    void setChangelist(std::optional<std::string> changelist);
    /// Where the item was moved from, an absolute path; nil unless it was.
    std::optional<std::string> movedFrom() const;
    void setMovedFrom(std::optional<std::string> path);
    /// Where the item was moved to, in the same way.
    std::optional<std::string> movedTo() const;
    void setMovedTo(std::optional<std::string> path);

    // Conversion

    /// The record of a Subversion status.
    ///
    /// @param status   as Subversion's status callback receives it; not null ("status != NULL"); read, not kept
    /// @param version  the version of the bundle that made it, which tells the fields it has
    /// @throws HSVNInvalidArgumentException for a copy-from URL that cannot be parsed
    static HSVNStatusRef statusWithSVNStatus(const svn_wc_status2_t* status, const HSVNVersion& version);

  private:
    friend class HSVNStatusNodeMaker;
    struct Rare;
    struct Flags
    {
        bool locked : 1 = false;
        bool copied : 1 = false;
        bool switched : 1 = false;
        bool deleted : 1 = false;
        bool absent : 1 = false;
        bool hasProperties : 1 = false;
        bool hasPropertyModifications : 1 = false;
        bool hasPackedChecksum : 1 = false;
        bool versioned : 1 = false;
        bool textConflicted : 1 = false;
        bool propertiesConflicted : 1 = false;
        bool treeConflicted : 1 = false;
        bool fileExternal : 1 = false;
        bool incomplete : 1 = false;
    };

    static HSVNStatusRef withKinds(HSVNStatusKind text, HSVNStatusKind property);
    /// The author is that of the record, as a text that records may share.
    static HSVNStatusRef recordOf(const svn_wc_status2_t& status, const HSVNVersion& version,
                                  std::shared_ptr<const std::string> author);
    void takeEntry(const svn_wc_entry_t& entry, const HSVNVersion& version);
    void takeFurtherFields(const svn_wc_status2_t& status, const HSVNVersion& version);

    HSVNStatusKind _textStatus = HSVNStatusKindNone;
    HSVNStatusKind _propertyStatus = HSVNStatusKindNone;
    HSVNStatusKind _repositoryTextStatus = HSVNStatusKindNone;
    HSVNStatusKind _repositoryPropertyStatus = HSVNStatusKindNone;
    HSVNStatusKind _nodeStatus = HSVNStatusKindNone;
    std::int8_t _schedule = HSVNScheduleNormal;
    std::int8_t _depth = HSVNDepthUnknown;
    Flags _flags;
    HSVNRevisionNumber _revision = HSVNInvalidRevision;
    HSVNRevisionNumber _lastChangedRevision = HSVNInvalidRevision;
    static constexpr std::int64_t noDate = (std::numeric_limits<std::int64_t>::min)();
    std::int64_t _lastChangedDate = noDate; // in microseconds since 1970, as the other dates
    std::shared_ptr<const std::string> _lastChangedAuthor;
    std::int64_t _upToDateTextDate = noDate;
    std::int64_t _upToDatePropertyDate = noDate;
    std::array<std::uint8_t, 16> _packedChecksum{}; // of the usual form: 32 lower-case hexadecimal digits
    HSVNRareFields<Rare> _rare;
};
