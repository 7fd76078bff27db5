// The setup's languages. One object, the host's; two small operations of it are exported by the page library.
#pragma once

#include "base/string.h"

class CConfigReader;
class CProduct;

#if defined(WIZCORE_EXPORTS)
#define WIZCORE_API __declspec(dllexport)
#else
#define WIZCORE_API __declspec(dllimport)
#endif
#if defined(ROLLOUTUI_EXPORTS)
#define ROLLOUTUI_API __declspec(dllexport)
#elif defined(WIZCORE_EXPORTS)
#define ROLLOUTUI_API // the host neither calls nor carries them
#else
#define ROLLOUTUI_API __declspec(dllimport)
#endif

class CLangMgr
{
public:
    // The single object; lives as long as WizCore.dll. By this symbol and those of include/installer_calls.h the pages are
    // bound to WizCore.dll: another host supplies a library of that name with these exports.
    WIZCORE_API static CLangMgr& Instance();

    // The folder that holds the resource library of the current language, ending in a backslash.
    virtual CString GetWizTextPath() = 0;
    // The setup's language as a locale name, such as "en-US".
    virtual CString GetWizCoreLanguage() = 0;
    // The language of the deployment of that product, as a locale name.
    virtual CString GetDeploymentLanguage(const CProduct* product) = 0;
    // A locale name's 16-bit language id; 0 for a name that nobody knows.
    virtual unsigned short LocaleNameToLANGID(const CString& name) = 0;
    // Reads the languages from the configuration. False when it holds none.
    virtual bool Init(CConfigReader* reader) = 0;
    // Drops the state that depends on the loaded deployment.
    virtual void Reset() = 0;

    // Carried by RolloutUi.dll: a flag that the host's own windows ask for. No page reads it.
    ROLLOUTUI_API void SetShowLanguages(bool show);
    ROLLOUTUI_API bool ShowLanguages();

protected:
    virtual ~CLangMgr() = default;

private:
    bool m_bShowLanguages = false;
};
