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
        {"add", Use::Changes, [=, this](const auto& target) { HSVNAddItem(target, {}, client); }},
        {"add -f", Use::Changes, [=, this](const auto& target) { HSVNAddItem(target, {.force = true}, client); }},
        {"revert", Use::Changes, [=, this](const auto& target) { HSVNRevertItems({target}, {}, client); }},
        {"resolve", Use::Changes,
         [=, this](const auto& target) {
             HSVNResolveItem(target, HSVNDepthInfinity, HSVNConflictChoiceMerged, client);
         }},
        {"find conflicts", Use::Reads,
         [=, this](const auto& target) { HSVNFindConflicts(target, HSVNDepthInfinity, ignore, client); }},
        {"propset", Use::Changes,
         [=, this](const auto& target) { HSVNChangeProperty("color", "red", {target}, {}, client); }},
        {"revpropset", Use::Reads,
         [=, this](const auto& target) { HSVNChangeRevisionProperty("color", "red", target, head, false, client); }},
        {"lock", Use::Changes, [=, this](const auto& target) { HSVNLockItems({target}, "", false, client); }},
        {"unlock", Use::Changes, [=, this](const auto& target) { HSVNUnlockItems({target}, true, client); }},
        {"vacuum", Use::Reads, [=, this](const auto& target) { HSVNVacuumFolder(target, {}, client); }},
        {"cleanup", Use::Reads, [=, this](const auto& target) { HSVNCleanUpFolder(target, {}, client); }},
        {"upgrade", Use::Reads, [=, this](const auto& target) { HSVNUpgradeFolder(target, client); }},
        {"relocate", Use::Changes,
         [=, this](const auto& target) {
             HSVNRelocateFolder(target, repository.url(), repository.url("trunk"), false, client);
         }},
        {"relocate from", Use::Reads,
         [=, this](const auto& target) { HSVNRelocateFolder(root, target, repository.url(), false, client); }},
        {"relocate to", Use::Reads,
         [=, this](const auto& target) { HSVNRelocateFolder(root, repository.url(), target, false, client); }},
        {"changelist", Use::Changes,
         [=, this](const auto& target) { HSVNChangeChangelist("list", {target}, HSVNDepthInfinity, {}, client); }},
        {"no changelist", Use::Changes,
         [=, this](const auto& target) {
             HSVNChangeChangelist(std::nullopt, {target}, HSVNDepthInfinity, {}, client);
         }},
        {"commit", Use::Changes, [=, this](const auto& target) { HSVNCommitItems({target}, {}, {}, client); }},
        {"import", Use::Changes,
         [=, this](const auto& target) { HSVNImportItem(target, repository.url("new"), {}, {}, client); }},
        {"import to", Use::Reads,
         [=, this](const auto& target) { HSVNImportItem(item("dir"), target, {}, {}, client); }},
        {"mkdir", Use::Changes, [=, this](const auto& target) { HSVNMakeFolders({target}, false, {}, client); }},
        {"mkdir -p", Use::Changes, [=, this](const auto& target) { HSVNMakeFolders({target}, true, {}, client); }},
        {"delete", Use::Changes, [=, this](const auto& target) { HSVNDeleteItems({target}, {}, {}, client); }},
        {"delete -f", Use::Changes,
         [=, this](const auto& target) { HSVNDeleteItems({target}, {.force = true}, {}, client); }},
        {"copy", Use::Changes,
         [=, this](const auto& target) {
             HSVNCopyItems({{target, spec}}, item("new"), {}, {}, client);
         }},
        {"copy to", Use::Changes,
         [=, this](const auto& target) {
             HSVNCopyItems({{item("a.txt"), spec}}, target, {}, {}, client);
         }},
        {"copy -p to", Use::Changes,
         [=, this](const auto& target) {
             HSVNCopyItems({{item("a.txt"), spec}}, target, {.asChild = true, .makeParents = true}, {}, client);
         }},
        {"copy at URLs", Use::Reads,
         [=, this](const auto& target) {
             HSVNCopyItems({{repository.url(), HSVNRevisionSpec::HEAD()}}, target, {}, {}, client);
         }},
        {"move", Use::Changes, [=, this](const auto& target) { HSVNMoveItems({target}, item("new"), {}, {}, client); }},
        {"move to", Use::Changes,
         [=, this](const auto& target) { HSVNMoveItems({item("a.txt")}, target, {}, {}, client); }},
        {"move at URLs", Use::Reads,
         [=, this](const auto& target) { HSVNMoveItems({repository.url("trunk")}, target, {}, {}, client); }},
        {"update", Use::Changes, [=, this](const auto& target) { HSVNUpdateItems({target}, head, {}, client); }},
        {"update -p", Use::Changes,
         [=, this](const auto& target) { HSVNUpdateItems({target}, head, {.makeParents = true}, client); }},
        {"checkout", Use::Reads,
         [=, this](const auto& target) {
             HSVNCheckOutItem(target, repository.beside("new"), spec, {.depth = HSVNDepthInfinity}, client);
         }},
        {"checkout into", Use::Changes,
         [=, this](const auto& target) {
             HSVNCheckOutItem(repository.url(), target, HSVNRevisionSpec::HEAD(), {.depth = HSVNDepthInfinity}, client);
         }},
        {"switch", Use::Changes,
         [=, this](const auto& target) { HSVNSwitchItem(target, repository.url(), spec, {}, client); }},
        {"switch to", Use::Reads, [=, this](const auto& target) { HSVNSwitchItem(root, target, spec, {}, client); }},
        {"export", Use::Reads,
         [=, this](const auto& target) { HSVNExportItem(target, repository.beside("new"), spec, {}, client); }},
        {"export into", Use::Changes,
         [=, this](const auto& target) { HSVNExportItem(root, target, spec, {.overwrite = true}, client); }},
        {"merge trees", Use::Reads,
         [=, this](const auto& target) {
             HSVNMergeTrees({target, head}, {target, head}, root, {}, client);
         }},
        {"merge into", Use::Changes,
         [=, this](const auto& target) {
             HSVNMergeTrees({repository.url(), head}, {repository.url(), head}, target, {}, client);
         }},
        {"merge changes", Use::Reads,
         [=, this](const auto& target) { HSVNMergeChanges(target, head, std::nullopt, root, {}, client); }},
        {"merge changes into", Use::Changes,
         [=, this](const auto& target) { HSVNMergeChanges(repository.url(), head, std::nullopt, target, {}, client); }},
        {"reintegrate", Use::Reads, [=, this](const auto& target) { HSVNReintegrate(target, head, root, {}, client); }},
        {"reintegrate into", Use::Changes,
         [=, this](const auto& target) { HSVNReintegrate(repository.url(), head, target, {}, client); }},
        {"diff", Use::Reads,
         [=, this](const auto& target) {
             HSVNCompareItems({target, head}, {target, head}, {}, {ignore, ignore}, client);
         }},
        {"diff of revisions", Use::Reads,
         [=, this](const auto& target) {
             HSVNCompareRevisions(target, head, {head, head}, {}, {ignore, ignore}, client);
         }},
        {"diff summary", Use::Reads,
         [=, this](const auto& target) {
             HSVNSummarizeItems({target, head}, {target, head}, {}, ignore, client);
         }},
        {"diff summary of revisions", Use::Reads,
         [=, this](const auto& target) {
             HSVNSummarizeRevisions(target, head, {head, head}, {}, ignore, client);
         }},
        {"blame", Use::Reads,
         [=, this](const auto& target) {
             HSVNReadBlame(target, head, {head, head}, {}, ignore, client);
         }},
        {"cat", Use::Reads, [=, this](const auto& target) { HSVNReadContents(target, spec, true, ignore, client); }},
        {"info", Use::Reads, [=, this](const auto& target) { HSVNReadItemInfo(target, spec, {}, ignore, client); }},
        {"status", Use::Reads, [=, this](const auto& target) { HSVNScanItemStatus(target, head, {}, ignore, client); }},
        {"list", Use::Reads, [=, this](const auto& target) { HSVNListItems(target, spec, {}, ignore, client); }},
        {"log", Use::Reads, [=, this](const auto& target) { HSVNReadLog({target}, head, logOptions, ignore, client); }},
        {"log below", Use::Reads,
         [=, this](const auto& target) {
             HSVNReadLog({repository.url(), target}, head, logOptions, ignore, client);
         }},
        {"log beside", Use::Reads,
         [=, this](const auto& target) {
             HSVNReadLog({root, target}, head, logOptions, ignore, client);
         }},
        {"proplist", Use::Reads,
         [=, this](const auto& target) { HSVNReadProperties(target, spec, {}, ignore, client); }},
        {"propget", Use::Reads, [=, this](const auto& target) { HSVNReadProperty("color", target, spec, {}, client); }},
        {"revproplist", Use::Reads,
         [=, this](const auto& target) { HSVNReadRevisionProperties(target, head, nullptr, client); }},
        {"revpropget", Use::Reads,
         [=, this](const auto& target) { HSVNReadRevisionProperty("color", target, head, nullptr, client); }},
        {"URL of", Use::Reads, [=, this](const auto& target) { HSVNArguments::URLOfTarget(target, client); }},
        {"peg of", Use::Parses, [=, this](const auto& target) { HSVNArguments::parse(target, client); }},
        {"targets", Use::Parses, [=, this](const auto& target) { HSVNArguments::canonicalTargets({target}, client); }},
        {"conflict", Use::Reads,
         [=, this](const auto& target) {
             HSVNConflictedItem{target, client};
         }},
        {"compare files", Use::Reads,
         [=, this](const auto& target) { HSVNCompareFiles(target, target, "", "", ignore, client); }},
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
        {"-add", Use::Changes, [=, this](const auto& target) { Node::add(pathOf(target), client); }},
        {"-revert", Use::Changes,
         [=, this](const auto& target) { Node::revertNodes({pathOf(target)}, HSVNRevertOptions::defaults(), client); }},
        {"-resolve", Use::Changes,
         [=, this](const auto& target) {
             Node::resolveNodeAtPath(pathOf(target), HSVNResolveOptions::defaults(), client);
         }},
        {"-update", Use::Changes,
         [=, this](const auto& target) {
             Node::updateNodes({pathOf(target)}, head, HSVNUpdateOptions::defaults(), client);
         }},
        {"-commit", Use::Changes,
         [=, this](const auto& target) {
             Node::commitChangesToNodes({pathOf(target)}, HSVNCommitOptions::defaults(), client);
         }},
        {"-checkout", Use::Reads,
         [=, this](const auto& target) {
             Directory::checkoutDirectoryAtURL(urlOf(target), outside("new"), HSVNCheckOutOptions::defaults(), client);
         }},
        {"-checkout into", Use::Changes,
         [=, this](const auto& target) {
             Directory::checkoutDirectoryAtURL(url("trunk"), pathOf(target), HSVNCheckOutOptions::defaults(), client);
         }},
        {"-propset", Use::Changes,
         [=, this](const auto& target) { Node::setProperty("color", "red", pathOf(target), client); }},
        {"-import", Use::Changes,
         [=, this](const auto& target) {
             Node::importNodeAtPath(pathOf(target), url("new"), HSVNImportOptions::defaults(), client);
         }},
        {"-import to", Use::Reads,
         [=, this](const auto& target) {
             Node::importNodeAtPath(at("dir"), urlOf(target), HSVNImportOptions::defaults(), client);
         }},
        {"-export", Use::Reads,
         [=, this](const auto& target) {
             Node::exportNodeAtPath(pathOf(target), outside("new"), HSVNExportOptions::defaults(), client);
         }},
        {"-export into", Use::Changes,
         [=, this](const auto& target) {
             Node::exportNodeAtPath(at(""), pathOf(target), HSVNExportOptions::defaults(), client);
         }},
        {"-merge", Use::Reads,
         [=, this](const auto& target) {
             Node::mergeNodeAtPath(pathOf(target), head, pathOf(target), head, at(""), HSVNMergeOptions::defaults(),
                                   client);
         }},
        {"-merge into", Use::Changes,
         [=, this](const auto& target) {
             Node::mergeNodeAtPath(url("trunk"), head, url("trunk"), head, pathOf(target), HSVNMergeOptions::defaults(),
                                   client);
         }},
        {"-delete", Use::Changes,
         [=, this](const auto& target) { Node::deleteNodes({pathOf(target)}, HSVNDeleteOptions::defaults(), client); }},
        {"-delete -f", Use::Changes,
         [=, this](const auto& target) { Node::deleteNodes({pathOf(target)}, byForce, client); }},
        {"-delete second", Use::Changes,
         [=, this](const auto& target) {
             Node::deleteWorkingCopyNodesAtPaths({at("a.txt"), pathOf(target)}, byForce, client);
         }},
        {"-delete for overwriting", Use::Changes,
         [=, this](const auto& target) { Node::deleteNodeAtPath(pathOf(target), at("a.txt"), client); }},
        {"-move", Use::Changes,
         [=, this](const auto& target) { Node::moveNodeAtPath(pathOf(target), into, moving, client); }},
        {"-move out", Use::Changes,
         [=, this](const auto& target) { Node::moveNodeAtPath(pathOf(target), outside("new"), moving, client); }},
        {"-move to", Use::Changes,
         [=, this](const auto& target) { Node::moveNodeAtPath(at("a.txt"), pathOf(target), moving, client); }},
        {"-copy", Use::Changes,
         [=, this](const auto& target) { Node::copyNodeAtPath(pathOf(target), into, copying, client); }},
        {"-copy out", Use::Changes,
         [=, this](const auto& target) { Node::copyNodeAtPath(pathOf(target), outside("new"), copying, client); }},
        {"-copy to", Use::Changes,
         [=, this](const auto& target) { Node::copyNodeAtPath(at("a.txt"), pathOf(target), copying, client); }},
        {"-move batch", Use::Changes,
         [=, this](const auto& target) {
             Node::moveNodes({pathOf(target)}, {into}, false, moving, nullptr, nullptr, client);
         }},
        {"-copy batch to", Use::Changes,
         [=, this](const auto& target) {
             Node::moveNodes({at("a.txt")}, {pathOf(target)}, true, copying, nullptr, nullptr, client);
         }},
        {"-lock", Use::Changes,
         [=, this](const auto& target) { Node::lockNodes({pathOf(target)}, "", HSVNLockOptions::defaults(), client); }},
        {"-unlock", Use::Changes,
         [=, this](const auto& target) { Node::unlockNodes({pathOf(target)}, HSVNUnlockOptions::defaults(), client); }},
        {"-mkdir", Use::Changes,
         [=, this](const auto& target) { Directory::createDirectoryAtPath(pathOf(target), client); }},
        {"-propget", Use::Reads,
         [=, this](const auto& target) { Node::propertyWithName("color", pathOf(target), spec, client); }},
        {"-proplist", Use::Reads,
         [=, this](const auto& target) { Node::propertiesForNodeAtPath(pathOf(target), spec, client); }},
        {"-kind", Use::Reads, [=, this](const auto& target) { Node::kindOfNodeAtPath(pathOf(target), spec, client); }},
        {"-URL", Use::Reads, [=, this](const auto& target) { Node::URLForNodeAtPath(pathOf(target), client); }},
        {"-node", Use::Reads, [=, this](const auto& target) { Node::nodeAtPath(pathOf(target), spec, client); }},
        {"-log", Use::Reads,
         [=, this](const auto& target) {
             Node::readLogForNodeAtPath(pathOf(target), nullptr, HSVNLogOptions::defaults(), client);
         }},
        {"-directory", Use::Reads,
         [=, this](const auto& target) { Directory::directoryAtPath(pathOf(target), spec, client); }},
        {"-children", Use::Reads,
         [=, this](const auto& target) {
             std::vector<HSVNNodeRef> children;
             Directory::directoryAtPath(pathOf(target), spec, &children, client);
         }},
        {"-status", Use::Reads,
         [=, this](const auto& target) {
             Directory::statusForNodesInDirectoryAtPath(pathOf(target), HSVNStatusOptions::defaults(), client);
         }},
        {"-cleanup", Use::Reads,
         [=, this](const auto& target) { Directory::cleanUpWorkingCopyAtPath(pathOf(target), client); }},
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
        {"add", [&](auto depth) { HSVNAddItem(item("dir"), {.depth = depth, .force = true}, client); }},
        {"revert", [&](auto depth) { HSVNRevertItems({item("dir")}, {.depth = depth, .changelists = {}}, client); }},
        {"resolve", [&](auto depth) { HSVNResolveItem(root, depth, HSVNConflictChoiceMerged, client); }},
        {"conflicts", [&](auto depth) { HSVNFindConflicts(root, depth, ignore, client); }},
        {"propset",
         [&](auto depth) { HSVNChangeProperty("c", "x", {root}, {.depth = depth, .changelists = {}}, client); }},
        {"changelist", [&](auto depth) { HSVNChangeChangelist("x", {root}, depth, {}, client); }},
        {"no changelist", [&](auto depth) { HSVNChangeChangelist(std::nullopt, {root}, depth, {}, client); }},
        {"commit", [&](auto depth) { HSVNCommitItems({root}, {.depth = depth, .changelists = {}}, {}, client); }},
        {"import",
         [&](auto depth) { HSVNImportItem(item("dir"), repository.url("new"), {.depth = depth}, {}, client); }},
        {"update", [&](auto depth) { HSVNUpdateItems({root}, head, {.depth = depth}, client); }},
        {"checkout",
         [&](auto depth) {
             HSVNCheckOutItem(repository.url(), repository.beside("new"), spec, {.depth = depth}, client);
         }},
        {"switch", [&](auto depth) { HSVNSwitchItem(root, repository.url("trunk"), spec, {.depth = depth}, client); }},
        {"export",
         [&](auto depth) {
             HSVNExportItem(repository.url(), repository.beside("new"), spec, {.depth = depth}, client);
         }},
        {"merge",
         [&](auto depth) {
             HSVNMergeTrees({repository.url("trunk"), number}, {repository.url("trunk"), head}, root, {.depth = depth},
                            client);
         }},
        {"diff",
         [&](auto depth) {
             HSVNComparisonOptions options;
             options.depth = depth;
             HSVNSummarizeItems({root, HSVNRevision::BASE()}, {root, HSVNRevision::WORKING()}, options, ignore, client);
         }},
        {"status",
         [&](auto depth) {
             HSVNItemStatusOptions options;
             options.depth = depth;
             HSVNScanItemStatus(root, head, options, ignore, client);
         }},
        {"info",
         [&](auto depth) {
             HSVNItemInfoOptions options;
             options.depth = depth;
             HSVNReadItemInfo(root, spec, options, ignore, client);
         }},
        {"list",
         [&](auto depth) {
             HSVNListingOptions options;
             options.depth = depth;
             HSVNListItems(root, spec, options, ignore, client);
         }},
        {"proplist",
         [&](auto depth) {
             HSVNPropertyReadingOptions options;
             options.depth = depth;
             HSVNReadProperties(root, spec, options, ignore, client);
         }},
        {"class update",
         [&](auto depth) { HSVNNode::updateNodes({at("")}, head, with<HSVNUpdateOptions>(setDepth(depth)), client); }},
        {"class commit",
         [&](auto depth) {
             HSVNNode::commitChangesToNodes({at("")}, with<HSVNCommitOptions>(setDepth(depth)), client);
         }},
        {"class checkout",
         [&](auto depth) {
             HSVNDirectory::checkoutDirectoryAtURL(url("trunk"), outside("new"),
                                                   with<HSVNCheckOutOptions>(setDepth(depth)), client);
         }},
        {"class export",
         [&](auto depth) {
             HSVNNode::exportNodeAtPath(url("trunk"), outside("new"), with<HSVNExportOptions>(setDepth(depth)), client);
         }},
        {"class merge",
         [&](auto depth) {
             HSVNNode::mergeNodeAtPath(url("trunk"), number, url("trunk"), head, at(""),
                                       with<HSVNMergeOptions>(setDepth(depth)), client);
         }},
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
        {"conflicts", [&] { HSVNFindConflicts(root, HSVNDepthInfinity, nullptr, client); }},
        {"summary",
         [&] {
             HSVNSummarizeItems({root, head}, {root, head}, {}, nullptr, client);
         }},
        {"summary of revisions",
         [&] {
             HSVNSummarizeRevisions(root, head, {head, head}, {}, nullptr, client);
         }},
        {"blame",
         [&] {
             HSVNReadBlame(item("a.txt"), head, {head, head}, {}, nullptr, client);
         }},
        {"cat", [&] { HSVNReadContents(item("a.txt"), spec, true, HSVNContentsReceiver{}, client); }},
        {"info", [&] { HSVNReadItemInfo(root, spec, {}, nullptr, client); }},
        {"status", [&] { HSVNScanItemStatus(root, head, {}, nullptr, client); }},
        {"list", [&] { HSVNListItems(root, spec, {}, nullptr, client); }},
        {"log", [&] { HSVNReadLog({root}, head, {}, nullptr, client); }},
        {"proplist", [&] { HSVNReadProperties(root, spec, {}, nullptr, client); }},
        {"files", [&] { HSVNCompareFiles(item("a.txt"), item("b.txt"), "", "", HSVNContentsReceiver{}, client); }},
        {"conflict", [&] { HSVNShowConflicts({}, {}, HSVNContentsReceiver{}, client); }},
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
