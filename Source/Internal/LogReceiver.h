#pragma once

#include "HSVNContext.h"
#include "HSVNLogDelegate.h"
#include "HSVNLogItem.h"
#include "Internal/Pool.h"

#include <vector>

/// Turns the revisions that Subversion reports into items, shows them to a delegate and collects them.
struct HSVNLogReceiver
{
    HSVNContext& context;
    HSVNLogDelegate* delegate; ///< may be null
    std::vector<HSVNLogItemRef> items = {};
    HSVNTextCache paths = {}; ///< the same few change again and again

    /// What Subversion is handed, with a receiver as the baton: collects an item unless the delegate refuses it.
    static svn_error_t* receive(void* baton, apr_hash_t* changedPaths, svn_revnum_t revision, const char* author,
                                const char* date, const char* message, apr_pool_t* pool);
};

/// The item of one reported revision, through the current bundle; texts and changes may be null.
///
/// @param paths  the texts of the paths, which the items of a log share
/// @throws HSVNException for a date that Subversion cannot read
HSVNLogItemRef HSVNCreateLogItem(apr_hash_t* changedPaths, svn_revnum_t revision, const char* author, const char* date,
                                 const char* message, HSVNTextCache& paths, apr_pool_t* pool);
