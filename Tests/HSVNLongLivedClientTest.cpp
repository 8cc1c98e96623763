#include "HSVNAddOptions.h"
#include "HSVNCommitOptions.h"
#include "HSVNDirectory.h"
#include "HSVNFile.h"
#include "HSVNItemInfo.h"
#include "HSVNItemProperties.h"
#include "HSVNNode.h"
#include "HSVNRevertOptions.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "HSVNUpdateOptions.h"
#include "ReasonOf.h"
#include "WorkingCopyDatabase.h"
#include "WorkingCopyTest.h"

#include <functional>

// A client that has worked on a working copy answers as a fresh one does, whatever other programs did to it since.

namespace {

namespace files = std::filesystem;

struct ChangeOnDisk
{
    const char* name;
    /// Where the operations work, below the working copy.
    const char* place;
    void (*prepare)(const TestRepository& repository, const std::string& root);
    void (*happen)(const TestRepository& repository, const std::string& root);
};

void checkOut(const TestRepository& repository, const std::string& item, const std::string& folder)
{
    mustRun({"svn", "checkout", "--quiet", repository.url(item), folder});
}

void nothing(const TestRepository&, const std::string&) {}

void makePlainFolder(const TestRepository&, const std::string& root) { writeFile(root + "/nested/a.txt", "plain\n"); }

void checkOutNested(const TestRepository& repository, const std::string& root)
{
    files::remove_all(root + "/nested");
    checkOut(repository, "trunk", root + "/nested");
}

const ChangeOnDisk changes[] = {
    {"deleted", "", nothing, [](const TestRepository&, const std::string& root) { files::remove_all(root); }},
    {"replaced", "", nothing,
     [](const TestRepository& repository, const std::string& root) {
         files::remove_all(root);
         checkOut(repository, "branch", root);
     }},
    {"restored from a backup", "",
     [](const TestRepository&, const std::string& root) {
         mustRun({"cp", "-a", root, root + ".backup"});
     },
     [](const TestRepository&, const std::string& root) {
         mustRun({"svn", "propset", "--quiet", "after", "the backup", root + "/a.txt"});
         files::remove_all(root);
         mustRun({"cp", "-a", root + ".backup", root});
     }},
    {"checked out anew", "", nothing,
     [](const TestRepository& repository, const std::string& root) {
         files::remove_all(root);
         checkOut(repository, "trunk", root);
     }},
    {"upgraded to a later line's format", "", nothing,
     [](const TestRepository&, const std::string& root) {
         alterWorkingCopyDatabase(root, {"PRAGMA user_version = 99"});
     }},
    {"made where nothing was", "", [](const TestRepository&, const std::string& root) { files::remove_all(root); },
     [](const TestRepository& repository, const std::string& root) { checkOut(repository, "trunk", root); }},
    {"made beside another", "/../late", nothing,
     [](const TestRepository& repository, const std::string& root) {
         checkOut(repository, "trunk", root + "/../late");
     }},
    {"nested appeared", "/nested", makePlainFolder, checkOutNested},
    {"nested vanished", "/nested", checkOutNested,
     [](const TestRepository& repository, const std::string& root) {
         files::remove_all(root + "/nested");
         makePlainFolder(repository, root);
     }},
    {"external checked out anew", "/external",
     [](const TestRepository&, const std::string& root) {
         mustRun({"svn", "propset", "--quiet", "svn:externals", "^/trunk external", root});
         mustRun({"svn", "update", "--quiet", root});
     },
     [](const TestRepository& repository, const std::string& root) {
         files::remove_all(root + "/external");
         checkOut(repository, "trunk", root + "/external");
     }},
};

using LivedOperation = std::function<std::string(const std::string& place, const HSVNContextRef& context)>;

HSVNPathRef livedPath(const std::string& text) { return HSVNLocalPath::pathWithString(text); }

std::string textOf(const std::vector<HSVNRevisionNumber>& revisions)
{
    std::string text;
    for (const auto revision : revisions) {
        text += std::to_string(revision) + ' ';
    }
    return text;
}

const std::pair<const char*, LivedOperation> livedOperations[] = {
    {"info",
     [](const std::string& place, const HSVNContextRef& context) {
         const auto node = HSVNNode::nodeAtPath(livedPath(place + "/a.txt"), HSVNRevisionSpec::UNSPECIFIED(), context);
         return node->URL()->string() + ' ' + std::to_string(node->revision());
     }},
    {"status scan",
     [](const std::string& place, const HSVNContextRef& context) {
         return HSVNDirectory::workingCopyWithStatusAtPath(livedPath(place), context)->description();
     }},
    {"update",
     [](const std::string& place, const HSVNContextRef& context) {
         return textOf(
             HSVNNode::updateNodes({livedPath(place)}, HSVNRevision::HEAD(), HSVNUpdateOptions::defaults(), context));
     }},
    {"commit",
     [](const std::string& place, const HSVNContextRef& context) {
         return std::to_string(
             HSVNNode::commitChangesToNodes({livedPath(place)}, HSVNCommitOptions::defaults(), context));
     }},
    {"add",
     [](const std::string& place, const HSVNContextRef& context) {
         HSVNNode::add(livedPath(place + "/new.txt"), context);
         return std::string{"added"};
     }},
    {"revert",
     [](const std::string& place, const HSVNContextRef& context) {
         HSVNNode::revertNodes({livedPath(place)}, HSVNRevertOptions::defaults(), context);
         return std::string{"reverted"};
     }},
    {"reading of information",
     [](const std::string& place, const HSVNContextRef& context) {
         const auto items = context->info(place + "/a.txt");
         return items.at(0).url.value_or("") + ' ' + std::to_string(items.at(0).revision);
     }},
    {"scan of item status",
     [](const std::string& place, const HSVNContextRef& context) {
         return std::to_string(context->status(place).size());
     }},
    {"commit of items", [](const std::string& place,
                           const HSVNContextRef& context) { return std::to_string(context->commit(place).revision); }},
    {"update of items",
     [](const std::string& place, const HSVNContextRef& context) { return textOf(context->update(place)); }},
    {"revert of items",
     [](const std::string& place, const HSVNContextRef& context) {
         context->revert(place);
         return std::string{"reverted"};
     }},
};

/// A repository and a working copy of it, as they were before a change, put back for each turn.
class LivedPlace
{
  public:
    explicit LivedPlace(const ChangeOnDisk& change)
    {
        writeFile(repository.beside("text"), "a\n");
        repository.change({"mkdir", "trunk", "put", repository.beside("text"), "trunk/a.txt", "mkdir", "branch", "put",
                           repository.beside("text"), "branch/a.txt"});
        change.prepare(repository, repository.checkOut("wc", "trunk"));
        files::create_directory(_kept);
        for (const char* const name : {"repository", "wc", "wc.backup"}) {
            if (files::exists(repository.beside(name))) {
                files::rename(repository.beside(name), _kept / name);
            }
        }
    }

