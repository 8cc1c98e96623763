// Nodes with their working-copy status: HSVNNode (WorkingCopy).

#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNFile.h"
#include "HSVNLocalPath.h"
#include "HSVNPlatformException.h"
#include "HSVNRevision.h"
#include "HSVNStatus.h"
#include "HSVNStringPatterns.h"
#include "Internal/CanonicalPath.h"
#include "Internal/Operation.h"
#include "Internal/StatusScan.h"

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unordered_map>
#include <unordered_set>

HSVNNodeRef HSVNNode::nodeAtPath(const HSVNPathRef& path, const svn_wc_status2_t* status, const HSVNContextRef& context,
                                 apr_pool_t* pool)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(status != nullptr, "status != NULL");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNAssertParameter(pool != nullptr, "pool != NULL");
    HSVNBundleScope bundle{context->bundle()};
    return HSVNStatusNodeMaker{HSVNDecidingVersion(*context), pool}.makeNode(HSVNCanonicalLocalPath(path), *status);
}

namespace {

struct HSVNNodeStatusRecord
{
    HSVNContextRef context;
    apr_pool_t* pool;
    HSVNLocalPathRef path;
    HSVNNodeRef node;
};

void HSVNNodeStatusCallback(void* baton, const char* path, svn_wc_status2_t* status)
{
    auto& record = *static_cast<HSVNNodeStatusRecord*>(baton);
    HSVNGuardVoidCallback(*record.context, [&] {
        if (!record.node && record.path->string() == path) {
            record.node = HSVNNode::nodeAtPath(record.path, status, record.context, record.pool);
        }
    });
}

} // namespace

HSVNNodeRef HSVNNode::nodeWithStatusAtPath(const HSVNPathRef& path, const HSVNRevisionRef& revision,
                                           bool compareAgainstRepository, const HSVNContextRef& context)
{
    HSVNOperation operation{context,
                            "HSVNNode",
                            "nodeWithStatusAtPath:revision:compareAgainstRepository:withContext:",
                            {{"path", path}, {"revision", revision}, {"context", context}}};
    HSVNNodeStatusRecord record{context, operation.pool(), HSVNCanonicalLocalPath(path), nullptr};
    const svn_opt_revision_t subversionRevision = revision->SVNRevision();
    svn_revnum_t result = SVN_INVALID_REVNUM;
    operation.check(operation->client_status2(&result, operation.cString(record.path->string()), &subversionRevision,
                                              HSVNNodeStatusCallback, &record, FALSE, TRUE, compareAgainstRepository,
                                              FALSE, FALSE, operation.ctx(), operation.pool()));
    return record.node;
}

HSVNNodeRef HSVNNode::nodeWithName(const std::string& name, const std::vector<HSVNNodeRef>& nodes)
{
    const auto found = std::find_if(nodes.begin(), nodes.end(), [&](const auto& node) {
        HSVNAssertParameter(node != nullptr, "node != nil");
        return node->name() == name;
    });
    return found == nodes.end() ? nullptr : *found;
}

namespace {

/// The names of the files that the conflicts of the node left beside it.
std::vector<std::string> conflictFileNames(const HSVNNode& node)
{
    std::vector<std::string> names;
    const auto collect = [&](std::optional<std::string> name) {
        if (name) {
            names.push_back(std::move(*name));
        }
    };
    const HSVNStatusRef& status = node.status();
    if (status && status->textStatus() == HSVNStatusKindConflicted) {
        collect(status->conflictOldVersion());
        collect(status->conflictNewVersion());
        collect(status->conflictWorkingVersion());
    }
    if (status && status->propertyStatus() == HSVNStatusKindConflicted) {
        collect(status->propertyRejectFilePath());
    }
    return names;
}

} // namespace

void HSVNNode::removeVersionConflictFilesFromArray(std::vector<HSVNNodeRef>& nodes)
{
    std::vector<std::string> names;
    for (const auto& node : nodes) {
        HSVNAssertParameter(node != nullptr, "node != nil");
        auto more = conflictFileNames(*node);
        names.insert(names.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    }
    if (names.empty()) {
        return;
    }
    std::unordered_map<std::string, const HSVNNode*> firstByName;
    for (const auto& node : nodes) {
        firstByName.try_emplace(node->name().value_or(""), node.get());
    }
    std::unordered_set<const HSVNNode*> removed;
    for (const auto& name : names) {
        if (const auto found = firstByName.find(name); found != firstByName.end()) {
            removed.insert(found->second);
        }
    }
    std::erase_if(nodes, [&](const HSVNNodeRef& node) { return removed.contains(node.get()); });
}

HSVNNodeRef HSVNNode::nodeForUnversionedFileAtPath(const HSVNPathRef& path,
                                                   const std::vector<std::string>& ignorePatterns,
                                                   const HSVNContextRef& context)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    struct stat attributes
    {
    };
    if (::lstat(path->string().c_str(), &attributes) != 0) {
        const int code = errno;
        HSVNException::exceptionWithReason(
            "Cannot read the attributes of '" + path->string() + "': " + std::generic_category().message(code), code)
            ->raise();
    }
    HSVNNodeRef node;
    if (S_ISDIR(attributes.st_mode)) {
        node = std::make_shared<HSVNDirectory>();
    } else {
        node = std::make_shared<HSVNFile>();
        node->setSize(static_cast<std::uint64_t>(attributes.st_size));
    }
    const std::string name = path->denormalizedLastComponent();
    HSVNBundleScope bundle{context->bundle()};
    const bool isIgnored = HSVNString::matchesPatternInArray(name, ignorePatterns, context->pool());
    node->setName(name);
    node->setPath(path);
    node->setLocation(path->parent());
    node->setDate(HSVNDate::dateWithTimeIntervalSince1970(attributes.st_mtime));
    node->setStatus(isIgnored ? HSVNStatus::ignored() : HSVNStatus::unversioned());
    return node;
}
