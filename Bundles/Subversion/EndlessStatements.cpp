#include "EndlessStatements.h"

#if defined(HSVN_FAST_STATUS) || defined(HSVN_GUARDS_DATABASES)

#include <algorithm>
#include <array>
#include <cstdint>
#include <sqlite3.h>
#include <sys/stat.h>

namespace HSVNAdapter {
namespace {

/// So many steps are taken between two looks at how many there were.
constexpr int stepsPerLook = 1'000'000;
/// In a database of any size: about a second's worth.
constexpr std::uint64_t fewestSteps = 30'000'000;
/// A row has some hundred bytes, and takes some hundred steps.
constexpr std::uint64_t stepsPerByte = 300;
/// SQLite's own counter begins anew above.
constexpr std::uint64_t mostCounted = UINT32_MAX - 2ULL * stepsPerLook;

/// Looks since a statement of this thread came to its end: SQLite counts what a statement did when it hands over a row.
thread_local std::uint64_t looks = 0; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)
/// A file as it was at a time.
using FileVersion = std::array<std::int64_t, 4>;
/// This thread's last database that had an endless statement: others of it end at once.
thread_local FileVersion endless{}; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

/// Null attributes when it is not there any more.
struct stat attributesOf(sqlite3* database)
{
    struct stat attributes
    {
    };
    const char* const file = sqlite3_db_filename(database, "main");
    const bool isThere = file != nullptr && ::stat(file, &attributes) == 0;
    return isThere ? attributes : decltype(attributes){};
}

FileVersion versionOf(const struct stat& attributes)
{
    return {static_cast<std::int64_t>(attributes.st_dev), static_cast<std::int64_t>(attributes.st_ino),
            attributes.st_mtim.tv_sec, attributes.st_mtim.tv_nsec};
}

std::uint64_t stepsOf(sqlite3_stmt* statement)
{
    return static_cast<std::uint32_t>(sqlite3_stmt_status(statement, SQLITE_STMTSTATUS_VM_STEP, 0));
}

bool isAnyEndless(sqlite3* database, std::uint64_t most)
{
    bool isAny = ++looks * stepsPerLook > most;
    for (auto* each = sqlite3_next_stmt(database, nullptr); each != nullptr && !isAny;
         each = sqlite3_next_stmt(database, each))
    {
        isAny = sqlite3_stmt_busy(each) != 0 && stepsOf(each) > std::min(most, mostCounted);
    }
    return isAny;
}

int look(void* connection)
{
    const auto attributes = attributesOf(static_cast<sqlite3*>(connection));
    const auto version = versionOf(attributes);
    const std::uint64_t most = std::max(fewestSteps, stepsPerByte * static_cast<std::uint64_t>(attributes.st_size));
    if (version != endless && isAnyEndless(static_cast<sqlite3*>(connection), most)) {
        endless = version;
    }
    return version == endless ? 1 : 0;
}

} // namespace

void endEndlessStatements(sqlite3* database)
{
    looks = 0;
    sqlite3_progress_handler(database, stepsPerLook, look, database);
}

void forgetStepsOf(sqlite3_stmt* statement)
{
    looks = 0;
    if (statement != nullptr) {
        sqlite3_stmt_status(statement, SQLITE_STMTSTATUS_VM_STEP, 1);
    }
}

} // namespace HSVNAdapter

#endif
