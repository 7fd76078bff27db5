// Names of properties in an installer's texts.
#include "host/property_names.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<CString> NamesIn(const CString& text)
{
    std::vector<CString> names;
    ForEachIdentifier(text, [&](const CString& name) { names.push_back(name); });
    return names;
}

using Names = std::vector<CString>;

} // namespace

TEST(PropertyNames, StandInBracketsConditionsAndLists)
{
    EXPECT_EQ(NamesIn(L"#[A_B]"), Names{L"A_B"});
    EXPECT_EQ(NamesIn(L"A_B=\"#1\" AND NOT %C"), (Names{L"A_B", L"AND", L"NOT", L"C"}));
    EXPECT_EQ(NamesIn(L"A_B;c.d"), (Names{L"A_B", L"c.d"}));
}

TEST(PropertyNames, AreWholeWords)
{
    EXPECT_EQ(NamesIn(L"MY_A_B A_B2"), (Names{L"MY_A_B", L"A_B2"}));
}

TEST(PropertyNames, DoNotBeginWithADigitOrADot)
{
    EXPECT_EQ(NamesIn(L"27.0 .A 1A_B"), Names{});
    EXPECT_EQ(NamesIn(L""), Names{});
}
