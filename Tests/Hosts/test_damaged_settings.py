"""Settings files that are damaged, hostile or merely strange: nothing crashes, every page answers, nothing is lost."""

import concurrent.futures
import datetime
import pathlib
import plistlib
import sys
import tempfile

from support import (
    BUNDLE,
    FADE_IN,
    SETTINGS_PATH,
    PhoneTest,
    error,
    page_definition,
    rows_of,
)

FILE = "com.vexil.tandem.plist"
GOOD = ".com.vexil.tandem.plist.good"
TORN = "com.vexil.tandem.plist.torn"

MEGABYTE = 1 << 20
JAMI = "TandemCallsApp-net.jami.Jami"
SLIDER = "TandemSimSelectionTimeForCalls"


def restored(torn):
    return (
        "The settings file was damaged. The last good copy is in its place; the damaged file "
        f"was kept as {torn}."
    )


def emptied(torn):
    return (
        "The settings file was damaged, and there is no earlier copy. Settings start from their "
        f"defaults; the damaged file was kept as {torn}."
    )


def binary_list(objects, root=0):
    """A binary property list of those objects, references two bytes wide."""
    head = b"bplist00"
    offsets = []
    for content in objects:
        offsets.append(len(head))
        head += content
    table = b"".join(offset.to_bytes(4, "big") for offset in offsets)
    trailer = bytes(6) + bytes([4, 2]) + b"".join(n.to_bytes(8, "big") for n in (len(objects), root, len(head)))
    return head + table + trailer


def deep_binary_list(depth):
    """A dictionary with one entry, of arrays in arrays."""
    dictionary = b"\xd1" + (1).to_bytes(2, "big") + (2).to_bytes(2, "big")
    arrays = [b"\xa1" + (3 + i).to_bytes(2, "big") for i in range(depth - 1)]
    return binary_list([dictionary, b"\x51k", *arrays, b"\xa0"])


def xml_list(content):
    return b'<?xml version="1.0" encoding="UTF-8"?>\n<plist version="1.0">' + content + b"</plist>\n"


class DamagedFile(PhoneTest):
    def torn_file(self, number=""):
        return self.preferences / f"{TORN}{number}"

    def assert_started_anew(self, content, stored=None):
        """A session begins with the good copy, or with nothing; tells so once; and keeps the damaged file."""
        whole = plistlib.dumps(stored or {}, fmt=plistlib.FMT_BINARY)
        message = (restored if stored else emptied)(self.torn_file())
        driver = self.drive()
        self.assertEqual(driver.events("open", page="root"), [FADE_IN, error(message)])
        driver.open("calls")
        self.assertEqual(driver.rows(), rows_of(page_definition("Calls"), settings=stored))
        driver.ask("set", row=JAMI, value=False)
        driver.close()
        self.assertEqual(plistlib.loads(whole), stored or {})
        self.assert_stored({**(stored or {}), JAMI: False})
        files = self.preference_files()
        self.assertEqual(sorted(files), sorted([GOOD, FILE, TORN]))
        self.assertTrue(files[TORN] == content)
        self.assertEqual(files[GOOD], files[FILE])
        # Not again at the next start.
        driver = self.drive()
        self.assertEqual(driver.events("open", page="root"), [FADE_IN])
        driver.close()
        self.assertEqual(self.preference_files(), files)


