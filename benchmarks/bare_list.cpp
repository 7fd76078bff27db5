#include "benchmarks/bare_list.h"

#include "include/resource_ids.h"

#include <commctrl.h>

void FillBareList(HWND dialog, HMODULE texts)
{
    const HWND list = GetDlgItem(dialog, IDC_SHORTCUTS);
    if (!list) {
        return;
    }
    SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_GRIDLINES | LVS_EX_FULLROWSELECT);
    RECT client = {};
    GetClientRect(list, &client);
    const unsigned int captions[] = {IDS_SHORTCUT_NAME_COLUMN, IDS_SHORTCUT_SWITCHES_COLUMN};
    const unsigned int prompts[] = {IDS_SHORTCUT_NAME_PROMPT, IDS_SHORTCUT_SWITCHES_PROMPT};
    wchar_t text[256] = {};
    for (int column = 0; column < 2; ++column) {
        LoadStringW(texts, captions[column], text, 256);
        LVCOLUMNW made = {};
        made.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM;
        made.cx = client.right / 2;
        made.pszText = text;
        SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&made));
    }
    constexpr int ROWS = 5;
    for (int row = 0; row < ROWS; ++row) {
        LVITEMW item = {};
        item.mask = LVIF_TEXT;
        item.iItem = row;
        wchar_t nothing[] = L"";
        item.pszText = nothing;
        SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
    for (int column = 0; column < 2; ++column) {
        LoadStringW(texts, prompts[column], text, 256);
        LVITEMW item = {};
        item.iSubItem = column;
        item.pszText = text;
        SendMessageW(list, LVM_SETITEMTEXTW, 0, reinterpret_cast<LPARAM>(&item));
    }
    LoadStringW(texts, IDS_WORKSTATION_HEADING, text, 256);
    SetDlgItemTextW(dialog, IDC_WORKSTATION_HEADING, text);
}
