// What no target, text or choice may be: each is refused by every operation before anything is changed, by an exception
// that names it, and none ends the process.

#include "HSVN.h"
#include "LoopbackServer.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <map>
#include <optional>
#include <random>
#include <sys/stat.h>

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

    /// A target that the library does not look at.
    static HSVNTarget verbatim(const std::string& text) { return HSVNTarget::verbatim(text); }
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
    const HSVNRevisionSpecRef peg = HSVNRevisionSpec::pegRevisionWithRevision(head);
    const std::pair<HSVNRevisionRef, HSVNRevisionRef> both{head, head};
};

std::vector<Operation> HostileArguments::newerOperations()
{
    const auto ignore = [](const auto&) {};
    const HSVNLogChoices logChoices{.pegRevision = head, .ranges = {{head, head}}};
    return {
        OPERATION("add", Changes, client->add(verbatim(target))),
        OPERATION("add -f", Changes, client->add(verbatim(target), {.force = true})),
        OPERATION("revert", Changes, client->revert(verbatim(target))),
        OPERATION("resolve", Changes, client->resolve(verbatim(target), {.depth = HSVNDepthInfinity})),
        OPERATION("find conflicts", Reads, client->conflicts(verbatim(target))),
        OPERATION("propset", Changes, client->setProperty(verbatim(target), "color", "red")),
        OPERATION("revpropset", Reads, client->setRevisionProperty(verbatim(target), "color", "red", head)),
        OPERATION("lock", Changes, client->lock(verbatim(target), {.comment = ""})),
        OPERATION("unlock", Changes, client->unlock(verbatim(target), {.breakLocks = true})),
        OPERATION("vacuum", Reads, client->vacuum(verbatim(target), {})),
        OPERATION("cleanup", Reads, client->cleanUp(verbatim(target))),
        OPERATION("upgrade", Reads, client->upgrade(verbatim(target))),
        OPERATION("relocate", Changes, client->relocate(verbatim(target), repository.url(), repository.url("trunk"))),
        OPERATION("relocate from", Reads, client->relocate(root, target, repository.url())),
        OPERATION("relocate to", Reads, client->relocate(root, repository.url(), target)),
        OPERATION("changelist", Changes,
                  client->addToChangelist(verbatim(target), "list", {.depth = HSVNDepthInfinity})),
        OPERATION("no changelist", Changes,
                  client->removeFromChangelists(verbatim(target), {.depth = HSVNDepthInfinity})),
        OPERATION("commit", Changes, client->commit(verbatim(target))),
        OPERATION("import", Changes, client->importTree(verbatim(target), repository.url("new"))),
        OPERATION("import to", Reads, client->importTree(item("dir"), verbatim(target))),
        OPERATION("mkdir", Changes, client->makeDirectories(verbatim(target))),
        OPERATION("mkdir -p", Changes, client->makeDirectories(verbatim(target), {.makeParents = true})),
        OPERATION("delete", Changes, client->remove(verbatim(target))),
        OPERATION("delete -f", Changes, client->remove(verbatim(target), {.force = true})),
        OPERATION("copy", Changes, client->copy({verbatim(target)}, item("new"))),
        OPERATION("copy to", Changes, client->copy({item("a.txt")}, verbatim(target))),
        OPERATION("copy -p to", Changes,
                  client->copy({item("a.txt")}, verbatim(target), {.asChild = true, .makeParents = true})),
        OPERATION("copy at URLs", Reads,
                  client->copy({{repository.url(), HSVNRevisionSpec::HEAD()}}, verbatim(target))),
        OPERATION("move", Changes, client->move(verbatim(target), item("new"))),
        OPERATION("move to", Changes, client->move(item("a.txt"), verbatim(target))),
        OPERATION("move at URLs", Reads, client->move(repository.url("trunk"), verbatim(target))),
        OPERATION("update", Changes, client->update(verbatim(target))),
        OPERATION("update -p", Changes, client->update(verbatim(target), head, {.makeParents = true})),
        OPERATION("checkout", Reads, client->checkout(verbatim(target), repository.beside("new"), spec)),
        OPERATION("checkout into", Changes, client->checkout(repository.url(), verbatim(target))),
        OPERATION("switch", Changes, client->switchTo(verbatim(target), repository.url(), spec)),
        OPERATION("switch to", Reads, client->switchTo(root, verbatim(target), spec)),
        OPERATION("export", Reads, client->exportTree(verbatim(target), repository.beside("new"))),
        OPERATION("export into", Changes, client->exportTree(root, verbatim(target), spec, {.overwrite = true})),
        OPERATION("merge trees", Reads,
                  client->mergeDifference({verbatim(target), head}, {verbatim(target), head}, root)),
        OPERATION("merge into", Changes,
                  client->mergeDifference({repository.url(), head}, {repository.url(), head}, verbatim(target))),
        OPERATION("merge changes", Reads, client->merge(verbatim(target), root)),
        OPERATION("merge changes into", Changes, client->merge(repository.url(), verbatim(target))),
        OPERATION("reintegrate", Reads, client->reintegrate(verbatim(target), root)),
        OPERATION("reintegrate into", Changes, client->reintegrate(repository.url(), verbatim(target))),
        OPERATION("diff", Reads, client->diff({verbatim(target), head}, {verbatim(target), head}, {}, ignore, ignore)),
        OPERATION("diff of revisions", Reads, client->diff({verbatim(target), peg}, both, {}, ignore, ignore)),
        OPERATION("tree diff", Reads, client->treeDiff({verbatim(target), head}, {verbatim(target), head})),
        OPERATION("tree diff of revisions", Reads, client->treeDiff({verbatim(target), peg}, both)),
        OPERATION("diff summary", Reads,
                  client->diffSummary({verbatim(target), head}, {verbatim(target), head}, {}, ignore)),
        OPERATION("diff summary of revisions", Reads, client->diffSummary({verbatim(target), peg}, both, {}, ignore)),
        OPERATION("blame", Reads, client->blame({verbatim(target), peg}, both, {}, ignore)),
        OPERATION("cat", Reads, client->contents(verbatim(target), spec, {}, ignore)),
        OPERATION("info", Reads, client->info(verbatim(target), spec, {}, ignore)),
        OPERATION("status", Reads, client->status(verbatim(target))),
        OPERATION("list", Reads, client->list(verbatim(target))),
        OPERATION("log", Reads, client->log(verbatim(target), logChoices)),
        OPERATION("log below", Reads, client->log(HSVNTargets::verbatim({repository.url(), target}), logChoices)),
        OPERATION("log beside", Reads, client->log(HSVNTargets::verbatim({root, target}), logChoices)),
        OPERATION("proplist", Reads, client->properties(verbatim(target))),
        OPERATION("propget", Reads, client->property(verbatim(target), "color")),
        OPERATION("revproplist", Reads, client->revisionProperties(verbatim(target), head)),
        OPERATION("revpropget", Reads, client->revisionProperty(verbatim(target), "color", head)),
        OPERATION("URL of", Reads, client->URLOfTarget(verbatim(target))),
        OPERATION("peg of", Parses, HSVNArguments::parse(target, client)),
        OPERATION("targets", Parses, HSVNArguments::canonicalTargets({target}, client)),
        OPERATION("conflict", Reads, HSVNConflictedItem{target, client}),
        OPERATION("compare files", Reads, HSVNDiff::ofFiles(verbatim(target), verbatim(target), client)),
        OPERATION("compare three files", Reads,
                  HSVNThreeWayDiff::ofFiles(verbatim(target), verbatim(target), verbatim(target), client)),
        OPERATION("compare items", Reads, HSVNDiff::ofItems({verbatim(target), head}, verbatim(target), client)),
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
    writeFile(item("older/.svn/entries"), "8\n");
    for (const auto& operation : everyOperation()) {
        if (operation.use != Use::Changes) {
            continue;
        }
        const auto before = everything();
        for (const char* name : {".svn", ".svn/", ".svn/wc.db", "./dir/../.svn", "dir/.svn", "nowhere/.svn", "link/x",
                                 "older/.svn/text-base/x"})
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
    std::filesystem::remove_all(item("older"));
}

TEST_P(HostileArguments, NoExternalIsPlacedInAnAdministrativeArea)
{
    for (const char* definition : {"^/trunk/dir .svn/tmp/evil", "^/trunk/a.txt .svn/evil", "^/trunk/dir dir/.svn/evil",
                                   "^/trunk/a.txt dir/.svn/evil"})
    {
        repository.change({"propset", "svn:externals", definition, "trunk"});
        for (const auto& call : std::vector<std::function<void()>>{
                 [&] { client->update(root); },
                 [&] { HSVNNode::updateNodes({at("")}, head, HSVNUpdateOptions::defaults(), client); },
                 [&] { client->checkout(repository.url("trunk"), repository.beside("new")); },
                 [&] { client->setProperty(item("dir"), "svn:externals", definition); }})
        {
            EXPECT_THAT(reasonOf<HSVNException>(call), HasSubstr("is in an administrative area")) << definition;
        }
        EXPECT_THROW(client->exportTree(repository.url("trunk"), repository.beside("exported")), HSVNException);
        for (const auto& [name, bytes] : everything()) {
            EXPECT_FALSE(name.ends_with("/evil")) << name;
        }
        std::filesystem::remove_all(repository.beside("new"));
        std::filesystem::remove_all(repository.beside("exported"));
    }
    EXPECT_EQ(HSVNString::externalDefinitionListValue("^/trunk/dir .svn/evil").size(), 1U) << "it can be shown";
}

TEST_P(HostileArguments, AWorkingCopyBelowAFolderOfThatNameIsNoneOfIt)
{
    std::filesystem::create_directories(repository.beside("outer/.svn"));
    root = repository.checkOut("outer/.svn/wc", "trunk");
    writeFile(item("new.txt"), "new\n");
    client->add(item("new.txt"));
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
        {"property", [&] { client->setProperty(item("a.txt"), cut, "x"); }},
        {"class property", [&] { HSVNNode::setProperty(cut, "x", at("a.txt"), client); }},
        {"read property", [&] { client->property(item("a.txt"), cut); }},
        {"revision property", [&] { client->setRevisionProperty(repository.url(), cut, "x", head); }},
        {"new revision property",
         [&] {
             client->makeDirectories(repository.url("new"), {.revisionProperties = {{cut, "x"}}});
         }},
        {"changelist", [&] { client->addToChangelist(item("a.txt"), cut); }},
        {"filter", [&] { client->revert(item("a.txt"), {.changelists = {cut}}); }},
        {"lock", [&] { client->lock(item("a.txt"), {.comment = cut}); }},
        {"class lock", [&] { HSVNNode::lockNodes({at("a.txt")}, cut, HSVNLockOptions::defaults(), client); }},
        {"pattern", [&] { HSVNString::matchesPatternInArray("a", {cut}); }},
        {"option", [&] { client->setOption(cut, "editor-cmd", HSVNConfigCategoryConfig, HSVNConfigSectionHelpers); }},
        {"option's name", [&] { client->setOption("x", cut, HSVNConfigCategoryConfig, HSVNConfigSectionHelpers); }},
        {"log message",
         [&] {
             delegate->message = cut;
             client->makeDirectories(repository.url("new"));
         }},
        {"message of a choice", [&] { client->remove(item("a.txt"), {.message = cut}); }},
    };
    for (const auto& [name, call] : calls) {
        EXPECT_THAT(reasonOf<HSVNInvalidArgumentException>(call), HasSubstr(R"("a\x00b")")) << name;
    }
    EXPECT_EQ(repository.youngest(), 1);
    EXPECT_EQ(status(), "");
    EXPECT_EQ(everything().size(), before.size());
    client->setProperty(item("a.txt"), "bytes", cut);
    EXPECT_EQ(HSVNNode::propertyWithName("bytes", at("a.txt"), spec, client), cut) << "a value may hold any byte";
    HSVNNode::setProperty("bytes", cut + cut, at("a.txt"), client);
    EXPECT_EQ(property("bytes", "a.txt"), cut + cut);
}

TEST_P(HostileArguments, TextsOfAnyKindAreTakenOrRefused)
{
    std::string deep;
    for (int depth = 0; depth < 40; ++depth) {
        deep += std::string(200, 'p') + '/';
    }
    const std::vector<std::string> texts{"",
                                         "a\nb",
                                         "a\x01",
                                         "\xe4",
                                         "\xc0\xae",
                                         "\xed\xa0\x80",
                                         "..",
                                         "a//b",
                                         "a/./b",
                                         "dir/",
                                         "file:///x/../y",
                                         "http://",
                                         "^/",
                                         "^/../x",
                                         "-r5",
                                         "%s%n",
                                         "((((",
                                         "[[[[*",
                                         std::string(300, 'n'),
                                         deep,
                                         std::string(std::size_t{1} << 20U, 'x')};
    const auto number = HSVNRevision::revisionWithNumber(1);
    using Call = std::function<void(const std::string&)>;
    const std::vector<std::pair<const char*, Call>> calls{
        {"property", [&](const auto& text) { client->setProperty(item("a.txt"), text, text, {.force = true}); }},
        {"externals", [&](const auto& text) { client->setProperty(item("dir"), "svn:externals", text); }},
        {"ignores", [&](const auto& text) { client->setProperty(item("dir"), "svn:global-ignores", text); }},
        {"merges", [&](const auto& text) { client->setProperty(root, "svn:mergeinfo", text, {.force = true}); }},
        {"revision property", [&](const auto& text) { client->revisionProperty(repository.url(), text, number); }},
        {"changelist", [&](const auto& text) { client->addToChangelist(item("a.txt"), text); }},
        {"filter", [&](const auto& text) { client->revert(root, {.changelists = {text}}); }},
        {"lock", [&](const auto& text) { client->lock(item("a.txt"), {.comment = text}); }},
        {"message", [&](const auto& text) { client->makeDirectories(repository.url("new/x"), {.message = text}); }},
        {"pattern", [&](const auto& text) { client->list(repository.url(), spec, {.patterns = {text}}); }},
        {"argument", [&](const auto& text) { client->checkBlameArguments({text}); }},
        {"option",
         [&](const auto& text) { client->setOption(text, "global-ignores", HSVNConfigCategoryConfig, "miscellany"); }},
        {"new directory", [&](const auto& text) { client->makeDirectories(item(text), {.makeParents = true}); }},
        {"relocation", [&](const auto& text) { client->relocate(root, repository.url(), text); }},
        {"patch",
         [&](const auto& text) {
             writeFile(repository.beside("p"), text);
             client->patch(repository.beside("p"), root);
         }},
    };
    for (const auto& [name, call] : calls) {
        for (const auto& text : texts) {
            try {
                call(text);
                client->status(root);
            } catch (const HSVNPlatformException& exception) {
                EXPECT_NE(exception.reason(), "") << name;
                const auto* const told = dynamic_cast<const HSVNException*>(&exception);
                EXPECT_FALSE(told != nullptr && told->status() == 235000) << name << ": " << exception.reason();
            }
        }
        EXPECT_FALSE(isLocked()) << name;
    }
    EXPECT_EQ(repository.youngest(), 1);
}

TEST_P(HostileArguments, DepthsThatAreNoneAreRefused)
{
    const auto ignore = [](const auto&) {};
    const auto number = HSVNRevision::revisionWithNumber(1);
    const auto setDepth = [](HSVNDepth depth) { return [depth](auto& options) { options.setDepth(depth); }; };
    using Call = std::function<void(HSVNDepth)>;
    const std::vector<std::pair<const char*, Call>> calls{
        WITH_DEPTH("add", client->add(item("dir"), {.depth = depth, .force = true})),
        WITH_DEPTH("revert", client->revert(item("dir"), {.depth = depth})),
        WITH_DEPTH("resolve", client->resolve(root, {.depth = depth})),
        WITH_DEPTH("conflicts", client->conflicts(root, {.depth = depth})),
        WITH_DEPTH("propset", client->setProperty(root, "c", "x", {.depth = depth})),
        WITH_DEPTH("changelist", client->addToChangelist(root, "x", {.depth = depth})),
        WITH_DEPTH("no changelist", client->removeFromChangelists(root, {.depth = depth})),
        WITH_DEPTH("commit", client->commit(root, {.depth = depth})),
        WITH_DEPTH("import", client->importTree(item("dir"), repository.url("new"), {.depth = depth})),
        WITH_DEPTH("update", client->update(root, head, {.depth = depth})),
        WITH_DEPTH("checkout", client->checkout(repository.url(), repository.beside("new"), spec, {.depth = depth})),
        WITH_DEPTH("switch", client->switchTo(root, repository.url("trunk"), spec, {.depth = depth})),
        WITH_DEPTH("export", client->exportTree(repository.url(), repository.beside("new"), spec, {.depth = depth})),
        WITH_DEPTH("merge", client->mergeDifference({repository.url("trunk"), number}, {repository.url("trunk"), head},
                                                    root, {.depth = depth})),
        WITH_DEPTH("diff", client->diffSummary({root, HSVNRevision::BASE()}, {root, HSVNRevision::WORKING()},
                                               {.depth = depth}, ignore)),
        WITH_DEPTH("status", client->status(root, {.depth = depth})),
        WITH_DEPTH("info", client->info(root, spec, {.depth = depth}, ignore)),
        WITH_DEPTH("list", client->list(root, spec, {.depth = depth})),
        WITH_DEPTH("proplist", client->properties(root, spec, {.depth = depth})),
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
            EXPECT_THAT(
                reasonOf<HSVNInvalidArgumentException>([&, &call = call] { call(static_cast<HSVNDepth>(depth)); }),
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
    client->commit(root, {.depth = HSVNDepthUnknown});
    EXPECT_EQ(repository.contents("trunk/dir/c.txt"), "changed\n");
}

TEST_P(HostileArguments, AReceiverIsNeeded)
{
    const std::vector<std::pair<const char*, std::function<void()>>> calls{
        CALL("conflicts", client->conflicts(root, {}, {})),
        CALL("summary", client->diffSummary({root, head}, {root, head}, {}, nullptr)),
        CALL("summary of revisions", client->diffSummary(root, both, {}, nullptr)),
        CALL("blame", client->blame(item("a.txt"), both, {}, nullptr)),
        CALL("cat", client->contents(item("a.txt"), spec, {}, nullptr)),
        CALL("info", client->info(root, spec, {}, nullptr)),
        CALL("status", client->status(root, {}, {})),
        CALL("list", client->list(root, spec, {}, {})),
        CALL("log", client->log(root, {}, {})),
        CALL("proplist", client->properties(root, spec, {}, {})),
        CALL("unified", HSVNDiff::ofTexts("", "", client).writeUnified("", "", nullptr)),
        CALL("lines", HSVNDiff::ofTexts("", "", client).readLines(HSVNDiffSide::Original, {}, nullptr)),
        CALL("merge", HSVNThreeWayDiff::ofTexts("", "", "", client).merge({}, {}, nullptr)),
        CALL("conflict", HSVNThreeWayDiff::ofTexts("", "", "", client).showConflicts({}, nullptr)),
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
            EXPECT_THAT(reasonOf<HSVNException>([&] { client->makeDirectories(urls, {.makeParents = makeParents}); }),
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
    for (const auto& call : std::vector<std::function<void()>>{
             [&] { client->setRevisionProperty(repository.url(), "x", "y", unspecified); },
             [&] { client->revisionProperty(repository.url(), "x", unspecified); },
             [&] { client->revisionProperties(repository.url(), unspecified); }})
    {
        EXPECT_EQ(reasonOf<HSVNException>(call), "A revision is needed");
    }
    const HSVNRevisionRef negative = std::make_shared<HSVNNumberedRevision>(-7);
    for (const auto& call : std::vector<std::function<void()>>{
             [&] { client->update(item("a.txt"), negative); },
             [&] { HSVNNode::updateNodes({at("a.txt")}, negative, HSVNUpdateOptions::defaults(), client); },
             [&] { client->contents(repository.url("trunk/a.txt"), negative); },
             [&] {
                 client->merge(repository.url("trunk"), {{negative, head}}, item("a.txt"));
             },
             [&] { client->status(item("a.txt"), {.contactRepository = true, .revision = negative}); }})
    {
        EXPECT_THAT(reasonOf<HSVNAssertionException>(call), HasSubstr("number >= 0"));
    }
    EXPECT_THAT(reasonOf([&] { client->copy({}, item("new")); }), HasSubstr("[sources count] > 0"));
    EXPECT_THAT(reasonOf([&] { client->move({}, item("new")); }), HasSubstr("[sources count] > 0"));
    using Sources = std::vector<std::string>;
    const std::string whole = repository.url();
    for (const auto& [sources, into, words] : std::vector<std::tuple<Sources, std::string, std::string>>{
             {{whole}, whole, "into itself"},
             {{whole, repository.url("trunk")}, whole, "into its own child"},
             {{whole}, repository.url("new"), "into its own child"}})
    {
        EXPECT_THAT(reasonOf<HSVNUnsupportedFeatureException>([&, &sources = sources, &into = into] {
                        client->move(HSVNTargets::verbatim(sources), into, {.asChild = into == whole, .message = ""});
                    }),
                    HasSubstr(words));
    }
    EXPECT_EQ(client->info(repository.url("trunk"), spec).size(), 1U) << "without a revision, a URL is one of HEAD";
    const auto log = [&](const std::vector<std::string>& targets) {
        client->log(HSVNTargets::verbatim(targets), {.ranges = {{head, head}}});
    };
    EXPECT_NO_THROW(log({repository.url(), ".", "trunk//dir/"}));
    EXPECT_EQ(reasonOf<HSVNException>([&] { log({repository.url(), "/trunk"}); }), "'/trunk' is not a relative path");
}

TEST_P(HostileArguments, NobodyWaitsForAPipeInThePlaceOfAFile)
{
    std::filesystem::remove(item("a.txt"));
    ASSERT_EQ(mkfifo(item("a.txt").c_str(), 0600), 0);
    for (const auto& call : std::vector<std::function<void()>>{
             [&] { client->contents(item("a.txt"), HSVNRevisionSpec::WORKING()); },
             [&] { client->setProperty(item("a.txt"), "svn:eol-style", "native"); },
             [&] {
                 HSVNDiff::ofItems({item("a.txt"), HSVNRevision::BASE()}, item("a.txt"), client);
             }})
    {
        EXPECT_EQ(reasonOf<HSVNException>(call), "'" + item("a.txt") + "' is not a file");
    }
}

/// Has had enough after a second.
struct Impatient
{
    bool queryContinue(HSVNContext&) const { return std::chrono::steady_clock::now() < end; }
    std::chrono::steady_clock::time_point end = std::chrono::steady_clock::now() + std::chrono::seconds{1};
};

TEST_P(HostileArguments, AServerThatTakesNothingIsLeft)
{
    const auto address = repository.beside("address");
    const BackgroundCommand server{{"python3", "-c",
                                    "import os, sys, time\n"
                                    "sys.path.insert(0, sys.argv[1])\n"
                                    "import hostileserver\n"
                                    "with hostileserver.running() as url:\n"
                                    "    open(sys.argv[2] + '.new', 'w').write(url)\n"
                                    "    os.rename(sys.argv[2] + '.new', sys.argv[2])\n"
                                    "    time.sleep(600)",
                                    HSVN_TEST_SAMPLES "/../CommandLine", address}};
    std::string sent(std::size_t{1} << 25U, '\0');
    std::ranges::generate(sent, [random = std::minstd_rand{}]() mutable { return static_cast<char>(random() >> 8U); });
    writeFile(repository.beside("sent/file"), sent);
    const auto answers = std::make_shared<HSVNClientDelegateFor<Impatient>>();
    const auto impatient = std::make_shared<HSVNClient>(bundleOfLine(line()), answers);
    EXPECT_THROW(impatient->importTree(repository.beside("sent"), awaitFile(address) + "/full/new", {.message = ""}),
                 HSVNOperationCancelledException);
}

TEST_P(HostileArguments, ACleanUpThatCannotReadAFolderLeavesNoLock)
{
    const auto odd = item("dir/\xff");
    for (const auto& call : std::vector<std::function<void()>>{
             [&] { client->cleanUp(root); }, [&] { HSVNDirectory::cleanUpWorkingCopyAtPath(at(""), client); }})
    {
        writeFile(odd, "");
        EXPECT_THROW(call(), HSVNException);
        std::filesystem::remove(odd);
        EXPECT_FALSE(isLocked());
    }
}

TEST_P(HostileArguments, ARelocationPassesOverExternalsThatAreGone)
{
    mustRun({"svn", "propset", "-q", "svn:externals", "^/trunk/dir gone\n^/trunk/dir kept\n", item("dir")});
    mustRun({"svn", "update", "-q", root});
    std::filesystem::remove_all(item("dir/gone"));
    std::filesystem::rename(repository.path(), repository.beside("moved"));
    const std::string moved = "file://" + repository.beside("moved");
    client->relocate(root, repository.url(), moved);
    for (const char* name : {"", "dir/kept"}) {
        EXPECT_EQ(mustRun({"svn", "info", "--no-newline", "--show-item", "repos-root-url", item(name)}), moved);
    }
}

TEST_P(HostileArguments, AServerListsNothingButWhatItIsAskedFor)
{
    const std::string portFile = repository.beside("port");
    const BackgroundCommand server{{"python3", HSVN_TEST_SAMPLES "/../Support/listing-server.py", portFile}};
    const std::string url = "svn://127.0.0.1:" + awaitFile(portFile) + "/trunk";
    const char* const refusal = "The server lists an item that is not in '/trunk'";
    for (const bool fetchLocks : {false, true}) {
        std::vector<std::string> names;
        const auto list = [&] {
            client->list(url, HSVNRevisionSpec::HEAD(), {.fetchLocks = fetchLocks},
                         [&](const HSVNNodeRef& found) { names.push_back(found->name().value_or("")); });
        };
        EXPECT_EQ(reasonOf<HSVNException>(list), refusal);
        EXPECT_THAT(names, testing::ElementsAre(".", "in-trunk"));
    }
    std::vector<HSVNNodeRef> children;
    EXPECT_EQ(reasonOf<HSVNException>([&] {
                  HSVNDirectory::directoryAtPath(HSVNURL::URLWithString(url), HSVNRevisionSpec::HEAD(), &children,
                                                 client);
              }),
              refusal);
}
