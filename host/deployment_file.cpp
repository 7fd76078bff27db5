#include "host/deployment_file.h"

#include "host/host_messages.h"
#include "host/xml_limits.h"
#include "host/xml_text.h"
#include "host/xml_values.h"

namespace {

constexpr int DEPLOYMENT_VERSION = 2;
constexpr int FIRST_VERSION_WITH_PATCH_CODES = 2;

// Notes the fault of one item too many.
template <class Items>
bool IsFull(const Items& items, std::size_t limit, const wchar_t* name, CXmlValues& values)
{
    if (items.size() < limit) {
        return false;
    }
    values.Fail(HostSentence(HostText::XmlTooMany, {name, NumberText(static_cast<long long>(limit))}));
    return true;
}

bool IsKnownPlace(const CString& name, const CString& parent)
{
    static const struct
    {
        const wchar_t* name;
        const wchar_t* parent;
    } PLACES[] = {
        {L"Deployment", L""},        {L"Settings", L"Deployment"},     {L"Property", L"Deployment"},
        {L"Product", L"Deployment"}, {L"Property", L"Product"},        {L"Patch", L"Product"},
        {L"AddedFile", L"Product"},  {L"DownloadedPatch", L"Product"},
    };
    for (const auto& place : PLACES) {
        if (name == place.name && parent == place.parent) {
            return true;
        }
    }
    return false;
}

void WriteProperties(CXmlText& xml, const PropertyStore& store)
{
    for (const StoredProperty& property : store) {
        xml.OpenElement(L"Property");
        xml.AddAttribute(L"name", property.name);
        xml.AddAnyValue(L"value", property.value);
        xml.CloseElement();
    }
}

void WriteProduct(CXmlText& xml, const StoredProduct& product)
{
    xml.OpenElement(L"Product");
    xml.AddAttribute(L"code", product.strProductCode);
    xml.AddAttribute(L"name", product.strName);
    xml.AddAttribute(L"patchState", NumberText(product.patchState));
    xml.AddAttribute(L"includePatch", NumberText(product.includePatch));
    WriteProperties(xml, product.properties);
    for (const StoredPatch& patch : product.patches) {
        xml.OpenElement(L"Patch");
        xml.AddAttribute(L"file", patch.file);
        xml.AddAttribute(L"merged", NumberText(patch.merged));
        if (!patch.code.IsEmpty()) {
            xml.AddAttribute(L"code", patch.code);
        }
        if (!patch.sha256.IsEmpty()) {
            xml.AddAttribute(L"sha256", patch.sha256);
        }
        xml.CloseElement();
    }
    for (const StoredAddedFile& file : product.addedFiles) {
        xml.OpenElement(L"AddedFile");
        xml.AddAttribute(L"component", file.component);
        xml.AddAnyValue(L"source", file.source);
        xml.CloseElement();
    }
    const CString* const texts[] = {&product.strPatchPath, &product.strPatchName, &product.strPatchReadme,
                                    &product.strPatchSize};
    bool any = false;
    for (const CString* text : texts) {
        any = any || !text->IsEmpty();
    }
    if (any) {
        xml.OpenElement(L"DownloadedPatch");
        xml.AddAnyValues({{L"path", product.strPatchPath},
                          {L"name", product.strPatchName},
                          {L"readme", product.strPatchReadme},
                          {L"size", product.strPatchSize}});
        xml.CloseElement();
    }
    xml.CloseElement();
}

} // namespace

const CString* FindProperty(const PropertyStore& store, const CString& name)
{
    for (const StoredProperty& property : store) {
        if (property.name == name) {
            return &property.value;
        }
    }
    return nullptr;
}

void StoreProperty(PropertyStore& store, const CString& name, const CString& value)
{
    for (StoredProperty& property : store) {
        if (property.name == name) {
            property.value = value;
            return;
        }
    }
    store.push_back({name, value});
}

const StoredProduct* DeploymentFile::FindProduct(const CString& productCode) const
{
    for (const StoredProduct& product : products) {
        if (product.strProductCode.CompareNoCase(productCode) == 0) {
            return &product;
        }
    }
    return nullptr;
}

