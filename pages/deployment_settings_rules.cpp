#include "pages/deployment_settings_rules.h"

#include "frame/path_rules.h"

namespace {

constexpr unsigned int CARRYING_KIND = 8;

} // namespace

bool CarriesMc3(const CProduct* product)
{
    return product && product->m_productKind == CARRYING_KIND && product->m_bCarrierFlag1 &&
           product->m_bCarrierFlag2;
}

bool IsLogChoiceComplete(bool writesLog, const CString& folder)
{
    return !writesLog || !folder.IsEmpty();
}

LogFolderVerdict JudgeLogFolder(PathCheckResult result, const CString& folder)
{
    if (result == PCR_OK || result == PCR_NOT_EMPTY || result == PCR_IS_ROOT) {
        return LogFolderVerdict::Usable;
    }
    // Where access is denied to the administrator, the workstations may still have it, whatever the path's form.
    return result != PCR_ACCESS_DENIED && !IsValidUncPath(folder) ? LogFolderVerdict::NotNetwork
                                                                  : LogFolderVerdict::Doubtful;
}
