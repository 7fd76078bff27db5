// A page with lists, on the real page frame, in both shapes: a tree of folders whose labels are edited and that has a context
// menu, files that are picked into the folder selected in it, updates that are downloaded by a thread while the page can't be
// left, an edit that only a check box lets be reached, and a caption without which the page can't be left.
//
// It refuses files that end in ".bad", labels with a question mark, empty ones and those that stand beside it already, the
// caption "bad", and downloads that begin with "broken"; it asks about a file that it has already, about deleting a folder,
// and about a logo that begins with "ask".
#pragma once

#include "base/string.h"
#include "include/page_context.h"
#include "setup/program_libraries.h"

#include <functional>
#include <vector>

constexpr wchar_t LIST_ROOT[] = L"<Installation Directory>";

struct ListPageRecord
{
    // What the page proposes.
    CString strCaption = L"Office";
    bool bBanner = false;
    std::vector<CString> folders;                  // below the root
    std::vector<std::pair<CString, CString>> rows; // folder and file
    DWORD downloadMilliseconds = 200;

    // Called with the page when it is asked to store, before it checks.
    std::function<void(HWND page)> onStore;
    // Called when the dialog for files has come back.
    std::function<void()> onPicked;
    int downloads = 0; // that have begun
};

#if defined(TEST_TAB_PAGES_EXPORTS)
#define TEST_LIST_PAGE extern "C" __declspec(dllexport)
#else
#define TEST_LIST_PAGE extern "C" __declspec(dllimport)
#endif

TEST_LIST_PAGE ListPageRecord& GetListPageRecord();
// Its exports.
TEST_LIST_PAGE int ListDialog(PageContext* context);
TEST_LIST_PAGE CTabPage ListPage(PageContext* context);
