"""The logos of the SIMs, changed and reset as a user does it."""

import json
import pathlib
import struct
import unittest
import zlib

from support import PhoneTest, SIMS_PAGE, log, push

LOGOS = "/var/mobile/Library/Preferences/Tandem"
SIMS = [
    {"uuid": "6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4", "label": "Home", "phoneNumber": "+1 555 010 0101", "carrier": "Alpha Tel"},
    {"uuid": "B82E94D7-0C56-4F3B-8E1A-71D0A6F52C89", "label": "Work", "phoneNumber": "+1 555 010 0102", "carrier": None},
]
KEY = SIMS[0]["uuid"]
DISMISSED_SHEET = {"event": "dismiss", "what": "sheet"}
DISMISSED_PICKER = {"event": "dismiss", "what": "picker"}
PICKER = {"event": "picker", "source": "photoLibrary", "allowsEditing": True}
RELOAD = {"event": "reload"}


def png(width, height, alpha=False):
    """A PNG file of one colour, small whatever its size."""
    def chunk(kind, content):
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

    pixel = b"\x20\x80\xf0\x40" if alpha else b"\x20\x80\xf0"
    compressor = zlib.compressobj(1)
    rows = b"".join(compressor.compress(b"\0" + pixel * width) for _ in range(height)) + compressor.flush()
    header = struct.pack(">IIBBBBB", width, height, 8, 6 if alpha else 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", rows) + chunk(b"IEND", b"")


def size_of_png(content):
    return struct.unpack(">II", content[16:24])


class LogoTest(PhoneTest):
    def open_sims(self, sims=SIMS):
        phone = self.folder / "phone.json"
        phone.write_text(json.dumps({"subscriptions": sims, "scale": 2}))
        return self.drive("--phone", phone).open("sims")

    def logo(self, key=KEY):
        return self.path(f"{LOGOS}/{key}.png")

    def picture(self, name, content):
        file = self.folder / name
        file.write_bytes(content)
        return str(file)

    def subscriptions_log(self, sims=SIMS):
        lines = [f"    <CTXPCServiceSubscriptionContext {sim['uuid']}, label {sim['label']}>" for sim in sims]
        return log("**************** subscriptions: (\n" + ",\n".join(lines) + "\n)")

    def removal_log(self, key):
        return log(
            f"com.vexil.Pairo => Error: While removing item at path '{LOGOS}/{key}.png' error => "
            f"“{key}.png” couldn’t be removed: No such file or directory."
        )

    def change(self, driver, picture):
        driver.ask("tap", row=f"LOGO+{KEY}")
        driver.ask("choose", title="Change")
        return driver.request("pick", image=picture)

    def test_opening_the_page_tells_of_the_subscriptions(self):
        phone = self.folder / "phone.json"
        phone.write_text(json.dumps({"subscriptions": SIMS}))
        driver = self.drive("--phone", phone)
        driver.rows()
        self.assertEqual(driver.events("open", page="sims"), [self.subscriptions_log(), push(SIMS_PAGE, "SIM Settings")])

    def test_change_goes_through_sheet_picker_save_and_reload(self):
        driver = self.open_sims()
        message = (
            "Would you like to change the image of 'Home' carrier? It will appear in SIM selection window for both "
            "Calls & Messages."
        )
        actions = [{"title": "Change", "style": "destructive"}, {"title": "Cancel", "style": "cancel"}]
        sheet = {"event": "sheet", "title": "Pairo", "message": message, "actions": actions}
        self.assertEqual(driver.events("tap", row=f"LOGO+{KEY}"), [sheet])
        self.assertEqual(driver.events("choose", title="Change"), [DISMISSED_SHEET, PICKER])
        self.assertEqual(
            driver.events("pick", image=self.picture("a.png", png(30, 20))),
            [log(f"***** Saving image to : {LOGOS}/{KEY}.png"), self.subscriptions_log(), RELOAD, DISMISSED_PICKER],
        )
        self.assertEqual(size_of_png(self.logo().read_bytes()), (30, 20))
        self.assertEqual(driver.rows()[-1]["identifier"], "LOGO")
        sheet["actions"] = [actions[0], {"title": "Reset", "style": "destructive"}, actions[1]]
        self.assertEqual(driver.events("tap", row=f"LOGO+{KEY}"), [sheet])

    def test_a_picture_of_each_kind_is_saved_at_its_own_size(self):
        driver = self.open_sims()
        jpeg = str(pathlib.Path(__file__).parents[2] / "Resources/DemoPhone/Photos/harbour.jpg")
        for picture, size in [
            (self.picture("plain.png", png(30, 20)), (30, 20)),
            (self.picture("alpha.png", png(17, 9, alpha=True)), (17, 9)),
            (self.picture("one.png", png(1, 1)), (1, 1)),
            (self.picture("wide.png", png(7000, 1000)), (7000, 1000)),
            (jpeg, None),
        ]:
            with self.subTest(picture=picture):
                self.assertTrue(self.change(driver, picture)["ok"])
                if size:
                    self.assertEqual(size_of_png(self.logo().read_bytes()), size)

    def test_a_file_that_is_no_picture_or_too_large_is_refused_with_a_word_and_the_old_logo_stays(self):
        self.logo().parent.mkdir(parents=True)
        self.logo().write_bytes(png(2, 2))
        before = self.logo().read_bytes()
        driver = self.open_sims()
        # The picture library has words of its own for torn files, so the session does not end silently.
        self.addCleanup(driver.kill)
        for name, content in [
            ("text.png", b"This is no picture.\n"),
            ("empty.png", b""),
            ("torn.png", png(300, 300)[:200]),
            ("8000.png", png(8000, 8000)),
            ("claims.png", png(1, 1)[:16] + struct.pack(">II", 60000, 60000) + png(1, 1)[24:]),
        ]:
            with self.subTest(picture=name):
                picture = self.picture(name, content)
                reply = self.change(driver, picture)
                self.assertEqual(reply, {"ok": False, "error": f"{picture} is no picture, or too large to be used", "events": []})
                self.assertEqual(self.logo().read_bytes(), before)
                self.assertEqual(driver.events("pick", image=None), [DISMISSED_PICKER])
        driver.ask("tap", row=f"LOGO+{KEY}")
        driver.ask("choose", title="Change")
        missing = str(self.folder / "missing.png")
        self.assertEqual(
            driver.request("pick", image=missing), {"ok": False, "error": f"{missing}: no such file", "events": []}
        )
        self.assertEqual(self.logo().read_bytes(), before)

    def test_cell_looks_up_user_logo_then_carrier_logo_then_placeholder(self):
        driver = self.open_sims()
        first = log(f"***** Trying to gett default image first from location '{LOGOS}'")
        second = log(f"***** Trying get image from cache: {LOGOS}/alphatel.png")
        row = f"SIM+{KEY}"
        reply = driver.ask("cell", row=row)
        self.assertEqual(reply["events"], [first, second])
        self.assertEqual(reply["cell"]["imageView"]["image"], {"size": [40.0, 40.0], "template": False})
        self.assertEqual(reply["cell"]["detailTextLabel"]["text"], "Alpha Tel - +1 555 010 0101")
        self.logo().parent.mkdir()
        self.logo("alphatel").write_bytes(png(3, 3))
        self.logo().write_bytes(png(2, 2))
        driver.ask("back")
        driver.ask("open", page="sims")
        self.assertEqual(driver.events("cell", row=row), [first])
        other = driver.ask("cell", row=f"SIM+{SIMS[1]['uuid']}")
        self.assertEqual(other["events"], [])
        self.assertEqual(other["cell"]["detailTextLabel"]["text"], "+1 555 010 0102")
        self.assertIsNone(other["cell"]["imageView"]["image"])

    def test_cells_and_rows_follow_another_process_but_not_under_a_sheet(self):
        driver = self.open_sims()
        driver.ask("cell", row=f"SIM+{KEY}")
        driver.ask("tap", row=f"LOGO+{KEY}")
        self.logo().parent.mkdir(parents=True)
        self.logo().write_bytes(png(2, 2))
        self.assertNotIn("LOGO", driver.identifiers())
        self.assertEqual(driver.events("choose", title="Cancel"), [DISMISSED_SHEET])
        first = log(f"***** Trying to gett default image first from location '{LOGOS}'")
        reload = [RELOAD, self.subscriptions_log(), RELOAD]
        self.assertEqual(driver.events("cell", row=f"SIM+{KEY}"), [*reload, first])
        self.assertEqual(driver.identifiers()[-1], "LOGO")

    def test_reset_of_one_logo(self):
        self.logo().parent.mkdir(parents=True)
        self.logo().write_bytes(png(2, 2))
        driver = self.open_sims()
        driver.ask("tap", row=f"LOGO+{KEY}")
        self.assertEqual(driver.events("choose", title="Reset"), [DISMISSED_SHEET, self.subscriptions_log(), RELOAD])
        self.assertFalse(self.logo().exists())

    def test_reset_of_a_logo_that_vanished_meanwhile_logs_and_does_not_reload(self):
        self.logo().parent.mkdir(parents=True)
        self.logo().write_bytes(png(2, 2))
        driver = self.open_sims()
        driver.ask("tap", row=f"LOGO+{KEY}")
        self.logo().unlink()
        self.assertEqual(driver.events("choose", title="Reset"), [DISMISSED_SHEET, self.removal_log(KEY)])

    def test_reset_all_with_some_logos_missing(self):
        self.logo().parent.mkdir(parents=True)
        self.logo(SIMS[1]["uuid"]).write_bytes(png(2, 2))
        driver = self.open_sims()
        sheet = {
            "event": "sheet",
            "title": "Pairo",
            "message": "Are you sure you want to reset all carrier logos?",
            "actions": [{"title": "Reset All", "style": "destructive"}, {"title": "Cancel", "style": "cancel"}],
        }
        self.assertEqual(driver.events("tap", row="LOGO"), [sheet])
        self.assertEqual(
            driver.events("choose", title="Reset All"),
            [DISMISSED_SHEET, self.removal_log(KEY), self.subscriptions_log(), RELOAD],
        )
        self.assertEqual(list(self.logo().parent.iterdir()), [])

    def test_zero_one_two_and_three_sims(self):
        for count in range(4):
            with self.subTest(count=count):
                sims = [{**SIMS[0], "uuid": f"{i}F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4"} for i in range(count)]
                driver = self.open_sims(sims)
                rows = driver.rows()
                self.assertEqual(len(rows), 4 * count)
                self.assertEqual([row["name"] for row in rows[::4]], [f"SIM {i + 1}" for i in range(count)])
                driver.close()

    def test_hostile_keys_and_carriers_touch_nothing_outside_the_logo_folder(self):
        outside = self.path("/var/mobile/Library/Preferences/outside.png")
        outside.parent.mkdir(parents=True)
        outside.write_bytes(png(5, 5))
        picture = self.picture("new.png", png(9, 9))
        for key in ["../outside", "..", "/", "+", "", "x/../../outside", "k" * 10000]:
            with self.subTest(key=key[:20]):
                driver = self.open_sims([{**SIMS[0], "uuid": key, "carrier": "../outside"}])
                driver.ask("cell", row=1)
                driver.ask("tap", row=2)
                driver.ask("choose", title="Change")
                driver.ask("pick", image=picture)
                driver.ask("cell", row=1)
                driver.close()
                self.assertEqual(outside.read_bytes(), png(5, 5))
        pictures = [file for file in self.root.rglob("*.png") if "PreferenceBundles" not in str(file)]
        self.assertEqual([file for file in pictures if file.parent != self.logo().parent], [outside])


if __name__ == "__main__":
    unittest.main()
