// CGridEdit: the editor of a grid's cell. It lives as long as the grid, of which it is a child, and is shown and hidden.
#pragma once

#include "controls/accessible_proxy.h"
#include "window/controls.h"
#include "window/window_impl.h"

class CGrid;

class CGridEdit : public CWindowImpl<CGridEdit, CEdit>
{
public:
    // With the closing zero: longer texts are cut.
    static constexpr int TEXT_CAPACITY = 1024;

    CGridEdit() = default;
    ~CGridEdit() override;

    DECLARE_WND_SUPERCLASS(L"RolloutGridEdit", L"EDIT")

    BEGIN_MSG_MAP(CGridEdit)
    MESSAGE_HANDLER(WM_KEYDOWN, OnKeyDown)
    MESSAGE_HANDLER(WM_GETOBJECT, OnGetObject)
    MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
    END_MSG_MAP()

    // Does what the key means for the grid, the parent; false for a key that is the edit control's own. Reads the text
    // into m_text first.
    bool HandleKey(WPARAM key);

    // Sends the parent LVN_ENDLABELEDITW with the text.
    void StoreText();

    // The cell's text when the editor opened; then what it held at the last key.
    wchar_t m_text[TEXT_CAPACITY] = {};

    const CGrid* m_pGrid = nullptr; // the grid that it belongs to

private:
    LRESULT OnKeyDown(UINT message, WPARAM key, LPARAM lParam, BOOL& handled);
    LRESULT OnGetObject(UINT message, WPARAM flags, LPARAM object, BOOL& handled);
    LRESULT OnDestroy(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    void ReadText();
    void EndEdit(bool storesText);
    void Disconnect();

    ComPtr<CAccessibleProxy> m_accessible; // made when somebody asks
};
