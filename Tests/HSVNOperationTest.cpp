#include "FakeBundle.h"
#include "HSVNBundleProxy.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "Internal/KeptException.h"
#include "Internal/Operation.h"
#include "ReasonOf.h"
#include "TemporaryFolder.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <gmock/gmock.h>
#include <unistd.h>

namespace {

class OperationFrame : public testing::Test
{
  protected:
    void TearDown() override
    {
        EXPECT_THROW(HSVNBundleCurrent(), HSVNGenericException) << "the stack of bundles is not balanced";
        EXPECT_EQ(_fake.state().pools, 1) << "a sub-pool leaks";
    }

    /// The reason of what the check of an operation throws.
    template <class Exception>
    static std::string thrownBy(HSVNOperation& operation, svn_error_t* error)
    {
        return reasonOf<Exception>([&] { operation.check(error); });
    }

    TemporaryFolder _folder;
    FakeBundle _fake{_folder.path(), "fake.bundle"};
    HSVNBundleRef _bundle = HSVNBundleProxy::proxyForBundle(HSVNPackage::packageAtPath(_folder / "fake.bundle"));
    HSVNContextRef _context = std::make_shared<HSVNContext>(_bundle);
};

TEST_F(OperationFrame, MakesTheBundleCurrentAndASubPool)
{
    _context->setBundleVersion(HSVNVersion{1, 6, 5});
    HSVNOperation operation{_context, "Class", "call:", {}};
    EXPECT_EQ(HSVNBundleCurrent(), _bundle);
    EXPECT_EQ(_fake.state().pools, 2);
    EXPECT_TRUE(operation.isAtLeast(HSVNVersion::version1_6()));
    EXPECT_FALSE(operation.isAtLeast(HSVNVersion{1, 7}));
    const auto* const array = operation.pathArray(
        std::vector{HSVNLocalPath::pathWithString("/b"), HSVNLocalPath::pathWithString("/a\xC3\xA4")});
    ASSERT_EQ(array->nelts, 2);
    EXPECT_STREQ(APR_ARRAY_IDX(array, 0, const char*), "/b");
    EXPECT_STREQ(APR_ARRAY_IDX(array, 1, const char*), "/aä");
    EXPECT_NO_THROW(operation.check(nullptr));
}

TEST_F(OperationFrame, ThrowsWhatACallbackKeptRatherThanTheErrorItBecame)
{
    HSVNOperation operation{_context, "Class", "call:", {}};
    svn_error_t* const error =
        HSVNGuardCallback(*_context, []() -> svn_error_t* { throw HSVNInvalidArgumentException("of the callback"); });
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->apr_err, SVN_ERR_CANCELLED);
    EXPECT_TRUE(HSVNKeptException::isIn(*_context));
    EXPECT_EQ(thrownBy<HSVNInvalidArgumentException>(operation, error), "of the callback");
    EXPECT_EQ(thrownBy<HSVNPlatformException>(operation, nullptr), "(nothing was thrown)");

    HSVNGuardVoidCallback(*_context, [] { throw HSVNGenericException("of another"); });
    EXPECT_EQ(thrownBy<HSVNGenericException>(operation, nullptr), "of another") << "Subversion went on to its end";
    EXPECT_EQ(thrownBy<HSVNWorkingCopyLockedException>(operation, operation->error_create(155004, nullptr, "locked")),
              "locked");
}

TEST_F(OperationFrame, RunsInsideACallbackOfItsOwnContext)
{
    HSVNOperation outer{_context, "Class", "outer:", {}};
    HSVNKeptException::keep(*_context, std::make_exception_ptr(HSVNGenericException("of the outer operation")));
    EXPECT_EQ(HSVNGuardCallback(*_context,
                                [this]() -> svn_error_t* {
                                    HSVNOperation inner{_context, "Class", "inner:", {}};
                                    EXPECT_NO_THROW(inner.check(nullptr));
                                    HSVNKeptException::keep(
                                        *_context, std::make_exception_ptr(HSVNGenericException("never asked for")));
                                    return nullptr;
                                }),
              nullptr);
    EXPECT_EQ(thrownBy<HSVNGenericException>(outer, nullptr), "of the outer operation");
    EXPECT_FALSE(HSVNKeptException::isIn(*_context));
}

TEST_F(OperationFrame, LetsWhatIsWrittenToABrokenPipeFail)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    close(ends[0]);
    {
        const HSVNOperation outer{_context, "Class", "outer:", {}};
        {
            const HSVNOperation inner{_context, "Class", "inner:", {}};
        }
        EXPECT_EQ(write(ends[1], "", 1), -1);
        EXPECT_EQ(errno, EPIPE);
    }
    close(ends[1]);
    sigset_t signals;
    sigpending(&signals);
    EXPECT_EQ(sigismember(&signals, SIGPIPE), 0);
    pthread_sigmask(SIG_BLOCK, nullptr, &signals);
    EXPECT_EQ(sigismember(&signals, SIGPIPE), 0);
}

[[noreturn]] void logCallAtLevel(const char* level)
{
    setenv("SkerryLogLevel", level, 1);
    const auto path = HSVNLocalPath::pathWithString("/a");
    const std::vector paths{path, path};
    const std::string name = "svn:ignore";
    HSVNLogCall("HSVNNode", "callWith:", {{"paths", paths}, {"path", path}, {"name", name}, {"nil", HSVNPathRef{}}});
    std::_Exit(0);
}

TEST(OperationLog, ShowsCallsAtTheVerboseLevelOnly)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        logCallAtLevel("verbose"), testing::ExitedWithCode(0),
        "\\] \\[HSVNNode callWith:\\] \\(paths: \\(/a, /a\\), path: /a, name: svn:ignore, nil: \\(null\\)\\)\n$");
    EXPECT_EXIT(logCallAtLevel("debug"), testing::ExitedWithCode(0), "^$");
}

} // namespace
