// How the service is asked: what the library is handed, where the process is then, the registry's overrides, and the folder for
// downloads.
#include "tests/patches/service_pack_page.h"

namespace {

constexpr wchar_t RELAY_KEY[] = L"Software\\Velkmora\\PatchRelay";
constexpr wchar_t OVERRIDE[] = L"AltPatchRelayURL";
constexpr wchar_t PREVIEW[] = L"PreviewMode";

CString CurrentFolder()
{
    wchar_t current[MAX_PATH + 1] = L"";
    GetCurrentDirectoryW(ARRAYSIZE(current), current);
    return current;
}

// The calls about the current folder that go wrong; -1 for none, otherwise the number of the call, from 0.
int g_refusedChange = -1;
int g_changes = 0;
DWORD g_lengthAnswer = 0;

BOOL WINAPI RefuseChange(const wchar_t* path)
{
    return g_changes++ != g_refusedChange && SetCurrentDirectoryW(path);
}

DWORD WINAPI AnswerLength(DWORD, wchar_t*)
{
    return g_lengthAnswer;
}

class CatalogQuery : public PatchPage
{
protected:
    CatalogQuery()
    {
        WithAnswer(0, 0);
        RemoveOverrides();
        g_refusedChange = -1;
        g_changes = 0;
    }
    void TearDown() override
    {
        m_change.reset();
        RemoveOverrides();
        PatchPage::TearDown();
    }
    static CString KeyOf(const wchar_t* productCode) { return CString(RELAY_KEY) + L"\\" + productCode; }
    void RemoveOverrides()
    {
        RegDeleteKeyW(HKEY_LOCAL_MACHINE, KeyOf(PATCHED_PRODUCT));
        RegDeleteKeyW(HKEY_LOCAL_MACHINE, KeyOf(OTHER_PRODUCT));
        RegDeleteKeyW(HKEY_LOCAL_MACHINE, RELAY_KEY);
    }
    void SetOverride(const wchar_t* name, DWORD type, const void* bytes, std::size_t size,
                     const wchar_t* productCode = PATCHED_PRODUCT)
    {
        ASSERT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, KeyOf(productCode), name, type, bytes,
                                  static_cast<DWORD>(size)),
                  0);
    }
    void SetAddress(const CString& address, const wchar_t* productCode = PATCHED_PRODUCT)
    {
        SetOverride(OVERRIDE, REG_SZ, address.GetString(),
                    (static_cast<std::size_t>(address.GetLength()) + 1) * sizeof(wchar_t), productCode);
    }
    void SetPreview(DWORD value) { SetOverride(PREVIEW, REG_DWORD, &value, sizeof value); }
    // What the library was handed as address, after one visit.
    CString AskedAddress()
    {
        queries.clear();
        ShowAndGoBack();
        EXPECT_EQ(queries.size(), 1u);
        return queries.size() == 1 ? queries.front().address : CString(L"(not asked)");
    }
    void ExpectDefault(const CString& address)
    {
        EXPECT_EQ(address.Left(7), CString(L"http://"));
        EXPECT_HOLDS(address, L"/patchrelay/GetAvailableContent?%s");
    }
    void RefuseChangeOfFolder(int number)
    {
        g_refusedChange = number;
        m_change = std::make_unique<CImportRedirect>(L"RolloutUi.dll", "SetCurrentDirectoryW",
                                                     reinterpret_cast<void*>(RefuseChange));
        ASSERT_TRUE(m_change->IsInPlace());
    }
    void AnswerLengthOfFolder(DWORD length)
    {
        g_lengthAnswer = length;
        m_change.reset();
        m_change = std::make_unique<CImportRedirect>(L"RolloutUi.dll", "GetCurrentDirectoryW",
                                                     reinterpret_cast<void*>(AnswerLength));
        ASSERT_TRUE(m_change->IsInPlace());
    }

private:
    std::unique_ptr<CImportRedirect> m_change;
};
INSTANTIATE_BOTH_SHAPES(CatalogQuery);

} // namespace

// ---- what is handed over

