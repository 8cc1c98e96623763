#include "WorkingCopyTest.h"

namespace {

using LatestRevision = WorkingCopyTest;

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, LatestRevision, testing::Values("1.14"), lineName);

TEST_P(LatestRevision, IsThatOfTheServer)
{
    repository.put("trunk/new.txt", "");
    EXPECT_EQ(client->latestRevision(root), 2);
    EXPECT_EQ(client->latestRevision(repository.url()), 2);
    EXPECT_THROW(client->latestRevision(repository.beside("nowhere")), HSVNPlatformException);
}
