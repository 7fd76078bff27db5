// The languages: which folder of texts the wizard shows, and in which language the deployment is.
#pragma once

#include "host/host_ui_manager.h"
#include "include/lang_mgr.h"

#include <vector>

class CHostLangMgr final : public CLangMgr
{
public:
    static CHostLangMgr& Object();

    // For the host, before the first page: the program's folder and the locale asked for, empty for the user's.
    void Choose(const CString& programFolder, const CString& locale);

    CString GetWizTextPath() override { return m_strTextFolder; }
    CString GetWizCoreLanguage() override { return m_strLanguage; }
    CString GetDeploymentLanguage(const CProduct* product) override;
    unsigned short LocaleNameToLANGID(const CString& name) override;
    bool Init(CConfigReader* reader) override;
    void Reset() override;

private:
    CString m_strTextFolder;
    CString m_strLanguage = L"en-US";
    std::vector<CString> m_languages; // of the media
    CString m_strDefault;
    CString m_strDeploymentLanguage;
    CHostConfigReader* m_pReader = nullptr; // the host's
};

// The folders to look in for a locale, the best first: itself, its language with any region, en-US.
[[nodiscard]] CString FindLanguageFolder(const CString& base, const CString& locale, const CString& otherwise,
                                         CString& found);
