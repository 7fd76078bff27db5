#include "builder/package_sources.h"

#include "base/guid_text.h"
#include "base/name_rules.h"
#include "builder/build_names.h"
#include "builder/incomplete_additions.h"
#include "builder/user_files.h"
#include "installer/package_layout.h"
#include "installer/query.h"
#include "installer/record.h"
#include "installer/summary.h"
#include "msi/directory_rules.h"

#include <msiquery.h>

#include <algorithm>
#include <set>

namespace {

class CDirectoryRows final : public IDirectorySource
{
public:
    explicit CDirectoryRows(MSIHANDLE database)
    {
        const unsigned int result =
            ForEachRow(database, L"SELECT `Directory`,`Directory_Parent`,`DefaultDir` FROM `Directory`", {},
                       [this](MSIHANDLE record) {
                           const CString key = RecordText(record, 1);
                           m_rows[key] = {key, RecordText(record, 2), RecordText(record, 3)};
                           return true;
                       });
        static_cast<void>(result); // without directories no file has a folder
    }
    const DirectoryColumns* FindDirectory(const CString& key) const override
    {
        const auto row = m_rows.find(key);
        return row == m_rows.end() ? nullptr : &row->second;
    }
    CString GetSettledPath(const CString&) const override { return CString(); }

private:
    std::map<CString, DirectoryColumns> m_rows;
};

// Paths are relative to the package's folder. Those of a file without a folder are empty: the installer passes over
// a file whose component isn't there, and refuses a component whose directory isn't.
struct SourceFile
{
    CString strKey;
    CString strFolderPath;
    CString strRootPath;
    SourcePlace place = SourcePlace::Cabinet;
    int sequence = 0;
};

struct Medium
{
    int lastSequence = 0;
    CString strCabinet;
};

class CPackageReader
{
public:
    CPackageReader(MSIHANDLE database, const CString& packageFolder)
        : m_database(database), m_packageFolder(packageFolder),
          m_layout(LayoutOf(SummaryNumber(database, SUMMARY_WORD_COUNT)))
    {
    }

    const PackageLayout& Layout() const { return m_layout; }

    // The product's files, or those that were added to it.
    std::vector<SourceFile> ReadFiles(bool added) const
    {
        const std::map<CString, CString> folders = ReadFolders();
        std::vector<SourceFile> files;
        const unsigned int result = ForEachRow(
            m_database, L"SELECT `File`,`Component_`,`FileName`,`Attributes`,`Sequence` FROM `File`", {},
            [&](MSIHANDLE record) {
                SourceFile file;
                file.strKey = RecordText(record, 1);
                if (IsUserKey(file.strKey) != added) {
                    return true;
                }
                file.place = PlaceOfFile(m_layout, MsiRecordGetInteger(record, 4));
                file.sequence = MsiRecordGetInteger(record, 5);
                const auto folder = folders.find(RecordText(record, 2));
                if (folder != folders.end() && !folder->second.IsEmpty()) {
                    const CString name = SourceName(RecordText(record, 3), m_layout);
                    file.strRootPath = name;
                    file.strFolderPath = folder->second.Mid(m_packageFolder.GetLength()) + name;
                }
                files.push_back(file);
                return true;
            });
        static_cast<void>(result); // without this table a package has no files
        return files;
    }

    // In the order of their numbers.
    std::vector<Medium> ReadMedia() const
    {
        std::vector<Medium> media;
        const unsigned int result = ForEachRow(
            m_database, L"SELECT `LastSequence`,`Cabinet` FROM `Media`", {}, [&](MSIHANDLE record) {
                media.push_back({MsiRecordGetInteger(record, 1), RecordText(record, 2)});
                return true;
            });
        static_cast<void>(result); // no Media table, no cabinets
        std::stable_sort(media.begin(), media.end(), [](const Medium& left, const Medium& right) {
            return left.lastSequence < right.lastSequence;
        });
        return media;
    }

    bool IsThere(const CString& relative) const
    {
        const DWORD attributes = IsSafeRelativePath(relative)
                                     ? GetFileAttributesW(UnlimitedPath(m_packageFolder + relative))
                                     : INVALID_FILE_ATTRIBUTES;
        return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
    }

private:
    // Full source paths of components. Of all of them: whether a file lies in its folder or at the root is its own.
    std::map<CString, CString> ReadFolders() const
    {
        PackageLayout laidOut = m_layout;
        laidOut.bCompressed = false;
        const CDirectoryRows directories(m_database);
        std::map<CString, CString> folders;
        const unsigned int result = ForEachRow(
            m_database, L"SELECT `Component`,`Directory_` FROM `Component`", {}, [&](MSIHANDLE record) {
                folders[RecordText(record, 1)] =
                    ResolveSourcePath(directories, RecordText(record, 2), m_packageFolder, laidOut);
                return true;
            });
        static_cast<void>(result); // without components no file is installed
        return folders;
    }