class TornFile(DamagedFile):
    STORED = {"TandemEnabledCalls": True, SLIDER: 7, "text": "kept"}

    def setUp(self):
        super().setUp()
        self.write_settings(self.STORED)
        # The first turn makes the copy.
        self.assertEqual(self.run_tandem("show")[0], 0)
        self.whole = self.settings_file.read_bytes()

    def tear(self, length=100):
        self.settings_file.write_bytes(self.whole[:length])

    def test_the_last_good_copy_takes_its_place(self):
        self.tear()
        self.assert_started_anew(self.whole[:100], self.STORED)

    def test_without_a_good_copy(self):
        (self.preferences / GOOD).unlink()
        self.tear()
        self.assert_started_anew(self.whole[:100])

    def test_with_a_torn_good_copy(self):
        for length in (0, 50):
            (self.preferences / GOOD).write_bytes(self.whole[:length])
            self.tear()
            self.assertEqual(self.run_tandem("check"), (0, "", emptied(self.torn_file()) + "\n"))
            self.assert_stored({})
            self.assertEqual(self.torn_file().read_bytes(), self.whole[:100])
            self.torn_file().unlink()

    def test_every_command_tells_it(self):
        commands = ["show", "misc"], ["set", "calls", JAMI, "on"], ["tap", "root", "Misc"], ["check"]
        for number, words in enumerate(commands):
            self.tear(100 + number)
            torn = self.torn_file(number + 1 if number else "")
            code, _, complaint = self.run_tandem(*words)
            self.assertEqual((code, complaint), (0, restored(torn) + "\n"))
            self.assertEqual(torn.read_bytes(), self.whole[: 100 + number])
            code, _, complaint = self.run_tandem(*words)
            self.assertEqual((code, complaint), (0, ""))
            self.whole = self.settings_file.read_bytes()

    def test_earlier_damaged_files_are_kept(self):
        lengths = [10, 20, 30]
        for length in lengths:
            self.tear(length)
            self.run_tandem("check")
        self.assertEqual(
            {name: content for name, content in self.preference_files().items() if TORN in name},
            {f"{TORN}{number}": self.whole[:length] for number, length in zip(("", 2, 3), lengths)},
        )

    def test_torn_while_a_session_is_open(self):
        """The session goes on without settings; the next start finds the good copy."""
        driver = self.drive().open("calls")
        self.tear()
        self.assertEqual(driver.rows(), rows_of(page_definition("Calls")))
        driver.request("set", row=JAMI, value=False)
        driver.close()
        self.assertEqual(self.settings_file.read_bytes(), self.whole[:100])
        self.assertEqual(self.run_tandem("check"), (0, "", restored(self.torn_file()) + "\n"))
        self.assert_stored(self.STORED)

    def test_killed_in_the_middle_of_a_change(self):
        driver = self.drive().open("calls")
        driver.ask("set", row=SLIDER, value=4)
        driver.kill()
        self.tear(40)
        self.assertEqual(self.run_tandem("check"), (0, "", restored(self.torn_file()) + "\n"))
        self.assert_stored({**self.STORED, SLIDER: 4.0})


class CutOff(PhoneTest):
    """The file cut off at every byte."""

    in_memory = True
    STORED = {"TandemEnabledCalls": True, "n": [-5, {}], "ü": "ß"}
    GOOD_COPY = plistlib.dumps({"TandemEnabled": False}, fmt=plistlib.FMT_BINARY)

    def start(self, folder, content):
        """What stands in the folder of the settings after a start, and what the user was told."""
        root = pathlib.Path(folder)
        preferences = (root / SETTINGS_PATH.lstrip("/")).parent
        preferences.mkdir(parents=True)
        (preferences / GOOD).write_bytes(self.GOOD_COPY)
        (preferences / FILE).write_bytes(content)
        done = self.run_tandem("--root", root, "check")
        return done, {file.name: file.read_bytes() for file in preferences.iterdir()}, preferences / TORN

    def check(self, whole, length):
        with tempfile.TemporaryDirectory(dir=self.folder) as folder:
            content = whole[:length]
            done, files, torn = self.start(folder, content)
            as_torn = (
                (0, "", restored(torn) + "\n"),
                {FILE: self.GOOD_COPY, GOOD: self.GOOD_COPY, TORN: content},
            )
            # Only what reads as the whole dictionary may be taken for it.
            as_whole = ((0, "", ""), {FILE: content, GOOD: self.GOOD_COPY})
            if (done, files) == as_whole:
                self.assertEqual(plistlib.loads(content), self.STORED)
            else:
                self.assertEqual((done, files), as_torn, length)
            return files == as_torn[1]

    def check_every_length(self, form, shortest_whole):
        whole = plistlib.dumps(self.STORED, fmt=form)
        lengths = range(len(whole) + 1)
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            torn = list(pool.map(lambda length: self.check(whole, length), lengths))
        self.assertEqual(torn, [length < len(whole) - shortest_whole for length in lengths])


