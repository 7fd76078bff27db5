#include "msi/user_file_writer.h"

#include "base/guid_text.h"
#include "installer/user_feature.h"
#include "msi/msi_rows.h"
#include "msi/statement_text.h"

#include <windows.h>

#include <shlwapi.h>

bool g_bUserFeatureExists = false;

namespace {

constexpr int FEATURE_HIDDEN = 0; // Display
constexpr int FEATURE_LEVEL = 1;
constexpr int FEATURE_ATTRIBUTES = 16;
constexpr int COMPONENT_64_BIT = 256;
constexpr int ACTION_SET_PROPERTY = 51;
constexpr int FIRST_IN_SEQUENCE = 1;
constexpr int CUSTOM_FILE = 0; // Flags of TarnCustomFile
constexpr int CUSTOM_FOLDER = 2;
constexpr wchar_t SUBSTITUTE_SUFFIX[] = L"_SUBST"; // of the property that holds a user drive's letter
constexpr DWORD SHORT_NAME_CAPACITY = 260;

struct UserKey
{
    CString key;
    CString guidText; // what the key has behind its prefix, with hyphens
};

UserKey NewUserKey()
{
    UserKey made;
    made.guidText = NewGuidText();
    made.key = FillTemplate(L"%s%s", {TARN_KEY_PREFIX, made.guidText});
    made.key.Replace(L'-', L'_');
    return made;
}

CString DriveDirectoryName(const CString& upperCaseDrive)
{
    return L"DRIVE_" + upperCaseDrive.Left(1);
}

// "short|long" from the bare name, so the short form is that of a file in the current folder, and seldom another one.
CString InstallerFileName(const CString& name)
{
    wchar_t buffer[SHORT_NAME_CAPACITY + 1] = L"";
    const DWORD length = GetShortPathNameW(name, buffer, SHORT_NAME_CAPACITY);
    const bool filled = length > 0 && length < SHORT_NAME_CAPACITY;
    return FillTemplate(L"%s|%s", {filled ? CString(buffer) : name, name});
}

// The low 32 bits of the size in bytes, as far as the column goes; 0 when the file can't be opened. Those of exactly 2 GB
// are the service's null, which the column refuses.
int FileSizeOf(const CString& path)
{
    const CFileOwner file(
        CreateFileW(path, FILE_READ_ATTRIBUTES, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER size = {};
    if (!file || !GetFileSizeEx(file.get(), &size)) {
        return 0;
    }
    return static_cast<int>(size.LowPart);
}

bool IsNullOrEmpty(const wchar_t* text)
{
    return !text || !*text;
}

} // namespace

// ---- one row each ----------------------------------------------------------------------------------------------------

bool CUserFileWriter::EnsureUserFeature()
{
    if (g_bUserFeatureExists) {
        return true;
    }
    if (Product->m_pFeatureManager && Product->m_pFeatureManager->FindFeature(USER_FEATURE)) {
        g_bUserFeatureExists = true;
        return true;
    }
    FeatureData row;
    row.Feature = USER_FEATURE;
    row.Title = L"User Deployment Files";
    row.Description = L"User deployment files.";
    row.Display = FEATURE_HIDDEN;
    row.Level = FEATURE_LEVEL;
    row.Directory_ = L"INSTALLDIR";
    row.Attributes = FEATURE_ATTRIBUTES;
    g_bUserFeatureExists = row.Execute(Database);
    return g_bUserFeatureExists;
}

bool CUserFileWriter::WriteComponent(const CString& component, const CString& guidText,
                                     const CString& directory, MsiRowAction action)
{
    ComponentData row;
    row.m_action = action;
    row.Component = component;
    row.ComponentId = FillTemplate(L"{%s}", {guidText});
    row.Directory_ = directory;
    row.Attributes = Product->m_x64Marker > 0 ? COMPONENT_64_BIT : 0;
    return row.Execute(Database); // without a key path: the folder is it, also for a file
}

bool CUserFileWriter::WriteCreateFolder(const CString& directory, const CString& component,
                                        MsiRowAction action)
{
    CreateFolderData row;
    row.m_action = action;
    row.Directory_ = directory;
    row.Component_ = component;
    return row.Execute(Database);
}

bool CUserFileWriter::WriteDirectory(const CString& key, const CString& parent, const CString& defaultDir,
                                     MsiRowAction action)
{
    DirectoryData row;
    row.m_action = action;
    row.Directory = key;
    row.Directory_Parent = parent;
    row.DefaultDir = defaultDir;
    return row.Execute(Database);
}

bool CUserFileWriter::WriteFeatureComponent(const CString& component, MsiRowAction action)
{
    FeatureComponentsData row;
    row.m_action = action;
    row.Feature_ = USER_FEATURE;
    row.Component_ = component;
    return row.Execute(Database);
}

bool CUserFileWriter::WriteFile(const CString& key, const CString& sourcePath, MsiRowAction action)
{
    FileData row;
    row.m_action = action;
    row.File = key;
    row.Component_ = key;
    row.FileName = InstallerFileName(PathFindFileNameW(sourcePath));
    row.FileSize = FileSizeOf(sourcePath);
    // A delete gives back the last number whatever the row's own was, so the next file may get one that is in use. The
    // host numbers the files anew when it builds.
    if (action == MsiRowAction::Insert) {
        ++Product->m_fileSequence;
    } else if (action == MsiRowAction::Delete) {
        --Product->m_fileSequence;
    }
    row.Sequence = Product->m_fileSequence;
    return row.Execute(Database);
}

bool CUserFileWriter::WriteCustomFile(const CString& component, const CString& source, int flags,
                                      MsiRowAction action)
{
    CustomFileData row;
    row.m_action = action;
    row.Component_ = component;
    row.SourceFileName = source;
    row.Flags = flags;
    return row.Execute(Database);
}

bool CUserFileWriter::WriteCustomAction(const CString& actionName, const CString& target, MsiRowAction action)
{
    CustomActionData row;
    row.m_action = action;
    row.Action = actionName;
    row.Type = ACTION_SET_PROPERTY;
    row.Source = actionName;
    row.Target = target;
    return row.Execute(Database);
}

bool CUserFileWriter::WriteSequence(const CString& actionName, MsiRowAction action)
{
    InstallExecuteSequenceData row;
    row.m_action = action;
    row.Action = actionName;
    row.Sequence = FIRST_IN_SEQUENCE;
    return row.Execute(Database);
}

// ---- a user's actions ------------------------------------------------------------------------------------------------

bool CUserFileWriter::AddUserFile(const wchar_t* sourcePath, const wchar_t* parentKey, CString& key)
{
    if (!EnsureUserFeature()) {
        return false;
    }
    const CString source = sourcePath;
    const CString parent = parentKey; // may be the text that `key` held
    const UserKey made = NewUserKey();
    key = made.key;
    return WriteFile(key, source, MsiRowAction::Insert) &&
           WriteComponent(key, made.guidText, parent, MsiRowAction::Insert) &&
           WriteFeatureComponent(key, MsiRowAction::Insert) &&
           WriteCreateFolder(parent, key, MsiRowAction::Insert) &&
           WriteCustomFile(key, source, CUSTOM_FILE, MsiRowAction::Insert);
}

bool CUserFileWriter::AddUserFolder(const wchar_t* name, const wchar_t* parentKey, CString& key)
{
    if (!EnsureUserFeature()) {
        return false;
    }
    const CString folder = name;
    const CString parent = parentKey; // may be the text that `key` held
    const UserKey made = NewUserKey();
    key = made.key;
    // The component lies in the folder itself, and the CreateFolder row makes the folder although it is empty.
    return WriteDirectory(key, parent, folder, MsiRowAction::Insert) &&
           WriteComponent(key, made.guidText, key, MsiRowAction::Insert) &&
           WriteFeatureComponent(key, MsiRowAction::Insert) &&
           WriteCreateFolder(key, key, MsiRowAction::Insert) &&
           WriteCustomFile(key, folder, CUSTOM_FOLDER, MsiRowAction::Insert);
}

bool CUserFileWriter::AddUserDrive(const wchar_t* drive, CString& key)
{
    const CString upperCaseDrive = CString(drive).MakeUpper();
    key = NewUserKey().key;
    // On a workstation the action sets the property of the directory's name, which puts the directory on the drive.
    if (!WriteDirectory(key, L"TARGETDIR", DriveDirectoryName(upperCaseDrive), MsiRowAction::Insert) ||
        !WriteCustomAction(key, upperCaseDrive, MsiRowAction::Insert) ||
        !WriteSequence(key, MsiRowAction::Insert)) {
        return false;
    }
    // Without the property a later load can't find the drive's path, but the rows stand.
    static_cast<void>(Product->SetMsiProperty(key + SUBSTITUTE_SUFFIX, upperCaseDrive, false));
    return true;
}

bool CUserFileWriter::UpdateUserItem(const wchar_t* parentKey, const wchar_t* key, const wchar_t* newName,
                                     bool isDrive)
{
    if (IsNullOrEmpty(key) || IsNullOrEmpty(newName)) {
        return false;
    }
    if (isDrive) {
        const CString directoryName = DriveDirectoryName(CString(newName).MakeUpper());
        if (!WriteDirectory(key, parentKey, directoryName, MsiRowAction::Update) ||
            !WriteCustomAction(key, newName, MsiRowAction::Update)) {
            return false;
        }
        static_cast<void>(Product->SetMsiProperty(CString(key) + SUBSTITUTE_SUFFIX, newName, false));
        return true;
    }
    return parentKey && WriteDirectory(key, parentKey, newName, MsiRowAction::Update) &&
           WriteCustomFile(key, newName, CUSTOM_FOLDER, MsiRowAction::Update);
}

bool CUserFileWriter::RemoveUserFile(const wchar_t* parentKey, const wchar_t* key)
{
    return WriteFile(key, CString(), MsiRowAction::Delete) &&
           WriteComponent(key, CString(), key, MsiRowAction::Delete) &&
           WriteFeatureComponent(key, MsiRowAction::Delete) &&
           WriteCreateFolder(parentKey, key, MsiRowAction::Delete) &&
           WriteCustomFile(key, CString(), CUSTOM_FILE, MsiRowAction::Delete);
}

bool CUserFileWriter::RemoveUserFolder(const wchar_t* key)
{
    return WriteDirectory(key, CString(), CString(), MsiRowAction::Delete) &&
           WriteComponent(key, CString(), key, MsiRowAction::Delete) &&
           WriteFeatureComponent(key, MsiRowAction::Delete) &&
           WriteCreateFolder(key, key, MsiRowAction::Delete) &&
           WriteCustomFile(key, CString(), CUSTOM_FOLDER, MsiRowAction::Delete);
}

bool CUserFileWriter::RemoveUserDrive(const wchar_t* key)
{
    if (!WriteDirectory(key, CString(), CString(), MsiRowAction::Delete) ||
        !WriteCustomAction(key, CString(), MsiRowAction::Delete) ||
        !WriteSequence(key, MsiRowAction::Delete)) {
        return false;
    }
    static_cast<void>(Product->SetMsiProperty(key, L"", false));
    static_cast<void>(Product->SetMsiProperty(CString(key) + SUBSTITUTE_SUFFIX, L"", false));
    return true;
}
