#include "host/setup_description.h"

#include "base/ascii.h"
#include "base/name_rules.h"
#include "host/host_messages.h"
#include "host/xml_limits.h"
#include "host/xml_values.h"
#include "include/page_table.h"

#include <map>

namespace {

constexpr std::size_t ITEM_LIMIT = 200; // of one kind; far above what a media holds
constexpr int DESCRIPTION_VERSION = 1;
constexpr int PLATFORM_FIRST = 2;
constexpr int PLATFORM_LAST = 3;

template <class Items>
bool IsFull(const Items& items, const wchar_t* name, CXmlValues& values)
{
    if (items.size() < ITEM_LIMIT) {
        return false;
    }
    values.Fail(HostSentence(HostText::XmlTooMany, {name, NumberText(ITEM_LIMIT)}));
    return true;
}

// The names that a flow may hold.
CString WizardPages()
{
    CString list;
    for (const PageRow& page : PAGE_TABLE) {
        list += (list.IsEmpty() ? CString() : CString(L", ")) + WizardExport(page);
    }
    return list;
}

// Never two packages in one folder: the files beside them would mix.
XmlFault FindSharedFolder(const SetupDescription& setup)
{
    std::map<CString, CString, CompareNoCaseLess> files; // by folder
    XmlFault fault;
    const auto add = [&](const ProductDescription& product) {
        for (const PackageDescription& package : product.packages) {
            const CString folder = PackageFolder(setup, product, package.platform);
            const CString& first = files.emplace(folder, package.strFile).first->second;
            if (!fault && first.CompareNoCase(package.strFile) != 0) {
                fault.message = HostSentence(HostText::SharedPackageFolder, {folder, first, package.strFile});
            }
        }
    };
    for (const ProductDescription& product : setup.products) {
        add(product);
        for (const ProductDescription& pack : product.languagePacks) {
            add(pack);
        }
    }
    return fault;
}

} // namespace

// Where an element may stand and who reads it. Elements marked `once` may not be repeated.
struct CSetupDescriptionReader::ElementRule
{
    const wchar_t* name;
    const wchar_t* parent;
    bool once;
    void (CSetupDescriptionReader::*read)(CXmlValues&);
};

const PackageDescription* ProductDescription::FindPackage(int platform) const
{
    for (const PackageDescription& package : packages) {
        if (package.platform == platform) {
            return &package;
        }
    }
    return nullptr;
}

const PlatformDescription* SetupDescription::FindPlatform(int id) const
{
    for (const PlatformDescription& platform : platforms) {
        if (platform.id == id) {
            return &platform;
        }
    }
    return nullptr;
}

CString PackageFolder(const SetupDescription& setup, const ProductDescription& product, int platform)
{
    CString path;
    const PlatformDescription* described = setup.FindPlatform(platform);
    for (const CString& folder : {described ? described->strFolder : CString(), product.strFolder}) {
        if (!folder.IsEmpty()) {
            path += folder + L"\\";
        }
    }
    return path;
}

const CSetupDescriptionReader::ElementRule* CSetupDescriptionReader::FindRule(const CString& name) const
{
    using Reader = CSetupDescriptionReader;
    static const ElementRule RULES[] = {
        {L"Setup", L"", true, &Reader::ReadSetup},
        {L"Resources", L"Setup", true, &Reader::ReadResources},
        {L"Link", L"Setup", false, &Reader::ReadLink},
        {L"Step", L"Setup", true, &Reader::ReadStep},
        {L"Languages", L"Setup", true, &Reader::ReadLanguages},
        {L"Language", L"Languages", false, &Reader::ReadLanguage},
        {L"Flow", L"Setup", true, &Reader::ReadFlow},
        {L"Page", L"Flow", false, &Reader::ReadPage},
        {L"Platforms", L"Setup", true, &Reader::ReadGroup},
        {L"Platform", L"Platforms", false, &Reader::ReadPlatform},
        {L"Products", L"Setup", true, &Reader::ReadGroup},
        {L"Product", L"Products", false, &Reader::ReadProduct},
        {L"LanguagePack", L"Product", false, &Reader::ReadLanguagePack},
        {L"Package", L"Product", false, &Reader::ReadPackage},
        {L"Package", L"LanguagePack", false, &Reader::ReadPackage},
    };
    const CString parent = m_open.empty() ? CString() : m_open.back();
    for (const ElementRule& rule : RULES) {
        if (name == rule.name && parent == rule.parent) {
            return &rule;
        }
    }
    return nullptr;
}

bool CSetupDescriptionReader::Fail(const CString& message, int line)
{
    if (!m_fault) {
        m_fault = {message, line};
    }
    return false;
}

