#include "fuzz/path_model.h"
#include "paths/path_resolution.h"
#include "tests/support/processor_time.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

namespace {

constexpr int PREFIX = 2;

CPathResolver Resolver(const std::vector<TarnDirectoryMapColumns>& rows)
{
    DirectoryMap map;
    for (const TarnDirectoryMapColumns& row : rows) {
        map[row.Directory_] = std::make_unique<TarnDirectoryMapColumns>(row);
    }
    return CPathResolver(std::move(map));
}

CPathResolver Sample()
{
    return Resolver({{L"FONTS", L"<Fonts root>", PREFIX},
                     {L"HELP", L"<Help>", 0},
                     {L"HIDDEN", L"<Hidden>", 4},
                     {L"BOTH", L"<Both>", 4 | PREFIX},
                     {L"NOTEXT", L"", PREFIX},
                     {L"SLASHED", L"<Root>\\", PREFIX}});
}

CString Shown(const wchar_t* installerForm)
{
    return Sample().DecodePathList(installerForm);
}

CString Stored(const CString& displayForm)
{
    CString value = displayForm;
    Sample().EncodePathList(value);
    return value;
}

struct Split
{
    bool isAnchored;
    CString key;
    CString rest;
    bool operator==(const Split&) const = default;
};

void PrintTo(const Split& split, std::ostream* stream)
{
    *stream << split.isAnchored << " [" << Utf8(split.key) << "] " << Utf8(split.rest);
}

Split SplitOf(const CPathResolver& resolver, const CString& path)
{
    Split split = {false, L"from before", L"from before"};
    split.isAnchored = resolver.SplitDirectoryPrefix(split.key, split.rest, path);
    return split;
}

} // namespace

// ---- no path

TEST(NullPathTest, TheMarkerCountsInAnyCaseAndNothingElseDoes)
{
    for (const wchar_t* marker : {L"[NULL]", L"[null]", L"[Null]"}) {
        EXPECT_TRUE(IsNullPath(marker)) << Utf8(marker);
    }
    for (const wchar_t* other : {L"", L"NULL", L" [NULL]", L"[NULL];", L"[NULL]x", L"[NUL]"}) {
        EXPECT_FALSE(IsNullPath(other)) << Utf8(other);
    }
}

// ---- keys

TEST(DirectoryKeyTest, AKeyGivesItsTextAndAnUnknownOneNone)
{
    CString text = L"from before";
    EXPECT_TRUE(Sample().LookupDirectoryKey(L"HELP", text));
    EXPECT_EQ(text, CString(L"<Help>"));
    for (const wchar_t* key : {L"help", L"HEL", L"HELPX", L""}) {
        text = L"from before";
        EXPECT_FALSE(Sample().LookupDirectoryKey(key, text)) << Utf8(key);
        EXPECT_EQ(text, CString());
    }
}

TEST(DirectoryKeyTest, ARowWithoutTextIsFound)
{
    CString text = L"from before";
    EXPECT_TRUE(Sample().LookupDirectoryKey(L"NOTEXT", text));
    EXPECT_EQ(text, CString());
}

// ---- reading

TEST(PathDecodingTest, AKeyIsShownAsItsTextAndWhatFollowsBehindABackslash)
{
    EXPECT_EQ(Shown(L"[FONTS]fonts"), CString(L"<Fonts root>\\fonts"));
}

TEST(PathDecodingTest, AKeyAloneIsShownAsItsTextAndNothingMore)
{
    EXPECT_EQ(Shown(L"[FONTS]"), CString(L"<Fonts root>"));
}

TEST(PathDecodingTest, AnUnknownKeyIsDroppedAndWhatFollowsStays)
{
    EXPECT_EQ(Shown(L"[MISSING]sub"), CString(L"sub"));
    EXPECT_EQ(Shown(L"[MISSING]"), CString());
    EXPECT_EQ(Shown(L"a;[MISSING];b"), CString(L"a;;b"));
}

TEST(PathDecodingTest, WithoutAMapBracketedValuesShowWithTheKeyDropped)
{
    EXPECT_EQ(CPathResolver().DecodePathList(L"[FONTS]sub;[HELP]\\x;plain"), CString(L"sub;\\x;plain"));
}

