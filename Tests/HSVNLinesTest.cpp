// Every loaded line in one process, each on a working copy of its own format. A build with HSVN_SUBVERSION_ROOTS proves
// the adapter on the real older lines with these tests; without, the installed line runs alone.

#include "HSVNBlamedLine.h"
#include "HSVNBundleLoader.h"
#include "HSVNCheckOutOptions.h"
#include "HSVNClient.h"
#include "HSVNCommitOptions.h"
#include "HSVNCopyOptions.h"
#include "HSVNDeleteOptions.h"
#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNExportOptions.h"
#include "HSVNImportOptions.h"
#include "HSVNItemInfo.h"
#include "HSVNLocalPath.h"
#include "HSVNLock.h"
#include "HSVNLockOptions.h"
#include "HSVNMergeOptions.h"
#include "HSVNMoveOptions.h"
#include "HSVNRepository.h"
#include "HSVNRepositoryInfo.h"
#include "HSVNRepositoryOptions.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "HSVNStatus.h"
#include "HSVNStatusOptions.h"
#include "HSVNURL.h"
#include "HSVNUnlockOptions.h"
#include "HSVNUpdateOptions.h"
#include "RecordingDelegate.h"
#include "TemporaryFolder.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <thread>

namespace {

void writeAtPath(const HSVNPathRef& path, const std::string& text) { std::ofstream{path->string()} << text; }

std::string readAtPath(const HSVNPathRef& path)
{
    std::ifstream file{path->string()};
    return {std::istreambuf_iterator<char>{file}, {}};
}

/// The newest format of working copies that a line serves; several lines may have one.
std::int64_t formatOf(const HSVNVersion& line)
{
    const auto& loader = HSVNBundleLoader::sharedInstance();
    return *loader.infoDictionaryForBundle(loader.bundleForVersion(line)).at("HSVNWorkingCopyFormatVersion").number();
}

/// The lines that there are bundles of; another test of the process may have loaded some that present an older one.
std::vector<HSVNVersion> linesBuilt()
{
    auto lines = HSVNBundleLoader::sharedInstance().loadedVersions();
    std::erase_if(lines, [](const auto& line) { return !line.tag().empty(); });
    return lines;
}

/// A user of one line: a client and a working copy of a repository that every line can open.
class LineUser
{
  public:
    LineUser(const HSVNVersion& line, const HSVNURLRef& url, const std::string& folder)
        : _line{line.versionString()}, _client{std::make_shared<HSVNClient>(
                                           HSVNBundleLoader::sharedInstance().bundleForVersion(line), _delegate)},
          _url{url}, _workingCopy{HSVNLocalPath::pathWithString(folder)}, _file{_workingCopy->pathByAddingComponent(
                                                                              "file-" + _line)}
    {
        HSVNDirectory::checkoutDirectoryAtURL(url, _workingCopy, HSVNCheckOutOptions::defaults(), _client);
        writeAtPath(_file, "begun by " + _line + "\n");
        HSVNNode::add(_file, _client);
        commit();
    }

    const HSVNLocalPathRef& workingCopy() const { return _workingCopy; }
    const HSVNClientRef& client() const { return _client; }

    HSVNRevisionNumber change(int round)
    {
        writeAtPath(_file, "round " + std::to_string(round) + " of " + _line + "\n");
        const auto options = HSVNStatusOptions::defaults();
        const auto nodes = HSVNDirectory::statusForNodesInDirectoryAtPath(_workingCopy, options, _client);
        EXPECT_EQ(nodes.size(), 1U) << _line;
        EXPECT_EQ(nodes.at(0)->status()->textStatus(), HSVNStatusKindModified) << _line;
        return commit();
    }

    HSVNRevisionNumber update()
    {
        return HSVNNode::updateNodes({_workingCopy}, HSVNRevision::HEAD(), HSVNUpdateOptions::defaults(), _client)
            .at(0);
    }

    /// A path that is nowhere: each line's own error arrives as the same class.
    void expectItsFailuresToBeMapped()
    {
        EXPECT_THROW(HSVNNode::add(HSVNLocalPath::pathWithString("/nowhere/at/all"), _client),
                     HSVNNotWorkingCopyException)
            << _line;
    }

    void copyMoveAndDelete()
    {
        copy(_file, at("copied"));
        EXPECT_THROW(copy(_file, at("copied")), HSVNEntryExistsException) << _line;
        commit();
        EXPECT_EQ(move(at("copied"), at("moved")), HSVNInvalidRevision) << _line;
        const auto revision = commit();
        std::filesystem::create_directory(at("plain")->string());
        move(at("moved"), at("plain/moved"));
        EXPECT_EQ(readAtPath(at("plain/moved")), readAtPath(_file)) << _line;
        EXPECT_EQ(commit(), revision + 1) << _line << ": of the deletion";
        auto options = HSVNDeleteOptions::defaults();
        EXPECT_THROW(HSVNNode::deleteNodes({at("plain")}, options, _client), HSVNItemModifiedException) << _line;
        options->setForce(true);
        HSVNNode::deleteNodes({at("plain")}, options, _client);
        EXPECT_FALSE(std::filesystem::exists(at("plain")->string())) << _line;
    }