    /// The working copy's folder.
    std::string putBack() const
    {
        files::remove_all(repository.beside("late"));
        files::remove_all(repository.beside("wc"));
        for (const auto& folder : files::directory_iterator{_kept}) {
            const auto place = repository.beside(folder.path().filename().string());
            files::remove_all(place);
            files::copy(folder, place, files::copy_options::recursive | files::copy_options::copy_symlinks);
        }
        return repository.beside("wc");
    }

    const TestRepository repository;

  private:
    const files::path _kept{repository.beside("kept")};
};

/// One turn: a working copy, known to the client or not, is changed and then worked on.
struct Turn
{
    const TestRepository& repository;
    std::string root;
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    HSVNClientRef client;

    Turn(const HSVNVersion& line, const LivedPlace& given)
        : repository{given.repository}, root{given.putBack()}, client{std::make_shared<HSVNClient>(bundleOfLine(line),
                                                                                                   delegate)}
    {
    }

    void meet(const std::string& place) const
    {
        for (const char* const name : {"status scan", "info", "scan of item status"}) {
            for (const auto& [operation, run] : livedOperations) {
                if (operation == std::string_view{name}) {
                    // Of a folder that is not versioned yet: the client has asked all the same.
                    reasonOf<HSVNPlatformException>([&, &run = run] { run(root, client); });
                    reasonOf<HSVNPlatformException>([&, &run = run] { run(root + place, client); });
                }
            }
        }
    }

    /// What the operation answers and leaves, without the name of this turn's folder.
    std::string outcome(const ChangeOnDisk& change, const LivedOperation& run) const
    {
        const std::string place = root + change.place;
        if (files::exists(place + "/a.txt")) {
            writeFile(place + "/a.txt", "changed\n");
            writeFile(place + "/new.txt", "new\n");
        }
        std::string text;
        try {
            text = run(place, client);
        } catch (const HSVNPlatformException& exception) {
            text = exception.className() + ' ' + exception.reason();
        }
        text += '\n' + runCommand({"svn", "status", root}).output + runCommand({"svn", "status", place}).output;
        const std::string folder = repository.beside("");
        for (auto at = text.find(folder); at != std::string::npos; at = text.find(folder, at)) {
            text.replace(at, folder.size(), "<>");
        }
        for (auto at = text.find("0x"); at != std::string::npos; at = text.find("0x", at)) {
            text.erase(at, std::string_view{text}.find_first_not_of("0123456789abcdefx", at) - at);
        }
        return text;
    }
};

class LongLivedClient : public testing::TestWithParam<const char*>
{
};

} // namespace

TEST_P(LongLivedClient, AnswersAsAFreshOneWhateverOtherProgramsDid)
{
    const auto line = HSVNVersion::versionWithString(GetParam());
    for (const auto& change : changes) {
        const LivedPlace given{change};
        for (const auto& [name, run] : livedOperations) {
            SCOPED_TRACE(std::string{change.name} + ", " + name);
            const auto outcomeFor = [&, &run = run](bool isKept) {
                const Turn turn{line, given};
                if (isKept) {
                    turn.meet(change.place);
                }
                change.happen(turn.repository, turn.root);
                return turn.outcome(change, run);
            };
            EXPECT_EQ(outcomeFor(true), outcomeFor(false));
        }
    }
}

