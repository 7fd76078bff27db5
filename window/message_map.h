// The message map: which member function answers which message.
//
//   CMessageMap                                  the one operation that a map defines
//   BEGIN_MSG_MAP, END_MSG_MAP                   the frame of a map
//   MESSAGE_HANDLER, MESSAGE_RANGE_HANDLER       LRESULT OnX(UINT, WPARAM, LPARAM, BOOL& handled)
//   COMMAND_HANDLER and its kin                  LRESULT OnX(WORD code, WORD id, HWND control, BOOL& handled)
//   NOTIFY_HANDLER and its kin                   LRESULT OnX(int id, NMHDR* header, BOOL& handled)
//   REFLECTED_...                                the same for messages that the parent reflected
//   CHAIN_MSG_MAP                                go on in the map of a base
//   REFLECT_NOTIFICATIONS                        return a control's notifications to the control
//
// `handled` is true when the handler is called; a handler that sets it to false lets the map go on.
#pragma once

#include <windows.h>

#include <commctrl.h>

// Added to a notification that goes back to its control; the value of OCM__BASE in the controls' header.
constexpr UINT reflectionOffset = 0x2000;

class CMessageMap
{
public:
    // True when the message was answered; the answer is in `result`.
    virtual BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                      LRESULT& result, DWORD mapId = 0) = 0;

protected:
    ~CMessageMap() = default;
};

#define BEGIN_MSG_MAP(theClass)                                                                              \
    BOOL ProcessWindowMessage(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam, LRESULT& lResult,          \
                              DWORD dwMsgMapID = 0) override                                                 \
    {                                                                                                        \
        BOOL bHandled = TRUE;                                                                                \
        (void)bHandled, (void)hWnd, (void)uMsg, (void)wParam, (void)lParam, (void)lResult;                   \
        switch (dwMsgMapID) {                                                                                \
        case 0:

#define END_MSG_MAP()                                                                                        \
    break;                                                                                                   \
    default:                                                                                                 \
        break;                                                                                               \
        }                                                                                                    \
        return FALSE;                                                                                        \
        }

// One entry: when the condition holds, the call answers.
#define MSG_MAP_ENTRY(condition, call)                                                                       \
    if (condition) {                                                                                         \
        bHandled = TRUE;                                                                                     \
        lResult = call;                                                                                      \
        if (bHandled) {                                                                                      \
            return TRUE;                                                                                     \
        }                                                                                                    \
    }
#define MSG_MAP_COMMAND(offset, condition, func)                                                             \
    MSG_MAP_ENTRY(uMsg == WM_COMMAND + (offset) && (condition),                                              \
                  func(HIWORD(wParam), LOWORD(wParam), reinterpret_cast<HWND>(lParam), bHandled))
#define MSG_MAP_NOTIFY(offset, condition, func)                                                              \
    MSG_MAP_ENTRY(uMsg == WM_NOTIFY + (offset) && (condition),                                               \
                  func(static_cast<int>(wParam), reinterpret_cast<NMHDR*>(lParam), bHandled))

#define MESSAGE_HANDLER(msg, func) MSG_MAP_ENTRY(uMsg == (msg), func(uMsg, wParam, lParam, bHandled))
#define MESSAGE_RANGE_HANDLER(first, last, func)                                                             \
    MSG_MAP_ENTRY(uMsg >= (first) && uMsg <= (last), func(uMsg, wParam, lParam, bHandled))

#define COMMAND_HANDLER(id, code, func)                                                                      \
    MSG_MAP_COMMAND(0, LOWORD(wParam) == (id) && HIWORD(wParam) == (code), func)
#define COMMAND_ID_HANDLER(id, func) MSG_MAP_COMMAND(0, LOWORD(wParam) == (id), func)
#define COMMAND_CODE_HANDLER(code, func) MSG_MAP_COMMAND(0, HIWORD(wParam) == (code), func)

#define MSG_MAP_NOTIFY_ID(id) (reinterpret_cast<NMHDR*>(lParam)->idFrom == static_cast<UINT_PTR>(id))
#define MSG_MAP_NOTIFY_CODE(cd) (reinterpret_cast<NMHDR*>(lParam)->code == static_cast<UINT>(cd))
#define NOTIFY_HANDLER(id, cd, func) MSG_MAP_NOTIFY(0, MSG_MAP_NOTIFY_ID(id) && MSG_MAP_NOTIFY_CODE(cd), func)
#define NOTIFY_CODE_HANDLER(cd, func) MSG_MAP_NOTIFY(0, MSG_MAP_NOTIFY_CODE(cd), func)

#define REFLECTED_COMMAND_CODE_HANDLER(code, func)                                                           \
    MSG_MAP_COMMAND(reflectionOffset, HIWORD(wParam) == (code), func)
#define REFLECTED_NOTIFY_CODE_HANDLER(cd, func)                                                              \
    MSG_MAP_NOTIFY(reflectionOffset, MSG_MAP_NOTIFY_CODE(cd), func)

#define CHAIN_MSG_MAP(theBase)                                                                               \
    if (theBase::ProcessWindowMessage(hWnd, uMsg, wParam, lParam, lResult)) {                                \
        return TRUE;                                                                                         \
    }

#define REFLECT_NOTIFICATIONS()                                                                              \
    MSG_MAP_ENTRY(true, this->ReflectNotifications(uMsg, wParam, lParam, bHandled))
#define DEFAULT_REFLECTION_HANDLER()                                                                         \
    if (DefaultReflectionHandler(hWnd, uMsg, wParam, lParam, lResult)) {                                     \
        return TRUE;                                                                                         \
    }

// The control that a notification to its parent comes from; null when the message is none, or comes from a menu.
HWND NotifyingControl(HWND parent, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

// What a control does with its reflected notifications when it doesn't answer them itself: the default procedure sees
// the original message. False for other messages.
BOOL DefaultReflectionHandler(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                              LRESULT& result) noexcept;
