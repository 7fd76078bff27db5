// The begin page with a host on which it can be shown, and words for what its tests do.
#pragma once

#include "tests/support/page_test.h"

class BeginPage : public PageTest
{
protected:
    BeginPage();

    int ShowPage() { return Show(BeginDeploymentDialog); }
    // Leaves the page by Back and shows it: for tests that only look.
    void ShowAndLeave();

    // The host runs from an existing deployment's image with these deployments.
    void WithDeployments(Setup::tagSETUPMODE mode, std::initializer_list<const wchar_t*> names);
    void WithLocation(const CString& path);
    void WithName(const CString& name);

    // The state of Back, Next and Cancel: an E for enabled, a D for disabled.
    CString Buttons() const;
    CString Text(int id) const { return Control(id).GetText(); }

    // A folder on a local drive that any check accepts.
    CTestFolder folder;
};
