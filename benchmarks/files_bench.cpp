// The page of additional files: opened with many additions, beside the queries, maps and nodes that it comes down to; many
// files dropped on it, and a full folder deleted, beside the rows alone.
#include "base/handle.h"
#include "benchmarks/measurement.h"
#include "benchmarks/sample_host.h"
#include "include/resource_ids.h"
#include "include/rollout_ui.h"
#include "installer/handle.h"
#include "msi/user_file_writer.h"
#include "setup/program_libraries.h"

#include <windows.h>

#include <commctrl.h>
#include <msiquery.h>
#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

constexpr int FILES_IN_A_FOLDER = 100;
constexpr wchar_t ROOT_KEY[] = L"INSTALLDIR";

CString g_firstSource; // a dialog's procedure has one argument only

[[noreturn]] void Fail(const CString& what)
{
    throw CannotMeasure{what + L" failed on the sample product"};
}

// ---- sources ---------------------------------------------------------------------------------------------------------

CString SourceFolder(const BenchOptions& options)
{
    return options.strScratch + L"\\files";
}

CString SourceName(int number)
{
    CString name;
    name.Format(L"\\file%06d.txt", number);
    return name;
}

// Made once, and left for the next row.
void MakeSources(const BenchOptions& options, int count)
{
    CreateDirectoryW(SourceFolder(options), nullptr);
    for (int number = 0; number < count; ++number) {
        const CFileOwner file(CreateFileW(SourceFolder(options) + SourceName(number), GENERIC_WRITE, 0,
                                          nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!file) {
            Fail(L"Making a source");
        }
    }
}

// ---- the product and its page ----------------------------------------------------------------------------------------

class CBenchProduct
{
public:
    explicit CBenchProduct(const BenchOptions& options) : m_host(OpenSampleHost(options))
    {
        m_frame = CreateWindowW(WC_STATICW, L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 800, 600, nullptr,
                                nullptr, nullptr, nullptr);
        UpdateWindow(m_frame);
    }
    ~CBenchProduct() { DestroyWindow(m_frame); }
    CBenchProduct(const CBenchProduct&) = delete;
    CBenchProduct& operator=(const CBenchProduct&) = delete;

    CProduct& Get() const { return *m_host->GetSetupManager().m_pProducts->at(0); }
    HWND GetFrame() const { return m_frame; }

    // A page is painted when this comes back; the caller destroys it.
    HWND OpenPage(TabPageFunction create) const
    {
        PageContext context = m_host->MakePageContext({L"AddAdditionalFilesPage", CString()}, true);
        context.hParent = m_frame;
        context.hFrame = m_frame;
        context.pProduct = &Get();
        context.hDatabase = Get().GetMsiHandle();
        const CTabPage page = create(&context);
        if (!page.hWnd) {
            Fail(L"Making the page");
        }
        Paint(page.hWnd);
        return page.hWnd;
    }

    static void Paint(HWND window)
    {
        ShowWindow(window, SW_SHOW);
        RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    }

private:
    std::unique_ptr<CSetupHost> m_host;
    HWND m_frame;
};

void HandleMessages()
{
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        DispatchMessageW(&message);
    }
}

// Files of a folder each hundred, as an administrator's libraries are.
void AddRows(CProduct& product, const BenchOptions& options, int count)
{
    CUserFileWriter writer(&product, product.GetMsiHandle());
    CString folder;
    CString key;
    for (int number = 0; number < count; ++number) {
        if (number % FILES_IN_A_FOLDER == 0) {
            CString name;
            name.Format(L"Library %d", number / FILES_IN_A_FOLDER);
            if (!writer.AddUserFolder(name, ROOT_KEY, folder)) {
                Fail(L"Adding a folder");
            }
        }
        if (!writer.AddUserFile(SourceFolder(options) + SourceName(number), folder, key)) {
            Fail(L"Adding a file");
        }
    }
}

// ---- opening, bare ---------------------------------------------------------------------------------------------------

// Columns of all rows.
using BareRows = std::vector<std::vector<std::wstring>>;

