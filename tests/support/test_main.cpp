// The one main of all test programs.
#include <gtest/gtest.h>

int main(int count, char** arguments)
{
    testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
