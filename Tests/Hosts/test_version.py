"""The installed version in the footers: the package manager's, or the bundle's where that gives none."""

import os
import plistlib
import resource
import shutil
import subprocess

from support import VERSION, PhoneTest, footer_text, page_definition, rows_of

PACKAGE = "com.vexil.tandem"
DPKG_TOOLS = ("dpkg", "dpkg-deb", "/usr/bin/dpkg-query")


class InstalledVersion(PhoneTest):
    def setUp(self):
        super().setUp()
        self.admin = self.folder / "packages"

    def require_dpkg(self):
        if not all(map(shutil.which, DPKG_TOOLS)):
            self.skipTest("dpkg is not there")

    def dpkg(self, *words):
        subprocess.run(
            [
                "dpkg",
                f"--admindir={self.admin}",
                f"--instdir={self.folder / 'installed'}",
                f"--log={self.folder / 'dpkg.log'}",
                "--force-not-root",
                "--force-bad-path",
                *map(str, words),
            ],
            check=True,
            capture_output=True,
        )

    def install(self, version):
        """Really installs a package of that version, into a folder and a database of the test's own."""
        self.require_dpkg()
        for folder in ("updates", "info"):
            (self.admin / folder).mkdir(exist_ok=True)
        (self.admin / "status").touch()
        (self.folder / "installed").mkdir(exist_ok=True)
        control = self.folder / "package/DEBIAN/control"
        control.parent.mkdir(parents=True, exist_ok=True)
        control.write_text(
            f"Package: {PACKAGE}\n"
            f"Version: {version}\n"
            "Architecture: all\n"
            "Maintainer: Vexil <support@vexil.example>\n"
            "Description: A package without files\n"
        )
        package = self.folder / "package.deb"
        subprocess.run(["dpkg-deb", "--build", self.folder / "package", package], check=True, capture_output=True)
        self.dpkg("--install", package)

    def hook(self, driver, year=2026):
        return driver.ask("hook", name="copryRightSpecifierText:", value=year)["result"]

    def assert_version(self, version, **options):
        """In the footer of each page that has one, and in the answer of the hook."""
        driver = self.drive(**options)
        driver.ask("open", page="root")
        self.assertEqual(driver.rows(), rows_of(page_definition("Root"), footer=footer_text(version)))
        for page, name, hidden in (
            ("calls", "Calls", ()),
            ("messages", "Messages", {"TandemIMToTextAsk"}),
            ("misc", "Misc", ()),
        ):
            driver.open(page)
            self.assertEqual(
                driver.rows(), rows_of(page_definition(name), hidden=hidden, footer=footer_text(version))
            )
            self.assertEqual(self.hook(driver), f"Version {version} © 2026 Vexil. All rights reserved.")
            driver.ask("back")
        driver.close()

    def test_installed_package(self):
        self.install("1:2.5.1~beta-3")
        self.assert_version("1:2.5.1~beta-3")
        shown = self.run_tandem("show", "misc")
        self.assertEqual((shown[0], shown[1].splitlines()[-1].strip()), (0, footer_text("1:2.5.1~beta-3")))

    def test_package_that_is_updated_and_removed_while_a_session_is_open(self):
        """The hook asks anew each time; a page keeps the footer that it was built with."""
        self.install("2.0")
        driver = self.drive().open("calls")
        self.assertEqual(driver.rows()[-1]["footer"], footer_text("2.0"))
        self.install("2.1")
        self.assertEqual(self.hook(driver), "Version 2.1 © 2026 Vexil. All rights reserved.")
        driver.ask("back")
        driver.open("calls")
        self.assertEqual(driver.rows()[-1]["footer"], footer_text("2.1"))
        self.dpkg("--remove", PACKAGE)
        self.assertEqual(self.hook(driver), f"Version {VERSION} © 2026 Vexil. All rights reserved.")

    def test_package_that_is_not_installed(self):
        self.assert_version(VERSION)

    def test_another_package(self):
        self.require_dpkg()
        (self.admin / "status").write_text(
            "Package: com.vexil.tandem2\nStatus: install ok installed\nVersion: 9\nArchitecture: all\n"
            "Maintainer: x\nDescription: x\n"
        )
        self.assert_version(VERSION)

    def test_database_that_cannot_be_read(self):
        (self.admin / "status").write_bytes(b"\0\xff not a database")
        self.assert_version(VERSION)
        self.admin.rename(self.folder / "elsewhere")
        self.assert_version(VERSION)

    def test_version_of_the_bundle(self):
        for version, shown in (("3.1", "3.1"), ("", ""), (4, "4"), (None, "(null)")):
            definition = {**page_definition("Root"), "Version": version}
            if version is None:
                del definition["Version"]
            self.place_bundle()
            (self.bundle / "Root.plist").write_bytes(plistlib.dumps(definition))
            self.assert_version(shown)

    def test_neither_package_nor_bundle_gives_one(self):
        (self.place_bundle() / "Root.plist").unlink()
        driver = self.drive()
        driver.ask("rows")
        self.assertEqual(self.hook(driver), "Version (null) © 2026 Vexil. All rights reserved.")

    def test_page_without_a_footer_row(self):
        self.write_page("Misc", page_definition("Misc")["items"][:-1])
        driver = self.drive().open("misc")
        self.assertIsNone(driver.ask("hook", name="copyRightSpecifier")["result"])
        self.assertEqual([row["footer"] for row in driver.rows() if row["footer"] == footer_text()], [])


