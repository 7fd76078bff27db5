#include "builder/transform_check.h"

#include "base/number_text.h"
#include "builder/shown_text.h"

#include <algorithm>
#include <optional>

namespace {

constexpr wchar_t LETTERS[] = L"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz._";
constexpr wchar_t TABLE_MARK = 0x4840;
constexpr wchar_t FIRST_PAIR = 0x3800;
constexpr wchar_t FIRST_SINGLE = 0x4800;

constexpr unsigned int WHOLE_ROW = 1;
constexpr unsigned int REMOVED_ROW = 0;
constexpr unsigned int LONG_TEXT_NUMBERS = 0x8000; // of three bytes

// Types of columns as _Columns has them.
constexpr unsigned int TYPE_STRING = 0x800;
constexpr unsigned int TYPE_PERSISTENT = 0x400; // a text with it, a stream without
constexpr unsigned int TYPE_KEY = 0x2000;
constexpr unsigned int TYPE_SIZE = 0xFF;

constexpr wchar_t POOL[] = L"_StringPool";
constexpr wchar_t TEXTS[] = L"_StringData";
constexpr wchar_t TABLES[] = L"_Tables";
constexpr wchar_t COLUMNS[] = L"_Columns";

enum class Kind
{
    Text,
    Short, // a number, or the mark of a stream
    Long,
};

struct Layout
{
    std::vector<Kind> columns;
    std::size_t keys = 0;
};

// Little-endian numbers, one after the other. Past the end it gives zeros and says so.
class CReader
{
public:
    explicit CReader(const StreamBytes& bytes) : m_bytes(bytes) {}

    bool AtEnd() const { return m_place >= m_bytes.size(); }
    bool IsCutOff() const { return m_isCutOff; }
    unsigned int Read(std::size_t count)
    {
        unsigned int value = 0;
        if (m_bytes.size() - m_place < count) {
            m_isCutOff = true;
            m_place = m_bytes.size();
            return 0;
        }
        for (std::size_t index = 0; index < count; ++index) {
            value |= static_cast<unsigned int>(m_bytes[m_place++]) << (8 * index);
        }
        return value;
    }

private:
    const StreamBytes& m_bytes;
    std::size_t m_place = 0;
    bool m_isCutOff = false;
};

class CTextPool
{
public:
    // False when the lengths don't fit the texts.
    bool Load(const StreamBytes& pool, const StreamBytes& texts)
    {
        CReader reader(pool);
        reader.Read(2); // code page
        m_idBytes = (reader.Read(2) & LONG_TEXT_NUMBERS) ? 3 : 2;
        std::uint64_t place = 0;
        while (!reader.AtEnd()) {
            std::uint64_t length = reader.Read(2);
            const unsigned int uses = reader.Read(2);
            if (length == 0 && uses != 0) {
                length = reader.Read(4);
            }
            m_places.emplace_back(place, length);
            place += length;
        }
        m_texts = &texts;
        return !reader.IsCutOff() && place <= texts.size();
    }

    std::size_t IdBytes() const { return m_idBytes; }
    bool Has(unsigned int id) const { return id <= m_places.size(); }
    // Names are plain letters; one with any other is none.
    CString Name(unsigned int id) const
    {
        CString name;
        if (id == 0 || !Has(id)) {
            return name;
        }
        const auto& [place, length] = m_places[id - 1];
        for (std::uint64_t index = 0; index < length; ++index) {
            const unsigned char letter = (*m_texts)[static_cast<std::size_t>(place + index)];
            if (letter <= ' ' || letter > '~') {
                return {};
            }
            name += static_cast<wchar_t>(letter);
        }
        return name;
    }

private:
    std::vector<std::pair<std::uint64_t, std::uint64_t>> m_places;
    const StreamBytes* m_texts = nullptr;
    std::size_t m_idBytes = 2;
};

Kind KindOfType(const CString& type)
{
    const CString letter = type.Left(1).MakeLower();
    return letter == L"i" ? (type.Right(1) == L"4" ? Kind::Long : Kind::Short)
                          : (letter == L"v" ? Kind::Short : Kind::Text);
}

std::optional<Kind> KindOfNumber(unsigned int type)
{
    if (type & TYPE_STRING) {
        return type & TYPE_PERSISTENT || (type & TYPE_SIZE) != 0 ? Kind::Text : Kind::Short;
    }
    const unsigned int size = type & TYPE_SIZE;
    return size == 1 || size == 2 ? std::optional(Kind::Short)
           : size == 4            ? std::optional(Kind::Long)
                                  : std::nullopt;
}

class CChecker
{
public:
    CChecker(const DatabaseSnapshot& database, const TransformStreams& streams) : m_streams(streams)
    {
        for (const auto& [name, table] : database) {
            Layout layout;
            for (const CString& type : table.columnTypes) {
                layout.columns.push_back(KindOfType(type));
            }
            layout.keys = static_cast<std::size_t>(table.keyColumns);
            m_layouts[name] = std::move(layout);
        }
    }

