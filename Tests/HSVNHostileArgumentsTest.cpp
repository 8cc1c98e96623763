// What no target, text or choice may be: each is refused by every operation before anything is changed, by an exception
// that names it, and none ends the process.

#include "HSVN.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <map>
#include <optional>
#include <thread>

using testing::AllOf;
using testing::AnyOf;
using testing::HasSubstr;

namespace {

/// What an operation does with its target.
enum class Use
{
    Parses,
    Reads,
    Changes
};

struct Operation
{
    const char* name;
    Use use;
    std::function<void(const std::string& target)> run;
};

template <class Options>
Options ofDepth(HSVNDepth depth)
{
    Options options;
    options.depth = depth;
    return options;
}

/// A row of the tables below: what is done with `target`.
#define OPERATION(name, use, ...)                                                                                      \
    {                                                                                                                  \
        name, Use::use, [=, this](const auto& target) { __VA_ARGS__; }                                                 \
    }
/// Rows of the tables of what is done with `depth`, and of what is done at all.
#define WITH_DEPTH(name, ...)                                                                                          \
    {                                                                                                                  \
        name, [&](auto depth) { __VA_ARGS__; }                                                                         \
    }
#define CALL(name, ...)                                                                                                \
    {                                                                                                                  \
        name, [&] { __VA_ARGS__; }                                                                                     \
    }

class HostileArguments : public WorkingCopyTest
{
  protected:
    void SetUp() override
    {
        if (isOlderLine()) {
            GTEST_SKIP() << "the newer operations are those of the installed line";
        }
    }

    static HSVNPathRef pathOf(const std::string& text) { return HSVNPath::pathWithString(text); }
    template <class Options, class Change>
    static auto with(Change change)
    {
        auto options = Options::defaults();
        change(*options);
        return options;
    }

    /// Those that take texts.
    std::vector<Operation> newerOperations();
    /// Those of classes, which take paths.
    std::vector<Operation> classOperations();
    std::vector<Operation> everyOperation()
    {
        auto operations = newerOperations();
        for (auto& operation : classOperations()) {
            operations.push_back(std::move(operation));
        }
        return operations;
    }

    /// The bytes of everything that belongs to the working copy and the repository, by name.
    std::map<std::string, std::string> everything() const
    {
        std::map<std::string, std::string> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator{repository.beside("")}) {
            const auto name = entry.path().string();
            if (entry.is_regular_file() && !name.ends_with("-shm") && !name.ends_with("-wal")) {
                files[name] = readFile(name);
            } else {
                files[name] = "";
            }
        }
        return files;
    }

    const HSVNRevisionRef head = HSVNRevision::HEAD();
    const HSVNRevisionRef unspecified = HSVNRevision::UNSPECIFIED();
    const HSVNRevisionSpecRef spec = HSVNRevisionSpec::UNSPECIFIED();
};

