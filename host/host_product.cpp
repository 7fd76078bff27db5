#include "host/host_product.h"

#include "base/files.h"
#include "base/path_text.h"
#include "builder/database_signature.h"
#include "host/host_messages.h"
#include "host/media.h"
#include "host/package_identity.h"
#include "host/patch_states.h"
#include "host/silent_installer.h"
#include "host/system_reason.h"
#include "host/user_feature_rows.h"
#include "include/shortcut_strings.h"
#include "installer/database.h"
#include "installer/missing_tables.h"
#include "installer/query.h"
#include "installer/record.h"
#include "installer/summary.h"
#include "msi/custom_shortcuts.h"

#include <msiquery.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <mutex>

namespace {

// Which databases are open, for the calls that have only a handle. A build may ask on its own thread.
std::mutex g_openProductsLock;
std::vector<CHostProduct*> g_openProducts;

bool CopyValue(const CString& value, wchar_t* buffer, int* size)
{
    if (!size) {
        return false;
    }
    const int needed = value.GetLength();
    const bool fits = buffer && *size > needed;
    if (fits) {
        std::copy_n(value.GetString(), needed + 1, buffer);
    }
    *size = needed;
    return fits;
}

// Of the include choice.
constexpr int INCLUDE_UNSET = -1;
constexpr int INCLUDE_DOWNLOAD = 1;

// What the pages added, files alone: the key, and where the file comes from.
constexpr const wchar_t* ADDED_FILES =
    L"SELECT `Component_`,`SourceFileName` FROM `TarnCustomFile` WHERE `Flags`=0";

int HighestFileSequence(MSIHANDLE database)
{
    int highest = 0;
    const unsigned int result =
        ForEachRow(database, L"SELECT `Sequence` FROM `File`", {}, [&](MSIHANDLE record) {
            const int sequence = MsiRecordGetInteger(record, 1);
            if (sequence != static_cast<int>(MSI_NULL_INTEGER)) {
                highest = std::max(highest, sequence);
            }
            return true;
        });
    return result == ERROR_SUCCESS ? highest : 0;
}

// In the order of the keys; those without a row are left out. One walk over the rows, as a query for each key would
// search the whole table each time.
bool ReadShortcuts(MSIHANDLE database, const std::vector<CString>& keys, std::vector<ShortcutStrings>& list)
{
    std::map<CString, ShortcutStrings> known;
    const unsigned int result = ForEachRow(
        database, L"SELECT `Shortcut`,`Name`,`Arguments` FROM `Shortcut`", {}, [&](MSIHANDLE record) {
            const CString key = RecordText(record, 1);
            const CString name = RecordText(record, 2);
            known[key] = {key, name.Mid(name.Find(L'|') + 1), RecordText(record, 3)};
            return true;
        });
    for (const CString& key : keys) {
        const auto shortcut = known.find(key);
        if (shortcut != known.end()) {
            list.push_back(shortcut->second);
        }
    }
    return result == ERROR_SUCCESS;
}

// The page of the workstations relies on all of its fields, and reads a longer property as empty.
OperationError CheckShortcutTemplate(MSIHANDLE database, const CString& packageFile)
{
    CString text;
    if (!ReadPropertyRow(database, SHORTCUT_TEMPLATE_PROPERTY, text) || text.IsEmpty()) {
        return {}; // a product without custom shortcuts
    }
    if (text.GetLength() > LONGEST_SHORTCUT_TEMPLATE) {
        return {ERROR_INSTALL_PACKAGE_INVALID,
                HostSentence(HostText::ShortcutTemplateTooLong,
                             {packageFile, SHORTCUT_TEMPLATE_PROPERTY, NumberText(text.GetLength()),
                              NumberText(LONGEST_SHORTCUT_TEMPLATE)})};
    }
    const int fields = CountTemplateFields(text);
    if (fields == SHORTCUT_TEMPLATE_FIELDS) {
        return {};
    }
    return {ERROR_INSTALL_PACKAGE_INVALID,
            HostSentence(HostText::ShortcutTemplateInvalid,
                         {packageFile, SHORTCUT_TEMPLATE_PROPERTY, NumberText(fields),
                          NumberText(SHORTCUT_TEMPLATE_FIELDS)})};
}

} // namespace

