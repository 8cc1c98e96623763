#include "LoadedBundle.h"
#include "TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

// The bundles without the library: what each line's table does for the operations, on real repositories and working
// copies that the line made itself.

namespace {

namespace fs = std::filesystem;
using Codes = std::vector<int>;

const svn_opt_revision_t* unspecified() { return LoadedBundle::revision(svn_opt_revision_unspecified); }

svn_error_t* receiveInfo(void* baton, const char* path, const svn_info_t*, apr_pool_t*)
{
    static_cast<std::vector<std::string>*>(baton)->emplace_back(path);
    return nullptr;
}

void receiveStatus(void* baton, const char* path, svn_wc_status2_t*)
{
    static_cast<std::vector<std::string>*>(baton)->emplace_back(path);
}

/// A repository with "file" and "dir/sub" and a working copy of it, with "unversioned/item" beside them.
class SubversionBundle : public testing::TestWithParam<std::string>
{
  protected:
    void SetUp() override
    {
        bundle.makeRepository(folder / "repository");
        bundle.checkOut(url, wc);
        writeFile(wc + "/file", "one\n");
        writeFile(wc + "/dir/sub", "two\n");
        bundle.add(wc + "/file");
        bundle.add(wc + "/dir");
        ASSERT_EQ(bundle.commit(wc), 1);
        writeFile(wc + "/unversioned/item", "three\n");
        writeFile(folder / "plain/item", "four\n");
    }

    /// The codes of a call in a pool of its own, which takes an old line's working-copy lock with it.
    template <class Call>
    Codes codesOf(Call call)
    {
        auto* pool = bundle->pool_create(bundle.pool(), nullptr);
        auto result = bundle.codes(call(pool));
        bundle->apr_pool_destroy(pool);
        return result;
    }
    Codes info(const std::string& target)
    {
        reported.clear();
        return codesOf([&](apr_pool_t* pool) {
            return bundle->client_info(target.c_str(), unspecified(), unspecified(), receiveInfo, &reported, FALSE,
                                       bundle.ctx(), pool);
        });
    }
    Codes status(const std::string& path)
    {
        reported.clear();
        return codesOf([&](apr_pool_t* pool) {
            return bundle->client_status2(nullptr, path.c_str(), unspecified(), receiveStatus, &reported, FALSE, TRUE,
                                          FALSE, FALSE, FALSE, bundle.ctx(), pool);
        });
    }
    Codes remove(const std::string& target, bool force)
    {
        return codesOf([&](apr_pool_t* pool) {
            return bundle->client_delete2(&commitInfo, bundle.array({target}), force, bundle.ctx(), pool);
        });
    }
    Codes move(const std::string& source, const std::string& destination)
    {
        return codesOf([&](apr_pool_t* pool) {
            return bundle->client_move4(&commitInfo, source.c_str(), destination.c_str(), FALSE, bundle.ctx(), pool);
        });
    }
    Codes copy(const std::string& source, const std::string& destination)
    {
        return codesOf([&](apr_pool_t* pool) {
            return bundle->client_copy3(&commitInfo, source.c_str(), unspecified(), destination.c_str(), bundle.ctx(),
                                        pool);
        });
    }
    Codes lock(const std::vector<std::string>& targets)
    {
        return codesOf([&](apr_pool_t* pool) {
            return bundle->client_lock(bundle.array(targets), "mine", FALSE, bundle.ctx(), pool);
        });
    }
    Codes open(const std::string& path)
    {
        return codesOf([&](apr_pool_t* pool) { return bundle->repos_open(&repository, path.c_str(), pool); });
    }
    Codes add(const std::string& path, bool force)
    {
        return codesOf([&](apr_pool_t* pool) {
            return bundle->client_add3(path.c_str(), TRUE, force, FALSE, bundle.ctx(), pool);
        });
    }
    /// The paths of the items in the working copy that define externals.
    std::vector<std::string> withExternals()
    {
        apr_hash_t* values = nullptr;
        bundle.succeeds(bundle->client_propget2(&values, "svn:externals", wc.c_str(), unspecified(),
                                                LoadedBundle::revision(svn_opt_revision_working), TRUE, bundle.ctx(),
                                                bundle.pool()));
        std::vector<std::string> paths;
        for (auto* index = bundle->apr_hash_first(bundle.pool(), values); index; index = bundle->apr_hash_next(index)) {
            const void* path = nullptr;
            bundle->apr_hash_this(index, &path, nullptr, nullptr);
            paths.emplace_back(static_cast<const char*>(path));
        }
        std::sort(paths.begin(), paths.end());
        return paths;
    }
    void defineExternals(const std::string& path)
    {
        bundle.succeeds(bundle->client_propset2("svn:externals", bundle->string_create("x http://h/x", bundle.pool()),
                                                path.c_str(), FALSE, FALSE, bundle.ctx(), bundle.pool()));
    }
    int format(const std::string& path)
    {
        int result = -1;
        EXPECT_EQ(codesOf([&](apr_pool_t* pool) { return bundle->wc_check_wc(path.c_str(), &result, pool); }), Codes{});
        return result;
    }
    static int outermost(const Codes& codes) { return codes.empty() ? 0 : codes.front(); }

