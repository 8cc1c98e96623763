#include "ExternalsSearch.h"

#ifdef HSVN_FAST_STATUS

#include "DatabaseConnections.h"
#include "WorkingCopyPlace.h"

#include <string_view>
#include <utility>

namespace HSVNAdapter {
namespace {

// Properties are searched as the bytes they are stored in, so a value that only mentions the name counts too: the item
// is merely asked for nothing. Most are shorter than the name and need not be read.
#define HSVN_HAS_EXTERNALS "length(properties) > 13 AND instr(properties, CAST('svn:externals' AS BLOB)) > 0"

constexpr const char* plainQuery =
    "SELECT EXISTS (SELECT 1 FROM nodes WHERE wc_id = 1 AND local_relpath = ?1 AND presence = 'normal')"
    " AND NOT EXISTS (SELECT 1 FROM nodes WHERE wc_id = 1 AND local_relpath = ?1 AND op_depth > 0)";

// Whatever of them is deleted or not there now has no properties.
#define HSVN_QUERY_OF(nodes, items)                                                                                    \
    "SELECT local_relpath FROM"                                                                                        \
    " (SELECT local_relpath FROM nodes " nodes " AND kind = 'dir' AND " HSVN_HAS_EXTERNALS                             \
    "  UNION SELECT local_relpath FROM actual_node WHERE " items " AND " HSVN_HAS_EXTERNALS ") AS found"               \
    " WHERE (SELECT presence FROM nodes WHERE wc_id = 1 AND local_relpath = found.local_relpath"                       \
    "  ORDER BY op_depth DESC LIMIT 1) IN ('normal', 'incomplete')"

/// All of the working copy: in the order in which it is stored, which needs no index.
constexpr const char* wholeQuery = HSVN_QUERY_OF("NOT INDEXED WHERE wc_id = 1", "wc_id = 1");
/// At and below ?1: what comes after it and "/", and before it and "0", which is the character after "/".
#define HSVN_BELOW "wc_id = 1 AND (local_relpath = ?1 OR (local_relpath > ?1 || '/' AND local_relpath < ?1 || '0'))"
constexpr const char* partQuery = HSVN_QUERY_OF("WHERE " HSVN_BELOW, HSVN_BELOW);

/// None when it cannot be prepared.
SQLiteStatement statementFor(sqlite3* database, const char* query, const std::string& relativePath)
{
    auto statement = prepareStatement(database, query);
    if (statement) {
        sqlite3_bind_text(statement.get(), 1, relativePath.data(), static_cast<int>(relativePath.size()),
                          SQLITE_STATIC);
    }
    return statement;
}

std::optional<std::vector<std::string>> candidates(sqlite3* database, const std::string& relativePath)
{
    const auto plain = statementFor(database, plainQuery, relativePath);
    if (!plain || sqlite3_step(plain.get()) != SQLITE_ROW || sqlite3_column_int(plain.get(), 0) == 0) {
        return std::nullopt;
    }
    const auto rows = statementFor(database, relativePath.empty() ? wholeQuery : partQuery, relativePath);
    std::vector<std::string> found;
    int result = rows ? SQLITE_OK : SQLITE_ERROR;
    while (rows && (result = sqlite3_step(rows.get())) == SQLITE_ROW) {
        found.emplace_back(textInColumn(rows.get(), 0));
    }
    return result == SQLITE_DONE ? std::optional{std::move(found)} : std::nullopt;
}

} // namespace

std::optional<std::vector<std::string>> itemsThatMayHaveExternals(const char* path, apr_pool_t* pool)
{
    const std::string_view item = path;
    const std::string root = workingCopyRoot(item, pool);
    const std::string file = databaseOf(root, pool);
    auto database = root.empty() ? nullptr : openDatabase(file);
    if (!database) {
        return std::nullopt;
    }
    const auto below = item.size() > root.size() ? item.substr(root.size() + 1) : std::string_view{};
    auto found = candidates(database.get(), std::string{below});
    leaveDatabase(std::move(database), file, pool);
    if (found) {
        for (auto& candidate : *found) {
            candidate = candidate.empty() ? root : root + '/' + candidate;
        }
    }
    return found;
}

} // namespace HSVNAdapter

#endif
