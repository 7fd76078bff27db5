// Learns which message boxes of the calling thread are answered, and by which button, whoever answers them: a click, a key
// or a program.
#pragma once

#include "automation/message_box.h"

#include <windows.h>

#include <functional>
#include <vector>

class CBoxWatch
{
public:
    // `button`: id of the button that ended the box, which is about to go.
    using Handler = std::function<void(const MessageBoxView& box, int button)>;

    // One object at a time, as a hook has no argument of its own. Boxes that are up already aren't seen.
    explicit CBoxWatch(Handler onAnswered);
    ~CBoxWatch();
    CBoxWatch(const CBoxWatch&) = delete;
    CBoxWatch& operator=(const CBoxWatch&) = delete;

private:
    struct OpenBox
    {
        MessageBoxView view;
        int nButton = 0; // that was pressed last; 0: none yet
    };

    static LRESULT CALLBACK OnHook(int code, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK BoxProcedure(HWND box, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                         DWORD_PTR data);
    void OnActivated(HWND window) noexcept;
    void OnPressed(HWND box, int button);
    void OnGone(HWND box) noexcept;

    static CBoxWatch* s_current;

    Handler m_onAnswered;
    HHOOK m_hook = nullptr;
    std::vector<OpenBox> m_open;
};
