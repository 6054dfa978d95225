"""Every request of a session: what it answers, each of its errors, and that the session goes on after anything."""

import json
import os
import subprocess

from support import (
    ACCENT,
    CALLS_PAGE,
    DEMO_PHONE,
    FADE_IN,
    MESSAGES_PAGE,
    MISC_PAGE,
    RELOAD,
    ROOT_PAGE,
    BLUETOOTH_PAGE,
    SETTINGS_RELOADED,
    SIMS_PAGE,
    PhoneTest,
    error,
    footer_text,
    group_item,
    log,
    page_definition,
    page_of,
    pop,
    push,
    rows_of,
    strict_loads,
)

NO_REQUEST = 'not a request: a JSON object with "do" on one line'
NO_ROW_FORM = '"row" must be an identifier or an index'
COVERED = "the page is covered; choose or pick first"

SUBSCRIPTIONS = log(
    "**************** subscriptions: (\n"
    "    <CTXPCServiceSubscriptionContext 6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4, label Personal>,\n"
    "    <CTXPCServiceSubscriptionContext B82E94D7-0C56-4F3B-8E1A-71D0A6F52C89, label Work>\n"
    ")"
)
SHARE_MESSAGE = (
    "I'm Loving #Pairo, which brings ability to choose sim while dialing a number or texting from dual (e)Sim iPhones."
)


def refused(message, *events):
    return {"ok": False, "error": message, "events": [*events]}


def done(*events):
    return {"ok": True, "events": [*events]}


class RequestTest(PhoneTest):
    def setUp(self):
        super().setUp()
        self.driver = self.drive()
        # The first reply tells of the start.
        self.assertEqual(self.driver.request("open", page="root"), done(FADE_IN))

    def assert_refused(self, message, do, **fields):
        self.assertEqual(self.driver.request(do, **fields), refused(message), (do, fields))

    def assert_unchanged(self):
        """The root page is on top, as it was at the start, and nothing was stored."""
        self.assertEqual(self.driver.ask("rows"), page_of(ROOT_PAGE, page_definition("Root")))
        self.assert_stored({})


