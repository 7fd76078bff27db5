// What the media says of itself: Setup.xml as data, and the rules that make it from the file's elements. The form is
// described in docs/setup-xml.md.
#pragma once

#include "host/xml_events.h"

#include <map>
#include <utility>
#include <vector>

struct PackageDescription
{
    int platform = 0; // 2: 32-bit, 3: 64-bit
    CString strFile;
    CString strProductCode; // with braces, upper case
    CString strVersion;
    bool operator==(const PackageDescription&) const = default;
};

// A product or a language pack; a pack has a language and no packs of its own.
struct ProductDescription
{
    CString strName;
    CString strFolder; // below the platform's folder; may be empty
    CString strCatalogKey;
    CString strLanguage;
    int kind = 0;
    bool bCarrier1 = false;
    bool bCarrier2 = false;
    std::vector<PackageDescription> packages;
    std::vector<ProductDescription> languagePacks;

    // Null when the product doesn't exist for the platform.
    const PackageDescription* FindPackage(int platform) const;
    bool operator==(const ProductDescription&) const = default;
};

struct PlatformDescription
{
    int id = 0;
    CString strFolder; // of that platform's packages; may be empty
    bool operator==(const PlatformDescription&) const = default;
};

struct PageDescription
{
    CString strName;
    CString strHelpFile;
    bool operator==(const PageDescription&) const = default;
};

struct SetupDescription
{
    CString strCode; // with braces, upper case
    CString strName;
    CString strMaker;
    CString strProductVersion;
    CString strResourceFolder; // empty when the media has none
    CString strLinkTargets[2]; // empty when the link is off
    CString strStep;
    CString strDefaultLanguage;
    std::vector<CString> languages;
    std::vector<PageDescription> flow;
    bool bConfigure = false; // pages that exist as tabs stand together in one dialog
    std::vector<PlatformDescription> platforms;
    std::vector<ProductDescription> products;

    const PlatformDescription* FindPlatform(int id) const;
    bool operator==(const SetupDescription&) const = default;
};

// "x64\Zolt\" for a product of a platform, relative to the media's root; empty when both folders are.
[[nodiscard]] CString PackageFolder(const SetupDescription& setup, const ProductDescription& product,
                                    int platform);

// Takes the events of one Setup.xml. GetDescription is whole only when there is no fault.
class CSetupDescriptionReader final : public IXmlEvents
{
public:
    bool OnElement(const CString& name, const std::vector<XmlAttribute>& attributes, int line) override;
    bool OnElementEnd() override;
    bool OnText(const CString& text, int line) override;
    XmlFault GetFault() const override { return m_fault; }
    const SetupDescription& GetDescription() const { return m_setup; }

private:
    struct ElementRule;

    const ElementRule* FindRule(const CString& name) const;
    void ReadSetup(class CXmlValues& values);
    void ReadResources(CXmlValues& values);
    void ReadLink(CXmlValues& values);
    void ReadStep(CXmlValues& values);
    void ReadLanguages(CXmlValues& values);
    void ReadLanguage(CXmlValues& values);
    void ReadFlow(CXmlValues& values);
    void ReadPage(CXmlValues& values);
    void ReadPlatform(CXmlValues& values);
    void CountProduct(CXmlValues& values);
    void ReadProduct(CXmlValues& values);
    void ReadLanguagePack(CXmlValues& values);
    void ReadPackage(CXmlValues& values);
    void ReadGroup(CXmlValues& values);
    void CheckProductCode(const PackageDescription& package, class CXmlValues& values);
    void CheckWhole();
    bool Fail(const CString& message, int line);

    SetupDescription m_setup;
    XmlFault m_fault;
    std::vector<CString> m_open;                               // names of the elements that are open
    std::vector<CString> m_groups;                             // elements seen that may stand once
    std::size_t m_productCount = 0;                            // language packs included
    std::map<std::pair<int, CString>, CString> m_packageFiles; // by platform and product code
};

// The text of a Setup.xml that reads back as the description.
[[nodiscard]] CString WriteSetupDescription(const SetupDescription& setup);
