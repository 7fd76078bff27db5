#include "base/com_ptr.h"
#include "base/handle.h"
#include "tests/window/fixture.h"
#include "window/drawing_handles.h"
#include "window/gdi.h"

#include <utility>

namespace {

// A kind whose closings can be counted.
struct CountedKind : NullableKind<int*>
{
    static void Close(int* handle) noexcept
    {
        ++*handle;
        SetLastError(ERROR_INVALID_HANDLE);
    }
};
using CCountedOwner = CHandleOwner<CountedKind>;

TEST(HandleTest, AnOwnerClosesOnce)
{
    int closed = 0;
    {
        const CCountedOwner owner(&closed);
        EXPECT_EQ(closed, 0);
    }
    EXPECT_EQ(closed, 1);
}

TEST(HandleTest, MovingHandsTheDutyToCloseOver)
{
    int closed = 0;
    {
        CCountedOwner first(&closed);
        CCountedOwner second(std::move(first));
        EXPECT_FALSE(first); // NOLINT(bugprone-use-after-move): what a moved-from owner holds is the claim
        EXPECT_EQ(second.get(), &closed);
    }
    EXPECT_EQ(closed, 1);
}

TEST(HandleTest, AssigningClosesWhatWasHeld)
{
    int closedFirst = 0;
    int closedSecond = 0;
    CCountedOwner owner(&closedFirst);
    owner = CCountedOwner(&closedSecond);
    EXPECT_EQ(closedFirst, 1);
    EXPECT_EQ(closedSecond, 0);
}

TEST(HandleTest, ResettingToTheSameHandleKeepsItOpen)
{
    int closed = 0;
    CCountedOwner owner(&closed);
    owner.reset(&closed);
    EXPECT_EQ(closed, 0);
}

TEST(HandleTest, ReleaseGivesTheHandleAway)
{
    int closed = 0;
    {
        CCountedOwner owner(&closed);
        EXPECT_EQ(owner.release(), &closed);
    }
    EXPECT_EQ(closed, 0);
}

TEST(HandleTest, PutClosesAndTakesWhatACallFillsIn)
{
    int closedFirst = 0;
    int closedSecond = 0;
    {
        CCountedOwner owner(&closedFirst);
        *owner.put() = &closedSecond;
        EXPECT_EQ(closedFirst, 1);
    }
    EXPECT_EQ(closedSecond, 1);
}

TEST(HandleTest, ClosingKeepsTheLastError)
{
    int closed = 0;
    CCountedOwner owner(&closed);
    SetLastError(ERROR_DISK_FULL);
    owner.reset();
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_DISK_FULL));
}

TEST(HandleTest, AFileThatCouldNotBeOpenedCountsAsNone)
{
    const CFileOwner file(CreateFileW(L"Z:\\no such folder\\no such file", GENERIC_READ, 0, nullptr,
                                      OPEN_EXISTING, 0, nullptr));
    EXPECT_FALSE(file);
}

// Owns one object of each kind and counts how many the process then has.
int CountWithOneOfEach()
{
    const CFontOwner font(CreateFontW(12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, L"Tahoma"));
    const CBrushOwner brush(CreateSolidBrush(RGB(1, 2, 3)));
    const CPenOwner pen(CreatePen(PS_SOLID, 3, RGB(1, 2, 3)));
    const CBitmapOwner bitmap(CreateBitmap(8, 8, 1, 32, nullptr));
    const CDcOwner dc(CreateCompatibleDC(nullptr));
    const CSelectObject selected(dc.get(), pen.get());
    return CountGdiObjects();
}

TEST(HandleTest, OwnersLeaveNoGdiObjectBehind)
{
    CountWithOneOfEach(); // the first device context of a process makes objects of the system's own
    const int before = CountGdiObjects();
    EXPECT_EQ(CountWithOneOfEach(), before + 5);
    EXPECT_EQ(CountGdiObjects(), before);
}

TEST(HandleTest, ASelectedObjectGivesWayToTheFormerOne)
{
    const CDcOwner dc(CreateCompatibleDC(nullptr));
    const HGDIOBJ former = GetCurrentObject(dc.get(), OBJ_PEN);
    {
        const CSelectObject selected(dc.get(), GetStockObject(WHITE_PEN));
        EXPECT_EQ(GetCurrentObject(dc.get(), OBJ_PEN), GetStockObject(WHITE_PEN));
    }
    EXPECT_EQ(GetCurrentObject(dc.get(), OBJ_PEN), former);
}

// An object that knows how many references there are to it.
struct CountedObject
{
    ULONG AddRef() { return ++references; }
    ULONG Release() { return --references; }

    ULONG references = 1;
};

// Each picture of a label and each XML document that was read stayed in memory: the toolchain's function counts the
// object once more.
TEST(ComPtrTest, AnAttachedObjectIsReleasedWithItsOwner)
{
    CountedObject object;
    {
        ComPtr<CountedObject> owner;
        owner.Attach(&object);
        EXPECT_EQ(owner.Get(), &object);
        EXPECT_EQ(object.references, 1u);
    }
    EXPECT_EQ(object.references, 0u);
}

TEST(ComPtrTest, AttachingReleasesWhatWasHeld)
{
    CountedObject first;
    CountedObject second;
    ComPtr<CountedObject> owner;
    owner.Attach(&first);
    owner.Attach(&second);
    EXPECT_EQ(first.references, 0u);
    EXPECT_EQ(second.references, 1u);
}

TEST(ComPtrTest, CopiesCountAndMovesDoNot)
{
    CountedObject object;
    ComPtr<CountedObject> owner;
    owner.Attach(&object);
    {
        const ComPtr<CountedObject> copy = owner;
        EXPECT_EQ(object.references, 2u);
    }
    const ComPtr<CountedObject> moved = std::move(owner);
    EXPECT_EQ(moved.Get(), &object);
    EXPECT_EQ(object.references, 1u);
}

TEST(HandleTest, AScopeExitRunsItsStepUnlessItIsReleased)
{
    int steps = 0;
    {
        const scope_exit run([&steps] { ++steps; });
        scope_exit skip([&steps] { steps += 100; });
        skip.release();
    }
    EXPECT_EQ(steps, 1);
}

} // namespace
