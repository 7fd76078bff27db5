#include "online/resource_settings.h"

#include "include/resource_ids.h"

namespace {

// The opposite of the first switch: the product asks for both. It has no control and is never read here.
constexpr wchar_t PARTS_BAY_DISABLED[] = L"ZOLT_PARTSBAY_DISABLE";
constexpr int PARTS_BAY = 0; // index of its switch

} // namespace

const std::array<ResourceSwitch, RESOURCE_SWITCH_COUNT> RESOURCE_SWITCHES = {{
    {IDC_PARTS_BAY, L"ZOLT_PARTSBAY_ENABLE", true},
    {IDC_MEMBER_BAY, L"ZOLT_MEMBERBAY_ENABLE", true},
    {IDC_ROUND_TRIP, L"ZOLT_ENABLE_ROUNDTRIP", true},
    {IDC_SEND_COMPUTER_NAME, L"ZOLT_ENABLE_SEND_PC_NAME", false},
    {IDC_SEARCH_LOCATIONS, L"ZOLT_SEARCH_LOCATIONS_CUSTOM_ENABLE", true},
}};

ResourceSettings LoadResourceSettings(IPropertyStore& store)
{
    ResourceSettings settings = {};
    for (int index = 0; index < RESOURCE_SWITCH_COUNT; ++index) {
        settings[index] =
            LoadBooleanProperty(store, RESOURCE_SWITCHES[index].property, RESOURCE_SWITCHES[index].bDefault);
    }
    return settings;
}

void StoreResourceSettings(IPropertyStore& store, const ResourceSettings& settings)
{
    for (int index = 0; index < RESOURCE_SWITCH_COUNT; ++index) {
        StoreBooleanProperty(store, RESOURCE_SWITCHES[index].property, settings[index]);
        if (index == PARTS_BAY) {
            StoreBooleanProperty(store, PARTS_BAY_DISABLED, !settings[index]);
        }
    }
}
