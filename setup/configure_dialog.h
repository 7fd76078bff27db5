// The dialog in which the tab pages of all products stand, for who wants to jump to a page instead of walking to it.
//
// A page is made when its tab is first shown, and told its number. One that has stored is made anew when its tab is shown
// again, so that it starts from what the database then holds. A tab is left only when its page has stored what stands in
// it; Continue asks the page in front and those that were left unchecked, and brings one that refuses to the front. A page
// that can't be made, a product that could not be opened, or one whose database no longer answers, is told in words and
// leaves the rest of the dialog usable.
//
// It can't be left while a page is at work or has disabled the controls 1001 and 2 of its parent.
//
// Keys: those that the page in front uses itself come first. Ctrl+Tab, Ctrl+Page Down and Ctrl+Page Up go from tab to
// tab; Enter on a page is that page's own way on; Esc is Cancel, which asks when something would be lost.
#pragma once

#include "include/page_context.h"
#include "setup/page_activity.h"
#include "setup/page_record.h"
#include "setup/page_view.h"
#include "setup/program_libraries.h"
#include "setup/resource.h"
#include "window/dialog_impl.h"
#include "window/message_loop.h"
#include "window/message_map.h"

#include <commctrl.h>

#include <functional>
#include <set>
#include <vector>

// A tab: what to call with what.
struct ConfigureTab
{
    CString strPage;    // its export
    CString strName;    // of the page, in words
    CString strProduct; // the name of its product where there are several; else empty
    CString strCaption; // on the tab: see TabCaption
    TabPageFunction create = nullptr;
    PageContext context; // of its product; the dialog fills in the windows
};

struct ConfigureOptions
{
    bool bCanGoBack = true;
    bool bLosesChoices = false; // choices made before the dialog would be lost with it
    CString strPlaceKey;        // where the dialog's place is remembered (see ReadWindowCorner)
    // The empty text, or why the product's database doesn't answer.
    std::function<CString(CProduct& product)> checkDatabase;
    // A page has just been made, also anew.
    std::function<void(const ConfigureTab& tab, HWND page)> pageMade;
};

