"""The cells of the pages: what they show, in which colours, and where everything lies."""

from support import ACCENT, LIGHT_GRAY_HALF, WHITE, PhoneTest, log, page_definition

CLEAR = [0.0, 0.0, 0.0, 0.0]
NATURAL_ALIGNMENT = 4
STYLE_DEFAULT = 0
STYLE_VALUE = 1
STYLE_SUBTITLE = 3
ACCESSORY_NONE = 0
ACCESSORY_DISCLOSURE = 1
SELECTION_NONE = 0
SELECTION_DEFAULT = 3


def view(cls, frame, **more):
    return {
        "class": cls,
        "tag": 0,
        "frame": frame,
        "hidden": False,
        "alpha": 1.0,
        "background": None,
        "tint": None,
        "text": None,
        "textColor": None,
        "alignment": None,
        "lines": None,
        "font": None,
        "attributed": None,
        "image": None,
        "cornerRadius": 0.0,
        "clips": False,
        "subviews": [],
        **more,
    }


def label(text, frame, color, lines=1, size=17.0):
    return view(
        "UILabel",
        frame,
        text=text,
        textColor=color,
        alignment=NATURAL_ALIGNMENT,
        lines=lines,
        font={"name": "System", "size": size},
    )


def icon(frame, size=None, template=False, **more):
    image = size and {"size": [size, size], "template": template}
    return view("UIImageView", frame, image=image, **more)


def control(cls, frame, **more):
    return {
        "class": cls,
        "value": None,
        "min": None,
        "max": None,
        "segments": None,
        "continuous": None,
        "onTint": None,
        "tint": None,
        "frame": frame,
        **more,
    }


def cell_of(cls, text, image, *others, detail=None, height=44.0, width=375.0, **more):
    return {
        "class": cls,
        "style": STYLE_DEFAULT,
        "accessory": ACCESSORY_NONE,
        "selection": SELECTION_NONE,
        "interaction": True,
        "frame": [0.0, 0.0, width, height],
        "background": None,
        "control": None,
        "textLabel": text,
        "detailTextLabel": detail,
        "imageView": image,
        "subviews": [image, text, *others],
        **more,
    }


class Cells(PhoneTest):
    def assert_cell(self, driver, row, expected, events=(), **fields):
        self.assertEqual(driver.ask("cell", row=row, **fields), {"ok": True, "cell": expected, "events": [*events]})

    def text_colors(self, driver):
        """The colours of the title and the detail of every row, by identifier."""
        colors = {}
        for row in driver.rows():
            if row["cell"] == "PSGroupCell":
                continue
            cell = driver.ask("cell", row=row["index"])["cell"]
            colors[row["identifier"]] = [
                text and text["textColor"] for text in (cell["textLabel"], cell["detailTextLabel"])
            ]
        return colors


