// The plan of a build: plain data, decided before anything is done. The host fills it from what the pages stored;
// the builder (deployment_builder.h) carries it out and asks nobody. Needs no window header, so that whole plans
// and all texts made from them are tested without building.
//
// Target paths are relative to the deployment's folder and use backslashes: `Image\x64\Zolt\Zolt2027.msi`.
#pragma once

#include "base/string.h"
#include "include/setup_enums.h"

#include <cstdint>
#include <vector>

// A folder copied with all that lies below it, byte for byte, empty folders included, but for what is a target of the
// plan's databases, files and texts.
struct BuildFolder
{
    CString strSource; // full path; a closing backslash doesn't matter
    CString strTarget; // relative; empty for the deployment's folder itself
};

// One file copied, for instance a patch: `Image\x64\Zolt\ServicePacks\sp1.msp`.
struct BuildFile
{
    CString strSource; // full path
    CString strTarget; // relative, with the file's name
};

// A file whose content the caller composed: `Deployment.xml`, `Image\Setup.xml`. Written as UTF-8; the mark of byte
// order goes in front unless bByteOrderMark is false.
struct BuildText
{
    CString strTarget;
    CString strText;
    bool bByteOrderMark = false; // XML names its encoding itself
};

// A patch whose changes go into the database and the files of the image, so that installing alone brings them.
struct MergedPatch
{
    CString strSource; // full path of the .msp
    CString strCode;   // with braces
};

// A patch file of the image, as the check looks at it and the notes list it.
struct ListedPatch
{
    CString strSource; // full path
    CString strTarget; // relative; empty for one whose file isn't there any more
    CString strCode;   // with braces
    CString strName;   // as a person knows it; empty: by its file
    CString strSha256; // of the file when it was chosen; empty: not known
    enum class Use
    {
        Appended,     // among patchTargets
        Merged,       // among mergedPatches
        MergedBefore, // by an earlier build: part of strOriginal, and not looked at
    };
    Use use = Use::Appended;
};

// The database of one product, in the order in which the products are installed.
struct BuildDatabase
{
    CString strOriginal;    // full path of the vendor's .msi; only read, and what changes are compared with
    CString strWorkingCopy; // full path of the file behind hDatabase
    // Open for writing (transacted); stays the caller's. Changes are committed by the build. 0: the product has no
    // changes and the original is copied.
    InstallerHandle hDatabase = 0;
    CString strTarget;      // relative; ends in the vendor's file name
    CString strProductName; // for names of logs, ReadMe.txt and messages
    CString strProductCode; // with braces
    CString strProductVersion;
    CString strMergedVersion; // that merging leads to, where texts of the plan name it
    CString strMaker;
    // Relative paths of the patches that are chained at install, in order; the files themselves stand among the
    // plan's files or folders.
    std::vector<CString> patchTargets;
    // Merged by this build, in this order; hDatabase must be open then. One that an earlier build merged is part of
    // strOriginal by now.
    std::vector<MergedPatch> mergedPatches;
    // All of them, in their order.
    std::vector<ListedPatch> patches;
};

// What the workstations' commands do. Kept apart from the builder's own settings (Deployment.xml).
struct WorkstationCommands
{
    CString strLogFolder;       // where workstations write their logs; empty: locally only
    bool bKeepLocalLog = false; // a log in that folder is copied to the workstation's own as well
    // The installer's display option: /qn silent, /qb-! a progress bar without questions.
    CString strDisplay = L"/qn";
};

// How much of the added files goes into one cabinet.
struct CabinetLimits
{
    std::uint64_t bytes = 1ull << 30; // of content; half of what a cabinet can hold
    std::size_t files = 30000;        // less than half of what a cabinet can list
};

struct BuildPlan
{
    CString strLocation; // full path of the folder in which the deployment's folder stands
    CString strName;     // of the deployment and its folder
    // StampOfDeployment of the one that may be replaced: the deployment that is modified, or one that somebody was asked
    // about. Empty: nothing may stand in the target's place. What does otherwise is an error.
    CString strReplacedStamp;
    CString strBuiltBy;   // name and version of the program, for the texts: `Setup 1.0.0`
    CString strMediaName; // `Zolt 2027`
    std::vector<BuildFolder> folders;
    std::vector<BuildFile> files;
    std::vector<BuildText> texts;
    // Targets of files that lie in one of the folders and don't go along: patches that were taken off the list.
    std::vector<CString> leftOut;
    std::vector<BuildDatabase> databases;
    WorkstationCommands commands;
    CabinetLimits cabinetLimits;
};
