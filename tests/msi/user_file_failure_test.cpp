// Additions, new names and removals that fail: what was written stays, and what follows isn't tried. A property of the
// product that isn't taken is no failure.
#include "tests/msi/user_file_fixture.h"
#include "tests/support/test_product.h"

// ---- refused updates ---------------------------------------------------------------------------------------------

TEST_F(UserFileTest, AnUpdateWithoutKeyOrNameIsRefused)
{
    for (const bool isDrive : {false, true}) {
        EXPECT_FALSE(writer.UpdateUserItem(L"INSTALLDIR", nullptr, L"name", isDrive));
        EXPECT_FALSE(writer.UpdateUserItem(L"INSTALLDIR", L"", L"name", isDrive));
        EXPECT_FALSE(writer.UpdateUserItem(L"INSTALLDIR", L"key", nullptr, isDrive));
        EXPECT_FALSE(writer.UpdateUserItem(L"INSTALLDIR", L"key", L"", isDrive));
    }
}

TEST_F(UserFileTest, AnUpdateOfAFolderWithoutAParentIsRefusedAndChangesNothing)
{
    const CString key = AddFolder(L"before");
    EXPECT_FALSE(writer.UpdateUserItem(nullptr, key, L"after", false));
    EXPECT_EQ(Select(L"SELECT * FROM `Directory` WHERE `Directory`='" + key + L"'"),
              (Rows{{key, L"INSTALLDIR", L"before"}}));
}

// The service takes an empty text for null, and a drive's directory then hangs on nothing.
TEST_F(UserFileTest, AnUpdateOfADriveWithoutAParentIsTakenAndClearsTheParent)
{
    const CString key = AddDrive(L"D:");
    EXPECT_TRUE(writer.UpdateUserItem(nullptr, key, L"E:", true));
    EXPECT_EQ(Select(L"SELECT * FROM `Directory` WHERE `Directory`='" + key + L"'"),
              (Rows{{key, NULL_VALUE, L"DRIVE_E"}}));
}

// ---- updates that stop half way ------------------------------------------------------------------------------------

TEST_F(UserFileTest, AnUpdateOfAFolderWithoutTarnCustomFileFailsAndKeepsTheNewDefaultDir)
{
    const CString key = AddFolder(L"before");
    Drop(L"TarnCustomFile");
    EXPECT_FALSE(writer.UpdateUserItem(L"INSTALLDIR", key, L"after", false));
    EXPECT_EQ(DefaultDirOf(key), CString(L"after"));
}

TEST_F(UserFileTest, AnUpdateOfAFolderWithoutDirectoryFailsAndKeepsTheOldSourceFileName)
{
    const CString key = AddFolder(L"before");
    Drop(L"Directory");
    EXPECT_FALSE(writer.UpdateUserItem(L"INSTALLDIR", key, L"after", false));
    EXPECT_EQ(Select(L"SELECT `SourceFileName` FROM `TarnCustomFile`"), (Rows{{L"before"}}));
}

TEST_F(UserFileTest, AnUpdateOfADriveWithoutCustomActionFailsAndKeepsTheOldPropertyBesideTheNewDefaultDir)
{
    const CString key = AddDrive(L"D:");
    Drop(L"CustomAction");
    EXPECT_FALSE(writer.UpdateUserItem(L"TARGETDIR", key, L"E:", true));
    EXPECT_EQ(ReadProperty(Database(), key + L"_SUBST"), CString(L"D:"));
    EXPECT_EQ(DefaultDirOf(key), CString(L"DRIVE_E"));
}

TEST_F(UserFileTest, AnUpdateOfADriveWithoutDirectoryFailsAndKeepsTheOldActionAndProperty)
{
    const CString key = AddDrive(L"D:");
    Drop(L"Directory");
    EXPECT_FALSE(writer.UpdateUserItem(L"TARGETDIR", key, L"E:", true));
    EXPECT_EQ(Select(L"SELECT `Target` FROM `CustomAction`"), (Rows{{L"D:"}}));
    EXPECT_EQ(ReadProperty(Database(), key + L"_SUBST"), CString(L"D:"));
}

// ---- a product that doesn't take a drive's property ----------------------------------------------------------------

