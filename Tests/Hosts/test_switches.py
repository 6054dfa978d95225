"""What happens on the screen, and in which order, when a control is moved."""

from support import (
    CALLS_CHANGED,
    LOGGING_CHANGED,
    MASTER_CHANGED,
    MESSAGES_CHANGED,
    RELOAD,
    SETTINGS_RELOADED,
    PhoneTest,
    group_item,
    insert,
    notification,
    page_definition,
    remove,
)


def identifiers_of(name):
    return [item["id"] for item in page_definition(name)["items"]]


CALLS = identifiers_of("Calls")
MESSAGES = identifiers_of("Messages")
ROOT = identifiers_of("Root")


class SwitchesOfCalls(PhoneTest):
    def moved(self, row, value):
        return self.driver.events("set", row=row, value=value)

    def setUp(self):
        super().setUp()
        self.driver = self.drive().open("calls")

    def test_feature_off_takes_every_second_row(self):
        self.assertEqual(
            self.moved("TandemEnabledCalls", False),
            [
                notification(CALLS_CHANGED),
                SETTINGS_RELOADED,
                remove(1, CALLS[1]),
                remove(2, CALLS[3]),
                remove(3, CALLS[5]),
                remove(4, CALLS[7]),
                RELOAD,
            ],
        )
        self.assertEqual(self.driver.identifiers(), [CALLS[0], CALLS[-1]])

    def test_feature_on_brings_every_row(self):
        self.moved("TandemEnabledCalls", False)
        self.assertEqual(
            self.moved("TandemEnabledCalls", True),
            [notification(CALLS_CHANGED), SETTINGS_RELOADED]
            + [insert(i, CALLS[i]) for i in range(1, len(CALLS) - 1)]
            + [RELOAD],
        )
        self.assertEqual(self.driver.identifiers(), CALLS)

    def test_sim_choice_off_takes_the_slider(self):
        self.assertEqual(
            self.moved("ShowSimSlectionForCalls", False),
            [notification(CALLS_CHANGED), SETTINGS_RELOADED, remove(3, CALLS[3]), RELOAD],
        )

    def test_app_switch_moves_no_row(self):
        self.assertEqual(
            self.moved("TandemCallsApp-net.jami.Jami", False), [notification(CALLS_CHANGED), SETTINGS_RELOADED]
        )
        self.assert_stored({"TandemCallsApp-net.jami.Jami": False})

    def test_the_same_value_again_is_written_again(self):
        expected = [notification(CALLS_CHANGED), SETTINGS_RELOADED]
        self.assertEqual(self.moved("TandemCallsApp-net.jami.Jami", True), expected)
        self.assertEqual(self.moved("TandemCallsApp-net.jami.Jami", True), expected)
        self.assert_stored({"TandemCallsApp-net.jami.Jami": True})

    def test_number_for_a_switch(self):
        self.moved("TandemCallsApp-net.jami.Jami", 0)
        self.assert_stored({"TandemCallsApp-net.jami.Jami": False})
        self.moved("TandemCallsApp-net.jami.Jami", -0.5)
        self.assert_stored({"TandemCallsApp-net.jami.Jami": True})

    def test_slider_keeps_to_its_range_and_steps(self):
        slider = "TandemSimSelectionTimeForCalls"
        for value, kept in ((7, 7.0), (6.6, 7.0), (6.4, 6.0), (99, 10.0), (-99, 1.0), (1e308, 10.0), (2**64, 10.0)):
            with self.subTest(value=value):
                self.assertEqual(self.moved(slider, value), [notification(CALLS_CHANGED), SETTINGS_RELOADED])
                self.assert_stored({slider: kept})
                self.assertEqual(self.driver.rows()[3]["value"], kept)


