#include "builder/user_files.h"

#include "base/ascii.h"
#include "base/guid_text.h"
#include "builder/addition_targets.h"
#include "builder/build_names.h"
#include "builder/media_numbers.h"
#include "builder/named_table.h"
#include "builder/standard_actions.h"
#include "builder/user_features.h"
#include "installer/package_layout.h"

#include <algorithm>
#include <limits>
#include <map>
#include <set>

namespace {

constexpr long long MAX_SHORT = 32767; // the largest value of a column of type i2

CString CabinetName(std::size_t number)
{
    CString digits = NumberText(static_cast<long long>(number));
    while (digits.GetLength() < 4) {
        digits = L"0" + digits;
    }
    return L"TARN" + digits + L".cab";
}

bool NamesUserCabinets(const ReadTable& media)
{
    if (!media.Exists()) {
        return false;
    }
    return std::any_of(media.Rows().begin(), media.Rows().end(),
                       [&](const auto& row) { return IsUserCabinet(media.Value(row.second, L"Cabinet")); });
}

void RemoveOldCabinets(const WriteTable& media)
{
    if (media.Exists()) {
        std::erase_if(media.Rows(),
                      [&](const auto& row) { return IsUserCabinet(media.Value(row.second, L"Cabinet")); });
    }
}

long long HighestNumber(const WriteTable& table, const wchar_t* column, const std::set<CString>& exceptKeys)
{
    long long highest = 0;
    for (const auto& [key, row] : table.Rows()) {
        if (exceptKeys.count(key.front()) == 0) {
            highest = std::max(highest, NumberOf(table.Value(row, column)));
        }
    }
    return highest;
}

// Where the numbers of the added files begin.
struct Numbering
{
    long long first = 0;
    CString strRefused; // why they can't; a sentence
};

CString RefuseNumbers(long long taken, std::size_t count)
{
    CString text = L"its database can number " + NumberText(MAX_SHORT) + L" files, and ";
    if (taken >= MAX_SHORT) {
        return text + L"the product takes all of these numbers. Remove the additional files.";
    }
    return text + L"the product takes " + NumberText(taken) +
           L" of these numbers, so that there is room for " + NumberText(MAX_SHORT - taken) +
           L" added files, not for " + NumberText(static_cast<long long>(count)) +
           L". Remove some of the additional files.";
}

// Behind the numbers of the product's files and media. What media reserve beyond their last file is given up only
// where the columns can't hold the numbers otherwise: a patch of the product's may count on it.
Numbering NumberFiles(const WriteTable& files, const WriteTable& media, const UserAdditions& additions,
                      const PatchNumbers& patches)
{
    std::set<CString> added;
    for (const UserFile& file : additions.files) {
        added.insert(file.strKey);
    }
    const auto lastTaken = [&] {
        return std::max({HighestNumber(files, L"Sequence", added), HighestNumber(media, L"LastSequence", {}),
                         patches.file});
    };
    const long long room =
        files.HoldsOnlyShortNumbers(L"Sequence") || media.HoldsOnlyShortNumbers(L"LastSequence")
            ? MAX_SHORT - static_cast<long long>(additions.files.size())
            : std::numeric_limits<int>::max();
    if (lastTaken() > room) {
        FreeReservedNumbers(media, HighestNumber(files, L"Sequence", added));
    }
    const long long last = lastTaken();
    return last > room ? Numbering{0, RefuseNumbers(last, additions.files.size())} : Numbering{last + 1, {}};
}

// Numbers and attributes of the File rows.
void FinishFileRows(const WriteTable& files, const UserAdditions& additions, long long firstSequence,
                    bool packageIsCompressed)
{
    long long sequence = firstSequence;
    for (const UserFile& file : additions.files) {
        RowValues& row = files.Rows().at({file.strKey});
        files.Set(row, L"Sequence", NumberText(sequence++));
        // A compressed package takes every file for compressed; any other has to be told.
        files.Set(row, L"Attributes", NumberText(packageIsCompressed ? 0 : FILE_COMPRESSED));
    }
}

// Loose files need no numbers of their own, and no medium but one that is there.
void FinishLooseFileRows(const WriteTable& files, const WriteTable& media, const UserAdditions& additions)
{
    if (media.Rows().empty()) {
        RowValues row = media.EmptyRow();
        media.Set(row, L"DiskId", L"1");
        media.Set(row, L"LastSequence", L"1");
        media.Rows()[{L"1"}] = std::move(row);
    }
    const CString sequence = NumberText(HighestNumber(media, L"LastSequence", {}));
    for (const UserFile& file : additions.files) {
        RowValues& row = files.Rows().at({file.strKey});
        files.Set(row, L"Sequence", sequence);
        files.Set(row, L"Attributes", NumberText(FILE_NONCOMPRESSED));
    }
}

void AddMediaRows(const WriteTable& media, const std::vector<UserCabinet>& cabinets, long long disk,
                  long long firstSequence)
{
    for (const UserCabinet& cabinet : cabinets) {
        RowValues row = media.EmptyRow();
        const CString id = NumberText(++disk);
        media.Set(row, L"DiskId", id);
        media.Set(row, L"LastSequence",
                  NumberText(firstSequence + static_cast<long long>(cabinet.first + cabinet.count) - 1));
        media.Set(row, L"Cabinet", cabinet.strName);
        media.Rows()[{id}] = std::move(row);
    }
}

// Answers why the numbers don't fit; empty when they do.
CString FinishPackedFileRows(const WriteTable& files, const WriteTable& media, const UserAdditions& additions,
                             const std::vector<UserCabinet>& cabinets, bool packageIsCompressed,
                             const PatchNumbers& patches)
{
    const long long disk = std::max(HighestNumber(media, L"DiskId", {}), patches.disk);
    if (disk + static_cast<long long>(cabinets.size()) > MAX_SHORT) {
        return L"its table Media has the medium " + NumberText(disk) +
               L", and no higher number is possible. Remove the additional files.";
    }
    const Numbering numbering = NumberFiles(files, media, additions, patches);
    if (!numbering.strRefused.IsEmpty()) {
        return numbering.strRefused;
    }
    FinishFileRows(files, additions, numbering.first, packageIsCompressed);
    AddMediaRows(media, cabinets, disk, numbering.first);
    return {};
}

// Neither workstations nor whoever gets the deployment need to know where a file was chosen.
void HideSourcePaths(const WriteTable& records, const UserAdditions& additions)
{
    for (const UserFile& file : additions.files) {
        records.Set(records.Rows().at({file.strKey}), L"SourceFileName", file.strName);
    }
}

// As it stands in the table, whatever Windows makes of it.
CString NameOfFolder(const DatabaseSnapshot& database, const CString& key)
{
    const ReadTable directories = TableToRead(database, L"Directory");
    return directories.Has(key) ? LongName(directories.Value(directories.Rows().at({key}), L"DefaultDir"))
                                : CString();
}

// A folder whose path can't be known is one of its own.
CString PathOrKey(const CTargetFolders& targets, const CString& directory)
{
    const CString& path = targets.Find(directory);
    return path.IsEmpty() ? L"[" + directory + L"]" : path;
}

void FindTargets(const DatabaseSnapshot& database, UserAdditions& additions)
{
    if (additions.files.empty() && additions.folders.empty()) {
        return;
    }
    const CTargetFolders targets(database);
    for (UserFolder& folder : additions.folders) {
        folder.strInstalled = PathOrKey(targets, folder.strKey);
        folder.strShown = targets.Shown(folder.strInstalled);
    }
    for (UserFile& file : additions.files) {
        const CString folder = PathOrKey(targets, file.strFolder);
        file.strInstalled = TargetBelow(folder, file.strName);
        file.strShownFolder = targets.Shown(folder);
    }
}

// In the order in which they fill the features.
std::vector<CString> ComponentsOf(const UserAdditions& additions)
{
    std::vector<CString> keys;
    for (const UserFile& file : additions.files) {
        keys.push_back(file.strKey);
    }
    for (const UserFolder& folder : additions.folders) {
        keys.push_back(folder.strKey);
    }
    return keys;
}

} // namespace