class LinesThatAreNoRequests(RequestTest):
    def test_no_json_object(self):
        lines = {
            "empty": b"",
            "spaces": b"   \t ",
            "word": b"rows",
            "number": b"5",
            "text": b'"rows"',
            "null": b"null",
            "array": b'[{"do":"rows"}]',
            "unfinished": b'{"do":"rows"',
            "two": b'{"do":"rows"}{"do":"rows"}',
            "rest": b'{"do":"rows"} x',
            "comment": b'{"do":"rows"} // x',
            "trailing comma": b'{"do":"rows",}',
            "single quotes": b"{'do':'rows'}",
            "number out of range": b'{"do":"rows","x":1e999}',
            "not a number": b'{"do":"rows","x":NaN}',
            "control character": b'{"do":"ro\tws"}',
            "invalid UTF-8": b'{"do":"rows\xff"}',
            "surrogate in UTF-8": b'{"do":"rows\xed\xa0\x80"}',
            "half an escaped pair": b'{"do":"rows\\ud800"}',
            "UTF-16": '{"do":"rows"}'.encode("utf-16"),
            "NUL": b"\0",
            "NUL before": b'\0{"do":"rows"}',
            "NUL inside": b'{"do":"ro\0ws"}',
            "NUL behind": b'{"do":"rows"}\0',
            "NUL and more behind": b'{"do":"rows"}\0 and more',
            "all bytes": bytes(byte for byte in range(256) if byte != 10),
            "10 MB": b"x" * 10_000_000,
            "10 MB of text": b'"' + b"x" * 10_000_000 + b'"',
            "100,000 open arrays": b"[" * 100_000,
            "100,000 arrays": b"[" * 100_000 + b"]" * 100_000,
            "100,000 open objects": b'{"do":' * 100_000,
        }
        for name, line in lines.items():
            with self.subTest(name):
                self.assertEqual(self.driver.send(line), refused(NO_REQUEST))
        self.assert_unchanged()

    def test_requests_in_other_words(self):
        rows = {**page_of(ROOT_PAGE, page_definition("Root"))}
        lines = {
            "spaces": b'  { "do" :\t"rows" }  ',
            "carriage return": b'{"do":"rows"}\r',
            "byte order mark": b'\xef\xbb\xbf{"do":"rows"}',
            "escapes": b'{"\\u0064o":"\\u0072ows"}',
            "unknown field": b'{"do":"rows","what":[1,{"x":null}]}',
            "the last of two": b'{"do":"back","do":"rows"}',
            "100,000 arrays aside": b'{"do":"rows","x":' + b"[" * 100_000 + b"]" * 100_000 + b"}",
            "100,000 objects aside": b'{"do":"rows","x":' + b'{"x":' * 100_000 + b"1" + b"}" * 100_001,
            "10 MB aside": b'{"do":"rows","x":"' + b"x" * 10_000_000 + b'"}',
        }
        for name, line in lines.items():
            with self.subTest(name):
                self.assertEqual(self.driver.send(line), rows)

    def test_unknown_request(self):
        for name in ("nothing", "Rows", "rows ", "", "do"):
            with self.subTest(name):
                self.assert_refused(f'no request is named "{name}"', name)
        long = "x" * 10_000_000
        self.assert_refused(f'no request is named "{long}"', long)
        self.assert_refused('no request is named "a\nb"', "a\nb")
        self.assert_unchanged()

    def test_no_name(self):
        for line in (b"{}", b'{"Do":"rows"}', b'{"do":null}', b'{"do":5}', b'{"do":["rows"]}', b'{"do":{"do":"rows"}}'):
            with self.subTest(line):
                self.assertEqual(self.driver.send(line), refused('"do" must be a string'))
        self.assert_unchanged()

    def test_the_last_line_needs_no_end(self):
        done_ = subprocess.run(
            self.command("drive"), env=self.environment, input=b'{"do":"back"}\n{"do":"nothing"}', capture_output=True
        )
        self.assertEqual((done_.returncode, done_.stderr), (0, b""))
        self.assertEqual(
            [strict_loads(line) for line in done_.stdout.decode().splitlines()],
            [refused("this is the first page", FADE_IN), refused('no request is named "nothing"')],
        )

    def test_no_lines(self):
        for content in (b"", b"\n"):
            done_ = subprocess.run(self.command("drive"), env=self.environment, input=content, capture_output=True)
            self.assertEqual((done_.returncode, done_.stdout.count(b"\n"), done_.stderr), (0, len(content), b""))


