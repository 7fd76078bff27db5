#include "catalog/catalog_answer.h"

#include "base/ascii.h"
#include "base/number_text.h"
#include "catalog/catalog_limits.h"
#include "catalog/catalog_text.h"
#include "catalog/web_address.h"

#include <algorithm>

namespace {

constexpr int SHA256_DIGITS = 64;

bool IsSha256(const CString& text)
{
    for (int index = 0; index < text.GetLength(); ++index) {
        if (!IsHexDigit(text[index])) {
            return false;
        }
    }
    return text.GetLength() == SHA256_DIGITS;
}

// What is downloaded, and for a program what it writes: both must be known before it is run.
bool HasItsFiles(const CatalogPatch& patch)
{
    const CString name = DownloadName(patch.strDownload);
    const bool isProgram = IsProgramName(name);
    const std::size_t needed = isProgram ? 2 : 1;
    return patch.files.size() == needed && patch.files[0].strName == name &&
           (!isProgram || patch.files[1].strName.CompareNoCase(UnpackedName(name)) == 0);
}

class CPatchReader final : public CCatalogReader
{
public:
    explicit CPatchReader(bool isList) : m_isList(isList) {}
    CatalogAnswer& GetAnswer() { return m_answer; }

private:
    bool OnStart(const CString& path, CXmlFields& fields) override
    {
        const CString root = m_isList ? L"PatchList" : L"PatchAnswer";
        if (path == root) {
            return ReadRoot(fields);
        }
        if (path == root + L"/Patch") {
            return ReadPatch(fields);
        }
        return path == root + L"/Patch/File" && ReadFile(fields);
    }

    bool OnEnd(const CString& path) override
    {
        return path.Right(6) != L"/Patch" || HasItsFiles(m_answer.patches.back());
    }

    bool ReadRoot(CXmlFields& fields) const
    {
        if (m_isList) {
            for (const wchar_t* name : {L"asked", L"key", L"product"}) { // for people who look at the file
                const CString value = fields.Read(name);
                if (value.GetLength() > IDENTITY_LIMIT || !IsPlainText(value)) {
                    return false;
                }
            }
        }
        return fields.Read(L"version") == L"1";
    }

    bool ReadPatch(CXmlFields& fields)
    {
        if (m_answer.patches.size() == OFFER_LIMIT) {
            return false;
        }
        CatalogPatch& patch = m_answer.patches.emplace_back();
        patch.strName = fields.Read(L"name");
        patch.strReadme = fields.Read(L"readme");
        patch.strDownload = fields.Read(L"download");
        return IsShownText(patch.strName, FIELD_LIMIT) && IsWebAddress(patch.strReadme, FIELD_LIMIT) &&
               !DownloadName(patch.strDownload).IsEmpty();
    }

    bool ReadFile(CXmlFields& fields)
    {
        CatalogFile file;
        file.strName = fields.Read(L"name");
        const std::optional<long long> size = ReadWholeNumber(fields.Read(L"size"), 1, FILE_BYTES_LIMIT);
        file.size = size.value_or(0);
        file.strSha256 = fields.Read(L"sha256").MakeLower();
        const bool isGood = IsPatchFileName(file.strName) && size && IsSha256(file.strSha256) &&
                            !FindListedFile(m_answer, file.strName);
        m_answer.patches.back().files.push_back(file);
        return isGood;
    }

    const bool m_isList;
    CatalogAnswer m_answer;
};

std::optional<CatalogAnswer> ReadPatches(const char* bytes, std::size_t length, bool isList)
{
    CPatchReader reader(isList);
    if (!ReadCatalogXml(bytes, length, ANSWER_BYTES_LIMIT, reader)) {
        return std::nullopt;
    }
    return reader.GetAnswer();
}

// The readers refuse what has no room in a field.
void FillField(wchar_t (&field)[PATCH_INFO_CHARACTERS], const CString& text)
{
    for (int index = 0; index < std::min(text.GetLength(), FIELD_LIMIT); ++index) {
        field[index] = text[index];
    }
}

} // namespace

std::optional<CatalogAnswer> ReadCatalogAnswer(const char* bytes, std::size_t length)
{
    return ReadPatches(bytes, length, false);
}

std::optional<CatalogAnswer> ReadPatchList(const char* bytes, std::size_t length)
{
    return ReadPatches(bytes, length, true);
}

CString ComposePatchList(const CatalogAnswer& answer, const CatalogInquiry& inquiry)
{
    CString text = L"<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<PatchList version=\"1\"";
    text += XmlField(L"asked", inquiry.strTime) + XmlField(L"key", inquiry.strKey) +
            XmlField(L"product", inquiry.strProduct) + L">\r\n";
    for (const CatalogPatch& patch : answer.patches) {
        text += L"  <Patch" + XmlField(L"name", patch.strName) + XmlField(L"readme", patch.strReadme) +
                XmlField(L"download", patch.strDownload) + L">\r\n";
        for (const CatalogFile& file : patch.files) {
            text += L"    <File" + XmlField(L"name", file.strName) +
                    XmlField(L"size", NumberText(file.size)) + XmlField(L"sha256", file.strSha256) +
                    L"/>\r\n";
        }
        text += L"  </Patch>\r\n";
    }
    return text + L"</PatchList>\r\n";
}

const CatalogFile* FindListedFile(const CatalogAnswer& list, const CString& name)
{
    for (const CatalogPatch& patch : list.patches) {
        for (const CatalogFile& file : patch.files) {
            if (file.strName.CompareNoCase(name) == 0) {
                return &file;
            }
        }
    }
    return nullptr;
}

void FillPatchInfo(PatchInfoRecord& record, const CatalogAnswer& answer, unsigned int error)
{
    record = {};
    record.ErrorCode = error;
    if (error != 0) {
        return;
    }
    record.PatchCount = static_cast<std::int32_t>(answer.patches.size());
    if (!answer.patches.empty()) {
        const CatalogPatch& newest = answer.patches.front();
        FillField(record.PatchName, newest.strName);
        FillField(record.PatchSize, NumberText(newest.files.front().size));
        FillField(record.ReadmeUrl, newest.strReadme);
        FillField(record.DownloadUrl, newest.strDownload);
    }
}
