// What two deployments differ in: the rules of each part, and the report that is read back as it was written.
#include "builder/compare_rules.h"
#include "builder/compared_additions.h"
#include "builder/shown_text.h"
#include "tests/rules/snapshot_with_additions.h"
#include "tests/support/text.h"

#include <algorithm>

namespace {

// Kind, product, item, side and values in one text.
std::string Shown(const DeploymentDifference& difference)
{
    const CString text = ComposeComparisonText({L"", L"", {difference}});
    const int begin = text.Find(L"\r\n\r\n") + 4;
    return Utf8(text.Mid(begin, text.GetLength() - begin - 2));
}

std::vector<std::string> Shown(Differences differences)
{
    SortDifferences(differences);
    std::vector<std::string> lines;
    for (const DeploymentDifference& difference : differences) {
        lines.push_back(Shown(difference));
    }
    return lines;
}

// As they would be with the two deployments named the other way round.
Differences Swapped(Differences differences)
{
    for (DeploymentDifference& difference : differences) {
        if (difference.side != DifferenceSide::Both) {
            difference.side = difference.side == DifferenceSide::OnlyFirst ? DifferenceSide::OnlySecond
                                                                           : DifferenceSide::OnlyFirst;
        }
        for (DifferenceValue& value : difference.values) {
            std::swap(value.strFirst, value.strSecond);
        }
    }
    SortDifferences(differences);
    return differences;
}

// Reads a line of the report by its grammar. Characters that stand as codes come back.
class CLineReader
{
public:
    explicit CLineReader(const CString& line) : m_line(line) {}

    DeploymentDifference Read()
    {
        DeploymentDifference difference;
        difference.kind = ReadKind();
        if (Skip(L" of ")) {
            difference.strProduct = Quoted();
        }
        while (Skip(L" ")) {
            difference.item.push_back(Quoted());
        }
        Expect(L": ");
        if (Skip(L"only in ")) {
            const bool first = Skip(L"A");
            if (!first) {
                Expect(L"B");
            }
            difference.side = first ? DifferenceSide::OnlyFirst : DifferenceSide::OnlySecond;
            while (Skip(L", ")) {
                DifferenceValue value;
                CString text = Quoted();
                if (Skip(L" = ")) {
                    value.strName = text;
                    text = Quoted();
                }
                (first ? value.strFirst : value.strSecond) = text;
                difference.values.push_back(value);
            }
        } else {
            const CString first = Quoted();
            Expect(L" -> ");
            difference.values.push_back({CString(), first, Quoted()});
        }
        EXPECT_EQ(m_at, m_line.GetLength()) << "left over in " << Utf8(m_line);
        return difference;
    }

private:
    DifferenceKind ReadKind()
    {
        const wchar_t* const words[] = {L"setting", L"product", L"answer", L"command",
                                        L"row",     L"added",   L"patch",  L"file"};
        for (int index = 0; index < 8; ++index) {
            if (Skip(words[index])) {
                return static_cast<DifferenceKind>(index);
            }
        }
        ADD_FAILURE() << "no kind in " << Utf8(m_line);
        return DifferenceKind::File;
    }
    bool Skip(const wchar_t* text)
    {
        const int length = TextLength(text);
        if (!(m_line.Mid(m_at, length) == text)) {
            return false;
        }
        m_at += length;
        return true;
    }
    void Expect(const wchar_t* text)
    {
        EXPECT_TRUE(Skip(text)) << Utf8(text) << " is missing at " << m_at << " in " << Utf8(m_line);
    }
    CString Quoted()
    {
        Expect(L"\"");
        CString text;
        while (m_at < m_line.GetLength()) {
            if (m_line[m_at] == L'"' && m_line[m_at + 1] != L'"') {
                break;
            }
            m_at += m_line[m_at] == L'"' ? 1 : 0;
            text += m_line[m_at++];
        }
        Expect(L"\"");
        return NameFromShown(text);
    }

