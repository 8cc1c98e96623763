#include "ExternalsSearch.h"

#ifdef HSVN_FAST_STATUS

#include "DatabaseConnections.h"

#include <string>
#include <string_view>
#include <sys/stat.h>
#include <utility>

namespace HSVNAdapter {
namespace {

// Properties are searched as the bytes they are stored in, so a value that only mentions the name counts too: it
// merely sends the question the long way. Most are shorter than the name and need not be read.
#define HSVN_HAS_EXTERNALS "length(properties) > 13 AND instr(properties, CAST('svn:externals' AS BLOB)) > 0"

#define HSVN_QUERY_OF(folders)                                                                                         \
    "SELECT EXISTS (SELECT 1 FROM nodes WHERE wc_id = 1 AND local_relpath = ?1 AND presence = 'normal')"               \
    " AND NOT EXISTS (SELECT 1 FROM nodes WHERE wc_id = 1 AND local_relpath = ?1 AND op_depth > 0)"                    \
    " AND NOT EXISTS (SELECT 1 FROM nodes " folders " AND kind = 'dir' AND " HSVN_HAS_EXTERNALS ")"                    \
    " AND NOT EXISTS (SELECT 1 FROM actual_node WHERE " HSVN_HAS_EXTERNALS ")"

/// All of the working copy: in the order in which it is stored, which needs no index.
constexpr const char* wholeQuery = HSVN_QUERY_OF("NOT INDEXED WHERE wc_id = 1");
/// At and below ?1: "?1" followed by "0", which is the character after "/", comes after every path below it. The range
/// holds some neighbours as well.
constexpr const char* partQuery =
    HSVN_QUERY_OF("WHERE wc_id = 1 AND local_relpath >= ?1 AND local_relpath < ?1 || '0'");

/// The database of the working copy that a path is in, and the path below its root.
struct Place
{
    std::string file;
    std::string_view relativePath;
};

Place placeOf(std::string_view path, apr_pool_t* pool)
{
    const std::string name = std::string{"/"} + svn_wc_get_adm_dir(pool) + "/wc.db";
    for (std::string_view root = path; !root.empty(); root = root.substr(0, root.rfind('/'))) {
        std::string file = std::string{root} + name;
        struct stat attributes
        {
        };
        if (::stat(file.c_str(), &attributes) == 0) {
            return {std::move(file), root.size() == path.size() ? std::string_view{} : path.substr(root.size() + 1)};
        }
    }
    return {};
}

bool haveNoExternals(sqlite3* database, const std::string& relativePath)
{
    const auto row = prepareStatement(database, relativePath.empty() ? wholeQuery : partQuery);
    if (!row) {
        return false;
    }
    sqlite3_bind_text(row.get(), 1, relativePath.data(), static_cast<int>(relativePath.size()), SQLITE_STATIC);
    return sqlite3_step(row.get()) == SQLITE_ROW && sqlite3_column_int(row.get(), 0) != 0;
}

} // namespace

bool haveNoExternals(const char* path, apr_pool_t* pool)
{
    const Place place = placeOf(path, pool);
    auto database = place.file.empty() ? nullptr : openDatabase(place.file);
    if (!database) {
        return false;
    }
    const bool result = haveNoExternals(database.get(), std::string{place.relativePath});
    leaveDatabase(std::move(database), place.file, pool);
    return result;
}

} // namespace HSVNAdapter

#endif
