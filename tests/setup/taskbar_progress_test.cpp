// What the button in the taskbar is set to.
#include "base/string.h"
#include "setup/taskbar_progress.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>
#include <objbase.h>
#include <shobjidl.h>

#include <vector>

namespace {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // interfaces have none, and nobody deletes by them here
// Stands in for the shell's, which a hidden display doesn't have.
class RecordingTaskbar final : public ITaskbarList3, public IClassFactory
{
public:
    std::vector<CString> calls;

    HRESULT WINAPI QueryInterface(REFIID id, void** object) override
    {
        const bool factory = id == IID_IClassFactory;
        *object = factory ? static_cast<void*>(static_cast<IClassFactory*>(this))
                          : static_cast<void*>(static_cast<ITaskbarList3*>(this));
        return S_OK;
    }
    ULONG WINAPI AddRef() override { return 2; } // lives on the test's stack
    ULONG WINAPI Release() override { return 1; }
    HRESULT WINAPI CreateInstance(IUnknown*, REFIID id, void** object) override
    {
        return QueryInterface(id, object);
    }
    HRESULT WINAPI LockServer(BOOL) override { return S_OK; }

    HRESULT WINAPI SetProgressValue(HWND, ULONGLONG done, ULONGLONG total) override
    {
        calls.push_back(NumberText(static_cast<long long>(done)) + L" of " +
                        NumberText(static_cast<long long>(total)));
        return S_OK;
    }
    HRESULT WINAPI SetProgressState(HWND, TBPFLAG state) override
    {
        calls.push_back(L"state " + NumberText(state));
        return S_OK;
    }

    HRESULT WINAPI HrInit() override { return S_OK; }
    HRESULT WINAPI AddTab(HWND) override { return S_OK; }
    HRESULT WINAPI DeleteTab(HWND) override { return S_OK; }
    HRESULT WINAPI ActivateTab(HWND) override { return S_OK; }
    HRESULT WINAPI SetActiveAlt(HWND) override { return S_OK; }
    HRESULT WINAPI MarkFullscreenWindow(HWND, WINBOOL) override { return S_OK; }
    HRESULT WINAPI RegisterTab(HWND, HWND) override { return S_OK; }
    HRESULT WINAPI UnregisterTab(HWND) override { return S_OK; }
    HRESULT WINAPI SetTabOrder(HWND, HWND) override { return S_OK; }
    HRESULT WINAPI SetTabActive(HWND, HWND, DWORD) override { return S_OK; }
    HRESULT WINAPI ThumbBarAddButtons(HWND, UINT, LPTHUMBBUTTON) override { return S_OK; }
    HRESULT WINAPI ThumbBarUpdateButtons(HWND, UINT, LPTHUMBBUTTON) override { return S_OK; }
    HRESULT WINAPI ThumbBarSetImageList(HWND, HIMAGELIST) override { return S_OK; }
    HRESULT WINAPI SetOverlayIcon(HWND, HICON, LPCWSTR) override { return S_OK; }
    HRESULT WINAPI SetThumbnailTooltip(HWND, LPCWSTR) override { return S_OK; }
    HRESULT WINAPI SetThumbnailClip(HWND, RECT*) override { return S_OK; }
};

#pragma GCC diagnostic pop

TEST(TaskbarProgress, TheButtonShowsTheShareAndNothingOnceTheWorkIsDone)
{
    ASSERT_TRUE(SUCCEEDED(CoInitialize(nullptr)));
    RecordingTaskbar taskbar;
    DWORD registered = 0;
    ASSERT_EQ(CoRegisterClassObject(CLSID_TaskbarList, static_cast<IClassFactory*>(&taskbar),
                                    CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &registered),
              S_OK);
    {
        CTaskbarProgress progress;
        progress.Attach(GetDesktopWindow());
        progress.ShowUnknown();
        progress.Show(260);
    }
    CoRevokeClassObject(registered);
    CoUninitialize();
    EXPECT_EQ(taskbar.calls, (std::vector<CString>{L"state " + NumberText(TBPF_INDETERMINATE), L"260 of 1000",
                                                   L"state " + NumberText(TBPF_NOPROGRESS)}));
}

} // namespace
