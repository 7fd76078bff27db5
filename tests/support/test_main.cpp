// The one main of all test programs.
#include <gtest/gtest.h>

#if !defined(ROLLOUT_NATIVE)
#include "tests/support/test_deadline.h"

#include <windows.h>

namespace {

// The native tests have the address sanitizer; here the system checks its heap after each test, so that a buffer that
// was overrun fails the test that did it and not a later one.
class HeapCheck : public testing::EmptyTestEventListener
{
    void OnTestEnd(const testing::TestInfo&) override
    {
        if (!HeapValidate(GetProcessHeap(), 0, nullptr))
            ADD_FAILURE() << "the heap is damaged";
    }
};

} // namespace
#endif

int main(int count, char** arguments)
{
    testing::InitGoogleTest(&count, arguments);
#if !defined(ROLLOUT_NATIVE)
    testing::TestEventListeners& listeners =
        testing::UnitTest::GetInstance()->listeners(); // deletes what it has
    listeners.Append(new HeapCheck);
    if (testing::TestEventListener* deadline = MakeTestDeadline())
        listeners.Append(deadline);
#endif
    return RUN_ALL_TESTS();
}
