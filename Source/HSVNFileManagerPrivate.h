#pragma once

#include <string>
#include <system_error>

/// Items on disk, without Subversion. Links are handled themselves, never what they point to.
namespace HSVNFileManager {

/// Whether there is an item, also a link that leads nowhere.
bool itemExists(const std::string& path);

/// Whether the item is a folder.
bool isFolder(const std::string& path);

/// Removes an item and everything below it.
///
/// @return an error of the kind "no such file or directory" when there is nothing at the path
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

/// A copy of an item, kept in a folder beside it for as long as the object lives.
class HSVNSetAsideItem
{
  public:
    /// @throws HSVNException "Cannot set '%@' aside: %@"
    explicit HSVNSetAsideItem(std::string path);
    ~HSVNSetAsideItem();
    HSVNSetAsideItem(const HSVNSetAsideItem&) = delete;
    HSVNSetAsideItem& operator=(const HSVNSetAsideItem&) = delete;

    /// Puts the copy in the place of whatever is at the path now. A copy that cannot be put there is kept on disk, for
    /// it may be the only one left.
    ///
    /// @throws HSVNException "Cannot put '%@' back from '%@': %@" with the folder that the copy is kept in
    void putBack();

  private:
    std::string _path;
    std::string _folder; // empty once it is not to be removed
};
