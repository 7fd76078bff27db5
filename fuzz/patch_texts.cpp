// The rules of the service pack page on the texts that patches and the service bring: a line each for a patch's targets, a
// product code, a size and an address, and the rest as the patch list. Nothing of a text may be lost, doubled or read beyond.
#include "fuzz/wide_input.h"
#include "patches/patch_list_rules.h"
#include "patches/patch_text_rules.h"

namespace {

void Require(bool claim)
{
    if (!claim) {
        __builtin_trap();
    }
}

void CheckTargets(const CString& targets, const CString& code)
{
    bool isNamed = false;
    for (int start = 0; start <= targets.GetLength() - code.GetLength(); ++start) {
        isNamed = isNamed || targets.Mid(start, code.GetLength()) == code;
    }
    Require(code.IsEmpty() || NamesProduct(targets, code) == isNamed);
    Require(code.IsEmpty() || NamesProduct(targets + code + targets, code));
}

void CheckNumbers(const CString& size)
{
    const int kilobytes = SizeInKilobytes(size);
    Require(kilobytes >= 0);
    Require(SizeInKilobytes(L" " + size) == kilobytes);
    int former = 0;
    for (double received = 0; received < 5e9; received = received * 3 + 1) {
        const int percent = DownloadPercentage(received, static_cast<std::uint32_t>(kilobytes));
        Require(percent >= former);
        former = percent;
    }
}

void CheckAddress(const CString& address)
{
    for (const std::uint32_t mode : {0u, 1u, 2u}) {
        const CString text = CatalogUrlTemplate(address, mode);
        Require(text == address + (mode == 1 ? L"?%s&preview=1" : L"?%s"));
    }
    Require(!IsWebAddress(address) || address.Find(L"://") >= 4);
    Require(IsWebAddress(L"https://" + address));
}

// A line a patch; whether it is merged or applies is said by its first unit.
void CheckList(CString rest)
{
    std::vector<CString> merged, kept;
    std::vector<JudgedPatch> judged;
    CString dropped;
    while (!rest.IsEmpty()) {
        CString behind;
        const CString path = FirstLine(rest, behind);
        rest = behind;
        const int kind = path.IsEmpty() ? 0 : path[0] % 3;
        if (kind == 0) {
            merged.push_back(path);
            continue;
        }
        judged.push_back({path, kind == 1 ? 0u : 1642u});
        if (kind == 1) {
            kept.push_back(path);
        } else {
            dropped += path + L"\n";
        }
    }
    const PatchVerdict verdict = SettlePatches(merged, judged);
    std::vector<CString> wanted = merged;
    wanted.insert(wanted.end(), kept.begin(), kept.end());
    Require(verdict.list == wanted);
    Require(verdict.strInapplicable == dropped);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CString code, bytes, address, rest;
    // Texts of a window and a database end at their first zero.
    const CString targets = FirstLine(CString(WideInput(data, size).GetString()), code);
    code = FirstLine(code, bytes);
    bytes = FirstLine(bytes, address);
    address = FirstLine(address, rest);
    CheckTargets(targets, code);
    CheckNumbers(bytes);
    CheckAddress(address);
    CheckList(rest);
    return 0;
}