    void changeRepository()
    {
        const auto revision = update();
        EXPECT_EQ(copy(_url, inRepository("branch")), revision + 1) << _line;
        EXPECT_EQ(move(inRepository("branch"), inRepository("tag")), revision + 2) << _line;
        EXPECT_THROW(copy(_url, inRepository("tag/" + _file->lastComponent())), HSVNEntryExistsException) << _line;
        HSVNNode::deleteNodes({inRepository("tag")}, HSVNDeleteOptions::defaults(), _client);
        EXPECT_EQ(update(), revision + 3) << _line;
    }

    void importExportAndMerge()
    {
        const auto outside = _workingCopy->parent();
        const auto file = outside->pathByAddingComponent("import");
        writeAtPath(file, "imported\n");
        const auto imported = inRepository("imported-" + _line)->URL();
        const auto revision = HSVNNode::importNodeAtPath(file, imported, HSVNImportOptions::defaults(), _client);
        EXPECT_EQ(update(), revision) << _line;
        const auto out = outside->pathByAddingComponent("export-" + _line);
        const auto options = HSVNExportOptions::defaults();
        EXPECT_EQ(HSVNNode::exportNodeAtPath(imported, out, options, _client), revision) << _line;
        EXPECT_EQ(readAtPath(out), "imported\n") << _line;
        const auto tree = outside->pathByAddingComponent("tree-" + _line);
        EXPECT_EQ(HSVNNode::exportNodeAtPath(_url, tree, options, _client), revision) << _line;
        EXPECT_EQ(readAtPath(tree->pathByAddingComponent(_file->lastComponent())), readAtPath(_file)) << _line;

        const auto before = readAtPath(_file);
        const auto changed = change(99);
        update(); // one revision everywhere
        HSVNNode::mergeNodeAtPath(_url, HSVNRevision::revisionWithNumber(changed), _url,
                                  HSVNRevision::revisionWithNumber(changed - 1), _workingCopy,
                                  HSVNMergeOptions::defaults(), _client);
        EXPECT_EQ(readAtPath(_file), before) << _line;
        commit();
    }

    void lockAndUnlock()
    {
        const auto options = HSVNLockOptions::defaults();
        HSVNNode::lockNodes({_file}, "why", options, _client);
        const auto node = HSVNNode::nodeWithStatusAtPath(_file, HSVNRevision::HEAD(), true, _client);
        EXPECT_EQ(node->lockStatus(), HSVNLockStatusLockedHere) << _line;
        EXPECT_EQ(node->controllingLock()->comment(), "why") << _line;
        EXPECT_THROW(HSVNNode::lockNodes({_file}, {}, options, _client), HSVNEntryLockedException) << _line;
        HSVNNode::unlockNodes({_file}, HSVNUnlockOptions::defaults(), _client);
        EXPECT_EQ(HSVNNode::nodeWithStatusAtPath(_file, HSVNRevision::HEAD(), true, _client)->lockStatus(),
                  HSVNLockStatusNone)
            << _line;
    }

    void readInfoContentsAndBlame()
    {
        const auto revision = change(7);
        update();
        for (const HSVNPathRef& path : {HSVNPathRef{_file}, inRepository(_file->lastComponent())}) {
            const auto items = _client->info(path);
            ASSERT_EQ(items.size(), 1U) << _line;
            EXPECT_EQ(items[0].url, inRepository(_file->lastComponent())->string()) << _line;
            EXPECT_EQ(items[0].lastChangedRevision, revision) << _line;
            EXPECT_EQ(items[0].workingCopy.has_value(), path == _file) << _line;
            EXPECT_EQ(_client->contents(path), readAtPath(_file)) << _line;
            std::vector<std::string> lines;
            const std::pair range{HSVNRevision::revisionWithNumber(1), HSVNRevision::HEAD()};
            _client->blame({path, HSVNRevisionSpec::HEAD()}, range, {}, [&](const HSVNBlamedLine& line) {
                EXPECT_EQ(line.change->revision, revision) << _line;
                EXPECT_EQ(line.change->properties.count("svn:date"), 1U) << _line;
                lines.emplace_back(line.text);
            });
            EXPECT_EQ(lines, std::vector<std::string>{"round 7 of " + _line}) << _line;
        }
        const auto all = _client->info(_workingCopy, HSVNRevisionSpec::UNSPECIFIED(), {.depth = HSVNDepthInfinity});
        EXPECT_GE(all.size(), 2U) << _line;
    }

