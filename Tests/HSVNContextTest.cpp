#include "HSVNContext.h"
#include "FakeBundle.h"
#include "HSVNBundleLoader.h"
#include "HSVNException.h"
#include "HSVNStringProperties.h"
#include "Internal/KeptException.h"
#include "Internal/Pool.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::Pair;

/// Contexts of a fake bundle, with a configuration area of two files.
class Context : public testing::Test
{
  protected:
    Context()
    {
        writeFile(_folder / "area/config",
                  "[miscellany]\n# global-ignores =\n[helpers]\neditor-cmd = vi\ndiff-cmd = d\xC3\xA4\n");
        writeFile(_folder / "area/servers", "[groups]\n");
    }

    void TearDown() override
    {
        EXPECT_THROW(HSVNBundleCurrent(), HSVNGenericException) << "the stack of bundles is not balanced";
    }

    std::unique_ptr<HSVNContext> contextWithConfiguration() const
    {
        auto context = std::make_unique<HSVNContext>(_bundle);
        const HSVNBundleScope scope{_bundle};
        EXPECT_EQ(HSVNCurrentEntryPoints().config_get_config(&context->ctx()->config, (_folder / "area").c_str(),
                                                             context->pool()),
                  nullptr);
        return context;
    }

    TemporaryFolder _folder;
    FakeBundle _fake{_folder.path(), "fake.bundle"};
    HSVNBundleRef _bundle = HSVNBundleProxy::proxyForBundle(HSVNPackage::packageAtPath(_folder / "fake.bundle"));
};

TEST_F(Context, OwnsItsPoolWhileItHasABundle)
{
    HSVNContext context{_bundle};
    EXPECT_EQ(context.bundle(), _bundle);
    EXPECT_NE(context.ctx(), nullptr);
    EXPECT_EQ(_fake.state().pools, 1);
    context.setBundleVersion(HSVNVersion{1, 6, 5});
    EXPECT_EQ(context.description(), context.objectDescription() + " (1.6.5)");

    context.setBundle(_bundle);
    EXPECT_EQ(context.bundleVersion(), std::nullopt) << "the shared loader does not know this bundle";
    EXPECT_EQ(_fake.state().pools, 1) << "the old pool must go";

    context.setBundle(nullptr);
    EXPECT_EQ(context.pool(), nullptr);
    EXPECT_EQ(context.ctx(), nullptr);
    EXPECT_EQ(_fake.state().pools, 0);
    EXPECT_EQ(context.description(), context.objectDescription() + " ((null))");
    EXPECT_THROW(context.globalIgnoreString(), HSVNInvalidArgumentException);
}

TEST_F(Context, IsLeftWithoutABundleWhenItCannotBeSetUp)
{
    HSVNContext context{_bundle};
    _fake.state().contextFails = true;
    EXPECT_THROW(context.setBundle(_bundle), HSVNWorkingCopyLockedException);
    EXPECT_EQ(context.bundle(), nullptr);
    EXPECT_EQ(context.pool(), nullptr);
    EXPECT_EQ(context.ctx(), nullptr);
    EXPECT_THROW(HSVNContext{_bundle}, HSVNWorkingCopyLockedException);
    EXPECT_EQ(_fake.state().pools, 0) << "a pool leaks";
}

TEST_F(Context, ReadsAndChangesItsConfiguration)
{
    const auto context = contextWithConfiguration();
    EXPECT_EQ(context->optionForName("diff-cmd", "config", "helpers", std::nullopt), "dä");
    EXPECT_EQ(context->optionForName("none", "config", "helpers", std::nullopt), std::nullopt);
    EXPECT_EQ(context->optionForName("none", "config", "helpers", "default"), "default");
    EXPECT_EQ(context->optionForName("editor-cmd", "nothing", "helpers", "default"), "default");
    EXPECT_THAT(context->optionsForCategory("config", "helpers"),
                ElementsAre(Pair("diff-cmd", "dä"), Pair("editor-cmd", "vi")));
    EXPECT_THAT(context->optionsForCategory("nothing", "helpers"), ElementsAre());

    context->setOption("10", "http-timeout", "servers", "global");
    EXPECT_EQ(context->optionForName("http-timeout", "servers", "global", std::nullopt), "10");
    EXPECT_EQ(readFile(_folder / "area/servers"), "[groups]\n") << "files must not be written";
}

