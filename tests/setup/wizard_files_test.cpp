// The page of additional files in whole runs: its answers, what it refuses, and what is recorded of it.
#include "automation/label.h"
#include "tests/setup/wizard_fixture.h"

#include <commctrl.h>

namespace {

constexpr wchar_t NAME[] = L"Office";

class WizardFiles : public Wizard
{
protected:
    struct Line
    {
        const wchar_t* word;
        CString value;
    };
    using Lines = std::vector<Line>;

    WizardFiles()
    {
        for (const wchar_t* name : {L"One", L"Two", L"Tree", L"Tree\\Inner", L"Tree\\Empty"}) {
            EXPECT_FALSE(folder.AddFolder(name).IsEmpty());
        }
        one = AddSource(L"One\\plan.txt");
        two = AddSource(L"Two\\plan.txt");
        for (const wchar_t* name : {L"Tree\\top.txt", L"Tree\\Inner\\a.txt", L"Tree\\Inner\\b.txt"}) {
            AddSource(name);
        }
        tree = folder / L"Tree";
    }

    CString AddSource(const wchar_t* name) const { return folder.AddFile(name, "bytes"); }

    static CString Pair(const CString& first, const CString& second)
    {
        return L"\"" + first + L"\", \"" + second + L"\"";
    }

    // Creates, enters the lines and cancels on the page.
    RunOutcome Enter(const Lines& lines)
    {
        std::vector<Answer> given = {{L"begin", L"location", location},
                                     {L"begin", L"name", NAME},
                                     {L"begin", L"on_question.local_location", L"yes"}};
        for (const Line& added : lines) {
            given.push_back({L"files", added.word, added.value});
        }
        given.push_back({L"files", L"leave", L"cancel"});
        return RunWith(given);
    }
    // The record of the page, a line each, without its title.
    CString EnterWell(const Lines& lines)
    {
        const RunOutcome outcome = Enter(lines);
        EXPECT_EQ(outcome.exitCode, static_cast<unsigned int>(SETUP_CANCELLED)) << Utf8(outcome.strCause);
        return Record();
    }
    CString Record() const
    {
        CString text = recordedFiles;
        text.Replace(L"files/Zolt 2027: ", L"");
        text.Replace(L", ", L"\n");
        text.Replace(folder.GetPath(), L"$\\");
        return text;
    }
    void ExpectRefused(const Lines& lines, const CString& cause, unsigned int code = SETUP_ANSWER_REFUSED)
    {
        const RunOutcome outcome = Enter(lines);
        EXPECT_EQ(outcome.exitCode, code);
        EXPECT_GE(outcome.strCause.Find(cause), 0) << Utf8(outcome.strCause) << "\nlacks " << Utf8(cause);
    }
    // The base in its configure dialog, with these answers; ends by canceling.
    CString Modify(const Lines& lines)
    {
        std::vector<Answer> given = {{L"begin", L"mode", L"modify"}, {L"begin", L"base", NAME}};
        for (const Line& added : lines) {
            given.push_back({L"files", added.word, added.value});
        }
        given.push_back({L"files", L"leave", L"cancel"});
        const RunOutcome outcome = RunWith(given);
        EXPECT_EQ(outcome.exitCode, static_cast<unsigned int>(SETUP_CANCELLED)) << Utf8(outcome.strCause);
        return Record();
    }