std::vector<Operation> HostileArguments::newerOperations()
{
    const auto ignore = [](const auto&) {};
    HSVNLogReadingOptions logOptions;
    logOptions.ranges = {{head, head}};
    return {
        OPERATION("add", Changes, HSVNAddItem(target, {}, client)),
        OPERATION("add -f", Changes, HSVNAddItem(target, {.force = true}, client)),
        OPERATION("revert", Changes, HSVNRevertItems({target}, {}, client)),
        OPERATION("resolve", Changes, HSVNResolveItem(target, HSVNDepthInfinity, HSVNConflictChoiceMerged, client)),
        OPERATION("find conflicts", Reads, HSVNFindConflicts(target, HSVNDepthInfinity, ignore, client)),
        OPERATION("propset", Changes, HSVNChangeProperty("color", "red", {target}, {}, client)),
        OPERATION("revpropset", Reads, HSVNChangeRevisionProperty("color", "red", target, head, false, client)),
        OPERATION("lock", Changes, HSVNLockItems({target}, "", false, client)),
        OPERATION("unlock", Changes, HSVNUnlockItems({target}, true, client)),
        OPERATION("vacuum", Reads, HSVNVacuumFolder(target, {}, client)),
        OPERATION("cleanup", Reads, HSVNCleanUpFolder(target, {}, client)),
        OPERATION("upgrade", Reads, HSVNUpgradeFolder(target, client)),
        OPERATION("relocate", Changes,
                  HSVNRelocateFolder(target, repository.url(), repository.url("trunk"), false, client)),
        OPERATION("relocate from", Reads, HSVNRelocateFolder(root, target, repository.url(), false, client)),
        OPERATION("relocate to", Reads, HSVNRelocateFolder(root, repository.url(), target, false, client)),
        OPERATION("changelist", Changes, HSVNChangeChangelist("list", {target}, HSVNDepthInfinity, {}, client)),
        OPERATION("no changelist", Changes,
                  HSVNChangeChangelist(std::nullopt, {target}, HSVNDepthInfinity, {}, client)),
        OPERATION("commit", Changes, HSVNCommitItems({target}, {}, {}, client)),
        OPERATION("import", Changes, HSVNImportItem(target, repository.url("new"), {}, {}, client)),
        OPERATION("import to", Reads, HSVNImportItem(item("dir"), target, {}, {}, client)),
        OPERATION("mkdir", Changes, HSVNMakeFolders({target}, false, {}, client)),
        OPERATION("mkdir -p", Changes, HSVNMakeFolders({target}, true, {}, client)),
        OPERATION("delete", Changes, HSVNDeleteItems({target}, {}, {}, client)),
        OPERATION("delete -f", Changes, HSVNDeleteItems({target}, {.force = true}, {}, client)),
        OPERATION("copy", Changes, HSVNCopyItems({{target, spec}}, item("new"), {}, {}, client)),
        OPERATION("copy to", Changes, HSVNCopyItems({{item("a.txt"), spec}}, target, {}, {}, client)),
        OPERATION("copy -p to", Changes,
                  HSVNCopyItems({{item("a.txt"), spec}}, target, {.asChild = true, .makeParents = true}, {}, client)),
        OPERATION("copy at URLs", Reads,
                  HSVNCopyItems({{repository.url(), HSVNRevisionSpec::HEAD()}}, target, {}, {}, client)),
        OPERATION("move", Changes, HSVNMoveItems({target}, item("new"), {}, {}, client)),
        OPERATION("move to", Changes, HSVNMoveItems({item("a.txt")}, target, {}, {}, client)),
        OPERATION("move at URLs", Reads, HSVNMoveItems({repository.url("trunk")}, target, {}, {}, client)),
        OPERATION("update", Changes, HSVNUpdateItems({target}, head, {}, client)),
        OPERATION("update -p", Changes, HSVNUpdateItems({target}, head, {.makeParents = true}, client)),
        OPERATION("checkout", Reads,
                  HSVNCheckOutItem(target, repository.beside("new"), spec, {.depth = HSVNDepthInfinity}, client)),
        OPERATION(
            "checkout into", Changes,
            HSVNCheckOutItem(repository.url(), target, HSVNRevisionSpec::HEAD(), {.depth = HSVNDepthInfinity}, client)),
        OPERATION("switch", Changes, HSVNSwitchItem(target, repository.url(), spec, {}, client)),
        OPERATION("switch to", Reads, HSVNSwitchItem(root, target, spec, {}, client)),
        OPERATION("export", Reads, HSVNExportItem(target, repository.beside("new"), spec, {}, client)),
        OPERATION("export into", Changes, HSVNExportItem(root, target, spec, {.overwrite = true}, client)),
        OPERATION("merge trees", Reads, HSVNMergeTrees({target, head}, {target, head}, root, {}, client)),
        OPERATION("merge into", Changes,
                  HSVNMergeTrees({repository.url(), head}, {repository.url(), head}, target, {}, client)),
        OPERATION("merge changes", Reads, HSVNMergeChanges(target, head, std::nullopt, root, {}, client)),
        OPERATION("merge changes into", Changes,
                  HSVNMergeChanges(repository.url(), head, std::nullopt, target, {}, client)),
        OPERATION("reintegrate", Reads, HSVNReintegrate(target, head, root, {}, client)),
        OPERATION("reintegrate into", Changes, HSVNReintegrate(repository.url(), head, target, {}, client)),
        OPERATION("diff", Reads, HSVNCompareItems({target, head}, {target, head}, {}, {ignore, ignore}, client)),
        OPERATION("diff of revisions", Reads,
                  HSVNCompareRevisions(target, head, {head, head}, {}, {ignore, ignore}, client)),
        OPERATION("diff summary", Reads, HSVNSummarizeItems({target, head}, {target, head}, {}, ignore, client)),
        OPERATION("diff summary of revisions", Reads,
                  HSVNSummarizeRevisions(target, head, {head, head}, {}, ignore, client)),
        OPERATION("blame", Reads, HSVNReadBlame(target, head, {head, head}, {}, ignore, client)),
        OPERATION("cat", Reads, HSVNReadContents(target, spec, true, ignore, client)),
        OPERATION("info", Reads, HSVNReadItemInfo(target, spec, {}, ignore, client)),
        OPERATION("status", Reads, HSVNScanItemStatus(target, head, {}, ignore, client)),
        OPERATION("list", Reads, HSVNListItems(target, spec, {}, ignore, client)),
        OPERATION("log", Reads, HSVNReadLog({target}, head, logOptions, ignore, client)),
        OPERATION("log below", Reads, HSVNReadLog({repository.url(), target}, head, logOptions, ignore, client)),
        OPERATION("log beside", Reads, HSVNReadLog({root, target}, head, logOptions, ignore, client)),
        OPERATION("proplist", Reads, HSVNReadProperties(target, spec, {}, ignore, client)),
        OPERATION("propget", Reads, HSVNReadProperty("color", target, spec, {}, client)),
        OPERATION("revproplist", Reads, HSVNReadRevisionProperties(target, head, nullptr, client)),
        OPERATION("revpropget", Reads, HSVNReadRevisionProperty("color", target, head, nullptr, client)),
        OPERATION("URL of", Reads, HSVNArguments::URLOfTarget(target, client)),
        OPERATION("peg of", Parses, HSVNArguments::parse(target, client)),
        OPERATION("targets", Parses, HSVNArguments::canonicalTargets({target}, client)),
        OPERATION("conflict", Reads, HSVNConflictedItem{target, client}),
        OPERATION("compare files", Reads, HSVNCompareFiles(target, target, "", "", ignore, client)),
    };
}

