#include "HSVNStatus.h"

#include "HSVNLock.h"
#include "HSVNURL.h"
#include "HSVNVersion.h"
#include "Internal/CompactDate.h"
#include "Internal/FurtherKeys.h"
#include "Internal/Hexadecimal.h"
#include "Internal/RevisionNumber.h"
#include "Internal/SharedText.h"
#include "Internal/Subversion.h"
#include "Internal/SubversionURL.h"
#include "Internal/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <limits>
#include <utility>

/// What few items have. Plain texts do here: of thousands of records hardly one is made.
struct HSVNStatus::Rare
{
    HSVNRevisionNumber outOfDateLastCommitRevision = HSVNInvalidRevision;
    HSVNRevisionNumber copyFromRevision = HSVNInvalidRevision;
    std::optional<HSVNDate> outOfDateLastCommitDate;
    std::optional<std::string> outOfDateLastCommitAuthor;
    HSVNURLRef repositoryRootURL;
    std::optional<std::string> repositoryUUID;
    HSVNURLRef copyFromURL;
    std::optional<std::string> conflictOldVersion;
    std::optional<std::string> conflictNewVersion;
    std::optional<std::string> conflictWorkingVersion;
    std::optional<std::string> propertyRejectFilePath;
    std::optional<std::string> checksum; // of an unusual form
    HSVNLockRef repositoryLock;
    HSVNStatusKind repositoryNodeStatus = HSVNStatusKindNone;
    std::optional<std::string> changelist;
    std::optional<std::string> movedFrom;
    std::optional<std::string> movedTo;
};

// A scan keeps one record per item: see Documentation/Memory.md before a field is added.
static_assert(sizeof(void*) != 8 || sizeof(HSVNStatus) <= 104);

namespace {

using PackedChecksum = std::array<std::uint8_t, 16>;

// Runs for every file of a scan.
std::optional<PackedChecksum> packed(std::string_view checksum)
{
    PackedChecksum bytes{};
    return HSVNHexadecimal::read(checksum, bytes) ? std::optional{bytes} : std::nullopt;
}

bool isOrdinary(HSVNStatusKind kind)
{
    return kind == HSVNStatusKindNone || kind == HSVNStatusKindNormal || kind == HSVNStatusKindIgnored ||
           kind == HSVNStatusKindExternal;
}

HSVNStatusKind decodeKind(HSVNCoder& decoder, std::string_view key)
{
    const std::uint64_t value = decoder.decodeUnsigned(key);
    const bool isBit = std::has_single_bit(value) && value <= HSVNStatusKindIncomplete;
    if (value != HSVNStatusKindNone && !isBit && value != HSVNStatusKindUnknown) {
        throw HSVNInvalidArgumentException(fmt::format("Value of \"{}\" is not a status kind: {}", key, value));
    }
    return static_cast<HSVNStatusKind>(value);
}

HSVNSchedule decodeSchedule(HSVNCoder& decoder, std::string_view key)
{
    const std::int64_t value = decoder.decodeInteger(key);
    if (value < HSVNScheduleInvalid || value > HSVNScheduleReplace) {
        throw HSVNInvalidArgumentException(fmt::format("Value of \"{}\" is not a schedule: {}", key, value));
    }
    return static_cast<HSVNSchedule>(value);
}

/// The flags that archives have only where they are set.
struct FurtherFlag
{
    const char* key;
    bool (HSVNStatus::*get)() const;
    void (HSVNStatus::*set)(bool);
};

constexpr FurtherFlag furtherFlags[] = {
    {"versioned", &HSVNStatus::versioned, &HSVNStatus::setVersioned},
    {"textConflicted", &HSVNStatus::textConflicted, &HSVNStatus::setTextConflicted},
    {"propertiesConflicted", &HSVNStatus::propertiesConflicted, &HSVNStatus::setPropertiesConflicted},
    {"treeConflicted", &HSVNStatus::treeConflicted, &HSVNStatus::setTreeConflicted},
    {"fileExternal", &HSVNStatus::fileExternal, &HSVNStatus::setFileExternal},
    {"incomplete", &HSVNStatus::incomplete, &HSVNStatus::setIncomplete}};

void encodeFurtherFields(HSVNCoder& encoder, const HSVNStatus& status)
{
    if (status.revision() != HSVNInvalidRevision) {
        encoder.encodeInteger(status.revision(), "revision");
    }
    if (status.nodeStatus() != HSVNStatusKindNone) {
        encoder.encodeInteger(status.nodeStatus(), "nodeStatus");
    }
    if (status.repositoryNodeStatus() != HSVNStatusKindNone) {
        encoder.encodeInteger(status.repositoryNodeStatus(), "repositoryNodeStatus");
    }
    for (const auto& flag : furtherFlags) {
        if ((status.*flag.get)()) {
            encoder.encodeBool(true, flag.key);
        }
    }
    HSVNEncodeFurther(encoder, status.changelist(), "changelist");
    HSVNEncodeFurther(encoder, status.movedFrom(), "movedFrom");
    HSVNEncodeFurther(encoder, status.movedTo(), "movedTo");
}

void decodeFurtherFields(HSVNCoder& decoder, HSVNStatus& status)
{
    if (decoder.containsValueForKey("revision")) {
        status.setRevision(decoder.decodeInt32("revision"));
    }
    status.setNodeStatus(decodeKind(decoder, "nodeStatus"));
    status.setRepositoryNodeStatus(decodeKind(decoder, "repositoryNodeStatus"));
    for (const auto& flag : furtherFlags) {
        (status.*flag.set)(decoder.decodeBool(flag.key));
    }
    status.setChangelist(decoder.decodeString("changelist"));
    status.setMovedFrom(decoder.decodeString("movedFrom"));
    status.setMovedTo(decoder.decodeString("movedTo"));
}

/// The state of the item as a whole, which older records do not tell beside that of its text.
HSVNStatusKind nodeStatusOf(HSVNStatusKind text, HSVNStatusKind properties)
{
    const bool mayBeOutdone = text == HSVNStatusKindNormal || text == HSVNStatusKindModified;
    const bool outdoes = properties == HSVNStatusKindConflicted || properties == HSVNStatusKindModified;
    return mayBeOutdone && outdoes ? properties : text;
}

} // namespace

