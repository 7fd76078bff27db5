// The contact page: a page that is nothing but the frame, so what it does is the frame's doing.
#pragma once

#include "tests/support/page_test.h"

class ContactPage : public PageTest
{
protected:
    int ShowPage() { return Show(ProductContactDialog); }
    void ShowAndLeave()
    {
        Press(IDC_BACK);
        EXPECT_EQ(ShowPage(), NAVIGATION_BACK);
    }
    // A folder of the host's resources of its own, for help files and links.
    void WithResourceFolder() { host.manager.resourceFolder = folder.GetPath(); }

    CTestFolder folder;
};
