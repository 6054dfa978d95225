"""Page definitions with fewer rows than the pages rely on: where the list raises its range error, the request fails,
the page stays as it was, the error is logged, and the session goes on."""

from support import (
    CALLS_CHANGED,
    CALLS_PAGE,
    FOOTER_ITEM,
    MASTER_CHANGED,
    MESSAGES_CHANGED,
    MESSAGES_PAGE,
    RELOAD,
    ROOT_PAGE,
    SETTINGS_RELOADED,
    PhoneTest,
    link_item,
    log,
    notification,
    page_definition,
    page_of,
    push,
)

ROOT = page_definition("Root")
CALLS = page_definition("Calls")
MESSAGES = page_definition("Messages")


def beyond(operation, index, count):
    return f"{operation} index {index} beyond bounds of a list of {count} rows"


class ShortRoot(PhoneTest):
    def start(self, definition, enabled):
        self.write_settings({"TandemEnabled": enabled})
        self.write_page("Root", definition["items"])
        driver = self.drive()
        driver.ask("open", page="root")
        return driver

    def shown(self, driver, definition, enabled, count):
        self.assertEqual(
            driver.ask("rows"),
            page_of(
                ROOT_PAGE,
                definition,
                settings={"TandemEnabled": enabled},
                hidden=[item["id"] for item in definition["items"][count:]],
            ),
        )

    def test_nothing_is_hidden_of_six_rows_or_fewer(self):
        for count in range(7):
            definition = {**ROOT, "items": ROOT["items"][:count]}
            for enabled in (True, False):
                with self.subTest(count=count, enabled=enabled):
                    driver = self.start(definition, enabled)
                    self.shown(driver, definition, enabled, count)
                    for value in (enabled, not enabled, enabled) if count > 1 else ():
                        self.assertEqual(
                            driver.events("set", row="TandemEnabled", value=value),
                            [notification(MASTER_CHANGED), SETTINGS_RELOADED, RELOAD],
                        )
                        self.shown(driver, definition, value, count)
                    driver.close()

    def test_one_row_is_hidden_of_seven(self):
        items = [*ROOT["items"][:2], *(link_item(f"Row{i}") for i in range(2, 7))]
        driver = self.start({**ROOT, "items": items}, False)
        self.assertEqual(driver.identifiers(), ["MasterGroup", "TandemEnabled", "Row3", "Row4", "Row5", "Row6"])

    def test_no_definition(self):
        (self.place_bundle() / "Root.plist").unlink()
        for enabled in (True, False):
            self.write_settings({"TandemEnabled": enabled})
            driver = self.drive()
            reply = driver.ask("rows")
            self.assertEqual((reply["page"], reply["title"], reply["rows"]), (ROOT_PAGE, "", []))
            self.assertEqual(
                driver.request("open", page="calls"),
                {"ok": False, "error": 'the root page has no entry for "calls" now', "events": []},
            )
            driver.close()


class ShortFeaturePage(PhoneTest):
    def start(self, page, name, items, settings):
        self.write_settings(settings)
        self.write_page(name, items)
        driver = self.drive()
        driver.ask("open", page="root")
        return driver

    def assert_not_opened(self, name, definition_name, items, key, message):
        """The page is not pushed: the root page is on top as before, and works."""
        driver = self.start(name, definition_name, items, {key: False})
        for _ in range(2):
            self.assertEqual(
                driver.request("open", page=name), {"ok": False, "error": message, "events": [log(message)]}
            )
            self.assertEqual(driver.ask("rows"), page_of(ROOT_PAGE, ROOT, settings={key: False}))
        self.assertEqual(
            driver.events("open", page="misc"), [push("TDMiscSettingsController", "Logging and Support")]
        )
        driver.close()
        self.assertEqual(self.run_tandem("show", name), (1, "", f"tandem: {message}\n"))

    def assert_opened(self, name, definition_name, page, items, settings):
        definition = {**page_definition(definition_name), "items": items}
        driver = self.start(name, definition_name, items, settings)
        self.assertEqual(driver.events("open", page=name), [push(page, definition["title"])])
        self.assertEqual(driver.ask("rows"), page_of(page, definition, settings=settings))
        return driver

    def assert_stays(self, driver, page, definition, key, notification_name, message):
        """Turning the feature off stores the value, then fails with the page as it was."""
        self.assertEqual(
            driver.request("set", row=key, value=False),
            {
                "ok": False,
                "error": message,
                "events": [notification(notification_name), SETTINGS_RELOADED, log(message)],
            },
        )
        self.assert_stored({key: False})
        self.assertEqual(driver.ask("rows"), page_of(page, definition, settings={key: False}))
        self.assertEqual(
            driver.events("set", row=key, value=True), [notification(notification_name), SETTINGS_RELOADED, RELOAD]
        )
        self.assertEqual(driver.ask("rows"), page_of(page, definition, settings={key: True}))