    CString one;
    CString two;
    CString tree;
};

TEST_F(WizardFiles, TheLinesAreEnteredInTheirOrderAndRecordedAsTheTreeEndsUp)
{
    EXPECT_EQ(
        EnterWell({{L"folder", Pair(L"<root>", L"Company")},
                   {L"folder", Pair(L"Zolt 2027\\Company\\", L"Inner")},
                   {L"file", Pair(L"<ROOT>", one)},
                   {L"file", Pair(L"<root>\\fonts", two)},
                   {L"file", Pair(L"<root>\\Company\\Inner", one)},
                   {L"rename", Pair(L"<root>\\Company\\Inner", L"Plans")},
                   {L"folder", Pair(L"<root>\\Company", L"Inner")},
                   {L"folder_tree", Pair(L"<root>\\Company", tree)},
                   {L"remove", L"<root>\\Company\\Tree\\Inner\\a.txt"},
                   {L"drive", L"d:"},
                   {L"folder", Pair(L"D:", L"Data")},
                   {L"file", Pair(L"D:\\", two)},
                   {L"drive", L"C:"}}),
        L"file=<root>|$\\One\\plan.txt\nfolder=<root>|Company\nfolder=<root>\\Company|Inner\n"
        L"folder=<root>\\Company|Plans\nfile=<root>\\Company\\Plans|$\\One\\plan.txt\n"
        L"folder=<root>\\Company|Tree\nfile=<root>\\Company\\Tree|$\\Tree\\top.txt\n"
        L"folder=<root>\\Company\\Tree|Empty\nfolder=<root>\\Company\\Tree|Inner\n"
        L"file=<root>\\Company\\Tree\\Inner|$\\Tree\\Inner\\b.txt\nfile=<root>\\Fonts|$\\Two\\plan.txt\n"
        L"drive=D:\nfile=D:|$\\Two\\plan.txt\nfolder=D:|Data\ndrive=C:");
}

TEST_F(WizardFiles, WhatIsThereAlreadyCountsAsDone)
{
    const Lines lines = {{L"folder", Pair(L"<root>", L"Fonts")},
                         {L"folder", Pair(L"<root>", L"New folder")},
                         {L"drive", L"D:"},
                         {L"file", Pair(L"<root>\\New folder", one)}};
    Lines twice = lines;
    twice.insert(twice.end(), lines.begin(), lines.end());
    EXPECT_EQ(EnterWell(twice),
              L"folder=<root>|New folder\nfile=<root>\\New folder|$\\One\\plan.txt\ndrive=D:");
}

// More than are picked at once; one of them is asked about.
TEST_F(WizardFiles, FilesOfOneFolderArePickedTogetherAndAllArrive)
{
    Lines lines = {{L"file", Pair(L"<root>", one)}};
    CString expected;
    EXPECT_FALSE(folder.AddFolder(L"Many").IsEmpty());
    for (int number = 100; number < 230; ++number) {
        const CString name = L"file " + NumberText(number) + L".txt";
        lines.push_back({L"file", Pair(L"<root>", AddSource(L"Many\\" + name))});
        expected += L"file=<root>|$\\Many\\" + name + L"\n";
    }
    lines.insert(lines.begin() + 50, {L"file", Pair(L"<root>", AddSource(L"Many\\plan.txt"))});
    lines.push_back({L"on_question.replace", L"yes"});
    EXPECT_EQ(EnterWell(lines), expected + L"file=<root>|$\\Many\\plan.txt\n?replace=yes");
}

TEST_F(WizardFiles, TheQuestionWhetherToReplaceIsAskedOfTheLineThatBringsItUp)
{
    const Lines lines = {{L"file", Pair(L"<root>", one)}, {L"file", Pair(L"<root>", two)}};
    ExpectRefused(lines, L"--set: files.file: \"<root>\", \"" + two + L"\": A question has no answer:",
                  SETUP_UNANSWERED_BOX);
    Lines denied = lines;
    denied.push_back({L"on_question.replace", L"no"});
    ExpectRefused(denied, L"\"<root>\", \"" + two + L"\": The page hasn't accepted it.");
}

TEST_F(WizardFiles, AFolderOfTheDiskAsksAboutItsFilesAndNoKeepsThem)
{
    const CString other = AddSource(L"Two\\top.txt");
    const Lines lines = {{L"folder", Pair(L"<root>", L"Tree")},
                         {L"file", Pair(L"<root>\\Tree", other)},
                         {L"folder_tree", Pair(L"<root>", tree)},
                         {L"on_question.replace", L"no"}};
    EXPECT_EQ(EnterWell(lines), L"folder=<root>|Tree\nfile=<root>\\Tree|$\\Two\\top.txt\n"
                                L"folder=<root>\\Tree|Empty\nfolder=<root>\\Tree|Inner\n"
                                L"file=<root>\\Tree\\Inner|$\\Tree\\Inner\\a.txt\n"
                                L"file=<root>\\Tree\\Inner|$\\Tree\\Inner\\b.txt\n?replace=no");
}

TEST_F(WizardFiles, WhatAPersonCouldNotAddIsRefusedWithItsReason)
{
    ExpectRefused({{L"folder", Pair(L"<root>\\Nowhere", L"x")}},
                  L"files.folder: \"<root>\\Nowhere\", \"x\": The page has no \"<root>\\Nowhere\". ");
    ExpectRefused({{L"folder", Pair(L"", L"x")}}, L"The page has no \"\". ");
    ExpectRefused({{L"file", Pair(L"<root>", folder / L"missing.txt")}},
                  L"missing.txt\": The file doesn't exist.");
    ExpectRefused({{L"file", Pair(L"<root>", tree)}}, L": This is a folder. Write folder_tree to add one");
    ExpectRefused({{L"file", Pair(L"E:", one)}}, L"The page has no \"E:\". ");
    ExpectRefused({{L"folder_tree", Pair(L"<root>", one)}}, L": There is no such folder.");
    ExpectRefused({{L"file", Pair(L"<root>", one)}, {L"file", Pair(L"<root>\\plan.txt", two)}},
                  L": \"<root>\\plan.txt\" is a file.");
    ExpectRefused({{L"file", Pair(L"<root>", one)}, {L"folder", Pair(L"<root>", L"PLAN.txt")}},
                  L": A file has this name.");
}

TEST_F(WizardFiles, WhatAPersonCouldNotNameOrRemoveIsRefusedWithItsReason)
{
    ExpectRefused({{L"folder", Pair(L"<root>", L"a?b")}}, L": This is not a valid name for a folder.");
    ExpectRefused({{L"drive", L"A:"}}, L": This is not a drive that can be added.");
    ExpectRefused({{L"drive", L"C:"}, {L"drive", L"D:"}, {L"drive", L"E:"}, {L"rename", Pair(L"E:", L"d:")}},
                  L"Something else here already has this name.");
    ExpectRefused({{L"rename", Pair(L"<root>\\Fonts", L"x")}}, L": \"<root>\\Fonts\" came with the product.");
    ExpectRefused({{L"file", Pair(L"<root>", one)}, {L"rename", Pair(L"<root>\\plan.txt", L"x.txt")}},
                  L": A file keeps the name of its source. Rename folders and drives.");
    ExpectRefused({{L"remove", L"<root>"}}, L": \"<root>\" came with the product.");
    ExpectRefused({{L"remove", L"<root>\\x"}}, L": The page has no \"<root>\\x\". ");
}

// In the configure dialog: a source that has gone since is not needed for what stays.
TEST_F(WizardFiles, WhatTheBaseBroughtIsNotAddedTwiceAndClearingKeepsWhatTheLinesAskFor)
{
    BuildBase(NAME, {{L"files", L"folder", Pair(L"<root>", L"Company")},
                     {L"files", L"file", Pair(L"<root>\\Company", one)},
                     {L"files", L"file", Pair(L"<root>\\Fonts", one)},
                     {L"files", L"drive", L"D:"}});
    const CString before = Record();
    ASSERT_TRUE(DeleteFileW(one));
    const Lines same = {{L"folder", Pair(L"<root>", L"Company")},
                        {L"file", Pair(L"<root>\\Company", one)},
                        {L"file", Pair(L"<root>\\Fonts", one)},
                        {L"drive", L"D:"}};
    const CString proposed = L"(folder=<root>|Company)\n(file=<root>\\Company|$\\One\\plan.txt)\n"
                             L"(file=<root>\\Fonts|$\\One\\plan.txt)\n(drive=D:)";
    CString plain = proposed;
    plain.Replace(L"(", L"");
    plain.Replace(L")", L"");
    EXPECT_EQ(before, plain);
    EXPECT_EQ(Modify({}), proposed);
    EXPECT_EQ(Modify(same), proposed);
    EXPECT_EQ(Modify({{L"remove", L"<root>\\Fonts\\plan.txt"}}),
              L"clear=yes\nfolder=<root>|Company\nfile=<root>\\Company|$\\One\\plan.txt\ndrive=D:");
    EXPECT_EQ(Modify({{L"clear", L"yes"},
                      {L"folder", Pair(L"<root>", L"Company")},
                      {L"file", Pair(L"<root>\\Company", one)},
                      {L"file", Pair(L"<root>\\Fonts", two)}}),
              L"clear=yes\nfolder=<root>|Company\nfile=<root>\\Company|$\\One\\plan.txt\n"
              L"file=<root>\\Fonts|$\\Two\\plan.txt");
    EXPECT_EQ(Modify({{L"clear", L"yes"}}), L"clear=yes");
}

TEST_F(WizardFiles, WhatAPersonAddsIsRecordedAsTheAnswersThatAddIt)
{
    Begin(NAME);
    Press(IDC_NETWORK_LOG, IDC_NEXT);
    Press(IDC_SHORTCUTS, IDC_NEXT);
    Press(IDC_PATH_TREE, IDC_NEXT);
    OnPage(IDC_FILES_TREE, [](HWND page) {
        const HWND view = GetDlgItem(page, IDC_FILES_TREE);
        SendMessageW(view, TVM_SELECTITEM, TVGN_CARET, SendMessageW(view, TVM_GETNEXTITEM, TVGN_ROOT, 0));
        return CControl(page, IDC_FILES_ADD_FOLDER).Click();
    });
    OnPage(IDC_FILES_TREE, [](HWND page) {
        const HWND view = GetDlgItem(page, IDC_FILES_TREE);
        return OpenLabelEdit(view, TVM_GETEDITCONTROL) ? TypeLabel(view, TVM_GETEDITCONTROL, L"", L"By hand")
                                                       : StepOutcome::NotYet(L"no label is under edit");
    });
    Cancel(IDC_FILES_TREE);
    EXPECT_EQ(Run().exitCode, static_cast<unsigned int>(SETUP_CANCELLED));
    EXPECT_EQ(Record(), CString(L"folder=<root>|By hand"));
    EXPECT_EQ(EnterWell({{L"folder", Pair(L"<root>", L"By hand")}}), CString(L"folder=<root>|By hand"));
}

} // namespace
