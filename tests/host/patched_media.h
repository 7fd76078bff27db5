// A product that patches are made for, on the host, and what a page does with its patches.
#pragma once

#include "tests/host/through_host.h"
#include "tests/support/patch_fixtures.h"

// A full path: the product as the patch fixtures have it (`layout`: beside, inside or loose), without the patches.
void CopyPatchedPackage(const CString& folder, const CString& layout);
// Media with that product in `x64\Patch`, and behind it those of `others`, each a product of MakePackage.
void MakePatchedMedia(const CString& folder, const CString& layout = L"beside");

class PatchedProductTest : public ThroughHostTest
{
protected:
    // The installer here takes cabinets from paths of the computer's own code page alone.
    PatchedProductTest() { location = plain + L"shared deployments\\"; }

    CProduct& Start(const wchar_t* name = L"North", const CString& layout = L"beside");
    // The program starts again on a deployment, and the begin page chooses.
    CProduct& OpenAgain(Setup::tagSETUPMODE mode = Setup::SETUPMODE_MODIFY_DEPLOYMENT,
                        const wchar_t* name = L"North", const wchar_t* base = L"North");
    // What the page does with files that it finds good, and on its way forward.
    static void Choose(CProduct& product, const std::vector<CString>& files, Setup::tagPATCHSTATE state,
                       int includeChoice = 2);
    // What the page does when a download is there.
    CString Download(CProduct& product, const wchar_t* fixture, const wchar_t* name);
    static CProduct& FirstOf(CSetupHost& host) { return *host.GetProducts().at(0); }

    // A copy of a fixture in a folder of the test's.
    CString CopyOf(const CString& fixture, const CString& name) const;
    DeploymentFile ReadBuilt(const wchar_t* name = L"North") const;
    // The names of the files in the product's folder of patches.
    std::vector<CString> PatchesInImage(const wchar_t* name = L"North") const;
    // The message of a build that is refused, with nothing written to the location; the check says the same.
    CString RefusedBuild(unsigned int code);

    ScratchFolder plain{L"plain"};
};

inline const CString BELOW_IMAGE = L"x64\\Patch\\ServicePacks\\";
