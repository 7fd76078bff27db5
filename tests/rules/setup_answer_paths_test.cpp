#include "setup/answer_paths.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

CString Resolved(const wchar_t* folder, const wchar_t* path)
{
    return ResolveAnswerPath({folder, L"E:\\Media"}, path);
}

TEST(SetupAnswerPaths, WhatIsNoRelativePathStaysLetterForLetter)
{
    for (const wchar_t* path :
         {L"C:\\", L"C:\\a b\\c", L"\\\\s\\h", L"\\\\s\\h\\x", L"\\\\s", L"C:", L"C:x", L"", L"C:/x",
          L"//s/h/x", L"C:\\a\\..\\b\\.", L"http://server/feed.xml", L"\\\\s\\h\\..\\x"}) {
        EXPECT_EQ(Resolved(L"D:\\base", path), CString(path)) << Utf8(path);
    }
}

TEST(SetupAnswerPaths, RelativeOnesAreJoinedAndTidied)
{
    EXPECT_EQ(Resolved(L"D:\\base", L"x"), CString(L"D:\\base\\x"));
    EXPECT_EQ(Resolved(L"D:\\base\\", L".\\x\\.\\y"), CString(L"D:\\base\\x\\y"));
    EXPECT_EQ(Resolved(L"D:\\base", L"x/y"), CString(L"D:\\base\\x\\y"));
    EXPECT_EQ(Resolved(L"D:\\base", L"..\\..\\..\\x"), CString(L"D:\\x"));
    EXPECT_EQ(Resolved(L"\\\\s\\h\\base", L"..\\..\\x"), CString(L"\\\\s\\h\\x"));
    EXPECT_EQ(Resolved(L"\\\\s\\h", L"x"), CString(L"\\\\s\\h\\x"));
    EXPECT_EQ(Resolved(L"D:\\base", L"\\x"), CString(L"D:\\x"));
    EXPECT_EQ(Resolved(L"D:\\base", L"."), CString(L"D:\\base"));
    EXPECT_EQ(Resolved(L"D:\\", L"x"), CString(L"D:\\x"));
    EXPECT_EQ(Resolved(L"D:\\", L"\\x"), CString(L"D:\\x"));
    EXPECT_EQ(Resolved(L"D:\\", L"."), CString(L"D:\\"));
}

// The page refused them from a person, and never saw them from a file.
TEST(SetupAnswerPaths, DoubledAndClosingBackslashesStayForThePageToJudge)
{
    for (const wchar_t* path :
         {L"C:\\a\\\\b.xml", L"C:\\a\\", L"C:\\\\a", L"\\\\s\\h\\a\\\\b", L"\\\\s\\h\\", L"C:\\a\\\\\\"}) {
        EXPECT_EQ(Resolved(L"D:\\base", path), CString(path)) << Utf8(path);
    }
    EXPECT_EQ(Resolved(L"D:\\base", L"a\\\\b.xml"), CString(L"D:\\base\\a\\\\b.xml"));
    EXPECT_EQ(Resolved(L"D:\\base", L"a\\"), CString(L"D:\\base\\a\\"));
    EXPECT_EQ(Resolved(L"D:\\base", L"\\a\\\\b"), CString(L"D:\\a\\\\b"));
}

TEST(SetupAnswerPaths, DotsLeaveThePartBeforeDoubledBackslashes)
{
    EXPECT_EQ(Resolved(L"C:\\", L"a\\\\..\\b"), CString(L"C:\\b"));
    EXPECT_EQ(Resolved(L"C:\\", L"a\\b\\..\\"), CString(L"C:\\a\\"));
}

