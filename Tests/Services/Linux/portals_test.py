"""Mail, links and the appearance, by way of the desktop's portals."""

import json
import os
import time
import unittest

from gi.repository import GLib

import support
from machine import PATIENCE_MS, MachineTest

PORTAL = "org.freedesktop.portal.Desktop"
PORTAL_PATH = "/org/freedesktop/portal/desktop"
EMAIL = "org.freedesktop.portal.Email"
LINKS = "org.freedesktop.portal.OpenURI"
SETTINGS = "org.freedesktop.portal.Settings"
REQUEST = "ret = dbus.ObjectPath('/org/freedesktop/portal/desktop/request/1')"

LOG = (
    "2026-11-21 09:25:55 +0000 Called +49 151 1234567 from 11:22:33:44:55:66\n"
    "2026-11-21 09:25:56 +0000 SIM+6D1F7A52-0C4E-5B37-9A63-2E8F41D07B19 (jo@mail.example)\n"
)
MASKED = (
    "2026-11-21 09:25:55 +0000 Called [number 1] from [address 1]\n"
    "2026-11-21 09:25:56 +0000 SIM+[SIM 1] ([address 2])\n"
)


class PortalTest(MachineTest):
    def start_portal(self):
        return self.mock_daemon(self.session, PORTAL, PORTAL_PATH, SETTINGS)

    def method(self, portal, interface, method, arguments, reply, code):
        portal.mock("AddMethod", GLib.Variant("(sssss)", (interface, method, arguments, reply, code)))


class MailTest(PortalTest):
    def setUp(self):
        super().setUp()
        self.write_settings({"TandemLoggingEnabled": True})
        self.log = self.path(support.LOG_FILE_PATH)
        self.log.parent.mkdir(parents=True)
        self.mails_file = self.folder / "mails"

    def start_mail_portal(self):
        code = (
            "import json, os\n"
            "options = args[1]\n"
            "files = [f.take() for f in options['attachment_fds']]\n"
            f"out = open({str(self.mails_file)!r}, 'a')\n"
            "out.write(json.dumps({'parent': str(args[0]), 'address': str(options['address']),"
            " 'subject': str(options['subject']), 'body': str(options['body']),"
            " 'attachments': [os.read(f, 1 << 20).decode() for f in files]}) + '\\n')\n"
            "out.close()\n" + REQUEST
        )
        portal = self.start_portal()
        self.method(portal, EMAIL, "ComposeEmail", "sa{sv}", "o", code)
        return portal

    def mails(self):
        return [json.loads(line) for line in self.mails_file.read_text().splitlines()]

    def mail_with(self, text):
        return {
            "parent": "",
            "address": "support@vexil.example",
            "subject": "Pairo log",
            "body": "",
            "attachments": [text],
        }

    def review(self, driver):
        """Taps the row; the text that the user is shown."""
        # Now, because the session has written lines of its own.
        self.log.write_text(LOG)
        [sheet] = [event for event in driver.events("tap", row="EmailLog") if event["event"] == "sheet"]
        self.assertFalse(self.mails_file.exists())
        return sheet["message"]

    def test_masked_log_is_shown_and_then_sent_once(self):
        self.start_mail_portal()
        driver = self.on_linux().open("misc")
        self.assertTrue(self.review(driver).endswith("\n\n" + MASKED))
        driver.ask("choose", title="Send")
        self.assertEqual(self.mails(), [self.mail_with(MASKED)])
        self.assertEqual(self.log.read_text(), LOG)

    def test_unmasked_log_when_the_user_asks_for_it(self):
        self.start_mail_portal()
        driver = self.on_linux().open("misc")
        self.review(driver)
        shown = [e for e in driver.events("choose", title="Show Unmasked") if e["event"] == "sheet"]
        self.assertTrue(shown[0]["message"].endswith("\n\n" + LOG))
        driver.ask("choose", title="Send")
        self.assertEqual(self.mails(), [self.mail_with(LOG)])

    def test_cancelled_log_is_not_sent(self):
        self.start_mail_portal()
        driver = self.on_linux().open("misc")
        self.review(driver)
        driver.ask("choose", title="Cancel")
        self.assertFalse(self.mails_file.exists())

    def provide_mail_program(self):
        programs = self.folder / "programs"
        programs.mkdir()
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        program = programs / "xdg-email"
        program.write_text(f"#!/bin/sh\nfor word; do printf '%s\\n' \"$word\"; done > '{pipe}'\n")
        program.chmod(0o755)
        self.environment["PATH"] = f"{programs}:{self.environment['PATH']}"
        return pipe

    def test_mail_program_where_there_is_no_portal(self):
        pipe = self.provide_mail_program()
        driver = self.on_linux().open("misc")
        self.review(driver)
        driver.ask("choose", title="Send")
        words = pipe.read_text().splitlines()
        attachment = words[words.index("--attach") + 1]
        self.assertEqual(
            words,
            ["--utf8", "--subject", "Pairo log", "--body", "", "--attach", attachment, "support@vexil.example"],
        )
        with open(attachment, encoding="utf-8") as file:
            self.assertEqual(file.read(), MASKED)

    def test_neither_portal_nor_mail_program(self):
        self.environment["PATH"] = str(self.folder / "packages")
        driver = self.on_linux().open("misc")
        self.review(driver)
        events = driver.events("choose", title="Send")
        self.assertIn(support.error("No mail program could be reached."), events)

    def test_portal_that_hangs_gets_no_second_mail(self):
        self.provide_mail_program()
        portal = self.start_mail_portal()
        driver = self.on_linux().open("misc")
        self.review(driver)
        portal.hang()
        events = driver.events("choose", title="Send")
        self.assertIn(support.error("No mail program could be reached."), events)


