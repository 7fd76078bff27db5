#include "builder/deployment_compare.h"

#include "base/guid_text.h"
#include "builder/build_names.h"
#include "builder/cabinet.h"
#include "builder/compared_additions.h"
#include "builder/compared_folder.h"
#include "builder/database_snapshot.h"
#include "builder/user_files.h"
#include "installer/summary.h"

#include <algorithm>
#include <optional>

namespace {

constexpr wchar_t INSTALL_SCRIPT[] = L"Install.cmd";
constexpr wchar_t UNINSTALL_SCRIPT[] = L"Uninstall.cmd";
constexpr wchar_t SUMMARY_PART[] = L"Summary information"; // in the place of a table's name

using PathSet = std::set<CString, CompareNoCaseLess>;

// The summary without its code, times and numbers of the service.
NamedValues ReadSummary(MSIHANDLE database)
{
    constexpr unsigned int TITLE = 2;
    constexpr unsigned int SUBJECT = 3;
    constexpr unsigned int AUTHOR = 4;
    return {{L"Title", SummaryText(database, TITLE)},
            {L"Subject", SummaryText(database, SUBJECT)},
            {L"Author", SummaryText(database, AUTHOR)},
            {L"Template", SummaryText(database, SUMMARY_TEMPLATE)},
            {L"Word Count", NumberText(SummaryNumber(database, SUMMARY_WORD_COUNT))}};
}

// One product's database with what was added to it.
struct ComparedDatabase
{
    DatabaseSnapshot snapshot;
    NamedValues summary;
    std::vector<NamedAddition> additions;
};

bool HasAdditions(MSIHANDLE database, const CString& path)
{
    for (const auto& [name, table] : ReadTables(database, path, {L"TarnCustomFile", L"CustomAction"})) {
        for (const auto& [key, values] : table.rows) {
            if (IsUserKey(key.front())) {
                return true;
            }
        }
    }
    return false;
}

// The tables in which rows stand under the keys of additions, or from which their names come.
const std::set<CString> ADDITION_TABLES = {
    L"Component",         L"CreateFolder",   L"CustomAction",           L"Directory",
    L"FeatureComponents", L"File",           L"InstallExecuteSequence", L"Media",
    L"Property",          L"TarnCustomFile", L"TarnDirectoryMap"};

struct ComparedDatabases
{
    ComparedDatabase first;
    ComparedDatabase second;
};

// Without most of the rows that both have. Where there are additions, their tables are whole: rows are named by them.
ComparedDatabases ReadDatabases(const CString& firstPath, const CString& secondPath,
                                const std::function<void()>& poll)
{
    const CInstallerHandle first = OpenDatabaseToRead(firstPath);
    const CInstallerHandle second = OpenDatabaseToRead(secondPath);
    const bool hasAdditions = HasAdditions(first.get(), firstPath) || HasAdditions(second.get(), secondPath);
    SnapshotPair pair = ReadUnequalRows({first.get(), firstPath}, {second.get(), secondPath},
                                        hasAdditions ? ADDITION_TABLES : std::set<CString>(), poll);
    ComparedDatabases databases{{std::move(pair.first), ReadSummary(first.get()), {}},
                                {std::move(pair.second), ReadSummary(second.get()), {}}};
    if (hasAdditions) {
        databases.first.additions = NameAdditions(databases.first.snapshot);
        databases.second.additions = NameAdditions(databases.second.snapshot);
    }
    return databases;
}

void CompareRows(const CString& product, ComparedDatabase& first, ComparedDatabase& second,
                 Differences& differences)
{
    const std::set<CString> common = CommonNames(first.additions, second.additions);
    RenameAdditions(first.snapshot, CAdditionNames(first.additions, common));
    RenameAdditions(second.snapshot, CAdditionNames(second.additions, common));
    AddRowDifferences(product, CompareSnapshots(first.snapshot, second.snapshot), differences);
    CompareValues({DifferenceKind::Row, product, {SUMMARY_PART}}, first.summary, second.summary, differences);
    CompareAdditions(product, first.additions, second.additions, differences);
}

// The cabinets of additions beside a database: relative paths by name.
std::map<CString, CString, CompareNoCaseLess> UserCabinetsOf(const CComparedFolder& folder,
                                                             const CString& database)
{
    const CString place = FolderAbove(database);
    std::map<CString, CString, CompareNoCaseLess> cabinets;
    for (const auto& [path, file] : folder.GetFiles()) {
        if (FolderAbove(path).CompareNoCase(place) == 0 && IsUserCabinet(LastName(path))) {
            cabinets[LastName(path)] = path;
        }
    }
    return cabinets;
}

class CComparer
{
public:
    CComparer(const ComparedDeployment& first, const ComparedDeployment& second,
              const std::function<void()>& poll)
        : m_first(first), m_second(second), m_poll(poll), m_firstFolder(first.strFolder, poll),
          m_secondFolder(second.strFolder, poll)
    {
    }

