#include "slimhtml/label_images.h"

#include "base/com_ptr.h"
#include "base/handle.h"

#include <objidl.h>
#include <shlwapi.h>

#include <algorithm>

// The image library's header counts on the macros that the project switches off.
using std::max;
using std::min;
#include <gdiplus.h>

namespace {

constexpr std::size_t mostImageBytes = 16 * 1024 * 1024;

} // namespace

std::optional<std::vector<unsigned char>> ReadSmallFile(const wchar_t* path, std::size_t mostBytes)
{
    const CFileOwner file(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size = {};
    if (!file || !GetFileSizeEx(file.get(), &size) || size.QuadPart > static_cast<LONGLONG>(mostBytes)) {
        return std::nullopt;
    }
    std::vector<unsigned char> bytes(static_cast<std::size_t>(size.QuadPart));
    DWORD read = 0;
    if (!bytes.empty() &&
        !ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr)) {
        return std::nullopt;
    }
    bytes.resize(read);
    return bytes;
}

struct CLabelImages::Session
{
    Session()
    {
        const Gdiplus::GdiplusStartupInput input;
        m_bStarted = Gdiplus::GdiplusStartup(&m_token, &input, nullptr) == Gdiplus::Ok;
    }
    ~Session()
    {
        if (m_bStarted) {
            Gdiplus::GdiplusShutdown(m_token);
        }
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    ULONG_PTR m_token = 0;
    bool m_bStarted = false;
};

struct CLabelImages::Image
{
    CString path;
    ComPtr<IStream> stream;                  // the bitmap reads from it as long as it lives
    std::unique_ptr<Gdiplus::Bitmap> bitmap; // null when the file can't be shown
    HtmlSize size;

    void Read()
    {
        const auto bytes = ReadSmallFile(path, mostImageBytes);
        if (!bytes || !ReadImageHeader(bytes->data(), bytes->size(), size) || !IsReasonableImage(size)) {
            return;
        }
        stream.Attach(SHCreateMemStream(bytes->data(), static_cast<UINT>(bytes->size())));
        if (!stream) {
            return;
        }
        bitmap.reset(Gdiplus::Bitmap::FromStream(stream.Get()));
        if (bitmap && bitmap->GetLastStatus() != Gdiplus::Ok) {
            bitmap.reset();
        }
    }
};

CLabelImages::CLabelImages() = default;

CLabelImages::~CLabelImages()
{
    Release();
}

void CLabelImages::Load(const HtmlDocument& document, const CString& folder)
{
    Release();
    for (const HtmlImage& named : document.images) {
        const CString path = ImagePath(folder, named.source);
        const auto same = std::find_if(m_images.begin(), m_images.end(),
                                       [&path](const auto& image) { return image->path == path; });
        if (same != m_images.end()) {
            m_images.push_back(*same);
            continue;
        }
        auto image = std::make_shared<Image>();
        image->path = path;
        if (!path.IsEmpty()) {
            m_session = m_session ? std::move(m_session) : std::make_unique<Session>();
            image->Read();
        }
        m_images.push_back(std::move(image));
    }
}

void CLabelImages::Release()
{
    m_images.clear(); // before the library goes
    m_session.reset();
}

bool CLabelImages::OwnSize(int index, HtmlSize& size) const
{
    const Image& image = *m_images[index];
    size = image.size;
    return image.bitmap != nullptr;
}

void CLabelImages::Draw(HDC dc, int index, const RECT& box) const
{
    Gdiplus::Bitmap* bitmap = m_images[index]->bitmap.get();
    if (!bitmap) {
        return;
    }
    Gdiplus::Graphics graphics(dc);
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    // The edges are drawn as if the image went on beyond them, mirrored; otherwise they fade into the background.
    Gdiplus::ImageAttributes edges;
    edges.SetWrapMode(Gdiplus::WrapModeTileFlipXY);
    const Gdiplus::Rect place(box.left, box.top, box.right - box.left, box.bottom - box.top);
    graphics.DrawImage(bitmap, place, 0, 0, static_cast<INT>(bitmap->GetWidth()),
                       static_cast<INT>(bitmap->GetHeight()), Gdiplus::UnitPixel, &edges);
}
