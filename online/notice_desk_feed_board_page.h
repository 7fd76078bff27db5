// The page of the product's notices: updates, channels and feeds.
#pragma once

#include "frame/tab_page.h"
#include "frame/wizard_page.h"
#include "online/location_browser.h"
#include "online/location_rules.h"
#include "online/notice_settings.h"
#include "online/property_stores.h"
#include "window/controls.h"

// Whether the product looks for updates and where, which channels and feeds it shows, and where the site manager's own
// channel comes from. Everything is stored with the host whenever the page is left, whatever the check of the locations
// says then: a page that stays has stored its texts already.
template <class T, template <class> class Impl>
class CNoticeDeskFeedBoardPageBase : public Impl<T>
{
public:
    using Impl<T>::Impl;

    BEGIN_MSG_MAP(CNoticeDeskFeedBoardPageBase)
    COMMAND_HANDLER(IDC_UPDATES, BN_CLICKED, OnUpdates)
    COMMAND_HANDLER(IDC_UPDATE_SOURCE, CBN_SELCHANGE, OnUpdateSource)
    COMMAND_ID_HANDLER(IDC_LIST_BROWSE, OnBrowseList)
    COMMAND_HANDLER(IDC_SITE_CHANNEL, BN_CLICKED, OnSiteChannel)
    COMMAND_ID_HANDLER(IDC_FEED_BROWSE, OnBrowseFeed)
    COMMAND_HANDLER(IDC_FEEDS, BN_CLICKED, OnFeeds)
    CHAIN_MSG_MAP(Impl<T>)
    END_MSG_MAP()

    LRESULT OnInitDialog() override;
    void LookupControls() override;
    bool ValidateAndStore() override;
    bool StoreWithoutValidation() override
    {
        Store();
        return true;
    }

private:
    // ---- handlers ----
    LRESULT OnUpdates(WORD, WORD, HWND, BOOL&);
    LRESULT OnUpdateSource(WORD, WORD, HWND, BOOL&);
    LRESULT OnBrowseList(WORD, WORD, HWND, BOOL&);
    LRESULT OnSiteChannel(WORD, WORD, HWND, BOOL&);
    LRESULT OnBrowseFeed(WORD, WORD, HWND, BOOL&);
    LRESULT OnFeeds(WORD, WORD, HWND, BOOL&);

    // ---- controls ----
    void FillUpdateSources();
    void ShowSettings(const LoadedNoticeSettings& loaded);
    NoticeSettings ReadSettings() const;
    void EnableUpdateBlock();
    void EnableList(bool enabled);
    void EnableSiteBlock();
    void EnableCustomFeeds();
    void EnableControls(std::initializer_list<int> ids, bool enabled);
    void Browse(const LocationKind& kind, CEdit target);

    // ---- storing ----
    NoticeSettings Store();
    bool AcceptList(const NoticeSettings& settings);
    bool AcceptFeed(const NoticeSettings& settings);
    bool Accept(const LocationVerdict& verdict, CEdit edit);
    CHostPropertyStore Properties() { return CHostPropertyStore(*this->m_pProduct); }

    CButton m_updates;
    CComboBox m_updateSource;
    CEdit m_listLocation;
    CButton m_channelNotices;
    CButton m_siteChannel;
    CEdit m_feedLocation;
    CEdit m_displayName;
    CButton m_feeds;
    CButton m_customFeeds;
};

class CNoticeDeskFeedBoardDialog
    : public CNoticeDeskFeedBoardPageBase<CNoticeDeskFeedBoardDialog, CWizardPageImpl>
{
public:
    enum
    {
        IDD = IDD_NOTICE_DESK_FEED_BOARD
    };
    using CNoticeDeskFeedBoardPageBase::CNoticeDeskFeedBoardPageBase;
};

class CNoticeDeskFeedBoardPage : public CNoticeDeskFeedBoardPageBase<CNoticeDeskFeedBoardPage, CTabPageImpl>
{
public:
    enum
    {
        IDD = IDD_NOTICE_DESK_FEED_BOARD_TAB
    };
    using CNoticeDeskFeedBoardPageBase::CNoticeDeskFeedBoardPageBase;
};
