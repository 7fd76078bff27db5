// Tests that don't come back, for the test of the script that runs tests. They stand between two that pass.
#include <gtest/gtest.h>

#include <windows.h>

TEST(Stopping, First)
{
    SUCCEED();
}

TEST(Stopping, WaitsInABox)
{
    MessageBoxW(nullptr, L"Nobody answers this.", L"Unexpected", MB_OK);
}

TEST(Stopping, EndsTheProgram)
{
    TerminateProcess(GetCurrentProcess(), 7);
}

TEST(Stopping, Fails)
{
    FAIL() << "as it should";
}

TEST(Stopping, Last)
{
    SUCCEED();
}
