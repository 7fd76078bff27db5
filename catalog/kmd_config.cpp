#include "catalog/kmd_config.h"

#include "catalog/catalog_limits.h"
#include "catalog/catalog_text.h"

namespace {

class CKmdConfigReader final : public CCatalogReader
{
public:
    const CString& GetIdentity() const { return m_strIdentity; }

private:
    bool OnStart(const CString& path, CXmlFields& fields) override
    {
        if (path == L"KmdConfig") {
            return fields.Read(L"version") == L"1";
        }
        if (path != L"KmdConfig/Product" || !m_strIdentity.IsEmpty()) {
            return false;
        }
        m_strIdentity = fields.Read(L"value");
        return IsShownText(m_strIdentity, IDENTITY_LIMIT);
    }

    bool OnEnd(const CString&) override { return true; }

    CString m_strIdentity;
};

} // namespace

CString ReadProductIdentity(const char* bytes, std::size_t length)
{
    CKmdConfigReader reader;
    return ReadCatalogXml(bytes, length, CONFIG_BYTES_LIMIT, reader) ? reader.GetIdentity() : CString();
}