class CellsOfCalls(Cells):
    def setUp(self):
        super().setUp()
        self.driver = self.drive().open("calls")

    def test_feature_switch(self):
        frame = [308.0, 6.5, 51.0, 31.0]
        self.assert_cell(
            self.driver,
            "TandemEnabledCalls",
            cell_of(
                "TDSwitchCell",
                label("Choose SIM for Calls", [16.0, 11.5, 284.0, 21.0], ACCENT),
                icon([16.0, 22.0, 0.0, 0.0]),
                view("UISwitch", frame),
                control=control("UISwitch", frame, value=True, onTint=ACCENT),
            ),
        )

    def sim_choice(self, color):
        frame = [308.0, 6.5, 51.0, 31.0]
        return cell_of(
            "TDSwitchCell",
            label("Ask Before Each Call", [60.0, 11.5, 240.0, 21.0], color),
            icon([16.0, 7.5, 29.0, 29.0], size=29.0, template=True, tint=color),
            view("UISwitch", frame),
            control=control("UISwitch", frame, value=True, onTint=ACCENT),
        )

    def test_sim_choice_switch(self):
        self.assert_cell(self.driver, "ShowSimSlectionForCalls", self.sim_choice(ACCENT))

    def test_sim_choice_switch_in_the_dark(self):
        self.driver.ask("appearance", dark=True)
        self.assert_cell(self.driver, "ShowSimSlectionForCalls", self.sim_choice(WHITE))
        self.driver.ask("appearance", dark=False)
        self.assert_cell(self.driver, "ShowSimSlectionForCalls", self.sim_choice(ACCENT))

    def slider(self, width, side):
        frame = [side, 34.5, width - 2 * side, 31.0]
        return cell_of(
            "TDSliderCell",
            label("Seconds to Choose a SIM", [side, 9.5, width - 2 * side, 21.0], ACCENT, lines=0),
            icon([side, 35.0, 0.0, 0.0]),
            view("TDSegmentableSlider", frame, background=CLEAR, tint=ACCENT),
            control=control(
                "TDSegmentableSlider",
                frame,
                value=3.0,
                min=1.0,
                max=10.0,
                segments=9,
                continuous=False,
                tint=ACCENT,
            ),
            height=70.0,
            width=width,
        )

    def test_slider(self):
        slider = "TandemSimSelectionTimeForCalls"
        self.assert_cell(self.driver, slider, self.slider(375.0, 16.0))
        self.assert_cell(self.driver, slider, self.slider(375.0, 16.0), width=None)
        self.assert_cell(self.driver, slider, self.slider(375.0, 16.0), width=375)
        self.assert_cell(self.driver, slider, self.slider(320.0, 16.0), width=320)
        self.assert_cell(self.driver, slider, self.slider(800.0, 20.0), width=800.0)

    def test_slider_with_a_title_of_several_lines(self):
        self.driver.close()
        items = page_definition("Calls")["items"]
        items[3]["label"] = "Seconds to Choose a SIM before the call is placed by the SIM of the last call"
        self.write_page("Calls", items)
        driver = self.drive().open("calls")
        cell = driver.ask("cell", row=3, width=320)["cell"]
        title, slider = cell["textLabel"]["frame"], cell["control"]["frame"]
        self.assertGreater(title[3], 21.0)
        self.assertLessEqual(title[1] + title[3], slider[1])
        self.assertGreaterEqual(title[1], 0)
        self.assertLessEqual(slider[1] + slider[3], cell["frame"][3])

    def test_app_row(self):
        frame = [308.0, 6.5, 51.0, 31.0]
        self.assert_cell(
            self.driver,
            "TandemCallsApp-net.jami.Jami",
            cell_of(
                "TDSwitchCell",
                label("Jami", [60.0, 11.5, 240.0, 21.0], ACCENT),
                self.driver.ask("cell", row="TandemCallsApp-net.jami.Jami")["cell"]["imageView"],
                view("UISwitch", frame),
                control=control("UISwitch", frame, value=True, onTint=ACCENT),
            ),
        )

    def test_text_colors_follow_the_appearance(self):
        rows = {row["identifier"] for row in self.driver.rows() if row["cell"] != "PSGroupCell"}
        self.assertEqual(self.text_colors(self.driver), {row: [ACCENT, None] for row in rows})
        self.driver.ask("appearance", dark=True)
        self.assertEqual(self.text_colors(self.driver), {row: [WHITE, None] for row in rows})


class CellsOfMessages(Cells):
    def test_sim_choice_switch_keeps_its_icon_in_the_dark(self):
        driver = self.drive().open("messages")
        driver.ask("appearance", dark=True)
        frame = [308.0, 6.5, 51.0, 31.0]
        self.assert_cell(
            driver,
            "ShowSimSlectionForMessages",
            cell_of(
                "TDSwitchCell",
                label("Ask Before Each Message", [60.0, 11.5, 240.0, 21.0], WHITE),
                icon([16.0, 7.5, 29.0, 29.0], size=29.0, template=True, tint=ACCENT),
                view("UISwitch", frame),
                control=control("UISwitch", frame, value=True, onTint=ACCENT),
            ),
        )