std::vector<Operation> HostileArguments::classOperations()
{
    using Node = HSVNNode;
    using Directory = HSVNDirectory;
    const auto forced = [](auto& options) { options.setForce(true); };
    const auto byForce = with<HSVNDeleteOptions>(forced);
    const auto copying = HSVNCopyOptions::defaults();
    const auto moving = HSVNMoveOptions::defaults();
    const auto into = at("new");
    const auto urlOf = [](const std::string& text) { return HSVNURL::URLWithString(text); };
    return {
        OPERATION("-add", Changes, Node::add(pathOf(target), client)),
        OPERATION("-revert", Changes, Node::revertNodes({pathOf(target)}, HSVNRevertOptions::defaults(), client)),
        OPERATION("-resolve", Changes, Node::resolveNodeAtPath(pathOf(target), HSVNResolveOptions::defaults(), client)),
        OPERATION("-update", Changes, Node::updateNodes({pathOf(target)}, head, HSVNUpdateOptions::defaults(), client)),
        OPERATION("-commit", Changes,
                  Node::commitChangesToNodes({pathOf(target)}, HSVNCommitOptions::defaults(), client)),
        OPERATION(
            "-checkout", Reads,
            Directory::checkoutDirectoryAtURL(urlOf(target), outside("new"), HSVNCheckOutOptions::defaults(), client)),
        OPERATION(
            "-checkout into", Changes,
            Directory::checkoutDirectoryAtURL(url("trunk"), pathOf(target), HSVNCheckOutOptions::defaults(), client)),
        OPERATION("-propset", Changes, Node::setProperty("color", "red", pathOf(target), client)),
        OPERATION("-import", Changes,
                  Node::importNodeAtPath(pathOf(target), url("new"), HSVNImportOptions::defaults(), client)),
        OPERATION("-import to", Reads,
                  Node::importNodeAtPath(at("dir"), urlOf(target), HSVNImportOptions::defaults(), client)),
        OPERATION("-export", Reads,
                  Node::exportNodeAtPath(pathOf(target), outside("new"), HSVNExportOptions::defaults(), client)),
        OPERATION("-export into", Changes,
                  Node::exportNodeAtPath(at(""), pathOf(target), HSVNExportOptions::defaults(), client)),
        OPERATION("-merge", Reads,
                  Node::mergeNodeAtPath(pathOf(target), head, pathOf(target), head, at(""),
                                        HSVNMergeOptions::defaults(), client)),
        OPERATION("-merge into", Changes,
                  Node::mergeNodeAtPath(url("trunk"), head, url("trunk"), head, pathOf(target),
                                        HSVNMergeOptions::defaults(), client)),
        OPERATION("-delete", Changes, Node::deleteNodes({pathOf(target)}, HSVNDeleteOptions::defaults(), client)),
        OPERATION("-delete -f", Changes, Node::deleteNodes({pathOf(target)}, byForce, client)),
        OPERATION("-delete second", Changes,
                  Node::deleteWorkingCopyNodesAtPaths({at("a.txt"), pathOf(target)}, byForce, client)),
        OPERATION("-delete for overwriting", Changes, Node::deleteNodeAtPath(pathOf(target), at("a.txt"), client)),
        OPERATION("-move", Changes, Node::moveNodeAtPath(pathOf(target), into, moving, client)),
        OPERATION("-move out", Changes, Node::moveNodeAtPath(pathOf(target), outside("new"), moving, client)),
        OPERATION("-move to", Changes, Node::moveNodeAtPath(at("a.txt"), pathOf(target), moving, client)),
        OPERATION("-copy", Changes, Node::copyNodeAtPath(pathOf(target), into, copying, client)),
        OPERATION("-copy out", Changes, Node::copyNodeAtPath(pathOf(target), outside("new"), copying, client)),
        OPERATION("-copy to", Changes, Node::copyNodeAtPath(at("a.txt"), pathOf(target), copying, client)),
        OPERATION("-move batch", Changes,
                  Node::moveNodes({pathOf(target)}, {into}, false, moving, nullptr, nullptr, client)),
        OPERATION("-copy batch to", Changes,
                  Node::moveNodes({at("a.txt")}, {pathOf(target)}, true, copying, nullptr, nullptr, client)),
        OPERATION("-lock", Changes, Node::lockNodes({pathOf(target)}, "", HSVNLockOptions::defaults(), client)),
        OPERATION("-unlock", Changes, Node::unlockNodes({pathOf(target)}, HSVNUnlockOptions::defaults(), client)),
        OPERATION("-mkdir", Changes, Directory::createDirectoryAtPath(pathOf(target), client)),
        OPERATION("-propget", Reads, Node::propertyWithName("color", pathOf(target), spec, client)),
        OPERATION("-proplist", Reads, Node::propertiesForNodeAtPath(pathOf(target), spec, client)),
        OPERATION("-kind", Reads, Node::kindOfNodeAtPath(pathOf(target), spec, client)),
        OPERATION("-URL", Reads, Node::URLForNodeAtPath(pathOf(target), client)),
        OPERATION("-node", Reads, Node::nodeAtPath(pathOf(target), spec, client)),
        OPERATION("-log", Reads,
                  Node::readLogForNodeAtPath(pathOf(target), nullptr, HSVNLogOptions::defaults(), client)),
        OPERATION("-directory", Reads, Directory::directoryAtPath(pathOf(target), spec, client)),
        {"-children", Use::Reads,
         [=, this](const auto& target) {
             std::vector<HSVNNodeRef> children;
             Directory::directoryAtPath(pathOf(target), spec, &children, client);
         }},
        OPERATION("-status", Reads,
                  Directory::statusForNodesInDirectoryAtPath(pathOf(target), HSVNStatusOptions::defaults(), client)),
        OPERATION("-cleanup", Reads, Directory::cleanUpWorkingCopyAtPath(pathOf(target), client)),
    };
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, HostileArguments, everyLine(), lineName);

