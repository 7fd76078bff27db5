#include "setup/configure_dialog.h"

#include "base/scope_exit.h"
#include "base/system_text.h"
#include "include/navigation.h"
#include "include/product.h"
#include "include/resource_ids.h"
#include "include/setup_manager.h"
#include "setup/configure_layout.h"
#include "setup/configure_rules.h"
#include "setup/program_icon.h"
#include "setup/texts.h"

#include <uxtheme.h>

#include <algorithm>
#include <utility>

namespace {

SIZE SizeOf(HWND window)
{
    const RECT place = CWindow(window).GetWindowRect();
    return {place.right - place.left, place.bottom - place.top};
}

} // namespace

CConfigureDialog::CConfigureDialog(CSetupManager& manager, std::vector<ConfigureTab> tabs,
                                   ConfigureOptions options)
    : m_manager(manager), m_options(std::move(options)),
      m_autoPlayMessage(RegisterWindowMessageW(L"QueryCancelAutoPlay")), m_tabs(tabs.size()), m_view(*this)
{
    for (std::size_t index = 0; index < tabs.size(); ++index) {
        m_tabs[index].described = std::move(tabs[index]);
    }
}

int CConfigureDialog::Run()
{
    m_loop.AddMessageFilter(&m_otherKeys);
    m_loop.AddMessageFilter(&m_pageKeys);
    m_loop.AddIdleHandler(this);
    if (!Create(nullptr) || !m_view.IsWindow()) {
        const CString why = SystemErrorText(GetLastError());
        m_result = NAVIGATION_LOAD_FAILED;
        if (IsWindow()) { // its quit message would close the box
            DestroyWindow();
            MSG quit = {};
            PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
        }
        ShowBox(SetupText(IDS_CONFIGURE_NO_WINDOW, {why}), MB_OK | MB_ICONERROR);
        return m_result;
    }
    ShowWindow(SW_SHOW);
    return m_loop.Run();
}

bool CConfigureDialog::HasChanges() const
{
    return m_bChanged || std::any_of(m_tabs.begin(), m_tabs.end(),
                                     [](const Tab& tab) { return tab.record.IsChanged(tab.page.hWnd); });
}

bool CConfigureDialog::GoTo(int index)
{
    if (index == m_front) {
        return true;
    }
    if (!LeaveFront()) {
        return false;
    }
    Enter(index);
    return true;
}

CConfigureDialog::BoxSubject CConfigureDialog::GetBoxSubject() const
{
    if (m_bOwnBox) {
        return BoxSubject::Dialog;
    }
    return m_making >= 0 ? BoxSubject::NewPage : BoxSubject::Page;
}

int CConfigureDialog::GetBoxTab() const
{
    if (m_making >= 0) {
        return m_making;
    }
    return m_asked >= 0 ? m_asked : m_front;
}

// ---- messages

LRESULT CConfigureDialog::OnInitDialog(UINT, WPARAM, LPARAM, BOOL&)
{
    if (!m_view.CreateIn(m_hWnd, IDC_CONFIGURE_VIEW)) {
        return FALSE; // Run tells it
    }
    SetProgramIcon(*this);
    SetText(Title());
    OnLeavingChanged();
    m_manager.m_hCurrentPage = m_hWnd;
    AddTabs();
    m_room = LeastPageRoom(m_hWnd);
    PlaceConfigureWindow(m_hWnd, m_room, m_options.strPlaceKey, m_manager.m_pUiManager);
    Enter(m_opensOn);
    FocusOnPage(Front());
    return FALSE; // the focus is set
}

LRESULT CConfigureDialog::OnDestroy(UINT, WPARAM, LPARAM, BOOL&)
{
    m_bChanged = HasChanges();
    RememberConfigurePlace(m_hWnd, m_options.strPlaceKey, m_manager.m_pUiManager);
    for (Tab& tab : m_tabs) { // they go with the dialog
        tab.page = CTabPage();
    }
    PostQuitMessage(m_result);
    return 0;
}

