"""Changes that cannot be saved: what is logged, what the page shows, and that the file keeps what it held."""

import errno
import os
import pathlib
import plistlib
import resource
import subprocess

from support import (
    CALLS_CHANGED,
    RELOAD,
    SETTINGS_PATH,
    SETTINGS_RELOADED,
    PhoneTest,
    log,
    notification,
    page_definition,
    remove,
    rows_of,
)

UNSAVED = f"com.vexil.Tandem: Error => Unable to save settings to {SETTINGS_PATH} and settings: "
NO_SETTINGS = log(
    UNSAVED
    + '(null) AND error: Error Domain=NSCocoaErrorDomain Code=3851 "Property list invalid for format: 200 (property '
    'lists cannot contain NULL)"'
)
JAMI = "TandemCallsApp-net.jami.Jami"
SLIDER = "TandemSimSelectionTimeForCalls"
SWITCH = "ShowSimSlectionForCalls"

NOBODY = {"user": 65534, "group": 65534, "extra_groups": []}


class NoSettingsToSave(PhoneTest):
    """Without a settings dictionary nothing is stored, which is logged, and no file is made."""

    def setUp(self):
        super().setUp()
        self.place_bundle()

    def assert_not_saved(self, *words):
        driver = self.drive("--no-provision", *words).open("calls")
        calls = page_definition("Calls")
        self.assertEqual(driver.rows(), rows_of(calls))
        changes = (JAMI, False), (SLIDER, 9), (SWITCH, False)
        self.assertEqual(
            [driver.events("set", row=row, value=value) for row, value in changes],
            [
                [NO_SETTINGS, notification(CALLS_CHANGED), SETTINGS_RELOADED],
                [NO_SETTINGS, notification(CALLS_CHANGED), SETTINGS_RELOADED],
                [NO_SETTINGS, notification(CALLS_CHANGED), SETTINGS_RELOADED, remove(3, SLIDER), RELOAD],
            ],
        )
        # The switches show what is stored: still their defaults.
        self.assertEqual(driver.rows(), rows_of(calls))
        driver.close()

    def test_no_settings_file(self):
        self.assert_not_saved()
        self.assertFalse(self.path("/var").exists())

    def test_no_settings_file_in_a_folder_that_is_there(self):
        self.preferences.mkdir(parents=True)
        self.assert_not_saved()
        self.assertEqual(self.preference_files(), {})

    def test_directory_in_the_place_of_the_file(self):
        self.settings_file.mkdir(parents=True)
        self.assert_not_saved()
        self.assertEqual(list(self.preferences.rglob("*")), [self.settings_file])

    def test_pipe_in_the_place_of_the_file(self):
        self.preferences.mkdir(parents=True)
        os.mkfifo(self.settings_file)
        self.assert_not_saved()
        self.assertTrue(self.settings_file.is_fifo())

    def test_list_that_is_no_dictionary(self):
        content = plistlib.dumps([1, 2])
        self.write_settings_bytes(content)
        self.assert_not_saved()
        self.assertEqual(self.preference_files(), {"com.vexil.tandem.plist": content})

    def test_the_command_prints_the_same(self):
        self.assertEqual(
            self.run_tandem("--no-provision", "set", "calls", JAMI, "off"),
            (0, f"log  text {NO_SETTINGS['text']}\nnotification  name {CALLS_CHANGED}\nsettingsReloaded\n", ""),
        )


class UnwritableFile(PhoneTest):
    STORED = {"TandemEnabledCalls": True, "ü": [1, -2.5, "a b"], "data": b"\x00\x01", "none": {}}

    def as_someone_else(self):
        """Options of a process that may not write what is not its own; the folder becomes its own."""
        if os.geteuid() != 0:
            return {}
        for path in (self.root, *self.root.rglob("*")):
            os.chown(path, NOBODY["user"], NOBODY["group"])
        return NOBODY

    def protect(self):
        self.settings_file.chmod(0o444)

    def test_change_is_kept_in_memory_alone(self):
        self.place_bundle()
        self.write_settings(self.STORED)
        other = self.as_someone_else()
        before = self.settings_file.read_bytes()
        driver = self.drive(**other).open("calls")
        self.protect()
        unsaved = log(
            UNSAVED + "{\n"
            f'    "{JAMI}" = 0;\n'
            "    TandemEnabledCalls = 1;\n"
            '    data = "{length = 2, bytes = 0x0001}";\n'
            "    none =     {\n"
            "    };\n"
            '    "\\U00fc" =     (\n'
            "        1,\n"
            '        "-2.5",\n'
            '        "a b"\n'
            "    );\n"
            "}"
        )
        self.assertEqual(
            driver.events("set", row=JAMI, value=False), [unsaved, notification(CALLS_CHANGED), SETTINGS_RELOADED]
        )
        self.assertEqual(
            driver.rows(), rows_of(page_definition("Calls"), settings={"TandemEnabledCalls": True, JAMI: False})
        )
        self.assertEqual(self.settings_file.read_bytes(), before)
        driver.close()

        driver = self.drive(**other).open("calls")
        self.assertEqual(driver.rows(), rows_of(page_definition("Calls"), settings={"TandemEnabledCalls": True}))

    def test_rows_follow_the_file(self):
        """The core library reads what is stored, so the page keeps the rows that belong to that."""
        self.place_bundle()
        self.write_settings({})
        other = self.as_someone_else()
        driver = self.drive(**other).open("calls")
        self.protect()
        identifiers = driver.identifiers()
        self.assertEqual(
            driver.events("set", row=SWITCH, value=False),
            [
                log(UNSAVED + f"{{\n    {SWITCH} = 0;\n}}"),
                notification(CALLS_CHANGED),
                SETTINGS_RELOADED,
                remove(3, SLIDER),
                RELOAD,
            ],
        )
        self.assertEqual(driver.identifiers(), identifiers)
        self.assertEqual(driver.rows()[2]["value"], False)
        self.assert_stored({})

    def test_unreadable_file(self):
        self.place_bundle()
        self.write_settings(self.STORED)
        other = self.as_someone_else()
        before = self.settings_file.read_bytes()
        self.settings_file.chmod(0)
        driver = self.drive(**other).open("calls")
        self.assertEqual(driver.rows(), rows_of(page_definition("Calls")))
        self.assertEqual(
            driver.events("set", row=JAMI, value=False), [NO_SETTINGS, notification(CALLS_CHANGED), SETTINGS_RELOADED]
        )
        driver.close()
        self.settings_file.chmod(0o644)
        self.assertEqual(self.preference_files(), {"com.vexil.tandem.plist": before})

    def test_root_that_cannot_be_made(self):
        self.folder.chmod(0o555)
        self.addCleanup(self.folder.chmod, 0o755)
        code, out, complaint = self.run_tandem("show", **(NOBODY if os.geteuid() == 0 else {}))
        self.assertEqual((code, out, complaint.count("\n")), (1, "", 1))
        self.assertRegex(complaint, r"^tandem: .*Permission denied\n$")


