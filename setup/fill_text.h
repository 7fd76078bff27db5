// Texts with numbered holes: "%1" to "%9" take the arguments, "%%" stands for one "%". A translation may order the
// holes as it likes. What is filled in is never looked at again, so a "%1" in a name stays.
//
// And texts brought into the form that they are shown in.
#pragma once

#include "base/string.h"

#include <initializer_list>

// A hole without an argument stays as it stands, and so does a "%" in front of anything else.
CString FillText(const CString& text, std::initializer_list<CString> arguments);

// A box's text in one line of output: a blank stands for the line ends between two lines, however many they are.
CString OneLine(const CString& text);

// A text as HTML shows it: nothing in it is taken for a tag, and its lines stay lines.
CString HtmlText(const CString& text);
