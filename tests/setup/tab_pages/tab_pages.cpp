#include "tests/setup/tab_pages/tab_pages.h"

#include "frame/page_frame.h"
#include "msi/msi_property.h"
#include "tests/setup/tab_pages/tab_page_ids.h"
#include "window/module.h"

#include <utility>

CAppModule _Module;

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*)
{
    if (reason == DLL_PROCESS_ATTACH) {
        _Module.Init(module);
    } else if (reason == DLL_PROCESS_DETACH) {
        _Module.Term();
    }
    return TRUE;
}

namespace {

PagesRecord g_record;

template <int number>
class CTestPage : public CTabPageImpl<CTestPage<number>>
{
    using Base = CTabPageImpl<CTestPage<number>>;

public:
    enum
    {
        IDD = number < TEST_PAGES ? IDD_TEST_TAB : IDD_TEST_TAB_LARGE
    };

    explicit CTestPage(const PageContext* context) : Base(context) { ++g_record.alive; }
    ~CTestPage() override { --g_record.alive; }

    BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                              DWORD map = 0) override
    {
        if (message >= PAGE_MESSAGE_STORE && message <= PAGE_MESSAGE_COUNTER) {
            g_record.messages.push_back({number, message, wParam});
        }
        if (message == TEST_MESSAGE_ENABLE_LEAVING) {
            this->EnableLeaving(wParam != 0);
        }
        if (message == TEST_MESSAGE_BOX) {
            ShowBoxWithoutOwner();
        }
        return Base::ProcessWindowMessage(window, message, wParam, lParam, result, map);
    }

    BOOL PreTranslateMessage(MSG* message) override
    {
        if (message->message == WM_KEYDOWN) {
            g_record.keys.push_back(number);
            if (message->hwnd == this->GetDlgItem(IDC_TEST_EDIT) &&
                this->GetDlgItemText(IDC_TEST_EDIT) == L"own keys") {
                g_record.ownKeys.push_back(message->wParam);
                if (message->wParam == VK_F2) {
                    ShowBoxWithoutOwner();
                }
                return TRUE;
            }
        }
        return Base::PreTranslateMessage(message);
    }

    LRESULT OnInitDialog() override
    {
        this->InitFrame();
        g_record.created.push_back(number);
        const CWindow combo(this->GetDlgItem(IDC_TEST_COMBO));
        for (const wchar_t* line : {L"first", L"second"}) {
            combo.SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line));
        }
        CheckRadioButton(this->m_hWnd, IDC_TEST_CHOICE1, IDC_TEST_CHOICE2, IDC_TEST_CHOICE1);
        this->SetDlgItemText(IDC_TEST_EDIT, ReadProperty(this->m_hDatabase, PropertyName()));
        this->RunHooks(this->m_postInitHooks);
        return FALSE;
    }

    bool ValidateAndStore() override
    {
        g_record.stored.push_back(number);
        Store();
        for (const int id : {IDC_TEST_EDIT, IDC_TEST_LAST}) {
            if (this->GetDlgItemText(id) == L"bad") {
                this->ShowPageBox(L"Page " + NumberText(number) + L" refuses", MB_OK);
                CWindow(this->GetDlgItem(id)).SetFocus();
                return false;
            }
        }
        return this->GetDlgItemText(IDC_TEST_EDIT) != L"doubtful" ||
               this->ShowPageBox(L"Page " + NumberText(number) + L" asks", MB_YESNO) == IDYES;
    }

    bool StoreWithoutValidation() override
    {
        g_record.storedUnchecked.push_back(number);
        Store();
        return this->GetDlgItemText(IDC_TEST_EDIT) != L"no way back";
    }

private:
    void ShowBoxWithoutOwner() { ::MessageBoxW(nullptr, L"Without an owner", this->ProductName(), MB_OK); }
    static CString PropertyName() { return L"TEST_VALUE_" + NumberText(number); }
    void Store() { WriteProperty(this->m_hDatabase, PropertyName(), this->GetDlgItemText(IDC_TEST_EDIT)); }
};

template <int... number>
TabPageFunction PickPage(int page, std::integer_sequence<int, number...>)
{
    static constexpr TabPageFunction PAGES[] = {
        [](PageContext* context) { return CreateTabPage<CTestPage<number>>(context); }...};
    return PAGES[page];
}

} // namespace

PagesRecord& GetPagesRecord()
{
    return g_record;
}

TabPageFunction GetTestPage(int page)
{
    return PickPage(page, std::make_integer_sequence<int, TEST_PAGES + 1>());
}
