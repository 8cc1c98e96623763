#include "HSVNLock.h"

#include "HSVNPath.h"
#include "HSVNPlatformException.h"
#include "Internal/Subversion.h"

#include <gtest/gtest.h>

namespace {

const HSVNDate taken{1'795'250'220'000'000};

HSVNLockRef lockWith(const std::string& token, const std::optional<std::string>& owner,
                     const std::optional<std::string>& comment)
{
    return std::make_shared<HSVNLock>(HSVNPath::pathWithString("/trunk/file.c"), token, owner, comment, taken,
                                      std::nullopt);
}

} // namespace

TEST(Lock, ComesFromSubversionsRecord)
{
    svn_lock_t record{};
    record.path = "/trunk/file.c";
    record.token = "opaquelocktoken:1";
    record.owner = "harry";
    record.creation_date = taken.microsecondsSince1970() + 999;
    const HSVNLock bare{&record};
    EXPECT_EQ(bare.path()->string(), "/trunk/file.c");
    EXPECT_EQ(bare.token(), "opaquelocktoken:1");
    EXPECT_EQ(bare.owner(), "harry");
    EXPECT_EQ(bare.comment(), std::nullopt);
    EXPECT_EQ(bare.creationDate(), taken);
    EXPECT_EQ(bare.exactCreationDate(), HSVNDate{record.creation_date});
    EXPECT_EQ(bare.expirationDate(), std::nullopt);
    EXPECT_EQ(bare.exactExpirationDate(), std::nullopt);

    record.comment = "mine";
    record.expiration_date = 60'000'000;
    const HSVNLock full{&record};
    EXPECT_EQ(full.comment(), "mine");
    EXPECT_EQ(full.expirationDate(), HSVNDate{60'000'000});

    record.token = nullptr;
    EXPECT_THROW(HSVNLock{&record}, HSVNAssertionException);
}

TEST(Lock, OfAWorkingCopyMayLackAllButTheToken)
{
    svn_lock_t record{};
    record.token = "opaquelocktoken:1";
    const auto lock = HSVNLock::lockWithSVNLock(&record, "/wc/file.c");
    EXPECT_EQ(lock->path()->string(), "/wc/file.c");
    EXPECT_EQ(lock->token(), "opaquelocktoken:1");
    EXPECT_EQ(lock->creationDate(), std::nullopt);
    record.path = "trunk/file.c";
    EXPECT_EQ(HSVNLock::lockWithSVNLock(&record, "/wc/file.c")->path()->string(), "trunk/file.c");
    EXPECT_EQ(HSVNLock::lockWithSVNLock(nullptr, "/wc/file.c"), nullptr);
}

TEST(Lock, IsEqualByTokenAloneAndHashesByIdentity)
{
    const auto lock = lockWith("t1", "harry", "why");
    EXPECT_TRUE(lock->isEqual(lockWith("t1", "sally", std::nullopt)));
    EXPECT_FALSE(lock->isEqual(lockWith("t2", "harry", "why")));
    EXPECT_FALSE(lock->isEqual(nullptr));
    EXPECT_NE(lock->hash(), lock->copy()->hash());
    EXPECT_EQ(lock->copy()->comment(), "why");
}

TEST(Lock, DescriptionCutsTheComment)
{
    const auto lock = lockWith("t1", std::nullopt, "123456789012345678901234567890");
    EXPECT_EQ(lock->description(),
              "{ " + lock->objectDescription() +
                  " path: /trunk/file.c, token: t1, owner: (null), creationDate: 2026-11-21 08:37:00 +0000, "
                  "expirationDate: (null), comment: 12345678901234567890... }");
}

TEST(Lock, RequiresPathTokenAndCreationDate)
{
    const auto path = HSVNPath::pathWithString("/f");
    const auto reasonOf = [](const HSVNPathRef& lockPath, const std::optional<std::string>& token,
                             const std::optional<HSVNDate>& date) {
        try {
            const HSVNLock lock{lockPath, token, std::nullopt, std::nullopt, date, std::nullopt};
        } catch (const HSVNAssertionException& exception) {
            return exception.reason();
        }
        return std::string{"no exception"};
    };
    EXPECT_EQ(reasonOf(nullptr, "t", taken), "Invalid parameter not satisfying: thePath != nil");
    EXPECT_EQ(reasonOf(path, std::nullopt, taken), "Invalid parameter not satisfying: theToken != nil");
    EXPECT_EQ(reasonOf(path, "t", std::nullopt), "Invalid parameter not satisfying: theCreationDate != nil");
}
