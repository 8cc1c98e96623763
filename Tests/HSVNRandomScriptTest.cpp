// One random script of operations, once through the library and once through the installed svn. Other scripts come from
// seeds in HSVN_RANDOM_SCRIPT_SEEDS, such as "1 2 3".

#include "HSVNAddOptions.h"
#include "HSVNCommitOptions.h"
#include "HSVNCopyOptions.h"
#include "HSVNDeleteOptions.h"
#include "HSVNImportOptions.h"
#include "HSVNLockOptions.h"
#include "HSVNMergeOptions.h"
#include "HSVNMoveOptions.h"
#include "HSVNNode.h"
#include "HSVNResolveOptions.h"
#include "HSVNRevertOptions.h"
#include "HSVNRevision.h"
#include "HSVNUnlockOptions.h"
#include "HSVNUpdateOptions.h"
#include "WorkingCopyTest.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <random>
#include <regex>
#include <sstream>

namespace {

namespace files = std::filesystem;

/// A repository and a working copy of its root.
struct Site
{
    TestRepository repository;
    std::string root = repository.checkOut();
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    HSVNClientRef client = std::make_shared<HSVNClient>(nullptr, delegate);

    std::string text(const std::string& name, bool isURL) const
    {
        return (isURL ? repository.url() : root) + (name.empty() ? "" : "/") + name;
    }

    /// What is where, unchanged items too, one line an item. When an item was changed last is left out: after a commit
    /// svn records that of a copy within a copy, the call that every line has does not.
    std::string status() const
    {
        static const std::regex lastChange{"([0-9]+) +[0-9]+ +[^ /]+ +/"};
        const auto text = placeless(mustRun({"svn", "status", "--verbose", "--no-ignore", root}));
        return std::regex_replace(text, lastChange, "$1 /");
    }
    std::string properties() const { return placeless(mustRun({"svn", "proplist", "-v", "-R", root})); }
    /// Everything that the repository holds, without dates and its identifier.
    std::string dump() const
    {
        std::string text = mustRun({"svnadmin", "dump", "--quiet", repository.path()});
        text = std::regex_replace(text, std::regex{"\nUUID: [^\n]*"}, "\nUUID: -");
        return std::regex_replace(text, std::regex{"\nsvn:date\nV [0-9]+\n[^\n]*"}, "\nsvn:date\n-");
    }

  private:
    /// The text without the place of the working copy.
    std::string placeless(std::string text) const
    {
        for (auto place = text.find(root); place != std::string::npos; place = text.find(root, place)) {
            text.erase(place, root.size());
        }
        return text;
    }
};

/// What is chosen for an operation.
struct ScriptChoice
{
    std::string name; ///< an item under version control that is there
    std::string to;   ///< a name in a folder under version control; something may be there
    int number;       ///< of the step
    bool flag;
};

/// A choice at one of the sites.
struct Step : ScriptChoice
{
    const Site& site;

