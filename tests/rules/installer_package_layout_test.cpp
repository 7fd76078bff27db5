// Where the files of a package lie, by its word count and their attributes.
#include "installer/package_layout.h"
#include "msi/directory_rules.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

constexpr int UNMARKED = 0;
constexpr int NULL_INTEGER = static_cast<int>(0x80000000); // what the service answers for a null value
constexpr int LOOSE = 8192;
constexpr int PACKED = 16384;

class FewDirectories final : public IDirectorySource
{
public:
    const DirectoryColumns* FindDirectory(const CString& key) const override
    {
        static const DirectoryColumns rows[] = {
            {L"TARGETDIR", L"", L"SourceDir"},
            {L"Programs", L"TARGETDIR", L"."},
            {L"INSTALLDIR", L"Programs", L"MAKERT~1|Maker Test:SRC|Source Files"},
            {L"Flat", L"INSTALLDIR", L"FLAT|Flat Target:."},
            {L"Support", L"Flat", L"SUPPOR~1|Support Files"},
            {L"Bare", L"Support", L"Bare"},
        };
        for (const DirectoryColumns& row : rows) {
            if (row.Directory == key) {
                return &row;
            }
        }
        return nullptr;
    }
    CString GetSettledPath(const CString&) const override { return CString(); }
};

} // namespace

TEST(PackageLayoutTest, AFileOfOriginalMediaLiesWhereItsRowSaysAndElseWhereTheWordCountDoes)
{
    for (const int longOrShort : {0, 1}) {
        EXPECT_EQ(PlaceOfFile(LayoutOf(0 + longOrShort), UNMARKED), SourcePlace::Folders);
        EXPECT_EQ(PlaceOfFile(LayoutOf(0 + longOrShort), NULL_INTEGER), SourcePlace::Folders);
        EXPECT_EQ(PlaceOfFile(LayoutOf(0 + longOrShort), LOOSE), SourcePlace::Folders);
        EXPECT_EQ(PlaceOfFile(LayoutOf(0 + longOrShort), PACKED), SourcePlace::Cabinet);
        EXPECT_EQ(PlaceOfFile(LayoutOf(2 + longOrShort), UNMARKED), SourcePlace::Cabinet);
        EXPECT_EQ(PlaceOfFile(LayoutOf(2 + longOrShort), NULL_INTEGER), SourcePlace::Cabinet);
        EXPECT_EQ(PlaceOfFile(LayoutOf(2 + longOrShort), LOOSE), SourcePlace::Root);
        EXPECT_EQ(PlaceOfFile(LayoutOf(2 + longOrShort), PACKED), SourcePlace::Cabinet);
    }
}

TEST(PackageLayoutTest, AnImagesRowsAreNotAsked)
{
    for (const int attributes : {UNMARKED, NULL_INTEGER, LOOSE, PACKED}) {
        for (const int longOrShort : {0, 1}) {
            EXPECT_EQ(PlaceOfFile(LayoutOf(4 + longOrShort), attributes), SourcePlace::Folders);
            EXPECT_EQ(PlaceOfFile(LayoutOf(6 + longOrShort), attributes), SourcePlace::Cabinet);
        }
    }
}

TEST(PackageLayoutTest, OtherBitsOfTheWordCountAndOfTheAttributesChangeNothing)
{
    EXPECT_EQ(PlaceOfFile(LayoutOf(8), 512), SourcePlace::Folders);
    EXPECT_EQ(PlaceOfFile(LayoutOf(10), 512), SourcePlace::Cabinet);
    EXPECT_EQ(PlaceOfFile(LayoutOf(12), PACKED | 512), SourcePlace::Folders);
}

TEST(PackageLayoutTest, OnlyAnImageThatIsCompressedIsUnclear)
{
    for (int words = 0; words < 8; ++words) {
        EXPECT_EQ(LayoutOf(words).IsLaidOut(), words == 4 || words == 5) << words;
        EXPECT_EQ(LayoutOf(words).IsUnclear(), words == 6 || words == 7) << words;
    }
}

TEST(PackageLayoutTest, ANameIsTheShortOneOnlyWhereThePackageSaysSo)
{
    EXPECT_EQ(SourceName(L"PLAINF~1.TXT|plain file.txt", LayoutOf(0)), CString(L"plain file.txt"));
    EXPECT_EQ(SourceName(L"PLAINF~1.TXT|plain file.txt", LayoutOf(1)), CString(L"PLAINF~1.TXT"));
    EXPECT_EQ(SourceName(L"plain.txt", LayoutOf(0)), CString(L"plain.txt"));
    EXPECT_EQ(SourceName(L"plain.txt", LayoutOf(1)), CString(L"plain.txt"));
}

TEST(PackageLayoutTest, FoldersBearTheSourcesNamesShortOrLong)
{
    const FewDirectories directories;
    EXPECT_EQ(ResolveSourcePath(directories, L"Bare", L"D:\\m\\", LayoutOf(0)),
              CString(L"D:\\m\\Source Files\\Support Files\\Bare\\"));
    EXPECT_EQ(ResolveSourcePath(directories, L"Bare", L"D:\\m\\", LayoutOf(5)),
              CString(L"D:\\m\\SRC\\SUPPOR~1\\Bare\\"));
    for (const int words : {2, 3, 6, 7}) {
        EXPECT_EQ(ResolveSourcePath(directories, L"Bare", L"D:\\m\\", LayoutOf(words)), CString(L"D:\\m\\"));
    }
    EXPECT_EQ(ResolveTargetPath(directories, L"Bare"), CString()); // its root is settled nowhere
    EXPECT_EQ(TargetFolderName(L"MAKERT~1|Maker Test:SRC|Source Files"), CString(L"Maker Test"));
}
