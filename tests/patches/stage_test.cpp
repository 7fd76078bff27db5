// What each stage of the page shows, hides, enables and checks, in the modes of a deployment and outside.
#include "tests/patches/service_pack_page.h"

#include <optional>

namespace {

std::vector<CString> g_opened;

HINSTANCE WINAPI NoteOpening(HWND, const wchar_t*, const wchar_t* target, const wchar_t*, const wchar_t*, int)
{
    if (target && *target) {
        g_opened.push_back(target);
    }
    return reinterpret_cast<HINSTANCE>(42);
}

// The forms of the controls (PatchPage::Form) in one stage. Those of the way (append, merge) hold in a deployment's modes.
struct StageForms
{
    const wchar_t* none;
    const wchar_t* offered;
    const wchar_t* listed;
    const wchar_t* serviceText;
    const wchar_t* offer;
    const wchar_t* failure;
    const wchar_t* link;
    const wchar_t* size;
    const wchar_t* action;
    const wchar_t* upToDateMark;
    const wchar_t* downloadedMark;
    const wchar_t* failureMark;
    const wchar_t* list;
    const wchar_t* browse;
    const wchar_t* append;
    const wchar_t* merge;
};

class PatchStages : public PatchPage
{
protected:
    void ExpectForm(int id, const wchar_t* wanted)
    {
        const CString form = Form(id);
        // A hidden control's other words don't matter to anyone.
        if (wanted[0] == L'H') {
            EXPECT_EQ(form.Left(1), CString(L"H")) << id;
        } else {
            EXPECT_EQ(form, CString(wanted)) << id;
        }
    }
    void Expect(const StageForms& forms)
    {
        ExpectForm(IDC_PATCH_NONE, forms.none);
        ExpectForm(IDC_PATCH_OFFERED, forms.offered);
        ExpectForm(IDC_PATCH_LISTED, forms.listed);
        ExpectForm(IDC_PATCH_SERVICE_TEXT, forms.serviceText);
        ExpectForm(IDC_PATCH_OFFER, forms.offer);
        ExpectForm(IDC_PATCH_FAILURE, forms.failure);
        ExpectForm(IDC_PATCH_LINK, forms.link);
        ExpectForm(IDC_PATCH_SIZE, forms.size);
        ExpectForm(IDC_PATCH_ACTION, forms.action);
        ExpectForm(IDC_PATCH_PROGRESS, L"H");
        ExpectForm(IDC_PATCH_UP_TO_DATE_MARK, forms.upToDateMark);
        ExpectForm(IDC_PATCH_DOWNLOADED_MARK, forms.downloadedMark);
        ExpectForm(IDC_PATCH_FAILURE_MARK, forms.failureMark);
        ExpectForm(IDC_PATCH_LIST, forms.list);
        ExpectForm(IDC_PATCH_BROWSE, forms.browse);
        ExpectForm(IDC_PATCH_APPEND, IsDeploymentMode() ? forms.append : L"H");
        ExpectForm(IDC_PATCH_MERGE, IsDeploymentMode() ? forms.merge : L"H");
        EXPECT_EQ(IsShown(IDC_PATCH_WAY_HEADING), IsDeploymentMode());
        EXPECT_TRUE(Control(Next()).IsEnabled());
        EXPECT_TRUE(Control(Back()).IsEnabled());
    }
    // In every mode, each visit with that choice.
    void ExpectInEachMode(int choice, const StageForms& forms)
    {
        for (const int mode : {2, 3, 4, 5, 6}) {
            SCOPED_TRACE(testing::Message() << "mode " << mode << ", choice " << choice);
            InMode(mode);
            WithChoice(choice);
            Look([this, &forms] {
                StageForms wanted = forms;
                // Only a render enables them there, and what disables them does so in every mode.
                Expect(wanted);
            });
            LeaveWithoutPatch();
        }
    }
    void LeaveWithoutPatch()
    {
        Look([] {}); // once the page is up
        Step(L"choose no patch", [this] {
            return Control(IDC_PATCH_NONE).IsUsable() ? Control(IDC_PATCH_NONE).SetChecked(true)
                                                      : StepOutcome::Done();
        });
        ShowAndGoBack();
    }
};
INSTANTIATE_BOTH_SHAPES(PatchStages);

// No service: the service's part is closed.
constexpr StageForms NO_SERVICE = {L"SEC", L"H", L"SEU", L"H", L"H",  L"H",  L"H",   L"H",
                                   L"H",   L"H", L"H",   L"H", L"SD", L"SD", L"SDC", L"SDU"};
constexpr StageForms NO_SERVICE_LISTED = {L"SEU", L"H", L"SEC", L"H", L"H",  L"H",  L"H",   L"H",
                                          L"H",   L"H", L"H",   L"H", L"SE", L"SE", L"SEC", L"SEU"};
constexpr StageForms FAILED = {L"SEC", L"SDU", L"SEU", L"SE", L"H",  L"SE", L"H",   L"H",
                               L"SE",  L"H",   L"H",   L"SE", L"SD", L"SD", L"SDC", L"SDU"};
constexpr StageForms FAILED_LISTED = {L"SEU", L"SDU", L"SEC", L"SE", L"H",  L"SE", L"H",   L"H",
                                      L"SE",  L"H",   L"H",   L"SE", L"SE", L"SE", L"SEC", L"SEU"};
constexpr StageForms AVAILABLE = {L"SEU", L"SEC", L"SEU", L"SE", L"SE", L"H",  L"SE",  L"SE",
                                  L"SE",  L"H",   L"H",   L"H",  L"SD", L"SD", L"SEC", L"SEU"};
constexpr StageForms AVAILABLE_NONE = {L"SEC", L"SEU", L"SEU", L"SE", L"SE", L"H",  L"SE",  L"SE",
                                       L"SD",  L"H",   L"H",   L"H",  L"SD", L"SD", L"SDC", L"SDU"};
constexpr StageForms AVAILABLE_LISTED = {L"SEU", L"SEU", L"SEC", L"SE", L"SE", L"H",  L"SE",  L"SE",
                                         L"SD",  L"H",   L"H",   L"H",  L"SE", L"SE", L"SEC", L"SEU"};
constexpr StageForms DOWNLOADED = {L"SEU", L"SEC", L"SEU", L"SE", L"H",  L"H",  L"SE",  L"SE",
                                   L"SD",  L"H",   L"SE",  L"H",  L"SD", L"SD", L"SEC", L"SEU"};
constexpr StageForms DOWNLOADED_NONE = {L"SEC", L"SEU", L"SEU", L"SE", L"H",  L"H",  L"SE",  L"SE",
                                        L"SD",  L"H",   L"SE",  L"H",  L"SD", L"SD", L"SDC", L"SDU"};
constexpr StageForms DOWNLOADED_LISTED = {L"SEU", L"SEU", L"SEC", L"SE", L"H",  L"H",  L"SE",  L"SE",
                                          L"SD",  L"H",   L"SE",  L"H",  L"SE", L"SE", L"SEC", L"SEU"};
constexpr StageForms UP_TO_DATE = {L"SDU", L"SDU", L"SDU", L"H", L"SE", L"H",  L"H",   L"H",
                                   L"H",   L"SE",  L"H",   L"H", L"SD", L"SD", L"SDU", L"SDU"};

} // namespace

