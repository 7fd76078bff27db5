#include "builder/addition_findings.h"

#include "base/guid_text.h"
#include "base/name_rules.h"
#include "builder/addition_targets.h"
#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/named_table.h"

#include <map>
#include <set>

namespace {

// Dots and blanks at its end aren't part of a name, and control characters of none.
bool IsNoName(const CString& name)
{
    for (int index = 0; index < name.GetLength(); ++index) {
        if (name[index] < L' ') {
            return true;
        }
    }
    return !name.IsEmpty() && CString(name).TrimRight(L". ").IsEmpty();
}

class CClashFinder
{
public:
    CClashFinder(const DatabaseSnapshot& database, const UserAdditions& additions, const CString& product)
        : m_database(database), m_additions(additions), m_product(product)
    {
    }

    std::vector<AdditionFinding> Find()
    {
        CollectAdditions();
        CollectProduct();
        for (const UserFolder& folder : m_additions.folders) {
            JudgeFolder(folder);
        }
        for (const UserFile& file : m_additions.files) {
            JudgeFile(file);
        }
        return std::move(m_findings);
    }

private:
    using Paths = std::set<CString, CompareNoCaseLess>;

    void AddWithParents(Paths& folders, const CString& folder)
    {
        CString path = folder;
        while (!path.IsEmpty() && folders.insert(path).second) {
            const CString above = FolderAbove(path);
            path = above.GetLength() < path.GetLength() ? above : CString();
        }
    }

    void CollectAdditions()
    {
        for (const UserFolder& folder : m_additions.folders) {
            AddWithParents(m_addedFolders, folder.strInstalled);
        }
        for (const UserFile& file : m_additions.files) {
            m_firstFiles.insert({file.strInstalled, &file});
            AddWithParents(m_addedFolders, FolderAbove(file.strInstalled));
        }
    }

    // Folders in which the product has a component, and those of its files that meet an addition.
    void CollectProduct()
    {
        const ReadTable components = TableToRead(m_database, L"Component");
        const ReadTable files = TableToRead(m_database, L"File");
        if (!components.Exists() || (m_additions.files.empty() && m_additions.folders.empty())) {
            return;
        }
        const CTargetFolders targets(m_database);
        for (const auto& [key, row] : components.Rows()) {
            if (!IsUserKey(key.front())) {
                AddWithParents(m_productFolders, targets.Find(components.Value(row, L"Directory_")));
            }
        }
        if (!files.Exists()) {
            return;
        }
        for (const auto& [key, row] : files.Rows()) {
            const CString component = files.Value(row, L"Component_");
            if (IsUserKey(key.front()) || !components.Has(component)) {
                continue;
            }
            const CString& folder =
                targets.Find(components.Value(components.Rows().at({component}), L"Directory_"));
            if (folder.IsEmpty()) {
                continue;
            }
            const CString path = TargetBelow(folder, LongName(files.Value(row, L"FileName")));
            if (m_firstFiles.count(path) != 0 || m_addedFolders.count(path) != 0) {
                m_productFiles.insert(path);
            }
        }
    }

    void JudgeFolder(const UserFolder& folder)
    {
        const CString name = LastName(folder.strInstalled);
        const auto add = [&](unsigned int code, const CString& reason) {
            m_findings.push_back({code, folder.strShown, CString(), reason});
        };
        if (IsDeviceName(name)) {
            add(BUILD_INVALID_NAME,
                L"The folder \"" + name + L"\", which was added to " + m_product +
                    L", can't be made, as Windows keeps this name for a device. Rename it.");
        } else if (IsNoName(name)) {
            add(BUILD_INVALID_NAME, L"The folder \"" + name + L"\", which was added to " + m_product +
                                        L", can't be made, as Windows has no such names. Rename it.");
        }
        if (m_productFiles.count(folder.strInstalled) != 0) {
            add(BUILD_ALREADY_EXISTS,
                L"The folder \"" + name + L"\", which was added to " + m_product +
                    L", can't be made, as the product has a file of that name in its place. "
                    L"Rename the folder.");
        }
    }

