#include "HSVNContext.h"
#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNLock.h"
#include "HSVNRepositoryInfo.h"
#include "HSVNRevisionSpec.h"
#include "HSVNURL.h"
#include "Internal/Browsing.h"
#include "Internal/List.h"
#include "Internal/MakeDirectories.h"
#include "Internal/Operation.h"
#include "Internal/PathKind.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Text.h"

#include <filesystem>
#include <fmt/format.h>

namespace {

constexpr apr_uint32_t allDirentFields = 0xFFFFFFFF;

struct DirectoryReceiver
{
    HSVNContext& context;
    const HSVNPathRef& path;
    HSVNDirectory::Maker maker;
    HSVNRepositoryInfoRef* repositoryInfo;
    HSVNDirectoryRef directory = nullptr;
};

HSVNURLRef optionalURL(const char* text) { return text ? HSVNURL::URLWithString(text) : nullptr; }

HSVNDirectoryRef makeDirectory(const DirectoryReceiver& receiver, const svn_info_t& info)
{
    auto directory = receiver.maker();
    directory->setName(receiver.path->denormalizedLastComponent());
    directory->setPath(receiver.path);
    directory->setLocation(receiver.path->parent());
    directory->setURL(optionalURL(info.URL));
    directory->setRevision(HSVNRevisionNumberFromSubversion(info.last_changed_rev));
    directory->setDate(HSVNDate::dateWithAPRTime(info.last_changed_date));
    directory->setAuthor(HSVNTextOrNil(info.last_changed_author));
    directory->setLock(info.lock ? std::make_shared<HSVNLock>(info.lock) : nullptr);
    directory->setHasProperties(false);
    return directory;
}

svn_error_t* HSVNInfoFunc(void* baton, const char*, const svn_info_t* info, apr_pool_t*)
{
    auto& receiver = *static_cast<DirectoryReceiver*>(baton);
    return HSVNGuardCallback(receiver.context, [&]() -> svn_error_t* {
        if (info->kind == svn_node_file) {
            throw HSVNException(fmt::format("'{}' is not a directory", receiver.path->string()));
        }
        if (receiver.repositoryInfo) {
            *receiver.repositoryInfo = HSVNRepositoryInfo::infoForRepositoryWithUUID(
                HSVNTextOrNil(info->repos_UUID), optionalURL(info->repos_root_URL),
                HSVNRevisionNumberFromSubversion(info->rev));
        }
        receiver.directory = makeDirectory(receiver, *info);
        return SVN_NO_ERROR;
    });
}

void requireLocalDirectory(const HSVNPath& path)
{
    std::error_code error;
    const auto status = std::filesystem::status(path.string(), error);
    if (!std::filesystem::exists(status)) {
        throw HSVNNoSuchEntryException(fmt::format("'{}' does not exist", path.string()));
    }
    if (!std::filesystem::is_directory(status)) {
        throw HSVNNotWorkingCopyException(fmt::format("'{}' is not a working copy", path.string()));
    }
}

// What it means that Subversion called no receiver although it reported no error.
HSVNDirectoryRef directoryNotTold(const HSVNPath& path, const HSVNURL* url)
{
    if (!url) {
        throw HSVNInternalInconsistencyException("Expected valid dir from HSVNInfoFunc");
    }
    const auto scheme = url->scheme();
    if (scheme == "svn" || scheme == "svn+ssh") {
        throw HSVNInternalInconsistencyException(
            fmt::format("Unable to obtain dir info from svn for '{}'. Does URL point to root directory of pre-1.2 "
                        "repository?",
                        path.string()));
    }
    return nullptr;
}

struct ListReceiver
{
    HSVNContext& context;
    const HSVNPathRef& path;
    HSVNListedNodeMaker maker;
    HSVNDirectoryRef directory = nullptr;
    std::vector<HSVNNodeRef> children = {};
};

svn_error_t* HSVNListFunc(void* baton, const char* relativePath, const svn_dirent_t* dirent, const svn_lock_t* lock,
                          const char*, apr_pool_t*)
{
    auto& receiver = *static_cast<ListReceiver*>(baton);
    return HSVNGuardCallback(receiver.context, [&]() -> svn_error_t* {
        if (*relativePath) {
            receiver.children.push_back(receiver.maker.makeNode(relativePath, *dirent, lock));
        } else if (dirent->kind == svn_node_dir) {
            const auto name = receiver.path->denormalizedLastComponent();
            receiver.directory =
                std::static_pointer_cast<HSVNDirectory>(receiver.maker.makeNodeOfTarget(name, *dirent, lock));
        }
        return SVN_NO_ERROR;
    });
}

HSVNDirectoryRef directoryOfCommit(const HSVNURLRef& url, const HSVNCommitResult& commit, apr_pool_t* pool)
{
    auto directory = std::make_shared<HSVNDirectory>();
    directory->setName(url->denormalizedLastComponent());
    directory->setPath(url);
    directory->setLocation(url->parent());
    directory->setURL(url);
    directory->setRevision(commit.revision);
    directory->setAuthor(commit.author);
    directory->setDate(HSVNDate::dateWithISO8601CString(commit.date ? commit.date->c_str() : nullptr, pool));
    return directory;
}

// From the level just below the directory down to the path itself.
std::vector<HSVNPathRef> levelsBelow(const HSVNPathRef& path, const HSVNPathRef& directory)
{
    std::vector<HSVNPathRef> levels;
    for (HSVNPathRef level = path; !level->isEqualToPath(directory);) {
        levels.insert(levels.begin(), level);
        level = level->parent();
        if (!level) {
            throw HSVNInvalidArgumentException(
                fmt::format("'{}' does not lie in '{}'", path->string(), directory->string()));
        }
    }
    return levels;
}

bool isADirectory(const HSVNPathRef& path, const HSVNContextRef& context)
{
    std::error_code error;
    return HSVNIsLocal(path) ? std::filesystem::is_directory(path->string(), error)
                             : HSVNNode::isDirectoryAtPath(path, HSVNRevisionSpec::HEAD(), context);
}

} // namespace

