"""What a command and a request read: each file once in a turn, page definitions once in a session, and the package
database only for a footer that is shown."""

import shutil
import signal

from opened_files import OpenedFiles
from support import BUNDLE, PhoneTest, footer_text, page_definition, rows_of

SETTINGS = "com.vexil.tandem.plist"
GOOD_COPY = f".{SETTINGS}.good"
BINDINGS = "com.vexil.tandem.bluetooth.plist"
SWITCH = "ShowSimSlectionForCalls"
JAMI = "TandemCallsApp-net.jami.Jami"


class FilesReadTest(PhoneTest):
    def watch(self, folder):
        files = OpenedFiles(folder)
        self.addCleanup(files.close)
        return files


class SettingsRead(FilesReadTest):
    """The turns of a command are: what is missing is made, the root page opens, the page opens, the row is worked."""

    def setUp(self):
        super().setUp()
        self.write_settings({})
        self.run_tandem("show")
        self.files = self.watch(self.preferences)

    def settings_read(self):
        read, _ = self.files.take()
        return read.get(SETTINGS, 0)

    def test_set_reads_them_once_in_a_turn(self):
        self.assertEqual(self.run_tandem("set", "calls", SWITCH, "off")[0], 0)
        read, written = self.files.take()
        self.assertLessEqual(read[SETTINGS], 4)
        self.assertLessEqual(read[GOOD_COPY], 2)
        self.assertEqual(written[SETTINGS], 1)

    def test_show_reads_them_once_in_a_turn(self):
        self.assertEqual(self.run_tandem("show", "calls")[0], 0)
        self.assertLessEqual(self.settings_read(), 4)

    def test_requests_of_a_session_read_them_once_at_most(self):
        driver = self.drive().open("calls")
        driver.rows()
        self.files.take()
        for request in (
            {"do": "rows"},
            {"do": "cell", "row": 0},
            {"do": "set", "row": JAMI, "value": False},
            {"do": "set", "row": SWITCH, "value": False},
            {"do": "set", "row": SWITCH, "value": True},
            {"do": "back"},
        ):
            driver.ask(**request)
            self.assertLessEqual(self.settings_read(), 1, request)

    def test_bindings_are_read_once_in_a_turn(self):
        self.run_tandem("set", "bluetooth", "0", "on")
        self.files.take()
        self.assertEqual(self.run_tandem("set", "bluetooth", "0", "on")[0], 0)
        # Where the page opens, and where the row is worked.
        self.assertLessEqual(self.files.take()[0][BINDINGS], 2)


class BundleRead(FilesReadTest):
    def test_a_session_reads_a_page_definition_and_an_icon_once(self):
        files = self.watch(BUNDLE)
        driver = self.drive().open("calls")
        for value in (False, True, False, True):
            driver.ask("set", row=SWITCH, value=value)
        driver.ask("back")
        driver.open("calls")
        driver.rows()
        read, _ = files.take()
        # The version that the bundle gives stands there too.
        self.assertEqual(read.pop("Root.plist"), 2)
        self.assertLess({"Info.plist", "Calls.plist", "SimChoiceCalls@2x.png"}, set(read))
        self.assertEqual(set(read.values()), {1}, read)

    def test_rows_that_are_built_again_need_no_file(self):
        driver = self.drive().open("calls")
        driver.rows()
        bundle = self.watch(BUNDLE)
        for value in (False, True):
            driver.ask("set", row="TandemEnabledCalls", value=value)
        self.assertEqual(bundle.take(), ({}, {}))

    def test_a_changed_page_definition_shows_when_the_rows_are_built_again(self):
        self.place_bundle()
        calls = page_definition("Calls")
        driver = self.drive().open("calls")
        self.assertEqual(driver.rows(), rows_of(calls))
        calls["items"][0]["label"] = "Another"
        self.write_page("Calls", calls)
        driver.ask("set", row=SWITCH, value=True)
        self.assertEqual(driver.rows()[0]["name"], "Another")


class PackageDatabaseRead(FilesReadTest):
    """The package manager reads its database whenever it is asked, so the database tells how often it was."""

    def setUp(self):
        super().setUp()
        if not shutil.which("/usr/bin/dpkg-query"):
            self.skipTest("dpkg is not there")
        self.database = self.folder / "packages"
        self.write_version("2.0")
        self.files = self.watch(self.database)

    def write_version(self, version):
        """As the package manager does it: a new file in the place of the old one."""
        fresh = self.folder / "status"
        fresh.write_text(
            f"Package: com.vexil.tandem\nStatus: install ok installed\nVersion: {version}\nArchitecture: all\n"
            "Maintainer: x\nDescription: x\n"
        )
        fresh.rename(self.database / "status")

    def times_asked(self):
        return self.files.take()[0].get("status", 0)

    def assert_asked(self, times, *words):
        self.assertEqual(self.run_tandem(*words)[0], 0)
        self.assertEqual(self.times_asked(), times, words)

    def test_commands_that_print_no_footer_do_not_ask(self):
        for words in (
            ("set", "calls", SWITCH, "off"),
            ("set", "root", "TandemEnabled", "on"),
            ("tap", "root", "Calls"),
            ("check",),
            ("help",),
            ("version",),
        ):
            self.assert_asked(0, *words)

    def test_show_asks_once(self):
        for words in (("show",), ("show", "calls"), ("show", "misc", "--json")):
            self.assert_asked(1, *words)

    def test_a_page_without_a_footer_does_not_ask(self):
        for page in ("bluetooth", "sims"):
            self.assert_asked(0, "show", page)

    def test_a_session_asks_when_it_first_prints_a_footer_and_no_more(self):
        driver = self.drive().open("calls")
        driver.ask("set", row=SWITCH, value=False)
        driver.ask("cell", row=0)
        self.assertEqual(self.times_asked(), 0)
        for _ in range(2):
            self.assertEqual(driver.rows()[-1]["footer"], footer_text("2.0"))
            driver.ask("back")
            self.assertEqual(driver.rows()[-1]["footer"], footer_text("2.0"))
            driver.open("calls")
        self.assertEqual(self.times_asked(), 1)

    def test_a_session_asks_again_when_the_database_has_changed(self):
        driver = self.drive().open("calls")
        driver.rows()
        self.write_version("2.1")
        self.times_asked()
        for _ in range(2):
            self.assertEqual(driver.rows()[-1]["footer"], footer_text("2.1"))
        self.assertEqual(self.times_asked(), 1)

    def test_the_hook_asks_each_time(self):
        driver = self.drive().open("calls")
        for _ in range(2):
            driver.ask("hook", name="copryRightSpecifierText:", value=2026)
        self.assertEqual(self.times_asked(), 2)


class ParentThatIgnoresItsChildren(PhoneTest):
    def test_the_installed_version_is_shown(self):
        if not shutil.which("/usr/bin/dpkg-query"):
            self.skipTest("dpkg is not there")
        (self.folder / "packages/status").write_text(
            "Package: com.vexil.tandem\nStatus: install ok installed\nVersion: 2.0\nArchitecture: all\n"
            "Maintainer: x\nDescription: x\n"
        )
        code, out, _ = self.run_tandem(
            "show", "misc", preexec_fn=lambda: signal.signal(signal.SIGCHLD, signal.SIG_IGN), restore_signals=False
        )
        self.assertEqual((code, out.splitlines()[-1].strip()), (0, footer_text("2.0")))
