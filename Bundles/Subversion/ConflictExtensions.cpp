#include "ExtensionTable.h"
#include "ExtensionTargets.h"

#include <svn_diff.h>
#include <svn_utf.h>

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR >= 10
svn_error_t* get(svn_client_conflict_t** conflict, const char* path, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTarget(&path, pool));
    SVN_ERR(checkAbsoluteTarget(&path, pool));
    return svn_client_conflict_get(conflict, path, ctx, pool, pool);
}

svn_error_t* state(HSVNBundleExtensions::ConflictState* state, svn_client_conflict_t* conflict, apr_pool_t* pool)
{
    apr_array_header_t* properties = nullptr;
    SVN_ERR(svn_client_conflict_get_conflicted(&state->text, &properties, &state->tree, conflict, pool, pool));
    state->properties = properties;
    state->mimeType = state->text ? svn_client_conflict_text_get_mime_type(conflict) : nullptr;
    state->recommended = svn_client_conflict_get_recommended_option_id(conflict);
    // Subversion looks for it in the first conflict, without asking whether there is one.
    const bool isInConflict = state->text || state->tree || (properties != nullptr && properties->nelts > 0);
    state->operation = isInConflict ? svn_client_conflict_get_operation(conflict) : svn_wc_operation_none;
    return SVN_NO_ERROR;
}

svn_error_t* description(const char** description, const char** local, svn_client_conflict_t* conflict,
                         svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    return local != nullptr ? svn_client_conflict_tree_get_description(description, local, conflict, ctx, pool, pool)
                            : svn_client_conflict_prop_get_description(description, conflict, pool, pool);
}

svn_error_t* details(svn_client_conflict_t* conflict, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    return svn_client_conflict_tree_get_details(conflict, ctx, pool);
}

/// Subversion's own objects of the options.
svn_error_t* ownOptions(apr_array_header_t** options, svn_client_conflict_t* conflict, int kind, svn_client_ctx_t* ctx,
                        apr_pool_t* pool)
{
    switch (kind) {
    case svn_wc_conflict_kind_text:
        return svn_client_conflict_text_get_resolution_options(options, conflict, ctx, pool, pool);
    case svn_wc_conflict_kind_property:
        return svn_client_conflict_prop_get_resolution_options(options, conflict, ctx, pool, pool);
    default:
        return svn_client_conflict_tree_get_resolution_options(options, conflict, ctx, pool, pool);
    }
}

svn_error_t* options(apr_array_header_t** options, svn_client_conflict_t* conflict, int kind, svn_client_ctx_t* ctx,
                     apr_pool_t* pool)
{
    apr_array_header_t* own = nullptr;
    SVN_ERR(ownOptions(&own, conflict, kind, ctx, pool));
    *options = apr_array_make(pool, own->nelts, sizeof(HSVNBundleExtensions::ConflictOption));
    for (int index = 0; index < own->nelts; ++index) {
        auto* const option = APR_ARRAY_IDX(own, index, svn_client_conflict_option_t*);
        APR_ARRAY_PUSH(*options, HSVNBundleExtensions::ConflictOption) = {
            svn_client_conflict_option_get_id(option), svn_client_conflict_option_get_label(option, pool),
            svn_client_conflict_option_get_description(option, pool)};
    }
    return SVN_NO_ERROR;
}

/// One option by its number; it must apply to the conflict.
svn_error_t* findOption(svn_client_conflict_option_t** option, svn_client_conflict_t* conflict, int kind, int id,
                        svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    apr_array_header_t* own = nullptr;
    SVN_ERR(ownOptions(&own, conflict, kind, ctx, pool));
    *option = svn_client_conflict_option_find_by_id(own, static_cast<svn_client_conflict_option_id_t>(id));
    return *option != nullptr ? SVN_NO_ERROR
                              : svn_error_createf(SVN_ERR_CLIENT_CONFLICT_OPTION_NOT_APPLICABLE, nullptr,
                                                  "Inapplicable conflict resolution option given for conflicted "
                                                  "path '%s'",
                                                  svn_client_conflict_get_local_abspath(conflict));
}

