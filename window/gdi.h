// Drawing steps that must be undone.
//
//   CPaintDC        BeginPaint and EndPaint
//   CWindowDC       a window's (or with null the screen's) device context, given back
//   CSelectObject   a selected GDI object; the former one comes back
//   CSavedDC        the whole state of a device context
#pragma once

#include <windows.h>

class CPaintDC
{
public:
    explicit CPaintDC(HWND window) noexcept : m_window(window) { BeginPaint(window, &m_paint); }
    ~CPaintDC() { EndPaint(m_window, &m_paint); }
    CPaintDC(const CPaintDC&) = delete;
    CPaintDC& operator=(const CPaintDC&) = delete;

    HDC get() const noexcept { return m_paint.hdc; }
    const RECT& Rectangle() const noexcept { return m_paint.rcPaint; }

private:
    HWND m_window;
    PAINTSTRUCT m_paint = {};
};

class CWindowDC
{
public:
    explicit CWindowDC(HWND window) noexcept : m_window(window), m_dc(GetDC(window)) {}
    ~CWindowDC() { ReleaseDC(m_window, m_dc); }
    CWindowDC(const CWindowDC&) = delete;
    CWindowDC& operator=(const CWindowDC&) = delete;

    HDC get() const noexcept { return m_dc; }

private:
    HWND m_window;
    HDC m_dc;
};

class CSelectObject
{
public:
    // A null object selects nothing.
    CSelectObject(HDC dc, HGDIOBJ object) noexcept
        : m_dc(dc), m_old(object ? SelectObject(dc, object) : nullptr)
    {
    }
    ~CSelectObject()
    {
        if (m_old) {
            SelectObject(m_dc, m_old);
        }
    }
    CSelectObject(const CSelectObject&) = delete;
    CSelectObject& operator=(const CSelectObject&) = delete;

private:
    HDC m_dc;
    HGDIOBJ m_old;
};

class CSavedDC
{
public:
    explicit CSavedDC(HDC dc) noexcept : m_dc(dc), m_state(SaveDC(dc)) {}
    ~CSavedDC() { RestoreDC(m_dc, m_state); }
    CSavedDC(const CSavedDC&) = delete;
    CSavedDC& operator=(const CSavedDC&) = delete;

private:
    HDC m_dc;
    int m_state;
};
