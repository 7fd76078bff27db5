#include "patches/patch_file_dialog.h"

#include "frame/current_folder.h"
#include "frame/file_browser.h"
#include "frame/resource_text.h"
#include "include/resource_ids.h"
#include "window/file_dialog.h"

namespace {

constexpr DWORD PICKER_FLAGS = OFN_EXPLORER | OFN_ENABLEHOOK | OFN_ENABLESIZING;
static_assert(PICKER_FLAGS == 0x880020);
constexpr DWORD PATH_CAPACITY = 260;
constexpr DWORD TITLE_CAPACITY = 256;

class CPatchFileDialog : public CFileDialogImpl<CPatchFileDialog>
{
public:
    CPatchFileDialog()
    {
        // Kept for the length of the process, in the language in which they were read first.
        static const CString filter = FileFilter(
            {IDS_PATCH_FILTER, IDS_PATCH_FILTER_PATTERN, IDS_ALL_FILES_FILTER, IDS_ALL_FILES_FILTER_PATTERN});
        static const CString ending = LoadResourceString(IDS_PATCH_FILTER_PATTERN);
        m_ofn.Flags = PICKER_FLAGS;
        m_ofn.lpstrFilter = filter;
        m_ofn.lpstrDefExt = ending;
        m_ofn.lpstrFile = m_path;
        m_ofn.nMaxFile = PATH_CAPACITY;
        m_ofn.lpstrFileTitle = m_title;
        m_ofn.nMaxFileTitle = TITLE_CAPACITY;
    }

    BEGIN_MSG_MAP(CPatchFileDialog)
    END_MSG_MAP()

    [[nodiscard]] const wchar_t* Path() const { return m_path; }

private:
    wchar_t m_path[PATH_CAPACITY] = {};
    wchar_t m_title[TITLE_CAPACITY] = {};
};

} // namespace

bool BrowseForPatch(HWND owner, CString& file)
{
    const CCurrentFolderKeeper currentFolder;
    CPatchFileDialog dialog;
    if (dialog.DoModal(owner) != IDOK) {
        return false;
    }
    file = dialog.Path();
    return true;
}
