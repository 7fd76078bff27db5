// What a build has decided, as a value: what it will change, add, patch and copy, how much that is and what somebody should
// know. Made of the decisions that the build then carries out, so that whoever reads it reads what will be done. No window
// header.
#pragma once

#include "base/string.h"
#include "builder/change_report.h"

#include <cstddef>
#include <cstdint>
#include <vector>

// The rows of one table that the built database has otherwise than the vendor's.
struct TableReview
{
    CString strTable;
    std::size_t added = 0;
    std::size_t changed = 0;
    std::size_t removed = 0;
    bool operator==(const TableReview&) const = default;
};

struct ReviewedPatch
{
    CString strName;   // as a person knows it; without one the file's
    CString strTarget; // relative; empty for one whose file isn't kept
    bool operator==(const ReviewedPatch&) const = default;
};

struct ReviewedFile
{
    CString strPath; // on a workstation, as a person reads it
    std::uint64_t size = 0;
    bool operator==(const ReviewedFile&) const = default;
};

// One database, in the order in which the products are installed. Texts are those of packages and disks, as they are.
struct DatabaseReview
{
    CString strTarget; // relative
    CString strProductName;
    CString strProductCode;
    CString strPackageCode;      // the vendor's
    bool bWritten = false;       // made anew, with a package code of its own; otherwise copied byte for byte
    bool bSignatureLost = false; // the vendor's
    std::vector<TableReview> tables; // those with a difference, by name
    std::size_t rowsToWrite = 0;     // of the whole database, when it is made anew
    std::vector<ReviewedPatch> appended;
    std::vector<ReviewedPatch> merged;
    std::vector<ReviewedPatch> mergedBefore; // by an earlier build
    std::vector<ReviewedFile> addedFiles;    // in the order in which they were added
    std::uint64_t addedBytes = 0;            // of them
    std::size_t cabinets = 0;                // that they are packed into; none when they lie loose
    std::vector<CString> addedFolders;       // on a workstation, as a person reads them
    std::vector<CString> addedDrives;        // `X:`
    bool operator==(const DatabaseReview&) const = default;
};

struct BuildReview
{
    CString strTarget;           // full path of the deployment's folder
    bool bReplaces = false;      // a deployment that stands there
    bool bOverNetwork = false;   // the location is a share
    std::size_t filesCopied = 0; // as they are: of the media, patches, and added files that lie loose
    std::uint64_t bytesCopied = 0;
    std::uint64_t bytesPacked = 0; // of the added files that go into cabinets
    std::size_t filesInAll = 0;    // of the deployment, with databases, cabinets, commands and notes
    std::uint64_t bytesNeeded = 0; // in the location, with room to spare
    std::uint64_t bytesFree = 0;   // there
    std::vector<DatabaseReview> databases;
    std::vector<CString> warnings; // sentences, shown as they are
    bool operator==(const BuildReview&) const = default;
};

// The differences, which stand in the order of their tables, counted.
[[nodiscard]] std::vector<TableReview> CountByTable(const std::vector<RowDifference>& rows);

// Roughly how long a build of these amounts lasts. What a file, a megabyte and a row cost stands beside it, chosen for a
// computer of some years and a share in an office; nothing is measured.
[[nodiscard]] std::uint64_t EstimateSeconds(const BuildReview& review);
// "less than a minute", "about 2 minutes", "about an hour", "about 3 hours": no more exact than the estimate is.
[[nodiscard]] CString DurationInWords(std::uint64_t seconds);
