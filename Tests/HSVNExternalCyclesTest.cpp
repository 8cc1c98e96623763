#include "Command.h"
#include "HSVN.h"
#include "RecordingDelegate.h"
#include "TemporaryFolder.h"
#include "TestRepository.h"

#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

// An external that contains itself is followed until it is met a second time on its own way.

namespace {

using testing::SizeIs;

HSVNPathRef folderPath(const std::string& path) { return HSVNLocalPath::pathWithString(path); }

} // namespace

TEST(ExternalCycles, EndWithANotificationWhileAllElseGoesOn)
{
    const TestRepository repository;
    repository.change({"mkdir", "trunk", "mkdir", "other", "mkdir", "branch", "propset", "svn:externals",
                       "^/branch inner\n^/other other", "trunk", "propset", "svn:externals", "^/trunk again",
                       "branch"});
    const TemporaryFolder folder;
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto client = HSVNClient::clientWithDelegate(delegate);
    const std::string trunk = repository.url("trunk");
    const auto url = HSVNURL::URLWithString(trunk);
    const std::string wc = folder / "wc";
    const std::pair<const char*, std::function<std::string()>> operations[] = {
        {"checkout", [&] { return client->checkout(trunk, wc), wc; }},
        {"update", [&] { return client->update(wc), wc; }},
        {"updateNodes",
         [&] {
             HSVNNode::updateNodes({folderPath(wc)}, HSVNRevision::HEAD(), HSVNUpdateOptions::defaults(), client);
             return wc;
         }},
        {"checkoutDirectoryAtURL",
         [&, to = folder / "checkedOut"] {
             return HSVNDirectory::checkoutDirectoryAtURL(url, folderPath(to), HSVNCheckOutOptions::defaults(), client),
                    to;
         }},
        {"exportTree", [&, to = folder / "exported"] { return client->exportTree(trunk, to), to; }},
        {"exportNodeAtPath",
         [&, to = folder / "exportedToo"] {
             return HSVNNode::exportNodeAtPath(url, folderPath(to), HSVNExportOptions::defaults(), client), to;
         }},
        {"list",
         [&] {
             const auto nodes = client->list(trunk, HSVNRevisionSpec::HEAD(), {.includeExternals = true});
             EXPECT_THAT(nodes, SizeIs(5)); // the trunk once more, with all but what is refused
             return std::string{};
         }},
    };
    for (const auto& [name, run] : operations) {
        SCOPED_TRACE(name);
        delegate->notifications.clear();
        const std::string made = run();
        const auto failed = delegate->withAction(HSVNNotifyActionFailedExternal);
        ASSERT_THAT(failed, SizeIs(1));
        EXPECT_EQ(failed.front()->error()->reason(), "The external '" + repository.url("branch") + "' contains itself");
        if (!made.empty()) {
            EXPECT_TRUE(std::filesystem::exists(made + "/inner/again/other"));
            EXPECT_TRUE(std::filesystem::exists(made + "/other"));
            EXPECT_FALSE(std::filesystem::exists(made + "/inner/again/inner/again"));
        }
    }
}
