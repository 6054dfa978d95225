"""Mail, links and the appearance, by way of the desktop's portals."""

import os
import select
import shutil
import time
import unittest

from gi.repository import GLib

import support
from machine import PATIENCE_MS, PORTAL, PORTAL_PATH, MachineTest

SETTINGS = "org.freedesktop.portal.Settings"
CONTROL = "com.vexil.Mock"
NO_MAIL_PROGRAM = support.error("No mail program could be reached.")
PRODUCTS = "https://vexil.example/products?from=Pairo"

LOG = (
    "2026-11-21 09:25:55 +0000 Called +49 151 1234567 from 11:22:33:44:55:66\n"
    "2026-11-21 09:25:56 +0000 SIM+6D1F7A52-0C4E-5B37-9A63-2E8F41D07B19 (jo@mail.example)\n"
)
MASKED = (
    "2026-11-21 09:25:55 +0000 Called [number 1] from [address 1]\n"
    "2026-11-21 09:25:56 +0000 SIM+[SIM 1] ([address 2])\n"
)


class MailTest(MachineTest):
    def setUp(self):
        super().setUp()
        self.write_settings({"TandemLoggingEnabled": True})
        self.log = self.path(support.LOG_FILE_PATH)
        self.log.parent.mkdir(parents=True)
        self.runs = self.folder / "runs"

    def mails(self):
        return self.portal_record("mails")

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
        self.assertEqual(self.mails(), [])
        return sheet["message"]

    def test_masked_log_is_shown_and_then_sent_once(self):
        self.start_portal()
        driver = self.on_linux().open("misc")
        self.assertTrue(self.review(driver).endswith("\n\n" + MASKED))
        driver.ask("choose", title="Send")
        self.assertEqual(self.mails(), [self.mail_with(MASKED)])
        self.assertEqual(self.log.read_text(), LOG)

    def test_unmasked_log_when_the_user_asks_for_it(self):
        self.start_portal()
        driver = self.on_linux().open("misc")
        self.review(driver)
        shown = [e for e in driver.events("choose", title="Show Unmasked") if e["event"] == "sheet"]
        self.assertTrue(shown[0]["message"].endswith("\n\n" + LOG))
        driver.ask("choose", title="Send")
        self.assertEqual(self.mails(), [self.mail_with(LOG)])

    def test_cancelled_log_is_not_sent(self):
        self.start_portal()
        driver = self.on_linux().open("misc")
        self.review(driver)
        driver.ask("choose", title="Cancel")
        self.assertEqual(self.mails(), [])

    def send(self, driver):
        """What happened when the user has seen the log and wants it sent, which waits for nobody."""
        self.review(driver)
        with self.bounded():
            events = driver.events("choose", title="Send")
        return [event for event in events if event["event"] in ("error", "sheet")]

    def send_in_vain(self):
        """The user is told at once or, on a slow machine, a moment later."""
        driver = self.on_linux().open("misc")
        if self.send(driver) != [NO_MAIL_PROGRAM]:
            self.wait_for_error(driver)

    def wait_for_error(self, driver):
        """Each question is a turn, in which what has come meanwhile is taken in."""
        deadline = time.monotonic() + PATIENCE_MS / 1000
        while NO_MAIL_PROGRAM not in driver.events("rows"):
            self.assertLess(time.monotonic(), deadline)

    def provide_mail_program(self):
        """The pipe into which it writes its words."""
        programs = self.folder / "programs"
        programs.mkdir()
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        program = programs / "xdg-email"
        program.write_text(
            f"#!/bin/sh\necho run >>'{self.runs}'\nfor word; do printf '%s\\n' \"$word\"; done > '{pipe}'\n"
        )
        program.chmod(0o755)
        self.environment["PATH"] = f"{programs}:{self.environment['PATH']}"
        return pipe

    def read_pipe(self, pipe):
        """What a program writes into it; a failure when none does."""
        with open(os.open(pipe, os.O_RDONLY | os.O_NONBLOCK), encoding="utf-8") as file:
            writers = select.poll()
            writers.register(file, select.POLLIN)
            self.assertTrue(writers.poll(PATIENCE_MS), "nobody writes")
            os.set_blocking(file.fileno(), True)
            return file.read()

    def check_mail_program_ran_once(self, pipe):
        words = self.read_pipe(pipe).splitlines()
        self.assertEqual(words[-1], "support@vexil.example")
        self.assertEqual(self.runs.read_text(), "run\n")

    def test_mail_program_where_there_is_no_portal(self):
        pipe = self.provide_mail_program()
        driver = self.on_linux().open("misc")
        self.review(driver)
        driver.ask("choose", title="Send")
        words = self.read_pipe(pipe).splitlines()
        attachment = words[words.index("--attach") + 1]
        self.assertEqual(
            words,
            ["--utf8", "--subject", "Pairo log", "--attach", attachment, "support@vexil.example"],
        )
        with open(attachment, encoding="utf-8") as file:
            self.assertEqual(file.read(), MASKED)

    def test_mail_program_that_fails(self):
        self.provide_mail_program()
        (self.folder / "programs" / "xdg-email").write_text("#!/bin/sh\nexit 3\n")
        self.send_in_vain()

    def test_the_mail_program_of_this_machine(self):
        self.environment["PATH"] = os.environ["PATH"]
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        # What it opens a mail with where it knows no desktop.
        mailer = self.folder / "mailer"
        mailer.write_text(f"#!/bin/sh\nprintf '%s' \"$1\" >'{pipe}'\n")
        mailer.chmod(0o755)
        self.environment.update(MAILER=str(mailer), BROWSER=str(mailer), XDG_CURRENT_DESKTOP="", DESKTOP_SESSION="")
        if not shutil.which("xdg-email"):
            self.skipTest("xdg-email is not installed")
        self.assertEqual(self.send(self.on_linux().open("misc")), [])
        address, _, query = self.read_pipe(pipe).partition("?")
        self.assertEqual(address, "mailto:support@vexil.example")
        self.assertIn("subject=Pairo%20log", query)

    def test_neither_portal_nor_mail_program(self):
        self.environment["PATH"] = str(self.folder / "packages")
        self.send_in_vain()

    def test_portal_that_refuses_or_fails_at_once(self):
        pipe = self.provide_mail_program()
        for response, mails in (("error", []), (2, [self.mail_with(MASKED)])):
            with self.subTest(response=response):
                portal = self.start_portal(response)
                self.assertEqual(self.send(self.on_linux().open("misc")), [])
                self.check_mail_program_ran_once(pipe)
                self.assertEqual(self.mails(), mails)
                self.runs.unlink()
                portal.stop()

    def test_portal_that_fails_later(self):
        pipe = self.provide_mail_program()
        portal = self.start_portal(None)
        self.assertEqual(self.send(self.on_linux().open("misc")), [])
        portal.call(CONTROL, "Respond", GLib.Variant("(u)", (2,)))
        self.check_mail_program_ran_once(pipe)

    def test_portal_that_fails_later_and_no_mail_program(self):
        self.environment["PATH"] = str(self.folder / "packages")
        portal = self.start_portal(None)
        driver = self.on_linux().open("misc")
        self.assertEqual(self.send(driver), [])
        portal.call(CONTROL, "Respond", GLib.Variant("(u)", (2,)))
        self.wait_for_error(driver)

    def send_to_a_portal_that_will_fail(self):
        """The driver, and what makes the portal fail."""
        self.environment["PATH"] = str(self.folder / "packages")
        portal = self.start_portal(None)
        driver = self.on_linux().open("misc")
        self.assertEqual(self.send(driver), [])
        return driver, lambda: portal.call(CONTROL, "Respond", GLib.Variant("(u)", (2,)))

    def test_portal_that_fails_after_the_page_is_left(self):
        driver, fail = self.send_to_a_portal_that_will_fail()
        driver.ask("back")
        fail()
        self.wait_for_error(driver)
        self.assertIn("push", [event["event"] for event in driver.events("open", page="misc")])

    def test_portal_that_fails_while_a_sheet_is_up(self):
        driver, fail = self.send_to_a_portal_that_will_fail()
        self.assertIn("sheet", [event["event"] for event in driver.events("tap", row="EmailLog")])
        fail()
        self.wait_for_error(driver)
        driver.ask("choose", title="Cancel")
        driver.ask("back")

    def test_log_that_grows_after_it_was_shown(self):
        self.start_portal()
        driver = self.on_linux().open("misc")
        self.review(driver)
        driver.ask("choose", title="Show Unmasked")
        with open(self.log, "a", encoding="utf-8") as log:
            log.write("unseen\n")
        driver.ask("choose", title="Send")
        self.assertEqual(self.mails(), [self.mail_with(LOG)])

    def test_user_who_cancels_at_the_portal(self):
        self.provide_mail_program()
        self.start_portal(1)
        driver = self.on_linux().open("misc")
        self.assertEqual(self.send(driver), [])
        driver.close()
        self.assertFalse(self.runs.exists())

    def test_user_who_cancels_at_the_portal_later(self):
        self.provide_mail_program()
        portal = self.start_portal(None)
        driver = self.on_linux().open("misc")
        self.assertEqual(self.send(driver), [])
        portal.call(CONTROL, "Respond", GLib.Variant("(u)", (1,)))
        driver.close()
        self.assertFalse(self.runs.exists())

    def test_portal_that_hangs_gets_no_second_mail(self):
        self.provide_mail_program()
        portal = self.start_portal()
        driver = self.on_linux().open("misc")
        portal.hang()
        self.assertEqual(self.send(driver), [])
        portal.stop()
        self.wait_for_error(driver)
        self.assertFalse(self.runs.exists())

    def test_portal_that_dies_while_the_user_decides(self):
        self.provide_mail_program()
        portal = self.start_portal(None)
        driver = self.on_linux().open("misc")
        self.assertEqual(self.send(driver), [])
        portal.stop()
        self.wait_for_error(driver)
        self.assertFalse(self.runs.exists())

    def test_portal_that_takes_long_to_start(self):
        self.provide_mail_program()
        start_portal = self.offer_portal_that_waits()
        driver = self.on_linux().open("misc")
        self.assertEqual(self.send(driver), [])
        start_portal()
        # The end of the session waits for it.
        driver.close()
        self.assertEqual(self.mails(), [self.mail_with(MASKED)])
        self.assertFalse(self.runs.exists())

    def test_portal_that_cannot_be_started(self):
        pipe = self.provide_mail_program()
        self.session.offer(PORTAL, "/bin/false")
        self.assertEqual(self.send(self.on_linux().open("misc")), [])
        self.check_mail_program_ran_once(pipe)


