#include "Command.h"
#include "HSVNAddOptions.h"
#include "HSVNCheckOutOptions.h"
#include "HSVNClient.h"
#include "HSVNCommitOptions.h"
#include "HSVNCopyOptions.h"
#include "HSVNDeleteOptions.h"
#include "HSVNDirectory.h"
#include "HSVNExportOptions.h"
#include "HSVNFile.h"
#include "HSVNImportOptions.h"
#include "HSVNLocalPath.h"
#include "HSVNLock.h"
#include "HSVNLockOptions.h"
#include "HSVNLogItem.h"
#include "HSVNLogOptions.h"
#include "HSVNMergeOptions.h"
#include "HSVNMoveOptions.h"
#include "HSVNNode.h"
#include "HSVNProperties.h"
#include "HSVNRepository.h"
#include "HSVNRepositoryInfo.h"
#include "HSVNResolveOptions.h"
#include "HSVNRevertOptions.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "HSVNStandardStreams.h"
#include "HSVNStatusOptions.h"
#include "HSVNURL.h"
#include "HSVNUnlockOptions.h"
#include "HSVNUpdateOptions.h"
#include "RecordingDelegate.h"
#include "TestRepository.h"

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <set>

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
        mustRun({"svn", "update", "-q", workingCopy("")});
        writeFile(workingCopy("dir name/a@b.txt"), "two\n");
        writeFile(workingCopy("dir name/new@file.txt"), "new\n");
        writeFile(beside("plain@folder/file.txt"), "plain\n");
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

    /// What an observer sees: the working copy's status, the repository's tree and newest change, and what else there
    /// is.
    std::string state() const
    {
        const std::string repository = _now / "repository";
        std::set<std::string> others;
        for (auto entry = fs::recursive_directory_iterator{_now.path()}; entry != end(entry); ++entry) {
            const std::string name = entry->path().filename();
            if (name == "repository" || name == "wc" || name == ".svn") {
                entry.disable_recursion_pending();
            } else {
                others.insert(entry->path().string() + (entry->is_directory() ? "/" : ": " + readFile(entry->path())));
            }
        }
        return mustRun({"svn", "status", "-v", workingCopy("")}) + mustRun({"svnlook", "tree", repository}) +
               mustRun({"svnlook", "changed", repository}) + testing::PrintToString(others);
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

enum Place : unsigned
{
    Local = 1,
    Remote = 2,
    Either = 3
};

/// One argument of one operation.
struct Argument
{
    const char* name;
    const char* item; ///< the path in the working copy or repository that the argument means
    Place place;
    bool changes; ///< whether the operation changes anything
    Run run;
};

/// What an operation told of an item; its name and path are those that it was asked for.
std::string text(const HSVNNodeRef& node)
{
    return std::to_string(node->revision()) + (node->isDirectory() ? "/" : "") + node->author().value_or("");
}

std::string text(const std::vector<HSVNNodeRef>& nodes)
{
    std::string lines;
    for (const auto& node : nodes) {
        lines += node->name().value_or("(null)") + " " + text(node) + "\n";
    }
    return lines;
}

HSVNURLRef repositoryURL(const std::string& item)
{
    return HSVNURL::URLEncodeString("file://" + world().beside("repository") + "/" + item);
}

HSVNURLRef asURL(const HSVNPathRef& path) { return std::static_pointer_cast<const HSVNURL>(path); }

HSVNRevisionSpecRef newest(const HSVNPathRef& path)
{
    return path->string().find("://") == std::string::npos ? HSVNRevisionSpec::WORKING() : HSVNRevisionSpec::HEAD();
}

std::vector<Argument> changingArguments()
{
    return {
        {"Add", "dir name/new@file.txt", Local, true,
         [](const auto& path, const auto& context) {
             HSVNNode::add(path, context);
             return std::string{};
         }},
        {"Revert", "dir name/a@b.txt", Local, true,
         [](const auto& path, const auto& context) {
             HSVNNode::revertNodes({path}, HSVNRevertOptions::defaults(), context);
             return std::string{};
         }},
        {"Resolve", "dir name", Local, true,
         [](const auto& path, const auto& context) {
             HSVNNode::resolveNodeAtPath(path, HSVNResolveOptions::defaults(), context);
             return std::string{};
         }},
        {"Update", "dir name", Local, true,
         [](const auto& path, const auto& context) {
             return testing::PrintToString(HSVNNode::updateNodes({path}, HSVNRevision::revisionWithNumber(1),
                                                                 HSVNUpdateOptions::defaults(), context));
         }},
        {"Commit", "dir name/a@b.txt", Local, true,
         [](const auto& path, const auto& context) {
             return std::to_string(HSVNNode::commitChangesToNodes({path}, HSVNCommitOptions::defaults(), context));
         }},
        {"CheckoutURL", "dir name/deep", Remote, true,
         [](const auto& url, const auto& context) {
             return HSVNDirectory::checkoutDirectoryAtURL(asURL(url),
                                                          HSVNLocalPath::pathWithString(world().beside("new wc")),
                                                          HSVNCheckOutOptions::defaults(), context)
                 ->path()
                 ->string();
         }},
        {"CheckoutPath", "../new@wc", Local, true,
         [](const auto& path, const auto& context) {
             HSVNDirectory::checkoutDirectoryAtURL(repositoryURL("dir name"), path, HSVNCheckOutOptions::defaults(),
                                                   context);
             return std::string{};
         }},
        {"CreateDirectory", "dir name/new@dir", Either, true,
         [](const auto& path, const auto& context) {
             return text(HSVNDirectory::createDirectoryAtPath(path, context));
         }},
        {"SetProperty", "dir name/a@b.txt", Local, true,
         [](const auto& path, const auto& context) {
             HSVNNode::setProperty("own", "value", path, context);
             return HSVNNode::propertyWithName("own", path, HSVNRevisionSpec::WORKING(), context).value_or("");
         }},
        {"CleanUp", "dir name", Local, true,
         [](const auto& path, const auto& context) {
             HSVNDirectory::cleanUpWorkingCopyAtPath(path, context);
             return std::string{};
         }},
    };
}

HSVNPathRef item(const char* name) { return HSVNLocalPath::pathWithString(world().workingCopy(name)); }

std::string lockOwner()
{
    const auto client = HSVNClient::clientWithDelegate(nullptr);
    const auto file = HSVNFile::fileAtPath(repositoryURL("dir name/a@b.txt"), HSVNRevisionSpec::HEAD(), client);
    return file->lock() ? file->lock()->owner().value_or("") : "(no lock)";
}

/// Takes revision 2 of the first out again.
std::string merge(const HSVNPathRef& first, const HSVNPathRef& second, const HSVNPathRef& into,
                  const HSVNContextRef& context)
{
    HSVNNode::mergeNodeAtPath(first, HSVNRevision::revisionWithNumber(2), second, HSVNRevision::revisionWithNumber(1),
                              into, HSVNMergeOptions::defaults(), context);
    return {};
}

std::vector<Argument> serviceArguments()
{
    return {
        {"ImportPath", "../plain@folder", Local, true,
         [](const auto& path, const auto& context) {
             return std::to_string(
                 HSVNNode::importNodeAtPath(path, repositoryURL("imported"), HSVNImportOptions::defaults(), context));
         }},
        {"ImportURL", "dir name/imported@tree", Remote, true,
         [](const auto& url, const auto& context) {
             return std::to_string(HSVNNode::importNodeAtPath(item("../plain@folder"), asURL(url),
                                                              HSVNImportOptions::defaults(), context));
         }},
        {"ExportFrom", "dir name", Either, true,
         [](const auto& path, const auto& context) {
             const auto options = HSVNExportOptions::defaults();
             options->setRevision(newest(path));
             return std::to_string(HSVNNode::exportNodeAtPath(path, item("../exported"), options, context));
         }},
        {"ExportTo", "../exported@tree", Local, true,
         [](const auto& path, const auto& context) {
             return std::to_string(
                 HSVNNode::exportNodeAtPath(repositoryURL("dir name"), path, HSVNExportOptions::defaults(), context));
         }},
        {"MergeFirst", "dir name", Remote, true,
         [](const auto& path, const auto& context) {
             return merge(path, repositoryURL("dir name"), item("dir name"), context);
         }},
        {"MergeSecond", "dir name", Remote, true,
         [](const auto& path, const auto& context) {
             return merge(repositoryURL("dir name"), path, item("dir name"), context);
         }},
        {"MergeInto", "dir name", Local, true,
         [](const auto& path, const auto& context) {
             return merge(repositoryURL("dir name"), repositoryURL("dir name"), path, context);
         }},
        {"Delete", "dir name/deep", Either, true,
         [](const auto& path, const auto& context) {
             HSVNNode::deleteNodes({path}, HSVNDeleteOptions::defaults(), context);
             return std::string{};
         }},
        {"MoveFrom", "dir name/deep", Local, true,
         [](const auto& path, const auto& context) {
             HSVNNode::moveNodeAtPath(path, item("moved"), HSVNMoveOptions::defaults(), context);
             return std::string{};
         }},
        {"MoveTo", "dir name/moved@dir", Local, true,
         [](const auto& path, const auto& context) {
             HSVNNode::moveNodeAtPath(item("dir name/deep"), path, HSVNMoveOptions::defaults(), context);
             return std::string{};
         }},
        {"CopyFrom", "dir name/deep", Either, true,
         [](const auto& path, const auto& context) {
             HSVNNode::copyNodeAtPath(path, item("copied"), HSVNCopyOptions::defaults(), context);
             return std::string{};
         }},
        {"CopyTo", "dir name/copied@dir", Either, true,
         [](const auto& path, const auto& context) {
             return std::to_string(
                 HSVNNode::copyNodeAtPath(repositoryURL("dir name/deep"), path, HSVNCopyOptions::defaults(), context));
         }},
        {"Lock", "dir name/a@b.txt", Either, true,
         [](const auto& path, const auto& context) {
             HSVNNode::lockNodes({path}, "mine", HSVNLockOptions::defaults(), context);
             return lockOwner();
         }},
        {"Unlock", "dir name/a@b.txt", Local, true,
         [](const auto& path, const auto& context) {
             HSVNNode::lockNodes({item("dir name/a@b.txt")}, "mine", HSVNLockOptions::defaults(), context);
             HSVNNode::unlockNodes({path}, HSVNUnlockOptions::defaults(), context);
             return lockOwner();
         }},
    };
}

std::vector<Argument> readingArguments()
{
    return {
        {"Kind", "dir name/a@b.txt", Either, false,
         [](const auto& path, const auto& context) {
             return std::to_string(HSVNNode::kindOfNodeAtPath(path, newest(path), context));
         }},
        {"URL", "dir name/a@b.txt", Either, false,
         [](const auto& path, const auto& context) {
             return HSVNNode::URLForNodeAtPath(path, context)->localPath()->string();
         }},
        {"File", "dir name/a@b.txt", Either, false,
         [](const auto& path, const auto& context) {
             return text(HSVNFile::fileAtPath(path, HSVNRevisionSpec::HEAD(), context));
         }},
        {"Contents", "dir name/a@b.txt", Either, false,
         [](const auto& path, const auto& context) {
             const auto stream = std::make_shared<HSVNMemoryOutputStream>();
             HSVNFile::catRevision(newest(path), path, stream, context);
             return stream->bytes();
         }},
        {"Directory", "dir name", Either, false,
         [](const auto& path, const auto& context) {
             HSVNRepositoryInfoRef information;
             const auto folder = HSVNDirectory::directoryAtPath(path, newest(path), &information, context);
             return text(folder) + folder->URL()->localPath()->string() + information->rootURL()->localPath()->string();
         }},
        {"Children", "dir name", Either, false,
         [](const auto& path, const auto& context) {
             std::vector<HSVNNodeRef> children;
             HSVNDirectory::directoryAtPath(path, HSVNRevisionSpec::HEAD(), &children, context);
             return text(children);
         }},
        {"Log", "dir name", Either, false,
         [](const auto& path, const auto& context) {
             const auto items = HSVNNode::readLogForNodeAtPath(path, nullptr, HSVNLogOptions::defaults(), context);
             return std::to_string(items.size()) +
                    items.at(0)->description().substr(items.at(0)->description().find(','));
         }},
        {"Status", "dir name", Local, false,
         [](const auto& path, const auto& context) {
             return text(HSVNDirectory::statusForNodesInDirectoryAtPath(path, HSVNStatusOptions::defaults(), context));
         }},
        {"StatusOfOne", "dir name/a@b.txt", Local, false,
         [](const auto& path, const auto& context) {
             return text(HSVNNode::nodeWithStatusAtPath(path, HSVNRevision::HEAD(), true, context));
         }},
        {"WorkingCopy", "", Local, false,
         [](const auto& path, const auto& context) {
             return text(HSVNDirectory::workingCopyWithStatusAtPath(path, context));
         }},
        {"Property", "dir name/a@b.txt", Either, false,
         [](const auto& path, const auto& context) {
             return HSVNNode::propertyWithName("svn:eol-style", path, newest(path), context).value_or("(null)");
         }},
        {"Properties", "dir name/a@b.txt", Either, false,
         [](const auto& path, const auto& context) {
             return std::to_string(HSVNNode::propertiesForNodeAtPath(path, newest(path), context).size());
         }},
        {"Externals", "dir name", Local, false,
         [](const auto& path, const auto& context) {
             return std::to_string(HSVNDirectory::externalsForPath(path, context).size());
         }},
        {"Format", "", Local, false,
         [](const auto& path, const auto&) {
             return std::to_string(HSVNDirectory::formatVersionForWorkingCopyAtPath(path));
         }},
        {"Repository", "../repository", Local, false,
         [](const auto& path, const auto&) {
             return HSVNRepository::repositoryAtPath(HSVNLocalPath::pathWithString(path->string()))->className();
         }},
    };
}

const std::vector<Argument>& arguments()
{
    static const std::vector<Argument> all = [] {
        auto every = changingArguments();
        for (const auto& more : {serviceArguments(), readingArguments()}) {
            every.insert(every.end(), more.begin(), more.end());
        }
        return every;
    }();
    return all;
}

/// How a canonical path, or the text of a canonical URL, is spelled otherwise.
struct Spelling
{
    Place place;
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
    static const std::vector<Spelling> all{
        {Either, false, [](const std::string& text) { return text + "/"; }},
        {Either, false, [](const std::string& text) { return replaced(text, "/", "//") + "///"; }},
        {Either, false, [](const std::string& text) { return replaced(text, "/", "/./") + "/."; }},
        {Either, false,
         [](const std::string& text) {
             return replaced(text, "/", "/../" + fs::path{text}.parent_path().filename().string() + "/");
         }},
        {Local, false,
         [](const std::string& text) { return "./" + fs::path{text}.lexically_relative(fs::current_path()).string(); }},
        {Remote, true, [](const std::string& text) { return replaced(text, "%20", " "); }},
        {Remote, false, [](const std::string& text) { return replaced(text, "d", "%64"); }},
        {Remote, false, [](const std::string& text) { return "FILE" + text.substr(4); }},
        // To Subversion, two repositories of the same folder where a second URL or a working copy names no host.
        {Remote, true, [](const std::string& text) { return "file://LOCALHOST" + text.substr(7); }},
    };
    return all;
}

/// One argument in one of the places that it may be in.
struct SpellingCase
{
    const Argument* argument;
    Place place;
};

std::string nameOf(const SpellingCase& test)
{
    return test.argument->name + std::string{test.place == Remote ? "Remote" : ""};
}

void PrintTo(const SpellingCase& test, std::ostream* stream) { *stream << nameOf(test); }

std::vector<SpellingCase> cases()
{
    std::vector<SpellingCase> all;
    for (const auto& argument : arguments()) {
        for (const Place place : {Local, Remote}) {
            if ((argument.place & place) != 0) {
                all.push_back({&argument, place});
            }
        }
    }
    return all;
}

class CanonicalPaths : public testing::TestWithParam<SpellingCase>
{
  protected:
    const Argument& argument = *GetParam().argument;
    const Place place = GetParam().place;
    const std::string canonical = place == Remote
                                      ? repositoryURL(argument.item)->string()
                                      : fs::path{world().workingCopy(argument.item)}.lexically_normal().string();

    std::string outcome(const std::string& spelled) const
    {
        if (argument.changes) {
            world().reset();
        }
        const auto delegate = std::make_shared<RecordingDelegate>();
        const HSVNPathRef path = place == Remote ? HSVNPathRef{HSVNURL::URLWithString(spelled)}
                                                 : HSVNPathRef{HSVNLocalPath::pathWithString(spelled)};
        const std::string answer = argument.run(path, HSVNClient::clientWithDelegate(delegate));
        return answer + (argument.changes ? "\n" + world().state() : "");
    }
};

} // namespace

TEST_P(CanonicalPaths, AnySpellingGivesTheSameResultAsTheCanonicalOne)
{
    const std::string expected = outcome(canonical);
    for (const auto& spelling : spellings()) {
        if ((spelling.place & place) == 0) {
            continue;
        }
        const std::string spelled = spelling.spell(canonical);
        try {
            EXPECT_EQ(outcome(spelled), expected) << spelled;
        } catch (const HSVNPlatformException& exception) {
            EXPECT_TRUE(spelling.mayBeRefused) << spelled << ": " << exception.reason();
            EXPECT_NE(exception.reason(), "");
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, CanonicalPaths, testing::ValuesIn(cases()),
                         [](const auto& instance) { return nameOf(instance.param); });
