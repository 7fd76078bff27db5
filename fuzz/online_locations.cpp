// Both checks of a location and the number of the update source on any text. The first byte says what the computer
// answers.
#include "fuzz/wide_input.h"
#include "online/location_rules.h"
#include "online/notice_settings.h"

namespace {

class Probe final : public ILocationProbe
{
public:
    explicit Probe(int answers) : m_answers(answers) {}
    [[nodiscard]] bool FileExists(const CString&) const override { return m_answers & 1; }
    [[nodiscard]] bool IsHostKnown(const CString& host) const override
    {
        if (host.GetLength() >= 16 || host.Find(L'\\') >= 0) {
            __builtin_trap(); // such a name must never reach the resolver
        }
        return m_answers & 2;
    }

private:
    int m_answers;
};

void Require(bool claim)
{
    if (!claim) {
        __builtin_trap();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const Probe probe(data[0]);
    const CString text = WideInput(data + 1, size - 1);
    const LocationCheckResult list = CheckListLocation(text, probe);
    Require(list != LOCATION_LIST_EMPTY && list != LOCATION_FEED_INVALID && list != LOCATION_FEED_WRONG_KIND);
    Require((list == LOCATION_LIST_WRONG_KIND) != IsListFile(text));
    const LocationCheckResult feed = CheckFeedLocation(text, probe);
    Require(feed != LOCATION_LIST_MISSING && feed != LOCATION_HOST_UNKNOWN && feed != LOCATION_LIST_EMPTY);
    Require(feed != LOCATION_FEED_WRONG_KIND || !IsFeedFile(text));
    static_cast<void>(JudgeList(list));
    static_cast<void>(JudgeFeed(feed));
    const int source = UpdateSourceOf(text);
    Require(source == UPDATE_SOURCE_MAKER || source == UPDATE_SOURCE_LIST);
    return 0;
}
