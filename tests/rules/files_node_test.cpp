// Names, drives and commands of the tree of additional files.
#include "files/node_rules.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

void PrintTo(NewNameResult result, std::ostream* stream)
{
    *stream << static_cast<int>(result);
}

void PrintTo(const FileCommandStates& states, std::ostream* stream)
{
    *stream << (states.bAddFolder ? "F" : "-") << (states.bDelete ? "D" : "-")
            << (states.bRename ? "R" : "-");
}

bool operator==(const FileCommandStates& one, const FileCommandStates& other)
{
    return one.bAddFolder == other.bAddFolder && one.bDelete == other.bDelete && one.bRename == other.bRename;
}

namespace {

const CString ROOT = L"C:\\Program Files\\Zolt";
const CString LABEL = L"<Installation Directory>";

CString Display(const CString& path)
{
    return ToDisplayPath(path, ROOT, LABEL);
}

CString FreeName(const std::set<CString>& names)
{
    return FirstFreeName(names, L"New", [](int number) { return L"New " + NumberText(number); });
}

} // namespace

// ---- drives

TEST(FileNodes, ALetterInAnyCaseAndAColonAreADrive)
{
    EXPECT_EQ(DriveNumberOf(L"A:"), 0);
    EXPECT_EQ(DriveNumberOf(L"c:\\x"), 2);
    EXPECT_EQ(DriveNumberOf(L"z:"), 25);
    EXPECT_EQ(DriveNumberOf(L"\\\\?\\D:\\"), 3);
}

TEST(FileNodes, NothingElseIsADrive)
{
    for (const wchar_t* text :
         {L"", L"C", L"1:", L"CC:", L":", L"\\\\server\\C:", L"\x00C4:", L"[:", L"@:"}) {
        EXPECT_EQ(DriveNumberOf(text), -1) << Utf8(text);
        EXPECT_FALSE(IsDriveLabel(text)) << Utf8(text);
    }
    EXPECT_TRUE(IsDriveLabel(L"d:"));
}

// ---- paths

TEST(FileNodes, ADisplayPathHasTheLabelInPlaceOfTheInstallationFolderInAnyCase)
{
    EXPECT_EQ(Display(L"C:\\Program Files\\Zolt\\"), LABEL);
    EXPECT_EQ(Display(L"c:\\PROGRAM files\\zolt\\Fonts\\"), LABEL + L"\\Fonts");
    EXPECT_EQ(Display(L"C:\\Program Files\\Zolt\\a\\b"), LABEL + L"\\a\\b");
}

TEST(FileNodes, APathOutsideTheInstallationFolderLosesItsBackslashAlone)
{
    EXPECT_EQ(Display(L"D:\\Plans\\"), CString(L"D:\\Plans"));
    EXPECT_EQ(Display(L"D:\\"), CString(L"D:"));
    EXPECT_EQ(Display(L"D:\\Plans\\\\"), CString(L"D:\\Plans\\"));
    EXPECT_EQ(Display(L""), CString());
}

// The beginning is compared as a text, not by folders.
TEST(FileNodes, APathThatBeginsLikeTheInstallationFolderGetsTheLabelToo)
{
    EXPECT_EQ(Display(L"C:\\Program Files\\Zolt Plus\\x\\"), LABEL + L" Plus\\x");
}

TEST(FileNodes, APathIsSplitAtItsLastBackslash)
{
    EXPECT_EQ(LastPartOf(L"<Root>\\a\\b.c"), CString(L"b.c"));
    EXPECT_EQ(ParentPathOf(L"<Root>\\a\\b.c"), CString(L"<Root>\\a"));
    EXPECT_EQ(LastPartOf(L"D:"), CString(L"D:"));
    EXPECT_EQ(ParentPathOf(L"D:"), CString());
}

// ---- new names

TEST(FileNodes, ANameWithOneOfNineCharactersIsRefused)
{
    for (const wchar_t* text :
         {L"a\\b", L"a/b", L"a:b", L"a*", L"?", L"\"a\"", L"<", L"a>b", L"|", L"\\", L".", L".."}) {
        EXPECT_EQ(CheckNewName(text, false), NewNameResult::Invalid) << Utf8(text);
    }
}

TEST(FileNodes, AnyOtherNameIsAccepted)
{
    for (const CString& text :
         {CString(L"a"), CString(L"..."), CString(L".a"), CString(L"a."), CString(L"a b"), CString(L"it's"),
          CString(L"100 %s"), CString(L"\x4E2D\x6587"), CString(L"\x05E9"), CString(L'x', 300)}) {
        EXPECT_EQ(CheckNewName(text, false), NewNameResult::Accepted) << Utf8(text);
    }
}

TEST(FileNodes, ADriveIsALetterFromCOnAndAColon)
{
    for (const wchar_t* text : {L"C:", L"d:", L"Z:"}) {
        EXPECT_EQ(CheckNewName(text, true), NewNameResult::Accepted) << Utf8(text);
    }
    for (const wchar_t* text :
         {L"A:", L"a:", L"B:", L"b:", L"C", L"CD", L"C:x", L"C:/", L"1:", L":C", L"plan"}) {
        EXPECT_EQ(CheckNewName(text, true), NewNameResult::InvalidDrive) << Utf8(text);
    }
}

TEST(FileNodes, ABackslashAndDotsAreNoNamesOfADriveBeforeTheyAreNoDrive)
{
    for (const wchar_t* text : {L"C:\\", L"\\", L".", L".."}) {
        EXPECT_EQ(CheckNewName(text, true), NewNameResult::Invalid) << Utf8(text);
    }
}

TEST(FileNodes, AFreeNameIsThePlainOneOrTheLowestNumberFromTwo)
{
    EXPECT_EQ(FreeName({}), CString(L"New"));
    EXPECT_EQ(FreeName({L"New"}), CString(L"New 2"));
    EXPECT_EQ(FreeName({L"New", L"New 3"}), CString(L"New 2"));
    EXPECT_EQ(FreeName({L"New", L"New 2", L"New 3"}), CString(L"New 4"));
    EXPECT_EQ(FreeName({L"New 2"}), CString(L"New"));
}

TEST(FileNodes, AFreeNameMayDifferInCaseAlone)
{
    EXPECT_EQ(FreeName({L"new", L"NEW"}), CString(L"New"));
}

// ---- commands

TEST(FileNodes, CommandsFollowTheSelectedNode)
{
    const FileNodeKind productFolder = {false, false};
    const FileNodeKind addedFolder = {true, false};
    const FileNodeKind addedFile = {true, true};
    EXPECT_EQ(FileCommandsFor(nullptr), FileCommandStates({false, false, false}));
    EXPECT_EQ(FileCommandsFor(&productFolder), FileCommandStates({true, false, false}));
    EXPECT_EQ(FileCommandsFor(&addedFolder), FileCommandStates({true, true, true}));
    EXPECT_EQ(FileCommandsFor(&addedFile), FileCommandStates({true, true, false}));
}
