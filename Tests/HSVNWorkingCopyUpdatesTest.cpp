#include "HSVNWorkingCopyUpdates.h"
#include "AlteredBundle.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"

#include <functional>
#include <gmock/gmock.h>
#include <stdexcept>

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class WorkingCopyUpdates : public WorkingCopyTest
{
  protected:
    /// One of the operations, on the working copy or on the item that is given.
    struct Operation
    {
        const char* name;
        const char* nilReason;
        std::function<void(const std::string& local, bool hasRevision, const HSVNContextRef&)> call;
    };
    std::vector<Operation> everyOperation() const
    {
        const auto number = [](bool given) { return given ? HSVNRevision::revisionWithNumber(1) : nullptr; };
        const auto spec = [](bool given) { return given ? HSVNRevisionSpec::HEAD() : nullptr; };
        const std::string trunk = repository.url("trunk");
        return {
            {"updateItems:", "revision != nil",
             [=](const auto& local, bool given, const auto& context) {
                 HSVNUpdateItems({local}, number(given), {}, context);
             }},
            {"checkOutItem:", "revision != nil",
             [=](const auto& local, bool given, const auto& context) {
                 HSVNCheckOutItem(trunk, local, spec(given), {}, context);
             }},
            {"switchItem:", "revision != nil",
             [=](const auto& local, bool given, const auto& context) {
                 HSVNSwitchItem(local, trunk, spec(given), {}, context);
             }},
            {"exportItem:", "revision != nil",
             [=](const auto& local, bool given, const auto& context) {
                 HSVNExportItem(trunk, local, spec(given), {.overwrite = true}, context);
             }},
            {"mergeTrees:", "revision != nil",
             [=](const auto& local, bool given, const auto& context) {
                 HSVNMergeTrees({trunk, number(true)}, {trunk, number(given)}, local, {}, context);
             }},
            {"mergeChanges:", "pegRevision != nil",
             [=](const auto& local, bool given, const auto& context) {
                 HSVNMergeChanges(trunk, number(given), std::nullopt, local, {}, context);
             }},
            {"reintegrate:", "pegRevision != nil",
             [=](const auto& local, bool given, const auto& context) {
                 HSVNReintegrate(trunk, number(given), local, {}, context);
             }},
        };
    }
    /// Two changes that a working copy at revision 1 does not have, and a local change in conflict with the second.
    void change() const
    {
        for (const char* const text : {"second\n", "third\n"}) {
            writeFile(item("a.txt"), text);
            commitAll();
        }
        mustRun({"svn", "update", "--quiet", "-r", "1", root});
        writeFile(item("a.txt"), "mine\n");
    }
    void mergeThird(const HSVNMergeConflictChooser& chooser) const
    {
        const auto range = std::make_pair(HSVNRevision::revisionWithNumber(2), HSVNRevision::revisionWithNumber(3));
        HSVNItemMergeOptions options;
        options.allowMixedRevisions = true;
        options.chooser = chooser;
        HSVNMergeChanges(repository.url("trunk"), HSVNRevision::HEAD(), {{range}}, root, options, client);
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, WorkingCopyUpdates, testing::Values("1.14"), lineName);

TEST_P(WorkingCopyUpdates, NeedARevisionAndAContextAndALineThatOffersThem)
{
    const auto old = clientWithoutExtensions("1.4");
    const auto prefix = "Invalid parameter not satisfying: ";
    for (const auto& operation : everyOperation()) {
        EXPECT_EQ(reasonOf([&] { operation.call(root, false, client); }), std::string{prefix} + operation.nilReason);
        EXPECT_EQ(reasonOf([&] { operation.call(root, true, nullptr); }), std::string{prefix} + "context != nil");
        EXPECT_THAT(
            reasonOf<HSVNUnsupportedFeatureException>([&] { operation.call(root, true, old); }),
            AllOf(HasSubstr(std::string{"[HSVNWorkingCopyUpdates "} + operation.name), HasSubstr("Subversion 1.4")));
    }
    EXPECT_EQ(status(), "");
}

TEST_P(WorkingCopyUpdates, NameATargetThatIsNoLocalPath)
{
    for (const auto& operation : everyOperation()) {
        for (const std::string& target : {repository.url("trunk"), root + "/a\xc3"}) {
            EXPECT_THAT(reasonOf<HSVNException>([&] { operation.call(target, true, client); }),
                        HasSubstr(target.substr(0, target.size() - 1)))
                << operation.name;
        }
    }
    EXPECT_EQ(status(), "");
}

TEST_P(WorkingCopyUpdates, AnswerTheRevisionOfTheItem)
{
    change();
    const auto third = HSVNRevisionSpec::HEAD();
    EXPECT_THAT(HSVNUpdateItems({item("dir"), repository.beside("nowhere"), item("b.txt")},
                                HSVNRevision::revisionWithNumber(2), {}, client),
                ElementsAre(2, HSVNInvalidRevision, 2));
    EXPECT_EQ(HSVNCheckOutItem(repository.url("trunk"), repository.beside("other"), third, {}, client), 3);
    EXPECT_EQ(HSVNSwitchItem(repository.beside("other"), repository.url("trunk/dir"), third, {.ignoreAncestry = true},
                             client),
              3);
    EXPECT_TRUE(std::filesystem::exists(repository.beside("other/c.txt")));
    EXPECT_EQ(HSVNExportItem(repository.url("trunk"), repository.beside("tree"), third, {}, client), 3);
    EXPECT_EQ(readFile(repository.beside("tree/a.txt")), "third\n");
    EXPECT_EQ(HSVNExportItem(root, repository.beside("mine"), HSVNRevisionSpec::UNSPECIFIED(), {}, client),
              HSVNInvalidRevision);
    EXPECT_EQ(readFile(repository.beside("mine/a.txt")), "mine\n");
}

TEST_P(WorkingCopyUpdates, AskHowAConflictOfAMergeIsSettled)
{
    change();
    std::vector<std::string> asked;
    mergeThird([&](const std::string& path, HSVNConflictKind kind) {
        asked.push_back(path);
        EXPECT_EQ(kind, HSVNConflictKind::Text);
        return HSVNResolutionChoice::IncomingText;
    });
    EXPECT_THAT(asked, ElementsAre(item("a.txt")));
    EXPECT_EQ(readFile(item("a.txt")), "third\n");
    EXPECT_FALSE(hasConflict()) << status();
}

TEST_P(WorkingCopyUpdates, LeaveAConflictWhenTheAnswerIsAnException)
{
    change();
    EXPECT_THROW(mergeThird([](const std::string&, HSVNConflictKind) -> HSVNResolutionChoice {
                     throw std::range_error{"no answer"};
                 }),
                 std::range_error);
    EXPECT_THAT(status(), HasSubstr("C       a.txt\n"));
}
