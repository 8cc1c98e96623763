#pragma once

#include "Internal/Subversion.h"

#include <cstddef>
#include <cstdint>
#include <tuple>

// Records that lines before 1.7 do not have.
struct svn_client_status_t;
struct svn_client_info2_t;
struct svn_log_entry_t;
struct svn_wc_conflict_description2_t;
// Objects that lines before 1.10 do not have.
struct svn_client_conflict_t;
struct svn_client_conflict_option_t;

// Functions that a bundle may offer beside the 91 places: a structure for each family of them.
//
// A structure only ever grows at its end: its `size` tells how much of it the bundle was compiled with, and a place
// that the bundle's line cannot serve is null. `HSVNOperation::extension` is the way to ask for a place.
//
// Unlike the 91 places these take targets as Subversion's own command line does, absolute or relative to the current
// folder, made canonical but not absolute where Subversion lets them be, and answer the line's own errors unchanged.

/// What stands on a command line.
struct HSVNTargetFunctions
{
    std::uint32_t size = sizeof(HSVNTargetFunctions);

    /// svn_opt_parse_path
    svn_error_t* (*opt_parse_path)(svn_opt_revision_t* pegRevision, const char** path, const char* text,
                                   apr_pool_t* pool);
    /// svn_opt_parse_revision: 0 when the text is a revision or two with a colon between.
    int (*opt_parse_revision)(svn_opt_revision_t* start, svn_opt_revision_t* end, const char* text, apr_pool_t* pool);
    /// svn_client_args_to_target_array2 for arguments that are UTF-8 already; on 1.6 svn_client_args_to_target_array,
    /// on 1.5 svn_opt_args_to_target_array3, on 1.4 svn_opt_args_to_target_array2.
    svn_error_t* (*client_args_to_target_array)(apr_array_header_t** targets, const apr_array_header_t* arguments,
                                                svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_url_from_path: the URL of a working copy's item, or null.
    svn_error_t* (*client_url_from_path)(const char** url, const char* target, apr_pool_t* pool);
};

/// Who the user is to a server, and what is stored of it.
struct HSVNAuthenticationFunctions
{
    using CancelFunction = svn_error_t* (*)(void* baton);

    /// What `cmdline_create_auth_baton` asks and trusts.
    struct Authentication
    {
        svn_boolean_t nonInteractive;
        const char* username;
        const char* password;
        const char* configFolder;
        svn_boolean_t noAuthCache;
        svn_boolean_t trustUnknownAuthority;
        svn_boolean_t trustHostnameMismatch;
        svn_boolean_t trustExpired;
        svn_boolean_t trustNotYetValid;
        svn_boolean_t trustOther;
        void (*beforePrompt)() noexcept; ///< before each question on the terminal; null for nothing
    };

    /// What a client asks beyond the prompts of the 91 places; each prompt as Subversion's own of that kind.
    struct Prompts
    {
        svn_auth_ssl_client_cert_prompt_func_t certificateFile;
        svn_auth_ssl_client_cert_pw_prompt_func_t certificatePassphrase;
        svn_auth_username_prompt_func_t username;
        /// Whether a password, or else the passphrase of a certificate, may be stored unencrypted.
        svn_error_t* (*plaintext)(svn_boolean_t* mayStore, svn_boolean_t isPassphrase, const char* realm, void* baton,
                                  apr_pool_t* pool);
        void* baton; ///< of all of them
    };

    /// What a certificate says.
    struct CertificateDetails
    {
        const char* subject;
        const char* issuer;
        const char* validFrom; ///< dates as people read them
        const char* validTo;
        const char* fingerprint;
        const apr_array_header_t* hostnames; ///< const char*; may be null
    };

    /// Takes stored credentials, whose values are svn_string_t; tells whether to remove them.
    using CredentialReceiver = svn_error_t* (*)(svn_boolean_t* remove, void* baton, const char* kind, const char* realm,
                                                apr_hash_t* values, apr_pool_t* pool);

    std::uint32_t size = sizeof(HSVNAuthenticationFunctions);

    /// svn_cmdline_create_auth_baton2: Subversion's own prompts on the terminal, stores and trust; before 1.9
    /// svn_cmdline_create_auth_baton, which trusts unknown authorities alone, before 1.6 svn_cmdline_setup_auth_baton,
    /// which trusts none.
    svn_error_t* (*cmdline_create_auth_baton)(svn_auth_baton_t** baton, const Authentication* choices,
                                              svn_config_t* config, CancelFunction cancel, void* cancelBaton,
                                              apr_pool_t* pool);
    /// The stores of certificates' passphrases, and the prompts that the 91 places lack, behind the given providers;
    /// the prompts live as long as the pool
    void (*auth_add_providers)(apr_array_header_t* providers, const Prompts* prompts, apr_pool_t* pool);
    /// What the configuration and the prompts allow to be stored; the prompts live as long as the baton. Without
    /// prompts those of before stay, and a baton that never had any is left alone
    svn_error_t* (*auth_set_storing)(svn_auth_baton_t* baton, apr_hash_t* configuration, const Prompts* prompts);
    /// The user name, the password, the configuration area and whether nothing is stored, of an authentication that
    /// asks by prompts; the texts outlive it
    svn_error_t* (*auth_set_defaults)(svn_auth_baton_t* baton, const Authentication* choices, apr_pool_t* pool);
    /// svn_config_walk_auth_data in the context's configuration folder, 1.8 and later
    svn_error_t* (*config_walk_credentials)(CredentialReceiver receiver, void* baton, svn_client_ctx_t* ctx,
                                            apr_pool_t* pool);
    /// svn_x509_parse_cert of a certificate in base-64 text, 1.9 and later
    svn_error_t* (*certificate_details)(CertificateDetails* details, const svn_string_t* text, apr_pool_t* pool);
};

/// What is in a repository, and was.
struct HSVNReadingFunctions
{
    using InfoReceiver = svn_error_t* (*)(void* baton, const char* target, const svn_client_info2_t* info,
                                          apr_pool_t* pool);

