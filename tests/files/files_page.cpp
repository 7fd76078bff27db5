#include "tests/files/files_page.h"

#include "tests/rules/user_key.h"
#include "tests/support/test_wiz_core.h"

#include <commdlg.h>
#include <shlobj.h>

#include <algorithm>
#include <cstring>

namespace {

constexpr int WARM_FILES = 30;
const CString ROOT_LABEL = L"<Zolt>";
constexpr UINT SERVICE_NO_DIRECTORY = 267;
constexpr UINT SERVICE_MORE_DATA = 234;

std::vector<CString> g_picked;

unsigned int Answer(const CString& text, wchar_t* buffer, unsigned long* size)
{
    const auto length = static_cast<unsigned long>(text.GetLength());
    const bool fits = length < *size;
    if (fits) {
        std::copy_n(text.GetString(), length + 1, buffer);
    }
    *size = length;
    return fits ? 0 : SERVICE_MORE_DATA;
}

std::map<CString, CString>* g_properties = nullptr;
std::map<CString, CString>* g_targets = nullptr;

// As the service: a property that isn't there is empty.
unsigned int PropertyOfTest(InstallerHandle, const wchar_t* name, wchar_t* buffer, unsigned long* size)
{
    const auto found = g_properties->find(name);
    return Answer(found == g_properties->end() ? CString() : found->second, buffer, size);
}

unsigned int TargetOfTest(InstallerHandle, const wchar_t* name, wchar_t* buffer, unsigned long* size)
{
    const auto found = g_targets->find(name);
    return found == g_targets->end() ? SERVICE_NO_DIRECTORY : Answer(found->second, buffer, size);
}

// The picker's result as the system writes it: one path, or a folder and names.
BOOL WINAPI PickForTest(OPENFILENAMEW* dialog)
{
    if (g_picked.empty()) {
        return FALSE;
    }
    CString result = g_picked[0];
    if (g_picked.size() > 1) {
        const int end = result.ReverseFind(L'\\');
        result = result.Left(end);
        for (const CString& path : g_picked) {
            result += L'\0';
            result += path.Mid(end + 1);
        }
    }
    const auto length = static_cast<DWORD>(result.GetLength());
    EXPECT_LT(length + 2, dialog->nMaxFile);
    std::copy_n(result.GetString(), length, dialog->lpstrFile);
    dialog->lpstrFile[length] = L'\0';
    dialog->lpstrFile[length + 1] = L'\0';
    return TRUE;
}

} // namespace

HGLOBAL MakeDrop(POINT place, const std::vector<CString>& paths)
{
    CString list;
    for (const CString& path : paths) {
        list += path;
        list += L'\0';
    }
    const std::size_t bytes = (static_cast<std::size_t>(list.GetLength()) + 1) * sizeof(wchar_t);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DROPFILES) + bytes);
    auto* const drop = static_cast<DROPFILES*>(GlobalLock(memory));
    drop->pFiles = sizeof(DROPFILES);
    drop->pt = place;
    drop->fWide = TRUE;
    std::memcpy(drop + 1, list.GetString(), bytes);
    GlobalUnlock(memory);
    return memory;
}

const FilesPage::Lines FilesPage::OWN_FOLDERS = {ROOT_LABEL, L"  Fonts", L"  Samples", L"    Deep"};

FilesPage::FilesPage()
    : OnlinePage({AddAdditionalFilesDialog, AddAdditionalFilesPage}),
      product(host.AddProduct(L"zolt.msi", L"Zolt")),
      m_picker(std::make_unique<CImportRedirect>(L"RolloutUi.dll", "GetOpenFileNameW",
                                                 reinterpret_cast<void*>(PickForTest)))
{
    EXPECT_TRUE(m_picker->IsInPlace());
    g_properties = &product.msiProperties;
    g_targets = &servicePaths;
    g_picked.clear();
    SetTestInstallerCalls(PropertyOfTest, TargetOfTest);
    product.m_strName = L"Zolt & Co";
    product.m_pDirectoryManager = &directories;
    context.pProduct = &product;
    MakeDatabase(L"zolt.msi");
    FillDatabase();
    MeetTreeOnce();
}

