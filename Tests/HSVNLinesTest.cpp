// Every loaded line in one process, each on a working copy of its own format. A build with HSVN_SUBVERSION_ROOTS proves
// the adapter on the real older lines with these tests; without, the installed line runs alone.

#include "HSVNBundleLoader.h"
#include "HSVNCheckOutOptions.h"
#include "HSVNClient.h"
#include "HSVNCommitOptions.h"
#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "HSVNRepository.h"
#include "HSVNRepositoryInfo.h"
#include "HSVNRepositoryOptions.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "HSVNStatus.h"
#include "HSVNStatusOptions.h"
#include "HSVNURL.h"
#include "HSVNUpdateOptions.h"
#include "RecordingDelegate.h"
#include "TemporaryFolder.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <thread>

namespace {

void writeFile(const HSVNPathRef& path, const std::string& text) { std::ofstream{path->string()} << text; }

std::string readFile(const HSVNPathRef& path)
{
    std::ifstream file{path->string()};
    return {std::istreambuf_iterator<char>{file}, {}};
}

/// A user of one line: a client and a working copy of a repository that every line can open.
class LineUser
{
  public:
    LineUser(const HSVNVersion& line, const HSVNURLRef& url, const std::string& folder)
        : _line{line.versionString()}, _client{std::make_shared<HSVNClient>(
                                           HSVNBundleLoader::sharedInstance().bundleForVersion(line), _delegate)},
          _workingCopy{HSVNLocalPath::pathWithString(folder)}, _file{
                                                                   _workingCopy->pathByAddingComponent("file-" + _line)}
    {
        HSVNDirectory::checkoutDirectoryAtURL(url, _workingCopy, HSVNCheckOutOptions::defaults(), _client);
        writeFile(_file, "begun by " + _line + "\n");
        HSVNNode::add(_file, _client);
        commit();
    }

    const HSVNLocalPathRef& workingCopy() const { return _workingCopy; }
    const HSVNClientRef& client() const { return _client; }

    HSVNRevisionNumber change(int round)
    {
        writeFile(_file, "round " + std::to_string(round) + " of " + _line + "\n");
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

  private:
    HSVNRevisionNumber commit()
    {
        return HSVNNode::commitChangesToNodes({_workingCopy}, HSVNCommitOptions::defaults(), _client);
    }

    std::string _line;
    std::shared_ptr<RecordingDelegate> _delegate = std::make_shared<RecordingDelegate>();
    HSVNClientRef _client;
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
    const std::vector<HSVNVersion> _lines = HSVNBundleLoader::sharedInstance().loadedVersions();
};

TEST_F(LinesTest, WorkInAlternationOnOneRepository)
{
    std::vector<std::unique_ptr<LineUser>> users;
    for (const auto& line : _lines) {
        users.push_back(std::make_unique<LineUser>(line, url(), folderOf(line)));
        EXPECT_TRUE(HSVNDirectory::versionForWorkingCopyAtPath(users.back()->workingCopy())
                        .isEqualToVersion(line.versionWithMajorAndMinorComponents()))
            << line;
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
            EXPECT_EQ(readFile(user->workingCopy()->pathByAddingComponent(name)),
                      "round 3 of " + line.versionString() + "\n");
        }
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
