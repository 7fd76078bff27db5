// How the online pages write their choices down as properties.
//
// A Boolean is "#1" or "#0": it becomes a number when the product's installation writes it to the registry. A text that
// only counts while a feature is on has two properties: the plain one is what the product uses, empty while the feature
// is off; the temporary one is the page's own memory of what stood there when the feature was last off.
#pragma once

#include "base/string.h"

// Where a page's properties lie: with the host, or straight in the product's database.
class IPropertyStore
{
public:
    // Empty when there is no such property and when it can't be read.
    [[nodiscard]] virtual CString Read(const wchar_t* name) = 0;
    // Failures aren't reported: the pages show none.
    virtual void Write(const wchar_t* name, const CString& value) = 0;

protected:
    ~IPropertyStore() = default;
};

// Characters that the pages have room for when they read a property, the closing zero included.
constexpr int PROPERTY_CAPACITY = 1024;

[[nodiscard]] const wchar_t* BooleanText(bool on);

// Only "#0" is off; any other text counts as on.
[[nodiscard]] bool IsOn(const CString& value);

// What the property says. A missing one is written at once, as the default.
[[nodiscard]] bool LoadBooleanProperty(IPropertyStore& store, const wchar_t* name, bool defaultValue);
void StoreBooleanProperty(IPropertyStore& store, const wchar_t* name, bool on);

// A text that only counts while its feature is on.
struct FeatureText
{
    const wchar_t* plain;
    const wchar_t* temporary;
};
// While the feature is on its temporary property keeps what it held.
void StoreFeatureText(IPropertyStore& store, const FeatureText& names, bool featureOn, const CString& text);
