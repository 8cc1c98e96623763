#include "Command.h"
#include "EveryKindOfItem.h"
#include "LoadedBundle.h"
#include "OpenedFile.h"

#include <algorithm>
#include <dlfcn.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <tuple>

// The installed bundle answers status records from the newest interface. They must be the ones that the older function
// of the same Subversion answers, in every field and for every kind of item, but for the two fields that it never sets.

namespace {

namespace fs = std::filesystem;
using StatusFunction = decltype(HSVNBundleEntryPoints::client_status2);

std::string text(const char* value) { return value == nullptr ? "-" : "'" + std::string{value} + "'"; }

template <class Number>
requires std::is_arithmetic_v<Number> || std::is_enum_v<Number> std::string text(Number value)
{
    return std::to_string(static_cast<long long>(value));
}

std::string text(const svn_opt_revision_t& revision)
{
    return text(revision.kind) + ":" + (revision.kind == svn_opt_revision_number ? text(revision.value.number) : "");
}

std::string text(const svn_lock_t* lock)
{
    return lock == nullptr ? "-" : text(lock->token) + text(lock->owner) + text(lock->comment) + text(lock->path);
}

std::string text(const svn_wc_conflict_description_t* conflict)
{
    return conflict == nullptr ? "-"
                               : text(conflict->path) + text(conflict->kind) + text(conflict->node_kind) +
                                     text(conflict->action) + text(conflict->reason) + text(conflict->operation);
}

std::string text(const svn_wc_entry_t* entry)
{
    if (entry == nullptr) {
        return "-";
    }
    std::string result = "{";
    const auto add = [&](auto... values) { ((result += text(values) + " "), ...); };
    add(entry->name, entry->revision, entry->url, entry->repos, entry->uuid, entry->kind, entry->schedule);
    add(entry->copied, entry->deleted, entry->absent, entry->incomplete, entry->copyfrom_url, entry->copyfrom_rev);
    add(entry->conflict_old, entry->conflict_new, entry->conflict_wrk, entry->prejfile);
    add(entry->text_time, entry->prop_time, entry->checksum, entry->cmt_rev, entry->cmt_date, entry->cmt_author);
    add(entry->lock_token, entry->lock_owner, entry->lock_comment, entry->lock_creation_date);
    add(entry->has_props, entry->has_prop_mods, entry->cachable_props, entry->present_props, entry->changelist);
    add(entry->working_size, entry->keep_local, entry->depth, entry->tree_conflict_data, entry->file_external_path);
    add(entry->file_external_peg_rev, entry->file_external_rev);
    return result + "}";
}

std::string text(const svn_wc_status2_t& status)
{
    std::string result;
    const auto add = [&](auto... values) { ((result += text(values) + " "), ...); };
    add(status.text_status, status.prop_status, status.copied, status.repos_text_status, status.repos_prop_status);
    add(static_cast<const svn_lock_t*>(status.repos_lock), status.url, status.ood_last_cmt_rev,
        status.ood_last_cmt_date, status.ood_kind, status.ood_last_cmt_author);
    add(static_cast<const svn_wc_conflict_description_t*>(status.tree_conflict), status.pristine_text_status,
        status.pristine_prop_status, status.entry);
    return result;
}

struct Reported
{
    std::vector<std::string> records;
    std::vector<std::string> locked;
    std::vector<std::string> fileExternals;
};

void receive(void* baton, const char* path, svn_wc_status2_t* status)
{
    auto* reported = static_cast<Reported*>(baton);
    reported->records.push_back(std::string{path} + (status->switched != FALSE ? " switched " : " ") + text(*status));
    if (status->locked != FALSE) {
        reported->locked.emplace_back(path);
    }
    if (status->file_external != FALSE) {
        reported->fileExternals.emplace_back(path);
    }
}

class StatusRecords : public testing::Test
{
  protected:
    static void SetUpTestSuite() { suite = std::make_unique<EveryKindOfItem>(); }
    static void TearDownTestSuite() { suite.reset(); }

    void SetUp() override { suite->make(); }

    static std::string wc() { return suite->workingCopy(); }
    static std::string item(const std::string& name) { return suite->item(name); }

