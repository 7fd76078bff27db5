// The service pack page's work beside the bare calls that it comes down to: a download from a server of this program's own
// beside a plain loop with the same reads, writes and messages; and lists of patches judged, beside the installer's calls.
#include "base/handle.h"
#include "base/path_text.h"
#include "benchmarks/measurement.h"
#include "benchmarks/sample_host.h"
#include "include/product.h"
#include "include/resource_ids.h"
#include "include/setup_manager.h"
#include "installer/patch_summary.h"
#include "patches/patch_download.h"
#include "patches/patch_list.h"
#include "tests/support/loopback_server.h"

#include <windows.h>

#include <commctrl.h>
#include <msi.h>
#include <wininet.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <vector>

namespace {

constexpr unsigned long long DOWNLOAD_BYTES = 100'000'000;
constexpr DWORD READ_BYTES = 1024;
constexpr UINT BARE_PROGRESS = WM_APP;
constexpr UINT BARE_END = WM_APP + 1;
constexpr WORD INPUT_KEY = VK_F15; // no keyboard has it, and nothing listens to it
constexpr DWORD INPUT_PAUSE = 25;  // milliseconds from one key to the next
constexpr int DOWNLOADS = 3;

// ---- the window that the messages go to -------------------------------------------------------------------------------

// A bar that follows the messages, as the page has it, and how long a key took to come.
class CProgressWindow
{
public:
    CProgressWindow()
        : m_window(CreateWindowW(WC_STATICW, L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 500, 100, nullptr,
                                 nullptr, nullptr, nullptr)),
          m_bar(CreateWindowW(PROGRESS_CLASSW, L"", WS_CHILD | WS_VISIBLE, 5, 5, 480, 20, m_window, nullptr,
                              nullptr, nullptr))
    {
        SetForegroundWindow(m_window);
        SetFocus(m_window);
    }
    ~CProgressWindow() { DestroyWindow(m_window); }
    CProgressWindow(const CProgressWindow&) = delete;
    CProgressWindow& operator=(const CProgressWindow&) = delete;

    HWND get() const { return m_window; }