    using ListReceiver = svn_error_t* (*)(void* baton, const char* path, const svn_dirent_t* dirent,
                                          const svn_lock_t* lock, const char* absolutePath,
                                          const char* externalParentURL, const char* externalTarget, apr_pool_t* pool);

    using LogReceiver = svn_error_t* (*)(void* baton, svn_log_entry_t* entry, apr_pool_t* pool);

    using BlameReceiver = svn_error_t* (*)(void* baton, apr_int64_t line, svn_revnum_t revision, apr_hash_t* properties,
                                           svn_revnum_t mergedRevision, apr_hash_t* mergedProperties,
                                           const char* mergedPath, const svn_string_t* text, svn_boolean_t isLocal,
                                           apr_pool_t* pool);

    /// One range of a log; Subversion has it from 1.6 on.
    struct RevisionRange
    {
        svn_opt_revision_t start;
        svn_opt_revision_t end;
    };

    std::uint32_t size = sizeof(HSVNReadingFunctions);

    /// svn_client_info4, 1.9 and later
    svn_error_t* (*client_info)(const char* target, const svn_opt_revision_t* pegRevision,
                                const svn_opt_revision_t* revision, svn_depth_t depth, svn_boolean_t includeExternals,
                                const apr_array_header_t* changelists, InfoReceiver receiver, void* baton,
                                svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_list4; before 1.10 svn_client_list3, which has no patterns, before 1.8 svn_client_list2, which has no
    /// externals; 1.5 and later
    svn_error_t* (*client_list)(const char* target, const svn_opt_revision_t* pegRevision,
                                const svn_opt_revision_t* revision, const apr_array_header_t* patterns,
                                svn_depth_t depth, apr_uint32_t fields, svn_boolean_t fetchLocks,
                                svn_boolean_t includeExternals, ListReceiver receiver, void* baton,
                                svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_log5, 1.6 and later; the ranges are `RevisionRange` values
    svn_error_t* (*client_log)(const apr_array_header_t* targets, const svn_opt_revision_t* pegRevision,
                               const apr_array_header_t* ranges, int limit, svn_boolean_t changedPaths,
                               svn_boolean_t stopOnCopy, svn_boolean_t mergedRevisions,
                               const apr_array_header_t* revisionProperties, LogReceiver receiver, void* baton,
                               svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_cat3; before 1.9 svn_client_cat2, whose expanded keywords are taken back unless they are wanted
    svn_error_t* (*client_cat)(svn_stream_t* out, const char* target, const svn_opt_revision_t* pegRevision,
                               const svn_opt_revision_t* revision, svn_boolean_t expandKeywords, svn_client_ctx_t* ctx,
                               apr_pool_t* pool);
    /// svn_client_blame6 with arguments as svn_diff_file_options_parse reads them; before 1.12 svn_client_blame5, which
    /// cuts lines at a zero byte, before 1.7 svn_client_blame4, before 1.5 svn_client_blame3. What the range means is
    /// stored before the first line is told, from 1.7 on
    svn_error_t* (*client_blame)(svn_revnum_t* first, svn_revnum_t* last, const char* target,
                                 const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* start,
                                 const svn_opt_revision_t* end, const apr_array_header_t* arguments,
                                 svn_boolean_t ignoreContentType, svn_boolean_t mergedRevisions, BlameReceiver receiver,
                                 void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool);
};

/// What a working copy has.
struct HSVNStatusFunctions
{
    /// An item's status: Subversion's newest record, completed by what it tells elsewhere only.
    struct ItemStatus
    {
        /// Of an item that goes, or that another took the place of, the revision is that of what was there until now;
        /// of one that goes so are revision, date and author of the last change.
        const svn_client_status_t* status;
        svn_boolean_t textConflicted;
        svn_boolean_t propertiesConflicted;
        svn_boolean_t treeConflicted;
        /// Also of an item whose state hides it: one that is missing, incomplete or in conflict, or in whose way
        /// something is.
        svn_wc_schedule_t schedule;
    };
    using StatusReceiver = svn_error_t* (*)(void* baton, const ItemStatus* item, apr_pool_t* pool);

    /// An item that a working copy does not have as its directory says; its path is below the one asked for.
    struct LayoutItem
    {
        const char* path;
        const char* url; ///< of a switched item; null for the others
        svn_revnum_t revision;
        svn_depth_t depth;
        svn_boolean_t isPresent; ///< otherwise revision and depth are none
    };

    using LayoutReceiver = svn_error_t* (*)(void* baton, const LayoutItem* item, apr_pool_t* pool);

    std::uint32_t size = sizeof(HSVNStatusFunctions);

    /// svn_client_status6, 1.9 and later
    svn_error_t* (*client_status)(svn_revnum_t* result, svn_client_ctx_t* ctx, const char* path,
                                  const svn_opt_revision_t* revision, svn_depth_t depth, svn_boolean_t getAll,
                                  svn_boolean_t checkOutOfDate, svn_boolean_t noIgnore, svn_boolean_t ignoreExternals,
                                  const apr_array_header_t* changelists, StatusReceiver receiver, void* baton,
                                  apr_pool_t* pool);
    /// `client_status` with so many threads at most, the caller's among them, 0 for as many as pay: the others read the
    /// disk ahead and call nobody; 1.14
    svn_error_t* (*client_status_on_threads)(unsigned threads, svn_revnum_t* result, svn_client_ctx_t* ctx,
                                             const char* path, const svn_opt_revision_t* revision, svn_depth_t depth,
                                             svn_boolean_t getAll, svn_boolean_t checkOutOfDate, svn_boolean_t noIgnore,
                                             svn_boolean_t ignoreExternals, const apr_array_header_t* changelists,
                                             StatusReceiver receiver, void* baton, apr_pool_t* pool);
    /// svn_wc_crawl_revisions5 of what is below a path, 1.7 and later; the path itself comes first
    svn_error_t* (*wc_layout)(const char* path, LayoutReceiver receiver, void* baton, svn_client_ctx_t* ctx,
                              apr_pool_t* pool);
};

/// Properties, of items and of revisions.
struct HSVNPropertyFunctions
{
    using PropertiesReceiver = svn_error_t* (*)(void* baton, const char* path, apr_hash_t* properties,
                                                apr_array_header_t* inherited, apr_pool_t* pool);

    std::uint32_t size = sizeof(HSVNPropertyFunctions);

    /// svn_client_propget5, 1.8 and later; the target absolute or a URL
    svn_error_t* (*client_propget)(apr_hash_t** properties, apr_array_header_t** inherited, const char* name,
                                   const char* target, const svn_opt_revision_t* pegRevision,
                                   const svn_opt_revision_t* revision, svn_depth_t depth,
                                   const apr_array_header_t* changelists, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_proplist4, before 1.8 svn_client_proplist3, which tells nothing inherited, before 1.5
    /// svn_client_proplist2, which knows the item alone or everything below it
    svn_error_t* (*client_proplist)(const char* target, const svn_opt_revision_t* pegRevision,
                                    const svn_opt_revision_t* revision, svn_depth_t depth,
                                    const apr_array_header_t* changelists, svn_boolean_t inherited,
                                    PropertiesReceiver receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_propset_local, before 1.7 svn_client_propset3, 1.5 and later; a null value deletes the property
    svn_error_t* (*client_propset)(const char* name, const svn_string_t* value, const apr_array_header_t* targets,
                                   svn_depth_t depth, svn_boolean_t skipChecks, const apr_array_header_t* changelists,
                                   svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_propset_remote, before 1.8 svn_client_propset3, 1.5 and later; a null value deletes the property
    svn_error_t* (*client_propset_remote)(const char* name, const svn_string_t* value, const char* url,
                                          svn_boolean_t skipChecks, svn_revnum_t base,
                                          const apr_hash_t* revisionProperties, svn_commit_callback2_t receiver,
                                          void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_revprop_get
    svn_error_t* (*client_revprop_get)(const char* name, svn_string_t** value, const char* url,
                                       const svn_opt_revision_t* revision, svn_revnum_t* number, svn_client_ctx_t* ctx,
                                       apr_pool_t* pool);
    /// svn_client_revprop_list
    svn_error_t* (*client_revprop_list)(apr_hash_t** properties, const char* url, const svn_opt_revision_t* revision,
                                        svn_revnum_t* number, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_revprop_set2 without an original value, before 1.6 svn_client_revprop_set; a null value deletes the
    /// property
    svn_error_t* (*client_revprop_set)(const char* name, const svn_string_t* value, const char* url,
                                       const svn_opt_revision_t* revision, svn_revnum_t* number, svn_boolean_t force,
                                       svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_revprop_set2 with an original value, null for none, 1.6 and later
    svn_error_t* (*client_revprop_replace)(const char* name, const svn_string_t* value, const svn_string_t* original,
                                           const char* url, const svn_opt_revision_t* revision, svn_revnum_t* number,
                                           svn_boolean_t force, svn_client_ctx_t* ctx, apr_pool_t* pool);
};

/// Changes of a working copy that ask no repository.
struct HSVNChangeFunctions
{
    std::uint32_t size = sizeof(HSVNChangeFunctions);

    /// svn_client_add5, 1.8 and later
    svn_error_t* (*client_add)(const char* path, svn_depth_t depth, svn_boolean_t force, svn_boolean_t noIgnore,
                               svn_boolean_t noAutoProperties, svn_boolean_t addParents, svn_client_ctx_t* ctx,
                               apr_pool_t* pool);
    /// svn_client_revert4; before 1.11 svn_client_revert3, which keeps added items, before 1.9 svn_client_revert2,
    /// which takes nothing off its changelist and always reverts what is on disk; 1.5 and later
    svn_error_t* (*client_revert)(const apr_array_header_t* paths, svn_depth_t depth,
                                  const apr_array_header_t* changelists, svn_boolean_t clearChangelists,
                                  svn_boolean_t metadataOnly, svn_boolean_t keepAdded, svn_client_ctx_t* ctx,
                                  apr_pool_t* pool);
    /// svn_client_add_to_changelist, 1.5 and later
    svn_error_t* (*client_add_to_changelist)(const apr_array_header_t* paths, const char* changelist, svn_depth_t depth,
                                             const apr_array_header_t* changelists, svn_client_ctx_t* ctx,
                                             apr_pool_t* pool);
    /// svn_client_remove_from_changelists, 1.5 and later
    svn_error_t* (*client_remove_from_changelists)(const apr_array_header_t* paths, svn_depth_t depth,
                                                   const apr_array_header_t* changelists, svn_client_ctx_t* ctx,
                                                   apr_pool_t* pool);
    /// svn_client_cleanup2, 1.9 and later
    svn_error_t* (*client_cleanup)(const char* path, svn_boolean_t breakLocks, svn_boolean_t fixTimestamps,
                                   svn_boolean_t clearWebCache, svn_boolean_t vacuumPristines,
                                   svn_boolean_t includeExternals, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_vacuum, 1.9 and later
    svn_error_t* (*client_vacuum)(const char* path, svn_boolean_t removeUnversioned, svn_boolean_t removeIgnored,
                                  svn_boolean_t fixTimestamps, svn_boolean_t vacuumPristines,
                                  svn_boolean_t includeExternals, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_upgrade, 1.7 and later
    svn_error_t* (*client_upgrade)(const char* path, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_relocate2; before 1.7 svn_client_relocate, which leaves externals alone
    svn_error_t* (*client_relocate)(const char* path, const char* from, const char* to, svn_boolean_t ignoreExternals,
                                    svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_patch, 1.7 and later
    svn_error_t* (*client_patch)(const char* file, const char* directory, svn_boolean_t dryRun, int strip,
                                 svn_boolean_t reverse, svn_boolean_t ignoreWhitespace, svn_client_ctx_t* ctx,
                                 apr_pool_t* pool);
};

/// Conflicts, and how they are settled.
struct HSVNConflictFunctions
{
    using ConflictReceiver = svn_error_t* (*)(void* baton, const char* path);

    /// Asked how a conflict is settled while a function goes on, by a svn_wc_conflict_choice_t; 1.7 and later.
    struct Choosing
    {
        svn_error_t* (*choose)(void* baton, int* choice, const svn_wc_conflict_description2_t* conflict);
        void* baton;
    };

    /// What an item's conflicts are about, in Subversion's own numbers.
    struct ConflictState
    {
        svn_boolean_t text;
        svn_boolean_t tree;
        const apr_array_header_t* properties; ///< names
        const char* mimeType;                 ///< of a file in conflict; may be null
        int recommended;                      ///< a svn_client_conflict_option_id_t
        int operation;                        ///< a svn_wc_operation_t
    };

    struct ConflictOption
    {
        int id;
        const char* label;
        const char* description;
    };

    /// Files or values of a conflict; any may be null.
    template <class Value>
    struct ConflictSides
    {
        Value base;
        Value mine;
        Value theirOld;
        Value theirNew;
    };

    std::uint32_t size = sizeof(HSVNConflictFunctions);

    /// svn_client_resolve, 1.5 and later; the choice is a svn_wc_conflict_choice_t
    svn_error_t* (*client_resolve)(const char* path, svn_depth_t depth, int choice, svn_client_ctx_t* ctx,
                                   apr_pool_t* pool);
    /// svn_client_conflict_get, 1.10 and later; the conflict lives in the pool
    svn_error_t* (*conflict_get)(svn_client_conflict_t** conflict, const char* path, svn_client_ctx_t* ctx,
                                 apr_pool_t* pool);
    /// svn_client_conflict_get_conflicted, _text_get_mime_type and _get_recommended_option_id
    svn_error_t* (*conflict_state)(ConflictState* state, svn_client_conflict_t* conflict, apr_pool_t* pool);
    /// svn_client_conflict_prop_get_description, or svn_client_conflict_tree_get_description where `local` is given
    svn_error_t* (*conflict_description)(const char** description, const char** local, svn_client_conflict_t* conflict,
                                         svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_conflict_tree_get_details
    svn_error_t* (*conflict_details)(svn_client_conflict_t* conflict, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_conflict_text_get_resolution_options and its like; the kind is a svn_wc_conflict_kind_t, the options
    /// are `ConflictOption` values
    svn_error_t* (*conflict_options)(apr_array_header_t** options, svn_client_conflict_t* conflict, int kind,
                                     svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_conflict_text_resolve_by_id and its like; the value is that of a merged property, or null
    svn_error_t* (*conflict_resolve)(svn_client_conflict_t* conflict, int kind, const char* property, int option,
                                     const svn_string_t* value, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_conflict_text_get_contents
    svn_error_t* (*conflict_files)(ConflictSides<const char*>* files, svn_client_conflict_t* conflict,
                                   apr_pool_t* pool);
    /// svn_client_conflict_prop_get_propvals
    svn_error_t* (*conflict_values)(ConflictSides<const svn_string_t*>* values, svn_client_conflict_t* conflict,
                                    const char* property, apr_pool_t* pool);
    /// svn_client_conflict_option_get_moved_to_abspath_candidates2 or its like for the repository, 1.11 and later; null
    /// when the option has none
    svn_error_t* (*conflict_move_targets)(apr_array_header_t** targets, svn_client_conflict_t* conflict, int option,
                                          svn_boolean_t inRepository, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_conflict_option_set_moved_to_abspath2 or its like for the repository, 1.11 and later
    svn_error_t* (*conflict_choose_move_target)(svn_client_conflict_t* conflict, int option, svn_boolean_t inRepository,
                                                int index, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_conflict_walk, 1.10 and later; the receiver gets each conflict's absolute path
    svn_error_t* (*conflict_walk)(const char* path, svn_depth_t depth, ConflictReceiver receiver, void* baton,
                                  svn_client_ctx_t* ctx, apr_pool_t* pool);
};

/// What comes from a repository.
struct HSVNUpdateFunctions
{
    /// How an update, a check-out or a switch goes about; what a function has no use for is left false.
    struct Updating
    {
        svn_depth_t depth;
        svn_boolean_t depthIsSticky = FALSE;
        svn_boolean_t ignoreExternals = FALSE;
        svn_boolean_t allowObstructions = FALSE;
        svn_boolean_t addsAsModification = FALSE;
        svn_boolean_t makeParents = FALSE;
        svn_boolean_t ignoreAncestry = FALSE;
        const HSVNConflictFunctions::Choosing* choosing = nullptr; ///< null leaves all conflicts
    };

    struct Exporting
    {
        svn_depth_t depth;
        svn_boolean_t overwrite;
        svn_boolean_t ignoreExternals;
        svn_boolean_t ignoreKeywords;
        const char* nativeEOL; ///< "LF", "CR", "CRLF", or null for the system's own
    };

    std::uint32_t size = sizeof(HSVNUpdateFunctions);

    /// svn_client_update4, 1.7 and later
    svn_error_t* (*client_update)(apr_array_header_t** revisions, const apr_array_header_t* targets,
                                  const svn_opt_revision_t* revision, const Updating* choices, svn_client_ctx_t* ctx,
                                  apr_pool_t* pool);
    /// svn_client_checkout3, 1.5 and later
    svn_error_t* (*client_checkout)(svn_revnum_t* result, const char* url, const char* path,
                                    const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                                    const Updating* choices, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_switch3; before 1.7 svn_client_switch2, which compares no ancestry, before 1.5 svn_client_switch,
    /// which looks for the URL in the revision wanted and knows of the choices the flag for depths alone
    svn_error_t* (*client_switch)(svn_revnum_t* result, const char* path, const char* url,
                                  const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                                  const Updating* choices, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_export5, 1.7 and later
    svn_error_t* (*client_export)(svn_revnum_t* result, const char* from, const char* to,
                                  const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                                  const Exporting* choices, svn_client_ctx_t* ctx, apr_pool_t* pool);
};

/// Merges, and what has been merged.
struct HSVNMergeFunctions
{
    struct Merging
    {
        svn_depth_t depth;
        svn_boolean_t ignoreMergeInfo;
        svn_boolean_t diffIgnoreAncestry;
        svn_boolean_t forceDelete;
        svn_boolean_t recordOnly;
        svn_boolean_t dryRun;
        svn_boolean_t allowMixedRevisions;
        const apr_array_header_t* arguments;             ///< of the program that merges texts; may be null
        const HSVNConflictFunctions::Choosing* choosing; ///< null leaves all conflicts
    };

    /// How far one branch is merged into another.
    struct MergingSummary
    {
        svn_boolean_t reintegrates;
        const char* ancestorURL;
        svn_revnum_t ancestorRevision;
        const char* baseURL;
        svn_revnum_t baseRevision;
        const char* sourceURL;
        svn_revnum_t sourceRevision;
        const char* targetURL;
        svn_revnum_t targetRevision;
        const char* repositoryRoot;
    };

    std::uint32_t size = sizeof(HSVNMergeFunctions);

    /// svn_client_merge5, 1.8 and later
    svn_error_t* (*client_merge)(const char* source1, const svn_opt_revision_t* revision1, const char* source2,
                                 const svn_opt_revision_t* revision2, const char* target, const Merging* choices,
                                 svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_merge_peg5; before 1.8 svn_client_merge_peg4, before 1.7 svn_client_merge_peg3, before 1.5
    /// svn_client_merge_peg2; the ranges are `RevisionRange` values, or null for a complete merge, 1.5 and later
    svn_error_t* (*client_merge_peg)(const char* source, const apr_array_header_t* ranges,
                                     const svn_opt_revision_t* pegRevision, const char* target, const Merging* choices,
                                     svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_merge_reintegrate, 1.5 and later; only dry run, arguments and choosing count
    svn_error_t* (*client_merge_reintegrate)(const char* source, const svn_opt_revision_t* pegRevision,
                                             const char* target, const Merging* choices, svn_client_ctx_t* ctx,
                                             apr_pool_t* pool);
    /// svn_client_get_merging_summary, 1.8 and later
    svn_error_t* (*client_merging_summary)(MergingSummary* summary, const char* source,
                                           const svn_opt_revision_t* sourceRevision, const char* target,
                                           const svn_opt_revision_t* targetRevision, svn_client_ctx_t* ctx,
                                           apr_pool_t* pool);
    /// svn_client_mergeinfo_log2, 1.8 and later
    svn_error_t* (*client_mergeinfo_log)(svn_boolean_t merged, const char* target,
                                         const svn_opt_revision_t* targetRevision, const char* source,
                                         const svn_opt_revision_t* sourceRevision, const svn_opt_revision_t* start,
                                         const svn_opt_revision_t* end, svn_boolean_t changedPaths, svn_depth_t depth,
                                         const apr_array_header_t* revisionProperties,
                                         HSVNReadingFunctions::LogReceiver receiver, void* baton, svn_client_ctx_t* ctx,
                                         apr_pool_t* pool);
};

/// What goes to a repository.
struct HSVNCommitFunctions
{
    /// What a copy copies.
    struct CopySource
    {
        const char* path;
        svn_opt_revision_t revision;
        svn_opt_revision_t pegRevision;
    };

    std::uint32_t size = sizeof(HSVNCommitFunctions);

    /// svn_client_commit6 with commits as operations, 1.8 and later
    svn_error_t* (*client_commit)(const apr_array_header_t* targets, svn_depth_t depth, svn_boolean_t keepLocks,
                                  svn_boolean_t keepChangelists, svn_boolean_t includeExternals,
                                  const apr_array_header_t* changelists, const apr_hash_t* revisionProperties,
                                  svn_commit_callback2_t receiver, void* baton, svn_client_ctx_t* ctx,
                                  apr_pool_t* pool);
    /// svn_client_import5; before 1.8 svn_client_import4, before 1.7 svn_client_import3, which set automatic properties
    /// as the configuration says; 1.5 and later
    svn_error_t* (*client_import)(const char* path, const char* url, svn_depth_t depth, svn_boolean_t noIgnore,
                                  svn_boolean_t noAutoProperties, svn_boolean_t ignoreUnknownKinds,
                                  const apr_hash_t* revisionProperties, svn_commit_callback2_t receiver, void* baton,
                                  svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_mkdir4, before 1.7 svn_client_mkdir3, 1.5 and later
    svn_error_t* (*client_mkdir)(const apr_array_header_t* targets, svn_boolean_t makeParents,
                                 const apr_hash_t* revisionProperties, svn_commit_callback2_t receiver, void* baton,
                                 svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_delete4, before 1.7 svn_client_delete3, 1.5 and later
    svn_error_t* (*client_delete)(const apr_array_header_t* targets, svn_boolean_t force, svn_boolean_t keepLocal,
                                  const apr_hash_t* revisionProperties, svn_commit_callback2_t receiver, void* baton,
                                  svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_copy7 without a list of externals to pin; before 1.9 svn_client_copy6, which pins none, before 1.7
    /// svn_client_copy5, before 1.6 svn_client_copy4, which copies externals in any case, before 1.5 svn_client_copy3
    /// of one source in the revision that it is looked up in; the sources are `CopySource` values
    svn_error_t* (*client_copy)(const apr_array_header_t* sources, const char* destination, svn_boolean_t asChild,
                                svn_boolean_t makeParents, svn_boolean_t ignoreExternals, svn_boolean_t pinExternals,
                                const apr_hash_t* revisionProperties, svn_commit_callback2_t receiver, void* baton,
                                svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_move7; before 1.8 svn_client_move6, before 1.7 svn_client_move5 by force, which all allow mixed
    /// revisions, before 1.5 svn_client_move4 of one source
    svn_error_t* (*client_move)(const apr_array_header_t* sources, const char* destination, svn_boolean_t asChild,
                                svn_boolean_t makeParents, svn_boolean_t allowMixedRevisions,
                                const apr_hash_t* revisionProperties, svn_commit_callback2_t receiver, void* baton,
                                svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_lock
    svn_error_t* (*client_lock)(const apr_array_header_t* targets, const char* comment, svn_boolean_t steal,
                                svn_client_ctx_t* ctx, apr_pool_t* pool);
    /// svn_client_unlock
    svn_error_t* (*client_unlock)(const apr_array_header_t* targets, svn_boolean_t breakLock, svn_client_ctx_t* ctx,
                                  apr_pool_t* pool);
};

/// How texts and trees differ.
struct HSVNDifferenceFunctions
{
    /// How trees are compared. A summary has a use for the depth, the ancestry and the changelists only.
    struct Comparing
    {
        svn_depth_t depth;
        svn_boolean_t ignoreAncestry;
        svn_boolean_t omitAdded;
        svn_boolean_t omitDeleted;
        svn_boolean_t copiesAsAdds;
        svn_boolean_t ignoreContentType;
        svn_boolean_t ignoreProperties;
        svn_boolean_t propertiesOnly;
        svn_boolean_t gitFormat;
        const apr_array_header_t* arguments;   ///< of the program that compares files; null for the configuration's
        const apr_array_header_t* changelists; ///< may be null
        const char* headerEncoding;            ///< of names in a text; null for the locale's
        const char* relativeTo;                ///< the directory that names of local items are below; null for none
    };

    std::uint32_t size = sizeof(HSVNDifferenceFunctions);

    /// svn_diff_file_diff3_2; place 73 of the first table puts out what it finds
    svn_error_t* (*diff_file_diff3)(svn_diff_t** diff, const char* base, const char* mine, const char* theirs,
                                    const svn_diff_file_options_t* options, apr_pool_t* pool);
    /// svn_diff_mem_string_diff3, or svn_diff_mem_string_diff where the latest text is null, 1.5 and later; for place
    /// 73, too
    svn_error_t* (*diff_texts)(svn_diff_t** diff, const svn_string_t* original, const svn_string_t* modified,
                               const svn_string_t* latest, const svn_diff_file_options_t* options, apr_pool_t* pool);
    /// svn_diff_file_output_unified4, 1.9 and later: what place 74 of the first table does, with functions and another
    /// number of context lines
    svn_error_t* (*diff_output_unified)(svn_stream_t* out, svn_diff_t* diff, const char* original, const char* modified,
                                        const char* originalLabel, const char* modifiedLabel, const char* encoding,
                                        svn_boolean_t showFunctions, int contextLines, svn_client_ctx_t* ctx,
                                        apr_pool_t* pool);
    /// svn_client_diff7, headers in the locale's encoding; before 1.11 svn_client_diff6, before 1.8 svn_client_diff5,
    /// before 1.7 svn_client_diff4, before 1.5 svn_client_diff3, each with the choices that it has; null streams are
    /// the process's own
    svn_error_t* (*client_diff)(svn_stream_t* out, svn_stream_t* errors, const char* target1,
                                const svn_opt_revision_t* revision1, const char* target2,
                                const svn_opt_revision_t* revision2, const Comparing* choices, svn_client_ctx_t* ctx,
                                apr_pool_t* pool);
    /// svn_client_diff_peg7 in the same way
    svn_error_t* (*client_diff_peg)(svn_stream_t* out, svn_stream_t* errors, const char* target,
                                    const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* start,
                                    const svn_opt_revision_t* end, const Comparing* choices, svn_client_ctx_t* ctx,
                                    apr_pool_t* pool);
    /// svn_client_diff_summarize2, before 1.5 svn_client_diff_summarize
    svn_error_t* (*client_diff_summarize)(const char* target1, const svn_opt_revision_t* revision1, const char* target2,
                                          const svn_opt_revision_t* revision2, const Comparing* choices,
                                          svn_client_diff_summarize_func_t receiver, void* baton, svn_client_ctx_t* ctx,
                                          apr_pool_t* pool);
    /// svn_client_diff_summarize_peg2, before 1.5 svn_client_diff_summarize_peg
    svn_error_t* (*client_diff_summarize_peg)(const char* target, const svn_opt_revision_t* pegRevision,
                                              const svn_opt_revision_t* start, const svn_opt_revision_t* end,
                                              const Comparing* choices, svn_client_diff_summarize_func_t receiver,
                                              void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool);
};

/// The databases of working copies, which a context keeps open from 1.7 on.
struct HSVNDatabaseFunctions
{
    std::uint32_t size = sizeof(HSVNDatabaseFunctions);

    /// Before an operation, outside of every other: closes the databases of working copies that the context keeps open
    /// when the disk has changed under one of them, or when one of the targets, local paths, now belongs to another
    /// working copy. 1.7 and later, as the next three; older lines keep nothing open. The context pool is the one that
    /// the context lives in.
    svn_error_t* (*refresh_working_copies)(const apr_array_header_t* targets, svn_client_ctx_t* ctx,
                                           apr_pool_t* contextPool, apr_pool_t* pool);
    /// Before and after an operation on the targets: keeps in mind which databases it opens.
    void (*note_working_copies)(const apr_array_header_t* targets, svn_client_ctx_t* ctx, apr_pool_t* contextPool,
                                apr_pool_t* pool);
    /// Closes the databases of all working copies that the context keeps open.
    svn_error_t* (*close_working_copies)(svn_client_ctx_t* ctx, apr_pool_t* contextPool, apr_pool_t* pool);
    /// Whether the working copy of a path (which may be "") or of a target of the running operation has work in its
    /// queue: stopped now, Subversion would leave it locked. 1.9 and later.
    svn_boolean_t (*has_unfinished_work)(const char* path, apr_pool_t* contextPool);
    /// Within a callback of an operation: gives the client context databases of its own until the pool is cleared, for
    /// a call of Subversion may be amid a reading of the others, which another statement would end. They are kept in
    /// the pool of the operation around for its next callback, unless they are to be made anew. 1.7 and later
    svn_error_t* (*use_own_databases)(svn_client_ctx_t* ctx, apr_pool_t* poolAround, svn_boolean_t anew,
                                      apr_pool_t* pool);
};

/// The line itself, and repositories on the disk.
struct HSVNLineFunctions
{
    /// A library that Subversion is linked to; statically where there is no runtime version.
    struct LinkedLibrary
    {
        const char* name;
        const char* compiledVersion;
        const char* runtimeVersion;
    };

    /// What Subversion says of itself; null for what it does not say.
    struct VersionDetails
    {
        const char* number;
        const char* buildDate;
        const char* buildTime;
        const char* buildHost;
        const char* copyright;
        const char* accessModules;
        const char* configurationFolder;
        apr_array_header_t* keyrings; ///< const char*
        const char* host;
        const char* operatingSystem;
        apr_array_header_t* libraries; ///< LinkedLibrary
    };

    std::uint32_t size = sizeof(HSVNLineFunctions);

    /// svn_version_extended or svn_subr_version, and svn_ra_print_modules; the folder null for the user's own
    svn_error_t* (*version_details)(VersionDetails* details, const char* configurationFolder, svn_boolean_t withSystem,
                                    apr_pool_t* pool);
    /// The code by which the older lines tell what an error means, whichever of its levels says it; 0 when the codes of
    /// its levels are those codes already or have no other
    apr_status_t (*error_meaning)(const svn_error_t* error);
    /// svn_repos_create with a configuration of the file system, an array of names and values in turn
    svn_error_t* (*repos_create)(const char* path, const apr_array_header_t* configuration, apr_pool_t* pool);
};

/// The families that a bundle offers; null for one that its line has nothing of.
struct HSVNBundleExtensions
{
    /// Size of the structure in bytes as the bundle was compiled: it only ever grows at its end.
    std::uint32_t size = sizeof(HSVNBundleExtensions);
    /// 2; raised when a place changes its meaning, which a library that expects the former one then refuses.
    std::uint32_t version = 2;

    const HSVNTargetFunctions* targets;
    const HSVNAuthenticationFunctions* authentication;
    const HSVNReadingFunctions* reading;
    const HSVNStatusFunctions* status;
    const HSVNPropertyFunctions* properties;
    const HSVNChangeFunctions* changes;
    const HSVNConflictFunctions* conflicts;
    const HSVNUpdateFunctions* updates;
    const HSVNMergeFunctions* merges;
    const HSVNCommitFunctions* commits;
    const HSVNDifferenceFunctions* differences;
    const HSVNDatabaseFunctions* databases;
    const HSVNLineFunctions* line;

    /// Where the family is held.
    template <class Family>
    const Family* const& place() const
    {
        const auto places = std::tie(targets, authentication, reading, status, properties, changes, conflicts, updates,
                                     merges, commits, differences, databases, line);
        return std::get<const Family* const&>(places);
    }
};

extern "C" {
/// What a bundle that offers the table exports beside its principal function under the name
/// `HSVNBundleExtensionsTable`: answers the table, which lives as long as the process.
using HSVNBundleExtensionsFunction = const HSVNBundleExtensions* (*)();
}

/// Name of that symbol.
inline constexpr const char* HSVNBundleExtensionsSymbol = "HSVNBundleExtensionsTable";

/// What a structure with its size in front holds in one of its members; null where it ends before the member.
template <class Structure, class Pointer>
Pointer HSVNHeldOrNull(const Structure& structure, const Pointer& member)
{
    const auto end = reinterpret_cast<const char*>(&member + 1) - reinterpret_cast<const char*>(&structure);
    return end > static_cast<std::ptrdiff_t>(structure.size) ? nullptr : member;
}

/// A place of one of a bundle's families; null when the bundle does not offer it, the family, or any.
template <class Family, class Function>
Function HSVNExtensionOrNull(const HSVNBundleExtensions* table, Function Family::*place)
{
    const Family* const family = table ? HSVNHeldOrNull(*table, table->place<Family>()) : nullptr;
    return family ? HSVNHeldOrNull(*family, family->*place) : nullptr;
}