    MSIHANDLE m_database;
    CString m_packageFolder;
    PackageLayout m_layout;
};

class CSourceList
{
public:
    void Add(const CString& relative)
    {
        if (IsSafeRelativePath(relative) && m_known.insert(relative).second) {
            m_files.push_back(relative);
        }
    }
    std::vector<CString> Take() { return std::move(m_files); }

private:
    std::vector<CString> m_files;
    std::set<CString> m_known;
};

// A cabinet inside the database is none that lies beside it, and those of added files are made anew by each build.
bool LiesBeside(const CString& cabinet)
{
    return !cabinet.IsEmpty() && cabinet[0] != L'#' && !IsUserCabinet(cabinet);
}

// The cabinet of the medium that a file is on; empty when the medium has none.
CString CabinetOf(const std::vector<Medium>& media, int sequence)
{
    const auto medium = std::find_if(media.begin(), media.end(), [&](const Medium& candidate) {
        return candidate.lastSequence >= sequence;
    });
    return medium == media.end() ? CString() : medium->strCabinet;
}

// A file that isn't laid out as it should be, taken as it lies. False when it isn't there at all.
bool AddAsItLies(const CPackageReader& package, const SourceFile& file, CSourceList& sources)
{
    bool found = false;
    for (const CString& path : {file.strFolderPath, file.strRootPath}) {
        if (package.IsThere(path)) {
            sources.Add(path);
            found = true;
        }
    }
    return found;
}

void AddFile(const CPackageReader& package, const SourceFile& file, const CString& cabinet,
             CSourceList& sources)
{
    const bool unclear = package.Layout().IsUnclear();
    if (unclear && AddAsItLies(package, file, sources)) {
        return;
    }
    if (file.place == SourcePlace::Root) {
        sources.Add(file.strRootPath);
    } else if (file.place == SourcePlace::Folders || (unclear && cabinet.IsEmpty())) {
        sources.Add(file.strFolderPath);
    } else if (LiesBeside(cabinet)) {
        sources.Add(cabinet);
    }
}

} // namespace

std::vector<CString> FindPackageFiles(MSIHANDLE database, const CString& packageFolder)
{
    const CPackageReader package(database, packageFolder);
    const std::vector<Medium> media = package.ReadMedia();
    CSourceList sources;
    for (const SourceFile& file : package.ReadFiles(false)) {
        AddFile(package, file, CabinetOf(media, file.sequence), sources);
    }
    for (const Medium& medium : media) {
        if (LiesBeside(medium.strCabinet) && package.IsThere(medium.strCabinet)) {
            sources.Add(medium.strCabinet);
        }
    }
    return sources.Take();
}

CString FindMisnamedCabinet(MSIHANDLE database, const CString& packageFolder)
{
    const CPackageReader package(database, packageFolder);
    const std::vector<Medium> media = package.ReadMedia();
    if (std::none_of(media.begin(), media.end(),
                     [](const Medium& medium) { return IsUserCabinet(medium.strCabinet); })) {
        return CString();
    }
    for (const SourceFile& file : package.ReadFiles(false)) {
        const CString cabinet = CabinetOf(media, file.sequence);
        if (file.place == SourcePlace::Cabinet && IsUserCabinet(cabinet)) {
            return cabinet;
        }
    }
    return CString();
}

AdditionSources FindAdditionSources(MSIHANDLE database, const CString& packageFolder)
{
    const CPackageReader package(database, packageFolder);
    AdditionSources sources;
    sources.bLoose = package.Layout().IsLaidOut();
    sources.bPackedUnmarked = PlaceOfFile(package.Layout(), 0) == SourcePlace::Cabinet;
    if (package.Layout().IsUnclear()) {
        // Where the product's own files all lie in their folders, that is where the installer looks for more.
        const std::vector<SourceFile> files = package.ReadFiles(false);
        sources.bLoose = !files.empty() && std::all_of(files.begin(), files.end(), [&](const auto& file) {
            return package.IsThere(file.strFolderPath);
        });
    }
    if (sources.bLoose) {
        for (const SourceFile& file : package.ReadFiles(true)) {
            if (!file.strFolderPath.IsEmpty()) {
                sources.paths[file.strKey] = file.strFolderPath;
            }
        }
    }
    return sources;
}

std::map<CString, LoosePaths> FindLoosePaths(MSIHANDLE database, const CString& packageFolder)
{
    std::map<CString, LoosePaths> paths;
    for (const SourceFile& file : CPackageReader(database, packageFolder).ReadFiles(false)) {
        paths[file.strKey] = {file.strFolderPath, file.strRootPath};
    }
    return paths;
}
