"""The file that describes a phone: services that are missing, and files that describe none."""

import json
import os

from support import DEMO_PHONE, PhoneTest, log, page_definition, rows_of

PAGES = ("root", "calls", "messages", "bluetooth", "sims", "misc")
SIM = "6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4"


class PhoneFile(PhoneTest):
    def setUp(self):
        super().setUp()
        self.phone = self.folder / "phone.json"

    def describe(self, phone):
        self.phone.write_text(json.dumps(phone))

    def identifiers(self, page):
        driver = self.drive("--phone", self.phone).open(page)
        identifiers = driver.identifiers()
        driver.close()
        return identifiers


class MissingServices(PhoneFile):
    SERVICES = ("appearance", "scale", "subscriptions", "pairedDevices", "homeScreen", "photos")

    def assert_shows_less(self, **settings):
        driver = self.drive("--phone", self.phone)
        for page, name, hidden in (
            ("calls", "Calls", ()),
            ("messages", "Messages", {"TandemIMToTextAsk"}),
            ("misc", "Misc", ()),
        ):
            driver.open(page)
            self.assertEqual(driver.rows(), rows_of(page_definition(name), hidden=hidden, apps={}))
            driver.ask("back")
        self.assertEqual(driver.rows(), rows_of(page_definition("Root"), apps={}))
        driver.open("bluetooth")
        self.assertEqual(driver.rows(), [])
        driver.ask("back")
        self.assertEqual(driver.events("open", page="sims")[0], log("**************** subscriptions: (\n)"))
        self.assertEqual(driver.rows(), [])
        driver.ask("back")
        # Changes are stored as ever.
        driver.open("calls").ask("set", row="TandemCallsApp-net.jami.Jami", value=False)
        driver.ask("set", row="TandemCallsApp-net.jami.Jami", value=True)
        driver.ask("hook", name="twitterMessage")
        driver.close()
        self.settings_file.unlink()

    def test_all(self):
        self.describe({})
        self.assert_shows_less()

    def test_null(self):
        self.describe({service: None for service in self.SERVICES})
        self.assert_shows_less()

    def test_empty(self):
        self.describe({"subscriptions": [], "pairedDevices": [], "homeScreen": {}, "photos": []})
        self.assert_shows_less()

    def test_one_after_the_other(self):
        whole = json.loads(DEMO_PHONE.read_bytes())
        for service in self.SERVICES:
            for value in ("missing", "null"):
                with self.subTest(service=service, value=value):
                    phone = {key: entry for key, entry in whole.items() if key != service}
                    self.describe({**phone, **({service: None} if value == "null" else {})})
                    for page in PAGES:
                        code, out, complaint = self.run_tandem("--phone", self.phone, "show", page)
                        self.assertEqual((code, complaint, bool(out)), (0, "", True))

    def test_icons_of_apps_that_are_not_there(self):
        (self.folder / "text.png").write_text("no picture")
        self.describe(
            {
                "homeScreen": {
                    "net.jami.Jami": str(DEMO_PHONE.parent / "Icons/net.jami.Jami.png"),
                    "org.gnome.Calls": "missing.png",
                    "org.kde.plasma.dialer": "text.png",
                    "com.belledonne.linphone": None,
                }
            }
        )
        driver = self.drive("--phone", self.phone).open("calls")
        self.assertEqual(driver.rows(), rows_of(page_definition("Calls"), apps={"net.jami.Jami"}))