svn_error_t* resolve(svn_client_conflict_t* conflict, int kind, const char* property, int id, const svn_string_t* value,
                     svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    svn_client_conflict_option_t* option = nullptr;
    SVN_ERR(findOption(&option, conflict, kind, id, ctx, pool));
    switch (kind) {
    case svn_wc_conflict_kind_text:
        return svn_client_conflict_text_resolve(conflict, option, ctx, pool);
    case svn_wc_conflict_kind_property:
        if (value != nullptr) {
            svn_client_conflict_option_set_merged_propval(option, value);
        }
        return svn_client_conflict_prop_resolve(conflict, property, option, ctx, pool);
    default:
        return svn_client_conflict_tree_resolve(conflict, option, ctx, pool);
    }
}

svn_error_t* files(HSVNBundleExtensions::ConflictSides<const char*>* files, svn_client_conflict_t* conflict,
                   apr_pool_t* pool)
{
    return svn_client_conflict_text_get_contents(&files->base, &files->mine, &files->theirOld, &files->theirNew,
                                                 conflict, pool, pool);
}

svn_error_t* values(HSVNBundleExtensions::ConflictSides<const svn_string_t*>* values, svn_client_conflict_t* conflict,
                    const char* property, apr_pool_t* pool)
{
    return svn_client_conflict_prop_get_propvals(&values->base, &values->mine, &values->theirOld, &values->theirNew,
                                                 conflict, property, pool);
}
#endif

#if HSVN_LINE_MINOR >= 11
svn_error_t* moveTargets(apr_array_header_t** targets, svn_client_conflict_t* conflict, int id,
                         svn_boolean_t inRepository, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    svn_client_conflict_option_t* option = nullptr;
    SVN_ERR(findOption(&option, conflict, svn_wc_conflict_kind_tree, id, ctx, pool));
    auto* const candidates = inRepository ? svn_client_conflict_option_get_moved_to_repos_relpath_candidates2
                                          : svn_client_conflict_option_get_moved_to_abspath_candidates2;
    return candidates(targets, option, pool, pool);
}

svn_error_t* chooseMoveTarget(svn_client_conflict_t* conflict, int id, svn_boolean_t inRepository, int index,
                              svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    apr_array_header_t* targets = nullptr;
    SVN_ERR(moveTargets(&targets, conflict, id, inRepository, ctx, pool));
    if (targets == nullptr || index < 0 || index >= targets->nelts) {
        return svn_error_createf(SVN_ERR_INCORRECT_PARAMS, nullptr, "There is no move target %d", index);
    }
    svn_client_conflict_option_t* option = nullptr;
    SVN_ERR(findOption(&option, conflict, svn_wc_conflict_kind_tree, id, ctx, pool));
    auto* const choose = inRepository ? svn_client_conflict_option_set_moved_to_repos_relpath2
                                      : svn_client_conflict_option_set_moved_to_abspath2;
    return choose(option, index, ctx, pool);
}
#endif

#if HSVN_LINE_MINOR >= 9
svn_error_t* diffFiles(svn_stream_t* out, const char* original, const char* modified, const char* originalLabel,
                       const char* modifiedLabel, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(original, pool);
    HSVN_CANONICAL_PATH(modified, pool);
    auto* const wishes = svn_diff_file_options_create(pool);
    wishes->ignore_eol_style = TRUE;
    svn_diff_t* diff = nullptr;
    SVN_ERR(svn_diff_file_diff_2(&diff, original, modified, wishes, pool));
    return svn_diff_file_output_unified4(out, diff, original, modified, originalLabel, modifiedLabel,
                                         SVN_APR_LOCALE_CHARSET, nullptr, wishes->show_c_function, wishes->context_size,
                                         ctx->cancel_func, ctx->cancel_baton, pool);
}

using Files = HSVNBundleExtensions::ConflictSides<const char*>;

/// Compares the common ancestor, my file and theirs. Without an ancestor, an empty file takes its place.
svn_error_t* diff3(svn_diff_t** diff, Files& files, svn_diff_file_options_t* wishes, apr_pool_t* pool)
{
    if (files.base == nullptr) {
        SVN_ERR(svn_io_open_unique_file3(nullptr, &files.base, nullptr, svn_io_file_del_on_pool_cleanup, pool, pool));
    }
    HSVN_CANONICAL_PATH(files.base, pool);
    HSVN_CANONICAL_PATH(files.mine, pool);
    HSVN_CANONICAL_PATH(files.theirNew, pool);
    return svn_diff_file_diff3_2(diff, files.base, files.mine, files.theirNew, wishes, pool);
}

