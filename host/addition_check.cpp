#include "host/addition_check.h"

#include "builder/addition_check.h"
#include "builder/build_failure.h"
#include "host/host_messages.h"
#include "host/host_product.h"

std::vector<AdditionFinding> CheckAdditionsOf(CHostProduct& product, SourceLook look, KnownSources& known)
{
    BuildDatabase database;
    database.strOriginal = product.GetOriginalFile();
    database.strWorkingCopy = product.GetWorkFile();
    database.hDatabase = product.GetMsiHandle();
    database.strTarget = product.GetRelativeFile();
    database.strProductName = product.m_strName;
    try {
        return CheckAdditions(database, look, known);
    } catch (const BuildFailure& failure) {
        return {{0, CString(), CString(),
                 HostSentence(HostText::AdditionsUnchecked, {database.strProductName, failure.message})}};
    }
}
