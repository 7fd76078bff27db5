// CString: the reference-counted wide string that every layer passes around.
//
// Text is UTF-16 on every build; lengths and indexes count 16-bit units. Copies share one buffer until one of them
// is changed. The buffer's count is atomic, so copies may live on different threads; one object may not be used
// by two threads at a time. The file needs no window header: the rules use it on builds without Windows too.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>

class CString
{
public:
    using XCHAR = wchar_t;

    CString() noexcept;
    CString(const CString& other) noexcept;
    CString(CString&& other) noexcept;
    // A null pointer gives the empty text.
    CString(const wchar_t* text);
    // The first `length` units of `text`, zeros included.
    CString(const wchar_t* text, int length);
    explicit CString(wchar_t character, int repeat = 1);
    ~CString();

    CString& operator=(const CString& other) noexcept;
    CString& operator=(CString&& other) noexcept;
    CString& operator=(const wchar_t* text);

    int GetLength() const noexcept { return Header()->length; }
    bool IsEmpty() const noexcept { return GetLength() == 0; }
    void Empty() noexcept;

    // The text as a pointer; valid until the object changes or goes.
    operator const wchar_t*() const noexcept { return m_text; }
    const wchar_t* GetString() const noexcept { return m_text; }

    // Index GetLength() gives the closing zero.
    wchar_t operator[](int index) const noexcept { return m_text[index]; }
    wchar_t GetAt(int index) const noexcept { return m_text[index]; }
    void SetAt(int index, wchar_t character);

    CString& operator+=(const CString& text);
    CString& operator+=(const wchar_t* text);
    CString& operator+=(wchar_t character);
    void Append(const wchar_t* text, int length);

    // Comparison by code unit: negative, zero or positive. CompareNoCase maps both sides to upper case first.
    int Compare(const wchar_t* other) const noexcept;
    int CompareNoCase(const wchar_t* other) const noexcept;

    // Index of the first (last) occurrence, or -1. `start` below zero counts as zero.
    int Find(wchar_t character, int start = 0) const noexcept;
    int Find(const wchar_t* text, int start = 0) const noexcept;
    int ReverseFind(wchar_t character) const noexcept;
    int FindOneOf(const wchar_t* set) const noexcept;

    // Parts; counts and indexes outside the text are clamped.
    CString Left(int count) const;
    CString Right(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;

    CString& MakeUpper();
    CString& MakeLower();

    // White space (iswspace) or the characters of a set, removed from the ends.
    CString& Trim();
    CString& TrimLeft();
    CString& TrimRight();
    CString& Trim(const wchar_t* set);
    CString& TrimLeft(const wchar_t* set);
    CString& TrimRight(const wchar_t* set);

    // Replaces or removes every occurrence from left to right and returns the count. An empty or null `old` changes
    // nothing; a null `with` removes.
    int Replace(const wchar_t* old, const wchar_t* with);
    int Replace(wchar_t old, wchar_t with);
    int Remove(wchar_t character);
    int Insert(int index, const wchar_t* text);
    int Delete(int index, int count = 1);

    // A buffer of this object alone with room for `capacity` units and the closing zero. The text is what
    // ReleaseBuffer finds there; -1 takes the length up to the first zero.
    wchar_t* GetBuffer(int capacity);
    void ReleaseBuffer(int length = -1);

    // Sets the text by a `printf` format (Windows builds only; %s takes wide text).
    void Format(const wchar_t* format, ...);
    void AppendFormat(const wchar_t* format, ...);

private:
    struct Buffer;

    Buffer* Header() const noexcept;
    static Buffer* NewBuffer(int capacity);
    static void Release(Buffer* buffer) noexcept;
    void Reserve(int capacity);
    void Take(Buffer* buffer) noexcept;

    wchar_t* m_text;

    struct Buffer
    {
        int references; // changed atomically; the shared empty text is not counted
        int length;
        int capacity;
        int reserved;
    };
};

static_assert(sizeof(wchar_t) == 2, "build with 16-bit wide characters (-fshort-wchar)");

CString operator+(const CString& left, const CString& right);
CString operator+(const CString& left, const wchar_t* right);
CString operator+(const wchar_t* left, const CString& right);
CString operator+(const CString& left, wchar_t right);

inline bool operator==(const CString& left, const CString& right) noexcept
{
    return left.GetLength() == right.GetLength() && left.Compare(right) == 0;
}
inline bool operator==(const CString& left, const wchar_t* right) noexcept
{
    return left.Compare(right) == 0;
}
inline bool operator==(const wchar_t* left, const CString& right) noexcept
{
    return right.Compare(left) == 0;
}
inline bool operator<(const CString& left, const CString& right) noexcept
{
    return left.Compare(right) < 0;
}

// Without this one, containers of texts would be ordered by the pointers that texts convert to.
inline std::strong_ordering operator<=>(const CString& left, const CString& right) noexcept
{
    return left.Compare(right) <=> 0;
}

// Order for maps whose keys are compared without regard to case.
struct CompareNoCaseLess
{
    bool operator()(const CString& left, const CString& right) const noexcept
    {
        return left.CompareNoCase(right) < 0;
    }
};

// Length in units up to the closing zero; 0 for a null pointer.
int TextLength(const wchar_t* text) noexcept;

// A number in decimal digits.
CString NumberText(long long number);

// To and from UTF-8 (`length` in bytes). Broken sequences become U+FFFD; unpaired surrogates likewise.
CString TextFromUtf8(const char* text, std::size_t length);
// The bytes of the text as UTF-8, appended to `bytes`, any container of char with push_back.
template <class Bytes>
void AppendUtf8(Bytes& bytes, const CString& text);

// The code point that starts at `index`; moves `index` behind it. An unpaired surrogate gives U+FFFD.
std::uint32_t NextCodePoint(const CString& text, int& index) noexcept;

template <class Bytes>
void AppendUtf8(Bytes& bytes, const CString& text)
{
    for (int index = 0; index < text.GetLength();) {
        const std::uint32_t point = NextCodePoint(text, index);
        const auto put = [&bytes](std::uint32_t value) { bytes.push_back(static_cast<char>(value)); };
        if (point < 0x80) {
            put(point);
        } else if (point < 0x800) {
            put(0xC0 | (point >> 6));
            put(0x80 | (point & 0x3F));
        } else if (point < 0x10000) {
            put(0xE0 | (point >> 12));
            put(0x80 | ((point >> 6) & 0x3F));
            put(0x80 | (point & 0x3F));
        } else {
            put(0xF0 | (point >> 18));
            put(0x80 | ((point >> 12) & 0x3F));
            put(0x80 | ((point >> 6) & 0x3F));
            put(0x80 | (point & 0x3F));
        }
    }
}
