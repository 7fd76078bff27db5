"""Each file includes what it uses: the precompiled headers hide a missing line from the compiler."""

import os
import re
import unittest

from sources_test import ROOT, lines_of, tracked

# Of the precompiled headers, what shows that a file uses one. Who names none of these needs no line.
USES = {
    "windows.h": r"\b(HWND|HANDLE|HMODULE|HINSTANCE|DWORD|LPARAM|WPARAM|LRESULT|UINT|RECT|HRESULT|CALLBACK|WINAPI)\b",
    "msi.h": r"\bMSIHANDLE\b|\bMsi(CloseHandle|OpenDatabaseW|OpenPackageExW|GetProductInfoW|GetFileVersionW)\b",
    "msiquery.h": r"\bMsi(DatabaseOpenViewW|ViewFetch|ViewExecute|RecordGet\w+|RecordSet\w+|CreateRecord|GetPropertyW)\b",
    "commctrl.h": r"\b(TVITEMW|LVITEMW|HTREEITEM|HIMAGELIST|TCITEMW|PBM_SETPOS|SetWindowSubclass|DefSubclassProc)\b",
    "algorithm": r"\bstd::(sort|stable_sort|find|find_if|any_of|all_of|none_of|count_if|count|min|max|clamp|reverse|copy|"
                 r"copy_if|transform|remove_if|max_element|min_element|lower_bound|unique|equal|search|fill|rotate)\s*[(<]",
    "array": r"\bstd::array\b",
    "functional": r"\bstd::function\b",
    "map": r"\bstd::(multi)?map\b",
    "memory": r"\bstd::(unique_ptr|shared_ptr|make_unique|make_shared)\b",
    "optional": r"\bstd::(optional|nullopt)\b",
    "set": r"\bstd::(multi)?set\b",
    "string": r"\bstd::(w?string|to_string)\b",
    "vector": r"\bstd::vector\b",
}
# A header of the platform that brings another one by its documentation.
BRINGS = {
    "windowsx.h": {"windows.h"}, "commctrl.h": {"windows.h"}, "msi.h": {"windows.h"}, "msiquery.h": {"windows.h", "msi.h"},
    "shlobj.h": {"windows.h", "commctrl.h"}, "shlwapi.h": {"windows.h"}, "objbase.h": {"windows.h"}, "ole2.h": {"windows.h"},
    "shellapi.h": {"windows.h"}, "winnetwk.h": {"windows.h"}, "gdiplus.h": {"windows.h"}, "fci.h": {"windows.h"},
    "xmllite.h": {"windows.h"}, "objidl.h": {"windows.h"}, "commdlg.h": {"windows.h"}, "richedit.h": {"windows.h"},
    "uxtheme.h": {"windows.h", "commctrl.h"}, "shobjidl.h": {"windows.h"}, "winsock2.h": {"windows.h"},
    "ws2tcpip.h": {"windows.h"}, "oleacc.h": {"windows.h"}, "wininet.h": {"windows.h"}, "lm.h": {"windows.h"},
    "tlhelp32.h": {"windows.h"}, "psapi.h": {"windows.h"}, "wrl/client.h": {"windows.h"}, "npapi.h": {"windows.h"},
}
INCLUDE = re.compile(r'\s*#include ([<"])([^>"]+)[>"]')
# Comments and literals, in which the names are words.
SPARE = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"', re.S)


class Sources:
    def __init__(self):
        self.reached = {}

    def directly(self, name):
        for line in lines_of(name):
            match = INCLUDE.match(line)
            if match:
                yield match.group(1) == '"', match.group(2)

    def headers_of(self, name):
        """The system's headers that a file reaches by its own lines and those of the project's headers."""
        if name not in self.reached:
            self.reached[name] = found = set()
            for own, header in self.directly(name):
                if not own:
                    found |= {header} | BRINGS.get(header, set())
                else:
                    for path in (header, os.path.join(os.path.dirname(name), header)):
                        if os.path.exists(os.path.join(ROOT, path)):
                            found |= self.headers_of(path)
                            break
        return self.reached[name]


class IncludesTest(unittest.TestCase):
    def test_each_file_includes_what_it_uses(self):
        sources = Sources()
        missing = []
        for name in tracked(".h", ".cpp"):
            text = SPARE.sub("", "\n".join(line for line in lines_of(name) if not INCLUDE.match(line)))
            missing += ["%s needs <%s>" % (name, header) for header, use in USES.items()
                        if re.search(use, text) and header not in sources.headers_of(name)]
        self.assertEqual(missing, [])

    def test_each_precompiled_header_is_looked_for(self):
        with open(os.path.join(ROOT, "cmake", "RolloutTargets.cmake"), encoding="utf-8") as file:
            listed = re.search(r"set\(ROLLOUT_PRECOMPILED_HEADERS ([^)]*)\)", file.read()).group(1)
        self.assertEqual(set(re.findall(r"<([^>]+)>", listed)), set(USES))


if __name__ == "__main__":
    unittest.main()
