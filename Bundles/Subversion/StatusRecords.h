#pragma once

#include "SubversionLine.h"

#ifdef HSVN_FAST_STATUS

#include "ItemURLs.h"
#include "NodesAhead.h"
#include "WorkingCopyDatabase.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace HSVNAdapter {

/// Makes records of the older status interface from those of the newest one, equal to what the older function of the
/// line answers, but for two fields that it never sets on this line and that are set here: `locked` and
/// `file_external`.
///
/// The older function reads the entry of every item again, which takes time quadratic in a folder's size. Here the
/// entries of items that are unchanged, plainly added or plainly deleted are made from the newer record and the working
/// copy's database, read a folder at a time where that pays; the entries of other items are read once a folder;
/// items with a tree conflict are asked for one by one.
class StatusRecords
{
  public:
    /// @param target    canonical path that the walk begins at
    /// @param recurse   whether the walk goes on below the target's children
    /// @param getAll    whether unchanged items are reported, so that reading whole folders pays
    /// @param receiver  hears the records, which live during the call only
    StatusRecords(svn_client_ctx_t* ctx, const char* target, svn_boolean_t recurse, svn_boolean_t getAll,
                  svn_wc_status_func2_t receiver, void* baton, apr_pool_t* pool);
    ~StatusRecords();
    StatusRecords(const StatusRecords&) = delete;
    StatusRecords& operator=(const StatusRecords&) = delete;

    /// A `svn_client_status_func_t`; the baton is the object.
    static svn_error_t* receive(void* baton, const char* path, const svn_client_status_t* status, apr_pool_t* pool);

  private:
    struct Folder;

    svn_error_t* receive(const char* path, const svn_client_status_t& status, apr_pool_t* pool);
    /// The entry of an item of a plain kind; none for any other, which is read.
    std::optional<svn_wc_entry_t> makeEntry(const char* path, const char* url, const svn_client_status_t& status,
                                            apr_pool_t* pool);
    std::optional<svn_wc_entry_t> makeUnchangedEntry(const char* path, const char* url,
                                                     const svn_client_status_t& status, apr_pool_t* pool);
    std::optional<svn_wc_entry_t> makeAdditionEntry(const char* path, const char* url,
                                                    const svn_client_status_t& status);
    std::optional<svn_wc_entry_t> makeReplacementEntry(const char* path, const char* url,
                                                       const svn_client_status_t& status);
    std::optional<svn_wc_entry_t> makeCopiedEntry(const char* path, const char* url, const svn_client_status_t& status,
                                                  apr_pool_t* pool);
    std::optional<svn_wc_entry_t> makeDeletionEntry(const char* path, const svn_client_status_t& status,
                                                    apr_pool_t* pool);
    svn_error_t* readEntry(const svn_wc_entry_t** entry, const char* path, const svn_client_status_t& status,
                           apr_pool_t* pool);
    /// What an item's folder has of it; null when it cannot be read.
    const svn_wc_entry_t* entryInFolder(const char* path);
    svn_error_t* openNear(const char* path);
    svn_error_t* openFolder(Folder& folder);
    /// Items that are hidden, such as deleted ones, among them.
    svn_error_t* readEntries(Folder& folder);
    svn_error_t* readConflicts(svn_wc_status2_t& record, const char* path, const svn_client_status_t& status,
                               apr_pool_t* pool);
    svn_error_t* readConflictedRecord(svn_wc_status2_t& record, const char* path, const svn_client_status_t& status,
                                      apr_pool_t* pool);
    /// Fills a record from the newer one alone.
    svn_error_t* completeAsReported(svn_wc_status2_t& record, std::optional<svn_wc_entry_t>& entry, const char* path,
                                    const svn_client_status_t& status, apr_pool_t* pool);
    /// The older function's own record, without what the repository says.
    svn_error_t* readRecord(svn_wc_status2_t** record, const char* path, apr_pool_t* pool);
    const UnchangedNode* unchangedNode(UnchangedNode& single, const char* path, svn_node_kind_t kind);
    const UnchangedNode* nodeIn(Folder& folder, std::string_view name);

    /// The folder of that path; the walk leaves those that do not hold it.
    Folder& folder(std::string_view path);
    WorkingCopyDatabase* databaseFor(std::string_view folderPath);
    bool isRoot(std::string_view path);
    void startReadingAhead();
    /// Puts the folder's next nodes in place of those that it has.
    void takeNodes(Folder& folder);

    svn_client_ctx_t* _ctx;
    const std::string _target;
    const bool _readsFolders; ///< whole, where items are not looked up singly
    svn_wc_status_func2_t _receiver;
    void* _baton;
    apr_pool_t* _pool;
    std::size_t _received = 0; ///< items
    ItemURLs _urls;
    std::pair<std::string, bool> _asked;    ///< the folder last asked whether it is a root, and the answer
    svn_wc_adm_access_t* _opener = nullptr; ///< the first folder opened, whose database the others share
    std::string _openerPath;
    std::vector<std::unique_ptr<Folder>> _folders; ///< those that the walk is in, outermost first
    /// By root; null for one that cannot be used.
    std::vector<std::pair<std::string, std::unique_ptr<WorkingCopyDatabase>>> _databases;
    std::unique_ptr<NodesAhead> _ahead; ///< where reading ahead of the walk pays
};

} // namespace HSVNAdapter

#endif