bool CDeploymentFileReader::OnElement(const CString& name, const std::vector<XmlAttribute>& attributes,
                                      int line)
{
    const CString parent = m_open.empty() ? CString() : m_open.back();
    CXmlValues values(name, attributes, line);
    if (!IsKnownPlace(name, parent)) {
        values.Fail(parent.IsEmpty() ? HostSentence(HostText::XmlWrongRoot, {Shown(name), L"Deployment"})
                                     : HostSentence(HostText::XmlUnknownElement, {Shown(name), parent}));
    } else {
        ReadElement(name, parent, values);
    }
    m_open.push_back(name);
    m_fault = values.Finish();
    return !m_fault;
}

bool CDeploymentFileReader::OnElementEnd()
{
    m_open.pop_back();
    if (m_open.empty() && !m_settingsSeen) {
        m_fault = {HostSentence(HostText::XmlMissingElement, {L"Settings", L"Deployment"}), 0};
    }
    return !m_fault;
}

bool CDeploymentFileReader::OnText(const CString& text, int line)
{
    CString trimmed = text;
    if (!trimmed.Trim().IsEmpty()) {
        m_fault = {
            HostSentence(HostText::XmlTextOutside, {m_open.empty() ? CString(L"Deployment") : m_open.back()}),
            line};
    }
    return !m_fault;
}

void CDeploymentFileReader::ReadElement(const CString& name, const CString& parent, CXmlValues& values)
{
    if (name == L"Deployment") {
        ReadDeployment(values);
    } else if (name == L"Settings") {
        ReadSettings(values);
    } else if (name == L"Product") {
        ReadProduct(values);
    } else if (name == L"Property") {
        ReadProperty(parent == L"Product" ? m_file.products.back().properties : m_file.properties, values);
    } else if (name == L"Patch") {
        ReadPatch(values);
    } else if (name == L"AddedFile") {
        ReadAddedFile(values);
    } else {
        ReadDownloadedPatch(values);
    }
}

void CDeploymentFileReader::ReadDeployment(CXmlValues& values)
{
    m_version = values.ReadNumber(L"version", 1, 1000000);
    if (m_version > DEPLOYMENT_VERSION) {
        values.Fail(
            HostSentence(HostText::XmlNewerVersion, {NumberText(m_version), NumberText(DEPLOYMENT_VERSION)}));
    }
    m_file.strName = values.ReadFolderName(L"name", false);
    m_file.strSetupCode = values.ReadGuid(L"setupCode");
    m_file.strProductName = values.ReadText(L"productName", NAME_LIMIT);
    m_file.strProductVersion = values.ReadText(L"productVersion", VERSION_LIMIT);
    m_file.platform = values.ReadNumber(L"platform", 2, 3);
    m_file.strLanguage = values.ReadLocale(L"language");
    m_file.strBaseName = values.ReadFolderName(L"base", true);
}

void CDeploymentFileReader::ReadSettings(CXmlValues& values)
{
    if (m_settingsSeen) {
        values.Fail(HostSentence(HostText::XmlRepeatedElement, {L"Settings"}));
    }
    m_settingsSeen = true;
    m_file.installMode = values.ReadNumber(L"installMode", 2, 3);
    m_file.bNetworkLog = values.ReadNumber(L"networkLog", 0, 1) == 1;
    m_file.strNetworkLogFolder = values.ReadOptionalPath(L"networkLogFolder");
    m_file.bSettingsOption = values.ReadNumber(L"settingsOption", 0, 1) == 1;
}

void CDeploymentFileReader::ReadProduct(CXmlValues& values)
{
    StoredProduct product;
    product.strProductCode = values.ReadGuid(L"code");
    product.strName = values.ReadText(L"name", NAME_LIMIT);
    product.patchState = values.ReadNumber(L"patchState", 0, 5);
    product.includePatch = values.ReadNumber(L"includePatch", -1, 2);
    if (!m_productCodes.insert(product.strProductCode).second) {
        values.Fail(HostSentence(HostText::ValueRepeated, {L"code", product.strProductCode}));
    }
    static_cast<void>(
        IsFull(m_file.products, PRODUCT_LIMIT, L"Product", values)); // the fault ends the reading
    m_file.products.push_back(product);
    m_patchTextsSeen = false;
}

