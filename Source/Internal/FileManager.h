#pragma once

#include <string>
#include <system_error>
#include <vector>

/// Items on disk, without Subversion. Links are handled themselves, never what they point to.
namespace HSVNFileManager {

/// Whether there is an item, also a link that leads nowhere.
bool itemExists(const std::string& path);

/// Whether the item is a folder.
bool isFolder(const std::string& path);

/// The names of a folder's items, sorted.
///
/// @throws HSVNException "Cannot list the folder '%@': %@"
std::vector<std::string> sortedNamesIn(const std::string& folder);

/// Removes an item and everything below it.
///
/// @return an error of the kind "no such file or directory" when there is nothing at the path, and of "operation not
///         permitted" for the root, which is never removed
std::error_code removeItem(const std::string& path);

/// Copies an item and everything below it, modification times of files included. The destination appears whole or not
/// at all: the copy is made in a folder beside it and renamed.
///
/// @return an error of the kind "file exists" when there is something at the destination, "invalid argument" when the
///         destination lies in the source
std::error_code copyItem(const std::string& source, const std::string& destination);

/// Throws an HSVNException with the error's number as its status.
[[noreturn]] void fail(const std::string& reason, const std::error_code& error);

} // namespace HSVNFileManager

/// An item out of its place, in a folder beside it and under its own name, until it is put back or discarded. What is
/// neither stays on disk when the object goes, for it may be the only one left.
class HSVNSetAsideItem
{
  public:
    /// Moves an item aside. One that cannot be moved is copied, as is a folder that bears an administrative area.
    ///
    /// @param adminName  of administrative areas
    /// @throws HSVNException "Cannot set '%@' aside: %@"; the item is then as it was
    HSVNSetAsideItem(std::string path, const std::string& adminName);

    /// Where the item is now.
    std::string place() const;
    /// Puts the item in the place of whatever is at its path now.
    ///
    /// @throws HSVNException "Cannot put '%@' back from '%@': %@"; the item is then still where it was set aside
    void putBack();
    /// Removes the item for good; what cannot be removed is logged and stays.
    void discard() noexcept;

    /// The folders that items were set aside in, or copied through, at and below a path when a program was ended.
    ///
    /// @param adminName  of administrative areas, which are not searched
    static std::vector<std::string> left(const std::string& path, const std::string& adminName);

  private:
    std::string _path;
    std::string _folder;
};