class NullValues(PhoneFile):
    def test_sim_without_anything_but_its_uuid(self):
        sim = {"uuid": SIM, "label": None, "phoneNumber": None, "carrier": None, "userDefaultVoice": None}
        for phone in ({"subscriptions": [sim]}, {"subscriptions": [{"uuid": SIM}]}):
            self.describe(phone)
            driver = self.drive("--phone", self.phone).open("sims")
            self.assertEqual(
                [(row["identifier"], row["name"]) for row in driver.rows()],
                [(None, "SIM 1"), (f"SIM+{SIM}", None), (f"LOGO+{SIM}", "Carrier Logo"), (None, None)],
            )
            cell = driver.ask("cell", row=1)["cell"]
            self.assertEqual(
                (cell["textLabel"]["text"], cell["detailTextLabel"]["text"], cell["imageView"]["image"]),
                (None, "", None),
            )
            self.assertEqual(
                driver.events("tap", row=2)[0]["message"],
                "Would you like to change the image of this carrier? It will appear in SIM selection window for both "
                "Calls & Messages.",
            )
            driver.ask("choose", title="Cancel")
            driver.close()

    def test_empty_label(self):
        self.describe({"subscriptions": [{"uuid": SIM, "label": ""}]})
        driver = self.drive("--phone", self.phone).open("sims")
        self.assertEqual(
            driver.events("tap", row=2)[0]["message"],
            "Would you like to change the image of '' carrier? It will appear in SIM selection window for both Calls & "
            "Messages.",
        )

    def test_device_bound_on_a_phone_without_sims(self):
        self.describe({"pairedDevices": [{"name": "Car", "address": "12:34:56:AB:CD:01"}]})
        driver = self.drive("--phone", self.phone).open("bluetooth")
        driver.ask("set", row=0, value=True)
        self.assertEqual(driver.identifiers(), ["12:34:56:AB:CD:01", None, None])


class NoPhone(PhoneFile):
    """One line that says what is wrong and where, and nothing else."""

    def assert_refused(self, problem, file=None, **options):
        for command in (["show"], ["check"], ["drive"], ["set", "calls", "0", "on"]):
            self.assertEqual(
                self.run_tandem("--phone", file or self.phone, *command, **options),
                (1, "", f"tandem: {file or self.phone}: {problem}\n"),
            )

    def tearDown(self):
        # Nothing is made before the phone is there.
        self.assertFalse(self.root.exists())

    def test_no_json(self):
        for content, place in (
            (b"", "line 1, column 1"),
            (b"{", "line 1, column 2"),
            (b'{\n  "scale": 2,\n}', "line 3, column 1"),
            (b"\xff", "line 1, column 1"),
            (b"{}\0", "line 1, column 3"),
            (b"{} {}", "line 1, column 4"),
            (b"[" * 100_000, "line 1, column 100001"),
        ):
            with self.subTest(content=content[:20]):
                self.phone.write_bytes(content)
                self.assert_refused(f"{place}: not valid JSON")

    def test_wrong_values(self):
        for phone, problem in (
            ([], "expected an object, found a list"),
            ("demo", "expected an object, found a string"),
            ({"nope": 1}, "/nope: unknown key"),
            ({"a\nb": 1}, "/a b: unknown key"),
            ({"appearance": "grey"}, '/appearance: expected "light" or "dark"'),
            ({"appearance": True}, "/appearance: expected a string, found true or false"),
            ({"scale": 0}, "/scale: expected a number from 1 to 8"),
            ({"scale": "2"}, "/scale: expected a number, found a string"),
            ({"subscriptions": {}}, "/subscriptions: expected a list, found an object"),
            ({"subscriptions": [None]}, "/subscriptions/0: expected an object, found nothing"),
            ({"subscriptions": [{"uuid": SIM}, {}]}, "/subscriptions/1/uuid: expected a string, found nothing"),
            ({"subscriptions": [{"uuid": 5}]}, "/subscriptions/0/uuid: expected a string, found a number"),
            ({"pairedDevices": [{"name": "Car"}]}, "/pairedDevices/0/address: expected a string, found nothing"),
            ({"homeScreen": []}, "/homeScreen: expected an object, found a list"),
            ({"homeScreen": {"app": 1}}, "/homeScreen/app: expected a string, found a number"),
            ({"photos": "hills.png"}, "/photos: expected a list, found a string"),
        ):
            with self.subTest(phone=phone):
                self.describe(phone)
                self.assert_refused(problem)

    def test_nested_100000_deep(self):
        self.phone.write_bytes(b'{"photos":' + b"[" * 100_000 + b"]" * 100_000 + b"}")
        self.assert_refused("/photos/0: expected a string, found a list")

    def test_too_large(self):
        self.phone.write_bytes(b" " * (2 << 20))
        self.assert_refused("too large")

    def test_no_file(self):
        self.assert_refused("no such file")
        self.assert_refused("not a regular file", self.folder)
        os.mkfifo(self.phone)
        self.assert_refused("not a regular file")

    def test_unreadable_file(self):
        self.describe({})
        self.phone.chmod(0)
        nobody = {"user": 65534, "group": 65534, "extra_groups": []} if os.geteuid() == 0 else {}
        self.assert_refused("cannot be read", **nobody)
