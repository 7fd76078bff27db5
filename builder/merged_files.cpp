#include "builder/merged_files.h"

#include "base/guid_text.h"
#include "base/name_rules.h"
#include "builder/named_table.h"
#include "builder/shown_text.h"
#include "builder/snapshot_merge.h"
#include "builder/user_files.h"

#include <optional>

namespace {

constexpr long long MAX_SHORT = 32767;
constexpr int FILE_PATCH_ADDED = 4096;
constexpr int PLACE_ATTRIBUTES = FILE_PATCH_ADDED | FILE_NONCOMPRESSED | FILE_COMPRESSED;

CString Named(const CString& text)
{
    return L"\"" + ShownText(text) + L"\"";
}

// The product's own media in the order of their numbers; those of added files are made anew by each build.
struct Medium
{
    CString strDisk;
    long long last = 0;
    CString strCabinet;
};
std::vector<Medium> ReadMedia(const DatabaseSnapshot& database)
{
    std::vector<Medium> media;
    const ReadTable table = TableToRead(database, L"Media");
    if (table.Exists()) {
        for (const auto& [key, row] : table.Rows()) {
            const Medium medium = {key.front(), NumberOf(table.Value(row, L"LastSequence")),
                                   table.Value(row, L"Cabinet")};
            if (!IsUserCabinet(medium.strCabinet)) {
                media.push_back(medium);
            }
        }
    }
    std::stable_sort(media.begin(), media.end(),
                     [](const Medium& left, const Medium& right) { return left.last < right.last; });
    return media;
}

const Medium* MediumOf(const std::vector<Medium>& media, long long sequence)
{
    const auto found = std::find_if(media.begin(), media.end(),
                                    [&](const Medium& medium) { return medium.last >= sequence; });
    return found == media.end() ? nullptr : &*found;
}

long long SequenceOf(const ReadTable& files, const RowValues& row)
{
    return NumberOf(files.Value(row, L"Sequence"));
}

std::optional<CString> FindNewDisk(const std::vector<Medium>& before, const std::vector<Medium>& after,
                                   std::set<CString>& disks)
{
    for (const Medium& medium : after) {
        const auto same = std::find_if(before.begin(), before.end(),
                                       [&](const Medium& other) { return other.strDisk == medium.strDisk; });
        if (same == before.end()) {
            disks.insert(medium.strDisk);
        } else if (!(same->strCabinet == medium.strCabinet) || same->last != medium.last) {
            return L"uses the medium " + ShownText(medium.strDisk) + L", which the product has";
        }
    }
    return std::nullopt;
}

CString FindDeltas(const PatchSteps& steps)
{
    const ReadTable deltas = TableToRead(steps.sourced, L"Patch");
    const ReadTable known = TableToRead(steps.changed, L"Patch");
    if (!deltas.Exists()) {
        return {};
    }
    for (const auto& [key, row] : deltas.Rows()) {
        if (!known.Exists() || known.Rows().count(key) == 0) {
            return L"holds only the differing bytes of the file " + Named(key.front()) +
                   L", not the whole file";
        }
    }
    return {};
}

// Files that differ by more than number and place, or are new.
std::set<CString> FindChangedFiles(const PatchSteps& steps)
{
    std::set<CString> changed;
    for (const RowDifference& row : CompareSnapshots(steps.before, steps.changed)) {
        if (row.change == RowChange::Removed || row.key.empty()) {
            continue;
        }
        const bool isFile = row.strTable == L"File";
        for (const ColumnChange& column : row.columns) {
            if ((isFile && (row.change == RowChange::Added || column.strColumn == L"FileSize" ||
                            column.strColumn == L"Version")) ||
                (row.strTable == L"MsiFileHash" && row.change == RowChange::Changed)) {
                changed.insert(row.key.front());
            }
        }
    }
    return changed;
}

// `short|long`, or one name.
bool IsPlainName(const CString& name)
{
    const int bar = name.Find(L'|');
    return bar < 0 ? IsSafeFileName(name)
                   : IsSafeFileName(name.Left(bar)) && IsSafeFileName(name.Mid(bar + 1));
}

// `target:source`, each a dot or a name.
bool IsPlainFolder(const CString& name)
{
    const int colon = name.Find(L':');
    if (colon >= 0) {
        return IsPlainFolder(name.Left(colon)) && IsPlainFolder(name.Mid(colon + 1));
    }
    return name == L"." || IsPlainName(name);
}

CString FindStrayNames(const PatchSteps& steps)
{
    for (const RowDifference& row : CompareSnapshots(steps.before, steps.changed)) {
        for (const ColumnChange& column : row.columns) {
            const bool isFile = row.strTable == L"File" && column.strColumn == L"FileName";
            const bool isFolder = row.strTable == L"Directory" && column.strColumn == L"DefaultDir";
            if (row.change != RowChange::Removed &&
                ((isFile && !IsPlainName(column.strNew)) || (isFolder && !IsPlainFolder(column.strNew)))) {
                return L"names a file or folder " + Named(column.strNew) + L", which no folder can contain";
            }
        }
    }
    return {};
}

// How new files are told where they lie: as the last file of the medium is.
int ModelAttributes(const WriteTable& files, const std::vector<Medium>& media, const Medium& medium)
{
    long long highest = 0;
    int attributes = medium.strCabinet.IsEmpty() ? FILE_NONCOMPRESSED : FILE_COMPRESSED;
    for (const auto& [key, row] : files.Rows()) {
        const long long sequence = NumberOf(files.Value(row, L"Sequence"));
        const Medium* own = MediumOf(media, sequence);
        if (sequence > highest && !IsUserKey(key.front()) && own && own->strDisk == medium.strDisk) {
            highest = sequence;
            attributes = static_cast<int>(NumberOf(files.Value(row, L"Attributes"))) & PLACE_ATTRIBUTES;
        }
    }
    return attributes;
}

long long HighestSequence(const WriteTable& files)
{
    long long highest = 0;
    for (const auto& [key, row] : files.Rows()) {
        if (!IsUserKey(key.front())) {
            highest = std::max(highest, NumberOf(files.Value(row, L"Sequence")));
        }
    }
    return highest;
}

// Number and place of a file that was there before.
void KeepPlace(const WriteTable& files, RowValues& row, const RowValues& was)
{
    files.Set(row, L"Sequence", files.Value(was, L"Sequence"));
    const CString now = files.Value(row, L"Attributes");
    const CString old = files.Value(was, L"Attributes");
    const long long attributes = (NumberOf(now) & ~PLACE_ATTRIBUTES) | (NumberOf(old) & PLACE_ATTRIBUTES);
    files.Set(row, L"Attributes",
              attributes == 0 && (now.IsEmpty() || old.IsEmpty()) ? CString() : NumberText(attributes));
}

// In the order of the numbers that the patch has for them.
std::vector<CString> NewFiles(const DatabaseSnapshot& changed, const WriteTable& merged,
                              const ReadTable& before)
{
    std::vector<CString> keys;
    for (const auto& [key, row] : merged.Rows()) {
        if (!before.Exists() || before.Rows().count(key) == 0) {
            keys.push_back(key.front());
        }
    }
    const ReadTable numbered = TableToRead(changed, L"File");
    std::stable_sort(keys.begin(), keys.end(), [&](const CString& left, const CString& right) {
        return SequenceOf(numbered, numbered.Rows().at({left})) <
               SequenceOf(numbered, numbered.Rows().at({right}));
    });
    return keys;
}

CString PlaceNewFiles(const std::vector<CString>& keys, const WriteTable& files, const WriteTable& media,
                      const DatabaseSnapshot& merged)
{
    const std::vector<Medium> own = ReadMedia(merged);
    if (own.empty()) {
        return L"adds files, and the product has no medium for them";
    }
    const Medium& last = own.back();
    const long long before = own.size() > 1 ? own[own.size() - 2].last : 0;
    for (const CString& key : keys) { // until they have one, so that the others' numbers alone count
        files.Set(files.Rows().at({key}), L"Sequence", CString());
    }
    const int attributes = ModelAttributes(files, own, last);
    long long sequence = std::max(HighestSequence(files), before);
    const bool isShort =
        files.HoldsOnlyShortNumbers(L"Sequence") || media.HoldsOnlyShortNumbers(L"LastSequence");
    if (isShort && sequence + static_cast<long long>(keys.size()) > MAX_SHORT) {
        return L"adds files, and the product's database can number " + NumberText(MAX_SHORT) +
               L" files at most";
    }
    for (const CString& key : keys) {
        RowValues& row = files.Rows().at({key});
        files.Set(row, L"Sequence", NumberText(++sequence));
        const long long given = NumberOf(files.Value(row, L"Attributes")) & ~PLACE_ATTRIBUTES;
        files.Set(row, L"Attributes", NumberText(given | attributes));
    }
    if (sequence > last.last) {
        media.Set(media.Rows().at({last.strDisk}), L"LastSequence", NumberText(sequence));
    }
    return {};
}

// The cabinet that a file of that row lies in; empty for a loose file.
CString CabinetOf(const ReadTable& files, const RowValues& row, const std::vector<Medium>& media,
                  const PackageLayout& layout)
{
    const int attributes = static_cast<int>(NumberOf(files.Value(row, L"Attributes")));
    const Medium* medium = MediumOf(media, SequenceOf(files, row));
    return medium && PlaceOfFile(layout, attributes) == SourcePlace::Cabinet ? medium->strCabinet : CString();
}

} // namespace

