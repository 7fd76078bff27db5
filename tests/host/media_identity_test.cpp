// Codes, versions and names of packages where media are opened. A product code that held a command once ran on the
// workstations; a code in Setup.xml that wasn't the package's made an Uninstall.cmd that removed nothing.
#include "tests/host/through_host.h"

#include "host/setup_description.h"

#include <msiquery.h>

namespace {

constexpr const wchar_t* OTHER_CODE = L"{00000000-0000-0000-0000-000000000001}";
constexpr const wchar_t* HOSTILE_CODE =
    L"{12345678-1234-1234-1234-123456789012} & echo pwned>C:\\pwned.txt & rem ";

class MediaIdentityTest : public ThroughHostTest
{
protected:
    // A package on its own with one row of its Property table changed or, when the value is empty, left out.
    CString LonePackage(const CString& property, const CString& value)
    {
        PackageForm form;
        form.properties = {{L"UpgradeCode", SETUP_CODE}, {property, value}};
        MakePackage(scratch + L"Tool.msi", form);
        return scratch + L"Tool.msi";
    }

    // Media whose Setup.xml has been changed.
    CString ChangedMedia(const CString& from, const CString& to)
    {
        const CString folder = scratch + L"media\\";
        MakeMedia(folder);
        CString text = ReadText(folder + SETUP_FILE);
        EXPECT_EQ(text.Replace(from, to), 1);
        WriteText(folder + SETUP_FILE, text);
        return folder;
    }

    CString Refusal(const CString& path)
    {
        OperationError error;
        const HostOwner opened(OpenSetupHost(OptionsFor(path, work), error));
        EXPECT_FALSE(opened) << "the media was opened";
        return error.message;
    }
};

} // namespace

TEST_F(MediaIdentityTest, AProductCodeThatIsNoGuidIsRefusedByNameAndReason)
{
    const CString message = Refusal(LonePackage(L"ProductCode", HOSTILE_CODE));
    EXPECT_HOLDS(message, L"Tool.msi");
    EXPECT_HOLDS(message, HOSTILE_CODE);
    EXPECT_HOLDS(message, L"GUID");
}

TEST_F(MediaIdentityTest, ACodeThatIsNoGuidIsRefusedWhateverTheDescriptionSays)
{
    const CString folder = scratch + L"media\\";
    MakeMedia(folder);
    PackageForm form;
    form.properties = {{L"ProductCode", HOSTILE_CODE}};
    MakePackage(folder + L"x64\\Zolt\\Zolt.msi", form);
    const CString message = Refusal(folder);
    EXPECT_HOLDS(message, L"Zolt.msi");
    EXPECT_HOLDS(message, HOSTILE_CODE);
}

TEST_F(MediaIdentityTest, TheUpgradeCodeIsNotTakenForAMissingProductCode)
{
    EXPECT_HOLDS(Refusal(LonePackage(L"ProductCode", L"")), L"product code");
}

TEST_F(MediaIdentityTest, AVersionThatIsNoneIsRefused)
{
    for (const wchar_t* version : {L"", L"27.0 & calc", L"seven", L"1..2", L"1.2.3.4.5", L"27.0.0\r\n1"}) {
        const CString message = Refusal(LonePackage(L"ProductVersion", version));
        EXPECT_HOLDS(message, L"Tool.msi");
        EXPECT_HOLDS(message, L"version");
        EXPECT_LT(message.Find(L'\n'), 0) << Utf8(message);
    }
}

TEST_F(MediaIdentityTest, AVersionOfFourNumbersIsOne)
{
    Open(LonePackage(L"ProductVersion", L"27.0.1.4711"));
}

TEST_F(MediaIdentityTest, ACodeOfTheDescriptionThatIsNotThePackagesIsRefused)
{
    const CString message = Refusal(ChangedMedia(PRODUCT_CODE, OTHER_CODE));
    EXPECT_HOLDS(message, L"x64\\Zolt\\Zolt.msi");
    EXPECT_HOLDS(message, OTHER_CODE);
    EXPECT_HOLDS(message, PRODUCT_CODE);
    EXPECT_HOLDS(message, L"Setup.xml");
}