bool CSetupDescriptionReader::OnElement(const CString& name, const std::vector<XmlAttribute>& attributes,
                                        int line)
{
    const ElementRule* rule = FindRule(name);
    if (!rule) {
        return m_open.empty()
                   ? Fail(HostSentence(HostText::XmlWrongRoot, {Shown(name), L"Setup"}), line)
                   : Fail(HostSentence(HostText::XmlUnknownElement, {Shown(name), m_open.back()}), line);
    }
    if (rule->once) {
        for (const CString& group : m_groups) {
            if (group == name) {
                return Fail(HostSentence(HostText::XmlRepeatedElement, {name}), line);
            }
        }
        m_groups.push_back(name);
    }
    m_open.push_back(name);
    CXmlValues values(name, attributes, line);
    (this->*rule->read)(values);
    m_fault = values.Finish();
    return !m_fault;
}

bool CSetupDescriptionReader::OnElementEnd()
{
    m_open.pop_back();
    if (m_open.empty()) {
        CheckWhole();
    }
    return !m_fault;
}

bool CSetupDescriptionReader::OnText(const CString& text, int line)
{
    CString trimmed = text;
    if (trimmed.Trim().IsEmpty()) {
        return true;
    }
    return Fail(HostSentence(HostText::XmlTextOutside, {m_open.empty() ? CString(L"Setup") : m_open.back()}),
                line);
}

void CSetupDescriptionReader::ReadSetup(CXmlValues& values)
{
    const int version = values.ReadNumber(L"version", 1, 1000000);
    if (version > DESCRIPTION_VERSION) {
        values.Fail(
            HostSentence(HostText::XmlNewerVersion, {NumberText(version), NumberText(DESCRIPTION_VERSION)}));
    }
    m_setup.strCode = values.ReadGuid(L"code");
    m_setup.strName = values.ReadText(L"name", NAME_LIMIT);
    m_setup.strMaker = values.ReadText(L"maker", NAME_LIMIT);
    m_setup.strProductVersion = values.ReadText(L"productVersion", VERSION_LIMIT);
}

void CSetupDescriptionReader::ReadResources(CXmlValues& values)
{
    m_setup.strResourceFolder = values.ReadRelativePath(L"folder", false);
}

void CSetupDescriptionReader::ReadLink(CXmlValues& values)
{
    const int number = values.ReadNumber(L"number", 1, 2);
    CString& target = m_setup.strLinkTargets[number - 1];
    if (!target.IsEmpty()) {
        values.Fail(HostSentence(HostText::ValueRepeated, {L"number", NumberText(number)}));
    }
    target = values.ReadRelativePath(L"target", false);
}

void CSetupDescriptionReader::ReadStep(CXmlValues& values)
{
    m_setup.strStep = values.ReadText(L"text", NAME_LIMIT);
}

void CSetupDescriptionReader::ReadLanguages(CXmlValues& values)
{
    m_setup.strDefaultLanguage = values.ReadLocale(L"default");
}

void CSetupDescriptionReader::ReadLanguage(CXmlValues& values)
{
    const CString name = values.ReadLocale(L"name");
    for (const CString& language : m_setup.languages) {
        if (language.CompareNoCase(name) == 0) {
            values.Fail(HostSentence(HostText::ValueRepeated, {L"name", name}));
        }
    }
    if (!IsFull(m_setup.languages, L"Language", values)) {
        m_setup.languages.push_back(name);
    }
}

void CSetupDescriptionReader::ReadGroup(CXmlValues&)
{
}

void CSetupDescriptionReader::ReadFlow(CXmlValues& values)
{
    const CString configure = values.ReadOptionalText(L"configure", 100);
    if (!configure.IsEmpty() && configure != L"yes" && configure != L"no") {
        values.Fail(HostSentence(HostText::ValueNotChoice, {L"configure", configure, L"yes, no"}));
    }
    m_setup.bConfigure = configure == L"yes";
}

void CSetupDescriptionReader::ReadPage(CXmlValues& values)
{
    PageDescription page;
    page.strName = values.ReadText(L"name", 100);
    // Any other function of the page library, such as a tab page's, would break the program that calls it as a dialog; a
    // slip of the pen would leave its page out without a word.
    if (!FindWizardPage(page.strName)) {
        values.Fail(HostSentence(HostText::ValueNotPage, {L"name", page.strName, WizardPages()}));
    }
    page.strHelpFile = values.ReadOptionalText(L"help", NAME_LIMIT);
    if (!page.strHelpFile.IsEmpty() && !IsSafeRelativePath(page.strHelpFile)) {
        values.Fail(HostSentence(HostText::ValueNotRelative, {L"help", page.strHelpFile}));
    }
    if (!IsFull(m_setup.flow, L"Page", values)) {
        m_setup.flow.push_back(page);
    }
}

