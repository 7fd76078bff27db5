// The custom shortcuts that a product's database holds already, and the template that they are made from.
#include "include/shortcut_strings.h"
#include "tests/host/through_host.h"

#include <msiquery.h>

namespace {

class CustomShortcutsTest : public ThroughHostTest
{
protected:
    CProduct& OpenProduct()
    {
        MakeMedia(scratch + L"media\\");
        return *Open(scratch + L"media\\").m_pProducts->at(0);
    }

    static void AddRow(CProduct& product, const wchar_t* key, const wchar_t* name, const wchar_t* arguments)
    {
        CString statement;
        statement.Format(
            L"INSERT INTO `Shortcut` (`Shortcut`,`Directory_`,`Name`,`Component_`,`Target`,`Arguments`) "
            L"VALUES ('%s','INSTALLDIR','%s','C','Main','%s')",
            key, name, arguments);
        EXPECT_EQ(RunSql(product.GetMsiHandle(), statement), 0u);
    }

    // Key, name and command of each, one after the other.
    static CString Found(CProduct& product, const wchar_t* list)
    {
        EXPECT_TRUE(product.SetMsiProperty(L"ZOLT_CUSTOM_SHORTCUT", list, false));
        std::vector<ShortcutStrings> shortcuts = {{L"left", L"over", L""}};
        EXPECT_TRUE(product.GetCustomShortcuts(shortcuts));
        CString words;
        for (const ShortcutStrings& shortcut : shortcuts) {
            words += shortcut.Key + L"," + shortcut.Name + L"," + shortcut.Command + L"\n";
        }
        return words;
    }

    CString RefusalOfTemplate(const wchar_t* text)
    {
        PackageForm form;
        form.properties = {{L"UpgradeCode", SETUP_CODE}, {L"ZOLT_SHORTCUT_TEMPLATE", text}};
        MakePackage(scratch + L"Tool.msi", form);
        OperationError error;
        const HostOwner opened(OpenSetupHost(OptionsFor(scratch + L"Tool.msi", work), error));
        EXPECT_EQ(opened != nullptr, error.message.IsEmpty());
        return error.message;
    }
};

} // namespace

TEST_F(CustomShortcutsTest, TheyComeInTheOrderOfTheList)
{
    CProduct& product = OpenProduct();
    AddRow(product, L"CUSTOM_SHORTCUT_1", L"FIRST|First one", L"/b");
    AddRow(product, L"CUSTOM_SHORTCUT_2", L"Second", L"/p x");
    AddRow(product, L"CUSTOM_SHORTCUT_10", L"Third|Third", L"/c");
    EXPECT_EQ(
        Found(product, L"11;CUSTOM_SHORTCUT_10;CUSTOM_SHORTCUT_2;CUSTOM_SHORTCUT_1;"),
        CString(
            L"CUSTOM_SHORTCUT_10,Third,/c\nCUSTOM_SHORTCUT_2,Second,/p x\nCUSTOM_SHORTCUT_1,First one,/b\n"));
}

TEST_F(CustomShortcutsTest, AKeyWithoutARowIsLeftOut)
{
    CProduct& product = OpenProduct();
    AddRow(product, L"CUSTOM_SHORTCUT_2", L"B|B", L"/b");
    EXPECT_EQ(Found(product, L"4;CUSTOM_SHORTCUT_1;CUSTOM_SHORTCUT_2;CUSTOM_SHORTCUT_3;"),
              CString(L"CUSTOM_SHORTCUT_2,B,/b\n"));
}

TEST_F(CustomShortcutsTest, ADoubledKeyCountsOnce)
{
    CProduct& product = OpenProduct();
    AddRow(product, L"CUSTOM_SHORTCUT_1", L"A|A", L"/b");
    AddRow(product, L"CUSTOM_SHORTCUT_2", L"B|B", L"/c");
    EXPECT_EQ(Found(product, L"3;CUSTOM_SHORTCUT_2;CUSTOM_SHORTCUT_1;CUSTOM_SHORTCUT_2;CUSTOM_SHORTCUT_1;"),
              CString(L"CUSTOM_SHORTCUT_2,B,/c\nCUSTOM_SHORTCUT_1,A,/b\n"));
}

