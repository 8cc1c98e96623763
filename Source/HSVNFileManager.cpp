#include "HSVNFileManagerPrivate.h"

#include "HSVNException.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fmt/format.h>
#include <utility>

namespace {

namespace files = std::filesystem;

constexpr auto copyOptions = files::copy_options::recursive | files::copy_options::copy_symlinks;

/// The copy's name in the folder that is made for it.
constexpr const char* copyName = "item";

/// Makes an empty folder beside an item.
///
/// @return its path; empty with an error
std::string makeFolderBeside(const std::string& path, std::error_code& error)
{
    std::string folder = (files::path{path}.parent_path() / ".hsvn-XXXXXX").string();
    if (::mkdtemp(folder.data()) == nullptr) {
        error.assign(errno, std::generic_category());
        return {};
    }
    return folder;
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

std::error_code HSVNFileManager::removeItem(const std::string& path)
{
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
    const files::path copy = files::path{folder} / copyName;
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

HSVNSetAsideItem::HSVNSetAsideItem(std::string path) : _path{std::move(path)}
{
    std::error_code error;
    _folder = makeFolderBeside(_path, error);
    if (!error) {
        error = copyTree(_path, files::path{_folder} / copyName);
    }
    if (error) {
        if (!_folder.empty()) {
            HSVNFileManager::removeItem(_folder);
        }
        HSVNFileManager::fail(fmt::format("Cannot set '{}' aside: {}", _path, error.message()), error);
    }
}

HSVNSetAsideItem::~HSVNSetAsideItem()
{
    if (!_folder.empty()) {
        HSVNFileManager::removeItem(_folder);
    }
}

void HSVNSetAsideItem::putBack()
{
    std::error_code error;
    files::remove_all(_path, error);
    files::rename(files::path{_folder} / copyName, _path, error);
    if (error) {
        const auto kept = std::exchange(_folder, {});
        HSVNFileManager::fail(fmt::format("Cannot put '{}' back from '{}': {}", _path, kept, error.message()), error);
    }
}
