#include "WorkingCopyFormat.h"

#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "FileBeginnings.h"
#include "StandIns.h"

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

namespace HSVNAdapter {
namespace {

/// The number alone on the file's first line; 0 when there is none.
int numberInFirstLine(const std::string& file)
{
    constexpr std::size_t longest = 16;
    const std::string text = beginningOf(file, longest);
    const std::string_view line = std::string_view{text}.substr(0, text.find('\n'));
    int number = 0;
    const auto [end, failure] = std::from_chars(line.data(), line.data() + line.size(), number);
    return failure == std::errc{} && end == line.data() + line.size() && number > 0 ? number : 0;
}

/// The user version in the header of an SQLite database, where Subversion keeps the format; 0 for any other file.
int numberInDatabaseHeader(const std::string& file)
{
    static constexpr std::string_view signature{"SQLite format 3\0", 16};
    static constexpr std::size_t userVersionOffset = 60;
    const std::string header = beginningOf(file, userVersionOffset + 4);
    if (header.size() < userVersionOffset + 4 || !header.starts_with(signature)) {
        return 0;
    }
    std::uint32_t number = 0;
    for (std::size_t index = userVersionOffset; index < header.size(); ++index) {
        number = number << 8U | static_cast<unsigned char>(header[index]);
    }
    return number <= INT32_MAX ? static_cast<int>(number) : 0;
}

svn_error_t* checkWC(const char* path, int* format, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(path, pool);
    *format = 0;
    svn_error_t* error = smoothed(svn_wc_check_wc(path, format, pool));
    if (error != nullptr && !hasCode(error, SVN_ERR_WC_UNSUPPORTED_FORMAT)) {
        return error;
    }
    // Newer lines answer 0 for formats before theirs and after theirs, older ones a fixed number for all after theirs.
    if (const int stated = statedFormat(path, pool); stated > 0) {
        *format = stated;
    }
    svn_error_clear(error);
    return SVN_NO_ERROR;
}

const char* administrativeFolder(apr_pool_t* pool) { return svn_wc_get_adm_dir(pool); }

svn_error_t* pristineCopyPath(const char* path, const char** pristinePath, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(path, pool);
    return smoothed(svn_wc_get_pristine_copy_path(path, pristinePath, pool));
}

} // namespace

int statedFormat(const char* folder, apr_pool_t* pool)
{
    const std::string area = std::string{folder} + "/" + svn_wc_get_adm_dir(pool) + "/";
    // Newer working copies keep a number in the two text files too, only to turn older lines away.
    for (const int number : {numberInDatabaseHeader(area + "wc.db"), numberInFirstLine(area + "entries"),
                             numberInFirstLine(area + "format")})
    {
        if (number > 0) {
            return number;
        }
    }
    return 0;
}

bool isFormatOfLine(int format)
{
    constexpr int newest = HSVN_LINE_MINOR >= 15  ? 32
                           : HSVN_LINE_MINOR >= 8 ? 31
                           : HSVN_LINE_MINOR == 7 ? 29
                                                  : HSVN_LINE_MINOR + 4;
    constexpr int oldest = HSVN_LINE_MINOR >= 15 ? 31 : HSVN_LINE_MINOR >= 7 ? newest : 2;
    return format >= oldest && format <= newest;
}

svn_error_t* formatChecked(const char* folder, svn_error_t* error, apr_pool_t* pool)
{
    if (error == nullptr || error->apr_err != SVN_ERR_WC_NOT_DIRECTORY) {
        return error;
    }
    const int format = statedFormat(folder, pool);
    if (format == 0) {
        return error;
    }
    if (isFormatOfLine(format)) {
        return svn_error_createf(SVN_ERR_WC_CORRUPT, error, "The working copy at '%s' cannot be read", folder);
    }
    // Newer lines say that it is no working copy.
    return svn_error_createf(SVN_ERR_WC_UNSUPPORTED_FORMAT, error,
                             "The working copy at '%s' has format %d, which Subversion %d.%d cannot work with", folder,
                             format, SVN_VER_MAJOR, SVN_VER_MINOR);
}

void fillWorkingCopyFormat(HSVNBundleEntryPoints& table)
{
    table.wc_check_wc = checkWC;
    table.wc_get_adm_dir = administrativeFolder;
    table.wc_get_pristine_copy_path = pristineCopyPath;
}

} // namespace HSVNAdapter

#ifdef HSVN_GUARDS_DATABASES
// The text files of a working copy state the formats before those of databases. For any other, Subversion looks into
// the database that is not there, which ends the process.
HSVN_STAND_IN(svn_error_t*, svn_io_read_version_file)(int* version, const char* path, apr_pool_t* pool)
{
    constexpr int newestOfTextFiles = 12;
#ifdef HSVN_LINKED_STATICALLY
    // Subversion opens it from within the same object, where nothing stands in front of that.
    apr_file_t* opened = nullptr;
    SVN_ERR(svn_io_file_open(&opened, path, APR_READ, APR_OS_DEFAULT, pool));
    SVN_ERR(svn_io_file_close(opened, pool));
#endif
    SVN_ERR(HSVN_BEHIND(svn_io_read_version_file)(version, path, pool));
    const std::string area = std::string{"/"} + svn_wc_get_adm_dir(pool) + "/";
    const std::string_view file = path;
    if (*version > newestOfTextFiles && (file.ends_with(area + "entries") || file.ends_with(area + "format"))) {
        return svn_error_createf(SVN_ERR_BAD_VERSION_FILE_FORMAT, nullptr,
                                 "'%s' states a format, %d, that has no such file", path, *version);
    }
    return SVN_NO_ERROR;
}
#endif
