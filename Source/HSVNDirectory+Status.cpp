// Status scans: HSVNDirectory (WorkingCopy).

#include "HSVNClient.h"
#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "HSVNLock.h"
#include "HSVNRepositoryInfo.h"
#include "HSVNRevision.h"
#include "HSVNStatus.h"
#include "HSVNStatusOptions.h"
#include "HSVNURL.h"
#include "Internal/CanonicalPath.h"
#include "Internal/FileManager.h"
#include "Internal/Operation.h"
#include "Internal/RevisionNumber.h"
#include "Internal/StatusScan.h"

#include <algorithm>
#include <filesystem>

namespace {

constexpr svn_opt_revision_t unspecifiedRevision{svn_opt_revision_unspecified, {0}};

/// Sets what the options ask for in a scan.
///
/// @return whether Subversion walks the whole tree: also for a scan of the folder alone that combines what is below it
bool applyOptions(HSVNStatusScan& scan, const HSVNStatusOptions& options)
{
    scan.propagatesStatus = options.propagateStatusToAncestor();
    scan.comparesAgainstRepository = options.compareAgainstRepository();
    scan.keepsConflictFiles = options.includeConflictVersionFiles();
    const bool walksForAggregates =
        options.propagateStatusToAncestor() ||
        (options.compareAgainstRepository() && !options.recursive() && options.includeNormalFiles());
    scan.aggregatesOnly = walksForAggregates && !options.recursive();
    return options.recursive() || scan.aggregatesOnly;
}

/// Abnormal items without the conflict files, which Subversion reports as unversioned items of their own.
std::size_t countAbnormalItems(const HSVNStatusScan& scan)
{
    const auto conflictFiles =
        std::count_if(scan.conflictFiles.begin(), scan.conflictFiles.end(),
                      [&](const std::string& path) { return scan.unversionedPaths.contains(path); });
    return scan.abnormalCount - static_cast<std::size_t>(conflictFiles);
}

void storeAggregates(HSVNStatusScan& scan)
{
    scan.aggregates.combine(scan.rootPath->string());
    for (const auto& node : scan.nodes) {
        if (node->isDirectory()) {
            const auto kinds = scan.aggregates.kindsBelow(node->path()->string());
            auto& directory = static_cast<HSVNDirectory&>(*node);
            directory.setAggregateChildStatus(kinds.local);
            directory.setAggregateRepositoryChildStatus(kinds.repository);
            directory.setChildTreeConflictCount(kinds.treeConflicts);
        }
    }
}

/// Whether Subversion knows nothing of the scanned folder but that it is there.
bool foundOnlyAnUnversionedRoot(const HSVNStatusScan& scan)
{
    return scan.nodes.size() == 1 && scan.rootNode && scan.rootNode->isDirectory() &&
           !scan.rootNode->status()->isVersioned();
}

void HSVNRootStatusFunc(void* baton, const char* path, svn_wc_status2_t* status)
{
    const auto& scan = *static_cast<const HSVNStatusScan*>(baton);
    if (!scan.rootNode && scan.rootPath->string() == path) {
        HSVNStatusFunc(baton, path, status);
    }
}

/// Makes the node of an unchanged root, which a scan of changes alone does not report but which bears the aggregates.
void scanUnchangedRoot(HSVNOperation& operation, HSVNStatusScan& scan)
{
    svn_revnum_t result = SVN_INVALID_REVNUM;
    operation.check(operation->client_status2(&result, operation.cString(scan.rootPath->string()), &unspecifiedRevision,
                                              HSVNRootStatusFunc, &scan, FALSE, TRUE, FALSE, TRUE, TRUE,
                                              operation.ctx(), operation.pool()));
}

/// Adds the externals of the working copies that are externals themselves. One that cannot be read has none: the scan
/// tells what is the matter with it.
void addInnerExternals(HSVNOperation& operation, const std::string& external, std::set<std::string>& externals)
{
    std::error_code error;
    std::set<std::string> inner;
    try {
        if (std::filesystem::is_directory(external, error) &&
            HSVNDirectory::isWorkingCopyAtPath(HSVNLocalPath::pathWithString(external)))
        {
            inner = HSVNExternalPathsBelow(operation, external, HSVNBrokenExternals::Skipped);
        }
    } catch (const HSVNOperationCancelledException&) {
        throw;
    } catch (const HSVNException&) { // NOLINT(bugprone-empty-catch)
    }
    for (const auto& path : inner) {
        if (externals.insert(path).second) {
            addInnerExternals(operation, path, externals);
        }
    }
}

/// The externals of the scanned folder, and those inside them where the scan goes there; none when Subversion does not
/// know the folder, which the scan then finds out.
std::set<std::string> externalsOf(HSVNOperation& operation, const HSVNStatusScan& scan, bool goesInside)
{
    try {
        auto externals = HSVNExternalPathsBelow(operation, scan.rootPath->string(), HSVNBrokenExternals::Skipped);
        if (goesInside) {
            for (const auto& external : std::set{externals}) {
                addInnerExternals(operation, external, externals);
            }
        }
        return externals;
    } catch (const HSVNNoSuchEntryException&) {
        return {};
    }
}

/// Passes the failure of a scan on unless it means that the folder is not under version control: a working copy that
/// cannot be read would look wholly unversioned, and be added.
void requireUnversionedFolder(const HSVNPathRef& path)
{
    if (HSVNDirectory::isWorkingCopyAtPath(path)) {
        throw;
    }
}

/// Runs the scan.
///
/// @return false for a folder that is not under version control
bool runScan(HSVNOperation& operation, HSVNStatusScan& scan, const HSVNStatusOptions& options)
{
    const bool recurse = applyOptions(scan, options);
    const svn_opt_revision_t revision = options.revision()->SVNRevision();
    try {
        scan.externals = externalsOf(operation, scan, recurse && options.processExternals());
        svn_revnum_t result = SVN_INVALID_REVNUM;
        operation.check(operation->client_status2(
            &result, operation.cString(scan.rootPath->string()), &revision, HSVNStatusFunc, &scan, recurse,
            options.includeNormalFiles(), options.compareAgainstRepository(), !options.respectIgnoreProperties(),
            !options.processExternals(), operation.ctx(), operation.pool()));
        if (scan.aggregatesOnly && !scan.rootNode) {
            scanUnchangedRoot(operation, scan);
        }
    } catch (const HSVNNotWorkingCopyException&) {
        requireUnversionedFolder(scan.rootPath);
        return false;
    } catch (const HSVNUnversionedResourceException&) {
        requireUnversionedFolder(scan.rootPath);
        return false;
    }
    return !foundOnlyAnUnversionedRoot(scan);
}

} // namespace