    const CString m_line;
    int m_at = 0;
};

Differences ReadReport(const CString& text)
{
    Differences differences;
    int begin = text.Find(L"\r\n\r\n");
    for (begin = begin < 0 ? text.GetLength() : begin + 4; begin < text.GetLength();) {
        const int end = text.Find(L"\r\n", begin);
        differences.push_back(CLineReader(text.Mid(begin, end - begin)).Read());
        begin = end + 2;
    }
    return differences;
}

const ComparedPart LIST = {DifferenceKind::Answer, L"", {L"files", L"file"}};

std::vector<std::string> ListDifferences(const std::vector<CString>& first,
                                         const std::vector<CString>& second)
{
    Differences differences;
    CompareLists(LIST, first, second, differences);
    Differences other;
    CompareLists(LIST, second, first, other);
    EXPECT_EQ(Shown(differences), Shown(Swapped(other))) << "the other way round it is no mirror";
    return Shown(differences);
}

CommandScript Script(const std::string& text)
{
    return ReadCommandScript(text.data(), text.size());
}

std::vector<std::string> ScriptDifferences(const std::string& first, const std::string& second)
{
    Differences differences;
    CompareScripts(L"Install.cmd", Script(first), Script(second), differences);
    return Shown(differences);
}

using Lines = std::vector<std::string>;

// ---- parts -----------------------------------------------------------------------------------------------------------

TEST(BuildComparison, ValuesDifferByName)
{
    Differences differences;
    CompareValues({DifferenceKind::Setting, L"Zolt", {}},
                  {{L"a", L"1"}, {L"b", L"2"}, {L"c", L""}, {L"same", L"x"}},
                  {{L"b", L"3"}, {L"c", L"now"}, {L"d", L""}, {L"same", L"x"}}, differences);
    EXPECT_EQ(Shown(differences), (Lines{
                                      "setting of \"Zolt\" \"a\": only in A, \"1\"",
                                      "setting of \"Zolt\" \"b\": \"2\" -> \"3\"",
                                      "setting of \"Zolt\" \"c\": \"\" -> \"now\"",
                                      "setting of \"Zolt\" \"d\": only in B, \"\"",
                                  }));
}

TEST(BuildComparison, AListDiffersByTheLinesThatTheOtherOneLacks)
{
    EXPECT_EQ(ListDifferences({L"a", L"b"}, {L"a", L"b"}), Lines{});
    EXPECT_EQ(
        ListDifferences({L"a", L"b"}, {L"a", L"c"}),
        (Lines{"answer \"files\" \"file\" \"b\": only in A", "answer \"files\" \"file\" \"c\": only in B"}));
    EXPECT_EQ(
        ListDifferences({L"a", L"a", L"a"}, {L"a"}),
        (Lines{"answer \"files\" \"file\" \"a\": only in A", "answer \"files\" \"file\" \"a\": only in A"}));
    EXPECT_EQ(ListDifferences({}, {L"a"}), (Lines{"answer \"files\" \"file\" \"a\": only in B"}));
}

TEST(BuildComparison, LinesInAnotherOrderAreOneDifference)
{
    EXPECT_EQ(ListDifferences({L"a", L"b", L"c"}, {L"a", L"c", L"b"}),
              (Lines{"answer \"files\" \"file\" \"order\": \"b\" -> \"c\""}));
    EXPECT_EQ(
        ListDifferences({L"x", L"a", L"b"}, {L"a", L"y", L"b"}),
        (Lines{"answer \"files\" \"file\" \"x\": only in A", "answer \"files\" \"file\" \"y\": only in B"}))
        << "those that both have stand in one order";
}

TEST(BuildComparison, SettingsOfAScriptAreToldFromWhatItDoes)
{
    const std::string script = "@echo off\r\nrem a remark\r\n\r\nset \"LOG_FOLDER=\\\\a\\100%%\"\r\n"
                               "set \"KEEP_LOCAL_LOG=1\"\r\nset \"DISPLAY_OPTION=/qn\"\r\nmsiexec /i a\r\n";
    EXPECT_EQ(Script(script).settings.at(L"LOG_FOLDER"), CString(L"\\\\a\\100%"));
    EXPECT_EQ(ScriptDifferences(script, script), Lines{});
    const auto changed = [&](const std::string& was, const std::string& becomes) {
        std::string other = script;
        other.replace(other.find(was), was.size(), becomes);
        return ScriptDifferences(script, other);
    };
    EXPECT_EQ(changed("/qn", "/qb"),
              (Lines{"command \"Install.cmd\" \"DISPLAY_OPTION\": \"/qn\" -> \"/qb\""}));
    EXPECT_EQ(changed("a remark", "another one"), Lines{});
    EXPECT_EQ(changed("msiexec /i a\r\n", ""),
              (Lines{"command \"Install.cmd\" \"msiexec /i a\": only in A"}));
    EXPECT_EQ(changed("msiexec", "set \"LOG_FOLDER=b\"\r\nmsiexec"),
              (Lines{"command \"Install.cmd\" \"set \"\"LOG_FOLDER=b\"\"\": only in B"}))
        << "only the first one is the setting";
}

TEST(BuildComparison, ARowIsOneDifferenceAndAColumnOfAChangedOneToo)
{
    Differences differences;
    AddRowDifferences(
        L"Zolt",
        {{L"Property", RowChange::Added, {L"NEW"}, {{L"Property", L"", L"NEW"}, {L"Value", L"", L"1"}}},
         {L"Property", RowChange::Removed, {L"OLD"}, {{L"Value", L"2", L""}}},
         {L"File", RowChange::Changed, {L"f"}, {{L"FileSize", L"3", L"4"}, {L"Sequence", L"5", L"6"}}}},
        differences);
    EXPECT_EQ(
        Shown(differences),
        (Lines{
            "row of \"Zolt\" \"File\" \"f\" \"FileSize\": \"3\" -> \"4\"",
            "row of \"Zolt\" \"File\" \"f\" \"Sequence\": \"5\" -> \"6\"",
            "row of \"Zolt\" \"Property\" \"NEW\": only in B, \"Property\" = \"NEW\", \"Value\" = \"1\"",
            "row of \"Zolt\" \"Property\" \"OLD\": only in A, \"Value\" = \"2\"",
        }));
}

TEST(BuildComparison, FilesOfOneSizeDifferByTheirHashes)
{
    const ComparedPart part{DifferenceKind::File, L"", {L"a"}};
    Differences differences;
    CompareFiles(part, {5, L"aa"}, {5, L"aa"}, differences);
    EXPECT_EQ(Shown(differences), Lines{});
    CompareFiles(part, {5, L"aa"}, {5, L"bb"}, differences);
    CompareFiles(part, {5, L""}, {6, L""}, differences);
    EXPECT_EQ(Shown(differences), (Lines{"file \"a\": \"SHA-256 aa\" -> \"SHA-256 bb\"",
                                         "file \"a\": \"5 bytes\" -> \"6 bytes\""}));
}

TEST(BuildComparison, OnlyTheNotesInTheDeploymentsOwnFolderAreNotes)
{
    EXPECT_TRUE(IsNoteOfBuild(L"build.LOG"));
    EXPECT_TRUE(IsNoteOfBuild(L"Manifest.txt"));
    EXPECT_FALSE(IsNoteOfBuild(L"Image\\ReadMe.txt"));
    EXPECT_FALSE(IsNoteOfBuild(L"Install.cmd"));
    EXPECT_FALSE(IsNoteOfBuild(L"Image\\Setup.xml"));
}

// ---- the report ------------------------------------------------------------------------------------------------------

const wchar_t* const g_texts[] = {
    L"",
    L"plain",
    L"\" -> \"",
    L"\": only in A, \"",
    L"a\r\nfile \"x\": only in B",
    L"\x202E\x2028\x0007",
    L"\" = \"",
    L"\"",
    L"\"\"",
    L"\\u0041",
    L"\xD800",
    L"C:\\a\\",
};

DeploymentDifference Hostile(std::size_t index, DifferenceSide side)
{
    const auto text = [&](std::size_t offset) {
        return CString(g_texts[(index + offset) % (sizeof g_texts / sizeof g_texts[0])]);
    };
    DeploymentDifference difference{
        static_cast<DifferenceKind>(index % 8), text(0), {text(1), text(2)}, side, {}};
    if (side == DifferenceSide::Both) {
        difference.values.push_back({CString(), text(3), text(4)});
        return difference;
    }
    for (std::size_t column = 0; column < index % 3; ++column) {
        DifferenceValue value{text(5 + column), {}, {}};
        (side == DifferenceSide::OnlyFirst ? value.strFirst : value.strSecond) = text(6 + column);
        difference.values.push_back(value);
    }
    return difference;
}

Differences HostileDifferences()
{
    Differences differences;
    for (std::size_t index = 0; index < 48; ++index) {
        for (const DifferenceSide side :
             {DifferenceSide::Both, DifferenceSide::OnlyFirst, DifferenceSide::OnlySecond}) {
            differences.push_back(Hostile(index, side));
        }
    }
    return differences;
}

TEST(BuildComparison, AnyTextIsReadBackFromTheReport)
{
    const Differences written = HostileDifferences();
    const Differences read = ReadReport(ComposeComparisonText({L"A:\\x\r\n\r\nfile", L"B", written}));
    ASSERT_EQ(read.size(), written.size());
    for (std::size_t index = 0; index < read.size(); ++index) {
        EXPECT_EQ(read[index], written[index]) << index << ": " << Shown(written[index]);
    }
}

TEST(BuildComparison, AReportOfNothingHasNoFacts)
{
    const CString text = ComposeComparisonText({L"D:\\A", L"D:\\B", {}});
    EXPECT_EQ(Utf8(text), "What two deployments differ in\r\nA: D:\\A\r\nB: D:\\B\r\nDifferences: 0\r\n");
    EXPECT_EQ(ReadReport(text), Differences{});
}

// Two deployments of an earlier version passed for equal, although nobody had looked at their answers.
TEST(BuildComparison, ADeploymentWithoutAnswersIsSaidWhateverDiffers)
{
    const struct
    {
        bool first;
        bool second;
        const char* said;
    } rows[] = {{false, true, "answers, as A has no Answers.txt"},
                {true, false, "answers, as B has no Answers.txt"},
                {false, false, "answers, as neither has an Answers.txt"}};
    for (const auto& row : rows) {
        const DeploymentComparison comparison{L"D:\\A", L"D:\\B", {}, row.first, row.second};
        const CString text = ComposeComparisonText(comparison);
        EXPECT_EQ(Utf8(text), "What two deployments differ in\r\nA: D:\\A\r\nB: D:\\B\r\nDifferences: 0\r\n"
                              "Not compared: " +
                                  std::string(row.said) + "\r\n");
        EXPECT_EQ(ReadReport(text), Differences{});
        EXPECT_HOLDS(ComposeComparisonJson(comparison), L"\"notCompared\": [\"answers, as ");
    }
    EXPECT_HOLDS(ComposeComparisonJson({L"", L"", {}}), L"\"notCompared\": [],\r\n");
}

TEST(BuildComparison, TheOrderDependsOnWhatDiffersAlone)
{
    Differences differences = HostileDifferences();
    SortDifferences(differences);
    Differences again = HostileDifferences();
    std::reverse(again.begin(), again.end());
    SortDifferences(again);
    for (std::size_t index = 0; index < again.size(); ++index) {
        EXPECT_EQ(again[index].item, differences[index].item) << index;
        EXPECT_EQ(again[index].kind, differences[index].kind) << index;
    }
}

TEST(BuildComparison, JsonSaysNullForWhatIsNotThere)
{
    const CString json = ComposeComparisonJson(
        {L"D:\\A",
         L"D:\\B",
         {{DifferenceKind::Row,
           L"Zolt",
           {L"Property", L"N"},
           DifferenceSide::OnlySecond,
           {{L"Value", L"", L"\"1"}}},
          {DifferenceKind::Setting, L"", {L"s"}, DifferenceSide::Both, {{L"", L"a", L"b"}}}}});
    EXPECT_HOLDS(json,
                 L"{\"kind\": \"row\", \"product\": \"Zolt\", \"item\": [\"Property\", \"N\"], \"only\": "
                 L"\"B\", \"values\": [{\"name\": \"Value\", \"a\": null, \"b\": \"\\\"1\"}]},\r\n");
    EXPECT_HOLDS(json, L"{\"kind\": \"setting\", \"product\": null, \"item\": [\"s\"], \"only\": null, "
                       L"\"values\": [{\"name\": null, \"a\": \"a\", \"b\": \"b\"}]}\r\n");
}

// ---- additions -------------------------------------------------------------------------------------------------------

class BuildComparisonOfAdditions : public SnapshotWithAdditions
{
protected:
    // A database of its own, with additions under keys from `first` on.
    static DatabaseSnapshot With(int first, const std::vector<CString>& files, const CString& folder = L"")
    {
        class Other : public SnapshotWithAdditions
        {
            void TestBody() override {}
        };
        struct Filled : Other
        {
            using SnapshotWithAdditions::AddFile;
            using SnapshotWithAdditions::AddFolder;
            using SnapshotWithAdditions::database;
            using SnapshotWithAdditions::Row;
        } other;
        int number = first;
        if (!folder.IsEmpty()) {
            other.AddFolder(number++, folder);
        }
        for (const CString& file : files) {
            const int sequence = number;
            other.AddFile(number++, file, sequence,
                          folder.IsEmpty() ? CString(L"INSTALLDIR") : UserKey(first));
        }
        if (!files.empty()) {
            other.Row(L"Media", {L"4", NumberText(number), L"TARN0001.cab"});
        }
        return other.database;
    }

