#pragma once

#include "SubversionLine.h"

#ifdef HSVN_FAST_STATUS

#include "PristineChecksums.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace HSVNAdapter {

/// What a status walk does not tell of an unchanged item.
struct UnchangedNode
{
    svn_revnum_t revision = SVN_INVALID_REVNUM;
    svn_revnum_t changedRevision = SVN_INVALID_REVNUM;
    apr_time_t textTime = 0;
    svn_filesize_t textSize = -1;
    std::optional<MD5Digest> checksum; ///< none for folders
};

/// The unchanged items of a folder, by name. Thousands of folders pass from thread to thread in a scan, so all names
/// lie in one block.
class UnchangedNodes
{
  public:
    /// Makes room for as many nodes as another folder has.
    void reserveAs(const UnchangedNodes& other);
    /// Takes the names in ascending order of their bytes.
    void add(std::string_view name, const UnchangedNode& node);
    /// Whether the last node has the name.
    bool isLast(std::string_view name) const { return !_items.empty() && nameAt(_items.size() - 1) == name; }
    /// Whether all nodes' names come before this one.
    bool endBefore(std::string_view name) const { return _items.empty() || nameAt(_items.size() - 1) < name; }
    /// Takes the last node back.
    void dropLast();
    /// Null for a name that is not there. The one after that found last is found at once.
    const UnchangedNode* find(std::string_view name);
    std::size_t size() const { return _items.size(); }

  private:
    struct Item
    {
        std::size_t nameBegin;
        UnchangedNode node;
    };

    std::string_view nameAt(std::size_t index) const;

    std::string _names;
    std::vector<Item> _items;
    std::size_t _next = 0;
};

} // namespace HSVNAdapter

#endif
