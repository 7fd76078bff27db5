// What the page is not meant to be asked: commands and drops under a box, names and rows that don't fit.
#include "include/additional_files.h"
#include "tests/files/files_page.h"
#include "tests/rules/user_key.h"

namespace {

class FilesHostile : public FilesPage
{
protected:
    // Comes to the page whatever is up, as a click that was under way.
    void Command(int id) const { SendMessageW(Page(), WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0); }
    void ExpectThere(const CString& path, bool isThere = true)
    {
        Look([this, path, isThere] { EXPECT_EQ(Node(path) != nullptr, isThere) << Utf8(path); });
    }

    const CString MINE = UserKey(1);
    const CString INNER = UserKey(2);
    const CString PLAN = UserKey(3);
};
INSTANTIATE_BOTH_SHAPES(FilesHostile);

} // namespace

// ---- under a box

TEST_P(FilesHostile, CommandsUnderARefusalDoNothingAndTheEditComesBackToItsFolder)
{
    WithFolder(MINE, L"SAMPLES", L"Aaa");
    SelectNode(L"~\\Samples");
    Press(IDC_FILES_ADD_FOLDER);
    AwaitEdit();
    TypeLabel(L"a:b");
    Key(VK_RETURN);
    AnswerNameBox(IDS_FILES_NAME_INVALID, [this] {
        for (const int command : {IDC_FILES_DELETE, IDC_FILES_ADD_DRIVE, IDC_FILES_ADD_FOLDER}) {
            Command(command);
        }
    });
    AwaitEdit();
    ExpectSelected(L"~\\Samples\\New folder");
    Key(VK_ESCAPE);
    AwaitNoEdit();
    ExpectThere(L"~\\Samples\\New folder", false);
    ExpectThere(L"~\\Samples\\Aaa");
    ShowAndGoBack();
    EXPECT_EQ(Count(L"TarnCustomFile"), 1);
}

TEST_P(FilesHostile, TheEditComesBackToTheRefusedFolderWhateverWasSelectedUnderTheBox)
{
    WithFolder(MINE, L"SAMPLES", L"Aaa");
    SelectNode(L"~\\Samples");
    Press(IDC_FILES_ADD_FOLDER);
    AwaitEdit();
    TypeLabel(L"a:b");
    Key(VK_RETURN);
    AnswerNameBox(IDS_FILES_NAME_INVALID, [this] {
        SendMessageW(Tree().GetWindow(), TVM_SELECTITEM, TVGN_CARET,
                     reinterpret_cast<LPARAM>(Node(L"~\\Samples\\Aaa")));
    });
    AwaitEdit();
    ExpectSelected(L"~\\Samples\\New folder");
    Key(VK_ESCAPE);
    AwaitNoEdit();
    ExpectThere(L"~\\Samples\\Aaa");
    ShowAndGoBack();
}

TEST_P(FilesHostile, ADropUnderAQuestionIsNotTaken)
{
    WithFile(PLAN, L"FONTS", Source(L"one\\plan.txt"));
    const CString second = Source(L"two\\plan.txt");
    SelectNode(L"~\\Fonts");
    AddFiles({second});
    const Lines dropped = {Source(L"dropped.txt"), Source(L"three\\plan.txt")};
    Answer(ReplaceBox(L"plan.txt", Source(L"one\\plan.txt"), second), IDYES, [this, dropped] {
        SendMessageW(Page(), FILES_MESSAGE_DROPPED, 0, reinterpret_cast<LPARAM>(MakeDrop({-1, -1}, dropped)));
    });
    ExpectThere(L"~\\Fonts\\plan.txt");
    ExpectThere(L"~\\Fonts\\dropped.txt", false);
    ShowAndGoBack();
    EXPECT_EQ(Count(L"TarnCustomFile"), 1);
}

// ---- names and rows

TEST_P(FilesHostile, AFolderNameThatIsFreeByItsCaseAloneLeadsToTheFolderThatHasIt)
{
    WithFolder(MINE, L"SAMPLES", L"new folder");
    WithFile(PLAN, MINE, Source(L"plan.txt"));
    const int rows = Count(L"TarnCustomFile");
    SelectNode(L"~\\Samples");
    Press(IDC_FILES_ADD_FOLDER);
    AwaitEdit();
    ExpectSelected(L"~\\Samples\\new folder");
    Key(VK_ESCAPE);
    AwaitNoEdit();
    ExpectThere(L"~\\Samples\\new folder\\plan.txt");
    ShowAndGoBack();
    EXPECT_EQ(Count(L"TarnCustomFile"), rows);
}

TEST_P(FilesHostile, NamesThatBeginWithDotsStayInTheirFolder)
{
    WithFolder(MINE, L"FONTS", L"...");
    WithFile(PLAN, MINE, Source(L"..x.txt"));
    ExpectThere(L"~\\Fonts\\...\\..x.txt");
    SelectNode(L"~\\Fonts\\...\\..x.txt");
    Press(IDC_FILES_DELETE);
    ExpectThere(L"~\\Fonts\\...\\..x.txt", false);
    ShowAndGoBack();
    EXPECT_EQ(Count(L"TarnCustomFile"), 1);
}

TEST_P(FilesHostile, AFolderThatIsListedAsAFileCanBeDeletedAndLeft)
{
    WithFolder(MINE, L"FONTS", L"mine");
    Run(L"UPDATE `TarnCustomFile` SET `Flags`=0 WHERE `Component_`='" + MINE + L"'");
    ExpectThere(L"~\\Fonts\\mine\\mine");
    SelectNode(L"~\\Fonts\\mine\\mine");
    Press(IDC_FILES_DELETE);
    ExpectThere(L"~\\Fonts\\mine\\mine", false);
    SelectNode(L"~\\Fonts\\mine");
    Press(IDC_FILES_DELETE);
    ExpectThere(L"~\\Fonts\\mine", false);
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(Modified(), CString(L"0"));
}

TEST_P(FilesHostile, AFileThatCannotBeAddedIsLeftToTheHostToReport)
{
    WithFolder(MINE, L"FONTS", CString(L'a', 200));
    const CString source = Source(CString(L'b', 100) + L".txt");
    SelectNode(L"~\\Fonts\\" + CString(L'a', 200));
    AddFiles({Source(L"fits.txt"), source});
    ExpectThere(L"~\\Fonts\\" + CString(L'a', 200) + L"\\fits.txt");
    ShowAndGoBack();
    EXPECT_EQ(product.properties[ADDITIONAL_FILES_NOT_ADDED], source);
    EXPECT_EQ(Count(L"TarnCustomFile"), 2);
}