HSVNStatus::HSVNStatus() = default;
HSVNStatus::~HSVNStatus() = default;

HSVNStatus::HSVNStatus(const HSVNStatus& other) = default;

HSVNStatusRef HSVNStatus::copy() const
{
    auto status = std::make_shared<HSVNStatus>(*this);
    status->setDepth(HSVNDepthUnknown);
    return status;
}

HSVNStatusRef HSVNStatus::withKinds(HSVNStatusKind text, HSVNStatusKind property)
{
    auto status = std::make_shared<HSVNStatus>();
    status->_textStatus = text;
    status->_propertyStatus = property;
    return status;
}

HSVNStatusRef HSVNStatus::normal() { return withKinds(HSVNStatusKindNormal, HSVNStatusKindNormal); }
HSVNStatusRef HSVNStatus::unversioned() { return withKinds(HSVNStatusKindUnversioned, HSVNStatusKindNone); }
HSVNStatusRef HSVNStatus::ignored() { return withKinds(HSVNStatusKindIgnored, HSVNStatusKindNone); }

bool HSVNStatus::isVersioned() const
{
    return _textStatus != HSVNStatusKindUnversioned && _textStatus != HSVNStatusKindIgnored;
}

bool HSVNStatus::isAbnormal() const { return !isOrdinary(_textStatus) || !isOrdinary(_propertyStatus); }

HSVNRevisionNumber HSVNStatus::revisionFromFilename(const std::optional<std::string>& fileName)
{
    const auto dot = fileName ? fileName->rfind('.') : std::string::npos;
    if (dot == std::string::npos || fileName->size() - dot < 3 || (*fileName)[dot + 1] != 'r') {
        return HSVNInvalidRevision;
    }
    using Limits = std::numeric_limits<HSVNRevisionNumber>;
    const long long number = std::strtoll(fileName->c_str() + dot + 2, nullptr, 10);
    return static_cast<HSVNRevisionNumber>(std::clamp<long long>(number, Limits::min(), Limits::max()));
}

