"""The devices of BlueZ on the Bluetooth page."""

import shutil
import unittest

from gi.repository import GLib

from machine import MachineTest
from support import RELOAD

BLUEZ = "org.bluez"
BLUEZ_MOCK = "org.bluez.Mock"
DEVICE = "org.bluez.Device1"
HEADSET_CLASS = 0x240404


class BluetoothTest(MachineTest):
    def setUp(self):
        super().setUp()
        self.bluez = self.mock_template("bluez5", BLUEZ, "/")

    def add_adapter(self, name):
        self.bluez.call(BLUEZ_MOCK, "AddAdapter", GLib.Variant("(ss)", (name, name)))

    def add_device(self, adapter, address, name, paired=True):
        arguments = GLib.Variant("(sss)", (adapter, address, name))
        path = self.bluez.call(BLUEZ_MOCK, "AddDevice", arguments)
        if paired:
            pair = GLib.Variant("(ssi)", (adapter, address, HEADSET_CLASS))
            self.bluez.call(BLUEZ_MOCK, "PairDevice", pair)
        return path

    def update(self, path, **properties):
        self.bluez.mock("UpdateProperties", GLib.Variant("(sa{sv})", (DEVICE, properties)), path)

    def devices(self, driver=None):
        driver = driver or self.on_linux().open("bluetooth")
        return [(row["name"], row["identifier"]) for row in driver.rows() if row["cell"] == "PSSwitchCell"]

    def test_no_adapter(self):
        self.assertEqual(self.devices(), [])

    def test_paired_devices_alone_by_name(self):
        self.add_adapter("hci0")
        self.add_device("hci0", "11:22:33:44:55:03", "watch")
        self.add_device("hci0", "11:22:33:44:55:02", "Car")
        self.add_device("hci0", "11:22:33:44:55:01", "Stranger", paired=False)
        self.assertEqual(self.devices(), [("Car", "11:22:33:44:55:02"), ("watch", "11:22:33:44:55:03")])

    def test_name_else_alias_else_address(self):
        self.add_adapter("hci0")
        full = self.add_device("hci0", "11:22:33:44:55:01", "C")
        self.update(full, Name=GLib.Variant("s", "Own"), Alias=GLib.Variant("s", "Mine"))
        alias = self.add_device("hci0", "11:22:33:44:55:02", "B")
        self.update(alias, Name=GLib.Variant("s", ""), Alias=GLib.Variant("s", "Mine"))
        bare = self.add_device("hci0", "11:22:33:44:55:03", "A")
        self.update(bare, Name=GLib.Variant("s", ""), Alias=GLib.Variant("s", " "))
        self.assertEqual(
            self.devices(),
            [("11:22:33:44:55:03",) * 2, ("Mine", "11:22:33:44:55:02"), ("Own", "11:22:33:44:55:01")],
        )

    def test_control_characters_are_spaces(self):
        self.add_adapter("hci0")
        self.add_device("hci0", "11:22:33:44:55:01", "\x1b[2JNew\r\nline\u2029\x07")
        blank = self.add_device("hci0", "11:22:33:44:55:02", "B")
        self.update(blank, Name=GLib.Variant("s", "\x1b\n"), Alias=GLib.Variant("s", "Mine"))
        self.assertEqual(self.devices(), [("[2JNew line", "11:22:33:44:55:01"), ("Mine", "11:22:33:44:55:02")])

    def test_address_with_more_after_it_is_none(self):
        self.add_adapter("hci0")
        for number, end in enumerate(("\n", " ", "\n\n", ":00"), 1):
            path = self.add_device("hci0", f"11:22:33:44:55:0{number}", "A")
            self.update(path, Address=GLib.Variant("s", f"11:22:33:44:55:0{number}{end}"))
        self.assertEqual(self.devices(), [])

    def test_three_adapters_and_a_device_of_two(self):
        for adapter in ("hci0", "hci1", "hci2"):
            self.add_adapter(adapter)
        self.add_device("hci2", "11:22:33:44:55:01", "A")
        self.add_device("hci1", "11:22:33:44:55:02", "B")
        self.add_device("hci0", "11:22:33:44:55:03", "C")
        self.add_device("hci2", "11:22:33:44:55:03", "C")
        self.assertEqual(
            self.devices(), [(name, f"11:22:33:44:55:0{n}") for n, name in enumerate("ABC", 1)]
        )

    def test_two_hundred_devices(self):
        self.add_adapter("hci0")
        for n in range(200):
            self.add_device("hci0", f"11:22:33:44:55:{n:02X}", f"Device {n:03}")
        self.assertEqual(self.devices(), [(f"Device {n:03}", f"11:22:33:44:55:{n:02X}") for n in range(200)])

    def test_devices_that_come_and_go_while_the_page_is_open(self):
        self.add_adapter("hci0")
        self.add_device("hci0", "11:22:33:44:55:01", "A")
        gone = self.add_device("hci0", "11:22:33:44:55:02", "B")
        driver = self.on_linux().open("bluetooth")
        self.assertEqual(self.devices(driver), [("A", "11:22:33:44:55:01"), ("B", "11:22:33:44:55:02")])
        self.assertEqual(driver.events("rows"), [])
        self.update(gone, Paired=GLib.Variant("b", False))
        # The rows are built anew in the first turn that knows of the change.
        self.assertEqual(self.next_events(driver), [RELOAD])
        self.assertEqual(self.devices(driver), [("A", "11:22:33:44:55:01")])
        self.bluez.call(BLUEZ_MOCK, "AddAdapter", GLib.Variant("(ss)", ("hci1", "hci1")))
        self.update(gone, RSSI=GLib.Variant("n", -50), Paired=GLib.Variant("b", True), Name=GLib.Variant("s", "0"))
        self.assertEqual(self.next_events(driver), [RELOAD])
        self.assertEqual(self.devices(driver), [("0", "11:22:33:44:55:02"), ("A", "11:22:33:44:55:01")])

    def next_events(self, driver):
        """What the first turn in which anything happens comes to."""
        while not (events := driver.events("rows")):
            pass
        return events

    def test_what_no_row_shows_rebuilds_none(self):
        self.add_adapter("hci0")
        device = self.add_device("hci0", "11:22:33:44:55:01", "A")
        driver = self.on_linux().open("bluetooth")
        self.update(device, Connected=GLib.Variant("b", True))
        self.add_device("hci0", "11:22:33:44:55:02", "Stranger", paired=False)
        self.update(device, Name=GLib.Variant("s", "B"))
        self.assertEqual(self.next_events(driver), [RELOAD])
        self.assertEqual(self.devices(driver), [("B", "11:22:33:44:55:01")])
        self.assertEqual(driver.events("rows"), [])

    def test_other_pages_are_not_rebuilt(self):
        self.add_adapter("hci0")
        device = self.add_device("hci0", "11:22:33:44:55:01", "A")
        driver = self.on_linux().open("bluetooth")
        driver.ask("back")
        self.update(device, Name=GLib.Variant("s", "B"))
        driver.open("calls")
        # By then it has long heard of the change.
        for _ in range(5):
            self.assertEqual(driver.events("rows"), [])
        driver.ask("back")
        driver.open("bluetooth")
        self.assertEqual(self.devices(driver), [("B", "11:22:33:44:55:01")])

    @unittest.skipUnless(shutil.which("xdg-dbus-proxy"), "xdg-dbus-proxy is not installed")
    def test_in_a_sandbox(self):
        self.add_adapter("hci0")
        device = self.add_device("hci0", "11:22:33:44:55:01", "A")
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self.start_bus_proxy(self.system, "--talk=org.bluez")
        driver = self.on_linux().open("bluetooth")
        self.assertEqual(self.devices(driver), [("A", "11:22:33:44:55:01")])
        self.update(device, Name=GLib.Variant("s", "B"))
        self.assertEqual(self.next_events(driver), [RELOAD])
        self.assertEqual(self.devices(driver), [("B", "11:22:33:44:55:01")])

    def test_daemon_that_goes_and_comes_back(self):
        self.add_adapter("hci0")
        self.add_device("hci0", "11:22:33:44:55:01", "A")
        driver = self.on_linux().open("bluetooth")
        self.bluez.stop()
        self.system.wait_for(BLUEZ, present=False)
        self.assertEqual(self.next_events(driver), [RELOAD])
        self.assertEqual(self.devices(driver), [])
        self.bluez = self.mock_template("bluez5", BLUEZ, "/")
        self.add_adapter("hci0")
        self.add_device("hci0", "11:22:33:44:55:02", "B")
        while self.devices(driver) != [("B", "11:22:33:44:55:02")]:
            pass


if __name__ == "__main__":
    unittest.main()
