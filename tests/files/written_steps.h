// Loading the tree of additional files step by step as it is defined: queries by joins, a query a file, a walk for each question.
// Slow and plain; the page's own loading must show the same.
#pragma once

#include "include/directory_manager.h"
#include "tests/installer/database_fixture.h"

#include <map>
#include <vector>

struct WrittenHost
{
    MSIHANDLE database = 0;
    CDirectoryManager* directories = nullptr; // may be null
    const std::map<CString, CString>* properties = nullptr;
    const std::map<CString, CString>* servicePaths = nullptr;
};

// A line for each node in the order of the view, as DescribeTreeNode gives it.
[[nodiscard]] std::vector<CString> LoadByWrittenSteps(const WrittenHost& host);

[[nodiscard]] CString DescribeTreeNode(int depth, const CString& label, const CString& key, bool isUserItem,
                                       const CString& sourcePath);
