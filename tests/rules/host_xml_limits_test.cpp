// Foreign XML beyond what is read: refused with a sentence and a line before the parser sees it. What stands just at a
// limit goes through the parser.
#include "host/deployment_file.h"
#include "host/setup_description.h"
#include "host/xml_limits.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const char CODE[] = "{11111111-2222-3333-4444-555555555555}";

// `content` stands on the third line.
std::string Deployment(const std::string& content)
{
    return std::string("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Deployment version=\"1\" name=\"North\" "
                       "setupCode=\"") +
           CODE +
           "\" productName=\"Zolt\" productVersion=\"1\" platform=\"3\" language=\"en-US\"><Settings "
           "installMode=\"2\" "
           "networkLog=\"0\" settingsOption=\"0\"/>\n" +
           content + "\n</Deployment>";
}

XmlFault Read(const std::string& text, DeploymentFile* deployment = nullptr)
{
    CDeploymentFileReader reader;
    const XmlFault fault = ReadXml(text.data(), text.size(), reader);
    if (deployment) {
        *deployment = reader.GetDeployment();
    }
    return fault;
}

std::string Filled(const char* start, const char* end, std::size_t bytes)
{
    const std::size_t fixed = std::string(start).size() + std::string(end).size();
    return start + std::string(bytes - fixed, ' ') + end;
}

std::string Property(const std::string& value)
{
    return "<Property name=\"A\" value=\"" + value + "\"/>";
}

std::string Repeated(const std::string& text, std::size_t count)
{
    std::string all;
    for (; count > 0; --count) {
        all += text;
    }
    return all;
}

std::string Number(std::size_t number)
{
    return std::to_string(number);
}

std::string ManyAttributes(std::size_t count)
{
    std::string element = "<Property";
    for (std::size_t index = 0; index < count; ++index) {
        element += " a" + Number(index) + "=\"1\"";
    }
    return element + "/>";
}

struct Bound
{
    const char* what;
    std::string atLimit;
    std::string beyond;
    const wchar_t* message;
};

class XmlLimitTest : public testing::TestWithParam<Bound>
{
};

// The deepest element is no known one, so only the depth's own message distinguishes the two.
std::string Deep(int levels)
{
    return Repeated("<a>", static_cast<std::size_t>(levels)) +
           Repeated("</a>", static_cast<std::size_t>(levels));
}

} // namespace

// A comment of 500 kB ended the program inside of the platform's reader.
TEST_P(XmlLimitTest, WhatIsLargerIsRefusedWithItsLine)
{
    const XmlFault fault = Read(Deployment(GetParam().beyond));
    EXPECT_GE(fault.message.Find(GetParam().message), 0) << Utf8(fault.message);
    EXPECT_EQ(fault.line, 3) << Utf8(fault.message);
}

TEST_P(XmlLimitTest, WhatJustFitsIsNotRefusedForItsSize)
{
    const XmlFault fault = Read(Deployment(GetParam().atLimit));
    EXPECT_EQ(fault.message.Find(GetParam().message), -1) << Utf8(fault.message);
}

INSTANTIATE_TEST_SUITE_P(
    Piece, XmlLimitTest,
    testing::Values(
        Bound{"Comment", Filled("<!--", "-->", XML_COMMENT_LIMIT),
              Filled("<!--", "-->", XML_COMMENT_LIMIT + 1), L"A comment is longer than the 65536 bytes"},
        Bound{"HugeComment", "<!---->", Filled("<!--", "-->", 500000), L"A comment is longer"},
        Bound{"Instruction", Filled("<?p ", "?>", XML_TEXT_LIMIT), Filled("<?p ", "?>", XML_TEXT_LIMIT + 1),
              L"A processing instruction is longer than the 1048576 bytes"},
        Bound{"Section", Filled("<![CDATA[", "]]>", XML_TEXT_LIMIT),
              Filled("<![CDATA[", "]]>", XML_TEXT_LIMIT + 1), L"A CDATA section is longer"},
        Bound{"Text", "<!---->" + std::string(XML_TEXT_LIMIT - 1, ' '),
              "<!---->" + std::string(XML_TEXT_LIMIT + 1, ' '), L"A text is longer"},
        Bound{"Value", Property(std::string(XML_TEXT_LIMIT - 1, 'x')),
              Property(std::string(XML_TEXT_LIMIT, 'x')), L"The value of an attribute is longer"},
        Bound{"Tag", "<Property" + std::string(XML_TAG_LIMIT - 30, ' ') + "name=\"A\" value=\"\"/>",
              "<Property" + std::string(XML_TAG_LIMIT, ' ') + "name=\"A\" value=\"\"/>",
              L"A tag without its values is longer"},
        Bound{"Name", "<" + std::string(XML_TAG_LIMIT - 5, 'n') + "/>",
              "<" + std::string(XML_TAG_LIMIT, 'n') + "/>", L"A tag without its values is longer"},
        Bound{"Attributes", ManyAttributes(XML_ATTRIBUTES_LIMIT), ManyAttributes(XML_ATTRIBUTES_LIMIT + 1),
              L"more than the 32 attributes"},
        Bound{"ManyAttributes", ManyAttributes(1), ManyAttributes(60000), L"more than the 32 attributes"},
        Bound{"Depth", Deep(XML_DEPTH_LIMIT - 1), Deep(XML_DEPTH_LIMIT), L"more than 16 levels deep"},
        Bound{"Pieces", Repeated("<!---->", XML_PIECES_LIMIT - 3), Repeated("<!---->", XML_PIECES_LIMIT - 2),
              L"more than the 100000 elements and comments"}),
    [](const testing::TestParamInfo<Bound>& information) { return information.param.what; });

