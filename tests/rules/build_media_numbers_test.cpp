// The numbers that media give up for added files.
#include "builder/media_numbers.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

// The ends of the media after giving up, in the order of the media.
std::vector<CString> EndsAfter(const std::vector<const wchar_t*>& ends, long long lastFile)
{
    TableSnapshot table{{L"DiskId", L"LastSequence"}, {L"i2", L"i2"}, 1, {}};
    std::vector<CString> disks;
    for (const wchar_t* end : ends) {
        disks.push_back(NumberText(static_cast<int>(disks.size()) + 1));
        table.rows[{disks.back()}] = {disks.back(), end};
    }
    FreeReservedNumbers(WriteTable(&table), lastFile);
    std::vector<CString> after;
    for (const CString& disk : disks) {
        after.push_back(table.rows.at({disk})[1]);
    }
    return after;
}

using Ends = std::vector<CString>;

} // namespace

TEST(ReservedNumbers, AMediumEndsAtItsLastFile)
{
    EXPECT_EQ(EndsAfter({L"32767"}, 7), Ends{L"7"});
}

TEST(ReservedNumbers, MediaBeforeTheLastFileKeepTheirEnds)
{
    EXPECT_EQ(EndsAfter({L"5", L"20", L"32767"}, 25), (Ends{L"5", L"20", L"25"}));
}

TEST(ReservedNumbers, EmptyMediaBehindTheLastFileKeepTheirOrder)
{
    EXPECT_EQ(EndsAfter({L"7", L"20000", L"32767"}, 7), (Ends{L"7", L"8", L"9"}));
    EXPECT_EQ(EndsAfter({L"10", L"20000", L"32767"}, 7), (Ends{L"7", L"8", L"9"}));
    EXPECT_EQ(EndsAfter({L"32767", L"20000", L"10"}, 7), (Ends{L"9", L"8", L"7"}));
}

TEST(ReservedNumbers, MediaThatEndTogetherStayTogether)
{
    EXPECT_EQ(EndsAfter({L"32767", L"32767"}, 7), (Ends{L"7", L"7"}));
}

TEST(ReservedNumbers, AMediumOfAProductWithoutFilesTakesOneNumber)
{
    EXPECT_EQ(EndsAfter({L"32767"}, 0), Ends{L"1"});
    EXPECT_EQ(EndsAfter({L"0"}, 0), Ends{L"0"});
}

TEST(ReservedNumbers, AFileBeyondAllMediaChangesNone)
{
    EXPECT_EQ(EndsAfter({L"5", L""}, 9), (Ends{L"5", L""}));
}