CString FindCarriedFiles(const PatchSteps& steps, CarriedFiles& carried)
{
    const std::vector<Medium> media = ReadMedia(steps.sourced);
    std::set<CString> newDisks;
    const std::optional<CString> clash = FindNewDisk(ReadMedia(steps.changed), media, newDisks);
    if (clash) {
        return *clash;
    }
    const CString fault = FindDeltas(steps);
    if (!fault.IsEmpty()) {
        return fault;
    }
    const ReadTable files = TableToRead(steps.sourced, L"File");
    const ReadTable known = TableToRead(steps.changed, L"File");
    if (!files.Exists() || !known.Exists()) {
        return L"is for a product with files, and this one has none";
    }
    for (const auto& [key, row] : files.Rows()) {
        const auto was = known.Rows().find(key);
        if (IsUserKey(key.front()) || (was != known.Rows().end() && was->second == row)) {
            continue;
        }
        const Medium* medium = MediumOf(media, SequenceOf(files, row));
        if (!medium || newDisks.count(medium->strDisk) == 0) {
            return L"numbers the file " + Named(key.front()) + L" as if it lay on the product's own media";
        }
        if (medium->strCabinet.Left(1) != L"#") {
            return L"doesn't hold the file " + Named(key.front()) + L" itself";
        }
        if (was == known.Rows().end()) {
            return L"brings the file " + Named(key.front()) + L" without a place in the product";
        }
        carried[key.front()] = medium->strCabinet.Mid(1);
    }
    for (const CString& key : FindChangedFiles(steps)) {
        if (carried.count(key) == 0 && known.Has(key)) {
            return L"changes the file " + Named(key) + L" and doesn't hold it";
        }
    }
    return FindStrayNames(steps);
}