bool IsUserCabinet(const CString& fileName)
{
    if (fileName.GetLength() != 12 || fileName.Left(4).CompareNoCase(L"TARN") != 0 ||
        fileName.Right(4).CompareNoCase(L".cab") != 0) {
        return false;
    }
    for (int index = 4; index < 8; ++index) {
        if (!IsAsciiDigit(fileName[index])) {
            return false;
        }
    }
    return true;
}

UserAdditions FindUserAdditions(const DatabaseSnapshot& database)
{
    UserAdditions additions;
    const ReadTable records = TableToRead(database, L"TarnCustomFile");
    const ReadTable files = TableToRead(database, L"File");
    const ReadTable components = TableToRead(database, L"Component");
    additions.bBuiltBefore = NamesUserCabinets(TableToRead(database, L"Media"));
    additions.strays = FindIncompleteAdditions(database);
    additions.straySteps = FindOrphanedSteps(database);
    std::set<CString> strays;
    for (const IncompleteAddition& stray : additions.strays) {
        strays.insert(stray.strKey);
    }
    if (records.Exists()) {
        for (const auto& [key, row] : records.Rows()) {
            if (IsUserKey(key.front()) && records.Value(row, L"Flags") == FOLDER_FLAGS &&
                strays.count(key.front()) == 0) {
                additions.folders.push_back(
                    {key.front(), NameOfFolder(database, key.front()), CString(), CString()});
            }
        }
    }
    if (!files.Exists()) {
        FindTargets(database, additions);
        return additions;
    }
    for (const auto& [key, row] : files.Rows()) {
        if (!IsUserKey(key.front()) || strays.count(key.front()) != 0) {
            continue;
        }
        UserFile file;
        file.strKey = key.front();
        file.strName = LongName(files.Value(row, L"FileName"));
        file.strFolder = components.Value(components.Rows().at(key), L"Directory_");
        file.strSource = records.Value(records.Rows().at(key), L"SourceFileName");
        file.storedSize = static_cast<std::uint32_t>(NumberOf(files.Value(row, L"FileSize")));
        file.sequence = static_cast<int>(NumberOf(files.Value(row, L"Sequence")));
        additions.files.push_back(std::move(file));
    }
    std::stable_sort(
        additions.files.begin(), additions.files.end(),
        [](const UserFile& left, const UserFile& right) { return left.sequence < right.sequence; });
    FindTargets(database, additions);
    return additions;
}