// A dialog that a page opens by itself may change what no control of the page shows.
LRESULT CConfigureDialog::OnEnable(UINT, WPARAM enabled, LPARAM, BOOL& handled)
{
    if (!enabled && m_front >= 0 && m_asked < 0 && !m_bOwnBox) {
        Front().record.NoteUnstored();
    }
    handled = FALSE;
    return 0;
}

LRESULT CConfigureDialog::OnTabLeaving(int, NMHDR*, BOOL&)
{
    return !LeaveFront();
}

LRESULT CConfigureDialog::OnTabChosen(int, NMHDR*, BOOL&)
{
    Enter(TabCtrl_GetCurSel(GetDlgItem(IDC_CONFIGURE_TABS)));
    return 0;
}

LRESULT CConfigureDialog::OnNext(WORD, WORD, HWND, BOOL&)
{
    if (MayBeLeft() && SaveAll()) {
        Close(NAVIGATION_NEXT);
    }
    return 0;
}

LRESULT CConfigureDialog::OnBack(WORD, WORD, HWND, BOOL&)
{
    if (!MayBeLeft() || !m_options.bCanGoBack) {
        return 0;
    }
    if (Front().page.hWnd) {
        DatabaseAnswers(Front(), IDS_CONFIGURE_NO_DATABASE);
        if (!MayBeLeft() || !AskForTheWayBack(Front().page.hWnd) || !MayBeLeft()) {
            return 0;
        }
    }
    Close(NAVIGATION_BACK);
    return 0;
}

LRESULT CConfigureDialog::OnCancel(WORD, WORD, HWND, BOOL&)
{
    if (MayBeLeft() && MayCancel()) {
        Close(NAVIGATION_CANCEL);
    }
    return 0;
}

// ---- from the page in front, which has stored by then

void CConfigureDialog::OnPreviousTab()
{
    if (m_bLeaving) {
        m_bLetsGoBack = true;
        return;
    }
    if (m_front < 0 || !m_view.MayPageBeLeft()) {
        return;
    }
    NoteStored(false);
    if (m_front > 0) {
        Enter(m_front - 1);
    }
}

void CConfigureDialog::OnNextTab()
{
    if (m_front < 0 || !m_view.MayPageBeLeft()) {
        return;
    }
    NoteStored(true);
    if (m_front + 1 < GetTabCount()) {
        Enter(m_front + 1);
    } else {
        GotoDlgCtrl(GetDlgItem(IDC_CONFIGURE_NEXT)); // the next Enter goes on
    }
}

void CConfigureDialog::OnPageGone(HWND page)
{
    for (Tab& tab : m_tabs) {
        if (tab.page.hWnd == page) {
            tab.record.NoteGone(page);
            tab.page = CTabPage();
            if (m_holder == page) { // else another one would be left that can't be
                m_view.LetPageBeLeft();
            }
            if (m_front >= 0 && &tab == &Front()) {
                GotoDlgCtrl(GetDlgItem(IDC_CONFIGURE_TABS)); // without a focus no key would come
            }
        }
    }
}

void CConfigureDialog::OnLeavingChanged()
{
    const bool open = m_view.MayPageBeLeft();
    m_holder = open ? nullptr : m_holder ? m_holder : PageAtWork();
    const HWND focus = GetFocus();
    CWindow(GetDlgItem(IDC_CONFIGURE_BACK)).EnableWindow(open && m_options.bCanGoBack);
    CWindow(GetDlgItem(IDC_CONFIGURE_NEXT)).EnableWindow(open);
    CWindow(GetDlgItem(IDC_CONFIGURE_CANCEL)).EnableWindow(open);
    if (m_front >= 0 && !::IsWindowEnabled(focus) && ::GetParent(focus) == m_hWnd) {
        FocusOnPage(Front()); // no key would come to a disabled button
    }
}

