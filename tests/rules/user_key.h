// Keys of a user's additions for tests on snapshots.
#pragma once

#include "base/string.h"

// The key of that number; keys sort as their numbers do.
inline CString UserKey(int number)
{
    CString digits = NumberText(number);
    while (digits.GetLength() < 12) {
        digits = L"0" + digits;
    }
    return L"TARN_0D7A5C1E_0000_4000_8000_" + digits;
}
