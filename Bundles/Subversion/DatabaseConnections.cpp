#include "DatabaseConnections.h"

#if defined(HSVN_FAST_STATUS) || defined(HSVN_GUARDS_DATABASES)

#include "DatabaseFiles.h"
#include "DatabaseSchema.h"
#include "WorkingCopyPlace.h"

#include <memory>
#include <sys/stat.h>
#include <utility>

namespace HSVNAdapter {
namespace {

/// The format whose tables the statements of this bundle are written for.
constexpr int knownFormat = HSVN_LINE_MINOR == 7 ? 29 : 31;
/// A writer that holds the database longer than this sends the question the slow way, where Subversion waits itself.
constexpr int busyMilliseconds = 500;

constexpr const char* leftDatabaseKey = "HSVNAdapter::LeftDatabase";

struct LeftDatabase
{
    std::string file;
    FileIdentity identity;
    SQLiteDatabase database;
};

apr_status_t closeLeft(void* left)
{
    const std::unique_ptr<LeftDatabase> owner{static_cast<LeftDatabase*>(left)};
    return APR_SUCCESS;
}

std::unique_ptr<LeftDatabase> takeLeft(apr_pool_t* pool)
{
    void* left = nullptr;
    apr_pool_userdata_get(&left, leftDatabaseKey, pool);
    if (left != nullptr) {
        apr_pool_userdata_setn(nullptr, leftDatabaseKey, nullptr, pool);
        apr_pool_cleanup_kill(pool, left, closeLeft);
    }
    return std::unique_ptr<LeftDatabase>{static_cast<LeftDatabase*>(left)};
}

} // namespace

SQLiteDatabase openDatabase(const std::string& file)
{
    if (leadsElsewhere(file)) {
        return nullptr;
    }
    sqlite3* handle = nullptr;
    const int result = sqlite3_open_v2(file.c_str(), &handle, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, nullptr);
    SQLiteDatabase database{handle};
    if (result != SQLITE_OK) {
        return nullptr;
    }
    sqlite3_busy_timeout(handle, busyMilliseconds);
    const auto format = prepareStatement(handle, "PRAGMA user_version");
    const bool isKnown =
        format && sqlite3_step(format.get()) == SQLITE_ROW && sqlite3_column_int(format.get(), 0) == knownFormat;
    return isKnown && !hasForeignSchema(handle) ? std::move(database) : nullptr;
}

bool isWorthThreads(const std::string& file)
{
    constexpr off_t fewestBytes = 1024 * 1024L;
    struct stat state
    {
    };
    return ::stat(file.c_str(), &state) == 0 && state.st_size >= fewestBytes;
}

void leaveDatabase(SQLiteDatabase database, const std::string& file, apr_pool_t* pool)
{
    takeLeft(pool); // an earlier one is closed
    auto left = std::make_unique<LeftDatabase>(LeftDatabase{file, identityOf(file), std::move(database)});
    apr_pool_userdata_setn(left.release(), leftDatabaseKey, closeLeft, pool);
}

SQLiteDatabase takeDatabase(const std::string& file, apr_pool_t* pool)
{
    const auto left = takeLeft(pool);
    const bool isTheSame = left && left->file == file && left->identity == identityOf(file);
    return isTheSame ? std::move(left->database) : openDatabase(file);
}

} // namespace HSVNAdapter

#endif
