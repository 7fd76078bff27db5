"""The table of faults, tests/faults/*.toml: small changes of the code that some test has to notice.

    [[fault]]
    name = "reset keeps the stage"
    file = "host/host_setup_manager.cpp"
    was = "m_uiStage = 0;"              # occurs exactly once in the file
    becomes = ""
    tests = ["host_test:Resetting.*"]   # program:filter, native:program:filter or check:module.Class.test
    # equivalent = "reason"             # instead of tests: nobody can observe the change
"""

import ast
import glob
import os
import re
import tomllib

# A file of the table and the folders whose faults stand in it. Each folder has some.
AREAS = {
    "base": ("base",),
    "frame": ("frame", "window", "controls", "include"),
    "controls": ("controls",),
    "pages": ("pages",),
    "online": ("online",),
    "paths": ("paths",),
    "files": ("files",),
    "workstation": ("workstation",),
    "patches": ("patches",),
    "slimhtml": ("slimhtml",),
    "installer": ("installer",),
    "catalog": ("catalog",),
    "msi": ("msi",),
    "host": ("host",),
    "builder": ("builder",),
    "merging": ("builder",),
    "setup": ("setup", "automation"),
    "resources": ("resources",),
}
# Only types and numbers that everybody uses stand there; a change is noticed as one of its users.
MAY_BE_EMPTY = ("include",)
KEYS = {"name", "file", "was", "becomes", "tests", "equivalent"}


class Fault:
    def __init__(self, area, entry):
        self.area = area
        self.unknown = sorted(set(entry) - KEYS)
        self.name = entry.get("name", "")
        self.file = entry.get("file", "")
        self.was = entry.get("was", "")
        self.becomes = entry.get("becomes")
        self.tests = [TestSet(text) for text in entry.get("tests", [])]
        self.equivalent = entry.get("equivalent", "")

    @property
    def label(self):
        return "%s: %s" % (self.area, self.name)

    @property
    def folder(self):
        return os.path.dirname(self.file)


class TestSet:
    """Tests that could notice a fault: those of one program that a filter names, or a Python test."""

    def __init__(self, text):
        self.text = text
        parts = text.split(":")
        self.kind = parts.pop(0) if parts[0] in ("check", "native") else "windows"
        self.program = parts.pop(0)
        self.filter = ":".join(parts)

    def matches(self, test):
        """Whether GoogleTest runs the test by this filter."""
        wanted, _, unwanted = self.filter.partition("-")
        return fits_any(wanted or "*", test) and not (unwanted and fits_any(unwanted, test))


def fits_any(patterns, test):
    return any(re.fullmatch(re.escape(pattern).replace(r"\*", ".*").replace(r"\?", "."), test)
               for pattern in patterns.split(":"))


def load_faults(root):
    faults = []
    for path in sorted(glob.glob(os.path.join(root, "tests", "faults", "*.toml"))):
        with open(path, "rb") as file:
            table = tomllib.load(file)
        faults += [Fault(base_name(path), entry) for entry in table.get("fault", [])]
    return faults


def base_name(path):
    return os.path.splitext(os.path.basename(path))[0]


def read_source(root, name):
    with open(os.path.join(root, name), encoding="utf-8", newline="") as file:
        return file.read()


def find_entry_trouble(root, fault, programs, source_tests):
    """What is wrong with an entry, as a list of sentences. programs: {tree: names}; source_tests: see below."""
    trouble = ["has an unknown key %s" % key for key in fault.unknown]
    if not fault.name:
        trouble.append("has no name")
    if fault.area not in AREAS:
        trouble.append("stands in a file that is no area")
    elif fault.folder not in [folder for top in AREAS[fault.area] for folder in folders_of(root, top)]:
        trouble.append("changes %s, which belongs to another area" % fault.file)
    if not os.path.isfile(os.path.join(root, fault.file)):
        return trouble + ["changes %s, which doesn't exist" % fault.file]
    count = read_source(root, fault.file).count(fault.was) if fault.was else 0
    if count != 1:
        trouble.append("changes a text that occurs %d times in %s: %s" % (count, fault.file, fault.was))
    if fault.becomes is None or fault.becomes == fault.was:
        trouble.append("changes nothing")
    if bool(fault.tests) == bool(fault.equivalent):
        trouble.append("has neither tests nor a reason" if not fault.tests else "has tests and a reason")
    return trouble + [text for tests in fault.tests for text in find_test_trouble(tests, programs, source_tests)]


def folders_of(root, top):
    """The folder itself and those below it, but for those that are an area of their own."""
    own = {folder for folders in AREAS.values() for folder in folders} - {top}
    return [name for name in (os.path.relpath(path, root).replace(os.sep, "/")
                              for path, _, _ in os.walk(os.path.join(root, top))) if name not in own]


def find_test_trouble(tests, programs, source_tests):
    if tests.kind == "check":
        known = source_tests["check"]
        return [] if any(test == tests.program or test.startswith(tests.program + ".") for test in known) else [
            "names %s, which is no Python test" % tests.text]
    tree = "native" if tests.kind == "native" else "windows"
    if tests.program not in programs[tree]:
        return ["names %s, which the %s build doesn't make" % (tests.program, tree)]
    wanted = tests.filter.partition("-")[0]
    return ["names %s, which fits no test" % pattern for pattern in wanted.split(":")
            if pattern and not any(fits_any(without_parameter(pattern), test) for test in source_tests["gtest"])]


def without_parameter(pattern):
    """Suite.Name of a pattern for Instance/Suite.Name/Parameter, which no source has in one place."""
    suite, dot, name = pattern.rpartition("/")[0 if "." in pattern.rpartition("/")[0] else 2].partition(".")
    return suite.rpartition("/")[2] + dot + name


def find_source_tests(root):
    """The tests that stand in the sources: {"gtest": {"Suite.Name"}, "check": {"module.Class.test"}}."""
    gtest = set()
    for path in glob.glob(os.path.join(root, "tests", "**", "*.cpp"), recursive=True):
        with open(path, encoding="utf-8") as file:
            gtest |= {"%s.%s" % found for found in
                      re.findall(r"^TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\)", file.read(), re.M)}
    check = set()
    for folder in ("checks", "end_to_end"):
        for path in glob.glob(os.path.join(root, "tests", folder, "*_test.py")):
            with open(path, encoding="utf-8") as file:
                module = ast.parse(file.read())
            for kind in module.body:
                if isinstance(kind, ast.ClassDef):
                    check |= {"%s.%s.%s" % (base_name(path), kind.name, part.name) for part in kind.body
                              if isinstance(part, ast.FunctionDef) and part.name.startswith("test")}
    return {"gtest": gtest, "check": check}
