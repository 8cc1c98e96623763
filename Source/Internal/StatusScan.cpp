#include "Internal/StatusScan.h"

#include "HSVNDebug.h"
#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNFile.h"
#include "HSVNLocalPath.h"
#include "HSVNLock.h"
#include "HSVNStatus.h"
#include "HSVNURL.h"
#include "Internal/KeptException.h"
#include "Internal/Operation.h"
#include "Internal/PathText.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Text.h"
#include "Internal/TrustedText.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

// MARK: HSVNFolderHandle

HSVNFolderHandle::~HSVNFolderHandle()
{
    if (_descriptor >= 0) {
        ::close(_descriptor);
    }
}

void HSVNFolderHandle::open(const std::string& folder)
{
    if (_descriptor >= 0) {
        ::close(_descriptor);
    }
    _descriptor = ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
}

int HSVNFolderHandle::descriptor() const { return _descriptor >= 0 ? _descriptor : AT_FDCWD; }

// MARK: HSVNStatusNodeMaker

namespace {

/// How many bytes the control character at a place takes; 0 for any other character.
std::size_t controlCharacterLength(std::string_view text, std::size_t place)
{
    const auto byte = static_cast<unsigned char>(text[place]);
    if (byte < 0x20 || byte == 0x7F) {
        return 1;
    }
    const bool mayBeSecondSet = byte == 0xC2 && place + 1 < text.size(); // U+0080 to U+009F
    return mayBeSecondSet && static_cast<unsigned char>(text[place + 1]) < 0xA0 ? 2 : 0;
}

/// Whether a text has a byte that a control character can begin with: eight at once, since hardly a name has any and
/// all are asked.
bool mayHaveControlCharacter(std::string_view text)
{
    constexpr std::uint64_t ones = 0x0101010101010101;
    constexpr auto hasBelow = [](std::uint64_t bytes, std::uint64_t limit) {
        return (bytes - limit * ones) & ~bytes & 0x80 * ones;
    };
    std::uint64_t found = 0;
    const auto look = [&](std::size_t size) {
        std::uint64_t bytes = 'x' * ones;
        std::memcpy(&bytes, text.data(), size);
        found |= hasBelow(bytes, 0x20) | hasBelow(bytes ^ 0x7F * ones, 1) | hasBelow(bytes ^ 0xC2 * ones, 1);
        text.remove_prefix(size);
    };
    while (text.size() >= sizeof ones) {
        look(sizeof ones);
    }
    look(text.size());
    return found != 0;
}

bool hasControlCharacter(std::string_view text)
{
    const bool mayHave = mayHaveControlCharacter(text);
    for (std::size_t place = 0; mayHave && place < text.size(); ++place) {
        if (controlCharacterLength(text, place) > 0) {
            return true;
        }
    }
    return false;
}

/// The text with every control character as "?".
std::string withoutControlCharacters(std::string_view text)
{
    std::string shown;
    for (std::size_t place = 0; place < text.size();) {
        const std::size_t length = controlCharacterLength(text, place);
        shown += length > 0 ? '?' : text[place];
        place += std::max<std::size_t>(length, 1);
    }
    return shown;
}

/// The size that Subversion recorded of a file that it finds unchanged; nil when the size on disk may differ.
///
/// A recorded size is that of the unchanged text as it was written to the disk. Without properties nothing translates a
/// text between repository and disk, so an unchanged file still has it; with line-end styles or keywords it may not.
std::optional<std::uint64_t> recordedSize(const svn_wc_status2_t& status, const HSVNVersion& version)
{
    const svn_wc_entry_t* entry = status.entry;
    const bool isPlain = entry && status.text_status == svn_wc_status_normal &&
                         status.prop_status != svn_wc_status_modified && entry->schedule == svn_wc_schedule_normal &&
                         entry->kind == svn_node_file && !entry->has_props && !entry->has_prop_mods;
    if (!isPlain || version.isLessThan(HSVNVersion::version1_5()) || entry->working_size < 0) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(entry->working_size);
}

} // namespace

HSVNLockRef HSVNLockOfEntry(const HSVNPathRef& path, const svn_wc_entry_t& entry)
{
    if (!entry.lock_token) {
        return nullptr;
    }
    svn_lock_t lock{};
    lock.token = entry.lock_token;
    lock.owner = entry.lock_owner;
    lock.comment = entry.lock_comment;
    lock.creation_date = entry.lock_creation_date;
    return HSVNLock::lockWithSVNLock(&lock, path->string());
}

