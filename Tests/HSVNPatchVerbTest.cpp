// Patches as Subversion applies them. HSVN_PATCH_ROUNDS says how many generated ones are applied (12),
// HSVN_PATCH_READINGS how many are read beside Subversion (400).

#include "EnvironmentNumber.h"
#include "HSVNPatchedItem.h"
#include "HSVNStatusCodes.h"
#include "HSVNTreeDiff.h"
#include "Internal/PatchReader.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <map>
#include <random>
#include <set>
#include <sstream>

using testing::ElementsAre;

namespace {

namespace files = std::filesystem;

std::string shown(const HSVNPatchedItem& item)
{
    std::string text = files::path{item.path}.filename().string() + (item.isSkipped() ? " skipped" : "");
    for (const auto& hunk : item.hunks) {
        text += std::string{", "} + HSVNTextOfHunkOutcome(hunk.outcome);
        text += hunk.propertyName ? " (" + *hunk.propertyName + ")" : "";
    }
    return text;
}

/// Everything below a folder that is not Subversion's: names, and contents of files.
std::map<std::string, std::string> treeOf(const std::string& folder)
{
    std::map<std::string, std::string> tree;
    for (files::recursive_directory_iterator entry{folder}; entry != files::recursive_directory_iterator{}; ++entry) {
        if (entry->path().filename() == ".svn") {
            entry.disable_recursion_pending();
            continue;
        }
        const auto name = entry->path().lexically_relative(folder).string();
        tree[name] = entry->is_symlink()     ? files::read_symlink(entry->path()).string()
                     : entry->is_directory() ? "a directory"
                                             : readFile(entry->path());
    }
    return tree;
}

/// What svn prints of hunks that are not just where the patch says.
std::vector<std::string> oddOutcomesIn(const std::string& printed)
{
    std::vector<std::string> outcomes;
    std::istringstream lines{printed};
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(">") && line.find(" offset 0") == std::string::npos) {
            outcomes.emplace_back(line.find("rejected hunk") != std::string::npos     ? "rejected"
                                  : line.find("already applied") != std::string::npos ? "already there"
                                  : line.find(" fuzz ") != std::string::npos          ? "applied with fuzz"
                                                                                      : "applied at an offset");
        }
    }
    return outcomes;
}

/// The same of what the verb answers.
std::vector<std::string> oddOutcomesOf(const std::vector<HSVNPatchedItem>& items)
{
    std::vector<std::string> outcomes;
    for (const auto& item : items) {
        for (const auto& hunk : item.hunks) {
            if (hunk.outcome != HSVNHunkOutcome::Applied) {
                outcomes.emplace_back(HSVNTextOfHunkOutcome(hunk.outcome));
            }
        }
    }
    return outcomes;
}

class PatchVerb : public WorkingCopyTest
{
  protected:
    std::string patchFile(const std::string& text) const
    {
        std::string path = repository.beside("changes.patch");
        writeFile(path, text);
        return path;
    }
    std::vector<std::string> patched(const std::string& text, const HSVNPatchChoices& choices = {})
    {
        std::vector<std::string> items;
        for (const auto& item : client->patch(patchFile(text), root, choices)) {
            items.push_back(shown(item));
        }
        return items;
    }
};

std::string change(const std::string& name, const std::string& hunk)
{
    return "--- " + name + "\n+++ " + name + '\n' + hunk;
}
constexpr const char* oneToTwo = "@@ -1 +1 @@\n-one\n+two\n";
std::string addition(const std::string& name) { return change(name, "@@ -0,0 +1 @@\n+evil\n"); }
std::string move(const std::string& from, const std::string& to)
{
    return "diff --git a/" + from + " b/" + to + "\nrename from " + from + "\nrename to " + to + '\n';
}
std::string link(const std::string& name, const std::string& header)
{
    return "diff --git a/" + name + " b/" + name + '\n' + header + "--- a/" + name + "\n+++ b/" + name +
           "\n@@ -0,0 +1 @@\n+../outside\n\\ No newline at end of file\n";
}

struct Attack
{
    const char* name;
    std::string patch;
    bool isRefused = true; ///< otherwise what is hostile in it is skipped
    HSVNPatchChoices choices{};
};

