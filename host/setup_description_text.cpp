#include "host/setup_description.h"

#include "host/xml_text.h"

namespace {

void WritePackages(CXmlText& xml, const ProductDescription& product)
{
    for (const PackageDescription& package : product.packages) {
        xml.OpenElement(L"Package");
        xml.AddAttribute(L"platform", NumberText(package.platform));
        xml.AddAttribute(L"file", package.strFile);
        xml.AddAttribute(L"productCode", package.strProductCode);
        xml.AddAttribute(L"version", package.strVersion);
        xml.CloseElement();
    }
}

void WriteCatalogKey(CXmlText& xml, const ProductDescription& product)
{
    if (!product.strCatalogKey.IsEmpty()) {
        xml.AddAttribute(L"catalogKey", product.strCatalogKey);
    }
}

void WriteProduct(CXmlText& xml, const ProductDescription& product)
{
    xml.OpenElement(L"Product");
    xml.AddAttribute(L"name", product.strName);
    xml.AddAttribute(L"folder", product.strFolder);
    WriteCatalogKey(xml, product);
    xml.AddAttribute(L"kind", NumberText(product.kind));
    xml.AddAttribute(L"carrier1", NumberText(product.bCarrier1));
    xml.AddAttribute(L"carrier2", NumberText(product.bCarrier2));
    WritePackages(xml, product);
    for (const ProductDescription& pack : product.languagePacks) {
        xml.OpenElement(L"LanguagePack");
        xml.AddAttribute(L"name", pack.strName);
        xml.AddAttribute(L"folder", pack.strFolder);
        xml.AddAttribute(L"language", pack.strLanguage);
        WriteCatalogKey(xml, pack);
        WritePackages(xml, pack);
        xml.CloseElement();
    }
    xml.CloseElement();
}

void WriteOptions(CXmlText& xml, const SetupDescription& setup)
{
    if (!setup.strResourceFolder.IsEmpty()) {
        xml.OpenElement(L"Resources");
        xml.AddAttribute(L"folder", setup.strResourceFolder);
        xml.CloseElement();
    }
    for (int number = 1; number <= 2; ++number) {
        if (!setup.strLinkTargets[number - 1].IsEmpty()) {
            xml.OpenElement(L"Link");
            xml.AddAttribute(L"number", NumberText(number));
            xml.AddAttribute(L"target", setup.strLinkTargets[number - 1]);
            xml.CloseElement();
        }
    }
    if (!setup.strStep.IsEmpty()) {
        xml.OpenElement(L"Step");
        xml.AddAttribute(L"text", setup.strStep);
        xml.CloseElement();
    }
}

void WriteLanguages(CXmlText& xml, const SetupDescription& setup)
{
    xml.OpenElement(L"Languages");
    xml.AddAttribute(L"default", setup.strDefaultLanguage);
    for (const CString& language : setup.languages) {
        xml.OpenElement(L"Language");
        xml.AddAttribute(L"name", language);
        xml.CloseElement();
    }
    xml.CloseElement();
}

void WriteFlow(CXmlText& xml, const SetupDescription& setup)
{
    xml.OpenElement(L"Flow");
    if (setup.bConfigure) {
        xml.AddAttribute(L"configure", L"yes");
    }
    for (const PageDescription& page : setup.flow) {
        xml.OpenElement(L"Page");
        xml.AddAttribute(L"name", page.strName);
        if (!page.strHelpFile.IsEmpty()) {
            xml.AddAttribute(L"help", page.strHelpFile);
        }
        xml.CloseElement();
    }
    xml.CloseElement();
}

void WritePlatforms(CXmlText& xml, const SetupDescription& setup)
{
    xml.OpenElement(L"Platforms");
    for (const PlatformDescription& platform : setup.platforms) {
        xml.OpenElement(L"Platform");
        xml.AddAttribute(L"id", NumberText(platform.id));
        xml.AddAttribute(L"folder", platform.strFolder);
        xml.CloseElement();
    }
    xml.CloseElement();
}

} // namespace

CString WriteSetupDescription(const SetupDescription& setup)
{
    CXmlText xml;
    xml.OpenElement(L"Setup");
    xml.AddAttribute(L"version", L"1");
    xml.AddAttribute(L"code", setup.strCode);
    xml.AddAttribute(L"name", setup.strName);
    xml.AddAttribute(L"maker", setup.strMaker);
    xml.AddAttribute(L"productVersion", setup.strProductVersion);
    WriteOptions(xml, setup);
    WriteLanguages(xml, setup);
    WriteFlow(xml, setup);
    WritePlatforms(xml, setup);
    xml.OpenElement(L"Products");
    for (const ProductDescription& product : setup.products) {
        WriteProduct(xml, product);
    }
    xml.CloseElement();
    xml.CloseElement();
    return xml.GetText();
}
