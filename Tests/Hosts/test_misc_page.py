"""The page for logging and support."""

import os
import shutil

from support import (
    ACCENT,
    LOG_FILE_PATH,
    LOGGING_CHANGED,
    MISC_PAGE,
    SETTINGS_RELOADED,
    PhoneTest,
    error,
    notification,
    pop,
)

LOGGING_IS_OFF = error(
    "Please turn on 'Enable Logging' and try. Before sharing the log file, please ensure that the problem is "
    "reproducible on your device. This helps the Pairo to log the necessary information for identifying the problem."
)
NO_LOG = error("There is no log yet. Use the phone with logging turned on and try again.")
MAIL = {
    "event": "mail",
    "recipient": "support@vexil.example",
    "subject": "Pairo log",
    "attachment": LOG_FILE_PATH,
}


class EmailLogFile(PhoneTest):
    def test_logging_off(self):
        driver = self.drive().open("misc")
        for _ in range(2):
            self.assertEqual(driver.request("tap", row="EmailLog"), {"ok": True, "events": [LOGGING_IS_OFF]})
        self.assertFalse(self.path(LOG_FILE_PATH).exists())

    def test_logging_off_with_a_log_from_before(self):
        self.path(LOG_FILE_PATH).parent.mkdir(parents=True)
        self.path(LOG_FILE_PATH).write_text("from before\n")
        driver = self.drive().open("misc")
        self.assertEqual(driver.events("tap", row="EmailLog"), [LOGGING_IS_OFF])

    def test_logging_on(self):
        driver = self.drive().open("misc")
        self.assertEqual(
            [
                driver.events("tap", row="EmailLog"),
                driver.events("set", row="TandemLoggingEnabled", value=True),
                driver.events("tap", row="EmailLog"),
                driver.events("set", row="TandemLoggingEnabled", value=False),
                driver.events("tap", row="EmailLog"),
            ],
            [
                [LOGGING_IS_OFF],
                [SETTINGS_RELOADED, notification(LOGGING_CHANGED)],
                [MAIL],
                [SETTINGS_RELOADED, notification(LOGGING_CHANGED)],
                [LOGGING_IS_OFF],
            ],
        )

    def test_no_log_file(self):
        self.write_settings({"TandemLoggingEnabled": True})
        driver = self.drive().open("misc")
        shutil.rmtree(self.path(LOG_FILE_PATH).parent, ignore_errors=True)
        self.assertEqual(driver.request("tap", row="EmailLog"), {"ok": True, "events": [NO_LOG]})

    def test_log_file_that_cannot_be_made(self):
        self.write_settings({"TandemLoggingEnabled": True})
        self.path("/var/mobile/Library/Logs").write_text("no folder")
        driver = self.drive().open("misc")
        driver.ask("set", row="TandemLoggingEnabled", value=True)
        self.assertEqual(driver.events("tap", row="EmailLog"), [NO_LOG])

    def test_by_a_command(self):
        self.assertEqual(
            self.run_tandem("tap", "misc", "EmailLog"), (0, f"error  message {LOGGING_IS_OFF['message']}\n", "")
        )

    def test_sheet_is_not_left_up(self):
        """The alert is taken as read: the page takes touches at once."""
        driver = self.drive().open("misc")
        driver.ask("tap", row="EmailLog")
        self.assertEqual(driver.events("back"), [pop(MISC_PAGE, "Logging and Support")])


class BackButton(PhoneTest):
    def test_own_button(self):
        driver = self.drive().open("misc")
        button = driver.ask("hook", name="customBackButton")["result"]
        size = button["image"]["size"]
        self.assertEqual(
            button,
            {
                "class": "UIBarButtonItem",
                "image": {"size": size, "template": False},
                "style": 0,
                "action": "backButtonAction:",
            },
        )
        self.assertGreater(min(size), 0)
        self.assertEqual(
            driver.request("hook", name=button["action"]),
            {"ok": True, "result": None, "events": [pop(MISC_PAGE, "Logging and Support")]},
        )
        self.assertEqual(driver.ask("rows")["page"], "TDRootListController")

    def test_other_pages_have_none(self):
        driver = self.drive()
        for page in ("calls", "messages", "bluetooth", "sims"):
            driver.open(page)
            self.assertIsNone(driver.ask("hook", name="customBackButton")["result"])
            driver.ask("back")

    def test_image_that_is_missing(self):
        for image in self.place_bundle().glob("Tandem*.png"):
            os.unlink(image)
        driver = self.drive().open("misc")
        self.assertIsNone(driver.ask("hook", name="customBackButton")["result"]["image"])

    def test_color_of_the_bar(self):
        driver = self.drive().open("misc")
        self.assertEqual(driver.ask("rows")["barColor"], ACCENT)


class Log(PhoneTest):
    def test_lines_carry_the_time(self):
        driver = self.drive().open("misc")
        driver.ask("set", row="TandemLoggingEnabled", value=True)
        driver.ask("set", row="TandemLoggingEnabled", value=False)
        content = self.path(LOG_FILE_PATH).read_text()
        self.assertRegex(
            content,
            r"\A\d{4}-\d\d-\d\d \d\d:\d\d:\d\d \+0000 Settings were read: \{\n    TandemLoggingEnabled = 1;\n\}\n\Z",
        )

    def test_what_the_pages_log_is_in_it_too(self):
        self.write_settings({"TandemLoggingEnabled": True})
        driver = self.drive()
        driver.ask("open", page="root")
        self.path(LOG_FILE_PATH).unlink(missing_ok=True)
        (text,) = (event["text"] for event in driver.events("open", page="sims") if event["event"] == "log")
        time, line = self.path(LOG_FILE_PATH).read_text()[:26], self.path(LOG_FILE_PATH).read_text()[26:]
        self.assertRegex(time, r"\A\d{4}-\d\d-\d\d \d\d:\d\d:\d\d \+0000 \Z")
        self.assertEqual(line, text + "\n")
