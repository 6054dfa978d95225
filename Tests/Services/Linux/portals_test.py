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
NO_BROWSER = support.error("No browser could be reached.")
PRODUCTS = "https://vexil.example/products?from=Pairo"

LOG = (
    "2026-11-21 09:25:55 +0000 Called +49 151 1234567 from 11:22:33:44:55:66\n"
    "2026-11-21 09:25:56 +0000 SIM+6D1F7A52-0C4E-5B37-9A63-2E8F41D07B19 (jo@mail.example)\n"
)
MASKED = (
    "2026-11-21 09:25:55 +0000 Called [number 1] from [address 1]\n"
    "2026-11-21 09:25:56 +0000 SIM+[SIM 1] ([address 2])\n"
)


class PortalTest(MachineTest):
    def wait_in_turns(self, driver, is_so):
        """Each question is a turn, in which the session takes in what has come meanwhile, though it is refused on a page
        without rows."""
        deadline = time.monotonic() + PATIENCE_MS / 1000
        while not is_so(driver.request("rows")["events"]):
            self.assertLess(time.monotonic(), deadline)

    def wait_for_record(self, driver, name):
        """Until the portal has been handed a mail or a link."""
        self.wait_in_turns(driver, lambda _: self.portal_record(name))

    def read_pipe(self, pipe):
        """What a program writes into it; a failure when none does."""
        with open(os.open(pipe, os.O_RDONLY | os.O_NONBLOCK), encoding="utf-8") as file:
            writers = select.poll()
            writers.register(file, select.POLLIN)
            self.assertTrue(writers.poll(PATIENCE_MS), "nobody writes")
            os.set_blocking(file.fileno(), True)
            return file.read()

    def provide_program(self, name, script):
        programs = self.folder / "programs"
        programs.mkdir(exist_ok=True)
        program = programs / name
        program.write_text(f"#!/bin/sh\n{script}\n")
        program.chmod(0o755)
        if str(programs) not in self.environment["PATH"].split(":"):
            self.environment["PATH"] = f"{programs}:{self.environment['PATH']}"
        return program


class MailTest(PortalTest):
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
        driver.close()
        self.assertEqual(self.mails(), [self.mail_with(MASKED)])
        self.assertEqual(self.log.read_text(), LOG)

    def test_unmasked_log_when_the_user_asks_for_it(self):
        self.start_portal()
        driver = self.on_linux().open("misc")
        self.review(driver)
        shown = [e for e in driver.events("choose", title="Show Unmasked") if e["event"] == "sheet"]
        self.assertTrue(shown[0]["message"].endswith("\n\n" + LOG))
        driver.ask("choose", title="Send")
        driver.close()
        self.assertEqual(self.mails(), [self.mail_with(LOG)])

    def test_cancelled_log_is_not_sent(self):
        self.start_portal()
        driver = self.on_linux().open("misc")
        self.review(driver)
        driver.ask("choose", title="Cancel")
        driver.close()
        self.assertEqual(self.mails(), [])

    def send(self, driver):
        """What happened when the user has seen the log and wants it sent, which waits for nobody."""
        self.review(driver)
        with self.bounded():
            events = driver.events("choose", title="Send")
        return [event for event in events if event["event"] in ("error", "sheet")]

    def send_in_vain(self):
        driver = self.on_linux().open("misc")
        self.assertEqual(self.send(driver), [])
        self.wait_for_error(driver)

    def send_to_portal(self, driver):
        """The portal has got the mail."""
        self.assertEqual(self.send(driver), [])
        self.wait_for_record(driver, "mails")

    def wait_for_error(self, driver):
        self.wait_in_turns(driver, lambda events: NO_MAIL_PROGRAM in events)

    def provide_mail_program(self):
        """The pipe into which it writes its words."""
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        self.provide_program("xdg-email", f"echo run >>'{self.runs}'\nfor word; do printf '%s\\n' \"$word\"; done > '{pipe}'")
        return pipe

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
        self.provide_program("xdg-email", "exit 3")
        self.send_in_vain()

    def test_mail_program_in_a_folder_that_is_not_absolute(self):
        self.provide_program("xdg-email", f"echo run >>'{self.runs}'")
        self.environment["PATH"] = f"{os.path.relpath(self.folder / 'programs')}::{self.folder / 'packages'}"
        self.send_in_vain()
        self.assertFalse(self.runs.exists())

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
        self.send_to_portal(self.on_linux().open("misc"))
        portal.call(CONTROL, "Respond", GLib.Variant("(u)", (2,)))
        self.check_mail_program_ran_once(pipe)

    def test_portal_that_fails_later_and_no_mail_program(self):
        driver, fail = self.send_to_a_portal_that_will_fail()
        fail()
        self.wait_for_error(driver)

    def send_to_a_portal_that_will_fail(self):
        """The driver, and what makes the portal fail."""
        self.environment["PATH"] = str(self.folder / "packages")
        portal = self.start_portal(None)
        driver = self.on_linux().open("misc")
        self.send_to_portal(driver)
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
        driver.close()
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
        self.send_to_portal(driver)
        portal.call(CONTROL, "Respond", GLib.Variant("(u)", (1,)))
        driver.close()
        self.assertFalse(self.runs.exists())

    def test_portal_that_hangs_gets_no_second_mail(self):
        self.provide_mail_program()
        portal = self.start_portal()
        driver = self.on_linux().open("misc")
        portal.hang()
        wait_for_call = self.session.expect_call("ComposeEmail", "")
        self.assertEqual(self.send(driver), [])
        wait_for_call()
        portal.stop()
        self.wait_for_error(driver)
        self.assertFalse(self.runs.exists())

    def test_portal_that_dies_while_the_user_decides(self):
        self.provide_mail_program()
        portal = self.start_portal(None)
        driver = self.on_linux().open("misc")
        self.send_to_portal(driver)
        portal.stop()
        self.wait_for_error(driver)
        self.assertFalse(self.runs.exists())

    def test_bus_that_carries_no_files(self):
        pipe = self.provide_mail_program()
        self.session = self.start_bus("elsewhere", listen="tcp:host=127.0.0.1")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.session.address
        self.start_portal()
        driver = self.on_linux().open("misc")
        self.assertEqual(self.send(driver), [])
        self.check_mail_program_ran_once(pipe)
        driver.ask("back")
        driver.ask("tap", row="VexilProducts")
        driver.close()
        self.assertEqual(self.mails(), [])
        self.assertEqual(self.portal_record("links"), [PRODUCTS])

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


