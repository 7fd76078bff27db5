#include "online/notice_desk_feed_board_page.h"

#include "frame/host_name.h"
#include "frame/page_entry.h"
#include "frame/resource_text.h"
#include "include/product.h"
#include "include/rollout_ui.h"

#include <shlwapi.h>

namespace {

class CLocationProbe final : public ILocationProbe
{
public:
    [[nodiscard]] bool FileExists(const CString& path) const override { return ::PathFileExistsW(path); }
    [[nodiscard]] bool IsHostKnown(const CString& host) const override { return IsHostResolvable(host); }
};

} // namespace

// ---- init ----

template <class T, template <class> class Impl>
LRESULT CNoticeDeskFeedBoardPageBase<T, Impl>::OnInitDialog()
{
    this->InitFrame();
    FillUpdateSources();
    CHostPropertyStore properties = Properties();
    ShowSettings(LoadNoticeSettings(properties));
    EnableUpdateBlock();
    EnableSiteBlock();
    EnableCustomFeeds();
    this->FocusAtStart(IDC_UPDATES);
    this->RunHooks(this->m_postInitHooks);
    return FALSE;
}

template <class T, template <class> class Impl>
void CNoticeDeskFeedBoardPageBase<T, Impl>::LookupControls()
{
    Impl<T>::LookupControls();
    m_updates.Attach(this->GetDlgItem(IDC_UPDATES));
    m_updateSource.Attach(this->GetDlgItem(IDC_UPDATE_SOURCE));
    m_listLocation.Attach(this->GetDlgItem(IDC_LIST_LOCATION));
    m_channelNotices.Attach(this->GetDlgItem(IDC_CHANNEL_NOTICES));
    m_siteChannel.Attach(this->GetDlgItem(IDC_SITE_CHANNEL));
    m_feedLocation.Attach(this->GetDlgItem(IDC_FEED_LOCATION));
    m_displayName.Attach(this->GetDlgItem(IDC_DISPLAY_NAME));
    m_feeds.Attach(this->GetDlgItem(IDC_FEEDS));
    m_customFeeds.Attach(this->GetDlgItem(IDC_CUSTOM_FEEDS));
}

// In the order of UpdateSource.
template <class T, template <class> class Impl>
void CNoticeDeskFeedBoardPageBase<T, Impl>::FillUpdateSources()
{
    for (const unsigned int id : {IDS_UPDATE_SOURCE_MAKER, IDS_UPDATE_SOURCE_LIST}) {
        m_updateSource.AddString(LoadResourceString(id));
    }
}

template <class T, template <class> class Impl>
void CNoticeDeskFeedBoardPageBase<T, Impl>::ShowSettings(const LoadedNoticeSettings& loaded)
{
    const NoticeSettings& settings = loaded.settings;
    m_updates.SetCheck(settings.bUpdates);
    m_channelNotices.SetCheck(settings.bChannelNotices);
    m_siteChannel.SetCheck(settings.bSiteChannel);
    m_feeds.SetCheck(settings.bFeeds);
    m_customFeeds.SetCheck(settings.bCustomFeeds);
    m_updateSource.SetCurSel(settings.updateSource);
    m_listLocation.SetText(settings.strListLocation);
    if (loaded.bFirstVisit) {
        m_displayName.SetText(LoadResourceString(IDS_DEFAULT_DISPLAY_NAME));
        return;
    }
    m_feedLocation.SetText(settings.strFeedLocation);
    m_displayName.SetText(settings.strDisplayName);
}

// ---- leaving ----

template <class T, template <class> class Impl>
bool CNoticeDeskFeedBoardPageBase<T, Impl>::ValidateAndStore()
{
    const NoticeSettings settings = Store();
    return AcceptList(settings) && AcceptFeed(settings);
}

template <class T, template <class> class Impl>
NoticeSettings CNoticeDeskFeedBoardPageBase<T, Impl>::Store()
{
    const NoticeSettings settings = ReadSettings();
    CHostPropertyStore properties = Properties();
    StoreNoticeSettings(properties, settings);
    return settings;
}

template <class T, template <class> class Impl>
NoticeSettings CNoticeDeskFeedBoardPageBase<T, Impl>::ReadSettings() const
{
    NoticeSettings settings;
    settings.bUpdates = m_updates.IsChecked();
    settings.updateSource = m_updateSource.GetCurSel();
    settings.strListLocation = m_listLocation.GetText();
    settings.bChannelNotices = m_channelNotices.IsChecked();
    settings.bSiteChannel = m_siteChannel.IsChecked();
    settings.strFeedLocation = m_feedLocation.GetText();
    settings.strDisplayName = m_displayName.GetText();
    settings.bFeeds = m_feeds.IsChecked();
    settings.bCustomFeeds = m_customFeeds.IsChecked();
    return settings;
}

template <class T, template <class> class Impl>
bool CNoticeDeskFeedBoardPageBase<T, Impl>::AcceptList(const NoticeSettings& settings)
{
    if (!settings.bUpdates || settings.updateSource == UPDATE_SOURCE_MAKER) {
        return true;
    }
    const LocationCheckResult result = settings.strListLocation.IsEmpty()
                                           ? LOCATION_LIST_EMPTY
                                           : CheckListLocation(settings.strListLocation, CLocationProbe());
    return Accept(JudgeList(result), m_listLocation);
}

