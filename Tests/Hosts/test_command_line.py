"""The commands: what each prints, its exit code, and the one line that a wrong command line gets."""

import json
import os
import subprocess

from support import (
    CALLS_CHANGED,
    MASTER_CHANGED,
    RELOAD,
    TANDEM,
    VERSION,
    PhoneTest,
    footer_text,
    strict_loads,
)

COMMANDS = "show, set, tap, check, watch, drive, help and version"
PAGES = "root, calls, messages, bluetooth, sims and misc"
MORE = " (tandem help tells more)"

ROOT_PAGE_SHOWN = f"""\
Pairo
=====

  Enable Pairo                    [on]    TandemEnabled
    Pairo lets you choose which SIM places a call or sends a message.

SIM CHOICE
  Calls                           >       Calls
  Messages                        >       Messages
    Set when Pairo asks you for a SIM, how long it waits, and in which apps
    it works.

DEVICES AND SIMS
  Bluetooth Devices               >       Bluetooth
  SIM Settings                    >       TDSimSettingsController
    Give a Bluetooth device a SIM of its own for calls, and give each SIM a
    logo that you recognise at a glance.

  Logging and Support             >       Misc
  More from Vexil                         VexilProducts

    {footer_text()}
"""

CALLS_PAGE_SHOWN = f"""\
Calls
=====

  Choose SIM for Calls            [on]    TandemEnabledCalls

  Ask Before Each Call            [on]    ShowSimSlectionForCalls
  Seconds to Choose a SIM         <7>     TandemSimSelectionTimeForCalls
    When you place a call, Pairo shows your SIMs and lets you tap the one to
    use. The choice stays on the screen for the number of seconds you set.

APPS
  Calls                           [on]    TandemCallsApp-org.gnome.Calls
  Plasma Dialer                   [on]    TandemCallsApp-org.kde.plasma.dialer
  Linphone                        [on]    TandemCallsApp-com.belledonne.linphone
  Jami                            [off]   TandemCallsApp-net.jami.Jami
    Pairo works with calls from the apps that are turned on. Calls from the
    other apps are placed as if Pairo were not there.

    {footer_text()}
"""

CHANGED = f"notification  name {CALLS_CHANGED}\nsettingsReloaded\n"
SLIDER = "TandemSimSelectionTimeForCalls"


class WrongUsage(PhoneTest):
    def assert_wrong(self, message, *words):
        # Without a root of the test's own, which would be an option more. Nothing is done before the words are read.
        done = subprocess.run([TANDEM, *words], env=self.environment, capture_output=True, stdin=subprocess.DEVNULL)
        self.assertEqual((done.returncode, done.stdout, done.stderr.decode()), (2, b"", f"tandem: {message}{MORE}\n"))

    def tearDown(self):
        self.assertEqual([path.name for path in self.folder.iterdir()], ["packages"])

    def test_no_command(self):
        message = "a command is missing: show, set, tap, check, watch, drive, help or version"
        for words in ((), ("--json",), ("--root", "x"), ("--no-provision", "--phone=demo"), ("--",)):
            self.assert_wrong(message, *words)

    def test_unknown_command(self):
        for word in ("nope", "SHOW", "-h", "", "watching", "show calls"):
            self.assert_wrong(f"unknown command {word}; the commands are {COMMANDS}", word)
        self.assert_wrong(f"unknown command --help; the commands are {COMMANDS}", "--", "--help")

    def test_unknown_option(self):
        for word in ("--nope", "--version", "--Json", "--json=yes", "--no-provision=1", "--phones", "---"):
            for words in ((word,), (word, "show"), ("show", word)):
                self.assert_wrong(
                    f"unknown option {word}; the options are --phone, --root, --no-provision and --json", *words
                )

    def test_option_without_its_value(self):
        for option, meaning in (("--phone", "demo, linux or the file of a phone"), ("--root", "a directory")):
            for words in ((option,), ("show", option), (f"{option}=", "show"), (option, "", "show")):
                self.assert_wrong(f"{option} must be followed by {meaning}", *words)

    def test_too_few_words(self):
        for command, words in (("set", "PAGE ROW VALUE"), ("tap", "PAGE ROW")):
            for given in range(len(words.split())):
                self.assert_wrong(
                    f"too few words after {command}; right is: tandem {command} {words}", command, *["calls"] * given
                )

    def test_too_many_words(self):
        for command, right, given in (
            ("show", "show [PAGE] [--json]", 2),
            ("set", "set PAGE ROW VALUE", 4),
            ("tap", "tap PAGE ROW", 3),
            ("check", "check", 1),
            ("drive", "drive", 1),
            ("help", "help", 1),
            ("version", "version", 1),
        ):
            self.assert_wrong(f"too many words after {command}; right is: tandem {right}", command, *["root"] * given)

    def test_json_with_another_command(self):
        for line in ("set calls 1 on", "tap calls 1", "check", "watch", "drive", "help", "version"):
            self.assert_wrong("--json goes with show alone", *line.split(), "--json")
            self.assert_wrong("--json goes with show alone", "--json", *line.split())

    def test_page_that_is_none(self):
        for words in (("show", "{}"), ("set", "{}", "0", "on"), ("tap", "{}", "0")):
            for page in ("nope", "Calls", "", "--json"):
                self.assert_wrong(
                    f"no page is named {page}; the pages are {PAGES}", "--", *(word.format(page) for word in words)
                )

    def test_words_of_several_lines_give_one_line(self):
        self.assert_wrong(f"unknown command a b c; the commands are {COMMANDS}", "a\nb\rc")
        self.assert_wrong(f"no page is named  [31m; the pages are {PAGES}", "show", "\x1b[31m")
        self.assert_wrong("unknown option --a b; the options are --phone, --root, --no-provision and --json", "--a\nb")


