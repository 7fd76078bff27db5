// The owner of a loaded library: what a second load does.
#include "frame/resource_library.h"

#include "automation/message_box.h"
#include "automation/script.h"
#include "automation/window_finder.h"
#include "tests/support/test_folder.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

// Copies of the tests' resource library. The files distinguish a module that is kept from one that is loaded anew: an address
// may be the same by chance.
class ResourceLibraryTest : public testing::Test
{
protected:
    CString AddLibrary(const wchar_t* name)
    {
        const CString path = folder / name;
        EXPECT_TRUE(::CopyFileW(ProgramFolder() + L"WizText.dll", path, TRUE));
        return path;
    }
    // Makes the call and answers the box that must come.
    template <class Call>
    void ExpectBox(const CString& text, Call call)
    {
        CScript script;
        script.SetFailureHandler([] { CloseFrontWindow(); });
        script.Add(L"answer the box", [&text] {
            const std::optional<MessageBoxView> box = FindMessageBox();
            if (!box) {
                return StepOutcome::NotYet(L"no box is up");
            }
            EXPECT_EQ(box->text, text);
            return AnswerMessageBox(*box, IDOK);
        });
        script.Start();
        call();
        script.Stop();
        EXPECT_TRUE(script.IsFinished()) << "no box came";
    }

    // Makes the call; a box fails the test and is closed.
    template <class Call>
    void ExpectNoBox(Call call)
    {
        CScript script;
        script.SetFailureHandler([] { CloseFrontWindow(); });
        script.SetEnding(L"the call's end", [] {
            const StepOutcome clear = ExpectNoMessageBox();
            return clear.IsFailed() ? clear : StepOutcome::NotYet(L"the call has not come back");
        });
        script.Start();
        call();
        script.Stop();
        EXPECT_EQ(script.GetFailure(), CString());
    }

    CTestFolder folder;
    CResourceLibrary library;
};

} // namespace

TEST_F(ResourceLibraryTest, TheSamePathInAnotherCaseKeepsTheModule)
{
    const CString path = AddLibrary(L"first.dll");
    ASSERT_TRUE(library.Load(path));
    const HMODULE module = library.GetModule();
    ASSERT_TRUE(::MoveFileW(path, folder / L"away.dll")) << "whoever loads the path anew fails now";
    ExpectNoBox([&] { EXPECT_TRUE(library.Load(CString(path).MakeUpper())); });
    EXPECT_EQ(library.GetModule(), module);
    EXPECT_EQ(::GetModuleHandleW(L"first.dll"), module);
}

TEST_F(ResourceLibraryTest, AnotherPathTakesThePlaceOfTheFirst)
{
    ASSERT_TRUE(library.Load(AddLibrary(L"first.dll")));
    const CString second = AddLibrary(L"second.dll");
    EXPECT_TRUE(library.Load(second));
    EXPECT_EQ(::GetModuleHandleW(L"first.dll"), nullptr) << "the first is still held";
    EXPECT_EQ(library.GetModule(), ::GetModuleHandleW(L"second.dll"));
}

TEST_F(ResourceLibraryTest, AFailedLoadHoldsNothingAndTheNextLoadsAnew)
{
    const CString path = AddLibrary(L"first.dll");
    ASSERT_TRUE(library.Load(path));
    const CString nowhere = folder / L"nowhere.dll";
    ExpectBox(L"Failed to load " + nowhere, [&] { EXPECT_FALSE(library.Load(nowhere)); });
    EXPECT_EQ(library.GetModule(), nullptr);
    EXPECT_EQ(::GetModuleHandleW(L"first.dll"), nullptr) << "the first is still held";
    ASSERT_TRUE(::DeleteFileW(path));
    ExpectBox(L"Failed to load " + path,
              [&] { EXPECT_FALSE(library.Load(path)) << "the path counts as held"; });
}

TEST_F(ResourceLibraryTest, TheModuleGoesWithItsOwner)
{
    {
        CResourceLibrary owner;
        ASSERT_TRUE(owner.Load(AddLibrary(L"first.dll")));
    }
    EXPECT_EQ(::GetModuleHandleW(L"first.dll"), nullptr);
}
