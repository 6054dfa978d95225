"""What the tests of the command line driver share: a phone on a folder of its own, a session with the driver, and a
model of the rows that a page shows."""

import datetime
import json
import os
import pathlib
import plistlib
import shutil
import struct
import subprocess
import tempfile
import unittest

TANDEM = os.environ["TANDEM"]
BUNDLE = pathlib.Path(os.environ["BUNDLE"])
DEMO_PHONE = pathlib.Path(os.environ["DEMO_PHONE"])

SETTINGS_PATH = "/var/mobile/Library/Preferences/com.vexil.tandem.plist"
BUNDLE_PATH = "/Library/PreferenceBundles/TandemPreferences.bundle"
LOG_FILE_PATH = "/var/mobile/Library/Logs/com.vexil.tandem.log"

VERSION = plistlib.loads((BUNDLE / "Root.plist").read_bytes())["Version"]

ROOT_PAGE = "TDRootListController"
CALLS_PAGE = "TDCallsSettingsController"
MESSAGES_PAGE = "TDMessagesSettingsController"
BLUETOOTH_PAGE = "TDBluetoothDevicesController"
SIMS_PAGE = "TDSimSettingsController"
MISC_PAGE = "TDMiscSettingsController"

CALLS_CHANGED = "com.vexil.tandem.calls.changed"
MESSAGES_CHANGED = "com.vexil.tandem.messages.changed"
MASTER_CHANGED = "com.vexil.tandem.changed"
LOGGING_CHANGED = "com.vexil.tandem.logging.changed"

# The title image fades in when the root page is loaded, which the first reply tells of.
FADE_IN = {"event": "fadeIn", "from": 0.0, "to": 1.0, "seconds": 1.0}
RELOAD = {"event": "reload"}
SETTINGS_RELOADED = {"event": "settingsReloaded"}


def single(value):
    """The number in single precision, as the JSON of a single-precision number reads."""
    return struct.unpack("f", struct.pack("f", value))[0]


ACCENT = [single(28 / 255), single(77 / 255), single(170 / 255), 1.0]
WHITE = [1.0, 1.0, 1.0, 1.0]
LIGHT_GRAY_HALF = [single(2 / 3), single(2 / 3), single(2 / 3), 0.5]


def footer_text(version=VERSION):
    year = datetime.datetime.now(datetime.timezone.utc).year
    return f"Version {version} © {year} Vexil. All rights reserved."


def notification(name):
    return {"event": "notification", "name": name}


def insert(index, identifier):
    return {"event": "insert", "index": index, "identifier": identifier, "animated": True}


def remove(index, identifier):
    return {"event": "remove", "index": index, "identifier": identifier, "animated": True}


def push(page, title):
    return {"event": "push", "page": page, "title": title}


def pop(page, title):
    return {"event": "pop", "page": page, "title": title}


def log(text):
    return {"event": "log", "text": text}


def error(message):
    return {"event": "error", "message": message}


def page_definition(name, bundle=BUNDLE):
    return plistlib.loads((bundle / f"{name}.plist").read_bytes())


def rows_of(definition, settings=None, hidden=(), footer=None, apps=None):
    """The rows of the page definition as the driver tells of them: without the hidden identifiers, with the stored
    values, with icons for the apps of the home screen."""
    settings = settings or {}
    if apps is None:
        apps = json.loads(DEMO_PHONE.read_bytes())["homeScreen"]
    rows = []
    section = -1
    place = 0
    for item in definition["items"]:
        identifier = item.get("id")
        if identifier in hidden:
            continue
        group = item["cell"] == "PSGroupCell"
        if group or section < 0:
            section += 1
            place = 0
        is_footer = identifier == "CopyRightHeader"
        rows.append(
            {
                "index": len(rows),
                "section": section,
                "row": None if group else place,
                "identifier": identifier,
                "name": item.get("label"),
                "cell": item["cell"],
                "cellClass": item.get("cellClass"),
                "detail": item.get("detail"),
                "key": item.get("key"),
                "value": None if group else settings.get(item.get("key"), item.get("default")),
                "enabled": item.get("enabled", True),
                "icon": "icon" in item or item.get("bundleIdentifier") in apps,
                "footer": (footer or footer_text()) if is_footer else item.get("footerText"),
                "notification": item.get("PostNotification"),
            }
        )
        if not group:
            place += 1
    return rows


def page_of(page, definition, **shown):
    """The whole reply to a request for the rows, when nothing else happened since the last reply."""
    return {
        "ok": True,
        "page": page,
        "title": definition["title"],
        "barColor": ACCENT,
        "rows": rows_of(definition, **shown),
        "events": [],
    }


def typed(value):
    """The value with the types of everything in it, because True equals 1 and 1 equals 1.0."""
    if isinstance(value, dict):
        return {key: typed(entry) for key, entry in value.items()}
    if isinstance(value, list):
        return [typed(entry) for entry in value]
    return type(value).__name__, value


def strict_loads(line):
    def refuse(constant):
        raise ValueError(f"{constant} is no JSON")

    return json.loads(line, parse_constant=refuse)


