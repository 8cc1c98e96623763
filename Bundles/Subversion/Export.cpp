#include "Export.h"

#include "CanonicalPaths.h"
#include "ExportEditor.h"
#include "ExportedFile.h"
#include "ExternalCycles.h"
#include "ExternalURLs.h"

#include <algorithm>
#include <string_view>

#include <svn_ra.h>

namespace HSVNAdapter {
namespace {

using Links = std::set<std::string>;

/// Where an item is in a revision of its repository.
struct Location
{
    apr_pool_t* pool; ///< of the URL
    const char* url = nullptr;
    svn_revnum_t revision = SVN_INVALID_REVNUM;
};

bool isOnDisk(svn_opt_revision_kind kind)
{
    return kind == svn_opt_revision_unspecified || kind == svn_opt_revision_base || kind == svn_opt_revision_working ||
           kind == svn_opt_revision_committed;
}

svn_opt_revision_t completed(const svn_opt_revision_t& revision, const svn_opt_revision_t& otherwise)
{
    return revision.kind == svn_opt_revision_unspecified ? otherwise : revision;
}

svn_opt_revision_t completedPeg(const char* from, const svn_opt_revision_t& pegRevision)
{
    svn_opt_revision_t newest{};
    newest.kind = isURL(from) ? svn_opt_revision_head : svn_opt_revision_working;
    return completed(pegRevision, newest);
}

bool isSameInRepository(const svn_opt_revision_t& one, const svn_opt_revision_t& other)
{
    return one.kind == other.kind && (one.kind == svn_opt_revision_head ||
                                      (one.kind == svn_opt_revision_number && one.value.number == other.value.number) ||
                                      (one.kind == svn_opt_revision_date && one.value.date == other.value.date));
}

svn_error_t* takeLocation(void* baton, const char* /*path*/, const svn_info_t* info, apr_pool_t* /*pool*/)
{
    auto& location = *static_cast<Location*>(baton);
    location.url = apr_pstrdup(location.pool, info->URL);
    location.revision = info->rev;
    return SVN_NO_ERROR;
}

svn_error_t* revisionNumber(svn_revnum_t* number, const svn_opt_revision_t& revision, svn_ra_session_t* session,
                            apr_pool_t* pool)
{
    if (revision.kind == svn_opt_revision_number) {
        *number = revision.value.number;
        return SVN_NO_ERROR;
    }
    return revision.kind == svn_opt_revision_date
               ? svn_ra_get_dated_revision(session, number, revision.value.date, pool)
               : svn_ra_get_latest_revnum(session, number, pool);
}

svn_error_t* refuseNowhere(const char* from)
{
    return svn_error_createf(SVN_ERR_RA_ILLEGAL_URL, nullptr, "URL '%s' doesn't exist", from);
}

/// Whether an error says that the server has the repository at another URL.
bool isMoved([[maybe_unused]] const svn_error_t* error)
{
#if HSVN_LINE_MINOR >= 7
    return error != nullptr && error->apr_err == SVN_ERR_RA_SESSION_URL_MISMATCH;
#else
    return false;
#endif
}

/// Fails with the error of a URL that is none of a repository; a question about an item gets the same code for one that
/// is not there.
svn_error_t* requireScheme(const char* from, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    svn_ra_session_t* session = nullptr;
    svn_error_t* const error = isURL(from) ? svn_client_open_ra_session(&session, from, ctx, pool) : SVN_NO_ERROR;
    if (error != nullptr && error->apr_err == SVN_ERR_RA_ILLEGAL_URL) {
        return error;
    }
    svn_error_clear(error);
    return SVN_NO_ERROR;
}

/// Opens a session at the place where the item is in its revision.
svn_error_t* openSession(svn_ra_session_t** session, Location* location, const char* from,
                         const svn_opt_revision_t& peg, const svn_opt_revision_t& revision, svn_client_ctx_t* ctx,
                         apr_pool_t* pool)
{
    if (isURL(from) && isSameInRepository(peg, revision)) {
        location->url = from;
        svn_error_t* const error = svn_client_open_ra_session(session, from, ctx, pool);
        if (!isMoved(error)) {
            SVN_ERR(error);
            return revisionNumber(&location->revision, revision, *session, pool);
        }
        svn_error_clear(error);
    }
    // An item of another name or revision is traced as for any other question about it; so is one whose server sends
    // elsewhere.
    svn_error_t* const error = svn_client_info(from, &peg, &revision, takeLocation, location, FALSE, ctx, pool);
    if (error != nullptr && error->apr_err == SVN_ERR_RA_ILLEGAL_URL) {
        svn_error_clear(error);
        SVN_ERR(requireScheme(from, ctx, pool));
        return refuseNowhere(from);
    }
    SVN_ERR(error);
    HSVN_CANONICAL_URL(location->url, pool);
    return svn_client_open_ra_session(session, location->url, ctx, pool);
}

svn_error_t* driveEditor(svn_ra_session_t* session, svn_revnum_t revision, ExportedTree* tree, apr_pool_t* pool)
{
    const svn_delta_editor_t* editor = nullptr;
    void* baton = nullptr;
    SVN_ERR(makeExportEditor(&editor, &baton, tree, pool));
    void* report = nullptr;
#if HSVN_LINE_MINOR >= 5
    const svn_ra_reporter3_t* reporter = nullptr;
    SVN_ERR(
        svn_ra_do_update2(session, &reporter, &report, revision, "", tree->choices.depth, FALSE, editor, baton, pool));
    SVN_ERR(reporter->set_path(report, "", revision, svn_depth_infinity, TRUE, nullptr, pool));
#else
    const svn_ra_reporter2_t* reporter = nullptr;
    SVN_ERR(svn_ra_do_update(session, &reporter, &report, revision, "", tree->choices.depth == svn_depth_infinity,
                             editor, baton, pool));
    SVN_ERR(reporter->set_path(report, "", revision, TRUE, nullptr, pool));
#endif
    return reporter->finish_report(report, pool);
}

svn_error_t* exportItem(svn_revnum_t* result, const char* from, const char* to, const svn_opt_revision_t& peg,
                        const svn_opt_revision_t& revision, const ExportChoices& choices, Links* links,
                        svn_client_ctx_t* ctx, apr_pool_t* pool);

/// One external: below the folder, and not through a link that this export has written.
svn_error_t* checkExternalTarget(const char* folder, const char* target, const Links& links, apr_pool_t* pool)
{
    std::string path = folder;
    std::string_view rest = target;
    while (!rest.empty()) {
        const std::string name{rest.substr(0, rest.find('/'))};
        SVN_ERR(requirePlainName(name.c_str(), folder, pool));
        path += "/" + name;
        if (links.contains(path)) {
            return svn_error_createf(SVN_ERR_WC_OBSTRUCTED_UPDATE, nullptr,
                                     "The external '%s' would be written through the symbolic link '%s'", target,
                                     path.c_str());
        }
        rest.remove_prefix(std::min(name.size() + 1, rest.size()));
    }
    return SVN_NO_ERROR;
}

svn_error_t* exportExternal(const ExportedTree& tree, const char* folder, const char* folderURL,
                            const svn_wc_external_item2_t& item, apr_pool_t* pool)
{
    SVN_ERR(checkExternalTarget(folder, item.target_dir, *tree.links, pool));
    const char* const target = pathBelow(folder, item.target_dir, pool);
    const char* url = nullptr;
    SVN_ERR(resolveExternalURL(&url, item.url, tree.rootURL, folderURL, pool));
    SVN_ERR(svn_io_make_dir_recursively(svn_path_dirname(target, pool), pool));
    if (tree.ctx->notify_func2 != nullptr) {
        tree.ctx->notify_func2(tree.ctx->notify_baton2,
                               svn_wc_create_notify(target, svn_wc_notify_update_external, pool), pool);
    }
    const ExportChoices choices{svn_depth_infinity, TRUE, FALSE, tree.choices.ignoreKeywords, tree.choices.nativeEOL};
    svn_revnum_t ignored = SVN_INVALID_REVNUM;
    svn_error_t* error = followExternal(url, item.peg_revision, item.revision, pool);
    if (error == nullptr) {
        error =
            exportItem(&ignored, url, target, item.peg_revision, item.revision, choices, tree.links, tree.ctx, pool);
    }
#if HSVN_LINE_MINOR >= 6
    if (error != nullptr && error->apr_err != SVN_ERR_CANCELLED) {
        if (tree.ctx->notify_func2 != nullptr) {
            auto* const notification = svn_wc_create_notify(target, svn_wc_notify_failed_external, pool);
            notification->err = error;
            tree.ctx->notify_func2(tree.ctx->notify_baton2, notification, pool);
        }
        svn_error_clear(error);
        return SVN_NO_ERROR;
    }
#endif
    return error;
}

/// The definitions of one folder.
svn_error_t* parseExternals(apr_array_header_t** items, const char* folder, const char* text, apr_pool_t* pool)
{
#if HSVN_LINE_MINOR >= 5
    return svn_wc_parse_externals_description3(items, folder, text, FALSE, pool);
#else
    apr_array_header_t* parsed = nullptr;
    SVN_ERR(svn_wc_parse_externals_description2(&parsed, folder, text, pool));
    *items = apr_array_make(pool, parsed->nelts, sizeof(svn_wc_external_item2_t*));
    for (int index = 0; index < parsed->nelts; ++index) {
        const auto& old = *APR_ARRAY_IDX(parsed, index, svn_wc_external_item_t*);
        auto* const item = static_cast<svn_wc_external_item2_t*>(apr_palloc(pool, sizeof(svn_wc_external_item2_t)));
        *item = {old.target_dir, old.url, old.revision, old.revision};
        APR_ARRAY_PUSH(*items, svn_wc_external_item2_t*) = item;
    }
    return SVN_NO_ERROR;
#endif
}

svn_error_t* exportDefinitions(const ExportedTree& tree, const char* folder, const char* folderURL, const char* text,
                               apr_pool_t* pool)
{
    apr_array_header_t* items = nullptr;
    SVN_ERR(parseExternals(&items, folder, text, pool));
    for (int index = 0; index < items->nelts; ++index) {
        apr_pool_t* const itemPool = svn_pool_create(pool);
        SVN_ERR(
            exportExternal(tree, folder, folderURL, *APR_ARRAY_IDX(items, index, svn_wc_external_item2_t*), itemPool));
        svn_pool_destroy(itemPool);
    }
    return SVN_NO_ERROR;
}

svn_error_t* exportExternals(const ExportedTree& tree, const char* fromURL, apr_pool_t* pool)
{
    const char* root = nullptr;
    SVN_ERR(svn_path_get_absolute(&root, tree.target, pool));
    for (const auto& [folder, text] : tree.externals) {
        apr_pool_t* const folderPool = svn_pool_create(pool);
        const std::string_view below = std::string_view{folder}.substr(std::string_view{root}.size());
        const std::string relative{below.substr(below.starts_with('/') ? 1 : 0)};
        const char* const url = svn_path_url_add_component(fromURL, relative.c_str(), folderPool);
        SVN_ERR(exportDefinitions(tree, folder.c_str(), url, text.c_str(), folderPool));
        svn_pool_destroy(folderPool);
    }
    return SVN_NO_ERROR;
}

svn_error_t* exportFolder(svn_ra_session_t* session, svn_revnum_t revision, const char* fromURL, ExportedTree* tree,
                          apr_pool_t* pool)
{
    SVN_ERR(driveEditor(session, revision, tree, pool));
    // Of an empty folder the server sends nothing.
    svn_node_kind_t kind = svn_node_none;
    SVN_ERR(svn_io_check_path(tree->target, &kind, pool));
    if (kind == svn_node_none) {
        SVN_ERR(makeExportedFolder(*tree, tree->target, TRUE, pool));
    }
    return tree->choices.ignoreExternals || tree->choices.depth != svn_depth_infinity
               ? SVN_NO_ERROR
               : exportExternals(*tree, fromURL, pool);
}

svn_error_t* exportItem(svn_revnum_t* result, const char* from, const char* to, const svn_opt_revision_t& pegRevision,
                        const svn_opt_revision_t& givenRevision, const ExportChoices& choices, Links* links,
                        svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const auto peg = completedPeg(from, pegRevision);
    const auto revision = completed(givenRevision, peg);
    const char* fromURL = nullptr;
    SVN_ERR(svn_client_url_from_path(&fromURL, from, pool));
    svn_ra_session_t* session = nullptr;
    Location location{pool};
    SVN_ERR(openSession(&session, &location, from, peg, revision, ctx, pool));
    const char* rootURL = nullptr;
    SVN_ERR(svn_ra_get_repos_root(session, &rootURL, pool));
    ExportedTree tree{to, location.url, rootURL, choices, ctx, SVN_INVALID_REVNUM, {}, links};
    svn_node_kind_t kind = svn_node_none;
    SVN_ERR(svn_ra_check_path(session, "", location.revision, &kind, pool));
    if (kind == svn_node_none) {
        return refuseNowhere(from);
    }
    if (kind == svn_node_file) {
        SVN_ERR(exportFile(session, svn_path_uri_decode(svn_path_basename(fromURL, pool), pool), location.revision,
                           &tree, pool));
    } else if (kind == svn_node_dir) {
        SVN_ERR(exportFolder(session, location.revision, fromURL, &tree, pool));
    }
    if (ctx->notify_func2 != nullptr) {
        auto* const notification = svn_wc_create_notify(to, svn_wc_notify_update_completed, pool);
        notification->revision = tree.revision;
        ctx->notify_func2(ctx->notify_baton2, notification, pool);
    }
    *result = tree.revision;
    return SVN_NO_ERROR;
}

} // namespace

bool isRepositoryExport(const char* from, const svn_opt_revision_t& pegRevision, const svn_opt_revision_t& revision)
{
    return isURL(from) || !isOnDisk(completed(revision, completedPeg(from, pegRevision)).kind);
}

svn_error_t* exportRepositoryTree(svn_revnum_t* result, const char* from, const char* to,
                                  const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                                  const ExportChoices& choices, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    Links links;
    return exportItem(result, from, to, *pegRevision, *revision, choices, &links, ctx, pool);
}

} // namespace HSVNAdapter
