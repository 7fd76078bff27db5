// Switching between all tabs of a product with twelve, beside bare dialogs of the same templates that are shown and
// hidden in turn. The tabs are the product's tab pages, over and over, on the real host and the sample media. A page
// that is left stores itself, as always; a bare dialog has nothing to store.
#include "base/handle.h"
#include "benchmarks/bench_pages.h"
#include "benchmarks/measurement.h"
#include "benchmarks/sample_host.h"
#include "include/navigation.h"
#include "include/product.h"
#include "setup/configure_dialog.h"
#include "window/module.h"

#include <windows.h>

#include <memory>

CAppModule _Module; // the dialog's; the pages have their library's

namespace {

constexpr int TABS = 12;

BenchPages g_pages;

const BenchTabPage& PageOf(int tab)
{
    return g_pages.tabs[static_cast<std::size_t>(tab) % g_pages.tabs.size()];
}

struct Figures
{
    Samples first; // milliseconds for all tabs: each shown for the first time
    Samples again; // ... and when all are there
};

void Paint(HWND window)
{
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

// ---- the dialog: measured from a timer's call, as the dialog runs a loop of its own

struct DialogRun
{
    CConfigureDialog* dialog;
    int rounds;
    Figures figures;
    bool stayed = false; // a tab could not be gone to
};
DialogRun* g_run = nullptr; // a timer's procedure has no argument for it

double GoThroughTabs(DialogRun& run, int first)
{
    const double start = NowMilliseconds();
    for (int step = 0; step < TABS - 1; ++step) {
        run.stayed = !run.dialog->GoTo((first + step) % TABS) || run.stayed;
        Paint(*run.dialog);
    }
    return NowMilliseconds() - start;
}

void CALLBACK MeasureDialog(HWND, UINT, UINT_PTR timer, DWORD)
{
    KillTimer(nullptr, timer);
    DialogRun& run = *g_run;
    Paint(*run.dialog);
    run.figures.first.push_back(GoThroughTabs(run, 1));
    for (int round = 0; round < run.rounds; ++round) {
        run.figures.again.push_back(GoThroughTabs(run, round % 2 == 0 ? 0 : TABS - 1));
    }
    run.dialog->PostMessage(WM_COMMAND, IDC_CONFIGURE_CANCEL);
}

std::vector<ConfigureTab> MakeTabs(CSetupHost& host)
{
    const std::vector<CProduct*>& products = host.GetProducts();
    if (products.empty()) {
        throw CannotMeasure{L"The sample media have no product"};
    }
    std::vector<ConfigureTab> tabs(TABS);
    for (int tab = 0; tab < TABS; ++tab) {
        ConfigureTab& made = tabs[static_cast<std::size_t>(tab)];
        made.strPage = L"Tab" + NumberText(tab) + L"Page";
        made.strName = made.strCaption = L"Page " + NumberText(tab);
        made.create = PageOf(tab).create;
        made.context = host.MakePageContext({made.strPage, CString()}, true, products.front());
    }
    return tabs;
}

Figures MeasureOurs(CSetupHost& host, int rounds)
{
    ConfigureOptions options;
    options.checkDatabase = [&host](CProduct& product) { return host.CheckDatabase(product).message; };
    CConfigureDialog dialog(host.GetSetupManager(), MakeTabs(host), options);
    DialogRun run = {&dialog, rounds, {}};
    g_run = &run;
    SetTimer(nullptr, 0, USER_TIMER_MINIMUM, MeasureDialog);
    const int result = dialog.Run();
    g_run = nullptr;
    if (result != NAVIGATION_CANCEL || run.stayed) {
        throw CannotMeasure{L"The configure dialog ended without having shown all its tabs"};
    }
    return run.figures;
}

// ---- bare dialogs

INT_PTR CALLBACK BareProc(HWND, UINT message, WPARAM, LPARAM)
{
    return message == WM_INITDIALOG;
}

class CBareDialogs
{
public:
    explicit CBareDialogs(HMODULE texts)
        : m_texts(texts),
          m_frame(CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN | WS_VISIBLE, 100,
                                  100, 600, 550, nullptr, nullptr, nullptr, nullptr))
    {
        Show(0);
    }
    ~CBareDialogs() { DestroyWindow(m_frame); }
    CBareDialogs(const CBareDialogs&) = delete;
    CBareDialogs& operator=(const CBareDialogs&) = delete;

    double GoThrough(int first)
    {
        const double start = NowMilliseconds();
        for (int step = 0; step < TABS - 1; ++step) {
            Show((first + step) % TABS);
        }
        return NowMilliseconds() - start;
    }

private:
    void Show(int tab)
    {
        if (!m_dialogs[tab]) {
            m_dialogs[tab] =
                CreateDialogParamW(m_texts, MAKEINTRESOURCEW(PageOf(tab).dialog), m_frame, BareProc, 0);
        }
        if (!m_dialogs[tab]) {
            throw CannotMeasure{L"A bare dialog can't be made"};
        }
        ShowWindow(m_dialogs[tab], SW_SHOW);
        if (m_shown && m_shown != m_dialogs[tab]) {
            ShowWindow(m_shown, SW_HIDE);
        }
        m_shown = m_dialogs[tab];
        Paint(m_frame);
    }

    HMODULE m_texts;
    HWND m_frame;
    HWND m_dialogs[TABS] = {};
    HWND m_shown = nullptr;
};

Figures MeasureBare(HMODULE texts, int rounds)
{
    CBareDialogs dialogs(texts);
    Figures figures;
    figures.first.push_back(dialogs.GoThrough(1));
    for (int round = 0; round < rounds; ++round) {
        figures.again.push_back(dialogs.GoThrough(round % 2 == 0 ? 0 : TABS - 1));
    }
    return figures;
}

void Append(Samples& samples, const Samples& more)
{
    samples.insert(samples.end(), more.begin(), more.end());
}

} // namespace

std::vector<Comparison> MeasureTabs(const BenchOptions& options)
{
    _Module.Init(GetModuleHandleW(nullptr));
    g_pages = FindBenchPages(options);
    const std::unique_ptr<CSetupHost> host = OpenSampleHost(options);
    const CModuleOwner texts(LoadLibraryExW(CLangMgr::Instance().GetWizTextPath() + L"WizText.dll", nullptr,
                                            LOAD_LIBRARY_AS_DATAFILE));
    Comparison first = {L"12 tabs, each shown first", "ms", {}, {}};
    Comparison again = {L"12 tabs, gone through again", "ms", {}, {}};
    static_cast<void>(MeasureBare(texts.get(), 1)); // warms up
    static_cast<void>(MeasureOurs(*host, 1));
    for (int run = 0; run < options.runs; ++run) {
        const Figures bare = MeasureBare(texts.get(), 2);
        const Figures ours = MeasureOurs(*host, 2);
        Append(first.bare, bare.first);
        Append(first.ours, ours.first);
        Append(again.bare, bare.again);
        Append(again.ours, ours.again);
    }
    return {first, again};
}