class NoPackageManager(InstalledVersion):
    """/usr/bin holds a shell and nothing else, for the driver's own process alone."""

    # The folder over /usr/bin, and the command.
    IN_OWN_MOUNTS = 'mount --bind "$1" /usr/bin && shift && exec "$@"'

    def in_own_mounts(self, *command):
        return ["unshare", "-m", "/bin/sh", "-c", self.IN_OWN_MOUNTS, "sh", str(self.tools), *command]

    def setUp(self):
        super().setUp()
        self.tools = self.folder / "tools"
        self.tools.mkdir()
        shutil.copy(os.path.realpath("/bin/sh"), self.tools / "sh")
        try:
            check = self.in_own_mounts("/bin/sh", "-c", "test ! -e /usr/bin/dpkg-query")
            permitted = subprocess.run(check, capture_output=True).returncode == 0
        except FileNotFoundError:
            permitted = False
        if not permitted:
            self.skipTest("a mount of its own is not permitted here")

    def assert_version(self, version, **options):
        super().assert_version(version, command=self.in_own_mounts(*self.command("drive")), **options)

    def test_installed_package(self):
        """Nobody can tell that it is."""
        self.install("2.5")
        self.assert_version(VERSION)
        done = subprocess.run(
            self.in_own_mounts(*self.command("show", "misc")), env=self.environment, capture_output=True
        )
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        self.assertEqual(done.stdout.decode().splitlines()[-1].strip(), footer_text())

    # Needs the package manager.
    test_package_that_is_updated_and_removed_while_a_session_is_open = None


class NoShell(PhoneTest):
    """Commands that cannot be started at all."""

    def test_no_more_processes(self):
        def no_processes():
            resource.setrlimit(resource.RLIMIT_NPROC, (0, 0))

        other = {"user": 65534, "group": 65534, "extra_groups": []} if os.geteuid() == 0 else {}
        self.root.mkdir()
        if other:
            os.chown(self.root, 65534, 65534)
        # A leak checker would need a process of its own.
        environment = {**self.environment, "ASAN_OPTIONS": "detect_leaks=0"}
        driver = self.drive(preexec_fn=no_processes, env=environment, **other)
        self.assertEqual(driver.ask("rows")["rows"][-1]["footer"], footer_text())