TEST_P(CatalogQuery, HandsOverKeyIdentityAddressAndTheListInTheFolderForDownloads)
{
    ShowAndGoBack();
    ASSERT_EQ(queries.size(), 1u);
    const PatchQuery& query = queries.front();
    EXPECT_EQ(query.zero, 0);
    EXPECT_EQ(query.catalogKey, CString(L"ZOLT-2027"));
    EXPECT_EQ(query.identity, CString(L"zolt-identity"));
    EXPECT_EQ(query.listFile, DownloadFolder() + L"patchlist.npl");
    ExpectDefault(query.address);
}

TEST_P(CatalogQuery, ARecordStartsWithTheErrorThatIsUnset)
{
    unsigned int before = 0;
    onQuery = [&](PatchInfoRecord& record) {
        before = record.ErrorCode;
        record = answer;
    };
    ShowAndGoBack();
    EXPECT_EQ(before, ANSWER_UNSET);
}

TEST_P(CatalogQuery, RunsInTheFolderOfTheTextsAndComesBack)
{
    const CString before = CurrentFolder();
    Look([before] { EXPECT_EQ(CurrentFolder(), before); });
    ShowAndGoBack();
    ASSERT_EQ(queries.size(), 1u);
    wchar_t texts[MAX_PATH] = L"";
    GetFullPathNameW(BuiltLanguageFolder(), MAX_PATH, texts, nullptr);
    EXPECT_EQ((queries.front().currentFolder + L"\\").CompareNoCase(texts), 0)
        << Utf8(queries.front().currentFolder);
    EXPECT_EQ(CurrentFolder(), before);
}

TEST_P(CatalogQuery, AnOddCurrentFolderComesBackToo)
{
    const CString before = CurrentFolder();
    const CString odd = folder.AddFolder(L"with %s and \x00E4");
    ASSERT_TRUE(SetCurrentDirectoryW(odd));
    ShowAndGoBack();
    EXPECT_EQ(CurrentFolder().CompareNoCase(odd), 0) << Utf8(CurrentFolder());
    SetCurrentDirectoryW(before);
}

// ---- the folder for downloads

TEST_P(CatalogQuery, InADeploymentDownloadsGoBelowItsFolder)
{
    for (const int mode : {4, 5, 6}) {
        SCOPED_TRACE(mode);
        RemoveTree(folder / L"deployment\\ServicePacks");
        InMode(mode);
        queries.clear();
        ShowAndGoBack();
        ASSERT_EQ(queries.size(), 1u);
        EXPECT_EQ(queries.front().listFile, DownloadFolder() + L"patchlist.npl");
        EXPECT_TRUE(FolderExists(DownloadFolder()));
    }
}

TEST_P(CatalogQuery, OutsideADeploymentDownloadsGoToTheProductsFolderAmongTheTexts)
{
    InMode(2);
    ShowAndGoBack();
    ASSERT_EQ(queries.size(), 1u);
    EXPECT_EQ(queries.front().listFile, folder / L"language\\Zolt\\ServicePacks\\patchlist.npl");
    EXPECT_TRUE(FolderExists(folder / L"language\\Zolt\\ServicePacks"));
    EXPECT_FALSE(FolderExists(DownloadFolder()));
}

TEST_P(CatalogQuery, AFolderForDownloadsThatCannotBeMadeLeavesThePageAsItsTemplateHasIt)
{
    folder.AddFile(L"deployment\\ServicePacks", "a file in the folder's place");
    Look([this] {
        EXPECT_EQ(Stage(), CString(L"not drawn"));
        EXPECT_EQ(Form(IDC_PATCH_NONE), CString(L"SEC"));
        EXPECT_EQ(Form(IDC_PATCH_OFFERED), CString(L"SEU"));
        EXPECT_EQ(Form(IDC_PATCH_LIST), CString(L"SE"));
    });
    ShowAndGoBack();
    EXPECT_EQ(queries.size(), 0u);
}

// ---- the registry

TEST_P(CatalogQuery, AnAddressOfTheProductsOwnTakesThePlaceOfTheDefault)
{
    SetAddress(L"http://127.0.0.1:8080/here");
    EXPECT_EQ(AskedAddress(), CString(L"http://127.0.0.1:8080/here?%s"));
}