    Differences Compare()
    {
        CompareValues({DifferenceKind::Setting, CString(), {}}, m_first.settings, m_second.settings,
                      m_differences);
        MatchProducts();
        CompareScript(INSTALL_SCRIPT);
        CompareScript(UNINSTALL_SCRIPT);
        CompareAllFiles();
        SortDifferences(m_differences);
        return std::move(m_differences);
    }

private:
    void MatchProducts()
    {
        std::vector<const ComparedProduct*> left;
        std::vector<const ComparedProduct*> others;
        for (const ComparedProduct& product : m_second.products) {
            others.push_back(&product);
        }
        // By code first, so that no product is matched by its place whose own one has moved.
        for (const ComparedProduct& product : m_first.products) {
            const ComparedProduct* other =
                Take(others, [&](const auto& o) { return o.strCode.CompareNoCase(product.strCode) == 0; });
            other ? CompareProduct(product, *other) : left.push_back(&product);
        }
        for (const ComparedProduct* product : left) {
            const ComparedProduct* other = Take(others, [&](const auto& o) {
                return o.strDatabase.CompareNoCase(product->strDatabase) == 0;
            });
            other ? CompareProduct(*product, *other) : AddProduct(*product, DifferenceSide::OnlyFirst);
        }
        for (const ComparedProduct* other : others) {
            AddProduct(*other, DifferenceSide::OnlySecond);
        }
    }

    // The first product of which `isMeant` is true; it is removed from the list. Null when there is none.
    template <class Test>
    static const ComparedProduct* Take(std::vector<const ComparedProduct*>& products, Test isMeant)
    {
        const auto found = std::find_if(products.begin(), products.end(),
                                        [&](const ComparedProduct* product) { return isMeant(*product); });
        if (found == products.end()) {
            return nullptr;
        }
        const ComparedProduct* const product = *found;
        products.erase(found);
        return product;
    }

    void AddProduct(const ComparedProduct& product, DifferenceSide side)
    {
        AddMissing({DifferenceKind::Product, product.strName, {product.strCode}}, side, product.strDatabase,
                   m_differences);
    }

    void CompareProduct(const ComparedProduct& first, const ComparedProduct& second)
    {
        // One name for both, whichever of the two is named first.
        const CString product = std::min(first.strName, second.strName);
        const ComparedPart part{DifferenceKind::Product, product, {}};
        CompareValues(
            part, {{L"code", first.strCode}, {L"name", first.strName}, {L"database", first.strDatabase}},
            {{L"code", second.strCode}, {L"name", second.strName}, {L"database", second.strDatabase}},
            m_differences);
        CompareLists({DifferenceKind::Patch, product, {}}, first.patches, second.patches, m_differences);
        CompareContents(product, first, second);
    }

