"""Icons of apps: the theme that the user chose, pictures that are none, and how long a page with many takes."""

import os
import subprocess
import time
import unittest

from gi.repository import GLib

import support
from machine import PATIENCE_MS, PORTAL, PORTAL_PATH, MachineTest

SETTINGS = "org.freedesktop.portal.Settings"
INTERFACE_GROUP = "org.gnome.desktop.interface"

APP = "org.example.App"
DRAWING = "<svg xmlns='http://www.w3.org/2000/svg' width='64' height='64'><circle cx='32' cy='32' r='30' fill='red'/></svg>"
# The colours of the drawing, and of the icon of apps that have none.
RED = "#ff0000"
NEUTRAL = "#9aa0ad"
APPS_OF_A_PAGE = 10
ICONS_OF_A_THEME = 5000
SIZES = (16, 22, 24, 32, 48, 64, 96, 128, 256, 512)
CONTEXTS = ("actions", "apps", "categories", "devices", "emblems", "mimetypes", "places", "status")


class IconsTest(MachineTest):
    def setUp(self):
        super().setUp()
        self.share = self.folder / "share"
        self.write_apps(APP)
        self.theme("hicolor")
        # As programs name it, not as pages do.
        self.write_entry(APP, "app")

    def write_apps(self, *apps):
        items = [{"cell": "PSStaticTextCell", "id": app, "label": app, "bundleIdentifier": app} for app in apps]
        self.write_page("Root", [support.group_item(), *items, support.FOOTER_ITEM])

    def write_entry(self, app, icon):
        self.write(f"applications/{app}.desktop", f"[Desktop Entry]\nType=Application\nName={app}\nIcon={icon}\n")

    def write(self, name, content):
        file = self.share / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(content if isinstance(content, bytes) else content.encode())

    def theme(self, name, icon=None, directories=("64/apps",), more=""):
        groups = "".join(f"[{d}]\nSize={d.split('/')[0]}\nType=Threshold\n" for d in directories)
        index = f"[Icon Theme]\nName={name}\nDirectories={','.join(directories)}\n{more}\n{groups}"
        self.write(f"icons/{name}/index.theme", index)
        if icon:
            self.write(f"icons/{name}/{directories[0]}/{icon}.svg", DRAWING)

    def open_icons(self):
        """What draws the icon of an app a line, and tells its colour."""
        process = subprocess.Popen(
            [os.environ["ICON_COLORS"]],
            env=self.environment,
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
        )
        self.addCleanup(self.close_icons, process)
        return process

    def close_icons(self, process):
        _, complaints = process.communicate()
        self.assertEqual((process.returncode, complaints), (0, ""))

    def color(self, process=None, app=APP):
        """The colour of the app's icon."""
        process = process or self.open_icons()
        process.stdin.write(app + "\n")
        process.stdin.flush()
        return process.stdout.readline().strip()

    def configure(self, name, content):
        file = self.folder / "config" / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(content)

    def offer_theme(self, theme):
        portal = self.mock_daemon(self.session, PORTAL, PORTAL_PATH, SETTINGS)
        code = f"ret = {{{INTERFACE_GROUP!r}: {{'icon-theme': {theme!r}}}}}"
        portal.mock("AddMethod", GLib.Variant("(sssss)", (SETTINGS, "ReadAll", "as", "a{sa{sv}}", code)))
        return portal

    def test_theme_of_all_desktops(self):
        self.theme("hicolor", "app")
        self.assertEqual(self.color(), RED)

    def test_nobody_says_which_theme(self):
        self.theme("Chosen", "app")
        self.assertEqual(self.color(), NEUTRAL)

    def test_theme_that_the_portal_tells(self):
        self.theme("Chosen", "app")
        self.offer_theme("Chosen")
        self.assertEqual(self.color(), RED)

    def test_portal_before_the_files(self):
        self.theme("Chosen", "app")
        self.offer_theme("Other")
        self.configure("gtk-3.0/settings.ini", "[Settings]\ngtk-icon-theme-name=Chosen\n")
        self.assertEqual(self.color(), NEUTRAL)

    def test_theme_of_gtk(self):
        self.theme("Chosen", "app")
        for version in ("gtk-3.0", "gtk-4.0"):
            with self.subTest(version=version):
                self.configure(f"{version}/settings.ini", "[Settings]\ngtk-icon-theme-name = Chosen\n")
                self.assertEqual(self.color(), RED)
                (self.folder / "config" / version / "settings.ini").unlink()

    def test_theme_of_plasma_on_plasma(self):
        self.theme("Chosen", "app")
        self.configure("kdeglobals", "[General]\nTheme=x\n[Icons]\nTheme=Chosen\n")
        self.configure("gtk-3.0/settings.ini", "[Settings]\ngtk-icon-theme-name=Other\n")
        self.assertEqual(self.color(), NEUTRAL)
        self.environment["XDG_CURRENT_DESKTOP"] = "KDE"
        self.assertEqual(self.color(), RED)

    def test_inherited_theme(self):
        self.theme("Chosen", more="Inherits=Parent\n")
        self.theme("Parent", "app", more="Inherits=Chosen,Parent\n")
        self.offer_theme("Chosen")
        self.assertEqual(self.color(), RED)

    def test_theme_of_plasma_beside_groups_that_only_plasma_knows(self):
        self.theme("Chosen", "app")
        self.configure("kdeglobals", "[Colors:Header][Inactive]\nA=1\n[KDE]\nwidgetStyle[$i]=x\n[Icons]\nTheme=Chosen\n")
        self.assertEqual(self.color(), RED)

    def test_theme_that_is_changed_while_a_page_is_open(self):
        self.theme("Chosen", "app")
        portal = self.offer_theme("Other")
        icons = self.open_icons()
        self.assertEqual(self.color(icons), NEUTRAL)
        arguments = [
            GLib.Variant("s", INTERFACE_GROUP),
            GLib.Variant("s", "icon-theme"),
            GLib.Variant("v", GLib.Variant("s", "Chosen")),
        ]
        portal.mock("EmitSignal", GLib.Variant("(sssav)", (SETTINGS, "SettingChanged", "ssv", arguments)))
        deadline = time.monotonic() + PATIENCE_MS / 1000
        while self.color(icons) != RED:
            self.assertLess(time.monotonic(), deadline)

    def test_nothing_is_said_of_pictures_that_are_none(self):
        for content in (b"", b"\x89PNG\r\n\x1a\n\0\0", b"<svg><rect", b"/* XPM */\nx", bytes(5 << 20)):
            with self.subTest(content=content[:10]):
                self.write("pixmaps/app.png", content)
                # When the test ends it is checked that there were no complaints.
                self.assertEqual(self.color(), NEUTRAL)

    def test_rows_of_all_apps_have_icons_of_one_size(self):
        self.write_apps(APP, "org.example.NotInstalled")
        self.theme("hicolor", "app")
        driver = self.on_linux()
        rows = [row for row in driver.rows() if row["cell"] == "PSStaticTextCell"]
        self.assertEqual([(row["identifier"], row["icon"]) for row in rows], [(APP, True), ("org.example.NotInstalled", True)])
        views = [driver.ask("cell", row=row["index"], width=375)["cell"]["imageView"] for row in rows]
        self.assertEqual([view["image"]["size"] for view in views], [[29, 29], [29, 29]])
        self.assertEqual(views[0]["frame"], views[1]["frame"])

    def test_page_of_ten_apps_with_a_theme_of_five_thousand_icons(self):
        apps = [f"org.example.App{n}" for n in range(APPS_OF_A_PAGE)]
        directories = [f"{size}/{context}" for size in SIZES for context in CONTEXTS]
        self.theme("Large", directories=directories, more="Inherits=Larger\n")
        self.theme("Larger", directories=directories)
        self.theme("hicolor", directories=directories)
        for n in range(ICONS_OF_A_THEME):
            self.write(f"icons/Larger/{directories[n % len(directories)]}/icon{n}.svg", DRAWING)
        for n, app in enumerate(apps):
            # The last of them is nowhere, which takes the longest to find out.
            self.write_entry(app, f"icon{n * 8 + 1}" if n < APPS_OF_A_PAGE - 1 else "missing")
        self.offer_theme("Large")

        def attempt():
            start = time.monotonic()
            icons = self.open_icons()
            colors = [self.color(icons, app) for app in apps]
            return time.monotonic() - start, colors

        seconds = self.quickest(attempt, [RED] * (APPS_OF_A_PAGE - 1) + [NEUTRAL])
        print("start of a program and ten icons, a theme of 5,000 icons: %.0f ms" % (1000 * seconds))


if __name__ == "__main__":
    unittest.main()
