#pragma once

#include "ExportedTree.h"

#include <array>

namespace HSVNAdapter {

/// One file of an export: written under another name, then translated as its properties say and put into its place. A
/// file that does not come to that is removed with its pool.
class ExportedFile
{
  public:
    /// A file made in the pool, with the path that it keeps.
    ///
    /// @param relativePath  of the file below the tree's URL; kept
    static ExportedFile* make(ExportedTree& tree, const char* path, const char* relativePath, apr_pool_t* pool);

    /// Keeps what the file's translation depends on.
    svn_error_t* setProperty(const char* name, const svn_string_t* value);
    /// A handler that writes what it is given as the whole text.
    svn_error_t* openDelta(svn_txdelta_window_handler_t* handler, void** baton, apr_pool_t* pool);
    /// A stream that is the whole text once it is closed.
    svn_error_t* openStream(svn_stream_t** stream);
    /// Puts the file into its place and tells of it; without a text, nothing.
    ///
    /// @param checksum  of the text that was to arrive; null for none
    svn_error_t* install(const char* checksum, apr_pool_t* pool);

  private:
    ExportedFile(ExportedTree& tree, const char* path, const char* relativePath, apr_pool_t* pool)
        : _tree{tree}, _path{path}, _relativePath{relativePath}, _pool{pool}
    {
    }

    static svn_error_t* takeWindow(svn_txdelta_window_t* window, void* baton);
    static apr_status_t removeTemporary(void* file);

    svn_error_t* openTemporary();
    svn_error_t* checkText(const char* checksum, apr_pool_t* pool) const;
    svn_error_t* endOfLine(const char** mark) const;
    svn_error_t* keywords(apr_hash_t** values, apr_pool_t* pool) const;
    svn_error_t* translate(apr_pool_t* pool) const;
    svn_error_t* place(apr_pool_t* pool);

    ExportedTree& _tree;
    const char* _path;
    const char* _relativePath;
    apr_pool_t* _pool;
    const char* _temporary = nullptr;
    svn_stream_t* _stream = nullptr;
    svn_txdelta_window_handler_t _apply = nullptr;
    void* _applyBaton = nullptr;
    bool _isComplete = false;
    std::array<unsigned char, 16> _digest{};

    const char* _eolStyle = nullptr;
    const char* _keywords = nullptr;
    const char* _revision = nullptr;
    const char* _author = nullptr;
    apr_time_t _date = 0;
    bool _isExecutable = false;
    bool _isSpecial = false;
};

/// Writes the session's item, a file, to the tree's target.
///
/// @param name  of the item in a target that is a folder
svn_error_t* exportFile(struct svn_ra_session_t* session, const char* name, svn_revnum_t revision, ExportedTree* tree,
                        apr_pool_t* pool);

} // namespace HSVNAdapter
