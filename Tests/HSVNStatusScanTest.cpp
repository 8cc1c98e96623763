#include "AlteredBundle.h"
#include "Command.h"
#include "HSVNBundleLoader.h"
#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "HSVNLock.h"
#include "HSVNRepositoryInfo.h"
#include "HSVNRevision.h"
#include "HSVNStatus.h"
#include "HSVNStatusOptions.h"
#include "HSVNURL.h"
#include "HSVNUpdateOptions.h"
#include "Internal/Subversion.h"
#include "LoadedBundle.h"
#include "ReadingClient.h"
#include "ReasonOf.h"
#include "SampleWorkingCopy.h"
#include "TemporaryFolder.h"
#include "TestBundles.h"
#include "TestRepository.h"
#include "WorkingCopyDatabase.h"
#include "XMLEntries.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sys/fsuid.h>

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::UnorderedElementsAre;

namespace {

namespace fs = std::filesystem;

HSVNLocalPathRef scannedPath(const std::string& text) { return HSVNLocalPath::pathWithString(text); }

/// What svn calls a kind of status.
std::string kindName(HSVNStatusKind kind)
{
    static const std::map<HSVNStatusKind, std::string> names{{HSVNStatusKindNone, "none"},
                                                             {HSVNStatusKindUnversioned, "unversioned"},
                                                             {HSVNStatusKindNormal, "normal"},
                                                             {HSVNStatusKindAdded, "added"},
                                                             {HSVNStatusKindMissing, "missing"},
                                                             {HSVNStatusKindDeleted, "deleted"},
                                                             {HSVNStatusKindReplaced, "replaced"},
                                                             {HSVNStatusKindModified, "modified"},
                                                             {HSVNStatusKindConflicted, "conflicted"},
                                                             {HSVNStatusKindIgnored, "ignored"},
                                                             {HSVNStatusKindObstructed, "obstructed"},
                                                             {HSVNStatusKindExternal, "external"},
                                                             {HSVNStatusKindIncomplete, "incomplete"}};
    return names.at(kind);
}

std::string dateText(const std::optional<HSVNDate>& date)
{
    if (!date) {
        return "";
    }
    const std::time_t seconds = date->microsecondsSince1970() / 1'000'000;
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
    return text;
}

std::string revisionText(HSVNRevisionNumber revision) { return revision < 0 ? "" : std::to_string(revision); }

std::string joined(std::initializer_list<std::string> texts)
{
    std::string line;
    for (const auto& text : texts) {
        line += (line.empty() ? "" : "|") + text;
    }
    return line;
}

/// What svn status says of an item, in the words of its XML.
std::string statusText(const HSVNNode& node)
{
    const HSVNStatus& status = *node.status();
    const auto token = [](const HSVNLockRef& lock) { return lock ? lock->token() : ""; };
    const auto flag = [](bool value, const char* name) { return value ? std::string{name} : ""; };
    return joined({node.path()->string(), kindName(status.textStatus()), kindName(status.propertyStatus()),
                   kindName(status.repositoryTextStatus()), kindName(status.repositoryPropertyStatus()),
                   revisionText(node.revision()), dateText(node.date()), node.author().value_or(""), token(node.lock()),
                   token(status.repositoryLock()), flag(status.copied(), "copied"), flag(status.switched(), "switched"),
                   flag(status.locked(), "locked")});
}

/// The same of an entry in svn's XML.
///
/// @param folder      what the entry's path is relative to; empty for an absolute one
/// @param isExternal  an externals definition names the item
/// @param compares    the repository was asked, so nothing said means unchanged there
std::string statusText(const XMLEntry& entry, const std::string& folder, bool isExternal, bool compares)
{
    const auto itemPath = entry.text("@path");
    const auto path = itemPath == "." ? folder : (fs::path{folder} / itemPath).string();
    const auto repositoryKind = [&](const char* key) {
        const auto kind = entry.text(key);
        return !kind.empty() && kind != "none" ? kind : std::string{compares ? "normal" : "none"};
    };
    const auto flag = [&](const char* key, const char* name) { return entry.text(key).empty() ? "" : name; };
    // The older interface that scans use does not tell of an added item's properties.
    const auto properties = entry.text("wc-status@item") == "added" ? "none" : entry.text("wc-status@props");
    const bool isFileExternal = !entry.text("wc-status@file-external").empty();
    return joined(
        {path, isExternal ? "external" : entry.text("wc-status@item"), properties, repositoryKind("repos-status@item"),
         repositoryKind("repos-status@props"), entry.text("wc-status/commit@revision"),
         entry.text("wc-status/commit/date").substr(0, 19), entry.text("wc-status/commit/author"),
         entry.text("wc-status/lock/token"), entry.text("repos-status/lock/token"), flag("wc-status@copied", "copied"),
         isFileExternal ? "" : flag("wc-status@switched", "switched"), flag("wc-status@wc-locked", "locked")});
}

/// What svn status says of every item, sorted.
std::vector<std::string> statusTexts(const std::vector<XMLEntry>& entries, bool compares,
                                     const std::string& folder = {})
{
    std::set<std::string> externals;
    for (const auto& entry : entries) {
        if (entry.text("wc-status@item") == "external" || !entry.text("wc-status@file-external").empty()) {
            externals.insert(entry.text("@path"));
        }
    }
    std::vector<std::string> texts;
    for (const auto& entry : entries) {
        texts.push_back(statusText(entry, folder, externals.contains(entry.text("@path")), compares));
    }
    std::sort(texts.begin(), texts.end());
    return texts;
}

std::vector<std::string> statusTexts(const std::vector<HSVNNodeRef>& nodes)
{
    std::vector<std::string> texts;
    for (const auto& node : nodes) {
        texts.push_back(statusText(*node));
    }
    std::sort(texts.begin(), texts.end());
    return texts;
}

/// Tells each difference of two sorted lists alone.
void expectEqual(const std::vector<std::string>& found, const std::vector<std::string>& expected)
{
    std::vector<std::string> missing;
    std::vector<std::string> surplus;
    std::set_difference(expected.begin(), expected.end(), found.begin(), found.end(), std::back_inserter(missing));
    std::set_difference(found.begin(), found.end(), expected.begin(), expected.end(), std::back_inserter(surplus));
    EXPECT_THAT(missing, IsEmpty());
    EXPECT_THAT(surplus, IsEmpty());
}

struct Scan
{
    HSVNNodeRef root;
    std::size_t abnormalCount = 0;
    std::vector<HSVNNodeRef> nodes; // made last: the scan hands the others out