class Rows(RequestTest):
    def test_each_page(self):
        misc = page_definition("Misc")
        for name, page, definition, hidden in (
            ("calls", CALLS_PAGE, page_definition("Calls"), ()),
            ("messages", MESSAGES_PAGE, page_definition("Messages"), {"TandemIMToTextAsk"}),
            ("misc", MISC_PAGE, misc, ()),
        ):
            with self.subTest(name):
                self.driver.ask("open", page=name)
                self.assertEqual(self.driver.ask("rows"), page_of(page, definition, hidden=hidden))
                self.driver.ask("back")

    def test_pages_built_in_code(self):
        def row(index, section, place, identifier, name, cell, cell_class=None, **more):
            return {
                "index": index,
                "section": section,
                "row": place,
                "identifier": identifier,
                "name": name,
                "cell": cell,
                "cellClass": cell_class,
                "detail": None,
                "key": None,
                "value": None,
                "enabled": True,
                "icon": False,
                "footer": None,
                "notification": None,
                **more,
            }

        rows = []
        for number, (label, sim) in enumerate(
            (("Personal", "6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4"), ("Work", "B82E94D7-0C56-4F3B-8E1A-71D0A6F52C89"))
        ):
            index, section = 4 * number, 2 * number
            rows += [
                row(index, section, None, None, f"SIM {number + 1}", "PSGroupCell"),
                row(index + 1, section, 0, f"SIM+{sim}", label, "PSLinkCell", "TDSIMInfoTableCell"),
                row(index + 2, section, 1, f"LOGO+{sim}", "Carrier Logo", "PSButtonCell", "TDSIMMaskTableCell"),
                row(index + 3, section + 1, None, None, None, "PSGroupCell"),
            ]
        self.driver.ask("open", page="sims")
        self.assertEqual(
            self.driver.ask("rows"),
            {
                "ok": True,
                "page": SIMS_PAGE,
                "title": "SIM Settings",
                "barColor": ACCENT,
                "rows": rows,
                "events": [],
            },
        )

        self.driver.ask("back")
        self.driver.ask("open", page="bluetooth")
        rows = []
        for number, (name, address) in enumerate(
            (
                ("Car Kit", "12:34:56:AB:CD:01"),
                ("Kitchen Speaker", "12:34:56:AB:CD:02"),
                ("Mira's Headset", "12:34:56:AB:CD:03"),
            )
        ):
            rows += [
                row(2 * number, number, 0, address, name, "PSSwitchCell", "TDSwitchCell", value=False),
                row(2 * number + 1, number + 1, None, None, None, "PSGroupCell"),
            ]
        self.assertEqual(
            self.driver.ask("rows"),
            {
                "ok": True,
                "page": BLUETOOTH_PAGE,
                "title": "Bluetooth Devices",
                "barColor": ACCENT,
                "rows": rows,
                "events": [],
            },
        )

    def test_page_without_rows(self):
        self.driver.ask("tap", row="VexilProducts")
        self.assert_refused("VXWebKitViewController is no page of rows; go back first", "rows")
        self.assert_refused("VXWebKitViewController is no page of rows; go back first", "cell", row=0)
        self.assert_refused("VXWebKitViewController is no page of rows; go back first", "open", page="calls")
        self.assertEqual(self.driver.request("back"), done(pop("VXWebKitViewController", "More from Vexil")))
        self.assert_unchanged()


class RowsByName(RequestTest):
    """How set, tap and cell say which row is meant."""

    def test_no_row(self):
        count = len(page_definition("Root")["items"])
        for do in ("set", "tap", "cell"):
            self.assert_refused(NO_ROW_FORM, do)
            for row in (None, True, 1.0, 1.5, -1.0, [1], {"row": 1}, 10**30):
                self.assert_refused(NO_ROW_FORM, do, row=row, value=True)
            for row in (-1, -(2**63), count, 99, 2**31, 2**63 - 1, 2**63, 2**64 - 1):
                self.assert_refused(f"no row {row}: the page has {count}", do, row=row, value=True)
            for row in ("nope", "", "1", "tandemenabled"):
                self.assert_refused(f'no row "{row}" on this page', do, row=row, value=True)
        self.assert_unchanged()

    def test_group(self):
        for do in ("set", "tap", "cell"):
            for row in (0, "MasterGroup"):
                self.assert_refused("MasterGroup is a group", do, row=row, value=True)
        self.assert_unchanged()

    def test_row_without_an_identifier(self):
        self.driver.close()
        items = page_definition("Root")["items"]
        items[3:3] = [group_item(), {"cell": "PSLinkCell", "label": "Nameless"}]
        self.write_page("Root", items)
        self.driver = self.drive()
        self.driver.ask("rows")
        self.assert_refused("row 3 is a group", "set", row=3, value=True)
        self.assert_refused("row 4 has no control", "set", row=4, value=True)

    def test_identifier_that_stands_twice(self):
        self.driver.close()
        items = page_definition("Misc")["items"]
        items[-1:-1] = [{"cell": "PSSwitchCell", "id": "TandemLoggingEnabled", "label": "Twin", "key": "Twin"}]
        self.write_page("Misc", items)
        driver = self.drive().open("misc")
        driver.ask("set", row="TandemLoggingEnabled", value=True)
        self.assert_stored({"TandemLoggingEnabled": True})
        self.assertEqual(driver.ask("cell", row="TandemLoggingEnabled")["cell"]["textLabel"]["text"], "Enable Logging")