HSVNStatusNodeMaker::HSVNStatusNodeMaker(HSVNVersion version, apr_pool_t* pool)
    : _version{std::move(version)}, _pool{pool}
{
}

HSVNLocalPathRef HSVNStatusNodeMaker::makePath(const char* text) { return HSVNLocalPathOfTrustedText(text); }

void HSVNStatusNodeMaker::enterDirectoryOf(const HSVNLocalPathRef& path)
{
    const std::string_view text = path->string();
    const auto folder = text.substr(0, HSVNPathText::lastSlash(text));
    const auto isWithin = [folder](const Directory& directory) {
        const std::string& above = directory.path->string();
        return folder.starts_with(above) && (folder.size() == above.size() || folder[above.size()] == '/');
    };
    while (!_directories.empty() && !isWithin(_directories.back())) {
        _directories.pop_back();
    }
    if (_directories.empty() || _directories.back().path->string().size() != folder.size()) {
        _directories.push_back({path->parent(), nullptr});
    }
    if (_location != _directories.back().path) {
        _location = _directories.back().path;
        _sizesAsked = 0;
    }
    if (!_location) { // the path is the root
        _directories.clear();
    }
}

/// Hardly a URL of a scan is read, and most are their directory's with the item's name: those are made when asked for.
void HSVNStatusNodeMaker::takeURL(HSVNNode& node, std::string_view url)
{
    if (node.isDirectory()) {
        node.setURL(HSVNURLOfTrustedText(std::string{url}));
        _directories.push_back({node.path(), node.URL()});
        return;
    }
    const std::size_t slash = HSVNPathText::lastSlash(url);
    const bool isInDirectory = slash != std::string_view::npos && slash > url.find("://") + 3; // not in "file:///"
    if (!isInDirectory || _directories.empty() ||
        !HSVNPathText::isPercentEncoded(url.substr(slash + 1), HSVNPathText::lastComponent(node.path()->string())))
    {
        node.setURL(HSVNURLOfTrustedText(std::string{url}));
        return;
    }
    const auto directoryURL = url.substr(0, slash);
    auto& directory = _directories.back();
    if (!directory.url || directory.url->string() != directoryURL) {
        directory.url = HSVNURLOfTrustedText(std::string{directoryURL});
    }
    node.setURLBelow(directory.url);
}

namespace {

/// The kind that a record tells, or else that of what is on the disk.
svn_node_kind_t kindOf(const HSVNLocalPathRef& path, svn_node_kind_t told, apr_pool_t* pool)
{
    if (told == svn_node_dir || told == svn_node_file) {
        return told;
    }
    svn_node_kind_t kind = svn_node_unknown;
    svn_error_t* error = HSVNCurrentEntryPoints().io_check_path(path->string().c_str(), &kind, pool);
    if (error) {
        HSVNException::exceptionWithError(error)->raise();
    }
    return kind;
}

} // namespace

std::uint64_t HSVNStatusNodeMaker::sizeOnDisk(const HSVNLocalPathRef& path)
{
    // A folder's second file pays for opening it.
    if (_location && ++_sizesAsked == 2) {
        _folder.open(_location->string());
    }
    const bool isRelative = _location && _sizesAsked >= 2 && _folder.descriptor() != AT_FDCWD;
    const std::string& text = path->string();
    const char* name = isRelative ? text.c_str() + text.rfind('/') + 1 : text.c_str();
    struct stat attributes
    {
    };
    if (::fstatat(isRelative ? _folder.descriptor() : AT_FDCWD, name, &attributes, AT_SYMLINK_NOFOLLOW) == 0) {
        // A folder in the file's way has no size of the file's.
        return S_ISDIR(attributes.st_mode) ? 0 : static_cast<std::uint64_t>(attributes.st_size);
    }
    if (errno != ENOENT && errno != ENOTDIR) {
        const int code = errno;
        HSVNException::exceptionWithReason(
            fmt::format("Cannot read the attributes of '{}': {}", text, std::generic_category().message(code)), code)
            ->raise();
    }
    return 0; // a missing item
}

namespace {

/// A new object, or the last one made new again when nobody else has it.
template <class Object>
const std::shared_ptr<Object>& renewed(std::shared_ptr<Object>& last)
{
    if (last && last.use_count() == 1) {
        std::destroy_at(last.get());
        std::construct_at(last.get());
    } else {
        last = std::make_shared<Object>();
    }
    return last;
}

void setShownName(HSVNNode& node, std::string_view path)
{
    const auto name = HSVNPathText::lastComponent(path);
    if (hasControlCharacter(name)) {
        node.setName(withoutControlCharacters(name));
    } else {
        node.setNameFromPath();
    }
}

} // namespace

