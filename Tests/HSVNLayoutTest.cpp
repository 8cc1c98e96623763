#include "BranchedWorkingCopyTest.h"
#include "HSVNLayoutItem.h"
#include <map>

namespace {

using Layout = BranchedWorkingCopyTest;

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, Layout, testing::Values("1.14"), lineName);

TEST_P(Layout, TellsWhatIsNotAsTheDirectoryAbove)
{
    mustRun({"svn", "update", "--quiet", "-r1", item("b.txt")});
    mustRun({"svn", "update", "--quiet", "--set-depth=empty", item("dir")});
    mustRun({"svn", "switch", "--quiet", repository.url("branch/a.txt"), item("a.txt")});
    std::map<std::string, HSVNLayoutItem> items; // Subversion tells what is in a directory in any order
    for (const auto& told : client->layout(root)) {
        EXPECT_TRUE(told.path.empty() || items.contains("")) << "the directory comes first";
        items[told.path] = told;
    }
    ASSERT_EQ(items.size(), 4U);
    EXPECT_EQ(items.at("").revision, 3);
    EXPECT_EQ(items.at("").depth, HSVNDepthInfinity);
    EXPECT_EQ(items.at("a.txt").url, repository.url("branch/a.txt"));
    EXPECT_EQ(items.at("b.txt").revision, 1);
    EXPECT_TRUE(items.at("b.txt").hasOwnRevision);
    EXPECT_EQ(items.at("dir").depth, HSVNDepthEmpty);
    EXPECT_TRUE(items.at("dir").hasOwnDepth);
    EXPECT_FALSE(items.at("dir").hasOwnRevision);
}
