// The result of the system's file picker in both of its forms. In the tables a vertical bar stands for a zero.
#include "files/picked_paths_rules.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using Paths = std::vector<CString>;

constexpr PickerForm EXPLORER_MANY = {true, true};
constexpr PickerForm EXPLORER_ONE = {true, false};
constexpr PickerForm OLD_MANY = {false, true};
constexpr PickerForm OLD_ONE = {false, false};

std::vector<wchar_t> BufferOf(const CString& text)
{
    std::vector<wchar_t> buffer(text.GetString(), text.GetString() + text.GetLength());
    std::replace(buffer.begin(), buffer.end(), L'|', L'\0');
    buffer.insert(buffer.end(), 2, L'\0');
    return buffer;
}

Paths Walk(const std::vector<wchar_t>& buffer, PickerForm form)
{
    Paths paths;
    for (const wchar_t* position = buffer.data(); position && paths.size() < 100000;) {
        paths.push_back(NextPickedPath(buffer.data(), form, position));
    }
    return paths;
}

Paths Picked(const CString& text, PickerForm form)
{
    return Walk(BufferOf(text), form);
}

} // namespace

TEST(PickedPaths, OneChosenFileGivesOnePath)
{
    EXPECT_EQ(Picked(L"C:\\Plans\\a b.txt", EXPLORER_MANY), Paths({L"C:\\Plans\\a b.txt"}));
    EXPECT_EQ(Picked(L"C:\\PLANS\\A.TXT", OLD_MANY), Paths({L"C:\\PLANS\\A.TXT"}));
}

TEST(PickedPaths, ThreeChosenFilesGiveThreePathsEachWithTheFolderInFront)
{
    const Paths three = {L"C:\\Plans\\a.txt", L"C:\\Plans\\b.txt", L"C:\\Plans\\c"};
    EXPECT_EQ(Picked(L"C:\\Plans|a.txt|b.txt|c", EXPLORER_MANY), three);
    EXPECT_EQ(Picked(L"C:\\Plans a.txt b.txt c", OLD_MANY), three);
}

TEST(PickedPaths, TheFolderAndOneNameGiveOnePath)
{
    EXPECT_EQ(Picked(L"C:\\Plans|a.txt", EXPLORER_MANY), Paths({L"C:\\Plans\\a.txt"}));
    EXPECT_EQ(Picked(L"C:\\Plans a.txt", OLD_MANY), Paths({L"C:\\Plans\\a.txt"}));
}

TEST(PickedPaths, BlanksSeparateInTheOldFormAlone)
{
    EXPECT_EQ(Picked(L"C:\\My plans|a b.txt|c d.txt", EXPLORER_MANY),
              Paths({L"C:\\My plans\\a b.txt", L"C:\\My plans\\c d.txt"}));
}

TEST(PickedPaths, AFolderThatEndsInABackslashDoesNotGetASecondOne)
{
    const Paths two = {L"C:\\a.txt", L"C:\\b.txt"};
    EXPECT_EQ(Picked(L"C:\\|a.txt|b.txt", EXPLORER_MANY), two);
    EXPECT_EQ(Picked(L"C:\\ a.txt b.txt", OLD_MANY), two);
}

TEST(PickedPaths, AClosingSlashCountsWhereTheFolderHasNoBackslash)
{
    EXPECT_EQ(Picked(L"C:/plans/|a.txt|b.txt", EXPLORER_MANY), Paths({L"C:/plans/a.txt", L"C:/plans/b.txt"}));
    EXPECT_EQ(Picked(L"C:\\plans/|a.txt", EXPLORER_MANY), Paths({L"C:\\plans/\\a.txt"}));
    EXPECT_EQ(Picked(L"C:/plans|a.txt", EXPLORER_MANY), Paths({L"C:/plans\\a.txt"}));
}

TEST(PickedPaths, AnEmptyFolderGetsABackslash)
{
    EXPECT_EQ(Picked(L"|a.txt", EXPLORER_MANY), Paths({L"\\a.txt"}));
    EXPECT_EQ(Picked(L" a.txt b", OLD_MANY), Paths({L"\\a.txt", L"\\b"}));
}

TEST(PickedPaths, WithoutManyTheWholeBufferIsTheOnlyPath)
{
    EXPECT_EQ(Picked(L"C:\\Plans\\a.txt", EXPLORER_ONE), Paths({L"C:\\Plans\\a.txt"}));
    EXPECT_EQ(Picked(L"C:\\My plans\\a b.txt", OLD_ONE), Paths({L"C:\\My plans\\a b.txt"}));
    EXPECT_EQ(Picked(L"C:\\Plans|a.txt|b.txt", EXPLORER_ONE), Paths({L"C:\\Plans"}));
}

TEST(PickedPaths, AnEmptyBufferGivesOneEmptyPath)
{
    EXPECT_EQ(Picked(L"", EXPLORER_MANY), Paths({L""}));
    EXPECT_EQ(Picked(L"", OLD_MANY), Paths({L""}));
}

TEST(PickedPaths, ABlankAtTheEndOfTheOldFormGivesNoPath)
{
    EXPECT_EQ(Picked(L"C:\\P a b ", OLD_MANY), Paths({L"C:\\P\\a", L"C:\\P\\b"}));
}

TEST(PickedPaths, NamesOfAllScriptsComeAsTheyAre)
{
    const CString names[] = {L"\x00E4\x00DF", L"\x4E2D\x6587", L"\x05E9\x05DC", L"\xD83D\xDE00", L"e\x0301."};
    CString buffer = L"C:\\\x041F";
    Paths expected;
    for (const CString& name : names) {
        buffer += L"|" + name;
        expected.push_back(L"C:\\\x041F\\" + name);
    }
    EXPECT_EQ(Picked(buffer, EXPLORER_MANY), expected);
}

TEST(PickedPaths, AResultOf260000CharactersIsWalkedToItsEnd)
{
    constexpr int CAPACITY = 260000;
    const CString folder = L"C:\\Plans";
    CString text = folder;
    Paths expected;
    for (int number = 100000; text.GetLength() + 7 <= CAPACITY - 2; ++number) {
        const CString name = NumberText(number);
        text += L"|" + name;
        expected.push_back(folder + L"\\" + name);
    }
    const std::vector<wchar_t> buffer = BufferOf(text);
    EXPECT_GT(buffer.size(), static_cast<std::size_t>(CAPACITY - 7));
    const Paths found = Walk(buffer, EXPLORER_MANY);
    EXPECT_EQ(found.size(), expected.size());
    EXPECT_TRUE(found == expected);
}