class CConfigureDialog final : public CDialogImpl<CConfigureDialog>,
                               private IPageViewEvents,
                               private CIdleHandler
{
public:
    enum
    {
        IDD = IDD_CONFIGURE
    };

    // At least one tab. Borrows the manager.
    CConfigureDialog(CSetupManager& manager, std::vector<ConfigureTab> tabs, ConfigureOptions options);
    ~CConfigureDialog() override = default;

    // Shows the dialog until it is left: NAVIGATION_NEXT, _BACK or _CANCEL. NAVIGATION_LOAD_FAILED, after a box, when it
    // can't be made.
    [[nodiscard]] int Run();

    // True once something was entered that Cancel would lose; also after Run.
    [[nodiscard]] bool HasChanges() const;

    // For who drives the dialog without a person.
    [[nodiscard]] CSetupManager& GetManager() const { return m_manager; }
    [[nodiscard]] int GetTabCount() const { return static_cast<int>(m_tabs.size()); }
    [[nodiscard]] const ConfigureTab& GetTab(int index) const { return At(index).described; }
    [[nodiscard]] int GetFront() const { return m_front; }
    // What a box that is up now is about.
    enum class BoxSubject
    {
        Page,    // something on a page: the one that is being asked to store, else the one in front
        NewPage, // a page that is being made
        Dialog,  // the dialog's own, as one about a database
    };
    [[nodiscard]] BoxSubject GetBoxSubject() const;
    // The tab of that page.
    [[nodiscard]] int GetBoxTab() const;
    // Null for a page that wasn't made.
    [[nodiscard]] HWND GetPage(int index) const { return At(index).page.hWnd; }
    // Before Run: the tab that the dialog opens on, instead of the first.
    void OpenOn(int index) { m_opensOn = index; }
    // Goes to a tab as a click on it does. False when the page in front refuses to be left.
    bool GoTo(int index);
    // False while a page is at work, or has disabled the ways out.
    [[nodiscard]] bool MayBeLeft() const;

    BEGIN_MSG_MAP(CConfigureDialog)
    MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
    MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
    MESSAGE_HANDLER(WM_ENABLE, OnEnable)
    MESSAGE_HANDLER(m_autoPlayMessage, OnQueryCancelAutoPlay)
    NOTIFY_HANDLER(IDC_CONFIGURE_TABS, TCN_SELCHANGING, OnTabLeaving)
    NOTIFY_HANDLER(IDC_CONFIGURE_TABS, TCN_SELCHANGE, OnTabChosen)
    COMMAND_ID_HANDLER(IDC_CONFIGURE_NEXT, OnNext)
    COMMAND_ID_HANDLER(IDC_CONFIGURE_BACK, OnBack)
    COMMAND_ID_HANDLER(IDC_CONFIGURE_CANCEL, OnCancel)
    END_MSG_MAP()

private:
    struct Tab
    {
        ConfigureTab described;
        CTabPage page;
        CPageActivity activity;    // of the page
        HWND substitute = nullptr; // stands in the place of a page that could not be made
        SIZE size = {};            // that the page or its substitute needs
        CPageRecord record;
    };

    class CKeys final : public CMessageFilter
    {
    public:
        using Handler = BOOL (CConfigureDialog::*)(MSG* message);
        CKeys(CConfigureDialog& dialog, Handler handler) : m_dialog(dialog), m_handler(handler) {}
        BOOL PreTranslateMessage(MSG* message) override { return (m_dialog.*m_handler)(message); }

    private:
        CConfigureDialog& m_dialog;
        Handler m_handler;
    };

    LRESULT OnInitDialog(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnEnable(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnQueryCancelAutoPlay(UINT, WPARAM, LPARAM, BOOL&) { return 1; }
    LRESULT OnTabLeaving(int, NMHDR*, BOOL&);
    LRESULT OnTabChosen(int, NMHDR*, BOOL&);
    LRESULT OnNext(WORD, WORD, HWND, BOOL&);
    LRESULT OnBack(WORD, WORD, HWND, BOOL&);
    LRESULT OnCancel(WORD, WORD, HWND, BOOL&);

    void OnPreviousTab() override;
    void OnNextTab() override;
    void OnPageGone(HWND page) override;
    bool OnPageKey(MSG& message) override;
    void OnLeavingChanged() override;

    // Follows the focus on a page that is larger than its place.
    BOOL OnIdle() override;

    BOOL OnMessageForPage(MSG* message);
    BOOL OnKeyOutsidePage(MSG* message);
    bool GoByKey(const MSG& message);
    bool IsMine(const MSG& message) const;

    Tab& At(int index) { return m_tabs[static_cast<std::size_t>(index)]; }
    const Tab& At(int index) const { return m_tabs[static_cast<std::size_t>(index)]; }
    Tab& Front() { return At(m_front); }

    HWND PageAtWork() const;
    void AddTabs();
    CString Title() const;
    int ShowBox(const CString& text, UINT type);

    void Enter(int index);
    void MakePage(int index);
    void RemovePage(Tab& tab);
    void MakeSubstitute(Tab& tab, const CString& reason);
    void FocusOnPage(const Tab& tab);
    void ShowDefaultButton(HWND focus);

    bool LeaveFront();
    bool StoreFront();
    bool Ask(int index, UINT message);
    bool AskForTheWayBack(HWND page);
    void NoteStored(bool accepted);
    CString WhyDatabaseIsSilent(const Tab& tab);
    bool DatabaseAnswers(const Tab& tab, unsigned int textId);
    bool SaveAll();
    bool Save(int index);
    bool MayCancel();
    void Close(int result);

    CSetupManager& m_manager;
    const ConfigureOptions m_options;
    const UINT m_autoPlayMessage;

    std::vector<Tab> m_tabs; // never grows or shrinks: the pages' windows refer to what stands in it
    CPageView m_view;
    CMessageLoop m_loop;
    CKeys m_pageKeys{*this, &CConfigureDialog::OnMessageForPage};
    CKeys m_otherKeys{*this, &CConfigureDialog::OnKeyOutsidePage};

    HWND m_holder = nullptr; // the page that has disabled the ways out
    SIZE m_room = {};        // of the largest page so far
    int m_opensOn = 0;
    int m_front = -1;
    int m_asked = -1;
    int m_making = -1;                              // the tab whose page is being made
    bool m_bEntering = false;                       // a tab comes to the front
    bool m_bOwnBox = false;                         // a box of the dialog's own is up
    bool m_bLeaving = false;                        // the page in front stores for Back
    bool m_bLetsGoBack = false;                     // and has let it
    bool m_bChanged = false;                        // told when the window went
    HWND m_lastFocus = nullptr;                     // the control that had the focus last
    std::set<const CProduct*> m_unansweredProducts; // whose database doesn't answer, as the user was told
    int m_result = 0;
};
