// From an export's call to its first painted page, beside a bare modeless dialog of the same template. The host is the
// real one on the sample media. Painted means: the page's first WM_PAINT is done and its controls are painted too.
#include "benchmarks/measurement.h"
#include "host/setup_host.h"
#include "include/resource_ids.h"
#include "include/rollout_ui.h"
#include "window/handle.h"

#include <windows.h>

#include <memory>

namespace {

struct Page
{
    const wchar_t* name;
    int (*show)(PageContext*);
    int dialog;
};

const Page g_pages[] = {
    {L"BeginDeploymentDialog", BeginDeploymentDialog, IDD_BEGIN_DEPLOYMENT},
    {L"ProductContactDialog", ProductContactDialog, IDD_PRODUCT_CONTACT},
    {L"NoticeDeskFeedBoardDialog", NoticeDeskFeedBoardDialog, IDD_NOTICE_DESK_FEED_BOARD},
    {L"OnlineResourcesDialog", OnlineResourcesDialog, IDD_ONLINE_RESOURCES},
    {L"DeploymentCompleteDialog", DeploymentCompleteDialog, IDD_DEPLOYMENT_COMPLETE},
    {L"DeploymentSettingsDialog", DeploymentSettingsDialog, IDD_DEPLOYMENT_SETTINGS},
    {L"DeploymentFailedDialog", DeploymentFailedDialog, IDD_DEPLOYMENT_FAILED},
};

// Hooks and window procedures have no argument of their own for these.
double g_painted = 0;
WNDPROC g_pageProc = nullptr;

void PaintWithControls(HWND window)
{
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

LRESULT CALLBACK FirstPaintProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const WNDPROC pageProc = g_pageProc;
    const LRESULT result = CallWindowProcW(pageProc, window, message, wParam, lParam);
    if (message == WM_PAINT && g_painted == 0) {
        PaintWithControls(window);
        g_painted = NowMilliseconds();
        PostMessageW(window, WM_COMMAND, MAKEWPARAM(IDC_BACK, BN_CLICKED),
                     reinterpret_cast<LPARAM>(GetDlgItem(window, IDC_BACK)));
    }
    return result;
}

// The frame gives a hook the page's window in hParent.
int WatchFirstPaint(PageContext* context)
{
    g_pageProc = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(context->hParent, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(FirstPaintProc)));
    return 0;
}

double OpenPage(CSetupHost& host, const Page& page)
{
    FlowPage flowPage = {page.name, CString()};
    for (const FlowPage& known : host.GetFlow()) {
        if (known.strName == page.name) {
            flowPage = known;
        }
    }
    PageContext context = host.MakePageContext(flowPage, true);
    context.postInitHooks.push_back(WatchFirstPaint);
    g_painted = 0;
    const double start = NowMilliseconds();
    const int result = page.show(&context);
    if (result != NAVIGATION_BACK || g_painted == 0) {
        throw CannotMeasure{CString(page.name) + L" ended without having been painted and left by Back"};
    }
    return g_painted - start;
}

INT_PTR CALLBACK BareProc(HWND, UINT message, WPARAM, LPARAM)
{
    return message == WM_INITDIALOG;
}

double OpenBareDialog(HMODULE texts, const Page& page)
{
    const double start = NowMilliseconds();
    const HWND dialog = CreateDialogParamW(texts, MAKEINTRESOURCEW(page.dialog), nullptr, BareProc, 0);
    if (!dialog) {
        throw CannotMeasure{CString(L"The bare dialog of ") + page.name + L" can't be made"};
    }
    ShowWindow(dialog, SW_SHOW);
    PaintWithControls(dialog);
    const double painted = NowMilliseconds();
    DestroyWindow(dialog);
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) { // nothing is left for the page that comes next
        DispatchMessageW(&message);
    }
    return painted - start;
}

} // namespace

std::vector<Comparison> MeasurePages(const BenchOptions& options)
{
    HostOptions hostOptions;
    hostOptions.strMedia = options.strMedia;
    hostOptions.strProgramFolder = options.strProgramFolder;
    hostOptions.strWorkFolder = options.strScratch;
    HostError error;
    const std::unique_ptr<CSetupHost> host(OpenSetupHost(hostOptions, error));
    if (!host) {
        throw CannotMeasure{error.message};
    }
    const CModuleOwner texts(LoadLibraryExW(CLangMgr::Instance().GetWizTextPath() + L"WizText.dll", nullptr,
                                            LOAD_LIBRARY_AS_DATAFILE));
    std::vector<Comparison> comparisons;
    for (const Page& page : g_pages) {
        Comparison comparison;
        comparison.strWhat = page.name;
        comparison.goal = 1.5;
        static_cast<void>(OpenBareDialog(texts.get(), page)); // warms up
        static_cast<void>(OpenPage(*host, page));
        for (int run = 0; run < options.runs; ++run) {
            comparison.bare.push_back(OpenBareDialog(texts.get(), page));
            comparison.ours.push_back(OpenPage(*host, page));
        }
        comparisons.push_back(comparison);
    }
    return comparisons;
}