    explicit Scan(const HSVNPathRef& path, const HSVNStatusOptionsRef& options, const HSVNContextRef& context)
        : nodes{HSVNDirectory::statusForNodesInDirectoryAtPath(path, options, &root, &abnormalCount, context)}
    {
    }

    HSVNNodeRef node(const std::string& name) const { return HSVNNode::nodeWithName(name, nodes); }
    std::vector<std::string> names() const
    {
        std::vector<std::string> names;
        for (const auto& node : nodes) {
            names.push_back(node->name().value_or("(nil)"));
        }
        return names;
    }
};

/// Takes the arguments of svn status for what they mean to a scan.
std::shared_ptr<HSVNStatusOptions> optionsFor(const std::vector<std::string>& arguments)
{
    const auto has = [&](const char* argument) {
        return std::find(arguments.begin(), arguments.end(), argument) != arguments.end();
    };
    auto options = HSVNStatusOptions::defaults();
    options->setIncludeNormalFiles(has("-v"));
    options->setCompareAgainstRepository(has("-u"));
    options->setRespectIgnoreProperties(!has("--no-ignore"));
    options->setProcessExternals(!has("--ignore-externals"));
    options->setRecursive(!has("--depth=immediates"));
    return options;
}

// A working copy of every state

/// Makes the states, in the folder that holds "repository".
constexpr const char* everyStateScript = R"sh(
svn() { command svn --non-interactive "$@"; }
root=file://$PWD/repository
mkdir layout
for folder in . folder copied-tree deleted-tree "with blank" switched sparse externals lost; do
    mkdir -p "layout/$folder"
    for file in normal modified properties both deleted missing replaced moved copied locked broken stolen elsewhere \
        listed text-conflict property-conflict tree-conflict obstructed outdated gone; do
        echo $file > "layout/$folder/$file"
    done
done
svn import -q layout $root/trunk -m "" --username alice
svn copy -q $root/trunk $root/branch -m "" --username bob
svn checkout -q $root/trunk wc
svn checkout -q $root/trunk other
cd wc
svn propset -q svn:ignore '*.o' .
printf '^/branch/folder tree\n^/branch/normal file-external\n-r2 ^/branch/sparse@2 "pinned tree"\n' > ../definitions
svn propset -q svn:externals -F ../definitions externals
svn propset -q svn:eol-style native normal
svn commit -q -m "" --username alice
svn update -q
cd ../other
echo theirs > text-conflict; echo theirs > outdated; echo theirs > folder/outdated; echo theirs > folder/text-conflict
svn propset -q colour theirs property-conflict outdated
svn remove -q tree-conflict gone
echo new > coming; svn add -q coming
svn commit -q -m "" --username bob
cd ../wc
for file in modified both text-conflict folder/text-conflict tree-conflict listed folder/modified "with blank/modified"; do
    echo mine > "$file"
done
printf 'normal\r\n' > normal # unchanged, but longer than in the repository
svn propset -q colour mine properties both property-conflict folder/properties folder
svn update -q --accept postpone text-conflict folder/text-conflict property-conflict tree-conflict
svn remove -q deleted deleted-tree folder/deleted
rm -r missing lost obstructed
mkdir obstructed
svn remove -q replaced; echo other > replaced; svn add -q replaced
svn move -q moved moved-here
svn copy -q copied copied-here
svn copy -q copied-tree copy-of-tree; echo changed > copy-of-tree/modified
svn copy -q $root/branch/modified@2 copied-from-branch
mkdir added; echo new > added/file; svn add -q added
svn lock -q locked broken stolen -m "why <not>" --username alice
svn unlock -q --force $root/trunk/broken --username bob
svn lock -q --force $root/trunk/stolen $root/trunk/elsewhere --username bob
svn changelist -q list listed
svn switch -q --ignore-ancestry $root/branch/folder switched
svn update -q --set-depth empty sparse
mkdir -p unversioned/inner; echo > unversioned/inner/file
printf '' > "$(printf 'control\001\302\205character')";
echo > ignored.o; echo > "umlaut-ä"
)sh";

class EveryState : public testing::Test
{
  protected:
    static void SetUpTestSuite()
    {
        repository = std::make_unique<TestRepository>();
        mustRun({"sh", "-e", "-c", "cd \"$0\"\n" + std::string{everyStateScript}, repository->beside("")});
        wc = scannedPath(repository->beside("wc"));
        alterWorkingCopyDatabase(wc->string(),
                                 {"UPDATE nodes SET presence = 'incomplete' WHERE local_relpath = 'copied-tree'",
                                  "INSERT INTO wc_lock VALUES (1, 'folder', 0)"});
    }
    static void TearDownTestSuite()
    {
        wc.reset();
        repository.reset();
    }

