"""The SIMs of ModemManager and oFono on the SIM and Bluetooth pages."""

import os
import unittest
import uuid

from gi.repository import GLib

from machine import MODEMMANAGER, UNBOUNDED_SECONDS, MachineTest

MODEM_SERVICE = "org.freedesktop.ModemManager1"
MODEM_PATH = "/org/freedesktop/ModemManager1"
CONTROL = "com.vexil.Mock"
SIM = "org.freedesktop.ModemManager1.Sim"
OFONO = "org.ofono"

NAMESPACE = uuid.UUID("6d1f7a52-0c4e-5b37-9a63-2e8f41d07b19")
HOME = 1
ROAMING = 5
TELEKOM = "26201"
SWISSCOM = "22801"
FIRST = "8949020000012345678"
SECOND = "8949020000087654321"
THIRD = "8941010000011112222"


def key_of(iccid):
    return str(uuid.uuid5(NAMESPACE, iccid)).upper()


class SimsTest(MachineTest):
    def sims(self, driver=None):
        """Title, key and detail text of each SIM, as the page shows them."""
        driver = driver or self.on_linux().open("sims")
        rows = driver.rows()
        shown = []
        for row in rows:
            identifier = row["identifier"] or ""
            if identifier.startswith("SIM+"):
                cell = driver.ask("cell", row=row["index"])["cell"]
                shown.append((row["name"], identifier[4:], cell["detailTextLabel"]["text"]))
        return shown

    def labels_become(self, driver, labels):
        while [row["name"] for row in driver.rows() if (row["identifier"] or "").startswith("SIM+")] != labels:
            pass

    def marks_of_a_new_binding(self):
        """The accessory of each SIM, by its key, under a device that has just been bound: 3 is a mark."""
        bluez = self.mock_template("bluez5", "org.bluez", "/")
        bluez.call("org.bluez.Mock", "AddAdapter", GLib.Variant("(ss)", ("hci0", "hci0")))
        address = "11:22:33:44:55:66"
        bluez.call("org.bluez.Mock", "AddDevice", GLib.Variant("(sss)", ("hci0", address, "Car")))
        bluez.call("org.bluez.Mock", "PairDevice", GLib.Variant("(ssi)", ("hci0", address, 0)))
        driver = self.on_linux().open("bluetooth")
        driver.ask("set", row=address, value=True)
        return {
            row["identifier"].split("+")[1]: driver.ask("cell", row=row["index"])["cell"]["accessory"]
            for row in driver.rows()
            if "+" in (row["identifier"] or "")
        }


