#include "base/xml_scan.h"

#include "base/xml_limits.h"

#include <algorithm>

namespace {

class CMarkupScan
{
public:
    CMarkupScan(std::string_view text, XmlWording wording, std::vector<XmlRange>* comments)
        : m_text(text), m_wording(wording), m_comments(comments)
    {
    }

    XmlFault Run()
    {
        if (m_text.find('\0') != m_text.npos) {
            return Malformed(0, L"it holds a zero byte; it is not UTF-8");
        }
        while (!m_fault && m_complete) {
            const std::size_t textStart = m_place;
            m_place = std::min(m_text.find('<', m_place), m_text.size());
            CheckLength(textStart, m_place, XML_TEXT_LIMIT, L"A text");
            if (m_fault || m_place == m_text.size()) {
                break;
            }
            const std::size_t start = m_place;
            ScanPiece();
            CheckCounts(start);
        }
        if (!m_fault && !(m_complete && m_depth == 0 && m_rootSeen)) {
            const std::size_t last = m_text.find_last_not_of(" \t\r\n");
            Fail(last == m_text.npos ? 0 : last, MalformedText(L"the file ends too early"));
        }
        return m_fault;
    }

private:
    // From "<" to behind the end of what it starts.
    void ScanPiece()
    {
        const std::size_t start = m_place;
        if (StartsWith("<!--")) {
            ScanComment();
        } else if (StartsWith("<![CDATA[")) {
            Skip("]]>", 9);
            CheckLength(start, m_place, XML_TEXT_LIMIT, L"A CDATA section");
        } else if (StartsWith("<?")) {
            Skip("?>", 2);
            CheckLength(start, m_place, XML_TEXT_LIMIT, L"A processing instruction");
            const std::string_view instruction = m_text.substr(start, m_place - start);
            if (m_complete && instruction.substr(0, 5) == "<?xml" && NamesOtherEncoding(instruction)) {
                Fail(start, MalformedText(L"its encoding is not UTF-8"));
            }
        } else if (StartsWith("<!")) {
            Fail(start, m_wording(XmlProblem::DocumentType, {}));
        } else {
            ScanTag();
        }
    }

    void CheckCounts(std::size_t start)
    {
        if (m_depth < 0) {
            Fail(start, MalformedText(L"an element ends that did not begin"));
        } else if (m_depth > XML_DEPTH_LIMIT) {
            Fail(start, m_wording(XmlProblem::TooDeep, {NumberText(XML_DEPTH_LIMIT)}));
        } else if (m_text.substr(start, 2) != "</" && ++m_pieces > XML_PIECES_LIMIT) {
            Fail(start, m_wording(XmlProblem::TooManyPieces, {NumberText(XML_PIECES_LIMIT)}));
        }
    }

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
        m_place = m_complete ? found + end.size() : m_text.size();
    }

    void ScanComment()
    {
        const std::size_t start = m_place;
        Skip("--", 4);
        if (m_complete && m_place < m_text.size() && m_text[m_place] != '>') {
            Fail(m_place, MalformedText(L"two hyphens stand inside a comment"));
        }
        m_complete = m_complete && m_place < m_text.size();
        m_place = std::min(m_place + 1, m_text.size());
        CheckLength(start, m_place, XML_COMMENT_LIMIT, L"A comment");
        if (m_comments && !m_fault) {
            m_comments->push_back({start, m_place});
        }
    }

    void ScanTag()
    {
        const std::size_t start = m_place;
        const bool closing = StartsWith("</");
        std::size_t attributes = 0;
        std::size_t valueBytes = 0;
        std::size_t end = m_place + 1;
        for (; end < m_text.size() && m_text[end] != '>' && !m_fault; ++end) {
            if (m_text[end] != '"' && m_text[end] != '\'') {
                continue;
            }
            const std::size_t close = std::min(m_text.find(m_text[end], end + 1), m_text.size());
            CheckLength(end, close, XML_TEXT_LIMIT, L"The value of an attribute");
            if (++attributes > XML_ATTRIBUTES_LIMIT) {
                Fail(end, m_wording(XmlProblem::TooManyAttributes, {NumberText(XML_ATTRIBUTES_LIMIT)}));
            }
            valueBytes += close - end;
            end = std::min(close, m_text.size() - 1);
        }
        CheckLength(start + valueBytes, end, XML_TAG_LIMIT, L"A tag without its values");
        m_complete = end < m_text.size();
        m_rootSeen = true;
        m_depth += closing ? -1 : (m_complete && m_text[end - 1] == '/' ? 0 : 1);
        m_place = m_complete ? end + 1 : m_text.size();
    }

    void CheckLength(std::size_t start, std::size_t end, std::size_t limit, const wchar_t* what)
    {
        if (end - start > limit) {
            Fail(start, m_wording(XmlProblem::TooLong, {what, NumberText(static_cast<long long>(limit))}));
        }
    }

    CString MalformedText(const wchar_t* reason) const { return m_wording(XmlProblem::Malformed, {reason}); }

    // Keeps the first.
    void Fail(std::size_t place, const CString& message)
    {
        if (!m_fault) {
            const auto lines =
                std::count(m_text.begin(), m_text.begin() + static_cast<std::ptrdiff_t>(place), '\n');
            m_fault = {message, 1 + static_cast<int>(lines)};
        }
    }

    XmlFault Malformed(std::size_t place, const wchar_t* reason)
    {
        Fail(place, MalformedText(reason));
        return m_fault;
    }

    std::string_view m_text;
    XmlWording m_wording;
    std::vector<XmlRange>* m_comments;
    XmlFault m_fault;
    std::size_t m_place = 0;
    std::size_t m_pieces = 0;
    int m_depth = 0;
    bool m_rootSeen = false;
    bool m_complete = true;
};

} // namespace

XmlFault CheckXmlMarkup(std::string_view document, XmlWording wording, std::vector<XmlRange>* comments)
{
    if (document.size() > XML_BYTES_LIMIT) {
        return {wording(XmlProblem::TooLarge, {NumberText(XML_BYTES_LIMIT)}), 0};
    }
    return CMarkupScan(document, wording, comments).Run();
}

std::size_t ReadUtf8Letter(std::string_view text, std::size_t place, std::uint32_t& letter)
{
    const auto byteAt = [&](std::size_t index) {
        return index < text.size() ? static_cast<std::uint32_t>(static_cast<unsigned char>(text[index])) : 0u;
    };
    const std::uint32_t first = byteAt(place);
    if (first < 0x80) {
        letter = first;
        return 1;
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    letter = first & (0xFFu >> (length + 1));
    for (std::size_t index = 1; index < length; ++index) {
        const std::uint32_t byte = byteAt(place + index);
        if ((byte & 0xC0) != 0x80) {
            return 0;
        }
        letter = (letter << 6) | (byte & 0x3F);
    }
    constexpr std::uint32_t LEAST[] = {0, 0, 0x80, 0x800, 0x10000}; // shorter forms are the only ones
    const bool surrogate = letter >= 0xD800 && letter < 0xE000;
    const bool valid = first >= 0xC0 && first < 0xF8 && letter >= LEAST[length] && letter <= 0x10FFFF;
    return valid && !surrogate ? length : 0;
}

bool IsUtf8(std::string_view text)
{
    std::uint32_t letter = 0;
    for (std::size_t place = 0; place < text.size();) {
        const std::size_t length = ReadUtf8Letter(text, place, letter);
        if (length == 0) {
            return false;
        }
        place += length;
    }
    return true;
}
