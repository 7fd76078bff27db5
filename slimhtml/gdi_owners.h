// Owners of the drawing objects that a label makes.
#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

struct GdiObjectDeleter
{
    void operator()(void* object) const noexcept { DeleteObject(object); }
};
struct MemoryDcDeleter
{
    void operator()(HDC dc) const noexcept { DeleteDC(dc); }
};

using FontOwner = std::unique_ptr<std::remove_pointer_t<HFONT>, GdiObjectDeleter>;
using BitmapOwner = std::unique_ptr<std::remove_pointer_t<HBITMAP>, GdiObjectDeleter>;
using BrushOwner = std::unique_ptr<std::remove_pointer_t<HBRUSH>, GdiObjectDeleter>;
using MemoryDc = std::unique_ptr<std::remove_pointer_t<HDC>, MemoryDcDeleter>;

// Selects an object for a while.
class SelectedObject
{
public:
    SelectedObject(HDC dc, HGDIOBJ object) : m_dc(dc), m_former(SelectObject(dc, object)) {}
    ~SelectedObject() { SelectObject(m_dc, m_former); }
    SelectedObject(const SelectedObject&) = delete;
    SelectedObject& operator=(const SelectedObject&) = delete;

private:
    HDC m_dc;
    HGDIOBJ m_former;
};