CHostProduct* FindProductByHandle(InstallerHandle database)
{
    const std::lock_guard lock(g_openProductsLock);
    for (CHostProduct* product : g_openProducts) {
        if (product->GetMsiHandle() == database && database != 0) {
            return product;
        }
    }
    return nullptr;
}

unsigned int CopyToBuffer(const CString& value, wchar_t* buffer, unsigned long* size)
{
    if (!size) {
        return buffer ? ERROR_INVALID_PARAMETER : ERROR_SUCCESS;
    }
    const unsigned long capacity = *size;
    const unsigned long length = static_cast<unsigned long>(value.GetLength());
    *size = length;
    if (!buffer) {
        return ERROR_SUCCESS;
    }
    if (capacity > length) {
        std::copy_n(value.GetString(), length + 1, buffer);
        return ERROR_SUCCESS;
    }
    // As the service does: what fits, closed by a zero, and the whole length.
    if (capacity > 0) {
        std::copy_n(value.GetString(), capacity - 1, buffer);
        buffer[capacity - 1] = 0;
    }
    return ERROR_MORE_DATA;
}

CHostProduct::CHostProduct(const ProductDescription& product, const PackageDescription& package,
                           const ProductSource& source)
    : m_product(product), m_package(package), m_source(source)
{
    m_strRelativeFile = source.strRelativeFolder + package.strFile;
    m_strOriginalFile = source.strMediaRoot + m_strRelativeFile;
    m_strWorkFile = source.strWorkFolder + package.strFile;
    m_strFolder = m_product.strFolder;
    m_strName = m_product.strName;
    m_strProductCode = m_package.strProductCode;
    m_strCatalogKey = m_product.strCatalogKey;
    m_strMsiFile = m_strRelativeFile;
    m_strLanguage = m_product.strLanguage;
    m_bCarrierFlag1 = m_product.bCarrier1;
    m_bCarrierFlag2 = m_product.bCarrier2;
    m_productKind = static_cast<unsigned int>(m_product.kind);
}

CHostProduct::~CHostProduct()
{
    const std::lock_guard lock(g_openProductsLock);
    std::erase(g_openProducts, this);
}

OperationError CHostProduct::CopyPackage()
{
    if (!IsFile(m_strOriginalFile)) {
        return {ERROR_FILE_NOT_FOUND, HostSentence(HostText::MediaPackageMissing,
                                                   {m_strOriginalFile, SystemReason(ERROR_FILE_NOT_FOUND)})};
    }
    unsigned int error = MakeFolders(m_source.strWorkFolder);
    if (error == ERROR_SUCCESS && !CopyFileW(FilePath(m_strOriginalFile), FilePath(m_strWorkFile), FALSE)) {
        error = GetLastError();
    }
    if (error != ERROR_SUCCESS) {
        return {error, HostSentence(HostText::WorkCopyFailed,
                                    {m_strOriginalFile, m_strWorkFile,
                                     ReasonOfCopy(error, m_strOriginalFile, ParentFolder(m_strWorkFile))})};
    }
    // Media are often read-only; the copy is for writing.
    SetFileAttributesW(FilePath(m_strWorkFile), FILE_ATTRIBUTE_NORMAL);
    error = RemoveSignature(m_strWorkFile);
    if (error != ERROR_SUCCESS) {
        return {error, HostSentence(HostText::WorkCopyFailed,
                                    {m_strOriginalFile, m_strWorkFile, SystemReason(error)})};
    }
    return {};
}

