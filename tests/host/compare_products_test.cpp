// Which products of two deployments are compared with each other, and how their databases are.
#include "builder/build_failure.h"
#include "builder/database_snapshot.h"
#include "builder/deployment_compare.h"
#include "tests/host/package_maker.h"

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::string>;

class CompareProductsTest : public testing::Test
{
protected:
    // A package of that maker.
    void Package(const CString& path, const wchar_t* maker, const wchar_t* templateText = L"x64;1033")
    {
        PackageForm form;
        form.properties = {{L"Manufacturer", maker}};
        form.pszTemplate = templateText;
        MakePackage(scratch + path.GetString(), form);
    }

    Lines Compare(const std::vector<ComparedProduct>& first, const std::vector<ComparedProduct>& second)
    {
        const Differences differences =
            CompareDeployments({scratch + L"A", {}, first}, {scratch + L"B", {}, second}, [] {});
        Lines lines;
        for (const DeploymentDifference& difference : differences) {
            const CString text = ComposeComparisonText({L"", L"", {difference}});
            const int begin = text.Find(L"\r\n\r\n") + 4;
            lines.push_back(Utf8(text.Mid(begin, text.GetLength() - begin - 2)));
        }
        return lines;
    }

    ScratchFolder scratch;
};

ComparedProduct Product(const wchar_t* code, const wchar_t* database, const wchar_t* name = L"Zolt")
{
    return {code, name, database, {}, {}, {}};
}

} // namespace

TEST_F(CompareProductsTest, AProductThatHasMovedIsMatchedByItsCode)
{
    Package(L"A\\one.msi", L"One");
    Package(L"A\\two.msi", L"Two");
    Package(L"B\\one.msi", L"Two");
    Package(L"B\\two.msi", L"One");
    EXPECT_EQ(Compare({Product(L"{1}", L"one.msi"), Product(L"{2}", L"two.msi")},
                      {Product(L"{2}", L"one.msi"), Product(L"{1}", L"two.msi")}),
              (Lines{"product of \"Zolt\" \"database\": \"one.msi\" -> \"two.msi\"",
                     "product of \"Zolt\" \"database\": \"two.msi\" -> \"one.msi\""}));
}

TEST_F(CompareProductsTest, AProductUnderAnotherCodeIsMatchedByItsPlace)
{
    Package(L"A\\one.msi", L"One");
    Package(L"B\\one.msi", L"Two");
    EXPECT_EQ(Compare({Product(L"{1}", L"one.msi", L"Zolt 1")}, {Product(L"{2}", L"ONE.msi", L"Zolt 2")}),
              (Lines{"product of \"Zolt 1\" \"code\": \"{1}\" -> \"{2}\"",
                     "product of \"Zolt 1\" \"database\": \"one.msi\" -> \"ONE.msi\"",
                     "product of \"Zolt 1\" \"name\": \"Zolt 1\" -> \"Zolt 2\"",
                     "row of \"Zolt 1\" \"Property\" \"Manufacturer\" \"Value\": \"One\" -> \"Two\""}));
}

TEST_F(CompareProductsTest, AProductOfOneAloneIsNamedWithItsFile)
{
    Package(L"A\\one.msi", L"One");
    Package(L"B\\one.msi", L"One");
    Package(L"B\\two.msi", L"Two");
    const Lines facts = Compare({Product(L"{1}", L"one.msi")},
                                {Product(L"{1}", L"one.msi"), Product(L"{2}", L"two.msi", L"Pack")});
    ASSERT_EQ(facts.size(), 2u) << testing::PrintToString(facts);
    EXPECT_EQ(facts[0], "product of \"Pack\" \"{2}\": only in B, \"two.msi\"");
    EXPECT_EQ(facts[1].find("file \"two.msi\": only in B, "), 0u) << facts[1];
}

TEST_F(CompareProductsTest, TheSummaryOfADatabaseIsComparedWithoutItsCode)
{
    Package(L"A\\one.msi", L"One");
    Package(L"B\\one.msi", L"One", L"Intel;1033");
    EXPECT_EQ(
        Compare({Product(L"{1}", L"one.msi")}, {Product(L"{1}", L"one.msi")}),
        (Lines{"row of \"Zolt\" \"Summary information\" \"Template\": \"x64;1033\" -> \"Intel;1033\""}));
}

TEST_F(CompareProductsTest, ADatabaseIsReadWhateverItsManifestSays)
{
    Package(L"A\\one.msi", L"One");
    Package(L"B\\one.msi", L"Two");
    const std::string hash(64, 'a');
    for (const wchar_t* folder : {L"A\\", L"B\\"}) {
        std::vector<FolderItem> items;
        ASSERT_EQ(ListFolder(scratch + folder, items), 0u);
        WriteFileBytes(scratch + folder + L"Manifest.txt",
                       hash + " " + std::to_string(items.at(0).bytes) + " one.msi\r\n");
    }
    EXPECT_EQ(Compare({Product(L"{1}", L"one.msi")}, {Product(L"{1}", L"one.msi")}),
              (Lines{"row of \"Zolt\" \"Property\" \"Manufacturer\" \"Value\": \"One\" -> \"Two\""}));
}

TEST_F(CompareProductsTest, AFileIsReadOnceItsSizeIsNotThatOfItsManifest)
{
    const std::string hash(64, 'a');
    for (const wchar_t* folder : {L"A\\", L"B\\"}) {
        ASSERT_EQ(MakeFolders(scratch + folder), 0u);
        WriteFileBytes(scratch + folder + L"Manifest.txt",
                       hash + " 2 same.bin\r\n" + hash + " 1 read.bin\r\n");
    }
    for (const wchar_t* name : {L"same.bin", L"read.bin"}) {
        WriteFileBytes(scratch + L"A\\" + name, "aa");
        WriteFileBytes(scratch + L"B\\" + name, "bb");
    }
    const Lines facts = Compare({}, {});
    ASSERT_EQ(facts.size(), 1u) << testing::PrintToString(facts);
    EXPECT_EQ(facts.front().find("file \"read.bin\": \"SHA-256 "), 0u) << facts.front();
}