class ModemManagerTest(SimsTest):
    def setUp(self):
        super().setUp()
        self.modems = self.mock_template(MODEMMANAGER, MODEM_SERVICE, MODEM_PATH)

    def control(self, method, signature, *arguments):
        return self.modems.call(CONTROL, method, GLib.Variant(signature, arguments))

    def add_modem(self, device="/sys/devices/modem0", slots=1):
        return self.control("AddModem", "(su)", device, slots)

    def add_sim(self, modem, slot=1, iccid=FIRST, network=TELEKOM, name="", number=None):
        sim = self.control("AddSim", "(susss)", modem, slot, iccid, network, name)
        if number:
            self.control("SetOwnNumbers", "(sas)", modem, [number])
        return sim

    def name_sims(self, lines):
        folder = self.folder / "config" / "tandem"
        folder.mkdir(parents=True)
        (folder / "sim-names").write_text(lines)

    def test_no_modem(self):
        self.assertEqual(self.sims(), [])

    def test_no_sim(self):
        self.add_modem()
        self.add_modem("/sys/devices/modem1", slots=2)
        self.assertEqual(self.sims(), [])

    def test_one_sim_at_home(self):
        modem = self.add_modem()
        self.add_sim(modem, number="+4915112345678")
        self.control("Register", "(suss)", modem, HOME, TELEKOM, "Telekom.de")
        self.assertEqual(self.sims(), [("Telekom.de", key_of(FIRST), "Telekom.de - +49 1511 2345678")])

    def test_number_is_written_as_in_the_home_region(self):
        modem = self.add_modem()
        self.add_sim(modem, number="015112345678", name="T")
        self.assertEqual(self.sims(), [("T", key_of(FIRST), "T - 01511 2345678")])

    def test_three_sims_in_two_modems_in_slot_order(self):
        second = self.add_modem("/sys/devices/b", slots=1)
        first = self.add_modem("/sys/devices/a", slots=2)
        self.add_sim(second, iccid=THIRD, name="Three")
        self.add_sim(first, slot=2, iccid=SECOND, name="Two")
        self.add_sim(first, slot=1, iccid=FIRST, name="One", number="+4915112345678")
        self.assertEqual(
            self.sims(),
            [
                ("One", key_of(FIRST), "One - +49 1511 2345678"),
                ("Two", key_of(SECOND), "Two - "),
                ("Three", key_of(THIRD), "Three - "),
            ],
        )

    def test_three_modems(self):
        for n, iccid in enumerate((FIRST, SECOND, THIRD)):
            self.add_sim(self.add_modem(f"/sys/devices/{n}"), iccid=iccid, name=f"Carrier {n}")
        self.assertEqual([key for _, key, _ in self.sims()], [key_of(FIRST), key_of(SECOND), key_of(THIRD)])

    def test_key_is_the_same_in_another_slot(self):
        modem = self.add_modem(slots=2)
        self.add_sim(modem, slot=2, iccid=FIRST + "F")
        before = self.sims()
        self.control("RemoveSim", "(su)", modem, 2)
        self.add_sim(modem, slot=1, iccid=FIRST)
        self.assertEqual([key for _, key, _ in self.sims()], [key_of(FIRST)])
        self.assertEqual([key for _, key, _ in before], [key_of(FIRST)])

    def test_roaming_shows_the_carrier_at_home(self):
        modem = self.add_modem()
        self.add_sim(modem)
        self.control("Register", "(suss)", modem, ROAMING, SWISSCOM, "Swisscom")
        [(label, _, detail)] = self.sims()
        self.assertIn("Telekom", label)
        self.assertEqual(detail, f"{label} - ")

    def test_name_of_the_network_at_home_before_that_on_the_card(self):
        modem = self.add_modem()
        self.add_sim(modem, name="Card")
        self.control("Register", "(suss)", modem, HOME, TELEKOM, "Network")
        self.assertEqual(self.sims(), [("Network", key_of(FIRST), "Network - ")])
        self.control("Register", "(suss)", modem, ROAMING, SWISSCOM, "Swisscom")
        self.assertEqual(self.sims(), [("Card", key_of(FIRST), "Card - ")])

    def test_card_that_does_not_tell_its_network(self):
        modem = self.add_modem()
        self.add_sim(modem, network="", number="015112345678")
        self.control("Register", "(suss)", modem, HOME, TELEKOM, "")
        [(label, _, detail)] = self.sims()
        self.assertIn("Telekom", label)
        self.assertEqual(detail, f"{label} - 01511 2345678")

    def test_number_is_written_as_at_home_also_abroad(self):
        modem = self.add_modem()
        self.add_sim(modem, number="015112345678", name="T")
        self.control("Register", "(suss)", modem, ROAMING, SWISSCOM, "Swisscom")
        self.assertEqual(self.sims(), [("T", key_of(FIRST), "T - 01511 2345678")])

    def test_slot_that_is_not_in_use_has_no_number_and_no_network(self):
        modem = self.add_modem(slots=2)
        self.add_sim(modem, 1, FIRST, number="+4915112345678")
        self.add_sim(modem, 2, SECOND, network="99999")
        self.control("Register", "(suss)", modem, HOME, TELEKOM, "Telekom.de")
        self.assertEqual(
            self.sims(),
            [
                ("Telekom.de", key_of(FIRST), "Telekom.de - +49 1511 2345678"),
                ("SIM 2", key_of(SECOND), ""),
            ],
        )

    def test_locked_sim_that_hides_its_number_beside_another(self):
        modem = self.add_modem(slots=2)
        self.add_sim(modem, 1, iccid="", name="Locked")
        self.add_sim(modem, 2, SECOND, name="Open")
        self.assertEqual(self.sims(), [("Open", key_of(SECOND), "Open - ")])

    def test_locked_sim(self):
        modem = self.add_modem()
        self.add_sim(modem, name="Carrier")
        locked = {"UnlockRequired": GLib.Variant("u", 2), "State": GLib.Variant("i", 2)}
        self.modems.mock("UpdateProperties", GLib.Variant("(sa{sv})", (MODEM_SERVICE + ".Modem", locked)), modem)
        self.assertEqual(self.sims(), [("Carrier", key_of(FIRST), "Carrier - ")])

    def test_locked_sim_that_hides_its_number(self):
        self.add_sim(self.add_modem(), iccid="")
        self.assertEqual(self.sims(), [])

    def test_no_name_and_no_known_carrier(self):
        self.add_sim(self.add_modem(), network="99999", number="+4915112345678")
        self.assertEqual(self.sims(), [("SIM 1", key_of(FIRST), "+49 1511 2345678")])

    def test_two_sims_of_one_carrier(self):
        modem = self.add_modem(slots=2)
        self.add_sim(modem, 1, FIRST, name="Same")
        self.add_sim(modem, 2, SECOND, name="Same")
        self.assertEqual(
            self.sims(), [("Same", key_of(FIRST), "Same - "), ("Same", key_of(SECOND), "Same - ")]
        )

    def test_names_of_the_user(self):
        self.name_sims(f"{key_of(FIRST)}=Work\n{SECOND} = Privé\n{THIRD}=\nnonsense\n")
        modem = self.add_modem(slots=3)
        for slot, iccid in enumerate((FIRST, SECOND, THIRD), 1):
            self.add_sim(modem, slot, iccid, name="Carrier")
        self.assertEqual([label for label, _, _ in self.sims()], ["Work", "Privé", "Carrier"])

    def test_name_of_the_user_by_the_number_with_its_filler(self):
        self.name_sims(f"{FIRST}F=Work\n{SECOND}f = Home\n")
        modem = self.add_modem(slots=2)
        self.add_sim(modem, 1, FIRST, name="Carrier")
        self.add_sim(modem, 2, SECOND + "F", name="Carrier")
        self.assertEqual([label for label, _, _ in self.sims()], ["Work", "Home"])

    def test_names_that_are_no_file_are_not_read(self):
        folder = self.folder / "config" / "tandem"
        folder.mkdir(parents=True)
        os.mkfifo(folder / "sim-names")
        self.add_sim(self.add_modem(), name="Carrier")
        code, shown, _ = self.run_tandem("--phone", "linux", "show", "sims", timeout=UNBOUNDED_SECONDS)
        self.assertEqual(code, 0)
        self.assertIn("Carrier", shown)

    def test_control_characters_are_spaces(self):
        modem = self.add_modem(slots=2)
        self.add_sim(modem, 1, FIRST, name="\x1b[31mRed\n\x9b2J  \u2028One\x07", number="\x1b+49151\n12345678\x7f")
        self.add_sim(modem, 2, SECOND, network="99999", name="\x1b\n")
        self.assertEqual(
            self.sims(),
            [
                ("[31mRed 2J One", key_of(FIRST), "[31mRed 2J One - +49 1511 2345678"),
                ("SIM 2", key_of(SECOND), ""),
            ],
        )
        self.control("Register", "(suss)", modem, HOME, TELEKOM, "\x1bNet\twork")
        self.assertEqual(self.sims()[0][0], "Net work")
        self.control("Register", "(suss)", modem, HOME, TELEKOM, "\x1b\n")
        self.assertEqual(self.sims()[0][0], "[31mRed 2J One")

    def test_sims_that_change_while_the_page_is_open(self):
        modem = self.add_modem(slots=2)
        self.add_sim(modem, 1, FIRST, name="One")
        driver = self.on_linux().open("sims")
        second = self.add_sim(modem, 2, SECOND, name="Two")
        self.control("RemoveSim", "(su)", modem, 1)
        while f"SIM+{key_of(FIRST)}" in driver.identifiers():
            pass
        self.assertEqual([key for _, key, _ in self.sims(driver)], [key_of(SECOND)])
        self.modems.mock(
            "UpdateProperties", GLib.Variant("(sa{sv})", (SIM, {"OperatorName": GLib.Variant("s", "Other")})), second
        )
        self.labels_become(driver, ["Other"])
        self.control("RemoveModem", "(s)", modem)
        while driver.rows():
            pass

    def test_modem_that_comes_while_the_page_is_open(self):
        driver = self.on_linux().open("sims")
        self.assertEqual(self.sims(driver), [])
        modem = self.add_modem()
        self.add_sim(modem, name="One", number="+4915112345678")
        self.control("Register", "(suss)", modem, HOME, TELEKOM, "Telekom.de")
        self.labels_become(driver, ["Telekom.de"])
        self.assertEqual(self.sims(driver), [("Telekom.de", key_of(FIRST), "Telekom.de - +49 1511 2345678")])

    def test_first_slot_is_the_default_line(self):
        modem = self.add_modem(slots=2)
        self.add_sim(modem, 1, FIRST, name="One")
        self.add_sim(modem, 2, SECOND, name="Two")
        marks = self.marks_of_a_new_binding()
        self.assertEqual(marks, {key_of(FIRST): 3, key_of(SECOND): 0})