CString MergeTables(const PatchSteps& steps, DatabaseSnapshot& merged)
{
    const DatabaseSnapshot was = merged;
    static_cast<void>(CarryDifferences(steps.before, steps.changed,
                                       merged)); // what patches replace of one another is their makers'
    const auto media = was.find(L"Media");
    if (media != was.end()) {
        merged[L"Media"] = media->second; // those of the package's own source
    }
    const WriteTable files = TableToWrite(merged, L"File");
    const ReadTable before = TableToRead(was, L"File");
    if (!files.Exists()) {
        return {};
    }
    for (auto& [key, row] : files.Rows()) {
        if (before.Exists() && before.Rows().count(key) != 0) {
            KeepPlace(files, row, before.Rows().at(key));
        }
    }
    const std::vector<CString> added = NewFiles(steps.changed, files, before);
    return added.empty() ? CString() : PlaceNewFiles(added, files, TableToWrite(merged, L"Media"), merged);
}

std::vector<MergedCabinet> FindMergedCabinets(const DatabaseSnapshot& original,
                                              const DatabaseSnapshot& merged, const PackageLayout& layout,
                                              const std::set<CString>& touched,
                                              const std::set<CString>& removed)
{
    const ReadTable files = TableToRead(merged, L"File");
    const ReadTable oldFiles = TableToRead(original, L"File");
    const std::vector<Medium> media = ReadMedia(merged);
    const std::vector<Medium> oldMedia = ReadMedia(original);
    std::map<CString, std::set<std::pair<long long, CString>>> members; // by cabinet, in their order
    std::set<CString> changed;
    if (files.Exists()) {
        for (const auto& [key, row] : files.Rows()) {
            const CString cabinet = CabinetOf(files, row, media, layout);
            if (cabinet.IsEmpty() || IsUserKey(key.front())) {
                continue;
            }
            members[cabinet].insert({SequenceOf(files, row), key.front()});
            if (touched.count(key.front()) != 0) {
                changed.insert(cabinet);
            }
        }
    }
    for (const CString& key : removed) {
        changed.insert(CabinetOf(oldFiles, oldFiles.Rows().at({key}), oldMedia, layout));
    }
    std::vector<MergedCabinet> cabinets;
    for (const CString& name : changed) {
        MergedCabinet cabinet = {name, {}};
        for (const auto& [sequence, key] : members[name]) {
            cabinet.keys.push_back(key);
        }
        if (!name.IsEmpty()) {
            cabinets.push_back(std::move(cabinet));
        }
    }
    return cabinets;
}

std::set<CString> FindRemovedFiles(const DatabaseSnapshot& original, const DatabaseSnapshot& merged)
{
    std::set<CString> removed;
    const ReadTable files = TableToRead(original, L"File");
    const ReadTable now = TableToRead(merged, L"File");
    if (files.Exists()) {
        for (const auto& [key, row] : files.Rows()) {
            if (!now.Exists() || now.Rows().count(key) == 0) {
                removed.insert(key.front());
            }
        }
    }
    return removed;
}

SourcePlace PlaceInPackage(const DatabaseSnapshot& database, const PackageLayout& layout, const CString& file)
{
    const ReadTable files = TableToRead(database, L"File");
    return PlaceOfFile(layout,
                       static_cast<int>(NumberOf(files.Value(files.Rows().at({file}), L"Attributes"))));
}
