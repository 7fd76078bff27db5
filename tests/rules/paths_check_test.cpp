// The checks of a text that was typed into a node of the paths' tree, row by row.
#include "paths/path_check_rules.h"
#include "paths/path_table.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <utility>

void PrintTo(PathVerdict verdict, std::ostream* stream)
{
    const char* const names[] = {"good", "bad folder", "bad file", "UNC", "missing"};
    *stream << names[static_cast<int>(verdict)];
}

namespace {

class Disk final : public IPathProbe
{
public:
    bool IsDirectory(const CString&) const override
    {
        ++questions;
        return isDirectory;
    }
    bool Exists(const CString&) const override
    {
        ++questions;
        return exists;
    }
    bool isDirectory = false;
    bool exists = false;
    mutable int questions = 0;
};

CPathResolver Resolver()
{
    DirectoryMap rows;
    auto row = std::make_unique<TarnDirectoryMapColumns>();
    row->Directory_ = L"FONTSDIR";
    row->LocalString = L"<Fonts root>";
    row->Flags = 2;
    rows[L"FONTSDIR"] = std::move(row);
    return CPathResolver(std::move(rows));
}

class PathCheck : public testing::Test
{
protected:
    PathVerdict Judge(const CString& text, std::uint32_t flags, bool isSupportEntry = false)
    {
        return JudgePath(text, flags, isSupportEntry, m_resolver, disk);
    }
    void WithDisk(bool isDirectory, bool exists)
    {
        disk.isDirectory = isDirectory;
        disk.exists = exists;
    }

    Disk disk;

private:
    CPathResolver m_resolver = Resolver();
};

constexpr const wchar_t* ANCHORED_GOOD[] = {
    L"C:\\no\\such",       L"c:", L"C:", L"<Fonts root>", L"<Fonts root>\\a", L"<Fonts root>a",
    L"<Fonts root>\\C:\\a"};
constexpr const wchar_t* ANCHORED_BAD[] = {L"C:\\a*b",  L"C:\\a:b",          L"C:\\a\\\\b",
                                           L"C:\\ \\b", L"<Fonts root>\\a?", L"<Fonts root>\\a\\\\b"};

} // namespace

TEST_F(PathCheck, AnAnchoredPathIsJudgedByItsFormWithoutAskingTheDisk)
{
    for (const std::uint32_t flags :
         {PATH_FLAGS_FOLDER, PATH_FLAGS_LIST_ENTRY, PATH_FLAGS_FILE, PATH_FLAGS_FILE | PNF_NO_EXIST_CHECK}) {
        for (const bool isSupportEntry : {false, flags == PATH_FLAGS_LIST_ENTRY}) {
            for (const wchar_t* text : ANCHORED_GOOD) {
                EXPECT_EQ(Judge(text, flags, isSupportEntry), PathVerdict::Good) << Utf8(text);
            }
            for (const wchar_t* text : ANCHORED_BAD) {
                EXPECT_EQ(Judge(text, flags, isSupportEntry), PathVerdict::BadFolder) << Utf8(text);
            }
        }
    }
    EXPECT_EQ(disk.questions, 0);
}

TEST_F(PathCheck, AFolderWithoutAnAnchorMustBeADirectoryThatExists)
{
    for (const bool isSupportEntry : {false, true}) {
        WithDisk(false, false);
        EXPECT_EQ(Judge(L"\\\\server\\share\\no", PATH_FLAGS_LIST_ENTRY, isSupportEntry),
                  PathVerdict::BadFolder);
        WithDisk(false, true); // a file
        EXPECT_EQ(Judge(L"relative", PATH_FLAGS_LIST_ENTRY, isSupportEntry), PathVerdict::BadFolder);
        WithDisk(true, true);
        EXPECT_EQ(Judge(L"relative", PATH_FLAGS_LIST_ENTRY, isSupportEntry), PathVerdict::Good);
        WithDisk(true, false);
        EXPECT_EQ(Judge(L"relative", PATH_FLAGS_LIST_ENTRY, isSupportEntry), PathVerdict::Missing);
    }
}

TEST_F(PathCheck, AFolderWithoutAnAnchorMustBeValidUnlessItIsASupportFolder)
{
    WithDisk(true, true);
    EXPECT_EQ(Judge(L"a*b", PATH_FLAGS_FOLDER), PathVerdict::BadFolder);
    EXPECT_EQ(Judge(L"a*b", PATH_FLAGS_LIST_ENTRY), PathVerdict::BadFolder);
    EXPECT_EQ(disk.questions, 0);
    EXPECT_EQ(Judge(L"a*b", PATH_FLAGS_LIST_ENTRY, true), PathVerdict::Good);
}

TEST_F(PathCheck, AnAddressMustNotBeginWithAServerAndIsNotHeldAgainstAnythingElse)
{
    const std::uint32_t flags = PATH_FLAGS_FOLDER | PNF_URL;
    EXPECT_EQ(Judge(L"\\\\server\\share", flags), PathVerdict::Unc);
    for (const wchar_t* text : {L"file://server\\share", L"C:\\a*b", L"a*b", L"//server"}) {
        EXPECT_EQ(Judge(text, flags), PathVerdict::Good) << Utf8(text);
    }
    EXPECT_EQ(disk.questions, 0);
    EXPECT_EQ(Judge(L"\\\\server\\share", PATH_FLAGS_LIST_ENTRY | PNF_URL, true), PathVerdict::BadFolder)
        << "the support list comes first";
}

TEST_F(PathCheck, AFileWithoutAnAnchorMustBeValidAndExist)
{
    EXPECT_EQ(Judge(L"a*b", PATH_FLAGS_FILE), PathVerdict::BadFile);
    EXPECT_EQ(Judge(L"\\\\server\\none.map", PATH_FLAGS_FILE), PathVerdict::Missing);
    WithDisk(false, true);
    EXPECT_EQ(Judge(L"there.map", PATH_FLAGS_FILE), PathVerdict::Good);
}

TEST_F(PathCheck, AFileThatNeedNotExistMustBeValidOnly)
{
    const std::uint32_t flags = PATH_FLAGS_FILE | PNF_NO_EXIST_CHECK;
    EXPECT_EQ(Judge(L"none.shx", flags), PathVerdict::Good);
    EXPECT_EQ(Judge(L"none?", flags), PathVerdict::BadFile);
    EXPECT_EQ(disk.questions, 0);
}

TEST_F(PathCheck, OnlySupportFoldersAreJudgedOneByOne)
{
    EXPECT_EQ(PathsToJudge(L"a; b;;c ", true), (std::vector<CString>{L"a", L"b", L"c"}));
    EXPECT_EQ(PathsToJudge(L"a;b", false), std::vector<CString>{L"a;b"});
    EXPECT_EQ(PathsToJudge(L" a ", true), std::vector<CString>{L" a "});
    EXPECT_EQ(PathsToJudge(L";", true), std::vector<CString>());
}