class CutOffBinary(CutOff):
    def test_every_length(self):
        self.check_every_length(plistlib.FMT_BINARY, 0)


class CutOffXml(CutOff):
    def test_every_length(self):
        # The line end is not missed.
        self.check_every_length(plistlib.FMT_XML, 1)


class HostileFile(DamagedFile):
    def test_no_property_list(self):
        for name, content in {
            "empty": b"",
            "text": b"TandemEnabled = 1",
            "zeros": bytes(1000),
            "picture": (BUNDLE / "twitter.png").read_bytes(),
            "array": plistlib.dumps([1, {"TandemEnabled": False}]),
            "text list": plistlib.dumps("TandemEnabled", fmt=plistlib.FMT_BINARY),
            "entity": xml_list(b"<dict><key>a</key><string>&x;</string></dict>"),
            "entities": b'<!DOCTYPE plist [<!ENTITY a "aaaaaaaaaa"><!ENTITY b "&a;&a;&a;&a;&a;&a;&a;&a;">]>'
            + xml_list(b"<dict><key>a</key><string>&b;</string></dict>"),
            "key without a value": xml_list(b"<dict><key>a</key></dict>"),
            "external entity": b'<!DOCTYPE plist [<!ENTITY a SYSTEM "/etc/hostname">]>'
            b"<plist><dict><key>a</key><string>&a;</string></dict></plist>",
            "dictionary of itself": binary_list([b"\xd1\0\x01\0\0", b"\x51k"]),
            "reference beyond": binary_list([b"\xd1\0\x01\0\x09", b"\x51k"]),
        }.items():
            with self.subTest(name):
                for file in self.preferences.iterdir() if self.preferences.exists() else ():
                    file.unlink()
                self.write_settings_bytes(content)
                self.assert_started_anew(content)

    def test_nested_10000_deep(self):
        for name, content in {
            "binary": deep_binary_list(10_000),
            "arrays": xml_list(b"<dict><key>k</key>" + b"<array>" * 10_000 + b"</array>" * 10_000 + b"</dict>"),
            "dictionaries": xml_list(b"<dict><key>k</key>" * 10_000 + b"<true/>" + b"</dict>" * 10_000),
            "never closed": b'<plist version="1.0">' + b"<dict><key>k</key>" * 10_000,
        }.items():
            with self.subTest(name):
                for file in self.preferences.iterdir() if self.preferences.exists() else ():
                    file.unlink()
                self.write_settings_bytes(content)
                self.assert_started_anew(content)

    def test_unfolds_without_end(self):
        """Each of 200 arrays holds the next one twice: shown in part, and written as small as it was."""
        dictionary = b"\xd1" + (1).to_bytes(2, "big") + (2).to_bytes(2, "big")
        key = b"\x5f\x10" + bytes([len(JAMI)]) + JAMI.encode()
        arrays = [b"\xa2" + 2 * (3 + i).to_bytes(2, "big") for i in range(200)]
        self.write_settings_bytes(binary_list([dictionary, key, *arrays, b"\x09"]))
        driver = self.drive().open("calls")
        driver.rows()
        driver.ask("set", row=SLIDER, value=4)
        driver.close()
        self.assertLess(self.settings_file.stat().st_size, 2000)
        stored = plistlib.loads(self.settings_file.read_bytes())
        self.assertEqual(stored[SLIDER], 4.0)
        nested = stored[JAMI]
        for _ in range(199):
            self.assertEqual(len(nested), 2)
            nested = nested[1]
        self.assertEqual(nested, [True, True])

    def test_nested_500_deep(self):
        self.addCleanup(sys.setrecursionlimit, sys.getrecursionlimit())
        sys.setrecursionlimit(10_000)
        for content in (
            deep_binary_list(500),
            xml_list(b"<dict><key>k</key>" + b"<array>" * 500 + b"</array>" * 500 + b"</dict>"),
        ):
            self.write_settings_bytes(content)
            self.assertEqual(self.run_tandem("set", "calls", JAMI, "off")[2], "")
            self.assert_stored({**plistlib.loads(content), JAMI: False})