// Fields stored apart

HSVNRevisionNumber HSVNStatus::outOfDateLastCommitRevision() const
{
    return _rare.get(&Rare::outOfDateLastCommitRevision);
}
void HSVNStatus::setOutOfDateLastCommitRevision(HSVNRevisionNumber revision)
{
    _rare.set(&Rare::outOfDateLastCommitRevision, revision);
}
std::optional<HSVNDate> HSVNStatus::outOfDateLastCommitDate() const
{
    return _rare.get(&Rare::outOfDateLastCommitDate);
}
void HSVNStatus::setOutOfDateLastCommitDate(const std::optional<HSVNDate>& date)
{
    _rare.set(&Rare::outOfDateLastCommitDate, date);
}
std::optional<std::string> HSVNStatus::outOfDateLastCommitAuthor() const
{
    return _rare.get(&Rare::outOfDateLastCommitAuthor);
}
void HSVNStatus::setOutOfDateLastCommitAuthor(std::optional<std::string> author)
{
    _rare.set(&Rare::outOfDateLastCommitAuthor, std::move(author));
}

HSVNURLRef HSVNStatus::copyFromURL() const { return _rare.get(&Rare::copyFromURL); }
void HSVNStatus::setCopyFromURL(HSVNURLRef url) { _rare.set(&Rare::copyFromURL, std::move(url)); }
HSVNRevisionNumber HSVNStatus::copyFromRevision() const { return _rare.get(&Rare::copyFromRevision); }
void HSVNStatus::setCopyFromRevision(HSVNRevisionNumber revision) { _rare.set(&Rare::copyFromRevision, revision); }

std::optional<std::string> HSVNStatus::conflictOldVersion() const { return _rare.get(&Rare::conflictOldVersion); }
void HSVNStatus::setConflictOldVersion(std::optional<std::string> fileName)
{
    _rare.set(&Rare::conflictOldVersion, std::move(fileName));
}
std::optional<std::string> HSVNStatus::conflictNewVersion() const { return _rare.get(&Rare::conflictNewVersion); }
void HSVNStatus::setConflictNewVersion(std::optional<std::string> fileName)
{
    _rare.set(&Rare::conflictNewVersion, std::move(fileName));
}
std::optional<std::string> HSVNStatus::conflictWorkingVersion() const
{
    return _rare.get(&Rare::conflictWorkingVersion);
}
void HSVNStatus::setConflictWorkingVersion(std::optional<std::string> fileName)
{
    _rare.set(&Rare::conflictWorkingVersion, std::move(fileName));
}
std::optional<std::string> HSVNStatus::propertyRejectFilePath() const
{
    return _rare.get(&Rare::propertyRejectFilePath);
}
void HSVNStatus::setPropertyRejectFilePath(std::optional<std::string> fileName)
{
    _rare.set(&Rare::propertyRejectFilePath, std::move(fileName));
}

HSVNLockRef HSVNStatus::repositoryLock() const { return _rare.get(&Rare::repositoryLock); }
void HSVNStatus::setRepositoryLock(HSVNLockRef lock) { _rare.set(&Rare::repositoryLock, std::move(lock)); }

HSVNStatusKind HSVNStatus::repositoryNodeStatus() const { return _rare.get(&Rare::repositoryNodeStatus); }
void HSVNStatus::setRepositoryNodeStatus(HSVNStatusKind status) { _rare.set(&Rare::repositoryNodeStatus, status); }
std::optional<std::string> HSVNStatus::changelist() const { return _rare.get(&Rare::changelist); }
void HSVNStatus::setChangelist(std::optional<std::string> changelist)
{
    _rare.set(&Rare::changelist, std::move(changelist));
}
std::optional<std::string> HSVNStatus::movedFrom() const { return _rare.get(&Rare::movedFrom); }
void HSVNStatus::setMovedFrom(std::optional<std::string> path) { _rare.set(&Rare::movedFrom, std::move(path)); }
std::optional<std::string> HSVNStatus::movedTo() const { return _rare.get(&Rare::movedTo); }
void HSVNStatus::setMovedTo(std::optional<std::string> path) { _rare.set(&Rare::movedTo, std::move(path)); }

