// Deployment.xml as data: what a deployment was built from and with, so that it can be the base of another or be
// modified. The changes to the installer databases are not in it: the image holds the changed databases.
#pragma once

#include "host/xml_events.h"

#include <set>
#include <vector>

struct StoredProperty
{
    CString name;
    CString value; // may be empty
    bool operator==(const StoredProperty&) const = default;
};
using PropertyStore = std::vector<StoredProperty>; // in the order of the first setting; names as they stand

// Null when the store has no such name.
[[nodiscard]] const CString* FindProperty(const PropertyStore& store, const CString& name);
// An empty value is a value: pages distinguish it from none.
void StoreProperty(PropertyStore& store, const CString& name, const CString& value);

// A patch of a deployment: appended, so that it is installed along with the product, or merged into the image. It is known
// by code and content; files before version 2 name neither.
struct StoredPatch
{
    CString file; // below the image; empty for a merged one whose file isn't there
    bool merged = false;
    CString code;   // with braces, upper case
    CString sha256; // 64 hex digits, lower case
    bool operator==(const StoredPatch&) const = default;
};

// Where an added file was chosen. It stands here and not in the database, which workstations get to see.
struct StoredAddedFile
{
    CString component; // key of its rows
    CString source;    // full path
    bool operator==(const StoredAddedFile&) const = default;
};

struct StoredProduct
{
    CString strProductCode; // with braces, upper case
    CString strName;
    PropertyStore properties;
    std::vector<StoredPatch> patches;
    std::vector<StoredAddedFile> addedFiles;
    int patchState = 0;
    int includePatch = -1;
    CString strPatchPath; // the four texts of a downloaded patch
    CString strPatchName;
    CString strPatchReadme;
    CString strPatchSize;
    bool operator==(const StoredProduct&) const = default;
};

struct DeploymentFile
{
    CString strName;      // of the folder when it was built
    CString strSetupCode; // with braces, upper case
    CString strProductName;
    CString strProductVersion;
    CString strBaseName;
    CString strLanguage;
    int platform = 3;
    int installMode = 2;
    bool bNetworkLog = false;
    CString strNetworkLogFolder;
    bool bSettingsOption = false;
    PropertyStore properties; // of the setup as a whole
    std::vector<StoredProduct> products;

    const StoredProduct* FindProduct(const CString& productCode) const;
    bool operator==(const DeploymentFile&) const = default;
};

// Takes the events of one Deployment.xml. GetDeployment is whole only when there is no fault.
class CDeploymentFileReader final : public IXmlEvents
{
public:
    bool OnElement(const CString& name, const std::vector<XmlAttribute>& attributes, int line) override;
    bool OnElementEnd() override;
    bool OnText(const CString& text, int line) override;
    XmlFault GetFault() const override { return m_fault; }
    const DeploymentFile& GetDeployment() const { return m_file; }

private:
    void ReadElement(const CString& name, const CString& parent, class CXmlValues& values);
    void ReadDeployment(CXmlValues& values);
    void ReadSettings(CXmlValues& values);
    void ReadProduct(CXmlValues& values);
    void ReadPatch(CXmlValues& values);
    void ReadAddedFile(CXmlValues& values);
    void ReadDownloadedPatch(CXmlValues& values);
    void ReadProperty(PropertyStore& store, CXmlValues& values);

    DeploymentFile m_file;
    XmlFault m_fault;
    std::vector<CString> m_open;
    std::set<CString> m_productCodes;
    std::size_t m_patchCount = 0; // of all products
    int m_version = 0;
    bool m_settingsSeen = false;
    bool m_patchTextsSeen = false; // of the product that is open
};

[[nodiscard]] CString WriteDeploymentFile(const DeploymentFile& file);
