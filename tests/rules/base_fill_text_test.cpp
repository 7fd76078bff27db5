#include "base/fill_text.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

TEST(FillTextTest, HolesTakeTheirArgumentsInAnyOrder)
{
    EXPECT_EQ(FillText(L"%2 of %1", {L"a", L"b"}), CString(L"b of a"));
}

TEST(FillTextTest, WhatIsFilledInIsNotLookedAtAgain)
{
    EXPECT_EQ(FillText(L"%1 %2", {L"%2", L"x"}), CString(L"%2 x"));
}

TEST(FillTextTest, PercentSignsAndHolesWithoutArgumentsStay)
{
    EXPECT_EQ(FillText(L"%%1 50% %3 %", {L"a"}), CString(L"%1 50% %3 %"));
}