class WrongTypes(PhoneTest):
    KEYS = sorted(
        {
            item["key"]
            for name in ("Root", "Calls", "Messages", "Misc")
            for item in page_definition(name)["items"]
            if "key" in item
        }
    )
    # Each value, whether it reads as true, and the place of the slider of Calls.
    VALUES = [
        ("true", True, 1.0),
        ("Yes", True, 1.0),
        ("7", True, 7.0),
        ("0", False, 1.0),
        ("no", False, 1.0),
        ("", False, 1.0),
        (0, False, 1.0),
        (5, True, 5.0),
        (-1, True, 1.0),
        (2**64 - 5, True, 10.0),
        (2.5, True, 2.5),
        (1e300, True, 10.0),
        (float("inf"), True, 10.0),
        (b"x", False, 1.0),
        ([], False, 1.0),
        ([True], False, 1.0),
        ({}, False, 1.0),
        ({"a": {"b": []}}, False, 1.0),
        (datetime.datetime(2020, 1, 1), False, 1.0),
        (plistlib.UID(3), False, 1.0),
    ]

    def controls(self, driver, page):
        driver.open(page)
        controls = {}
        for row in driver.rows():
            if row["cell"] in ("PSSwitchCell", "PSSliderCell"):
                controls[row["identifier"]] = driver.ask("cell", row=row["index"])["cell"]["control"]["value"]
        driver.ask("back")
        return controls

    def test_under_every_key(self):
        for value, on, place in self.VALUES:
            with self.subTest(value=value):
                stored = {key: value for key in self.KEYS}
                self.write_settings(stored)
                driver = self.drive().open("root")
                self.assertEqual(len(driver.rows()), 12 if on else 6)
                self.assertEqual(self.controls(driver, "misc"), {"TandemLoggingEnabled": on})
                if not on:
                    driver.ask("set", row="TandemEnabled", value=True)
                    stored["TandemEnabled"] = True
                calls = self.controls(driver, "calls")
                apps = {key: on for key in self.KEYS if key.startswith("TandemCallsApp")}
                shown = {"TandemEnabledCalls": on, "ShowSimSlectionForCalls": on, SLIDER: place, **apps}
                self.assertEqual(calls, shown if on else {"TandemEnabledCalls": False})
                driver.open("calls")
                driver.ask("set", row="TandemEnabledCalls", value=True)
                driver.ask("back")
                driver.close()
                self.assert_stored({**stored, "TandemEnabledCalls": True})

    def test_what_is_printed_is_what_the_control_shows(self):
        for value, on, place in (
            ("7", "[on]", "<7>"),
            ("no", "[off]", "<0>"),
            (b"x", "[off]", "<->"),
            (4.5, "[on]", "<4.5>"),
        ):
            self.write_settings({JAMI: value, SLIDER: value})
            shown = self.run_tandem("show", "calls")[1].splitlines()
            self.assertEqual(
                [line.split()[-2:] for line in shown if JAMI in line or SLIDER in line], [[place, SLIDER], [on, JAMI]]
            )


class OtherForms(PhoneTest):
    """Whole settings that other programs wrote, in forms that this one does not write."""

    STORED = {JAMI: "NO", "text": "ä"}
    XML = "<plist><dict><key>" + JAMI + "</key><string>NO</string><key>text</key><string>ä</string></dict></plist>"

    def test_every_form(self):
        for name, content in {
            "string table": f'"{JAMI}" = NO; /* no */ text = "\\U00e4";'.encode(),
            "string table in UTF-16": f'"{JAMI}" = "NO"; text = "ä";'.encode("utf-16"),
            "XML in UTF-16": self.XML.encode("utf-16"),
            "XML in ISO-8859-1": ('<?xml version="1.0" encoding="ISO-8859-1"?>' + self.XML).encode("latin-1"),
            "XML with an internal subset": ("<!DOCTYPE plist [ ]>" + self.XML).encode(),
        }.items():
            with self.subTest(name):
                self.write_settings_bytes(content)
                self.assertEqual(self.run_tandem("set", "calls", SLIDER, "4")[::2], (0, ""))
                self.assert_stored({**self.STORED, SLIDER: 4.0})