class HelpAndVersion(PhoneTest):
    HELP = """\
usage: tandem [--phone demo|linux|FILE] [--root DIR] [--no-provision] COMMAND

  show [PAGE] [--json]   the page as it stands: its rows, their values, the footers
  set PAGE ROW VALUE     as if the control of the row was moved; prints what happened
  tap PAGE ROW           as if the row was tapped; prints what happened
  check                  the page definitions held against the layout rules; exit 1 if a rule is broken
  watch [NAME...]        the notifications of those names, or all, as they arrive on this machine
  drive                  one JSON request a line on standard input, one JSON reply a line on standard output
  version                the version of this program

PAGE is root, calls, messages, bluetooth, sims or misc. ROW is an identifier or an index. VALUE is on or off for a
switch, a number for a slider. The switch of a Bluetooth device changes over, whichever of the two VALUE is: setting
it to on twice binds the device and unbinds it again. The phone's files lie below DIR, by default a folder of your
own; with --no-provision nothing is made there that is missing.
"""

    def test_help(self):
        for words in (("help",), ("--help",), ("show", "--help"), ("--help", "--no-provision")):
            self.assertEqual(self.run_tandem(*words), (0, self.HELP, ""))
        self.assertFalse(self.root.exists())

    def test_version(self):
        self.assertEqual(self.run_tandem("version"), (0, f"tandem {VERSION}\n", ""))
        self.assertFalse(self.root.exists())

    def test_output_that_cannot_be_written(self):
        for words in (("help",), ("version",), ("show",), ("show", "--json")):
            with open("/dev/full", "wb") as full:
                done = subprocess.run(self.command(*words), env=self.environment, stdout=full, stderr=subprocess.PIPE)
            self.assertEqual(
                (done.returncode, done.stderr), (1, b"tandem: the standard output cannot be written to\n"), words
            )


class Show(PhoneTest):
    def test_root(self):
        for words in (("show",), ("show", "root"), ("--", "show"), ("--no-provision", "show", "--")):
            self.assertEqual(self.run_tandem(*words), (0, ROOT_PAGE_SHOWN, ""))

    def test_calls(self):
        self.write_settings({SLIDER: 7, "TandemCallsApp-net.jami.Jami": False})
        self.assertEqual(self.run_tandem("show", "calls"), (0, CALLS_PAGE_SHOWN, ""))

    def test_names_that_would_change_the_terminal(self):
        phone = self.folder / "phone.json"
        device = {"name": "\x1b[31mCar\x07\nVan\u009b\u202e", "address": "12:34:56:AB:CD:01"}
        sim = {"uuid": "6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4", "label": "a\x1bb", "phoneNumber": "\x1b[2J5\n6"}
        phone.write_text(json.dumps({"pairedDevices": [device], "subscriptions": [sim]}))
        for page, shown in (
            ("bluetooth", r"  \x1b[31mCar\x07\x0aVan\xc2\x9b\xe2\x80\xae "),
            ("sims", r"  a\x1bb "),
            ("sims", r"\x1b[2J5\x0a6"),
        ):
            code, out, _ = self.run_tandem("--phone", phone, "show", page)
            self.assertEqual(code, 0)
            self.assertIn(shown, out)
            self.assertNotRegex(out, "[\x00-\x09\x0b-\x1f\x7f-\x9f\u202e]")
        _, out, _ = self.run_tandem("--phone", phone, "set", "bluetooth", device["address"], "on")
        self.assertNotIn("\x1b", out)

    def test_page_while_disabled(self):
        self.write_settings({"TandemEnabled": False})
        self.assertEqual(
            self.run_tandem("show"),
            (
                0,
                "Pairo\n=====\n\n"
                "  Enable Pairo                    [off]   TandemEnabled\n"
                "    Pairo lets you choose which SIM places a call or sends a message.\n\n"
                "  Logging and Support             >       Misc\n"
                "  More from Vexil                         VexilProducts\n\n"
                f"    {footer_text()}\n",
                "",
            ),
        )
        self.assertEqual(
            self.run_tandem("show", "calls"), (1, "", 'tandem: the root page has no entry for "calls" now\n')
        )

    def test_json_is_the_reply_of_a_session(self):
        self.write_settings({SLIDER: 7})
        for page in ("root", "calls", "messages", "bluetooth", "sims", "misc"):
            with self.subTest(page):
                code, out, complaint = self.run_tandem("show", page, "--json")
                self.assertEqual((code, out.count("\n"), complaint), (0, 1, ""))
                driver = self.drive().open(page)
                self.assertEqual(strict_loads(out), driver.ask("rows"))
                driver.close()