std::vector<HSVNNodeRef> HSVNDirectory::statusForNodesInDirectoryAtPath(const HSVNPathRef& path,
                                                                        const HSVNStatusOptionsRef& options,
                                                                        const HSVNContextRef& context)
{
    return statusForNodesInDirectoryAtPath(path, options, nullptr, nullptr, context);
}

std::vector<HSVNNodeRef> HSVNDirectory::statusForNodesInDirectoryAtPath(const HSVNPathRef& path,
                                                                        const HSVNStatusOptionsRef& options,
                                                                        HSVNNodeRef* directory,
                                                                        std::size_t* abnormalItemCount,
                                                                        const HSVNContextRef& context)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(options != nullptr, "options != nil");
    HSVNAssertParameter(options->revision() != nullptr, "[options revision] != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNDirectory",
                            "statusForNodesInDirectoryAtPath:withOptions:directory:abnormalItemCount:withContext:",
                            {{"path", path}, {"options", options}, {"context", context}}};
    HSVNStatusScan scan{context, operation.pool(), operation.version(), HSVNCanonicalLocalPath(path)};
    if (!runScan(operation, scan, *options)) {
        return statusForNodesInUnversionedDirectoryAtPath(path, options, directory, abnormalItemCount, context);
    }
    if (directory) {
        *directory = scan.rootNode;
    }
    if (abnormalItemCount) {
        *abnormalItemCount = countAbnormalItems(scan);
    }
    if (!options->includeConflictVersionFiles()) {
        // By their paths: two folders can hold files of one name.
        std::erase_if(scan.nodes,
                      [&](const HSVNNodeRef& node) { return scan.conflictFiles.contains(node->path()->string()); });
    }
    storeAggregates(scan);
    return std::move(scan.nodes);
}

// MARK: Folders that are not under version control

