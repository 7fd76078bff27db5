#include "host/xml_events.h"

#include "host/host_messages.h"

namespace {

HostText TextOf(XmlProblem problem)
{
    switch (problem) {
    case XmlProblem::TooLarge:
        return HostText::XmlTooLarge;
    case XmlProblem::TooDeep:
        return HostText::XmlTooDeep;
    case XmlProblem::TooLong:
        return HostText::XmlTooLong;
    case XmlProblem::TooManyPieces:
        return HostText::XmlTooManyPieces;
    case XmlProblem::TooManyAttributes:
        return HostText::XmlTooManyAttributes;
    case XmlProblem::DocumentType:
        return HostText::XmlDtd;
    case XmlProblem::Malformed:
        break;
    }
    return HostText::XmlMalformed;
}

} // namespace

XmlFault ReadXml(const char* bytes, std::size_t length, IXmlEvents& events)
{
    return ReadXml(bytes, length, events, [](XmlProblem problem, std::initializer_list<CString> details) {
        return HostSentence(TextOf(problem), details);
    });
}