    Reported report(StatusFunction function, const std::string& path, bool recurse, bool getAll, bool update) const
    {
        Reported reported;
        svn_revnum_t revision = -1;
        bundle.succeeds(function(&revision, path.c_str(), LoadedBundle::revision(svn_opt_revision_head), receive,
                                 &reported, recurse, getAll, update, TRUE, FALSE, bundle.ctx(), bundle.pool()));
        std::sort(reported.records.begin(), reported.records.end()); // with the repository the order is a hash's
        return reported;
    }

    /// What the older function answers, but that it takes a file external for a switched item.
    Reported reportByOlderFunction(const std::string& path, bool recurse, bool getAll, bool update) const
    {
        auto reported = report(olderFunction, path, recurse, getAll, update);
        for (const auto& fileExternal : {item("externals/extfile"), item("externals/pinned")}) {
            for (auto& record : reported.records) {
                if (const auto switched = fileExternal + " switched "; record.starts_with(switched)) {
                    record.replace(0, switched.size(), fileExternal + " ");
                }
            }
        }
        return reported;
    }

    template <class Function>
    std::map<std::string, std::string> externals(Function function, const std::string& path) const
    {
        apr_hash_t* values = nullptr;
        bundle.succeeds(function(&values, "svn:externals", path.c_str(),
                                 LoadedBundle::revision(svn_opt_revision_unspecified),
                                 LoadedBundle::revision(svn_opt_revision_working), TRUE, bundle.ctx(), bundle.pool()));
        std::map<std::string, std::string> found;
        for (auto* index = bundle->apr_hash_first(bundle.pool(), values); index; index = bundle->apr_hash_next(index)) {
            const void* item = nullptr;
            void* value = nullptr;
            bundle->apr_hash_this(index, &item, nullptr, &value);
            found[static_cast<const char*>(item)] = static_cast<const svn_string_t*>(value)->data;
        }
        return found;
    }

    template <class Function>
    static Function installed(const char* name)
    {
        return reinterpret_cast<Function>(dlsym(dlopen("libsvn_client-1.so.1", RTLD_NOW | RTLD_LOCAL), name));
    }
    static std::string installedBundle()
    {
        const auto minor = std::to_string(installed<const svn_version_t* (*)()>("svn_client_version")()->minor);
        return HSVN_BUILD_PACKAGE "/Subversion/Subversion-1." + minor + ".bundle";
    }

    /// Drops what depths leave out of the working copy, and the folders that lack it: the older function tells of it as
    /// new in the repository, the table's as svn does.
    static void dropWhatDepthsLeaveOut(Reported& reported)
    {
        std::erase_if(reported.records, [](const std::string& record) {
            return record.starts_with(item("sparse")) || record.starts_with(item("deletedsparse")) ||
                   record.starts_with(item("dir ")) || record.starts_with(item("dir/copied "));
        });
    }

