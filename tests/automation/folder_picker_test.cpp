// The driver of the system's folder picker, against the picker itself.
#include "automation/folder_picker.h"

#include "automation/script.h"
#include "automation/window_finder.h"
#include "base/handle.h"
#include "tests/support/test_folder.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>
#include <objbase.h>

#include <shlobj.h>

namespace {

class FolderPicker : public testing::Test
{
protected:
    FolderPicker() { OleInitialize(nullptr); }
    ~FolderPicker() override { OleUninitialize(); }

    // The folder that the picker returns when the script has played; empty for none.
    CString Pick()
    {
        script.Add(L"accept", [] { return AcceptPicker(); });
        script.SetFailureHandler([] { CloseFrontWindow(); });
        script.Start();
        BROWSEINFOW browse = {};
        browse.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
        const LPITEMIDLIST item = SHBrowseForFolderW(&browse);
        const CTaskOwner owner(item);
        EXPECT_EQ(script.GetFailure(), CString());
        wchar_t path[MAX_PATH] = {};
        return item && SHGetPathFromIDListW(item, path) ? path : L"";
    }

    const CTestFolder above;
    const CString folder = above.AddFolder(L"picked folder");
    CScript script;
};

void SetLastReading(const CString& folder, FILETIME time)
{
    const CFileOwner directory(CreateFileW(folder, FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                           nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    EXPECT_TRUE(SetFileTime(directory.get(), nullptr, &time, nullptr)) << Utf8(folder);
}

TEST_F(FolderPicker, GivesTheFolderThatWasSelected)
{
    script.Add(L"select", [&] { return SelectPickerFolder(folder); });
    EXPECT_EQ(Pick().CompareNoCase(folder), 0);
}

// It stayed at the folder above every now and then: when the seconds went on between listing the folder and reading it.
TEST_F(FolderPicker, GivesAFolderThatWasReadSinceThePickerListedIt)
{
    script.Add(L"list the folder", [&] { return SelectPickerFolder(folder); });
    script.Add(L"select the one above", [&] { return SelectPickerFolder(above.GetPath()); });
    script.Add(L"read the folder", [&] {
        SetLastReading(folder, {0, 0x01C00000}); // some day of the year 2000
        return StepOutcome::Done();
    });
    script.Add(L"select the folder", [&] { return SelectPickerFolder(folder); });
    EXPECT_EQ(Pick().CompareNoCase(folder), 0);
}

TEST_F(FolderPicker, DoesNotYetOfferAFolderThatIsNotThere)
{
    for (const CString& missing :
         {above / L"missing", above / L"missing\\picked folder", CString(L"Q:\\a")}) {
        script.Add(L"select " + missing, [missing] {
            const StepOutcome outcome = SelectPickerFolder(missing);
            if (!FindFolderPicker())
                return outcome;
            EXPECT_TRUE(outcome.IsNotYet()) << Utf8(missing);
            EXPECT_HOLDS(outcome.GetReason(), L"does not offer \"" + missing + L"\"");
            return StepOutcome::Done();
        });
    }
    script.Add(L"select", [&] { return SelectPickerFolder(folder); });
    EXPECT_EQ(Pick().CompareNoCase(folder), 0);
}

} // namespace
