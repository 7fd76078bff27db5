#include "tests/support/text.h"
#include "workstation/shortcut_change_rules.h"
#include "workstation/shortcut_row_rules.h"
#include "workstation/shortcut_switch_rules.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

using Rows = std::vector<CustomShortcutRow>;

const CustomShortcutRow PROMPTS = {L"Type a name", L"Type switches"};

struct Collected
{
    ShortcutVerdict verdict;
    Rows rows;
};

Collected Collect(const Rows& cells, FaultyRows faultyRows = FaultyRows::Refuse)
{
    Collected collected;
    collected.rows = {{L"left over", L"/b"}};
    collected.verdict = CollectShortcuts(cells, PROMPTS, faultyRows, collected.rows);
    return collected;
}

void ExpectRefused(const Rows& cells, ShortcutFault fault, const CString& culprit)
{
    const ShortcutVerdict verdict = Collect(cells).verdict;
    EXPECT_TRUE(verdict.fault == fault) << static_cast<int>(verdict.fault);
    EXPECT_EQ(verdict.culprit, culprit);
}

ShortcutColumns Template()
{
    ShortcutColumns row;
    row.Shortcut = L"Template";
    row.Directory_ = L"MENU";
    row.Name = L"Custom";
    row.Component_ = L"Main";
    row.Target = L"[INSTALLDIR]zolt.exe";
    row.Arguments = L"/nologo";
    row.WkDir = L"WORK";
    return row;
}

// Action, key, name and command of each, one after the other.
CString Words(const std::vector<ShortcutChange>& changes)
{
    CString words;
    for (const ShortcutChange& change : changes) {
        EXPECT_EQ(change.row.Directory_, CString(L"MENU"));
        EXPECT_EQ(change.row.Target, CString(L"[INSTALLDIR]zolt.exe"));
        EXPECT_EQ(change.row.WkDir, CString(L"WORK"));
        words += NumberText(static_cast<int>(change.action)) + L" " + change.row.Shortcut + L" " +
                 change.row.Name + L" " + change.row.Arguments + L"\n";
    }
    return words;
}

struct Decided
{
    CString comingAndGoing;
    CString list;
    CString changing;
    int next = 0;
};

Decided Decide(const std::vector<ShortcutStrings>& existing, const Rows& wanted, const CString& list,
               int next)
{
    const ShortcutChanges changes = DecideShortcutChanges(existing, wanted, Template(), list, next);
    return {Words(changes.comingAndGoing), changes.list, Words(changes.changing), next};
}

} // namespace

// ---- the command line

TEST(ShortcutSwitchTest, EachSwitchIsKnownInEitherCase)
{
    for (const wchar_t* name : {L"b", L"t", L"c", L"v", L"ld", L"s", L"r", L"nologo", L"p", L"nossm", L"set",
                                L"w", L"pl", L"nohardware"}) {
        CString upper(name);
        upper.MakeUpper();
        EXPECT_FALSE(FindBadSwitch(CString(L"/") + name)) << Utf8(name);
        EXPECT_FALSE(FindBadSwitch(CString(L"/") + upper + L" value")) << Utf8(upper);
        EXPECT_FALSE(FindBadSwitch(name)) << Utf8(name) << " without a slash";
    }
}

TEST(ShortcutSwitchTest, GoodCommandLinesPass)
{
    for (const wchar_t* command :
         {L"/nologo /p MyProfile", L"/NOLOGO", L"nologo", L"/b", L" / b ", L"//b", L"/b/", L"b\tvalue",
          L"/p \"a b\"", L"/p\tx /set\nname", L"p c:\\folder", L"", L" ", L"/", L" / / ", L"/p O'Brien"}) {
        EXPECT_FALSE(FindBadSwitch(command)) << Utf8(command);
    }
}

TEST(ShortcutSwitchTest, TheFirstBadPieceIsNamedWithoutItsBlanks)
{
    struct Row
    {
        const wchar_t* command;
        const wchar_t* piece;
    };
    const Row rows[] = {{L"/x", L"x"},
                        {L"c:\\tool.exe /p name", L"c:\\tool.exe"},
                        {L"/b / bb 1 /x", L"bb 1"},
                        {L"/p c:/folder", L"folder"}, // the value is cut at its slash
                        {L"-nologo", L"-nologo"},
                        {L"/p=x", L"p=x"},
                        {L"/nologo,", L"nologo,"},
                        {L"/p\rvalue", L"p\rvalue"}, // no end of a name
                        {L"/p\x00A0value", L"p\x00A0value"}};
    for (const Row& row : rows) {
        EXPECT_EQ(FindBadSwitch(row.command).value_or(L"(none)"), CString(row.piece)) << Utf8(row.command);
    }
}