    // Databases, cabinets of additions, and the settings that may name additions by their keys.
    void CompareContents(const CString& product, const ComparedProduct& first, const ComparedProduct& second)
    {
        m_done.insert(first.strDatabase);
        m_done.insert(second.strDatabase);
        const auto firstCabinets = UserCabinetsOf(m_firstFolder, first.strDatabase);
        const auto secondCabinets = UserCabinetsOf(m_secondFolder, second.strDatabase);
        const bool sameDatabase =
            HashOfDatabase(m_firstFolder, first) == HashOfDatabase(m_secondFolder, second);
        const bool sameCabinets =
            HashesOf(m_firstFolder, firstCabinets) == HashesOf(m_secondFolder, secondCabinets);
        if (sameDatabase && sameCabinets && first.sources == second.sources) {
            CompareValues({DifferenceKind::Setting, product, {}}, first.settings, second.settings,
                          m_differences);
            return;
        }
        auto [before, after] = ReadDatabases(m_firstFolder.FullPath(first.strDatabase),
                                             m_secondFolder.FullPath(second.strDatabase), m_poll);
        CompareRows(product, before, after, m_differences);
        CompareAdditionsOfBoth(product, before.additions, after.additions, first.sources, second.sources);
        if (!sameCabinets) {
            CompareCabinets(product, before.additions, after.additions, firstCabinets, secondCabinets);
        }
        CompareValues({DifferenceKind::Setting, product, {}}, Renamed(first.settings, before.additions),
                      Renamed(second.settings, after.additions), m_differences);
    }

    // By its bytes: a manifest says only what it was.
    static CString HashOfDatabase(const CComparedFolder& folder, const ComparedProduct& product)
    {
        return folder.HashOfBytes(product.strDatabase);
    }

    static NamedValues Renamed(const NamedValues& settings, const std::vector<NamedAddition>& additions)
    {
        const CAdditionNames names(additions, {});
        NamedValues renamed;
        bool alone = false;
        for (const auto& [name, value] : settings) {
            renamed[names.Rename(name, alone)] = names.Rename(value, alone);
        }
        return renamed;
    }

    using Cabinets = std::map<CString, CString, CompareNoCaseLess>;

    std::vector<CString> HashesOf(const CComparedFolder& folder, const Cabinets& cabinets)
    {
        std::vector<CString> hashes;
        for (const auto& [name, path] : cabinets) {
            hashes.push_back(folder.Hash(path));
            m_done.insert(path);
        }
        return hashes;
    }

    // Calls `compare` for each added file of both: with the item and both keys.
    template <class Call>
    static void ForEachCommonFile(const CString& product, const std::vector<NamedAddition>& first,
                                  const std::vector<NamedAddition>& second, const wchar_t* what, Call compare)
    {
        std::map<CString, CString> keys;
        for (const NamedAddition& addition : second) {
            keys[addition.strName] = addition.strKey;
        }
        for (const NamedAddition& addition : first) {
            const auto other = keys.find(addition.strName);
            if (other != keys.end()) {
                compare(
                    ComparedPart{DifferenceKind::Added, product, {addition.strKind, addition.strPath, what}},
                    addition.strKey, other->second);
            }
        }
    }

    void CompareAdditionsOfBoth(const CString& product, const std::vector<NamedAddition>& first,
                                const std::vector<NamedAddition>& second,
                                const std::map<CString, CString>& firstSources,
                                const std::map<CString, CString>& secondSources)
    {
        ForEachCommonFile(product, first, second, L"source",
                          [&](const ComparedPart& part, const CString& key, const CString& other) {
                              CompareValue(part, ValueOf(firstSources, key), ValueOf(secondSources, other),
                                           m_differences);
                          });
    }

    static CString ValueOf(const std::map<CString, CString>& values, const CString& key)
    {
        const auto found = values.find(key);
        return found == values.end() ? CString() : found->second;
    }