HSVNNodeRef HSVNStatusNodeMaker::newNode(bool isDirectory, const HSVNLocalPathRef& path)
{
    HSVNNodeRef node;
    if (_refills) {
        node = isDirectory ? HSVNNodeRef{renewed(_directory)} : HSVNNodeRef{renewed(_file)};
    } else {
        node = isDirectory ? HSVNNodeRef{std::make_shared<HSVNDirectory>()} : HSVNNodeRef{std::make_shared<HSVNFile>()};
    }
    node->setPath(path);
    node->setLocation(_location);
    setShownName(*node, path->string());
    return node;
}

HSVNNodeRef HSVNStatusNodeMaker::nodeOfKind(const HSVNLocalPathRef& path, const svn_wc_status2_t& status)
{
    if (kindOf(path, status.entry ? status.entry->kind : svn_node_unknown, _pool) == svn_node_dir) {
        return newNode(true, path);
    }
    const auto size = recordedSize(status, _version);
    const auto bytes = size ? *size : sizeOnDisk(path);
    auto file = newNode(false, path);
    file->setSize(bytes);
    return file;
}

HSVNNodeRef HSVNStatusNodeMaker::nodeOfKind(const HSVNLocalPathRef& path, const svn_client_status_t& status,
                                            apr_pool_t* pool)
{
    // The size is that of whatever is on the disk, a file in a folder's way, too.
    const bool hasSize = status.filesize >= 0 && status.kind != svn_node_dir;
    const bool isFile = hasSize || kindOf(path, status.kind, pool) != svn_node_dir;
    auto node = newNode(!isFile, path);
    if (hasSize) {
        node->setSize(static_cast<std::uint64_t>(status.filesize));
    } else {
        node->setSizeUnknown();
    }
    return node;
}

namespace {

/// What makes a node, whose failure is told in the log.
template <class Make>
HSVNNodeRef logged(const HSVNLocalPathRef& path, Make make)
{
    try {
        return make();
    } catch (const HSVNPlatformException& exception) {
        HSVNDebug::logAtLevel(0, "Exception caught while creating node for '%@':", path->string());
        HSVNDebug::logAtLevel(0, "%@", exception.reason());
        throw;
    }
}

} // namespace

HSVNNodeRef HSVNStatusNodeMaker::makeNode(const HSVNLocalPathRef& path, const svn_wc_status2_t& status)
{
    enterDirectoryOf(path);
    auto node = logged(path, [&] { return nodeOfKind(path, status); });
    auto record =
        HSVNStatus::recordOf(status, _version, _texts.sharedText(status.entry ? status.entry->cmt_author : nullptr));
    if (const svn_wc_entry_t* entry = status.entry) {
        node->setRevision(record->lastChangedRevision());
        node->setExactDate(HSVNDateOrNil(entry->cmt_date));
        node->_author = record->_lastChangedAuthor;
        node->setHasProperties(record->hasProperties());
        node->setLock(HSVNLockOfEntry(path, *entry));
        if (entry->url) {
            takeURL(*node, entry->url);
        }
    }
    node->setStatus(std::move(record));
    return node;
}