    const HSVNClientRef& client() const { return site.client; }
    std::string item(bool isURL = false) const { return site.text(name, isURL); }
    std::string target(bool isURL = false) const { return site.text(to, isURL); }
    HSVNPathRef path(bool isURL = false) const { return HSVNPath::pathWithDenormalizedString(item(isURL)); }
    HSVNPathRef targetPath(bool isURL = false) const { return HSVNPath::pathWithDenormalizedString(target(isURL)); }
    std::string text() const { return std::to_string(number); }
    std::string import() const { return site.repository.beside("import"); }
    /// For the operations that take the whole tree at times.
    std::string top() const { return flag ? site.root : item(); }
    HSVNPathRef topPath() const { return HSVNPath::pathWithDenormalizedString(top()); }
    std::string past() const { return std::to_string(number / 8); }
    bool isFolder() const { return files::is_directory(item()); }
    bool isTaken(bool inRepository) const
    {
        return inRepository ? runCommand({"svn", "info", target(true)}).exitCode == 0 : files::exists(target());
    }
};

using Arguments = std::vector<std::string>;

template <class... Words>
Arguments svn(const Words&... words)
{
    return {words...};
}

/// One operation both ways. Only versioned targets: with others the library does more than svn, on purpose.
struct ScriptOperation
{
    std::string name;
    std::size_t weight;
    /// Of svn; none when the operation cannot be asked of it.
    std::function<Arguments(const Step&)> arguments;
    std::function<void(const Step&)> call;
    /// What happens without the library first; may be nil.
    std::function<void(const Step&)> prepare = nullptr;
};

template <class Options, class Value>
std::shared_ptr<Options> with(void (Options::*set)(Value), Value value)
{
    auto options = Options::defaults();
    ((*options).*set)(value);
    return options;
}

using Node = HSVNNode;
const std::string messageOption = "-ma message"; // the delegate's

/// A move or a copy between any two of a working copy and its repository.
ScriptOperation transfer(const std::string& verb, std::size_t weight, bool fromURL, bool toURL)
{
    const auto arguments = [=](const Step& step) {
        // Into a folder that is there svn, but not the library, would put the item.
        return step.isTaken(toURL) ? svn()
                                   : svn(verb, toURL ? messageOption : "-q", step.item(fromURL), step.target(toURL));
    };
    const auto call = [=](const Step& step) {
        const auto source = step.path(fromURL);
        const auto target = step.targetPath(toURL);
        verb == "move" ? Node::moveNodeAtPath(source, target, HSVNMoveOptions::defaults(), step.client())
                       : Node::copyNodeAtPath(source, target, HSVNCopyOptions::defaults(), step.client());
    };
    const auto prepare = [=](const Step& step) {
        if (verb == "move" && !fromURL && step.isFolder()) { // of mixed revisions svn moves none
            runCommand({"svn", "update", "--quiet", "--accept", "postpone", step.item()});
        }
    };
    return {verb, weight, arguments, call, prepare};
}

/// An addition of a file, or of a folder with a file in it.
ScriptOperation addition(std::size_t weight, const std::string& below)
{
    const auto call = [](const Step& step) { Node::add(step.targetPath(), HSVNAddOptions::defaults(), step.client()); };
    const auto prepare = [=](const Step& step) {
        if (!step.isTaken(false)) {
            writeFile(step.target() + below, "added " + step.text() + '\n');
        }
    };
    return {"add", weight, [](const Step& step) { return svn("add", "--force", step.target()); }, call, prepare};
}

/// A change by an editor, or by another user meanwhile, so that items are out of date and in conflict.
ScriptOperation change(std::size_t weight, bool byAnother)
{
    const auto prepare = [=](const Step& step) {
        const std::string file = byAnother ? step.import() : step.item();
        if (!step.isFolder()) {
            writeFile(file, "changed " + step.text() + '\n');
        }
        if (byAnother && !step.isFolder()) {
            runCommand({"svnmucc", "-U", step.site.repository.url(), messageOption, "put", file, step.name});
        }
    };
    return {"change", weight, [](const Step&) { return svn("--version"); }, [](const Step&) {}, prepare};
}

const std::vector<ScriptOperation> scriptOperations{
    addition(6, ""),
    addition(2, "/in.txt"),
    change(4, false),
    change(2, true),
    transfer("move", 3, false, false),
    transfer("move", 1, true, true),
    transfer("copy", 3, false, false),
    transfer("copy", 1, false, true),
    transfer("copy", 1, true, false),
    {"delete", 3, [](auto& step) { return svn("delete", step.flag ? "--force" : "-q", step.item()); },
     [](auto& step) {
         Node::deleteNodes({step.path()}, with(&HSVNDeleteOptions::setForce, step.flag), step.client());
     }},
    {"delete a URL", 1, [](auto& step) { return svn("delete", messageOption, step.item(true)); },
     [](auto& step) { Node::deleteNodes({step.path(true)}, HSVNDeleteOptions::defaults(), step.client()); }},
    {"import", 1, [](auto& step) { return svn("import", messageOption, step.import(), step.target(true)); },
     [](auto& step) {
         Node::importNodeAtPath(HSVNLocalPath::pathWithString(step.import()), step.targetPath(true)->URL(),
                                HSVNImportOptions::defaults(), step.client());
     },
     [](auto& step) { writeFile(step.import(), step.text()); }},
    {"merge", 1,
     [](auto& step) {
         const auto url = step.site.repository.url();
         return svn("merge", "--accept=postpone", "--allow-mixed-revisions", url + '@' + step.past(), url + "@HEAD",
                    step.site.root);
     },
     [](auto& step) {
         const auto url = HSVNPath::pathWithDenormalizedString(step.site.repository.url());
         Node::mergeNodeAtPath(url, HSVNRevision::revisionWithNumber(step.number / 8), url, HSVNRevision::HEAD(),
                               HSVNLocalPath::pathWithString(step.site.root), HSVNMergeOptions::defaults(),
                               step.client());
     }},
    {"propset", 3, [](auto& step) { return svn("propset", "property", step.text(), step.item()); },
     [](auto& step) { Node::setProperty("property", step.text(), step.path(), step.client()); }},
    {"lock", 2, [](auto& step) { return svn("lock", step.item()); },
     [](auto& step) { Node::lockNodes({step.path()}, {}, HSVNLockOptions::defaults(), step.client()); }},
    {"unlock", 1, [](auto& step) { return svn("unlock", step.item()); },
     [](auto& step) { Node::unlockNodes({step.path()}, HSVNUnlockOptions::defaults(), step.client()); }},
    {"revert", 2,
     [](auto& step) { return svn("revert", step.flag ? "--depth=infinity" : "--depth=empty", step.item()); },
     [](auto& step) {
         Node::revertNodes({step.path()}, with(&HSVNRevertOptions::setRecursive, step.flag), step.client());
     }},
    {"resolved", 2, [](auto& step) { return svn("resolved", "--recursive", step.top()); },
     [](auto& step) {
         Node::resolveNodeAtPath(step.topPath(), with(&HSVNResolveOptions::setRecursive, true), step.client());
     }},
    {"update", 2, [](auto& step) { return svn("update", "--adds-as-modification", "--accept=postpone", step.top()); },
     [](auto& step) {
         Node::updateNodes({step.topPath()}, HSVNRevision::HEAD(), HSVNUpdateOptions::defaults(), step.client());
     }},
    {"commit", 4, [](auto& step) { return svn("commit", messageOption, step.top()); },
     [](auto& step) { Node::commitChangesToNodes({step.topPath()}, HSVNCommitOptions::defaults(), step.client()); }},
};

/// Chooses what comes next from what is there.
class Script
{
  public:
    explicit Script(unsigned seed) : _random{seed} {}