TEST_F(CompareProductsTest, AFolderThatIsNotThereIsNamed)
{
    ASSERT_EQ(MakeFolders(scratch + L"A"), 0u);
    try {
        static_cast<void>(Compare({}, {}));
        FAIL() << "a folder that isn't there was compared";
    } catch (const BuildFailure& failure) {
        EXPECT_HOLDS(failure.message, scratch + L"B");
    }
}

// Rows that both have are dropped as they are read; what is found must be the same as if nothing were dropped.
TEST_F(CompareProductsTest, DatabasesThatAreReadTogetherDifferInWhatTheyDoApart)
{
    const auto run = [](const CString& path, const std::vector<CString>& statements) {
        CInstallerHandle database;
        ASSERT_EQ(MsiOpenDatabaseW(path, MSIDBOPEN_TRANSACT, database.put()), 0u);
        for (const CString& statement : statements) {
            EXPECT_EQ(RunSql(database.get(), statement), 0u) << Utf8(statement);
        }
        EXPECT_EQ(MsiDatabaseCommit(database.get()), 0u);
    };
    const auto insert = [](int row) {
        return L"INSERT INTO `Rows` (`Key`, `Value`) VALUES ('k" + NumberText(row) + L"', 'v')";
    };
    std::vector<CString> fill = {
        L"CREATE TABLE `Rows` (`Key` CHAR(72) NOT NULL, `Value` CHAR(0) PRIMARY KEY `Key`)",
        L"CREATE TABLE `Other` (`Key` SHORT NOT NULL, `Value` LONG PRIMARY KEY `Key`)",
        L"INSERT INTO `Other` (`Key`, `Value`) VALUES (1, 1)"};
    for (int row = 10; row < 60; ++row) {
        fill.push_back(insert(row));
    }
    Package(L"A\\one.msi", L"One");
    const CString original = scratch + L"A\\one.msi";
    run(original, fill);
    std::vector<CString> many;
    for (int row = 60; row < 80; ++row) {
        many.push_back(insert(row));
    }
    const std::vector<std::vector<CString>> variants = {
        {},
        {L"UPDATE `Rows` SET `Value` = 'w' WHERE `Key` = 'k30'"},
        {L"DELETE FROM `Rows` WHERE `Key` = 'k10'"},
        {L"DELETE FROM `Rows` WHERE `Key` = 'k59'"},
        {L"DELETE FROM `Rows` WHERE `Key` = 'k20'", insert(20)},
        {L"DELETE FROM `Rows` WHERE `Key` = 'k20'", L"UPDATE `Rows` SET `Value` = 'w' WHERE `Key` = 'k21'"},
        {L"DELETE FROM `Rows` WHERE `Value` = 'v'"},
        many,
        {L"DROP TABLE `Other`"},
        {L"CREATE TABLE `New` (`Key` CHAR(72) NOT NULL PRIMARY KEY `Key`)",
         L"INSERT INTO `New` (`Key`) VALUES ('x')"},
        {L"DROP TABLE `Other`",
         L"CREATE TABLE `Other` (`Key` SHORT NOT NULL, `Text` CHAR(9) PRIMARY KEY `Key`)",
         L"INSERT INTO `Other` (`Key`, `Text`) VALUES (1, '1')"},
    };
    for (std::size_t index = 0; index < variants.size(); ++index) {
        SCOPED_TRACE(index);
        const CString changed = scratch + L"changed.msi";
        ASSERT_TRUE(CopyFileW(original, changed, FALSE));
        run(changed, variants[index]);
        const CInstallerHandle first = OpenDatabaseToRead(original);
        const CInstallerHandle second = OpenDatabaseToRead(changed);
        for (const bool swapped : {false, true}) {
            const OpenedDatabase one{swapped ? second.get() : first.get(), L"one"};
            const OpenedDatabase other{swapped ? first.get() : second.get(), L"other"};
            Differences apart;
            AddRowDifferences(L"",
                              CompareSnapshots(ReadSnapshot(one.hDatabase, L"one", [] {}),
                                               ReadSnapshot(other.hDatabase, L"other", [] {})),
                              apart);
            for (const std::set<CString>& whole :
                 {std::set<CString>(), std::set<CString>{L"Rows", L"Property"}}) {
                const SnapshotPair pair = ReadUnequalRows(one, other, whole, [] {});
                Differences together;
                AddRowDifferences(L"", CompareSnapshots(pair.first, pair.second), together);
                EXPECT_EQ(together, apart);
                EXPECT_EQ(apart.empty(), index == 0 || index == 4);
                EXPECT_EQ(pair.first.at(L"Property").rows.empty(), whole.empty());
            }
        }
    }
}

TEST_F(CompareProductsTest, TheOneOfTwoDatabasesThatCannotBeReadIsNamed)
{
    Package(L"one.msi", L"One");
    const CInstallerHandle good = OpenDatabaseToRead(scratch + L"one.msi");
    for (const bool swapped : {false, true}) {
        const OpenedDatabase one{swapped ? 0 : good.get(), L"first"};
        const OpenedDatabase other{swapped ? good.get() : 0, L"second"};
        try {
            static_cast<void>(ReadUnequalRows(one, other, {}, [] {}));
            ADD_FAILURE() << "a handle of nothing was read";
        } catch (const BuildFailure& failure) {
            EXPECT_HOLDS(failure.message, swapped ? L"\"first\"" : L"\"second\"");
        }
    }
}