    Scan scan(const std::shared_ptr<HSVNStatusOptions>& options) const { return Scan{wc, options, reading.client}; }
    static std::vector<XMLEntry> svnEntries(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), {"svn", "--non-interactive", "--xml"});
        arguments.push_back(wc->string());
        return XMLEntry::entriesIn(mustRun(arguments));
    }
    static std::string conflictNote(const HSVNStatus& status)
    {
        return joined({status.conflictOldVersion().value_or(""), status.conflictWorkingVersion().value_or(""),
                       status.conflictNewVersion().value_or(""), status.propertyRejectFilePath().value_or("")});
    }

    static inline std::unique_ptr<TestRepository> repository;
    static inline HSVNLocalPathRef wc;
    ReadingClient reading;
};

TEST_F(EveryState, IsScannedAsSvnStatusTellsIt)
{
    const std::vector<std::vector<std::string>> rows{{},
                                                     {"-v"},
                                                     {"-u"},
                                                     {"-v", "-u", "--no-ignore"},
                                                     {"--no-ignore", "--ignore-externals"},
                                                     {"--depth=immediates", "-v"},
                                                     {"--depth=immediates", "-u"},
                                                     {"--depth=immediates"}};
    for (auto arguments : rows) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const auto options = optionsFor(arguments);
        arguments.insert(arguments.begin(), "status");
        const auto expected = statusTexts(svnEntries(arguments), options->compareAgainstRepository());
        const auto found = statusTexts(scan(options).nodes);
        ASSERT_GT(found.size(), 20U);
        expectEqual(found, expected);
    }
}

TEST_F(EveryState, HasTheEntriesThatSvnInfoTells)
{
    auto options = optionsFor({"-v"});
    options->setProcessExternals(false);
    std::map<std::string, std::string> found;
    for (const auto& node : scan(options).nodes) {
        const HSVNStatus& status = *node->status();
        static constexpr const char* schedules[] = {"normal", "add", "delete", "replace"};
        if (status.isVersioned() && status.textStatus() != HSVNStatusKindExternal) {
            const auto from = status.copyFromURL();
            found[node->path()->string()] =
                joined({node->isDirectory() ? "dir" : "file", schedules[status.schedule()],
                        node->URL() ? node->URL()->string() : "", from ? from->string() : "",
                        revisionText(status.copyFromRevision()),
                        node->isDirectory() ? "" : dateText(status.upToDateTextDate()), conflictNote(status)});
        }
    }
    std::size_t compared = 0;
    for (const auto& entry : svnEntries({"info", "--depth=infinity"})) {
        const auto path = entry.text("@path");
        if (!found.contains(path)) {
            continue;
        }
        const auto fileName = [&](const char* key) { return fs::path{entry.text(key)}.filename().string(); };
        const bool isTextConflict = entry.text("conflict@type") == "text";
        const auto textFile = [&](const char* key) { return isTextConflict ? fileName(key) : ""; };
        EXPECT_EQ(found[path], joined({entry.text("@kind"), entry.text("wc-info/schedule"), entry.text("url"),
                                       entry.text("wc-info/copy-from-url"), entry.text("wc-info/copy-from-rev"),
                                       entry.text("wc-info/text-updated").substr(0, 19),
                                       joined({textFile("conflict/prev-base-file"), textFile("conflict/prev-wc-file"),
                                               textFile("conflict/cur-base-file"), fileName("conflict/prop-file")})}))
            << path;
        ++compared;
    }
    EXPECT_GT(compared, 150U);
}

TEST_F(EveryState, GivesFilesTheirSizeOnDisk)
{
    std::size_t compared = 0;
    for (const auto& node : scan(optionsFor({"-v", "--no-ignore"})).nodes) {
        const bool isFile = fs::is_regular_file(node->path()->string());
        EXPECT_EQ(node->size(), isFile && !node->isDirectory() ? fs::file_size(node->path()->string()) : 0U)
            << node->path()->string();
        compared += isFile ? 1 : 0;
    }
    EXPECT_GT(compared, 150U);
}

TEST_F(EveryState, CombinesKindsAsTheUnionOfAllItemsBelow)
{
    for (const auto& arguments : std::vector<std::vector<std::string>>{{"-v", "-u"}, {}}) {
        auto options = optionsFor(arguments);
        options->setPropagateStatusToAncestor(true);
        const auto whole = scan(options);
        std::size_t combined = 0;
        for (const auto& folder : whole.nodes) {
            if (!folder->isDirectory()) {
                continue;
            }
            HSVNStatusKinds local = HSVNStatusKindNone;
            HSVNStatusKinds remote = HSVNStatusKindNone;
            std::uint32_t treeConflicts = 0;
            for (const auto& node : whole.nodes) {
                if (node->path()->string().starts_with(folder->path()->string() + "/")) {
                    local |= node->status()->textStatus() | node->status()->propertyStatus();
                    remote |= node->status()->repositoryTextStatus() | node->status()->repositoryPropertyStatus();
                    treeConflicts += node->status()->treeConflicted() ? 1 : 0;
                }
            }
            const auto& directory = dynamic_cast<const HSVNDirectory&>(*folder);
            EXPECT_EQ(directory.aggregateChildStatus(), local) << folder->path()->string();
            EXPECT_EQ(directory.aggregateRepositoryChildStatus(), remote) << folder->path()->string();
            EXPECT_EQ(directory.childTreeConflictCount(), treeConflicts) << folder->path()->string();
            combined += local != HSVNStatusKindNone ? 1 : 0;
        }
        EXPECT_GT(combined, arguments.empty() ? 2U : 8U);
        options->setRecursive(false);
        const auto alone = scan(options);
        ASSERT_EQ(alone.nodes.size(), 1U);
        ASSERT_EQ(alone.root, alone.nodes.front());
        EXPECT_EQ(alone.root->path()->string(), wc->string());
        const auto& root = dynamic_cast<const HSVNDirectory&>(*alone.root);
        EXPECT_TRUE(root.hasMissingNodes() && root.hasConflictedNodes() && root.hasReplacedNodes());
        EXPECT_GT(root.childTreeConflictCount(), 0U);
        EXPECT_EQ(HSVNDirectory::workingCopyWithStatusAtPath(wc, reading.client)->childTreeConflictCount(),
                  root.childTreeConflictCount());
        if (whole.root) {
            const auto& wholeRoot = dynamic_cast<const HSVNDirectory&>(*whole.root);
            EXPECT_EQ(root.aggregateChildStatus(), wholeRoot.aggregateChildStatus());
            EXPECT_EQ(root.aggregateRepositoryChildStatus(), wholeRoot.aggregateRepositoryChildStatus());
        }
        EXPECT_EQ(alone.abnormalCount, whole.abnormalCount);
    }
}