TEST_F(UserFileTest, ADriveIsAddedChangedAndRemovedWithoutATableOfProperties)
{
    Drop(L"Property");
    ASSERT_FALSE(product->SetMsiProperty(L"A", L"1", false));
    const CString key = AddDrive(L"D:");
    EXPECT_EQ(FilledTables(), CString(L"Directory CustomAction InstallExecuteSequence "));
    EXPECT_TRUE(writer.UpdateUserItem(L"TARGETDIR", key, L"E:", true));
    EXPECT_EQ(Select(L"SELECT `Target` FROM `CustomAction`"), (Rows{{L"E:"}}));
    EXPECT_TRUE(writer.RemoveUserDrive(key));
    EXPECT_EQ(FilledTables(), CString());
}

namespace {

using Calls = std::vector<CString>;

// The rows go to the real database, the properties to a product that notes each call and answers as the test says.
class DrivePropertyTest : public UserFileTest, public testing::WithParamInterface<bool>
{
protected:
    void SetUp() override
    {
        UserFileTest::SetUp();
        recorded.setMsiPropertyAnswer = GetParam();
        writer.Product = &recorded;
    }

    CallLog log;
    TestProduct recorded{log};
};

INSTANTIATE_TEST_SUITE_P(CAnswers, DrivePropertyTest, testing::Bool(), [](const auto& information) {
    return std::string(information.param ? "Taken" : "Refused");
});

CString Setting(const CString& name, const wchar_t* value)
{
    return L"Product.SetMsiProperty(" + name + L", \"" + value + L"\", false)";
}

} // namespace

TEST_P(DrivePropertyTest, AddingSetsTheOneOfTheSubstituteAndSucceeds)
{
    const CString key = AddDrive(L"d:");
    EXPECT_EQ(log.All(), Calls({Setting(key + L"_SUBST", L"D:")}));
}

TEST_P(DrivePropertyTest, AnotherLetterSetsTheOneOfTheSubstituteAndSucceeds)
{
    const CString key = AddDrive(L"D:");
    log.Clear();
    EXPECT_TRUE(writer.UpdateUserItem(L"TARGETDIR", key, L"e:", true));
    EXPECT_EQ(log.All(), Calls({Setting(key + L"_SUBST", L"e:")}));
}

TEST_P(DrivePropertyTest, RemovingClearsTheOneOfTheKeyThenTheOneOfTheSubstituteAndSucceeds)
{
    const CString key = AddDrive(L"D:");
    log.Clear();
    EXPECT_TRUE(writer.RemoveUserDrive(key));
    EXPECT_EQ(log.All(), Calls({Setting(key, L""), Setting(key + L"_SUBST", L"")}));
}

// ---- stops half way: what was written stays, and what follows isn't tried -----------------------------------------