class LargeFile(DamagedFile):
    """Files of fifteen megabytes, and files that are too large."""

    in_memory = True
    SIZE = 50 * MEGABYTE
    WHOLE = 15 * MEGABYTE

    def test_no_property_list(self):
        for name, content in {
            "zeros": bytes(self.SIZE),
            "binary header and zeros": b"bplist00" + bytes(self.SIZE),
            "spaces": b" " * self.SIZE,
            "comment that never ends": b"<!--" + b"-" * self.SIZE,
        }.items():
            with self.subTest(name):
                for file in self.preferences.iterdir() if self.preferences.exists() else ():
                    file.unlink()
                self.write_settings_bytes(content)
                self.assert_started_anew(content)

    def test_open_elements(self):
        content = b"<plist>" + b"<dict><key>k</key>" * (self.SIZE // 18)
        self.write_settings_bytes(content)
        self.assert_started_anew(content)

    def test_more_values_than_can_be_held(self):
        numbers = b"<integer>1</integer>" * (self.SIZE // 20)
        content = xml_list(b"<dict><key>a</key><array>" + numbers + b"</array></dict>")
        self.write_settings_bytes(content)
        self.assert_started_anew(content)

    def assert_works(self, settings):
        driver = self.drive()
        self.assertEqual(driver.events("open", page="root"), [FADE_IN])
        driver.open("calls").ask("set", row=JAMI, value=False)
        driver.close()
        self.assertTrue(self.read_settings() == {**settings, JAMI: False})
        self.assertEqual(sorted(file.name for file in self.preferences.iterdir()), sorted([FILE, GOOD]))

    def test_long_text(self):
        settings = {"TandemEnabledCalls": True, "text": "x" * self.WHOLE}
        self.write_settings(settings, plistlib.FMT_XML)
        self.assert_works(settings)

    def test_long_data(self):
        settings = {"TandemEnabledCalls": True, "data": b"x" * self.WHOLE}
        self.write_settings(settings)
        self.assert_works(settings)


class NothingIsProvisioned(PhoneTest):
    """With --no-provision nothing is made or moved, whatever the file is."""

    def tree(self):
        return {
            str(path.relative_to(self.root)): (
                path.lstat().st_mtime_ns,
                path.lstat().st_ino,
                path.read_bytes() if path.is_file() else None,
            )
            for path in self.root.rglob("*")
        }

    def test_nothing_is_made_or_moved(self):
        self.place_bundle()
        whole = plistlib.dumps({SLIDER: 7}, fmt=plistlib.FMT_BINARY)
        for name, content in {
            "whole": whole,
            "torn": whole[:40],
            "empty": b"",
            "no dictionary": plistlib.dumps([]),
            "deep": deep_binary_list(10_000),
        }.items():
            with self.subTest(name):
                self.write_settings_bytes(content)
                before = self.tree()
                for words in (["show"], ["show", "calls", "--json"], ["check"], ["tap", "root", "Calls"]):
                    code, _, complaint = self.run_tandem("--no-provision", *words)
                    self.assertEqual((code, complaint), (0, ""))
                driver = self.drive("--no-provision").open("calls")
                self.assertEqual(driver.rows()[3]["value"], 7 if content == whole else 3)
                driver.close()
                self.assertEqual(self.tree(), before)

    def test_a_change_makes_no_copy(self):
        self.place_bundle()
        self.write_settings({SLIDER: 7})
        self.assertEqual(self.run_tandem("--no-provision", "set", "calls", JAMI, "off")[0], 0)
        self.assertEqual(list(self.preference_files()), [FILE])
        self.assert_stored({SLIDER: 7, JAMI: False})

    def test_good_copy_is_left_alone(self):
        self.place_bundle()
        self.write_settings_bytes(b"torn")
        (self.preferences / GOOD).write_bytes(b"good")
        self.run_tandem("--no-provision", "show")
        self.assertEqual(self.preference_files(), {FILE: b"torn", GOOD: b"good"})
