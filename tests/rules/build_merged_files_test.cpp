// The files that a patch changes: which of them it carries, and what numbers and places they have in the product.
#include "builder/merged_files.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

// A product with two cabinets: A and B on the first one, C on the second.
class MergedFiles : public testing::Test
{
protected:
    MergedFiles()
    {
        TableSnapshot& files = m_product[L"File"];
        files = {{L"File", L"FileName", L"FileSize", L"Version", L"Attributes", L"Sequence"},
                 {L"s72", L"l255", L"i4", L"S72", L"I2", L"i2"},
                 1,
                 {}};
        TableSnapshot& media = m_product[L"Media"];
        media = {{L"DiskId", L"LastSequence", L"Cabinet"}, {L"i2", L"i2", L"S255"}, 1, {}};
        m_product[L"Directory"] = {{L"Directory", L"DefaultDir"}, {L"s72", L"l255"}, 1, {}};
        SetFile(m_product, L"A", L"16384", L"1");
        SetFile(m_product, L"B", L"16384", L"2");
        SetFile(m_product, L"C", L"16384", L"3");
        SetMedium(m_product, L"1", L"2", L"one.cab");
        SetMedium(m_product, L"2", L"3", L"two.cab");
        m_steps = {m_product, m_product, m_product};
    }

    static void SetFile(DatabaseSnapshot& database, const CString& key, const CString& attributes,
                        const CString& sequence, const CString& size = L"10",
                        const CString& name = L"name.txt")
    {
        database[L"File"].rows[{key}] = {key, name, size, L"", attributes, sequence};
    }
    static void SetMedium(DatabaseSnapshot& database, const CString& disk, const CString& last,
                          const CString& cabinet)
    {
        database[L"Media"].rows[{disk}] = {disk, last, cabinet};
    }

    // A row that both transforms bring: new or with another size, and from the patch's own cabinet.
    void Carry(const CString& key, const CString& sequence, const CString& ownSequence,
               const CString& name = L"name.txt")
    {
        SetFile(m_steps.changed, key, L"16384", ownSequence, L"11", name);
        SetFile(m_steps.sourced, key, L"20480", sequence, L"11", name);
    }
    std::string Find()
    {
        m_carried.clear();
        return Utf8(FindCarriedFiles(m_steps, m_carried));
    }
    // Attributes and number.
    static std::string PlaceOf(const DatabaseSnapshot& database, const CString& key)
    {
        const RowValues& row = database.at(L"File").rows.at({key});
        return Utf8(row[4] + L" " + row[5]);
    }
    static std::string EndOf(const DatabaseSnapshot& database, const CString& disk)
    {
        return Utf8(database.at(L"Media").rows.at({disk})[1]);
    }
    std::string Merge() { return Utf8(MergeTables(m_steps, m_product)); }
    std::string Cabinets(const std::set<CString>& touched, const std::set<CString>& removed = {}) const
    {
        std::string text;
        for (const MergedCabinet& cabinet :
             FindMergedCabinets(m_steps.before, m_product, m_layout, touched, removed)) {
            text += Utf8(cabinet.strName) + ":";
            for (const CString& key : cabinet.keys) {
                text += " " + Utf8(key);
            }
            text += "; ";
        }
        return text;
    }

    DatabaseSnapshot m_product;
    PatchSteps m_steps;
    CarriedFiles m_carried;
    PackageLayout m_layout;
};

} // namespace

TEST_F(MergedFiles, AreThoseOnTheMediumOfThePatch)
{
    SetMedium(m_steps.sourced, L"3", L"1001", L"#Patch.cab");
    Carry(L"A", L"1000", L"1");
    Carry(L"New", L"1001", L"4");
    EXPECT_EQ(Find(), "");
    EXPECT_EQ(m_carried, (CarriedFiles{{L"A", L"Patch.cab"}, {L"New", L"Patch.cab"}}));
}