TEST_P(HostileArguments, NamesOfTheAdministrativeAreaAreNeverChanged)
{
    std::filesystem::create_directory_symlink(".svn", item("link"));
    for (const auto& operation : everyOperation()) {
        if (operation.use != Use::Changes) {
            continue;
        }
        const auto before = everything();
        for (const char* name : {".svn", ".svn/", ".svn/wc.db", "./dir/../.svn", "dir/.svn", "nowhere/.svn", "link/x"})
        {
            try {
                operation.run(item(name));
                ADD_FAILURE() << operation.name << " took " << name;
            } catch (const HSVNException& exception) {
                EXPECT_EQ(exception.status(), 200025) << operation.name << ": " << exception.reason();
                EXPECT_THAT(exception.reason(), HasSubstr(pathOf(item(name))->string())) << operation.name;
            }
        }
        EXPECT_EQ(everything(), before) << operation.name;
    }
    std::filesystem::remove(item("link"));
}

TEST_P(HostileArguments, AWorkingCopyBelowAFolderOfThatNameIsNoneOfIt)
{
    std::filesystem::create_directories(repository.beside("outer/.svn"));
    root = repository.checkOut("outer/.svn/wc", "trunk");
    writeFile(item("new.txt"), "new\n");
    HSVNAddItem(item("new.txt"), {}, client);
    HSVNNode::deleteNodes({at("a.txt")}, HSVNDeleteOptions::defaults(), client);
    EXPECT_EQ(status(), "D       a.txt\nA       new.txt\n");
}

