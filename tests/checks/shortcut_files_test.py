"""What the look at a workstation reads of shortcuts: files of the shell, rows of a database, and answers."""

import os
import struct
import sys
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "scripts"))

from shortcut_files import (asked_shortcuts, check_asked, custom_shortcuts, expected_shortcuts,  # noqa: E402
                            holds, read_link)


def link(target, arguments, folder):
    """A shell link with an id list, the plain form of the target, and wide texts."""
    info = struct.pack("<7I", 0, 28, 1, 0, 28, 0, 0) + target.encode("cp1252") + b"\0"
    info = struct.pack("<I", len(info)) + info[4:]
    data = struct.pack("<I16sI", 76, b"x" * 16, 1 | 2 | 4 | 16 | 32 | 128).ljust(76, b"\0") + struct.pack("<H", 3) + b"abc" + info
    for text in ("Starts it", folder, arguments):
        data += struct.pack("<H", len(text)) + text.encode("utf-16le")
    return data


class FakePackage:
    def __init__(self, condition=""):
        self.directories = {"MENUDIR": {"DefaultDir": "ZOLT~1|Zolt [1]", "Directory_Parent": "ProgramMenuFolder"},
                            "ProgramMenuFolder": {"DefaultDir": ".", "Directory_Parent": "TARGETDIR"}}
        self.components = {"Main": {"Condition": condition}}
        self.wanted = {"Main"}
        self.properties = {"ON": "1", "ZOLT_CUSTOM_SHORTCUT": "4;B;gone;A;"}

    def target_path(self, key):
        return {"INSTALLDIR": "C:\\Zolt\\"}.get(key, "")


def row(key, name="S|Office", arguments="/b"):
    return {"Shortcut": key, "Directory_": "MENUDIR", "Name": name, "Component_": "Main",
            "Target": "[INSTALLDIR]zolt.exe", "Arguments": arguments, "WkDir": "INSTALLDIR"}


class ShortcutFilesTest(unittest.TestCase):
    def look(self, data, package=None, arguments="/b"):
        package = package or FakePackage()
        with tempfile.TemporaryDirectory() as drive:
            folder = os.path.join(drive, "ProgramData/Microsoft/Windows/Start Menu/Programs/Zolt [1]")
            os.makedirs(folder)
            if data is not None:
                with open(os.path.join(folder, "Office.lnk"), "wb") as file:
                    file.write(data)
            wanted, left_out = expected_shortcuts(package, [row("A", arguments=arguments)])
            return [one.look(drive) for one in wanted], [bool(one.find(drive)) for one in left_out]

    def test_a_link_is_read(self):
        self.assertEqual(read_link(link("C:\\Zolt\\zolt.exe", "/p \u4e2d", "C:\\Zolt")),
                         ("C:\\Zolt\\zolt.exe", "/p \u4e2d", "C:\\Zolt"))
        self.assertEqual(read_link(link("t", "/b\0", "C:\\\0")), ("t", "/b", "C:\\"))  # as Wine writes them
        for data in (b"", b"MZ" * 60):
            with self.assertRaises(ValueError):
                read_link(data)

    def test_a_shortcut_as_its_row_is_good(self):
        self.assertEqual(self.look(link("C:\\Zolt\\zolt.exe", "/b", "C:\\Zolt\\")), ([""], []))

    def test_square_brackets_of_arguments_are_the_installers(self):
        arguments = "/s [INSTALLDIR]Fonts /p [\\[]a[\\]] [NO_SUCH]/w"
        self.assertEqual(self.look(link("C:\\Zolt\\zolt.exe", "/s C:\\Zolt\\Fonts /p [a] /w", "C:\\Zolt"), arguments=arguments),
                         ([""], []))
        self.assertIn("arguments is", self.look(link("C:\\Zolt\\zolt.exe", arguments, "C:\\Zolt"), arguments=arguments)[0][0])

    def test_each_difference_is_named(self):
        self.assertEqual(self.look(link("C:\\Zolt\\old.exe", "/c", "C:\\")),
                         (['target is "C:\\Zolt\\old.exe" instead of "C:\\Zolt\\zolt.exe", arguments is "/c" instead of '
                           '"/b", working folder is "C:" instead of "C:\\Zolt"'], []))
        self.assertEqual(self.look(None), (["there are 0 of them"], []))

    def test_a_shortcut_whose_condition_fails_is_left_out(self):
        self.assertEqual(self.look(link("C:\\Zolt\\zolt.exe", "/b", "C:\\Zolt"), FakePackage('ON="0"')), ([], [True]))
        self.assertEqual([holds(text, {"ON": "1"}) for text in ("", 'ON="1"', 'ON = "0"', "NOT ON")],
                         [True, True, False, None])

    def test_custom_ones_come_in_the_order_of_the_list(self):
        rows = [row("A"), row("B", "Plans|Anne's plans", "/w"), row("C")]
        self.assertEqual(custom_shortcuts(FakePackage(), rows), [("Anne's plans", "/w"), ("Office", "/b")])

    def asked(self, text, *words):
        with tempfile.NamedTemporaryFile("w", encoding="utf-8", suffix=".txt") as file:
            file.write("rollout-answers 1\n" + text)
            file.flush()
            return asked_shortcuts(file.name, words)

    def test_answers_are_read_by_product_and_the_command_line_wins(self):
        text = ('[workstation]\nshortcut = "A", "/p ""x"""\nshortcut = "B", "/b"\n[workstation "Zolt ""Pro"""]\n'
                'shortcut = "", ""\n[things]\nshortcut = "C", "/c"\n')
        self.assertEqual(self.asked(text), {"": [("A", '/p "x"'), ("B", "/b")], 'Zolt "Pro"': []})
        self.assertEqual(self.asked(text, 'workstation.shortcut="D", "/v"'), {"": [("D", "/v")]})

    def test_what_was_asked_for_is_compared_for_each_product(self):
        asked = {"": [("A", "/b")], "Viewer": []}
        self.assertEqual(check_asked(asked, [("Zolt", "{1}", [("A", "/b")]), ("viewer", "{2}", [])]), [])
        self.assertEqual(len(check_asked(asked, [("Zolt", "{1}", []), ("viewer", "{2}", [("A", "/b")])])), 2)
        self.assertEqual(check_asked({}, [("Zolt", "{1}", [("A", "/b")])]), [])


if __name__ == "__main__":
    unittest.main()