class LinksTest(PortalTest):
    def links(self):
        return self.portal_record("links")

    def tap_products(self, driver):
        with self.bounded():
            events = driver.events("tap", row="VexilProducts")
        self.assertIn("push", [event["event"] for event in events])

    def provide_browser(self, entry):
        """A browser with that desktop entry, which the user chose for links; the pipe into which it writes its words."""
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        self.provide_program("browser", f"for word; do printf '%s\\n' \"$word\"; done > '{pipe}'")
        applications = self.folder / "share" / "applications"
        applications.mkdir(parents=True)
        (applications / "browser.desktop").write_text(f"[Desktop Entry]\nType=Application\nName=Browser\n{entry}\n")
        config = self.folder / "config"
        config.mkdir(exist_ok=True)
        (config / "mimeapps.list").write_text("[Default Applications]\nx-scheme-handler/https=browser.desktop\n")
        return pipe

    def check_browser_opens(self, pipe, words):
        driver = self.on_linux()
        self.tap_products(driver)
        self.assertEqual(self.read_pipe(pipe).splitlines(), words)
        driver.close()

    def test_products_page(self):
        self.start_portal()
        driver = self.on_linux()
        self.tap_products(driver)
        driver.close()
        self.assertEqual(self.links(), [PRODUCTS])

    def test_portal_that_takes_long_to_start(self):
        start_portal = self.offer_portal_that_waits()
        driver = self.on_linux()
        self.tap_products(driver)
        start_portal()
        driver.close()
        self.assertEqual(self.links(), [PRODUCTS])

    def test_browser_where_there_is_no_portal(self):
        self.check_browser_opens(self.provide_browser("Exec=browser --name=%c %%x %u"), ["--name=", "%x", PRODUCTS])

    def test_browser_whose_entry_says_not_where_the_link_stands(self):
        self.check_browser_opens(self.provide_browser("Exec=browser 'new window'"), ["new window", PRODUCTS])

    def test_browser_where_the_portal_refuses(self):
        self.start_portal("error")
        self.check_browser_opens(self.provide_browser("Exec=browser %U"), [PRODUCTS])

    def test_neither_portal_nor_browser(self):
        driver = self.on_linux()
        self.tap_products(driver)
        self.wait_for_error(driver)

    def test_browser_that_fails(self):
        self.provide_browser("Exec=browser %u")
        self.provide_program("browser", "exit 1")
        driver = self.on_linux()
        self.tap_products(driver)
        self.wait_for_error(driver)

    def test_browser_that_needs_a_terminal(self):
        self.provide_browser("Exec=browser %u\nTerminal=true")
        driver = self.on_linux()
        self.tap_products(driver)
        self.wait_for_error(driver)

    def test_user_who_cancels(self):
        self.provide_browser("Exec=browser %u")
        mark = self.folder / "opened"
        self.provide_program("browser", f"touch '{mark}'")
        self.start_portal(1)
        driver = self.on_linux()
        self.tap_products(driver)
        driver.close()
        self.assertFalse(mark.exists())

    def test_portal_that_dies_while_the_user_decides_after_the_page_is_left(self):
        portal = self.start_portal(None)
        driver = self.on_linux()
        self.tap_products(driver)
        driver.ask("back")
        self.wait_for_record(driver, "links")
        portal.stop()
        self.wait_for_error(driver)

    def wait_for_error(self, driver):
        self.wait_in_turns(driver, lambda events: NO_BROWSER in events)


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

    def let_portal_come(self, scheme):
        """The name is taken by a daemon that answers already."""
        portal = self.mock_daemon(self.session, "org.example.First", PORTAL_PATH, SETTINGS)
        self.offer(portal, scheme)
        claim = f"self.portal_name = dbus.service.BusName('{PORTAL}', self.connection)"
        self.method(portal, SETTINGS, "Claim", "", "", claim)
        portal.call(SETTINGS, "Claim")
        return portal

    def test_portal_that_comes_later(self):
        driver = self.on_linux()
        self.assertEqual(self.colour(driver), support.ACCENT)
        self.let_portal_come(1)
        self.wait_for_colour(driver, support.WHITE)

    def test_portal_that_is_restarted(self):
        portal = self.let_portal_come(1)
        driver = self.on_linux()
        self.assertEqual(self.colour(driver), support.WHITE)
        portal.stop()
        self.session.wait_for(PORTAL, present=False)
        self.assertEqual(self.colour(driver), support.WHITE)
        self.let_portal_come(2)
        self.wait_for_colour(driver, support.ACCENT)

    def test_bus_that_comes_later(self):
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.folder}/late"
        driver = self.on_linux()
        self.assertEqual(self.colour(driver), support.ACCENT)
        self.session = self.start_bus("late")
        self.let_portal_come(1)
        self.wait_for_colour(driver, support.WHITE)


if __name__ == "__main__":
    unittest.main()
