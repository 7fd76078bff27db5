// The front end of Windows builds: XmlLite, with document type declarations prohibited.
#include "base/xml_reader.h"

#include "base/ascii.h"
#include "base/com_ptr.h"
#include "base/xml_scan.h"

#include <windows.h>

#include <objbase.h>
#include <shlwapi.h>
#include <xmllite.h>

#include <algorithm>
#include <cwchar>
#include <string>

namespace {

CString ResultText(HRESULT result)
{
    CString text;
    text.Format(L"XML error 0x%08X", static_cast<unsigned>(result));
    return text;
}

// The parser is given plain ASCII. Each unit of the letters beyond travels through it as a mark and three digits, the
// mark itself as two marks, also where the author wrote them as character references: some versions of XmlLite break a
// UTF-8 sequence that crosses the end of their buffer, stop behind the first buffer of UTF-16, cut references to 16 bits
// and make blanks of references to line ends.
constexpr wchar_t TRAVEL_MARK = L'`';
constexpr std::uint32_t BYTE_ORDER_MARK = 0xFEFF;
constexpr char DIGITS[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz-_";
constexpr UINT DIGITS_OF_UNIT = 3;

bool MustTravel(std::uint32_t letter)
{
    return letter >= 0x80 || letter == TRAVEL_MARK || letter == '\t' || letter == '\n' || letter == '\r';
}

// The bytes of `&#nn;` or `&#xnn;` and the letter that it stands for; 0 for anything else, which is the parser's to judge.
std::size_t ReadReference(std::string_view text, std::size_t start, std::uint32_t& letter)
{
    if (text.substr(start, 2) != "&#") {
        return 0;
    }
    const bool hex = text.substr(start + 2, 1) == "x";
    const int base = hex ? 16 : 10;
    const std::size_t first = start + (hex ? 3 : 2);
    std::uint32_t number = 0;
    std::size_t place = first;
    for (; place < text.size() && number <= 0x10FFFF; ++place) {
        const int digit = HexDigitValue(static_cast<unsigned char>(text[place]));
        if (digit < 0 || digit >= base) {
            break;
        }
        number = number * static_cast<std::uint32_t>(base) + static_cast<std::uint32_t>(digit);
    }
    const bool surrogate = number >= 0xD800 && number < 0xE000;
    if (place == first || text.substr(place, 1) != ";" || surrogate || number > 0x10FFFF) {
        return 0;
    }
    letter = number;
    return place + 1 - start;
}

void AppendPacked(std::string& ascii, std::uint32_t unit)
{
    const char packed[] = {static_cast<char>(TRAVEL_MARK), DIGITS[unit >> 12], DIGITS[(unit >> 6) & 0x3F],
                           DIGITS[unit & 0x3F]};
    ascii.append(packed, sizeof packed);
}

wchar_t UnpackUnit(const wchar_t* digits)
{
    unsigned int unit = 0;
    for (UINT index = 0; index < DIGITS_OF_UNIT; ++index) {
        const wchar_t digit = digits[index];
        const int value = digit >= L'a'   ? digit - L'a' + 36
                          : digit == L'_' ? 63
                          : digit >= L'A' ? digit - L'A' + 10
                          : digit == L'-' ? 62
                                          : digit - L'0';
        unit = unit << 6 | static_cast<unsigned int>(value);
    }
    return static_cast<wchar_t>(unit);
}

void AppendLetter(std::string& ascii, std::uint32_t letter)
{
    if (letter == TRAVEL_MARK) {
        ascii.append(2, static_cast<char>(TRAVEL_MARK));
    } else if (letter < 0x10000) {
        AppendPacked(ascii, letter);
    } else {
        AppendPacked(ascii, 0xD800 + ((letter - 0x10000) >> 10));
        AppendPacked(ascii, 0xDC00 + (letter & 0x3FF));
    }
}

// Comments don't travel: some versions of XmlLite go on reading where a long one stood before their buffer grew. Their
// line ends do, so that the lines keep their numbers.
std::string PackLetters(std::string_view text, const std::vector<XmlRange>& comments)
{
    std::string ascii;
    ascii.reserve(text.size());
    auto comment = comments.begin();
    for (std::size_t place = 0; place < text.size();) {
        if (comment != comments.end() && place == comment->start) {
            const std::string_view hidden = text.substr(place, comment->end - place);
            ascii.append(static_cast<std::size_t>(std::count(hidden.begin(), hidden.end(), '\n')), '\n');
            place = comment++->end;
            continue;
        }
        std::uint32_t letter = 0;
        std::size_t length = text[place] == '&' ? ReadReference(text, place, letter) : 0;
        if (length > 0 && MustTravel(letter)) {
            AppendLetter(ascii, letter);
            place += length;
            continue;
        }
        length = ReadUtf8Letter(text, place, letter);
        if (letter < 0x80 && letter != TRAVEL_MARK) {
            ascii += text[place];
        } else if (letter != BYTE_ORDER_MARK || place > 0) {
            AppendLetter(ascii, letter);
        }
        place += length;
    }
    return ascii;
}

CString UnpackLetters(const wchar_t* packed, UINT length)
{
    if (!packed || !std::wmemchr(packed, TRAVEL_MARK, length)) {
        return CString(packed, static_cast<int>(length));
    }
    CString text;
    wchar_t* units = text.GetBuffer(static_cast<int>(length));
    int count = 0;
    for (UINT index = 0; index < length; ++index) {
        if (packed[index] != TRAVEL_MARK) {
            units[count++] = packed[index];
            continue;
        }
        ++index;
        if (packed[index] == TRAVEL_MARK) {
            units[count++] = TRAVEL_MARK;
        } else if (index + DIGITS_OF_UNIT <= length) {
            units[count++] = UnpackUnit(packed + index);
            index += DIGITS_OF_UNIT - 1;
        }
    }
    text.ReleaseBuffer(count);
    return text;
}

class CFeed
{
public:
    CFeed(IXmlReader& reader, IXmlEvents& events, XmlWording wording)
        : m_reader(reader), m_events(events), m_wording(wording)
    {
    }

    XmlFault Run()
    {
        XmlNodeType type = XmlNodeType_None;
        HRESULT result;
        while ((result = m_reader.Read(&type)) == S_OK) {
            if (!OnNode(type)) {
                return m_fault ? m_fault : m_events.GetFault();
            }
        }
        return result == S_FALSE ? Ended() : Malformed(result);
    }

private:
    int Line()
    {
        UINT line = 0;
        m_reader.GetLineNumber(&line);
        return static_cast<int>(line);
    }

    XmlFault Malformed(HRESULT result)
    {
        const XmlProblem problem = result == static_cast<HRESULT>(WC_E_DTDPROHIBITED)
                                       ? XmlProblem::DocumentType
                                       : XmlProblem::Malformed;
        return {m_wording(problem, {ResultText(result)}), Line()};
    }

    // Not every version of XmlLite reports a document that ends too early, or that has no element at all.
    XmlFault Ended()
    {
        if (m_depth == 0 && m_rootSeen) {
            return {};
        }
        return {m_wording(XmlProblem::Malformed, {L"the file ends too early"}), Line()};
    }

    CString Name()
    {
        const wchar_t* name = nullptr;
        m_reader.GetQualifiedName(&name, nullptr);
        return name;
    }

    CString Value()
    {
        const wchar_t* value = nullptr;
        UINT length = 0;
        m_reader.GetValue(&value, &length);
        return UnpackLetters(value, length);
    }

    bool OnNode(XmlNodeType type)
    {
        switch (type) {
        case XmlNodeType_Element:
            return OnStart();
        case XmlNodeType_EndElement:
            return OnEnd();
        case XmlNodeType_Text:
        case XmlNodeType_CDATA:
            return m_events.OnText(Value(), Line());
        case XmlNodeType_DocumentType: // an XmlLite that doesn't prohibit them by itself
            m_fault = {m_wording(XmlProblem::DocumentType, {}), Line()};
            return false;
        default:
            return true;
        }
    }

    bool OnStart()
    {
        const int line = Line();
        const CString name = Name();
        const bool empty = m_reader.IsEmptyElement();
        m_rootSeen = true;
        ++m_depth;
        std::vector<XmlAttribute> attributes;
        for (HRESULT more = m_reader.MoveToFirstAttribute(); more == S_OK;
             more = m_reader.MoveToNextAttribute()) {
            attributes.push_back({Name(), Value()});
        }
        m_reader.MoveToElement();
        if (!m_events.OnElement(name, attributes, line)) {
            return false;
        }
        return !empty || OnEnd();
    }

    bool OnEnd()
    {
        if (--m_depth < 0) {
            m_fault = {m_wording(XmlProblem::Malformed, {L"an element ends that did not begin"}), Line()};
            return false;
        }
        return m_events.OnElementEnd();
    }

    IXmlReader& m_reader;
    IXmlEvents& m_events;
    XmlWording m_wording;
    XmlFault m_fault;
    int m_depth = 0;
    bool m_rootSeen = false;
};

} // namespace

XmlFault ReadXml(const char* bytes, std::size_t length, IXmlEvents& events, XmlWording wording)
{
    const std::string_view document(bytes, length);
    std::vector<XmlRange> comments;
    if (XmlFault fault = CheckXmlMarkup(document, wording, &comments)) {
        return fault;
    }
    if (!IsUtf8(document)) {
        return {wording(XmlProblem::Malformed, {L"it is not UTF-8"}), 0};
    }
    ComPtr<IXmlReader> reader;
    const HRESULT result =
        CreateXmlReader(__uuidof(IXmlReader), reinterpret_cast<void**>(reader.GetAddressOf()), nullptr);
    if (FAILED(result)) {
        return {wording(XmlProblem::Malformed, {ResultText(result)}), 0};
    }
    reader->SetProperty(XmlReaderProperty_DtdProcessing, DtdProcessing_Prohibit);
    const std::string ascii = PackLetters(document, comments);
    ComPtr<IStream> stream;
    stream.Attach(
        SHCreateMemStream(reinterpret_cast<const BYTE*>(ascii.data()), static_cast<UINT>(ascii.size())));
    if (!stream || FAILED(reader->SetInput(stream.Get()))) {
        return {wording(XmlProblem::Malformed, {ResultText(E_OUTOFMEMORY)}), 0};
    }
    return CFeed(*reader.Get(), events, wording).Run();
}