TEST_P(LongLivedClient, LetsGoOfWorkingCopiesWhenAsked)
{
    const LivedPlace given{changes[0]};
    const Turn turn{HSVNVersion::versionWithString(GetParam()), given};
    const auto openDatabases = [&] {
        int count = 0;
        for (const auto& descriptor : files::directory_iterator{"/proc/self/fd"}) {
            std::error_code gone;
            count += files::read_symlink(descriptor, gone).string().starts_with(turn.root) ? 1 : 0;
        }
        return count;
    };
    for (int round = 0; round < 2; ++round) {
        turn.meet("");
        EXPECT_EQ(openDatabases(), 1) << "the next call is faster";
        turn.client->closeWorkingCopies();
        EXPECT_EQ(openDatabases(), 0);
    }
    turn.client->setBundle(nullptr);
    EXPECT_NO_THROW(turn.client->closeWorkingCopies());
}

TEST_P(LongLivedClient, CleansUpAFolderThatItKnowsAlready)
{
    const LivedPlace given{changes[0]};
    const Turn turn{HSVNVersion::versionWithString(GetParam()), given};
    const auto folder = turn.root + "/folder";
    const auto path = HSVNLocalPath::pathWithString(folder);
    mustRun({"svn", "mkdir", "--quiet", folder});
    turn.meet("/folder");
    EXPECT_NO_THROW(HSVNDirectory::cleanUpWorkingCopyAtPath(path, turn.client));
    turn.meet("/folder");
    if (std::string_view{GetParam()} == "1.14") {
        EXPECT_NO_THROW(turn.client->cleanUp(folder));
        turn.meet("/folder");
    }
    mustRun({"svn", "propset", "--quiet", "color", "red", folder, turn.root});
    int told = 0;
    const auto cleanUp = [&](const HSVNItemProperties&) {
        ++told;
        HSVNDirectory::cleanUpWorkingCopyAtPath(HSVNLocalPath::pathWithString(turn.root), turn.client);
    };
    turn.client->properties(turn.root, HSVNRevisionSpec::UNSPECIFIED(), {.depth = HSVNDepthInfinity}, cleanUp);
    EXPECT_EQ(told, 2) << "of a call that goes on around the clean-up";
}

TEST_P(LongLivedClient, WorksOnAfterACleanUpWhoeverMadeIt)
{
    const std::pair<const char*, void (*)(const Turn&)> cleaners[] = {
        {"itself",
         [](const Turn& turn) { HSVNDirectory::cleanUpWorkingCopyAtPath(livedPath(turn.root), turn.client); }},
        {"another program",
         [](const Turn& turn) {
             mustRun({"svn", "cleanup", turn.root});
         }},
    };
    const LivedPlace given{changes[0]};
    for (const auto& [name, cleanUp] : cleaners) {
        const Turn turn{HSVNVersion::versionWithString(GetParam()), given};
        const auto update = [&] {
            HSVNNode::updateNodes({livedPath(turn.root)}, HSVNRevision::HEAD(), HSVNUpdateOptions::defaults(),
                                  turn.client);
        };
        const auto toWriteIn = turn.root + "/.svn/tmp";
        files::remove(turn.root + "/a.txt");
        files::rename(toWriteIn, turn.root + ".tmp");
        EXPECT_THROW(update(), HSVNPlatformException) << "amid its work, in which it stays";
        files::rename(turn.root + ".tmp", toWriteIn);
        cleanUp(turn);
        EXPECT_NO_THROW(update()) << name;
    }
}

TEST(ClientThatPlacesAnExternal, CommitsWhatIsChangedInIt)
{
    TestRepository repository;
    writeFile(repository.beside("text"), "a\n");
    repository.change({"mkdir", "trunk", "mkdir", "lib", "put", repository.beside("text"), "lib/a.txt"});
    const std::string root = repository.checkOut("wc", "trunk");
    const auto client = std::make_shared<HSVNClient>();
    client->setProperty(HSVNTargets{root}, "svn:externals", "^/lib placed");
    client->update(root);
    writeFile(root + "/placed/a.txt", "changed\n");
    client->commit(root, {.includeExternals = true, .message = "both"});
    EXPECT_EQ(client->contents(repository.url("lib/a.txt")), "changed\n");
}

TEST(ClientThatKeepsOthersOut, LetsThemInFromItsNextOperationOnWhenToldTo)
{
    TestRepository repository;
    repository.change({"mkdir", "trunk"});
    const std::string root = repository.checkOut("wc", "trunk");
    const auto client = std::make_shared<HSVNClient>();
    for (const auto& [setting, isIn] : {std::pair{"true", false}, std::pair{"false", true}}) {
        client->setOption(setting, "exclusive-locking", HSVNConfigCategoryConfig, "working-copy");
        client->setProperty(HSVNTargets{root}, "color", setting);
        const auto other = runCommand({"svn", "status", "--config-option=config:working-copy:busy-timeout=1", root});
        EXPECT_EQ(other.exitCode == 0, isIn) << other.errors;
    }
}

INSTANTIATE_TEST_SUITE_P(Lines, LongLivedClient, testing::Values("1.6", "1.14"), lineName);