    // A file that lies loose in one of them is compared as the file that it is there.
    void CompareCabinets(const CString& product, const std::vector<NamedAddition>& first,
                         const std::vector<NamedAddition>& second, const Cabinets& firstCabinets,
                         const Cabinets& secondCabinets)
    {
        const auto before = ReadCabinets(m_firstFolder, firstCabinets);
        const auto after = ReadCabinets(m_secondFolder, secondCabinets);
        ForEachCommonFile(product, first, second, L"contents",
                          [&](const ComparedPart& part, const CString& key, const CString& other) {
                              const auto one = before.find(key);
                              const auto two = after.find(other);
                              if (one != before.end() && two != after.end()) {
                                  CompareFiles(part, one->second, two->second, m_differences);
                              } else if (one != before.end() || two != after.end()) {
                                  CompareValue(part, one != before.end() ? L"in a cabinet" : L"",
                                               two != after.end() ? L"in a cabinet" : L"", m_differences);
                              }
                          });
    }

    std::map<CString, ComparedFile> ReadCabinets(const CComparedFolder& folder, const Cabinets& cabinets)
    {
        std::map<CString, ComparedFile> files;
        for (const auto& [name, path] : cabinets) {
            for (auto& [key, content] :
                 HashCabinet(folder.FullPath(path), [this](std::uint64_t) { m_poll(); })) {
                files[key] = {content.size, content.strSha256};
            }
        }
        return files;
    }

    void CompareScript(const CString& name)
    {
        if (!m_firstFolder.Has(name) || !m_secondFolder.Has(name)) {
            return; // as a file
        }
        m_done.insert(name);
        CompareScripts(name, ReadScript(m_firstFolder, name), ReadScript(m_secondFolder, name),
                       m_differences);
    }

    static CommandScript ReadScript(const CComparedFolder& folder, const CString& name)
    {
        const std::vector<char> bytes = folder.Read(name);
        return ReadCommandScript(bytes.data(), bytes.size());
    }

    void CompareAllFiles()
    {
        for (const auto& [path, file] : m_firstFolder.GetFiles()) {
            if (IsDone(path)) {
                continue;
            }
            const auto other = m_secondFolder.GetFiles().find(path);
            if (other == m_secondFolder.GetFiles().end()) {
                AddFile(path, file, DifferenceSide::OnlyFirst);
            } else {
                CompareFile(path, file, other->second);
            }
        }
        for (const auto& [path, file] : m_secondFolder.GetFiles()) {
            if (!IsDone(path) && !m_firstFolder.Has(path)) {
                AddFile(path, file, DifferenceSide::OnlySecond);
            }
        }
    }

    bool IsDone(const CString& path) const { return m_done.count(path) != 0 || IsNoteOfBuild(path); }

    static CString Describe(const FolderFile& file)
    {
        return file.bFolderLink ? CString(L"a link to another folder")
                                : NumberText(static_cast<long long>(file.size)) + L" bytes";
    }

    void AddFile(const CString& path, const FolderFile& file, DifferenceSide side)
    {
        AddMissing({DifferenceKind::File, CString(), {path}}, side, Describe(file), m_differences);
    }

    void CompareFile(const CString& path, const FolderFile& first, const FolderFile& second)
    {
        const ComparedPart part{DifferenceKind::File, CString(), {path}};
        if (first.bFolderLink || second.bFolderLink || first.size != second.size) {
            CompareValue(part, Describe(first), Describe(second), m_differences);
            return;
        }
        CompareFiles(part, {first.size, m_firstFolder.Hash(path)}, {second.size, m_secondFolder.Hash(path)},
                     m_differences);
    }

    const ComparedDeployment& m_first;
    const ComparedDeployment& m_second;
    const std::function<void()>& m_poll;
    CComparedFolder m_firstFolder;
    CComparedFolder m_secondFolder;
    PathSet m_done; // files that are compared in another way
    Differences m_differences;
};

} // namespace

Differences CompareDeployments(const ComparedDeployment& first, const ComparedDeployment& second,
                               const std::function<void()>& poll)
{
    return CComparer(first, second, poll).Compare();
}

void CompareDatabases(const CString& product, const CString& first, const CString& second,
                      const std::function<void()>& poll, Differences& differences)
{
    auto [before, after] = ReadDatabases(first, second, poll);
    CompareRows(product, before, after, differences);
}