TEST_F(MergedFiles, AreNotThoseThatAnEarlierBuildAdded)
{
    const CString user = L"TARN_7C1E0000_2B5D_4E0C_9D41_3A6F00000000";
    for (DatabaseSnapshot* database : {&m_steps.before, &m_steps.changed, &m_steps.sourced}) {
        SetFile(*database, user, L"0", L"1500");
        SetMedium(*database, L"9", L"1500", L"TARN0001.cab");
    }
    SetMedium(m_steps.sourced, L"3", L"1000", L"#Patch.cab");
    Carry(L"A", L"1000", L"1");
    EXPECT_EQ(Find(), "") << "the numbers of added files are given anew";
    EXPECT_EQ(m_carried.size(), 1u);
}

TEST_F(MergedFiles, MustBeCarriedWhenTheirContentChanges)
{
    SetFile(m_steps.changed, L"A", L"16384", L"1", L"11");
    SetFile(m_steps.sourced, L"A", L"16384", L"1", L"11");
    EXPECT_EQ(Find(), "changes the file \"A\" and doesn't hold it");
}

TEST_F(MergedFiles, NeedNotBeCarriedWhenTheirNumberAloneChanges)
{
    SetFile(m_steps.changed, L"A", L"0", L"9");
    SetFile(m_steps.sourced, L"A", L"0", L"9");
    EXPECT_EQ(Find(), "");
    EXPECT_TRUE(m_carried.empty());
}

TEST_F(MergedFiles, AreRefusedOnTheProductsOwnMedia)
{
    Carry(L"A", L"2", L"1");
    EXPECT_EQ(Find(), "numbers the file \"A\" as if it lay on the product's own media");
    SetMedium(m_steps.sourced, L"2", L"1000", L"#Patch.cab");
    EXPECT_EQ(Find(), "uses the medium 2, which the product has");
}

TEST_F(MergedFiles, AreRefusedOutsideOfThePatch)
{
    SetMedium(m_steps.sourced, L"3", L"1000", L"beside.cab");
    Carry(L"A", L"1000", L"1");
    EXPECT_EQ(Find(), "doesn't hold the file \"A\" itself");
}

TEST_F(MergedFiles, AreRefusedWithoutARowInTheProduct)
{
    SetMedium(m_steps.sourced, L"3", L"1000", L"#Patch.cab");
    SetFile(m_steps.sourced, L"New", L"20480", L"1000");
    EXPECT_EQ(Find(), "brings the file \"New\" without a place in the product");
}

TEST_F(MergedFiles, AreRefusedAsDifferencesOfBytes)
{
    m_steps.sourced[L"Patch"] = {{L"File_", L"Sequence"}, {L"s72", L"i2"}, 2, {{{L"A", L"1"}, {L"A", L"1"}}}};
    EXPECT_EQ(Find(), "holds only the differing bytes of the file \"A\", not the whole file");
    m_steps.changed[L"Patch"] = m_steps.sourced[L"Patch"];
    EXPECT_EQ(Find(), "") << "the product's own";
}

TEST_F(MergedFiles, HaveNamesThatAFolderCanContain)
{
    SetMedium(m_steps.sourced, L"3", L"1000", L"#Patch.cab");
    for (const wchar_t* name : {L"..\\a.txt", L"a/b", L"C:a", L"..", L"A~1|..", L"nul", L"a."}) {
        Carry(L"New", L"1000", L"4", name);
        EXPECT_NE(Find(), "") << Utf8(name);
    }
    for (const wchar_t* name : {L"a.txt", L"A~1.TXT|a long name.txt"}) {
        Carry(L"New", L"1000", L"4", name);
        EXPECT_EQ(Find(), "") << Utf8(name);
    }
}

TEST_F(MergedFiles, HaveFoldersThatAFolderCanContain)
{
    for (const wchar_t* name : {L"..", L"A|..\\b", L".:..", L"a\\b"}) {
        m_steps.changed[L"Directory"].rows[{L"D"}] = {L"D", name};
        EXPECT_NE(Find(), "") << Utf8(name);
    }
    for (const wchar_t* name :
         {L".", L"Support", L"SUP~1|Support Files", L"SUP~1|Support:SRC|Source", L".:SRC"}) {
        m_steps.changed[L"Directory"].rows[{L"D"}] = {L"D", name};
        EXPECT_EQ(Find(), "") << Utf8(name);
    }
}

