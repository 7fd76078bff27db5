#include "slimhtml/html_entities.h"

#include "base/ascii.h"

#include <algorithm>
#include <iterator>

namespace {

struct NamedCharacter
{
    const char* name;
    std::uint16_t point;
};

// Sorted by name, capitals first: the table is searched by halving.
constexpr NamedCharacter namedCharacters[] = {
    {"AElig", 198},   {"Aacute", 193},  {"Acirc", 194},   {"Agrave", 192}, {"Aring", 197},   {"Atilde", 195},
    {"Auml", 196},    {"Ccedil", 199},  {"Dagger", 8225}, {"ETH", 208},    {"Eacute", 201},  {"Ecirc", 202},
    {"Egrave", 200},  {"Euml", 203},    {"Iacute", 205},  {"Icirc", 206},  {"Igrave", 204},  {"Iuml", 207},
    {"Ntilde", 209},  {"OElig", 338},   {"Oacute", 211},  {"Ocirc", 212},  {"Ograve", 210},  {"Omega", 937},
    {"Oslash", 216},  {"Otilde", 213},  {"Ouml", 214},    {"Scaron", 352}, {"THORN", 222},   {"Uacute", 218},
    {"Ucirc", 219},   {"Ugrave", 217},  {"Uuml", 220},    {"Yacute", 221}, {"Yuml", 376},    {"aacute", 225},
    {"acirc", 226},   {"acute", 180},   {"aelig", 230},   {"agrave", 224}, {"amp", 38},      {"apos", 39},
    {"aring", 229},   {"atilde", 227},  {"auml", 228},    {"bdquo", 8222}, {"brvbar", 166},  {"bull", 8226},
    {"ccedil", 231},  {"cedil", 184},   {"cent", 162},    {"circ", 710},   {"copy", 169},    {"curren", 164},
    {"dagger", 8224}, {"darr", 8595},   {"deg", 176},     {"divide", 247}, {"eacute", 233},  {"ecirc", 234},
    {"egrave", 232},  {"emsp", 8195},   {"ensp", 8194},   {"eth", 240},    {"euml", 235},    {"euro", 8364},
    {"frac12", 189},  {"frac14", 188},  {"frac34", 190},  {"ge", 8805},    {"gt", 62},       {"hArr", 8660},
    {"harr", 8596},   {"hellip", 8230}, {"iacute", 237},  {"icirc", 238},  {"iexcl", 161},   {"igrave", 236},
    {"infin", 8734},  {"iquest", 191},  {"iuml", 239},    {"lArr", 8656},  {"laquo", 171},   {"larr", 8592},
    {"ldquo", 8220},  {"le", 8804},     {"lsaquo", 8249}, {"lsquo", 8216}, {"lt", 60},       {"macr", 175},
    {"mdash", 8212},  {"micro", 181},   {"middot", 183},  {"minus", 8722}, {"nbsp", 160},    {"ndash", 8211},
    {"ne", 8800},     {"not", 172},     {"ntilde", 241},  {"oacute", 243}, {"ocirc", 244},   {"oelig", 339},
    {"ograve", 242},  {"ordf", 170},    {"ordm", 186},    {"oslash", 248}, {"otilde", 245},  {"ouml", 246},
    {"para", 182},    {"permil", 8240}, {"plusmn", 177},  {"pound", 163},  {"quot", 34},     {"rArr", 8658},
    {"raquo", 187},   {"rarr", 8594},   {"rdquo", 8221},  {"reg", 174},    {"rsaquo", 8250}, {"rsquo", 8217},
    {"sbquo", 8218},  {"scaron", 353},  {"sect", 167},    {"shy", 173},    {"sup1", 185},    {"sup2", 178},
    {"sup3", 179},    {"szlig", 223},   {"thinsp", 8201}, {"thorn", 254},  {"tilde", 732},   {"times", 215},
    {"trade", 8482},  {"uacute", 250},  {"uarr", 8593},   {"ucirc", 251},  {"ugrave", 249},  {"uml", 168},
    {"uuml", 252},    {"yacute", 253},  {"yen", 165},     {"yuml", 255},   {"zwj", 8205},    {"zwnj", 8204},
};

constexpr int longestName = 6;

// What pages written on Windows mean by the numbers of the control characters 128 to 159.
constexpr std::uint16_t codePage1252[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                            0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                            0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                            0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr std::uint32_t replacement = 0xFFFD;
constexpr std::uint32_t lastPoint = 0x10FFFF;

bool IsAsciiLetterOrDigit(wchar_t unit) noexcept
{
    return IsAsciiLetter(unit) || IsAsciiDigit(unit);
}

int DigitValue(wchar_t unit, int base) noexcept
{
    const int value = HexDigitValue(unit);
    return value < base ? value : -1;
}

std::uint32_t ValidPoint(std::uint32_t number) noexcept
{
    if (number >= 0x80 && number < 0xA0) {
        return codePage1252[number - 0x80];
    }
    const bool bSurrogate = number >= 0xD800 && number <= 0xDFFF;
    return number == 0 || number > lastPoint || bSurrogate ? replacement : number;
}

// "&#" digits or "&#x" hexadecimal digits.
HtmlReference ReadNumber(const wchar_t* text, int length) noexcept
{
    const bool bHexadecimal = length > 2 && (text[2] == L'x' || text[2] == L'X');
    const int base = bHexadecimal ? 16 : 10;
    const int first = bHexadecimal ? 3 : 2;
    int at = first;
    std::uint32_t number = 0;
    for (; at < length && DigitValue(text[at], base) >= 0; ++at) {
        // Any number of digits may come: the value stays at "too large".
        number = std::min(number * base + DigitValue(text[at], base), lastPoint + 1);
    }
    if (at == first) {
        return {};
    }
    const int semicolon = at < length && text[at] == L';' ? 1 : 0;
    return {ValidPoint(number), at + semicolon};
}

bool IsNameWithoutSemicolon(std::uint32_t point) noexcept
{
    return point == '&' || point == '<' || point == '>' || point == '"' || point == 160 || point == 169 ||
           point == 174;
}

HtmlReference ReadName(const wchar_t* text, int length) noexcept
{
    char name[longestName + 1] = {};
    int count = 0;
    while (count < longestName && count + 1 < length && IsAsciiLetterOrDigit(text[count + 1])) {
        name[count] = static_cast<char>(text[count + 1]);
        ++count;
    }
    const auto before = [](const NamedCharacter& row, const char* sought) {
        const char* left = row.name;
        while (*left != 0 && *left == *sought) {
            ++left;
            ++sought;
        }
        return *left < *sought;
    };
    const auto* found = std::lower_bound(std::begin(namedCharacters), std::end(namedCharacters),
                                         static_cast<const char*>(name), before);
    if (found == std::end(namedCharacters)) {
        return {};
    }
    for (int index = 0; index <= count; ++index) {
        if (found->name[index] != name[index]) {
            return {};
        }
    }
    const int behind = count + 1;
    if (behind < length && text[behind] == L';') {
        return {found->point, behind + 1};
    }
    const bool bGoesOn = behind < length && (text[behind] == L'=' || IsAsciiLetterOrDigit(text[behind]));
    if (bGoesOn || !IsNameWithoutSemicolon(found->point)) {
        return {};
    }
    return {found->point, behind};
}

} // namespace

HtmlReference ReadHtmlReference(const wchar_t* text, int length) noexcept
{
    if (length < 2) {
        return {};
    }
    return text[1] == L'#' ? ReadNumber(text, length) : ReadName(text, length);
}
