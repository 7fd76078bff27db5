#include "builder/standard_actions.h"

#include "builder/build_names.h"
#include "builder/named_table.h"

#include <algorithm>
#include <map>
#include <set>
#include <vector>

namespace {

constexpr int MAX_SEQUENCE = 32767; // of a column of type i2

// None of the actions may run before these.
constexpr const wchar_t* BEGINNING[] = {L"CostFinalize", L"InstallValidate", L"InstallInitialize"};
constexpr const wchar_t* END = L"InstallFinalize";

// What needs the files that are about to go, and what needs those that have come. A package that has no room for all
// of this has no use of it, as it brings no file of its own.
constexpr const wchar_t* USERS_OF_OLD_FILES[] = {
    L"ProcessComponents", L"UnpublishComponents", L"UnpublishFeatures", L"StopServices",
    L"DeleteServices",    L"UnregisterComPlus",   L"SelfUnregModules",  L"UnregisterTypeLibraries",
    L"RemoveODBC",        L"UnregisterFonts",
};
constexpr const wchar_t* USERS_OF_NEW_FILES[] = {
    L"PatchFiles",      L"DuplicateFiles", L"BindImage",       L"CreateShortcuts",
    L"RegisterFonts",   L"InstallODBC",    L"SelfRegModules",  L"RegisterTypeLibraries",
    L"RegisterComPlus", L"StartServices",  L"InstallServices",
};

struct StandardAction
{
    const wchar_t* name;
    int suggested;
    std::vector<const wchar_t*> after; // of each other, as documented
    std::vector<const wchar_t*> before;
};

const wchar_t g_removeFiles[] = L"RemoveFiles";
const wchar_t g_removeFolders[] = L"RemoveFolders";
const wchar_t g_createFolders[] = L"CreateFolders";

// Each stands behind those that may have less room.
const std::vector<StandardAction>& StandardActions()
{
    static const std::vector<StandardAction> actions = {
        {g_removeFiles, 3500, {}, {g_removeFolders, L"InstallFiles"}},
        {g_createFolders, 3700, {}, {L"InstallFiles"}},
        {L"InstallFiles", 4000, {g_removeFiles, g_createFolders}, {}},
        {g_removeFolders, 3600, {g_removeFiles, L"RemoveDuplicateFiles"}, {}},
    };
    return actions;
}

// Where an action has to stand: behind one number and before another, both taken.
struct Place
{
    int after = 0;
    int before = MAX_SEQUENCE + 1;
    CString strAfter; // the actions there
    CString strBefore;
};

class CSequencePlan
{
public:
    explicit CSequencePlan(const WriteTable& sequence) : m_sequence(sequence)
    {
        for (const auto& [key, row] : sequence.Rows()) {
            const long long number = NumberOf(sequence.Value(row, L"Sequence"));
            if (number > 0) { // others are never run in their turn
                m_numbers[key.front()] = static_cast<int>(number);
                m_taken.insert(static_cast<int>(number));
            }
        }
    }

    CString Complete()
    {
        for (const StandardAction& action : StandardActions()) {
            if (m_numbers.count(action.name) != 0) {
                continue;
            }
            int number = FindNumber(action, true);
            if (number == 0) {
                number = FindNumber(action, false);
            }
            if (number == 0) {
                return Refusal(action);
            }
            m_numbers[action.name] = number;
            m_taken.insert(number);
            Write(action.name, number);
        }
        return {};
    }

private:
    Place PlaceOf(const StandardAction& action, bool minding) const
    {
        Place place;
        for (const wchar_t* name : BEGINNING) {
            Raise(place, name);
        }
        for (const wchar_t* name : action.after) {
            Raise(place, name);
        }
        Lower(place, END);
        for (const wchar_t* name : action.before) {
            Lower(place, name);
        }
        if (minding) {
            MindUsers(place, action);
        }
        return place;
    }

    // A user of files that runs outside of the place already is left alone.
    void MindUsers(Place& place, const StandardAction& action) const
    {
        const auto isInside = [&](const wchar_t* name) {
            const auto user = m_numbers.find(name);
            return user != m_numbers.end() && user->second > place.after && user->second < place.before;
        };
        if (action.name == g_removeFiles) {
            for (const wchar_t* name : USERS_OF_OLD_FILES) {
                if (isInside(name)) {
                    Raise(place, name);
                }
            }
        }
        if (action.name == g_createFolders && isInside(g_removeFiles)) {
            Raise(place, g_removeFiles); // as suggested
        }
        if (action.name != g_removeFolders) {
            for (const wchar_t* name : USERS_OF_NEW_FILES) {
                if (isInside(name)) {
                    Lower(place, name);
                }
            }
        }
    }

    // The free number nearest to the suggested one that leaves a free number for each action that is still to be placed
    // before the same end; 0 when there is none. `minding`: the users of files too.
    int FindNumber(const StandardAction& action, bool minding) const
    {
        const Place place = PlaceOf(action, minding);
        int last = place.before;
        for (std::size_t needed = SharersOf(action, place, minding) + 1; needed > 0 && last > place.after;
             --needed) {
            do {
                --last;
            } while (last > place.after && m_taken.count(last) != 0);
        }
        if (last <= place.after) {
            return 0;
        }
        int number = std::max(std::min(action.suggested, last), place.after + 1);
        while (m_taken.count(number) != 0) {
            ++number; // the last one is free
        }
        return number;
    }

    std::size_t SharersOf(const StandardAction& action, const Place& place, bool minding) const
    {
        std::size_t sharers = 0;
        for (const StandardAction& other : StandardActions()) {
            if (&other > &action && m_numbers.count(other.name) == 0 &&
                PlaceOf(other, minding).before <= place.before) {
                ++sharers;
            }
        }
        return sharers;
    }

    void Raise(Place& place, const wchar_t* name) const
    {
        const auto found = m_numbers.find(name);
        if (found != m_numbers.end() && found->second > place.after) {
            place.after = found->second;
            place.strAfter = name;
        }
    }

    void Lower(Place& place, const wchar_t* name) const
    {
        const auto found = m_numbers.find(name);
        if (found != m_numbers.end() && found->second < place.before) {
            place.before = found->second;
            place.strBefore = name;
        }
    }

    void Write(const wchar_t* name, int number) const
    {
        if (!m_sequence.Has(name)) {
            RowValues row = m_sequence.EmptyRow();
            m_sequence.Set(row, L"Action", name);
            m_sequence.Rows()[{name}] = std::move(row);
        }
        m_sequence.Set(m_sequence.Rows().at({name}), L"Sequence", NumberText(number));
    }

    CString Refusal(const StandardAction& action) const
    {
        const Place place = PlaceOf(action, false);
        const auto told = [](const CString& name, int number) {
            return name.IsEmpty() ? NumberText(number) : name + L" (" + NumberText(number) + L")";
        };
        return CString(L"its table InstallExecuteSequence has no number left for the action ") + action.name +
               L", which has to run after " + told(place.strAfter, place.after) + L" and before " +
               told(place.strBefore, place.before) +
               L". Remove the additional files, or ask the product's maker for a package with room there.";
    }

    const WriteTable& m_sequence;
    std::map<CString, int> m_numbers; // of the actions that are run
    std::set<int> m_taken;
};

} // namespace

CString AddMissingActions(DatabaseSnapshot& database)
{
    const WriteTable sequence = TableToWrite(database, L"InstallExecuteSequence");
    return sequence.Exists() ? CSequencePlan(sequence).Complete() : CString();
}
