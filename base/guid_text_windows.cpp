#include "base/guid_text.h"

#include <windows.h>

#include <rpc.h>

#include <memory>

namespace {

// A GUID that is unique on this machine only serves as well: it names rows of one database.
bool IsUuidSuccess(RPC_STATUS status)
{
    return status == RPC_S_OK || status == RPC_S_UUID_LOCAL_ONLY;
}

struct FreeRpcString
{
    void operator()(wchar_t* text) const
    {
        auto rpcText = reinterpret_cast<RPC_WSTR>(text);
        ::RpcStringFreeW(&rpcText);
    }
};

} // namespace

CString NewGuidText()
{
    UUID uuid = {};
    RPC_WSTR text = nullptr;
    if (!IsUuidSuccess(::UuidCreate(&uuid)) || !IsUuidSuccess(::UuidToStringW(&uuid, &text))) {
        return CString();
    }
    const std::unique_ptr<wchar_t, FreeRpcString> owner(reinterpret_cast<wchar_t*>(text));
    return CString(owner.get()).MakeUpper();
}

bool IsGuidText(const wchar_t* text)
{
    if (!text) {
        return false;
    }
    CString stripped = StripGuidBraces(text);
    UUID uuid = {};
    const int length = stripped.GetLength();
    return ::UuidFromStringW(reinterpret_cast<RPC_WSTR>(stripped.GetBuffer(length)), &uuid) == RPC_S_OK;
}

bool IsTarnGuidKey(const wchar_t* text)
{
    CString guid;
    return GetTarnKeyGuid(text, guid) && IsGuidText(guid);
}
