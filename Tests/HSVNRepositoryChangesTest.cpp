#include "HSVNRepositoryChanges.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"

#include <functional>
#include <gmock/gmock.h>
#include <stdexcept>

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// The operations of the second table that commit, each to a new revision of the repository.
class RepositoryChanges : public WorkingCopyTest
{
  protected:
    using Change = std::function<void(const HSVNRevisionWishes&)>;

    std::vector<Change> everyChange() const
    {
        const auto working = HSVNRevisionSpec::revisionWithRevision(HSVNRevision::UNSPECIFIED());
        return {
            [this](const auto& wishes) { HSVNMakeFolders({repository.url("made")}, false, wishes, client); },
            [this](const auto& wishes) { HSVNImportItem(item("dir"), repository.url("imported"), {}, wishes, client); },
            [this, working](const auto& wishes) {
                HSVNCopyItems({{repository.url("trunk"), working}}, repository.url("copied"), {}, wishes, client);
            },
            [this](const auto& wishes) {
                HSVNMoveItems({repository.url("trunk/b.txt")}, repository.url("moved"), {}, wishes, client);
            },
            [this](const auto& wishes) { HSVNDeleteItems({repository.url("trunk/dir")}, {}, wishes, client); },
            [this](const auto& wishes) {
                writeFile(item("a.txt"), "changed\n");
                HSVNCommitItems({root}, {}, wishes, client);
            },
        };
    }
    std::string revisionProperty(const std::string& name) const
    {
        return mustRun({"svn", "propget", "--no-newline", "--revprop", "-r", "HEAD", name, repository.url()});
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, RepositoryChanges, testing::Values("1.14"), lineName);

TEST_P(RepositoryChanges, TellTheirRevisionAndGiveItProperties)
{
    std::vector<HSVNRevisionNumber> revisions;
    HSVNRevisionWishes wishes;
    wishes.properties = {{"color", "red\nblue"}, {"empty", ""}};
    wishes.receiver = [&](const HSVNCommitResult& result) {
        revisions.push_back(result.revision);
        EXPECT_TRUE(result.date && result.author && !result.postCommitError);
    };
    for (const auto& change : everyChange()) {
        change(wishes);
        ASSERT_FALSE(revisions.empty());
        EXPECT_EQ(revisions.back(), repository.youngest());
        EXPECT_EQ(revisionProperty("color"), "red\nblue");
        EXPECT_EQ(repository.logMessage(repository.youngest()), "a message");
    }
    EXPECT_EQ(revisions.size(), everyChange().size());
    EXPECT_EQ(delegate->commitItems.size(), everyChange().size());
}

TEST_P(RepositoryChanges, EndTheLinesOfTheirMessageInTheWayOfRepositories)
{
    delegate->message = "one\r\ntwo\rthree\n";
    int youngest = repository.youngest();
    for (const auto& change : everyChange()) {
        change({});
        EXPECT_EQ(repository.youngest(), ++youngest);
        EXPECT_EQ(repository.logMessage(youngest), "one\ntwo\nthree\n");
    }
}

TEST_P(RepositoryChanges, LeaveEverythingAsItWasWhenTheDelegateAborts)
{
    delegate->commits = false;
    const int youngest = repository.youngest();
    for (const auto& change : everyChange()) {
        change({});
        EXPECT_EQ(repository.youngest(), youngest);
    }
}

TEST_P(RepositoryChanges, AreDoneWhenTheirReceiverThrows)
{
    HSVNRevisionWishes wishes;
    wishes.receiver = [](const HSVNCommitResult&) { throw std::runtime_error{"not printed"}; };
    int youngest = repository.youngest();
    for (const auto& change : everyChange()) {
        EXPECT_THROW(change(wishes), std::runtime_error);
        EXPECT_EQ(repository.youngest(), ++youngest);
    }
}

TEST_P(RepositoryChanges, TellWhatAHookSaidAfterwards)
{
    const std::string hook = repository.path() + "/hooks/post-commit";
    writeFile(hook, "#!/bin/sh\necho complained >&2\nexit 1\n");
    std::filesystem::permissions(hook, std::filesystem::perms::owner_all);
    std::string said;
    HSVNRevisionWishes wishes;
    wishes.receiver = [&](const HSVNCommitResult& result) { said = result.postCommitError.value_or(""); };
    HSVNMakeFolders({repository.url("made")}, false, wishes, client);
    EXPECT_THAT(said, HasSubstr("complained"));
}

TEST_P(RepositoryChanges, OfWorkingCopiesAskForNoMessage)
{
    const auto working = HSVNRevisionSpec::revisionWithRevision(HSVNRevision::UNSPECIFIED());
    HSVNMakeFolders({item("made/deep")}, true, {}, client);
    HSVNCopyItems({{item("a.txt"), working}}, item("made"), {.asChild = true}, {}, client);
    HSVNMoveItems({item("b.txt")}, item("moved"), {}, {}, client);
    HSVNDeleteItems({item("dir")}, {.keepLocal = true}, {}, client);
    EXPECT_THAT(delegate->commitItems, IsEmpty());
    EXPECT_EQ(status(), "D       b.txt\n        > moved to moved\nD       dir\nA       made\n"
                        "A  +    made/a.txt\nA       made/deep\nA  +    moved\n        > moved from b.txt\n");
}

TEST_P(RepositoryChanges, RefuseWhatIsNoTargetOfTheirKind)
{
    EXPECT_THAT(reasonOf<HSVNException>([&] { HSVNCommitItems({repository.url()}, {}, {}, client); }),
                HasSubstr("is not a local path"));
    EXPECT_THAT(reasonOf<HSVNException>([&] { HSVNImportItem(repository.url(), item("x"), {}, {}, client); }),
                HasSubstr("is not a local path"));
    EXPECT_THROW(HSVNMakeFolders({"//not\xff//canonical/../"}, false, {}, client), HSVNException);
    EXPECT_EQ(reasonOf([&] {
                  HSVNCopyItems({{item("a.txt"), nullptr}}, item("x"), {}, {}, client);
              }),
              "Invalid parameter not satisfying: revision != nil");
}