  private:
    HSVNPathRef at(const std::string& name) const { return _workingCopy->pathByAddingComponent(name); }
    HSVNPathRef inRepository(const std::string& name) const { return _url->pathByAddingComponent(name); }
    HSVNRevisionNumber copy(const HSVNPathRef& source, const HSVNPathRef& destination) const
    {
        return HSVNNode::copyNodeAtPath(source, destination, HSVNCopyOptions::defaults(), _client);
    }
    HSVNRevisionNumber move(const HSVNPathRef& source, const HSVNPathRef& destination) const
    {
        return HSVNNode::moveNodeAtPath(source, destination, HSVNMoveOptions::defaults(), _client);
    }
    HSVNRevisionNumber commit()
    {
        return HSVNNode::commitChangesToNodes({_workingCopy}, HSVNCommitOptions::defaults(), _client);
    }

    std::string _line;
    std::shared_ptr<RecordingDelegate> _delegate = std::make_shared<RecordingDelegate>();
    HSVNClientRef _client;
    HSVNURLRef _url;
    HSVNLocalPathRef _workingCopy;
    HSVNLocalPathRef _file;
};

class LinesTest : public testing::Test
{
  protected:
    LinesTest()
    {
        const auto options = HSVNFileSystemOptions::defaults();
        options->setCompatibility(3); // the oldest format, which every line can open
        HSVNRepository::createRepositoryAtPath(HSVNLocalPath::pathWithString(_folder / "repository"), options);
    }

    HSVNURLRef url() const { return HSVNLocalPath::pathWithString(_folder / "repository")->URL(); }
    std::string folderOf(const HSVNVersion& line, const std::string& suffix = {}) const
    {
        return _folder / ("wc-" + line.versionString() + suffix);
    }

    const TemporaryFolder _folder;
    const std::vector<HSVNVersion> _lines = linesBuilt();
};

TEST_F(LinesTest, WorkInAlternationOnOneRepository)
{
    std::vector<std::unique_ptr<LineUser>> users;
    for (const auto& line : _lines) {
        users.push_back(std::make_unique<LineUser>(line, url(), folderOf(line)));
        const auto serving = HSVNDirectory::versionForWorkingCopyAtPath(users.back()->workingCopy());
        EXPECT_EQ(formatOf(serving), formatOf(line)) << line << " is served by " << serving;
    }
    for (int round = 1; round <= 3; ++round) {
        for (const auto& user : users) {
            const HSVNRevisionNumber revision = user->change(round);
            for (const auto& other : users) {
                EXPECT_EQ(other->update(), revision);
            }
            user->expectItsFailuresToBeMapped();
        }
    }
    for (const auto& line : _lines) {
        const auto name = "file-" + line.versionString();
        for (const auto& user : users) {
            EXPECT_EQ(readAtPath(user->workingCopy()->pathByAddingComponent(name)),
                      "round 3 of " + line.versionString() + "\n");
        }
    }
}

TEST_F(LinesTest, DoEveryOperation)
{
    for (const auto& line : _lines) {
        LineUser user{line, url(), folderOf(line)};
        user.readInfoContentsAndBlame();
        user.copyMoveAndDelete();
        user.changeRepository();
        user.importExportAndMerge();
        user.lockAndUnlock();
        EXPECT_THROW(HSVNBundleCurrent(), HSVNGenericException) << line;
    }
}

TEST_F(LinesTest, WorkOnThreadsOfTheirOwn)
{
    std::vector<std::exception_ptr> failures(_lines.size());
    {
        std::vector<std::jthread> threads;
        for (std::size_t index = 0; index < _lines.size(); ++index) {
            threads.emplace_back([this, index, &failures] {
                try {
                    LineUser user{_lines[index], url(), folderOf(_lines[index], "-thread")};
                    for (int round = 1; round <= 5; ++round) {
                        user.update();
                        EXPECT_GT(user.change(round), 0);
                        user.expectItsFailuresToBeMapped();
                    }
                } catch (...) {
                    failures[index] = std::current_exception();
                }
            });
        }
    }
    for (const auto& failure : failures) {
        if (failure) {
            std::rethrow_exception(failure);
        }
    }
    // Each line committed its file and five changes, whatever the order.
    const auto& loader = HSVNBundleLoader::sharedInstance();
    const auto client = std::make_shared<HSVNClient>(loader.newestBundle(), nullptr);
    std::vector<HSVNNodeRef> children;
    HSVNDirectory::directoryAtPath(url(), HSVNRevisionSpec::HEAD(), &children, client);
    EXPECT_EQ(children.size(), _lines.size());
    HSVNRepositoryInfoRef info;
    HSVNDirectory::directoryAtPath(url(), HSVNRevisionSpec::HEAD(), &info, client);
    EXPECT_EQ(info->revision(), static_cast<HSVNRevisionNumber>(_lines.size()) * 6);
}

} // namespace
