// Twelve tab pages and a large one, on the real page frame, in a library of their own as the product's are. Each stores
// its edit as the property TEST_VALUE_<number>, refuses the text "bad" with a box, in its last edit too, asks about the text
// "doubtful", and refuses the way back while its edit holds "no way back". While the edit holds "own keys" it takes all keys that go down there for
// itself, and shows a box for F2.
#pragma once

#include "base/string.h"
#include "include/page_context.h"
#include "setup/program_libraries.h"

#include <vector>

constexpr int TEST_PAGES = 12;

// A message from the host to a page.
struct PageMessage
{
    int page;
    UINT message;
    WPARAM wParam;
    bool operator==(const PageMessage&) const = default;
};

// What was done to the pages, counted from 0.
struct PagesRecord
{
    std::vector<PageMessage> messages; // of the contract
    std::vector<int> created;
    std::vector<int> stored;          // validated
    std::vector<int> storedUnchecked; // for the way back
    std::vector<int> keys;            // whose filter saw a key
    std::vector<WPARAM> ownKeys;      // that a page used itself
    int alive = 0;
};

// To a page. wParam: whether it may be left; none: it shows a box without an owner.
constexpr UINT TEST_MESSAGE_ENABLE_LEAVING = WM_APP;
constexpr UINT TEST_MESSAGE_BOX = WM_APP + 1;

#if defined(TEST_TAB_PAGES_EXPORTS)
#define TEST_TAB_PAGES extern "C" __declspec(dllexport)
#else
#define TEST_TAB_PAGES extern "C" __declspec(dllimport)
#endif

TEST_TAB_PAGES PagesRecord& GetPagesRecord();
// The export of a page; TEST_PAGES gives the large one.
TEST_TAB_PAGES TabPageFunction GetTestPage(int page);
