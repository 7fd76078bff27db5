// Deleting what was added: what goes, in which order its rows go, and what stays when a row fails.
#include "tests/files/files_page.h"
#include "tests/rules/user_key.h"

#include <msiquery.h>

namespace {

std::vector<CString> g_deletes; // the tables' keys of what the page deleted, in order

UINT WINAPI NoteStatement(MSIHANDLE database, const wchar_t* text, MSIHANDLE* view)
{
    const CString statement = text;
    if (statement.Find(L"DELETE FROM ") == 0) {
        g_deletes.push_back(statement.Mid(12));
    }
    return MsiDatabaseOpenViewW(database, text, view);
}

class FilesDelete : public FilesPage
{
protected:
    void Delete(const CString& path)
    {
        SelectNode(path);
        Press(IDC_FILES_DELETE);
    }
    // The button is off for what can't be deleted; the command asks nobody.
    void CommandDelete()
    {
        Look([this] { PostMessageW(Page(), WM_COMMAND, MAKEWPARAM(IDC_FILES_DELETE, BN_CLICKED), 0); });
    }
    void WithPlans()
    {
        WithFolder(UserKey(1), L"FONTS", L"plans");
        WithFile(UserKey(2), UserKey(1), Source(L"a.txt"));
        WithFolder(UserKey(3), UserKey(1), L"sub");
        WithFile(UserKey(4), UserKey(3), Source(L"b.txt"));
    }
};
INSTANTIATE_BOTH_SHAPES(FilesDelete);

} // namespace

TEST_P(FilesDelete, AFileGoesWithItsRows)
{
    WithFile(UserKey(1), L"FONTS", Source(L"a.txt"));
    WithFile(UserKey(2), L"FONTS", Source(L"b.txt"));
    Delete(L"~\\Fonts\\a.txt");
    ExpectTree({L"<Zolt>", L"  Fonts", L"    b.txt*", L"  Samples", L"    Deep"});
    Look([this] {
        for (const wchar_t* table : {L"File", L"FeatureComponents", L"CreateFolder", L"TarnCustomFile"}) {
            EXPECT_EQ(Count(table), 1) << Utf8(table);
        }
    });
    ShowAndGoBack();
}

TEST_P(FilesDelete, AFolderGoesWithAllBelowAndNothingIsLeft)
{
    WithPlans();
    Delete(L"~\\Fonts\\plans");
    for (int round = 0; round < 2; ++round) {
        ExpectTree(OWN_FOLDERS);
        ShowAndGoBack();
    }
    ExpectNoAdditions();
    EXPECT_EQ(Modified(), CString(L"0"));
}

TEST_P(FilesDelete, RowsGoDeepestFirst)
{
    WithPlans();
    g_deletes.clear();
    const CImportRedirect statements(L"RolloutUi.dll", "MsiDatabaseOpenViewW",
                                     reinterpret_cast<void*>(NoteStatement));
    ASSERT_TRUE(statements.IsInPlace());
    Delete(L"~\\Fonts\\plans");
    ShowAndGoBack();
    std::vector<CString> order; // of the tables that name an item
    for (const CString& statement : g_deletes) {
        if (statement.Find(L"`File`") == 0 || statement.Find(L"`Directory`") == 0) {
            order.push_back(statement.Mid(statement.Find(L"'") + 1, 41));
        }
    }
    EXPECT_EQ(order, (std::vector<CString>{UserKey(2), UserKey(4), UserKey(3), UserKey(1)}));
    EXPECT_EQ(g_deletes.size(), 20u);
}

TEST_P(FilesDelete, ADriveGoesWithEverythingOnItAndItsProperties)
{
    WithDrive(UserKey(1), L"E:");
    WithFolder(UserKey(2), UserKey(1), L"plans");
    WithFile(UserKey(3), UserKey(2), Source(L"a.txt"));
    WithFile(UserKey(4), UserKey(1), Source(L"b.txt"));
    Delete(L"E:");
    ExpectTree(OWN_FOLDERS);
    ShowAndGoBack();
    ExpectNoAdditions();
    const std::vector<CString> calls = host.log.Of(L"Product.SetMsiProperty");
    EXPECT_EQ(calls,
              (std::vector<CString>{L"Product.SetMsiProperty(" + UserKey(1) + L", \"\", false)",
                                    L"Product.SetMsiProperty(" + UserKey(1) + L"_SUBST, \"\", false)"}));
}

TEST_P(FilesDelete, OfTheProductsFoldersNoneIsDeleted)
{
    for (const wchar_t* path : {L"~", L"~\\Fonts", L"~\\Samples"}) {
        SelectNode(path);
        ExpectButtons(L"ED");
        Key(VK_DELETE);
        CommandDelete();
        ExpectTree(OWN_FOLDERS);
    }
    ShowAndGoBack();
    EXPECT_EQ(Count(L"Directory"), 5);
}

TEST_P(FilesDelete, WithNothingSelectedNothingIsDeleted)
{
    WithPlans();
    SelectNothing();
    CommandDelete();
    Key(VK_DELETE);
    ShowAndGoBack();
    EXPECT_EQ(Count(L"TarnCustomFile"), 4);
}

