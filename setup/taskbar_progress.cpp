#include "setup/taskbar_progress.h"

CTaskbarProgress::~CTaskbarProgress()
{
    if (m_pTaskbar) {
        m_pTaskbar->SetProgressState(m_hWindow, TBPF_NOPROGRESS);
    }
}

void CTaskbarProgress::Attach(HWND window)
{
    m_hWindow = window;
    if (FAILED(CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER, __uuidof(ITaskbarList3),
                                reinterpret_cast<void**>(m_pTaskbar.ReleaseAndGetAddressOf())))) {
        return;
    }
    if (FAILED(m_pTaskbar->HrInit())) {
        m_pTaskbar.Reset();
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
