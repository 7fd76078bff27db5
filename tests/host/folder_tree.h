// What lies in a folder, name by name and byte by byte.
#pragma once

#include "base/string.h"

#include <windows.h>

#include <functional>
#include <map>
#include <string>

std::string ReadBytes(const CString& path); // empty for a missing file

// Each file and folder that lies in the folder itself.
void VisitFolder(const CString& folder, const std::function<void(const WIN32_FIND_DATAW&)>& visit);

// Paths below a folder (folders with a closing backslash) and contents. A missing folder has none.
using Tree = std::map<CString, std::string>;
Tree ReadTree(const CString& folder);  // without closing backslash
std::string NamesOf(const Tree& tree); // for messages of failed checks
