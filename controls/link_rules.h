// What the pages' link decides without a window.
#pragma once

#include <cstdint>

// The link text's colour. Labels with and without tags use the pair the other way round; the hosts' templates count on
// it.
[[nodiscard]] constexpr std::uint32_t LinkColour(bool hasTags, bool visited, std::uint32_t paintA,
                                                 std::uint32_t paintB)
{
    return hasTags != visited ? paintA : paintB;
}
