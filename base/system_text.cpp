#include "base/system_text.h"

#include "base/handle.h"

namespace {

// `width` says how lines are broken: 0 as the text's author did, FORMAT_MESSAGE_MAX_WIDTH_MASK not at all.
CString FormatSystemText(DWORD code, DWORD language, DWORD width)
{
    wchar_t* text = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | width,
        nullptr, code, language, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    const CLocalOwner owner(text);
    return CString(text, static_cast<int>(length));
}

} // namespace

CString FindSystemText(unsigned long code, unsigned long language)
{
    return FormatSystemText(code, language, 0);
}

CString FindSystemSentence(unsigned long code)
{
    return FormatSystemText(code, 0, FORMAT_MESSAGE_MAX_WIDTH_MASK).Trim();
}

CString SystemErrorText(unsigned long code)
{
    const CString sentence = FindSystemSentence(code);
    return sentence.IsEmpty() ? L"error " + NumberText(static_cast<long long>(code)) : sentence;
}