TEST_F(EveryState, CountsInTheWholeTreeWhenAllOfAFolderAloneIsCompared)
{
    const auto whole = scan(optionsFor({"-v", "-u"}));
    const auto alone = scan(optionsFor({"-v", "-u", "--depth=immediates"}));
    ASSERT_EQ(alone.names(), std::vector<std::string>{"wc"});
    EXPECT_EQ(alone.root, alone.nodes.front());
    EXPECT_EQ(alone.abnormalCount, whole.abnormalCount);
    EXPECT_EQ(static_cast<const HSVNDirectory&>(*alone.root).aggregateChildStatus(), HSVNStatusKindNone);
}

TEST_F(EveryState, LeavesConflictFilesOutOfTheCountAndTheNodes)
{
    const auto countAbnormal = [](const Scan& scan) {
        return static_cast<std::size_t>(std::count_if(scan.nodes.begin(), scan.nodes.end(),
                                                      [](const auto& node) { return node->status()->isAbnormal(); }));
    };
    auto options = optionsFor({"-v"});
    const auto with = scan(options);
    options->setIncludeConflictVersionFiles(false);
    const auto without = scan(options);
    EXPECT_EQ(with.abnormalCount, countAbnormal(with));
    EXPECT_EQ(without.abnormalCount, countAbnormal(without));
    std::vector<std::string> removed;
    for (const auto& name : with.names()) {
        if (!without.node(name)) {
            removed.push_back(name);
        }
    }
    EXPECT_THAT(removed,
                UnorderedElementsAre("text-conflict.mine", "text-conflict.r3", "text-conflict.r4", "text-conflict.mine",
                                     "text-conflict.r3", "text-conflict.r4", "property-conflict.prej"))
        << "of the folder and of one in it";
    const auto conflicted = std::find_if(with.nodes.begin(), with.nodes.end(), [](const auto& node) {
        return node->status()->textStatus() == HSVNStatusKindConflicted;
    });
    EXPECT_EQ((*conflicted)->status()->conflictOldRevision(), 3);
    EXPECT_EQ((*conflicted)->status()->conflictNewRevision(), 4);
}

TEST_F(EveryState, ShowsControlCharactersInNamesOnly)
{
    const auto node = scan(optionsFor({})).node("control??character");
    ASSERT_TRUE(node);
    EXPECT_EQ(node->path()->lastComponent(), "control\x01\xC2\x85"
                                             "character");
    EXPECT_EQ(node->location()->string(), wc->string());
    std::vector<std::string> items;
    std::vector<std::string> shown;
    for (const std::string character : {"\x01", "\x1F", "\x7F", "\xC2\x80", "\xC2\x9F"}) {
        for (const std::size_t place : {0U, 6U, 7U, 8U}) {
            const std::string before(place, 'a');
            const std::string after = "\xC3\xA9" + std::to_string(shown.size());
            items.push_back(wc->string() + '/' + before + character + after);
            std::ofstream{items.back()}.close();
            shown.push_back(before + '?' + after);
        }
    }
    EXPECT_THAT(scan(optionsFor({})).names(), IsSupersetOf(shown));
    for (const auto& item : items) {
        std::filesystem::remove(item);
    }
}

TEST_F(EveryState, HasDepthsFromLine15On)
{
    EXPECT_EQ(scan(optionsFor({"-v"})).node("sparse")->status()->depth(), HSVNDepthEmpty);
    const auto found = statusTexts(scan(optionsFor({"-v"})).nodes);
    for (const auto& line : HSVNVersion::wellKnownVersions()) {
        reading.client->setBundle(bundleOfLine(line));
        const auto scanned = scan(optionsFor({"-v"}));
        EXPECT_EQ(scanned.node("sparse")->status()->depth(),
                  line == HSVNVersion::version1_4() ? HSVNDepthUnknown : HSVNDepthEmpty);
        EXPECT_EQ(statusTexts(scanned.nodes), found);
    }
}

TEST_F(EveryState, IsToldOfSingleItems)
{
    const auto all = scan(optionsFor({"-v", "--no-ignore", "-u"}));
    for (const char* name : {"normal", "text-conflict", "stolen", "outdated", "moved-here", "sparse", "added"}) {
        const auto path = wc->pathByAddingComponent(name);
        const auto node = HSVNNode::nodeWithStatusAtPath(path, HSVNRevision::HEAD(), true, reading.client);
        ASSERT_TRUE(node) << name;
        const auto inScan = std::find_if(all.nodes.begin(), all.nodes.end(),
                                         [&](const auto& other) { return other->path()->isEqualToPath(path); });
        EXPECT_EQ(joined({kindName(node->status()->textStatus()), revisionText(node->revision())}),
                  joined({kindName((*inScan)->status()->textStatus()), revisionText((*inScan)->revision())}));
        EXPECT_EQ(node->lockStatus(), (*inScan)->lockStatus());
    }
    EXPECT_EQ(HSVNNode::nodeWithStatusAtPath(wc->pathByAddingComponent("nowhere"), HSVNRevision::UNSPECIFIED(), false,
                                             reading.client),
              nullptr);
}