    void JudgeFile(const UserFile& file)
    {
        const auto add = [&](unsigned int code, const CString& reason) {
            m_findings.push_back({code, ShownAddition(file), file.strSource, reason});
        };
        const CString& path = file.strInstalled;
        if (IsDeviceName(LastName(path))) {
            add(BUILD_INVALID_NAME,
                L"The file \"" + file.strSource + L"\", which was added to " + m_product +
                    L", can't be installed, as Windows keeps its name for a device. Remove it.");
        } else if (IsNoName(LastName(path))) {
            add(BUILD_INVALID_NAME, L"The file \"" + file.strSource + L"\", which was added to " + m_product +
                                        L", can't be installed, as Windows has no such names. Remove it.");
        }
        const UserFile* const first = m_firstFiles.at(path);
        if (first != &file) {
            add(BUILD_ALREADY_EXISTS, L"Both \"" + first->strSource + L"\" and \"" + file.strSource +
                                          L"\" were added to one folder under the name \"" + file.strName +
                                          L"\". Remove one of them.");
        } else if (m_addedFolders.count(path) != 0 || m_productFolders.count(path) != 0) {
            add(BUILD_ALREADY_EXISTS,
                L"The file \"" + file.strSource + L"\", which was added to " + m_product +
                    L", can't be installed, as there is a folder of that name in its place. "
                    L"Remove the file, or rename the folder if it was added.");
        } else if (m_productFiles.count(path) != 0) {
            add(0, L"The added file \"" + file.strSource + L"\" takes the place of one of " + m_product +
                       L": the product has a file of that name in the same folder.");
        }
    }

    const DatabaseSnapshot& m_database;
    const UserAdditions& m_additions;
    const CString& m_product;
    std::map<CString, const UserFile*, CompareNoCaseLess> m_firstFiles; // the first of each path
    Paths m_addedFolders;                                               // and all above them
    Paths m_productFolders;                                             // likewise
    Paths m_productFiles;                                               // that meet an addition
    std::vector<AdditionFinding> m_findings;
};

} // namespace

CString ShownAddition(const UserFile& file)
{
    return JoinFolder(file.strShownFolder, file.strName);
}

std::vector<AdditionFinding> FindTargetClashes(const DatabaseSnapshot& database,
                                               const UserAdditions& additions, const CString& product)
{
    return CClashFinder(database, additions, product).Find();
}

std::vector<AdditionFinding> FindUnheldNames(const UserAdditions& additions, const CString& product,
                                             const std::function<bool(const CString&)>& holds)
{
    const auto reason = [&](const CString& what, const CString& rest) {
        return L"The name of the " + what + L", which was added to " + product +
               L", has letters that the database of the product can't hold. " + rest;
    };
    std::vector<AdditionFinding> findings;
    for (const UserFolder& folder : additions.folders) {
        if (!holds(folder.strName)) {
            findings.push_back({BUILD_NO_TRANSLATION, folder.strShown, CString(),
                                reason(L"folder \"" + folder.strName + L"\"", L"Rename it.")});
        }
    }
    for (const UserFile& file : additions.files) {
        if (!holds(file.strName)) {
            findings.push_back({BUILD_NO_TRANSLATION, ShownAddition(file), file.strSource,
                                reason(L"file \"" + file.strSource + L"\"",
                                       L"Remove it, or rename it where it lies and add it again.")});
        }
    }
    return findings;
}

std::vector<AdditionFinding> FindLeftOut(const UserAdditions& additions, const CString& product)
{
    std::vector<AdditionFinding> findings;
    for (const IncompleteAddition& stray : additions.strays) {
        findings.push_back({0, stray.strName, CString(),
                            L"The addition \"" + stray.strName + L"\" to " + product +
                                L" was never completed, or only half removed, and is left out of the "
                                L"deployment. Remove it from the additional files, and add it again if it is "
                                L"wanted."});
    }
    for (const CString& step : additions.straySteps) {
        findings.push_back({0, step, CString(),
                            L"A drive (" + step + L") was only half removed from " + product +
                                L". What was left of it is left out of the deployment."});
    }
    return findings;
}
