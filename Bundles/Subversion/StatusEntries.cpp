#include "StatusEntries.h"

#ifdef HSVN_FAST_STATUS

#include "Internal/Hexadecimal.h"

#include <cstring>

namespace HSVNAdapter {
namespace {

const char* nameIn(const char* path)
{
    const char* slash = std::strrchr(path, '/');
    return slash == nullptr ? path : slash + 1;
}

const char* checksumText(const std::optional<MD5Digest>& checksum, apr_pool_t* pool)
{
    if (!checksum || *checksum == MD5Digest{}) { // one of zeros is none to Subversion
        return nullptr;
    }
    auto* const text = static_cast<char*>(apr_pcalloc(pool, 2 * checksum->size() + 1));
    HSVNHexadecimal::write(*checksum, text);
    return text;
}

void setLock(svn_wc_entry_t& entry, const svn_lock_t* lock)
{
    if (lock != nullptr) {
        entry.lock_token = lock->token;
        entry.lock_owner = lock->owner;
        entry.lock_comment = lock->comment;
        entry.lock_creation_date = lock->creation_date;
    }
}

/// With what the record tells alike of every kind of item.
svn_wc_entry_t entryFromRecord(const svn_client_status_t& status, const char* url, const char* name)
{
    svn_wc_entry_t entry = emptyEntry();
    entry.name = name;
    entry.url = url;
    entry.repos = status.repos_root_url;
    entry.uuid = status.repos_uuid;
    entry.kind = status.kind;
    entry.changelist = status.changelist;
    setLock(entry, status.lock);
    return entry;
}

} // namespace

svn_wc_entry_t emptyEntry()
{
    svn_wc_entry_t entry{};
    entry.revision = SVN_INVALID_REVNUM;
    entry.copyfrom_rev = SVN_INVALID_REVNUM;
    entry.cmt_rev = SVN_INVALID_REVNUM;
    entry.working_size = SVN_WC_ENTRY_WORKING_SIZE_UNKNOWN;
    entry.depth = svn_depth_infinity;
    entry.file_external_peg_rev.kind = svn_opt_revision_unspecified;
    entry.file_external_rev.kind = svn_opt_revision_unspecified;
    return entry;
}

svn_wc_entry_t unchangedEntry(const UnchangedNode& node, const char* path, const char* url,
                              const svn_client_status_t& status, apr_pool_t* pool)
{
    svn_wc_entry_t entry = reportedEntry(path, url, status);
    entry.schedule = svn_wc_schedule_normal;
    entry.copied = FALSE;
    entry.text_time = node.textTime;
    entry.checksum = checksumText(node.checksum, pool);
    entry.working_size = node.textSize;
    return entry;
}

svn_wc_entry_t reportedEntry(const char* path, const char* url, const svn_client_status_t& status)
{
    const bool isFolder = status.kind == svn_node_dir;
    svn_wc_entry_t entry = entryFromRecord(status, url, isFolder ? "" : nameIn(path));
    entry.schedule = status.node_status == svn_wc_status_added      ? svn_wc_schedule_add
                     : status.node_status == svn_wc_status_deleted  ? svn_wc_schedule_delete
                     : status.node_status == svn_wc_status_replaced ? svn_wc_schedule_replace
                                                                    : svn_wc_schedule_normal;
    entry.revision = status.revision;
    entry.copied = status.copied;
    entry.cmt_rev = status.changed_rev;
    entry.cmt_date = status.changed_date;
    entry.cmt_author = status.changed_author;
    entry.has_props = status.prop_status != svn_wc_status_none;
    entry.has_prop_mods = status.prop_status == svn_wc_status_modified;
    entry.depth = isFolder && status.depth != svn_depth_unknown ? status.depth : svn_depth_infinity;
    return entry;
}

svn_wc_entry_t copiedEntry(const UnchangedNode& node, const char* path, const char* url,
                           const svn_client_status_t& status, apr_pool_t* pool)
{
    svn_wc_entry_t entry = unchangedEntry(node, path, url, status, pool);
    entry.revision = node.revision;
    entry.copied = TRUE;
    return entry;
}

svn_wc_entry_t replacementEntry(svn_revnum_t replaced, const char* path, const char* url,
                                const svn_client_status_t& status)
{
    svn_client_status_t addition = status;
    addition.lock = nullptr; // which is on what was there
    svn_wc_entry_t entry = additionEntry(path, url, addition);
    entry.revision = replaced;
    entry.schedule = svn_wc_schedule_replace;
    return entry;
}

svn_wc_entry_t additionEntry(const char* path, const char* url, const svn_client_status_t& status)
{
    svn_wc_entry_t entry = entryFromRecord(status, url, status.kind == svn_node_dir ? "" : nameIn(path));
    entry.revision = 0;
    entry.schedule = svn_wc_schedule_add;
    entry.has_props = status.prop_status != svn_wc_status_none;
    entry.has_prop_mods = entry.has_props;
    return entry;
}

svn_wc_entry_t deletionEntry(const DeletedNode& node, const char* path, const svn_client_status_t& status,
                             apr_pool_t* pool)
{
    svn_wc_entry_t entry =
        entryFromRecord(status, svn_path_url_add_component2(status.repos_root_url, node.repositoryPath, pool),
                        nameIn(path)); // also of a folder: it is not there to tell of itself
    entry.revision = node.revision;
    entry.schedule = svn_wc_schedule_delete;
    entry.checksum = checksumText(node.checksum, pool);
    entry.cmt_rev = node.changedRevision;
    entry.cmt_date = node.changedDate;
    entry.cmt_author = node.changedAuthor;
    entry.has_props = node.hasProperties;
    return entry;
}

} // namespace HSVNAdapter

#endif
