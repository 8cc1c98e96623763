#include "Command.h"
#include "HSVNAddOptions.h"
#include "HSVNCheckOutOptions.h"
#include "HSVNClient.h"
#include "HSVNCommitOptions.h"
#include "HSVNDirectory.h"
#include "HSVNLocalPath.h"
#include "HSVNNode.h"
#include "HSVNResolveOptions.h"
#include "HSVNRevertOptions.h"
#include "HSVNRevision.h"
#include "HSVNURL.h"
#include "HSVNUpdateOptions.h"
#include "RecordingDelegate.h"
#include "TestRepository.h"

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <map>

// Subversion ends the process when it is handed a path or URL that is not canonical. Each operation is run with every
// spelling of its argument, each time on a fresh copy of the same repository and working copy: what is left on disk and
// what the operation answers must equal what the canonical spelling gives.

namespace {

namespace fs = std::filesystem;

/// A repository and a working copy that can be put back to how they were.
class World
{
  public:
    World()
    {
        mustRun({"svnadmin", "create", _now / "repository"});
        const std::string url = "file://" + (_now / "repository");
        mustRun({"svnmucc", "-U", url, "-m", "prepared", "mkdir", "dir name", "mkdir", "dir name/deep"});
        mustRun({"svn", "checkout", "-q", url, workingCopy("")});
        for (const char* file : {"dir name/a@b.txt", "dir name/deep/c.txt"}) {
            writeFile(workingCopy(file), "one\n");
            mustRun({"svn", "add", "-q", workingCopy(file) + "@"});
        }
        mustRun({"svn", "commit", "-q", "-m", "prepared", workingCopy("")});
        writeFile(workingCopy("dir name/a@b.txt"), "two\n");
        writeFile(workingCopy("dir name/new@file.txt"), "new\n");
        fs::copy(_now.path(), _before.path(), fs::copy_options::recursive);
    }

    void reset() const
    {
        for (const auto& entry : fs::directory_iterator{_now.path()}) {
            fs::remove_all(entry);
        }
        fs::copy(_before.path(), _now.path(), fs::copy_options::recursive);
    }

    /// The canonical path of an item of the working copy.
    std::string workingCopy(const std::string& item) const
    {
        return item.empty() ? _now / "wc" : _now / ("wc/" + item);
    }
    std::string beside(const std::string& name) const { return _now / name; }

    /// What an observer sees: the working copies' status, the repository's tree and its newest change.
    std::string state() const
    {
        const std::string repository = _now / "repository";
        std::string text = mustRun({"svn", "status", "-v", workingCopy("")}) +
                           mustRun({"svnlook", "tree", repository}) + mustRun({"svnlook", "changed", repository});
        for (const auto& entry : fs::directory_iterator{_now.path()}) {
            if (entry.path().filename() != "repository" && entry.path().filename() != "wc") {
                text += mustRun({"svn", "status", "-v", entry.path().string() + "@"});
            }
        }
        return text;
    }