class LinksTest(PortalTest):
    def test_products_page(self):
        links = self.folder / "links"
        portal = self.start_portal()
        code = f"open({str(links)!r}, 'a').write(str(args[1]) + '\\n')\n" + REQUEST
        self.method(portal, LINKS, "OpenURI", "ssa{sv}", "o", code)
        self.on_linux().ask("tap", row="VexilProducts")
        self.assertEqual(links.read_text(), "https://vexil.example/products?from=Pairo\n")

    def test_no_portal(self):
        driver = self.on_linux()
        self.assertIn("push", [event["event"] for event in driver.events("tap", row="VexilProducts")])


class AppearanceTest(PortalTest):
    def offer(self, portal, scheme):
        code = f"ret = {{'org.freedesktop.appearance': {{'color-scheme': dbus.UInt32({scheme})}}}}"
        self.method(portal, SETTINGS, "ReadAll", "as", "a{sa{sv}}", code)

    def change(self, portal, scheme):
        arguments = [
            GLib.Variant("s", "org.freedesktop.appearance"),
            GLib.Variant("s", "color-scheme"),
            GLib.Variant("v", GLib.Variant("u", scheme)),
        ]
        portal.mock("EmitSignal", GLib.Variant("(sssav)", (SETTINGS, "SettingChanged", "ssv", arguments)))

    def colour(self, driver):
        return driver.ask("cell", row="Calls")["cell"]["textLabel"]["textColor"]

    def wait_for_colour(self, driver, colour):
        """Each question is a turn, in which what has come meanwhile is taken in."""
        deadline = time.monotonic() + PATIENCE_MS / 1000
        while self.colour(driver) != colour:
            self.assertLess(time.monotonic(), deadline)

    def test_light_without_a_portal(self):
        self.assertEqual(self.colour(self.on_linux()), support.ACCENT)

    def test_no_preference_and_light(self):
        portal = self.start_portal()
        for scheme in (0, 2, 7):
            self.offer(portal, scheme)
            self.assertEqual(self.colour(self.on_linux()), support.ACCENT)

    def test_dark(self):
        self.offer(self.start_portal(), 1)
        self.assertEqual(self.colour(self.on_linux()), support.WHITE)

    def test_change_while_a_page_is_open(self):
        portal = self.start_portal()
        self.offer(portal, 2)
        driver = self.on_linux()
        self.assertEqual(self.colour(driver), support.ACCENT)
        self.change(portal, 1)
        self.wait_for_colour(driver, support.WHITE)
        self.change(portal, 0)
        self.wait_for_colour(driver, support.ACCENT)

    def test_portal_that_comes_later(self):
        driver = self.on_linux()
        self.assertEqual(self.colour(driver), support.ACCENT)
        first = self.mock_daemon(self.session, "org.example.First", PORTAL_PATH, SETTINGS)
        self.offer(first, 1)
        # The name is taken by a daemon that answers already.
        claim = f"self.portal_name = dbus.service.BusName('{PORTAL}', self.connection)"
        self.method(first, SETTINGS, "Claim", "", "", claim)
        first.call(SETTINGS, "Claim")
        self.wait_for_colour(driver, support.WHITE)


if __name__ == "__main__":
    unittest.main()