TEST(PathDecodingTest, KeysRegardCase)
{
    EXPECT_EQ(Shown(L"[fonts]sub"), CString(L"sub"));
}

TEST(PathDecodingTest, EmptyEntriesAndThoseOfBlanksAreDropped)
{
    EXPECT_EQ(Shown(L"a;;b;"), CString(L"a;b"));
    EXPECT_EQ(Shown(L"  a ; \t ;b  ;;;"), CString(L"a;b"));
    EXPECT_EQ(Shown(L""), CString());
    EXPECT_EQ(Shown(L" ; ;"), CString());
}

TEST(PathDecodingTest, OnlyTheWholeValueLosesItsClosingBackslashes)
{
    EXPECT_EQ(Shown(L"C:\\x;D:\\y\\"), CString(L"C:\\x;D:\\y"));
    EXPECT_EQ(Shown(L"C:\\x\\;D:\\y"), CString(L"C:\\x\\;D:\\y"));
    EXPECT_EQ(Shown(L"D:\\\\\\"), CString(L"D:"));
    EXPECT_EQ(Shown(L"[SLASHED];[SLASHED]"), CString(L"<Root>\\;<Root>"));
    EXPECT_EQ(Shown(L"[SLASHED]x"), CString(L"<Root>\\\\x"));
}

TEST(PathDecodingTest, EscapesAreUndoneBeforeAnythingIsTakenForAKey)
{
    EXPECT_EQ(Resolver({{L"old", L"<Old>", PREFIX}}).DecodePathList(L"[\\[]old]"), CString(L"<Old>"));
    EXPECT_EQ(Shown(L"[\\[]old]"), CString());
    EXPECT_EQ(Shown(L"x[\\{]y[\\}]z"), CString(L"x{y}z"));
    EXPECT_EQ(Shown(L"[\\]]x"), CString(L"x"));
}

TEST(PathDecodingTest, EscapesAreUndoneInTheirOrder)
{
    // The first gives "[\]]", which the second then finds.
    EXPECT_EQ(Resolver({{L"k", L"<K>", 0}}).DecodePathList(L"[\\[]\\]]k"), CString(L"k"));
    // The other way round nothing is found a second time.
    EXPECT_EQ(Resolver({{L"\\[k", L"<K>", 0}}).DecodePathList(L"[\\[[\\]]k"), CString(L"k"));
}

TEST(PathDecodingTest, EveryOddShapeOfBracketsHasItsKeyAndRest)
{
    const CPathResolver keyed = Resolver({{L"K", L"<K>", 0}});
    EXPECT_EQ(keyed.DecodePathList(L"lost[K]rest"), CString(L"<K>\\rest"));
    EXPECT_EQ(keyed.DecodePathList(L"lost[M]rest"), CString(L"rest"));
    EXPECT_EQ(keyed.DecodePathList(L"K]rest"), CString(L"<K>\\rest"));
    EXPECT_EQ(keyed.DecodePathList(L"M]rest"), CString(L"rest"));
    EXPECT_EQ(keyed.DecodePathList(L"a]b[K"), CString(L"<K>\\b[K"));
    EXPECT_EQ(keyed.DecodePathList(L"a]b[M"), CString(L"b[M"));
    EXPECT_EQ(keyed.DecodePathList(L"[K"), CString(L"<K>\\[K"));
    EXPECT_EQ(keyed.DecodePathList(L"[M"), CString(L"[M"));
    EXPECT_EQ(keyed.DecodePathList(L"K"), CString(L"<K>\\K"));
    EXPECT_EQ(keyed.DecodePathList(L"M"), CString(L"M"));
    EXPECT_EQ(keyed.DecodePathList(L"[K]a[K]b"), CString(L"<K>\\a[K]b"));
    EXPECT_EQ(keyed.DecodePathList(L"[]x;]y;[z"), CString(L"x;y;[z"));
}

TEST(PathDecodingTest, ARowWithoutTextLeavesABackslashInFrontOfWhatFollows)
{
    EXPECT_EQ(Shown(L"[NOTEXT]sub"), CString(L"\\sub"));
    EXPECT_EQ(Shown(L"a;[NOTEXT]"), CString(L"a"));
}