class Set(PhoneTest):
    def assert_set(self, row, value, stored):
        self.assertEqual(self.run_tandem("set", "calls", row, value), (0, CHANGED, ""), (row, value))
        self.assert_stored(stored)

    def test_switch_by_identifier_and_by_index(self):
        app = "TandemCallsApp-net.jami.Jami"
        for row in (app, "8"):
            for on, off in (("on", "off"), ("true", "false"), ("yes", "no"), ("1", "0"), ("-0.5", "0.0")):
                self.assert_set(row, off, {app: False})
                self.assert_set(row, on, {app: True})

    def test_slider_by_identifier_and_by_index(self):
        for row in (SLIDER, "3"):
            for value, stored in (("7", 7.0), ("2.6", 3.0), ("-5", 1.0), ("1e3", 10.0)):
                self.assert_set(row, value, {SLIDER: stored})

    def test_identifier_that_reads_as_an_index(self):
        self.write_page(
            "Misc",
            [
                {"cell": "PSGroupCell"},
                {"cell": "PSSwitchCell", "id": "Other", "key": "Other"},
                {"cell": "PSSwitchCell", "id": "1", "key": "One"},
            ],
        )
        self.assertEqual(self.run_tandem("set", "misc", "1", "on")[0], 0)
        self.assert_stored({"One": True})
        self.assertEqual(self.run_tandem("set", "misc", "2", "off")[0], 0)
        self.assert_stored({"One": False})

    def test_rows_that_come_and_go(self):
        self.assertEqual(
            self.run_tandem("set", "root", "TandemEnabled", "off"),
            (
                0,
                f"notification  name {MASTER_CHANGED}\n"
                "settingsReloaded\n"
                "remove  index 7  identifier TDSimSettingsController  animated true\n"
                "remove  index 6  identifier Bluetooth  animated true\n"
                "remove  index 5  identifier DevicesGroup  animated true\n"
                "remove  index 4  identifier Messages  animated true\n"
                "remove  index 3  identifier Calls  animated true\n"
                "remove  index 2  identifier FeaturesGroup  animated true\n"
                f"{RELOAD['event']}\n",
                "",
            ),
        )

    def test_row_that_is_not_there(self):
        for row, problem in (
            ("nope", 'no row "nope" on this page'),
            ("10", "no row 10: the page has 10"),
            ("-1", "no row -1: the page has 10"),
            ("1.0", 'no row "1.0" on this page'),
            ("99999999999999999999", 'no row "99999999999999999999" on this page'),
            ("", 'no row "" on this page'),
            ("a\nb", 'no row "a b" on this page'),
            ("1", "SimChoiceGroup is a group"),
        ):
            for words in (("set", "calls", row, "on"), ("tap", "calls", row)):
                self.assertEqual(self.run_tandem(*words), (1, "", f"tandem: {problem}\n"))
        self.assert_stored({})

    def test_value_that_does_not_fit(self):
        for row, value, problem in (
            (0, "maybe", "TandemEnabledCalls is a switch: its value is true or false"),
            (0, "", "TandemEnabledCalls is a switch: its value is true or false"),
            (0, "[true]", "TandemEnabledCalls is a switch: its value is true or false"),
            (3, "on", f"{SLIDER} is a slider: its value is a number"),
            (3, "seven", f"{SLIDER} is a slider: its value is a number"),
        ):
            self.assertEqual(self.run_tandem("set", "calls", row, value), (1, "", f"tandem: {problem}\n"))
        self.assert_stored({})