class LinksTest(MachineTest):
    def links(self):
        return self.portal_record("links")

    def test_products_page(self):
        self.start_portal()
        driver = self.on_linux()
        driver.ask("tap", row="VexilProducts")
        driver.close()
        self.assertEqual(self.links(), [PRODUCTS])

    def test_portal_that_takes_long_to_start(self):
        start_portal = self.offer_portal_that_waits()
        driver = self.on_linux()
        with self.bounded():
            driver.ask("tap", row="VexilProducts")
        start_portal()
        driver.close()
        self.assertEqual(self.links(), [PRODUCTS])

    def test_no_portal(self):
        driver = self.on_linux()
        self.assertIn("push", [event["event"] for event in driver.events("tap", row="VexilProducts")])


class AppearanceTest(MachineTest):
    def start_settings(self):
        return self.mock_daemon(self.session, PORTAL, PORTAL_PATH, SETTINGS)

    def method(self, portal, interface, method, arguments, reply, code):
        portal.mock("AddMethod", GLib.Variant("(sssss)", (interface, method, arguments, reply, code)))

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
        portal = self.start_settings()
        for scheme in (0, 2, 7):
            self.offer(portal, scheme)
            self.assertEqual(self.colour(self.on_linux()), support.ACCENT)

    def test_dark(self):
        self.offer(self.start_settings(), 1)
        self.assertEqual(self.colour(self.on_linux()), support.WHITE)

    def test_change_while_a_page_is_open(self):
        portal = self.start_settings()
        self.offer(portal, 2)
        driver = self.on_linux()
        self.assertEqual(self.colour(driver), support.ACCENT)
        self.change(portal, 1)
        self.wait_for_colour(driver, support.WHITE)
        self.change(portal, 0)
        self.wait_for_colour(driver, support.ACCENT)

    def test_user_of_the_host_who_wants_it_otherwise(self):
        portal = self.start_settings()
        self.offer(portal, 1)
        driver = self.on_linux()
        driver.ask("appearance", dark=False)
        self.assertEqual(self.colour(driver), support.ACCENT)
        self.change(portal, 0)
        driver.ask("appearance", dark=True)
        self.assertEqual(self.colour(driver), support.WHITE)

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
