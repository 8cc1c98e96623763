#include "StillbornAreas.h"

#include "FileBeginnings.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#ifdef HSVN_FAST_STATUS
#include "SQLiteHandles.h"
#endif

namespace HSVNAdapter {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view databaseName{"wc.db"};
/// A number of a format and a line's end are not longer.
constexpr std::size_t longestNumber = 16;

bool isEmptyFile(const fs::path& file)
{
    std::error_code error;
    return fs::file_size(file, error) == 0 && !error;
}

/// Whether a file holds the number of a format alone, as those do that only turn older lines away.
bool holdsANumberAlone(const fs::path& file)
{
    const std::string bytes = beginningOf(file, longestNumber + 1);
    return bytes.size() <= longestNumber && std::ranges::all_of(bytes, [](unsigned char byte) {
               return std::isdigit(byte) != 0 || std::isspace(byte) != 0;
           });
}

/// Whether a database holds nothing, once what was being written to it is taken back.
bool holdsNoTable(const fs::path& file)
{
#ifdef HSVN_FAST_STATUS
    sqlite3* handle = nullptr;
    const int result = sqlite3_open_v2(file.c_str(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    const SQLiteDatabase database{handle};
    if (result != SQLITE_OK) {
        return false;
    }
    const auto count = prepareStatement(handle, "SELECT count(*) FROM sqlite_master");
    return count && sqlite3_step(count.get()) == SQLITE_ROW && sqlite3_column_int(count.get(), 0) == 0;
#else
    return isEmptyFile(file);
#endif
}

bool isWithoutValue(const fs::directory_entry& entry, const fs::path& area)
{
    std::error_code error;
    const auto type = fs::symlink_status(entry.path(), error).type();
    if (type == fs::file_type::directory || type == fs::file_type::not_found) { // as SQLite removes a journal
        return true;
    }
    if (type != fs::file_type::regular) {
        return false;
    }
    const std::string name = entry.path().filename().string();
    if (entry.path().parent_path() == area) {
        if (name == databaseName) {
            return holdsNoTable(entry.path());
        }
        if (name.starts_with(databaseName)) { // what SQLite keeps beside it; it is nothing without it
            return fs::exists(area / databaseName, error);
        }
        if (name == "entries" || name == "format") {
            return holdsANumberAlone(entry.path());
        }
    }
    return isEmptyFile(entry.path());
}

/// Whether an area is there that holds nothing.
bool isStillborn(const fs::path& area)
{
    std::error_code error;
    if (fs::symlink_status(area, error).type() != fs::file_type::directory) {
        return false;
    }
    for (fs::recursive_directory_iterator entry{area, error}, end; !error && entry != end; entry.increment(error)) {
        if (!isWithoutValue(*entry, area)) {
            return false;
        }
    }
    return !error;
}

} // namespace

void removeStillbornArea(const char* folder, apr_pool_t* pool)
{
    const auto area = fs::path{folder} / svn_wc_get_adm_dir(pool);
    if (isStillborn(area)) {
        std::error_code left; // where it cannot be removed, the check-out tells why it fails
        fs::remove_all(area, left);
    }
}

} // namespace HSVNAdapter
