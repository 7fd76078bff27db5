#include "patches/patch_catalog.h"

#include "base/handle.h"
#include "frame/file_path.h"
#include "frame/page_rules.h"
#include "include/lang_mgr.h"
#include "include/product.h"
#include "include/setup_manager.h"
#include "msi/msi_property.h"
#include "patches/catalog_library.h"
#include "patches/patch_text_rules.h"

#include <shlwapi.h>

#include <vector>

namespace {

constexpr const wchar_t* DEFAULT_SERVICE =
    L"http://patchrelay.velkmora.example/patchrelay/GetAvailableContent";
constexpr const wchar_t* OVERRIDES_KEY = L"Software\\Velkmora\\PatchRelay\\";
constexpr const wchar_t* CONFIGURATION_FILE = L"Kmdconfig.xml";
constexpr const wchar_t* IDENTITY_LIBRARY = L"Kmd32.dll";
constexpr const wchar_t* PATCH_LIST_FILE = L"patchlist.npl";
constexpr const wchar_t* FOLDER_PROPERTY = L"MEDIAKMD32LOC";
constexpr DWORD ADDRESS_BYTES = 520; // of most addresses; a longer one is read again

// The product's setup is a 64-bit program, and so are the overrides, whoever asks.
constexpr REGSAM OVERRIDES_ACCESS = KEY_READ | KEY_WOW64_64KEY;
static_assert(OVERRIDES_ACCESS == 131353);

bool IsThere(const CString& path)
{
    WIN32_FIND_DATAW found;
    return static_cast<bool>(CFindOwner(::FindFirstFileW(path, &found)));
}

// A value that isn't there, or is no text, leaves the text as it was.
void ReadRegistryText(HKEY key, const wchar_t* name, CString& text)
{
    std::vector<wchar_t> buffer(ADDRESS_BYTES / sizeof(wchar_t) + 1);
    DWORD type = 0;
    DWORD bytes = ADDRESS_BYTES;
    LSTATUS result =
        ::RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(buffer.data()), &bytes);
    if (result == ERROR_MORE_DATA) {
        bytes += sizeof(wchar_t);
        buffer.assign(bytes / sizeof(wchar_t) + 1, L'\0');
        result =
            ::RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(buffer.data()), &bytes);
    }
    if (result == ERROR_SUCCESS && type == REG_SZ) {
        buffer.back() = L'\0'; // texts in the registry need not end in a zero
        text = buffer.data();
    }
}

// As it stands, a query included; the whole text when nothing stands above it.
CString LastElement(const wchar_t (&address)[PATCH_INFO_CHARACTERS])
{
    wchar_t name[PATCH_INFO_CHARACTERS] = {};
    ::lstrcpynW(name, address, ARRAYSIZE(name));
    ::PathStripPathW(name);
    return name;
}

} // namespace

CPatchCatalog::CPatchCatalog(CSetupManager& manager, CProduct& product, InstallerHandle database)
    : m_manager(manager), m_product(product), m_hDatabase(database)
{
    PatchInfo.ErrorCode = static_cast<std::uint32_t>(-1);
}

// ---- who the product is ----

bool CPatchCatalog::ResolveCatalogIdentity()
{
    SettleConfigurationFolder();
    const CString configuration = JoinPath(KmdConfigDir, CONFIGURATION_FILE);
    if (!IsThere(configuration) || !IsThere(JoinPath(m_manager.m_strResourceFolder, IDENTITY_LIBRARY))) {
        return false;
    }
    ReadRegistryOverrides();
    KmdValue = ReadProductIdentity(configuration);
    return !KmdValue.IsEmpty();
}

// The database that the configuration stands beside: a language pack's, where the product has some. Empty for the product's
// own media.
CString CPatchCatalog::ReferenceDatabase() const
{
    const std::vector<CProduct*>& packs = m_product.GetLPChildren();
    const CString language = CLangMgr::Instance().GetDeploymentLanguage(&m_product);
    if (packs.empty()) {
        return CString();
    }
    if (!IsDeploymentMode(m_manager.m_setupMode)) {
        return packs.front()->m_strMsiFile;
    }
    for (const CProduct* pack : packs) {
        if (CString(pack->m_strLanguage).CompareNoCase(language) == 0) {
            return pack->m_bMsiFileIsAbsolute ? CString(pack->m_strMsiFile)
                                              : JoinPath(m_manager.m_strMediaRoot, pack->m_strMsiFile);
        }
    }
    return CString();
}

