#include "builder/build_names.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

TEST(BuildNames, RefusesWhatWindowsCannotHold)
{
    for (const wchar_t* name :
         {L"",    L".",       L"..",  L"a/b",    L"a\\b",      L"a:b",      L"a*",    L"a?",
          L"a\"", L"<a",      L"a>",  L"a|b",    L"a\tb",      L"a.",       L"a ",    L" a",
          L"CON", L"con.txt", L"Aux", L"lpt9.x", L"COM\x00B9", L"NUL .txt", L"CONIN$"}) {
        EXPECT_FALSE(RefusedName(name).IsEmpty()) << Utf8(name);
    }
    EXPECT_FALSE(RefusedName(CString(L'a', MAX_DEPLOYMENT_NAME + 1)).IsEmpty());
}

TEST(BuildNames, AcceptsOrdinaryAndOddNames)
{
    for (const wchar_t* name : {L"Office", L"Zolt 2027", L".a", L"a.b", L"COM", L"COM10", L"CONSOLE",
                                L"100% & ^!", L"\x65E5\x672C", L"lpt"}) {
        EXPECT_EQ(RefusedName(name), CString()) << Utf8(name);
    }
    EXPECT_TRUE(RefusedName(CString(L'a', MAX_DEPLOYMENT_NAME)).IsEmpty());
}

TEST(BuildNames, ALockFileNamesItsBuild)
{
    EXPECT_EQ(LockFileName(L"Office 1.0"), CString(L".Office 1.0.build-lock"));
    EXPECT_EQ(NameFromLockFile(L".Office 1.0.build-lock"), CString(L"Office 1.0"));
    EXPECT_EQ(NameFromLockFile(L"..build-lock"), CString());
    EXPECT_EQ(NameFromLockFile(L"Office.build-lock"), CString());
    EXPECT_EQ(StagingFolderName(L"Office", 0x1A2B3C4D), CString(L".Office.staging-1a2b3c4d"));
    EXPECT_EQ(OldFolderName(L"Office", 7), CString(L".Office.old-00000007"));
    const std::string text = Utf8(LockFileText(0x0A2B3C4D));
    std::uint32_t id = 0;
    EXPECT_EQ(ReadLockFileText(text.data(), text.size(), id), LockText::Complete);
    EXPECT_EQ(id, 0x0A2B3C4Du);
}

TEST(BuildNames, ALockFileCutOffIsStillOursAndAnythingElseIsNot)
{
    const std::string text = Utf8(LockFileText(0x12345678));
    std::uint32_t id = 0;
    for (std::size_t length = 0; length < 25; ++length) {
        EXPECT_EQ(ReadLockFileText(text.data(), length, id), LockText::Unfinished) << length;
    }
    for (const char* other :
         {"x", "Deployment build zzzzzzzz", "deployment build 12345678", "Deployment build 1234567G"}) {
        EXPECT_EQ(ReadLockFileText(other, std::string(other).size(), id), LockText::Foreign) << other;
    }
}

TEST(BuildNames, NoLeftoverIsThrownAwayWithoutASuccessor)
{
    EXPECT_EQ(JudgeLeftovers(true, true, false), LeftoverStep::Nothing);
    EXPECT_EQ(JudgeLeftovers(false, false, false), LeftoverStep::Nothing);
    EXPECT_EQ(JudgeLeftovers(false, true, true), LeftoverStep::PutOldBack);
    EXPECT_EQ(JudgeLeftovers(false, false, true), LeftoverStep::PutOldBack);
    EXPECT_EQ(JudgeLeftovers(true, false, true), LeftoverStep::DeleteOld);
    EXPECT_EQ(JudgeLeftovers(true, true, true), LeftoverStep::KeepOld);
}

TEST(BuildNames, NoDeploymentCanHaveTheNameOfABuildsOwnFile)
{
    for (const wchar_t* name : {L".Office.build-lock", L".OFFICE.BUILD-LOCK", L".Office.staging-0123abcd",
                                L".Office.old-0123ABCD", L".a.probe-00000000"}) {
        EXPECT_TRUE(IsWorkingName(name)) << Utf8(name);
        EXPECT_FALSE(RefusedName(name).IsEmpty()) << Utf8(name);
    }
    for (const wchar_t* name : {L"", L".", L"Office.build-lock", L".Office", L".Office.staging-0123abc",
                                L".Office.staging-0123abcg", L"Office.old-0123abcd", L".build-lock.txt",
                                L".Office.old\x0660"
                                L"0123abcd"}) {
        EXPECT_FALSE(IsWorkingName(name)) << Utf8(name);
    }
}

TEST(BuildNames, EachWorkingNameOfABuildIsKnownAsOne)
{
    EXPECT_TRUE(IsWorkingName(LockFileName(L"Office")));
    EXPECT_TRUE(IsWorkingName(StagingFolderName(L"Office", 0xFFFFFFFF)));
    EXPECT_TRUE(IsWorkingName(OldFolderName(L"Office", 0)));
    EXPECT_FALSE(IsWorkingName(FailedLogName(L"Office", 1)));
    EXPECT_FALSE(IsWorkingName(KeptFolderName(L".Office", L"now")));
}

TEST(BuildNames, AKeptFolderOfTheLongestNameIsStillAName)
{
    const CString name = KeptFolderName(CString(L'a', MAX_DEPLOYMENT_NAME), L"2026-11-21 22.30.15 123");
    EXPECT_LT(name.GetLength(), 256);
}
