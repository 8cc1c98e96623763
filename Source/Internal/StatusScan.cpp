#include "Internal/StatusScan.h"

#include "HSVNDebug.h"
#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNFile.h"
#include "HSVNLocalPath.h"
#include "HSVNLock.h"
#include "HSVNStatus.h"
#include "HSVNURL.h"
#include "Internal/Operation.h"
#include "Internal/PathText.h"
#include "Internal/Text.h"
#include "Internal/TrustedText.h"

#include <algorithm>
#include <cerrno>
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

bool hasControlCharacter(std::string_view text)
{
    // Runs for every item: hardly a name has a byte that one can begin with.
    const bool mayHave = std::any_of(text.begin(), text.end(), [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte < 0x20 || byte == 0x7F || byte == 0xC2;
    });
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
    return std::make_shared<HSVNLock>(
        path, entry.lock_token, HSVNTextOrNil(entry.lock_owner), HSVNTextOrNil(entry.lock_comment),
        HSVNDate::dateWithAPRTime(entry.lock_creation_date).value_or(HSVNDate{}), std::nullopt);
}

HSVNStatusNodeMaker::HSVNStatusNodeMaker(HSVNVersion version, apr_pool_t* pool)
    : _version{std::move(version)}, _pool{pool}
{
}

HSVNLocalPathRef HSVNStatusNodeMaker::makePath(const char* text) { return HSVNLocalPathOfTrustedText(text); }

const HSVNPathRef& HSVNStatusNodeMaker::locationOf(const HSVNLocalPathRef& path)
{
    const std::string& text = path->string();
    const std::size_t slash = text.rfind('/');
    const bool isNeighbour = _location && slash == _location->string().size() && slash != 0 &&
                             text.compare(0, slash, _location->string()) == 0;
    if (!isNeighbour) {
        _location = path->parent();
        _folderIsOpen = false;
    }
    return _location;
}

svn_node_kind_t HSVNStatusNodeMaker::kindOf(const HSVNLocalPathRef& path, const svn_wc_status2_t& status) const
{
    if (status.entry && (status.entry->kind == svn_node_dir || status.entry->kind == svn_node_file)) {
        return status.entry->kind;
    }
    svn_node_kind_t kind = svn_node_unknown;
    svn_error_t* error = HSVNCurrentEntryPoints().io_check_path(path->string().c_str(), &kind, _pool);
    if (error) {
        HSVNException::exceptionWithError(error)->raise();
    }
    return kind;
}

std::uint64_t HSVNStatusNodeMaker::sizeOnDisk(const HSVNLocalPathRef& path)
{
    if (_location && !_folderIsOpen) {
        _folder.open(_location->string());
        _folderIsOpen = true;
    }
    const bool isRelative = _location && _folder.descriptor() != AT_FDCWD;
    const std::string& text = path->string();
    const char* name = isRelative ? text.c_str() + text.rfind('/') + 1 : text.c_str();
    struct stat attributes
    {
    };
    if (::fstatat(_folder.descriptor(), name, &attributes, AT_SYMLINK_NOFOLLOW) == 0) {
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

HSVNNodeRef HSVNStatusNodeMaker::nodeOfKind(const HSVNLocalPathRef& path, const svn_wc_status2_t& status)
{
    if (kindOf(path, status) == svn_node_dir) {
        return std::make_shared<HSVNDirectory>();
    }
    auto file = std::make_shared<HSVNFile>();
    const auto size = recordedSize(status, _version);
    file->setSize(size ? *size : sizeOnDisk(path));
    return file;
}

namespace {

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

HSVNNodeRef HSVNStatusNodeMaker::makeNode(const HSVNLocalPathRef& path, const svn_wc_status2_t& status)
{
    const HSVNPathRef location = locationOf(path);
    HSVNNodeRef node;
    try {
        node = nodeOfKind(path, status);
    } catch (const HSVNPlatformException& exception) {
        HSVNDebug::logAtLevel(0, "Exception caught while creating node for '%@':", path->string());
        HSVNDebug::logAtLevel(0, "%@", exception.reason());
        throw;
    }
    node->setPath(path);
    node->setLocation(location);
    setShownName(*node, path->string());
    auto record = HSVNStatus::statusWithSVNStatus(&status, _version, &_texts);
    if (const svn_wc_entry_t* entry = status.entry) {
        node->setRevision(record->lastChangedRevision());
        node->setDate(record->lastChangedDate());
        node->setSharedAuthor(record->sharedLastChangedAuthor());
        node->setHasProperties(record->hasProperties());
        node->setLock(HSVNLockOfEntry(path, *entry));
        if (entry->url) {
            node->setURL(HSVNURLOfTrustedText(entry->url));
        }
    }
    node->setStatus(std::move(record));
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

void unite(HSVNStatusAggregates::Kinds& into, const HSVNStatusAggregates::Kinds& kinds)
{
    into.local |= kinds.local;
    into.repository |= kinds.repository;
}

} // namespace

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

HSVNStatusScan::HSVNStatusScan(HSVNContextRef scanContext, apr_pool_t* scanPool, const HSVNVersion& version,
                               HSVNLocalPathRef scanRootPath)
    : context{std::move(scanContext)}, pool{scanPool}, maker{version, scanPool}, rootPath{std::move(scanRootPath)}
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
    if (!scan.keepsConflictFiles) {
        collectConflictFiles(scan, path, status);
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
    adjustStatus(scan, path, status);
    noteAbnormalItem(scan, path, status);
    const bool isRoot = path->string() == scan.rootPath->string();
    if (!isRoot) {
        if (scan.propagatesStatus) {
            scan.aggregates.add(
                path->string(),
                {HSVNConvertStatusKind(status.text_status) | HSVNConvertStatusKind(status.prop_status),
                 HSVNConvertStatusKind(status.repos_text_status) | HSVNConvertStatusKind(status.repos_prop_status)});
        }
        if (scan.aggregatesOnly) {
            return;
        }
    }
    auto node = scan.maker.makeNode(path, status);
    if (isRoot) {
        scan.rootNode = node;
    }
    scan.nodes.push_back(std::move(node));
}

} // namespace

void HSVNStatusFunc(void* baton, const char* path, svn_wc_status2_t* status)
{
    auto& scan = *static_cast<HSVNStatusScan*>(baton);
    if (scan.context->hasKeptException()) {
        return; // Subversion stops at its next cancellation check
    }
    const auto body = [&] { scanItem(scan, path, *status); };
    HSVNGuardVoidCallback(*scan.context, std::cref(body)); // small enough to be kept without an allocation
}
