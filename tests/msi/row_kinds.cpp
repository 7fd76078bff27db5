#include "tests/msi/row_kinds.h"

#include <type_traits>

namespace {

template <class Data, const auto& SAMPLE, auto KEY>
std::unique_ptr<IMsiWriter> Make(const wchar_t* key)
{
    auto row = std::make_unique<Data>();
    static_cast<std::remove_cvref_t<decltype(SAMPLE)>&>(*row) = SAMPLE;
    if (key) {
        (*row).*KEY = key;
    }
    return row;
}

template <class Data, const auto& SAMPLE>
std::unique_ptr<IMsiWriter> MakeChanged()
{
    auto row = std::make_unique<Data>();
    static_cast<std::remove_cvref_t<decltype(SAMPLE)>&>(*row) = SAMPLE;
    return row;
}

const ComponentColumns CHANGED_COMPONENT = {L"comp", L"{OTHER}", L"dir2", 4, L"cond2", L"kp2"};
const DirectoryColumns CHANGED_DIRECTORY = {L"dir", L"other", L"new"};
const FeatureColumns CHANGED_FEATURE = {L"feat", L"p2", L"t2", L"d2", 4, 3, L"dir2", 8};
const FileColumns CHANGED_FILE = {L"file", L"comp2", L"new", 1, L"2", L"1031", 0, 8};
const ShortcutColumns CHANGED_SHORTCUT = {L"cut", L"x", L"new", L"x", L"x", L"/new",
                                          L"x",   0,    L"x",   0,    0,    L"x"};
const CustomFileColumns CHANGED_CUSTOM_FILE = {L"comp", L"new", 0};
const CustomActionColumns CHANGED_ACTION = {L"act", 35, L"src2", L"tgt2"};
const InstallExecuteSequenceColumns CHANGED_SEQUENCE = {L"act", L"new", 1402};

const RowStatements& StatementsOf(const char* table)
{
    for (const RowStatements& statements : ROW_STATEMENTS) {
        if (std::string(statements.table) == table) {
            return statements;
        }
    }
    ADD_FAILURE() << table << " has no statements";
    return ROW_STATEMENTS[0];
}

std::vector<RowKind> MakeKinds()
{
    const Row component = {L"comp", L"{GUID}", L"dir", L"256", L"cond", L"kp"};
    const Row folder = {L"dir", L"comp"};
    const Row assignment = {L"feat", L"comp"};
    const Row file = {L"file", L"comp", L"IT'S~1|It's long", L"1234", L"1.2.3.4", L"1033", L"512", L"7"};
    return {
        {StatementsOf("Component"), Make<ComponentData, COMPONENT, &ComponentData::Component>,
         Make<ComponentData, COMPONENT, &ComponentData::Component>,
         MakeChanged<ComponentData, CHANGED_COMPONENT>, component, component, nullptr, nullptr},
        {StatementsOf("Directory"),
         Make<DirectoryData, DIRECTORY, &DirectoryData::Directory>,
         Make<DirectoryData, DIRECTORY, &DirectoryData::Directory>,
         MakeChanged<DirectoryData, CHANGED_DIRECTORY>,
         {L"dir", L"parent", L"IT'S~1|It's long"},
         {L"dir", L"other", L"new"},
         L"IT'S~1|It's long",
         L"IT'S~1|It's long"},
        {StatementsOf("CreateFolder"), Make<CreateFolderData, CREATE_FOLDER, &CreateFolderData::Directory_>,
         Make<CreateFolderData, CREATE_FOLDER, &CreateFolderData::Component_>,
         MakeChanged<CreateFolderData, CREATE_FOLDER>, folder, folder, nullptr, nullptr},
        {StatementsOf("Feature"),
         Make<FeatureData, FEATURE, &FeatureData::Feature>,
         Make<FeatureData, FEATURE, &FeatureData::Feature>,
         MakeChanged<FeatureData, CHANGED_FEATURE>,
         {L"feat", L"parent", L"title", L"desc", L"2", L"1", L"dir", L"16"},
         {L"feat", L"p2", L"t2", L"d2", L"4", L"3", L"dir2", L"8"},
         nullptr,
         nullptr},
        {StatementsOf("FeatureComponents"),
         Make<FeatureComponentsData, FEATURE_COMPONENT, &FeatureComponentsData::Feature_>,
         Make<FeatureComponentsData, FEATURE_COMPONENT, &FeatureComponentsData::Component_>,
         MakeChanged<FeatureComponentsData, FEATURE_COMPONENT>, assignment, assignment, nullptr, nullptr},
        {StatementsOf("File"), Make<FileData, USER_FILE, &FileData::File>,
         Make<FileData, USER_FILE, &FileData::File>, MakeChanged<FileData, CHANGED_FILE>, file, file,
         L"IT'S~1|It's long", nullptr},
        {StatementsOf("Shortcut"),
         Make<ShortcutData, SHORTCUT, &ShortcutData::Shortcut>,
         Make<ShortcutData, SHORTCUT, &ShortcutData::Shortcut>,
         MakeChanged<ShortcutData, CHANGED_SHORTCUT>,
         {L"cut", L"dir", L"It's a name|It's a name", L"comp", L"[INSTALLDIR]z.exe", L"/a", L"tip",
          NULL_VALUE, L"icon", NULL_VALUE, NULL_VALUE, L"wkdir"},
         {L"cut", L"dir", L"new|new", L"comp", L"[INSTALLDIR]z.exe", L"/new", L"tip", NULL_VALUE, L"icon",
          NULL_VALUE, NULL_VALUE, L"wkdir"},
         L"It's a name",
         L"It's a name"},
        {StatementsOf("TarnCustomFile"),
         Make<CustomFileData, CUSTOM_FILE, &CustomFileData::Component_>,
         Make<CustomFileData, CUSTOM_FILE, &CustomFileData::Component_>,
         MakeChanged<CustomFileData, CHANGED_CUSTOM_FILE>,
         {L"comp", L"C:\\it's\\source", L"2"},
         {L"comp", L"new", L"0"},
         L"C:\\it's\\source",
         L"C:\\it's\\source"},
        {StatementsOf("CustomAction"),
         Make<CustomActionData, CUSTOM_ACTION, &CustomActionData::Action>,
         Make<CustomActionData, CUSTOM_ACTION, &CustomActionData::Action>,
         MakeChanged<CustomActionData, CHANGED_ACTION>,
         {L"act", L"51", L"src", L"tgt"},
         {L"act", L"35", L"src2", L"tgt2"},
         nullptr,
         nullptr},
        {StatementsOf("InstallExecuteSequence"),
         Make<InstallExecuteSequenceData, SEQUENCE, &InstallExecuteSequenceData::Action>,
         Make<InstallExecuteSequenceData, SEQUENCE, &InstallExecuteSequenceData::Action>,
         MakeChanged<InstallExecuteSequenceData, CHANGED_SEQUENCE>,
         {L"act", L"cond", L"1"},
         {L"act", L"new", L"1402"},
         nullptr,
         nullptr},
    };
}

} // namespace

CString RowKind::Table() const
{
    CString name;
    for (const char* letter = statements.table; *letter; ++letter) {
        name += static_cast<wchar_t>(*letter);
    }
    return name;
}

const std::vector<RowKind>& RowKinds()
{
    static const std::vector<RowKind> kinds = MakeKinds();
    return kinds;
}

std::string NameOf(const testing::TestParamInfo<RowKind>& information)
{
    return information.param.statements.table;
}

void PrintTo(const RowKind& kind, std::ostream* stream)
{
    *stream << kind.statements.table;
}

bool Execute(IMsiWriter& row, MsiRowAction action, InstallerHandle database)
{
    row.m_action = action;
    return row.Execute(database);
}
