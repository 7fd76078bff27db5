#include "online/online_property_rules.h"

namespace {

constexpr wchar_t ON[] = L"#1";
constexpr wchar_t OFF[] = L"#0";

} // namespace

const wchar_t* BooleanText(bool on)
{
    return on ? ON : OFF;
}

bool IsOn(const CString& value)
{
    return value.CompareNoCase(OFF) != 0;
}

bool LoadBooleanProperty(IPropertyStore& store, const wchar_t* name, bool defaultValue)
{
    const CString value = store.Read(name);
    if (!value.IsEmpty()) {
        return IsOn(value);
    }
    StoreBooleanProperty(store, name, defaultValue);
    return defaultValue;
}

void StoreBooleanProperty(IPropertyStore& store, const wchar_t* name, bool on)
{
    store.Write(name, BooleanText(on));
}

void StoreFeatureText(IPropertyStore& store, const FeatureText& names, bool featureOn, const CString& text)
{
    if (featureOn) {
        store.Write(names.plain, text);
        return;
    }
    store.Write(names.plain, CString());
    store.Write(names.temporary, text);
}
