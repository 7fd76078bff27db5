// Owners of what windows draw with; their verbs are those of base/handle.h.
//
//   CFontOwner CBrushOwner CPenOwner CBitmapOwner CRegionOwner   objects of GDI
//   CDcOwner                                      a device context made by CreateCompatibleDC or CreateDC
//   CIconOwner CMenuOwner CImageListOwner         not for shared icons and a window's own menu
#pragma once

#include "base/handle.h"

#include <windows.h>

#include <commctrl.h>

template <class HandleType>
struct GdiKind : NullableKind<HandleType>
{
    static void Close(HandleType handle) noexcept { DeleteObject(handle); }
};
struct DcKind : NullableKind<HDC>
{
    static void Close(HDC handle) noexcept { DeleteDC(handle); }
};
struct IconKind : NullableKind<HICON>
{
    static void Close(HICON handle) noexcept { DestroyIcon(handle); }
};
struct MenuKind : NullableKind<HMENU>
{
    static void Close(HMENU handle) noexcept { DestroyMenu(handle); }
};
struct ImageListKind : NullableKind<HIMAGELIST>
{
    static void Close(HIMAGELIST handle) noexcept { ImageList_Destroy(handle); }
};

using CFontOwner = CHandleOwner<GdiKind<HFONT>>;
using CBrushOwner = CHandleOwner<GdiKind<HBRUSH>>;
using CPenOwner = CHandleOwner<GdiKind<HPEN>>;
using CBitmapOwner = CHandleOwner<GdiKind<HBITMAP>>;
using CRegionOwner = CHandleOwner<GdiKind<HRGN>>;
using CDcOwner = CHandleOwner<DcKind>;
using CIconOwner = CHandleOwner<IconKind>;
using CMenuOwner = CHandleOwner<MenuKind>;
using CImageListOwner = CHandleOwner<ImageListKind>;