void CSetupDescriptionReader::ReadPlatform(CXmlValues& values)
{
    PlatformDescription platform;
    platform.id = values.ReadNumber(L"id", PLATFORM_FIRST, PLATFORM_LAST);
    platform.strFolder = values.ReadRelativePath(L"folder", true);
    if (m_setup.FindPlatform(platform.id)) {
        values.Fail(HostSentence(HostText::ValueRepeated, {L"id", NumberText(platform.id)}));
    }
    m_setup.platforms.push_back(platform);
}

// A deployment's file holds no more of them.
void CSetupDescriptionReader::CountProduct(CXmlValues& values)
{
    if (++m_productCount > PRODUCT_LIMIT) {
        values.Fail(HostSentence(HostText::XmlTooMany, {L"Product", NumberText(PRODUCT_LIMIT)}));
    }
}

void CSetupDescriptionReader::ReadProduct(CXmlValues& values)
{
    ProductDescription product;
    product.strName = values.ReadText(L"name", NAME_LIMIT);
    product.strFolder = values.ReadRelativePath(L"folder", true);
    product.strCatalogKey = values.ReadOptionalText(L"catalogKey", NAME_LIMIT);
    product.kind = values.ReadOptionalNumber(L"kind", 0, 1000000, 0);
    product.bCarrier1 = values.ReadOptionalNumber(L"carrier1", 0, 1, 0) == 1;
    product.bCarrier2 = values.ReadOptionalNumber(L"carrier2", 0, 1, 0) == 1;
    CountProduct(values);
    if (!IsFull(m_setup.products, L"Product", values)) {
        m_setup.products.push_back(product);
    }
}

void CSetupDescriptionReader::ReadLanguagePack(CXmlValues& values)
{
    ProductDescription pack;
    pack.strName = values.ReadText(L"name", NAME_LIMIT);
    pack.strFolder = values.ReadRelativePath(L"folder", true);
    pack.strLanguage = values.ReadLocale(L"language");
    pack.strCatalogKey = values.ReadOptionalText(L"catalogKey", NAME_LIMIT);
    CountProduct(values);
    std::vector<ProductDescription>& packs = m_setup.products.back().languagePacks;
    if (!IsFull(packs, L"LanguagePack", values)) {
        packs.push_back(pack);
    }
}

void CSetupDescriptionReader::ReadPackage(CXmlValues& values)
{
    PackageDescription package;
    package.platform = values.ReadNumber(L"platform", PLATFORM_FIRST, PLATFORM_LAST);
    package.strFile = values.ReadFileName(L"file");
    package.strProductCode = values.ReadGuid(L"productCode");
    package.strVersion = values.ReadText(L"version", VERSION_LIMIT);
    if (package.strFile.Right(4).CompareNoCase(L".msi") != 0) {
        values.Fail(
            HostSentence(HostText::ValueNotChoice, {L"file", package.strFile, L"names ending in .msi"}));
    }
    if (!m_setup.FindPlatform(package.platform)) {
        values.Fail(HostSentence(HostText::ValueNotPlatform, {L"platform", NumberText(package.platform)}));
    }
    // The parent is open below this element: a product, or the last pack of one.
    ProductDescription& product = m_setup.products.back();
    ProductDescription& owner =
        m_open[m_open.size() - 2] == L"LanguagePack" ? product.languagePacks.back() : product;
    if (owner.FindPackage(package.platform)) {
        values.Fail(HostSentence(HostText::ValueRepeated, {L"platform", NumberText(package.platform)}));
    }
    CheckProductCode(package, values);
    owner.packages.push_back(package);
}

// A deployment's file names each product once, so that such media would be refused after the last page.
void CSetupDescriptionReader::CheckProductCode(const PackageDescription& package, CXmlValues& values)
{
    const auto [first, isNew] =
        m_packageFiles.emplace(std::pair{package.platform, package.strProductCode}, package.strFile);
    if (!isNew) {
        values.Fail(HostSentence(HostText::ProductListedTwice,
                                 {package.strFile, package.strProductCode, first->second}));
    }
}

void CSetupDescriptionReader::CheckWhole()
{
    if (m_fault) {
        return;
    }
    const struct
    {
        bool missing;
        const wchar_t* name;
        const wchar_t* parent;
    } needs[] = {
        {m_setup.platforms.empty(), L"Platform", L"Platforms"},
        {m_setup.products.empty(), L"Product", L"Products"},
        {m_setup.flow.empty(), L"Page", L"Flow"},
        {m_setup.languages.empty(), L"Language", L"Languages"},
    };
    for (const auto& need : needs) {
        if (need.missing) {
            Fail(HostSentence(HostText::XmlMissingElement, {need.name, need.parent}), 0);
            return;
        }
    }
    for (const ProductDescription& product : m_setup.products) {
        if (product.packages.empty()) {
            Fail(HostSentence(HostText::XmlMissingElement, {L"Package", L"Product"}), 0);
            return;
        }
    }
    m_fault = FindSharedFolder(m_setup);
}
