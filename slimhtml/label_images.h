// The images of a label's document.
#pragma once

#include "slimhtml/file_rules.h"

#include <windows.h>

#include <memory>
#include <optional>
#include <vector>

// The bytes of a file up to that many; nothing when it is longer or can't be read.
[[nodiscard]] std::optional<std::vector<unsigned char>> ReadSmallFile(const wchar_t* path,
                                                                      std::size_t mostBytes);

class CLabelImages
{
public:
    CLabelImages();
    ~CLabelImages();

    // Loads what the document names (file_rules.h); what can't be loaded shows its text.
    void Load(const HtmlDocument& document, const CString& folder);
    void Release();

    // Pixels of the file; false when it can't be shown.
    [[nodiscard]] bool OwnSize(int index, HtmlSize& size) const;
    void Draw(HDC dc, int index, const RECT& box) const;

private:
    struct Session;
    struct Image;

    std::unique_ptr<Session> m_session; // of the image library; only while there are images
    std::vector<std::shared_ptr<Image>> m_images;
};