namespace {

struct Stop
{
    const wchar_t* missingTable;
    const wchar_t* written;
};

class AddFileStopTest : public UserFileTest, public testing::WithParamInterface<Stop>
{
};
class AddFolderStopTest : public UserFileTest, public testing::WithParamInterface<Stop>
{
};
class AddDriveStopTest : public UserFileTest, public testing::WithParamInterface<Stop>
{
};
class RemoveFileStopTest : public UserFileTest, public testing::WithParamInterface<Stop>
{
};
class RemoveFolderStopTest : public UserFileTest, public testing::WithParamInterface<Stop>
{
};
class RemoveDriveStopTest : public UserFileTest, public testing::WithParamInterface<Stop>
{
};

std::string StopName(const testing::TestParamInfo<Stop>& information)
{
    return "Without" + Utf8(information.param.missingTable);
}

void PrintTo(const Stop& stop, std::ostream* stream)
{
    *stream << "without " << Utf8(stop.missingTable);
}

INSTANTIATE_TEST_SUITE_P(Tables, AddFileStopTest,
                         testing::Values(Stop{L"File", L""}, Stop{L"Component", L"File "},
                                         Stop{L"FeatureComponents", L"File Component "},
                                         Stop{L"CreateFolder", L"File Component FeatureComponents "},
                                         Stop{L"TarnCustomFile",
                                              L"File Component FeatureComponents CreateFolder "}),
                         StopName);
INSTANTIATE_TEST_SUITE_P(Tables, AddFolderStopTest,
                         testing::Values(Stop{L"Directory", L""}, Stop{L"Component", L"Directory "},
                                         Stop{L"FeatureComponents", L"Directory Component "},
                                         Stop{L"CreateFolder", L"Directory Component FeatureComponents "},
                                         Stop{L"TarnCustomFile",
                                              L"Directory Component FeatureComponents CreateFolder "}),
                         StopName);
INSTANTIATE_TEST_SUITE_P(Tables, AddDriveStopTest,
                         testing::Values(Stop{L"Directory", L""}, Stop{L"CustomAction", L"Directory "},
                                         Stop{L"InstallExecuteSequence", L"Directory CustomAction "}),
                         StopName);
INSTANTIATE_TEST_SUITE_P(
    Tables, RemoveFileStopTest,
    testing::Values(Stop{L"File", L"Component FeatureComponents CreateFolder TarnCustomFile "},
                    Stop{L"Component", L"FeatureComponents CreateFolder TarnCustomFile "},
                    Stop{L"FeatureComponents", L"CreateFolder TarnCustomFile "},
                    Stop{L"CreateFolder", L"TarnCustomFile "}, Stop{L"TarnCustomFile", L""}),
    StopName);
INSTANTIATE_TEST_SUITE_P(
    Tables, RemoveFolderStopTest,
    testing::Values(Stop{L"Directory", L"Component FeatureComponents CreateFolder TarnCustomFile "},
                    Stop{L"Component", L"FeatureComponents CreateFolder TarnCustomFile "},
                    Stop{L"FeatureComponents", L"CreateFolder TarnCustomFile "},
                    Stop{L"CreateFolder", L"TarnCustomFile "}, Stop{L"TarnCustomFile", L""}),
    StopName);
INSTANTIATE_TEST_SUITE_P(Tables, RemoveDriveStopTest,
                         testing::Values(Stop{L"Directory", L"CustomAction InstallExecuteSequence "},
                                         Stop{L"CustomAction", L"InstallExecuteSequence "},
                                         Stop{L"InstallExecuteSequence", L""}),
                         StopName);

} // namespace

TEST_P(AddFileStopTest, TheRowsBeforeAMissingTableStay)
{
    Drop(GetParam().missingTable);
    CString key;
    EXPECT_FALSE(writer.AddUserFile(Source(L"a.txt"), L"INSTALLDIR", key));
    EXPECT_EQ(FilledTables(), CString(GetParam().written));
}

TEST_P(AddFolderStopTest, TheRowsBeforeAMissingTableStay)
{
    Drop(GetParam().missingTable);
    CString key;
    EXPECT_FALSE(writer.AddUserFolder(L"folder", L"INSTALLDIR", key));
    EXPECT_EQ(FilledTables(), CString(GetParam().written));
}

TEST_P(AddDriveStopTest, TheRowsBeforeAMissingTableStayAndThePropertyIsNotSet)
{
    Drop(GetParam().missingTable);
    CString key;
    EXPECT_FALSE(writer.AddUserDrive(L"D:", key));
    EXPECT_EQ(FilledTables(), CString(GetParam().written));
    EXPECT_EQ(ReadProperty(Database(), key + L"_SUBST"), CString());
}

TEST_P(RemoveFileStopTest, TheRowsBehindAMissingTableStay)
{
    const CString key = AddFile(L"a.txt");
    Drop(GetParam().missingTable);
    EXPECT_FALSE(writer.RemoveUserFile(L"INSTALLDIR", key));
    EXPECT_EQ(FilledTables(), CString(GetParam().written));
}

TEST_P(RemoveFolderStopTest, TheRowsBehindAMissingTableStay)
{
    const CString key = AddFolder(L"folder");
    Drop(GetParam().missingTable);
    EXPECT_FALSE(writer.RemoveUserFolder(key));
    EXPECT_EQ(FilledTables(), CString(GetParam().written));
}

TEST_P(RemoveDriveStopTest, TheRowsBehindAMissingTableStayAndThePropertyToo)
{
    const CString key = AddDrive(L"D:");
    Drop(GetParam().missingTable);
    EXPECT_FALSE(writer.RemoveUserDrive(key));
    EXPECT_EQ(FilledTables(), CString(GetParam().written));
    EXPECT_EQ(ReadProperty(Database(), key + L"_SUBST"), CString(L"D:"));
}
