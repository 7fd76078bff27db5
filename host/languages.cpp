#include "host/languages.h"

#include "base/files.h"
#include "host/xml_values.h"
#include "include/product.h"

namespace {

constexpr const wchar_t* LAST_LANGUAGE = L"en-US";

CString BareLanguage(const CString& locale)
{
    const int hyphen = locale.Find(L'-');
    return hyphen < 0 ? locale : locale.Left(hyphen);
}

CString UserLocale()
{
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = {};
    return GetUserDefaultLocaleName(name, LOCALE_NAME_MAX_LENGTH) > 0 ? CString(name)
                                                                      : CString(LAST_LANGUAGE);
}

// The folder of that very locale, or another region of its language; empty when there is neither.
CString FindLocale(const std::vector<FolderItem>& items, const CString& locale)
{
    const CString language = BareLanguage(locale);
    CString sameLanguage;
    for (const FolderItem& item : items) {
        if (!item.isFolder) {
            continue;
        }
        if (item.strName.CompareNoCase(locale) == 0) {
            return item.strName;
        }
        if (sameLanguage.IsEmpty() && BareLanguage(item.strName).CompareNoCase(language) == 0) {
            sameLanguage = item.strName;
        }
    }
    return sameLanguage;
}

} // namespace

CString FindLanguageFolder(const CString& base, const CString& locale, const CString& otherwise,
                           CString& found)
{
    std::vector<FolderItem> items;
    if (ListFolder(base, items) == ERROR_SUCCESS) {
        for (const CString& wanted : {locale, otherwise, CString(LAST_LANGUAGE)}) {
            found = IsLocaleName(wanted) ? FindLocale(items, wanted) : CString();
            if (!found.IsEmpty()) {
                return base + found + L"\\";
            }
        }
    }
    found = LAST_LANGUAGE;
    return base + found + L"\\";
}

CHostLangMgr& CHostLangMgr::Object()
{
    static CHostLangMgr manager;
    return manager;
}

void CHostLangMgr::Choose(const CString& programFolder, const CString& locale)
{
    m_strTextFolder = FindLanguageFolder(FolderPath(programFolder) + L"Languages\\",
                                         locale.IsEmpty() ? UserLocale() : locale, CString(), m_strLanguage);
}

CString CHostLangMgr::GetDeploymentLanguage(const CProduct* product)
{
    if (product && product->m_strLanguage && *product->m_strLanguage) {
        return product->m_strLanguage; // a language pack brings its own
    }
    if (!m_strDeploymentLanguage.IsEmpty()) {
        return m_strDeploymentLanguage;
    }
    for (const CString& language : m_languages) {
        if (language.CompareNoCase(m_strLanguage) == 0) {
            return language;
        }
    }
    return m_strDefault.IsEmpty() ? m_strLanguage : m_strDefault;
}

unsigned short CHostLangMgr::LocaleNameToLANGID(const CString& name)
{
    return IsLocaleName(name) ? LANGIDFROMLCID(LocaleNameToLCID(name, 0)) : static_cast<unsigned short>(0);
}

bool CHostLangMgr::Init(CConfigReader* reader)
{
    m_pReader = static_cast<CHostConfigReader*>(reader);
    if (!m_pReader || m_pReader->description.languages.empty()) {
        return false;
    }
    m_languages = m_pReader->description.languages;
    m_strDefault = m_pReader->description.strDefaultLanguage;
    m_strDeploymentLanguage = m_pReader->strDeploymentLanguage;
    return true;
}

void CHostLangMgr::Reset()
{
    m_strDeploymentLanguage = m_pReader ? m_pReader->strDeploymentLanguage : CString();
}
