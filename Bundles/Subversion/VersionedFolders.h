#pragma once

#include "SubversionLine.h"

// Walks over the folders of a working copy that go on where a folder is missing or something else is in its place.
// Lines that keep an administrative area in each folder end their own walks there.

namespace HSVNAdapter {

/// The values of a property of the versioned items at and below a folder, without those that are to be deleted.
/// Folders that are missing or obstructed have none.
///
/// @param values  gets svn_string_t by path
svn_error_t* readPropertyBelow(apr_hash_t* values, const char* name, const char* folder, svn_client_ctx_t* ctx,
                               apr_pool_t* pool);

/// Fails when, at or below a folder, a folder that is no working copy is in the place of a versioned one. What is no
/// working copy itself passes.
svn_error_t* refuseObstructedFolders(const char* folder, svn_client_ctx_t* ctx, apr_pool_t* pool);

} // namespace HSVNAdapter
