// The seam at which a test makes a file operation fail. The builder that ships has nothing behind it; the tests'
// flavour of the library (rollout_build_with_faults) is compiled with ROLLOUT_FILE_FAULTS and counts each operation.
#pragma once

#ifdef ROLLOUT_FILE_FAULTS
// True when the operation that is about to be done has to fail; the last error is then set.
[[nodiscard]] bool IsFaultDue();
void CountFlush();
#else
[[nodiscard]] constexpr bool IsFaultDue()
{
    return false;
}
constexpr void CountFlush()
{
}
#endif