class Cell(RequestTest):
    def test_width(self):
        for width in ("375", True, [375], {}, 0, 0.99, -1, 10000.5, 1e300, 2**64 - 1):
            self.assert_refused('"width" must be a number of points from 1 to 10000', "cell", row="Calls", width=width)
        for width in (1, 10000, 320.5):
            self.assertEqual(self.driver.ask("cell", row="Calls", width=width)["cell"]["frame"][2], width)
        self.assert_unchanged()

    def test_looking_at_a_cell_changes_nothing(self):
        for row in page_definition("Root")["items"]:
            if row["cell"] != "PSGroupCell":
                self.assertEqual(self.driver.ask("cell", row=row["id"])["events"], [])
        self.assert_unchanged()


class Set(RequestTest):
    def test_value_for_a_switch(self):
        message = "TandemEnabled is a switch: its value is true or false"
        self.assert_refused(message, "set", row="TandemEnabled")
        for value in (None, "on", "true", [True], {"value": True}):
            self.assert_refused(message, "set", row="TandemEnabled", value=value)
        self.assert_unchanged()

    def test_value_for_a_slider(self):
        self.driver.ask("open", page="calls")
        slider = "TandemSimSelectionTimeForCalls"
        for value in (None, True, "7", [7], {}):
            self.assert_refused(f"{slider} is a slider: its value is a number", "set", row=slider, value=value)
        self.assert_stored({})

    def test_row_without_a_control(self):
        for row in ("Calls", "VexilProducts", "Misc"):
            self.assert_refused(f"{row} has no control", "set", row=row, value=True)
        self.driver.ask("open", page="misc")
        self.assert_refused("EmailLog has no control", "set", row="EmailLog", value=True)

    def test_disabled_row(self):
        self.driver.close()
        items = page_definition("Misc")["items"]
        items[1]["enabled"] = False
        items[3]["enabled"] = False
        self.write_page("Misc", items)
        self.driver = self.drive().open("misc")
        self.assert_refused("TandemLoggingEnabled is disabled", "set", row=1, value=True)
        self.assert_refused("the row cannot be tapped", "tap", row="EmailLog")
        self.assertEqual([row["enabled"] for row in self.driver.rows()], [True, False, True, False, True])
        self.assert_stored({})


class TapOpenAndBack(RequestTest):
    PAGES = (
        ("calls", "Calls", CALLS_PAGE, "Calls", []),
        ("messages", "Messages", MESSAGES_PAGE, "Messages", []),
        ("bluetooth", "Bluetooth", BLUETOOTH_PAGE, "Bluetooth Devices", []),
        ("sims", "TDSimSettingsController", SIMS_PAGE, "SIM Settings", [SUBSCRIPTIONS]),
        ("misc", "Misc", MISC_PAGE, "Logging and Support", []),
    )

    def test_each_page(self):
        for name, entry, page, title, before in self.PAGES:
            with self.subTest(name):
                for do, field in (("open", {"page": name}), ("tap", {"row": entry})):
                    self.assertEqual(self.driver.request(do, **field), done(*before, push(page, title)))
                    reply = self.driver.ask("rows")
                    self.assertEqual((reply["page"], reply["title"], reply["barColor"]), (page, title, ACCENT))
                    self.assertEqual(self.driver.request("back"), done(pop(page, title)))
        self.assert_unchanged()

    def test_root_is_open_already(self):
        self.assertEqual(self.driver.request("open", page="root"), done())
        self.assert_unchanged()

    def test_page_that_is_none(self):
        self.assert_refused('"page" must be a string', "open")
        self.assert_refused('"page" must be a string', "open", page=1)
        for name in ("", "Calls", "settings", CALLS_PAGE):
            self.assert_refused(
                f'no page is named "{name}": root, calls, messages, bluetooth, sims or misc', "open", page=name
            )
        self.assert_unchanged()

    def test_open_on_another_page(self):
        self.driver.ask("open", page="calls")
        for name in ("messages", "calls", "root"):
            self.assert_refused("pages are opened from the root page; go back first", "open", page=name)

    def test_back_on_the_first_page(self):
        self.assert_refused("this is the first page", "back")
        self.assert_unchanged()

    def test_entries_are_hidden_while_disabled(self):
        self.driver.ask("set", row="TandemEnabled", value=False)
        for name in ("calls", "messages", "bluetooth", "sims"):
            self.assert_refused(f'the root page has no entry for "{name}" now', "open", page=name)
        self.assertEqual(
            self.driver.request("open", page="misc"), done(push(MISC_PAGE, "Logging and Support"))
        )

    def test_rows_that_take_no_tap(self):
        self.assert_refused("the row cannot be tapped", "tap", row="TandemEnabled")
        self.driver.ask("open", page="sims")
        reply = self.driver.request("tap", row=1)
        self.assertEqual((reply["ok"], reply["error"]), (False, "the row cannot be tapped"))
        self.driver.ask("back")
        self.driver.ask("open", page="calls")
        self.assert_refused("the row cannot be tapped", "tap", row="TandemSimSelectionTimeForCalls")

    def test_products(self):
        self.assertEqual(
            self.driver.request("tap", row="VexilProducts"),
            done(
                {"event": "link", "url": "https://vexil.example/products?from=Pairo"},
                push("VXWebKitViewController", "More from Vexil"),
            ),
        )