    inline static std::unique_ptr<EveryKindOfItem> suite;
    LoadedBundle bundle{installedBundle()};
    StatusFunction olderFunction = installed<StatusFunction>("svn_client_status2");
};

TEST_F(StatusRecords, EqualThoseOfTheOlderFunctionForEveryKindOfItem)
{
    for (const auto& [recurse, getAll, update] : std::vector<std::tuple<bool, bool, bool>>{{true, true, false},
                                                                                           {true, false, false},
                                                                                           {true, true, true},
                                                                                           {true, false, true},
                                                                                           {false, true, false},
                                                                                           {false, false, true}})
    {
        SCOPED_TRACE(testing::Message() << "recurse " << recurse << ", all " << getAll << ", update " << update);
        auto expected = reportByOlderFunction(wc(), recurse, getAll, update);
        auto actual = report(bundle->client_status2, wc(), recurse, getAll, update);
        if (recurse && update) {
            dropWhatDepthsLeaveOut(expected);
            dropWhatDepthsLeaveOut(actual);
        }
        EXPECT_GT(expected.records.size(), 10U);
        ASSERT_EQ(actual.records.size(), expected.records.size());
        for (std::size_t index = 0; index < expected.records.size(); ++index) {
            EXPECT_EQ(actual.records[index], expected.records[index]);
        }
    }
}

TEST_F(StatusRecords, EqualThoseOfTheOlderFunctionForEverySingleItem)
{
    for (const auto& entry : fs::directory_iterator{wc()}) {
        const auto path = entry.path().string();
        if (!path.ends_with(".svn")) {
            EXPECT_EQ(report(bundle->client_status2, path, false, true, false).records,
                      reportByOlderFunction(path, false, true, false).records);
        }
    }
}

TEST_F(StatusRecords, OpenTheDatabaseAsOftenForManyUnusualItemsAsForNone)
{
    const auto timesOpened = [this](const std::string& root) {
        const OpenedFile database{root + "/.svn/wc.db"};
        report(bundle->client_status2, root, true, true, false);
        return database.times();
    };
    const int onceOpened = timesOpened(suite->checkOut("plainwc"));
    EXPECT_GE(onceOpened, 2);
    EXPECT_LE(timesOpened(wc()), onceOpened + 1);
}

TEST_F(StatusRecords, GoWithTheExternalsThatTheOlderFunctionFinds)
{
    using PropertyFunction = decltype(HSVNBundleEntryPoints::client_propget2);
    const auto older = installed<PropertyFunction>("svn_client_propget2");
    for (const char* folder : {"", "/externals", "/added", "/copyofexternals", "/lostexternals", "/propdir"}) {
        EXPECT_EQ(externals(bundle->client_propget2, wc() + folder), externals(older, wc() + folder)) << folder;
    }
    EXPECT_EQ(externals(bundle->client_propget2, wc()).size(), 4U);
}

TEST_F(StatusRecords, KnowFileExternalsAndAdministrativeLocks)
{
    mustRun({"sqlite3", item(".svn/wc.db"), "INSERT INTO wc_lock VALUES (1, 'dir', 0)"});
    const auto reported = report(bundle->client_status2, wc(), true, true, false);
    mustRun({"sqlite3", item(".svn/wc.db"), "DELETE FROM wc_lock"});
    EXPECT_EQ(reported.locked, (std::vector<std::string>{item("dir")}));
    EXPECT_EQ(reported.fileExternals, (std::vector<std::string>{item("externals/extfile"), item("externals/pinned")}));
}

TEST_F(StatusRecords, AreMadeThoughTheRowsOfADatabaseDoNotFitTogether)
{
    const std::string path = suite->checkOut("damagedwc");
    mustRun({"sqlite3", path + "/.svn/wc.db",
             "UPDATE nodes SET parent_relpath = 'dir/nowhere/deep' WHERE local_relpath = 'normal'"});
    EXPECT_GT(report(bundle->client_status2, path, true, true, false).records.size(), 10U);
}

TEST_F(StatusRecords, AreOfTheWorkingCopyThatLiesThereNow)
{
    const std::string path = suite->checkOut("replacedwc");
    apr_hash_t* values = nullptr;
    bundle.succeeds(bundle->client_propget2(
        &values, "svn:externals", path.c_str(), LoadedBundle::revision(svn_opt_revision_unspecified),
        LoadedBundle::revision(svn_opt_revision_working), TRUE, bundle.ctx(), bundle.pool()));
    fs::remove_all(path);
    suite->checkOut("replacedwc");
    const LoadedBundle fresh{installedBundle()}; // that has not seen the first one
    Reported expected;
    fresh.succeeds(fresh->client_status2(nullptr, path.c_str(), LoadedBundle::revision(svn_opt_revision_unspecified),
                                         receive, &expected, TRUE, TRUE, FALSE, TRUE, FALSE, fresh.ctx(),
                                         fresh.pool()));
    std::sort(expected.records.begin(), expected.records.end());
    EXPECT_EQ(report(bundle->client_status2, path, true, true, false).records, expected.records);
}

/// A working copy whose database is large enough to be read ahead of the walk.
class LargeStatusRecords : public StatusRecords
{
  protected:
    void SetUp() override
    {
        if (fs::exists(large())) {
            return;
        }
        const std::string layout = suite->beside("largelayout");
        // Names whose order differs from that of the paths below them.
        for (const char* folder : {"a", "a-b", "a/c", "a/c d", "a.b/c", "b", "b0/e/f", "b/e", "c"}) {
            // Few items with long paths make it large as well as many do.
            for (int number = 0; number < 16; ++number) {
                const auto name = std::string{folder} + "/part " + std::to_string(number % 4) + longName + "/" +
                                  longName + "/" + longName + std::to_string(number);
                writeFile(layout + "/" + name, std::to_string(number % 7));
            }
        }
        for (int number = 0; number < longFolderFiles; ++number) {
            writeFile(inLongFolder(layout, number), "");
        }
        mustRun({"svnadmin", "create", suite->beside("largerepository")});
        const std::string url = "file://" + suite->beside("largerepository");
        EveryKindOfItem::svn({"import", layout, url, "-m", "layout"});
        EveryKindOfItem::svn({"checkout", url, large()});
        ASSERT_GT(fs::file_size(large() + "/.svn/wc.db"), 1024U * 1024U);
        writeFile(large() + "/a/c/part 3" + longName + "/" + longName + "/" + longName + "7", "changed");
        for (int number = 0; number < unversionedFiles; ++number) {
            writeFile(large() + "/c/unversioned " + std::to_string(number), "");
        }
        EveryKindOfItem::svn({"remove", large() + "/b/e"});
        // Around where a reader that takes the long folder in portions may end one.
        for (const int number : {510, 511, 512, 513, 1023, 1024, 1026, longFolderFiles - 1}) {
            EveryKindOfItem::svn({"remove", "--keep-local", inLongFolder(large(), number)});
            if (number % 2 == 0) {
                EveryKindOfItem::svn({"add", inLongFolder(large(), number)});
            }
        }
        EveryKindOfItem::svn({"copy", large() + "/a/c d", large() + "/a/copied"});
    }