    CString Find()
    {
        static const StreamBytes none;
        const auto pool = m_streams.find(POOL);
        const auto texts = m_streams.find(TEXTS);
        if (pool == m_streams.end() ||
            !m_pool.Load(pool->second, texts == m_streams.end() ? none : texts->second)) {
            return L"is damaged: its texts can't be read";
        }
        CString fault = ReadNewColumns();
        for (const auto& [table, bytes] : m_streams) {
            if (fault.IsEmpty() && table != POOL && table != TEXTS && table != TABLES && table != COLUMNS) {
                fault = CheckTable(table, bytes);
            }
        }
        return fault;
    }

private:
    // Columns are told one by one, in the order of their numbers.
    CString ReadNewColumns()
    {
        CString fault = CheckRows(TABLES, {{Kind::Text}, 1}, [](unsigned int, const auto&) { return true; });
        if (!fault.IsEmpty()) {
            return fault;
        }
        const Layout columns = {{Kind::Text, Kind::Short, Kind::Text, Kind::Short}, 2};
        return CheckRows(COLUMNS, columns, [&](unsigned int mask, const std::vector<unsigned int>& cells) {
            if ((mask & WHOLE_ROW) == 0 || cells.size() != columns.columns.size()) {
                return false;
            }
            const CString table = m_pool.Name(cells[0]);
            const unsigned int type = cells[3] & 0x7FFF;
            const std::optional<Kind> kind = KindOfNumber(type);
            Layout& layout = m_layouts[table];
            const unsigned int number = cells[1] & 0x7FFF;
            if (table.IsEmpty() || !kind || number != layout.columns.size() + 1) {
                return false;
            }
            layout.columns.push_back(*kind);
            layout.keys += (type & TYPE_KEY) != 0 ? 1 : 0;
            return true;
        });
    }

    CString CheckTable(const CString& table, const StreamBytes& bytes) const
    {
        const auto layout = m_layouts.find(table);
        if (layout == m_layouts.end() || layout->second.keys == 0) {
            return L"changes the table " + ShownText(table) + L", which the product doesn't have";
        }
        return CheckRows(table, bytes, layout->second, [](unsigned int, const auto&) { return true; });
    }

    template <class Judge>
    CString CheckRows(const CString& table, const Layout& layout, const Judge& judge) const
    {
        const auto stream = m_streams.find(table);
        return stream == m_streams.end() ? CString() : CheckRows(table, stream->second, layout, judge);
    }

    // `judge` answers whether a row with that mask and those cells may be there.
    template <class Judge>
    CString CheckRows(const CString& table, const StreamBytes& bytes, const Layout& layout,
                      const Judge& judge) const
    {
        CReader reader(bytes);
        while (!reader.AtEnd()) {
            const unsigned int mask = reader.Read(2);
            const std::vector<bool> columns = ColumnsOf(mask, layout);
            if (columns.empty()) {
                return L"has rows of the table " + ShownText(table) +
                       L" with columns that the product doesn't have";
            }
            std::vector<unsigned int> cells;
            for (std::size_t column = 0; column < layout.columns.size(); ++column) {
                if (!columns[column]) {
                    continue;
                }
                const Kind kind = layout.columns[column];
                cells.push_back(reader.Read(kind == Kind::Text    ? m_pool.IdBytes()
                                            : kind == Kind::Short ? 2u
                                                                  : 4u));
                if (kind == Kind::Text && !m_pool.Has(cells.back())) {
                    return Damaged(table);
                }
            }
            if (reader.IsCutOff() || !judge(mask, cells)) {
                return Damaged(table);
            }
        }
        return {};
    }

    static CString Damaged(const CString& table)
    {
        return L"is damaged: its rows of the table " + ShownText(table) + L" can't be read";
    }

    // Which columns of the table follow; empty when the mask names some that aren't there.
    static std::vector<bool> ColumnsOf(unsigned int mask, const Layout& layout)
    {
        std::vector<bool> columns(layout.columns.size());
        const std::size_t whole = (mask & WHOLE_ROW) ? mask >> 8 : 0;
        if ((mask & WHOLE_ROW) && (whole < layout.keys || whole > columns.size())) {
            return {};
        }
        if (!(mask & WHOLE_ROW) && mask != REMOVED_ROW &&
            (mask >> std::min<std::size_t>(columns.size(), 16)) != 0) {
            return {};
        }
        for (std::size_t column = 0; column < columns.size(); ++column) {
            const bool isNamed = column < 16 && (mask & 1u << column) != 0;
            columns[column] = (mask & WHOLE_ROW) ? column < whole : column < layout.keys || isNamed;
        }
        return columns;
    }

    const TransformStreams& m_streams;
    std::map<CString, Layout> m_layouts;
    CTextPool m_pool;
};

} // namespace

CString TableOfStream(const CString& streamName)
{
    if (streamName.IsEmpty() || streamName[0] != TABLE_MARK) {
        return {};
    }
    CString table;
    for (int index = 1; index < streamName.GetLength(); ++index) {
        const wchar_t unit = streamName[index];
        if (unit >= FIRST_PAIR && unit < FIRST_SINGLE) {
            table += LETTERS[(unit - FIRST_PAIR) & 0x3F];
            table += LETTERS[(unit - FIRST_PAIR) >> 6];
        } else if (unit >= FIRST_SINGLE && unit < TABLE_MARK) {
            table += LETTERS[unit - FIRST_SINGLE];
        } else {
            table += unit;
        }
    }
    return table;
}

CString FindTransformFault(const DatabaseSnapshot& database, const TransformStreams& streams)
{
    return CChecker(database, streams).Find();
}
