// Puts a document together: merges text into runs, collapses white space, and opens blocks when they get content.
#pragma once

#include "slimhtml/html_document.h"

#include <cstdint>

// How text is written while it comes in.
struct HtmlStyle
{
    HtmlFont font;
    HtmlColor color = noHtmlColor;
    int link = -1;
    HtmlAlign align = HtmlAlign::Default;
    int indentSteps = 0;
    bool bPreformatted = false;
};

class CHtmlBuilder
{
public:
    // Text with its character references, in the style given.
    void AppendText(const wchar_t* text, int length, const HtmlStyle& style);
    void AppendLineBreak(const HtmlStyle& style);
    void AppendImage(const HtmlImage& image, const CString& alternative, const HtmlStyle& style);
    void AppendRule(const HtmlStyle& style);

    // Ends the block. The next one stands at least that far below; the largest of several such wishes counts.
    void EndBlock(int spacePermille);
    // The next block gets this bullet or number.
    void SetMarker(const CString& marker, const HtmlStyle& style);
    // A marker whose item is about to end without content gets a block of its own.
    void FlushMarker(const HtmlStyle& style);

    // Index of a link target, of a typeface; -1 for a typeface too many.
    int AddLink(const CString& target);
    int AddFace(const CString& name);

    HtmlDocument& Document() { return m_document; }

private:
    void AppendPoint(std::uint32_t point, const HtmlStyle& style);
    void AppendUnit(wchar_t unit, const HtmlStyle& style);
    void AppendPreformatted(wchar_t unit, const HtmlStyle& style);
    HtmlBlock& OpenBlock(const HtmlStyle& style);
    int NewRun(HtmlRunKind kind, const HtmlStyle& style);
    int FontIndex(const HtmlFont& font);
    void DropTrailingSpace();

    HtmlDocument m_document;
    CString m_marker;
    HtmlStyle m_markerStyle;
    bool m_bBlockOpen = false;
    bool m_bAfterSpace = true; // the next space collapses
    bool m_bAfterReturn = false;
    int m_columns = 0; // of preformatted text, for tabs
    int m_pendingSpacePermille = 0;
    int m_lastFont = 0;
};