    /// @return what was reported until it stopped
    Reported reportUntilCancelled(const std::string& path, std::size_t records) const
    {
        struct Limited : Reported
        {
            std::size_t limit;
        } reported{{}, records};
        bundle.ctx()->cancel_baton = &reported;
        bundle.ctx()->cancel_func = [](void* baton) -> svn_error_t* {
            static const LoadedBundle other{installedBundle()};
            const auto* soFar = static_cast<const Limited*>(baton);
            return soFar->records.size() < soFar->limit ? nullptr
                                                        : other->error_create(SVN_ERR_CANCELLED, nullptr, "stop");
        };
        EXPECT_EQ(bundle.codes(bundle->client_status2(
                      nullptr, path.c_str(), LoadedBundle::revision(svn_opt_revision_unspecified), receive,
                      static_cast<Reported*>(&reported), TRUE, TRUE, FALSE, FALSE, FALSE, bundle.ctx(), bundle.pool())),
                  std::vector<int>{SVN_ERR_CANCELLED});
        return reported;
    }

    static std::string inLongFolder(const std::string& root, int number)
    {
        return root + "/d/" + std::to_string(10000 + number);
    }

    static constexpr int unversionedFiles = 700;
    static constexpr int longFolderFiles = 1100;
    inline static const std::string longName = std::string(230, 'n') + " ";
    static std::string large() { return suite->beside("largewc"); }
};

TEST_F(LargeStatusRecords, EqualThoseOfTheOlderFunction)
{
    for (const char* folder : {"", "/a", "/c", "/d"}) {
        SCOPED_TRACE(folder);
        const auto expected = reportByOlderFunction(large() + folder, true, true, false).records;
        EXPECT_GE(expected.size(), 24U);
        EXPECT_EQ(report(bundle->client_status2, large() + folder, true, true, false).records, expected);
    }
}

TEST_F(LargeStatusRecords, StopWhenTheWalkIsCancelled)
{
    EXPECT_LT(reportUntilCancelled(large(), 3).records.size(), 24U);
}

TEST_F(LargeStatusRecords, StopWithinAFolderOfManyItems)
{
    EXPECT_LT(reportUntilCancelled(large() + "/c", 100).records.size(), unversionedFiles);
}

} // namespace
