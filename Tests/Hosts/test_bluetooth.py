"""The devices and the SIMs that they are bound to, worked as a user does it."""

import json
import plistlib
import unittest

from support import ACCENT, BLUETOOTH_PAGE, PhoneTest, RELOAD, WHITE, push

BINDINGS = "/var/mobile/Library/Preferences/com.vexil.tandem.bluetooth.plist"
FOOTER = (
    "When this device is connected to the above Bluetooth device, selected sim will be used while making outgoing call."
)
SIM_A = {"uuid": "AAAAAAAA-0000-4000-8000-000000000001", "label": "Home", "carrier": "Alpha", "phoneNumber": "111"}
SIM_B = {"uuid": "BBBBBBBB-0000-4000-8000-000000000002", "label": "Work", "carrier": "Beta", "phoneNumber": "222"}
VOICE = {"userDefaultVoice": True}
CAR = {"name": "Car", "address": "12:34:56:AB:CD:01"}
SPEAKER = {"name": "Speaker", "address": "12:34:56:AB:CD:02"}
HEADSET = {"name": "Headset", "address": "12:34:56:AB:CD:03"}


def sim_row(device, sim):
    return f"{device['address']}+{sim['uuid']}"


class BluetoothTest(PhoneTest):
    def open_page(self, devices, sims, **more):
        phone = self.folder / "phone.json"
        phone.write_text(json.dumps({"pairedDevices": devices, "subscriptions": sims, "appearance": "light", **more}))
        return self.drive("--phone", phone).open("bluetooth")

    def bindings(self):
        return plistlib.loads(self.path(BINDINGS).read_bytes())

    def write_bindings(self, bindings):
        self.preferences.mkdir(parents=True, exist_ok=True)
        self.path(BINDINGS).write_bytes(plistlib.dumps(bindings))

    def checkmarks(self, driver, device, sims):
        return [driver.ask("cell", row=sim_row(device, sim))["cell"]["accessory"] for sim in sims]

    def test_switching_a_device_on_binds_it_to_the_default_voice_line(self):
        sims = [SIM_A, {**SIM_B, **VOICE}]
        driver = self.open_page([CAR], sims)
        self.assertEqual(driver.events("set", row=CAR["address"], value=True), [RELOAD])
        self.assertEqual(self.bindings(), {CAR["address"]: {"bound": True, "sim": SIM_B["uuid"]}})
        self.assertEqual(self.checkmarks(driver, CAR, sims), [0, 3])

    def test_a_sim_is_chosen_kept_over_off_and_on_and_over_a_new_start(self):
        sims = [{**SIM_A, **VOICE}, SIM_B]
        driver = self.open_page([CAR], sims)
        driver.ask("set", row=CAR["address"], value=True)
        self.assertEqual(
            driver.events("tap", row=sim_row(CAR, SIM_B)), [{"event": "reloadSection", "section": 1, "animation": 5}]
        )
        self.assertEqual(self.checkmarks(driver, CAR, sims), [0, 3])
        before = self.path(BINDINGS).stat()
        self.assertEqual(driver.events("tap", row=sim_row(CAR, SIM_B)), [])
        self.assertEqual(self.path(BINDINGS).stat().st_ino, before.st_ino)
        self.assertEqual(driver.events("set", row=CAR["address"], value=False), [RELOAD])
        self.assertEqual(self.bindings(), {CAR["address"]: {"bound": False, "sim": SIM_B["uuid"]}})
        driver.close()
        driver = self.open_page([CAR], sims)
        driver.ask("set", row=CAR["address"], value=True)
        self.assertEqual(self.checkmarks(driver, CAR, sims), [0, 3])

    def test_three_devices_the_middle_one_bound(self):
        self.write_bindings({SPEAKER["address"]: {"bound": True, "sim": SIM_A["uuid"]}})
        driver = self.open_page([CAR, SPEAKER, HEADSET], [SIM_A, SIM_B])
        rows = driver.rows()
        self.assertEqual(
            [row["identifier"] or row["name"] for row in rows],
            [
                CAR["address"], None,
                SPEAKER["address"], "Default SIM", sim_row(SPEAKER, SIM_A), sim_row(SPEAKER, SIM_B), None,
                HEADSET["address"], None,
            ],
        )
        self.assertEqual(rows[3]["footer"], FOOTER)
        self.assertEqual([row["value"] for row in rows if row["cell"] == "PSSwitchCell"], [False, True, False])
        self.assertEqual(
            rows[4],
            {
                "index": 4, "section": 2, "row": 0, "identifier": sim_row(SPEAKER, SIM_A), "name": "Alpha",
                "cell": "PSLinkCell", "cellClass": "TDSIMInfoTableCell", "detail": None, "key": None, "value": None,
                "enabled": True, "icon": False, "footer": None, "notification": None,
            },
        )

    def test_the_switch_shows_the_binding_whatever_it_sends(self):
        driver = self.open_page([CAR], [SIM_A])
        for expected in [True, False, True]:
            driver.ask("set", row=CAR["address"], value=True)
            self.assertEqual(driver.rows()[0]["value"], expected)
            self.assertEqual(driver.ask("cell", row=0)["cell"]["control"]["value"], expected)

    def test_rows_and_cells_follow_another_process(self):
        sims = [{**SIM_A, **VOICE}, SIM_B]
        driver = self.open_page([CAR], sims)
        driver.ask("set", row=CAR["address"], value=True)
        self.assertEqual(self.checkmarks(driver, CAR, sims), [3, 0])
        phone = ("--phone", self.folder / "phone.json")
        self.assertEqual(self.run_tandem(*phone, "tap", "bluetooth", sim_row(CAR, SIM_B))[0], 0)
        # The root page and the page on top build their rows anew.
        self.assertEqual(driver.events("cell", row=sim_row(CAR, SIM_A)), [RELOAD, RELOAD])
        self.assertEqual(self.checkmarks(driver, CAR, sims), [0, 3])
        self.assertEqual(self.run_tandem(*phone, "set", "bluetooth", CAR["address"], "off")[0], 0)
        reply = driver.ask("rows")
        self.assertEqual(reply["events"], [RELOAD, RELOAD])
        self.assertEqual([row["identifier"] for row in reply["rows"]], [CAR["address"], None])
        self.assertEqual(reply["rows"][0]["value"], False)
        self.assertEqual(driver.events("rows"), [])

    def test_device_rows_cannot_be_tapped(self):
        driver = self.open_page([CAR], [SIM_A])
        self.assertEqual(
            driver.request("tap", row=CAR["address"]),
            {"ok": False, "error": "the row cannot be tapped", "events": []},
        )

    def test_colours_follow_the_appearance(self):
        self.write_bindings({CAR["address"]: {"bound": True, "sim": SIM_A["uuid"]}})
        driver = self.open_page([CAR], [SIM_A])
        for dark, colour in [(False, ACCENT), (True, WHITE)]:
            driver.ask("appearance", dark=dark)
            cell = driver.ask("cell", row=sim_row(CAR, SIM_A))["cell"]
            self.assertEqual(cell["textLabel"]["textColor"], colour)
            self.assertEqual(cell["detailTextLabel"]["textColor"], colour)
            self.assertEqual((cell["style"], cell["selection"], cell["interaction"]), (3, 3, True))
            self.assertEqual(driver.ask("cell", row=0)["cell"]["selection"], 0)

    def test_no_devices_two_hundred_and_equal_names(self):
        driver = self.open_page([], [SIM_A])
        self.assertEqual(driver.rows(), [])
        driver.close()
        devices = [{"name": "Same", "address": f"00:00:00:00:00:{i:02X}"} for i in range(200)]
        driver = self.open_page(devices, [SIM_A])
        driver.ask("set", row=devices[150]["address"], value=True)
        self.assertEqual(list(self.bindings()), [devices[150]["address"]])
        self.assertEqual(len(driver.rows()), 402)

    def test_no_sims_and_none_as_default_voice_line(self):
        driver = self.open_page([CAR], [])
        driver.ask("set", row=CAR["address"], value=True)
        self.assertEqual(driver.identifiers(), [CAR["address"], None, None])
        self.assertEqual(self.bindings(), {CAR["address"]: {"bound": True}})
        driver.close()
        driver = self.open_page([CAR], [SIM_A, SIM_B])
        self.assertEqual(self.checkmarks(driver, CAR, [SIM_A, SIM_B]), [0, 0])

    def test_a_stored_sim_that_is_not_in_the_phone_has_no_checkmark(self):
        self.write_bindings({CAR["address"]: {"bound": True, "sim": "GONE"}})
        sims = [{**SIM_A, **VOICE}, SIM_B]
        driver = self.open_page([CAR], sims)
        self.assertEqual(self.checkmarks(driver, CAR, sims), [0, 0])

    def test_malformed_bindings_bind_nothing_and_do_no_harm(self):
        for bindings in [b"", b"rubbish", plistlib.dumps([1]), plistlib.dumps({CAR["address"]: 5})]:
            with self.subTest(bindings=bindings[:20]):
                self.preferences.mkdir(parents=True, exist_ok=True)
                self.path(BINDINGS).write_bytes(bindings)
                driver = self.open_page([CAR], [SIM_A])
                self.assertEqual(driver.identifiers(), [CAR["address"], None])
                driver.close()

    def test_the_settings_file_and_the_notifications_are_left_alone(self):
        self.write_settings({"Key": 1})
        driver = self.open_page([CAR], [{**SIM_A, **VOICE}])
        events = driver.events("set", row=CAR["address"], value=True)
        events += driver.events("set", row=CAR["address"], value=False)
        self.assertEqual(events, [RELOAD, RELOAD])
        self.assert_stored({"Key": 1})

    def test_opening_the_page(self):
        driver = self.drive()
        driver.rows()
        self.assertEqual(driver.events("open", page="bluetooth"), [push(BLUETOOTH_PAGE, "Bluetooth Devices")])


if __name__ == "__main__":
    unittest.main()
