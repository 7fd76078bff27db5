// What a transform's rows may look like before the installer is asked to apply them.
#include "builder/transform_check.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

void Append(StreamBytes& bytes, std::initializer_list<unsigned int> numbers)
{
    for (const unsigned int number : numbers) {
        bytes.push_back(static_cast<unsigned char>(number));
        bytes.push_back(static_cast<unsigned char>(number >> 8));
    }
}

StreamBytes Numbers(std::initializer_list<unsigned int> numbers)
{
    StreamBytes bytes;
    Append(bytes, numbers);
    return bytes;
}

// Texts are numbered from 1 on.
TransformStreams WithTexts(std::initializer_list<const char*> texts)
{
    TransformStreams streams;
    StreamBytes& pool = streams[L"_StringPool"];
    StreamBytes& data = streams[L"_StringData"];
    Append(pool, {1252, 0});
    for (const std::string text : texts) {
        Append(pool, {static_cast<unsigned int>(text.size()), 1});
        data.insert(data.end(), text.begin(), text.end());
    }
    return streams;
}

// Name (a key) with a short number, a long one and a stream.
DatabaseSnapshot Database()
{
    DatabaseSnapshot database;
    database[L"Things"] = {{L"Name", L"Short", L"Long", L"Data"}, {L"s72", L"I2", L"i4", L"V0"}, 1, {}};
    return database;
}

CString FaultOf(const StreamBytes& things)
{
    TransformStreams streams = WithTexts({"one", "two"});
    streams[L"Things"] = things;
    return FindTransformFault(Database(), streams);
}

const wchar_t g_damaged[] = L"is damaged: its rows of the table Things can't be read";
const wchar_t g_columns[] = L"has rows of the table Things with columns that the product doesn't have";

} // namespace

TEST(TransformCheck, EachKindOfRowIsRead)
{
    EXPECT_EQ(Utf8(FaultOf(Numbers({0x0401, 1, 0x8001, 2, 0x8000, 1}))), "") << "a whole row";
    EXPECT_EQ(Utf8(FaultOf(Numbers({0x0201, 1, 0x8001}))), "") << "its first two columns";
    EXPECT_EQ(Utf8(FaultOf(Numbers({0, 2}))), "") << "a row that goes";
    EXPECT_EQ(Utf8(FaultOf(Numbers({0x0004, 2, 3, 0x8000}))), "") << "its third column";
    EXPECT_EQ(Utf8(FaultOf(Numbers({0, 2, 0x0002, 1, 7}))), "") << "two rows";
}

TEST(TransformCheck, ARowThatEndsInTheMiddleIsDamaged)
{
    StreamBytes bytes = Numbers({0x0401, 1, 0x8001, 2, 0x8000, 1});
    while (bytes.size() > 1) {
        bytes.pop_back();
        EXPECT_EQ(FaultOf(bytes), g_damaged) << bytes.size();
    }
}

TEST(TransformCheck, ATextThatIsNotThereIsDamaged)
{
    EXPECT_EQ(FaultOf(Numbers({0, 3})), g_damaged);
}

TEST(TransformCheck, AColumnBehindTheLastIsTold)
{
    EXPECT_EQ(FaultOf(Numbers({0x0501, 1, 1, 1, 1, 1, 1})), g_columns);
    EXPECT_EQ(FaultOf(Numbers({0x0010, 1, 1})), g_columns);
    EXPECT_EQ(FaultOf(Numbers({0x0001})), g_columns) << "fewer than the key";
}

TEST(TransformCheck, ATableThatIsNotThereIsTold)
{
    TransformStreams streams = WithTexts({"one"});
    streams[L"Others"] = Numbers({0, 1});
    EXPECT_EQ(FindTransformFault(Database(), streams),
              L"changes the table Others, which the product doesn't have");
}

TEST(TransformCheck, ATableOfItsOwnIsKnown)
{
    TransformStreams streams = WithTexts({"Others", "Key"});
    streams[L"_Tables"] = Numbers({0x0101, 1});
    streams[L"_Columns"] = Numbers({0x0401, 1, 0x8001, 2, 0x8000 + 0x2D48});
    streams[L"Others"] = Numbers({0x0101, 2});
    EXPECT_EQ(Utf8(FindTransformFault(Database(), streams)), "");
    streams[L"Others"] = Numbers({0x0201, 2, 2});
    EXPECT_NE(Utf8(FindTransformFault(Database(), streams)), "");
}

TEST(TransformCheck, AColumnMayComeBehindTheOthersAlone)
{
    TransformStreams streams = WithTexts({"Things", "More"});
    streams[L"_Columns"] = Numbers({0x0401, 1, 0x8005, 2, 0x8000 + 0x1502});
    streams[L"Things"] = Numbers({0x0010, 1, 7});
    EXPECT_EQ(Utf8(FindTransformFault(Database(), streams)), "");
    streams[L"_Columns"] = Numbers({0x0401, 1, 0x8004, 2, 0x8000 + 0x1502});
    EXPECT_EQ(FindTransformFault(Database(), streams),
              L"is damaged: its rows of the table _Columns can't be read");
}

TEST(TransformCheck, AColumnThatGoesIsRefused)
{
    TransformStreams streams = WithTexts({"Things"});
    streams[L"_Columns"] = Numbers({0, 1, 0x8002});
    EXPECT_NE(Utf8(FindTransformFault(Database(), streams)), "");
}

TEST(TransformCheck, TextsThatDoNotFitTheirLengthsAreDamaged)
{
    TransformStreams streams = WithTexts({"one"});
    streams[L"_StringData"].pop_back();
    EXPECT_EQ(FindTransformFault(Database(), streams), L"is damaged: its texts can't be read");
    streams.erase(L"_StringPool");
    EXPECT_EQ(FindTransformFault(Database(), streams), L"is damaged: its texts can't be read");
}

TEST(TransformCheck, NumbersOfTextsMayHaveThreeBytes)
{
    TransformStreams streams = WithTexts({"one"});
    streams[L"_StringPool"][3] = 0x80;
    streams[L"Things"] = {0, 0, 1, 0, 0};
    EXPECT_EQ(Utf8(FindTransformFault(Database(), streams)), "");
    streams[L"Things"] = {0, 0, 1, 0, 1};
    EXPECT_EQ(FindTransformFault(Database(), streams), g_damaged);
}

TEST(TransformCheck, ALongTextHasItsLengthBehindIt)
{
    TransformStreams streams = WithTexts({});
    Append(streams[L"_StringPool"], {0, 1, 4, 0, 1, 1});
    streams[L"_StringData"] = {'f', 'o', 'u', 'r', '1'};
    streams[L"Things"] = Numbers({0, 2});
    EXPECT_EQ(Utf8(FindTransformFault(Database(), streams)), "");
}

TEST(TransformCheck, NamesOfTablesAreUnpacked)
{
    EXPECT_EQ(TableOfStream(L"\x4840\x430F\x422F"), L"File");
    EXPECT_EQ(TableOfStream(L"\x4840\x4216\x4327\x4824"), L"Media") << "a lone letter at the end";
    EXPECT_EQ(TableOfStream(L"\x4840\x3F7F\x4164\x422F\x4836"), L"_Tables");
    EXPECT_EQ(TableOfStream(L"Media"), L"") << "not a table's stream";
    EXPECT_EQ(TableOfStream(CString()), L"");
}