    static std::vector<std::string> Compare(DatabaseSnapshot first, DatabaseSnapshot second)
    {
        const std::vector<NamedAddition> before = NameAdditions(first);
        const std::vector<NamedAddition> after = NameAdditions(second);
        const std::set<CString> common = CommonNames(before, after);
        RenameAdditions(first, CAdditionNames(before, common));
        RenameAdditions(second, CAdditionNames(after, common));
        Differences differences;
        AddRowDifferences(L"", CompareSnapshots(first, second), differences);
        CompareAdditions(L"", before, after, differences);
        return Shown(differences);
    }
};

TEST_F(BuildComparisonOfAdditions, TheSameFilesUnderOtherKeysAreNoDifference)
{
    EXPECT_EQ(Compare(With(1, {L"a.txt", L"b.txt"}, L"Plans"), With(40, {L"a.txt", L"b.txt"}, L"Plans")),
              Lines{});
    EXPECT_EQ(Compare(With(1, {L"a.txt", L"b.txt"}), With(40, {L"b.txt", L"a.txt"})), Lines{})
        << "the order of adding is none of the installer's";
}

TEST_F(BuildComparisonOfAdditions, AFileOfOneAloneIsOneDifferenceWithoutItsRows)
{
    EXPECT_EQ(Compare(With(1, {L"a.txt"}), With(40, {L"a.txt", L"b.txt"})),
              (Lines{"added \"file\" \"<Installation Directory>\\b.txt\": only in B"}));
    EXPECT_EQ(Compare(With(1, {L"a.txt", L"b.txt"}), With(40, {L"b.txt"})),
              (Lines{"added \"file\" \"<Installation Directory>\\a.txt\": only in A"}));
}

TEST_F(BuildComparisonOfAdditions, AFolderOfOneAloneIsNamedWithWhatItHolds)
{
    EXPECT_EQ(Compare(With(1, {}), With(40, {L"b.txt"}, L"Plans")),
              (Lines{"added \"file\" \"<Installation Directory>\\Plans\\b.txt\": only in B",
                     "added \"folder\" \"<Installation Directory>\\Plans\": only in B"}));
}

TEST_F(BuildComparisonOfAdditions, AChangedRowOfAnAdditionIsNamedByItsPath)
{
    DatabaseSnapshot changed = With(40, {L"a.txt"});
    changed[L"File"].rows.at({UserKey(40)})[4] = L"1";
    EXPECT_EQ(
        Compare(With(1, {L"a.txt"}), changed),
        (Lines{
            "row \"File\" \"added file <Installation Directory>\\a.txt\" \"Attributes\": \"0\" -> \"1\""}));
}

TEST_F(BuildComparisonOfAdditions, AProductsOwnRowsStayAsTheyAre)
{
    DatabaseSnapshot changed = With(40, {L"a.txt"});
    changed[L"File"].rows.at({L"Own"})[5] = L"8";
    changed[L"Media"].rows.at({L"3"})[1] = L"8";
    EXPECT_EQ(Compare(With(1, {L"a.txt"}), changed),
              (Lines{"row \"File\" \"Own\" \"Sequence\": \"7\" -> \"8\"",
                     "row \"Media\" \"3\" \"LastSequence\": \"9\" -> \"8\""}));
}

TEST_F(BuildComparisonOfAdditions, KeysInsideATextAreRenamedAndOthersStay)
{
    const std::vector<NamedAddition> additions = {{UserKey(1), L"drive", L"D:", L"added drive D:"}};
    const CAdditionNames names(additions, {L"added drive D:"});
    bool alone = false;
    EXPECT_EQ(names.Rename(UserKey(1) + L"_SUBST", alone), CString(L"added drive D:_SUBST"));
    EXPECT_EQ(names.Rename(L"[" + UserKey(1) + L"][" + UserKey(1) + L"]", alone),
              CString(L"[added drive D:][added drive D:]"));
    EXPECT_EQ(names.Rename(L"{0D7A5C1E-0000-4000-8000-000000000001}", alone), CString(L"added drive D:"));
    EXPECT_EQ(names.Rename(UserKey(2), alone), UserKey(2));
    EXPECT_EQ(names.Rename(L"TARN_", alone), CString(L"TARN_"));
    EXPECT_FALSE(alone);
    EXPECT_EQ(CAdditionNames(additions, {}).Rename(UserKey(1), alone), CString(L"added drive D:"));
    EXPECT_TRUE(alone);
}

} // namespace