// A working copy with links "in" to its own directory, "out" and "known" to the one outside, and "admin" to ".svn".
const Attack attacks[] = {
    {"DotDot", addition("../outside/x"), false},
    {"DotDotWithin", addition("dir/../../outside/x"), false},
    {"DotDotAfterStrip", addition("a/../outside/x"), false, {.strip = 1}},
    {"MoveOutside", move("a.txt", "../outside/x"), false},
    {"BelowLink", addition("out/x"), false},
    {"BelowVersionedLink", addition("known/x"), false},
    {"BelowLinkOfThePatch", link("new", "new file mode 120000\n") + addition("new/x"), false},
    {"Dangling", addition("dangling"), false},
    {"MoveBelowLink", move("a.txt", "out/x")},
    {"MoveBelowVersionedLink", move("a.txt", "known/x")},
    {"MoveBelowDeepLink", move("a.txt", "out/y/x")},
    {"MoveBelowLinkOfThePatch", link("new", "new file mode 120000\n") + move("a.txt", "new/x")},
    {"MoveBelowSpecialOfThePatch",
     change("new",
            "@@ -0,0 +1 @@\n+link ../outside\n\\ No newline at end of file\nAdded: svn:special\n## -0,0 +1 ##\n+*\n") +
         move("a.txt", "new/x")},
    {"MoveBelowMovedLink", move("known", "new") + move("a.txt", "new/x")},
    {"MoveBelowLinkByPlus", move("a.txt", "x") + "--- a/a.txt\n+++ b/out/x\n@@ -1 +1 @@\n-a.txt\n+b\n"},
    {"MoveBackBelowLink", move("out/x", "a.txt"), true, {.reverse = true}},
    {"MoveBelowLinkAfterStrip", move("p/a.txt", "p/out/x"), true, {.strip = 1}},
    {"Administrative", addition(".svn/x")},
    {"AdministrativeBelow", addition("dir/.svn/x")},
    {"AdministrativeByGit", "diff --git a/.svn/x b/.svn/x\nnew file mode 100644\n"},
    {"AdministrativeByMove", move("a.txt", ".svn/x")},
    {"AdministrativeByDots", addition("dir/../.svn/./x")},
    {"AdministrativeByStrip", addition("p/.svn/x"), true, {.strip = 1}},
    {"AdministrativeAbandoned", "--- dir/.svn/x\nnoise\ndiff --git a/q b/r\n"},
    {"MoveIntoAdministrativeByLink", move("a.txt", "admin/x")},
    {"NUL", addition(std::string{".svn/x\0y", 8})},
    {"NULInPlus", std::string{"--- a.txt\n+++ a.txt\0/x\n@@ -1 +1 @@\n-a.txt\n+b\n", 45}},
    {"LongName", addition(std::string(20000, 'x'))},
    {"PropertyWithoutName", change("a.txt", "## -0,0 +1 ##\n+x\n")},
    {"PropertyWithoutNameAtTheEnd", change("a.txt", "## -1 +1 ##\n"), true, {.ignoreWhitespace = true}},
    {"PropertyWithImpossibleLines", change("a.txt", "Added: color\n## -0,0 +1,2 ##\n-x\n")},
    {"PropertyWithImpossibleLinesBack", change("a.txt", "Added: color\n## -1 +0,0 ##\n+x\n"), true, {.reverse = true}},
    {"PropertyWithImpossibleName", change("a.txt", "Added: /\n## -0,0 +1 ##\n+x\n")},
    // Where Subversion's reader of headers goes on over what looks like an item here.
    {"HeaderWithinHunk", "diff --git a/a.txt b/a.txt\nIndex: f\n--- f\n+++ f\n@@ -1,2 +1,2 @@\n--- a/dir/.svn/x\n+++ "
                         "b/dir/.svn/x\n@@ -0,0 +1 @@\n+e\n"},
    {"HeaderWithinProperty", "Index: f\nAdded: p\n## -1 +1 ##\n--- dir/.svn/x\n+++ dir/.svn/x\n@@ -0,0 +1 @@\n+e\n"},
};

