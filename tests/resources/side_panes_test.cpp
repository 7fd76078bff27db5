// The HTML files beside the resource library.
#include "include/page_table.h"
#include "tests/resources/language_library.h"
#include "tests/support/test_folder.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>

namespace {

class SidePanes : public testing::TestWithParam<std::string>
{
protected:
    CLanguageLibrary m_library{GetParam()};

    std::string Read(const CString& name) const
    {
        std::ifstream file(Utf8(m_library.GetFolder() + name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    static std::set<std::string> FindFiles(const CString& folder)
    {
        std::set<std::string> names;
        WIN32_FIND_DATAW found = {};
        const CFindOwner search(FindFirstFileW(folder + L"*.html", &found));
        if (search) {
            do {
                names.insert(Utf8(CString(found.cFileName)));
            } while (FindNextFileW(search.get(), &found));
        }
        return names;
    }
};

INSTANTIATE_TEST_SUITE_P(Languages, SidePanes, testing::ValuesIn(BuiltLanguages()), TestNameOfLanguage);

// Those of the table's pages.
std::set<std::string> PageFiles()
{
    std::set<std::string> files;
    for (const PageRow& page : PAGE_TABLE) {
        if (page.IsWritten()) {
            files.insert(Utf8(page.helpFile));
        }
    }
    return files;
}

CString Wide(const std::string& ascii)
{
    CString text;
    for (const char character : ascii) {
        text += static_cast<wchar_t>(character);
    }
    return text;
}

// The values of an attribute in the file's order.
std::vector<std::string> AttributeValues(const std::string& html, const std::string& attribute)
{
    std::vector<std::string> values;
    const std::string opening = attribute + "=\"";
    for (size_t at = html.find(opening); at != std::string::npos; at = html.find(opening, at)) {
        at += opening.size();
        values.push_back(html.substr(at, html.find('"', at) - at));
    }
    return values;
}

} // namespace

TEST_P(SidePanes, EveryPageHasAFileWithText)
{
    for (const std::string& name : PageFiles()) {
        EXPECT_NE(Read(Wide(name)).find("<p>"), std::string::npos) << name;
    }
}

TEST_P(SidePanes, EveryLinkLeadsToAFile)
{
    for (const std::string& name : FindFiles(m_library.GetFolder())) {
        const std::string html = Read(Wide(name));
        for (const char* attribute : {"href", "src"}) {
            for (const std::string& target : AttributeValues(html, attribute)) {
                EXPECT_TRUE(FileExists(m_library.GetFolder() + Wide(target)))
                    << name << " leads to " << target;
            }
        }
    }
}

TEST_P(SidePanes, EveryFileIsReachedFromAPage)
{
    std::set<std::string> reached = PageFiles();
    for (size_t before = 0; before != reached.size();) {
        before = reached.size();
        for (const std::string& name : std::set<std::string>(reached)) {
            for (const std::string& target : AttributeValues(Read(Wide(name)), "href")) {
                reached.insert(target);
            }
        }
    }
    EXPECT_EQ(FindFiles(m_library.GetFolder()), reached);
}

TEST_P(SidePanes, TheFilesAreThoseOfEnglish)
{
    EXPECT_EQ(FindFiles(m_library.GetFolder()), FindFiles(CLanguageLibrary("en-US").GetFolder()));
}
