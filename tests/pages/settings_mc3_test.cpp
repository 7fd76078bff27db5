// MC3_ENABLED on the settings page, in real installer databases.
#include "tests/pages/settings_page.h"

namespace {

class SettingsMc3 : public SettingsPage
{
protected:
    void GoOn()
    {
        Press(IDC_NEXT);
        EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    }
    void ExpectBox(bool checked)
    {
        Look([this, checked] {
            ExpectMc3Shown(true);
            EXPECT_EQ(Control(IDC_MC3).IsChecked(), checked);
        });
    }
    void ExpectNoBox()
    {
        Look([this] { ExpectMc3Shown(false); });
    }
};

TEST_F(SettingsMc3, WithoutProductsTheBoxIsHidden)
{
    ExpectNoBox();
    GoOn();
}

TEST_F(SettingsMc3, ProductsThatDoNotCarryItAreNeitherReadNorWritten)
{
    TestProduct& kind = AddCarrier(L"#1");
    kind.m_productKind = 7;
    TestProduct& first = AddCarrier(L"#1");
    first.m_bCarrierFlag1 = false;
    TestProduct& second = AddCarrier(nullptr);
    second.m_bCarrierFlag2 = false;
    ExpectNoBox();
    GoOn();
    EXPECT_EQ(Mc3Of(kind), CString(L"#1"));
    EXPECT_EQ(Mc3Of(first), CString(L"#1"));
    EXPECT_EQ(Mc3Of(second), CString(L"(none)"));
}

TEST_F(SettingsMc3, ACarrierWithoutTheRowAloneHidesTheBoxAndStaysWithoutIt)
{
    TestProduct& product = AddCarrier(nullptr);
    ExpectNoBox();
    GoOn();
    EXPECT_EQ(Mc3Of(product), CString(L"(none)"));
}

TEST_F(SettingsMc3, ACarrierWithoutTheRowGetsItWithTheOthers)
{
    TestProduct& without = AddCarrier(nullptr);
    TestProduct& with = AddCarrier(L"#0");
    ExpectBox(false);
    Press(IDC_MC3);
    GoOn();
    EXPECT_EQ(Mc3Of(without), CString(L"#1"));
    EXPECT_EQ(Mc3Of(with), CString(L"#1"));
}

TEST_F(SettingsMc3, OffAndOnAreShownOnAndBothGetTheSame)
{
    TestProduct& off = AddCarrier(L"#0");
    TestProduct& on = AddCarrier(L"#1");
    ExpectBox(true);
    GoOn();
    EXPECT_EQ(Mc3Of(off), CString(L"#1"));
    EXPECT_EQ(Mc3Of(on), CString(L"#1"));
}

TEST_F(SettingsMc3, OnAndOffAreShownOnInTheOtherOrderToo)
{
    TestProduct& on = AddCarrier(L"#1");
    TestProduct& off = AddCarrier(L"#0");
    ExpectBox(true);
    Press(IDC_MC3);
    GoOn();
    EXPECT_EQ(Mc3Of(on), CString(L"#0"));
    EXPECT_EQ(Mc3Of(off), CString(L"#0"));
}

TEST_F(SettingsMc3, AnyValueButOffCountsAsOn)
{
    TestProduct& product = AddCarrier(L"#1");
    for (const wchar_t* value : {L"0", L"1", L"#00", L"no", L"#2"}) {
        TestProduct& carrier = AddCarrier(value);
        host.products = {&carrier};
        ExpectBox(true);
        GoOn();
        EXPECT_EQ(Mc3Of(carrier), CString(L"#1")) << Utf8(value);
    }
    EXPECT_EQ(Mc3Of(product), CString(L"#1"));
}

TEST_F(SettingsMc3, EmptyEntriesAmongTheProductsAreSkipped)
{
    TestProduct& product = AddCarrier(L"#0");
    host.products = {nullptr, &product, nullptr};
    ExpectBox(false);
    GoOn();
    EXPECT_EQ(Mc3Of(product), CString(L"#0"));
}

TEST_F(SettingsMc3, BackStoresItToo)
{
    TestProduct& product = AddCarrier(L"#0");
    Press(IDC_MC3);
    ShowAndLeave();
    EXPECT_EQ(Mc3Of(product), CString(L"#1"));
}

TEST_F(SettingsMc3, ARefusedNextStoresNothing)
{
    TestProduct& product = AddCarrier(L"#0");
    Press(IDC_MC3);
    NextWithLog(L"no folder at all");
    Answer(WarningBox(ResourceText(IDS_LOG_FOLDER_NOT_NETWORK)), IDOK,
           [&] { EXPECT_EQ(Mc3Of(product), CString(L"#0")); });
    ExpectStaysOnFolder(L"no folder at all");
    ShowAndLeave();
}

TEST_F(SettingsMc3, AWriteThatFailsIsNotNoticedAndTheNextProductIsWritten)
{
    TestProduct& first = AddCarrier(L"#0");
    TestProduct& second = AddCarrier(L"#0");
    Press(IDC_MC3);
    Look([&] { DropProperties(first); });
    GoOn();
    EXPECT_EQ(Mc3Of(second), CString(L"#1"));
}

TEST_F(SettingsMc3, TheLongestValueThatCanBeReadCounts)
{
    TestProduct& product = AddCarrier(CString(L'1', 1023));
    ExpectBox(true);
    GoOn();
    EXPECT_EQ(Mc3Of(product), CString(L"#1"));
}

TEST_F(SettingsMc3, AValueTooLongToReadDoesNotCount)
{
    TestProduct& product = AddCarrier(CString(L'1', 1024));
    ExpectNoBox();
    GoOn();
    EXPECT_EQ(Mc3Of(product), CString(L'1', 1024));
}

} // namespace
