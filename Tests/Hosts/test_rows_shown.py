"""Which rows a page shows, for every combination of the stored switches: as stored at the start, and as reached by
moving the switches there and back."""

import itertools

from support import CALLS_PAGE, MESSAGES_PAGE, ROOT_PAGE, PhoneTest, page_definition, page_of


class RowsShown(PhoneTest):
    def shown(self, driver, page, name, settings, hidden):
        self.assertEqual(
            driver.ask("rows"), page_of(page, page_definition(name), settings=settings, hidden=hidden), settings
        )


def identifiers_of(name):
    return [item["id"] for item in page_definition(name)["items"]]


class RowsOfCalls(RowsShown):
    FEATURE = "TandemEnabledCalls"
    ASK = "ShowSimSlectionForCalls"

    def hidden(self, feature, ask):
        if not feature:
            return set(identifiers_of("Calls")[1:-1])
        return set() if ask else {"TandemSimSelectionTimeForCalls"}

    def test_as_stored(self):
        for feature, ask in itertools.product((False, True), repeat=2):
            with self.subTest(feature=feature, ask=ask):
                settings = {self.FEATURE: feature, self.ASK: ask}
                self.write_settings(settings)
                driver = self.drive().open("calls")
                self.shown(driver, CALLS_PAGE, "Calls", settings, self.hidden(feature, ask))
                driver.close()

    def test_as_the_defaults_are(self):
        driver = self.drive().open("calls")
        self.shown(driver, CALLS_PAGE, "Calls", {}, set())

    def test_after_switching_there_and_back(self):
        driver = self.drive().open("calls")
        for feature, ask in itertools.product((False, True), repeat=2):
            with self.subTest(feature=feature, ask=ask):
                driver.ask("set", row=self.ASK, value=ask)
                driver.ask("set", row=self.FEATURE, value=feature)
                settings = {self.FEATURE: feature, self.ASK: ask}
                self.shown(driver, CALLS_PAGE, "Calls", settings, self.hidden(feature, ask))
                driver.ask("set", row=self.FEATURE, value=True)
                driver.ask("set", row=self.ASK, value=True)
                self.shown(driver, CALLS_PAGE, "Calls", {self.FEATURE: True, self.ASK: True}, set())


class RowsOfMessages(RowsShown):
    FEATURE = "TandemEnabledMessages"
    AS_TEXT = "TandemEnabledIMToText"
    ASK = "ShowSimSlectionForMessages"
    BELONGS_TO_AS_TEXT = "TandemIMToTextAsk"
    SLIDER = "TandemSimSelectionTimeForMessages"

    def hidden(self, feature, as_text, ask):
        if not feature:
            return set(identifiers_of("Messages")[2:-1])
        return {row for row, on in ((self.BELONGS_TO_AS_TEXT, as_text), (self.SLIDER, ask)) if not on}

    def settings(self, feature, as_text, ask):
        return {self.FEATURE: feature, self.AS_TEXT: as_text, self.ASK: ask}

    def test_as_stored(self):
        for flags in itertools.product((False, True), repeat=3):
            with self.subTest(flags=flags):
                self.write_settings(self.settings(*flags))
                driver = self.drive().open("messages")
                self.shown(driver, MESSAGES_PAGE, "Messages", self.settings(*flags), self.hidden(*flags))
                driver.close()

    def test_as_the_defaults_are(self):
        driver = self.drive().open("messages")
        self.shown(driver, MESSAGES_PAGE, "Messages", {}, {self.BELONGS_TO_AS_TEXT})

    def test_after_switching_there_and_back(self):
        driver = self.drive().open("messages")
        for flags in itertools.product((False, True), repeat=3):
            with self.subTest(flags=flags):
                feature, as_text, ask = flags
                driver.ask("set", row=self.AS_TEXT, value=as_text)
                driver.ask("set", row=self.ASK, value=ask)
                driver.ask("set", row=self.FEATURE, value=feature)
                self.shown(driver, MESSAGES_PAGE, "Messages", self.settings(*flags), self.hidden(*flags))
                driver.ask("set", row=self.FEATURE, value=True)
                driver.ask("set", row=self.AS_TEXT, value=True)
                driver.ask("set", row=self.ASK, value=True)
                self.shown(driver, MESSAGES_PAGE, "Messages", self.settings(True, True, True), set())


class RowsOfRoot(RowsShown):
    MASTER = "TandemEnabled"

    def hidden(self, enabled):
        return set() if enabled else set(identifiers_of("Root")[2:-4])

    def test_as_stored(self):
        for enabled in (False, True):
            with self.subTest(enabled=enabled):
                self.write_settings({self.MASTER: enabled})
                driver = self.drive()
                driver.ask("open", page="root")
                self.shown(driver, ROOT_PAGE, "Root", {self.MASTER: enabled}, self.hidden(enabled))
                driver.close()

    def test_after_switching_there_and_back(self):
        driver = self.drive()
        for enabled in (False, True, True, False, False, True):
            driver.ask("set", row=self.MASTER, value=enabled)
            self.shown(driver, ROOT_PAGE, "Root", {self.MASTER: enabled}, self.hidden(enabled))

    def test_a_definition_of_ten_rows(self):
        names = [f"Row{i}" for i in range(10)]
        definition = page_definition("Root")
        master = definition["items"][1]
        definition["items"] = [{"cell": "PSLinkCell", "id": name, "label": name} for name in names]
        definition["items"][1] = {**master, "id": "Row1"}
        self.write_page("Root", definition)
        self.write_settings({self.MASTER: False})
        driver = self.drive()
        self.assertEqual(driver.identifiers(), ["Row0", "Row1", "Row6", "Row7", "Row8", "Row9"])
        driver.ask("set", row="Row1", value=True)
        self.assertEqual(driver.identifiers(), names)
        driver.ask("set", row="Row1", value=False)
        self.assertEqual(driver.identifiers(), ["Row0", "Row1", "Row6", "Row7", "Row8", "Row9"])