TEST_P(HostileArguments, ZeroBytesAreRefusedHoweverTheyAreWritten)
{
    const std::string cut{"a.txt\0.bak", 10};
    for (const auto& operation : everyOperation()) {
        EXPECT_THAT(reasonOf<HSVNInvalidArgumentException>([&] { operation.run(item(cut)); }),
                    HasSubstr("/a.txt\\x00.bak\""))
            << operation.name;
        if (operation.use == Use::Parses) {
            continue; // a text that no call was made with
        }
        for (const std::string& url : {repository.url("%00"), repository.url("trunk%00b"), std::string{"http://h/%00"}})
        {
            EXPECT_THAT(reasonOf<HSVNException>([&] { operation.run(url); }),
                        AllOf(HasSubstr(url), AnyOf(HasSubstr("zero byte"), HasSubstr("not a local path"),
                                                    HasSubstr("not a relative path"))))
                << operation.name;
        }
    }
    EXPECT_EQ(repository.youngest(), 1);
    EXPECT_EQ(status(), "");
}

TEST_P(HostileArguments, OtherTextsWithAZeroByteAreRefused)
{
    const std::string cut{"a\0b", 3};
    const auto before = everything();
    const std::vector<std::pair<const char*, std::function<void()>>> calls{
        {"property", [&] { HSVNChangeProperty(cut, "x", {item("a.txt")}, {}, client); }},
        {"class property", [&] { HSVNNode::setProperty(cut, "x", at("a.txt"), client); }},
        {"read property", [&] { HSVNReadProperty(cut, item("a.txt"), spec, {}, client); }},
        {"revision property", [&] { HSVNChangeRevisionProperty(cut, "x", repository.url(), head, false, client); }},
        {"new revision property",
         [&] {
             HSVNRevisionWishes wishes;
             wishes.properties = {{cut, "x"}};
             HSVNMakeFolders({repository.url("new")}, false, wishes, client);
         }},
        {"changelist", [&] { HSVNChangeChangelist(cut, {item("a.txt")}, HSVNDepthEmpty, {}, client); }},
        {"filter", [&] { HSVNRevertItems({item("a.txt")}, {.changelists = {cut}}, client); }},
        {"lock", [&] { HSVNLockItems({item("a.txt")}, cut, false, client); }},
        {"class lock", [&] { HSVNNode::lockNodes({at("a.txt")}, cut, HSVNLockOptions::defaults(), client); }},
        {"pattern", [&] { HSVNString::matchesPatternInArray("a", {cut}); }},
        {"option", [&] { client->setOption(cut, "editor-cmd", HSVNConfigCategoryConfig, HSVNConfigSectionHelpers); }},
        {"option's name", [&] { client->setOption("x", cut, HSVNConfigCategoryConfig, HSVNConfigSectionHelpers); }},
        {"log message",
         [&] {
             delegate->message = cut;
             HSVNMakeFolders({repository.url("new")}, false, {}, client);
         }},
    };
    for (const auto& [name, call] : calls) {
        EXPECT_THAT(reasonOf<HSVNInvalidArgumentException>(call), HasSubstr(R"("a\x00b")")) << name;
    }
    EXPECT_EQ(repository.youngest(), 1);
    EXPECT_EQ(status(), "");
    EXPECT_EQ(everything().size(), before.size());
    HSVNChangeProperty("bytes", cut, {item("a.txt")}, {}, client);
    EXPECT_EQ(HSVNNode::propertyWithName("bytes", at("a.txt"), spec, client), cut) << "a value may hold any byte";
    HSVNNode::setProperty("bytes", cut + cut, at("a.txt"), client);
    EXPECT_EQ(property("bytes", "a.txt"), cut + cut);
}