class ChooseAndPick(RequestTest):
    LOGO = "LOGO+6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4"
    DIRECTORY = "/var/mobile/Library/Preferences/Tandem"
    PERSONAL = f"{DIRECTORY}/6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4.png"
    WORK = f"{DIRECTORY}/B82E94D7-0C56-4F3B-8E1A-71D0A6F52C89.png"
    FOX = str(DEMO_PHONE.parent / "Photos/fox.png")

    def setUp(self):
        super().setUp()
        self.driver.ask("open", page="sims")

    def sheet(self, *destructive):
        return {
            "event": "sheet",
            "title": "Pairo",
            "message": "Would you like to change the image of 'Personal' carrier? It will appear in SIM selection "
            "window for both Calls & Messages.",
            "actions": [{"title": title, "style": "destructive"} for title in destructive]
            + [{"title": "Cancel", "style": "cancel"}],
        }

    SHEET_GONE = {"event": "dismiss", "what": "sheet"}
    PICKER = {"event": "picker", "source": "photoLibrary", "allowsEditing": True}
    PICKER_GONE = {"event": "dismiss", "what": "picker"}

    def test_choosing_and_resetting_a_logo(self):
        self.assertEqual(
            [
                self.driver.request("tap", row=self.LOGO),
                self.driver.request("choose", title="Change"),
                self.driver.request("pick", image=self.FOX),
                self.driver.request("tap", row=self.LOGO),
                self.driver.request("choose", title="Reset"),
            ],
            [
                done(self.sheet("Change")),
                done(self.SHEET_GONE, self.PICKER),
                done(log(f"***** Saving image to : {self.PERSONAL}"), SUBSCRIPTIONS, RELOAD, self.PICKER_GONE),
                done(self.sheet("Change", "Reset")),
                done(self.SHEET_GONE, SUBSCRIPTIONS, RELOAD),
            ],
        )
        self.assertFalse(self.path(self.PERSONAL).exists())

    def test_resetting_all_logos(self):
        self.driver.ask("tap", row=self.LOGO)
        self.driver.ask("choose", title="Change")
        self.driver.ask("pick", image=self.FOX)
        self.assertEqual(self.path(self.PERSONAL).read_bytes()[:8], b"\x89PNG\r\n\x1a\n")
        self.assertEqual(self.driver.rows()[-1]["identifier"], "LOGO")
        self.assertEqual(
            [self.driver.request("tap", row="LOGO"), self.driver.request("choose", title="Reset All")],
            [
                done(
                    {
                        "event": "sheet",
                        "title": "Pairo",
                        "message": "Are you sure you want to reset all carrier logos?",
                        "actions": [
                            {"title": "Reset All", "style": "destructive"},
                            {"title": "Cancel", "style": "cancel"},
                        ],
                    }
                ),
                done(
                    self.SHEET_GONE,
                    log(
                        f"com.vexil.Pairo => Error: While removing item at path '{self.WORK}' error => "
                        f"“{os.path.basename(self.WORK)}” couldn’t be removed: No such file or directory."
                    ),
                    SUBSCRIPTIONS,
                    RELOAD,
                ),
            ],
        )
        self.assertFalse(self.path(self.PERSONAL).exists())

    def test_leaving_the_sheet_and_the_picker(self):
        self.driver.ask("tap", row=self.LOGO)
        self.assertEqual(self.driver.request("choose", title="Cancel"), done(self.SHEET_GONE))
        self.driver.ask("tap", row=self.LOGO)
        self.driver.ask("choose", title="Change")
        self.assertEqual(self.driver.request("pick", image=None), done(self.PICKER_GONE))
        self.assertFalse(self.path(self.DIRECTORY).exists())

    def test_nothing_to_choose_or_to_pick(self):
        self.assert_refused('"title" must be a string', "choose")
        self.assert_refused('"title" must be a string', "choose", title=1)
        self.assert_refused("no sheet is up", "choose", title="Change")
        self.assert_refused("no picker is up", "pick", image=self.FOX)
        self.assert_refused("no picker is up", "pick", image=None)
        self.driver.ask("tap", row=self.LOGO)
        for title in ("", "change", "Reset", "Nothing"):
            self.assert_refused(f'the sheet has no action "{title}"', "choose", title=title)
        self.assert_refused("no picker is up", "pick", image=self.FOX)
        self.driver.ask("choose", title="Change")
        self.assert_refused("no sheet is up", "choose", title="Change")

    def test_file_that_is_no_picture(self):
        self.driver.ask("tap", row=self.LOGO)
        self.driver.ask("choose", title="Change")
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        empty = self.folder / "empty.png"
        empty.touch()
        self.assert_refused('"image" must be a string', "pick", image=5)
        for file, problem in (
            (self.folder / "missing.png", ": no such file"),
            (self.folder, ": not a regular file"),
            (pipe, ": not a regular file"),
            ("/dev/zero", ": not a regular file"),
            (empty, " is no picture, or too large to be used"),
            (DEMO_PHONE, " is no picture, or too large to be used"),
        ):
            with self.subTest(file=file):
                self.assert_refused(f"{file}{problem}", "pick", image=str(file))
        # The picker is still up.
        self.driver.ask("pick", image=self.FOX)

    def test_covered_page(self):
        self.driver.ask("tap", row=self.LOGO)
        for cover in ("sheet", "picker"):
            with self.subTest(cover):
                self.assert_refused(COVERED, "set", row=1, value=True)
                self.assert_refused(COVERED, "tap", row=self.LOGO)
                self.assert_refused(COVERED, "open", page="calls")
                self.assert_refused(COVERED, "back")
                # Looking at it is no touch.
                self.assertEqual(len(self.driver.rows()), 8)
                self.driver.ask("cell", row=self.LOGO)
                if cover == "sheet":
                    self.driver.ask("choose", title="Change")

    def test_share_sheet(self):
        self.driver.ask("back")
        self.assertEqual(
            self.driver.request("hook", name="shareAction:"),
            {
                "ok": True,
                "result": None,
                "events": [
                    {
                        "event": "share",
                        "message": SHARE_MESSAGE,
                        "image": {"size": [512.0, 512.0], "template": False},
                    }
                ],
            },
        )
        self.assert_refused(COVERED, "open", page="calls")
        self.assertEqual(
            self.driver.request("choose", title="Cancel"), done({"event": "dismiss", "what": "share"})
        )
        self.assert_unchanged()


