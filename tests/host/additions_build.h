// A build of a product with additions, which is installed and looked at. For test classes to derive from.
#pragma once

#include "tests/host/build_fixture.h"
#include "tests/host/user_additions.h"

CString ProgramFolder(); // where the installed product lies, without closing backslash

class AdditionsBuild
{
protected:
    explicit AdditionsBuild(const ProductOptions& options);
    ~AdditionsBuild(); // removes the product when it is still installed

    // A file that can be added: its path.
    CString Source(const CString& name, const std::string& bytes) const;
    void BuildIt();
    void Install();
    static unsigned long Uninstall();

    TestFolder sources{L"sources"};
    TestBuild build;
    AddedRows added;
    std::vector<CString> warnings; // of the last build
};
