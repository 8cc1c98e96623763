#pragma once

#include "HSVNLogDelegate.h"
#include "HSVNLogItem.h"
#include "HSVNLogOptions.h"
#include "Internal/Operation.h"

#include <vector>

/// Reads the history of items, for `HSVNContext::log`.
///
/// @param targets  one local path, or a URL and paths relative to it
/// @throws HSVNUnsupportedFeatureException for choices that a line before 1.6 does not have
void HSVNLog(HSVNOperation& operation, const apr_array_header_t* targets, const HSVNLogChoices& choices,
             const HSVNReceiver<const HSVNLogItemRef&>& receiver);

/// The item of one revision that Subversion's newer functions report, with everything that the record tells.
HSVNLogItemRef HSVNLogItemOfEntry(const HSVNOperation& operation, const svn_log_entry_t& record, apr_pool_t* pool);

/// The same through place 49, which takes one range, tells author, date and message of each revision, and is handed
/// what it reports to: for the class operation, and for the verb on lines before 1.6.
///
/// @param choices  its peg revision, first range, limit, `changedPaths` and `stopOnCopy` count
void HSVNLogMessages(HSVNOperation& operation, const apr_array_header_t* targets, const HSVNLogChoices& choices,
                     svn_log_message_receiver_t receiver, void* baton);

/// Turns the revisions that place 49 reports into items, shows them to a delegate and collects them.
struct HSVNLogReceiver
{
    HSVNContext& context;
    HSVNLogDelegate* delegate; ///< may be null
    std::vector<HSVNLogItemRef> items = {};

    /// What Subversion is handed, with a receiver as the baton: collects an item unless the delegate refuses it.
    static svn_error_t* receive(void* baton, apr_hash_t* changedPaths, svn_revnum_t revision, const char* author,
                                const char* date, const char* message, apr_pool_t* pool);
};

/// The item of one reported revision, through the current bundle; texts and changes may be null.
///
/// @throws HSVNException for a date that Subversion cannot read
HSVNLogItemRef HSVNCreateLogItem(apr_hash_t* changedPaths, svn_revnum_t revision, const char* author, const char* date,
                                 const char* message, apr_pool_t* pool);
