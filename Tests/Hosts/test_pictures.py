"""The pictures of all pages and sheets that the Settings application writes."""

import pathlib
import subprocess

from support import BUNDLE, TANDEM, PhoneTest

SETTINGS = pathlib.Path(TANDEM).parent / "tandem-settings"
DEMO_LOGO = "6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4.png"
PAGES = ["root", "calls", "messages", "bluetooth", "sims", "misc", "products"]
SHEETS = ["share", "alert", "change-logo", "photos", "crop", "sims-with-logo", "reset-logo"]


class PicturesTest(PhoneTest):
    def write_pictures(self, *words):
        folder = self.folder / "pictures"
        run = subprocess.run(
            [SETTINGS, "--pictures", folder, *words], env=self.environment, capture_output=True, check=False
        )
        self.assertEqual(run.returncode, 0, run.stderr)
        return {file.name for file in folder.iterdir()}

    def all_of(self, names):
        return {f"{name}-{look}.png" for name in names for look in ("light", "dark")}

    def files_of(self, root):
        return {str(file): file.read_bytes() for file in root.rglob("*") if file.is_file() and BUNDLE not in file.parents}

    def test_every_page_and_sheet_light_and_dark(self):
        self.assertEqual(self.write_pictures(), self.all_of(PAGES + SHEETS))

    def test_the_phone_at_the_root_is_shown_and_left_as_it_is(self):
        self.run_tandem("set", "calls", "TandemEnabledCalls", "off")
        logos = self.root / "var/mobile/Library/Preferences/Tandem"
        logos.mkdir(parents=True)
        (logos / DEMO_LOGO).write_bytes(b"no picture, and not to be replaced by one")
        before = self.files_of(self.root)
        self.write_pictures("--root", self.root)
        self.assertEqual(self.files_of(self.root), before)

    def test_pages_that_the_phone_does_not_have_are_left_out(self):
        self.run_tandem("set", "root", "TandemEnabled", "off")
        written = self.write_pictures("--root", self.root)
        self.assertEqual(written, self.all_of(["root", "misc", "products", "share", "alert"]))