class PostAndAppearance(RequestTest):
    def test_settings_changed_makes_the_page_read_the_file(self):
        self.driver.ask("open", page="calls")
        self.write_settings({"TandemSimSelectionTimeForCalls": 9})
        self.driver.ask("post", name="com.vexil.tandemSettingsChanged")
        self.assertEqual(self.driver.rows()[3]["value"], 9)

    def test_any_name(self):
        for name in ("", "nobody.listens", "com.vexil.tandemSettingsChanged", "ü\0\n"):
            self.assertEqual(self.driver.request("post", name=name), done())
        self.assertEqual(self.driver.request("post", name="com.vexil.tandem.settingsReloaded"), done(SETTINGS_RELOADED))
        self.assert_unchanged()

    def test_no_name(self):
        for fields in ({}, {"name": None}, {"name": 1}, {"name": ["x"]}):
            self.assert_refused('"name" must be a string', "post", **fields)

    def test_appearance(self):
        for fields in ({}, {"dark": None}, {"dark": 1}, {"dark": "true"}):
            self.assert_refused('"dark" must be true or false', "appearance", **fields)
        for dark in (True, True, False):
            self.assertEqual(self.driver.request("appearance", dark=dark), done())
        self.assert_unchanged()

    def test_phone_without_an_appearance(self):
        self.driver.close()
        phone = self.folder / "phone.json"
        phone.write_text("{}")
        self.driver = self.drive("--phone", phone)
        self.driver.ask("rows")
        self.assert_refused("this phone has no appearance to change", "appearance", dark=True)


