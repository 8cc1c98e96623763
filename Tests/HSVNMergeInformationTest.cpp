#include "BranchedWorkingCopyTest.h"
#include "HSVNLogItem.h"
#include "HSVNMergingSummary.h"
#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class MergeInformation : public BranchedWorkingCopyTest
{
  protected:
    std::vector<HSVNRevisionNumber> revisions(const HSVNMergedRevisionsChoices& choices) const
    {
        std::vector<HSVNRevisionNumber> numbers;
        for (const auto& item : client->mergedRevisions(branch(), HSVNTarget{root}, choices)) {
            numbers.push_back(item->revision());
        }
        return numbers;
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, MergeInformation, testing::Values("1.14"), lineName);

TEST_P(MergeInformation, FollowsAMerge)
{
    const auto before = client->mergingSummary(branch(), HSVNTarget{root});
    EXPECT_EQ(before.ancestor.url, repository.url("trunk"));
    EXPECT_EQ(before.ancestor.revision, 1);
    EXPECT_EQ(before.base.revision, 1);
    EXPECT_EQ(before.source.url, repository.url("branch"));
    EXPECT_EQ(before.source.revision, 3);
    EXPECT_EQ(before.target.url, repository.url("trunk"));
    EXPECT_EQ(before.repositoryRoot, repository.url());
    EXPECT_FALSE(before.reintegrates);
    EXPECT_THAT(revisions({}), IsEmpty());
    EXPECT_THAT(revisions({.eligible = true}), ElementsAre(3));
    mustRun({"svn", "merge", "--quiet", repository.url("branch"), root});
    commitAll();
    mustRun({"svn", "update", "--quiet", root});
    EXPECT_THAT(revisions({}), ElementsAre(2, 3));
    const auto third = HSVNRevision::revisionWithNumber(3);
    EXPECT_THAT(revisions({.range = {third, third}}), ElementsAre(3));
    EXPECT_THAT(revisions({.eligible = true}), IsEmpty());
    EXPECT_EQ(client->mergingSummary(branch(), HSVNTarget{root}).base.revision, 3);
    EXPECT_TRUE(client->mergingSummary(HSVNTarget{repository.url("trunk")}, branch()).reintegrates);
}

TEST_P(MergeInformation, StopsWhenItsReceiverHasEnough)
{
    int count = 0;
    client->mergedRevisions(branch(), HSVNTarget{root}, {.eligible = true}, [&](const HSVNLogItemRef& item) {
        ++count;
        EXPECT_EQ(item->changedPaths(), std::vector<std::string>{"/branch/a.txt"});
        return false;
    });
    EXPECT_EQ(count, 1);
}
