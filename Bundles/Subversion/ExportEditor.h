#pragma once

#include "ExportedTree.h"

#include <svn_delta.h>

namespace HSVNAdapter {

/// The editor that writes a tree; it asks for cancellation between its steps.
svn_error_t* makeExportEditor(const svn_delta_editor_t** editor, void** baton, ExportedTree* tree, apr_pool_t* pool);

} // namespace HSVNAdapter