OperationError CHostProduct::Open(std::vector<CString>& warnings)
{
    const CSilentInstaller silent;
    if (OperationError error = CopyPackage()) {
        return error;
    }
    SessionTargets targets;
    const unsigned int sessionResult =
        ReadSessionTargets(m_strWorkFile, m_source.strMediaRoot + m_source.strRelativeFolder, targets);
    unsigned int result = OpenDatabase(m_strWorkFile, MSIDBOPEN_TRANSACT, m_database);
    if (result != ERROR_SUCCESS) {
        return {result,
                HostSentence(HostText::MediaPackageBroken, {m_strOriginalFile, SystemReason(result)})};
    }
    if (OperationError error = CheckIdentity(m_database.get(), m_strOriginalFile, m_package)) {
        return error;
    }
    if (OperationError error = CheckShortcutTemplate(m_database.get(), m_strOriginalFile)) {
        return error;
    }
    CString table;
    result = AddMissingTables(m_database.get(), table);
    if (result != ERROR_SUCCESS) {
        return {result,
                HostSentence(HostText::TableNotMade, {table, m_strOriginalFile, SystemReason(result)})};
    }
    result = GatherUserFeatures(m_database.get());
    if (result != ERROR_SUCCESS) {
        return {result,
                HostSentence(HostText::MediaPackageBroken, {m_strOriginalFile, SystemReason(result)})};
    }
    if (OperationError error = CheckPackageSources(m_database.get(), m_strOriginalFile)) {
        return error;
    }
    if (sessionResult != ERROR_SUCCESS) {
        warnings.push_back(
            HostSentence(HostText::PathsUnresolved, {m_product.strName, SystemReason(sessionResult)}));
    }
    ReadDatabase(targets);
    const std::lock_guard lock(g_openProductsLock);
    g_openProducts.push_back(this);
    return {};
}

void CHostProduct::ReadDatabase(const SessionTargets& targets)
{
    m_fileSequence = HighestFileSequence(m_database.get());
    m_x64Marker = IsSixtyFourBit(m_database.get()) ? 1 : 0;
    m_features = std::make_unique<CHostFeatureManager>(m_database.get());
    m_directories = std::make_unique<CHostDirectoryManager>(m_database.get(), m_source.strMediaRoot +
                                                                                  m_source.strRelativeFolder);
    m_directories->SetSessionTargets(targets);
    m_pFeatureManager = m_features.get();
    m_pDirectoryManager = m_directories.get();
}

bool CHostProduct::GetMsiProperty(const wchar_t* name, wchar_t* buffer, int* size)
{
    CString value;
    return name && ReadPropertyRow(m_database.get(), name, value) && CopyValue(value, buffer, size);
}

bool CHostProduct::SetMsiProperty(const wchar_t* name, const wchar_t* value, bool)
{
    return name && *name && WritePropertyRow(m_database.get(), name, value) == ERROR_SUCCESS;
}

bool CHostProduct::GetProperty(const wchar_t* name, wchar_t* buffer, int* size)
{
    const CString* value = FindProperty(m_properties, name);
    return value && CopyValue(*value, buffer, size);
}

void CHostProduct::SetProperty(const wchar_t* name, const wchar_t* value)
{
    if (name && *name) {
        StoreProperty(m_properties, name, value);
    }
}

// The page asks this of each file of its list right before the installer judges it.
bool CHostProduct::IsPatchMerged(const CString& file)
{
    m_patches.Note(file);
    return m_patches.IsMerged(file);
}

bool CHostProduct::GetCustomShortcuts(std::vector<ShortcutStrings>& list)
{
    list.clear();
    CString made;
    if (!ReadPropertyRow(m_database.get(), SHORTCUT_LIST_PROPERTY, made)) {
        return true; // none were ever made
    }
    const std::vector<CString> keys = ReadShortcutKeys(made);
    return keys.empty() || ReadShortcuts(m_database.get(), keys, list);
}

void CHostProduct::AddLanguagePack(std::unique_ptr<CHostProduct> pack)
{
    m_packs.push_back(pack.get());
    m_packObjects.push_back(std::move(pack));
}

std::vector<StoredAddedFile> CHostProduct::ReadAddedFiles() const
{
    std::vector<StoredAddedFile> files;
    const unsigned int result = ForEachRow(m_database.get(), ADDED_FILES, {}, [&](MSIHANDLE record) {
        files.push_back({RecordText(record, 1), RecordText(record, 2)});
        return true;
    });
    // A table that can't be read is reported by the build, which reads them all.
    return result == ERROR_SUCCESS ? files : std::vector<StoredAddedFile>();
}