BareRows QueryBare(MSIHANDLE database, const wchar_t* query, int columns)
{
    BareRows rows;
    MSIHANDLE view = 0;
    if (MsiDatabaseOpenViewW(database, query, &view) != ERROR_SUCCESS ||
        MsiViewExecute(view, 0) != ERROR_SUCCESS) {
        Fail(query);
    }
    for (MSIHANDLE record = 0; MsiViewFetch(view, &record) == ERROR_SUCCESS; MsiCloseHandle(record)) {
        rows.emplace_back();
        for (int column = 1; column <= columns; ++column) {
            wchar_t text[MAX_PATH + 1] = L"";
            DWORD size = MAX_PATH + 1;
            MsiRecordGetStringW(record, column, text, &size);
            rows.back().emplace_back(text);
        }
    }
    MsiCloseHandle(view);
    return rows;
}

HTREEITEM InsertBare(HWND tree, HTREEITEM parent, const std::wstring& label)
{
    TVINSERTSTRUCTW insertion = {};
    insertion.hParent = parent;
    insertion.hInsertAfter = TVI_LAST;
    insertion.item.mask = TVIF_TEXT | TVIF_PARAM;
    insertion.item.pszText = const_cast<wchar_t*>(label.c_str());
    return reinterpret_cast<HTREEITEM>(
        SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insertion)));
}

void SortBare(HWND tree, HTREEITEM item)
{
    SendMessageW(tree, TVM_SORTCHILDREN, FALSE, reinterpret_cast<LPARAM>(item));
}

void AddBareIcon(HIMAGELIST images, const CString& path, UINT flags)
{
    SHFILEINFOW info = {};
    if (SHGetFileInfoW(path, 0, &info, sizeof info,
                       SHGFI_ICON | SHGFI_SMALLICON | SHGFI_SHELLICONSIZE | flags)) {
        ImageList_ReplaceIcon(images, -1, info.hIcon);
        DestroyIcon(info.hIcon);
    }
}

// The five pictures of every tree, and that of the files' one kind. The list goes with the process.
HIMAGELIST MakeBareImages(const CString& source)
{
    const HIMAGELIST images = ImageList_Create(16, 16, ILC_COLOR32 | ILC_MASK, 8, 4);
    wchar_t folder[MAX_PATH + 1] = L"";
    GetTempPathW(MAX_PATH, folder);
    HICON icon = nullptr;
    ExtractIconExW(L"shell32.dll", 0, nullptr, &icon, 1);
    ImageList_ReplaceIcon(images, -1, icon);
    DestroyIcon(icon);
    ImageList_ReplaceIcon(images, -1, LoadIconW(nullptr, IDI_WARNING));
    AddBareIcon(images, folder, 0);
    AddBareIcon(images, folder, SHGFI_OPENICON);
    AddBareIcon(images, CString(folder, 3), 0);
    AddBareIcon(images, source, 0);
    return images;
}

// One query a table, maps, one node an addition: no rules of the product's own folders, no look at the sources.
void FillBare(HWND dialog, MSIHANDLE database)
{
    const HWND tree = GetDlgItem(dialog, IDC_FILES_TREE);
    SendMessageW(tree, WM_SETREDRAW, FALSE, 0);
    SendMessageW(tree, TVM_SETIMAGELIST, TVSIL_NORMAL,
                 reinterpret_cast<LPARAM>(MakeBareImages(g_firstSource)));
    std::map<std::wstring, std::wstring> folders; // name by key
    for (auto& row :
         QueryBare(database, L"SELECT `Directory`,`Directory_Parent`,`DefaultDir` FROM `Directory`", 3)) {
        folders.emplace(row[0], row[2]);
    }
    std::set<std::wstring> actions;
    for (auto& row : QueryBare(database, L"SELECT `Action` FROM `CustomAction`", 1)) {
        actions.insert(row[0]);
    }
    std::map<std::wstring, std::wstring> components;
    for (auto& row : QueryBare(database, L"SELECT `Component`,`Directory_` FROM `Component`", 2)) {
        components.emplace(row[0], row[1]);
    }
    const HTREEITEM root = InsertBare(tree, TVI_ROOT, L"root");
    std::map<std::wstring, HTREEITEM> items;
    for (auto& row :
         QueryBare(database, L"SELECT `Component_`,`SourceFileName`,`Flags` FROM `TarnCustomFile`", 3)) {
        const std::wstring& directory = components[row[0]];
        HTREEITEM& folder = items[directory];
        if (!folder) {
            folder = InsertBare(tree, root, folders[directory]);
        }
        if (row[2] == L"0") {
            InsertBare(tree, folder, row[1].substr(row[1].rfind(L'\\') + 1));
        }
    }
    for (const auto& [directory, item] : items) {
        SortBare(tree, item);
    }
    SortBare(tree, root);
    SendMessageW(tree, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(root));
    SendMessageW(tree, WM_SETREDRAW, TRUE, 0);
}