TEST_F(MediaIdentityTest, ACodeOfALanguagePackThatIsNotThePackagesIsRefused)
{
    const CString message = Refusal(ChangedMedia(PACK_PRODUCT_CODE, OTHER_CODE));
    EXPECT_HOLDS(message, L"x64\\ZoltDe\\ZoltDe.msi");
    EXPECT_HOLDS(message, OTHER_CODE);
}

TEST_F(MediaIdentityTest, ACodeOfTheOtherPlatformIsRefusedWhenThatIsChosen)
{
    CSetupManager& manager = Open(ChangedMedia(NARROW_PRODUCT_CODE, OTHER_CODE));
    EXPECT_TRUE(manager.IsTargetPlatformAllowed(Setup::PLATFORM_X64));
    EXPECT_FALSE(manager.IsTargetPlatformAllowed(Setup::PLATFORM_X86));
    const CString log = ReadText(work + L"Setup.log");
    EXPECT_HOLDS(log, L"x86\\Zolt\\Zolt.msi");
    EXPECT_HOLDS(log, OTHER_CODE);
}

// The page says that the log has the reason.
TEST_F(MediaIdentityTest, APlatformWhosePackageHasGoneIsNamedInTheLog)
{
    MakeMedia(scratch + L"media\\");
    CSetupManager& manager = Open(scratch + L"media\\");
    ASSERT_TRUE(DeleteFileW(scratch + L"media\\x86\\Zolt\\Zolt.msi"));
    EXPECT_FALSE(manager.IsTargetPlatformAllowed(Setup::PLATFORM_X86));
    EXPECT_HOLDS(ReadText(work + L"Setup.log"), L"The media hold no package for the 32-bit platform.");
}

TEST_F(MediaIdentityTest, AVersionOfTheDescriptionThatIsNotThePackagesIsRefused)
{
    const CString folder = scratch + L"media\\";
    MakeMedia(folder);
    PackageForm newer;
    newer.properties = {{L"ProductVersion", L"27.0.1"}};
    MakePackage(folder + L"x64\\Zolt\\Zolt.msi", newer);
    const CString message = Refusal(folder);
    EXPECT_HOLDS(message, L"x64\\Zolt\\Zolt.msi");
    EXPECT_HOLDS(message, L"27.0.1");
    EXPECT_HOLDS(message, L"27.0.0");
}

TEST_F(MediaIdentityTest, ACodeInSmallLettersIsTheSame)
{
    const CString folder = scratch + L"media\\";
    MakeMedia(folder);
    PackageForm form;
    form.properties = {{L"ProductCode", L"{abcdefab-2222-3333-4444-555555555556}"}};
    MakePackage(folder + L"x64\\Zolt\\Zolt.msi", form);
    CString text = ReadText(folder + SETUP_FILE);
    ASSERT_EQ(text.Replace(PRODUCT_CODE, L"{ABCDEFab-2222-3333-4444-555555555556}"), 1);
    WriteText(folder + SETUP_FILE, text);
    Open(folder);
}

TEST_F(MediaIdentityTest, ANameOfSeveralLinesBecomesOneAndTheImageOpensAgain)
{
    const CString name = L"Zolt\r\nforged line\x01\x7F"
                         L"end";
    CSetupManager& manager = Open(LonePackage(L"ProductName", name));
    EXPECT_EQ(CString(manager.m_pProducts->at(0)->m_strName), CString(L"Zolt  forged line  end"));
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"Tool");
    Build();
    EXPECT_EQ(CString(Open(location + L"Tool").m_strProductName), CString(L"Zolt  forged line  end"));
}

TEST_F(MediaIdentityTest, AFileNameThatTheImageCouldNotDescribeIsRefused)
{
    MakePackage(scratch + L" Tool.msi");
    const CString message = Refusal(scratch + L" Tool.msi");
    EXPECT_HOLDS(message, L" Tool.msi");
    EXPECT_HOLDS(message, L"Rename");
}
