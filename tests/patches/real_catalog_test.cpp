// The page on the catalog's own libraries, against a service on the loopback address: from the configuration file and the registry
// to the patch on the product's list.
#include "base/handle.h"
#include "base/sha256.h"
#include "tests/patches/patch_download.h"

namespace {

constexpr wchar_t RELAY_KEY[] = L"Software\\Velkmora\\PatchRelay";
constexpr wchar_t PAYLOAD[] = L"ROLLOUT_TEST_EXTRACTOR_PAYLOAD";

class RealCatalog : public PatchDownload
{
protected:
    RealCatalog()
    {
        for (const wchar_t* name : {L"Kmd32.dll", L"FixMgr.dll"}) {
            EXPECT_TRUE(CopyFileW(ProgramFolder() + L"..\\" + name, ProgramFolder() + name, FALSE))
                << Utf8(name) << ": " << GetLastError();
        }
        folder.AddFile(L"media\\kmd\\Kmdconfig.xml",
                       "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<KmdConfig version=\"1\"><Product "
                       "value=\"ZOLT-7\"/></KmdConfig>");
        UseService();
    }
    void TearDown() override
    {
        RegDeleteKeyW(HKEY_LOCAL_MACHINE, CString(RELAY_KEY) + L"\\" + PATCHED_PRODUCT);
        RegDeleteKeyW(HKEY_LOCAL_MACHINE, RELAY_KEY);
        SetEnvironmentVariableW(PAYLOAD, nullptr);
        PatchDownload::TearDown();
    }
    // The product asks the server that stands now.
    void UseService()
    {
        const CString address = server->Url(L"/catalog");
        ASSERT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, CString(RELAY_KEY) + L"\\" + PATCHED_PRODUCT,
                                  L"AltPatchRelayURL", REG_SZ, address.GetString(),
                                  static_cast<DWORD>((address.GetLength() + 1) * sizeof(wchar_t))),
                  0);
    }
    std::string FileElement(const char* name, const std::string& contents)
    {
        const CString path = folder / L"described";
        const CFileOwner written(
            CreateFileW(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        DWORD count = 0;
        EXPECT_TRUE(
            WriteFile(written.get(), contents.data(), static_cast<DWORD>(contents.size()), &count, nullptr));
        SetFilePointer(written.get(), 0, nullptr, FILE_BEGIN);
        CString sum;
        EXPECT_EQ(HashFile(written.get(), sum), 0u);
        return std::string("<File name=\"") + name + "\" size=\"" + std::to_string(contents.size()) +
               "\" sha256=\"" + Utf8(sum) + "\"/>";
    }
    // The answer with one patch, fetched as that file of the server.
    void Announce(const wchar_t* path, const std::string& files)
    {
        server->Serve(
            L"/catalog",
            ServeBody(
                "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<PatchAnswer version=\"1\"><Patch name=\"Zolt "
                "7.1\" readme=\"" +
                    Utf8(server->Url(L"/readme.html")) + "\" download=\"" + Utf8(server->Url(path)) + "\">" +
                    files + "</Patch></PatchAnswer>",
                "application/xml"));
    }
    void AnnounceGoodPatch()
    {
        Announce(L"/packs/ZoltSP1.msp", FileElement("ZoltSP1.msp", good));
        server->Serve(L"/packs/ZoltSP1.msp", ServeBody(good));
    }
};
INSTANTIATE_BOTH_SHAPES(RealCatalog);

} // namespace

TEST_P(RealCatalog, AnOfferIsFetchedCheckedAndListed)
{
    AnnounceGoodPatch();
    Look([this] {
        EXPECT_EQ(Text(IDC_PATCH_LINK), CString(L"Zolt 7.1"));
        EXPECT_EQ(product.patchReadme, server->Url(L"/readme.html"));
    });
    Act();
    AwaitStage(L"downloaded");
    ExpectDownloads({L"ZoltSP1.msp", L"patchlist.npl"});
    GoNext();
    EXPECT_EQ(product.m_patchFiles, Lines{Target()});
    EXPECT_EQ(BytesOf(Target()), good);
    EXPECT_EQ(server->GetRequests().at(0).query.substr(0, 30), "key=ZOLT-2027&product=ZOLT-7&c");
}

