#include "base/string.h"

#include "base/character.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace {

// Every empty text points here; it is neither counted nor freed.
struct EmptyText
{
    int references = -1;
    int length = 0;
    int capacity = 0;
    int reserved = 0;
    wchar_t text[1] = {0};
};
EmptyText g_emptyText;

std::size_t BytesOf(int units) noexcept
{
    return static_cast<std::size_t>(units) * sizeof(wchar_t);
}

bool IsInSet(const wchar_t* set, wchar_t character) noexcept
{
    for (; set && *set; ++set) {
        if (*set == character) {
            return true;
        }
    }
    return false;
}

// Where the text starts and ends once the characters that `drop` names are gone from its ends.
template <class Drop>
int FirstKept(const CString& text, Drop drop)
{
    int first = 0;
    while (first < text.GetLength() && drop(text[first])) {
        ++first;
    }
    return first;
}
template <class Drop>
int LastKept(const CString& text, Drop drop)
{
    int end = text.GetLength();
    while (end > 0 && drop(text[end - 1])) {
        --end;
    }
    return end;
}

} // namespace

int TextLength(const wchar_t* text) noexcept
{
    int length = 0;
    while (text && text[length]) {
        ++length;
    }
    return length;
}

CString::Buffer* CString::Header() const noexcept
{
    return reinterpret_cast<Buffer*>(m_text) - 1;
}

CString::Buffer* CString::NewBuffer(int capacity)
{
    if (capacity < 0 || capacity > std::numeric_limits<int>::max() / 4) {
        throw std::bad_alloc();
    }
    void* memory = ::operator new(sizeof(Buffer) + BytesOf(capacity + 1));
    return new (memory) Buffer{1, 0, capacity, 0};
}

void CString::Release(Buffer* buffer) noexcept
{
    if (buffer->references >= 0 && __atomic_sub_fetch(&buffer->references, 1, __ATOMIC_ACQ_REL) == 0) {
        ::operator delete(buffer);
    }
}

void CString::Take(Buffer* buffer) noexcept
{
    Release(Header());
    m_text = reinterpret_cast<wchar_t*>(buffer + 1);
}

// Makes the buffer this object's own, with room for `capacity` units; the text stays.
void CString::Reserve(int capacity)
{
    Buffer* buffer = Header();
    if (__atomic_load_n(&buffer->references, __ATOMIC_ACQUIRE) == 1 && buffer->capacity >= capacity) {
        return;
    }
    const int length = buffer->length;
    int wanted = std::max(capacity, length);
    // A text that grows piece by piece is not copied at each piece.
    if (capacity > buffer->capacity && buffer->capacity > 0) {
        wanted = std::max(wanted, std::min(buffer->capacity, 1 << 24) * 3 / 2);
    }
    Buffer* fresh = NewBuffer(wanted);
    wchar_t* text = reinterpret_cast<wchar_t*>(fresh + 1);
    std::memcpy(text, m_text, BytesOf(length + 1));
    fresh->length = length;
    Take(fresh);
}

CString::CString() noexcept : m_text(g_emptyText.text)
{
}

CString::CString(const CString& other) noexcept : m_text(other.m_text)
{
    if (Header()->references >= 0) {
        __atomic_add_fetch(&Header()->references, 1, __ATOMIC_RELAXED);
    }
}

CString::CString(CString&& other) noexcept : m_text(other.m_text)
{
    other.m_text = g_emptyText.text;
}

CString::CString(const wchar_t* text) : CString()
{
    Append(text, TextLength(text));
}

CString::CString(const wchar_t* text, int length) : CString()
{
    Append(text, length);
}

CString::CString(wchar_t character, int repeat) : CString()
{
    if (repeat > 0) {
        wchar_t* text = GetBuffer(repeat);
        std::fill_n(text, repeat, character);
        ReleaseBuffer(repeat);
    }
}

CString::~CString()
{
    Release(Header());
}

CString& CString::operator=(const CString& other) noexcept
{
    CString copy(other);
    std::swap(m_text, copy.m_text);
    return *this;
}

CString& CString::operator=(CString&& other) noexcept
{
    std::swap(m_text, other.m_text);
    return *this;
}

CString& CString::operator=(const wchar_t* text)
{
    CString copy(text);
    std::swap(m_text, copy.m_text);
    return *this;
}

void CString::Empty() noexcept
{
    Release(Header());
    m_text = g_emptyText.text;
}

void CString::SetAt(int index, wchar_t character)
{
    Reserve(GetLength());
    m_text[index] = character;
}

