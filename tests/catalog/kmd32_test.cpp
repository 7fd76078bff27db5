// Kmd32.dll through its exports.
#include "base/handle.h"
#include "tests/support/test_folder.h"
#include "tests/support/text.h"

#include <windows.h>

#include <oleauto.h>

#include <gtest/gtest.h>

#include <string>

namespace {

class Kmd32Test : public testing::Test
{
protected:
    void SetUp() override
    {
        m_library.reset(
            LoadLibraryExW(ProgramFolder() + L"Kmd32.dll", nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
        ASSERT_TRUE(m_library);
        m_prepare = Find<void (*)()>("setMRFlag");
        m_read = Find<BSTR (*)(BSTR)>("getKMDValue");
        ASSERT_TRUE(m_prepare && m_read);
    }

    template <class Function>
    Function Find(const char* name) const
    {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(m_library.get(), name)));
    }

    CString Read(const CString& path) const
    {
        const BSTR argument = SysAllocString(path);
        const BSTR answer = m_read(argument);
        const CString text(answer, static_cast<int>(SysStringLen(answer)));
        SysFreeString(answer);
        SysFreeString(argument);
        return text;
    }

    CString ReadFile(const std::string& contents) const
    {
        m_prepare();
        return Read(m_folder.AddFile(L"Kmdconfig.xml", contents.c_str()));
    }

    CTestFolder m_folder;
    CModuleOwner m_library;
    void (*m_prepare)() = nullptr;
    BSTR (*m_read)(BSTR) = nullptr;
};

const char GOOD[] = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<KmdConfig version=\"1\">\n  <Product "
                    "value=\"ZOLT-7 \xC3\xA4\"/>\n</KmdConfig>\n";

} // namespace

TEST_F(Kmd32Test, TheIdentityStandsInTheFile)
{
    EXPECT_EQ(ReadFile(GOOD), L"ZOLT-7 \x00E4");
}

TEST_F(Kmd32Test, EachReadingIsPreparedByItself)
{
    EXPECT_EQ(ReadFile(GOOD), L"ZOLT-7 \x00E4");
    EXPECT_EQ(Read(m_folder / L"Kmdconfig.xml"), L"");
}

TEST_F(Kmd32Test, AFileThatIsMissingHasNoIdentity)
{
    m_prepare();
    EXPECT_EQ(Read(m_folder / L"Kmdconfig.xml"), L"");
    m_prepare();
    EXPECT_EQ(Read(m_folder.AddFolder(L"Kmdconfig.xml")), L"");
    m_prepare();
    const BSTR none = m_read(nullptr);
    EXPECT_EQ(SysStringLen(none), 0u);
    SysFreeString(none);
}

TEST_F(Kmd32Test, AFileThatIsNotOneHasNoIdentity)
{
    const std::string good = GOOD;
    EXPECT_EQ(ReadFile(""), L"");
    EXPECT_EQ(ReadFile("[Product]\nvalue=ZOLT-7\n"), L"");
    EXPECT_EQ(ReadFile(good.substr(0, good.size() - 14)), L"") << "cut off";
    EXPECT_EQ(ReadFile(good + std::string(70000, ' ')), L"") << "too long";
}