class SwitchesOfMessages(PhoneTest):
    def setUp(self):
        super().setUp()
        self.write_settings({"TandemEnabledIMToText": True})
        self.driver = self.drive().open("messages")

    def assert_moved(self, row, value, *moves):
        self.assertEqual(
            self.driver.events("set", row=row, value=value),
            [notification(MESSAGES_CHANGED), SETTINGS_RELOADED, *moves, RELOAD],
        )

    def test_feature_off_and_on(self):
        self.assert_moved(
            "TandemEnabledMessages", False, remove(4, MESSAGES[4]), remove(3, MESSAGES[3]), remove(2, MESSAGES[2])
        )
        self.assertEqual(self.driver.identifiers(), [MESSAGES[0], MESSAGES[1], MESSAGES[-1]])
        self.assert_moved(
            "TandemEnabledMessages", True, insert(2, MESSAGES[2]), insert(3, MESSAGES[3]), insert(4, MESSAGES[4])
        )
        self.assertEqual(self.driver.identifiers(), MESSAGES)

    def test_sending_as_text_off_and_on(self):
        self.assert_moved("TandemEnabledIMToText", False, remove(4, "TandemIMToTextAsk"))
        self.assert_moved("TandemEnabledIMToText", True, insert(4, "TandemIMToTextAsk"))

    def test_sim_choice_off_and_on(self):
        self.assert_moved("ShowSimSlectionForMessages", False, remove(7, "TandemSimSelectionTimeForMessages"))
        self.assert_moved("ShowSimSlectionForMessages", True, insert(7, "TandemSimSelectionTimeForMessages"))

    def test_sim_choice_while_the_row_of_sending_as_text_is_hidden(self):
        self.assert_moved("TandemEnabledIMToText", False, remove(4, "TandemIMToTextAsk"))
        self.assert_moved("ShowSimSlectionForMessages", False, remove(6, "TandemSimSelectionTimeForMessages"))
        # The place in the definition, one further than on the screen.
        self.assert_moved("ShowSimSlectionForMessages", True, insert(7, "TandemSimSelectionTimeForMessages"))
        self.assertEqual(self.driver.identifiers(), MESSAGES[:4] + MESSAGES[5:])


class SwitchesOfRootAndMisc(PhoneTest):
    def test_master_switch(self):
        driver = self.drive().open("root")
        self.assertEqual(
            driver.events("set", row="TandemEnabled", value=False),
            [notification(MASTER_CHANGED), SETTINGS_RELOADED]
            + [remove(i, ROOT[i]) for i in range(7, 1, -1)]
            + [RELOAD],
        )
        self.assertEqual(
            driver.events("set", row="TandemEnabled", value=False),
            [notification(MASTER_CHANGED), SETTINGS_RELOADED, RELOAD],
        )
        self.assertEqual(
            driver.events("set", row="TandemEnabled", value=True),
            [notification(MASTER_CHANGED), SETTINGS_RELOADED]
            + [insert(i, ROOT[i]) for i in range(2, 8)]
            + [RELOAD],
        )
        self.assert_stored({"TandemEnabled": True})

    def test_logging_switch_reloads_before_it_notifies(self):
        driver = self.drive().open("misc")
        self.assertEqual(
            driver.events("set", row="TandemLoggingEnabled", value=True),
            [SETTINGS_RELOADED, notification(LOGGING_CHANGED)],
        )
        self.assert_stored({"TandemLoggingEnabled": True})

    def test_negated_row_shows_what_is_stored(self):
        row = {"cell": "PSSwitchCell", "id": "Quiet", "label": "Quiet", "key": "Loud", "negate": True}
        for page, name in (("misc", "Misc"), ("calls", "Calls")):
            with self.subTest(page=page):
                self.write_settings({})
                items = page_definition(name)["items"]
                items[-1:-1] = [group_item(), row]
                self.write_page(name, items)
                driver = self.drive().open(page)
                driver.ask("set", row="Quiet", value=True)
                self.assert_stored({"Loud": False})
                self.assertEqual([r["value"] for r in driver.rows() if r["identifier"] == "Quiet"], [False])
                driver.ask("set", row="Quiet", value=False)
                self.assert_stored({"Loud": True})
                driver.close()

    def test_row_without_a_key_or_a_notification(self):
        items = page_definition("Misc")["items"]
        items[-1:-1] = [{"cell": "PSSwitchCell", "id": "Keyless", "label": "Keyless"}]
        self.write_page("Misc", items)
        driver = self.drive().open("misc")
        self.assertEqual(driver.events("set", row="Keyless", value=True), [SETTINGS_RELOADED])
        self.assert_stored({})


class BluetoothPage(PhoneTest):
    CAR = "12:34:56:AB:CD:01"

    def test_binding_a_device(self):
        driver = self.drive().open("bluetooth")
        before = self.settings_file.read_bytes()
        self.assertEqual(driver.events("set", row=self.CAR, value=True), [RELOAD])
        work = self.CAR + "+B82E94D7-0C56-4F3B-8E1A-71D0A6F52C89"
        home = self.CAR + "+6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4"
        self.assertEqual(driver.identifiers()[:4], [self.CAR, None, home, work])
        self.assertEqual(driver.events("tap", row=home), [])
        self.assertEqual(
            driver.events("tap", row=work), [{"event": "reloadSection", "section": 1, "animation": 5}]
        )
        marks = [driver.ask("cell", row=row)["cell"]["accessory"] for row in (home, work)]
        self.assertEqual(marks, [0, 3])
        self.assertEqual(driver.events("set", row=self.CAR, value=False), [RELOAD])
        self.assertEqual(self.settings_file.read_bytes(), before)