std::optional<std::string> HSVNStatus::checksum() const
{
    return _flags.hasPackedChecksum ? std::optional{HSVNHexadecimal::textOf(_packedChecksum)}
                                    : _rare.get(&Rare::checksum);
}

void HSVNStatus::setChecksum(std::optional<std::string> checksum)
{
    const auto bytes = checksum ? packed(*checksum) : std::nullopt;
    _flags.hasPackedChecksum = bytes.has_value();
    _packedChecksum = bytes.value_or(PackedChecksum{});
    _rare.set(&Rare::checksum, bytes ? std::nullopt : std::move(checksum));
}

std::optional<HSVNDate> HSVNStatus::lastChangedDate() const { return HSVNCompactDate::value(_lastChangedDate); }
void HSVNStatus::setLastChangedDate(const std::optional<HSVNDate>& date)
{
    _lastChangedDate = HSVNCompactDate::of(date);
}
std::optional<HSVNDate> HSVNStatus::upToDateTextDate() const { return HSVNCompactDate::value(_upToDateTextDate); }
void HSVNStatus::setUpToDateTextDate(const std::optional<HSVNDate>& date)
{
    _upToDateTextDate = HSVNCompactDate::of(date);
}
std::optional<HSVNDate> HSVNStatus::upToDatePropertyDate() const
{
    return HSVNCompactDate::value(_upToDatePropertyDate);
}
void HSVNStatus::setUpToDatePropertyDate(const std::optional<HSVNDate>& date)
{
    _upToDatePropertyDate = HSVNCompactDate::of(date);
}

std::optional<std::string> HSVNStatus::lastChangedAuthor() const { return HSVNTextValue(_lastChangedAuthor); }
void HSVNStatus::setLastChangedAuthor(std::optional<std::string> author)
{
    _lastChangedAuthor = HSVNMakeSharedText(std::move(author));
}

// Archive

void HSVNStatus::encodeWithCoder(HSVNCoder* encoder) const
{
    HSVNRequireKeyedArchiver(encoder);
    encoder->encodeInteger(_textStatus, "textStatus");
    encoder->encodeInteger(_propertyStatus, "propertyStatus");
    encoder->encodeInteger(_repositoryTextStatus, "repositoryTextStatus");
    encoder->encodeInteger(_repositoryPropertyStatus, "repositoryPropertyStatus");
    encoder->encodeInteger(_lastChangedRevision, "lastChangedRevision");
    encoder->encodeDate(lastChangedDate(), "lastChangedDate");
    encoder->encodeString(lastChangedAuthor(), "lastChangedAuthor");
    encoder->encodeBool(_flags.locked, "locked");
    encoder->encodeBool(_flags.copied, "copied");
    encoder->encodeBool(_flags.switched, "switched");
    encoder->encodeBool(_flags.deleted, "deleted");
    encoder->encodeBool(_flags.absent, "absent");
    encoder->encodeBool(_flags.hasProperties, "hasProperties");
    encoder->encodeBool(_flags.hasPropertyModifications, "hasPropertyModifications");
    encoder->encodeInteger(_rare.get(&Rare::outOfDateLastCommitRevision), "outOfDateLastCommitRevision");
    encoder->encodeDate(outOfDateLastCommitDate(), "outOfDateLastCommitDate");
    encoder->encodeString(_rare.get(&Rare::outOfDateLastCommitAuthor), "outOfDateLastCommitAuthor");
    encoder->encodeObject(_rare.get(&Rare::repositoryRootURL), "repositoryRootURL");
    encoder->encodeString(_rare.get(&Rare::repositoryUUID), "repositoryUUID");
    encoder->encodeInteger(schedule(), "schedule");
    encoder->encodeObject(_rare.get(&Rare::copyFromURL), "copyFromURL");
    encoder->encodeInteger(_rare.get(&Rare::copyFromRevision), "copyFromRevision");
    encoder->encodeString(_rare.get(&Rare::conflictOldVersion), "conflictOldVersion");
    encoder->encodeString(_rare.get(&Rare::conflictNewVersion), "conflictNewVersion");
    encoder->encodeString(_rare.get(&Rare::conflictWorkingVersion), "conflictWorkingVersion");
    encoder->encodeString(_rare.get(&Rare::propertyRejectFilePath), "propertyRejectFilePath");
    encoder->encodeDate(upToDateTextDate(), "upToDateTextDate");
    encoder->encodeDate(upToDatePropertyDate(), "upToDatePropertyDate");
    encoder->encodeString(checksum(), "checksum");
    encoder->encodeObject(_rare.get(&Rare::repositoryLock), "repositoryLock");
    encodeFurtherFields(*encoder, *this);
}