TEST_P(HostileArguments, DepthsThatAreNoneAreRefused)
{
    const auto ignore = [](const auto&) {};
    const auto number = HSVNRevision::revisionWithNumber(1);
    const auto setDepth = [](HSVNDepth depth) { return [depth](auto& options) { options.setDepth(depth); }; };
    using Call = std::function<void(HSVNDepth)>;
    const std::vector<std::pair<const char*, Call>> calls{
        WITH_DEPTH("add", HSVNAddItem(item("dir"), {.depth = depth, .force = true}, client)),
        WITH_DEPTH("revert", HSVNRevertItems({item("dir")}, {.depth = depth, .changelists = {}}, client)),
        WITH_DEPTH("resolve", HSVNResolveItem(root, depth, HSVNConflictChoiceMerged, client)),
        WITH_DEPTH("conflicts", HSVNFindConflicts(root, depth, ignore, client)),
        WITH_DEPTH("propset", HSVNChangeProperty("c", "x", {root}, {.depth = depth, .changelists = {}}, client)),
        WITH_DEPTH("changelist", HSVNChangeChangelist("x", {root}, depth, {}, client)),
        WITH_DEPTH("no changelist", HSVNChangeChangelist(std::nullopt, {root}, depth, {}, client)),
        WITH_DEPTH("commit", HSVNCommitItems({root}, {.depth = depth, .changelists = {}}, {}, client)),
        WITH_DEPTH("import", HSVNImportItem(item("dir"), repository.url("new"), {.depth = depth}, {}, client)),
        WITH_DEPTH("update", HSVNUpdateItems({root}, head, {.depth = depth}, client)),
        WITH_DEPTH("checkout",
                   HSVNCheckOutItem(repository.url(), repository.beside("new"), spec, {.depth = depth}, client)),
        WITH_DEPTH("switch", HSVNSwitchItem(root, repository.url("trunk"), spec, {.depth = depth}, client)),
        WITH_DEPTH("export",
                   HSVNExportItem(repository.url(), repository.beside("new"), spec, {.depth = depth}, client)),
        WITH_DEPTH("merge", HSVNMergeTrees({repository.url("trunk"), number}, {repository.url("trunk"), head}, root,
                                           {.depth = depth}, client)),
        WITH_DEPTH("diff", HSVNSummarizeItems({root, HSVNRevision::BASE()}, {root, HSVNRevision::WORKING()},
                                              ofDepth<HSVNComparisonOptions>(depth), ignore, client)),
        WITH_DEPTH("status", HSVNScanItemStatus(root, head, ofDepth<HSVNItemStatusOptions>(depth), ignore, client)),
        WITH_DEPTH("info", HSVNReadItemInfo(root, spec, ofDepth<HSVNItemInfoOptions>(depth), ignore, client)),
        WITH_DEPTH("list", HSVNListItems(root, spec, ofDepth<HSVNListingOptions>(depth), ignore, client)),
        WITH_DEPTH("proplist",
                   HSVNReadProperties(root, spec, ofDepth<HSVNPropertyReadingOptions>(depth), ignore, client)),
        WITH_DEPTH("class update",
                   HSVNNode::updateNodes({at("")}, head, with<HSVNUpdateOptions>(setDepth(depth)), client)),
        WITH_DEPTH("class commit",
                   HSVNNode::commitChangesToNodes({at("")}, with<HSVNCommitOptions>(setDepth(depth)), client)),
        WITH_DEPTH("class checkout",
                   HSVNDirectory::checkoutDirectoryAtURL(url("trunk"), outside("new"),
                                                         with<HSVNCheckOutOptions>(setDepth(depth)), client)),
        WITH_DEPTH("class export", HSVNNode::exportNodeAtPath(url("trunk"), outside("new"),
                                                              with<HSVNExportOptions>(setDepth(depth)), client)),
        WITH_DEPTH("class merge", HSVNNode::mergeNodeAtPath(url("trunk"), number, url("trunk"), head, at(""),
                                                            with<HSVNMergeOptions>(setDepth(depth)), client)),
    };
    const auto before = everything();
    for (const auto& [name, call] : calls) {
        for (const int depth : {-3, 4, 100'000}) {
            EXPECT_THAT(reasonOf<HSVNInvalidArgumentException>([&] { call(static_cast<HSVNDepth>(depth)); }),
                        HasSubstr("Invalid depth " + std::to_string(depth)))
                << name;
        }
    }
    EXPECT_EQ(everything(), before);
    for (const auto& [name, call] : calls) {
        try {
            // Subversion has its own answers to these, none of which is that it failed an assertion.
            call(HSVNDepthExclude);
        } catch (const HSVNException& exception) {
            EXPECT_NE(exception.status(), 235000) << name << ": " << exception.reason();
        } catch (const HSVNAssertionException&) { // NOLINT(bugprone-empty-catch): the check-out of the class
        }
    }
}

TEST_P(HostileArguments, ACommitOfUnknownDepthIsOneOfEverythingBelow)
{
    writeFile(item("dir/c.txt"), "changed\n");
    HSVNCommitItems({root}, {.depth = HSVNDepthUnknown, .changelists = {}}, {}, client);
    EXPECT_EQ(repository.contents("trunk/dir/c.txt"), "changed\n");
}

TEST_P(HostileArguments, AReceiverIsNeeded)
{
    const std::vector<std::pair<const char*, std::function<void()>>> calls{
        CALL("conflicts", HSVNFindConflicts(root, HSVNDepthInfinity, nullptr, client)),
        CALL("summary", HSVNSummarizeItems({root, head}, {root, head}, {}, nullptr, client)),
        CALL("summary of revisions", HSVNSummarizeRevisions(root, head, {head, head}, {}, nullptr, client)),
        CALL("blame", HSVNReadBlame(item("a.txt"), head, {head, head}, {}, nullptr, client)),
        CALL("cat", HSVNReadContents(item("a.txt"), spec, true, HSVNContentsReceiver{}, client)),
        CALL("info", HSVNReadItemInfo(root, spec, {}, nullptr, client)),
        CALL("status", HSVNScanItemStatus(root, head, {}, nullptr, client)),
        CALL("list", HSVNListItems(root, spec, {}, nullptr, client)),
        CALL("log", HSVNReadLog({root}, head, {}, nullptr, client)),
        CALL("proplist", HSVNReadProperties(root, spec, {}, nullptr, client)),
        CALL("files", HSVNCompareFiles(item("a.txt"), item("b.txt"), "", "", HSVNContentsReceiver{}, client)),
        CALL("conflict", HSVNShowConflicts({}, {}, HSVNContentsReceiver{}, client)),
    };
    for (const auto& [name, call] : calls) {
        EXPECT_EQ(reasonOf<HSVNAssertionException>(call), "Invalid parameter not satisfying: receiver != nil") << name;
    }
}

TEST_P(HostileArguments, FoldersAreMadeBelowOneServer)
{
    const std::vector<std::vector<std::string>> lists{{"http://localhost"},
                                                      {"file:///"},
                                                      {"file:///", repository.url("x")},
                                                      {repository.url("x"), "http://localhost"},
                                                      {"http://localhost:1/a", "svn://localhost:1/a"},
                                                      {"http://localhost/a", "http://localhost"}};
    for (const auto& urls : lists) {
        for (const bool makeParents : {false, true}) {
            EXPECT_THAT(reasonOf<HSVNException>([&] { HSVNMakeFolders(urls, makeParents, {}, client); }),
                        AnyOf(HasSubstr("There is no valid URI above '"), HasSubstr("' are on different servers")));
        }
    }
    for (const char* text : {"http://localhost", "file:///"}) {
        EXPECT_THAT(reasonOf<HSVNException>(
                        [&] { HSVNDirectory::createDirectoryAtPath(HSVNURL::URLWithString(text), client); }),
                    HasSubstr("There is no valid URI above '"));
    }
    EXPECT_EQ(repository.youngest(), 1);
}

TEST_P(HostileArguments, WhatSubversionAssertsIsAskedBefore)
{
    const auto ignore = [](const auto&) {};
    for (const auto& call : std::vector<std::function<void()>>{
             [&] { HSVNChangeRevisionProperty("x", "y", repository.url(), unspecified, false, client); },
             [&] { HSVNReadRevisionProperty("x", repository.url(), unspecified, nullptr, client); },
             [&] { HSVNReadRevisionProperties(repository.url(), unspecified, nullptr, client); }})
    {
        EXPECT_EQ(reasonOf<HSVNException>(call), "A revision is needed");
    }
    EXPECT_THAT(reasonOf([&] { HSVNCopyItems({}, item("new"), {}, {}, client); }), HasSubstr("[sources count] > 0"));
    EXPECT_THAT(reasonOf([&] { HSVNMoveItems({}, item("new"), {}, {}, client); }), HasSubstr("[sources count] > 0"));
    int told = 0;
    HSVNReadItemInfo(
        repository.url("trunk"), spec, {}, [&](const HSVNItemInfo&) { ++told; }, client);
    EXPECT_EQ(told, 1) << "without a revision, a URL is one of HEAD";
    HSVNLogReadingOptions options;
    options.ranges = {{head, head}};
    EXPECT_NO_THROW(HSVNReadLog({repository.url(), ".", "trunk//dir/"}, head, options, ignore, client));
    EXPECT_EQ(reasonOf<HSVNException>([&] {
                  HSVNReadLog({repository.url(), "/trunk"}, head, options, ignore, client);
              }),
              "'/trunk' is not a relative path");
}

TEST_P(HostileArguments, ARelocationPassesOverExternalsThatAreGone)
{
    mustRun({"svn", "propset", "-q", "svn:externals", "^/trunk/dir gone\n^/trunk/dir kept\n", item("dir")});
    mustRun({"svn", "update", "-q", root});
    std::filesystem::remove_all(item("dir/gone"));
    std::filesystem::rename(repository.path(), repository.beside("moved"));
    const std::string moved = "file://" + repository.beside("moved");
    HSVNRelocateFolder(root, repository.url(), moved, false, client);
    for (const char* name : {"", "dir/kept"}) {
        EXPECT_EQ(mustRun({"svn", "info", "--no-newline", "--show-item", "repos-root-url", item(name)}), moved);
    }
}

TEST_P(HostileArguments, AServerListsNothingButWhatItIsAskedFor)
{
    const std::string portFile = repository.beside("port");
    const BackgroundCommand server{{"python3", HSVN_TEST_SAMPLES "/../Support/listing-server.py", portFile}};
    for (int attempt = 0; attempt < 600 && !std::filesystem::exists(portFile); ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds{50});
    }
    const std::string url = "svn://127.0.0.1:" + readFile(portFile) + "/trunk";
    const char* const refusal = "The server lists an item that is not in '/trunk'";
    for (const bool fetchLocks : {false, true}) {
        std::vector<std::string> names;
        HSVNListingOptions options;
        options.fetchLocks = fetchLocks;
        const auto list = [&] {
            HSVNListItems(
                url, HSVNRevisionSpec::HEAD(), options, [&](const auto& found) { names.push_back(found.path); },
                client);
        };
        EXPECT_EQ(reasonOf<HSVNException>(list), refusal);
        EXPECT_THAT(names, testing::ElementsAre("", "in-trunk"));
    }
    std::vector<HSVNNodeRef> children;
    EXPECT_EQ(reasonOf<HSVNException>([&] {
                  HSVNDirectory::directoryAtPath(HSVNURL::URLWithString(url), HSVNRevisionSpec::HEAD(), &children,
                                                 client);
              }),
              refusal);
}
