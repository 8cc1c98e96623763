#pragma once

#include "Command.h"
#include "HSVNClient.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "HSVNURL.h"
#include "RecordingDelegate.h"
#include "TestBundles.h"
#include "TestRepository.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// A line, and how repositories are reached: "1.6" through file URLs, "1.6 svnserve" over a svnserve on loopback.
inline bool isServed(std::string_view parameter) { return parameter.ends_with(" svnserve"); }

/// A repository with trunk/a.txt, trunk/b.txt and trunk/dir/c.txt, each a line with its own name, in revision 1, and a
/// working copy of trunk that is worked on through the line that is the test's parameter.
///
/// After each test, whatever it did: nothing is left on the stack of bundles, the delegate is the client's again, no
/// temporary item is in any folder, and the working copy is not locked.
class WorkingCopyTest : public testing::TestWithParam<const char*>
{
  protected:
    WorkingCopyTest()
    {
        std::vector<std::string> actions{"mkdir", "trunk", "mkdir", "trunk/dir"};
        for (const std::string name : {"a.txt", "b.txt", "dir/c.txt"}) {
            writeFile(repository.beside("given/" + name), name + "\n");
            actions.insert(actions.end(), {"put", repository.beside("given/" + name), "trunk/" + name});
        }
        repository.change(actions);
        root = repository.checkOut("wc", "trunk");
    }

    void TearDown() override
    {
        EXPECT_THROW(HSVNBundleCurrent(), HSVNGenericException) << "a bundle is left on the thread's stack";
        EXPECT_EQ(client->delegate(), delegate);
        for (const auto& entry : std::filesystem::recursive_directory_iterator{repository.beside("")}) {
            EXPECT_FALSE(entry.path().filename().string().starts_with(".hsvn-")) << entry.path();
        }
        EXPECT_FALSE(isLocked()) << status();
    }

    static HSVNVersion line()
    {
        const std::string_view parameter = GetParam();
        return HSVNVersion::versionWithString(std::string{parameter.substr(0, parameter.find(' '))});
    }
    bool isOlderLine() const { return line() != installedLine(); }
    HSVNPathRef at(const std::string& name) const { return HSVNLocalPath::pathWithString(item(name)); }
    std::string item(const std::string& name) const { return name.empty() ? root : root + "/" + name; }
    /// Something beside the working copy, which no working copy holds.
    HSVNPathRef outside(const std::string& name) const
    {
        return HSVNLocalPath::pathWithString(repository.beside(name));
    }
    HSVNURLRef url(const std::string& name) const { return HSVNURL::URLWithString(repository.url(name)); }
    bool exists(const std::string& name) const { return std::filesystem::exists(item(name)); }
    /// What the installed svn says of the working copy, one line an item, names relative to it.
    std::string status() const
    {
        std::string text = mustRun({"svn", "status", root});
        for (auto start = text.find(root + '/'); start != std::string::npos; start = text.find(root + '/', start)) {
            text.erase(start, root.size() + 1);
        }
        return text;
    }
    /// Whether `letter` stands in one of the given columns of any item's status; the names behind them do not count.
    bool statusShows(char letter, std::size_t column, std::size_t columns = 1) const
    {
        const std::string lines = '\n' + status();
        for (auto end = lines.find('\n'); end + 1 < lines.size(); end = lines.find('\n', end + 1)) {
            if (lines.substr(end + 1 + column, columns).find(letter) != std::string::npos) {
                return true;
            }
        }
        return false;
    }
    /// Whether an operation left its lock behind.
    bool isLocked() const { return statusShows('L', 2); }
    /// Whether the text, the properties or the place of any item is in conflict.
    bool hasConflict() const { return statusShows('C', 0, 7); }
    std::string property(const std::string& name, const std::string& of) const
    {
        return mustRun({"svn", "propget", "--no-newline", name, item(of)});
    }
    void commitAll() const { mustRun({"svn", "commit", "--quiet", "-m", "by hand", root}); }

    TestRepository repository{isServed(GetParam())};
    std::string root;
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    HSVNClientRef client = std::make_shared<HSVNClient>(bundleOfLine(line()), delegate);
};

/// The lines that every operation is tested on, the last one as it is installed.
inline auto everyLine() { return testing::Values("1.4", "1.5", "1.6", "1.14"); }
/// The same over both kinds of access.
inline auto everyLineAndAccess()
{
    return testing::Values("1.4", "1.5", "1.6", "1.14", "1.4 svnserve", "1.5 svnserve", "1.6 svnserve",
                           "1.14 svnserve");
}
/// Those whose calls are recorded.
inline auto recordedLines() { return testing::Values("1.4", "1.5", "1.6"); }

inline std::string lineName(const testing::TestParamInfo<const char*>& instance)
{
    std::string name = instance.param;
    std::replace_if(
        name.begin(), name.end(), [](char character) { return character == '.' || character == ' '; }, '_');
    return "Line" + name;
}