std::vector<CString> FindUserDrives(const DatabaseSnapshot& database)
{
    const CString mark = L"DRIVE_";
    std::vector<CString> drives;
    const ReadTable directories = TableToRead(database, L"Directory");
    const ReadTable actions = TableToRead(database, L"CustomAction");
    if (directories.Exists()) {
        for (const auto& [key, row] : directories.Rows()) {
            const CString name = directories.Value(row, L"DefaultDir");
            // A folder may have any name; only a drive has an action of its own.
            if (IsUserKey(key.front()) && actions.Has(key.front()) && name.Left(mark.GetLength()) == mark) {
                drives.push_back(name.Mid(mark.GetLength()) + L":");
            }
        }
    }
    return drives;
}

std::vector<UserCabinet> PackUserFiles(const std::vector<UserFile>& files, const CabinetLimits& limits)
{
    std::vector<UserCabinet> cabinets;
    std::uint64_t bytes = 0;
    for (std::size_t index = 0; index < files.size(); ++index) {
        const bool full = !cabinets.empty() &&
                          (cabinets.back().count >= limits.files || bytes + files[index].size > limits.bytes);
        if (cabinets.empty() || full) {
            cabinets.push_back({CabinetName(cabinets.size() + 1), index, 0});
            bytes = 0;
        }
        ++cabinets.back().count;
        bytes += files[index].size;
    }
    return cabinets;
}

CString FinishUserAdditions(DatabaseSnapshot& database, const UserAdditions& additions,
                            const std::vector<UserCabinet>& cabinets, bool packageIsCompressed,
                            const PatchNumbers& patches)
{
    const WriteTable files = TableToWrite(database, L"File");
    const WriteTable media = TableToWrite(database, L"Media");
    RemoveOldCabinets(media);
    RemoveIncompleteAdditions(database, additions.strays);
    RemoveOrphanedSteps(database, additions.straySteps);
    if (!additions.files.empty()) {
        if (!media.Exists()) {
            return L"its database has no table Media. Remove the additional files.";
        }
        if (additions.bLoose) {
            FinishLooseFileRows(files, media, additions);
        } else {
            const CString refused =
                FinishPackedFileRows(files, media, additions, cabinets, packageIsCompressed, patches);
            if (!refused.IsEmpty()) {
                return refused;
            }
        }
        SetUserFileSizes(database, additions);
        HideSourcePaths(TableToWrite(database, L"TarnCustomFile"), additions);
    }
    const std::vector<CString> components = ComponentsOf(additions);
    FinishUserFeatures(database, components);
    return components.empty() ? CString() : AddMissingActions(database);
}

void SetUserFileSizes(DatabaseSnapshot& database, const UserAdditions& additions)
{
    const WriteTable files = TableToWrite(database, L"File");
    for (const UserFile& file : additions.files) {
        files.Set(files.Rows().at({file.strKey}), L"FileSize", NumberText(static_cast<long long>(file.size)));
    }
}
