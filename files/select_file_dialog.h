// The file picker of the additional files, by which many files are chosen at once.
#pragma once

#include "files/picked_paths_rules.h"
#include "window/file_dialog.h"

#include <vector>

class CMSelectFileDialog : public CFileDialogImpl<CMSelectFileDialog>
{
public:
    CMSelectFileDialog();

    BEGIN_MSG_MAP(CMSelectFileDialog)
    END_MSG_MAP()

    // Shows the picker over the active window. False when it was canceled.
    [[nodiscard]] bool PickFiles();
    // In the picker's order.
    const std::vector<CString>& GetPaths() const { return m_paths; }

    const wchar_t* GetStartPosition() const { return m_buffer.data(); }
    // The next chosen path; `position` becomes null behind the last.
    CString GetNextPathName(const wchar_t*& position) const;

private:
    CString m_title;
    CString m_filter;
    std::vector<wchar_t> m_buffer;
    std::vector<CString> m_paths;
};
