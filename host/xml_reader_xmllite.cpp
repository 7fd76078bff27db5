// The front end of Windows builds: XmlLite, with document type declarations prohibited and depth limited.
#include "host/xml_events.h"

#include "host/host_messages.h"

#include <windows.h>

#include <objbase.h>
#include <shlwapi.h>
#include <xmllite.h>

#include <memory>

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
        return value;
    }

    bool OnNode(XmlNodeType type)
    {
        switch (type) {
        case XmlNodeType_Element:
            return OnStart();
        case XmlNodeType_EndElement:
            --m_depth;
            return m_events.OnElementEnd();
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
        if (empty) {
            --m_depth;
            return m_events.OnElementEnd();
        }
        return true;
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
    void* made = nullptr;
    const HRESULT result = CreateXmlReader(__uuidof(IXmlReader), &made, nullptr);
    if (FAILED(result)) {
        return {HostSentence(HostText::XmlMalformed, {ResultText(result)}), 0};
    }
    const Owner<IXmlReader> reader(static_cast<IXmlReader*>(made));
    reader->SetProperty(XmlReaderProperty_DtdProcessing, DtdProcessing_Prohibit);
    // One more than ours, so that our own message comes first; not every XmlLite knows the property.
    reader->SetProperty(XmlReaderProperty_MaxElementDepth, XML_DEPTH_LIMIT + 1);
    const Owner<IStream> stream(
        SHCreateMemStream(reinterpret_cast<const BYTE*>(bytes), static_cast<UINT>(length)));
    if (!stream || FAILED(reader->SetInput(stream.get()))) {
        return {HostSentence(HostText::XmlMalformed, {ResultText(E_OUTOFMEMORY)}), 0};
    }
    return Feed(*reader, events).Run();
}
