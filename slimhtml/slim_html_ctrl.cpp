// The exported face of the label. Nothing is thrown across it: each module has its own language runtime.
#include "base/path_text.h"
#include "slimhtml/slim_html.h"

#include "slimhtml/label.h"

#include <exception>

namespace {

constexpr std::size_t mostPageBytes = 16 * 1024 * 1024;

template <class Result, class Deed>
Result Guarded(Result fallback, Deed action) noexcept
{
    try {
        return action();
    } catch (const std::exception&) {
        return fallback; // out of memory: the label keeps what it shows
    }
}

} // namespace

class CSlimHtmlCtrl::Implementation
{
public:
    CLabel label;
};

CSlimHtmlCtrl::CSlimHtmlCtrl() : m_implementation(std::make_unique<Implementation>())
{
}

CSlimHtmlCtrl::~CSlimHtmlCtrl() = default;

bool CSlimHtmlCtrl::SubclassWindow(HWND control)
{
    return Guarded(false, [&] { return m_implementation->label.Bind(control); });
}

HWND CSlimHtmlCtrl::GetWindow() const
{
    return m_implementation->label.Window();
}

void CSlimHtmlCtrl::SetRenderFormat(const RenderFormat& format)
{
    Guarded(0, [&] { return m_implementation->label.SetFormat(format), 0; });
}

const RenderFormat& CSlimHtmlCtrl::GetRenderFormat() const
{
    return m_implementation->label.Format();
}

void CSlimHtmlCtrl::LoadText(const wchar_t* html)
{
    Guarded(0, [&] { return m_implementation->label.Load(html, TextLength(html), CString()), 0; });
}

bool CSlimHtmlCtrl::LoadFile(const wchar_t* path)
{
    return Guarded(false, [&] {
        const auto bytes = ReadSmallFile(path, mostPageBytes);
        if (!bytes || !GetWindow()) {
            return false;
        }
        const CString text = TextFromFileBytes(bytes->data(), bytes->size());
        CString folder(path);
        folder.Replace(L'/', L'\\');
        m_implementation->label.Load(text, text.GetLength(), FolderOfFile(folder));
        return true;
    });
}

void CSlimHtmlCtrl::SetNotify(ISlimHtmlNotify* notify)
{
    m_implementation->label.SetNotify(notify);
}

bool CSlimHtmlCtrl::PreTranslateMessage(MSG* message)
{
    return message && Guarded(false, [&] { return m_implementation->label.PreTranslateMessage(*message); });
}

int CSlimHtmlCtrl::MeasureHeight(int width) const
{
    return Guarded(0, [&] { return m_implementation->label.MeasureHeight(width); });
}

bool CSlimHtmlCtrl::IsScrollable() const
{
    return m_implementation->label.IsScrollable();
}