INT_PTR CALLBACK BareProc(HWND dialog, UINT message, WPARAM, LPARAM database)
{
    if (message == WM_INITDIALOG) {
        FillBare(dialog, static_cast<MSIHANDLE>(database));
    }
    return message == WM_INITDIALOG;
}

HWND OpenBare(const CBenchProduct& product, HMODULE texts)
{
    const HWND dialog =
        CreateDialogParamW(texts, MAKEINTRESOURCEW(IDD_ADD_ADDITIONAL_FILES_TAB), product.GetFrame(),
                           BareProc, static_cast<LPARAM>(product.Get().GetMsiHandle()));
    if (!dialog) {
        Fail(L"Making the bare dialog");
    }
    CBenchProduct::Paint(dialog);
    return dialog;
}

template <class Open>
double TimeOfOpening(const Open& open)
{
    const double start = NowMilliseconds();
    const HWND window = open();
    const double time = NowMilliseconds() - start;
    DestroyWindow(window);
    HandleMessages();
    return time;
}

Comparison MeasureOpening(const BenchOptions& options, HMODULE texts, TabPageFunction create, int count)
{
    const CBenchProduct product(options);
    g_firstSource = SourceFolder(options) + SourceName(0);
    AddRows(product.Get(), options, count);
    const auto ours = [&] { return product.OpenPage(create); };
    const auto bare = [&] { return OpenBare(product, texts); };
    Comparison comparison;
    comparison.strWhat = L"page with " + NumberText(count) + L" added files";
    comparison.goal = 1.5;
    static_cast<void>(TimeOfOpening(bare)); // warms up
    static_cast<void>(TimeOfOpening(ours));
    for (int run = 0; run < std::min(options.runs, count >= 10000 ? 3 : 11); ++run) {
        comparison.bare.push_back(TimeOfOpening(bare));
        comparison.ours.push_back(TimeOfOpening(ours));
    }
    return comparison;
}

// ---- adding and removing ---------------------------------------------------------------------------------------------

HANDLE MakeDrop(const CString& path)
{
    const std::size_t bytes = (static_cast<std::size_t>(path.GetLength()) + 2) * sizeof(wchar_t);
    const HGLOBAL drop = GlobalAlloc(GHND, sizeof(DROPFILES) + bytes);
    auto* const header = static_cast<DROPFILES*>(GlobalLock(drop));
    header->pFiles = sizeof(DROPFILES);
    header->fWide = TRUE;
    header->pt = {-1, -1}; // on no item: the selected one is meant
    std::copy_n(path.GetString(), path.GetLength(), reinterpret_cast<wchar_t*>(header + 1));
    GlobalUnlock(drop);
    return drop;
}

HTREEITEM TreeItem(HWND tree, UINT relation, HTREEITEM item)
{
    return reinterpret_cast<HTREEITEM>(
        SendMessageW(tree, TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
}

// A folder with that many files, dropped on the root; the folder is selected afterwards.
double DropFolder(HWND page, const BenchOptions& options, int count)
{
    const HWND tree = GetDlgItem(page, IDC_FILES_TREE);
    const HTREEITEM root = TreeItem(tree, TVGN_ROOT, nullptr);
    SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(root));
    const auto before = SendMessageW(tree, TVM_GETCOUNT, 0, 0);
    const HANDLE drop = MakeDrop(SourceFolder(options));
    const double start = NowMilliseconds();
    PostMessageW(tree, WM_DROPFILES, reinterpret_cast<WPARAM>(drop), 0);
    HandleMessages();
    const double time = NowMilliseconds() - start;
    if (SendMessageW(tree, TVM_GETCOUNT, 0, 0) - before != count + 1) {
        Fail(L"Dropping files");
    }
    return time;
}

double DeleteFolder(HWND page)
{
    const HWND tree = GetDlgItem(page, IDC_FILES_TREE);
    HTREEITEM folder = TreeItem(tree, TVGN_CHILD, TreeItem(tree, TVGN_ROOT, nullptr));
    for (HTREEITEM item = folder; item; item = TreeItem(tree, TVGN_NEXT, item)) {
        TVITEMW read = {};
        wchar_t label[MAX_PATH] = L"";
        read.mask = TVIF_TEXT;
        read.hItem = item;
        read.pszText = label;
        read.cchTextMax = MAX_PATH;
        SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&read));
        folder = CString(label) == L"files" ? item : folder;
    }
    SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(folder));
    const auto before = SendMessageW(tree, TVM_GETCOUNT, 0, 0);
    const double start = NowMilliseconds();
    SendMessageW(page, WM_COMMAND, MAKEWPARAM(IDC_FILES_DELETE, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(page, IDC_FILES_DELETE)));
    const double time = NowMilliseconds() - start;
    if (SendMessageW(tree, TVM_GETCOUNT, 0, 0) >= before - 1) {
        Fail(L"Deleting a folder");
    }
    return time;
}