TEST_F(CustomShortcutsTest, RowsOfStrangeNamesAndNoArgumentsAreFoundToo)
{
    CProduct& product = OpenProduct();
    AddRow(product, L"Odd.Key", L"A|B|C", L"");
    AddRow(product, L"8", L"|", L"not a switch");
    EXPECT_EQ(Found(product, L"x;8;Odd.Key;"), CString(L"8,,not a switch\nOdd.Key,B|C,\n"));
}

TEST_F(CustomShortcutsTest, WithoutAListThereAreNoneWhateverTheTableHolds)
{
    CProduct& product = OpenProduct();
    AddRow(product, L"CUSTOM_SHORTCUT_1", L"A|A", L"/b");
    for (const wchar_t* list : {L"", L";", L"2", L"2;", L"CUSTOM_SHORTCUT_1;", L"2;CUSTOM_SHORTCUT_1"}) {
        EXPECT_EQ(Found(product, list), CString()) << Utf8(list);
    }
}

TEST_F(CustomShortcutsTest, NamesAndCommandsOfAnyLengthAreFound)
{
    CProduct& product = OpenProduct();
    const CString name(L'n', 900), arguments(L'a', 1500);
    AddRow(product, L"CUSTOM_SHORTCUT_1", L"N|" + name, arguments);
    EXPECT_EQ(Found(product, L"2;CUSTOM_SHORTCUT_1;"),
              L"CUSTOM_SHORTCUT_1," + name + L"," + arguments + L"\n");
}

TEST_F(CustomShortcutsTest, ATableThatCannotBeReadIsAFailure)
{
    CProduct& product = OpenProduct();
    ASSERT_TRUE(product.SetMsiProperty(L"ZOLT_CUSTOM_SHORTCUT", L"2;CUSTOM_SHORTCUT_1;", false));
    ASSERT_EQ(RunSql(product.GetMsiHandle(), L"DROP TABLE `Shortcut`"), 0u);
    std::vector<ShortcutStrings> shortcuts;
    EXPECT_FALSE(product.GetCustomShortcuts(shortcuts));
}

// A page that split such a template once ended the process.
TEST_F(CustomShortcutsTest, ATemplateOfElevenOrThirteenFieldsIsRefusedByNameAndReason)
{
    struct Row
    {
        const wchar_t* text;
        const wchar_t* fields;
    };
    for (const Row& row :
         {Row{L"K;D;N;C;T;A;;;;;", L"11"}, Row{L"K;D;N;C;T;A;;;;;1;W;", L"13"}, Row{L"K", L"1"}}) {
        const CString message = RefusalOfTemplate(row.text);
        EXPECT_HOLDS(message, L"Tool.msi");
        EXPECT_HOLDS(message, L"ZOLT_SHORTCUT_TEMPLATE");
        EXPECT_HOLDS(message, CString(L"has ") + row.fields + L" fields instead of 12");
    }
}

// A page reads it as empty, and would hide its table.
TEST_F(CustomShortcutsTest, ATemplateThatAPageCannotReadIsRefusedByNameAndLength)
{
    const CString fields = L"K;D;N;C;T;;;;;;;W";
    const CString longest = fields + CString(L'x', 1023 - fields.GetLength());
    EXPECT_EQ(RefusalOfTemplate(longest), CString());
    const CString message = RefusalOfTemplate(longest + L"x");
    EXPECT_HOLDS(message, L"Tool.msi");
    EXPECT_HOLDS(message, L"ZOLT_SHORTCUT_TEMPLATE");
    EXPECT_HOLDS(message, L"has 1024 characters, more than the 1023");
}

TEST_F(CustomShortcutsTest, ATemplateOfTwelveFieldsIsGoodAlsoWithAnEmptyLastOne)
{
    EXPECT_EQ(RefusalOfTemplate(L"K;D;N;C;T;A;;;;;;W"), CString());
    EXPECT_EQ(RefusalOfTemplate(L"K;D;N;C;T;A;;;;;;"), CString());
    EXPECT_EQ(RefusalOfTemplate(L""), CString());
}