class Driver:
    """A session of `tandem drive`. Closing it checks that it ended well and had nothing to complain about."""

    def __init__(self, command, **options):
        self._complaints = tempfile.TemporaryFile()
        self.process = subprocess.Popen(
            command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=self._complaints, **options
        )

    def complaints(self):
        self._complaints.seek(0)
        return self._complaints.read().decode()

    def send(self, line):
        """Sends the bytes as one line; the reply."""
        try:
            self.process.stdin.write(line + b"\n")
            self.process.stdin.flush()
        except BrokenPipeError:
            self._fail()
        return self.receive()

    def receive(self):
        line = self.process.stdout.readline()
        if not line.endswith(b"\n"):
            self._fail()
        return strict_loads(line.decode())

    def _fail(self):
        raise AssertionError(f"the session ended with {self.process.wait()}: {self.complaints()}")

    def request(self, do, **fields):
        return self.send(json.dumps({"do": do, **fields}).encode())

    def ask(self, do, **fields):
        """The same where the request must succeed."""
        reply = self.request(do, **fields)
        if not reply["ok"]:
            raise AssertionError(f"{do} {fields}: {reply}")
        return reply

    def events(self, do, **fields):
        return self.ask(do, **fields)["events"]

    def rows(self):
        return self.ask("rows")["rows"]

    def identifiers(self):
        return [row["identifier"] for row in self.rows()]

    def open(self, page):
        self.ask("open", page=page)
        return self

    def close(self):
        """Ends the session. May be called again."""
        if self.process.stdout.closed:
            return
        self.process.stdin.close()
        rest = self.process.stdout.read()
        self.process.stdout.close()
        code = self.process.wait()
        complaints = self.complaints()
        self._complaints.close()
        if (code, rest, complaints) != (0, b"", ""):
            raise AssertionError(f"the session ended with {code}, {rest!r} and: {complaints}")

    def kill(self):
        """Ends the process as a crash would."""
        self.process.kill()
        self.process.wait()
        self.process.stdin.close()
        self.process.stdout.close()
        self._complaints.close()


def memory_folder():
    """A folder that is kept in memory, where there is one with room: on a disk, every kept file must be waited for."""
    folder = "/dev/shm"
    roomy = os.access(folder, os.W_OK) and shutil.disk_usage(folder).free > 1 << 30
    return folder if roomy else None


class PhoneTest(unittest.TestCase):
    """A test on a phone of its own: a folder that is gone afterwards, the demo phone, no packages installed."""

    maxDiff = None
    in_memory = False

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="tandem-test-", dir=memory_folder() if self.in_memory else None)
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        # Other users are to reach what lies in it.
        self.folder.chmod(0o755)
        self.root = self.folder / "root"
        packages = self.folder / "packages"
        packages.mkdir()
        self.environment = {name: os.environ[name] for name in os.environ if not name.startswith(("LC_", "LANG"))}
        self.environment.update(
            HOME=str(self.folder / "home"),
            XDG_DATA_HOME=str(self.folder / "data"),
            LC_ALL="C",
            DPKG_ADMINDIR=str(packages),
        )

    def path(self, phone_path):
        return self.root / phone_path.lstrip("/")

    @property
    def settings_file(self):
        return self.path(SETTINGS_PATH)

    @property
    def preferences(self):
        return self.settings_file.parent

    @property
    def bundle(self):
        return self.path(BUNDLE_PATH)

    # The settings file

    def write_settings(self, settings, form=plistlib.FMT_BINARY):
        self.write_settings_bytes(plistlib.dumps(settings, fmt=form))

    def write_settings_bytes(self, content):
        self.preferences.mkdir(parents=True, exist_ok=True)
        self.settings_file.write_bytes(content)

    def read_settings(self):
        """The stored dictionary; the file must be a binary property list."""
        content = self.settings_file.read_bytes()
        self.assertEqual(content[:8], b"bplist00")
        return plistlib.loads(content, fmt=plistlib.FMT_BINARY)

    def assert_stored(self, settings):
        """The file holds these values, in these types, and no others."""
        self.assertEqual(typed(self.read_settings()), typed(settings))

    def preference_files(self):
        """The content of every file in the folder of the settings, by name."""
        return {file.name: file.read_bytes() for file in self.preferences.iterdir()}

    # The bundle

    def place_bundle(self):
        """Puts a copy of the bundle, whose files a test may change, on the phone; a link to the real one goes."""
        if self.bundle.is_symlink():
            self.bundle.unlink()
        if not self.bundle.exists():
            shutil.copytree(BUNDLE, self.bundle)
        return self.bundle

    def write_page(self, name, definition):
        """Replaces a page definition: its items, or the whole dictionary."""
        if isinstance(definition, list):
            definition = {**page_definition(name), "items": definition}
        (self.place_bundle() / f"{name}.plist").write_bytes(plistlib.dumps(definition))

    # The driver

    def command(self, *words):
        return [TANDEM, "--phone", "demo", "--root", str(self.root), *map(str, words)]

    def run_tandem(self, *words, **options):
        """Runs a command to its end: (exit code, standard output, standard error)."""
        options.setdefault("env", self.environment)
        options.setdefault("stdin", subprocess.DEVNULL)
        done = subprocess.run(self.command(*words), capture_output=True, **options)
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    def drive(self, *words, command=None, **options):
        """Starts a session, which is closed when the test ends."""
        options.setdefault("env", self.environment)
        driver = Driver(command or self.command(*words, "drive"), **options)
        self.addCleanup(driver.close)
        return driver


def group_item(identifier=None, **more):
    return {"cell": "PSGroupCell", **({"id": identifier} if identifier else {}), **more}


def link_item(identifier, **more):
    return {"cell": "PSLinkCell", "id": identifier, "label": identifier, **more}


FOOTER_ITEM = group_item("CopyRightHeader")
