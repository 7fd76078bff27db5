// The values that travel in a record: every character and every length comes back as it went in.
#include "installer/query.h"
#include "msi/msi_property.h"
#include "msi/msi_rows.h"
#include "tests/installer/database_fixture.h"
#include "tests/msi/row_statement_table.h"

#include <algorithm>
#include <type_traits>

namespace {

// Every UTF-16 unit but zero, in order: half surrogates stand beside each other, and so each is alone but one pair.
CString EveryUnit()
{
    CString text;
    for (int unit = 1; unit <= 0xFFFF; ++unit) {
        text += static_cast<wchar_t>(unit);
    }
    return text;
}

// The halves the other way round and with letters between them, so that none belongs to a pair.
CString LoneSurrogates()
{
    CString text;
    for (int unit = 0xDFFF; unit >= 0xD800; --unit) {
        text += static_cast<wchar_t>(unit);
        text += L'x';
    }
    return text;
}

enum class Empty
{
    Allowed,
    Refused,
    AsTheServiceSays,
};

struct BoundColumn
{
    const char* name;
    Empty empty;
    const wchar_t* query; // of the value
    bool (*write)(InstallerHandle database, const CString& value);
    CString (*stored)(const CString& value); // what the table must hold
};

CString AsGiven(const CString& value)
{
    return value;
}

CString Twice(const CString& value)
{
    return value + L"|" + value;
}

// The sample of the table with the value in its bound column.
template <class Data, const auto& SAMPLE, auto BOUND>
bool Write(InstallerHandle database, MsiRowAction action, const CString& value)
{
    Data row;
    static_cast<std::remove_cvref_t<decltype(SAMPLE)>&>(row) = SAMPLE;
    row.*BOUND = value;
    row.m_action = action;
    return row.Execute(database);
}

template <class Data, const auto& SAMPLE, auto BOUND>
bool Insert(InstallerHandle database, const CString& value)
{
    return Write<Data, SAMPLE, BOUND>(database, MsiRowAction::Insert, value);
}

template <class Data, const auto& SAMPLE, auto BOUND>
bool Update(InstallerHandle database, const CString& value)
{
    return Write<Data, SAMPLE, BOUND>(database, MsiRowAction::Insert, L"before") &&
           Write<Data, SAMPLE, BOUND>(database, MsiRowAction::Update, value);
}

bool InsertProperty(InstallerHandle database, const CString& value)
{
    return WriteProperty(database, L"NAME", value);
}

const BoundColumn COLUMNS[] = {
    {"InsertOfDefaultDir", Empty::Refused, L"SELECT `DefaultDir` FROM `Directory`",
     Insert<DirectoryData, DIRECTORY, &DirectoryData::DefaultDir>, AsGiven},
    {"UpdateOfDefaultDir", Empty::AsTheServiceSays, L"SELECT `DefaultDir` FROM `Directory`",
     Update<DirectoryData, DIRECTORY, &DirectoryData::DefaultDir>, AsGiven},
    {"InsertOfFileName", Empty::Refused, L"SELECT `FileName` FROM `File`",
     Insert<FileData, USER_FILE, &FileData::FileName>, AsGiven},
    {"InsertOfSourceFileName", Empty::Allowed, L"SELECT `SourceFileName` FROM `TarnCustomFile`",
     Insert<CustomFileData, CUSTOM_FILE, &CustomFileData::SourceFileName>, AsGiven},
    {"UpdateOfSourceFileName", Empty::Allowed, L"SELECT `SourceFileName` FROM `TarnCustomFile`",
     Update<CustomFileData, CUSTOM_FILE, &CustomFileData::SourceFileName>, AsGiven},
    {"InsertOfShortcutName", Empty::Allowed, L"SELECT `Name` FROM `Shortcut`",
     Insert<ShortcutData, SHORTCUT, &ShortcutData::Name>, Twice},
    {"UpdateOfShortcutName", Empty::Allowed, L"SELECT `Name` FROM `Shortcut`",
     Update<ShortcutData, SHORTCUT, &ShortcutData::Name>, Twice},
    {"WriteOfAPropertyValue", Empty::Refused, L"SELECT `Value` FROM `Property`", InsertProperty, AsGiven},
};

void PrintTo(const BoundColumn& column, std::ostream* stream)
{
    *stream << column.name;
}

class BoundValueTest : public DatabaseTest, public testing::WithParamInterface<BoundColumn>
{
protected:
    void ExpectKept(const CString& value)
    {
        ASSERT_TRUE(GetParam().write(Database(), value));
        const Rows rows = Select(GetParam().query);
        ASSERT_EQ(rows.size(), 1u);
        const CString expected = GetParam().stored(value);
        const CString& stored = rows[0][0];
        ASSERT_EQ(stored.GetLength(), expected.GetLength());
        for (int index = 0; index < expected.GetLength(); ++index) {
            ASSERT_EQ(static_cast<int>(stored[index]), static_cast<int>(expected[index]))
                << "unit " << index << " of " << expected.GetLength();
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Columns, BoundValueTest, testing::ValuesIn(COLUMNS),
                         [](const auto& information) { return std::string(information.param.name); });

} // namespace

TEST_P(BoundValueTest, EveryUnitFrom1To65535ReadsBackEqual)
{
    ExpectKept(EveryUnit());
}

TEST_P(BoundValueTest, LoneSurrogatesReadBackEqual)
{
    ExpectKept(LoneSurrogates());
}

TEST_P(BoundValueTest, AValueOfOneCharacterReadsBackEqual)
{
    ExpectKept(L"x");
}

TEST_P(BoundValueTest, AValueOf255CharactersReadsBackEqual)
{
    ExpectKept(CString(L'x', 255));
}

TEST_P(BoundValueTest, AValueOf1023CharactersReadsBackEqual)
{
    ExpectKept(CString(L'x', 1023));
}

TEST_P(BoundValueTest, AValueOf1024CharactersReadsBackEqual)
{
    ExpectKept(CString(L'x', 1024));
}

TEST_P(BoundValueTest, AValueOf1025CharactersReadsBackEqual)
{
    ExpectKept(CString(L'x', 1025));
}

TEST_P(BoundValueTest, AValueOf70000CharactersReadsBackEqual)
{
    ExpectKept(CString(L'x', 70000));
}

// An empty text is null to the service, which a column may forbid. The service of Wine lets an update do it.
TEST_P(BoundValueTest, AnEmptyValueIsRefusedExactlyWhereTheColumnMustHaveOne)
{
    bool allowed = GetParam().empty == Empty::Allowed;
    if (GetParam().empty == Empty::AsTheServiceSays) {
        Run(L"INSERT INTO `Directory` (`Directory`,`DefaultDir`) VALUES ('bare','before')");
        allowed =
            RunStatement(Database(), L"UPDATE `Directory` SET `DefaultDir`='' WHERE `Directory`='bare'") == 0;
    }
    EXPECT_EQ(GetParam().write(Database(), CString()), allowed);
}

// ---- values that stand in the statement ----------------------------------------------------------------------------

namespace {

class InlineValueTest : public DatabaseTest, public testing::WithParamInterface<int>
{
};

INSTANTIATE_TEST_SUITE_P(Lengths, InlineValueTest, testing::Values(0, 1, 255, 1023, 1024, 1025, 70000));

} // namespace

TEST_P(InlineValueTest, ATextInTheStatementReadsBackEqual)
{
    const CString value(L'x', GetParam());
    CustomActionData row;
    row.Action = L"act";
    row.Target = value;
    ASSERT_TRUE(row.Execute(Database()));
    const Rows rows = Select(L"SELECT `Target` FROM `CustomAction`");
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_TRUE(rows[0][0] == (value.IsEmpty() ? NULL_VALUE : value)) << rows[0][0].GetLength();
}

// ---- what a file holds -----------------------------------------------------------------------------------------------

namespace {

// The open handle holds every unit; the file holds what the database's code page can write.
class CommittedValueTest : public DatabaseTest
{
protected:
    void UseUtf8()
    {
        const CTestFolder folder;
        WriteFileBytes(folder / L"codepage.idt", "\r\n\r\n65001\t_ForceCodepage\r\n");
        CString path = folder.GetPath();
        path = path.Left(path.GetLength() - 1);
        ASSERT_EQ(MsiDatabaseImportW(Database(), path, L"codepage.idt"), 0u);
    }
    CString AfterACommit(const CString& value)
    {
        EXPECT_TRUE(WriteProperty(Database(), L"NAME", value));
        ReopenReadOnly();
        const Rows rows = Select(L"SELECT `Value` FROM `Property`");
        return rows.size() == 1 ? rows[0][0] : CString(L"(no row)");
    }
};

CString EveryUnitOutsideSurrogates()
{
    CString text;
    for (int unit = 1; unit <= 0xFFFF; ++unit) {
        if (unit < 0xD800 || unit > 0xDFFF) {
            text += static_cast<wchar_t>(unit);
        }
    }
    return text;
}

} // namespace

TEST_F(CommittedValueTest, InUtf8EveryUnitOutsideSurrogatesIsInTheFile)
{
    UseUtf8();
    const CString value = EveryUnitOutsideSurrogates();
    EXPECT_TRUE(AfterACommit(value) == value);
}

TEST_F(CommittedValueTest, InUtf8APairOfSurrogatesIsInTheFile)
{
    UseUtf8();
    EXPECT_EQ(AfterACommit(L"a\U0001F600b"), CString(L"a\U0001F600b"));
}

TEST_F(CommittedValueTest, InUtf8ALoneSurrogateIsLostByTheCommit)
{
    UseUtf8();
    EXPECT_EQ(AfterACommit(L"a\xD800"
                           L"b\xDC00"
                           L"c"),
              CString(L"a\xFFFD"
                      L"b\xFFFD"
                      L"c"));
}