namespace {

/// Frees the record of a node that nobody else has.
template <class Node>
void dropStatus(const std::shared_ptr<Node>& node)
{
    if (node && node.use_count() == 1) {
        node->setStatus(nullptr);
    }
}

/// One state: that of the text where the item's own only says that something of it is modified or in conflict.
HSVNStatusKind textStatusOf(svn_wc_status_kind node, svn_wc_status_kind text)
{
    const bool asksText = node == svn_wc_status_modified || node == svn_wc_status_conflicted;
    return HSVNConvertStatusKind(asksText ? text : node);
}

void takeRepositorySide(HSVNStatus& record, const svn_client_status_t& status, const std::string& path)
{
    record.setRepositoryNodeStatus(HSVNConvertStatusKind(status.repos_node_status));
    record.setRepositoryTextStatus(textStatusOf(status.repos_node_status, status.repos_text_status));
    record.setRepositoryPropertyStatus(HSVNConvertStatusKind(status.repos_prop_status));
    record.setRepositoryLock(HSVNLock::lockWithSVNLock(status.repos_lock, path));
    record.setOutOfDateLastCommitRevision(HSVNRevisionNumberFromSubversion(status.ood_changed_rev));
    record.setOutOfDateLastCommitDate(HSVNDate::dateWithAPRTime(status.ood_changed_date));
    record.setOutOfDateLastCommitAuthor(HSVNTextOrNil(status.ood_changed_author));
}

void takeRecord(HSVNStatus& record, const HSVNStatusFunctions::ItemStatus& item)
{
    const svn_client_status_t& status = *item.status;
    record.setNodeStatus(HSVNConvertStatusKind(status.node_status));
    record.setTextStatus(textStatusOf(status.node_status, status.text_status));
    record.setPropertyStatus(HSVNConvertStatusKind(status.prop_status));
    record.setSchedule(HSVNConvertSchedule(item.schedule));
    record.setVersioned(status.versioned != 0);
    record.setLocked(status.wc_is_locked != 0);
    record.setCopied(status.copied != 0);
    record.setSwitched(status.switched != 0);
    record.setTextConflicted(item.textConflicted != 0);
    record.setPropertiesConflicted(item.propertiesConflicted != 0);
    record.setTreeConflicted(item.treeConflicted != 0);
    record.setFileExternal(status.file_external != 0);
    record.setIncomplete(status.node_status == svn_wc_status_incomplete);
    record.setHasProperties(status.prop_status != svn_wc_status_none);
    record.setHasPropertyModifications(status.prop_status == svn_wc_status_modified);
    record.setDepth(static_cast<HSVNDepth>(status.depth));
    record.setRevision(HSVNRevisionNumberFromSubversion(status.revision));
    record.setLastChangedRevision(HSVNRevisionNumberFromSubversion(status.changed_rev));
    record.setLastChangedDate(HSVNDate::dateWithAPRTime(status.changed_date));
    record.setChangelist(HSVNTextOrNil(status.changelist));
    record.setMovedFrom(HSVNTextOrNil(status.moved_from_abspath));
    record.setMovedTo(HSVNTextOrNil(status.moved_to_abspath));
}

/// Both texts of the status are told.
std::string urlOf(const svn_client_status_t& status)
{
    std::string url = status.repos_root_url;
    if (*status.repos_relpath) {
        url.append(1, '/').append(HSVNPathText::percentEncoded(status.repos_relpath));
    }
    return url;
}

} // namespace

HSVNNodeRef HSVNStatusNodeMaker::makeNode(const HSVNLocalPathRef& path, const HSVNStatusFunctions::ItemStatus& item,
                                          apr_pool_t* pool)
{
    const svn_client_status_t& status = *item.status;
    enterDirectoryOf(path);
    dropStatus(_file);
    dropStatus(_directory);
    auto node = logged(path, [&] { return nodeOfKind(path, status, pool); });
    const auto record = _refills ? renewed(_record) : std::make_shared<HSVNStatus>();
    takeRecord(*record, item);
    takeRepositorySide(*record, status, path->string());
    record->_lastChangedAuthor = _texts.sharedText(status.changed_author);
    node->setRevision(record->lastChangedRevision());
    node->setExactDate(HSVNDateOrNil(status.changed_date));
    node->_author = record->_lastChangedAuthor;
    node->setHasProperties(record->hasProperties());
    node->setLock(HSVNLock::lockWithSVNLock(status.lock, path->string()));
    if (status.repos_root_url && status.repos_relpath) {
        takeURL(*node, urlOf(status));
    }
    node->setStatus(record);
    return node;
}

// MARK: HSVNStatusAggregates

namespace {

std::string_view folderOf(std::string_view path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) {
        return {};
    }
    return path.substr(0, slash == 0 ? 1 : slash);
}

} // namespace

HSVNStatusAggregates::Kinds HSVNStatusAggregates::kindsOf(const svn_wc_status2_t& status, const HSVNVersion& version)
{
    const bool tellsTrees = !version.isLessThan(HSVNVersion{1, 6}); // whose record ends before
    return {HSVNConvertStatusKind(status.text_status) | HSVNConvertStatusKind(status.prop_status),
            HSVNConvertStatusKind(status.repos_text_status) | HSVNConvertStatusKind(status.repos_prop_status),
            tellsTrees && status.tree_conflict ? 1U : 0U};
}

void HSVNStatusAggregates::unite(Kinds& into, const Kinds& kinds)
{
    into.local |= kinds.local;
    into.repository |= kinds.repository;
    into.treeConflicts += kinds.treeConflicts;
}

