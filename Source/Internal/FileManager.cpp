#include "Internal/FileManager.h"

#include "HSVNDebug.h"
#include "HSVNException.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fmt/format.h>
#include <string_view>
#include <utility>

namespace {

namespace files = std::filesystem;

constexpr auto copyOptions = files::copy_options::recursive | files::copy_options::copy_symlinks;

/// The names of the folders that are made beside items, with the six characters that make each unique.
constexpr std::string_view folderTemplate{".hsvn-XXXXXX"};

/// Makes an empty folder beside an item.
///
/// @return its path; empty with an error
std::string makeFolderBeside(const std::string& path, std::error_code& error)
{
    std::string folder = (files::path{path}.parent_path() / folderTemplate).string();
    if (::mkdtemp(folder.data()) == nullptr) {
        error.assign(errno, std::generic_category());
        return {};
    }
    return folder;
}

/// Whether that is the name of such a folder.
bool isFolderBeside(std::string_view name)
{
    return name.size() == folderTemplate.size() && name.starts_with(folderTemplate.substr(0, folderTemplate.find('X')));
}

/// Whether a path, at which nothing needs to be yet, lies in a folder.
bool liesIn(const files::path& path, const std::string& folder)
{
    std::error_code error;
    const auto top = files::canonical(folder, error);
    for (auto ancestor = files::weakly_canonical(path.parent_path(), error); !error; ancestor = ancestor.parent_path())
    {
        if (ancestor == top) {
            return true;
        }
        if (ancestor == ancestor.parent_path()) {
            break;
        }
    }
    return false;
}

/// Gives the files of a copy the modification times of the originals. A time that cannot be set is no reason to lose
/// the copy.
void copyTimes(const files::path& source, const files::path& copy)
{
    std::error_code ignored;
    switch (files::symlink_status(source, ignored).type()) {
    case files::file_type::regular:
        files::last_write_time(copy, files::last_write_time(source, ignored), ignored);
        break;
    case files::file_type::directory:
        for (files::directory_iterator entry{source, ignored}, end; !ignored && entry != end; entry.increment(ignored))
        {
            copyTimes(entry->path(), copy / entry->path().filename());
        }
        break;
    default:
        break;
    }
}

std::error_code copyTree(const std::string& source, const files::path& copy)
{
    std::error_code error;
    files::copy(source, copy, copyOptions, error);
    if (!error) {
        copyTimes(source, copy);
    }
    return error;
}

/// Moves an item to a place in a folder that was made for it, or copies it there. Older lines keep what they know of a
/// folder inside it, so they could not delete one that is gone.
std::error_code setAside(const std::string& path, const files::path& place, const std::string& adminName)
{
    std::error_code error;
    if (!HSVNFileManager::itemExists(path + '/' + adminName)) {
        files::rename(path, place, error);
        if (!error) {
            return error;
        }
    }
    return copyTree(path, place);
}

} // namespace

bool HSVNFileManager::itemExists(const std::string& path)
{
    std::error_code error;
    return files::exists(files::symlink_status(path, error));
}

bool HSVNFileManager::isFolder(const std::string& path)
{
    std::error_code error;
    return files::symlink_status(path, error).type() == files::file_type::directory;
}

std::vector<std::string> HSVNFileManager::sortedNamesIn(const std::string& folder)
{
    std::vector<std::string> names;
    std::error_code error;
    for (files::directory_iterator entry{folder, error}, end; !error && entry != end; entry.increment(error)) {
        names.push_back(entry->path().filename().string());
    }
    if (error) {
        HSVNException::exceptionWithReason(fmt::format("Cannot list the folder '{}': {}", folder, error.message()),
                                           error.value())
            ->raise();
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::error_code HSVNFileManager::removeItem(const std::string& path)
{
    if (!files::path{path}.has_relative_path()) {
        return std::make_error_code(std::errc::operation_not_permitted); // the root, and with it everything
    }
    std::error_code error;
    if (files::remove_all(path, error) == 0 && !error) {
        return std::make_error_code(std::errc::no_such_file_or_directory);
    }
    return error;
}

std::error_code HSVNFileManager::copyItem(const std::string& source, const std::string& destination)
{
    if (itemExists(destination)) {
        return std::make_error_code(std::errc::file_exists);
    }
    if (isFolder(source) && liesIn(destination, source)) {
        return std::make_error_code(std::errc::invalid_argument);
    }
    std::error_code error;
    const std::string folder = makeFolderBeside(destination, error);
    if (error) {
        return error;
    }
    const files::path copy = files::path{folder} / files::path{destination}.filename();
    error = copyTree(source, copy);
    if (!error) {
        files::rename(copy, destination, error);
    }
    removeItem(folder);
    return error;
}

void HSVNFileManager::fail(const std::string& reason, const std::error_code& error)
{
    throw HSVNException(reason,
                        {{HSVNExceptionMessageKey, reason}, {HSVNExceptionStatusKey, std::int64_t{error.value()}}});
}

HSVNSetAsideItem::HSVNSetAsideItem(std::string path, const std::string& adminName) : _path{std::move(path)}
{
    std::error_code error;
    _folder = makeFolderBeside(_path, error);
    if (!error) {
        error = setAside(_path, place(), adminName);
    }
    if (error) {
        if (!_folder.empty()) {
            HSVNFileManager::removeItem(_folder);
        }
        HSVNFileManager::fail(fmt::format("Cannot set '{}' aside: {}", _path, error.message()), error);
    }
}

std::string HSVNSetAsideItem::place() const { return (files::path{_folder} / files::path{_path}.filename()).string(); }

void HSVNSetAsideItem::putBack()
{
    std::error_code error;
    if (!HSVNFileManager::itemExists(place())) { // what is at the path is better than nothing
        error = std::make_error_code(std::errc::no_such_file_or_directory);
    } else {
        files::remove_all(_path, error);
        files::rename(place(), _path, error);
    }
    if (error) {
        HSVNFileManager::fail(fmt::format("Cannot put '{}' back from '{}': {}", _path, _folder, error.message()),
                              error);
    }
    HSVNFileManager::removeItem(_folder);
}

void HSVNSetAsideItem::discard() noexcept
{
    try {
        if (const auto error = HSVNFileManager::removeItem(_folder)) {
            HSVNDebug::logAtLevel(HSVNDebugLevelNormal, "Cannot remove '%@': %@", _folder, error.message());
        }
    } catch (...) { // NOLINT(bugprone-empty-catch): what stays is found again by a clean-up
    }
}

std::vector<std::string> HSVNSetAsideItem::left(const std::string& path, const std::string& adminName)
{
    std::vector<std::string> found;
    std::error_code error;
    for (files::recursive_directory_iterator entry{path, files::directory_options::skip_permission_denied, error}, end;
         !error && entry != end; entry.increment(error))
    {
        const std::string name = entry->path().filename().string();
        std::error_code vanished;
        // Both known of most file systems' folders, with no question for each item.
        const bool isFolder = !entry->is_symlink(vanished) && entry->is_directory(vanished);
        if (isFolder && isFolderBeside(name)) {
            found.push_back(entry->path().string());
        }
        if (isFolder && (name == adminName || isFolderBeside(name))) {
            entry.disable_recursion_pending();
        }
    }
    return found;
}