void CPatchCatalog::SettleConfigurationFolder()
{
    const CString reference = ReferenceDatabase();
    const CString place = ReadProperty(m_hDatabase, FOLDER_PROPERTY);
    if (reference.IsEmpty()) {
        KmdConfigDir = JoinPath(m_manager.m_strMediaRoot, place);
    } else {
        CString folder = reference;
        ::PathRemoveFileSpecW(folder.GetBuffer(folder.GetLength()));
        folder.ReleaseBuffer();
        KmdConfigDir = JoinPath(folder, place);
    }
    // The reference decides, not the folder: with an empty reference the media's root is joined twice, and the second join
    // leaves the absolute path as it is.
    if (::PathIsRelativeW(reference)) {
        KmdConfigDir = JoinPath(m_manager.m_strMediaRoot, KmdConfigDir);
    }
}

void CPatchCatalog::ReadRegistryOverrides()
{
    CRegistryOwner key;
    const CString name = OVERRIDES_KEY + CString(m_product.m_strProductCode);
    if (::RegOpenKeyExW(HKEY_LOCAL_MACHINE, name, 0, OVERRIDES_ACCESS, key.put()) != ERROR_SUCCESS) {
        return;
    }
    ReadRegistryText(key.get(), L"AltPatchRelayURL", UpdateUrl);
    DWORD mode = 0;
    DWORD bytes = sizeof mode;
    if (::RegQueryValueExW(key.get(), L"PreviewMode", nullptr, nullptr, reinterpret_cast<BYTE*>(&mode),
                           &bytes) == ERROR_SUCCESS) {
        PreviewMode = mode;
    }
}

// ---- what the service has ----

bool CPatchCatalog::FetchPatchCatalog(HWND page, CString& DownloadTargetPath)
{
    const CPatchService service;
    if (!service.IsLoaded()) {
        return false;
    }
    if (UpdateUrl.IsEmpty()) {
        UpdateUrl = DEFAULT_SERVICE;
    }
    CatalogKey = m_product.m_strCatalogKey;
    const CatalogQuestion question = {CatalogKey, KmdValue, CatalogUrlTemplate(UpdateUrl, PreviewMode),
                                      PatchListPath()};
    wchar_t folder[MAX_PATH] = {};
    const DWORD length = ::GetCurrentDirectoryW(MAX_PATH, folder);
    if (length == 0 || length > MAX_PATH) {
        return ShowWarning(page, L"GetCurrentDirectory failed");
    }
    if (!::SetCurrentDirectoryW(CLangMgr::Instance().GetWizTextPath())) {
        return ShowWarning(page, L"SetCurrentDirectory failed");
    }
    service.GetPatchInfo(question, PatchInfo);
    const bool isAnswered = PatchInfo.ErrorCode == 0;
    if (isAnswered && PatchInfo.PatchCount > 0) {
        DownloadTargetPath = JoinPath(DownloadDir, LastElement(PatchInfo.DownloadUrl));
    }
    if (!::SetCurrentDirectoryW(folder)) {
        return ShowWarning(page, L"SetCurrentDirectory failed"); // counts as no answer
    }
    return isAnswered;
}

bool CPatchCatalog::ShowWarning(HWND page, const wchar_t* text) const
{
    ::MessageBoxW(page, text, m_manager.m_strProductName, MB_OK | MB_ICONWARNING);
    return false;
}

CString CPatchCatalog::PatchListPath() const
{
    return JoinPath(DownloadDir, PATCH_LIST_FILE);
}

bool CPatchCatalog::HasPatchList() const
{
    return ::PathFileExistsW(PatchListPath()) != FALSE;
}

unsigned int CPatchCatalog::CheckDownloadedFile(const CString& file) const
{
    const CPatchService service;
    if (!service.IsLoaded()) {
        return ERROR_MOD_NOT_FOUND;
    }
    return service.CheckPatchFile(PatchListPath(), file);
}