    // Handles messages until `end`; the milliseconds that the slowest key took, which is pressed now and then.
    template <class Percent>
    double RunUntil(UINT end, UINT progress, Percent percent)
    {
        double slowest = 0;
        double pressed = 0;
        double next = NowMilliseconds();
        MSG message = {};
        while (GetMessageW(&message, nullptr, 0, 0) > 0) {
            const double now = NowMilliseconds();
            if (message.message == WM_KEYDOWN && message.wParam == INPUT_KEY && pressed > 0) {
                slowest = std::max(slowest, now - pressed);
                pressed = 0;
                next = now + INPUT_PAUSE;
            } else if (message.message == progress) {
                SendMessageW(m_bar, PBM_SETPOS, static_cast<WPARAM>(percent()), 0);
            } else if (message.message == end) {
                return slowest;
            } else {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
            if (pressed == 0 && now >= next) {
                INPUT keys[2] = {};
                keys[0].type = keys[1].type = INPUT_KEYBOARD;
                keys[0].ki.wVk = keys[1].ki.wVk = INPUT_KEY;
                keys[1].ki.dwFlags = KEYEVENTF_KEYUP;
                pressed = now;
                SendInput(2, keys, sizeof keys[0]);
            }
        }
        throw CannotMeasure{L"The window of a download was told to quit"};
    }

private:
    HWND m_window;
    HWND m_bar;
};

// ---- download -----------------------------------------------------------------------------------------------------------

struct BareDownload
{
    CString strUrl;
    CString strTarget;
    HWND window = nullptr;
    std::atomic<int> percent{0};
};

// The reads, writes and messages alone. Handles stay open when a call fails: the program ends then.
DWORD WINAPI DownloadBare(void* argument)
{
    auto& download = *static_cast<BareDownload*>(argument);
    const HINTERNET session = InternetOpenW(L"SETUP", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0);
    const HINTERNET request = InternetOpenUrlW(session, download.strUrl, nullptr, 0,
                                               INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE, 0);
    const CFileOwner file(CreateFileW(download.strTarget, GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                      CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    char buffer[READ_BYTES];
    double received = 0;
    DWORD read = 0;
    while (InternetReadFile(request, buffer, sizeof buffer, &read) && read > 0) {
        DWORD written = 0;
        WriteFile(file.get(), buffer, read, &written, nullptr);
        received += read;
        download.percent = static_cast<int>(received / DOWNLOAD_BYTES * 100.0);
        PostMessageW(download.window, BARE_PROGRESS, 0, 0);
    }
    InternetCloseHandle(request);
    InternetCloseHandle(session);
    PostMessageW(download.window, BARE_END, 0, 0);
    return 0;
}

void RequireWhole(const CString& file)
{
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (!GetFileAttributesExW(file, GetFileExInfoStandard, &data) || data.nFileSizeLow != DOWNLOAD_BYTES) {
        throw CannotMeasure{L"The download of " + file + L" isn't whole"};
    }
}

double RunBareDownload(const CString& url, const CString& target, double& slowestKey)
{
    CProgressWindow window;
    BareDownload download;
    download.strUrl = url;
    download.strTarget = target;
    download.window = window.get();
    const double start = NowMilliseconds();
    const CKernelOwner thread(CreateThread(nullptr, 0, DownloadBare, &download, 0, nullptr));
    slowestKey = window.RunUntil(BARE_END, BARE_PROGRESS, [&] { return download.percent.load(); });
    const double end = NowMilliseconds();
    WaitForSingleObject(thread.get(), INFINITE);
    RequireWhole(target);
    return end - start;
}

double RunPageDownload(const CString& url, const CString& target, double& slowestKey)
{
    CProgressWindow window;
    PatchDownload download;
    download.PageWindow = window.get();
    download.DownloadTargetPath = target;
    const double start = NowMilliseconds();
    StartDownloadRun(download, url);
    download.PageStage = StageDownloading;
    slowestKey = window.RunUntil(WM_PATCH_FINISHED, WM_PATCH_PROGRESS,
                                 [&] { return download.DownloadPercent.load(); });
    const double end = NowMilliseconds();
    WaitForDownloadEnd(download);
    RequireWhole(target);
    return end - start;
}

void MeasureDownload(const BenchOptions& options, std::vector<Comparison>& comparisons)
{
    CLoopbackServer server;
    server.Serve(L"/patch.msp", ServeBytes(DOWNLOAD_BYTES));
    Comparison time = {L"100 MB downloaded", "ms", {}, {}, 1 / 0.95};
    Comparison key = {L"slowest key meanwhile", "ms", {}, {}};
    const CString target = JoinFolder(options.strScratch, L"patch.msp");
    for (int run = 0; run < DOWNLOADS; ++run) {
        double slowest = 0;
        time.bare.push_back(RunBareDownload(server.Url(L"/patch.msp"), target, slowest));
        key.bare.push_back(slowest);
        time.ours.push_back(RunPageDownload(server.Url(L"/patch.msp"), target, slowest));
        key.ours.push_back(slowest);
    }
    DeleteFileW(target);
    comparisons.push_back(time);
    comparisons.push_back(key);
}

// ---- judging ------------------------------------------------------------------------------------------------------------

// One patch under many names: the installer judges each.
std::vector<CString> CopyPatches(const BenchOptions& options, int count)
{
    const CString patch = ParentFolder(options.strMedia) + L"sample_patches\\x64\\Zolt2027Update1.msp";
    std::vector<CString> paths;
    for (int index = 0; index < count; ++index) {
        paths.push_back(JoinFolder(options.strScratch, L"judged" + NumberText(index) + L".msp"));
        if (!CopyFileW(patch, paths.back(), FALSE)) {
            throw CannotMeasure{patch + L" can't be copied"};
        }
    }
    return paths;
}

HWND MakeListWindow()
{
    const HWND window = CreateWindowW(WC_STATICW, L"", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200, nullptr, nullptr,
                                      nullptr, nullptr);
    CreateWindowW(WC_LISTBOXW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 300, 200, window,
                  reinterpret_cast<HMENU>(INT_PTR{IDC_PATCH_LIST}), nullptr, nullptr);
    return window;
}

// What the page asks of the service for such a list: a verdict on all, and code and name of each.
double JudgeBare(HWND window, const CString& database, const std::vector<CString>& paths)
{
    const HWND box = GetDlgItem(window, IDC_PATCH_LIST);
    const double start = NowMilliseconds();
    std::vector<MSIPATCHSEQUENCEINFOW> sequence(paths.size());
    for (std::size_t index = 0; index < paths.size(); ++index) {
        sequence[index].szPatchData = paths[index];
        sequence[index].ePatchDataType = MSIPATCH_DATATYPE_PATCHFILE;
    }
    if (MsiDetermineApplicablePatchesW(database, static_cast<DWORD>(sequence.size()), sequence.data()) !=
        ERROR_SUCCESS) {
        throw CannotMeasure{L"The installer does not judge the patches"};
    }
    SendMessageW(box, LB_RESETCONTENT, 0, 0);
    for (const CString& path : paths) {
        CString text;
        static_cast<void>(ReadPatchCode(path, text));
        static_cast<void>(ReadPatchDisplayName(path, text));
        SendMessageW(box, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.GetString()));
    }
    return NowMilliseconds() - start;
}

double JudgeAsPage(HWND window, CSetupManager& manager, CProduct& product)
{
    CPatchList list(manager, product);
    list.Bind(window);
    const double start = NowMilliseconds();
    list.LoadFromProduct();
    const double end = NowMilliseconds();
    if (list.IsEmpty()) {
        throw CannotMeasure{L"The patches that were to be judged don't apply"};
    }
    return end - start;
}

void MeasureJudging(const BenchOptions& options, std::vector<Comparison>& comparisons)
{
    const std::unique_ptr<CSetupHost> host = OpenSampleHost(options);
    CSetupManager& manager = host->GetSetupManager();
    const std::vector<CProduct*>& products = host->GetProducts();
    if (products.empty()) {
        throw CannotMeasure{L"The sample has no products"};
    }
    CProduct& product = *products.front();
    const CString database = JoinFolder(manager.m_strMediaRoot, product.m_strMsiFile);
    const HWND window = MakeListWindow();
    for (const int count : {1, 10, 50}) {
        const std::vector<CString> paths = CopyPatches(options, count);
        Comparison comparison;
        comparison.strWhat.Format(L"%d patches judged", count);
        comparison.goal = 1.1;
        product.m_patchFiles = paths;
        static_cast<void>(JudgeBare(window, database, paths)); // warms up
        static_cast<void>(JudgeAsPage(window, manager, product));
        for (int run = 0; run < options.runs; ++run) {
            comparison.bare.push_back(JudgeBare(window, database, paths));
            comparison.ours.push_back(JudgeAsPage(window, manager, product));
        }
        comparisons.push_back(comparison);
        for (const CString& path : paths) {
            DeleteFileW(path);
        }
    }
    product.m_patchFiles.clear();
    DestroyWindow(window);
}

} // namespace

std::vector<Comparison> MeasurePatches(const BenchOptions& options)
{
    std::vector<Comparison> comparisons;
    MeasureDownload(options, comparisons);
    MeasureJudging(options, comparisons);
    return comparisons;
}