void CDeploymentFileReader::ReadPatch(CXmlValues& values)
{
    StoredPatch patch;
    patch.merged = values.ReadNumber(L"merged", 0, 1) == 1;
    if (m_version < FIRST_VERSION_WITH_PATCH_CODES) {
        patch.file = values.ReadRelativePath(L"file", false);
        patch.merged = false; // no build merged any then, whatever the file says
    } else {
        // What is merged stays so, with or without its file, and can't be looked at again.
        patch.file = values.ReadRelativePath(L"file", patch.merged);
        patch.code = patch.merged || values.Has(L"code") ? values.ReadGuid(L"code") : CString();
        patch.sha256 = patch.merged || values.Has(L"sha256") ? values.ReadHash(L"sha256") : CString();
    }
    if (++m_patchCount > PATCH_LIMIT) {
        values.Fail(HostSentence(HostText::XmlTooMany, {L"Patch", NumberText(PATCH_LIMIT)}));
    }
    m_file.products.back().patches.push_back(patch);
}

void CDeploymentFileReader::ReadAddedFile(CXmlValues& values)
{
    StoredAddedFile file;
    file.component = values.ReadText(L"component", TABLE_KEY_LIMIT);
    file.source = values.ReadAnyValue(L"source", FULL_PATH_LIMIT);
    std::vector<StoredAddedFile>& files = m_file.products.back().addedFiles;
    if (!IsFull(files, ADDED_FILE_LIMIT, L"AddedFile", values)) {
        files.push_back(file);
    }
}

void CDeploymentFileReader::ReadDownloadedPatch(CXmlValues& values)
{
    if (m_patchTextsSeen) {
        values.Fail(HostSentence(HostText::XmlRepeatedElement, {L"DownloadedPatch"}));
    }
    m_patchTextsSeen = true;
    StoredProduct& product = m_file.products.back();
    product.strPatchPath = values.ReadOptionalAnyValue(L"path", FULL_PATH_LIMIT);
    product.strPatchName = values.ReadOptionalAnyValue(L"name", PATCH_NAME_LIMIT);
    product.strPatchReadme = values.ReadOptionalAnyValue(L"readme", PATCH_README_LIMIT);
    product.strPatchSize = values.ReadOptionalAnyValue(L"size", PATCH_SIZE_LIMIT);
}

void CDeploymentFileReader::ReadProperty(PropertyStore& store, CXmlValues& values)
{
    StoredProperty property;
    property.name = values.ReadText(L"name", PROPERTY_NAME_LIMIT);
    property.value = values.ReadAnyValue(L"value", PROPERTY_VALUE_LIMIT);
    if (!IsFull(store, PROPERTY_LIMIT, L"Property", values)) {
        store.push_back(property);
    }
}

CString WriteDeploymentFile(const DeploymentFile& file)
{
    CXmlText xml;
    xml.OpenElement(L"Deployment");
    xml.AddAttribute(L"version", NumberText(DEPLOYMENT_VERSION));
    xml.AddAttribute(L"name", file.strName);
    xml.AddAttribute(L"setupCode", file.strSetupCode);
    xml.AddAttribute(L"productName", file.strProductName);
    xml.AddAttribute(L"productVersion", file.strProductVersion);
    xml.AddAttribute(L"platform", NumberText(file.platform));
    xml.AddAttribute(L"language", file.strLanguage);
    if (!file.strBaseName.IsEmpty()) {
        xml.AddAttribute(L"base", file.strBaseName);
    }
    xml.OpenElement(L"Settings");
    xml.AddAttribute(L"installMode", NumberText(file.installMode));
    xml.AddAttribute(L"networkLog", NumberText(file.bNetworkLog));
    xml.AddAttribute(L"networkLogFolder", file.strNetworkLogFolder);
    xml.AddAttribute(L"settingsOption", NumberText(file.bSettingsOption));
    xml.CloseElement();
    WriteProperties(xml, file.properties);
    for (const StoredProduct& product : file.products) {
        WriteProduct(xml, product);
    }
    xml.CloseElement();
    return xml.GetText();
}
