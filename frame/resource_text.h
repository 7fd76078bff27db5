// Strings of the resource library, by way of the global resource handle.
#pragma once

#include "base/string.h"

#include <initializer_list>

// Empty when there is no such string.
[[nodiscard]] CString LoadResourceString(unsigned int id);

// What FormatResource hands to the format for an argument: numbers as they are, texts as a pointer.
template <class Argument>
Argument FormatArgument(Argument argument)
{
    return argument;
}
inline const wchar_t* FormatArgument(const CString& text)
{
    return text.GetString();
}

// The string as a printf format with the arguments; %s takes wide text.
template <class... Arguments>
[[nodiscard]] CString FormatResource(unsigned int id, const Arguments&... arguments)
{
    CString text;
    text.Format(LoadResourceString(id), FormatArgument(arguments)...);
    return text;
}

// The string as a format of the system's messages: %1, %2, ... stand for the texts.
[[nodiscard]] CString FormatResourceMessage(unsigned int id, std::initializer_list<CString> texts);
