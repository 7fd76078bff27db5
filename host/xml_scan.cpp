#include "host/xml_scan.h"

#include "host/host_messages.h"

#include <algorithm>
#include <string_view>

namespace {

class MarkupScan
{
public:
    explicit MarkupScan(std::string_view text) : m_text(text) {}

    XmlFault Run()
    {
        if (m_text.find('\0') != m_text.npos) {
            return Malformed(0, L"it holds a zero byte; it is not UTF-8");
        }
        while ((m_place = m_text.find('<', m_place)) != m_text.npos) {
            const std::size_t start = m_place;
            if (StartsWith("<!--")) {
                Skip("-->", 4);
            } else if (StartsWith("<![CDATA[")) {
                Skip("]]>", 9);
            } else if (StartsWith("<?")) {
                Skip("?>", 2);
                if (m_complete && m_text.substr(start, 5) == "<?xml" &&
                    NamesOtherEncoding(m_text.substr(start, m_place - start))) {
                    return Malformed(start, L"its encoding is not UTF-8");
                }
            } else if (StartsWith("<!")) {
                return {HostSentence(HostText::XmlDtd), LineOf(start)};
            } else {
                SkipTag();
            }
            if (m_depth < 0) {
                return Malformed(start, L"an element ends that did not begin");
            }
            if (m_place == m_text.npos) {
                break;
            }
        }
        const bool complete = m_complete && m_depth == 0 && m_rootSeen;
        const std::size_t last = m_text.find_last_not_of(" \t\r\n");
        return complete ? XmlFault() : Malformed(last == m_text.npos ? 0 : last, L"the file ends too early");
    }

private:
    // A declaration that names another encoding than UTF-8.
    static bool NamesOtherEncoding(std::string_view declaration)
    {
        const std::size_t name = declaration.find("encoding");
        const std::size_t quote = name == declaration.npos ? name : declaration.find_first_of("\"'", name);
        if (quote == declaration.npos) {
            return false;
        }
        const std::size_t end = declaration.find(declaration[quote], quote + 1);
        const std::string_view value = declaration.substr(quote + 1, end - quote - 1);
        const CString encoding = TextFromUtf8(value.data(), value.size());
        return encoding.CompareNoCase(L"utf-8") != 0 && encoding.CompareNoCase(L"us-ascii") != 0;
    }

    bool StartsWith(std::string_view mark) const { return m_text.substr(m_place, mark.size()) == mark; }

    void Skip(std::string_view end, std::size_t from)
    {
        const std::size_t found = m_text.find(end, m_place + from);
        m_complete = found != m_text.npos;
        m_place = m_complete ? found + end.size() : m_text.npos;
    }

    void SkipTag()
    {
        const bool closing = StartsWith("</");
        char quote = 0;
        std::size_t end = m_place + 1;
        for (; end < m_text.size() && (quote != 0 || m_text[end] != '>'); ++end) {
            const char byte = m_text[end];
            if (quote != 0) {
                quote = byte == quote ? char{0} : quote;
            } else if (byte == '"' || byte == '\'') {
                quote = byte;
            }
        }
        m_complete = end < m_text.size();
        m_rootSeen = true;
        m_depth += closing ? -1 : (m_complete && m_text[end - 1] == '/' ? 0 : 1);
        m_place = m_complete ? end + 1 : m_text.npos;
    }

    int LineOf(std::size_t place) const
    {
        return 1 + static_cast<int>(
                       std::count(m_text.begin(), m_text.begin() + static_cast<std::ptrdiff_t>(place), '\n'));
    }

    XmlFault Malformed(std::size_t place, const wchar_t* reason) const
    {
        return {HostSentence(HostText::XmlMalformed, {reason}), LineOf(place)};
    }

    std::string_view m_text;
    std::size_t m_place = 0;
    int m_depth = 0;
    bool m_rootSeen = false;
    bool m_complete = true;
};

} // namespace

XmlFault CheckXmlMarkup(const char* bytes, std::size_t length)
{
    return MarkupScan(std::string_view(bytes, length)).Run();
}

bool IsUtf8(const char* bytes, std::size_t length)
{
    const std::string_view rest(bytes, length);
    constexpr std::string_view REPLACEMENT = "\xEF\xBF\xBD";
    const CString text = TextFromUtf8(bytes, length);
    // What the decoding replaced was no UTF-8; what the author wrote as the replacement character was.
    int replaced = 0;
    for (int index = 0; index < text.GetLength(); ++index) {
        replaced += text[index] == 0xFFFD;
    }
    for (std::size_t place = 0; (place = rest.find(REPLACEMENT, place)) != rest.npos;
         place += REPLACEMENT.size()) {
        --replaced;
    }
    return replaced == 0;
}
