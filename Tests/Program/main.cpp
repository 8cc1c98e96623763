#include <gmock/gmock.h>

int main(int count, char** arguments)
{
    testing::InitGoogleMock(&count, arguments);
    return RUN_ALL_TESTS();
}
