#include "setup/taskbar_progress.h"

#include <shobjidl.h>

CTaskbarProgress::~CTaskbarProgress()
{
    if (m_pTaskbar) {
        m_pTaskbar->SetProgressState(m_hWindow, TBPF_NOPROGRESS);
        m_pTaskbar->Release();
    }
}

void CTaskbarProgress::Attach(HWND window)
{
    m_hWindow = window;
    void* taskbar = nullptr;
    if (FAILED(CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER, __uuidof(ITaskbarList3),
                                &taskbar))) {
        return;
    }
    m_pTaskbar = static_cast<ITaskbarList3*>(taskbar);
    if (FAILED(m_pTaskbar->HrInit())) {
        m_pTaskbar->Release();
        m_pTaskbar = nullptr;
    }
}

void CTaskbarProgress::Show(int thousandths)
{
    if (m_pTaskbar) {
        m_pTaskbar->SetProgressValue(m_hWindow, static_cast<ULONGLONG>(thousandths), 1000);
    }
}

void CTaskbarProgress::ShowUnknown()
{
    if (m_pTaskbar) {
        m_pTaskbar->SetProgressState(m_hWindow, TBPF_INDETERMINATE);
    }
}