// The one that has just called; the one in front where nobody could see it.
HWND CConfigureDialog::PageAtWork() const
{
    const auto caller =
        std::find_if(m_tabs.begin(), m_tabs.end(), [](const Tab& tab) { return tab.activity.IsInnermost(); });
    if (caller != m_tabs.end()) {
        return caller->page.hWnd;
    }
    return m_front >= 0 ? At(m_front).page.hWnd : nullptr;
}

// ---- the window

void CConfigureDialog::AddTabs()
{
    const HWND tabs = GetDlgItem(IDC_CONFIGURE_TABS);
    for (int index = 0; index < GetTabCount(); ++index) {
        CString caption = GetTab(index).strCaption;
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = caption.GetBuffer(caption.GetLength());
        ::SendMessageW(tabs, TCM_INSERTITEMW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
    }
}

// As the wizard's pages are titled.
CString CConfigureDialog::Title() const
{
    const CString deployment(m_manager.m_strDeploymentName);
    const CString product(m_manager.m_strProductName);
    return deployment.IsEmpty() ? product : product + L" - " + deployment;
}

int CConfigureDialog::ShowBox(const CString& text, UINT type)
{
    m_bOwnBox = true;
    const scope_exit shown([this] { m_bOwnBox = false; });
    return MessageBox(text, CString(m_manager.m_strProductName), type);
}

// ---- tabs

void CConfigureDialog::Enter(int index)
{
    if (m_bEntering || !IsWindow()) { // the window may have gone under a box
        return;
    }
    m_bEntering = true;
    const scope_exit entered([this] { m_bEntering = false; });
    const auto isFocusOnPage = [this] {
        const HWND focus = GetFocus();
        return !focus || focus == m_hWnd || focus == m_view || IsChild(m_view, focus);
    };
    const bool focusWasOnPage = isFocusOnPage();
    MakePage(index);
    Tab& tab = At(index);
    m_front = index;
    TabCtrl_SetCurSel(GetDlgItem(IDC_CONFIGURE_TABS), index);
    m_view.ShowPage(tab.page.hWnd ? tab.page.hWnd : tab.substitute, tab.size);
    if (focusWasOnPage || isFocusOnPage()) { // also of a button that the page has just disabled
        FocusOnPage(tab);
    }
}

// Makes the page unless it is there with something that isn't stored, or at work. One that could not be made is tried again
// each time.
void CConfigureDialog::MakePage(int index)
{
    Tab& tab = At(index);
    const CString silence = WhyDatabaseIsSilent(tab);
    const bool isThere = tab.page.hWnd != nullptr;
    if (isThere && (index == m_front || !tab.record.IsStored(tab.page.hWnd) || tab.activity.IsAtWork())) {
        return;
    }
    if (isThere && !silence.IsEmpty() && !tab.record.IsAccepted(tab.page.hWnd)) {
        return; // nobody has checked what it has stored
    }
    m_making = index;
    const scope_exit made([this] { m_making = -1; });
    const bool wasChanged = tab.record.IsChanged(tab.page.hWnd);
    const scope_exit lost([&] { m_bChanged = m_bChanged || (wasChanged && !tab.page.hWnd); });
    RemovePage(tab);
    PageContext& context = tab.described.context;
    if (!context.pProduct) { // a tab page belongs to a product and relies on it
        MakeSubstitute(tab, SetupText(IDS_CONFIGURE_NO_PRODUCT, {tab.described.strName}));
        return;
    }
    if (!silence.IsEmpty()) {
        MakeSubstitute(tab, SetupText(IDS_CONFIGURE_NO_DATABASE, {context.pProduct->m_strName, silence}));
        return;
    }
    context.hParent = m_view;
    context.hFrame = m_hWnd;
    context.rcDisplay = m_view.GetRectInParent();
    tab.page = tab.described.create(&context); // tells a failure by itself
    if (!tab.page.hWnd) {
        MakeSubstitute(tab, SetupText(IDS_CONFIGURE_NO_PAGE, {tab.described.strName}));
        return;
    }
    tab.activity.SubclassWindow(tab.page.hWnd);
    EnableThemeDialogTexture(tab.page.hWnd, ETDT_ENABLETAB);
    ::SendMessageW(tab.page.hWnd, PAGE_MESSAGE_COUNTER, CounterParameter(index, GetTabCount()), 0);
    if (tab.record.WasMade()) {
        tab.record.NoteMadeAnew(tab.page.hWnd);
    } else {
        tab.record.NoteMade(tab.page.hWnd);
    }
    if (m_options.pageMade) {
        m_options.pageMade(tab.described, tab.page.hWnd);
    }
    tab.size = SizeOf(tab.page.hWnd);
    const SIZE room = {std::max(m_room.cx, tab.size.cx), std::max(m_room.cy, tab.size.cy)};
    if (room.cx != m_room.cx || room.cy != m_room.cy) {
        m_room = room;
        SizeConfigureWindow(m_hWnd, m_room);
    }
}

// The page, or what stands in its place.
void CConfigureDialog::RemovePage(Tab& tab)
{
    if (tab.substitute) {
        ::DestroyWindow(std::exchange(tab.substitute, nullptr));
    }
    if (tab.page.hWnd) {
        ::DestroyWindow(tab.page.hWnd); // OnPageGone forgets it
    }
}

void CConfigureDialog::MakeSubstitute(Tab& tab, const CString& reason)
{
    tab.substitute = CreateDialogParamW(
        _Module.GetResourceInstance(), MAKEINTRESOURCEW(IDD_CONFIGURE_NO_PAGE), m_view,
        [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
    CString lines = reason;
    lines.Replace(L"\r\n", L"\n");
    lines.Replace(L"\n", L"\r\n"); // as an edit wants them
    ::SetDlgItemTextW(tab.substitute, IDC_CONFIGURE_REASON, lines);
    tab.size = SIZE{};
    if (tab.substitute) {
        EnableThemeDialogTexture(tab.substitute, ETDT_ENABLETAB);
        tab.size = SizeOf(tab.substitute);
    }
}

void CConfigureDialog::FocusOnPage(const Tab& tab)
{
    const HWND page = tab.page.hWnd ? tab.page.hWnd : tab.substitute;
    if (IsChild(page, GetFocus())) {
        return; // the page has chosen by itself
    }
    const HWND first = GetNextDlgTabItem(page, nullptr, FALSE);
    GotoDlgCtrl(first ? first : GetDlgItem(IDC_CONFIGURE_TABS));
    if (first && page == tab.substitute) {
        ::SendMessageW(first, EM_SETSEL, 0, 0); // the words aren't there to be replaced
    }
}

// ---- leaving

// A page that is asked, is at work, or shows a box of its own must not lose its window meanwhile, and one that holds the
// ways out keeps the dialog.
bool CConfigureDialog::MayBeLeft() const
{
    return m_asked < 0 && !m_bEntering && IsWindowEnabled() && m_view.MayPageBeLeft() &&
           std::none_of(m_tabs.begin(), m_tabs.end(), [](const Tab& tab) { return tab.activity.IsAtWork(); });
}

// Looked at twice: while a box is up, a page may begin its work.
bool CConfigureDialog::LeaveFront()
{
    return MayBeLeft() && StoreFront() && MayBeLeft();
}

// A page whose database is gone may be left, or nobody could go on to the other products.
bool CConfigureDialog::StoreFront()
{
    if (m_front < 0 || !Front().page.hWnd || !DatabaseAnswers(Front(), IDS_CONFIGURE_NO_DATABASE)) {
        return true;
    }
    // Who has answered a page's question isn't asked again while nothing has changed since.
    return Front().record.IsAccepted(Front().page.hWnd) || Ask(m_front, PAGE_MESSAGE_STORE);
}

bool CConfigureDialog::Ask(int index, UINT message)
{
    m_asked = index;
    const scope_exit asked([this] { m_asked = -1; });
    const bool accepted = ::SendMessageW(At(index).page.hWnd, message, 0, 0) != 0;
    At(index).record.NoteUnstored();
    if (accepted) {
        At(index).record.NoteStored(At(index).page.hWnd, true);
    }
    m_lastFocus =
        nullptr; // what a page refuses has the focus, maybe as before, and may have been scrolled out of sight
    return accepted;
}

// Back stores without validation, and only a page's own button for the tab before does that. A page that stays sends no
// word of it.
bool CConfigureDialog::AskForTheWayBack(HWND page)
{
    m_bLetsGoBack = false;
    m_bLeaving = true;
    const scope_exit left([this] { m_bLeaving = false; });
    ::SendMessageW(page, WM_COMMAND, MAKEWPARAM(IDC_PREVIOUS_TAB, BN_CLICKED),
                   reinterpret_cast<LPARAM>(::GetDlgItem(page, IDC_PREVIOUS_TAB)));
    m_lastFocus = nullptr; // as in Ask
    return m_bLetsGoBack;
}

// By its own way to another tab, of which the one back stores unchecked.
void CConfigureDialog::NoteStored(bool accepted)
{
    Front().record.NoteUnstored();
    if (DatabaseAnswers(Front(), IDS_CONFIGURE_NO_DATABASE)) {
        Front().record.NoteStored(Front().page.hWnd, accepted);
    }
}

// The empty text when it answers. A silence that is over is reported anew when it comes again.
CString CConfigureDialog::WhyDatabaseIsSilent(const Tab& tab)
{
    CProduct* product = tab.described.context.pProduct;
    const CString why = product && m_options.checkDatabase ? m_options.checkDatabase(*product) : CString();
    if (why.IsEmpty()) {
        m_unansweredProducts.erase(product);
    }
    return why;
}

// Tells a silence once, and again each time when it keeps the dialog from going on.
bool CConfigureDialog::DatabaseAnswers(const Tab& tab, unsigned int textId)
{
    const CString why = WhyDatabaseIsSilent(tab);
    if (why.IsEmpty()) {
        return true;
    }
    CProduct* product = tab.described.context.pProduct;
    const bool news = m_unansweredProducts.insert(product).second;
    if (news || textId == IDS_CONFIGURE_NO_DATABASE_SAVE) {
        ShowBox(SetupText(textId, {product->m_strName, why}), MB_OK | MB_ICONERROR);
    }
    return false;
}

bool CConfigureDialog::SaveAll()
{
    for (int index = 0; index < GetTabCount(); ++index) {
        if (At(index).record.WasMade() && !Save(index)) {
            FocusOnPage(Front());
            return false;
        }
    }
    return MayBeLeft(); // a page that wasn't asked may have begun its work meanwhile
}

// A page that was accepted and has gone has nothing to store, but what it stored may be lost with its database. One that
// went before is made again.
bool CConfigureDialog::Save(int index)
{
    Tab& tab = At(index);
    const bool accepted = tab.record.IsAccepted(tab.page.hWnd);
    if (!accepted && (index != m_front || !tab.page.hWnd)) {
        Enter(index); // what it may complain of is then seen behind its box
    }
    const bool isThere = accepted || tab.page.hWnd;
    if (DatabaseAnswers(tab, IDS_CONFIGURE_NO_DATABASE_SAVE) && isThere &&
        (accepted || Ask(index, PAGE_MESSAGE_STORE_ALL))) {
        return true;
    }
    if (index != m_front) {
        Enter(index);
    }
    return false;
}

bool CConfigureDialog::MayCancel()
{
    m_manager.EnableCancelling(false);
    const bool asks = m_options.bLosesChoices || HasChanges();
    const bool agreed = !asks || ShowBox(SetupText(IDS_CONFIGURE_CANCEL_QUESTION),
                                         MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
    if (!agreed || !MayBeLeft()) {
        m_manager.EnableCancelling(true);
        return false;
    }
    m_manager.m_exitCode = EXIT_CODE_CANCELLED;
    m_manager.SetMsiProperty(L"TARN_SETUP_SUCCEEDED", L"", false);
    return true;
}

void CConfigureDialog::Close(int result)
{
    m_result = result;
    DestroyWindow();
}