// ---- the controls, stage by stage

TEST_P(PatchStages, WithoutServiceTheLocalChoicesAreLeft)
{
    ExpectInEachMode(-1, NO_SERVICE);
    ExpectInEachMode(0, NO_SERVICE);
    ExpectInEachMode(2, NO_SERVICE_LISTED);
}

TEST_P(PatchStages, AFailedConnectionIsShownWithARetry)
{
    WithAnswer(12017, 0);
    ExpectInEachMode(-1, FAILED);
    ExpectInEachMode(0, FAILED);
    ExpectInEachMode(1, FAILED);
    ExpectInEachMode(2, FAILED_LISTED);
}

TEST_P(PatchStages, ATimeoutIsShownWithARetry)
{
    WithAnswer(12002, 0);
    ExpectInEachMode(-1, FAILED);
    ExpectInEachMode(0, FAILED);
    ExpectInEachMode(1, FAILED);
    ExpectInEachMode(2, FAILED_LISTED);
}

TEST_P(PatchStages, AnOfferIsShownWithNameSizeAndDownload)
{
    WithOffer();
    ExpectInEachMode(-1, AVAILABLE);
    ExpectInEachMode(0, AVAILABLE_NONE);
    ExpectInEachMode(1, AVAILABLE);
    ExpectInEachMode(2, AVAILABLE_LISTED);
}

TEST_P(PatchStages, ADownloadedPatchIsShownWithItsMark)
{
    WithDownloadedPatch(AddPatch(L"sp1.msp", 1));
    ExpectInEachMode(0, DOWNLOADED_NONE);
    ExpectInEachMode(1, DOWNLOADED);
    ExpectInEachMode(2, DOWNLOADED_LISTED);
}

TEST_P(PatchStages, AProductThatIsUpToDateHasNoChoice)
{
    WithAnswer(0, 0);
    for (const int choice : {-1, 0, 1, 2}) {
        ExpectInEachMode(choice, UP_TO_DATE);
    }
}

// ---- texts