TEST_F(Context, RefusesToSetAnOptionOfACategoryThatIsNotThere)
{
    HSVNContext withoutConfiguration{_bundle};
    const auto context = contextWithConfiguration();
    for (HSVNContext* candidate : {context.get(), &withoutConfiguration}) {
        try {
            candidate->setOption("value", "name", "nothing", "section");
            FAIL() << "no exception";
        } catch (const HSVNException& exception) {
            EXPECT_EQ(exception.reason(), "Couldn't find configuration category 'nothing'");
            EXPECT_EQ(exception.status(), 20014);
        }
    }
    EXPECT_EQ(withoutConfiguration.optionForName("name", "config", "section", "default"), "default");
    EXPECT_THROW(context->notify(nullptr), HSVNAssertionException);
}

TEST_F(Context, SplitsIgnorePatternsAtLineEndsAndTabsOnly)
{
    const auto context = contextWithConfiguration();
    const char* const defaults =
        "*.o *.lo *.la *.al .libs *.so *.so.[0-9]* *.a *.pyc *.pyo *.rej *~ #*# .#* .*.swp .DS_Store";
    EXPECT_EQ(context->globalIgnoreString(), defaults);
    EXPECT_THAT(context->globalIgnoreList(), ElementsAre(defaults));
    context->setOption(" *.o *.a\t*.x\n\n \v*.y ", "global-ignores", "config", "miscellany");
    EXPECT_THAT(context->globalIgnoreList(), ElementsAre("*.o *.a", "*.x", "*.y"));
}

TEST_F(Context, KeepsTheFirstExceptionOfItsCallbacks)
{
    HSVNContext context{_bundle};
    HSVNKeptException::keep(context, std::make_exception_ptr(HSVNGenericException("first")));
    HSVNKeptException::keep(context, std::make_exception_ptr(HSVNGenericException("second")));
    EXPECT_TRUE(HSVNKeptException::isIn(context));
    try {
        std::rethrow_exception(HSVNKeptException::take(context));
    } catch (const HSVNGenericException& exception) {
        EXPECT_EQ(exception.reason(), "first");
    }
    EXPECT_EQ(HSVNKeptException::take(context), nullptr);
}

TEST(ContextOfTheLibrarysBundles, TakesTheNewest)
{
    auto& loader = HSVNBundleLoader::sharedInstance();
    loader.loadBundlesInDirectoryAtPath(HSVNBundleLoader::defaultBundleDirectory());
    const HSVNContext context;
    ASSERT_NE(context.bundle(), nullptr);
    EXPECT_EQ(context.bundle(), loader.newestBundle());
    EXPECT_EQ(context.bundleVersion(), loader.newestVersion());
    EXPECT_THAT(HSVNString::splitOnCharactersInString(" a,b ;;c", ",;"), ElementsAre(" a", "b ", "c"));
    EXPECT_THAT(HSVNString::splitOnCharactersInString("", ","), ElementsAre());
}

TEST(PropertyTexts, BecomeListsOfPatternsAndKeywordsAndBack)
{
    EXPECT_THAT(HSVNString::ignoreListValue("a\n\n  b\t\r\n c d \v"), ElementsAre("a", "b", "c d"));
    EXPECT_EQ(HSVNString::stringFromIgnoreList({{"a", "b", "a", "", "c d"}}), "a\nb\nc d");
    EXPECT_EQ(HSVNString::stringFromIgnoreList({{"", ""}}), "");
    EXPECT_EQ(HSVNString::stringFromIgnoreList({"a", "b", "a"}), "a\nb");
    EXPECT_THROW(HSVNString::stringFromIgnoreList({"a", nullptr}), HSVNAssertionException);
    EXPECT_EQ(HSVNString::stringFromIgnoreList({}), std::nullopt);
    EXPECT_EQ(HSVNString::stringFromIgnoreList(std::nullopt), std::nullopt);
    EXPECT_THAT(HSVNString::keywordListValue("Id  Date"), ElementsAre("Id", "", "Date"));
    EXPECT_THAT(HSVNString::keywordListValue(""), ElementsAre(""));
    EXPECT_EQ(HSVNString::stringFromKeywordList({"", "Id", "Date", ""}), "Id Date ");
}

} // namespace
