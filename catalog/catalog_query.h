// What the service is asked, and the numbers that answers are reported by. No window header.
#pragma once

#include "base/string.h"

// Error numbers of the network library, whose header the rules don't see; service_exchange.cpp compares them with it.
constexpr unsigned int CATALOG_TIMED_OUT = 12002;
constexpr unsigned int CATALOG_INTERNAL_ERROR = 12004; // also: the patch list could not be written
constexpr unsigned int CATALOG_ADDRESS_INVALID = 12005;
constexpr unsigned int CATALOG_SCHEME_UNKNOWN = 12006;
constexpr unsigned int CATALOG_SIGN_IN_REFUSED = 12015;
constexpr unsigned int CATALOG_NOT_FOUND = 12028;
constexpr unsigned int CATALOG_CANNOT_CONNECT = 12029;
constexpr unsigned int CATALOG_CONNECTION_BROKEN = 12030;
constexpr unsigned int CATALOG_LEFT_HTTPS = 12040;
constexpr unsigned int CATALOG_ANSWER_INVALID = 12152;
constexpr unsigned int CATALOG_REDIRECT_FAILED = 12156;

// "key=<catalog key>&product=<identity>&client=<version>", each value as UTF-8 in percent form. False for a text that is too
// long or has control characters or half a surrogate pair.
[[nodiscard]] bool ComposeQuery(const CString& key, const CString& product, const CString& client,
                                CString& query);

// Puts the query at the first "%s" of the template; the rest of it is plain text, never a format. 0 with the address, or the
// number of what is wrong with it.
[[nodiscard]] unsigned int ComposeRequestAddress(const CString& addressTemplate, const CString& query,
                                                 CString& address);

[[nodiscard]] bool IsRedirectStatus(unsigned int status);
// 0 for 200. Redirections are followed before this is asked.
[[nodiscard]] unsigned int ErrorOfStatus(unsigned int status);
// The number under which a failed call is reported. Time decides first: which number a limit ends with differs between systems
// and steps.
[[nodiscard]] unsigned int ErrorOfCall(unsigned int error, unsigned long long milliseconds);
