// Ends a test program whose running test doesn't come back: an unexpected box, a loop that waits for a message that
// nobody sends. The runner counts that test as failed and starts the program again for the tests behind it.
#pragma once

namespace testing {
class TestEventListener;
}

// The exit code of a program that was ended so.
constexpr int TEST_OVERDUE = 124;

// The test programs' main appends it to the listeners, which delete it. Each test has the seconds that the environment
// variable ROLLOUT_TEST_SECONDS says (240 without it, 0: no limit, for a debugger). When they are over, the process's visible
// windows are printed with their texts, and the process ends with TEST_OVERDUE.
testing::TestEventListener* MakeTestDeadline();