TEST(XmlLimitsTest, WhatJustFitsIsReadWhole)
{
    DeploymentFile deployment;
    const std::string longest(XML_TEXT_LIMIT - 1, 'x');
    const XmlFault fault = Read(Deployment(Filled("<!--", "-->", XML_COMMENT_LIMIT) +
                                           Filled("<?p ", "?>", XML_TEXT_LIMIT) + Property(longest)),
                                &deployment);
    ASSERT_FALSE(fault) << Utf8(fault.message);
    ASSERT_EQ(deployment.properties.size(), 1u);
    EXPECT_EQ(Utf8(deployment.properties[0].value), longest);
}

TEST(XmlLimitsTest, LinesBehindACommentKeepTheirNumbers)
{
    const XmlFault fault = Read(Deployment("<!-- a\r\nb\n\n-->\n<Unknown/>"));
    EXPECT_GE(fault.message.Find(L"<Unknown>"), 0) << Utf8(fault.message);
    EXPECT_EQ(fault.line, 7);
}

TEST(XmlLimitsTest, ACommentWithTwoHyphensInsideIsNotWellFormed)
{
    EXPECT_FALSE(Read(Deployment("<!-- a - b -->")));
    for (const char* comment : {"<!-- a -- b -->", "<!-- a --->", "<!--->"}) {
        EXPECT_GE(Read(Deployment(comment)).message.Find(L"not well-formed"), 0) << comment;
    }
}

// A letter beyond 16 bits was cut to another one, and `&#96;41;` became the letter A.
TEST(XmlLimitsTest, ACharacterReferenceGivesItsLetter)
{
    DeploymentFile deployment;
    const XmlFault fault =
        Read(Deployment(Property("&#x1F600;&#xe4;&#228;&#65;|&#96;41;&#96;;&#x60;|`41;`;`")), &deployment);
    ASSERT_FALSE(fault) << Utf8(fault.message);
    EXPECT_EQ(Utf8(deployment.properties.at(0).value), "\xF0\x9F\x98\x80\xC3\xA4\xC3\xA4"
                                                       "A|`41;`;`|`41;`;`");
}

TEST(XmlLimitsTest, AnAttributeThatStandsTwiceIsRefused)
{
    EXPECT_TRUE(Read(Deployment("<Property name=\"A\" value=\"1\" name=\"B\"/>")));
}

TEST(XmlLimitsTest, AMessageShowsAForeignTextShortenedAndInOneLine)
{
    const XmlFault fault = Read(
        Deployment("<Property name=\"A\" value=\"\" escaped=\"&#10;" + std::string(100000, '1') + "\"/>"));
    EXPECT_GE(fault.message.Find(L"is not a number"), 0) << Utf8(fault.message);
    EXPECT_LT(fault.message.GetLength(), 400);
    EXPECT_EQ(fault.message.Find(L'\n'), -1) << Utf8(fault.message);
}

TEST(XmlLimitsTest, MediaOfMoreProductsThanADeploymentNamesAreRefused)
{
    std::string products;
    for (std::size_t product = 0; product < 10; ++product) {
        products +=
            "<Product name=\"p\" folder=\"p" + Number(product) +
            "\"><Package platform=\"3\" file=\"a.msi\" productCode=\"{11111111-2222-3333-4444-55555555555" +
            Number(product) + "}\" version=\"1\"/>";
        for (std::size_t pack = 0; pack < 100; ++pack) {
            products += "<LanguagePack name=\"l\" folder=\"l" + Number(product) + "x" + Number(pack) +
                        "\" language=\"de-DE\"/>";
        }
        products += "</Product>\n";
    }
    CSetupDescriptionReader reader;
    const std::string text =
        std::string("<Setup version=\"1\" code=\"") + CODE +
        "\" name=\"Z\" maker=\"M\" productVersion=\"1\"><Languages default=\"en-US\"><Language "
        "name=\"en-US\"/></Languages><Flow><Page name=\"BeginDeploymentDialog\"/></Flow><Platforms><Platform "
        "id=\"3\" "
        "folder=\"\"/></Platforms><Products>" +
        products + "</Products></Setup>";
    const XmlFault fault = ReadXml(text.data(), text.size(), reader);
    EXPECT_GE(fault.message.Find(L"more than 1000 elements <Product>"), 0) << Utf8(fault.message);
    EXPECT_EQ(fault.line, 10);
}
