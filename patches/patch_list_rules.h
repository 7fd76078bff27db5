// The book-keeping of a product's list of patches, apart from files, installer and window.
#pragma once

#include "base/string.h"
#include "include/setup_enums.h"

#include <map>
#include <optional>
#include <vector>

// From the code of a patch to its file; by code units, with regard to case. Of two files with one code the first stays.
using PatchCodeMap = std::map<CString, CString>;

// A patch of the list that the installer is asked about, with its answer.
struct JudgedPatch
{
    CString strPath;
    unsigned int status = 0; // 0: applies to the product
};

struct PatchVerdict
{
    std::vector<CString>
        list; // what stays: the merged patches, then those that apply, each in the list's order
    CString strInapplicable; // the files that go, a line each; empty when none does
};
[[nodiscard]] PatchVerdict SettlePatches(const std::vector<CString>& merged,
                                         const std::vector<JudgedPatch>& judged);

// Whether a patch for these targets can be one for the product: its code stands anywhere in the text, in its case.
[[nodiscard]] bool NamesProduct(const CString& targets, const CString& productCode) noexcept;

// What the choice between appending and merging looks like on a page that opens.
struct PatchWay
{
    bool isMerge = false;
    bool isLocked = false; // a deployment that was built keeps its way
    bool isRemovalLocked = false;
};
[[nodiscard]] PatchWay WayAtEntry(Setup::tagPATCHSTATE stored, Setup::tagPATCHSTATE chosen) noexcept;

// What is stored when the page is left by Next; nothing for a state that stays as it is.
struct PatchesOnPage
{
    bool isNoneChosen = false; // no service pack
    bool isListEmpty = true;
    bool isMergeChosen = false;
};
[[nodiscard]] std::optional<Setup::tagPATCHSTATE> StateToStore(const PatchesOnPage& page,
                                                               Setup::tagPATCHSTATE current) noexcept;