    /// @param status  of the model, which has what every site has
    ScriptChoice nextChoice(const Site& model, const std::string& status)
    {
        const auto versioned = items(status);
        std::vector<std::string> folders{""};
        std::copy_if(versioned.begin(), versioned.end(), std::back_inserter(folders),
                     [&](const auto& name) { return files::is_directory(model.text(name, false)); });
        const std::string folder = oneOf(folders);
        // Some names come again.
        const std::string name = "item " + std::to_string(below(60));
        return {versioned.empty() ? "" : oneOf(versioned), folder.empty() ? name : folder + '/' + name, ++_number,
                below(2) == 0};
    }

    const ScriptOperation& nextOperation()
    {
        std::vector<const ScriptOperation*> weighted;
        for (const auto& operation : scriptOperations) {
            weighted.insert(weighted.end(), operation.weight, &operation);
        }
        return *oneOf(weighted);
    }

  private:
    // The standard distributions differ between libraries, this does not.
    std::size_t below(std::size_t limit) { return _random() % limit; }
    template <class Value>
    Value oneOf(const std::vector<Value>& values)
    {
        return values[below(values.size())];
    }

    /// What is under version control and there, the root left out.
    static std::vector<std::string> items(const std::string& status)
    {
        std::vector<std::string> names;
        std::istringstream lines{status};
        for (std::string line; std::getline(lines, line);) {
            const auto path = line.find('/');
            if (path != std::string::npos && std::string_view{" MARC"}.find(line[0]) != std::string_view::npos &&
                line.find('>') > path)
            {
                names.push_back(line.substr(path + 1));
            }
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    std::mt19937 _random;
    int _number = 0;
};

/// What the installed program complains of; empty when it succeeds.
std::string failureOfSvn(const ScriptOperation& operation, const Step& step)
{
    auto arguments = operation.arguments(step);
    if (arguments.empty()) {
        return "there is something at " + step.to;
    }
    arguments.insert(arguments.begin(), {"svn", "--non-interactive"});
    const auto result = runCommand(arguments);
    return result.exitCode == 0 ? "" : result.errors;
}

std::string failureOfLibrary(const ScriptOperation& operation, const Step& step)
{
    try {
        operation.call(step);
        return {};
    } catch (const HSVNException& exception) {
        return exception.className() + ": " + exception.reason();
    }
}

void compare(unsigned seed)
{
    constexpr int count = 200;
    const Site bySvn;
    const Site byLibrary;
    Script script{seed};
    int succeeded = 0;
    std::string status = bySvn.status();
    for (int number = 0; number < count; ++number) {
        const auto& operation = script.nextOperation();
        const auto choice = script.nextChoice(bySvn, status);
        SCOPED_TRACE(std::to_string(number) + ": " + operation.name + ", '" + choice.name + "', '" + choice.to + "', " +
                     (choice.flag ? "yes" : "no"));
        const Step steps[]{{choice, bySvn}, {choice, byLibrary}};
        for (const auto& step : steps) {
            if (operation.prepare) {
                operation.prepare(step);
            }
        }
        const auto failure = failureOfSvn(operation, steps[0]);
        const auto libraryFailure = failureOfLibrary(operation, steps[1]);
        ASSERT_EQ(failure.empty(), libraryFailure.empty()) << "svn: " << failure << "; library: " << libraryFailure;
        status = bySvn.status();
        ASSERT_EQ(status, byLibrary.status());
        succeeded += failure.empty();
    }
    EXPECT_EQ(bySvn.properties(), byLibrary.properties());
    EXPECT_EQ(bySvn.dump(), byLibrary.dump());
    EXPECT_GT(succeeded, count / 2) << "the script does too little";
    EXPECT_GT(bySvn.repository.youngest(), 5);
}

} // namespace

TEST(RandomScript, GivesTheSameThroughTheLibraryAndThroughSvn)
{
    const char* chosen = std::getenv("HSVN_RANDOM_SCRIPT_SEEDS");
    std::istringstream seeds{chosen != nullptr ? chosen : "20061"};
    for (unsigned seed = 0; seeds >> seed;) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        compare(seed);
    }
}