class OfonoTest(SimsTest):
    def setUp(self):
        super().setUp()
        self.ofono = self.mock_template("ofono", OFONO, "/")

    def set_sim(self, path, **properties):
        self.ofono.mock("UpdateProperties", GLib.Variant("(sa{sv})", ("org.ofono.SimManager", properties)), path)

    def iccids(self):
        return [key for _, key, _ in self.sims()]

    def test_one_modem(self):
        [(label, key, detail)] = self.sims()
        self.assertEqual(key, key_of("893581234000000000000"))
        self.assertEqual(detail, f"{label} - 123456789")

    def test_three_modems_in_slot_order(self):
        self.ofono.mock("AddModem", GLib.Variant("(sa{sv})", ("ril_2", {})))
        self.ofono.mock("AddModem", GLib.Variant("(sa{sv})", ("ril_1", {})))
        self.assertEqual(
            self.iccids(), [key_of(f"89358123400000000000{n}") for n in (0, 2, 1)]
        )

    def set_network(self, path, **properties):
        self.ofono.mock(
            "UpdateProperties", GLib.Variant("(sa{sv})", ("org.ofono.NetworkRegistration", properties)), path
        )

    def test_roaming_shows_the_carrier_at_home(self):
        self.set_network("/ril_0", Status=GLib.Variant("s", "registered"), Name=GLib.Variant("s", "Network"))
        self.set_sim(
            "/ril_0", MobileCountryCode=GLib.Variant("s", "262"), MobileNetworkCode=GLib.Variant("s", "01"),
            SubscriberNumbers=GLib.Variant("as", ["015112345678"]),
        )
        self.assertEqual([(label, detail) for label, _, detail in self.sims()], [("Network", "Network - 01511 2345678")])
        self.set_network("/ril_0", Status=GLib.Variant("s", "roaming"))
        [(label, _, detail)] = self.sims()
        self.assertIn("Telekom", label)
        self.assertEqual(detail, f"{label} - 01511 2345678")
        name = ("org.ofono.SimManager", "ServiceProviderName", GLib.Variant("s", "Card"))
        self.ofono.mock("AddProperty", GLib.Variant("(ssv)", name), "/ril_0")
        self.assertEqual([label for label, _, _ in self.sims()], ["Card"])

    def test_locked_sim_that_hides_its_number(self):
        self.set_sim("/ril_0", CardIdentifier=GLib.Variant("s", ""), PinRequired=GLib.Variant("s", "pin"))
        self.assertEqual(self.sims(), [])

    def test_first_sim_is_the_default_line_where_the_system_has_none(self):
        self.ofono.mock("AddModem", GLib.Variant("(sa{sv})", ("ril_1", {})))
        self.assertEqual(
            self.marks_of_a_new_binding(),
            {key_of("893581234000000000000"): 3, key_of("893581234000000000001"): 0},
        )

    def test_control_characters_are_spaces(self):
        self.set_network("/ril_0", Status=GLib.Variant("s", "registered"), Name=GLib.Variant("s", "\x1bNet\nwork"))
        self.set_sim("/ril_0", SubscriberNumbers=GLib.Variant("as", ["\x1b+4915112345678\n"]))
        [(label, _, detail)] = self.sims()
        self.assertEqual((label, detail), ("Net work", "Net work - +49 1511 2345678"))

    def tell(self, path, interface, name, value):
        """The daemon tells of a change as oFono does, which is not how the mock tells of it."""
        arguments = ("PropertyChanged", "sv", [GLib.Variant("s", name), value])
        self.ofono.mock("EmitSignal", GLib.Variant("(sssav)", (interface, *arguments)), path)

    def test_what_changes_while_the_page_is_open(self):
        driver = self.on_linux().open("sims")
        network = "org.ofono.NetworkRegistration"
        self.assertEqual(self.sims(driver)[0][0], "fake.tel")
        self.tell("/ril_0", network, "Name", GLib.Variant("s", "Other"))
        self.labels_become(driver, ["Other"])
        self.tell("/ril_0", network, "Status", GLib.Variant("s", "roaming"))
        self.tell("/ril_0", "org.ofono.SimManager", "ServiceProviderName", GLib.Variant("s", "Card"))
        self.labels_become(driver, ["Card"])
        self.ofono.mock("AddModem", GLib.Variant("(sa{sv})", ("ril_1", {})))
        self.labels_become(driver, ["Card", "fake.tel"])
        self.tell("/ril_0", "org.ofono.Modem", "Interfaces", GLib.Variant("as", [network]))
        self.labels_become(driver, ["fake.tel"])
        # It is asked again, as there may be another card by then.
        self.tell("/ril_0", "org.ofono.Modem", "Interfaces", GLib.Variant("as", [network, "org.ofono.SimManager"]))
        self.labels_become(driver, ["AT&T", "fake.tel"])
        removed = GLib.Variant("(sssav)", ("org.ofono.Manager", "ModemRemoved", "o", [GLib.Variant("o", "/ril_1")]))
        self.ofono.mock("EmitSignal", removed)
        self.labels_become(driver, ["AT&T"])

    def test_absent_sim(self):
        self.set_sim("/ril_0", Present=GLib.Variant("b", False))
        self.assertEqual(self.sims(), [])

    def test_default_line_of_the_system(self):
        self.ofono.mock("AddModem", GLib.Variant("(sa{sv})", ("ril_1", {})))
        self.ofono.answer("org.nemomobile.ofono.ModemManager", "GetDefaultVoiceSim", "s", "ret = '310150000000001'")
        marks = self.marks_of_a_new_binding()
        self.assertEqual(
            marks, {key_of("893581234000000000000"): 0, key_of("893581234000000000001"): 3}
        )


if __name__ == "__main__":
    unittest.main()
