// Texts in the catalog's files. No window header.
#pragma once

#include "base/string.h"
#include "base/xml_reader.h"

#include <vector>

// No control characters and no half of a surrogate pair.
[[nodiscard]] bool IsPlainText(const CString& text);
// Plain, not blank, at most `limit` units.
[[nodiscard]] bool IsShownText(const CString& text, int limit);
[[nodiscard]] bool IsBlankText(const CString& text);
// ` name="value"` with what XML wants escaped.
[[nodiscard]] CString XmlField(const wchar_t* name, const CString& value);

// The attributes of an element, read by name. All are needed, and no others may stand there.
class CXmlFields
{
public:
    explicit CXmlFields(const std::vector<XmlAttribute>& attributes) : m_attributes(attributes) {}

    CString Read(const wchar_t* name);
    // To be asked last: each was there, once, and none is left.
    bool IsComplete() const { return !m_missing && m_read == m_attributes.size(); }

private:
    const std::vector<XmlAttribute>& m_attributes;
    std::size_t m_read = 0;
    bool m_missing = false;
};

// The base of the catalog's readers: keeps the path of the open elements ("PatchAnswer/Patch"). The fault is a mark alone: who
// asks the catalog gets a number and no sentence.
class CCatalogReader : public IXmlEvents
{
public:
    bool OnElement(const CString& name, const std::vector<XmlAttribute>& attributes, int line) final;
    bool OnElementEnd() final;
    bool OnText(const CString& text, int line) final;
    XmlFault GetFault() const final { return m_fault; }

protected:
    ~CCatalogReader() = default;
    // False refuses the document.
    virtual bool OnStart(const CString& path, CXmlFields& fields) = 0;
    virtual bool OnEnd(const CString& path) = 0;

private:
    bool Judge(bool accepted, int line);

    CString m_path;
    XmlFault m_fault;
};

// False when the document is larger than `limit`, isn't XML, or the reader refuses it.
[[nodiscard]] bool ReadCatalogXml(const char* bytes, std::size_t length, std::size_t limit,
                                  CCatalogReader& reader);
