// From an export's call to its first painted page, beside a bare modeless dialog of the same template. The host is the
// real one on the sample media. Painted means: the page's first WM_PAINT is done and its controls are painted too.
#include "base/handle.h"
#include "benchmarks/bare_list.h"
#include "benchmarks/bare_tree.h"
#include "benchmarks/bench_pages.h"
#include "benchmarks/measurement.h"
#include "benchmarks/sample_host.h"
#include "include/navigation.h"
#include "include/product.h"
#include "include/resource_ids.h"

#include <windows.h>

#include <commctrl.h>

#include <memory>

namespace {

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

// With a patch that was downloaded before, the service isn't asked: its answer is no work of the page's.
void LeaveServiceOut(const PageContext& context)
{
    context.pProduct->m_bPatchDownloaded = true;
}

double OpenPage(CSetupHost& host, const BenchPage& page)
{
    FlowPage flowPage = {page.strName, CString()};
    for (const FlowPage& known : host.GetFlow()) {
        if (known.strName == page.strName) {
            flowPage = known;
        }
    }
    PageContext context = host.MakePageContext(flowPage, true);
    LeaveServiceOut(context);
    context.postInitHooks.push_back(WatchFirstPaint);
    g_painted = 0;
    const double start = NowMilliseconds();
    const int result = page.show(&context);
    if (result != NAVIGATION_BACK || g_painted == 0) {
        throw CannotMeasure{page.strName + L" ended without having been painted and left by Back"};
    }
    return g_painted - start;
}

// `texts` comes with the init message, here and below.
INT_PTR CALLBACK BareProc(HWND dialog, UINT message, WPARAM, LPARAM texts)
{
    if (message == WM_INITDIALOG) {
        FillBareTree(dialog, reinterpret_cast<HMODULE>(texts));
        FillBareList(dialog, reinterpret_cast<HMODULE>(texts));
    }
    return message == WM_INITDIALOG;
}

// A window of a program has that program's icon, however the window is made.
INT_PTR CALLBACK BareWindowProc(HWND dialog, UINT message, WPARAM, LPARAM texts)
{
    if (message == WM_INITDIALOG) {
        const HICON icon = LoadIconW(reinterpret_cast<HMODULE>(texts), MAKEINTRESOURCEW(IDI_SETUP));
        SendMessageW(dialog, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
        FillBareTree(dialog, reinterpret_cast<HMODULE>(texts));
        FillBareList(dialog, reinterpret_cast<HMODULE>(texts));
    }
    return message == WM_INITDIALOG;
}

double OpenBareDialog(HMODULE texts, const BenchPage& page)
{
    const double start = NowMilliseconds();
    const HWND dialog = CreateDialogParamW(texts, MAKEINTRESOURCEW(page.dialog), nullptr, BareWindowProc,
                                           reinterpret_cast<LPARAM>(texts));
    if (!dialog) {
        throw CannotMeasure{L"The bare dialog of " + page.strName + L" can't be made"};
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

// The host's dialog, as far as a tab page needs one.
class CTabFrame
{
public:
    CTabFrame()
        : m_window(CreateWindowW(WC_STATICW, L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 800, 600, nullptr,
                                 nullptr, nullptr, nullptr))
    {
        UpdateWindow(m_window);
    }
    ~CTabFrame() { DestroyWindow(m_window); }
    CTabFrame(const CTabFrame&) = delete;
    CTabFrame& operator=(const CTabFrame&) = delete;
    HWND GetWindow() const { return m_window; }

private:
    HWND m_window;
};

// Shows and paints a page that was just made, and takes it away again; when all was painted.
double PaintAndDestroy(HWND page)
{
    ShowWindow(page, SW_SHOW);
    PaintWithControls(page);
    const double painted = NowMilliseconds();
    DestroyWindow(page);
    return painted;
}

double OpenTabPage(CSetupHost& host, const CTabFrame& frame, const BenchTabPage& page)
{
    PageContext context = host.MakePageContext({page.strName, CString()}, true);
    LeaveServiceOut(context);
    context.hParent = frame.GetWindow();
    context.hFrame = frame.GetWindow();
    const double start = NowMilliseconds();
    const CTabPage tab = page.create(&context);
    if (!tab.hWnd) {
        throw CannotMeasure{page.strName + L" can't be made"};
    }
    return PaintAndDestroy(tab.hWnd) - start;
}

double OpenBareChild(HMODULE texts, const CTabFrame& frame, const BenchTabPage& page)
{
    const double start = NowMilliseconds();
    const HWND dialog = CreateDialogParamW(texts, MAKEINTRESOURCEW(page.dialog), frame.GetWindow(), BareProc,
                                           reinterpret_cast<LPARAM>(texts));
    if (!dialog) {
        throw CannotMeasure{L"The bare dialog of " + page.strName + L" can't be made"};
    }
    return PaintAndDestroy(dialog) - start;
}

Comparison MeasureTabPage(CSetupHost& host, HMODULE texts, const BenchTabPage& page, int runs)
{
    const CTabFrame frame;
    Comparison comparison;
    comparison.strWhat = page.strName;
    comparison.goal = 1.5;
    static_cast<void>(OpenBareChild(texts, frame, page)); // warms up
    static_cast<void>(OpenTabPage(host, frame, page));
    for (int run = 0; run < runs; ++run) {
        comparison.bare.push_back(OpenBareChild(texts, frame, page));
        comparison.ours.push_back(OpenTabPage(host, frame, page));
    }
    return comparison;
}

} // namespace

std::vector<Comparison> MeasurePages(const BenchOptions& options)
{
    const std::unique_ptr<CSetupHost> host = OpenSampleHost(options);
    const CModuleOwner texts(LoadLibraryExW(CLangMgr::Instance().GetWizTextPath() + L"WizText.dll", nullptr,
                                            LOAD_LIBRARY_AS_DATAFILE));
    const BenchPages pages = FindBenchPages(options);
    std::vector<Comparison> comparisons;
    for (const BenchPage& page : pages.wizard) {
        Comparison comparison;
        comparison.strWhat = page.strName;
        comparison.goal = 1.5;
        static_cast<void>(OpenBareDialog(texts.get(), page)); // warms up
        static_cast<void>(OpenPage(*host, page));
        for (int run = 0; run < options.runs; ++run) {
            comparison.bare.push_back(OpenBareDialog(texts.get(), page));
            comparison.ours.push_back(OpenPage(*host, page));
        }
        comparisons.push_back(comparison);
    }
    for (const BenchTabPage& page : pages.tabs) {
        comparisons.push_back(MeasureTabPage(*host, texts.get(), page, options.runs));
    }
    return comparisons;
}