TEST(PathDecodingTest, ARowNeedsNoFlagToBeShown)
{
    EXPECT_EQ(Shown(L"[HELP]a;[HIDDEN]b;[BOTH]c"), CString(L"<Help>\\a;<Hidden>\\b;<Both>\\c"));
}

// ---- what stands for the beginning

TEST(DirectoryPrefixTest, ADriveLetterAnchorsAndIsNeverEncoded)
{
    const CPathResolver resolver = Resolver({{L"DRIVE", L"C:\\", PREFIX}, {L"LETTER", L"C", PREFIX}});
    for (const wchar_t* path : {L"C:\\x\\", L"C:", L"z:x", L"C:\\"}) {
        EXPECT_EQ(SplitOf(resolver, path), (Split{true, L"", path})) << Utf8(path);
    }
    EXPECT_EQ(SplitOf(resolver, L"CC:\\x"), (Split{true, L"LETTER", L"C:\\x"}));
    EXPECT_EQ(SplitOf(resolver, L"1:\\x"), (Split{false, L"", L"1:\\x"}));
}

TEST(DirectoryPrefixTest, APathThatNothingStandsForIsItsOwnRest)
{
    for (const wchar_t* path : {L"plain\\", L"\\\\server\\share\\", L"", L"\\x", L"x<Fonts root>"}) {
        EXPECT_EQ(SplitOf(Sample(), path), (Split{false, L"", path})) << Utf8(path);
    }
}

TEST(DirectoryPrefixTest, TheRestLosesTheBackslashesAroundIt)
{
    EXPECT_EQ(SplitOf(Sample(), L"<Fonts root>\\\\a\\b\\\\"), (Split{true, L"FONTS", L"a\\b"}));
    EXPECT_EQ(SplitOf(Sample(), L"<Fonts root>\\"), (Split{true, L"FONTS", L""}));
    EXPECT_EQ(SplitOf(Sample(), L"<Fonts root>"), (Split{true, L"FONTS", L""}));
}

TEST(DirectoryPrefixTest, OnlyRowsWithTheirFlagStandForABeginning)
{
    EXPECT_EQ(SplitOf(Sample(), L"<Help>\\x"), (Split{false, L"", L"<Help>\\x"}));
    EXPECT_EQ(SplitOf(Sample(), L"<Hidden>\\x"), (Split{false, L"", L"<Hidden>\\x"}));
    EXPECT_EQ(SplitOf(Sample(), L"<Both>\\x"), (Split{true, L"BOTH", L"x"}));
}

TEST(DirectoryPrefixTest, TheFirstKeyWinsAndNotTheLongestText)
{
    const CPathResolver resolver = Resolver({{L"A", L"ab", PREFIX}, {L"B", L"abc", PREFIX}});
    EXPECT_EQ(SplitOf(resolver, L"abcd"), (Split{true, L"A", L"cd"}));
    const CPathResolver turned = Resolver({{L"B", L"ab", PREFIX}, {L"A", L"abc", PREFIX}});
    EXPECT_EQ(SplitOf(turned, L"abcd"), (Split{true, L"A", L"d"}));
}

TEST(DirectoryPrefixTest, KeysAreOrderedByTheirCodeUnits)
{
    const CPathResolver resolver =
        Resolver({{L"a", L"x", PREFIX}, {L"Z", L"xy", PREFIX}, {L"\x00C4", L"xyz", PREFIX}});
    EXPECT_EQ(SplitOf(resolver, L"xyz"), (Split{true, L"Z", L"z"}));
}

TEST(DirectoryPrefixTest, ATextNeedNotEndAtABackslash)
{
    EXPECT_EQ(SplitOf(Sample(), L"<Fonts root>old\\x"), (Split{true, L"FONTS", L"old\\x"}));
}

TEST(DirectoryPrefixTest, TextsRegardCase)
{
    EXPECT_FALSE(SplitOf(Sample(), L"<fonts root>\\x").isAnchored);
}

