#include "StandIns.h"

#ifdef HSVN_GUARDS_DATABASES

#include "DatabaseFiles.h"
#include "DatabaseSchema.h"
#include "DatabaseSkels.h"
#include "EndlessStatements.h"
#include "RelativePaths.h"
#include "SQLiteHandles.h"
#include "ThreadsOwn.h"

#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

// A working copy may come from anyone. Words that Subversion does not know in its database end the process, and so do
// paths that are not canonical and lists that lack a part; paths that lead upwards are walked for ever, or what is
// there is removed. Each value is looked at where it is read, since a look at all of them beforehand would cost more
// than many an operation. Who reads cannot be told of a failure there: Subversion gets a harmless value, and the end of
// the thread's statement fails.

/// Words and the numbers that stand for them; the last word is null. Subversion's own, but in no header of the
/// installed.
struct svn_token_map_t // NOLINT(readability-identifier-naming)
{
    const char* str;
    int val;
};

struct svn_skel_t; // NOLINT(readability-identifier-naming)

extern "C" int svn_token__from_word_strict(const svn_token_map_t* map, const char* word);
extern "C" svn_skel_t* svn_skel__parse(const char* data, apr_size_t length, apr_pool_t* pool);

namespace {

/// Whether this thread has read a malformed value for which nothing has failed yet.
HSVN_THREADS_OWN bool hasReadMalformed = false; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)
/// Why this thread's last call failed, when it is for one of the reasons here, until it is asked for.
HSVN_THREADS_OWN const char* failure = nullptr; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

int failedIf(bool hasFailed, int otherwise, const char* reason = "The working copy's database holds a malformed item")
{
    failure = hasFailed ? reason : nullptr;
    return hasFailed ? SQLITE_CORRUPT : otherwise;
}

std::string_view nameOf(sqlite3_stmt* statement, int column)
{
    const char* const name = sqlite3_column_name(statement, column);
    return name == nullptr ? std::string_view{} : name;
}

/// The folder of the last path in one column in two, with a slash after it: most items are in that of the one before.
struct LastFolder
{
    std::array<char, 120> text;
    std::size_t size;
};
HSVN_THREADS_OWN std::array<LastFolder, 2> lastFolders{}; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

/// Whether a text may be no relative path.
bool isSuspect(const char* text, int column)
{
    auto& last = lastFolders[static_cast<unsigned>(column) % lastFolders.size()];
    const bool isThere = *text == last.text[0] && std::strncmp(text, last.text.data(), last.size) == 0;
    const char* name = text + (isThere ? last.size : 0);
    while (*name != '.' && *name != '/' && (*name != '\0' || name == text)) {
        if (const char* const slash = std::strchr(name, '/')) {
            name = slash + 1;
            continue;
        }
        const auto size = static_cast<std::size_t>(name - text);
        if (size > 0 && size < last.text.size() && (size != last.size || !isThere)) {
            std::memcpy(last.text.data(), text, size);
            last.size = size;
        }
        return false;
    }
    return true;
}

/// Whether a text that is no relative path is in a column of paths.
bool isMalformedPath(sqlite3_stmt* statement, int column, const char* text)
{
    // Few are, so that few columns are asked for their names.
    const bool isCut = *text == '\0' && sqlite3_column_bytes(statement, column) > 0; // taken for that of the root
    if (!isCut && (!isSuspect(text, column) || HSVNAdapter::isRelativePath(text))) {
        return false;
    }
    const auto name = nameOf(statement, column);
    return name.ends_with("relpath") || name == "repos_path" || name == "moved_to" || name == "prop_reject" ||
           name == "conflict_old" || name == "conflict_new" || name == "conflict_working";
}

bool isNull(sqlite3_stmt* statement, int column) { return sqlite3_column_type(statement, column) == SQLITE_NULL; }

