#include "tests/by_hand/foreign_tree.h"

CForeignTree::CForeignTree(HWND tree) : m_tree(tree)
{
    DWORD process = 0;
    GetWindowThreadProcessId(tree, &process);
    m_process.reset(OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, process));
    m_remote = static_cast<Request*>(
        VirtualAllocEx(m_process.get(), nullptr, sizeof(Request), MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE));
}

CForeignTree::~CForeignTree()
{
    VirtualFreeEx(m_process.get(), m_remote, 0, MEM_RELEASE);
}

CString CForeignTree::GetSelectedText() const
{
    Request request = {};
    request.item.mask = TVIF_TEXT;
    request.item.hItem = GetSelection();
    request.item.pszText = m_remote->text;
    request.item.cchTextMax = MAX_PATH;
    if (!request.item.hItem ||
        !WriteProcessMemory(m_process.get(), m_remote, &request, sizeof request, nullptr) ||
        !SendMessageW(m_tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&m_remote->item)) ||
        !ReadProcessMemory(m_process.get(), m_remote, &request, sizeof request, nullptr)) {
        return CString();
    }
    request.text[MAX_PATH - 1] = 0;
    return request.text;
}

bool CForeignTree::HasOpenSelection() const
{
    const LPARAM item = reinterpret_cast<LPARAM>(GetSelection());
    return (SendMessageW(m_tree, TVM_GETITEMSTATE, static_cast<WPARAM>(item), TVIS_EXPANDED) &
            TVIS_EXPANDED) != 0;
}
