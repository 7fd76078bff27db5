#include "host/read_again.h"

#include "host/host_messages.h"
#include "host/xml_values.h"

#include <string>

namespace {

CString ReadLine(const CString& text, int& start)
{
    const int end = text.Find(L'\n', start);
    CString line = text.Mid(start, (end < 0 ? text.GetLength() : end) - start);
    start = end < 0 ? text.GetLength() : end + 1;
    return line.Trim();
}

CString LineOf(const CString& text, int number)
{
    CString line;
    for (int start = 0; number > 0 && start < text.GetLength(); --number) {
        line = ReadLine(text, start);
    }
    return line;
}

CString FirstDifferentLine(const CString& text, const CString& other)
{
    CString line;
    int otherStart = 0;
    for (int start = 0; start < text.GetLength();) {
        line = ReadLine(text, start);
        if (!(line == ReadLine(other, otherStart))) {
            break;
        }
    }
    return line;
}

XmlFault NotReadAgain(const wchar_t* file, const CString& reason, const CString& line)
{
    return {HostSentence(HostText::NotReadAgain, {file, reason, Shown(line)}), 0};
}

template <class Reader, class Content>
XmlFault Check(const wchar_t* file, const Content& content, CString (*write)(const Content&),
               const Content& (Reader::*get)() const)
{
    const CString text = write(content);
    std::string bytes;
    AppendUtf8(bytes, text);
    Reader reader;
    if (const XmlFault fault = ReadXml(bytes.data(), bytes.size(), reader)) {
        return NotReadAgain(file, fault.message, LineOf(text, fault.line));
    }
    const Content& again = (reader.*get)();
    if (again == content) {
        return {};
    }
    return NotReadAgain(file, HostSentence(HostText::ReadsDifferently),
                        FirstDifferentLine(text, write(again)));
}

} // namespace

XmlFault CheckReadsAgain(const DeploymentFile& file)
{
    return Check(L"Deployment.xml", file, WriteDeploymentFile, &CDeploymentFileReader::GetDeployment);
}

XmlFault CheckReadsAgain(const SetupDescription& description)
{
    return Check(L"Setup.xml", description, WriteSetupDescription, &CSetupDescriptionReader::GetDescription);
}
