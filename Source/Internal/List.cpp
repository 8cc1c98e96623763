#include "Internal/List.h"

#include "HSVNDirectory.h"
#include "HSVNFile.h"
#include "HSVNStringPaths.h"
#include "HSVNURL.h"
#include "Internal/Browsing.h"
#include "Internal/CanonicalPath.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/PathText.h"

#include <iterator>
#include <optional>

// MARK: HSVNListedNodeMaker

namespace {

HSVNNodeRef nodeOf(const std::string& name, const HSVNPathRef& path, const HSVNURLRef& url, const svn_dirent_t& dirent,
                   const svn_lock_t* lock, const HSVNPathRef& location, const HSVNSharedText& author)
{
    if (dirent.kind == svn_node_dir) {
        return std::make_shared<HSVNDirectory>(name, path, url, &dirent, lock, location, author);
    }
    return std::make_shared<HSVNFile>(name, path, url, &dirent, lock, location, author);
}

} // namespace

HSVNListedNodeMaker::HSVNListedNodeMaker(HSVNPathRef path, HSVNURLRef url)
    : _path{std::move(path)}, _url{std::move(url)}, _isURL{dynamic_cast<const HSVNURL*>(_path.get()) != nullptr}
{
}

HSVNNodeRef HSVNListedNodeMaker::makeNode(const char* name, const svn_dirent_t& dirent, const svn_lock_t* lock)
{
    const auto path = _path->pathByNormalizingAndAddingComponent(name);
    const auto urlPath = _isURL || !_url ? path : _url->pathByNormalizingAndAddingComponent(name);
    const auto url = std::dynamic_pointer_cast<const HSVNURL>(urlPath); // nil for a local path without a URL
    if (!_location || _location->string() != HSVNPathText::deletingLastComponent(path->string())) {
        _location = path->parent();
    }
    return nodeOf(name, path, url, dirent, lock, _location, _authors.sharedText(dirent.last_author));
}

HSVNNodeRef HSVNListedNodeMaker::makeNodeOfTarget(const std::string& name, const svn_dirent_t& dirent,
                                                  const svn_lock_t* lock)
{
    return nodeOf(name, _path, _url, dirent, lock, _path->parent(), _authors.sharedText(dirent.last_author));
}

// MARK: HSVNList