TEST_F(EveryState, IsToldOfTheFolderAlone)
{
    HSVNRepositoryInfoRef information;
    const auto folder = HSVNDirectory::workingCopyWithStatusAtPath(wc, &information, reading.client);
    EXPECT_EQ(information->rootURL()->string(), repository->url());
    EXPECT_EQ(information->UUID(), mustRun({"svnlook", "uuid", repository->path()}).substr(0, 36));
    EXPECT_EQ(folder->name(), "wc");
    EXPECT_EQ(folder->URL()->string(), repository->url("trunk"));
    EXPECT_EQ(folder->revision(), 3);
    EXPECT_EQ(folder->author(), "alice");
    EXPECT_EQ(folder->status()->textStatus(), HSVNStatusKindNormal);
    EXPECT_EQ(folder->status()->depth(), HSVNDepthInfinity);
    EXPECT_TRUE(folder->hasMissingNodes() && folder->hasUnversionedNodes());

    const auto inner =
        HSVNDirectory::workingCopyWithStatusAtPath(wc->pathByAddingComponent("copy-of-tree"), reading.client);
    EXPECT_EQ(inner->status()->textStatus(), HSVNStatusKindAdded);
    EXPECT_EQ(inner->aggregateChildStatus(), HSVNStatusKindModified);
    EXPECT_EQ(reasonOf<HSVNNotWorkingCopyException>([&] {
                  HSVNDirectory::workingCopyWithStatusAtPath(wc->pathByAddingComponent("unversioned"), reading.client);
              }),
              "Directory is not a working copy");
}

TEST_F(EveryState, CanBeLeftInTheMiddleOfAScan)
{
    struct Stopping : Harry
    {
        int asked = 0;
        bool queryContinue(HSVNContext&) { return ++asked < 5; }
    };
    const auto delegate = std::make_shared<HSVNClientDelegateFor<Stopping>>();
    const auto client = std::make_shared<HSVNClient>(nullptr, delegate);
    EXPECT_THROW(HSVNDirectory::statusForNodesInDirectoryAtPath(wc, optionsFor({"-v"}), client),
                 HSVNOperationCancelledException);
    EXPECT_EQ(delegate->asked, 5) << "Subversion went on";
}

// Working copies that are hard to read

namespace {

/// Makes a state of a working copy's root in the folder that holds "repository".
class RootState : public testing::TestWithParam<const char*>
{
};

constexpr const char* linkedWorkingCopyScript = R"sh(
cd "$0"
ln -s wc link
svn -q checkout file://$PWD/repository wc
mkdir wc/folder; echo > wc/folder/file; svn -q add wc/folder; svn -q propset colour red wc; svn -q commit -m "" wc
svn -q update wc
svn -q checkout file://$PWD/repository other
)sh";

} // namespace

