// The front end of Windows builds: XmlLite, with document type declarations prohibited and depth limited.
#include "host/xml_events.h"

#include "host/host_messages.h"
#include "host/xml_scan.h"

#include <windows.h>

#include <objbase.h>
#include <shlwapi.h>
#include <xmllite.h>

#include <cstdio>
#include <cwchar>
#include <memory>
#include <string>

namespace {

struct ReleaseInterface
{
    void operator()(IUnknown* object) const { object->Release(); }
};
template <class T>
using Owner = std::unique_ptr<T, ReleaseInterface>;

CString ResultText(HRESULT result)
{
    CString text;
    text.Format(L"XML error 0x%08X", static_cast<unsigned>(result));
    return text;
}

// The parser is given plain ASCII and the letters beyond travel through it as `4E2D; (and the mark itself as `60;):
// some versions of XmlLite break a UTF-8 sequence that crosses the end of their buffer, stop behind the first buffer
// of UTF-16, and cut character references to 16 bits.
constexpr wchar_t TRAVEL_MARK = L'`';

std::string PackLetters(const char* bytes, std::size_t length)
{
    const CString text = TextFromUtf8(bytes, length);
    std::string ascii;
    ascii.reserve(length);
    for (int index = text[0] == 0xFEFF ? 1 : 0; index < text.GetLength(); ++index) {
        const wchar_t unit = text[index];
        if (unit < 0x80 && unit != TRAVEL_MARK) {
            ascii += static_cast<char>(unit);
            continue;
        }
        char packed[8] = {};
        std::snprintf(packed, sizeof packed, "`%X;", static_cast<unsigned>(unit));
        ascii += packed;
    }
    return ascii;
}

CString UnpackLetters(const wchar_t* packed)
{
    CString text;
    for (const wchar_t* next = packed; next && *next != 0; ++next) {
        if (*next != TRAVEL_MARK) {
            text += *next;
            continue;
        }
        wchar_t* end = nullptr;
        const wchar_t unit = static_cast<wchar_t>(std::wcstoul(next + 1, &end, 16));
        if (*end == L';' && end > next + 1) {
            text += unit;
            next = end;
        } else {
            text += *next; // the author's own, written as &#96;
        }
    }
    return text;
}

class Feed
{
public:
    Feed(IXmlReader& reader, IXmlEvents& events) : m_reader(reader), m_events(events) {}

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
        const HostText id = result == static_cast<HRESULT>(WC_E_DTDPROHIBITED)     ? HostText::XmlDtd
                            : result == static_cast<HRESULT>(SC_E_MAXELEMENTDEPTH) ? HostText::XmlTooDeep
                                                                                   : HostText::XmlMalformed;
        const CString argument =
            id == HostText::XmlTooDeep ? NumberText(XML_DEPTH_LIMIT) : ResultText(result);
        return {HostSentence(id, {argument}), Line()};
    }

    // Not every version of XmlLite reports a document that ends too early, or that has no element at all.
    XmlFault Ended()
    {
        if (m_depth == 0 && m_rootSeen) {
            return {};
        }
        return {HostSentence(HostText::XmlMalformed, {L"the file ends too early"}), Line()};
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
        m_reader.GetValue(&value, nullptr);
        return UnpackLetters(value);
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
            m_fault = {HostSentence(HostText::XmlDtd), Line()};
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
        if (++m_depth > XML_DEPTH_LIMIT) {
            m_fault = {HostSentence(HostText::XmlTooDeep, {NumberText(XML_DEPTH_LIMIT)}), line};
            return false;
        }
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
            m_fault = {HostSentence(HostText::XmlMalformed, {L"an element ends that did not begin"}), Line()};
            return false;
        }
        return m_events.OnElementEnd();
    }

    IXmlReader& m_reader;
    IXmlEvents& m_events;
    XmlFault m_fault;
    int m_depth = 0;
    bool m_rootSeen = false;
};

} // namespace

XmlFault ReadXml(const char* bytes, std::size_t length, IXmlEvents& events)
{
    if (length > XML_BYTES_LIMIT) {
        return {HostSentence(HostText::XmlTooLarge, {NumberText(XML_BYTES_LIMIT)}), 0};
    }
    if (XmlFault fault = CheckXmlMarkup(bytes, length)) {
        return fault;
    }
    void* made = nullptr;
    const HRESULT result = CreateXmlReader(__uuidof(IXmlReader), &made, nullptr);
    if (FAILED(result)) {
        return {HostSentence(HostText::XmlMalformed, {ResultText(result)}), 0};
    }
    const Owner<IXmlReader> reader(static_cast<IXmlReader*>(made));
    reader->SetProperty(XmlReaderProperty_DtdProcessing, DtdProcessing_Prohibit);
    // One more than ours, so that our own message comes first; not every XmlLite knows the property.
    reader->SetProperty(XmlReaderProperty_MaxElementDepth, XML_DEPTH_LIMIT + 1);
    if (!IsUtf8(bytes, length)) {
        return {HostSentence(HostText::XmlMalformed, {L"it is not UTF-8"}), 0};
    }
    const std::string ascii = PackLetters(bytes, length);
    const Owner<IStream> stream(
        SHCreateMemStream(reinterpret_cast<const BYTE*>(ascii.data()), static_cast<UINT>(ascii.size())));
    if (!stream || FAILED(reader->SetInput(stream.get()))) {
        return {HostSentence(HostText::XmlMalformed, {ResultText(E_OUTOFMEMORY)}), 0};
    }
    return Feed(*reader, events).Run();
}