namespace {

struct UnversionedScan
{
    const HSVNStatusOptions& options;
    const HSVNContextRef& context;
    const std::vector<std::string> patterns;
    const std::string adminName;
    std::vector<HSVNNodeRef> nodes;
};

bool hasAdminArea(const UnversionedScan& scan, const HSVNPath& folder)
{
    std::error_code ignored; // a folder that cannot be searched is told of when it is listed
    return std::filesystem::exists(folder.string() + "/" + scan.adminName, ignored);
}

void scanUnversionedFolder(UnversionedScan& scan, const HSVNPathRef& folder)
{
    const auto names = HSVNFileManager::sortedNamesIn(folder->string());
    for (const auto& name : names) {
        if (name == scan.adminName) {
            continue;
        }
        const auto path = folder->pathByNormalizingAndAddingComponent(name);
        auto node = HSVNNode::nodeForUnversionedFileAtPath(path, scan.patterns, scan.context);
        const bool isIgnored = node->status()->textStatus() == HSVNStatusKindIgnored;
        if (isIgnored && scan.options.respectIgnoreProperties()) {
            continue;
        }
        const bool descends =
            scan.options.recursive() && node->isDirectory() && !isIgnored && !hasAdminArea(scan, *path);
        scan.nodes.push_back(std::move(node));
        if (descends) {
            scanUnversionedFolder(scan, path);
        }
    }
}

} // namespace

std::vector<HSVNNodeRef> HSVNDirectory::statusForNodesInUnversionedDirectoryAtPath(const HSVNPathRef& path,
                                                                                   const HSVNStatusOptionsRef& options,
                                                                                   HSVNNodeRef* directory,
                                                                                   std::size_t* abnormalItemCount,
                                                                                   const HSVNContextRef& context)
{
    HSVNOperation operation{
        context,
        "HSVNDirectory",
        "statusForNodesInUnversionedDirectoryAtPath:withOptions:directory:abnormalItemCount:withContext:",
        {{"path", path}, {"options", options}, {"context", context}}};
    UnversionedScan scan{
        *options, context, context->globalIgnoreList(), operation->wc_get_adm_dir(operation.pool()), {}};
    const HSVNLocalPathRef folder = HSVNCanonicalLocalPath(path);
    auto root = nodeForUnversionedFileAtPath(folder, scan.patterns, context);
    scanUnversionedFolder(scan, folder);
    if (directory) {
        *directory = std::move(root);
    }
    if (abnormalItemCount) {
        *abnormalItemCount =
            static_cast<std::size_t>(std::count_if(scan.nodes.begin(), scan.nodes.end(), [](const HSVNNodeRef& node) {
                return node->status()->isAbnormal();
            }));
    }
    return std::move(scan.nodes);
}

// MARK: One working-copy folder

