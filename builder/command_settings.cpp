#include "builder/command_settings.h"

#include "builder/command_text.h"

namespace {

using ValueRule = bool (*)(const CString& value);

bool IsAnyText(const CString&)
{
    return true;
}

bool IsZeroOrOne(const CString& value)
{
    return value == L"0" || value == L"1";
}

struct Setting
{
    const wchar_t* name;
    const wchar_t* inWords;
    ValueRule canBe;
    CString (*asBuilt)(const WorkstationCommands& commands); // as it stands in the script
};

constexpr Setting SETTINGS[] = {
    {LOG_FOLDER_SETTING, L"log folder", IsAnyText,
     [](const WorkstationCommands& commands) { return QuotedBatchText(commands.strLogFolder); }},
    {KEEP_LOCAL_LOG_SETTING, L"copy of the log", IsZeroOrOne,
     [](const WorkstationCommands& commands) { return CString(commands.bKeepLocalLog ? L"1" : L"0"); }},
    {DISPLAY_SETTING, L"display option", IsDisplayOption,
     [](const WorkstationCommands& commands) { return DisplayArgument(commands.strDisplay); }},
};

bool IsValueByte(char byte)
{
    return byte != '"' && byte != 0x7F && static_cast<unsigned char>(byte) >= 0x20;
}

// Where the value stands. False without such a line.
bool FindValue(const std::string& script, const wchar_t* name, std::size_t& begin, std::size_t& end)
{
    std::string line = "\nset \"";
    AppendUtf8(line, CString(name) + L"=");
    const std::size_t found = script.find(line);
    if (found == std::string::npos) {
        return false;
    }
    begin = end = found + line.size();
    while (end < script.size() && IsValueByte(script[end])) {
        ++end;
    }
    return script.compare(end, 3, "\"\r\n") == 0;
}

} // namespace

bool RestoreSettings(const std::string& script, const WorkstationCommands& built, std::string& restored,
                     std::vector<SettingChange>& changes)
{
    restored = script;
    changes.clear();
    for (const Setting& setting : SETTINGS) {
        std::size_t begin = 0;
        std::size_t end = 0;
        if (!FindValue(restored, setting.name, begin, end)) {
            return false;
        }
        const CString now = TextFromUtf8(restored.data() + begin, end - begin);
        if (!setting.canBe(now)) {
            return false;
        }
        const CString wanted = setting.asBuilt(built);
        std::string bytes;
        AppendUtf8(bytes, wanted);
        if (restored.compare(begin, end - begin, bytes) != 0) {
            changes.push_back(
                {setting.name, setting.inWords, UnquotedBatchText(wanted), UnquotedBatchText(now)});
            restored.replace(begin, end - begin, bytes);
        }
    }
    return true;
}