class HostilePatches : public PatchVerb
{
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, PatchVerb, testing::Values("1.14"), lineName);
INSTANTIATE_TEST_SUITE_P(Lines, HostilePatches, testing::Values("1.14"), lineName);

TEST_P(HostilePatches, ChangeNothingThatIsNotTheWorkingCopys)
{
    const std::string outside = repository.beside("outside");
    writeFile(outside + "/kept", "kept\n");
    files::create_directory_symlink(outside, item("known"));
    mustRun({"svn", "add", "--quiet", item("known")});
    commitAll();
    files::create_directory_symlink(outside, item("out"));
    files::create_directory_symlink("dir", item("in"));
    files::create_directory_symlink(".svn", item("admin"));
    files::create_symlink(outside + "/new", item("dangling"));
    auto all = std::vector<Attack>(std::begin(attacks), std::end(attacks));
    all.push_back({"Absolute", addition(outside + "/x"), false});
    all.push_back({"AbsoluteMove", move("a.txt", outside + "/x"), false});
    all.push_back({"AbsoluteAdministrative", addition(item("dir/.svn/x"))});
    for (const auto& attack : all) {
        SCOPED_TRACE(attack.name);
        const auto before = treeOf(repository.beside(""));
        const auto administrative = mustRun({"ls", "-A", root + "/.svn", root + "/dir"});
        for (const bool dryRun : {true, false}) {
            auto choices = attack.choices;
            choices.dryRun = dryRun;
            const std::string file = patchFile(attack.patch);
            if (attack.isRefused) {
                EXPECT_THROW(client->patch(file, root, choices), HSVNException);
            } else {
                client->patch(file, root, choices);
            }
        }
        EXPECT_EQ(treeOf(outside), (std::map<std::string, std::string>{{"kept", "kept\n"}}));
        mustRun({"svn", "revert", "--quiet", "--recursive", "--remove-added", root});
        auto after = treeOf(repository.beside(""));
        after["changes.patch"] = before.contains("changes.patch") ? before.at("changes.patch") : "";
        EXPECT_EQ(mustRun({"ls", "-A", root + "/.svn", root + "/dir"}), administrative);
        if (attack.isRefused) {
            for (const auto& [name, bytes] : before) {
                EXPECT_EQ(after[name], bytes) << name;
            }
            EXPECT_FALSE(isLocked());
        }
    }
}

TEST_P(PatchVerb, IsRefusedBeforeItsFirstItem)
{
    files::rename(item("dir"), repository.beside("moved"));
    files::create_directory_symlink(repository.beside("moved"), item("dir"));
    EXPECT_THAT(
        reasonOf<HSVNException>([&] { patched(change("a.txt", oneToTwo) + addition("b") + addition("dir/x")); }),
        testing::HasSubstr("A symbolic link in the place of the directory '" + item("dir")));
    EXPECT_FALSE(exists("b"));
    EXPECT_TRUE(delegate->notifications.empty());
}

TEST_P(PatchVerb, HarmlessPatchesWithOddNamesAreNotRefused)
{
    files::create_directory_symlink("dir", item("in"));
    EXPECT_THAT(patched(change("a.txt", "@@ -1 +1,2 @@\n a.txt\n+-- .svn/x\n")), ElementsAre("a.txt, applied"));
    EXPECT_THAT(patched(change("a.txt", "@@ -1,2 +1,2 @@\n a.txt\n--- .svn/x\n+++ .svn/y\n")),
                ElementsAre("a.txt, applied"));
    EXPECT_THAT(patched(addition("x.svn/..svn/svn")), ElementsAre("x.svn", "..svn", "svn"));
    EXPECT_THAT(patched(move("b.txt", "dir/b.txt") + addition("dir/new")), ElementsAre("b.txt", "b.txt", "new"));
}