namespace {

struct HSVNDirectoryStatusScan
{
    HSVNContext& context;
    const HSVNVersion& version;
    std::string targetPath;
    HSVNPathRef path;
    HSVNStatusRef status = {};
    HSVNStatusAggregates::Kinds childKinds = {};
    HSVNURLRef url = {};
    HSVNRevisionNumber lastChangedRevision = HSVNInvalidRevision;
    std::optional<HSVNDate> lastChangedDate = {};
    std::optional<std::string> lastChangedAuthor = {};
    HSVNLockRef lock = {};
    bool hasProperties = false;
};

void takeTargetStatus(HSVNDirectoryStatusScan& scan, const svn_wc_status2_t& status)
{
    scan.status = HSVNStatus::statusWithSVNStatus(&status, scan.version);
    if (const svn_wc_entry_t* entry = status.entry) {
        scan.lastChangedRevision = scan.status->lastChangedRevision();
        scan.lastChangedDate = scan.status->lastChangedDate();
        scan.lastChangedAuthor = scan.status->lastChangedAuthor();
        scan.hasProperties = scan.status->hasProperties();
        scan.lock = HSVNLockOfEntry(scan.path, *entry);
        scan.url = entry->url ? HSVNURL::URLWithString(entry->url) : nullptr;
    }
}

void HSVNDirectoryStatusFunc(void* baton, const char* path, svn_wc_status2_t* status)
{
    auto& scan = *static_cast<HSVNDirectoryStatusScan*>(baton);
    HSVNGuardVoidCallback(scan.context, [&] {
        if (scan.targetPath == path) {
            if (!scan.status) {
                takeTargetStatus(scan, *status);
            }
            return;
        }
        HSVNStatusAggregates::unite(scan.childKinds, HSVNStatusAggregates::kindsOf(*status, scan.version));
    });
}

struct WorkingCopyInfo
{
    HSVNContext& context;
    bool hasDepth; // from 1.5 on
    HSVNRepositoryInfoRef repositoryInfo = {};
    HSVNRevisionNumber lastChangedRevision = HSVNInvalidRevision;
    std::optional<HSVNDate> lastChangedDate = {};
    std::optional<std::string> lastChangedAuthor = {};
    HSVNLockRef lock = {};
    HSVNURLRef url = {};
    HSVNDepth depth = HSVNDepthUnknown;
};

svn_error_t* HSVNWorkingCopyInfoFunc(void* baton, const char* /*path*/, const svn_info_t* info, apr_pool_t* /*pool*/)
{
    auto& record = *static_cast<WorkingCopyInfo*>(baton);
    return HSVNGuardCallback(record.context, [&]() -> svn_error_t* {
        const auto url = [](const char* text) { return text ? HSVNURL::URLWithString(text) : nullptr; };
        const auto text = [](const char* field) { return field ? std::optional<std::string>{field} : std::nullopt; };
        record.repositoryInfo = HSVNRepositoryInfo::infoForRepositoryWithUUID(
            text(info->repos_UUID), url(info->repos_root_URL), HSVNRevisionNumberFromSubversion(info->rev));
        record.lastChangedRevision = HSVNRevisionNumberFromSubversion(info->last_changed_rev);
        record.lastChangedDate = HSVNDate::dateWithAPRTime(info->last_changed_date);
        record.lastChangedAuthor = text(info->last_changed_author);
        record.lock = info->lock ? std::make_shared<HSVNLock>(info->lock) : nullptr;
        record.url = url(info->URL);
        if (record.hasDepth) {
            record.depth = static_cast<HSVNDepth>(info->depth);
        }
        return nullptr;
    });
}

void scanDirectoryAlone(HSVNOperation& operation, HSVNDirectoryStatusScan& scan)
{
    svn_revnum_t result = SVN_INVALID_REVNUM;
    operation.check(operation->client_status2(&result, operation.cString(scan.targetPath), &unspecifiedRevision,
                                              HSVNDirectoryStatusFunc, &scan, FALSE, FALSE, FALSE, FALSE, FALSE,
                                              operation.ctx(), operation.pool()));
}

HSVNDirectoryRef makeDirectory(const HSVNPathRef& path, const HSVNDirectoryStatusScan& scan,
                               const WorkingCopyInfo& info)
{
    auto directory = std::make_shared<HSVNDirectory>();
    directory->setName(path->denormalizedLastComponent());
    directory->setPath(path);
    directory->setLocation(path->parent());
    directory->setRevision(info.lastChangedRevision);
    directory->setDate(info.lastChangedDate);
    directory->setAuthor(info.lastChangedAuthor);
    directory->setLock(info.lock);
    directory->setHasProperties(scan.hasProperties);
    auto status = scan.status ? scan.status : HSVNStatus::normal();
    status->setDepth(info.depth);
    directory->setStatus(std::move(status));
    directory->setAggregateChildStatus(scan.childKinds.local);
    directory->setAggregateRepositoryChildStatus(scan.childKinds.repository);
    directory->setChildTreeConflictCount(scan.childKinds.treeConflicts);
    directory->setURL(info.url);
    return directory;
}

} // namespace

HSVNDirectoryRef HSVNDirectory::workingCopyWithStatusAtPath(const HSVNPathRef& path, const HSVNContextRef& context)
{
    return workingCopyWithStatusAtPath(path, nullptr, context);
}

HSVNDirectoryRef HSVNDirectory::workingCopyWithStatusAtPath(const HSVNPathRef& path,
                                                            HSVNRepositoryInfoRef* repositoryInfo,
                                                            const HSVNContextRef& context)
{
    HSVNOperation operation{context,
                            "HSVNDirectory",
                            "workingCopyWithStatusAtPath:repositoryInfo:withContext:",
                            {{"path", path}, {"context", context}}};
    if (!isWorkingCopyAtPath(path)) {
        throw HSVNNotWorkingCopyException("Directory is not a working copy");
    }
    HSVNDirectoryStatusScan scan{*context, operation.version(), HSVNCanonicalLocalPath(path)->string(), path};
    scanDirectoryAlone(operation, scan);
    WorkingCopyInfo info{*context, operation.isAtLeast(HSVNVersion::version1_5())};
    operation.check(operation->client_info(operation.cString(scan.targetPath), &unspecifiedRevision,
                                           &unspecifiedRevision, HSVNWorkingCopyInfoFunc, &info, FALSE, operation.ctx(),
                                           operation.pool()));
    if (repositoryInfo) {
        *repositoryInfo = info.repositoryInfo;
    }
    return makeDirectory(path, scan, info);
}