class ShortCalls(ShortFeaturePage):
    KEY = "TandemEnabledCalls"
    SWITCH = CALLS["items"][0]

    def test_no_rows(self):
        driver = self.assert_opened("calls", "Calls", CALLS_PAGE, [], {self.KEY: True})
        driver.close()
        self.assert_not_opened("calls", "Calls", [], self.KEY, beyond("removeObjectAtIndex:", 2**64 - 2, 0))

    def test_one_row(self):
        message = beyond("removeObjectAtIndex:", 2**64 - 1, 1)
        driver = self.assert_opened("calls", "Calls", CALLS_PAGE, [self.SWITCH], {self.KEY: True})
        self.assert_stays(driver, CALLS_PAGE, {**CALLS, "items": [self.SWITCH]}, self.KEY, CALLS_CHANGED, message)
        driver.close()
        self.assert_not_opened("calls", "Calls", [self.SWITCH], self.KEY, message)
        self.assert_not_opened("calls", "Calls", [FOOTER_ITEM], self.KEY, message)

    def test_two_rows(self):
        items = [self.SWITCH, FOOTER_ITEM]
        for stored in (True, False):
            driver = self.assert_opened("calls", "Calls", CALLS_PAGE, items, {self.KEY: stored})
            for value in (False, True):
                self.assertEqual(
                    driver.events("set", row=self.KEY, value=value),
                    [notification(CALLS_CHANGED), SETTINGS_RELOADED, RELOAD],
                )
                self.assertEqual(
                    driver.ask("rows"), page_of(CALLS_PAGE, {**CALLS, "items": items}, settings={self.KEY: value})
                )
            driver.close()

    def test_no_row_after_the_sim_choice(self):
        items = CALLS["items"][:3]
        switch = items[2]["id"]
        message = beyond("removeSpecifierAtIndex:animated:", 3, 3)
        driver = self.assert_opened("calls", "Calls", CALLS_PAGE, items, {})
        self.assertEqual(
            driver.request("set", row=switch, value=False),
            {"ok": False, "error": message, "events": [notification(CALLS_CHANGED), SETTINGS_RELOADED, log(message)]},
        )
        self.assertEqual(
            driver.ask("rows"), page_of(CALLS_PAGE, {**CALLS, "items": items}, settings={switch: False})
        )

    def test_definition_that_shrinks_while_the_page_is_open(self):
        driver = self.assert_opened("calls", "Calls", CALLS_PAGE, CALLS["items"], {})
        self.write_page("Calls", [])
        reply = driver.request("set", row=self.KEY, value=False)
        self.assertFalse(reply["ok"])
        self.assertEqual(reply["events"][-1], log(reply["error"]))
        self.assertEqual(driver.ask("rows")["page"], CALLS_PAGE)
        self.write_page("Calls", CALLS["items"])
        driver.ask("set", row=self.KEY, value=True)
        self.assertEqual(driver.ask("rows"), page_of(CALLS_PAGE, CALLS, settings={self.KEY: True}))


class ShortMessages(ShortFeaturePage):
    KEY = "TandemEnabledMessages"
    SWITCH = MESSAGES["items"][1]

    def test_no_rows(self):
        for stored in (True, False):
            self.assert_opened("messages", "Messages", MESSAGES_PAGE, [], {self.KEY: stored}).close()

    def test_one_row(self):
        message = beyond("removeObjectAtIndex:", 2**64 - 1, 1)
        driver = self.assert_opened("messages", "Messages", MESSAGES_PAGE, [self.SWITCH], {self.KEY: True})
        definition = {**MESSAGES, "items": [self.SWITCH]}
        self.assert_stays(driver, MESSAGES_PAGE, definition, self.KEY, MESSAGES_CHANGED, message)
        driver.close()
        self.assert_not_opened("messages", "Messages", [self.SWITCH], self.KEY, message)

    def test_two_rows(self):
        items = [MESSAGES["items"][0], self.SWITCH]
        for stored in (True, False):
            driver = self.assert_opened("messages", "Messages", MESSAGES_PAGE, items, {self.KEY: stored})
            for value in (False, True):
                self.assertEqual(
                    driver.events("set", row=self.KEY, value=value),
                    [notification(MESSAGES_CHANGED), SETTINGS_RELOADED, RELOAD],
                )
                self.assertEqual(
                    driver.ask("rows"),
                    page_of(MESSAGES_PAGE, {**MESSAGES, "items": items}, settings={self.KEY: value}),
                )
            driver.close()

    def test_no_row_after_sending_as_text(self):
        message = beyond("removeObjectAtIndex:", 4, 4)
        driver = self.start("messages", "Messages", MESSAGES["items"][:4], {})
        self.assertEqual(
            driver.request("open", page="messages"), {"ok": False, "error": message, "events": [log(message)]}
        )
        self.assertEqual(driver.ask("rows"), page_of(ROOT_PAGE, ROOT))