TEST_F(MergedFiles, KeepTheirNumberAndPlace)
{
    SetFile(m_steps.changed, L"A", L"8705", L"77", L"11"); // 512: vital; 1: read-only
    EXPECT_EQ(Merge(), "");
    EXPECT_EQ(PlaceOf(m_product, L"A"), "16897 1");
}

TEST_F(MergedFiles, AreNumberedBehindAllOthersOnTheLastMedium)
{
    SetFile(m_steps.changed, L"New1", L"8192", L"9");
    SetFile(m_steps.changed, L"New2", L"0", L"8");
    EXPECT_EQ(Merge(), "");
    EXPECT_EQ(PlaceOf(m_product, L"New2"), "16384 4") << "in the order of the patch's numbers";
    EXPECT_EQ(PlaceOf(m_product, L"New1"), "16384 5");
    EXPECT_EQ(EndOf(m_product, L"2"), "5");
    EXPECT_EQ(EndOf(m_product, L"1"), "2");
}

TEST_F(MergedFiles, LeaveReservedNumbersOfTheLastMedium)
{
    SetMedium(m_product, L"2", L"500", L"two.cab");
    SetFile(m_steps.changed, L"New", L"0", L"9");
    EXPECT_EQ(Merge(), "");
    EXPECT_EQ(PlaceOf(m_product, L"New"), "16384 4");
    EXPECT_EQ(EndOf(m_product, L"2"), "500");
}

TEST_F(MergedFiles, LieLooseWhereTheProductsLastFileDoes)
{
    SetFile(m_product, L"C", L"8192", L"3");
    SetMedium(m_product, L"2", L"3", L"");
    SetFile(m_steps.changed, L"New", L"16384", L"9");
    EXPECT_EQ(Merge(), "");
    EXPECT_EQ(PlaceOf(m_product, L"New"), "8192 4");
}

TEST_F(MergedFiles, AreRefusedWhereNoNumberIsLeft)
{
    SetFile(m_product, L"C", L"16384", L"32767");
    SetMedium(m_product, L"2", L"32767", L"two.cab");
    SetFile(m_steps.changed, L"New", L"0", L"9");
    EXPECT_EQ(Merge(), "adds files, and the product's database can number 32767 files at most");
}

TEST_F(MergedFiles, AreRefusedWithoutAMedium)
{
    m_product[L"Media"].rows.clear();
    SetFile(m_steps.changed, L"New", L"0", L"9");
    EXPECT_EQ(Merge(), "adds files, and the product has no medium for them");
}

TEST_F(MergedFiles, LeaveTheProductsOwnMedia)
{
    SetMedium(m_steps.changed, L"1", L"900", L"other.cab");
    SetMedium(m_steps.changed, L"7", L"999", L"more.cab");
    EXPECT_EQ(Merge(), "");
    EXPECT_EQ(EndOf(m_product, L"1"), "2");
    EXPECT_EQ(m_product[L"Media"].rows.size(), 2u);
}

TEST_F(MergedFiles, HaveTheCabinetsThatHoldThemMadeAnew)
{
    EXPECT_EQ(Cabinets({}), "");
    EXPECT_EQ(Cabinets({L"B"}), "one.cab: A B; ");
    EXPECT_EQ(Cabinets({L"A", L"C"}), "one.cab: A B; two.cab: C; ");
    SetFile(m_product, L"A", L"8192", L"1");
    EXPECT_EQ(Cabinets({L"A"}), "") << "a loose one";
}

TEST_F(MergedFiles, ThatGoHaveTheirCabinetMadeAnew)
{
    m_product[L"File"].rows.erase({L"A"});
    EXPECT_EQ(FindRemovedFiles(m_steps.before, m_product), std::set<CString>{L"A"});
    EXPECT_EQ(Cabinets({}, {L"A"}), "one.cab: B; ");
}

TEST_F(MergedFiles, OfAnAdministrativeImageLieInNoCabinet)
{
    m_layout.bAdminImage = true;
    EXPECT_EQ(Cabinets({L"A"}), "");
    EXPECT_EQ(PlaceInPackage(m_product, m_layout, L"A"), SourcePlace::Folders);
}