TEST(DirectoryPrefixTest, APathMayShareItsObjectWithWhatComesBack)
{
    CString key, path = L"<Fonts root>\\a";
    EXPECT_TRUE(Sample().SplitDirectoryPrefix(key, path, path));
    EXPECT_EQ(path, CString(L"a"));
    CString both = L"<Fonts root>\\a", rest;
    EXPECT_TRUE(Sample().SplitDirectoryPrefix(both, rest, both));
    EXPECT_EQ(both, CString(L"FONTS"));
    EXPECT_EQ(rest, CString(L"a"));
}

// ---- storing

TEST(PathEncodingTest, ATextComesBackAsItsKeyWhereItsRowHasTheFlag)
{
    EXPECT_EQ(Stored(Shown(L"[FONTS]fonts")), CString(L"[FONTS]fonts"));
    EXPECT_EQ(Stored(Shown(L"[FONTS]")), CString(L"[FONTS]"));
    EXPECT_EQ(Stored(Shown(L"[HELP]topics")), CString(L"<Help>\\topics"));
}

TEST(PathEncodingTest, NoBackslashStandsBehindAKey)
{
    EXPECT_EQ(Stored(L"<Fonts root>\\sub\\dir"), CString(L"[FONTS]sub\\dir"));
}

TEST(PathEncodingTest, EntriesKeepTheirOrderAndRepeat)
{
    EXPECT_EQ(Stored(L"b;<Fonts root>;a;b;<Fonts root>"), CString(L"b;[FONTS];a;b;[FONTS]"));
}

TEST(PathEncodingTest, EmptyEntriesAndBlanksAroundThemGo)
{
    EXPECT_EQ(Stored(L"a;;b;"), CString(L"a;b"));
    EXPECT_EQ(Stored(L"  <Fonts root>\\x ; ; b\\ "), CString(L"[FONTS]x;b\\"));
    EXPECT_EQ(Stored(L" ;;"), CString());
    EXPECT_EQ(Stored(L""), CString());
}

// A literal bracket leaves bare: its escape is undone when it is read and not put back.
TEST(PathEncodingTest, BracketsStayBare)
{
    EXPECT_EQ(Stored(L"a[b]{c}"), CString(L"a[b]{c}"));
}

TEST(PathEncodingTest, AnEntryOfADriveKeepsItsClosingBackslash)
{
    EXPECT_EQ(Stored(L"C:\\x\\;D:\\y\\"), CString(L"C:\\x\\;D:\\y\\"));
}

// ---- the whole of it

TEST(PathModelTest, BothFormsAreThoseOfTheModelOnAnyTextsOfTheirCharacters)
{
    const wchar_t LETTERS[] = L"aB;[]\\: {}K\x00E4\x3000";
    std::mt19937 random(20270101); // NOLINT: the same run each time
    const auto text = [&](int longest) {
        CString made;
        for (int left = static_cast<int>(random() % (longest + 1)); left > 0; --left) {
            made += LETTERS[random() % (std::size(LETTERS) - 1)];
        }
        return made;
    };
    for (int round = 0; round < 20000; ++round) {
        DirectoryMap map;
        PathModel::Rows rows;
        for (int left = static_cast<int>(random() % 6); left > 0; --left) {
            const TarnDirectoryMapColumns row = {text(2), text(3), static_cast<int>(random() % 4)};
            map[row.Directory_] = std::make_unique<TarnDirectoryMapColumns>(row);
            rows.push_back({PathModel::From(row.Directory_), PathModel::From(row.LocalString), row.Flags});
        }
        const CPathResolver resolver(std::move(map));
        const CString value = text(14);
        const CString decoded = resolver.DecodePathList(value);
        ASSERT_EQ(decoded, PathModel::To(PathModel::Decode(rows, PathModel::From(value)))) << Utf8(value);
        for (const CString& shown : {value, decoded}) {
            CString encoded = shown;
            resolver.EncodePathList(encoded);
            ASSERT_EQ(encoded, PathModel::To(PathModel::Encode(rows, PathModel::From(shown)))) << Utf8(shown);
        }
    }
}