void HSVNStatusAggregates::add(std::string_view itemPath, Kinds kinds)
{
    const std::string_view folder = folderOf(itemPath);
    if (_last == _kinds.end() || _last->first != folder) {
        _last = _kinds.try_emplace(std::string{folder}).first;
    }
    unite(_last->second, kinds);
}

void HSVNStatusAggregates::combine(std::string_view rootPath)
{
    for (auto& [folder, kinds] : _kinds) { // parents inserted on the way come after their children
        if (folder.size() <= rootPath.size()) {
            continue;
        }
        unite(_kinds[std::string{folderOf(folder)}], kinds);
    }
}

HSVNStatusAggregates::Kinds HSVNStatusAggregates::kindsBelow(const std::string& folder) const
{
    const auto found = _kinds.find(folder);
    return found == _kinds.end() ? Kinds{} : found->second;
}

// MARK: HSVNStatusScan

HSVNStatusScan::HSVNStatusScan(HSVNContextRef scanContext, apr_pool_t* scanPool, const HSVNVersion& scanVersion,
                               HSVNLocalPathRef scanRootPath)
    : context{std::move(scanContext)}, pool{scanPool}, version{scanVersion}, maker{scanVersion, scanPool},
      rootPath{std::move(scanRootPath)}
{
}

namespace {

/// Notes the files that the item's conflicts left beside it.
void collectConflictFiles(HSVNStatusScan& scan, const HSVNLocalPathRef& path, const svn_wc_status2_t& status)
{
    const auto collect = [&](const char* fileName) {
        if (fileName && *fileName) {
            scan.conflictFiles.insert(path->parent()->pathByNormalizingAndAddingComponent(fileName)->string());
        }
    };
    if (!status.entry) {
        return;
    }
    if (status.text_status == svn_wc_status_conflicted) {
        collect(status.entry->conflict_new);
        collect(status.entry->conflict_old);
        collect(status.entry->conflict_wrk);
    }
    if (status.prop_status == svn_wc_status_conflicted) {
        collect(status.entry->prejfile);
    }
}

void noteAbnormalItem(HSVNStatusScan& scan, const HSVNLocalPathRef& path, const svn_wc_status2_t& status)
{
    if (!HSVNIsAbnormalStatus(status.text_status) && !HSVNIsAbnormalStatus(status.prop_status)) {
        return;
    }
    if (status.text_status == svn_wc_status_unversioned) {
        scan.unversionedPaths.insert(path->string());
    }
    ++scan.abnormalCount;
}

void adjustStatus(const HSVNStatusScan& scan, const HSVNLocalPathRef& path, svn_wc_status2_t& status)
{
    if (!scan.externals.empty() && scan.externals.contains(path->string())) {
        status.text_status = svn_wc_status_external;
    }
    if (scan.comparesAgainstRepository) {
        const auto known = [](svn_wc_status_kind kind) {
            return kind == svn_wc_status_none ? svn_wc_status_normal : kind; // unchanged, and known to be so
        };
        status.repos_text_status = known(status.repos_text_status);
        status.repos_prop_status = known(status.repos_prop_status);
    }
}

void scanItem(HSVNStatusScan& scan, const char* text, svn_wc_status2_t& status)
{
    const HSVNLocalPathRef path = scan.maker.makePath(text);
    const bool isTextConflicted = status.text_status == svn_wc_status_conflicted;
    if (!scan.keepsConflictFiles) {
        collectConflictFiles(scan, path, status);
    }
    adjustStatus(scan, path, status);
    noteAbnormalItem(scan, path, status);
    const bool isRoot = path->string() == scan.rootPath->string();
    if (!isRoot) {
        if (scan.propagatesStatus) {
            scan.aggregates.add(path->string(), HSVNStatusAggregates::kindsOf(status, scan.version));
        }
        if (scan.aggregatesOnly) {
            return;
        }
    }
    auto node = scan.maker.makeNode(path, status);
    node->status()->setTextConflicted(isTextConflicted); // also of an external
    if (isRoot) {
        scan.rootNode = node;
    }
    scan.nodes.push_back(std::move(node));
}

} // namespace

void HSVNStatusFunc(void* baton, const char* path, svn_wc_status2_t* status)
{
    auto& scan = *static_cast<HSVNStatusScan*>(baton);
    if (HSVNKeptException::isIn(*scan.context)) {
        return; // Subversion stops at its next cancellation check
    }
    const auto body = [&] { scanItem(scan, path, *status); };
    HSVNGuardVoidCallback(*scan.context, std::cref(body)); // small enough to be kept without an allocation
}
