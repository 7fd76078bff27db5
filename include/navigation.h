// Results of a page and the messages between a tab page and its host.
#pragma once

// Results of a ...Dialog function. The button results are the buttons' control ids.
enum NavigationResult : int
{
    NAVIGATION_NEXT = 1,
    NAVIGATION_CANCEL = 2,
    NAVIGATION_BACK = 1001,
    NAVIGATION_RESET = 1278,
    // The page could not be shown or had to be closed, after a box: the resource library could not be loaded, the dialog
    // could not be made, or something was thrown.
    NAVIGATION_LOAD_FAILED = 1603,
};

// A leave hook's word that the page stays.
constexpr int HOOK_VETO = 2;

// Installer results that the setup carries.
constexpr unsigned int EXIT_CODE_CANCELLED = 1602;
constexpr unsigned int EXIT_CODE_FAILED = 1603;

// From a tab page to its parent window; both parameters 0.
constexpr unsigned int PAGE_MESSAGE_PREVIOUS_TAB = 1025;
constexpr unsigned int PAGE_MESSAGE_NEXT_TAB = 1026;
// From a tab page to its parent window, for a key on the page that the page has no use of its own for; lParam, the MSG.
// Nonzero when the host has used it, as one that leads out of the page. A window that doesn't know the message answers 0,
// and the page goes on with the key by itself.
constexpr unsigned int PAGE_MESSAGE_KEY = 1032;
// From the host to a tab page: validate and store, without moving. The result is 1 unless a hook vetoed, the page
// refused what stands in it, or the page was busy.
constexpr unsigned int PAGE_MESSAGE_STORE = 1027;
constexpr unsigned int PAGE_MESSAGE_STORE_ALL = 1028;
// From the host to a tab page: low word of wParam the page's index, high word the number of pages.
constexpr unsigned int PAGE_MESSAGE_COUNTER = 1030;
// To a wizard page: lParam, a wide text for the side pane.
constexpr unsigned int PAGE_MESSAGE_SIDE_PANE = 1031;
