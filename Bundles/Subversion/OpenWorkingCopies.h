#pragma once

#include "WorkingCopyPlace.h"

#if HSVN_LINE_MINOR >= 7

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace HSVNAdapter {

/// The working copies whose databases a client context keeps open.
///
/// Subversion opens a database when it first meets the working copy, and remembers of every directory it meets which
/// working copy that belongs to. It looks at neither again: once another program has removed, replaced or restored a
/// working copy, or checked one out below another, it answers from what is gone. So its working-copy context is made
/// anew when the disk says something else.
class OpenWorkingCopies
{
  public:
    /// The record of a client context, which lives in its pool.
    static OpenWorkingCopies& of(svn_client_ctx_t* ctx, apr_pool_t* contextPool);
    /// The same; null when there is none yet.
    static OpenWorkingCopies* in(apr_pool_t* contextPool);

    /// Makes the working-copy context anew when the disk has changed under it or under one of the targets, when it
    /// keeps others out of the databases, or when it holds a lock still: that of an operation that failed amid its
    /// work, whoever has cleaned up after it since.
    /// Before outermost operations alone. Keeps in mind which working copies these then open.
    svn_error_t* refresh(const apr_array_header_t* targets, apr_pool_t* pool);
    /// Keeps in mind which working copies an operation on the targets opens, with the externals in them: before one
    /// within another, and after each, which may have made some.
    void note(const apr_array_header_t* targets, apr_pool_t* pool);
    /// Whether there is work in the queue of the path's working copy or of one of the last refresh's targets.
    /// No longer so once it has been asked for some time: who stops an operation does not wait for a large check-out.
    bool hasUnfinishedWork(const std::string& path);
    /// Closes all databases.
    svn_error_t* close(apr_pool_t* pool);

  private:
    struct Seen
    {
        FileIdentity identity;
        apr_time_t changed = 0; // when externals were last looked for, the database's time of change then
    };

    struct Moment
    {
        std::chrono::nanoseconds worked; // by this thread
        std::chrono::nanoseconds passed;
    };

    OpenWorkingCopies(svn_client_ctx_t* ctx, apr_pool_t* contextPool) : _ctx{ctx}, _contextPool{contextPool} {}

    bool isStale(apr_pool_t* pool) const;
    bool holdsLock(apr_pool_t* pool) const;
    bool isMistaken(apr_pool_t* pool) const;
    bool isMistakenAbout(const std::string& path, const std::string& root, apr_pool_t* pool) const;
    std::string rootAfter(const std::string& path, apr_pool_t* pool) const;
    void noteRoots(const std::vector<std::string>& roots, apr_pool_t* pool);
    void noteRoot(const std::string& root, apr_pool_t* pool);
    void noteExternals(const std::string& root, Seen& seen, apr_pool_t* pool);
    void destroyFormer();

    svn_client_ctx_t* _ctx;
    apr_pool_t* _contextPool;
    /// Of former working-copy contexts, until the next operation: what is left of the one that saw them closed, such as
    /// an update that failed, still asks them when its pool is destroyed.
    std::vector<apr_pool_t*> _formerPools;
    apr_pool_t* _generationPool = nullptr;       // of the working-copy context; null for the client context's first one
    bool _keepsOthersOut = false;                // of the databases that are open
    std::map<std::string, Seen> _seen;           // by root
    std::vector<std::string> _made;              // of these, what operations made since the last refresh
    std::map<std::string, std::string> _targets; // of the last refresh, absolute, with their roots
    std::optional<Moment> _askedForWork;         // for the first time since then
};

} // namespace HSVNAdapter

#endif