TEST_P(RootState, IsToldThroughALinkToo)
{
    const TestRepository repository;
    ReadingClient reading;
    mustRun({"sh", "-e", "-c", std::string{linkedWorkingCopyScript} + GetParam(), repository.beside("")});
    for (const auto* name : {"wc", "link"}) {
        const auto path = repository.beside(name);
        const auto xml = mustRun({"svn", "status", "-v", "--xml", path});
        const auto found = statusTexts(Scan{scannedPath(path), optionsFor({"-v"}), reading.client}.nodes);
        EXPECT_GT(found.size(), 2U);
        expectEqual(found, statusTexts(XMLEntry::entriesIn(xml), false));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Values, RootState,
    testing::Values("svn -q propset colour blue other; svn -q commit -m '' other\n"
                    "svn -q propset colour green wc; svn -q update --accept postpone wc",
                    "svn -q rm other/folder/file; svn -q commit -m '' other\n"
                    "svn -q rm wc/folder/file; svn -q update --accept postpone wc",
                    R"(sqlite3 wc/.svn/wc.db "UPDATE nodes SET presence = 'incomplete' WHERE local_relpath = ''")"));

TEST(UnreadableWorkingCopy, IsNotTakenForAnUnversionedFolder)
{
    const TestRepository repository;
    const auto path = scannedPath(repository.checkOut());
    const auto bundle = std::make_shared<AlteredBundle>([](HSVNBundleEntryPoints& table) {
        table.client_status2 = [](auto...) { return AlteredBundle::original().error_create(155007, nullptr, "no"); };
    });
    const auto client = std::make_shared<HSVNClient>(bundle, nullptr);
    const auto scan = [&](const HSVNLocalPathRef& folder) { return Scan{folder, optionsFor({}), client}; };
    EXPECT_EQ(reasonOf<HSVNNotWorkingCopyException>([&] { scan(path); }), "no");
    EXPECT_THAT(scan(path->parent()).names(), Contains(path->lastComponent()));
}

// Folders that are not under version control

TEST_F(EveryState, HasUnversionedFoldersOfTheirOwn)
{
    auto options = optionsFor({});
    const auto inside = Scan{wc->pathByAddingComponent("unversioned"), options, reading.client};
    EXPECT_THAT(inside.names(), ElementsAre("inner", "file"));
    EXPECT_EQ(inside.root->name(), "unversioned");
    EXPECT_EQ(inside.abnormalCount, 2U);

    const auto outside = scannedPath(repository->beside(""));
    writeFile(outside->string() + "/plain/a b/deep/file", "12345");
    writeFile(outside->string() + "/plain/junk.o", "");
    const auto plain = outside->pathByAddingComponent("plain");
    mustRun({"svn", "checkout", "-q", repository->url("trunk/sparse"), plain->string() + "/nested"});
    reading.client->setOption("*.o", "global-ignores", "config", "miscellany");
    const auto all = Scan{plain, options, reading.client};
    EXPECT_THAT(all.names(), ElementsAre("a b", "deep", "file", "nested"));
    EXPECT_EQ(all.nodes[2]->size(), 5U);
    EXPECT_EQ(all.nodes[2]->status()->textStatus(), HSVNStatusKindUnversioned);
    EXPECT_TRUE(all.nodes[1]->isDirectory());
    EXPECT_EQ(all.abnormalCount, 4U);
    options->setRespectIgnoreProperties(false);
    options->setRecursive(false);
    const auto flat = Scan{plain, options, reading.client};
    EXPECT_THAT(flat.names(), ElementsAre("a b", "junk.o", "nested"));
    EXPECT_EQ(flat.nodes[1]->status()->textStatus(), HSVNStatusKindIgnored);

    EXPECT_THAT(reasonOf<HSVNException>([&] {
                    Scan{outside->pathByAddingComponent("nowhere"), options, reading.client};
                }),
                HasSubstr("nowhere"));
    EXPECT_EQ(reasonOf([&] {
                  Scan{nullptr, options, reading.client};
              }),
              "Invalid parameter not satisfying: path != nil");
    EXPECT_EQ(reasonOf([&] {
                  Scan{plain, nullptr, reading.client};
              }),
              "Invalid parameter not satisfying: options != nil");
    EXPECT_EQ(reasonOf<HSVNException>([&] {
                  HSVNDirectory::statusForNodesInDirectoryAtPath(HSVNURL::URLWithString("file:///r"), options,
                                                                 reading.client);
              }),
              "'file:///r' is not a local path");
    options->setRevision(nullptr);
    EXPECT_EQ(reasonOf([&] {
                  Scan{plain, options, reading.client};
              }),
              "Invalid parameter not satisfying: [options revision] != nil");
    EXPECT_EQ(reasonOf([&] { HSVNNode::nodeForUnversionedFileAtPath(plain, {}, nullptr); }),
              "Invalid parameter not satisfying: context != nil");
}

TEST(UnversionedScan, TellsOfAFolderThatCannotBeRead)
{
    const TemporaryFolder folder;
    fs::create_directory(folder / "closed");
    fs::permissions(folder.path(), fs::perms{0755});
    fs::permissions(folder / "closed", fs::perms::none);
    const ReadingClient reading;
    constexpr uid_t nobody = 65534; // the superuser may read everything
    const int user = setfsuid(nobody);
    const auto reason = reasonOf<HSVNException>([&] {
        HSVNDirectory::statusForNodesInUnversionedDirectoryAtPath(
            scannedPath(folder.path()), HSVNStatusOptions::defaults(), nullptr, nullptr, reading.client);
    });
    setfsuid(static_cast<uid_t>(user));
    fs::permissions(folder / "closed", fs::perms::owner_all);
    EXPECT_THAT(reason, HasSubstr(folder / "closed"));
}

// Nodes of single records

TEST(HSVNNodeAtPath, LooksAtTheDiskForItemsWithoutAnEntry)
{
    const TemporaryFolder folder;
    const ReadingClient reading;
    const HSVNContextRef context = reading.client;
    svn_wc_status2_t status{};
    status.text_status = svn_wc_status_unversioned;
    status.prop_status = svn_wc_status_none;
    const auto nodeAt = [&](const std::string& name) {
        return HSVNNode::nodeAtPath(scannedPath(folder / name), &status, context, context->pool());
    };
    writeFile(folder / "sub/file", "12345");
    fs::create_symlink("nowhere", folder / "link");
    EXPECT_EQ(nodeAt("sub/file")->size(), 5U);
    EXPECT_EQ(nodeAt("sub/file")->location()->string(), folder / "sub");
    EXPECT_TRUE(nodeAt("sub")->isDirectory());
    EXPECT_FALSE(nodeAt("link")->isDirectory());
    EXPECT_EQ(nodeAt("gone")->size(), 0U);
    EXPECT_EQ(nodeAt("gone")->revision(), HSVNInvalidRevision);
    testing::internal::CaptureStderr();
    const auto reason = reasonOf<HSVNException>([&] { nodeAt(std::string(300, 'x')); });
    const auto log = testing::internal::GetCapturedStderr();
    EXPECT_THAT(reason, HasSubstr("xxx"));
    EXPECT_THAT(log, HasSubstr("Exception caught while creating node for '" + folder.path().string() + "/xxx"));
    EXPECT_THAT(log, HasSubstr("] " + reason + "\n"));
    EXPECT_EQ(reasonOf([&] { HSVNNode::nodeAtPath(scannedPath("/a"), nullptr, context, context->pool()); }),
              "Invalid parameter not satisfying: status != NULL");
    EXPECT_EQ(reasonOf([&] { HSVNNode::nodeAtPath(scannedPath("/a"), &status, context, nullptr); }),
              "Invalid parameter not satisfying: pool != NULL");
}

// Externals

TEST_F(EveryState, HasTheExternalsThatItsDefinitionsName)
{
    const auto below = [&](const std::vector<HSVNLocalPathRef>& paths) {
        std::vector<std::string> texts;
        for (const auto& path : paths) {
            texts.push_back(path->string().substr(wc->string().size() + 1));
        }
        return texts;
    };
    EXPECT_THAT(below(HSVNDirectory::externalsForPath(wc, reading.client)),
                ElementsAre("externals/file-external", "externals/pinned tree", "externals/tree"));
    EXPECT_THAT(below(HSVNDirectory::externalsInDirectoryAtPath(wc, reading.client)),
                ElementsAre("externals/pinned tree", "externals/tree"));
    EXPECT_THAT(HSVNDirectory::externalsForPath(wc->pathByAddingComponent("folder"), reading.client), IsEmpty());
}

TEST(HSVNDirectoryExternals, AreFoundInEveryPartOfAWorkingCopy)
{
    const TestRepository repository;
    repository.change({"mkdir", "a", "mkdir", "a/inner", "mkdir", "a-b", "mkdir", "a0"});
    const auto wc = repository.checkOut();
    const ReadingClient reading;
    const auto counts = [&] {
        std::vector<std::size_t> sizes;
        for (const char* folder : {"", "/a", "/a/inner", "/a-b", "/a0"}) {
            sizes.push_back(HSVNDirectory::externalsForPath(scannedPath(wc + folder), reading.client).size());
        }
        return sizes;
    };
    EXPECT_THAT(counts(), ElementsAre(0, 0, 0, 0, 0));
    mustRun({"svn", "propset", "-q", "note", "mentions svn:externals", wc + "/a0"});
    EXPECT_THAT(counts(), ElementsAre(0, 0, 0, 0, 0));
    mustRun({"svn", "propset", "-q", "svn:externals", "^/a0 one\n^/a0 two", wc + "/a/inner"});
    EXPECT_THAT(counts(), ElementsAre(2, 2, 2, 0, 0));
    mustRun({"svn", "commit", "-q", "-m", "", wc});
    EXPECT_THAT(counts(), ElementsAre(2, 2, 2, 0, 0));
    mustRun({"svn", "propdel", "-q", "svn:externals", wc + "/a/inner"});
    EXPECT_THAT(counts(), ElementsAre(0, 0, 0, 0, 0));
    mustRun({"svn", "copy", "-q", repository.url("a"), wc + "/copied"});
    EXPECT_THAT(counts(), ElementsAre(2, 0, 0, 0, 0));
}

TEST(HSVNDirectoryExternals, ThatAreBrokenAreToldButDoNotEndAScan)
{
    const TestRepository repository;
    repository.makeFolder("trunk");
    mustRun({"svn", "propset", "-q", "svn:externals", "^/trunk dir", repository.checkOut() + "/trunk"});
    const auto wc = scannedPath(repository.beside("wc"));
    const ReadingClient reading;
    for (const char* definition : {"only-one-word", "^/a@b dir"}) {
        const auto size = std::to_string(std::string_view{definition}.size());
        alterWorkingCopyDatabase(wc->string(), {"UPDATE actual_node SET properties = CAST('(svn:externals " + size +
                                                " " + definition + ")' AS BLOB)"});
        EXPECT_THROW(HSVNDirectory::externalsForPath(wc, reading.client), HSVNException) << definition;
        EXPECT_EQ(Scan(wc, optionsFor({"-v"}), reading.client).nodes.size(), 2U) << definition;
    }
}

TEST(HSVNDirectoryExternals, InsideExternalsAreExternalToo)
{
    const TestRepository repository;
    repository.change({"mkdir", "a", "mkdir", "b", "mkdir", "c", "propset", "svn:externals", "^/b inner", "a",
                       "propset", "svn:externals", "^/c innermost", "b"});
    const auto wc = repository.checkOut("wc", "c");
    mustRun({"svn", "propset", "-q", "svn:externals", "^/a outer", wc});
    mustRun({"svn", "update", "-q", wc});
    const ReadingClient reading;
    for (const auto& options : {optionsFor({}), optionsFor({"-v"})}) {
        std::vector<std::string> externals;
        for (const auto& node : Scan(scannedPath(wc), options, reading.client).nodes) {
            if (node->status()->textStatus() == HSVNStatusKindExternal) {
                externals.push_back(node->path()->string().substr(wc.size()));
            }
        }
        EXPECT_THAT(std::set(externals.begin(), externals.end()),
                    ElementsAre("/outer", "/outer/inner", "/outer/inner/innermost"));
    }
}

TEST(HSVNDirectoryConflicts, OfOneNameInTwoFoldersLeaveNoFilesInTheAnswer)
{
    const TestRepository repository;
    repository.change({"mkdir", "one", "mkdir", "two"});
    const auto put = [&](const std::string& text) {
        writeFile(repository.beside("text"), text);
        repository.change({"put", repository.beside("text"), "one/file", "put", repository.beside("text"), "two/file"});
    };
    put("first\n");
    repository.change({"propset", "svn:externals", "^/two/file external", "one"});
    const auto wc = repository.checkOut();
    put("second\n");
    writeFile(wc + "/one/file", "mine\n");
    writeFile(wc + "/two/file", "mine\n");
    writeFile(wc + "/one/external", "mine\n");
    mustRun({"svn", "update", "-q", "--accept", "postpone", wc});
    const ReadingClient reading;
    auto options = optionsFor({});
    options->setIncludeConflictVersionFiles(false);
    const Scan scan{scannedPath(wc), options, reading.client};
    EXPECT_THAT(scan.names(), ElementsAre("external", "file", "file"));
    EXPECT_TRUE(scan.node("external")->status()->textConflicted());
}

TEST(HSVNDirectoryAggregates, HoldTheKindsOfProperties)
{
    const TestRepository repository;
    repository.change({"mkdir", "folder", "mkdir", "folder/inner"});
    const auto wc = repository.checkOut();
    mustRun({"svn", "propset", "-q", "name", "value", wc + "/folder/inner"});
    repository.change({"propset", "other", "value", "folder/inner"});
    const ReadingClient reading;
    const auto alone = HSVNDirectory::workingCopyWithStatusAtPath(scannedPath(wc + "/folder"), reading.client);
    EXPECT_EQ(alone->aggregateChildStatus() & HSVNStatusKindModified, HSVNStatusKindModified);
    auto options = optionsFor({"-v", "-u"});
    options->setPropagateStatusToAncestor(true);
    const Scan scan{scannedPath(wc), options, reading.client};
    for (const auto& node : {scan.root, scan.node("folder")}) {
        const auto& folder = static_cast<const HSVNDirectory&>(*node);
        EXPECT_EQ(folder.aggregateChildStatus() & HSVNStatusKindModified, HSVNStatusKindModified);
        EXPECT_EQ(folder.aggregateRepositoryChildStatus() & HSVNStatusKindModified, HSVNStatusKindModified);
    }
}

// Working copies of every age

TEST(OlderLinesScan, GoesOnWhereAFolderIsMissingOrObstructed)
{
    const TestRepository repository;
    for (const char* folder : {"gone", "obstructed", "far"}) {
        repository.makeFolder(folder);
    }
    const auto wc = repository.checkOut();
    mustRun({"svn", "propset", "-q", "svn:externals", "^/far there", wc + "/far"});
    fs::remove_all(wc + "/gone");
    fs::remove_all(wc + "/obstructed");
    writeFile(wc + "/obstructed", "in the way");
    for (const auto& line : HSVNVersion::wellKnownVersions()) {
        SCOPED_TRACE(line);
        const ReadingClient reading{bundleOfLine(line)};
        const Scan scan{scannedPath(wc), optionsFor({}), reading.client};
        EXPECT_EQ(scan.node("gone")->status()->textStatus(), HSVNStatusKindMissing);
        EXPECT_EQ(scan.node("obstructed")->status()->textStatus(), HSVNStatusKindObstructed);
        EXPECT_EQ(HSVNDirectory::externalsForPath(scannedPath(wc), reading.client).size(), 1U);
    }
}

TEST(SecondLoaderScan, ReadsTheRecordsOfTheBundlesOwnLine)
{
    const TestRepository repository;
    const auto wc = scannedPath(repository.checkOut());
    HSVNBundleLoader other;
    const auto path = HSVNBundleLoader::sharedInstance().newestBundle()->bundle()->path();
    const auto altered = std::make_shared<AlteredBundle>([](HSVNBundleEntryPoints& table) {
        table.client_checkout2 = nullptr;
        table.client_update2 = nullptr;
    });
    for (const HSVNBundleRef& bundle : {HSVNBundleRef{other.loadBundleAtPath(path)}, HSVNBundleRef{altered}}) {
        const ReadingClient reading{bundle};
        EXPECT_EQ(reading.client->bundleVersion(), std::nullopt) << "the shared loader does not know this bundle";
        HSVNNode::updateNodes({wc}, HSVNRevision::HEAD(), HSVNUpdateOptions::defaults(), reading.client);
        EXPECT_EQ(Scan(wc, optionsFor({"-v"}), reading.client).root->status()->depth(), HSVNDepthInfinity);
    }
}

/// The line of a built bundle: "1.14" of ".../Subversion-1.14.bundle".
std::string lineOf(const std::string& bundle)
{
    const auto name = fs::path{bundle}.stem().string();
    return name.substr(name.find('-') + 1);
}

TEST(SampleScan, OfEachLineIsWhatThatLineTold)
{
    for (const auto& folder : builtBundles()) {
        SCOPED_TRACE(folder);
        if (!fs::exists(HSVN_TEST_SAMPLES "/" + lineOf(folder) + ".tar.gz")) {
            continue;
        }
        const SampleWorkingCopy sample{lineOf(folder)};
        sample.relocate();
        HSVNBundleLoader loader;
        const ReadingClient reading{loader.loadBundleAtPath(folder)};
        for (const auto& [file, arguments] : std::vector<std::pair<const char*, std::vector<std::string>>>{
                 {"status.xml", {}}, {"status-vu.xml", {"-v", "-u"}}})
        {
            SCOPED_TRACE(file);
            const auto options = optionsFor(arguments);
            const auto entries = XMLEntry::entriesIn(sample.expected(file));
            ASSERT_GT(entries.size(), 30U);
            expectEqual(statusTexts(Scan{scannedPath(sample.path()), options, reading.client}.nodes),
                        statusTexts(entries, options->compareAgainstRepository(), sample.path()));
        }
    }
}

TEST(SampleScan, OfAnOlderLineIsRefusedUntilItIsUpgraded)
{
    const ReadingClient reading;
    for (const char* line : {"1.4", "1.5", "1.6"}) {
        SCOPED_TRACE(line);
        const SampleWorkingCopy sample{line};
        const auto wc = scannedPath(sample.path());
        EXPECT_THAT(reasonOf<HSVNUnsupportedWorkingCopyFormatException>([&] {
                        Scan{wc, optionsFor({}), reading.client};
                    }),
                    HasSubstr(sample.path()));
        HSVNDirectory::upgradeWorkingCopyAtPath(wc, installedLine(), false);
        const auto expected =
            statusTexts(XMLEntry::entriesIn(mustRun({"svn", "status", "-v", "--xml", wc->string()})), false);
        ASSERT_GT(expected.size(), 60U);
        expectEqual(statusTexts(Scan{wc, optionsFor({"-v"}), reading.client}.nodes), expected);
    }
}

} // namespace
