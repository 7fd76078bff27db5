#include "setup/page_pictures.h"

#include "automation/picture.h"
#include "base/system_text.h"
#include "setup/paths.h"
#include "setup/resource.h"
#include "setup/run_log.h"
#include "setup/texts.h"

CString CPagePictures::Prepare() const
{
    const CString reason = m_strFolder.IsEmpty() ? CString() : MakeFolder(m_strFolder);
    return reason.IsEmpty() ? CString() : SetupText(IDS_PICTURES_FAILED, {m_strFolder, reason});
}

void CPagePictures::Take(HWND window, const CString& page, const wchar_t* suffix)
{
    if (m_strFolder.IsEmpty()) {
        return;
    }
    const CString number = NumberText(++m_nTaken);
    const CString path =
        m_strFolder + L"\\" + (number.GetLength() < 2 ? L"0" : L"") + number + L"-" + page + suffix + L".png";
    if (SaveWindowPicture(window, path)) {
        m_log.Line(L"Picture " + path);
    } else {
        m_log.Line(SetupText(IDS_PICTURES_FAILED, {path, SystemErrorText(GetLastError())}));
    }
}