HSVNStatus::HSVNStatus(HSVNCoder* decoder)
{
    HSVNRequireKeyedUnarchiver(decoder);
    _textStatus = decodeKind(*decoder, "textStatus");
    _propertyStatus = decodeKind(*decoder, "propertyStatus");
    _repositoryTextStatus = decodeKind(*decoder, "repositoryTextStatus");
    _repositoryPropertyStatus = decodeKind(*decoder, "repositoryPropertyStatus");
    _lastChangedRevision = decoder->decodeInt32("lastChangedRevision");
    setLastChangedDate(decoder->decodeDate("lastChangedDate"));
    setLastChangedAuthor(decoder->decodeString("lastChangedAuthor"));
    _flags.locked = decoder->decodeBool("locked");
    _flags.copied = decoder->decodeBool("copied");
    _flags.switched = decoder->decodeBool("switched");
    _flags.deleted = decoder->decodeBool("deleted");
    _flags.absent = decoder->decodeBool("absent");
    _flags.hasProperties = decoder->decodeBool("hasProperties");
    _flags.hasPropertyModifications = decoder->decodeBool("hasPropertyModifications");
    setOutOfDateLastCommitRevision(decoder->decodeInt32("outOfDateLastCommitRevision"));
    setOutOfDateLastCommitDate(decoder->decodeDate("outOfDateLastCommitDate"));
    setOutOfDateLastCommitAuthor(decoder->decodeString("outOfDateLastCommitAuthor"));
    _rare.set(&Rare::repositoryRootURL, decoder->decodeObject<HSVNURL>("repositoryRootURL"));
    _rare.set(&Rare::repositoryUUID, decoder->decodeString("repositoryUUID"));
    setSchedule(decodeSchedule(*decoder, "schedule"));
    setCopyFromURL(decoder->decodeObject<HSVNURL>("copyFromURL"));
    setCopyFromRevision(decoder->decodeInt32("copyFromRevision"));
    setConflictOldVersion(decoder->decodeString("conflictOldVersion"));
    setConflictNewVersion(decoder->decodeString("conflictNewVersion"));
    setConflictWorkingVersion(decoder->decodeString("conflictWorkingVersion"));
    setPropertyRejectFilePath(decoder->decodeString("propertyRejectFilePath"));
    setUpToDateTextDate(decoder->decodeDate("upToDateTextDate"));
    setUpToDatePropertyDate(decoder->decodeDate("upToDatePropertyDate"));
    setChecksum(decoder->decodeString("checksum"));
    setRepositoryLock(decoder->decodeObject<HSVNLock>("repositoryLock"));
    decodeFurtherFields(*decoder, *this);
    setDepth(HSVNDepthEmpty); // archives have always been read so
}

// Conversion

HSVNStatusRef HSVNStatus::statusWithSVNStatus(const svn_wc_status2_t* status, const HSVNVersion& version)
{
    HSVNAssertParameter(status != nullptr, "status != NULL");
    return recordOf(*status, version,
                    HSVNMakeSharedText(HSVNTextOrNil(status->entry ? status->entry->cmt_author : nullptr)));
}

