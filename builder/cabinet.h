// Writes and reads cabinets by the system's own library. Failures are BuildFailures that name the file in question.
#pragma once

#include "base/string.h"

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <vector>

struct CabinetMember
{
    CString strName;             // in the cabinet; ASCII
    CString strSource;           // full path
    std::uint64_t bytesRead = 0; // filled: what really went in
};

// Told of the bytes of content that went by; may throw to end the work.
using CabinetMeter = std::function<void(std::uint64_t)>;

// Makes the cabinet from the files, in their order. Scratch files lie beside it meanwhile.
void WriteCabinet(const CString& path, std::vector<CabinetMember>& members, const CabinetMeter& meter);

// The files in a cabinet with their sizes. Nothing is unpacked for it.
[[nodiscard]] std::map<CString, std::uint64_t> ListCabinet(const CString& path);

// True for one whose files go on in a second cabinet, or began in one before.
[[nodiscard]] bool IsPartOfCabinetSet(const CString& path);

// Takes files out of a cabinet: `targets` has the full path for each name wanted. Answers the names that were found.
[[nodiscard]] std::set<CString> ReadCabinet(const CString& path, const std::map<CString, CString>& targets,
                                            const CabinetMeter& meter);

// Size and SHA-256 of each file in a cabinet, by name. Everything is unpacked for it, and nothing is written.
struct MemberContent
{
    std::uint64_t size = 0;
    CString strSha256;
    bool operator==(const MemberContent&) const = default;
};
[[nodiscard]] std::map<CString, MemberContent> HashCabinet(const CString& path, const CabinetMeter& meter);