TEST_P(PatchStages, EachFailureSaysItsOwnTextAndOffersToTryAgain)
{
    const std::pair<unsigned int, unsigned int> rows[] = {{12017, IDS_PATCH_CONNECT_FAILED},
                                                          {12002, IDS_PATCH_TIMED_OUT}};
    for (const auto& [code, text] : rows) {
        WithAnswer(code, 0);
        Look([this, text = text] {
            EXPECT_EQ(Text(IDC_PATCH_FAILURE), ResourceText(text));
            EXPECT_EQ(Text(IDC_PATCH_ACTION), ResourceText(IDS_PATCH_RETRY));
        });
        ShowAndGoBack();
    }
}

TEST_P(PatchStages, AnOfferIsNamedAndHasADownloadButton)
{
    WithOffer();
    Look([this] {
        EXPECT_EQ(Text(IDC_PATCH_LINK), CString(L"Zolt 2027 Service Pack 1"));
        EXPECT_EQ(Text(IDC_PATCH_SIZE), CString(L"2050 kb"));
        EXPECT_EQ(Text(IDC_PATCH_ACTION), ResourceText(IDS_PATCH_DOWNLOAD));
    });
    LeaveWithoutPatch();
}

TEST_P(PatchStages, TheNameOpensTheReadmeOfTheWebAndNothingElse)
{
    const std::pair<const wchar_t*, bool> rows[] = {{L"http://127.0.0.1:9/zolt/readme.html", true},
                                                    {L"https://127.0.0.1:9/readme", true},
                                                    {L"C:\\Windows\\notepad.exe", false},
                                                    {L"file:///C:/Windows/notepad.exe", false},
                                                    {L"", false}};
    for (const auto& [address, opened] : rows) {
        SCOPED_TRACE(Utf8(address));
        std::optional<CImportRedirect> shell;
        WithOffer();
        WithChoice(0);
        SetField(answer.ReadmeUrl, address);
        g_opened.clear();
        Look([&shell] {
            shell.emplace(L"RolloutUi.dll", "ShellExecuteW", reinterpret_cast<void*>(NoteOpening));
            ASSERT_TRUE(shell->IsInPlace());
        });
        Look([this] { // as by Enter
            const HWND link = Control(IDC_PATCH_LINK).GetWindow();
            SendMessageW(link, WM_CHAR, VK_RETURN, 0);
        });
        Look([&shell] { shell.reset(); });
        ShowAndGoBack();
        EXPECT_EQ(g_opened, opened ? Lines{address} : Lines());
    }
}

TEST_P(PatchStages, AnOfferIsStoredOnTheProduct)
{
    WithOffer();
    LeaveWithoutPatch();
    EXPECT_EQ(product.patchName, CString(L"Zolt 2027 Service Pack 1"));
    EXPECT_EQ(product.patchReadme, CString(L"http://127.0.0.1:9/zolt/readme.html"));
    EXPECT_EQ(product.patchSize, CString(L"2050 kb"));
    EXPECT_FALSE(product.m_bPatchDownloaded);
}

TEST_P(PatchStages, ASizeIsShownInWholeKilobytesAndJunkAsNone)
{
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"0", L"0 kb"},         {L"1023", L"0 kb"},           {L"1024", L"1 kb"},
        {L"2047", L"1 kb"},      {L"104857600", L"102400 kb"}, {L"", L"0 kb"},
        {L"about two", L"0 kb"}, {L"2048 bytes", L"2 kb"},
    };
    for (const auto& [bytes, shown] : rows) {
        WithOffer();
        WithChoice(0);
        SetField(answer.PatchSize, bytes);
        Look([this, shown = shown] { EXPECT_EQ(Text(IDC_PATCH_SIZE), CString(shown)); });
        ShowAndGoBack();
    }
}

TEST_P(PatchStages, ADownloadedPatchShowsWhatTheProductHasStored)
{
    WithDownloadedPatch(AddPatch(L"sp1.msp", 1));
    WithChoice(1);
    Look([this] {
        EXPECT_EQ(Text(IDC_PATCH_LINK), CString(L"Zolt 2027 Service Pack 1"));
        EXPECT_EQ(Text(IDC_PATCH_SIZE), CString(L"2050 kb"));
        EXPECT_EQ(Text(IDC_PATCH_DOWNLOADED), ResourceText(IDS_PATCH_IS_DOWNLOADED));
        EXPECT_EQ(Form(IDC_PATCH_DOWNLOADED), CString(L"SE"));
        EXPECT_EQ(Text(IDC_PATCH_ACTION), ResourceText(IDS_PATCH_DOWNLOAD));
    });
    ShowAndGoBack();
}

// ---- places

