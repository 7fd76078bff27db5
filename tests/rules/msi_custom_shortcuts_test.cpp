#include "msi/custom_shortcuts.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

using Texts = std::vector<CString>;

const wchar_t* const WHOLE =
    L"Key;DIR;SHORT|Long|er;Part;[INSTALLDIR]zolt.exe;/b;Starts it;7;Icon;-2;3;WORKDIR";

} // namespace

// ---- the template

TEST(ShortcutTemplateTest, EachFieldGoesToItsColumn)
{
    const ShortcutColumns row = ReadShortcutTemplate(WHOLE);
    EXPECT_EQ(row.Shortcut, CString(L"Key"));
    EXPECT_EQ(row.Directory_, CString(L"DIR"));
    EXPECT_EQ(row.Name, CString(L"Long|er")) << "what stands behind the first bar";
    EXPECT_EQ(row.Component_, CString(L"Part"));
    EXPECT_EQ(row.Target, CString(L"[INSTALLDIR]zolt.exe"));
    EXPECT_EQ(row.Arguments, CString(L"/b"));
    EXPECT_EQ(row.Description, CString(L"Starts it"));
    EXPECT_EQ(row.Hotkey, 7);
    EXPECT_EQ(row.Icon_, CString(L"Icon"));
    EXPECT_EQ(row.IconIndex, -2);
    EXPECT_EQ(row.ShowCmd, 3);
    EXPECT_EQ(row.WkDir, CString(L"WORKDIR"));
}

TEST(ShortcutTemplateTest, EmptyNumbersAreNullAndBlanksAreKept)
{
    const ShortcutColumns row = ReadShortcutTemplate(L" k ; ;Plain;;;;;;;;;w ");
    EXPECT_EQ(row.Shortcut, CString(L" k "));
    EXPECT_EQ(row.Directory_, CString(L" "));
    EXPECT_EQ(row.Name, CString(L"Plain"));
    EXPECT_EQ(row.Hotkey, INT_MIN);
    EXPECT_EQ(row.IconIndex, INT_MIN);
    EXPECT_EQ(row.ShowCmd, INT_MIN);
    EXPECT_EQ(row.WkDir, CString(L"w "));
}

TEST(ShortcutTemplateTest, AFieldTooManyIsLeftOut)
{
    EXPECT_EQ(ReadShortcutTemplate(CString(WHOLE) + L";more").WkDir, CString(L"WORKDIR"));
}

TEST(ShortcutTemplateTest, TenFieldsMakeNoRow)
{
    for (const wchar_t* text : {L"", L"a", L"a;b;c;d;e;f;g;1;i;2", L"a;b;c;d;e;f;g;1;i;2;"}) {
        const ShortcutColumns row = ReadShortcutTemplate(text);
        EXPECT_EQ(row.Shortcut, CString()) << Utf8(text);
        EXPECT_EQ(row.Hotkey, 0) << Utf8(text);
    }
}

TEST(ShortcutTemplateTest, AMissingLastFieldIsEmpty)
{
    for (const wchar_t* text : {L"a;b;c;d;e;f;g;1;i;2;3", L"a;b;c;d;e;f;g;1;i;2;3;"}) {
        const ShortcutColumns row = ReadShortcutTemplate(text);
        EXPECT_EQ(row.Shortcut, CString(L"a")) << Utf8(text);
        EXPECT_EQ(row.ShowCmd, 3) << Utf8(text);
        EXPECT_EQ(row.WkDir, CString()) << Utf8(text);
    }
}

TEST(ShortcutTemplateTest, FieldsAreCountedWithAnEmptyOneAtTheEnd)
{
    EXPECT_EQ(CountTemplateFields(WHOLE), SHORTCUT_TEMPLATE_FIELDS);
    EXPECT_EQ(CountTemplateFields(L"a;b;c;d;e;f;g;1;i;2;3;"), SHORTCUT_TEMPLATE_FIELDS);
    EXPECT_EQ(CountTemplateFields(L"a;b;c;d;e;f;g;1;i;2;3"), 11);
    EXPECT_EQ(CountTemplateFields(L";"), 2);
    EXPECT_EQ(CountTemplateFields(L""), 1);
}

// ---- the list

TEST(ShortcutListTest, TheNextNumberStandsInFrontOfTheFirstSemicolon)
{
    struct Row
    {
        const wchar_t* list;
        int number;
    };
    const Row rows[] = {{L"", 1},
                        {L";", 1},
                        {L"7", 1}, // without a semicolon
                        {L"0;", 1},
                        {L"7;", 7},
                        {L"007;CUSTOM_SHORTCUT_6;", 7},
                        {L" 7;", 7},
                        {L"7x;", 7},
                        {L"x7;", 1},
                        {L"+7;", 7},
                        {L"-3;", -3},
                        {L"- 3;", 1},
                        {L"2147483647;", INT_MAX},
                        {L"2147483648;", INT_MAX},
                        {L"-2147483649;", INT_MIN},
                        {L"99999999999999999999999;", INT_MAX},
                        {L"CUSTOM_SHORTCUT_1;", 1},
                        {L"\xFF17;", 1}}; // a digit of another script
    for (const Row& row : rows) {
        EXPECT_EQ(ReadNextShortcutNumber(row.list), row.number) << Utf8(row.list);
    }
}

TEST(ShortcutListTest, TheKeysStandBehindTheNumberEachWithASemicolon)
{
    EXPECT_EQ(ReadShortcutKeys(L"3;a;b;"), (Texts{L"a", L"b"}));
    EXPECT_EQ(ReadShortcutKeys(L"3;b;a;b;B;"), (Texts{L"b", L"a", L"B"}))
        << "each once, in the order of the list";
    EXPECT_EQ(ReadShortcutKeys(L"3;a;b"), Texts{L"a"}) << "the last lacks its semicolon";
    EXPECT_EQ(ReadShortcutKeys(L"3;;a;;"), Texts{L"a"});
    EXPECT_EQ(ReadShortcutKeys(L"2;3;a;"), (Texts{L"3", L"a"})) << "only the first piece is the number";
    for (const wchar_t* list : {L"", L"3", L"3;", L";"}) {
        EXPECT_TRUE(ReadShortcutKeys(list).empty()) << Utf8(list);
    }
}
