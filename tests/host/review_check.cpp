#include "tests/host/review_check.h"

#include "base/number_text.h"
#include "builder/build_names.h"
#include "builder/file_operations.h"
#include "builder/manifest_text.h"
#include "builder/shown_text.h"
#include "builder/user_files.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>

namespace {

std::string BytesOf(const CString& path)
{
    const CFileOwner file(
        CreateFileW(UnlimitedPath(path), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(file) << Utf8(path) << ": " << GetLastError();
    std::string bytes;
    std::string chunk(1 << 16, '\0');
    DWORD count = 0;
    while (file && ReadFile(file.get(), chunk.data(), static_cast<DWORD>(chunk.size()), &count, nullptr) &&
           count > 0) {
        bytes.append(chunk, 0, count);
    }
    return bytes;
}

bool IsThere(const CString& path)
{
    return GetFileAttributesW(UnlimitedPath(path)) != INVALID_FILE_ATTRIBUTES;
}

// What Changes.json says of one database.
struct ReportedDatabase
{
    CString strOldPackageCode;
    CString strNewPackageCode;
    bool bSignatureLost = false;
    std::map<CString, TableReview> tables;
};

class CChangesReader
{
public:
    explicit CChangesReader(const std::string& json) : m_text(TextFromUtf8(json.data(), json.size())) {}

    std::map<CString, ReportedDatabase> Read()
    {
        std::map<CString, ReportedDatabase> databases;
        ReportedDatabase* current = nullptr;
        for (int start = 0; start < m_text.GetLength();) {
            int end = m_text.Find(L"\r\n", start);
            end = end < 0 ? m_text.GetLength() : end;
            m_line = m_text.Mid(start, end - start);
            start = end + 2;
            if (m_line.Left(13) == L"    {\"file\": ") {
                current = &databases[Value(L"file")];
                current->strOldPackageCode = Value(L"oldPackageCode");
                current->strNewPackageCode = Value(L"newPackageCode");
                current->bSignatureLost = m_line.Find(L"\"signatureLost\": true") >= 0;
            } else if (current && m_line.Left(16) == L"      {\"table\": ") {
                TableReview& table = current->tables[Value(L"table")];
                const CString change = Value(L"change");
                ++(change == L"added" ? table.added : change == L"changed" ? table.changed : table.removed);
            }
        }
        return databases;
    }

private:
    // The first value of the name in the line.
    CString Value(const wchar_t* name) const
    {
        const CString key = CString(L"\"") + name + L"\": \"";
        CString value;
        for (int index = m_line.Find(key) + key.GetLength(); m_line[index] != L'"'; ++index) {
            index += m_line[index] == L'\\' ? 1 : 0;
            value += m_line[index];
        }
        return value;
    }

    CString m_text;
    CString m_line;
};

// True for what a build writes itself, and doesn't copy.
bool IsWritten(const BuildReview& review, const CString& path)
{
    for (const wchar_t* note :
         {L"Install.cmd", L"Uninstall.cmd", L"ReadMe.txt", L"Changes.txt", L"Changes.json", L"Build.log",
          L"Additions.txt", L"Answers.txt", L"Deployment.xml", L"Image\\Setup.xml"}) {
        if (path.CompareNoCase(note) == 0) {
            return true;
        }
    }
    const auto isOf = [&path](const DatabaseReview& database) {
        return path.CompareNoCase(database.strTarget) == 0 ||
               (database.cabinets > 0 && IsUserCabinet(LastName(path)) &&
                FolderAbove(path).CompareNoCase(FolderAbove(database.strTarget)) == 0);
    };
    return path.Left(15) == L"Image\\LogNames\\" ||
           std::any_of(review.databases.begin(), review.databases.end(), isOf);
}

// How large a cabinet becomes that merging makes anew is known only when it is packed.
bool IsMadeByMerging(const BuildReview& review, const CString& path)
{
    return path.Right(4).CompareNoCase(L".cab") == 0 &&
           std::any_of(review.databases.begin(), review.databases.end(),
                       [&path](const DatabaseReview& database) {
                           return !database.merged.empty() &&
                                  FolderAbove(path).CompareNoCase(FolderAbove(database.strTarget)) == 0;
                       });
}

void ExpectFiles(const BuildReview& review, const CString& folder)
{
    const std::string bytes = BytesOf(folder + MANIFEST_FILE);
    std::vector<ManifestEntry> entries;
    ASSERT_TRUE(ReadManifest(bytes.data(), bytes.size(), entries));
    EXPECT_EQ(entries.size() + 1, review.filesInAll);
    std::size_t files = 0;
    std::uint64_t copied = 0;
    std::uint64_t all = bytes.size();
    for (const ManifestEntry& entry : entries) {
        all += entry.size;
        if (!IsWritten(review, NameFromShown(entry.strPath))) {
            ++files;
            copied += IsMadeByMerging(review, NameFromShown(entry.strPath)) ? 0 : entry.size;
        }
    }
    EXPECT_EQ(files, review.filesCopied);
    EXPECT_EQ(copied, review.bytesCopied);
    EXPECT_LE(all, review.bytesNeeded);
    for (const DatabaseReview& database : review.databases) {
        for (const ReviewedPatch& patch : database.appended) {
            EXPECT_TRUE(IsThere(folder + patch.strTarget)) << Utf8(patch.strTarget);
        }
    }
}

void ExpectRows(const BuildReview& review, const CString& folder)
{
    std::map<CString, ReportedDatabase> reported = CChangesReader(BytesOf(folder + L"Changes.json")).Read();
    EXPECT_EQ(reported.size(), review.databases.size());
    for (const DatabaseReview& database : review.databases) {
        SCOPED_TRACE(Utf8(database.strTarget));
        const ReportedDatabase& found = reported[database.strTarget];
        EXPECT_EQ(found.strOldPackageCode, database.strPackageCode);
        EXPECT_EQ(!(found.strNewPackageCode == found.strOldPackageCode), database.bWritten);
        EXPECT_EQ(found.bSignatureLost, database.bSignatureLost);
        EXPECT_EQ(found.tables.size(), database.tables.size());
        for (const TableReview& table : database.tables) {
            const auto rows = found.tables.find(table.strTable);
            if (rows == found.tables.end()) {
                ADD_FAILURE() << "no row of " << Utf8(table.strTable) << " was changed";
                continue;
            }
            EXPECT_EQ(rows->second.added, table.added) << Utf8(table.strTable);
            EXPECT_EQ(rows->second.changed, table.changed) << Utf8(table.strTable);
            EXPECT_EQ(rows->second.removed, table.removed) << Utf8(table.strTable);
        }
    }
}

CString Number(std::uint64_t number)
{
    return NumberText(static_cast<long long>(number));
}

void ExpectAdditions(const BuildReview& review, const CString& folder)
{
    CString notes;
    if (IsThere(folder + L"Additions.txt")) {
        const std::string bytes = BytesOf(folder + L"Additions.txt");
        notes = TextFromUtf8(bytes.data(), bytes.size());
    }
    for (const DatabaseReview& database : review.databases) {
        const CString head =
            ShownText(database.strTarget) + L" (" + ShownText(database.strProductName) + L")\r\n";
        const CString counts = L"  Files: " + Number(database.addedFiles.size()) + L" (" +
                               Number(database.addedBytes) + L" bytes), folders: " +
                               Number(database.addedFolders.size()) + L", drives: " +
                               Number(database.addedDrives.size()) + L",";
        const bool isNone =
            database.addedFiles.empty() && database.addedFolders.empty() && database.addedDrives.empty();
        if (!isNone || notes.Find(head) >= 0) {
            EXPECT_GE(notes.Find(head + counts), 0) << Utf8(head + counts) << "is missing in\n"
                                                    << Utf8(notes);
        }
        for (const ReviewedFile& file : database.addedFiles) {
            const CString line =
                L"      " + ShownText(LastName(file.strPath)) + L", " + Number(file.size) + L" bytes, from ";
            EXPECT_GE(notes.Find(line), 0) << Utf8(line) << " is missing in\n" << Utf8(notes);
        }
    }
}

// Only doing can tell of these.
bool IsOfDoing(const CString& warning)
{
    return warning.Find(L" kept ") >= 0 || warning.Find(L"could not be deleted") >= 0 ||
           warning.Find(L"could not be removed") >= 0;
}

void ExpectWarnings(const BuildReview& review, const BuildResult& result)
{
    ASSERT_GE(result.warnings.size(), review.warnings.size());
    for (std::size_t index = 0; index < result.warnings.size(); ++index) {
        const CString& warning = result.warnings[index];
        if (index < review.warnings.size()) {
            EXPECT_EQ(Utf8(warning), Utf8(review.warnings[index]));
        } else {
            EXPECT_TRUE(IsOfDoing(warning)) << "could have been told before: " << Utf8(warning);
        }
    }
}

} // namespace

void ExpectSameReview(const BuildReview& planned, const BuildReview& decided)
{
    BuildReview first = planned;
    BuildReview second = decided;
    first.bytesFree = second.bytesFree = 0;
    EXPECT_EQ(first.filesCopied, second.filesCopied);
    EXPECT_EQ(first.bytesCopied, second.bytesCopied);
    EXPECT_EQ(first.warnings.size(), second.warnings.size());
    EXPECT_TRUE(first == second) << "the review before the build and the build's own differ";
}

void ExpectBuiltAsReviewed(const BuildReview& review, const BuildResult& result)
{
    const CString& folder = result.strDeploymentFolder;
    EXPECT_EQ(review.strTarget + L"\\", folder);
    EXPECT_GT(review.bytesFree, 0u);
    ExpectFiles(review, folder);
    ExpectRows(review, folder);
    ExpectAdditions(review, folder);
    ExpectWarnings(review, result);
}

void ExpectPlanHeld(const OperationError& refusal, const BuildReview& planned,
                    const std::vector<BuildReview>& decided, const BuildResult& result)
{
    if (refusal || decided.empty()) {
        EXPECT_EQ(refusal.code, result.error.code) << Utf8(result.error.message);
        EXPECT_EQ(Utf8(refusal.message), Utf8(result.error.message));
        BuildReview refused;
        refused.warnings = result.warnings;
        ExpectSameReview(planned, refused);
        return;
    }
    ASSERT_EQ(decided.size(), 1u);
    ExpectSameReview(planned, decided.front());
    if (!result.error) {
        ExpectBuiltAsReviewed(planned, result);
    }
}