TEST_P(RealCatalog, ContentsThatTheServiceDidNotAnnounceLeaveNothing)
{
    CString words;
    AnnounceGoodPatch();
    server->Serve(L"/packs/ZoltSP1.msp", ServeBody(good + "x"));
    Act();
    AwaitFailure(L"connect failed", words);
    ExpectDownloads({L"patchlist.npl"});
    Look([this] { server->Serve(L"/packs/ZoltSP1.msp", ServeBody(good)); });
    Act();
    AwaitStage(L"available");
    Act();
    AwaitStage(L"downloaded");
    GoNext();
    EXPECT_EQ(words, ResourceText(IDS_PATCH_CHANGED, Target()));
    EXPECT_EQ(product.m_patchFiles, Lines{Target()});
}

TEST_P(RealCatalog, AFileThatWasChangedSinceItWasFetchedIsNotListed)
{
    AnnounceGoodPatch();
    Act();
    AwaitStage(L"downloaded");
    Look([this] { WriteFileBytes(Target(), "something else"); });
    Press(Next());
    Answer(ErrorBox(ResourceText(IDS_PATCH_CHANGED, Target())), IDOK);
    AwaitStage(L"connect failed");
    ExpectDownloads({L"patchlist.npl"});
    ShowAndGoBack();
    EXPECT_EQ(product.m_patchFiles, Lines());
    EXPECT_FALSE(product.m_bPatchDownloaded);
}

TEST_P(RealCatalog, AProgramAndWhatItWritesAreBothChecked)
{
    const std::string program = BytesOf(ProgramFolder() + L"patch_libraries\\patch_self_extractor.exe");
    SetEnvironmentVariableW(PAYLOAD, folder / L"files\\good.msp");
    Announce(L"/packs/ZoltSP1.exe", FileElement("ZoltSP1.exe", program) + FileElement("ZoltSP1.msp", good));
    server->Serve(L"/packs/ZoltSP1.exe", ServeBody(program));
    Act();
    AwaitStage(L"downloaded");
    ExpectDownloads({L"ZoltSP1.exe", L"ZoltSP1.msp", L"patchlist.npl"});
    GoNext();
    EXPECT_EQ(product.m_patchFiles, Lines{Target()});
}

TEST_P(RealCatalog, AProgramThatWritesAnotherPatchLeavesNothing)
{
    CString words;
    const std::string program = BytesOf(ProgramFolder() + L"patch_libraries\\patch_self_extractor.exe");
    SetEnvironmentVariableW(PAYLOAD, AddPatch(L"other.msp", 2));
    Announce(L"/packs/ZoltSP1.exe", FileElement("ZoltSP1.exe", program) + FileElement("ZoltSP1.msp", good));
    server->Serve(L"/packs/ZoltSP1.exe", ServeBody(program));
    Act();
    AwaitFailure(L"connect failed", words);
    ExpectDownloads({L"patchlist.npl"});
    ShowAndGoBack();
    EXPECT_EQ(words, ResourceText(IDS_PATCH_CHANGED, Target()));
}

TEST_P(RealCatalog, AServiceWithoutPatchesMeansUpToDate)
{
    server->Serve(L"/catalog",
                  ServeBody("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<PatchAnswer version=\"1\"/>",
                            "application/xml"));
    Look([this] { EXPECT_EQ(Stage(), CString(L"up to date")); });
    ShowAndGoBack();
}

TEST_P(RealCatalog, AServiceThatMisbehavesClosesItsPart)
{
    const LoopbackHandler handlers[] = {
        ServeReset(),           ServeStatus(404),       ServeStatus(500),           ServeHtml(),
        ServeNothing(),         ServeBody(XmlCutOff()), ServeBody(XmlEntityBomb()), ServeRedirectToItself(),
        ServeCompressed("<x/>")};
    for (const LoopbackHandler& handler : handlers) {
        server->Serve(L"/catalog", handler);
        Look([this] { EXPECT_EQ(Stage(), CString(L"no service")); });
        ShowAndGoBack();
    }
}

// The library's own limits end it, well before a minute is over.
TEST_P(RealCatalog, AServiceThatNeverAnswersIsATimeoutAndARetryWorks)
{
    server->Serve(L"/catalog", ServeStall());
    Look([this] { EXPECT_EQ(Stage(), CString(L"timed out")); });
    Look([this] {
        server.emplace(); // the connection that stalls ends
        AnnounceGoodPatch();
    });
    ShowAndGoBack();
    UseService();
    Look([this] { EXPECT_EQ(Stage(), CString(L"available")); });
    Choose(IDC_PATCH_NONE);
    ShowAndGoBack();
}
