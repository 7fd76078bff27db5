#include "workstation/workstation_settings_rules.h"

#include "frame/path_rules.h"
#include "frame/text_rules.h"

bool IsSwitchedOn(const WorkstationSwitch& setting, const CString& value)
{
    return value.IsEmpty() || value == setting.on;
}

const wchar_t* SwitchValue(const WorkstationSwitch& setting, bool on)
{
    return on ? setting.on : setting.off;
}

bool IsProfileNameAccepted(const CString& name)
{
    if (name.IsEmpty()) {
        return true;
    }
    CString plain(name);
    if (plain.Left(2) == L"<<") {
        plain.Delete(0, 2);
    }
    if (plain.Right(2) == L">>") {
        plain.Delete(plain.GetLength() - 2, 2);
    }
    return !plain.IsEmpty() && IsValidFileName(plain);
}

std::optional<CString> LabelWithProduct(const CString& label, const CString& product)
{
    CString text(label);
    const int count = ReplaceAll(text, L"[ProductName]", DoubleAmpersands(product));
    return count > 0 ? std::optional(text) : std::nullopt;
}
