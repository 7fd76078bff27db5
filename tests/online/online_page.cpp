#include "tests/online/online_page.h"

std::string ShapeName(const testing::TestParamInfo<Shape>& shape)
{
    return shape.param == Shape::Wizard ? "Wizard" : "Tab";
}

OnlinePage::OnlinePage(const PageOfBothShapes& page) : m_functions(page)
{
}

int OnlinePage::ShowPage()
{
    if (GetParam() == Shape::Wizard) {
        return Show(m_functions.dialog);
    }
    switch (ShowTab(m_functions.page)) {
    case PAGE_MESSAGE_NEXT_TAB:
        return NAVIGATION_NEXT;
    case PAGE_MESSAGE_PREVIOUS_TAB:
        return NAVIGATION_BACK;
    default:
        return 0;
    }
}

void OnlinePage::ShowAndGoBack()
{
    Press(Back());
    EXPECT_EQ(ShowPage(), NAVIGATION_BACK);
}

CString OnlinePage::States(std::initializer_list<int> ids) const
{
    CString states;
    for (const int id : ids) {
        states += Control(id).IsEnabled() ? L'E' : L'D';
    }
    return states;
}

NoticePage::NoticePage()
    : OnlinePage({NoticeDeskFeedBoardDialog, NoticeDeskFeedBoardPage}),
      product(host.AddProduct(L"zolt.msi", L"Zolt"))
{
    product.m_strName = L"Zolt Drafting";
    context.pProduct = &product;
    MeetBoxesOnce();
}

void NoticePage::MeetBoxesOnce()
{
    static bool done = false;
    if (done) {
        return;
    }
    done = true;
    ChooseList(L"");
    Press(Next());
    Answer(AskingBox(IDS_LIST_EMPTY), IDNO);
    Type(IDC_LIST_LOCATION, L"bad");
    Press(Next());
    Answer(RefusingBox(IDS_LIST_WRONG_KIND), IDOK);
    Await(L"the field has not got the focus", [this] { return HasFocus(IDC_LIST_LOCATION); });
    Look([this] { // the selected text too
        RedrawWindow(Page(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    });
    ShowAndGoBack();
    product.msiProperties.clear();
    host.log.Clear();
    CountFromHere();
}

CString NoticePage::Property(const wchar_t* name) const
{
    const auto row = product.msiProperties.find(name);
    return row != product.msiProperties.end() ? row->second : CString(L"(none)");
}

void NoticePage::WithStoredPage()
{
    for (const wchar_t* name :
         {L"ZOLT_PATCHRELAY_ENABLE", L"ZOLT_CHANNEL_NOTIFY_ENABLE", L"ZOLT_SITEMGR_CHANNEL_ENABLE",
          L"ZOLT_RSS_FEEDS_ENABLE", L"ZOLT_RSS_FEEDS_CUSTOM_ENABLE", L"ZOLT_TEMP_RSS_FEEDS_CUSTOM_ENABLE"}) {
        WithProperty(name, L"#1");
    }
    WithProperty(L"ZOLT_PATCHRELAY_PATCHNOTIFY", L"#2");
    WithProperty(L"ZOLT_PATCHRELAY_LISTLOCACTION", L"\\\\site\\lists\\on.npl");
    WithProperty(L"ZOLT_TEMP_PATCHRELAY_LISTLOCATION", L"\\\\site\\lists\\off.npl");
    WithProperty(L"ZOLT_SITEMGR_LOCATION", L"\\\\site\\feeds\\on.xml");
    WithProperty(L"ZOLT_TEMP_SITEMGR_LOCATION", L"\\\\site\\feeds\\off.xml");
    WithProperty(L"ZOLT_SITEMGR_DISPLAY_NAME", L"Name on");
    WithProperty(L"ZOLT_TEMP_SITEMGR_DISPLAY_NAME", L"Name off");
}

void NoticePage::ChooseList(const CString& location)
{
    SelectEntry(IDC_UPDATE_SOURCE, 1);
    Type(IDC_LIST_LOCATION, location);
}

void NoticePage::ChooseFeed(const CString& location)
{
    SetChecked(IDC_SITE_CHANNEL, true);
    Type(IDC_FEED_LOCATION, location);
}

ExpectedBox AskingBox(unsigned int text)
{
    return {ResourceText(text), MB_YESNO, MB_ICONWARNING, std::nullopt, true};
}

ExpectedBox RefusingBox(unsigned int text)
{
    return ErrorBox(ResourceText(text));
}
