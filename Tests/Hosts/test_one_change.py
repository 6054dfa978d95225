"""One change of one switch, from the request to the file and back to the rows."""

import datetime
import json
import os
import plistlib
import unittest

from support import (
    ACCENT,
    CALLS_CHANGED,
    CALLS_PAGE,
    FADE_IN,
    RELOAD,
    SETTINGS_RELOADED,
    PhoneTest,
    footer_text,
    insert,
    notification,
    page_definition,
    page_of,
    push,
)

SWITCH = "ShowSimSlectionForCalls"
SLIDER = "TandemSimSelectionTimeForCalls"

# What no page knows of. XML has no form of its own for a UID.
UNRELATED = {
    "negative": -42,
    "smallest": -(2**63),
    "largest": 2**64 - 5,
    "real": 0.1,
    "wholeReal": 2.0,
    "largeReal": 1.7976931348623157e308,
    "date": datetime.datetime(2031, 12, 31, 23, 59, 58),
    "data": bytes(range(256)),
    "noData": b"",
    "text": "Größe \U0001f4f1 <&>\"' 电话",
    "noText": "",
    "on": True,
    "one": 1,
    "nested": {"list": [1, -2.5, "drei", [False, {}], {"tief": [b"\0"]}], "empty": []},
    "ключ": "значение",
    "\U0001f511": {"鍵": 3},
}
UID_IN_XML = {"uid": {"CF$UID": 7}, "nestedUid": [{"CF$UID": 0}]}
UID_IN_BINARY = {"uid": plistlib.UID(7), "nestedUid": [plistlib.UID(0)]}


