#include "builder/code_page.h"

#include "base/number_text.h"
#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/database_snapshot.h"
#include "builder/file_operations.h"

namespace {

constexpr UINT NEUTRAL_CODE_PAGE = 0;

bool HasOtherLetters(const std::vector<RowDifference>& rows)
{
    for (const RowDifference& row : rows) {
        for (const ColumnChange& column : row.columns) {
            if (!IsAscii(column.strNew)) {
                return true;
            }
        }
    }
    return false;
}

// Of a name that is its own short form what its writer typed.
CString TypedName(const CString& text)
{
    const int bar = text.Find(L'|');
    return bar >= 0 && text.Left(bar) == text.Mid(bar + 1) ? text.Left(bar) : text;
}

} // namespace

bool CodePageHolds(unsigned int codePage, const CString& text)
{
    if (IsAscii(text) || codePage == CP_UTF8) {
        return true;
    }
    if (codePage == NEUTRAL_CODE_PAGE) {
        return false; // each computer would read other letters as those of its own language
    }
    BOOL replaced = FALSE;
    const int bytes = WideCharToMultiByte(codePage, WC_NO_BEST_FIT_CHARS, text, text.GetLength(), nullptr, 0,
                                          nullptr, &replaced);
    return bytes > 0 && !replaced;
}

// The service tells the code page only by exporting a table that doesn't exist.
unsigned int ReadCodePage(const BuildDatabase& database)
{
    const CString folder = FolderAbove(database.strWorkingCopy);
    const CString name = LastName(database.strWorkingCopy) + L".codepage";
    const CString path = JoinFolder(folder, name);
    CheckInstaller(MsiDatabaseExportW(database.hDatabase, L"_ForceCodepage", folder, name),
                   L"Reading the code page of", database.strWorkingCopy);
    std::vector<char> bytes(256);
    {
        const CFileOwner file = OpenForReading(path);
        bytes.resize(ReadChunk(file, bytes.data(), static_cast<DWORD>(bytes.size()), path));
    }
    DeleteOneFile(path);
    const int codePage = ParseCodePage(bytes.data(), bytes.size());
    if (codePage < 0) {
        throw BuildFailure{BUILD_DATABASE_DAMAGED,
                           L"The database \"" + database.strOriginal +
                               L"\" doesn't tell its code page. Get the media again."};
    }
    return static_cast<unsigned int>(codePage);
}

void RequireCodePageHolds(const BuildDatabase& database, const std::vector<RowDifference>& rows)
{
    if (!HasOtherLetters(rows)) {
        return;
    }
    const UINT codePage = ReadCodePage(database);
    for (const RowDifference& row : rows) {
        for (const ColumnChange& column : row.columns) {
            if (!CodePageHolds(codePage, column.strNew)) {
                throw BuildFailure{BUILD_NO_TRANSLATION,
                                   L"The database of " + database.strProductName + L" uses the code page " +
                                       NumberText(codePage) + L", which lacks letters of \"" +
                                       TypedName(column.strNew) + L"\" (table " + row.strTable + L", row " +
                                       row.key.front() + L", column " + column.strColumn + L"). " +
                                       RemedyOf(BUILD_NO_TRANSLATION)};
            }
        }
    }
}

int ParseCodePage(const char* text, std::size_t length)
{
    constexpr int MOST = 65535;
    const CString line = TextFromUtf8(text, length).TrimLeft(L"\r\n\t");
    int end = 0;
    const std::uint64_t codePage = ReadDigits(line, end, MOST);
    return end > 0 && line[end] == L'\t' && codePage <= MOST ? static_cast<int>(codePage) : -1;
}
