#include "HSVN.h"
#include "Internal/BundleExtensions.h"
#include "TemporaryFolder.h"
#include "TestRepository.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

/// A bundle of a line that has no second table, or only the beginning of one.
class BundleWithExtensions : public HSVNBundle
{
  public:
    BundleWithExtensions(HSVNBundleRef original, const HSVNBundleExtensions* extensions)
        : _original{std::move(original)}, _extensions{extensions}
    {
    }
    std::string className() const override { return "BundleWithExtensions"; }
    const HSVNBundleEntryPoints* entryPoints() override { return _original->entryPoints(); }
    const HSVNBundleExtensions* extensions() override { return _extensions; }

  private:
    HSVNBundleRef _original;
    const HSVNBundleExtensions* _extensions;
};

HSVNBundleRef installedBundle() { return HSVNBundleLoader::sharedInstance().defaultBundle(); }

/// What asking the bundle for a log says, empty when it can be asked.
std::string refusalOfLog(const HSVNBundleExtensions* extensions)
{
    const auto context =
        std::make_shared<HSVNContext>(std::make_shared<BundleWithExtensions>(installedBundle(), extensions));
    try {
        context->log("file:///nowhere", {.mergedRevisions = true});
    } catch (const HSVNUnsupportedFeatureException& exception) {
        return exception.reason();
    } catch (const HSVNException&) {
        // The repository is not there: the function was called.
    }
    return "";
}

/// The tables of the installed bundle, to be cut short.
struct ShorterTables
{
    HSVNReadingFunctions reading = *installedBundle()->extensions()->reading;
    HSVNBundleExtensions families = *installedBundle()->extensions();

    ShorterTables() { families.reading = &reading; }
};

TEST(Extensions, AnOperationThatTheBundleDoesNotOfferNamesItselfAndTheLine)
{
    ShorterTables tables;
    EXPECT_EQ(refusalOfLog(&tables.families), "");
    tables.reading.client_log = nullptr;
    const std::string refusal = refusalOfLog(&tables.families);
    EXPECT_THAT(refusal, HasSubstr("[HSVNContext log]: 'mergedRevisions' is not offered by the bundle of Subversion "));
    EXPECT_EQ(refusalOfLog(nullptr), refusal);
}

TEST(Extensions, AFamilyThatEndsBeforeAPlaceDoesNotOfferIt)
{
    ShorterTables tables;
    tables.reading.size = offsetof(HSVNReadingFunctions, client_log);
    EXPECT_NE(refusalOfLog(&tables.families), "");
    tables.reading.size += sizeof(tables.reading.client_log);
    EXPECT_EQ(refusalOfLog(&tables.families), "");
}

TEST(Extensions, AFamilyThatTheBundleDoesNotHaveOffersNothing)
{
    ShorterTables tables;
    tables.families.size = offsetof(HSVNBundleExtensions, reading);
    EXPECT_NE(refusalOfLog(&tables.families), "") << "a bundle from before the family";
    tables.families.size += sizeof(tables.families.reading);
    EXPECT_EQ(refusalOfLog(&tables.families), "");
    tables.families.reading = nullptr;
    EXPECT_NE(refusalOfLog(&tables.families), "");
}

TEST(Extensions, ANullContextIsRefusedByEveryOperation)
{
    const auto spec = HSVNRevisionSpec::HEAD();
    EXPECT_THROW(HSVNArguments::canonicalTargets({}, nullptr), HSVNAssertionException);
}

TEST(Extensions, RevisionsAreReadAsTheCommandLineReadsThem)
{
    const auto context = std::make_shared<HSVNContext>();
    const auto range = HSVNArguments::parseRevisions("2:HEAD", context);
    ASSERT_TRUE(range);
    EXPECT_EQ(range->first->number(), 2);
    EXPECT_TRUE(range->second->isEqual(HSVNRevision::HEAD()));
    EXPECT_FALSE(HSVNArguments::parseRevisions("1:2:3", context));
    const auto dated = HSVNArguments::parse("a@{2001-02-03T04:05:06.789012Z}", context).pegRevision;
    EXPECT_EQ(dated->SVNRevision().value.date % 1'000'000, 789012) << "of two revisions in a second it finds the first";
    EXPECT_EQ(dated->copy()->SVNRevision().value.date, dated->SVNRevision().value.date);
    EXPECT_EQ(HSVNArguments::parse("a@b@7", context).target, "a@b");
}

TEST(Extensions, AnExceptionOfAReceiverReachesTheCaller)
{
    const TestRepository repository;
    const auto stop = [](const HSVNNodeRef&) { throw std::range_error("enough"); };
    const auto context = std::make_shared<HSVNContext>();
    const auto list = [&] {
        context->list(repository.url(), HSVNRevisionSpec::HEAD(), {.depth = HSVNDepthInfinity}, stop);
    };
    EXPECT_THROW(list(), std::range_error);
}

TEST(Extensions, RelativeAndUncanonicalTargetsNeverAbortTheProcess)
{
    const auto context = std::make_shared<HSVNContext>();
    const auto spec = HSVNRevisionSpec::UNSPECIFIED();
    for (const char* const target : {"a//b/", "./x/", "/..", "file:///a//b/", "http://h/%zz", "\xff", "a/\xc0\x80"}) {
        EXPECT_THROW(context->info(HSVNTarget::verbatim(target)), HSVNException) << target;
        EXPECT_THROW(context->list(HSVNTarget::verbatim(target)), HSVNException) << target;
        EXPECT_THROW(context->contents(HSVNTarget::verbatim(target)), HSVNException) << target;
    }
}

} // namespace
