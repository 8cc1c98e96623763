#include "HSVNPlatformException.h"

#include <gtest/gtest.h>

TEST(PlatformException, RaisesAKeptCopyAsItsConcreteClass)
{
    const HSVNPlatformExceptionRef kept = HSVNInvalidArgumentException("no good").copy();
    try {
        kept->raise();
    } catch (const HSVNInvalidArgumentException& exception) {
        EXPECT_EQ(exception.name(), "NSInvalidArgumentException");
        EXPECT_STREQ(exception.what(), "no good");
        return;
    }
    FAIL() << "raise() threw nothing";
}

TEST(PlatformException, AFailedPreconditionQuotesItsCondition)
{
    EXPECT_NO_THROW(HSVNAssertParameter(true, "path != nil"));
    EXPECT_THROW(HSVNUserInfoValue(static_cast<const char*>(nullptr)), HSVNAssertionException);
    try {
        HSVNAssertParameter(false, "path != nil");
        FAIL() << "no exception";
    } catch (const HSVNAssertionException& exception) {
        EXPECT_EQ(exception.reason(), "Invalid parameter not satisfying: path != nil");
    }
}
