// A dialog with one control of each kind, which records its commands, and a script that is played in its message loop.
#pragma once

#include "automation/script.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <optional>
#include <vector>

constexpr int ID_EDIT = 101;
constexpr int ID_LIST = 102;
constexpr int ID_COMBO = 103;
constexpr int ID_TREE = 104;
constexpr int ID_CHECK = 105;
constexpr int ID_DISABLED = 106;

struct Command
{
    int id;
    int code;
    bool operator==(const Command&) const = default;
};

class CDialogFixture : public testing::Test
{
protected:
    CDialogFixture()
    {
        dialog = CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(100), nullptr, Procedure,
                                    reinterpret_cast<LPARAM>(this));
        ShowWindow(dialog, SW_SHOW);
    }
    ~CDialogFixture() override { DestroyWindow(dialog); }

    void Play()
    {
        script.Add(L"leave the loop", [] {
            PostQuitMessage(0);
            return StepOutcome::Done();
        });
        PlayUntilTheLoopIsLeft();
    }

    void PlayUntilTheLoopIsLeft()
    {
        script.SetFailureHandler([] {
            EndMenu(); // the loop of a menu does not end with the thread's
            PostQuitMessage(1);
        });
        script.Start();
        for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;) {
            if (dialogFilter)
                dialogFilter(message);
            if (!IsDialogMessageW(dialog, &message)) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
        }
    }

    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (message == WM_INITDIALOG)
            SetWindowLongPtrW(window, DWLP_USER, lParam);
        CDialogFixture* fixture = reinterpret_cast<CDialogFixture*>(GetWindowLongPtrW(window, DWLP_USER));
        if (message == WM_COMMAND && fixture)
            fixture->commands.push_back({LOWORD(wParam), HIWORD(wParam)});
        if (message == WM_COMMAND && LOWORD(wParam) == ID_CHECK && fixture && fixture->onCheck)
            fixture->onCheck();
        if (message == WM_NOTIFY && fixture && fixture->onNotify)
            SetWindowLongPtrW(window, DWLP_MSGRESULT, fixture->onNotify(*reinterpret_cast<NMHDR*>(lParam)));
        if (message == WM_CONTEXTMENU && fixture)
            fixture->contextMenuPlace = lParam;
        return message == WM_INITDIALOG || (message == WM_NOTIFY && fixture && fixture->onNotify);
    }

    int Count(Command wanted) const
    {
        int count = 0;
        for (const Command& command : commands)
            count += command == wanted;
        return count;
    }

    HWND dialog = nullptr;
    std::vector<Command> commands;
    std::function<void()> onCheck;
    std::function<LRESULT(NMHDR& header)> onNotify;
    std::optional<LPARAM> contextMenuPlace;
    std::function<void(const MSG& message)> dialogFilter; // sees each message first
    CScript script;
};
