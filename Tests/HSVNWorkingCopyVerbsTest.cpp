// Verbs on working copies, locks and properties, by both of their doors: the context's verb and the class operation.

#include "AlteredBundle.h"
#include "HSVN.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"

#include <functional>
#include <gmock/gmock.h>
#include <utility>

using testing::ElementsAre;
using testing::Pair;

namespace {

using Call = std::function<void()>;

/// Class and text of what the call throws.
std::pair<std::string, std::string> failureOf(const Call& call)
{
    try {
        call();
    } catch (const HSVNException& exception) {
        return {exception.className(), exception.reason()};
    } catch (const HSVNPlatformException& exception) {
        return {"not Subversion's", exception.reason()};
    }
    return {"none", ""};
}

class WorkingCopyVerbs : public WorkingCopyTest
{
  protected:
    using Node = HSVNNode;

    void SetUp() override
    {
        if (isOlderLine()) {
            client = clientWithoutExtensions(GetParam());
            client->setDelegate(delegate);
        }
        writeFile(item("new.txt"), "");
        std::filesystem::create_directories(repository.beside("plain"));
    }
    const HSVNRevisionSpecRef working = HSVNRevisionSpec::WORKING();
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, WorkingCopyVerbs, everyLine(), lineName);

TEST_P(WorkingCopyVerbs, FailAsTheClassOperationsDo)
{
    const auto unforced = HSVNAddOptions::defaults();
    unforced->setForce(false);
    const auto gone = at("gone");
    const auto unversioned = at("new.txt");
    struct Door
    {
        const char* condition;
        Call operation;
        Call verb;
    };
    const std::vector<Door> doors{
        {"add nothing", [&] { Node::add(gone, client); }, [&] { client->add(gone); }},
        {"add a versioned item", [&] { Node::add(at("a.txt"), unforced, client); }, [&] { client->add(at("a.txt")); }},
        {"add outside", [&] { Node::add(outside("plain"), client); }, [&] { client->add(outside("plain")); }},
        {"add a URL", [&] { Node::add(url("trunk"), client); }, [&] { client->add(url("trunk")); }},
        {"add in the administrative area", [&] { Node::add(at(".svn/x"), client); },
         [&] { client->add(at(".svn/x")); }},
        {"revert outside", [&] { Node::revertNodes({outside("plain")}, HSVNRevertOptions::defaults(), client); },
         [&] { client->revert(outside("plain"), {.depth = HSVNDepthInfinity}); }},
        {"revert a URL", [&] { Node::revertNodes({url("trunk")}, HSVNRevertOptions::defaults(), client); },
         [&] { client->revert(url("trunk")); }},
        {"resolve nothing", [&] { Node::resolveNodeAtPath(gone, HSVNResolveOptions::defaults(), client); },
         [&] { client->resolve(gone, {.depth = HSVNDepthInfinity}); }},
        {"set of nothing", [&] { Node::setProperty("x", "y", gone, client); },
         [&] { client->setProperty(gone, "x", "y"); }},
        {"set of an unversioned item", [&] { Node::setProperty("x", "y", unversioned, client); },
         [&] { client->setProperty(unversioned, "x", "y"); }},
        {"set by a bad name", [&] { Node::setProperty("?", "y", at("a.txt"), client); },
         [&] { client->setProperty(at("a.txt"), "?", "y"); }},
        {"set to a bad value", [&] { Node::setProperty("svn:eol-style", "y", at("a.txt"), client); },
         [&] { client->setProperty(at("a.txt"), "svn:eol-style", "y"); }},
        {"get of an unversioned item", [&] { Node::propertyWithName("x", unversioned, working, client); },
         [&] { client->property(unversioned, "x", working); }},
        {"list of nothing", [&] { Node::propertiesForNodeAtPath(gone, working, client); },
         [&] { client->properties(gone, working); }},
        {"list of an unversioned item", [&] { Node::propertiesForNodeAtPath(unversioned, working, client); },
         [&] { client->properties(unversioned, working); }},
        {"lock an unversioned item",
         [&] { Node::lockNodes({unversioned}, std::nullopt, HSVNLockOptions::defaults(), client); },
         [&] { client->lock(unversioned); }},
        {"unlock what is not locked", [&] { Node::unlockNodes({at("a.txt")}, HSVNUnlockOptions::defaults(), client); },
         [&] { client->unlock(at("a.txt")); }},
        {"clean up outside", [&] { HSVNDirectory::cleanUpWorkingCopyAtPath(outside("plain"), client); },
         [&] { client->cleanUp(outside("plain")); }},
    };
    for (const auto& door : doors) {
        EXPECT_EQ(failureOf(door.verb), failureOf(door.operation)) << door.condition;
    }
    EXPECT_EQ(status(), "?       new.txt\n");
}

TEST_P(WorkingCopyVerbs, WorkOnEveryLine)
{
    client->add({at("new.txt"), at("a.txt")}, {.depth = HSVNDepthEmpty, .force = true});
    client->setProperty({at("a.txt"), at("dir/c.txt")}, "color", "red");
    EXPECT_EQ(status(), " M      a.txt\n M      dir/c.txt\nA       new.txt\n");
    EXPECT_EQ(client->property(at(""), "color", working, {.depth = HSVNDepthInfinity}).values,
              (std::vector<std::pair<std::string, std::string>>{{item("a.txt"), "red"}, {item("dir/c.txt"), "red"}}));
    std::vector<std::string> paths;
    client->properties(at(""), working, {.depth = HSVNDepthInfinity}, [&](const HSVNItemProperties& found) {
        EXPECT_THAT(found.properties, ElementsAre(Pair("color", "red")));
        paths.push_back(found.path);
        return false;
    });
    EXPECT_EQ(paths.size(), 1U) << "the receiver stopped it";
    EXPECT_EQ(client->properties(at(""), working, {.depth = HSVNDepthInfinity}).size(), 2U);
    client->revert(at(""), {.depth = HSVNDepthInfinity});
    EXPECT_EQ(status(), "?       new.txt\n");

    client->lock({at("a.txt"), at("b.txt")}, {.comment = "mine"});
    EXPECT_EQ(status(), "     K  a.txt\n     K  b.txt\n?       new.txt\n");
    client->unlock({at("a.txt"), at("b.txt")});
    repository.put("trunk/b.txt", "theirs\n");
    writeFile(item("b.txt"), "mine\n");
    client->update(at(""));
    ASSERT_TRUE(hasConflict());
    client->resolve(at(""), {.depth = HSVNDepthInfinity});
    client->cleanUp(at(""));
    EXPECT_FALSE(hasConflict()) << status();
}

TEST_P(WorkingCopyVerbs, TakeTheEmptyPathForTheCurrentDirectory)
{
    const auto former = std::filesystem::current_path();
    std::filesystem::current_path(root);
    writeFile(item("a.txt"), "changed\n");
    const Call calls[] = {[&] { EXPECT_EQ(client->info("").size(), 1U); },
                          [&] { EXPECT_EQ(client->status("").size(), 2U); },
                          [&] { client->setProperty("", "color", "red"); },
                          [&] { EXPECT_EQ(client->property("", "color", working).values.size(), 1U); },
                          [&] { client->revert("", {.depth = HSVNDepthInfinity}); },
                          [&] { client->resolve("", {.depth = HSVNDepthInfinity}); },
                          [&] { client->cleanUp(""); },
                          [&] { client->update(""); },
                          [&] { client->commit("", {.message = "nothing"}); }};
    for (const auto& call : calls) {
        EXPECT_EQ(failureOf(call).second, "");
    }
    std::filesystem::current_path(former);
    EXPECT_EQ(status(), "?       new.txt\n");
    if (isOlderLine()) {
        EXPECT_THROW(client->exportTree(item("a.txt"), ""), HSVNUnsupportedFeatureException);
    }
}

TEST_P(WorkingCopyVerbs, RefuseWhatTheLineCannotDo)
{
    const std::string here = item("dir");
    const auto url = repository.url();
    const auto head = HSVNRevision::HEAD();
    const auto merged = HSVNResolutionChoice::WorkingText;
    const std::vector<std::pair<std::string, Call>> calls{
        {"add]: 'depth'", [&] { client->add(here, {.depth = HSVNDepthFiles, .force = true}); }},
        {"add]: 'automaticProperties'", [&] { client->add(here, {.force = true, .automaticProperties = false}); }},
        {"revert]: 'depth'", [&] { client->revert(here, {.depth = HSVNDepthImmediates}); }},
        {"revert]: 'changelists'", [&] { client->revert(here, {.changelists = {"x"}}); }},
        {"revert]: 'clearChangelists'", [&] { client->revert(here, {.clearChangelists = true}); }},
        {"revert]: 'metadataOnly'", [&] { client->revert(here, {.metadataOnly = true}); }},
        {"revert]: 'keepAddedItems'", [&] { client->revert(here, {.keepAddedItems = false}); }},
        {"resolve]: 'choice'", [&] { client->resolve(here, {.choice = merged}); }},
        {"resolve]: 'depth'", [&] { client->resolve(here, {.depth = HSVNDepthFiles}); }},
        {"setProperty]: 'depth'", [&] { client->setProperty(here, "x", "y", {.depth = HSVNDepthFiles}); }},
        {"setProperty]: 'changelists'", [&] { client->setProperty(here, "x", "y", {.changelists = {"z"}}); }},
        {"property]: 'inherited'", [&] { client->property(here, "x", working, {.inherited = true}); }},
        {"property]: 'depth'", [&] { client->property(here, "x", working, {.depth = HSVNDepthFiles}); }},
        {"properties]: 'changelists'", [&] { client->properties(here, working, {.changelists = {"z"}}); }},
        {"cleanUp]: 'breakLocks'", [&] { client->cleanUp(here, {.breakLocks = false}); }},
        {"cleanUp]: 'fixTimestamps'", [&] { client->cleanUp(here, {.fixTimestamps = false}); }},
        {"cleanUp]: 'clearWebCache'", [&] { client->cleanUp(here, {.clearWebCache = false}); }},
        {"cleanUp]: 'vacuumPristines'", [&] { client->cleanUp(here, {.vacuumPristines = false}); }},
        {"cleanUp]: 'includeExternals'", [&] { client->cleanUp(here, {.includeExternals = true}); }},
        {"vacuum]", [&] { client->vacuum(root, {}); }},
        {"upgrade]", [&] { client->upgrade(root); }},
        {"relocate]", [&] { client->relocate(root, url, url); }},
        {"addToChangelist]", [&] { client->addToChangelist(item("a.txt"), "list"); }},
        {"removeFromChangelists]", [&] { client->removeFromChangelists(item("a.txt")); }},
        {"conflicts]", [&] { client->conflicts(here); }},
        {"revisionProperties]", [&] { client->revisionProperties(url, head); }},
        {"revisionProperty]", [&] { client->revisionProperty(url, "svn:log", head); }},
        {"URLOfTarget]", [&] { client->URLOfTarget(here); }},
    };
    for (const auto& [refused, call] : calls) {
        const auto told = "[HSVNContext " + refused + " is not offered by the bundle of Subversion " + GetParam();
        EXPECT_EQ(reasonOf<HSVNUnsupportedFeatureException>(call), isOlderLine() ? told : "(nothing was thrown)");
    }
    const auto beyond = HSVNResolutionChoice::AcceptCurrentState;
    EXPECT_EQ(reasonOf<HSVNInvalidArgumentException>([&] { client->resolve(here, {.choice = beyond}); }),
              "Invalid conflict choice 8");
}

TEST_P(WorkingCopyVerbs, LeaveWhatALinkInTheirPlaceLeadsTo)
{
    const auto target = repository.beside("elsewhere");
    const auto forced = HSVNDeleteOptions::defaults();
    forced->setForce(true);
    const auto removal = [&](const char* name) { return [&, name] { client->remove(at(name), {.force = true}); }; };
    const auto deletion = [&](const char* name) {
        return [&, name] { HSVNNode::deleteNodes({at(name)}, forced, client); };
    };
    const auto vacuuming = [&](HSVNVacuumChoices choices) { return [&, choices] { client->vacuum(root, choices); }; };
    mustRun({"svn", "mkdir", "--quiet", item("added")});
    mustRun({"svn", "copy", "--quiet", item("dir"), item("copied")});
    const std::vector<std::tuple<const char*, std::string, Call>> calls{
        {"remove a versioned directory", "dir", removal("dir")},
        {"delete a versioned directory", "dir", deletion("dir")},
        {"remove an added directory", "added", removal("added")},
        {"delete an added directory", "added", deletion("added")},
        {"remove a copied directory", "copied", removal("copied")},
        {"delete a copied directory", "copied", deletion("copied")},
        {"remove an unversioned one", "new link", removal("new link")},
        {"delete an unversioned one", "new link", deletion("new link")},
        {"vacuum unversioned items", "dir", vacuuming({.removeUnversioned = true})},
        {"vacuum ignored items", "dir", vacuuming({.removeIgnored = true})},
        {"vacuum a new link", "new link", vacuuming({.removeUnversioned = true})},
        {"purge", "dir", [&] { HSVNDirectory::purgeAdminDirectoriesInPath(at("")); }},
    };
    const auto kept = repository.beside("kept");
    std::filesystem::rename(root, kept);
    for (const auto& [name, place, call] : calls) {
        SCOPED_TRACE(name);
        std::filesystem::remove_all(root);
        std::filesystem::copy(kept, root, std::filesystem::copy_options::recursive);
        writeFile(target + "/file", "precious");
        writeFile(target + "/inner/build.o", "precious");
        std::filesystem::create_directories(target + "/.svn");
        std::filesystem::remove_all(item(place));
        std::filesystem::create_directory_symlink(target, item(place));
        failureOf(call);
        EXPECT_EQ(readFile(target + "/file"), "precious");
        EXPECT_EQ(readFile(target + "/inner/build.o"), "precious");
        EXPECT_TRUE(std::filesystem::exists(target + "/.svn"));
    }
}
