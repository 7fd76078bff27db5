#include "base/guid_text.h"
#include "tests/rules/user_key.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

TEST(GuidTest, AllBracesAtTheEndsAreRemoved)
{
    EXPECT_EQ(StripGuidBraces(L"{{a}b}}"), CString(L"a}b"));
}

TEST(GuidTest, ATarnKeyCarriesItsGuidWithUnderscoresOrHyphens)
{
    CString guid;
    EXPECT_TRUE(GetTarnKeyGuid(L"TARN_01234567_89AB_CDEF_0123_456789ABCDEF", guid));
    EXPECT_EQ(guid, CString(L"01234567-89AB-CDEF-0123-456789ABCDEF"));
    EXPECT_TRUE(GetTarnKeyGuid(L"TARN_01234567-89AB-CDEF-0123-456789ABCDEF", guid));
    EXPECT_EQ(guid, CString(L"01234567-89AB-CDEF-0123-456789ABCDEF"));
}

TEST(GuidTest, TheTarnPrefixStandsAtTheStartInCapitals)
{
    CString guid(L"before");
    EXPECT_FALSE(GetTarnKeyGuid(L"xTARN_01234567_89AB_CDEF_0123_456789ABCDEF", guid));
    EXPECT_FALSE(GetTarnKeyGuid(L"tarn_01234567_89AB_CDEF_0123_456789ABCDEF", guid));
    EXPECT_FALSE(GetTarnKeyGuid(L"", guid));
    EXPECT_EQ(guid, CString(L"before"));
}

TEST(GuidTest, AGuidHasBracesHyphensAndHexadecimalDigits)
{
    EXPECT_TRUE(IsBracedGuid(L"{6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7a11}"));
    for (const wchar_t* text :
         {L"", L"{6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A1}", L"{6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A1G}",
          L"{6F0C2A0C 9A3B-4D53-8B4A-0E2F5D0B7A11}", L"(6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A11)"}) {
        EXPECT_FALSE(IsBracedGuid(text)) << Utf8(text);
    }
}

TEST(GuidTest, AUsersKeyIsTheMarkAndAGuid)
{
    EXPECT_TRUE(IsUserKey(UserKey(1)));
    EXPECT_TRUE(IsUserKey(L"TARN_0d7a5c1e_0000_4000_8000_00000000000f"));
    EXPECT_FALSE(IsUserKey(UserKey(1).Left(40)));
    EXPECT_FALSE(IsUserKey(UserKey(1) + L"0"));
    EXPECT_FALSE(IsUserKey(L"TARN_0D7A5C1G_0000_4000_8000_000000000001"));
    EXPECT_FALSE(IsUserKey(L"TARN_0D7A5C1E0_000_4000_8000_000000000001"));
    EXPECT_FALSE(IsUserKey(L"BARN_0D7A5C1E_0000_4000_8000_000000000001"));
    EXPECT_FALSE(IsUserKey(L"TARN_{D7A5C1E_0000_4000_8000_00000000000}"));
}

// The builder once took such a row for the product's own, while the pages showed it as the user's.
TEST(GuidTest, AUsersKeyMayHaveHyphensForItsUnderscores)
{
    EXPECT_TRUE(IsUserKey(L"TARN_0D7A5C1E-0000-4000-8000-000000000001"));
    EXPECT_TRUE(IsUserKey(L"TARN_0D7A5C1E-0000_4000_8000_000000000001"));
}
