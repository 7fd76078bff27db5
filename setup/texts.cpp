#include "setup/texts.h"

#include "base/fill_text.h"
#include "setup/text_forms.h"
#include "window/module.h"

namespace {

// With a size of 0 the call hands out the resource itself, which has no closing zero.
CString LoadText(HMODULE module, unsigned int id)
{
    const wchar_t* text = nullptr;
    const int length = LoadStringW(module, id, reinterpret_cast<wchar_t*>(&text), 0);
    return CString(text, length);
}

} // namespace

CString SetupText(unsigned int id, std::initializer_list<CString> arguments)
{
    return FillText(LoadText(_Module.GetModuleInstance(), id), arguments);
}

CString PageTitle(const PageRow& page)
{
    const CString caption = page.caption ? PageText(page.caption) : CString();
    return caption.IsEmpty() ? StemInWords(page.stem) : caption;
}

CString PageText(unsigned int id)
{
    const HMODULE library = GetModuleHandleW(L"WizText.dll");
    return library ? LoadText(library, id) : CString();
}
