#include "FuzzInput.h"

#include <iterator>
#include <map>
#include <memory>
#include <sqlite3.h>
#include <vector>

namespace {

/// A small working copy, made once, and its database as it was then.
struct WorkingCopy
{
    WorkingCopy()
    {
        const auto& library = FuzzLibrary::shared();
        const auto repository = library.directory() / "repository";
        folder = library.directory() / "wc";
        const auto path = HSVNLocalPath::pathWithString(folder.string());
        HSVNCreateRepository(repository.string(), {}, library.client());
        library.client()->checkout("file://" + repository.string(), folder.string());
        std::filesystem::create_directories(folder / "folder/inner");
        for (const auto* name : {"a", "folder/b", "folder/inner/c", "gone"}) {
            FuzzLibrary::write(folder / name, name);
        }
        const std::string file = folder / "a";
        library.client()->add({(folder / "folder").string(), file, (folder / "gone").string()});
        library.client()->setProperty(file, "colour", "red");
        database = folder / ".svn/wc.db";
        std::ifstream stream{database, std::ios::binary};
        bytes.assign(std::istreambuf_iterator<char>{stream}, {});
        // As they come from a repository.
        alter("UPDATE nodes SET op_depth = 0, repos_id = 1, repos_path = local_relpath, revision = 1,"
              " changed_revision = 1, changed_date = 1, changed_author = 'x'");
        std::ifstream again{database, std::ios::binary};
        bytes.assign(std::istreambuf_iterator<char>{again}, {});
    }

    void restore() const { FuzzLibrary::write(database, bytes); }

    /// Statements that fail leave the database as it is.
    void alter(const std::string& statement, const std::string& value = {}) const
    {
        sqlite3* opened = nullptr;
        sqlite3_stmt* prepared = nullptr;
        if (sqlite3_open_v2(database.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK &&
            sqlite3_prepare_v2(opened, statement.c_str(), -1, &prepared, nullptr) == SQLITE_OK)
        {
            sqlite3_bind_text(prepared, 1, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
            sqlite3_step(prepared);
        }
        sqlite3_finalize(prepared);
        sqlite3_close(opened);
    }

    std::filesystem::path folder;
    std::filesystem::path database;
    std::string bytes;
};

/// What may stand in a column in which Subversion itself ends the process for anything else.
std::vector<std::string> wordsOf(const std::string& column)
{
    static const std::map<std::string, std::vector<std::string>> words{
        {"presence", {"normal", "incomplete", "not-present", "excluded", "server-excluded", "base-deleted"}},
        {"kind", {"file", "dir", "symlink", "unknown"}},
        {"depth", {"infinity", "immediates", "files", "empty", "unknown"}}};
    const auto found = words.find(column);
    return found == words.end() ? std::vector<std::string>{} : found->second;
}

/// A relative path as Subversion writes them; for any other it ends the process or walks up and down for ever.
std::string canonicalPath(std::string_view text)
{
    std::string path;
    while (!text.empty()) {
        const auto length = std::min(text.find('/'), text.size());
        const auto name = text.substr(0, std::min(length, text.find('\0')));
        if (!name.empty() && name != "." && name != "..") {
            path.append(path.empty() ? "" : "/").append(name);
        }
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return path;
}

/// Puts a value of the input's into a column, of one row or of all.
void alterColumn(const WorkingCopy& workingCopy, FuzzInput& input)
{
    static const std::vector<std::pair<std::string, std::vector<std::string>>> tables{
        {"nodes", {"local_relpath",    "parent_relpath", "op_depth",        "presence", "file_external", "revision",
                   "changed_revision", "last_mod_time",  "translated_size", "checksum", "repos_path",    "repos_id",
                   "changed_date",     "changed_author", "properties",      "depth",    "kind",          "moved_to",
                   "moved_here",       "symlink_target"}},
        {"actual_node", {"local_relpath", "parent_relpath", "properties", "conflict_data", "changelist"}},
        {"pristine", {"checksum", "md5_checksum", "size", "refcount"}},
        {"repository", {"root", "uuid"}},
        {"wcroot", {"local_abspath", "id"}},
        {"wc_lock", {"local_dir_relpath", "locked_levels"}},
        {"lock", {"repos_relpath", "lock_token", "lock_owner", "lock_comment", "lock_date"}}};
    const auto& [table, columns] = tables[input.byte() % tables.size()];
    const auto& column = columns[input.byte() % columns.size()];
    const auto choice = input.byte();
    const auto row = input.byte();
    std::string value = input.line();
    if (column.ends_with("path")) {
        value = canonicalPath(value);
    }
    if (const auto words = wordsOf(column); !words.empty()) {
        value = words[value.size() % words.size()];
    }
    const std::string kind = choice & 1U ? "CAST(?1 AS INTEGER)" : choice & 2U ? "CAST(?1 AS BLOB)" : "?1";
    static const std::vector<std::string> items{"folder", "a", "folder/b", "folder/inner", "folder/inner/c", "gone"};
    std::string place = " WHERE 1";
    if (table == "nodes") {
        // Subversion itself never comes to an end with a root that is scheduled.
        place = row % 7 == 0 ? " WHERE local_relpath <> ''" : " WHERE local_relpath = '" + items[row % 7 - 1U] + "'";
    }
    workingCopy.alter("INSERT INTO actual_node (wc_id, local_relpath, parent_relpath) VALUES (1, 'a', '')");
    workingCopy.alter("UPDATE " + table + " SET " + column + " = " + kind + place, value);
}

void alterBytes(const WorkingCopy& workingCopy, FuzzInput& input)
{
    std::string bytes = workingCopy.bytes;
    while (!input.isEmpty()) {
        const std::size_t place =
            (std::size_t{input.byte()} << 16U | std::size_t{input.byte()} << 8U | input.byte()) % bytes.size();
        bytes[place] = static_cast<char>(input.byte());
    }
    FuzzLibrary::write(workingCopy.database, bytes);
}

} // namespace

// A working copy's database, its bytes or the values of its columns changed; read by both status scans and by the check
// of the format.
HSVN_FUZZ_TARGET
{
    static const WorkingCopy workingCopy;
    FuzzInput input{data, size};
    workingCopy.restore();
    if (input.byte() % 8 == 0) {
        alterBytes(workingCopy, input);
    } else {
        while (!input.isEmpty()) {
            alterColumn(workingCopy, input);
        }
    }
    const auto client = std::make_shared<HSVNClient>(HSVNBundleLoader::sharedInstance().newestBundle(), nullptr);
    const auto path = HSVNLocalPath::pathWithString(workingCopy.folder.string());
    const auto options = HSVNStatusOptions::defaults();
    options->setIncludeNormalFiles(true);
    options->setPropagateStatusToAncestor(true);
    passes([&] { HSVNDirectory::statusForNodesInDirectoryAtPath(path, options, client); });
    passes([&] { HSVNDirectory::formatVersionForWorkingCopyAtPath(path); });
    passes([&] { client->status(path, {.getAll = true}); });
    return 0;
}
