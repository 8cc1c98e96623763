#pragma once

#include "SubversionLine.h"

#include <string>
#include <vector>

// A move of a local item writes down what is to be at the destination, renames the item on disk and then writes down
// that nothing is at the source. When the last of these fails, as on a full disk, or the program is killed before, the
// source is missing, and its local changes are where nobody looks for them.

namespace HSVNAdapter {

/// The moves of one call, known before it is made.
class MovesUnderWay
{
  public:
    /// @param sources      of which local ones count
    /// @param destination  of a source alone the new place, unless something is there already, else the directory of
    ///                     the new places
    MovesUnderWay(const std::vector<const char*>& sources, const char* destination, apr_pool_t* pool);

    /// Puts back what the call, if it failed, has renamed on disk alone.
    ///
    /// @return the failure; it also says where an item is that could not be put back
    svn_error_t* takenBack(svn_error_t* failure, svn_client_ctx_t* ctx) const;

  private:
    struct Move
    {
        std::string source;
        std::string destination;
    };

    [[maybe_unused]] apr_pool_t* _pool;
    std::vector<Move> _moves; ///< of items that are on disk to places where nothing is
};

/// Ends the moves that were killed before both of their halves were on record, in the working copy of an absolute path,
/// whose database says which those are: what was renamed on disk is put back. On lines whose database is not known here
/// nothing is put back.
svn_error_t* takeBackHalfMoves(const char* path, svn_client_ctx_t* ctx, apr_pool_t* pool);

} // namespace HSVNAdapter
