#include "ExternalsSearch.h"

#ifdef HSVN_FAST_STATUS

#include "DatabaseConnections.h"
#include "WorkingCopyPlace.h"

#include <string>
#include <string_view>
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
    const std::string_view item = path;
    const std::string root = workingCopyRoot(item, pool);
    const std::string file = databaseOf(root, pool);
    auto database = root.empty() ? nullptr : openDatabase(file);
    if (!database) {
        return false;
    }
    const auto below = item.size() > root.size() ? item.substr(root.size() + 1) : std::string_view{};
    const bool result = haveNoExternals(database.get(), std::string{below});
    leaveDatabase(std::move(database), file, pool);
    return result;
}

} // namespace HSVNAdapter

#endif
