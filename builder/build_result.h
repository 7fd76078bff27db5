// What a build reports while it runs, and what came of it.
#pragma once

#include "base/operation_error.h"
#include "base/string.h"

#include <cstdint>
#include <vector>

struct BuildReview;

// The thread that builds calls it.
class IBuildProgress
{
public:
    // A step begins: a sentence such as "Copying Zolt 2027".
    virtual void OnStep(const CString& sentence) = 0;
    // Bytes so far, of all, and the file being copied. False cancels: the build undoes itself and ends with 1602.
    virtual bool OnProgress(std::uint64_t bytesDone, std::uint64_t bytesTotal, const CString& file) = 0;
    // Everything is checked and decided, nothing is copied yet. Not called for a build that is refused.
    virtual void OnDecided(const BuildReview&) {}

protected:
    ~IBuildProgress() = default;
};

// For who neither looks nor cancels.
class CUnwatchedProgress final : public IBuildProgress
{
public:
    void OnStep(const CString&) override {}
    bool OnProgress(std::uint64_t, std::uint64_t, const CString&) override { return true; }
};

struct BuildResult
{
    OperationError error;          // 0: the deployment stands; 1602: cancelled; nothing else was changed
    CString strDeploymentFolder;   // <location>\<name>\ with the backslash
    std::vector<CString> warnings; // each a sentence: a lost signature, a path that may be too long, ...
};
