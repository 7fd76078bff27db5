// Numbered pictures of what an unattended run showed: "01-BeginDeploymentDialog.png", "02-...-box.png".
#pragma once

#include "base/string.h"

#include <windows.h>

class CRunLog;

class CPagePictures
{
public:
    // `folder`: full path without a backslash; empty takes no pictures.
    CPagePictures(const CString& folder, CRunLog& log) : m_strFolder(folder), m_log(log) {}

    // The empty text, or why the folder can't be made.
    [[nodiscard]] CString Prepare() const;
    // `suffix` follows the page's name. A picture that fails is noted in the log; the run goes on.
    void Take(HWND window, const CString& page, const wchar_t* suffix = L"");

private:
    CString m_strFolder;
    CRunLog& m_log;
    int m_nTaken = 0;
};