TEST_P(FilesDelete, TheDeleteKeyDeletesOnlyWhileTheTreeHasTheFocus)
{
    WithPlans();
    SelectNode(L"~\\Fonts\\plans\\a.txt");
    FocusTo(IDC_FILES_ADD);
    Key(VK_DELETE);
    Look([this] { EXPECT_NE(Node(L"~\\Fonts\\plans\\a.txt"), nullptr); });
    SelectNode(L"~\\Fonts\\plans\\a.txt");
    Key(VK_DELETE);
    Look([this] { EXPECT_EQ(Node(L"~\\Fonts\\plans\\a.txt"), nullptr); });
    ShowAndGoBack();
}

TEST_P(FilesDelete, TheDeleteKeyInTheEditOfALabelDeletesNoFolder)
{
    WithPlans();
    SelectNode(L"~\\Fonts\\plans");
    Key(VK_F2);
    AwaitEdit();
    Key(VK_DELETE);
    Key(VK_ESCAPE);
    AwaitNoEdit();
    Look([this] { EXPECT_NE(Node(L"~\\Fonts\\plans\\sub\\b.txt"), nullptr); });
    ShowAndGoBack();
}

TEST_P(FilesDelete, AFailureInTheFilesRowsDoesNotStopTheFolders)
{
    WithPlans();
    Look([this] { Run(L"DROP TABLE `File`"); });
    Delete(L"~\\Fonts\\plans");
    ExpectTree(OWN_FOLDERS);
    ShowAndGoBack();
    // Only the files are left of the four.
    EXPECT_EQ(Count(L"TarnCustomFile"), 2);
    EXPECT_EQ(Count(L"Directory"), 5);
}

TEST_P(FilesDelete, AFailureInTheFoldersRowsIsNotReported)
{
    WithPlans();
    Look([this] { Run(L"DROP TABLE `FeatureComponents`"); });
    Delete(L"~\\Fonts\\plans");
    ExpectTree(OWN_FOLDERS);
    ShowAndGoBack();
    EXPECT_EQ(Modified(), CString(L"0"));
}

// The view deletes the item below; nothing of it may be used later.
TEST_P(FilesDelete, AFolderOfTheProductBelowAnAddedOneGoesFromTheViewAlone)
{
    WithFolder(UserKey(1), L"INSTALLDIR", L"Mine");
    WithUsedDirectory(L"BELOW", L"GONE", L"Sub", L"C:\\Zolt\\Mine\\Sub\\", L"D:\\media\\Zolt\\Sub\\");
    WithFile(UserKey(2), L"BELOW", Source(L"a.txt"));
    ExpectTree({L"<Zolt>", L"  Fonts", L"  Mine*", L"    Sub", L"      a.txt*", L"  Samples", L"    Deep"});
    Delete(L"~\\Mine");
    ExpectTree(OWN_FOLDERS);
    SelectNothing();
    AddFiles({Source(L"b.txt")});
    ExpectTree({L"<Zolt>", L"  b.txt*", L"  Fonts", L"  Samples", L"    Deep"});
    AddFolder(L"~", L"Mine");
    AwaitNoEdit();
    Delete(L"~\\Mine");
    Look([this] {
        EXPECT_TRUE(Select(L"SELECT * FROM `Directory` WHERE `Directory`='" + UserKey(1) + L"'").empty());
        EXPECT_FALSE(Select(L"SELECT * FROM `Directory` WHERE `Directory`='BELOW'").empty());
    });
    ShowAndGoBack();
}

// Its folder can't be looked up: the node is forgotten, and the item and the rows stay.
TEST_P(FilesDelete, AFileOfTheRootLevelStaysInTheViewAndInTheDatabase)
{
    servicePaths[L"SYSTEM"] = L"C:\\windows\\";
    WithFile(UserKey(1), L"SYSTEM", Source(L"a.txt"));
    for (int round = 0; round < 2; ++round) {
        Delete(L"a.txt");
        Look([this] { EXPECT_NE(Node(L"a.txt"), nullptr); });
    }
    ShowAndGoBack();
    EXPECT_EQ(Count(L"TarnCustomFile"), 1);
    EXPECT_EQ(Modified(), CString(L"0"));
}

TEST_P(FilesDelete, WhatWasDeletedCanBeAddedAgain)
{
    const CString source = Source(L"a.txt");
    for (int round = 0; round < 3; ++round) {
        SelectNode(L"~\\Fonts");
        AddFiles({source});
        ExpectTree({L"<Zolt>", L"  Fonts", L"    a.txt*", L"  Samples", L"    Deep"});
        Delete(L"~\\Fonts\\a.txt");
        ExpectTree(OWN_FOLDERS);
    }
    ShowAndGoBack();
    ExpectNoAdditions();
}

TEST_P(FilesDelete, AfterADeleteTheButtonsFitTheNewSelectionAndTheFocusIsNotLost)
{
    WithFile(UserKey(1), L"FONTS", Source(L"a.txt"));
    SelectNode(L"~\\Fonts\\a.txt");
    ExpectButtons(L"EE");
    FocusTo(IDC_FILES_DELETE);
    Press(IDC_FILES_DELETE);
    ExpectSelected(L"~\\Fonts");
    ExpectButtons(L"ED");
    Look([this] { EXPECT_TRUE(HasFocus(IDC_FILES_TREE)) << Utf8(DescribeWindow(GetFocus())); });
    ShowAndGoBack();
}
