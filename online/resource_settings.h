// The switches of the online resources page and the order in which their properties are read and written.
#pragma once

#include "online/online_property_rules.h"

#include <array>

struct ResourceSwitch
{
    int control; // a check box
    const wchar_t* property;
    bool bDefault;
};

constexpr int RESOURCE_SWITCH_COUNT = 5;
extern const std::array<ResourceSwitch, RESOURCE_SWITCH_COUNT> RESOURCE_SWITCHES;

// On or off, in the order of RESOURCE_SWITCHES.
using ResourceSettings = std::array<bool, RESOURCE_SWITCH_COUNT>;

// Writes those that are missing.
[[nodiscard]] ResourceSettings LoadResourceSettings(IPropertyStore& store);
void StoreResourceSettings(IPropertyStore& store, const ResourceSettings& settings);
