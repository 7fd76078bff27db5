// The two halves of reading foreign XML: a front end turns bytes into events (XmlLite on Windows, expat for the fuzzers), and
// the rules of a file turn events into what it describes. The rules therefore see the same on every build.
#pragma once

#include "base/string.h"

#include <cstddef>
#include <initializer_list>
#include <vector>

struct XmlAttribute
{
    CString name;
    CString value;
};

// The first thing found wrong. Line 0: the file as a whole.
struct XmlFault
{
    CString message; // empty: nothing is wrong
    int line = 0;
    explicit operator bool() const { return !message.IsEmpty(); }
};

// What the front end itself refuses, with what its sentence names.
enum class XmlProblem
{
    Malformed,         // the parser's words
    TooLarge,          // the limit in bytes
    TooDeep,           // the limit of nested elements
    TooLong,           // what is too long, the limit in bytes
    TooManyPieces,     // the limit of elements and comments
    TooManyAttributes, // the limit in one element
    DocumentType,
};
// The sentence for who reads the file; never empty.
using XmlWording = CString (*)(XmlProblem problem, std::initializer_list<CString> details);

class IXmlEvents
{
public:
    // Called for each element; false ends the reading, GetFault says why.
    virtual bool OnElement(const CString& name, const std::vector<XmlAttribute>& attributes, int line) = 0;
    virtual bool OnElementEnd() = 0;
    // Text between elements, in pieces; blank text is reported as well.
    virtual bool OnText(const CString& text, int line) = 0;
    virtual XmlFault GetFault() const = 0;

protected:
    ~IXmlEvents() = default;
};

// Feeds the document to the rules. DTDs are refused, names with a prefix are reported as they stand. The fault is that
// of the first look (xml_scan.h), of the parser or of the rules.
[[nodiscard]] XmlFault ReadXml(const char* bytes, std::size_t length, IXmlEvents& events, XmlWording wording);
