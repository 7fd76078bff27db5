#include "builder/build_failure.h"

namespace {

struct Remedy
{
    unsigned int code;
    const wchar_t* text;
};

const Remedy g_remedies[] = {
    {0, L"Nothing needs to be done."},
    {2, L"Check that the file is still there, and that the media are complete."},
    {3, L"Check that the folder is still there and that its drive or share is connected."},
    {5, L"Check the permissions of the folder, and that no computer has one of its files open."},
    {19, L"The medium is write-protected. Choose a location that can be written to."},
    {21, L"The drive is not ready. Insert the medium again, or connect the drive."},
    {23, L"The medium is damaged at this place. Clean it, or copy the file from another source."},
    {29, L"The disk or share could not take the data. Check it, and start the build again."},
    {30, L"The medium could not be read at this place. Check it, or use another copy of it."},
    {32, L"Another program or computer has the file open. Close it there, and start the build again."},
    {33, L"Another program or computer has locked a part of the file. Close it there, and start the build "
         L"again."},
    {39, L"Free space on the disk, or choose another location."},
    {53, L"Check the name of the server, and that this computer reaches it."},
    {59, L"The connection to the share was lost. Check the network, and start the build again."},
    {64, L"The connection to the share was lost. Check the network, and start the build again."},
    {67, L"Check the name of the share."},
    {87, L"This is a defect of the program or of its settings. Keep the log and report it."},
    {110, L"Check that the file is there and that no program has it open."},
    {112, L"Free space on the disk, or choose another location."},
    {121, L"The connection to the share was lost. Check the network, and start the build again."},
    {123, L"Choose another name."},
    {145, L"Another program put files into the folder. Remove them by hand."},
    {161, L"Choose another path."},
    {170, L"Wait until the other build is done, or end it on the computer where it runs."},
    {183, L"Choose another name, or modify the deployment that is there."},
    {206, L"Choose a location with a shorter path, or a shorter name."},
    {223, L"Remove the file from the additional files, or add it in smaller parts."},
    {267, L"Choose a folder as the location."},
    {1006, L"On the service pack page, remove the patch from the list and add it again."},
    {1113, L"Choose names in letters of that code page."},
    {1117, L"The disk could not do this. Check it, and start the build again."},
    {1223, L"Start the build again when you are ready."},
    {1231, L"The network can't be reached. Check the connection."},
    {1602, L"Start the build again when you are ready."},
    {1603, L"See the log for the step that failed."},
    {1620, L"The database is damaged. Get the media again."},
    {1636, L"Remove the patch from the list of the service pack page, or get it from its maker again."},
    {1642, L"Remove the patch from the list of the service pack page."},
};

} // namespace

CString RemedyOf(unsigned int code)
{
    for (const Remedy& remedy : g_remedies) {
        if (remedy.code == code) {
            return remedy.text;
        }
    }
    return L"See the log for the step that failed, correct the problem, and start the build again.";
}

CString DescribeFailure(const CString& operation, const CString& path, unsigned int code,
                        const CString& systemText)
{
    CString reason = systemText;
    reason.Trim();
    reason.TrimRight(L".");
    CString text = operation + L" \"" + path + L"\" failed";
    if (!reason.IsEmpty()) {
        text += L": " + reason;
    }
    return text + L" (code " + NumberText(code) + L"). " + RemedyOf(code);
}
