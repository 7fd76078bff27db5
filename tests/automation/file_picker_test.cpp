// The driver of the system's dialog for opening files, against the dialog itself, opened by a button of another dialog.
#include "automation/file_picker.h"

#include "automation/control.h"
#include "automation/folder_picker.h"
#include "automation/message_box.h"
#include "base/handle.h"
#include "base/path_text.h"
#include "base/scope_exit.h"
#include "tests/automation/dialog_fixture.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>
#include <objbase.h>

#include <commdlg.h>

#include <optional>
#include <vector>

namespace {

CString TestFolder()
{
    wchar_t folder[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, folder);
    return JoinFolder(folder, L"file picker");
}

// The dialog's result: one full path; or the folder, then the names, each with its zero.
std::vector<CString> ReadResult(const wchar_t* result)
{
    std::vector<CString> parts;
    for (; *result; result += parts.back().GetLength() + 1)
        parts.push_back(result);
    if (parts.size() < 2)
        return parts;
    std::vector<CString> files;
    for (size_t index = 1; index < parts.size(); ++index)
        files.push_back(JoinFolder(parts.front(), parts[index]));
    return files;
}

class FilePicker : public CDialogFixture
{
protected:
    FilePicker()
    {
        OleInitialize(nullptr);
        CreateDirectoryW(TestFolder(), nullptr);
        onCheck = [this] { OpenPicker(); };
        script.Add(L"press the button", [this] { return CControl(dialog, ID_CHECK).Click(); });
    }
    ~FilePicker() override
    {
        for (const CString& file : m_files)
            DeleteFileW(file);
        RemoveDirectoryW(TestFolder());
        OleUninitialize();
    }