  private:
    TemporaryFolder _now;
    TemporaryFolder _before;
};

const World& world()
{
    static const World shared;
    return shared;
}

using Run = std::function<std::string(const HSVNPathRef& path, const HSVNContextRef& context)>;

/// One argument of one operation.
struct Argument
{
    const char* name;
    const char* item; ///< the path in the working copy or repository that the argument means
    bool isURL;
    Run run;
};

std::string text(const std::vector<HSVNRevisionNumber>& numbers) { return testing::PrintToString(numbers); }

HSVNURLRef repositoryURL(const std::string& item = {})
{
    return HSVNURL::URLEncodeString("file://" + world().beside("repository") + (item.empty() ? "" : "/" + item));
}

const std::vector<Argument>& arguments()
{
    static const std::vector<Argument> all{
        {"Add", "dir name/new@file.txt", false,
         [](const auto& path, const auto& context) {
             HSVNNode::add(path, context);
             return std::string{};
         }},
        {"Revert", "dir name/a@b.txt", false,
         [](const auto& path, const auto& context) {
             HSVNNode::revertNodes({path}, HSVNRevertOptions::defaults(), context);
             return std::string{};
         }},
        {"Resolve", "dir name", false,
         [](const auto& path, const auto& context) {
             HSVNNode::resolveNodeAtPath(path, HSVNResolveOptions::defaults(), context);
             return std::string{};
         }},
        {"Update", "dir name", false,
         [](const auto& path, const auto& context) {
             return text(HSVNNode::updateNodes({path}, HSVNRevision::revisionWithNumber(1),
                                               HSVNUpdateOptions::defaults(), context));
         }},
        {"Commit", "dir name/a@b.txt", false,
         [](const auto& path, const auto& context) {
             return text({HSVNNode::commitChangesToNodes({path}, HSVNCommitOptions::defaults(), context)});
         }},
        {"CheckoutURL", "dir name/deep", true,
         [](const auto& url, const auto& context) {
             return HSVNDirectory::checkoutDirectoryAtURL(std::static_pointer_cast<const HSVNURL>(url),
                                                          HSVNLocalPath::pathWithString(world().beside("new wc")),
                                                          HSVNCheckOutOptions::defaults(), context)
                 ->path()
                 ->string();
         }},
        {"CheckoutPath", "../new@wc", false,
         [](const auto& path, const auto& context) {
             HSVNDirectory::checkoutDirectoryAtURL(repositoryURL("dir name"), path, HSVNCheckOutOptions::defaults(),
                                                   context);
             return std::string{};
         }},
    };
    return all;
}

/// How a canonical path, or the text of a canonical URL, is spelled otherwise.
struct Spelling
{
    const char* name;
    bool forURLs;
    bool forPaths;
    /// Whether the operation may refuse the spelling instead of understanding it.
    bool mayBeRefused;
    std::function<std::string(const std::string&)> spell;
};

std::string replaced(std::string text, const std::string& what, const std::string& with)
{
    const auto position = text.rfind(what);
    return position == std::string::npos ? text : text.replace(position, what.size(), with);
}

const std::vector<Spelling>& spellings()
{
    const auto last = [](const std::string& with) {
        return [with](const std::string& text) { return replaced(text, "/", with); };
    };
    static const std::vector<Spelling> all{
        {"Canonical", true, true, false, [](const std::string& text) { return text; }},
        {"TrailingSlash", true, true, false, [](const std::string& text) { return text + "/"; }},
        {"TrailingSlashes", true, true, false, [](const std::string& text) { return text + "///"; }},
        {"TrailingDot", true, true, false, [](const std::string& text) { return text + "/."; }},
        {"DoubleSlash", true, true, false, last("//")},
        {"Dot", true, true, false, last("/./")},
        {"DotDot", true, true, false,
         [](const std::string& text) {
             return replaced(text, "/", "/../" + fs::path{text}.parent_path().filename().string() + "/");
         }},
        {"Relative", false, true, false,
         [](const std::string& text) { return fs::path{text}.lexically_relative(fs::current_path()).string(); }},
        {"DotRelative", false, true, false,
         [](const std::string& text) { return "./" + fs::path{text}.lexically_relative(fs::current_path()).string(); }},
        {"UnescapedBlank", true, false, true, [](const std::string& text) { return replaced(text, "%20", " "); }},
        {"EscapedLetter", true, false, false, [](const std::string& text) { return replaced(text, "d", "%64"); }},
        {"UpperCaseScheme", true, false, false, [](const std::string& text) { return "FILE" + text.substr(4); }},
        {"Host", true, false, false, [](const std::string& text) { return "file://localhost" + text.substr(7); }},
        {"UpperCaseHost", true, false, false,
         [](const std::string& text) { return "file://LOCALHOST" + text.substr(7); }},
    };
    return all;
}

struct Case
{
    const Argument* argument;
    const Spelling* spelling;
};

std::string nameOf(const Case& test) { return std::string{test.argument->name} + "_" + test.spelling->name; }

void PrintTo(const Case& test, std::ostream* stream) { *stream << nameOf(test); }

/// Every argument with every spelling of its kind.
std::vector<Case> cases()
{
    std::vector<Case> all;
    for (const auto& argument : arguments()) {
        for (const auto& spelling : spellings()) {
            if (argument.isURL ? spelling.forURLs : spelling.forPaths) {
                all.push_back({&argument, &spelling});
            }
        }
    }
    return all;
}

class CanonicalPaths : public testing::TestWithParam<Case>
{
  protected:
    static std::string outcome(const Argument& argument, const std::string& spelled)
    {
        world().reset();
        const auto delegate = std::make_shared<RecordingDelegate>();
        const HSVNPathRef path = argument.isURL ? HSVNPathRef{HSVNURL::URLWithString(spelled)}
                                                : HSVNPathRef{HSVNLocalPath::pathWithString(spelled)};
        const std::string answer = argument.run(path, HSVNClient::clientWithDelegate(delegate));
        return answer + '\n' + world().state();
    }
};

} // namespace

TEST_P(CanonicalPaths, AnySpellingGivesTheSameResultAsTheCanonicalOne)
{
    const Argument& argument = *GetParam().argument;
    const Spelling& spelling = *GetParam().spelling;
    const std::string canonical = argument.isURL
                                      ? repositoryURL(argument.item)->string()
                                      : fs::path{world().workingCopy(argument.item)}.lexically_normal().string();
    const std::string spelled = spelling.spell(canonical);
    static std::map<const Argument*, std::string> expectations;
    std::string& expected = expectations[&argument];
    if (expected.empty()) {
        expected = outcome(argument, canonical);
    }
    try {
        EXPECT_EQ(outcome(argument, spelled), expected) << spelled;
    } catch (const HSVNPlatformException& exception) {
        EXPECT_TRUE(spelling.mayBeRefused) << spelled << ": " << exception.reason();
        EXPECT_NE(exception.reason(), "");
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, CanonicalPaths, testing::ValuesIn(cases()),
                         [](const auto& instance) { return nameOf(instance.param); });
