#include "frame/page_entry.h"

#include "frame/error_text.h"

#include <cstring>
#include <exception>

namespace {

constexpr wchar_t TITLE[] = L"Error";

CString WhatFailed()
{
    try {
        throw;
    } catch (const std::exception& exception) {
        const char* what = exception.what();
        return TextFromUtf8(what, std::strlen(what));
    } catch (...) {
        return L"unknown error";
    }
}

void DiscardQuitMessage() noexcept
{
    MSG message = {};
    ::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
}

} // namespace

void ShowPageException() noexcept
{
    DiscardQuitMessage();
    try {
        ::MessageBoxW(nullptr, L"The page had to be closed: " + WhatFailed(), TITLE, MB_OK | MB_ICONERROR);
    } catch (...) {
        ::MessageBoxW(nullptr, L"The page had to be closed: out of memory", TITLE, MB_OK | MB_ICONERROR);
    }
}

void ShowDialogFailure(int dialogId, DWORD error)
{
    DiscardQuitMessage();
    const CString reason = error ? MessageForCode(error) : CString();
    ::MessageBoxW(nullptr, L"Failed to create dialog " + NumberText(dialogId) + L"\n" + reason, TITLE,
                  MB_OK | MB_ICONERROR);
}