class Tap(PhoneTest):
    def test_entry(self):
        for row in ("Calls", "3"):
            self.assertEqual(
                self.run_tandem("tap", "root", row), (0, "push  page TDCallsSettingsController  title Calls\n", "")
            )

    def test_button_that_asks(self):
        self.assertEqual(
            self.run_tandem("tap", "sims", "2"),
            (
                0,
                "sheet  title Pairo  message Would you like to change the image of 'Personal' carrier? It will appear "
                "in SIM selection window for both Calls & Messages.  "
                'actions [{"title":"Change","style":"destructive"},{"title":"Cancel","style":"cancel"}]\n',
                "",
            ),
        )

    def test_products(self):
        self.assertEqual(
            self.run_tandem("tap", "root", "VexilProducts"),
            (
                0,
                "link  url https://vexil.example/products?from=Pairo\n"
                "push  page VXWebKitViewController  title More from Vexil\n",
                "",
            ),
        )

    def test_nothing_happens(self):
        self.assertEqual(self.run_tandem("set", "bluetooth", "0", "on"), (0, "reload\n", ""))
        self.assertEqual(self.run_tandem("tap", "bluetooth", "2"), (0, "nothing happened\n", ""))

    def test_row_that_takes_no_tap(self):
        self.assertEqual(
            self.run_tandem("tap", "root", "TandemEnabled"), (1, "", "tandem: the row cannot be tapped\n")
        )


class Watch(PhoneTest):
    def test_no_bus(self):
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.folder / 'no-bus'}"
        for names in ((), ("com.vexil.tandem.changed",)):
            self.assertEqual(
                self.run_tandem("watch", *names), (1, "", "tandem: there is no session bus, or it went away\n")
            )
        self.assertFalse(self.root.exists())


class WhereTheFilesLie(PhoneTest):
    def run_without_root(self, *words, **environment):
        done = subprocess.run(
            [TANDEM, "--phone=demo", *words], env={**self.environment, **environment}, capture_output=True, cwd=self.folder
        )
        return done.returncode, done.stderr

    def test_folder_of_the_user(self):
        data = self.folder / "data"
        self.assertEqual(self.run_without_root("show"), (0, b""))
        self.assertTrue((data / "tandem/var/mobile/Library/Preferences/com.vexil.tandem.plist").is_file())

    def test_folder_in_the_home(self):
        for unset in ("", "relative/data"):
            home = self.folder / f"home{len(unset)}"
            self.assertEqual(self.run_without_root("show", XDG_DATA_HOME=unset, HOME=str(home)), (0, b""))
            settings = ".local/share/tandem/var/mobile/Library/Preferences/com.vexil.tandem.plist"
            self.assertTrue((home / settings).is_file())

    def test_relative_root_with_any_name(self):
        for root in ("here", "./there/", "with space/ümlaut\n"):
            for words in ((f"--root={root}",), ("--root", root)):
                self.assertEqual(self.run_without_root(*words, "show", "calls"), (0, b""))
            self.assertTrue((self.folder / root / "var/mobile/Library/Preferences/com.vexil.tandem.plist").is_file())

    def test_the_last_root_counts(self):
        self.assertEqual(self.run_without_root("--root", "a", "show", "--root=b"), (0, b""))
        self.assertEqual([(self.folder / name).exists() for name in "ab"], [False, True])

    def test_file_in_the_place_of_the_root(self):
        file = self.folder / "file"
        file.write_text("x")
        for words in (("show",), ("check",), ("drive",), ("--no-provision", "show")):
            code, complaint = self.run_without_root("--root", str(file), *words)
            self.assertEqual((code, complaint.count(b"\n")), (1, 1))
        self.assertEqual(file.read_text(), "x")

    def test_provisioning_makes_what_is_missing(self):
        self.assertEqual(self.run_tandem("check"), (0, "", ""))
        self.assertEqual(self.read_settings(), {})
        self.assertTrue(self.bundle.is_symlink())
        self.assertTrue((self.bundle / "Root.plist").is_file())

    def test_bundle_that_points_elsewhere_is_set_right(self):
        self.bundle.parent.mkdir(parents=True)
        self.bundle.symlink_to(self.folder / "gone")
        self.assertEqual(self.run_tandem("show"), (0, ROOT_PAGE_SHOWN, ""))
        self.assertEqual(os.path.realpath(self.bundle), os.path.realpath(os.environ["BUNDLE"]))

    def test_no_bundle(self):
        info = self.bundle / "Info.plist"
        for words in (("show",), ("check",), ("drive",)):
            self.assertEqual(
                self.run_tandem("--no-provision", *words),
                (1, "", f"tandem: {info} is missing, or names no module and principal class\n"),
            )
        self.assertFalse(self.root.exists())

    def test_bundle_that_cannot_be_loaded(self):
        self.place_bundle()
        (self.bundle / "TandemPreferences.so").write_bytes(b"no module")
        code, out, complaint = self.run_tandem("show")
        self.assertEqual((code, out, complaint.count("\n")), (1, "", 1))
        self.assertIn("TandemPreferences.so", complaint)
