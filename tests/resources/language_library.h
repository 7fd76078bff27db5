// The built resource libraries, a folder a language, and the ids that each must have.
#pragma once

#include "base/handle.h"
#include "base/string.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <set>
#include <string>
#include <vector>

struct ResourceId
{
    const char* name;
    int value;

    // By the kind that the name begins with: "IDD_", "IDC_", "IDS_", "IDI_".
    bool IsKind(const char* prefix) const { return std::string(name).starts_with(prefix); }
};

// All of include/resource_ids.h.
const std::vector<ResourceId>& AllResourceIds();

class CLanguageLibrary
{
public:
    // A locale name such as "en-US"; fails the test when the library can't be loaded.
    explicit CLanguageLibrary(const std::string& locale);

    HMODULE GetModule() const { return m_module.get(); }
    const CString& GetFolder() const { return m_folder; }
    // Empty for a string that is missing.
    CString GetText(int id) const;
    // Ids of all strings, empty ones left out.
    std::set<int> GetTextIds() const;
    bool HasDialog(int id) const;

private:
    CString m_folder; // ends in a backslash
    CModuleOwner m_module;
};

// The locale names of all languages that were built.
std::vector<std::string> BuiltLanguages();
// For the names of tests: no hyphens.
std::string TestNameOfLanguage(const testing::TestParamInfo<std::string>& locale);
