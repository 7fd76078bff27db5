#include "setup/media_choice.h"

#include "base/handle.h"
#include "setup/paths.h"
#include "setup/resource.h"
#include "setup/texts.h"

#include <shlobj.h>

CString MediaBesideProgram()
{
    return FolderOfProgram() + L"Media";
}

CString AskForMedia()
{
    const CString title = SetupText(IDS_CHOOSE_MEDIA);
    BROWSEINFOW browse = {};
    browse.lpszTitle = title;
    browse.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE | BIF_NONEWFOLDERBUTTON;
    const CTaskOwner item(SHBrowseForFolderW(&browse));
    CString folder;
    // The list's own form of a path has room for long ones, which the older call would cut.
    const bool found = item && SHGetPathFromIDListEx(static_cast<PCIDLIST_ABSOLUTE>(item.get()),
                                                     folder.GetBuffer(32767), 32767, GPFIDL_DEFAULT);
    folder.ReleaseBuffer(found ? -1 : 0);
    return folder;
}
