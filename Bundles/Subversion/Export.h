#pragma once

#include "ExportedTree.h"

// Subversion's own export writes wherever the names lead that a server sends: "../x" comes to lie beside the target. So
// exports of a repository are driven here, with an editor that takes plain names only. What is a working copy's own is
// left to Subversion.

namespace HSVNAdapter {

/// Exports a URL, or a working copy's item in a revision that the repository has, with everything that Subversion tells
/// and answers for it.
///
/// @param from  canonical
/// @param to    canonical; "" means the item's own name in the current folder
svn_error_t* exportRepositoryTree(svn_revnum_t* result, const char* from, const char* to,
                                  const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                                  const ExportChoices& choices, svn_client_ctx_t* ctx, apr_pool_t* pool);

/// Whether an export is of what a repository has, not of a working copy's own state.
bool isRepositoryExport(const char* from, const svn_opt_revision_t& pegRevision, const svn_opt_revision_t& revision);

} // namespace HSVNAdapter