TEST_P(PatchVerb, TellsWhereItsChangesFit)
{
    writeFile(item("a.txt"), "zero\none\n");
    client->patch(patchFile(change("x/a.txt", oneToTwo)), root, {.dryRun = true, .strip = 1});
    EXPECT_EQ(readFile(item("a.txt")), "zero\none\n");
    client->patch(patchFile(change("x/a.txt", oneToTwo)), root, {.strip = 1});
    EXPECT_EQ(readFile(item("a.txt")), "zero\ntwo\n");
    client->patch(patchFile(change("a.txt", oneToTwo)), root, {.reverse = true});
    EXPECT_EQ(readFile(item("a.txt")), "zero\none\n");
    const HSVNPatchHunk forward{1, 1, 1, 1, 2, 0};
    const auto applied = delegate->withAction(HSVNNotifyActionPatchAppliedHunk);
    ASSERT_EQ(applied.size(), 3U);
    for (const auto& notification : applied) {
        EXPECT_EQ(notification->hunk(), forward);
    }
    EXPECT_FALSE(delegate->withAction(HSVNNotifyActionPatch).front()->hunk());
}

TEST_P(PatchVerb, IsRefusedOutsideOfWorkingCopies)
{
    EXPECT_THROW(client->patch(patchFile(change("a.txt", oneToTwo)), repository.beside("")), HSVNException);
    EXPECT_THROW(client->patch(patchFile(change("a.txt", oneToTwo)), root + "/.svn"), HSVNException);
    EXPECT_THROW(client->patch(repository.url("trunk/a.txt"), root), HSVNException);
    EXPECT_THROW(client->patch(patchFile(change("a.txt", oneToTwo)), root, {.strip = -1}), HSVNException);
}

TEST_P(PatchVerb, TellsWhatBecameOfEachHunk)
{
    std::string text;
    for (int line = 1; line <= 40; ++line) {
        text += fmt::format("line {}\n", line);
    }
    writeFile(item("a.txt"), text);
    mustRun({"svn", "propset", "--quiet", "color", "red", item("a.txt")});
    commitAll();
    const auto hunk = [](int line, const std::string& to) {
        const auto around = [](int first) {
            return fmt::format(" line {}\n line {}\n line {}\n", first, first + 1, first + 2);
        };
        return fmt::format("@@ -{0},7 +{0},7 @@\n{1}-line {2}\n+{3}\n{4}", line - 3, around(line - 3), line, to,
                           around(line + 1));
    };
    const std::string patch = change("a.txt", hunk(5, "five") + hunk(15, "15") + hunk(25, "25") + hunk(35, "35") +
                                                  "Modified: color\n## -1 +1 ##\n-blue\n+green\n");
    auto local = text;
    local.insert(local.find("line 10\n"), "inserted\n");    // what follows is at an offset
    local.replace(local.find("line 22\n"), 8, "mine\n");    // fuzz
    local.replace(local.find("line 35\n"), 8, "changed\n"); // rejected
    local.replace(local.find("line 5\n"), 7, "five\n");     // already there
    writeFile(item("a.txt"), local);
    const std::vector<std::string> expected{
        "a.txt, applied at an offset, applied with fuzz, already there, rejected, rejected (color)"};
    const auto dry = patched(patch, {.dryRun = true});
    EXPECT_EQ(readFile(item("a.txt")), local);
    EXPECT_EQ(dry, expected);
    EXPECT_EQ(patched(patch), expected);
    const auto told = delegate->withAction(HSVNNotifyActionPatchRejectedHunk);
    EXPECT_EQ(told.size(), 4U) << "two of the dry run, two of the other";
    EXPECT_TRUE(exists("a.txt.svnpatch.rej"));
    EXPECT_THAT(patched(addition("../x")), ElementsAre("x skipped"));
    EXPECT_THAT(patched("nothing of a patch\n"), ElementsAre());
}

TEST_P(PatchVerb, AppliesWhatADiffToldRelativeToADirectory)
{
    writeFile(item("a.txt"), "shelved\n");
    const std::pair local{HSVNRevision::BASE(), HSVNRevision::WORKING()};
    const auto shelved = client->diff(root, local, {.relativeTo = root});
    EXPECT_THAT(shelved, testing::StartsWith("Index: a.txt\n"));
    EXPECT_EQ(client->diff(files::relative(item("a.txt")), local, {.relativeTo = files::relative(root)}), shelved);
    EXPECT_EQ(client->treeDiff(root, local, {.relativeTo = root})->items().at(0).path(), "a.txt");
    EXPECT_THROW(client->diff(item("a.txt"), local, {.relativeTo = item("dir")}), HSVNException);
    client->revert(root, {.depth = HSVNDepthInfinity});
    EXPECT_THAT(patched(shelved), ElementsAre("a.txt, applied"));
    EXPECT_EQ(readFile(item("a.txt")), "shelved\n");
    EXPECT_EQ(client->diff(repository.url(), repository.url(), {.relativeTo = root}), "")
        << "names of URLs are below them";
}