void CString::Append(const wchar_t* text, int length)
{
    if (!text || length <= 0) {
        return;
    }
    // A text that lies in this very buffer must outlive the buffer's growth.
    const bool isOwnText = text >= m_text && text <= m_text + GetLength();
    const CString keepsTheSource = isOwnText ? *this : CString();
    const int before = GetLength();
    Reserve(before + length);
    std::memcpy(m_text + before, text, BytesOf(length));
    m_text[before + length] = 0;
    Header()->length = before + length;
}

CString& CString::operator+=(const CString& text)
{
    Append(text.m_text, text.GetLength());
    return *this;
}

CString& CString::operator+=(const wchar_t* text)
{
    Append(text, TextLength(text));
    return *this;
}

CString& CString::operator+=(wchar_t character)
{
    Append(&character, 1);
    return *this;
}

int CString::Compare(const wchar_t* other) const noexcept
{
    const wchar_t* left = m_text;
    const wchar_t* right = other ? other : g_emptyText.text;
    while (*left && *left == *right) {
        ++left;
        ++right;
    }
    return static_cast<int>(*left) - static_cast<int>(*right);
}

int CString::CompareNoCase(const wchar_t* other) const noexcept
{
    const wchar_t* left = m_text;
    const wchar_t* right = other ? other : g_emptyText.text;
    for (;; ++left, ++right) {
        if (*left != *right) {
            const int difference = UpperCase(*left) - UpperCase(*right);
            if (difference != 0) {
                return difference;
            }
        }
        if (!*left) {
            return 0;
        }
    }
}

int CString::Find(wchar_t character, int start) const noexcept
{
    for (int index = std::max(start, 0); index < GetLength(); ++index) {
        if (m_text[index] == character) {
            return index;
        }
    }
    return -1;
}

int CString::Find(const wchar_t* text, int start) const noexcept
{
    const int length = TextLength(text);
    for (int index = std::max(start, 0); index + length <= GetLength(); ++index) {
        if (std::memcmp(m_text + index, text ? text : m_text, BytesOf(length)) == 0) {
            return index;
        }
    }
    return -1;
}

int CString::ReverseFind(wchar_t character) const noexcept
{
    int index = GetLength() - 1;
    while (index >= 0 && m_text[index] != character) {
        --index;
    }
    return index;
}

int CString::FindOneOf(const wchar_t* set) const noexcept
{
    for (int index = 0; index < GetLength(); ++index) {
        if (IsInSet(set, m_text[index])) {
            return index;
        }
    }
    return -1;
}

CString CString::Left(int count) const
{
    return Mid(0, count);
}

CString CString::Right(int count) const
{
    const int kept = std::clamp(count, 0, GetLength());
    return Mid(GetLength() - kept, kept);
}

CString CString::Mid(int first) const
{
    return Mid(first, GetLength());
}

CString CString::Mid(int first, int count) const
{
    const int from = std::clamp(first, 0, GetLength());
    const int kept = std::clamp(count, 0, GetLength() - from);
    return kept == GetLength() ? *this : CString(m_text + from, kept);
}

CString& CString::MakeUpper()
{
    Reserve(GetLength());
    std::transform(m_text, m_text + GetLength(), m_text, UpperCase);
    return *this;
}

CString& CString::MakeLower()
{
    Reserve(GetLength());
    std::transform(m_text, m_text + GetLength(), m_text, LowerCase);
    return *this;
}

CString& CString::Trim()
{
    return TrimRight().TrimLeft();
}
CString& CString::TrimLeft()
{
    return *this = Mid(FirstKept(*this, IsSpaceCharacter));
}
CString& CString::TrimRight()
{
    return *this = Left(LastKept(*this, IsSpaceCharacter));
}
CString& CString::Trim(const wchar_t* set)
{
    return TrimRight(set).TrimLeft(set);
}

CString& CString::TrimLeft(const wchar_t* set)
{
    return *this = Mid(FirstKept(*this, [set](wchar_t character) { return IsInSet(set, character); }));
}

CString& CString::TrimRight(const wchar_t* set)
{
    return *this = Left(LastKept(*this, [set](wchar_t character) { return IsInSet(set, character); }));
}

int CString::Replace(const wchar_t* old, const wchar_t* with)
{
    const int oldLength = TextLength(old);
    if (oldLength == 0) {
        return 0;
    }
    CString result;
    int count = 0;
    int from = 0;
    for (int found = Find(old); found >= 0; found = Find(old, from)) {
        result.Append(m_text + from, found - from);
        result += with;
        from = found + oldLength;
        ++count;
    }
    if (count > 0) {
        result.Append(m_text + from, GetLength() - from);
        *this = std::move(result);
    }
    return count;
}

