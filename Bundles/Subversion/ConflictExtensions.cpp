#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "WorkingCopyContexts.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR >= 5
svn_error_t* resolveBelow(const char* path, svn_depth_t depth, int choice, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTarget(&path, pool));
    return svn_client_resolve(path, depth, static_cast<svn_wc_conflict_choice_t>(choice), ctx, pool);
}
#endif

#if HSVN_LINE_MINOR >= 10
struct ConflictWalk
{
    HSVNConflictFunctions::ConflictReceiver receiver;
    void* baton;
};

svn_error_t* receiveConflict(void* baton, svn_client_conflict_t* conflict, apr_pool_t* /*pool*/)
{
    const auto& walk = *static_cast<ConflictWalk*>(baton);
    return walk.receiver(walk.baton, svn_client_conflict_get_local_abspath(conflict));
}

svn_error_t* walkConflicts(const char* path, svn_depth_t depth, HSVNConflictFunctions::ConflictReceiver receiver,
                           void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTarget(&path, pool));
    SVN_ERR(checkAbsoluteTarget(&path, pool));
    ConflictWalk walk{receiver, baton};
    shareDatabasesWithin(pool);
    return svn_client_conflict_walk(path, depth, receiveConflict, &walk, ctx, pool);
}

svn_error_t* get(svn_client_conflict_t** conflict, const char* path, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTarget(&path, pool));
    SVN_ERR(checkAbsoluteTarget(&path, pool));
    return svn_client_conflict_get(conflict, path, ctx, pool, pool);
}

svn_error_t* state(HSVNConflictFunctions::ConflictState* state, svn_client_conflict_t* conflict, apr_pool_t* pool)
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

/// Subversion ends the process for a question about a conflict that an item does not have.
///
/// @param property  the one asked about; null for any
svn_error_t* requireConflict(svn_client_conflict_t* conflict, int kind, const char* property, apr_pool_t* pool)
{
    svn_boolean_t hasText = FALSE;
    apr_array_header_t* properties = nullptr;
    svn_boolean_t hasTree = FALSE;
    SVN_ERR(svn_client_conflict_get_conflicted(&hasText, &properties, &hasTree, conflict, pool, pool));
    const std::array<const char*, 3> names{"text", "property", "tree"};
    const std::span<const char* const> conflicted{
        properties == nullptr ? nullptr : reinterpret_cast<const char* const*>(properties->elts),
        static_cast<std::size_t>(properties == nullptr ? 0 : properties->nelts)};
    const bool hasProperty =
        property == nullptr
            ? !conflicted.empty()
            : std::ranges::any_of(conflicted, [&](const char* name) { return std::strcmp(name, property) == 0; });
    const std::array<bool, 3> has{hasText != 0, hasProperty, hasTree != 0};
    const auto index = static_cast<std::size_t>(kind);
    if (index < has.size() && has[index]) {
        return SVN_NO_ERROR;
    }
    return svn_error_createf(SVN_ERR_WC_CONFLICT_RESOLVER_FAILURE, nullptr, "'%s' has no %s conflict%s%s",
                             svn_client_conflict_get_local_abspath(conflict),
                             index < names.size() ? names[index] : "such", property == nullptr ? "" : " of ",
                             property == nullptr ? "" : property);
}

svn_error_t* description(const char** description, const char** local, svn_client_conflict_t* conflict,
                         svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(requireConflict(conflict, local != nullptr ? svn_wc_conflict_kind_tree : svn_wc_conflict_kind_property,
                            nullptr, pool));
    return local != nullptr ? svn_client_conflict_tree_get_description(description, local, conflict, ctx, pool, pool)
                            : svn_client_conflict_prop_get_description(description, conflict, pool, pool);
}

svn_error_t* details(svn_client_conflict_t* conflict, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(requireConflict(conflict, svn_wc_conflict_kind_tree, nullptr, pool));
    svn_error_t* const error = svn_client_conflict_tree_get_details(conflict, ctx, pool);
    if (hasCode(error, SVN_ERR_ASSERTION_FAIL)) { // what was on neither side is not found: there are no details of it
        svn_error_clear(error);
        return SVN_NO_ERROR;
    }
    return error;
}

/// Subversion's own objects of the options.
svn_error_t* ownOptions(apr_array_header_t** options, svn_client_conflict_t* conflict, int kind, svn_client_ctx_t* ctx,
                        apr_pool_t* pool)
{
    SVN_ERR(requireConflict(conflict, kind, nullptr, pool));
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
    *options = apr_array_make(pool, own->nelts, sizeof(HSVNConflictFunctions::ConflictOption));
    for (int index = 0; index < own->nelts; ++index) {
        auto* const option = APR_ARRAY_IDX(own, index, svn_client_conflict_option_t*);
        APR_ARRAY_PUSH(*options, HSVNConflictFunctions::ConflictOption) = {
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
        if (*property != '\0') { // for all of them
            SVN_ERR(requireConflict(conflict, kind, property, pool));
        }
        if (value != nullptr) {
            svn_client_conflict_option_set_merged_propval(option, value);
        }
        return svn_client_conflict_prop_resolve(conflict, property, option, ctx, pool);
    default:
        return svn_client_conflict_tree_resolve(conflict, option, ctx, pool);
    }
}

svn_error_t* files(HSVNConflictFunctions::ConflictSides<const char*>* files, svn_client_conflict_t* conflict,
                   apr_pool_t* pool)
{
    SVN_ERR(requireConflict(conflict, svn_wc_conflict_kind_text, nullptr, pool));
    return svn_client_conflict_text_get_contents(&files->base, &files->mine, &files->theirOld, &files->theirNew,
                                                 conflict, pool, pool);
}

svn_error_t* values(HSVNConflictFunctions::ConflictSides<const svn_string_t*>* values, svn_client_conflict_t* conflict,
                    const char* property, apr_pool_t* pool)
{
    SVN_ERR(requireConflict(conflict, svn_wc_conflict_kind_property, property, pool));
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

} // namespace

void fillConflicts([[maybe_unused]] HSVNConflictFunctions& table)
{
#if HSVN_LINE_MINOR >= 5
    table.client_resolve = resolveBelow;
#endif
#if HSVN_LINE_MINOR >= 10
    table.conflict_walk = walkConflicts;
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