// Fills the system's caches for trees, edits, menus, boxes and the shell's icons, once for the program.
void FilesPage::MeetTreeOnce()
{
    static bool done = false;
    if (done) {
        return;
    }
    done = true;
    for (int round = 0; round < 2; ++round) {
        WithFile(UserKey(1), L"INSTALLDIR", Source(L"warm.txt"));
        for (int number = 2; number <= WARM_FILES; ++number) { // scroll bars
            WithFile(UserKey(number), L"INSTALLDIR", L"C:\\" + CString(L'w', 150) + NumberText(number));
        }
        SelectNode(L"~\\Fonts");
        Look([this] {
            RedrawWindow(Page(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        });
        AddFolder(L"~\\Fonts", L"a*b");
        AnswerNameBox(IDS_FILES_NAME_INVALID);
        AwaitEdit();
        Key(VK_ESCAPE);
        AwaitNoEdit();
        RightClick(L"~");
        ExpectMenu(L"EEDD");
        RightClick(L"~");
        ChooseInMenu(ID_FILES_ADD_FOLDER);
        AwaitEdit();
        Key(VK_ESCAPE);
        AwaitNoEdit();
        ShowAndGoBack();
        for (int number = 1; number <= WARM_FILES; ++number) {
            RemoveRowsOf(UserKey(number));
        }
    }
    product.msiProperties.clear();
    product.properties.clear();
    host.log.Clear();
    CountFromHere();
}

void FilesPage::TearDown()
{
    m_picker.reset();
    SetTestInstallerCalls(nullptr, nullptr);
    m_database.reset();
    OnlinePage::TearDown();
}

// ---- steps

void FilesPage::SelectNode(const CString& path)
{
    Look([this, path] {
        ASSERT_NE(Node(path), nullptr) << Utf8(path);
        SetFocus(Tree().GetWindow());
        SendMessageW(Tree().GetWindow(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(Node(path)));
        EXPECT_EQ(Selected(), Node(path)) << Utf8(path);
    });
}

void FilesPage::SelectNothing()
{
    Look([this] {
        SendMessageW(Tree().GetWindow(), TVM_SELECTITEM, TVGN_CARET, 0);
        EXPECT_EQ(Selected(), nullptr);
    });
}

void FilesPage::Expand(const CString& path)
{
    Look([this, path] {
        SendMessageW(Tree().GetWindow(), TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(Node(path)));
    });
}

void FilesPage::AwaitEdit()
{
    Await(L"no label is being edited", [this] { return EditBox() && GetFocus() == EditBox(); });
}

void FilesPage::AwaitNoEdit()
{
    Await(L"the label is still being edited", [this] { return !EditBox(); });
}

void FilesPage::TypeLabel(const CString& text)
{
    Step(L"type into the label", [this, text] { return CControl(EditBox()).SetText(text); });
}

// In the tab shape the page isn't the window that hands out the focus.
void FilesPage::FocusTo(int id)
{
    Look([this, id] {
        SetFocus(GetDlgItem(Page(), id)); // may end an edit with a box
    });
}

void FilesPage::Rename(const CString& path, const CString& text)
{
    SelectNode(path);
    Key(VK_F2);
    AwaitEdit();
    TypeLabel(text);
    Key(VK_RETURN);
}

void FilesPage::AddFiles(const Lines& paths)
{
    Look([paths] { g_picked = paths; });
    Press(IDC_FILES_ADD);
}

void FilesPage::AddFolder(const CString& parent, const CString& name)
{
    SelectNode(parent);
    Press(IDC_FILES_ADD_FOLDER);
    AwaitEdit();
    TypeLabel(name);
    Key(VK_RETURN);
}

// Sent, as the tree itself posts what it hears of: the next step sees the drop done, or a box of its.
void FilesPage::DropAt(POINT place, const Lines& dropped)
{
    Look([this, place, dropped] {
        SendMessageW(Tree().GetWindow(), WM_DROPFILES, reinterpret_cast<WPARAM>(MakeDrop(place, dropped)), 0);
    });
}

void FilesPage::DropOnto(const CString& path, const Lines& dropped)
{
    Look([this, path, dropped] {
        SendMessageW(Tree().GetWindow(), TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(Node(path)));
        SendMessageW(Tree().GetWindow(), WM_DROPFILES,
                     reinterpret_cast<WPARAM>(MakeDrop(PlaceOf(Node(path)), dropped)), 0);
    });
}

void FilesPage::PostDrop(POINT place, const Lines& dropped)
{
    Look([this, place, dropped] {
        PostMessageW(Tree().GetWindow(), WM_DROPFILES, reinterpret_cast<WPARAM>(MakeDrop(place, dropped)), 0);
    });
}

void FilesPage::RightClick(const CString& path)
{
    Look([this, path] {
        POINT place = {5, 0};
        if (path.IsEmpty()) {
            RECT client = {};
            GetClientRect(Tree().GetWindow(), &client);
            place.y = client.bottom - 3;
        } else {
            SendMessageW(Tree().GetWindow(), TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(Node(path)));
            place = PlaceOf(Node(path));
        }
        const LPARAM point = MAKELPARAM(place.x, place.y);
        ClientToScreen(Tree().GetWindow(), &place);
        SetCursorPos(place.x, place.y);
        PostMessageW(Tree().GetWindow(), WM_RBUTTONDOWN, MK_RBUTTON, point);
        PostMessageW(Tree().GetWindow(), WM_RBUTTONUP, 0, point);
    });
}

void FilesPage::ExpectMenu(const wchar_t* states)
{
    Step(L"read the menu", [states] {
        const std::optional<PopupMenuView> menu = FindPopupMenu();
        if (!menu) {
            return StepOutcome::NotYet(L"no menu is up");
        }
        CString found;
        for (const int id : {ID_FILES_ADD_DRIVE, ID_FILES_ADD_FOLDER, ID_FILES_RENAME, ID_FILES_DELETE}) {
            for (const PopupMenuItem& item : menu->items) {
                if (item.id == id) {
                    found += item.isEnabled ? L'E' : L'D';
                    const UINT state = GetMenuState(menu->menu, static_cast<UINT>(id), MF_BYCOMMAND);
                    EXPECT_EQ((state & MF_GRAYED) != 0, !item.isEnabled) << id;
                }
            }
        }
        EXPECT_EQ(found, CString(states));
        return ClosePopupMenu();
    });
    Step(L"see the menu go", [] { return Until(!FindPopupMenu(), L"the menu is still up"); });
}

void FilesPage::ChooseInMenu(int id)
{
    Step(L"choose in the menu", [id] { return ChooseMenuItem(id); });
    Step(L"see the menu go", [] { return Until(!FindPopupMenu(), L"the menu is still up"); });
}

void FilesPage::AnswerNameBox(unsigned int text, std::function<void()> meanwhile)
{
    Answer(WarningBox(ResourceText(text)), IDOK, std::move(meanwhile));
}

void FilesPage::ExpectTree(const Lines& lines)
{
    Look([this, lines] { EXPECT_EQ(TreeLines(), lines); });
}

void FilesPage::ExpectSelected(const CString& path)
{
    Look([this, path] {
        EXPECT_EQ(Selected(), Node(path)) << "selected is " << Utf8(Tree().GetItemText(Selected()));
        EXPECT_NE(Selected(), nullptr);
    });
}

void FilesPage::ExpectButtons(const wchar_t* states)
{
    Look([this, states] {
        EXPECT_EQ(States({IDC_FILES_ADD_FOLDER, IDC_FILES_DELETE}), CString(states));
        EXPECT_EQ(States({IDC_FILES_ADD, IDC_FILES_ADD_DRIVE}), CString(L"EE"));
    });
}

// ---- looks

HWND FilesPage::EditBox() const
{
    return reinterpret_cast<HWND>(SendMessageW(Tree().GetWindow(), TVM_GETEDITCONTROL, 0, 0));
}

HTREEITEM FilesPage::Relative(HTREEITEM node, UINT relation) const
{
    return reinterpret_cast<HTREEITEM>(
        SendMessageW(Tree().GetWindow(), TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(node)));
}

CString FilesPage::Expanded(const CString& path)
{
    return path.Left(1) == L"~" ? ROOT_LABEL + path.Mid(1) : path;
}

HTREEITEM FilesPage::Node(const CString& path) const
{
    CString rest = Expanded(path);
    HTREEITEM node = Relative(nullptr, TVGN_ROOT);
    while (node) {
        const CString label = Tree().GetItemText(node);
        if (rest == label) {
            return node;
        }
        const bool leadsOn = rest.Find(label + L"\\") == 0;
        rest = leadsOn ? rest.Mid(label.GetLength() + 1) : rest;
        node = Relative(node, leadsOn ? TVGN_CHILD : TVGN_NEXT);
    }
    return nullptr;
}

const FileTreeNode* FilesPage::Data(const CString& path) const
{
    const HTREEITEM node = Node(path);
    return node ? reinterpret_cast<const FileTreeNode*>(Item(node).lParam) : nullptr;
}

TVITEMW FilesPage::Item(HTREEITEM node) const
{
    TVITEMW item = {};
    item.mask = TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM | TVIF_STATE;
    item.hItem = node;
    item.stateMask = TVIS_EXPANDED | TVIS_BOLD;
    SendMessageW(Tree().GetWindow(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    return item;
}

POINT FilesPage::PlaceOf(HTREEITEM node) const
{
    RECT place = {};
    memcpy(&place, &node, sizeof node); // as the message wants it
    SendMessageW(Tree().GetWindow(), TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&place));
    return {place.left + 3, place.top + 3};
}

void FilesPage::WalkTree(const std::function<void(HTREEITEM, int)>& visit) const
{
    int depth = 0;
    for (HTREEITEM node = Relative(nullptr, TVGN_ROOT); node;) {
        visit(node, depth);
        HTREEITEM next = Relative(node, TVGN_CHILD);
        depth += next ? 1 : 0;
        while (!next && node) {
            next = Relative(node, TVGN_NEXT);
            if (!next) {
                node = Relative(node, TVGN_PARENT);
                --depth;
            }
        }
        node = next;
    }
}

FilesPage::Lines FilesPage::TreeLines() const
{
    Lines lines;
    WalkTree([this, &lines](HTREEITEM node, int depth) {
        const bool isAdded = (Item(node).state & TVIS_BOLD) != 0;
        lines.push_back(CString(L' ', depth * 2) + Tree().GetItemText(node) + (isAdded ? L"*" : L""));
    });
    return lines;
}

CString FilesPage::Modified() const
{
    const auto row = product.properties.find(L"ADDITIONALFILES_MODIFIED");
    return row != product.properties.end() ? row->second : CString(L"(none)");
}

ExpectedBox MissingBox(const CString& path)
{
    return WarningBox(ResourceText(IDS_FILES_MISSING, path)).Titled(L"");
}

ExpectedBox ReplaceBox(const CString& name, const CString& existing, const CString& added)
{
    CString text = ResourceText(IDS_FILES_REPLACE);
    text.Replace(L"\n", L"\r\n"); // the system's own line ends
    text.Replace(L"%1", name);
    text.Replace(L"%2", existing);
    text.Replace(L"%3", added);
    return ExpectedBox{text, MB_YESNO, MB_ICONWARNING, CString(), true};
}