class CellsOfRoot(Cells):
    def setUp(self):
        super().setUp()
        self.driver = self.drive().open("root")

    def test_products(self):
        cell = self.driver.ask("cell", row="VexilProducts")["cell"]
        self.assertEqual(cell["accessory"], ACCESSORY_DISCLOSURE)
        self.assertEqual(cell["imageView"]["image"], {"size": [29.0, 29.0], "template": False})

    def test_sim_settings_entry_has_a_tinted_icon(self):
        for dark, color in ((False, ACCENT), (True, WHITE)):
            with self.subTest(dark=dark):
                self.driver.ask("appearance", dark=dark)
                self.assert_cell(
                    self.driver,
                    "TDSimSettingsController",
                    cell_of(
                        "PSTableCell",
                        label("SIM Settings", [60.0, 11.5, 283.0, 21.0], color),
                        icon([16.0, 7.5, 29.0, 29.0], size=29.0, template=True, tint=color),
                        accessory=ACCESSORY_DISCLOSURE,
                        selection=SELECTION_DEFAULT,
                    ),
                )

    def test_other_entries_keep_their_icons(self):
        for row in ("Calls", "Messages", "Bluetooth", "Misc"):
            with self.subTest(row=row):
                image = self.driver.ask("cell", row=row)["cell"]["imageView"]
                self.assertIsNone(image["tint"])
                self.assertFalse(image["image"]["template"])


class DisabledRows(Cells):
    """Rows that take no touch are light grey at half alpha, in the light and in the dark."""

    def test_title_and_detail(self):
        rows = [
            {"cell": "PSTitleValueCell", "id": "Off", "label": "Off", "default": "five", "enabled": False},
            {"cell": "PSTitleValueCell", "id": "On", "label": "On", "default": "five", "enabled": True},
            {"cell": "PSSwitchCell", "id": "OffSwitch", "label": "Off", "enabled": False},
        ]
        for page, name in (("root", "Root"), ("calls", "Calls"), ("messages", "Messages")):
            items = page_definition(name)["items"]
            items[-1:-1] = rows
            self.write_page(name, items)
            driver = self.drive().open(page)
            for dark, color in ((False, ACCENT), (True, WHITE)):
                with self.subTest(page=page, dark=dark):
                    driver.ask("appearance", dark=dark)
                    colors = self.text_colors(driver)
                    self.assertEqual(colors["Off"], [LIGHT_GRAY_HALF, LIGHT_GRAY_HALF])
                    self.assertEqual(colors["On"], [color, color])
                    self.assertEqual(colors["OffSwitch"], [LIGHT_GRAY_HALF, None])
                    cell = driver.ask("cell", row="Off")["cell"]
                    self.assertEqual((cell["style"], cell["interaction"]), (STYLE_VALUE, False))
                    self.assertEqual(cell["detailTextLabel"]["text"], "five")
            driver.close()


class CellsOfSims(Cells):
    PERSONAL = "SIM+6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4"
    LOGO = "LOGO+6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4"

    def test_sim_row_and_its_button(self):
        driver = self.drive().open("sims")
        logos = "/var/mobile/Library/Preferences/Tandem"
        search = [
            log(f"***** Trying to gett default image first from location '{logos}'"),
            log(f"***** Trying get image from cache: {logos}/larkspurmobile.png"),
        ]
        for dark, color in ((False, ACCENT), (True, WHITE)):
            with self.subTest(dark=dark):
                driver.ask("appearance", dark=dark)
                detail = label("Larkspur Mobile - +1 202 555 0143", [71.0, 34.0, 288.0, 15.0], color, size=12.0)
                self.assert_cell(
                    driver,
                    self.PERSONAL,
                    cell_of(
                        "TDSIMInfoTableCell",
                        label("Personal", [71.0, 11.0, 288.0, 21.0], color),
                        icon([16.0, 10.0, 40.0, 40.0], size=40.0, cornerRadius=10.0, clips=True),
                        detail,
                        detail=detail,
                        style=STYLE_SUBTITLE,
                        interaction=False,
                        height=60.0,
                    ),
                    search,
                )
        button = driver.ask("cell", row=self.LOGO)["cell"]
        self.assertEqual(
            {key: button[key] for key in ("class", "style", "accessory", "selection", "interaction")},
            {
                "class": "TDSIMMaskTableCell",
                "style": STYLE_SUBTITLE,
                "accessory": ACCESSORY_NONE,
                "selection": SELECTION_DEFAULT,
                "interaction": True,
            },
        )
        self.assertEqual(button["imageView"]["frame"], [0.0, 0.0, 40.0, 40.0])