// ---- the rows of the grid

TEST(ShortcutRowsTest, BlankRowsAreSkippedAndTheOthersCloseUp)
{
    const Collected collected = Collect({{L"A", L"/b"}, {L"", L""}, {L"C", L"/c"}, {L"", L""}, {L"", L""}});
    EXPECT_TRUE(collected.verdict.fault == ShortcutFault::None);
    EXPECT_EQ(collected.rows, (Rows{{L"A", L"/b"}, {L"C", L"/c"}}));
}

TEST(ShortcutRowsTest, PromptsAreBlankInAnyCaseAndInAnyRow)
{
    const Collected collected =
        Collect({{L"Type a name", L"Type switches"}, {L"TYPE A NAME", L""}, {L"", L"type SWITCHES"}});
    EXPECT_TRUE(collected.verdict.fault == ShortcutFault::None);
    EXPECT_TRUE(collected.rows.empty());
}

TEST(ShortcutRowsTest, APromptInTheOtherColumnIsAText)
{
    ExpectRefused({{L"Type switches", L""}}, ShortcutFault::Incomplete, L"");
    ExpectRefused({{L"A", L"Type a name"}}, ShortcutFault::BadSwitch, L"Type a name");
}

TEST(ShortcutRowsTest, HalfARowIsRefusedWithoutACulprit)
{
    ExpectRefused({{L"A", L""}}, ShortcutFault::Incomplete, L"");
    ExpectRefused({{L"", L"/b"}}, ShortcutFault::Incomplete, L"");
    ExpectRefused({{L"A", L"type switches"}}, ShortcutFault::Incomplete, L"");
    ExpectRefused({{L"type a name", L"/b"}}, ShortcutFault::Incomplete, L"");
}

TEST(ShortcutRowsTest, EachForbiddenCharacterOfANameIsRefusedButTheBackslash)
{
    for (const wchar_t character : {L'/', L':', L'*', L'?', L'"', L'<', L'>', L'|'}) {
        const CString name = CString(L"a") + character;
        ExpectRefused({{name, L"/b"}}, ShortcutFault::BadName, name);
    }
    EXPECT_EQ(Collect({{L"a\\b", L"/b"}}).rows, (Rows{{L"a\\b", L"/b"}}));
    EXPECT_EQ(Collect({{L"O'Brien", L"/b"}}).rows, (Rows{{L"O'Brien", L"/b"}}));
}

TEST(ShortcutRowsTest, ANameOfARowAboveIsRefusedInAnyCase)
{
    ExpectRefused({{L"Name", L"/b"}, {L"nAME", L"/c"}}, ShortcutFault::DuplicateName, L"nAME");
}

TEST(ShortcutRowsTest, ABadSwitchIsRefusedByItsPiece)
{
    ExpectRefused({{L"A", L"/b /bad 1"}}, ShortcutFault::BadSwitch, L"bad 1");
}

TEST(ShortcutRowsTest, TheNameIsJudgedBeforeTheSwitches)
{
    ExpectRefused({{L"A", L"/b"}, {L"a", L"/x"}}, ShortcutFault::DuplicateName, L"a");
    ExpectRefused({{L"A?", L"/x"}}, ShortcutFault::BadName, L"A?");
}

TEST(ShortcutRowsTest, FaultyRowsCanBeDropped)
{
    const Collected collected =
        Collect({{L"A", L""}, {L"B?", L"/b"}, {L"C", L"/x"}, {L"D", L"/b"}, {L"d", L"/c"}, {L"C", L"/c"}},
                FaultyRows::Drop);
    EXPECT_TRUE(collected.verdict.fault == ShortcutFault::None);
    EXPECT_EQ(collected.rows, (Rows{{L"D", L"/b"}, {L"C", L"/c"}})) << "a dropped row keeps no name";
}

// ---- what becomes of them in the database

TEST(ShortcutChangesTest, TheFirstShortcutOfAFreshProductHasTheKeyWithOne)
{
    const Decided decided = Decide({}, {{L"A", L"/b"}}, L"", 1);
    EXPECT_EQ(decided.comingAndGoing, CString(L"0 CUSTOM_SHORTCUT_1 A /b\n"));
    EXPECT_EQ(decided.list, CString(L"2;CUSTOM_SHORTCUT_1;"));
    EXPECT_EQ(decided.changing, CString());
    EXPECT_EQ(decided.next, 2);
}

