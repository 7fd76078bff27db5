// The patch files of one product, as its page lists them: which may stay, in which order, and what is said about the others.
#pragma once

#include "patches/patch_list_rules.h"
#include "window/controls.h"

#include <set>
#include <vector>

class CProduct;
class CSetupManager;

// Reads and judges patch files; what stays comes into the product's deployment. One object a page. Runs on the page's thread:
// the installer's answer takes its time.
class CPatchList
{
public:
    // Both are the host's and outlive the page.
    CPatchList(CSetupManager& manager, CProduct& product) : m_manager(manager), m_product(product) {}

    // The window that shows the list and owns the messages.
    void Bind(HWND page);

    // The product's own list comes onto the page, checked as it is now.
    void LoadFromProduct();
    void StoreInProduct() const;

    // A file that the user picked comes to the end of the list, or the message says why not.
    void Admit(const CString& path);
    // The selected line goes, and with it what doesn't apply without it. Nothing without a selection.
    void RemoveSelected();
    // The list is this patch alone, or empty when there is no such file or it doesn't apply.
    void ReplaceBy(const CString& path);

    [[nodiscard]] bool IsEmpty() const { return PatchList.empty(); }
    // The file of a line; empty for no such line.
    [[nodiscard]] CString PathAt(std::size_t line) const;
    // The file of the selected line; empty without a selection.
    [[nodiscard]] CString SelectedPath() const;
    // By the host's answer when the list was last checked: asking it anew would choose what the file holds by now.
    [[nodiscard]] bool IsMerged(const CString& path) const { return m_merged.contains(path); }

private:
    [[nodiscard]] bool IsKnownPatchCode(const CString& code) const;
    // Read once while one of the public operations runs. Nothing when the file has none.
    [[nodiscard]] const std::optional<CString>& CodeOf(const CString& path);
    void RebuildPatchCodeIndex();
    // Checks the list, with a new path at its end unless that is empty. False, with the list as it was, when the check itself
    // could not be made; a message has been shown then, and for each patch that goes.
    bool RecheckPatches(const CString& newPath = CString());
    [[nodiscard]] CString DatabasePath() const;
    void RefreshPatchListBox() const;
    void ShowPatchError(unsigned int message, const CString& text) const;

    CSetupManager& m_manager;
    CProduct& m_product;
    HWND m_page = nullptr;
    CListBox PatchListBox;
    std::vector<CString> PatchList;                    // full paths in the order of the lines
    PatchCodeMap PatchCodeIndex;                       // of those whose code can be read
    std::set<CString> m_merged;                        // of the files that were last checked
    std::map<CString, std::optional<CString>> m_codes; // of files; CodeOf
};
