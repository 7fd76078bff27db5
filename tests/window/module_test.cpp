#include "tests/window/fixture.h"
#include "tests/window/memory.h"
#include "window/window_impl.h"

#include <stdexcept>
#include <thread>

namespace {

class ModuleTest : public WindowTest
{
};

HINSTANCE Fake(ULONG_PTR value)
{
    return reinterpret_cast<HINSTANCE>(value);
}

class CModuleTestWindow : public CWindowImpl<CModuleTestWindow>
{
public:
    DECLARE_WND_CLASS(L"ModuleTestWindow")
    BEGIN_MSG_MAP(CModuleTestWindow)
    END_MSG_MAP()
};

bool IsClassRegistered()
{
    WNDCLASSEXW info = {};
    info.cbSize = sizeof info;
    return GetClassInfoExW(GetModuleHandleW(nullptr), L"ModuleTestWindow", &info) != FALSE;
}

TEST_F(ModuleTest, ResourcesComeFromTheBinaryItselfAtFirst)
{
    EXPECT_EQ(_Module.GetResourceInstance(), GetModuleHandleW(nullptr));
}

TEST_F(ModuleTest, SettingTheResourceInstanceReturnsTheFormerOne)
{
    EXPECT_EQ(_Module.SetResourceInstance(Fake(0x1000)), GetModuleHandleW(nullptr));
    EXPECT_EQ(_Module.SetResourceInstance(Fake(0x2000)), Fake(0x1000));
}

TEST_F(ModuleTest, NestedSwapsRestoreWhatEachFound)
{
    {
        const CResourceInstanceSwap outer(Fake(0x1000));
        {
            const CResourceInstanceSwap inner(Fake(0x2000));
            EXPECT_EQ(_Module.GetResourceInstance(), Fake(0x2000));
        }
        EXPECT_EQ(_Module.GetResourceInstance(), Fake(0x1000));
    }
    EXPECT_EQ(_Module.GetResourceInstance(), GetModuleHandleW(nullptr));
}

TEST_F(ModuleTest, ASwapIsUndoneWhenAnExceptionPasses)
{
    try {
        const CResourceInstanceSwap swap(Fake(0x1000));
        throw std::runtime_error("page");
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(_Module.GetResourceInstance(), GetModuleHandleW(nullptr));
}

TEST_F(ModuleTest, AThreadFindsItsOwnLoopAndNoOther)
{
    CMessageLoop loop;
    ASSERT_TRUE(_Module.AddMessageLoop(&loop));
    CMessageLoop* foundElsewhere = &loop;
    std::thread([&foundElsewhere] { foundElsewhere = _Module.GetMessageLoop(); }).join();
    EXPECT_EQ(_Module.GetMessageLoop(), &loop);
    EXPECT_EQ(foundElsewhere, nullptr);
}

TEST_F(ModuleTest, ARemovedLoopIsFoundNoMore)
{
    CMessageLoop loop;
    ASSERT_TRUE(_Module.AddMessageLoop(&loop));
    EXPECT_TRUE(_Module.RemoveMessageLoop());
    EXPECT_EQ(_Module.GetMessageLoop(), nullptr);
    EXPECT_FALSE(_Module.RemoveMessageLoop());
}

TEST_F(ModuleTest, AddingALoopWithoutMemoryReportsFailure)
{
    CMessageLoop loop;
    BOOL added = TRUE;
    {
        const CNoMemory noMemory;
        added = _Module.AddMessageLoop(&loop);
    }
    EXPECT_FALSE(added);
    EXPECT_EQ(_Module.GetMessageLoop(), nullptr);
}

TEST_F(ModuleTest, TermUnregistersTheWindowClassesSoThatTheBinaryCanGo)
{
    {
        CModuleTestWindow window;
        ASSERT_NE(window.Create(nullptr, nullptr, nullptr, WS_POPUP), nullptr);
        EXPECT_TRUE(IsClassRegistered());
    }
    _Module.Term();
    EXPECT_FALSE(IsClassRegistered());
}

} // namespace