TEST_P(PatchVerb, DoesWhatSubversionDoesWithGeneratedPatches)
{
    std::mt19937 random{7};
    const auto upTo = [&](int limit) { return std::uniform_int_distribution<int>{0, limit}(random); };
    const auto edited = [&](const std::string& path) {
        auto text = readFile(path);
        for (int edits = upTo(3); edits >= 0; --edits) {
            const auto at = static_cast<std::size_t>(upTo(static_cast<int>(text.size())));
            text.insert(text.find('\n', at) == std::string::npos ? text.size() : text.find('\n', at) + 1,
                        fmt::format("new {}\n", upTo(99)));
        }
        writeFile(path, text);
    };
    std::string text;
    for (int line = 0; line < 60; ++line) {
        text += fmt::format("line {}\n", line % 7);
    }
    for (const char* const name : {"a.txt", "b.txt", "dir/c.txt"}) {
        writeFile(item(name), text);
    }
    commitAll();
    const auto peer = repository.checkOut("peer", "trunk");
    for (auto round = numberFromEnvironment("HSVN_PATCH_ROUNDS", 12); round > 0; --round) {
        SCOPED_TRACE(round);
        edited(item("a.txt"));
        mustRun({"svn", "propset", "--quiet", "color", std::to_string(upTo(3)), item("dir/c.txt")});
        if (upTo(1) == 0) {
            mustRun({"svn", "delete", "--quiet", "--force", item("dir/c.txt")});
            writeFile(item("new"), "new\n");
            mustRun({"svn", "add", "--quiet", item("new")});
        }
        const auto file =
            patchFile(move("b.txt", "dir/moved.txt") + mustRun({"bash", "-c", "cd \"$0\" && svn diff", root}));
        mustRun({"svn", "revert", "--quiet", "--recursive", "--remove-added", root});
        mustRun({"svn", "cleanup", "--quiet", "--remove-unversioned", root});
        // Both get the same local changes, which the patch may not fit.
        edited(item("a.txt"));
        files::copy_file(item("a.txt"), peer + "/a.txt", files::copy_options::overwrite_existing);
        const HSVNPatchChoices choices{.reverse = upTo(3) == 0, .ignoreWhitespace = upTo(3) == 0};
        const auto told = client->patch(file, root, choices);
        std::vector<std::string> arguments{"svn", "patch", file, peer};
        for (const auto& [isChosen, word] :
             {std::pair{choices.reverse, "--reverse-diff"}, {choices.ignoreWhitespace, "--ignore-whitespace"}})
        {
            if (isChosen) {
                arguments.emplace_back(word);
            }
        }
        EXPECT_EQ(oddOutcomesOf(told), oddOutcomesIn(mustRun(arguments)));
        EXPECT_EQ(treeOf(root), treeOf(peer));
        EXPECT_EQ(mustRun({"bash", "-c", "cd \"$0\" && svn status && svn proplist -vR", root}),
                  mustRun({"bash", "-c", "cd \"$0\" && svn status && svn proplist -vR", peer}));
        for (const auto& folder : {root, peer}) {
            mustRun({"svn", "revert", "--quiet", "--recursive", "--remove-added", folder});
            mustRun({"svn", "cleanup", "--quiet", "--remove-unversioned", folder});
        }
    }
}

namespace {

/// The names in all lines that may be of headers.
class NamesOfPatch : public HSVNPatchReader
{
  public:
    explicit NamesOfPatch(const HSVNPatchSource& source, bool ignoreWhitespace)
        : HSVNPatchReader{source, ignoreWhitespace}
    {
        for (HSVNPatchFacts facts; next(facts);) {
        }
    }

