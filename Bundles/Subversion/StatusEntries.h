#pragma once

#include "SubversionLine.h"

#ifdef HSVN_FAST_STATUS

#include "WorkingCopyDatabase.h"

#include <string_view>

namespace HSVNAdapter {

// Each makes the entry that Subversion itself would answer for an item, from its newer status record and what the
// database tells. The texts are those of the record, the path and the node, or made in the pool.

/// What an entry says when nothing is known of an item.
svn_wc_entry_t emptyEntry();

/// The entry of an item that nothing is scheduled for.
svn_wc_entry_t unchangedEntry(const UnchangedNode& node, const char* path, const char* url,
                              const svn_client_status_t& status, apr_pool_t* pool);

/// The entry of an item that came with the copy of a folder.
svn_wc_entry_t copiedEntry(const UnchangedNode& node, const char* path, const char* url,
                           const svn_client_status_t& status, apr_pool_t* pool);

/// What the record alone tells of an item, where Subversion has no entry to answer.
svn_wc_entry_t reportedEntry(const char* path, const char* url, const svn_client_status_t& status);

/// The entry of an item that was added without a history and lies on disk.
svn_wc_entry_t additionEntry(const char* path, const char* url, const svn_client_status_t& status);

/// The same where it takes the place of one of that revision.
svn_wc_entry_t replacementEntry(svn_revnum_t replaced, const char* path, const char* url,
                                const svn_client_status_t& status);

/// The entry of a deleted item in whose place no folder lies.
svn_wc_entry_t deletionEntry(const DeletedNode& node, const char* path, const svn_client_status_t& status,
                             apr_pool_t* pool);

} // namespace HSVNAdapter

#endif