// Every text of up to `longest` of these characters. What escapes leave behind needs texts longer than random ones find.
void ExpectTheModelsForms(const std::vector<TarnDirectoryMapColumns>& map, const CString& characters,
                          int longest)
{
    const CPathResolver resolver = Resolver(map);
    PathModel::Rows rows;
    for (const TarnDirectoryMapColumns& row : map) {
        rows.push_back({PathModel::From(row.Directory_), PathModel::From(row.LocalString), row.Flags});
    }
    std::vector<CString> texts = {CString()};
    for (std::size_t index = 0; index < texts.size(); ++index) {
        const CString value = texts[index];
        const PathModel::Text text = PathModel::From(value);
        CString encoded = value, key, rest;
        resolver.EncodePathList(encoded);
        const bool isAnchored = resolver.SplitDirectoryPrefix(key, rest, value);
        const PathModel::Split split = PathModel::SplitPrefix(rows, text);
        ASSERT_EQ(resolver.DecodePathList(value), PathModel::To(PathModel::Decode(rows, text)))
            << Utf8(value);
        ASSERT_EQ(encoded, PathModel::To(PathModel::Encode(rows, text))) << Utf8(value);
        ASSERT_EQ(isAnchored, split.isAnchored) << Utf8(value);
        ASSERT_EQ(key, PathModel::To(split.key)) << Utf8(value);
        ASSERT_EQ(rest, PathModel::To(split.rest)) << Utf8(value);
        for (int next = 0; value.GetLength() < longest && next < characters.GetLength(); ++next) {
            texts.push_back(value + characters[next]);
        }
    }
}

TEST(PathModelTest, BothFormsAreThoseOfTheModelOnEveryShortText)
{
    ExpectTheModelsForms({}, L"K[];\\ a:", 4);
    ExpectTheModelsForms({{L"K", L"a", 2}, {L"", L"K", 2}, {L"a", L"a\\K", 3}, {L"KK", L"", 2}}, L"K[];\\ a:",
                         4);
    ExpectTheModelsForms({{L"K", L"a;\\", 0}, {L"a", L"[", 2}, {L"]", L"\\", 2}, {L"[", L"]K", 2}},
                         L"K[];\\ a:", 4);
}

TEST(PathModelTest, WhatEscapesLeaveBehindIsReadAsInTheModel)
{
    ExpectTheModelsForms({{L"[", L"open", 2}, {L"]", L"close", 2}, {L"}", L"brace", 2}}, L"[\\]}", 7);
}

TEST(PathModelTest, TextsOfAllScriptsComeBackAsTheyWere)
{
    const CPathResolver resolver = Resolver({{L"DATEN", L"\x30C7\x30FC\x30BF \xD83D\xDCC1", PREFIX}});
    const CString stored = L"[DATEN]\x0416\x0443\x0440\x043D\x0430\x043B\\\xD83D\xDE00;\x5E9\x5DC\x5D5\x5DD";
    CString value = resolver.DecodePathList(stored);
    EXPECT_EQ(value, CString(L"\x30C7\x30FC\x30BF \xD83D\xDCC1\\\x0416\x0443\x0440\x043D\x0430\x043B\\"
                             L"\xD83D\xDE00;\x5E9\x5DC\x5D5\x5DD"));
    resolver.EncodePathList(value);
    EXPECT_EQ(value, stored);
}

// The same number of entries in one list is to cost about what it costs in ten lists, not ten times as much.
TEST(PathModelTest, AListOf100000EntriesIsDecodedAndEncodedInTimeProportionalToIt)
{
    const auto seconds = [](int entries, int rounds) {
        CString list;
        for (int entry = 0; entry < entries; ++entry) {
            list += L"[FONTS]folder " + NumberText(entry) + L";";
        }
        const CPathResolver resolver = Sample();
        const double start = ProcessorSeconds();
        for (int round = 0; round < rounds; ++round) {
            CString value = resolver.DecodePathList(list);
            resolver.EncodePathList(value);
            EXPECT_EQ(value + L";", list);
        }
        return ProcessorSeconds() - start;
    };
    seconds(1000, 1); // warms up
    const double shortLists = seconds(10000, 10);
    const double longList = seconds(100000, 1);
    EXPECT_LT(longList, shortLists * 5) << shortLists << " s for ten lists";
}
