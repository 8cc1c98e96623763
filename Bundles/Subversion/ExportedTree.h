#pragma once

#include "SubversionLine.h"

#include <map>
#include <set>
#include <string>

namespace HSVNAdapter {

/// How a tree is exported.
struct ExportChoices
{
    svn_depth_t depth;
    svn_boolean_t overwrite;
    svn_boolean_t ignoreExternals;
    svn_boolean_t ignoreKeywords;
    const char* nativeEOL; ///< null for the system's own
};

/// What one export of a tree writes, and what it learns while it does.
struct ExportedTree
{
    const char* target;  ///< what is written; notifications begin with it
    const char* url;     ///< of the tree in its revision
    const char* rootURL; ///< of the repository
    const ExportChoices& choices;
    svn_client_ctx_t* ctx;
    svn_revnum_t revision = SVN_INVALID_REVNUM;     ///< as the server tells it
    std::map<std::string, std::string> externals{}; ///< definitions by the absolute path of their folder
    /// Absolute paths of the symbolic links written so far, here and by externals: nothing is written through them.
    std::set<std::string>* links;
};

/// Refuses what is no name of an item: nothing that leads elsewhere, and not the administrative folder's.
svn_error_t* requirePlainName(const char* name, const char* folder, apr_pool_t* pool);

/// The path of an item below another, which may be empty.
const char* pathBelow(const char* base, const char* relativePath, apr_pool_t* pool);

/// Makes the target's folder and tells of it, as Subversion does; one that exists is used only where overwriting is
/// allowed.
svn_error_t* makeExportedFolder(const ExportedTree& tree, const char* path, svn_boolean_t withParents,
                                apr_pool_t* pool);

/// Tells that an item was exported.
void notifyExported(const svn_client_ctx_t* ctx, const char* path, svn_node_kind_t kind, apr_pool_t* pool);

} // namespace HSVNAdapter