HSVNDirectoryRef HSVNDirectory::directoryAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                                const HSVNContextRef& context)
{
    return directoryAtPath(path, revision, static_cast<HSVNRepositoryInfoRef*>(nullptr), context);
}

HSVNDirectoryRef HSVNDirectory::directoryAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                                HSVNRepositoryInfoRef* repositoryInfo, const HSVNContextRef& context)
{
    return directoryAtPath(path, revision, repositoryInfo, context,
                           []() -> HSVNDirectoryRef { return std::make_shared<HSVNDirectory>(); });
}

HSVNDirectoryRef HSVNDirectory::directoryAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                                HSVNRepositoryInfoRef* repositoryInfo, const HSVNContextRef& context,
                                                Maker maker)
{
    HSVNOperation operation{context,
                            "HSVNDirectory",
                            "directoryAtPath:forRevision:repositoryInfo:withContext:",
                            {{"path", path}, {"revision", revision}, {"context", context}}};
    const auto url = std::dynamic_pointer_cast<const HSVNURL>(path);
    if (!url) {
        requireLocalDirectory(*path);
    }
    const HSVNRevisionRecords revisions{*revision};
    DirectoryReceiver receiver{*context, path, maker, repositoryInfo};
    operation.check(operation->client_info(operation.cString(path->resolve()->string()), &revisions.peg,
                                           &revisions.operative, HSVNInfoFunc, &receiver, false, operation.ctx(),
                                           operation.pool()));
    return receiver.directory ? receiver.directory : directoryNotTold(*path, url.get());
}

HSVNDirectoryRef HSVNDirectory::directoryAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                                std::vector<HSVNNodeRef>* children, const HSVNContextRef& context)
{
    HSVNOperation operation{context,
                            "HSVNDirectory",
                            "directoryAtPath:forRevision:children:withContext:",
                            {{"path", path}, {"revision", revision}, {"context", context}}};
    const HSVNRevisionRecords revisions{*revision};
    ListReceiver receiver{*context, path, {path, HSVNURLForListing(path, context)}};
    operation.check(operation->client_list(operation.cString(path->string()), &revisions.peg, &revisions.operative,
                                           false, allDirentFields, true, HSVNListFunc, &receiver, operation.ctx(),
                                           operation.pool()));
    if (children) {
        *children = std::move(receiver.children);
    }
    return receiver.directory;
}

HSVNDirectoryRef HSVNDirectory::createDirectoryAtPath(const HSVNPathRef& path, const HSVNContextRef& context)
{
    HSVNRevisionChange change{
        context, "HSVNDirectory", "createDirectoryAtPath:withContext:", {{"path", path}, {"context", context}}};
    auto& operation = change.operation();
    // Without a revision when the delegate refused the log message, which Subversion does not report as an error.
    const auto commit = HSVNMakeDirectories(change, operation.pathArray(*path), {});
    const auto url = std::dynamic_pointer_cast<const HSVNURL>(path);
    if (!url) {
        return directoryAtPath(path, HSVNRevisionSpec::UNSPECIFIED(), context);
    }
    if (commit.revision == HSVNInvalidRevision) {
        HSVNOperationCancelledException::exceptionWithReason("Operation was cancelled", 0)->raise();
    }
    return directoryOfCommit(url, commit, operation.pool());
}

HSVNDirectoryRef HSVNDirectory::createPath(const HSVNPathRef& path, const HSVNPathRef& directory,
                                           const HSVNContextRef& context)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(directory != nullptr, "directoryPath != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNLogCall("HSVNDirectory", "createPath:inDirectoryAtPath:withContext:",
                {{"path", path}, {"directoryPath", directory}, {"context", context}});
    HSVNDirectoryRef deepest;
    for (const auto& level : levelsBelow(path, directory)) {
        try {
            deepest = createDirectoryAtPath(level, context);
        } catch (const HSVNEntryExistsException&) {
            if (!isADirectory(level, context)) {
                throw;
            }
            // The level is there already, which is as good as made.
        }
    }
    return deepest;
}
