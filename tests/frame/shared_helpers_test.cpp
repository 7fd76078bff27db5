#include "base/guid_text.h"
#include "frame/shared_helpers.h"
#include "tests/frame/frame_fixture.h"

#include <rpc.h>
#include <shlwapi.h>

class SharedHelpersTest : public FrameTest
{
protected:
    SharedHelpersTest()
    {
        library.Load(GetResourceLibraryPath());
        resources.emplace(library.GetModule());
    }

    CResourceLibrary library;
    std::optional<CResourceInstanceSwap> resources;
};

TEST_F(SharedHelpersTest, ALongStringIsLoadedWhole)
{
    const CString text = LoadResourceString(IDS_TEST_LONG);
    EXPECT_EQ(text.GetLength(), 313);
    EXPECT_EQ(text.Right(3), CString(L"END"));
}

TEST_F(SharedHelpersTest, AMissingStringIsEmpty)
{
    EXPECT_EQ(LoadResourceString(65000), CString());
}

TEST_F(SharedHelpersTest, AStringIsAFormat)
{
    EXPECT_EQ(FormatResource(IDS_STEP, CString(L"3")), CString(L"Step 3"));
}

TEST_F(SharedHelpersTest, LoadingTheSamePathInAnotherCaseKeepsTheModule)
{
    const HMODULE module = library.GetModule();
    EXPECT_TRUE(library.Load(GetResourceLibraryPath().MakeUpper()));
    EXPECT_EQ(library.GetModule(), module);
}

TEST_F(SharedHelpersTest, AFailedLoadLeavesNoModule)
{
    AnswerBox(IDOK, L"Failed to load no.dll");
    script.Start();
    CResourceLibrary other;
    EXPECT_TRUE(other.Load(GetResourceLibraryPath()));
    EXPECT_FALSE(other.Load(L"no.dll"));
    EXPECT_EQ(other.GetModule(), nullptr);
    EXPECT_TRUE(script.IsFinished());
}

TEST_F(SharedHelpersTest, PathsAreJoinedWithOneBackslash)
{
    EXPECT_EQ(JoinPath(L"C:\\a", L"b.htm"), CString(L"C:\\a\\b.htm"));
    EXPECT_EQ(JoinPath(L"C:\\a\\", L"b.htm"), CString(L"C:\\a\\b.htm"));
    EXPECT_EQ(JoinPath(L"\"C:\\a b\"", L"c"), CString(L"C:\\a b\\c"));
    EXPECT_EQ(JoinPath(L"C:\\" + CString(L'a', 300), L"c"), CString());
    EXPECT_EQ(JoinPath(L"C:\\" + CString(L'a', 250), L"0123456789"), CString());
}

TEST_F(SharedHelpersTest, ASystemCodeIsPutIntoWords)
{
    EXPECT_FALSE(MessageForCode(1602).IsEmpty());
    EXPECT_FALSE(MessageForCode(ERROR_ACCESS_DENIED).IsEmpty());
}

TEST_F(SharedHelpersTest, ACodeThatTheLibraryKnowsHasItsText)
{
    EXPECT_EQ(MessageForCode(3000 | 0xF000), CString(L"the library's own"));
    EXPECT_EQ(MessageForCode(3000 | 0xF000, library.GetModule()), CString(L"the library's own"));
}

TEST_F(SharedHelpersTest, ACodeThatNobodyKnowsIsEmpty)
{
    EXPECT_EQ(MessageForCode(0xE0000001), CString());
    EXPECT_EQ(MessageForCode(0xE0000001, nullptr), CString());
}

TEST_F(SharedHelpersTest, TheErrorBoxJoinsTheCodesTextAndTheText)
{
    const CString expected = MessageForCode(5) + L"details";
    Step(L"answer the box", [expected] {
        const std::optional<MessageBoxView> box = FindMessageBox();
        if (!box) {
            return StepOutcome::NotYet(L"no box is up");
        }
        EXPECT_EQ(box->text.Left(12), expected.Left(12));
        EXPECT_EQ(box->text.Right(7), CString(L"details"));
        EXPECT_EQ(box->title, CString(L"Setup error"));
        EXPECT_EQ(box->icon, static_cast<UINT>(MB_ICONERROR));
        EXPECT_EQ(box->owner, nullptr);
        return AnswerMessageBox(*box, IDOK);
    });
    script.Start();
    ShowErrorBox(5, L"details", nullptr, reinterpret_cast<HWND>(static_cast<INT_PTR>(0x7FFF)));
    EXPECT_FALSE(script.HasFailed()) << Utf8(script.GetFailure());
    EXPECT_TRUE(script.IsFinished());
}

TEST_F(SharedHelpersTest, NewGuidsAreGuidsInUpperCaseAndDiffer)
{
    const CString first = NewGuidText();
    EXPECT_TRUE(IsGuidText(first)) << Utf8(first);
    EXPECT_EQ(first, CString(first).MakeUpper());
    EXPECT_EQ(first.GetLength(), 36);
    EXPECT_FALSE(first == NewGuidText());
}

TEST_F(SharedHelpersTest, ATarnKeyTakesUnderscoresAndHyphens)
{
    CString key = L"TARN_" + NewGuidText();
    EXPECT_TRUE(IsTarnGuidKey(key));
    key.Replace(L'-', L'_');
    EXPECT_TRUE(IsTarnGuidKey(key));
    EXPECT_FALSE(IsTarnGuidKey(L"TARN_"));
    EXPECT_FALSE(IsTarnGuidKey(key.Mid(5)));
    EXPECT_FALSE(IsTarnGuidKey(nullptr));
}

TEST_F(SharedHelpersTest, BracesDoNotHurtAGuidAndNullIsNone)
{
    EXPECT_TRUE(IsGuidText(L"{01234567-89AB-CDEF-0123-456789ABCDEF}"));
    EXPECT_FALSE(IsGuidText(nullptr));
    EXPECT_FALSE(IsGuidText(L"{01234567-89AB-CDEF-0123-456789ABCDE}"));
}

TEST_F(SharedHelpersTest, TheRuleOfUncFormsAnswersAsTheSystemDoes)
{
    for (const wchar_t* text : {L"\\\\server\\share", L"\\\\server", L"\\\\", L"\\server", L"C:\\a", L"",
                                L"a", L"\\\\?\\UNC\\server\\share"}) {
        EXPECT_EQ(IsUncForm(text), ::PathIsUNCW(text) != FALSE) << Utf8(text);
    }
}

TEST_F(SharedHelpersTest, AHostOnThisMachineResolvesAndAnInventedOneDoesNot)
{
    EXPECT_TRUE(IsHostResolvable(L"localhost"));
    EXPECT_FALSE(IsHostResolvable(L"no-such.invalid"));
    EXPECT_FALSE(IsHostResolvable(nullptr));
}

TEST_F(SharedHelpersTest, AnHtmlFileIsFoundOnTheSourceMediaWhenTheImageLacksIt)
{
    const CTestFolder image;
    const CTestFolder source;
    host.manager.resourceFolder = image.GetPath();
    host.manager.sourceResourceFolder = source.GetPath();
    EXPECT_EQ(FindHtmlFile(host.manager, L"a.htm"), source / L"a.htm");
    image.AddFile(L"a.htm", "x");
    EXPECT_EQ(FindHtmlFile(host.manager, L"a.htm"), image / L"a.htm");
}