class OneChangeFromEndToEnd(PhoneTest):
    def test_the_file_is_written_over_and_not_replaced(self):
        """Whoever holds it open, or has another name for it, sees the change."""
        self.write_settings({SLIDER: 7})
        name = self.folder / "another name"
        os.link(self.settings_file, name)
        with self.settings_file.open("rb") as held:
            self.assertEqual(self.run_tandem("set", "calls", SWITCH, "off")[0], 0)
            content = held.read()
        self.assertEqual(plistlib.loads(content), {SLIDER: 7, SWITCH: False})
        self.assertEqual((name.read_bytes(), self.settings_file.read_bytes()), (content, content))

    def test_turning_on_the_sim_choice_for_calls(self):
        stored = {SWITCH: False, SLIDER: 7, **UNRELATED}
        self.write_settings({**stored, **UID_IN_XML}, plistlib.FMT_XML)
        before = self.settings_file.read_bytes()
        self.assertEqual(before[:5], b"<?xml")
        calls = page_definition("Calls")
        after = {**stored, SWITCH: True, **UID_IN_BINARY}

        driver = self.drive()
        transcript = [
            driver.send(b'{"do":"open","page":"calls"}'),
            driver.send(b'{"do":"rows"}'),
        ]
        self.assertEqual(self.settings_file.read_bytes(), before)
        transcript += [
            driver.send(b'{"do":"set","row":"ShowSimSlectionForCalls","value":true}'),
            driver.send(b'{"do":"rows"}'),
        ]

        self.assertEqual(
            transcript,
            [
                {"ok": True, "events": [FADE_IN, push(CALLS_PAGE, "Calls")]},
                page_of(CALLS_PAGE, calls, settings=stored, hidden={SLIDER}),
                {
                    "ok": True,
                    "events": [notification(CALLS_CHANGED), SETTINGS_RELOADED, insert(3, SLIDER), RELOAD],
                },
                page_of(CALLS_PAGE, calls, settings=after),
            ],
        )
        self.assert_stored(after)

    def test_the_rows_in_full(self):
        self.write_settings({SWITCH: False, SLIDER: 7})
        driver = self.drive().open("calls")
        driver.ask("set", row=SWITCH, value=True)

        def row(index, section, row, identifier, name, cell, cell_class=None, value=None, **more):
            key = None if cell == "PSGroupCell" else identifier
            return {
                "index": index,
                "section": section,
                "row": row,
                "identifier": identifier,
                "name": name,
                "cell": cell,
                "cellClass": cell_class,
                "detail": None,
                "key": key,
                "value": value,
                "enabled": True,
                "icon": False,
                "footer": None,
                "notification": key and CALLS_CHANGED,
                **more,
            }

        def switch(index, section, place, identifier, name, **more):
            return row(index, section, place, identifier, name, "PSSwitchCell", "TDSwitchCell", True, **more)

        def group(index, section, identifier, name, footer):
            return row(index, section, None, identifier, name, "PSGroupCell", footer=footer)

        self.assertEqual(
            driver.ask("rows"),
            {
                "ok": True,
                "page": CALLS_PAGE,
                "title": "Calls",
                "barColor": ACCENT,
                "rows": [
                    switch(0, 0, 0, "TandemEnabledCalls", "Choose SIM for Calls"),
                    group(
                        1,
                        1,
                        "SimChoiceGroup",
                        None,
                        "When you place a call, Pairo shows your SIMs and lets you tap the one to use. The choice "
                        "stays on the screen for the number of seconds you set.",
                    ),
                    switch(2, 1, 0, SWITCH, "Ask Before Each Call", icon=True),
                    row(3, 1, 1, SLIDER, "Seconds to Choose a SIM", "PSSliderCell", "TDSliderCell", 7),
                    group(
                        4,
                        2,
                        "AppsGroup",
                        "Apps",
                        "Pairo works with calls from the apps that are turned on. Calls from the other apps are placed "
                        "as if Pairo were not there.",
                    ),
                    switch(5, 2, 0, "TandemCallsApp-org.gnome.Calls", "Calls", icon=True),
                    switch(6, 2, 1, "TandemCallsApp-org.kde.plasma.dialer", "Plasma Dialer", icon=True),
                    switch(7, 2, 2, "TandemCallsApp-com.belledonne.linphone", "Linphone", icon=True),
                    switch(8, 2, 3, "TandemCallsApp-net.jami.Jami", "Jami", icon=True),
                    group(9, 3, "CopyRightHeader", None, footer_text()),
                ],
                "events": [],
            },
        )

    def test_the_same_change_by_a_command(self):
        self.write_settings({SWITCH: False, **UNRELATED, **UID_IN_XML}, plistlib.FMT_XML)

        self.assertEqual(
            self.run_tandem("set", "calls", SWITCH, "on"),
            (
                0,
                f"notification  name {CALLS_CHANGED}\n"
                "settingsReloaded\n"
                f"insert  index 3  identifier {SLIDER}  animated true\n"
                "reload\n",
                "",
            ),
        )
        self.assert_stored({SWITCH: True, **UNRELATED, **UID_IN_BINARY})

    def test_the_last_good_copy_follows_the_file(self):
        self.write_settings({SWITCH: False}, plistlib.FMT_XML)
        driver = self.drive().open("calls")
        driver.ask("set", row=SWITCH, value=True)

        content = self.settings_file.read_bytes()
        self.assertEqual(
            self.preference_files(),
            {"com.vexil.tandem.plist": content, ".com.vexil.tandem.plist.good": content},
        )

    def test_a_binary_file_that_was_read_and_not_changed_is_written_bit_for_bit(self):
        stored = {SWITCH: True, **UNRELATED, **UID_IN_BINARY}
        self.write_settings(stored)
        driver = self.drive().open("calls")
        driver.ask("set", row=SWITCH, value=False)
        once = self.settings_file.read_bytes()
        driver.ask("set", row=SWITCH, value=True)
        driver.ask("set", row=SWITCH, value=False)

        self.assertEqual(self.settings_file.read_bytes(), once)
        self.assert_stored({**stored, SWITCH: False})

    def test_a_moved_slider_stores_a_real_number(self):
        driver = self.drive().open("calls")
        self.assertEqual(
            json.dumps(driver.ask("set", row=SLIDER, value=8)),
            json.dumps({"ok": True, "events": [notification(CALLS_CHANGED), SETTINGS_RELOADED]}),
        )
        self.assert_stored({SLIDER: 8.0})


if __name__ == "__main__":
    unittest.main()
