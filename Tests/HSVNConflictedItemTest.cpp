#include "HSVNConflictedItem.h"
#include "AlteredBundle.h"
#include "Internal/ConflictRecord.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"

#include <functional>
#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;

namespace {

using Choice = HSVNResolutionChoice;
using ConflictKind = HSVNConflictKind;

class ConflictedItem : public WorkingCopyTest
{
  protected:
    /// a.txt with a conflict of its text and one of its property "color".
    void conflict() const
    {
        for (const std::string whose : {"theirs", "mine"}) {
            writeFile(item("a.txt"), whose + "\n");
            mustRun({"svn", "propset", "--quiet", "color", whose, item("a.txt")});
            if (whose == "theirs") {
                commitAll();
                mustRun({"svn", "update", "--quiet", "-r", "1", root});
            }
        }
        mustRun({"svn", "update", "--quiet", "--accept", "postpone", root});
    }
    /// A change of b.txt on a branch is merged where b.txt was moved to moved.txt.
    void conflictWithMove() const
    {
        mustRun({"svn", "copy", "--quiet", "-m", "branch", repository.url("trunk"), repository.url("branch")});
        const std::string branch = repository.checkOut("branch", "branch");
        writeFile(branch + "/b.txt", "changed\n");
        mustRun({"svn", "commit", "--quiet", "-m", "change", branch});
        mustRun({"svn", "move", "--quiet", item("b.txt"), item("moved.txt")});
        commitAll();
        mustRun({"svn", "update", "--quiet", root});
        mustRun({"svn", "merge", "--quiet", "--accept", "postpone", repository.url("branch"), root});
    }
    static std::vector<Choice> choicesOf(HSVNConflictedItem& conflicted, ConflictKind kind)
    {
        std::vector<Choice> choices;
        for (const auto& option : conflicted.options(kind)) {
            EXPECT_FALSE(option.label.empty() || option.description.empty());
            choices.push_back(option.choice);
        }
        return choices;
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, ConflictedItem, testing::Values("1.14"), lineName);

TEST_P(ConflictedItem, TellsItsSidesAndWhatCanBeDone)
{
    conflict();
    HSVNConflictedItem conflicted{item("a.txt"), client};
    EXPECT_TRUE(conflicted.hasTextConflict() && !conflicted.hasTreeConflict());
    EXPECT_THAT(conflicted.conflictedProperties(), ElementsAre("color"));
    EXPECT_EQ(conflicted.operation(), HSVNConflictOperation::Update);
    EXPECT_EQ(readFile(conflicted.files().base.value()), "a.txt\n");
    EXPECT_EQ(readFile(conflicted.files().mine.value()), "mine\n");
    EXPECT_EQ(readFile(conflicted.files().theirNew.value()), "theirs\n");
    const auto values = conflicted.propertyValues("color");
    EXPECT_EQ(values.mine, "mine");
    EXPECT_EQ(values.theirNew, "theirs");
    EXPECT_THAT(conflicted.descriptionOfPropertyConflict(), HasSubstr("upon update"));
    for (const ConflictKind kind : {ConflictKind::Text, ConflictKind::Property}) {
        EXPECT_THAT(choicesOf(conflicted, kind), IsSupersetOf({Choice::Postpone, Choice::IncomingText}));
    }
    EXPECT_EQ(conflicted.recommendedChoice(), Choice::Unspecified);
}

TEST_P(ConflictedItem, IsSettledOneKindAtATime)
{
    conflict();
    HSVNConflictedItem conflicted{item("a.txt"), client};
    conflicted.resolve(ConflictKind::Property, Choice::MergedText, "color", "both");
    EXPECT_EQ(property("color", "a.txt"), "both");
    EXPECT_THAT(status(), HasSubstr("CM      a.txt\n"));
    conflicted.resolve(ConflictKind::Text, Choice::WorkingText);
    EXPECT_EQ(status(), "MM      a.txt\n");
    EXPECT_EQ(readFile(item("a.txt")), "mine\n");
}

TEST_P(ConflictedItem, KnowsItsChoicesAfterTheQuestion)
{
    conflictWithMove();
    HSVNConflictedItem conflicted{item("b.txt"), client};
    EXPECT_TRUE(conflicted.hasTreeConflict());
    EXPECT_EQ(conflicted.operation(), HSVNConflictOperation::Merge);
    EXPECT_EQ(conflicted.recommendedChoice(), Choice::Unspecified);
    conflicted.searchDetails();
    const Choice recommended = conflicted.recommendedChoice();
    EXPECT_THAT(choicesOf(conflicted, ConflictKind::Tree), IsSupersetOf({Choice::AcceptCurrentState, recommended}));
    EXPECT_THAT(conflicted.descriptionOfTreeConflict().second, HasSubstr("^/trunk/moved.txt"));
    EXPECT_THAT(conflicted.moveTargets(recommended, HSVNMovePlace::WorkingCopy), ElementsAre(item("moved.txt")));
    EXPECT_THROW(conflicted.chooseMoveTarget(recommended, HSVNMovePlace::WorkingCopy, 1), HSVNException);
    conflicted.resolve(ConflictKind::Tree, recommended);
    EXPECT_EQ(readFile(item("moved.txt")), "changed\n");
}

TEST_P(ConflictedItem, CanBeSearchedForWhatWasOnNeitherSide)
{
    // The difference of the repository's root and of trunk takes "trunk" away, which the working copy never had.
    mustRun({"svn", "mkdir", "--quiet", "-m", "", repository.url("branches")});
    mustRun({"svn", "update", "--quiet", root});
    mustRun(
        {"svn", "merge", "--quiet", "--accept", "postpone", repository.url() + "@1", repository.url("trunk"), root});
    HSVNConflictedItem conflicted{item("trunk"), client};
    ASSERT_TRUE(conflicted.hasTreeConflict());
    EXPECT_NO_THROW(conflicted.searchDetails());
    EXPECT_FALSE(conflicted.options(ConflictKind::Tree).empty());
}

TEST_P(ConflictedItem, RefusesWhatDoesNotApply)
{
    conflict();
    HSVNConflictedItem conflicted{item("a.txt"), client};
    for (const ConflictKind kind : {ConflictKind::Text, ConflictKind::Property}) {
        try {
            conflicted.resolve(kind, Choice::IncomingDeleteAccept);
            ADD_FAILURE() << "settled";
        } catch (const HSVNException& exception) {
            EXPECT_EQ(exception.status(), 195024);
        }
    }
    HSVNConflictedItem peaceful{item("dir"), client};
    for (const auto& question : std::vector<std::function<void()>>{
             [&] { conflicted.searchDetails(); }, [&] { conflicted.options(ConflictKind::Tree); },
             [&] { conflicted.options(static_cast<ConflictKind>(3)); }, [&] { conflicted.descriptionOfTreeConflict(); },
             [&] { conflicted.moveTargets(Choice::AcceptCurrentState, HSVNMovePlace::WorkingCopy); },
             [&] { conflicted.propertyValues("colour"); }, [&] { conflicted.propertyComparison(""); },
             [&] { conflicted.resolve(ConflictKind::Property, Choice::WorkingText, "colour"); },
             [&] { conflicted.resolve(ConflictKind::Tree, Choice::AcceptCurrentState); },
             [&] { peaceful.descriptionOfPropertyConflict(); }, [&] { peaceful.options(ConflictKind::Text); },
             [&] { peaceful.options(ConflictKind::Property); }, [&] { peaceful.textComparison(); },
             [&] { peaceful.resolve(ConflictKind::Text, Choice::WorkingText); }})
    {
        EXPECT_THAT(reasonOf<HSVNException>(question), testing::ContainsRegex("' has no (text|property|tree|such) "));
    }
    EXPECT_FALSE(peaceful.hasTextConflict() || peaceful.hasTreeConflict());
    EXPECT_EQ(peaceful.operation(), HSVNConflictOperation::NoOperation);
    const HSVNTarget unreadable = HSVNTarget::verbatim("a\xff");
    for (const HSVNTarget& target : {HSVNTarget{item("nowhere")}, HSVNTarget{repository.url()}, unreadable}) {
        EXPECT_THAT(reasonOf<HSVNException>([&] {
                        HSVNConflictedItem{target, client};
                    }),
                    HasSubstr(target == unreadable ? "a" : target.text()));
    }
    EXPECT_TRUE(HSVNConflictedItem(at("a.txt"), client).hasTextConflict());
    EXPECT_EQ(reasonOf([&] { HSVNConflictedItem(item("a.txt"), nullptr); }),
              "Invalid parameter not satisfying: context != nil");
    const auto old = clientWithoutExtensions("1.6");
    EXPECT_THAT(reasonOf<HSVNUnsupportedFeatureException>([&] { HSVNConflictedItem(item("a.txt"), old); }),
                testing::AllOf(HasSubstr("[HSVNConflictedItem initWithPath:context:]"), HasSubstr("Subversion 1.6")));
}

TEST_P(ConflictedItem, IsSettledSectionBySection)
{
    conflict();
    HSVNConflictedItem conflicted{item("a.txt"), client};
    const auto diff = conflicted.textComparison();
    std::vector<HSVNSectionChoice> choices;
    for (const auto& section : diff.sections()) {
        EXPECT_EQ(section.kind, HSVNDiffSectionKind::Conflict);
        EXPECT_EQ(diff.text(section, HSVNDiffSide::Base), "a.txt\n");
        choices.push_back({HSVNMergePart::TheirsThenMine});
    }
    writeFile(item("a.txt"), diff.merged(choices));
    conflicted.resolve(ConflictKind::Text, Choice::MergedText);
    EXPECT_EQ(readFile(item("a.txt")), "theirs\nmine\n");
    EXPECT_EQ(conflicted.propertyComparison("color").merged(),
              "<<<<<<< mine\nmine||||||| base\n=======\ntheirs>>>>>>> theirs\n");
    HSVNConflictedItem settled{item("a.txt"), client};
    EXPECT_THROW(settled.textComparison(), HSVNPlatformException);
}

TEST_P(ConflictedItem, OfABinaryTypeHasNoSections)
{
    mustRun({"svn", "propset", "--quiet", "svn:mime-type", "application/octet-stream", item("a.txt")});
    commitAll();
    writeFile(item("a.txt"), "theirs\n");
    commitAll();
    mustRun({"svn", "update", "--quiet", "-r", "2", root});
    writeFile(item("a.txt"), "mine\n");
    mustRun({"svn", "update", "--quiet", "--accept", "postpone", root});
    HSVNConflictedItem whole{item("a.txt"), client};
    EXPECT_EQ(reasonOf<HSVNException>([&] { whole.textComparison(); }),
              "The conflict of '" + item("a.txt") + "' left no files to compare, as one of a binary type does");
}

TEST(ConflictRecords, AreReadNoFurtherThanTheirLineHasThem)
{
    const char* const pastTheEnd = reinterpret_cast<const char*>(1);
    svn_wc_conflict_version_t side{};
    svn_wc_conflict_description2_t record{};
    record.src_left_version = &side;
    for (const HSVNVersion& line : {HSVNVersion{1, 7}, HSVNVersion{1, 8}, HSVNVersion{1, 9}}) {
        SCOPED_TRACE(line);
        const bool tellsUUID = !line.isLessThan({1, 8});
        const bool tellsRejects = !line.isLessThan({1, 9});
        side.repos_uuid = tellsUUID ? "uuid" : pastTheEnd;
        record.prop_reject_abspath = tellsRejects ? "/rejects" : pastTheEnd;
        const auto conflict = HSVNConflictRecordOf(record, line);
        EXPECT_EQ(conflict.sourceLeft->uuid.has_value(), tellsUUID);
        EXPECT_EQ(conflict.propertyRejectPath.has_value(), tellsRejects);
    }
}