/// Whether a row tells of an item's repository and not of its path there, or the reverse: Subversion goes on to the one
/// from the other. Less than nothing stands for none there.
bool lacksRepository(sqlite3_stmt* statement, int column, bool isPathNull)
{
    constexpr int last = 2; // where the statements that read items have the path
    if (column == 0 || column > last) {
        return false;
    }
    const bool isNone = isNull(statement, column - 1) || sqlite3_column_int64(statement, column - 1) < 0;
    return isNone != isPathNull && nameOf(statement, column) == "repos_path" &&
           nameOf(statement, column - 1) == "repos_id";
}

/// Whether a row tells of a file that came from a repository and not of its text, which Subversion goes on from.
bool lacksText(sqlite3_stmt* statement, int column)
{
    constexpr int kind = 2; // so many columns before the text's checksum in the statements that read items
    constexpr int presence = 3;
    constexpr int repositoryPath = 4;
    return column >= repositoryPath && nameOf(statement, column) == "checksum" &&
           nameOf(statement, column - repositoryPath) == "repos_path" &&
           HSVNAdapter::textInColumn(statement, column - kind) == "file" &&
           HSVNAdapter::textInColumn(statement, column - presence) == "normal" &&
           !isNull(statement, column - repositoryPath);
}

/// The root of the working copy whose database a statement is of.
std::string rootOf(sqlite3_stmt* statement)
{
    const char* const file = sqlite3_db_filename(sqlite3_db_handle(statement), "main");
    std::string_view root{file == nullptr ? "" : file};
    for (int above = 0; above < 2; ++above) { // by hand: asked for each piece of work
        const auto slash = root.rfind('/');
        root = root.substr(0, slash == std::string_view::npos ? 0 : slash);
    }
    return std::string{root};
}

bool isMalformedSkeleton(sqlite3_stmt* statement, int column, const void* blob)
{
    const auto name = nameOf(statement, column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
    const std::string_view skeleton{static_cast<const char*>(blob), blob == nullptr ? 0 : size};
    return (name == "conflict_data" && !HSVNAdapter::isConflict(skeleton)) ||
           (name == "work" && !HSVNAdapter::isPieceOfWork(skeleton, rootOf(statement)));
}

/// What Subversion goes on from without reading the rows that would tell: the root of the working copy has nothing
/// above it, and is no item in itself. Changed properties that are not even empty it takes for there.
constexpr std::array<const char*, 3> malformedItems{
    "SELECT 1 FROM nodes WHERE wc_id IN (SELECT id FROM wcroot) AND local_relpath = ''"
    " AND (op_depth <> 0 OR parent_relpath IS NOT NULL)",
    "SELECT 1 FROM externals WHERE wc_id IN (SELECT id FROM wcroot) AND local_relpath = ''",
    "SELECT 1 FROM actual_node WHERE length(properties) = 0"};

bool isMalformed(sqlite3* database)
{
    if (HSVNAdapter::hasForeignSchema(database)) { // before anything is asked of its tables
        return true;
    }
    for (const auto* text : malformedItems) {
        const auto rows = HSVNAdapter::prepareStatement(database, text);
        const int result = rows ? sqlite3_step(rows.get()) : SQLITE_DONE;
        if (result == SQLITE_ROW || result == SQLITE_INTERRUPT) { // as by an endless table
            return true;
        }
    }
    const auto roots = HSVNAdapter::prepareStatement(database, "SELECT root FROM repository");
    while (roots && sqlite3_step(roots.get()) == SQLITE_ROW) {
        if (!HSVNAdapter::isRepositoryRoot(HSVNAdapter::textInColumn(roots.get(), 0))) {
            return true;
        }
    }
    return false;
}

} // namespace

HSVN_STAND_IN(int, svn_token__from_word_strict)(const svn_token_map_t* map, const char* word)
{
    constexpr const char* unused = "symlink"; // it knows the word, writes it nowhere, and ends where it reads it
    const auto* known = map;
    while (known->str != nullptr && (word == nullptr || std::strcmp(known->str, word) != 0)) {
        ++known;
    }
    if (known->str != nullptr && std::strcmp(known->str, unused) != 0) {
        return known->val;
    }
    hasReadMalformed = true;
    return map->val;
}