TEST_P(CatalogQuery, AnAddressOfAnotherProductDoesNotCount)
{
    SetAddress(L"http://127.0.0.1:8080/other", OTHER_PRODUCT);
    ExpectDefault(AskedAddress());
}

TEST_P(CatalogQuery, AnEmptyAddressMeansTheDefault)
{
    SetAddress(L"");
    ExpectDefault(AskedAddress());
}

// The value is read into 520 bytes first, which hold 259 characters and the closing zero.
TEST_P(CatalogQuery, AnAddressOfAnyLengthIsReadWhole)
{
    for (const int length : {258, 259, 260, 261, 700, 5000}) {
        const CString start = L"http://127.0.0.1/";
        const CString address = start + CString(L'x', length - start.GetLength());
        SetAddress(address);
        EXPECT_EQ(AskedAddress(), address + L"?%s") << length;
    }
}

TEST_P(CatalogQuery, AnAddressWithoutAClosingZeroIsReadAsItStands)
{
    for (const std::size_t length : {20u, 260u, 261u, 600u}) {
        const CString start = L"http://127.0.0.1/";
        const CString address = start + CString(L'y', static_cast<int>(length) - start.GetLength());
        // A zero right behind would be stored along.
        SetOverride(OVERRIDE, REG_SZ, (address + L"z").GetString(), length * sizeof(wchar_t));
        EXPECT_EQ(AskedAddress(), address + L"?%s") << length;
    }
}

TEST_P(CatalogQuery, OnlyThePreviewModeOneAsksForPreviews)
{
    SetAddress(L"http://127.0.0.1/p");
    EXPECT_EQ(AskedAddress(), CString(L"http://127.0.0.1/p?%s"));
    const std::pair<DWORD, const wchar_t*> rows[] = {
        {0, L"?%s"}, {1, L"?%s&preview=1"}, {2, L"?%s"}, {0xFFFFFFFF, L"?%s"}};
    for (const auto& [value, end] : rows) {
        SetPreview(value);
        EXPECT_EQ(AskedAddress(), CString(L"http://127.0.0.1/p") + end) << value;
    }
}

TEST_P(CatalogQuery, ThePreviewModeCountsWithTheDefaultAddressToo)
{
    SetPreview(1);
    EXPECT_HOLDS(AskedAddress(), L"/patchrelay/GetAvailableContent?%s&preview=1");
}

// ---- the current folder goes wrong

TEST_P(CatalogQuery, ACurrentFolderThatCannotBeReadIsSaidAndNothingIsAsked)
{
    for (const DWORD length : {0u, 261u, 300u}) {
        AnswerLengthOfFolder(length);
        AnswerAtEntry(L"GetCurrentDirectory failed", MB_ICONWARNING);
        Look([this] { EXPECT_EQ(Stage(), CString(L"no service")); });
        ShowAndGoBack();
        EXPECT_EQ(queries.size(), 0u) << length;
    }
}

TEST_P(CatalogQuery, AFolderOfTextsThatCannotBeEnteredIsSaidAndNothingIsAsked)
{
    const CString before = CurrentFolder();
    RefuseChangeOfFolder(0);
    AnswerAtEntry(L"SetCurrentDirectory failed", MB_ICONWARNING);
    Look([this] { EXPECT_EQ(Stage(), CString(L"no service")); });
    ShowAndGoBack();
    EXPECT_EQ(queries.size(), 0u);
    EXPECT_EQ(CurrentFolder(), before);
}

// A good answer is no use then: the page acts on the failure.
TEST_P(CatalogQuery, AFormerFolderThatCannotBeEnteredAgainFailsAGoodQuery)
{
    const CString before = CurrentFolder();
    WithOffer();
    RefuseChangeOfFolder(1);
    AnswerAtEntry(L"SetCurrentDirectory failed", MB_ICONWARNING);
    Look([this] { EXPECT_EQ(Stage(), CString(L"no service")); });
    ShowAndGoBack();
    EXPECT_EQ(queries.size(), 1u);
    SetCurrentDirectoryW(before);
}