HSVNStatusRef HSVNStatus::recordOf(const svn_wc_status2_t& status, const HSVNVersion& version, HSVNSharedText author)
{
    auto record = withKinds(HSVNConvertStatusKind(status.text_status), HSVNConvertStatusKind(status.prop_status));
    record->_lastChangedAuthor = std::move(author);
    record->_repositoryTextStatus = HSVNConvertStatusKind(status.repos_text_status);
    record->_repositoryPropertyStatus = HSVNConvertStatusKind(status.repos_prop_status);
    record->_flags.locked = status.locked != 0;
    record->_flags.copied = status.copied != 0;
    record->_flags.switched = status.switched != 0;
    record->setOutOfDateLastCommitRevision(HSVNRevisionNumberFromSubversion(status.ood_last_cmt_rev));
    record->setOutOfDateLastCommitDate(HSVNDate::dateWithAPRTime(status.ood_last_cmt_date));
    if (status.ood_last_cmt_author) {
        record->setOutOfDateLastCommitAuthor(status.ood_last_cmt_author);
    }
    if (status.entry) {
        record->takeEntry(*status.entry, version);
    }
    if (status.repos_lock) {
        record->setRepositoryLock(std::make_shared<HSVNLock>(status.repos_lock));
    }
    record->takeFurtherFields(status, version);
    return record;
}

void HSVNStatus::takeFurtherFields(const svn_wc_status2_t& status, const HSVNVersion& version)
{
    _nodeStatus = nodeStatusOf(_textStatus, _propertyStatus);
    _flags.textConflicted = _textStatus == HSVNStatusKindConflicted;
    _flags.propertiesConflicted = _propertyStatus == HSVNStatusKindConflicted;
    if (!version.isLessThan(HSVNVersion{1, 6})) { // whose record ends there before
        _flags.treeConflicted = status.tree_conflict != nullptr;
        _flags.fileExternal = status.file_external != 0;
    }
    _flags.incomplete = _textStatus == HSVNStatusKindIncomplete;
    if (const auto node = nodeStatusOf(_repositoryTextStatus, _repositoryPropertyStatus);
        node != HSVNStatusKindNone && node != HSVNStatusKindNormal)
    {
        setRepositoryNodeStatus(node);
    }
    if (!status.entry) {
        return;
    }
    _flags.versioned = isVersioned() && _textStatus != HSVNStatusKindNone;
    _flags.incomplete = _flags.incomplete || status.entry->incomplete;
    _revision = HSVNRevisionNumberFromSubversion(status.entry->revision);
    if (!version.isLessThan(HSVNVersion::version1_5()) && status.entry->changelist) {
        setChangelist(status.entry->changelist);
    }
}

void HSVNStatus::takeEntry(const svn_wc_entry_t& entry, const HSVNVersion& version)
{
    _lastChangedRevision = HSVNRevisionNumberFromSubversion(entry.cmt_rev);
    setLastChangedDate(HSVNDate::dateWithAPRTime(entry.cmt_date));
    _flags.deleted = entry.deleted != 0;
    _flags.absent = entry.absent != 0;
    _flags.hasProperties = entry.has_props != 0;
    _flags.hasPropertyModifications = entry.has_prop_mods != 0;
    setSchedule(HSVNConvertSchedule(entry.schedule));
    if (entry.copyfrom_url) {
        setCopyFromURL(HSVNURLWithSubversionText(entry.copyfrom_url));
    }
    setCopyFromRevision(HSVNRevisionNumberFromSubversion(entry.copyfrom_rev));
    if (entry.conflict_old || entry.conflict_new || entry.conflict_wrk || entry.prejfile) {
        setConflictOldVersion(HSVNTextOrNil(entry.conflict_old));
        setConflictNewVersion(HSVNTextOrNil(entry.conflict_new));
        setConflictWorkingVersion(HSVNTextOrNil(entry.conflict_wrk));
        setPropertyRejectFilePath(HSVNTextOrNil(entry.prejfile));
    }
    setUpToDateTextDate(HSVNDate::dateWithAPRTime(entry.text_time));
    setUpToDatePropertyDate(HSVNDate::dateWithAPRTime(entry.prop_time));
    if (const auto bytes = entry.checksum ? packed(entry.checksum) : std::nullopt) {
        _flags.hasPackedChecksum = true;
        _packedChecksum = *bytes;
    } else {
        setChecksum(HSVNTextOrNil(entry.checksum));
    }
    if (version.isGreaterThanOrEqualTo(HSVNVersion::version1_5())) {
        setDepth(static_cast<HSVNDepth>(entry.depth));
    }
}
