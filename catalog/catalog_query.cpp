#include "catalog/catalog_query.h"

#include "base/ascii.h"
#include "base/number_text.h"
#include "catalog/catalog_limits.h"
#include "catalog/catalog_text.h"
#include "catalog/web_address.h"

#include <string>

namespace {

constexpr unsigned int FIRST_NETWORK_ERROR = 12001;
constexpr unsigned int LAST_NETWORK_ERROR = 12175;

bool StandsPlain(char byte)
{
    const auto unit = static_cast<wchar_t>(static_cast<unsigned char>(byte));
    return IsAsciiLetter(unit) || IsAsciiDigit(unit) || byte == '-' || byte == '.' || byte == '_' ||
           byte == '~';
}

void AppendPercentForm(CString& query, const CString& value)
{
    std::string bytes;
    AppendUtf8(bytes, value);
    for (const char byte : bytes) {
        if (StandsPlain(byte)) {
            query += static_cast<wchar_t>(byte);
        } else {
            query += L"%" + HexText(static_cast<unsigned char>(byte), 2, HexLetters::Capital);
        }
    }
}

} // namespace

bool ComposeQuery(const CString& key, const CString& product, const CString& client, CString& query)
{
    query = L"key=";
    for (const CString* value : {&key, &product}) {
        if (value->GetLength() > IDENTITY_LIMIT || !IsPlainText(*value)) {
            return false;
        }
    }
    AppendPercentForm(query, key);
    query += L"&product=";
    AppendPercentForm(query, product);
    query += L"&client=";
    AppendPercentForm(query, client);
    return true;
}

unsigned int ComposeRequestAddress(const CString& addressTemplate, const CString& query, CString& address)
{
    const int place = addressTemplate.Find(L"%s");
    if (place < 0) {
        return CATALOG_ADDRESS_INVALID;
    }
    address = addressTemplate.Left(place) + query + addressTemplate.Mid(place + 2);
    if (IsWebAddress(address, REQUEST_ADDRESS_LIMIT)) {
        return 0;
    }
    const int scheme = address.Find(L"://");
    const CString name = address.Left(scheme);
    const bool isKnown = name.CompareNoCase(L"http") == 0 || name.CompareNoCase(L"https") == 0;
    return scheme > 0 && !isKnown ? CATALOG_SCHEME_UNKNOWN : CATALOG_ADDRESS_INVALID;
}

bool IsRedirectStatus(unsigned int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

unsigned int ErrorOfStatus(unsigned int status)
{
    switch (status) {
    case 200:
        return 0;
    case 0: // no answer at all
        return CATALOG_CONNECTION_BROKEN;
    case 401:
    case 403:
    case 407:
        return CATALOG_SIGN_IN_REFUSED;
    case 404:
    case 410:
        return CATALOG_NOT_FOUND;
    default:
        return CATALOG_ANSWER_INVALID;
    }
}

unsigned int ErrorOfCall(unsigned int error, unsigned long long milliseconds)
{
    constexpr unsigned long long CLOCK_STEP = 100; // a limit may end a little early by another clock
    if (milliseconds + CLOCK_STEP >= STEP_TIME_LIMIT) {
        return CATALOG_TIMED_OUT;
    }
    const bool isOwn = error >= FIRST_NETWORK_ERROR && error <= LAST_NETWORK_ERROR;
    return isOwn ? error : CATALOG_CONNECTION_BROKEN; // a socket's number: it broke off
}