svn_error_t* diffConflicts(svn_stream_t* out, const Files* files, const Files* labels, svn_client_ctx_t* ctx,
                           apr_pool_t* pool)
{
    Files checked = *files;
    auto* const wishes = svn_diff_file_options_create(pool);
    wishes->ignore_eol_style = TRUE;
    svn_diff_t* diff = nullptr;
    SVN_ERR(diff3(&diff, checked, wishes, pool));
    return svn_diff_file_output_merge3(
        out, diff, checked.base, checked.mine, checked.theirNew, labels->base, labels->mine, labels->theirNew,
        "=======", svn_diff_conflict_display_only_conflicts, ctx->cancel_func, ctx->cancel_baton, pool);
}

svn_error_t* diffValues(svn_stream_t* out, const HSVNBundleExtensions::ConflictSides<const svn_string_t*>* values,
                        const Files* labels, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    auto* const wishes = svn_diff_file_options_create(pool);
    svn_diff_t* diff = nullptr;
    SVN_ERR(svn_diff_mem_string_diff3(&diff, values->base, values->mine, values->theirNew, wishes, pool));
    return svn_diff_mem_string_output_merge3(
        out, diff, values->base, values->mine, values->theirNew, labels->base, labels->mine, labels->theirNew,
        "=======", svn_diff_conflict_display_modified_original_latest, ctx->cancel_func, ctx->cancel_baton, pool);
}

/// Keeps one stretch; where a file's lines do not enter the result, the merge begins at -1 in it.
void keep(void* baton, bool isConflict, const apr_int64_t (&start)[3], const apr_int64_t (&length)[3])
{
    auto& stretch = APR_ARRAY_PUSH(static_cast<apr_array_header_t*>(baton), HSVNBundleExtensions::MergeStretch);
    stretch.isConflict = isConflict;
    for (int side = 0; side < 3; ++side) {
        stretch.start[side] = start[side];
        stretch.length[side] = length[side];
    }
}

/// A stretch that all have in common, or that only I changed, or both in the same way: mine is the result.
svn_error_t* keepMine(void* baton, apr_off_t, apr_off_t, apr_off_t start, apr_off_t length, apr_off_t, apr_off_t)
{
    keep(baton, false, {-1, start, -1}, {0, length, 0});
    return SVN_NO_ERROR;
}

svn_error_t* keepTheirs(void* baton, apr_off_t, apr_off_t, apr_off_t, apr_off_t, apr_off_t start, apr_off_t length)
{
    keep(baton, false, {-1, -1, start}, {0, 0, length});
    return SVN_NO_ERROR;
}

svn_error_t* keepConflict(void* baton, apr_off_t baseStart, apr_off_t baseLength, apr_off_t myStart, apr_off_t myLength,
                          apr_off_t theirStart, apr_off_t theirLength, svn_diff_t*)
{
    keep(baton, true, {baseStart, myStart, theirStart}, {baseLength, myLength, theirLength});
    return SVN_NO_ERROR;
}

svn_error_t* diffStretches(apr_array_header_t** stretches, const Files* files, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    Files checked = *files;
    svn_diff_t* diff = nullptr;
    SVN_ERR(diff3(&diff, checked, svn_diff_file_options_create(pool), pool));
    *stretches = apr_array_make(pool, 0, sizeof(HSVNBundleExtensions::MergeStretch));
    svn_diff_output_fns_t receivers{};
    receivers.output_common = keepMine;
    receivers.output_diff_modified = keepMine;
    receivers.output_diff_latest = keepTheirs;
    receivers.output_diff_common = keepMine;
    receivers.output_conflict = keepConflict;
    return svn_diff_output2(diff, *stretches, &receivers, ctx->cancel_func, ctx->cancel_baton);
}
#endif

} // namespace

void fillConflictExtensions([[maybe_unused]] HSVNBundleExtensions& table)
{
#if HSVN_LINE_MINOR >= 9
    table.diff_files = diffFiles;
    table.diff_conflicts = diffConflicts;
    table.diff_values = diffValues;
    table.diff_stretches = diffStretches;
#endif
#if HSVN_LINE_MINOR >= 10
    table.conflict_get = get;
    table.conflict_state = state;
    table.conflict_description = description;
    table.conflict_details = details;
    table.conflict_options = options;
    table.conflict_resolve = resolve;
    table.conflict_files = files;
    table.conflict_values = values;
#endif
#if HSVN_LINE_MINOR >= 11
    table.conflict_move_targets = moveTargets;
    table.conflict_choose_move_target = chooseMoveTarget;
#endif
}

} // namespace HSVNAdapter