    std::set<std::string> names;

  private:
    void readHeaderLine(const HSVNPatchRawLine& line) override
    {
        const auto text = line.header();
        for (const std::string_view word :
             {"--- ", "+++ ", "--- a/", "+++ b/", "rename from ", "rename to ", "copy from ", "copy to "})
        {
            if (text.starts_with(word)) {
                names.insert(HSVNPatchName(text.substr(word.size())));
            }
        }
        if (text.starts_with("diff --git")) {
            names.insert(HSVNGitDiffName(text.substr(10)).value_or(""));
        }
    }
};

} // namespace

TEST_P(PatchVerb, TheReaderSeesEveryNameThatSubversionReads)
{
    const std::vector<std::string> words{"--- a.txt",
                                         "+++ a.txt",
                                         "--- a/n1",
                                         "+++ b/n1",
                                         "--- n2",
                                         "+++ n2",
                                         "--- /dev/null",
                                         "+++ /dev/null",
                                         "diff --git a/a.txt b/a.txt",
                                         "diff --git a/b.txt b/n3",
                                         "diff --git a/n4 b/n4",
                                         "diff --git a/n5",
                                         "Index: n6",
                                         "new file mode 100644",
                                         "deleted file mode 100644",
                                         "old mode 100644",
                                         "new mode 100755",
                                         "rename from b.txt",
                                         "rename to n7",
                                         "copy from a.txt",
                                         "copy to n8",
                                         "GIT binary patch",
                                         "literal 4",
                                         "Lc${NkWMT#Y01f~L",
                                         "",
                                         "@@ -1 +1 @@",
                                         "@@ -1,3 +1,2 @@",
                                         "@@ -0,0 +1,2 @@",
                                         "@@ -1,2 +0,0 @@",
                                         "@@ -+1, +1 @@",
                                         "@@ -2,0 +3 @@ f()",
                                         "## -1 +1 ##",
                                         "## -0,0 +1,2 ##",
                                         "Added: color",
                                         "Modified: svn:mergeinfo",
                                         "Deleted: /",
                                         "Name: x",
                                         "Property changes on: a.txt\n____",
                                         "Property changes on: n12\n____",
                                         "   - one",
                                         "   + two",
                                         "   Merged /trunk:r2",
                                         "\\ No newline at end of file",
                                         " a.txt",
                                         "-a.txt",
                                         "+b",
                                         "-- x",
                                         "--- n9",
                                         "+++ n10",
                                         "++ y",
                                         " ",
                                         "x",
                                         "--",
                                         std::string{"\0", 1},
                                         std::string{"--- n11\0x", 9}};
    std::mt19937 random{11};
    std::size_t told = 0;
    for (auto round = numberFromEnvironment("HSVN_PATCH_READINGS", 400); round > 0; --round) {
        std::string text;
        for (auto lines = std::uniform_int_distribution<int>{1, 30}(random); lines > 0; --lines) {
            text += words.at(std::uniform_int_distribution<std::size_t>{0, words.size() - 1}(random));
            text += lines % 11 == 0 ? "\r\n" : lines % 13 == 0 ? "\r" : "\n";
        }
        const HSVNPatchChoices choices{.dryRun = true, .reverse = round % 3 == 0, .ignoreWhitespace = round % 5 == 0};
        const auto names = NamesOfPatch{*HSVNPatchSourceOfText(text), choices.ignoreWhitespace}.names;
        std::vector<HSVNPatchedItem> items;
        try {
            items = client->patch(patchFile(text), root, choices);
        } catch (const HSVNException&) {
            continue; // refused, or what Subversion does not read
        }
        for (const auto& patched : items) {
            const files::path path{patched.path};
            const auto name = path == "/dev/null" ? path.string() : path.lexically_relative(root).string();
            const bool isSeen = std::any_of(names.begin(), names.end(), [&](const std::string& each) {
                return each == name ||
                       each.starts_with(name + '/'); // Subversion tells of directories that it makes, too
            });
            EXPECT_TRUE(isSeen) << name << " of\n" << text;
        }
        told += items.size();
    }
    EXPECT_GT(told, 50U);
}
