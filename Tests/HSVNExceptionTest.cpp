#include "HSVNException.h"
#include "FakeBundle.h"
#include "HSVNBundleLoader.h"
#include "Internal/Pool.h"
#include "ReasonOf.h"
#include "TemporaryFolder.h"

#include <cerrno>
#include <gmock/gmock.h>
#include <map>
#include <sstream>

namespace {

class SubversionErrors : public testing::Test
{
  protected:
    SubversionErrors()
    {
        FakeBundle{_folder.path(), "fake.bundle"};
        _loader.loadBundleAtPath(_folder / "fake.bundle");
        _scope.emplace(_loader.newestBundle());
    }

    static svn_error_t* error(apr_status_t status, const char* message, svn_error_t* child = nullptr)
    {
        return HSVNCurrentEntryPoints().error_create(status, child, message);
    }

    TemporaryFolder _folder;
    HSVNBundleLoader _loader;
    std::optional<HSVNBundleScope> _scope;
};

TEST_F(SubversionErrors, TheFirstKnownCodeOfAChainChoosesTheClass)
{
    struct Case
    {
        svn_error_t* error;
        const char* name;
        std::int32_t status;
    };
    const Case cases[] = {
        {error(155007, "outer"), "HSVNNotWorkingCopyException", 155007},
        {error(1, "outer", error(200015, "inner")), "HSVNOperationCancelledException", 1},
        {error(155007, "outer", error(200015, "inner")), "HSVNNotWorkingCopyException", 155007},
        {error(1, "outer", error(2, "inner")), "HSVNException", 1},
        {error(170001, "outer"), "HSVNAuthorizationException", 170001},
        {error(175002, "outer"), "HSVNCommunicationException", 175002},
    };
    for (const auto& [chain, name, status] : cases) {
        const auto exception = HSVNException::exceptionWithError(chain);
        EXPECT_EQ(exception->name(), name);
        EXPECT_EQ(exception->className(), name);
        EXPECT_EQ(exception->reason(), "outer");
        EXPECT_EQ(exception->status(), status);
    }
}

TEST_F(SubversionErrors, ARefusedRequestIsAnAuthorizationFailure)
{
    const std::pair<const char*, const char*> cases[] = {
        {"PROPFIND: 403 forbidden (http://x)", "HSVNAuthorizationException"},
        {"401 AUTHORIZATION Required", "HSVNAuthorizationException"},
        {"403", "HSVNCommunicationException"},
        {nullptr, "HSVNCommunicationException"},
    };
    for (const auto& [message, name] : cases) {
        EXPECT_EQ(HSVNException::exceptionWithError(error(175002, message))->name(), name);
    }
    // Only the outermost message counts, whichever error chose the class.
    EXPECT_EQ(HSVNException::exceptionWithError(error(1, "outer", error(175002, "403 Forbidden")))->name(),
              "HSVNCommunicationException");
}

TEST_F(SubversionErrors, TheUserInformationKeepsTheWholeChain)
{
    svn_error_t* const chain = error(1, "outer",
                                     error(200015, "inn\xFF"
                                                   "er"));
    chain->file = "update.c";
    chain->line = 42;
    const HSVNException exception{chain};
    const auto& outer = exception.userInfo();
    EXPECT_EQ(*outer.at(HSVNExceptionMessageKey).text(), "outer");
    EXPECT_EQ(*outer.at(HSVNExceptionFileNameKey).text(), "update.c");
    EXPECT_EQ(*outer.at(HSVNExceptionLineNumberKey).number(), 42);
    EXPECT_EQ(*outer.at(HSVNExceptionStatusKey).number(), 1);
    const auto& inner = *outer.at(HSVNExceptionCauseKey).dictionary();
    EXPECT_EQ(*inner.at(HSVNExceptionMessageKey).text(), R"(inn?\FFer)");
    EXPECT_EQ(inner.size(), 2U) << "no file, no line, no cause";
    EXPECT_EQ(HSVNException::exceptionWithError(chain, false)->userInfo().size(), outer.size()) << "not released yet";
    HSVNException::exceptionWithError(chain);
}

TEST_F(SubversionErrors, ABestMessageIsFoundForAnErrorWithoutOne)
{
    EXPECT_EQ(HSVNException::exceptionWithError(error(ENOENT, nullptr))->reason(), "No such file or directory");
}

TEST_F(SubversionErrors, AClassThatIsAskedForIsKept)
{
    EXPECT_EQ(HSVNLockException::exceptionWithError(error(155007, "x"), true)->name(), "HSVNLockException");
    EXPECT_EQ(HSVNLockException::exceptionWithError(error(155007, "x"))->name(), "HSVNNotWorkingCopyException");
    EXPECT_EQ(HSVNCommunicationException::exceptionWithError(error(1, "403 Forbidden"), true)->name(),
              "HSVNAuthorizationException");
    EXPECT_EQ(HSVNConnectionClosedException::exceptionWithReason("x", 155004)->name(), "HSVNConnectionClosedException");
    svn_error_t* const chain = error(1, "x");
    EXPECT_EQ(HSVNEntryLockedException{chain}.name(), "HSVNEntryLockedException");
    HSVNCurrentEntryPoints().error_clear(chain);
}

class QuotaException : public HSVNExceptionOf<QuotaException, HSVNException>
{
  public:
    static constexpr const char* staticClassName = "QuotaException";
    using HSVNExceptionOf::HSVNExceptionOf;
};

TEST_F(SubversionErrors, AnApplicationsOwnClassIsKeptToo)
{
    const auto exception = QuotaException::exceptionWithError(error(155007, "outer"), true);
    EXPECT_EQ(exception->name(), "QuotaException");
    EXPECT_EQ(exception->status(), 155007);
    EXPECT_THROW(exception->raise(), QuotaException);
    EXPECT_STREQ(QuotaException::classForAPRStatus(155007)->name(), "QuotaException");
}

TEST_F(SubversionErrors, NoErrorIsAFailedPrecondition)
{
    const std::string refusal = "Invalid parameter not satisfying: ";
    EXPECT_EQ(reasonOf<HSVNAssertionException>([] { HSVNException::exceptionWithError(nullptr); }),
              refusal + "error != NULL");
    EXPECT_EQ(reasonOf<HSVNAssertionException>([] { HSVNException{static_cast<svn_error_t*>(nullptr)}; }),
              refusal + "error != NULL");
    EXPECT_EQ(reasonOf<HSVNAssertionException>([] { HSVNException::dictionaryForError(nullptr); }),
              refusal + "error != nil");
}

TEST_F(SubversionErrors, NeedACurrentBundle)
{
    svn_error_t* const chain = error(1, "x");
    _scope.reset();
    EXPECT_THROW(HSVNException::exceptionWithError(chain), HSVNGenericException);
    _scope.emplace(_loader.newestBundle());
    HSVNCurrentEntryPoints().error_clear(chain);
}

TEST_F(SubversionErrors, MessagesTellTheWholeChainOnce)
{
    const auto exception = HSVNException::exceptionWithError(
        error(160028, "Commit failed (details follow):",
              error(155011, "Commit failed (details follow):", error(170004, "Item '/a' is out of date"))));
    EXPECT_EQ(exception->reason(), "Commit failed (details follow):");
    EXPECT_EQ(exception->messages(),
              (std::vector<std::string>{"Commit failed (details follow):", "Item '/a' is out of date"}));
    EXPECT_EQ(exception->fullMessage(), "Commit failed (details follow):\nItem '/a' is out of date");
    // What Subversion joins while it cleans up.
    const auto joined = HSVNException::exceptionWithError(
        error(200015, "Cancelled", error(200015, "Additional errors:", error(200015, "Cancelled"))));
    EXPECT_EQ(joined->fullMessage(), "Cancelled");
    EXPECT_EQ(HSVNGenericException{"misused"}.messages(), std::vector<std::string>{"misused"});
}

TEST(ExceptionClass, IsMappedFromTheStatus)
{
    std::istringstream rows{
        "150000 NoSuchEntry 150002 EntryExists 200005 UnversionedResource 200007 UnsupportedFeature "
        "200015 OperationCancelled 160028 TransactionOutOfDate 160020 EntryExists 160008 NoSuchEntry "
        "160013 NoSuchEntry 160024 VersionConflict 160043 UnsupportedRepositoryFormat 160029 BerkeleyDB "
        "170001 Authorization 210002 ConnectionClosed 210005 RepositoryNotFound 180001 NotRepository "
        "175002 Communication 155004 WorkingCopyLocked 155015 MergeConflict 155005 WorkingCopyNotLocked "
        "155007 NotWorkingCopy 155023 InvalidSchedule 155021 UnsupportedWorkingCopyFormat "
        "195006 ItemModified 195005 InvalidExternalsDescription 160037 EntryLocked 160039 EntryLocked "
        "160041 LockExpired "};
    std::map<std::int32_t, std::string> classes{{EEXIST, "EntryExists"},
                                                {EHOSTUNREACH, "HostUnreachable"},
                                                {ETIMEDOUT, "CommunicationTimeOut"},
                                                {ECONNREFUSED, "ConnectionRefused"}};
    std::string shortName;
    for (std::int32_t status = 0; rows >> status >> shortName;) {
        classes[status] = shortName;
    }
    EXPECT_EQ(classes.size(), 32U);
    for (const auto& [status, known] : classes) {
        const std::string name = "HSVN" + known + "Exception";
        const HSVNExceptionClass* const found = HSVNException::classForAPRStatus(status);
        ASSERT_NE(found, nullptr) << status;
        EXPECT_EQ(found->name(), name) << status;
        EXPECT_EQ(HSVNExceptionClass::named(name), found);
        EXPECT_EQ(found->make("x", {})->className(), name);
    }
    EXPECT_EQ(HSVNException::mapClassToAPRStatus(1), nullptr);
    EXPECT_EQ(HSVNLockException::mapClassToAPRStatus(155004), HSVNException::classForAPRStatus(155004));
    EXPECT_STREQ(HSVNLockException::classForAPRStatus(155004)->name(), "HSVNLockException");
    EXPECT_EQ(HSVNExceptionClass::named("HSVNNoException"), nullptr);
}

TEST(ExceptionWithReason, IsThrownAsItsConcreteClassAndBases)
{
    EXPECT_EQ(HSVNException::exceptionWithReason("x")->status(), 20014);
    EXPECT_EQ(HSVNException::exceptionWithReason("x")->name(), "HSVNException");
    EXPECT_EQ(HSVNException("x", {}).status(), 20014);
    const auto locked = HSVNException::exceptionWithReason("x", 155004);
    EXPECT_EQ(locked->status(), 155004);
    EXPECT_EQ(*locked->userInfo().at(HSVNExceptionMessageKey).text(), "x");
    EXPECT_THROW(locked->raise(), HSVNWorkingCopyLockedException);
    EXPECT_THROW(HSVNException::exceptionWithReason("x", ECONNREFUSED)->raise(), HSVNCommunicationException);
    EXPECT_EQ(HSVNLockExpiredException("x").status(), 20014);
}

} // namespace