struct AddAndRemove
{
    Comparison adding;
    Comparison removing;
};

// Each side has the service to itself: a second open database with as many rows slows it.
void ChangeRows(const BenchOptions& options, int count, AddAndRemove& measured)
{
    const CBenchProduct product(options);
    CUserFileWriter writer(&product.Get(), product.Get().GetMsiHandle());
    CString folder;
    std::vector<CString> keys(static_cast<std::size_t>(count));
    const double start = NowMilliseconds();
    bool done = writer.AddUserFolder(L"files", ROOT_KEY, folder);
    for (int number = 0; number < count; ++number) {
        CString& key = keys[static_cast<std::size_t>(number)];
        done = writer.AddUserFile(SourceFolder(options) + SourceName(number), folder, key) && done;
    }
    const double added = NowMilliseconds();
    for (const CString& key : keys) {
        done = writer.RemoveUserFile(folder, key) && done;
    }
    done = writer.RemoveUserFolder(folder) && done;
    measured.removing.bare.push_back(NowMilliseconds() - added);
    measured.adding.bare.push_back(added - start);
    if (!done) {
        Fail(L"Writing rows");
    }
}

void ChangePage(const BenchOptions& options, TabPageFunction create, int count, AddAndRemove& measured)
{
    const CBenchProduct product(options);
    const HWND page = product.OpenPage(create);
    measured.adding.ours.push_back(DropFolder(page, options, count));
    measured.removing.ours.push_back(DeleteFolder(page));
    DestroyWindow(page);
    HandleMessages();
}

AddAndRemove MeasureChanges(const BenchOptions& options, TabPageFunction create, int count, int runs)
{
    AddAndRemove measured;
    measured.adding.strWhat = NumberText(count) + L" files dropped on the page";
    measured.adding.goal = 1.25;
    measured.removing.strWhat = L"a folder of " + NumberText(count) + L" deleted";
    measured.removing.goal = 1.25;
    for (int run = 0; run < runs; ++run) {
        const bool isPageFirst = run % 2 != 0;
        if (isPageFirst) {
            ChangePage(options, create, count, measured);
        }
        ChangeRows(options, count, measured);
        if (!isPageFirst) {
            ChangePage(options, create, count, measured);
        }
    }
    return measured;
}

} // namespace

std::vector<Comparison> MeasureFiles(const BenchOptions& options)
{
    const std::unique_ptr<CSetupHost> host = OpenSampleHost(options); // knows the folder of the texts
    const CModuleOwner texts(LoadLibraryExW(CLangMgr::Instance().GetWizTextPath() + L"WizText.dll", nullptr,
                                            LOAD_LIBRARY_AS_DATAFILE));
    const CModuleOwner pages(LoadLibraryW(options.strProgramFolder + L"RolloutUi.dll"));
    const auto create = reinterpret_cast<TabPageFunction>(
        reinterpret_cast<void*>(GetProcAddress(pages.get(), "AddAdditionalFilesPage")));
    if (!create) {
        Fail(L"Loading the page library");
    }
    std::vector<Comparison> comparisons;
    MakeSources(options, 1000);
    const AddAndRemove thousand = MeasureChanges(options, create, 1000, std::min(options.runs, 5));
    MakeSources(options, 10000);
    for (const int count : {100, 1000, 10000}) {
        comparisons.push_back(MeasureOpening(options, texts.get(), create, count));
    }
    const AddAndRemove tenThousand = MeasureChanges(options, create, 10000, std::min(options.runs, 3));
    comparisons.insert(comparisons.end(),
                       {thousand.adding, tenThousand.adding, thousand.removing, tenThousand.removing});
    return comparisons;
}