TEST(SetupAnswerPaths, TheMarkStandsForTheFolderOfTheMedia)
{
    EXPECT_EQ(Resolved(L"D:\\base", L"<media>\\lists\\a.npl"), CString(L"E:\\Media\\lists\\a.npl"));
    EXPECT_EQ(Resolved(L"D:\\base", L"<Media>/lists"), CString(L"E:\\Media\\lists"));
    EXPECT_EQ(Resolved(L"D:\\base", L"<media>"), CString(L"E:\\Media"));
    EXPECT_EQ(Resolved(L"D:\\base", L"<media>\\..\\x"), CString(L"E:\\x"));
    EXPECT_EQ(Resolved(L"D:\\base", L"<mediator>\\x"), CString(L"D:\\base\\<mediator>\\x"));
    EXPECT_EQ(ResolveMediaMark(L"E:\\", L"<media>\\x"), CString(L"E:\\x"));
}

// The command line is read before the media are opened.
TEST(SetupAnswerPaths, TheMarkWaitsForMediaThatAreNotOpenYet)
{
    EXPECT_EQ(ResolveAnswerPath({L"D:\\base", L""}, L"<media>\\x"), CString(L"<media>\\x"));
    EXPECT_EQ(ResolveMediaMark(L"", L"<media>\\x"), CString(L"<media>\\x"));
}

PortablePath Portable(const wchar_t* path)
{
    return MakePortable({L"D:\\Deployments\\Office", L"D:\\Media"}, path);
}

TEST(SetupAnswerPaths, WhatLiesBelowTheFilesFolderBecomesRelative)
{
    EXPECT_EQ(Portable(L"D:\\Deployments\\Office\\lists\\a.npl").strText, CString(L"lists\\a.npl"));
    EXPECT_EQ(Portable(L"d:\\deployments\\OFFICE\\a.npl").strText, CString(L"d:\\deployments\\OFFICE\\a.npl"))
        << "the letters' case would change";
}

TEST(SetupAnswerPaths, WhatLiesBelowTheMediaGetsTheMark)
{
    EXPECT_EQ(Portable(L"D:\\Media\\lists\\a.npl").strText, CString(L"<media>\\lists\\a.npl"));
}

TEST(SetupAnswerPaths, WhatLiesElsewhereStaysFull)
{
    for (const wchar_t* path :
         {L"D:\\Media2\\a.npl", L"D:\\Deployments\\a.npl", L"\\\\server\\share\\a", L"D:\\Media"}) {
        EXPECT_EQ(Portable(path).strText, CString(path)) << Utf8(path);
        EXPECT_FALSE(Portable(path).bLiteral) << Utf8(path);
    }
}

TEST(SetupAnswerPaths, WhatWouldBeMadeFullIsMarkedAsLiteral)
{
    for (const wchar_t* path : {L"lists\\a.npl", L"\\lists", L".", L"<media>\\a"}) {
        EXPECT_EQ(Portable(path).strText, CString(path)) << Utf8(path);
        EXPECT_TRUE(Portable(path).bLiteral) << Utf8(path);
    }
}

// Any path that a person can type: what is written is read as the same again.
TEST(SetupAnswerPaths, AnyPathComesBackFromItsPortableForm)
{
    const wchar_t* const pieces[] = {L"D:",    L"\\", L"Media",  L"Deployments", L"Office",
                                     L"..",    L".",  L"/",      L"<media>",     L"\\\\s\\h",
                                     L"x.npl", L" ",  L"\x4E2D", L"://"};
    std::uint32_t random = 1;
    const auto next = [&random](std::uint32_t below) {
        random = random * 1664525u + 1013904223u;
        return (random >> 16) % below;
    };
    for (int round = 0; round < 20000; ++round) {
        CString path;
        for (std::uint32_t left = next(8); left > 0; --left) {
            path += pieces[next(std::size(pieces))];
        }
        for (const AnswerFolders& folders :
             {AnswerFolders{L"D:\\Deployments\\Office", L"D:\\Media"}, AnswerFolders{L"D:\\", L"\\\\s\\h"},
              AnswerFolders{L"\\\\s\\h\\Media", L""}}) {
            const PortablePath portable = MakePortable(folders, path, round % 2 == 0);
            const CString again =
                portable.bLiteral ? portable.strText : ResolveAnswerPath(folders, portable.strText);
            ASSERT_EQ(again, path) << Utf8(path) << " as " << Utf8(portable.strText);
        }
    }
}

} // namespace
