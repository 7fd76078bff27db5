#include "files/select_file_dialog.h"

#include "frame/current_folder.h"
#include "frame/resource_text.h"
#include "include/resource_ids.h"

namespace {

constexpr std::size_t RESULT_CAPACITY = 260000; // characters
constexpr DWORD PICK_MANY = OFN_FILEMUSTEXIST | OFN_ALLOWMULTISELECT | OFN_NODEREFERENCELINKS;
static_assert(PICK_MANY == 0x101200);

} // namespace

CMSelectFileDialog::CMSelectFileDialog()
    : m_title(LoadResourceString(IDS_FILES_PICKER_TITLE)),
      m_filter(LoadResourceString(IDS_FILES_PICKER_FILTER)), m_buffer(RESULT_CAPACITY)
{
    m_filter.Replace(L'|', L'\0');
    m_ofn.lpstrTitle = m_title;
    m_ofn.lpstrFilter = m_filter;
    m_ofn.lpstrFile = m_buffer.data();
    m_ofn.nMaxFile = static_cast<DWORD>(m_buffer.size());
    m_ofn.Flags |= PICK_MANY;
}

bool CMSelectFileDialog::PickFiles()
{
    const CCurrentFolderKeeper currentFolder;
    if (DoModal() <= 0) {
        return false;
    }
    for (const wchar_t* position = GetStartPosition(); position;) {
        m_paths.push_back(GetNextPathName(position));
    }
    return true;
}

CString CMSelectFileDialog::GetNextPathName(const wchar_t*& position) const
{
    const PickerForm form = {(m_ofn.Flags & OFN_EXPLORER) != 0, (m_ofn.Flags & OFN_ALLOWMULTISELECT) != 0};
    return NextPickedPath(m_buffer.data(), form, position);
}