class Hooks(RequestTest):
    PAGES = ("root", "calls", "messages", "bluetooth", "sims", "misc")

    def result(self, name, *value):
        fields = {"value": value[0]} if value else {}
        reply = self.driver.request("hook", name=name, **fields)
        self.assertEqual((reply["ok"], reply["events"]), (True, []), name)
        return reply["result"]

    def test_what_every_page_answers(self):
        for page in self.PAGES:
            with self.subTest(page):
                if page != "root":
                    self.driver.ask("open", page=page)
                text = "Version 1.0.0 © {} Vexil. All rights reserved."
                footer = {"class": "PSSpecifier", "identifier": "CopyRightHeader", "name": None}
                self.assertEqual(
                    {
                        "2026": self.result("copryRightSpecifierText:", 2026),
                        "-1": self.result("copryRightSpecifierText:", -1),
                        "0": self.result("copryRightSpecifierText:", 0),
                        "message": self.result("twitterMessage"),
                        "image": self.result("twitterImage"),
                        "color": self.result("customNavigationBarColor"),
                        "hasColor": self.result("hasCustomNavigationBarColor"),
                        "footer": self.result("copyRightSpecifier"),
                    },
                    {
                        "2026": text.format(2026),
                        "-1": text.format(-1),
                        "0": text.format(0),
                        "message": SHARE_MESSAGE,
                        "image": {"size": [512.0, 512.0], "template": False},
                        "color": ACCENT,
                        "hasColor": True,
                        "footer": None if page in ("bluetooth", "sims") else footer,
                    },
                )
                if page != "root":
                    self.driver.ask("back")
        self.assert_unchanged()

    def test_what_the_misc_page_answers(self):
        self.driver.ask("open", page="misc")
        self.assertEqual(
            [self.result(name) for name in ("specifiersFileName", "serviceName", "productName", "customBackButton")],
            [
                "Misc",
                "com.vexil.tandem",
                "Pairo",
                {
                    "class": "UIBarButtonItem",
                    "image": self.driver.ask("hook", name="customBackButton")["result"]["image"],
                    "style": 0,
                    "action": "backButtonAction:",
                },
            ],
        )
        self.assertIsNotNone(self.result("customBackButton")["image"])
        self.assertEqual(
            self.driver.request("hook", name="backButtonAction:")["events"], [pop(MISC_PAGE, "Logging and Support")]
        )

    def test_selector_that_the_page_does_not_know(self):
        self.assert_refused('"name" must be a string', "hook")
        self.assert_refused('"name" must be a string', "hook", name=1)
        for name in ("", "twittermessage", "twitterMessage:", "copryRightSpecifierText", "emailLogFile"):
            self.assert_refused(f"{ROOT_PAGE} does not respond to {name}", "hook", name=name)

    def test_value_nested_too_deep(self):
        def nested(depth, opening, closing, inner):
            return b'{"do":"hook","name":"twitterMessage","value":' + opening * depth + inner + closing * depth + b"}"

        for opening, closing, inner in ((b"[", b"]", b"1"), (b'{"x":', b"}", b"1"), (b'[{"x":', b"}]", b"1")):
            for depth in (65, 100_000):
                self.assertEqual(
                    self.driver.send(nested(depth, opening, closing, inner)), refused('"value" is nested too deep')
                )
            self.assertTrue(self.driver.send(nested(32, opening, closing, inner))["ok"])
        self.assert_unchanged()

    def test_hooks_that_write(self):
        self.assertEqual(
            self.driver.request("hook", name="updateSettingsDict:forKey:", value={"x": 1}),
            {"ok": True, "result": None, "events": []},
        )
        self.assert_stored({})
        self.assertEqual(
            self.driver.request("hook", name="showError:", value="A text.\n"),
            {"ok": True, "result": None, "events": [error("A text.\n")]},
        )
        self.assert_unchanged()

    def test_any_value_for_any_selector(self):
        """Arguments of the wrong type are null, zero or empty; nothing ends the session."""
        selectors = [
            "changeCarrierLogo:",
            "copryRightSpecifierText:",
            "currentSubScriptionContext",
            "customBackButton",
            "defaultSIMUUIDString",
            "emailLogFile:",
            "enableShowSimSelection:specifier:",
            "enableShowSimSelectionForMessages:specifier:",
            "enableTandemForCalls:specifier:",
            "isBluetoothDeviceSelected:",
            "loadSettings",
            "productName",
            "readPreferenceValue:",
            "reloadSpecifiers",
            "resetCarrierLogos:",
            "serviceName",
            "setPreferenceValue:specifier:",
            "shareAction:",
            "showError:",
            "showImagePicker",
            "showVexilProducts:",
            "specifiersFileName",
            "tandemEnabledOrDisabled:specifier:",
            "tandemEnabledOrDisabledForIMToText:specifier:",
            "tandemEnabledOrDisabledForMessages:specifier:",
            "tandemSettingsChanged:",
            "updateSettingsDict:forKey:",
            "updateSimSelection:specifier:",
            "writeSettings",
            "backButtonAction:",
        ]
        values = [None, True, 0, 2**64 - 1, -(2**63), 1e300, "text\0", [[1]], {"a": {"b": None}}]
        for page in self.PAGES:
            for selector in selectors:
                for value in values:
                    self.driver.request("open", page=page)
                    reply = self.driver.request("hook", name=selector, value=value)
                    if not reply["ok"]:
                        self.assertRegex(reply["error"], r"does not respond to|beyond bounds")
                    for step in ({"do": "choose", "title": "Cancel"}, {"do": "pick", "image": None}, {"do": "back"}):
                        self.driver.request(**step)
        reply = self.driver.ask("rows")
        self.assertEqual(reply["rows"], rows_of(page_definition("Root"), footer=footer_text()))


class ManyRequests(RequestTest):
    def test_every_line_has_its_reply(self):
        lines = [b'{"do":"rows"}', b"", b'{"do":"nothing"}', b"\xff", b'{"do":"cell","row":1}'] * 200
        self.driver.close()
        finished = subprocess.run(
            self.command("drive"), env=self.environment, input=b"\n".join(lines) + b"\n", capture_output=True
        )
        self.assertEqual((finished.returncode, finished.stderr), (0, b""))
        replies = finished.stdout.split(b"\n")
        self.assertEqual(len(replies), len(lines) + 1)
        self.assertEqual([json.loads(reply)["ok"] for reply in replies[:-1]], [True, False, False, False, True] * 200)