TEST_P(PatchStages, WithoutServiceWhatStandsBelowMovesUpByTheClosedPart)
{
    constexpr int MOVED[] = {IDC_PATCH_LISTED, IDC_PATCH_LIST,        IDC_PATCH_BROWSE,
                             IDC_PATCH_REMOVE, IDC_PATCH_NONE,        IDC_PATCH_MERGE,
                             IDC_PATCH_APPEND, IDC_PATCH_WAY_HEADING, IDC_PATCH_LIST_HEADING};
    std::map<int, RECT> before;
    WithOffer();
    WithChoice(0);
    Look([&] {
        for (const int id : MOVED) {
            before[id] = Place(id);
        }
        before[IDC_PATCH_OFFERED] = Place(IDC_PATCH_OFFERED);
    });
    ShowAndGoBack();
    identity.Empty();
    Look([&] {
        const LONG distance = before[IDC_PATCH_OFFERED].top - before[IDC_PATCH_LISTED].top;
        EXPECT_LT(distance, 0);
        for (const int id : MOVED) {
            RECT wanted = before[id];
            OffsetRect(&wanted, 0, distance);
            const RECT place = Place(id);
            EXPECT_TRUE(EqualRect(&place, &wanted)) << id << " moved by " << place.top - before[id].top;
        }
    });
    ShowAndGoBack();
}

TEST_P(PatchStages, UpToDateIsSaidInBoldBehindItsMark)
{
    LONG before = 0;
    WithOffer();
    WithChoice(0);
    Look([&] { before = Place(IDC_PATCH_OFFER).left; });
    ShowAndGoBack();
    WithAnswer(0, 0);
    Look([&] {
        const RECT mark = Place(IDC_PATCH_UP_TO_DATE_MARK);
        EXPECT_EQ(Place(IDC_PATCH_OFFER).left, before + (mark.right - mark.left) + 2);
        EXPECT_EQ(Text(IDC_PATCH_OFFER), ResourceText(IDS_PATCH_UP_TO_DATE));
        LOGFONTW font = {};
        const auto handle =
            reinterpret_cast<HFONT>(SendMessageW(Control(IDC_PATCH_OFFER).GetWindow(), WM_GETFONT, 0, 0));
        ASSERT_NE(GetObjectW(handle, sizeof font, &font), 0);
        EXPECT_EQ(font.lfWeight, 700);
        EXPECT_EQ(CString(font.lfFaceName), CString(L"Arial"));
    });
    ShowAndGoBack();
}

// ---- colors

namespace {

struct StaticColors
{
    LRESULT brush = 0;
    COLORREF text = 0;
    COLORREF ground = 0;
    int mode = 0;
};

class PatchColors : public PatchPage
{
protected:
    StaticColors Ask(int id) const
    {
        const HWND label = Control(id).GetWindow();
        HDC dc = GetDC(label);
        StaticColors colors;
        colors.brush = SendMessageW(Page(), WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                                    reinterpret_cast<LPARAM>(label));
        colors.text = GetTextColor(dc);
        colors.ground = GetBkColor(dc);
        colors.mode = GetBkMode(dc);
        ReleaseDC(label, dc);
        return colors;
    }
    // White on a wizard page; on a tab page one that looks as what stands behind the label.
    void ExpectFramesBrush(const StaticColors& colors) const
    {
        if (GetParam() == Shape::Wizard) {
            EXPECT_EQ(colors.brush, reinterpret_cast<LRESULT>(GetStockObject(WHITE_BRUSH)));
        } else {
            EXPECT_EQ(GetObjectType(reinterpret_cast<HGDIOBJ>(colors.brush)), static_cast<DWORD>(OBJ_BRUSH));
        }
    }
};
INSTANTIATE_BOTH_SHAPES(PatchColors);

} // namespace

TEST_P(PatchColors, AFailureIsRedOnItsTransparentGround)
{
    WithAnswer(12002, 0);
    Look([this] {
        const StaticColors colors = Ask(IDC_PATCH_FAILURE);
        EXPECT_EQ(colors.text, 0x0000FFu);
        EXPECT_EQ(colors.ground, 0xFA3CFAu);
        EXPECT_EQ(colors.mode, TRANSPARENT);
        ExpectFramesBrush(colors);
    });
    ShowAndGoBack();
}

TEST_P(PatchColors, UpToDateIsGreenOnItsTransparentGround)
{
    WithAnswer(0, 0);
    Look([this] {
        const StaticColors colors = Ask(IDC_PATCH_OFFER);
        EXPECT_EQ(colors.text, 0x0F9F3Fu);
        EXPECT_EQ(colors.mode, TRANSPARENT);
        ExpectFramesBrush(colors);
    });
    ShowAndGoBack();
}

TEST_P(PatchColors, AnOfferAndOtherLabelsHaveTheFramesColors)
{
    WithOffer();
    WithChoice(0);
    Look([this] {
        for (const int id : {IDC_PATCH_OFFER, IDC_PATCH_SIZE, IDC_PATCH_LIST_HEADING}) {
            EXPECT_EQ(Ask(id).text, Ask(IDC_PATCH_SERVICE_TEXT).text) << id;
        }
    });
    ShowAndGoBack();
}