TEST(ShortcutChangesTest, SeveralNewOnesRaiseTheNumberInFrontOfTheList)
{
    const Decided decided = Decide({}, {{L"A", L"/b"}, {L"B", L"/c"}}, L"", 1);
    EXPECT_EQ(decided.comingAndGoing, CString(L"0 CUSTOM_SHORTCUT_1 A /b\n0 CUSTOM_SHORTCUT_2 B /c\n"));
    EXPECT_EQ(decided.list, CString(L"3;CUSTOM_SHORTCUT_1;CUSTOM_SHORTCUT_2;"));
}

TEST(ShortcutChangesTest, ANumberThatIsNotTheCountOfKeysIsGoneOnFrom)
{
    const Decided decided = Decide({{L"CUSTOM_SHORTCUT_8", L"A", L"/b"}}, {{L"A", L"/b"}, {L"B", L"/c"}},
                                   L"41;CUSTOM_SHORTCUT_8;", 41);
    EXPECT_EQ(decided.comingAndGoing, CString(L"0 CUSTOM_SHORTCUT_41 B /c\n"));
    EXPECT_EQ(decided.list, CString(L"42;CUSTOM_SHORTCUT_8;CUSTOM_SHORTCUT_41;"));
    EXPECT_EQ(decided.next, 42);
}

TEST(ShortcutChangesTest, AListThatBeginsOtherwiseKeepsItsBeginningBehindTheNewNumber)
{
    EXPECT_EQ(Decide({}, {{L"A", L"/b"}}, L"0;", 1).list, CString(L"2;0;CUSTOM_SHORTCUT_1;"));
    EXPECT_EQ(Decide({}, {{L"A", L"/b"}}, L"07;", 7).list, CString(L"8;07;CUSTOM_SHORTCUT_7;"));
    EXPECT_EQ(Decide({}, {{L"A", L"/b"}}, L"11;", 1).list, CString(L"2;11;CUSTOM_SHORTCUT_1;"))
        << "the semicolon belongs to the number";
}

TEST(ShortcutChangesTest, ChangedOnesAreUpdatedUnderTheirKeys)
{
    const std::vector<ShortcutStrings> existing = {
        {L"K1", L"A", L"/b"}, {L"K2", L"B", L"/c"}, {L"K3", L"C", L"/p x"}, {L"K4", L"D", L"/b"}};
    const Decided decided = Decide(existing, {{L"a", L"/b"}, {L"B", L"/c"}, {L"C", L"/p X"}, {L"D", L"/b"}},
                                   L"5;K1;K2;K3;K4;", 5);
    EXPECT_EQ(decided.comingAndGoing, CString());
    EXPECT_EQ(decided.changing, CString(L"1 K1 a /b\n1 K3 C /p X\n"));
    EXPECT_EQ(decided.list, CString(L"5;K1;K2;K3;K4;"));
    EXPECT_EQ(decided.next, 5);
}

TEST(ShortcutChangesTest, WithoutTheFirstOfThreeTheOthersMoveUpAndTheThirdKeyGoes)
{
    const std::vector<ShortcutStrings> existing = {
        {L"K1", L"A", L"/b"}, {L"K11", L"B", L"/c"}, {L"K3", L"C", L"/v"}};
    const Decided decided = Decide(existing, {{L"B", L"/c"}, {L"C", L"/v"}}, L"4;K1;K11;K3;", 4);
    EXPECT_EQ(decided.comingAndGoing, CString(L"2 K3 C /v\n"));
    EXPECT_EQ(decided.changing, CString(L"1 K1 B /c\n1 K11 C /v\n"));
    EXPECT_EQ(decided.list, CString(L"4;K1;K11;"));
}

TEST(ShortcutChangesTest, AllCanGoAndTheNumberStays)
{
    const std::vector<ShortcutStrings> existing = {{L"K1", L"A", L"/b"}, {L"K2", L"B", L"/c"}};
    const Decided decided = Decide(existing, {}, L"3;K1;K2;K1;", 3);
    EXPECT_EQ(decided.comingAndGoing, CString(L"2 K1 A /b\n2 K2 B /c\n"));
    EXPECT_EQ(decided.list, CString(L"3;")) << "a doubled key goes wherever it stands";
    EXPECT_EQ(decided.next, 3);
}

TEST(ShortcutChangesTest, BehindTheLargestNumberTheSmallestFollows)
{
    const Decided decided = Decide({}, {{L"A", L"/b"}}, L"2147483647;", INT_MAX);
    EXPECT_EQ(decided.comingAndGoing, CString(L"0 CUSTOM_SHORTCUT_2147483647 A /b\n"));
    EXPECT_EQ(decided.list, CString(L"-2147483648;CUSTOM_SHORTCUT_2147483647;"));
}
