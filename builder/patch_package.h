// A patch file as the builder reads it: what it says of itself, its transforms and its cabinets. Foreign input: sizes and
// counts are bounded, and nothing of it is applied here. Failures are BuildFailures that name the file.
#pragma once

#include "base/com_ptr.h"
#include "builder/transform_check.h"
#include "builder/transform_fit.h"
#include "installer/handle.h"

#include <cstdint>
#include <functional>
#include <vector>

class CPatchPackage
{
public:
    explicit CPatchPackage(const CString& path);

    const CString& Path() const { return m_path; }
    const CString& Code() const { return m_code; }
    // Codes of patches that this one stands in for.
    const std::vector<CString>& Superseded() const { return m_superseded; }
    // The name that its maker gave it for people; the file's own when there is none.
    const CString& Name() const { return m_name; }
    bool IsForProduct(const CString& productCode) const;
    // The first of each pair; the second one's name begins with "#".
    const std::vector<CString>& Transforms() const { return m_transforms; }

    [[nodiscard]] TransformTarget TargetOf(const CString& transform) const;
    // Copies a transform into a file of its own, which the installer can read.
    void SaveTransform(const CString& transform, const CString& target) const;
    [[nodiscard]] TransformStreams ReadTransform(const CString& transform) const;
    // The bytes of a cabinet that lies in the patch; nothing when there is none of that name.
    [[nodiscard]] bool SaveCabinet(const CString& stream, const CString& target,
                                   const std::function<void()>& poll) const;

private:
    void ReadSummary();
    void ReadName();
    ComPtr<IStorage> OpenTransform(const CString& transform) const;

    CString m_path;
    CInstallerHandle m_database;
    ComPtr<IStorage> m_storage;
    CString m_code;
    std::vector<CString> m_superseded;
    CString m_targets;
    std::vector<CString> m_transforms;
    CString m_name;
};

// "The patch "C:\...\sp1.msp" can't be merged into Zolt 2027: it <why>. <what to do>" With BUILD_INSTALLER_FAILED the patch
// itself is sound, and can be appended.
[[noreturn]] void RefusePatch(unsigned int code, const CString& path, const CString& product,
                              const CString& why);

// Copies a stream of a database into a file; false when there is none of that name.
[[nodiscard]] bool SaveStream(MSIHANDLE database, const CString& databasePath, const CString& stream,
                              const CString& target, const std::function<void()>& poll);