class LimitOnTheSizeOfFiles(PhoneTest):
    def test_the_old_file_stays_whole(self):
        stored = {"text": "x" * 4000, JAMI: True}
        self.write_settings(stored)
        before = self.settings_file.read_bytes()
        limit = len(before) + 8

        driver = self.drive(preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
        driver.open("calls")
        # As long as before.
        self.assertEqual(driver.events("set", row=JAMI, value=False), [notification(CALLS_CHANGED), SETTINGS_RELOADED])
        self.assert_stored({**stored, JAMI: False})
        before = self.settings_file.read_bytes()
        # Longer.
        self.assertEqual(
            driver.events("set", row=SLIDER, value=9),
            [
                log(
                    UNSAVED + "{\n"
                    f'    "{JAMI}" = 0;\n'
                    f"    {SLIDER} = 9;\n"
                    f"    text = {'x' * 4000};\n"
                    "}"
                ),
                notification(CALLS_CHANGED),
                SETTINGS_RELOADED,
            ],
        )
        self.assertEqual(
            self.preference_files(), {"com.vexil.tandem.plist": before, ".com.vexil.tandem.plist.good": before}
        )


class FullDisk(PhoneTest):
    """The phone's files lie on a disk of one mebibyte, which only the driver's own process sees."""

    # The disk, the files to begin with, and the command.
    ON_THE_DISK = 'mount -t tmpfs -o size=1m,mode=755 none "$1" && cp -a "$2/." "$1" && shift 2 && exec "$@"'
    PAGE = 4096

    def on_the_disk(self, *command):
        return ["unshare", "-m", "sh", "-c", self.ON_THE_DISK, "sh", str(self.root), str(self.files), *command]

    def setUp(self):
        super().setUp()
        self.write_settings({})
        self.files = self.root.rename(self.folder / "files")
        self.root.mkdir()
        try:
            permitted = subprocess.run(self.on_the_disk("true"), capture_output=True).returncode == 0
        except FileNotFoundError:
            permitted = False
        if not permitted:
            self.skipTest("a mount of its own is not permitted here")

    def stored_in_one_page(self):
        """Settings whose file nearly fills a page of the disk."""
        stored = {"text": "x" * 3900, JAMI: True}
        rest = self.PAGE - len(plistlib.dumps(stored, fmt=plistlib.FMT_BINARY))
        stored["text"] += "x" * (rest - 4)
        return stored

    def fill(self):
        with open(self.path("/filler"), "wb", buffering=0) as file:
            with self.assertRaises(OSError) as full:
                while True:
                    file.write(b"x" * self.PAGE)
        self.assertEqual(full.exception.errno, errno.ENOSPC)

    def test_the_old_file_stays_whole(self):
        stored = self.stored_in_one_page()
        seen = self.root
        self.root = self.files
        self.write_settings(stored)
        self.root = seen
        driver = self.drive(command=self.on_the_disk(*self.command("drive"))).open("calls")
        # The folder as the driver sees it.
        self.root = pathlib.Path(f"/proc/{driver.process.pid}/root", str(seen).lstrip("/"))
        good = self.settings_file.read_bytes()
        self.fill()

        # A change of the same length needs no room, but the copy does.
        self.assertEqual(driver.events("set", row=JAMI, value=False), [notification(CALLS_CHANGED), SETTINGS_RELOADED])
        stored[JAMI] = False
        self.assert_stored(stored)
        files = {"com.vexil.tandem.plist": self.settings_file.read_bytes(), ".com.vexil.tandem.plist.good": good}
        self.assertEqual(self.preference_files(), files)

        unsaved = f'{{\n    "{JAMI}" = 0;\n    {SLIDER} = 9;\n    text = {stored["text"]};\n}}'
        self.assertEqual(
            driver.events("set", row=SLIDER, value=9),
            [log(UNSAVED + unsaved), notification(CALLS_CHANGED), SETTINGS_RELOADED],
        )
        self.assertEqual(self.preference_files(), files)

        # With room again, the next change brings the one that was kept in memory with it.
        self.path("/filler").unlink()
        self.assertEqual(driver.events("set", row=JAMI, value=True), [notification(CALLS_CHANGED), SETTINGS_RELOADED])
        self.assert_stored({**stored, JAMI: True, SLIDER: 9.0})
        content = self.settings_file.read_bytes()
        self.assertEqual(
            self.preference_files(), {"com.vexil.tandem.plist": content, ".com.vexil.tandem.plist.good": content}
        )