    TemporaryFolder folder;
    LoadedBundle bundle{GetParam()};
    std::string url = "file://" + (folder / "repository");
    std::string wc = folder / "wc";
    std::vector<std::string> reported;
    svn_commit_info_t* commitInfo = nullptr;
    svn_repos_t* repository = nullptr;
};

TEST_P(SubversionBundle, FillsEveryPlaceThatItsLineHas)
{
    const auto* places = reinterpret_cast<void (*const*)()>(&bundle.table());
    std::vector<int> empty;
    for (int place = 0; place <= 90; ++place) {
        if (places[place] == nullptr) {
            empty.push_back(place);
        }
    }
    EXPECT_EQ(empty, (bundle.minor() < 5 ? std::vector<int>{0, 1, 2, 35, 38, 44, 59, 62, 63, 77, 89, 90}
                                         : std::vector<int>{0, 1, 2, 63, 77, 89, 90}));
}

TEST_P(SubversionBundle, TakesEverySpellingOfAPath)
{
    const std::string parent = fs::path{wc}.parent_path();
    const std::string relative = fs::relative(wc).string();
    for (const std::string& spelling :
         {wc + "/file", wc + "/file/", wc + "//file", wc + "/./file", wc + "/dir/../file", parent + "/x/../wc/file//",
          relative + "/file", "./" + relative + "/./file", "/../" + wc + "/file/."})
    {
        SCOPED_TRACE(spelling);
        EXPECT_EQ(info(spelling), Codes{});
        EXPECT_EQ(reported, (std::vector<std::string>{wc + "/file"}));
        EXPECT_EQ(status(spelling), Codes{});
        EXPECT_EQ(reported, (std::vector<std::string>{wc + "/file"}));
    }
}

TEST_P(SubversionBundle, TakesEverySpellingOfAURL)
{
    for (const std::string item : {"a b", "100%", "at@3", "c#?;[x]", "caf\u00e9"}) {
        writeFile(wc + "/" + item, item);
        bundle.add(wc + "/" + item);
    }
    ASSERT_EQ(bundle.commit(wc), 2);
    const std::string path = url.substr(7);
    for (const std::string& spelling :
         {url, url + "/", url + "//", "FILE://" + path, "file://LOCALHOST" + path, url + "/dir/..", url + "/./dir//sub",
          url + "/%64ir", url + "/a b", url + "/a%20b", url + "/100%", url + "/100%25", url + "/at@3", url + "/c#?;[x]",
          url + "/caf\u00e9", url + "/caf%c3%a9", "file:///../" + path})
    {
        SCOPED_TRACE(spelling);
        EXPECT_EQ(info(spelling), Codes{});
        EXPECT_EQ(reported.size(), 1U);
    }
}

TEST_P(SubversionBundle, AnswersAnErrorForWhatIsNoTarget)
{
    for (const std::string target : {"bad\xFFname", "/bad\xC0\x80name", "file:///\xED\xA0\x80", "file:///%ff",
                                     "file:///a%00b", "http://", "http:///x", "svn://ho st/x", "svn://h\x01/x"})
    {
        SCOPED_TRACE(testing::PrintToString(target));
        EXPECT_THAT(outermost(info(target)), testing::AnyOf(SVN_ERR_BAD_FILENAME, SVN_ERR_BAD_URL));
    }
    const auto checkOut = [&](const std::string& from, const std::string& to) {
        return outermost(codesOf([&](apr_pool_t* pool) {
            return bundle->client_checkout2(nullptr, from.c_str(), to.c_str(), unspecified(), unspecified(), TRUE,
                                            FALSE, bundle.ctx(), pool);
        }));
    };
    EXPECT_EQ(checkOut(wc, folder / "other"), SVN_ERR_BAD_URL);
    EXPECT_EQ(checkOut(url, url), SVN_ERR_ILLEGAL_TARGET);
    EXPECT_EQ(outermost(status(url)), SVN_ERR_ILLEGAL_TARGET);
    EXPECT_EQ(outermost(lock({wc + "/file", url + "/file"})), SVN_ERR_ILLEGAL_TARGET);
}

TEST_P(SubversionBundle, AnswersTheCodesThatOperationsTestFor)
{
    const std::string unversioned = wc + "/unversioned";
    const std::string item = unversioned + "/item";
    const std::string plain = folder / "plain";
    const auto entryNotFoundOrNoFolder = testing::AnyOf(SVN_ERR_ENTRY_NOT_FOUND, SVN_ERR_WC_NOT_DIRECTORY);

    EXPECT_EQ(outermost(remove(unversioned, false)), SVN_ERR_WC_NOT_DIRECTORY);
    EXPECT_EQ(outermost(remove(item, true)), SVN_ERR_WC_NOT_DIRECTORY);
    EXPECT_EQ(outermost(remove(plain + "/item", true)), SVN_ERR_WC_NOT_DIRECTORY);
    for (const std::string& destination : {unversioned + "/new", plain + "/new", wc + "/missing/new"}) {
        SCOPED_TRACE(destination);
        EXPECT_THAT(outermost(move(wc + "/file", destination)), entryNotFoundOrNoFolder);
        EXPECT_THAT(outermost(copy(wc + "/file", destination)), entryNotFoundOrNoFolder);
        EXPECT_THAT(outermost(copy(url + "/file", destination)), entryNotFoundOrNoFolder);
    }
    EXPECT_EQ(outermost(copy(wc + "/missing", wc + "/new")), SVN_ERR_NODE_UNKNOWN_KIND);
    EXPECT_EQ(outermost(move(wc + "/file", wc + "/dir/sub")), SVN_ERR_ENTRY_EXISTS);
    EXPECT_EQ(outermost(copy(url + "/file", url + "/dir/sub")), SVN_ERR_FS_ALREADY_EXISTS);
    EXPECT_EQ(outermost(move(wc + "/file", url + "/new")), SVN_ERR_UNSUPPORTED_FEATURE);
    EXPECT_EQ(outermost(info(unversioned)), SVN_ERR_UNVERSIONED_RESOURCE);
    EXPECT_EQ(outermost(info(wc + "/missing")), SVN_ERR_UNVERSIONED_RESOURCE);
    EXPECT_EQ(outermost(info(plain)), SVN_ERR_WC_NOT_DIRECTORY);
    EXPECT_EQ(outermost(status(item)), SVN_ERR_WC_NOT_DIRECTORY);
    EXPECT_EQ(outermost(status(plain)), SVN_ERR_WC_NOT_DIRECTORY);
    EXPECT_THAT(info("file:///nowhere"), testing::Contains(SVN_ERR_RA_LOCAL_REPOS_OPEN_FAILED));
    for (const std::string& path : {plain, plain + "/item", plain + "/missing"}) {
        EXPECT_EQ(outermost(open(path)), SVN_ERR_RA_LOCAL_REPOS_OPEN_FAILED);
    }
}

TEST_P(SubversionBundle, AnswersOneCodeForWhatCannotBeAddedOrDeleted)
{
    writeFile(wc + "/gone/inner", "five\n");
    bundle.add(wc + "/gone");
    ASSERT_EQ(bundle.commit(wc), 2);
    fs::remove_all(wc + "/gone");
    const std::tuple<const char*, int, int> cases[] = {
        {"/missing", SVN_ERR_ENTRY_NOT_FOUND, SVN_ERR_NODE_UNKNOWN_KIND},
        {"/missing/item", SVN_ERR_ENTRY_NOT_FOUND, SVN_ERR_NODE_UNKNOWN_KIND},
        {"/gone/item", SVN_ERR_ENTRY_NOT_FOUND, SVN_ERR_NODE_UNKNOWN_KIND},
        {"/unversioned/item", SVN_ERR_ENTRY_NOT_FOUND, SVN_ERR_WC_NOT_DIRECTORY},
        {"/file/item", SVN_ERR_ENTRY_NOT_FOUND, SVN_ERR_NODE_UNKNOWN_KIND},
        {"/../plain/item", SVN_ERR_WC_NOT_DIRECTORY, SVN_ERR_WC_NOT_DIRECTORY},
    };
    for (const auto& [item, ofAddition, ofDeletion] : cases) {
        SCOPED_TRACE(item);
        EXPECT_EQ(outermost(add(wc + item, false)), ofAddition);
        EXPECT_EQ(outermost(add(wc + item, true)), ofAddition);
        EXPECT_EQ(outermost(remove(wc + item, false)), ofDeletion);
    }
    EXPECT_THAT(add(wc + "/missing", false), (Codes{SVN_ERR_ENTRY_NOT_FOUND, SVN_ERR_WC_PATH_NOT_FOUND}));
    EXPECT_EQ(add(wc + "/file", false), Codes{SVN_ERR_ENTRY_EXISTS});
}

TEST_P(SubversionBundle, AddsWhatIsBelowTheRootOfAWorkingCopy)
{
    writeFile(wc + "/dir/new", "new\n");
    writeFile(wc + "/left.o", "ignored\n");
    EXPECT_EQ(outermost(add(wc, false)), SVN_ERR_ENTRY_EXISTS);
    EXPECT_EQ(add(wc, true), Codes{});
    EXPECT_EQ(bundle.commit(wc), 2);
    for (const std::string item : {"/dir/new", "/unversioned/item"}) {
        EXPECT_EQ(info(url + item), Codes{}) << item;
    }
    EXPECT_NE(info(url + "/left.o"), Codes{});
}

TEST_P(SubversionBundle, GoesOnWhereAFolderIsMissingOrObstructed)
{
    writeFile(wc + "/far/sub", "three\n");
    bundle.add(wc + "/far");
    defineExternals(wc + "/far");
    ASSERT_EQ(bundle.commit(wc), 2);
    for (const char* obstruction : {"nothing", "file", "folder"}) {
        SCOPED_TRACE(obstruction);
        fs::remove_all(wc + "/dir");
        if (obstruction == std::string{"file"}) {
            writeFile(wc + "/dir", "in the way\n");
        } else if (obstruction == std::string{"folder"}) {
            writeFile(wc + "/dir/other", "in the way\n");
        }
        EXPECT_EQ(withExternals(), std::vector<std::string>{wc + "/far"});
        EXPECT_EQ(status(wc), Codes{});
        EXPECT_THAT(reported, testing::Contains(wc + "/dir"));
        const Codes exported = codesOf([&](apr_pool_t* pool) {
            svn_revnum_t result = 0;
            return bundle->client_export3(&result, wc.c_str(), (folder / obstruction).c_str(), unspecified(),
                                          LoadedBundle::revision(svn_opt_revision_working), FALSE, FALSE, TRUE, nullptr,
                                          bundle.ctx(), pool);
        });
        EXPECT_FALSE(exported.empty()) << "every line refuses, none ends the process";
    }
}

TEST_P(SubversionBundle, RefusesCopiesOfRevisionsThatOnlyALocalItemTells)
{
    for (const auto kind : {svn_opt_revision_committed, svn_opt_revision_previous}) {
        EXPECT_EQ(outermost(codesOf([&](apr_pool_t* pool) {
                      return bundle->client_copy3(&commitInfo, (wc + "/file").c_str(), LoadedBundle::revision(kind),
                                                  (wc + "/copy").c_str(), bundle.ctx(), pool);
                  })),
                  SVN_ERR_CLIENT_BAD_REVISION);
    }
}

TEST_P(SubversionBundle, TellsNoRevisionOfWhatAnUpdateExcludes)
{
    if (bundle.minor() < 6) {
        GTEST_SKIP() << "the line excludes nothing";
    }
    apr_array_header_t* results = nullptr;
    bundle.succeeds(bundle->client_update3(&results, bundle.array({wc + "/dir"}),
                                           LoadedBundle::revision(svn_opt_revision_head), svn_depth_exclude, TRUE,
                                           FALSE, FALSE, bundle.ctx(), bundle.pool()));
    ASSERT_EQ(results->nelts, 1);
    EXPECT_EQ(APR_ARRAY_IDX(results, 0, svn_revnum_t), SVN_INVALID_REVNUM);
    EXPECT_FALSE(fs::exists(wc + "/dir"));
    EXPECT_EQ(outermost(codesOf([&](apr_pool_t* pool) {
                  return bundle->client_update3(&results, bundle.array({wc}),
                                                LoadedBundle::revision(svn_opt_revision_head), svn_depth_exclude, TRUE,
                                                FALSE, FALSE, bundle.ctx(), pool);
              })),
              SVN_ERR_UNSUPPORTED_FEATURE);
    EXPECT_TRUE(fs::exists(wc + "/file"));
}

TEST_P(SubversionBundle, KeepsTheOriginalErrorBelowAMappedOne)
{
    EXPECT_EQ(open(folder / "plain"), (Codes{SVN_ERR_RA_LOCAL_REPOS_OPEN_FAILED, ENOENT}));
}

TEST_P(SubversionBundle, ReportsNothingForAMissingItem)
{
    EXPECT_EQ(status(wc + "/missing"), Codes{});
    EXPECT_TRUE(reported.empty());
}

TEST_P(SubversionBundle, DeletesUnversionedAndMissingItemsByForce)
{
    std::vector<std::string> heard;
    bundle.heard = [&](const svn_wc_notify_t& notification) {
        EXPECT_EQ(notification.action, svn_wc_notify_delete);
        heard.emplace_back(notification.path);
    };
    EXPECT_EQ(remove(wc + "/unversioned", true), Codes{});
    EXPECT_FALSE(fs::exists(wc + "/unversioned"));
    EXPECT_EQ(remove(wc + "/unversioned", true), Codes{});
    EXPECT_EQ(remove(wc + "/file", true), Codes{});
    EXPECT_EQ(heard, (std::vector<std::string>{wc + "/unversioned", wc + "/file"}));
}

TEST_P(SubversionBundle, AnswersTheFirstFailedLockAndPassesEveryNotification)
{
    EXPECT_EQ(lock({wc + "/file"}), Codes{});
    const std::string other = folder / "other";
    bundle.checkOut(url, other);
    std::vector<std::string> heard;
    bundle.heard = [&](const svn_wc_notify_t& notification) {
        heard.push_back(std::to_string(notification.err != nullptr) + notification.path);
    };
    // As a commit says it, whichever of its codes the server chose.
    EXPECT_EQ(outermost(lock({other + "/file", other + "/dir/sub"})), SVN_ERR_FS_LOCK_OWNER_MISMATCH);
    std::sort(heard.begin(), heard.end());
    EXPECT_EQ(heard, (std::vector<std::string>{"0" + other + "/dir/sub", "1" + other + "/file"}));
    EXPECT_EQ(lock({}), Codes{});
}

TEST_P(SubversionBundle, AnswersNoInformationWhenNothingWasCommitted)
{
    const auto leavesNone = [&](auto call) {
        svn_commit_info_t untouched{};
        commitInfo = &untouched;
        EXPECT_EQ(codesOf(call), Codes{});
        EXPECT_EQ(commitInfo, nullptr);
    };
    const auto commit = [&](apr_pool_t* pool) {
        return bundle->client_commit3(&commitInfo, bundle.array({wc}), TRUE, FALSE, bundle.ctx(), pool);
    };
    leavesNone(commit);
    writeFile(wc + "/file", "changed\n");
    bundle.givesLogMessages = false;
    leavesNone(commit);
    leavesNone([&](apr_pool_t* pool) {
        return bundle->client_mkdir2(&commitInfo, bundle.array({url + "/new"}), bundle.ctx(), pool);
    });
    leavesNone([&](apr_pool_t* pool) {
        return bundle->client_import2(&commitInfo, (folder / "plain").c_str(), url.c_str(), FALSE, FALSE, bundle.ctx(),
                                      pool);
    });
    leavesNone([&](apr_pool_t* pool) {
        return bundle->client_delete2(&commitInfo, bundle.array({url + "/file"}), FALSE, bundle.ctx(), pool);
    });
    leavesNone([&](apr_pool_t* pool) {
        return bundle->client_copy3(&commitInfo, (url + "/file").c_str(), unspecified(), (url + "/new").c_str(),
                                    bundle.ctx(), pool);
    });
    leavesNone([&](apr_pool_t* pool) {
        return bundle->client_move4(&commitInfo, (url + "/file").c_str(), (url + "/new").c_str(), FALSE, bundle.ctx(),
                                    pool);
    });
}

TEST_P(SubversionBundle, NamesTheCurrentFolderThatIsCommitted)
{
    EXPECT_EQ(codesOf([&](apr_pool_t* pool) {
                  apr_array_header_t* results = nullptr;
                  return bundle->client_update2(&results, bundle.array({wc}),
                                                LoadedBundle::revision(svn_opt_revision_head), TRUE, TRUE, bundle.ctx(),
                                                pool);
              }),
              Codes{});
    defineExternals(wc);
    std::vector<std::string> told;
    bundle.heard = [&](const svn_wc_notify_t& notification) { told.emplace_back(notification.path); };
    const auto former = fs::current_path();
    fs::current_path(wc);
    const auto revision = bundle.commit(wc);
    fs::current_path(former);
    EXPECT_EQ(revision, 2);
    EXPECT_THAT(told, testing::Contains(wc));
}

TEST_P(SubversionBundle, ListsFoldersWithoutASize)
{
    const auto receive = [](void* baton, const char* path, const svn_dirent_t* dirent, const svn_lock_t*, const char*,
                            apr_pool_t*) -> svn_error_t* {
        static_cast<std::vector<std::string>*>(baton)->push_back(path + (" " + std::to_string(dirent->size)));
        return nullptr;
    };
    EXPECT_EQ(codesOf([&](apr_pool_t* pool) {
                  return bundle->client_list((url + "/").c_str(), unspecified(), unspecified(), FALSE, SVN_DIRENT_ALL,
                                             FALSE, receive, &reported, bundle.ctx(), pool);
              }),
              Codes{});
    EXPECT_EQ(reported, (std::vector<std::string>{" 0", "dir 0", "file 4"}));
}

TEST_P(SubversionBundle, ReadsTheFormatOfEveryWorkingCopy)
{
    const int own = bundle.minor() < 7 ? bundle.minor() + 4 : bundle.minor() < 8 ? 29 : 31;
    EXPECT_EQ(format(wc), own);
    EXPECT_EQ(format(wc + "/"), own);
    EXPECT_EQ(format(wc + "/unversioned"), 0);
    EXPECT_EQ(format(folder / "plain"), 0);
    std::string database = "SQLite format 3";
    database.resize(100);
    database[63] = 99;
    const std::vector<std::tuple<std::string, std::string, int>> areas = {
        {"format", "4\n", 4},    {"entries", "8\n\ndir\n", 8}, {"entries", "9\n", 9},
        {"entries", "10\n", 10}, {"wc.db", database, 99},      {"entries", "nothing\n", 0}};
    for (const auto& [file, bytes, number] : areas) {
        SCOPED_TRACE(number);
        const std::string other = folder / ("of format " + std::to_string(number));
        writeFile(other + "/.svn/" + file, bytes);
        if (number > own || (number > 0 && bundle.minor() >= 7)) {
            EXPECT_EQ(format(other), number);
        }
    }
    int none = 0;
    EXPECT_EQ(outermost(codesOf(
                  [&](apr_pool_t* pool) { return bundle->wc_check_wc((folder / "missing").c_str(), &none, pool); })),
              ENOENT);
}

TEST_P(SubversionBundle, RefusesWorkingCopiesOfNewerAndOlderFormats)
{
    const std::string other = folder / "other";
    writeFile(other + "/.svn/entries", bundle.minor() < 7 ? "12\n" : "8\n\ndir\n");
    writeFile(other + "/.svn/format", bundle.minor() < 7 ? "12\n" : "8\n");
    EXPECT_EQ(outermost(status(other)), SVN_ERR_WC_UNSUPPORTED_FORMAT);
    EXPECT_EQ(
        outermost(codesOf([&](apr_pool_t* pool) { return bundle->client_cleanup(other.c_str(), bundle.ctx(), pool); })),
        SVN_ERR_WC_UNSUPPORTED_FORMAT);
}

TEST_P(SubversionBundle, ReadsExternalsIntoTheNewerRecord)
{
    apr_array_header_t* externals = nullptr;
    bundle.succeeds(bundle->wc_parse_externals_description3(
        &externals, "", "lib -r5 http://host/repository/lib\nother http://host/repository/other\n", FALSE,
        bundle.pool()));
    ASSERT_EQ(externals->nelts, 2);
    const auto* first = APR_ARRAY_IDX(externals, 0, const svn_wc_external_item2_t*);
    EXPECT_STREQ(first->target_dir, "lib");
    EXPECT_STREQ(first->url, "http://host/repository/lib");
    EXPECT_EQ(first->revision.value.number, 5);
    EXPECT_EQ(first->peg_revision.kind, first->revision.kind);
    EXPECT_STREQ(APR_ARRAY_IDX(externals, 1, const svn_wc_external_item2_t*)->target_dir, "other");
}

INSTANTIATE_TEST_SUITE_P(Built, SubversionBundle, testing::ValuesIn(builtBundles()), [](const auto& parameter) {
    auto name = fs::path{parameter.param}.stem().string();
    std::replace_if(
        name.begin(), name.end(), [](unsigned char character) { return std::isalnum(character) == 0; }, '_');
    return name;
});

/// One round of a user's work: a change committed from one working copy reaches another.
void workOnce(const LoadedBundle& bundle, const std::string& folder, int round)
{
    writeFile(folder + "/first/file", "round " + std::to_string(round));
    ASSERT_EQ(bundle.commit(folder + "/first"), round + 2);
    apr_array_header_t* results = nullptr;
    bundle.succeeds(bundle->client_update2(&results, bundle.array({folder + "/second"}),
                                           LoadedBundle::revision(svn_opt_revision_head), TRUE, FALSE, bundle.ctx(),
                                           bundle.pool()));
    ASSERT_EQ(readFile(folder + "/second/file"), "round " + std::to_string(round));
}

/// A bundle with two working copies of a repository of its own.
struct Workplace
{
    explicit Workplace(const std::string& bundleFolder) : bundle{bundleFolder}
    {
        const std::string url = "file://" + (folder / "repository");
        bundle.makeRepository(folder / "repository");
        bundle.checkOut(url, folder / "first");
        writeFile(folder / "first/file", "first\n");
        bundle.add(folder / "first/file");
        EXPECT_EQ(bundle.commit(folder / "first"), 1);
        bundle.checkOut(url, folder / "second");
    }

    TemporaryFolder folder;
    LoadedBundle bundle;
};

TEST(SubversionBundles, WorkAlternatelyAndOnThreadsInOneProcess)
{
    std::vector<std::unique_ptr<Workplace>> places;
    for (int copy = 0; copy < 2 || places.size() < 4; ++copy) {
        for (const auto& bundle : builtBundles()) {
            places.push_back(std::make_unique<Workplace>(bundle));
        }
    }
    for (int round = 0; round < 3; ++round) {
        for (const auto& place : places) {
            workOnce(place->bundle, place->folder.path(), round);
        }
    }
    std::vector<std::thread> threads;
    for (const auto& place : places) {
        threads.emplace_back([&place] {
            for (int round = 3; round < 6; ++round) {
                workOnce(place->bundle, place->folder.path(), round);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

} // namespace
