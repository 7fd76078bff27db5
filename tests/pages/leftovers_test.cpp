// The count of what a test leaves behind must notice each kind of thing, or it proves nothing.
#include "base/handle.h"
#include "tests/support/leftovers.h"
#include "tests/support/resource_strings.h"
#include "tests/support/text.h"
#include "window/drawing_handles.h"

#include <gtest/gtest.h>

namespace {

TEST(Leftovers, NothingLeftIsNoChange)
{
    const ProcessState before = ReadProcessState();
    EXPECT_EQ(DescribeChange(before, ReadProcessState()), CString());
}

TEST(Leftovers, AGdiObjectOfEachKindIsNoticed)
{
    const ProcessState before = ReadProcessState();
    const CBrushOwner brush(CreateSolidBrush(RGB(1, 2, 3)));
    const CPenOwner pen(CreatePen(PS_SOLID, 1, RGB(1, 2, 3)));
    const CRegionOwner region(CreateRectRgn(0, 0, 1, 1));
    const CBitmapOwner bitmap(CreateBitmap(1, 1, 1, 32, nullptr));
    const CFontOwner font(CreateFontW(9, 0, 0, 0, 400, 0, 0, 0, 0, 0, 0, 0, 0, L"Tahoma"));
    EXPECT_EQ(ReadProcessState().gdiObjects - before.gdiObjects, 5);
    EXPECT_GE(DescribeChange(before, ReadProcessState()).Find(L"GDI objects"), 0);
}

TEST(Leftovers, AMenuIsNoticed)
{
    const ProcessState before = ReadProcessState();
    const CMenuOwner menu(CreatePopupMenu());
    EXPECT_EQ(ReadProcessState().menus - before.menus, 1);
}

TEST(Leftovers, AnIconIsNoticed)
{
    const ProcessState before = ReadProcessState();
    const unsigned char bits[128] = {};
    const CIconOwner icon(CreateIcon(nullptr, 16, 16, 1, 1, bits, bits));
    EXPECT_EQ(ReadProcessState().icons - before.icons, 1);
}

TEST(Leftovers, AHiddenWindowAndItsChildAreNoticed)
{
    HWND first = CreateWindowW(L"Static", nullptr, 0, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    const ProcessState before =
        ReadProcessState(); // the first window of a thread brings the system's own along
    HWND window = CreateWindowW(L"Static", nullptr, 0, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    CreateWindowW(L"Static", nullptr, WS_CHILD, 0, 0, 9, 9, window, nullptr, nullptr, nullptr);
    EXPECT_EQ(ReadProcessState().windows - before.windows, 2);
    DestroyWindow(window);
    EXPECT_EQ(ReadProcessState().windows, before.windows);
    DestroyWindow(first);
}

TEST(Leftovers, ALibraryOfTheProjectIsNoticed)
{
    const ProcessState before = ReadProcessState();
    const CModuleOwner library(LoadLibraryW(BuiltLanguageFolder() + L"WizText.dll"));
    EXPECT_EQ(DescribeChange(before, ReadProcessState()), CString(L"library wiztext.dll is still loaded\n"));
}

TEST(Leftovers, AllocatedBytesAreNoticed)
{
    const long long before = AllocatedBytes();
    const CLocalOwner memory(LocalAlloc(LMEM_FIXED, 100000));
    EXPECT_GE(AllocatedBytes() - before, 100000);
}

} // namespace
