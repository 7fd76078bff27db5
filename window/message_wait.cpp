#include "window/message_wait.h"

#include "window/callback_exception.h"

WaitEnd WaitWithMessages(HANDLE object)
{
    CExceptionBoundary boundary;
    for (;;) {
        // Counts what waits already, also of a kind that was looked at before.
        const DWORD woken =
            MsgWaitForMultipleObjectsEx(1, &object, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        if (woken != WAIT_OBJECT_0 + 1) {
            return woken == WAIT_OBJECT_0 ? WaitEnd::Signaled : WaitEnd::Failed;
        }
        MSG message = {};
        if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) {
                PostQuitMessage(static_cast<int>(message.wParam));
                return WaitEnd::Quit;
            }
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        boundary.Rethrow();
    }
}