int CString::Replace(wchar_t old, wchar_t with)
{
    int count = 0;
    for (int index = Find(old); index >= 0 && old != with; index = Find(old, index + 1)) {
        SetAt(index, with);
        ++count;
    }
    return count;
}

int CString::Remove(wchar_t character)
{
    const wchar_t text[] = {character, 0};
    return Replace(text, nullptr);
}

int CString::Insert(int index, const wchar_t* text)
{
    const int at = std::clamp(index, 0, GetLength());
    *this = Left(at) + text + Mid(at);
    return GetLength();
}

int CString::Delete(int index, int count)
{
    const int at = std::clamp(index, 0, GetLength());
    *this = Left(at) + Mid(at + std::clamp(count, 0, GetLength() - at));
    return GetLength();
}

wchar_t* CString::GetBuffer(int capacity)
{
    Reserve(std::max(capacity, GetLength()));
    m_text[GetLength()] = 0;
    return m_text;
}

void CString::ReleaseBuffer(int length)
{
    Buffer* buffer = Header();
    if (buffer->references < 0) {
        return; // the shared empty text: GetBuffer was not called
    }
    buffer->length = std::min(length < 0 ? TextLength(m_text) : length, buffer->capacity);
    m_text[buffer->length] = 0;
}

CString operator+(const CString& left, const CString& right)
{
    CString sum(left);
    sum += right;
    return sum;
}
CString operator+(const CString& left, const wchar_t* right)
{
    CString sum(left);
    sum += right;
    return sum;
}
CString operator+(const wchar_t* left, const CString& right)
{
    return CString(left) + right;
}
CString operator+(const CString& left, wchar_t right)
{
    CString sum(left);
    sum += right;
    return sum;
}

CString NumberText(long long number)
{
    wchar_t digits[24];
    int at = 24;
    unsigned long long rest =
        number < 0 ? 0ULL - static_cast<unsigned long long>(number) : static_cast<unsigned long long>(number);
    do {
        digits[--at] = static_cast<wchar_t>(L'0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (number < 0) {
        digits[--at] = L'-';
    }
    return CString(digits + at, 24 - at);
}

std::uint32_t NextCodePoint(const CString& text, int& index) noexcept
{
    const std::uint32_t first = static_cast<std::uint16_t>(text[index++]);
    if (first < 0xD800 || first > 0xDFFF) {
        return first;
    }
    const std::uint32_t second = static_cast<std::uint16_t>(text[index]); // the closing zero at the end
    if (first > 0xDBFF || second < 0xDC00 || second > 0xDFFF) {
        return 0xFFFD;
    }
    ++index;
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

namespace {

// Reads one UTF-8 sequence and returns its length in bytes; 1 and U+FFFD for a broken one.
std::size_t ReadUtf8(const unsigned char* bytes, std::size_t length, std::uint32_t& point) noexcept
{
    static constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const std::uint32_t lead = bytes[0];
    std::size_t size = 1;
    if (lead < 0x80) {
        point = lead;
        return 1;
    }
    if (lead >= 0xC2 && lead < 0xE0) {
        size = 2;
    } else if (lead >= 0xE0 && lead < 0xF0) {
        size = 3;
    } else if (lead >= 0xF0 && lead < 0xF5) {
        size = 4;
    }
    point = 0xFFFD;
    if (size == 1 || size > length) {
        return 1;
    }
    std::uint32_t value = lead & (0xFFu >> (size + 1));
    for (std::size_t index = 1; index < size; ++index) {
        if ((bytes[index] & 0xC0) != 0x80) {
            return 1;
        }
        value = (value << 6) | (bytes[index] & 0x3Fu);
    }
    if (value < smallest[size] || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) {
        return 1;
    }
    point = value;
    return size;
}

} // namespace

CString TextFromUtf8(const char* text, std::size_t length)
{
    CString result;
    const auto* bytes = reinterpret_cast<const unsigned char*>(text);
    for (std::size_t at = 0; at < length;) {
        std::uint32_t point = 0;
        at += ReadUtf8(bytes + at, length - at, point);
        if (point < 0x10000) {
            result += static_cast<wchar_t>(point);
        } else {
            result += static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10));
            result += static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
        }
    }
    return result;
}
