#pragma once

#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace HSVNAdapter {

/// Whether the system has a path as Subversion has it, in every locale.
bool isASCII(std::string_view path);

/// What a folder of the disk holds, as a status walk asks for it: the kind, size and time of every item. Names are as
/// the system has them.
class FolderContents
{
  public:
    /// Reads a folder; needs nothing of Subversion's, so that any thread may. Takes two thirds of the time that
    /// Subversion takes, since each item is looked up in the open folder and not from the root of the disk.
    ///
    /// @param path     as the system has it
    /// @param isToStop ends the reading when it becomes true
    /// @return nothing when the folder cannot be read to its end, whatever the reason
    static std::optional<FolderContents> read(const std::string& path, const std::atomic<bool>& isToStop);

    std::size_t size() const { return _items.size(); }

    /// The contents as svn_io_get_dirents3 answers them, all in the pool; null when a name is none in the locale's
    /// encoding.
    apr_hash_t* entries(apr_pool_t* pool) const;

  private:
    struct Item
    {
        std::size_t name; ///< begin in `_names`, where a zero ends it
        std::size_t length;
        svn_node_kind_t kind;
        bool isLink;
        svn_filesize_t size;
        apr_time_t time;
    };

    void add(std::string_view name, const struct stat& attributes);

    std::vector<Item> _items;
    std::string _names;
    bool _hasOnlyASCII = true;
};

} // namespace HSVNAdapter

#endif