    CString MakeFile(const CString& path)
    {
        const CFileOwner file(
            CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        EXPECT_TRUE(static_cast<bool>(file)) << Utf8(path);
        m_files.push_back(path);
        return path;
    }
    CString MakeTestFile(const CString& name) { return MakeFile(JoinFolder(TestFolder(), name)); }

    void AddEntering(const std::vector<CString>& files)
    {
        script.Add(L"enter the files", [files] { return EnterPickerFiles(files); });
        script.Add(L"press Open", [] { return AcceptFilePicker(); });
    }

    // Answers a box of the dialog's, which counts.
    void AddBoxAnswer()
    {
        script.Add(L"answer the box", [this] {
            const std::optional<MessageBoxView> box = FindMessageBox();
            if (!box)
                return StepOutcome::NotYet(L"no box is up");
            boxes.push_back(box->text);
            return AnswerMessageBox(*box, IDOK);
        });
        script.Add(L"see the box gone", [] { return ExpectNoBox(); });
    }
    static StepOutcome ExpectNoBox() { return Until(!FindMessageBox(), L"the box is still up"); }

    // The files that the dialog returned; none for Cancel.
    std::vector<CString> Pick()
    {
        script.Add(L"see the dialog closed",
                   [this] { return Until(hasReturned, L"the dialog is still up"); });
        Play();
        EXPECT_EQ(script.GetFailure(), CString());
        return picked;
    }

    bool hasReturned = false;
    std::vector<CString> picked;
    std::vector<CString> boxes;

private:
    void OpenPicker()
    {
        wchar_t result[4096] = {};
        OPENFILENAMEW description = {};
        description.lStructSize = sizeof description;
        description.hwndOwner = dialog;
        description.lpstrFile = result;
        description.nMaxFile = 4096;
        description.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_ALLOWMULTISELECT |
                            OFN_NOCHANGEDIR | OFN_HIDEREADONLY;
        if (GetOpenFileNameW(&description))
            picked = ReadResult(result);
        hasReturned = true;
    }

    std::vector<CString> m_files;
};

TEST_F(FilePicker, ReturnsTheFileThatWasEntered)
{
    const CString file = MakeTestFile(L"picked.txt");
    AddEntering({file});
    EXPECT_EQ(Pick(), (std::vector<CString>{file}));
}

TEST_F(FilePicker, ReturnsNothingWhenItIsCanceled)
{
    const CString file = MakeTestFile(L"picked.txt");
    script.Add(L"enter the file", [&] { return EnterPickerFiles({file}); });
    script.Add(L"press Cancel", [] { return CancelFilePicker(); });
    EXPECT_EQ(Pick(), std::vector<CString>());
}

TEST_F(FilePicker, ReturnsSeveralFilesInTheOrderTheyWereEntered)
{
    const std::vector<CString> files = {MakeTestFile(L"b two words.txt"), MakeTestFile(L"a.txt"),
                                        MakeTestFile(L"it's c")};
    AddEntering(files);
    EXPECT_EQ(Pick(), files);
}

TEST_F(FilePicker, ReturnsSeveralFilesOfADrivesRoot)
{
    const std::vector<CString> files = {MakeFile(L"C:\\file picker one.txt"), MakeFile(L"C:\\two.txt")};
    AddEntering(files);
    EXPECT_EQ(Pick(), files);
}

TEST_F(FilePicker, ReturnsSeveralFilesWhoseFolderItShowsByAnotherPath)
{
    const std::vector<CString> files = {MakeTestFile(L"one.txt"), MakeTestFile(L"two.txt")};
    const CString detour = JoinFolder(TestFolder(), L"..\\" + LastName(TestFolder()));
    AddEntering({JoinFolder(detour, L"one.txt"), JoinFolder(detour, L"two.txt")});
    EXPECT_EQ(Pick(), files);
}

TEST_F(FilePicker, StaysBehindABoxWhenTheFileIsMissing)
{
    AddEntering({JoinFolder(TestFolder(), L"missing.txt")});
    script.Add(L"wait for the box", [] { return Until(FindMessageBox().has_value(), L"no box is up"); });
    script.Add(L"see that nothing can be entered", [this] {
        const StepOutcome outcome = EnterPickerFiles({JoinFolder(TestFolder(), L"other.txt")});
        EXPECT_TRUE(outcome.IsNotYet());
        EXPECT_HOLDS(outcome.GetReason(), L"is on a disabled window");
        EXPECT_TRUE(AcceptFilePicker().IsNotYet());
        return StepOutcome::Done();
    });
    AddBoxAnswer();
    script.Add(L"press Cancel", [] { return CancelFilePicker(); });
    EXPECT_EQ(Pick(), std::vector<CString>());
    EXPECT_EQ(boxes.size(), 1u);
}

TEST_F(FilePicker, AcceptsAnotherFileAfterItsBox)
{
    const CString file = MakeTestFile(L"there.txt");
    AddEntering({JoinFolder(TestFolder(), L"missing.txt")});
    AddBoxAnswer();
    AddEntering({file});
    EXPECT_EQ(Pick(), (std::vector<CString>{file}));
}

TEST_F(FilePicker, ComplainsOnceAboutTheMissingFolderOfSeveralFiles)
{
    const CString folder = JoinFolder(TestFolder(), L"missing");
    const std::vector<CString> files = {JoinFolder(folder, L"a"), JoinFolder(folder, L"b")};
    script.Add(L"enter the files", [files] {
        const StepOutcome outcome = EnterPickerFiles(files);
        return FindMessageBox() ? StepOutcome::Done() : outcome;
    });
    AddBoxAnswer();
    int tries = 0;
    script.Add(L"try again", [&] {
        const StepOutcome outcome = EnterPickerFiles(files);
        EXPECT_TRUE(outcome.IsNotYet());
        EXPECT_HOLDS(outcome.GetReason(), L"not \"" + folder + L"\"");
        return Until(++tries > 3, L"more tries to come");
    });
    script.Add(L"see no other box", [] { return ExpectNoMessageBox(); });
    script.Add(L"press Cancel", [] { return CancelFilePicker(); });
    EXPECT_EQ(Pick(), std::vector<CString>());
    EXPECT_EQ(boxes.size(), 1u);
}

TEST_F(FilePicker, IsNotGivenAFileInPlaceOfTheFolderOfSeveral)
{
    const CString file = MakeTestFile(L"no folder.txt");
    script.Add(L"enter files below it", [file] {
        const StepOutcome outcome = EnterPickerFiles({JoinFolder(file, L"a"), JoinFolder(file, L"b")});
        if (!outcome.IsFailed())
            return outcome;
        EXPECT_EQ(outcome.GetReason(), L"\"" + file + L"\" is a file, not a folder");
        return CancelFilePicker();
    });
    EXPECT_EQ(Pick(), std::vector<CString>());
}

TEST_F(FilePicker, IsNeitherAFolderPickerNorAMessageBox)
{
    script.Add(L"look at the dialog", [] {
        HWND picker = FindFilePicker();
        if (!picker)
            return StepOutcome::NotYet(L"the dialog isn't up");
        EXPECT_EQ(FindFolderPicker(), nullptr);
        EXPECT_FALSE(ReadMessageBox(picker).has_value());
        return CancelFilePicker();
    });
    Pick();
}

TEST_F(FilePicker, IsNotYetThereWithoutADialog)
{
    EXPECT_EQ(FindFilePicker(), nullptr);
    EXPECT_TRUE(EnterPickerFiles({L"C:\\a.txt"}).IsNotYet());
    EXPECT_TRUE(AcceptFilePicker().IsNotYet());
    EXPECT_TRUE(CancelFilePicker().IsNotYet());
}

INT_PTR CALLBACK IgnoreMessages(HWND, UINT, WPARAM, LPARAM)
{
    return FALSE;
}

TEST(FilePickerLookalike, WithABoxForNamesAndATreeIsNeitherPicker)
{
    HWND window = CreateDialogW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(101), nullptr, IgnoreMessages);
    const scope_exit destroy([window] { DestroyWindow(window); });
    ShowWindow(window, SW_SHOW);
    EXPECT_EQ(FindFilePicker(), nullptr);
    EXPECT_EQ(FindFolderPicker(), nullptr);
}

class FilePickerNames : public FilePicker, public testing::WithParamInterface<const wchar_t*>
{
};

TEST_P(FilePickerNames, AreEnteredAsTheyStandAloneAndBesideAnother)
{
    const CString file = MakeTestFile(GetParam());
    const CString other = MakeTestFile(L"other.txt");
    AddEntering({file});
    script.Add(L"see the dialog closed", [this] { return Until(hasReturned, L"the dialog is still up"); });
    script.Add(L"press the button again", [&] {
        EXPECT_EQ(picked, (std::vector<CString>{file}));
        hasReturned = false;
        return CControl(dialog, ID_CHECK).Click();
    });
    AddEntering({file, other});
    EXPECT_EQ(Pick(), (std::vector<CString>{file, other}));
}

INSTANTIATE_TEST_SUITE_P(OfManyKinds, FilePickerNames,
                         testing::Values(L"two  words and more.txt", L"it's the reader's.txt",
                                         L"no extension", L"a, b; c & d = e + f.txt",
                                         L"[50%] {x} ~ #1 !$ @^`.txt", L"%TEMP%.txt", L".dotted",
                                         L"two.dots.here", L"\u00C4rger \u00DFtra\u00DFe \u00E9\u0142.txt",
                                         L"\u0394\u03BF\u03BA\u03B9\u03BC\u03AE.txt",
                                         L"\u041F\u0440\u043E\u0431\u0430.txt",
                                         L"\u05E2\u05D1\u05E8\u05D9\u05EA \u0639\u0631\u0628\u064A.txt",
                                         L"\u65E5\u672C\u8A9E \u4E2D\u6587 \uD55C\uAD6D\uC5B4.txt",
                                         L"\u0939\u093F\u0928\u094D\u0926\u0940 \U0001F4C1.txt"));

TEST_F(FilePicker, ReturnsAFileWhosePathHas250Characters)
{
    const int room = 250 - JoinFolder(TestFolder(), L"").GetLength() - 1;
    const CString file = MakeTestFile(CString(L'n', room - 4) + L".txt");
    ASSERT_EQ(file.GetLength(), 250);
    AddEntering({file});
    EXPECT_EQ(Pick(), (std::vector<CString>{file}));
}

struct Refusal
{
    std::vector<CString> files;
    const wchar_t* reason;
};

class FilePickerRefusals : public testing::TestWithParam<Refusal>
{
};

TEST_P(FilePickerRefusals, NameWhatCanNotBeEntered)
{
    const StepOutcome outcome = EnterPickerFiles(GetParam().files);
    EXPECT_TRUE(outcome.IsFailed());
    EXPECT_EQ(outcome.GetReason(), CString(GetParam().reason));
}

INSTANTIATE_TEST_SUITE_P(
    OfEachKind, FilePickerRefusals,
    testing::Values(
        Refusal{{}, L"no file was named for the file dialog"},
        Refusal{{L""}, L"the file dialog needs a file's full path, not \"\""},
        Refusal{{L"a.txt"}, L"the file dialog needs a file's full path, not \"a.txt\""},
        Refusal{{L"C:\\folder\\"}, L"the file dialog needs a file's full path, not \"C:\\folder\\\""},
        Refusal{{L"C:a.txt"}, L"the file dialog needs a file's full path, not \"C:a.txt\""},
        Refusal{{L"C:\\a\"b"}, L"\"C:\\a\"b\" holds a character that no file's name can have"},
        Refusal{{L"C:\\a*"}, L"\"C:\\a*\" holds a character that no file's name can have"},
        Refusal{{L"C:\\a/b"}, L"\"C:\\a/b\" holds a character that no file's name can have"},
        Refusal{{L"C:\\a\tb"}, L"\"C:\\a\tb\" holds a character that no file's name can have"},
        Refusal{{L"C:\\one\\a", L"C:\\two\\b"},
                L"the file dialog accepts files of one folder, not \"C:\\one\\a\" and \"C:\\two\\b\""}));

TEST(FilePickerLimit, IsTheLongestPathThatTheDialogAccepts)
{
    const CString longest = L"C:\\" + CString(L'n', 256);
    EXPECT_TRUE(EnterPickerFiles({longest}).IsNotYet());
    EXPECT_HOLDS(EnterPickerFiles({longest + L"n"}).GetReason(),
                 L"is longer than the 259 characters that the file dialog accepts");
}

} // namespace