// The database of a deployment has the names alone; pages and builds go by the paths. One walk over the rows: a statement
// for each file would search the whole table each time.
void CHostProduct::RestoreSources(const std::vector<StoredAddedFile>& files)
{
    std::map<CString, CString> sources;
    for (const StoredAddedFile& file : files) {
        sources[file.component] = file.source;
    }
    CQuery query;
    if (sources.empty() || query.Run(m_database.get(), ADDED_FILES) != ERROR_SUCCESS) {
        return; // with the name alone the build uses the deployment's own copy
    }
    for (CInstallerHandle row; query.Fetch(row) == ERROR_SUCCESS;) {
        const auto source = sources.find(RecordText(row.get(), 1));
        if (source != sources.end() && MsiRecordSetStringW(row.get(), 2, source->second) == ERROR_SUCCESS) {
            static_cast<void>(query.Update(row)); // as above
        }
    }
}

StoredProduct CHostProduct::Store() const
{
    StoredProduct stored;
    stored.strProductCode = m_package.strProductCode;
    stored.strName = m_product.strName;
    stored.properties = m_properties;
    stored.addedFiles = ReadAddedFiles();
    stored.patchState = m_patchState;
    stored.includePatch = std::clamp(m_patchFlag, -1, 2);
    stored.strPatchName = m_strPatchName;
    stored.strPatchReadme = m_strPatchReadme;
    stored.strPatchSize = m_strPatchSize;
    return stored;
}

void CHostProduct::LoadPatches(const StoredProduct& stored, const CString& imageRoot,
                               std::vector<CString>& warnings)
{
    std::vector<CString> lost;
    m_patches.Load(stored.patches, imageRoot, FolderOfFile(m_strRelativeFile), lost);
    for (const CString& file : lost) {
        warnings.push_back(HostSentence(HostText::PatchLost, {file, m_product.strName}));
    }
    const PatchesOfImage patches{stored.patchState, m_patches.HasMerged(), m_patches.HasUnmerged()};
    m_imagePatchState = StateInImage(patches);
    m_patchState = ChosenState(patches);
    m_patchFiles.clear();
    for (const StoredPatch& patch : m_patches.GetStored()) {
        if (!patch.file.IsEmpty()) {
            m_patchFiles.push_back(m_patches.PathOf(patch));
        }
    }
}

void CHostProduct::Load(const StoredProduct& stored, const CString& imageRoot, std::vector<CString>& warnings)
{
    m_properties = stored.properties;
    RestoreSources(stored.addedFiles);
    LoadPatches(stored, imageRoot, warnings);
    m_strPatchName = stored.strPatchName;
    m_strPatchReadme = stored.strPatchReadme;
    m_strPatchSize = stored.strPatchSize;
    // Only what the build put into the image is still there.
    const CString path = imageRoot + stored.strPatchPath;
    m_bPatchDownloaded = !stored.strPatchPath.IsEmpty() && m_patches.FindStored(path);
    m_strPatchPath = m_bPatchDownloaded ? path : CString();
    // The page enables the choice of a download only with one at hand.
    m_patchFlag =
        stored.includePatch == INCLUDE_DOWNLOAD && !m_bPatchDownloaded ? INCLUDE_UNSET : stored.includePatch;
}

void CHostProduct::LoadMergedPatches(const StoredProduct& stored, const CString& imageRoot,
                                     std::vector<CString>& warnings)
{
    LoadPatches(stored, imageRoot, warnings);
    m_patchState = Setup::PATCHSTATE_NONE;
    m_imagePatchState = m_patches.HasMerged() ? Setup::PATCHSTATE_MERGED : Setup::PATCHSTATE_NONE;
    std::erase_if(m_patchFiles, [&](const CString& file) { return !m_patches.FindStored(file)->merged; });
}