template <class T, template <class> class Impl>
bool CNoticeDeskFeedBoardPageBase<T, Impl>::AcceptFeed(const NoticeSettings& settings)
{
    return !settings.bSiteChannel ||
           Accept(JudgeFeed(CheckFeedLocation(settings.strFeedLocation, CLocationProbe())), m_feedLocation);
}

// Informs or asks the user. A location that isn't accepted is there to be typed anew.
template <class T, template <class> class Impl>
bool CNoticeDeskFeedBoardPageBase<T, Impl>::Accept(const LocationVerdict& verdict, CEdit edit)
{
    switch (verdict.reaction) {
    case LocationReaction::Accept:
        return true;
    case LocationReaction::Ask:
        if (this->ShowPageBox(LoadResourceString(verdict.text), MB_YESNO | MB_ICONEXCLAMATION) == IDYES) {
            return true;
        }
        break;
    case LocationReaction::Refuse:
        this->ShowPageBox(LoadResourceString(verdict.text), MB_OK | MB_ICONSTOP);
        break;
    }
    edit.SetFocus();
    edit.SetSelAll();
    return false;
}

// ---- handlers ----

template <class T, template <class> class Impl>
LRESULT CNoticeDeskFeedBoardPageBase<T, Impl>::OnUpdates(WORD, WORD, HWND, BOOL&)
{
    EnableUpdateBlock();
    return 0;
}

// The list can only change while it is enabled, so the box above it isn't asked.
template <class T, template <class> class Impl>
LRESULT CNoticeDeskFeedBoardPageBase<T, Impl>::OnUpdateSource(WORD, WORD, HWND, BOOL&)
{
    EnableList(m_updateSource.GetCurSel() == UPDATE_SOURCE_LIST);
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CNoticeDeskFeedBoardPageBase<T, Impl>::OnBrowseList(WORD, WORD, HWND, BOOL&)
{
    Browse(LIST_LOCATION_KIND, m_listLocation);
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CNoticeDeskFeedBoardPageBase<T, Impl>::OnSiteChannel(WORD, WORD, HWND, BOOL&)
{
    EnableSiteBlock();
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CNoticeDeskFeedBoardPageBase<T, Impl>::OnBrowseFeed(WORD, WORD, HWND, BOOL&)
{
    Browse(FEED_LOCATION_KIND, m_feedLocation);
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CNoticeDeskFeedBoardPageBase<T, Impl>::OnFeeds(WORD, WORD, HWND, BOOL&)
{
    EnableCustomFeeds();
    return 0;
}

// ---- controls ----

template <class T, template <class> class Impl>
void CNoticeDeskFeedBoardPageBase<T, Impl>::EnableUpdateBlock()
{
    const bool updates = m_updates.IsChecked();
    m_updateSource.EnableWindow(updates);
    EnableList(updates && m_updateSource.GetCurSel() != UPDATE_SOURCE_MAKER);
}

template <class T, template <class> class Impl>
void CNoticeDeskFeedBoardPageBase<T, Impl>::EnableList(bool enabled)
{
    EnableControls({IDC_LIST_HEADING, IDC_LIST_LOCATION, IDC_LIST_BROWSE}, enabled);
}

template <class T, template <class> class Impl>
void CNoticeDeskFeedBoardPageBase<T, Impl>::EnableSiteBlock()
{
    EnableControls(
        {IDC_FEED_HEADING, IDC_FEED_LOCATION, IDC_FEED_BROWSE, IDC_DISPLAY_NAME_HEADING, IDC_DISPLAY_NAME},
        m_siteChannel.IsChecked());
}

// The box keeps its mark while the feeds are off.
template <class T, template <class> class Impl>
void CNoticeDeskFeedBoardPageBase<T, Impl>::EnableCustomFeeds()
{
    m_customFeeds.EnableWindow(m_feeds.IsChecked());
}

template <class T, template <class> class Impl>
void CNoticeDeskFeedBoardPageBase<T, Impl>::EnableControls(std::initializer_list<int> ids, bool enabled)
{
    for (const int id : ids) {
        ::EnableWindow(this->GetDlgItem(id), enabled);
    }
}

template <class T, template <class> class Impl>
void CNoticeDeskFeedBoardPageBase<T, Impl>::Browse(const LocationKind& kind, CEdit target)
{
    CString path;
    if (!BrowseForLocation(this->m_hWnd, kind, CString(this->m_pProduct->m_strName), path)) {
        return;
    }
    target.SetText(path);
    target.SetSel(path.GetLength(), path.GetLength());
    target.SetFocus();
}

int NoticeDeskFeedBoardDialog(PageContext* context)
{
    return ShowWizardPage<CNoticeDeskFeedBoardDialog>(context);
}

CTabPage NoticeDeskFeedBoardPage(PageContext* context)
{
    return CreateTabPage<CNoticeDeskFeedBoardPage>(context);
}
