// The front end of builds without Windows: the same events as XmlLite gives, from expat.
#include "base/xml_reader.h"

#include "base/xml_scan.h"

#include <expat.h>

#include <cstring>
#include <memory>

namespace {

struct Feed
{
    XML_Parser parser;
    IXmlEvents& events;
    XmlWording wording;
    XmlFault fault;

    int Line() const { return static_cast<int>(XML_GetCurrentLineNumber(parser)); }
    void Stop() { XML_StopParser(parser, XML_FALSE); }
    void Fail(const CString& message)
    {
        fault = {message, Line()};
        Stop();
    }
};

CString Wide(const char* text)
{
    return TextFromUtf8(text, std::strlen(text));
}

void OnStart(void* user, const char* name, const char** attributes)
{
    Feed& feed = *static_cast<Feed*>(user);
    if (feed.fault || feed.events.GetFault()) {
        return;
    }
    std::vector<XmlAttribute> list;
    for (; *attributes; attributes += 2) {
        list.push_back({Wide(attributes[0]), Wide(attributes[1])});
    }
    if (!feed.events.OnElement(Wide(name), list, feed.Line())) {
        feed.Stop();
    }
}

void OnEnd(void* user, const char*)
{
    Feed& feed = *static_cast<Feed*>(user);
    if (feed.fault || feed.events.GetFault()) {
        return;
    }
    if (!feed.events.OnElementEnd()) {
        feed.Stop();
    }
}

void OnCharacters(void* user, const char* text, int length)
{
    Feed& feed = *static_cast<Feed*>(user);
    if (!feed.fault && !feed.events.GetFault() &&
        !feed.events.OnText(TextFromUtf8(text, static_cast<std::size_t>(length)), feed.Line())) {
        feed.Stop();
    }
}

void OnDoctype(void* user, const char*, const char*, const char*, int)
{
    Feed& feed = *static_cast<Feed*>(user);
    feed.Fail(feed.wording(XmlProblem::DocumentType, {}));
}

} // namespace

XmlFault ReadXml(const char* bytes, std::size_t length, IXmlEvents& events, XmlWording wording)
{
    const std::string_view document(bytes, length);
    if (XmlFault fault = CheckXmlMarkup(document, wording)) {
        return fault;
    }
    if (!IsUtf8(document)) {
        return {wording(XmlProblem::Malformed, {L"it is not UTF-8"}), 0};
    }
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate(nullptr),
                                                                         XML_ParserFree);
    Feed feed{parser.get(), events, wording, {}};
    XML_SetUserData(parser.get(), &feed);
    XML_SetElementHandler(parser.get(), OnStart, OnEnd);
    XML_SetCharacterDataHandler(parser.get(), OnCharacters);
    XML_SetStartDoctypeDeclHandler(parser.get(), OnDoctype);
    const bool parsed = XML_Parse(parser.get(), bytes, static_cast<int>(length), XML_TRUE) == XML_STATUS_OK;
    if (feed.fault || events.GetFault()) {
        return feed.fault ? feed.fault : events.GetFault();
    }
    if (!parsed) {
        return {wording(XmlProblem::Malformed, {Wide(XML_ErrorString(XML_GetErrorCode(parser.get())))}),
                feed.Line()};
    }
    return {};
}
