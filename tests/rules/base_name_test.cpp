#include "base/name_rules.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

TEST(NameRules, ARelativePathStaysInsideItsFolder)
{
    EXPECT_TRUE(IsPlainRelativePath(L"Image\\x64\\Zolt.msi"));
    EXPECT_TRUE(IsPlainRelativePath(L"a"));
    for (const wchar_t* path : {L"", L"\\a", L"a\\", L"a\\\\b", L"..\\a", L"a\\..\\b", L"a\\.", L"C:\\a",
                                L"C:a", L"\\\\server\\share", L"a/b", L"a\\NUL", L"a.\\b"}) {
        EXPECT_FALSE(IsPlainRelativePath(path)) << Utf8(path);
    }
}

TEST(NameRules, ANameEndsInADotOrABlankByItsLastCharacter)
{
    EXPECT_TRUE(EndsInDotOrBlank(L"a."));
    EXPECT_TRUE(EndsInDotOrBlank(L" "));
    EXPECT_FALSE(EndsInDotOrBlank(L".a"));
    EXPECT_FALSE(EndsInDotOrBlank(L""));
}

TEST(NameRules, APartOfAFileNameHoldsNothingReserved)
{
    EXPECT_EQ(FileNamePart(L"Zolt: \"2027\"/x. "), CString(L"Zolt_ _2027__x"));
}

TEST(NameRules, ASafePathIsAPlainOneWithinLimits)
{
    EXPECT_TRUE(IsSafeRelativePath(L"Image\\x64\\Zolt.msi"));
    EXPECT_TRUE(IsSafeFileName(CString(L'a', 255)));
    EXPECT_TRUE(IsSafeRelativePath(CString(L'a', 240)));
    EXPECT_FALSE(IsSafeFileName(CString(L'a', 256)));
    EXPECT_FALSE(IsSafeRelativePath(CString(L'a', 241)));
    EXPECT_FALSE(IsSafeRelativePath(L"Image\\ x"));
    EXPECT_FALSE(IsSafeFileName(L" x"));
    EXPECT_FALSE(IsSafeFileName(L"a\\b"));
    for (const wchar_t* path :
         {L"", L"\\a", L"a\\", L"a\\\\b", L"..\\a", L"a\\.", L"a:b", L"a\tb", L"a\\NUL.x"}) {
        EXPECT_FALSE(IsSafeRelativePath(path)) << Utf8(path);
    }
    EXPECT_TRUE(IsPlainRelativePath(L"Image\\ x"));
    EXPECT_TRUE(IsPlainRelativePath(CString(L'a', 256)));
}
