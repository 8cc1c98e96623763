#include "CanonicalPaths.h"
#include "CommitInformation.h"
#include "CommitQuestions.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "HalfMoves.h"
#include "ItemsOnDisk.h"
#include "ObstructedParents.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

namespace HSVNAdapter {
namespace {

/// Of a source that does not exist.
constexpr ErrorRule sourceOfNoKind{SVN_ERR_NODE_UNKNOWN_KIND, SVN_ERR_ENTRY_NOT_FOUND};

/// Whether an error says that an item is in no working copy or in no revision, or cannot be what it is to be there: the
/// file manager then puts it where it is to go.
bool startsFallBack(const svn_error_t* error)
{
    constexpr std::array codes{SVN_ERR_ENTRY_NOT_FOUND,  SVN_ERR_FS_NOT_FOUND,  SVN_ERR_FS_NO_SUCH_ENTRY,
                               SVN_ERR_WC_NOT_DIRECTORY, SVN_ERR_WC_NOT_LOCKED, SVN_ERR_WC_INVALID_SCHEDULE};
    return std::ranges::any_of(codes, [&](apr_status_t code) { return hasCode(error, code); });
}

/// The error of a move or a copy. A local source that is not on disk cannot be put anywhere by the file manager either.
svn_error_t* transferError(svn_error_t* error, const char* source, apr_pool_t* pool)
{
    error = smoothed(error, {sourceOfNoKind});
    if (error != nullptr && startsFallBack(error) && !isURL(source) && kindOnDisk(source, pool) == svn_node_none) {
        svn_error_clear(error);
        return nothingAt(source);
    }
    return error;
}

/// Whether a revision of a local item is read in the repository, and so is not what is on disk.
bool isOfRepository(const svn_opt_revision_t& revision)
{
    return revision.kind != svn_opt_revision_unspecified && revision.kind != svn_opt_revision_base &&
           revision.kind != svn_opt_revision_working;
}

svn_error_t* ignoreInfo(void* /*baton*/, const char* /*path*/, const svn_info_t* /*info*/, apr_pool_t* /*pool*/)
{
    return SVN_NO_ERROR;
}

/// An error without a code that would have today's item copied in place of the one that was asked for.
svn_error_t* withoutFallBack(svn_error_t* error)
{
    if (!startsFallBack(error) && !hasCode(error, SVN_ERR_WC_PATH_NOT_FOUND)) {
        return error;
    }
    // Not around the former one, with which it would go: errors of a chain live in one pool.
    std::array<char, 1024> buffer{};
    svn_error_t* const alone = svn_error_create(SVN_ERR_CLIENT_UNRELATED_RESOURCES, nullptr,
                                                svn_err_best_message(error, buffer.data(), buffer.size()));
    svn_error_clear(error);
    return alone;
}

/// Goes on where a copy of a local item as it was in the repository failed. An item that lay elsewhere then is copied
/// from there; one that was nowhere is an error.
svn_error_t* copyOldItem(svn_error_t* failure, svn_commit_info_t** info, const char* source,
                         const svn_opt_revision_t& revision, const char* destination, svn_client_ctx_t* ctx,
                         apr_pool_t* pool)
{
    const svn_opt_revision_t working{svn_opt_revision_working, {0}};
    if (svn_error_t* absent = svn_client_info(source, &working, &revision, ignoreInfo, nullptr, FALSE, ctx, pool)) {
        svn_error_clear(failure);
        return withoutFallBack(absent);
    }
    if (!hasCode(failure, SVN_ERR_FS_NOT_FOUND)) {
        return transferError(failure, source, pool);
    }
#if HSVN_LINE_MINOR >= 5
    svn_error_clear(failure);
    svn_client_copy_source_t record{source, &revision, &working};
    auto* const sources = apr_array_make(pool, 1, sizeof(svn_client_copy_source_t*));
    APR_ARRAY_PUSH(sources, svn_client_copy_source_t*) = &record;
    return transferError(svn_client_copy4(info, sources, destination, FALSE, FALSE, nullptr, ctx, pool), source, pool);
#else
    static_cast<void>(info);
    static_cast<void>(destination);
    return withoutFallBack(failure);
#endif
}

/// Subversion asserts that it never moves a repository's root, which can go into itself alone. That a source alone is
/// to become itself it notices before it asks the server.
svn_error_t* requireMovable(std::string_view source, std::string_view destination, bool isOneOfSeveral,
                            [[maybe_unused]] svn_client_ctx_t* ctx, [[maybe_unused]] apr_pool_t* pool)
{
    const bool isInside = isURL(source.data()) && destination.starts_with(source) &&
                          (destination.size() == source.size() ? isOneOfSeveral : destination[source.size()] == '/');
    if (!isInside) {
        return SVN_NO_ERROR;
    }
#if HSVN_LINE_MINOR >= 5
    const char* root = nullptr;
    SVN_ERR(svn_client_root_url_from_path(&root, source.data(), ctx, pool));
    if (source != root) {
        return SVN_NO_ERROR;
    }
#endif
    return svn_error_createf(SVN_ERR_UNSUPPORTED_FEATURE, nullptr, "Cannot move '%s' into its own child '%s'",
                             source.data(), destination.data());
}

/// Subversion asserts that what is copied to a repository has something to commit. A local item that is missing, or in
/// whose place a link leads nowhere, has not.
svn_error_t* withoutAssertion(svn_error_t* error, [[maybe_unused]] const char* source)
{
#if HSVN_LINE_MINOR >= 6
    if (hasCode(error, SVN_ERR_ASSERTION_FAIL) && !isURL(source)) {
        svn_error_clear(error);
        return svn_error_createf(SVN_ERR_NODE_UNEXPECTED_KIND, nullptr, "'%s' is missing: there is nothing to copy",
                                 source);
    }
#endif
    return error;
}

/// Lines before 1.7 look for an item at the URL in a working copy, as if it were in none.
svn_error_t* requireCopiedRevision([[maybe_unused]] const char* source,
                                   [[maybe_unused]] const svn_opt_revision_t& revision)
{
#if HSVN_LINE_MINOR < 7
    if (revision.kind == svn_opt_revision_committed || revision.kind == svn_opt_revision_previous) {
        return svn_error_createf(SVN_ERR_CLIENT_BAD_REVISION, nullptr,
                                 "'%s' cannot be copied in its revision PREV or COMMITTED", source);
    }
#endif
    return SVN_NO_ERROR;
}

svn_error_t* copy3(svn_commit_info_t** info, const char* source, const svn_opt_revision_t* sourceRevision,
                   const char* destination, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const CommitInformation information{info};
    CommitQuestions questions{ctx};
    HSVN_CANONICAL_TARGET(source, pool);
    HSVN_CANONICAL_TARGET(destination, pool);
    SVN_ERR(refuseTargetBelowDirectoryLink(destination, pool));
    const auto revision = revisionForTarget(source, sourceRevision);
    SVN_ERR(requireCopiedRevision(source, revision));
    svn_error_t* error = smoothed(
        withoutAssertion(svn_client_copy3(info, source, &revision, destination, ctx, pool), source), {sourceOfNoKind});
    if (error != nullptr && !isURL(source) && isOfRepository(revision) && startsFallBack(error)) {
        return copyOldItem(error, info, source, revision, destination, ctx, pool);
    }
    return transferError(error, source, pool);
}

svn_error_t* move4(svn_commit_info_t** info, const char* source, const char* destination, svn_boolean_t force,
                   svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const CommitInformation information{info};
    CommitQuestions questions{ctx};
    HSVN_CANONICAL_TARGET(source, pool);
    HSVN_CANONICAL_TARGET(destination, pool);
    SVN_ERR(refuseTargetBelowDirectoryLink(source, pool));
    SVN_ERR(refuseTargetBelowDirectoryLink(destination, pool));
    SVN_ERR(requireMovable(source, destination, false, ctx, pool));
    const MovesUnderWay moves{{source}, destination, pool};
    return transferError(moves.takenBack(svn_client_move4(info, source, destination, force, ctx, pool), ctx), source,
                         pool);
}

#if HSVN_LINE_MINOR < 5
/// A place below a folder for an item of the source's name.
const char* childPlace(const char* folder, const char* source, apr_pool_t* pool)
{
    const char* name = svn_path_basename(source, pool);
    if (isURL(source) && !isURL(folder)) {
        name = svn_path_uri_decode(name, pool);
    } else if (!isURL(source) && isURL(folder)) {
        name = svn_path_uri_encode(name, pool);
    }
    return svn_path_join(folder, name, pool);
}

/// Puts an item at a place, or else, where something is there already, below it, as the client of 1.4 does.
template <class Transfer>
svn_error_t* transferOrBelow(const char* destination, const char* source, svn_boolean_t asChild, apr_pool_t* pool,
                             Transfer transfer)
{
    svn_error_t* const error = transfer(destination);
    const bool isTaken =
        error != nullptr && (error->apr_err == SVN_ERR_ENTRY_EXISTS || error->apr_err == SVN_ERR_FS_ALREADY_EXISTS);
    if (!isTaken || !asChild) {
        return error;
    }
    svn_error_clear(error);
    return transfer(childPlace(destination, source, pool));
}
#endif

svn_error_t* move(const apr_array_header_t* sources, const char* destination, svn_boolean_t asChild,
                  [[maybe_unused]] svn_boolean_t makeParents, [[maybe_unused]] svn_boolean_t allowMixedRevisions,
                  [[maybe_unused]] const apr_hash_t* revisionProperties, svn_commit_callback2_t receiver, void* baton,
                  svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    CommitQuestions questions{ctx};
    SVN_ERR(checkTargets(&sources, pool));
    SVN_ERR(checkTarget(&destination, pool));
    SVN_ERR(refuseBelowDirectoryLinks(sources, pool));
    SVN_ERR(refuseTargetBelowDirectoryLink(destination, pool));
    const std::span all{reinterpret_cast<const char* const*>(sources->elts), static_cast<std::size_t>(sources->nelts)};
    for (const char* const source : all) {
        if (std::ranges::all_of(all, isURL)) { // others are not moved together with them
            SVN_ERR(requireMovable(source, destination, sources->nelts > 1, ctx, pool));
        }
    }
    const MovesUnderWay moves{{all.begin(), all.end()}, destination, pool};
#if HSVN_LINE_MINOR >= 8
    return moves.takenBack(svn_client_move7(sources, destination, asChild, makeParents, allowMixedRevisions, FALSE,
                                            revisionProperties, receiver, baton, ctx, pool),
                           ctx);
#elif HSVN_LINE_MINOR >= 7
    return moves.takenBack(
        svn_client_move6(sources, destination, asChild, makeParents, revisionProperties, receiver, baton, ctx, pool),
        ctx);
#else
    return tellCommit(receiver, baton, pool, [&](svn_commit_info_t** info) {
#if HSVN_LINE_MINOR >= 5
        // Takes the array without const, and does not write to it.
        return moves.takenBack(svn_client_move5(info, apr_array_copy(pool, sources), destination, TRUE, asChild,
                                                makeParents, revisionProperties, ctx, pool),
                               ctx);
#else
        const auto moveTo = [&](const char* place) {
            return svn_client_move4(info, all.front(), place, TRUE, ctx, pool);
        };
        return moves.takenBack(transferOrBelow(destination, all.front(), asChild, pool, moveTo), ctx);
#endif
    });
#endif
}

#if HSVN_LINE_MINOR >= 5
/// The first source that nothing is at; the first one of all when there is something at each.
const char* firstMissing(const apr_array_header_t* sources, apr_pool_t* pool)
{
    for (int index = 0; index < sources->nelts; ++index) {
        const char* const path = APR_ARRAY_IDX(sources, index, svn_client_copy_source_t*)->path;
        svn_node_kind_t kind = svn_node_unknown;
        if (!isURL(path)) {
            svn_error_clear(svn_io_check_resolved_path(path, &kind, pool));
        }
        if (kind == svn_node_none) {
            return path;
        }
    }
    return APR_ARRAY_IDX(sources, 0, svn_client_copy_source_t*)->path;
}

#endif

svn_error_t* copy(const apr_array_header_t* sources, const char* destination, svn_boolean_t asChild,
                  [[maybe_unused]] svn_boolean_t makeParents, [[maybe_unused]] svn_boolean_t ignoreExternals,
                  [[maybe_unused]] svn_boolean_t pinExternals, [[maybe_unused]] const apr_hash_t* revisionProperties,
                  svn_commit_callback2_t receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    CommitQuestions questions{ctx};
    SVN_ERR(checkTarget(&destination, pool));
    SVN_ERR(refuseTargetBelowDirectoryLink(destination, pool));
#if HSVN_LINE_MINOR >= 5
    auto* pointers = apr_array_make(pool, sources->nelts, sizeof(svn_client_copy_source_t*));
    for (int index = 0; index < sources->nelts; ++index) {
        const auto& source = APR_ARRAY_IDX(sources, index, HSVNCommitFunctions::CopySource);
        auto* pointer = static_cast<svn_client_copy_source_t*>(apr_pcalloc(pool, sizeof(svn_client_copy_source_t)));
        pointer->path = source.path;
        SVN_ERR(checkTarget(&pointer->path, pool));
        SVN_ERR(requireCopiedRevision(pointer->path, source.revision));
        pointer->revision = &source.revision;
        pointer->peg_revision = &source.pegRevision;
        APR_ARRAY_PUSH(pointers, svn_client_copy_source_t*) = pointer;
    }
#if HSVN_LINE_MINOR >= 9
    svn_error_t* const error = svn_client_copy7(pointers, destination, asChild, makeParents, ignoreExternals, FALSE,
                                                pinExternals, nullptr, revisionProperties, receiver, baton, ctx, pool);
#elif HSVN_LINE_MINOR >= 7
    svn_error_t* const error = svn_client_copy6(pointers, destination, asChild, makeParents, ignoreExternals,
                                                revisionProperties, receiver, baton, ctx, pool);
#else
    svn_error_t* const error = tellCommit(receiver, baton, pool, [&](svn_commit_info_t** info) {
#if HSVN_LINE_MINOR >= 6
        return svn_client_copy5(info, pointers, destination, asChild, makeParents, ignoreExternals, revisionProperties,
                                ctx, pool);
#else
        return svn_client_copy4(info, pointers, destination, asChild, makeParents, revisionProperties, ctx, pool);
#endif
    });
#endif
    return withoutAssertion(error, firstMissing(pointers, pool));
#else
    const auto& record = APR_ARRAY_IDX(sources, 0, HSVNCommitFunctions::CopySource);
    const char* source = record.path;
    SVN_ERR(checkTarget(&source, pool));
    const auto revision = revisionForTarget(
        source, record.revision.kind != svn_opt_revision_unspecified ? &record.revision : &record.pegRevision);
    SVN_ERR(requireCopiedRevision(source, revision));
    return tellCommit(receiver, baton, pool, [&](svn_commit_info_t** info) {
        return transferOrBelow(destination, source, asChild, pool, [&](const char* place) {
            return svn_client_copy3(info, source, &revision, place, ctx, pool);
        });
    });
#endif
}

} // namespace

void fillCopyAndMove(HSVNBundleEntryPoints& table)
{
    table.client_copy3 = copy3;
    table.client_move4 = move4;
}

void fillCopyAndMove(HSVNCommitFunctions& table)
{
    table.client_move = move;
    table.client_copy = copy;
}

} // namespace HSVNAdapter
