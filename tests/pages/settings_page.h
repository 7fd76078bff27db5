// The settings page with a host on which it can be shown, and words for what its tests do.
#pragma once

#include "base/handle.h"
#include "tests/support/page_test.h"
#include "tests/support/test_network.h"

#include <msi.h>
#include <msiquery.h>

#include <deque>

class SettingsPage : public PageTest
{
protected:
    SettingsPage();
    void TearDown() override;

    int ShowPage() { return Show(DeploymentSettingsDialog); }
    // Leaves the page by Back and shows it: for tests that only look.
    void ShowAndLeave();

    void WithLog(const CString& logFolder);
    void WithLocation(const CString& path);
    // Begins with a log in that folder and presses Next; a box, if one is due, is the caller's next step.
    void NextWithLog(const CString& logFolder);
    // The page is up again after a box, with the whole text of the edit under the user's hands.
    void ExpectStaysOnFolder(const CString& text);

    // ---- products ----
    // A product that carries MC3_ENABLED, with a database of its own; null: a database without that row.
    TestProduct& AddCarrier(const wchar_t* value);
    // The value in the product's open database, read with the service's own calls; "(none)" without a row.
    static CString Mc3Of(TestProduct& product);
    // Takes away the table that MC3_ENABLED is written to.
    static void DropProperties(TestProduct& product);

    // ---- looks ----
    CString Text(int id) const { return Control(id).GetText(); }
    void ExpectFolderEnabled(bool enabled) const;
    void ExpectMc3Shown(bool shown) const;
    // The form below the name of this computer, as the system reports it.
    static CString FolderBelowComputer();

    // A folder on a local drive that any check accepts.
    CTestFolder folder;

private:
    std::deque<MSIHANDLE> m_databases;
};