HSVN_STAND_IN(const unsigned char*, sqlite3_column_text)(sqlite3_stmt* statement, int column)
{
    const auto* const text = HSVN_BEHIND(sqlite3_column_text)(statement, column);
    const bool isMalformed = text != nullptr && isMalformedPath(statement, column, reinterpret_cast<const char*>(text));
    const char* harmless = "malformed";
    if (text == nullptr && lacksText(statement, column)) {
        harmless = "$sha1$da39a3ee5e6b4b0d3255bfef95601890afd80709"; // no bytes
    } else if (!isMalformed && !lacksRepository(statement, column, text == nullptr)) {
        return text;
    }
    hasReadMalformed = true;
    return reinterpret_cast<const unsigned char*>(harmless);
}

HSVN_STAND_IN(const void*, sqlite3_column_blob)(sqlite3_stmt* statement, int column)
{
    const void* const blob = HSVN_BEHIND(sqlite3_column_blob)(statement, column);
    if ((blob != nullptr || !isNull(statement, column)) && isMalformedSkeleton(statement, column, blob)) {
        hasReadMalformed = true;
    }
    return blob;
}

// None at all is what any malformed one answers.
HSVN_STAND_IN(svn_skel_t*, svn_skel__parse)(const char* data, apr_size_t length, apr_pool_t* pool)
{
    return hasReadMalformed || HSVNAdapter::isNestedTooDeeply({data, length})
               ? nullptr
               : HSVN_BEHIND(svn_skel__parse)(data, length, pool);
}

HSVN_STAND_IN(int, sqlite3_column_int)(sqlite3_stmt* statement, int column)
{
    const int number = HSVN_BEHIND(sqlite3_column_int)(statement, column);
    constexpr int notification = 2; // where a revert reads what it tells of an item
    if (number == 0 && column == notification && nameOf(statement, column) == "notify") {
        return 1; // with nothing to tell of one it comes to no other
    }
    const bool isSound = number > 0 || (number == 0 && sqlite3_column_type(statement, column) == SQLITE_INTEGER);
    if (isSound || nameOf(statement, column) != "op_depth") {
        return number;
    }
    hasReadMalformed = true;
    return 0;
}

HSVN_STAND_IN(int, sqlite3_reset)(sqlite3_stmt* statement)
{
    const int result = HSVN_BEHIND(sqlite3_reset)(statement);
    HSVNAdapter::forgetStepsOf(statement);
    return failedIf(std::exchange(hasReadMalformed, false) || result == SQLITE_INTERRUPT, result);
}

HSVN_STAND_IN(int, sqlite3_open_v2)(const char* file, sqlite3** database, int flags, const char* system)
{
    const bool isWorkingCopys = std::string_view{file}.ends_with("/wc.db");
    const bool isSubversions = // the bundle's own only read, after they have looked themselves
        isWorkingCopys && (static_cast<unsigned>(flags) & SQLITE_OPEN_READWRITE) != 0;
    if (isSubversions && HSVNAdapter::leadsElsewhere(file)) {
        *database = nullptr;
        return failedIf(true, SQLITE_OK, "What lies in the working copy's administrative area leads out of it");
    }
    const int result = HSVN_BEHIND(sqlite3_open_v2)(file, database, flags, system);
    if (isWorkingCopys && result == SQLITE_OK) {
        HSVNAdapter::endEndlessStatements(*database);
    }
    return failedIf(result == SQLITE_OK && isSubversions && isMalformed(*database), result);
}

HSVN_STAND_IN(const char*, sqlite3_errmsg)(sqlite3* database)
{
    const char* const reason = std::exchange(failure, nullptr);
    return reason != nullptr ? reason : HSVN_BEHIND(sqlite3_errmsg)(database);
}

#endif