namespace {

struct ListCall
{
    HSVNOperation& operation;
    const std::string& target;
    const char* url; // of the target; null when it is not known
    const HSVNListChoices& choices;
    const HSVNReceiver<const HSVNNodeRef&>& receiver;
    std::optional<HSVNListedNodeMaker> maker = std::nullopt;         // once Subversion has taken the target
    std::optional<HSVNListedNodeMaker> externalMaker = std::nullopt; // of the last external's items
    std::string external = {};
};

HSVNListedNodeMaker& makerOfTarget(ListCall& call)
{
    if (!call.maker) {
        const auto path = HSVNPath::pathWithString(call.target.empty() ? "." : call.target);
        const auto url = std::dynamic_pointer_cast<const HSVNURL>(path);
        call.maker.emplace(url ? path : HSVNCanonicalLocalPath(path),
                           !url && call.url ? HSVNURL::URLWithString(call.url) : url);
    }
    return *call.maker;
}

/// Where an external's items are shown: below the place that the definition gives it.
HSVNListedNodeMaker& makerOfExternal(ListCall& call, const std::string& parentURL, const std::string& target)
{
    const std::string external = parentURL + '\n' + target;
    if (!call.externalMaker || call.external != external) {
        const auto parent = HSVNURL::URLWithString(parentURL);
        call.externalMaker.emplace(parent->pathByNormalizingAndAddingComponent(target), nullptr);
        call.external = external;
    }
    return *call.externalMaker;
}

/// What was not asked for is whatever a server makes of it.
svn_dirent_t kindAlone(const svn_dirent_t& dirent)
{
    svn_dirent_t record{};
    record.kind = dirent.kind;
    record.size = SVN_INVALID_FILESIZE;
    record.created_rev = SVN_INVALID_REVNUM;
    return record;
}

svn_error_t* receiveItem(void* baton, const char* path, const svn_dirent_t* dirent, const svn_lock_t* lock,
                         const char* absolutePath, const char* externalParentURL, const char* externalTarget,
                         apr_pool_t*)
{
    auto& call = *static_cast<ListCall*>(baton);
    return HSVNGuardCallback(*call.operation.context(), [&]() -> svn_error_t* {
        const svn_dirent_t record = call.choices.allFields ? *dirent : kindAlone(*dirent);
        const bool isExternal = externalParentURL && externalTarget;
        auto& maker = isExternal ? makerOfExternal(call, externalParentURL, externalTarget) : makerOfTarget(call);
        HSVNNodeRef node;
        if (*path) {
            node = maker.makeNode(path, record, lock);
        } else {
            const bool isFile = dirent->kind == svn_node_file;
            const auto name = isFile ? std::string{HSVNPathText::lastComponent(absolutePath)} : ".";
            node = maker.makeNodeOfTarget(name, record, lock);
        }
        if (isExternal) {
            node->setURL(nullptr); // it is another repository's, perhaps
            node->setExternal(externalParentURL, externalTarget);
        }
        return HSVNHandOver(call.operation, call.receiver, node);
    });
}

svn_error_t* receivePlainItem(void* baton, const char* path, const svn_dirent_t* dirent, const svn_lock_t* lock,
                              const char* absolutePath, apr_pool_t* pool)
{
    svn_dirent_t record = *dirent;
    if (record.kind != svn_node_file) {
        record.size = SVN_INVALID_FILESIZE; // which the place tells as 0
    }
    return receiveItem(baton, path, &record, lock, absolutePath, nullptr, nullptr, pool);
}

/// The target's place in its repository; null when there is none, which the listing then finds out.
const char* urlOfTarget(const HSVNOperation& operation, const std::string& target)
{
    const char* url = nullptr;
    if (const auto urlFromPath = operation.newest(&HSVNTargetFunctions::client_url_from_path)) {
        operation->error_clear(urlFromPath(&url, operation.cString(target), operation.pool()));
    }
    return url;
}

svn_error_t* callList(HSVNOperation& operation, const char* target, const HSVNRevisionRecords& revisions,
                      const HSVNListChoices& choices, ListCall& call)
{
    const apr_uint32_t fields = choices.allFields ? SVN_DIRENT_ALL : SVN_DIRENT_KIND;
    operation.refuse(choices.includeExternals && !operation.isAtLeast({1, 8}), "includeExternals");
    operation.refuse(!choices.patterns.empty() && !operation.isAtLeast({1, 10}), "patterns");
    if (const auto list = operation.newest(&HSVNReadingFunctions::client_list)) {
        std::vector<std::string> patterns;
        std::transform(choices.patterns.begin(), choices.patterns.end(), std::back_inserter(patterns),
                       HSVNString::stringForSearching);
        return list(target, &revisions.peg, &revisions.operative, HSVNFilterArray(operation, patterns),
                    HSVNDepthForSubversion(choices.depth), fields, choices.fetchLocks, choices.includeExternals,
                    receiveItem, &call, operation.ctx(), operation.pool());
    }
    const bool recurses = choices.depth == HSVNDepthInfinity;
    operation.refuse(!recurses && choices.depth != HSVNDepthImmediates, "depth");
    operation.refuse(choices.includeExternals, "includeExternals");
    operation.refuse(!choices.patterns.empty(), "patterns");
    return operation->client_list(target, &revisions.peg, &revisions.operative, recurses, fields, choices.fetchLocks,
                                  receivePlainItem, &call, operation.ctx(), operation.pool());
}

} // namespace

void HSVNList(HSVNOperation& operation, const std::string& target, const HSVNRevisionSpec& revision,
              const HSVNListChoices& choices, const HSVNReceiver<const HSVNNodeRef&>& receiver)
{
    ListCall call{operation, target, urlOfTarget(operation, target), choices, receiver};
    operation.check(callList(operation, operation.cString(target), HSVNRevisionRecords{revision}, choices, call));
}
