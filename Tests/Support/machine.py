"""A machine for tests: private buses, daemons on them that are mocks of python3-dbusmock or the real ones, and sessions
with the driver that run on it."""

import contextlib
import json
import os
import pathlib
import shlex
import shutil
import signal
import socket
import subprocess
import sys
import threading
import time

from gi.repository import Gio, GLib

import support

TEMPLATES = pathlib.Path(__file__).parent
MODEMMANAGER = str(TEMPLATES / "modemmanager.py")
PORTAL_TEMPLATE = str(TEMPLATES / "portal.py")
PORTAL = "org.freedesktop.portal.Desktop"
PORTAL_PATH = "/org/freedesktop/portal/desktop"
PATIENCE_MS = 60_000
# What daemons and files may cost a page. Sanitized programs are slower by themselves.
LONGEST_SECONDS = 1.5 if os.environ.get("TANDEM_SANITIZED") else 0.5
# Other programs use the machine too: what is never quick is not quick.
ATTEMPTS = 20
# What waits for a daemon without a bound of its own waits until the bus library gives up, after 25 seconds.
UNBOUNDED_SECONDS = 15
LOCAL_HOST = "127.0.0.1"
MOCK = "org.freedesktop.DBus.Mock"


def python_path():
    """The mocks' packages belong to the system's own Python."""
    return "/usr/bin/python3" if os.path.exists("/usr/bin/python3") else sys.executable


class Bus:
    """A bus of the test's own, and a connection to it."""

    def __init__(self, folder, name, listen=None):
        self.path = f"{folder}/{name}"
        # Without the bus's own number, which is another one after each start.
        self.address = listen or f"unix:path={self.path}"
        self.chooses_port = listen is not None
        self.services = folder / f"{name}-services"
        self.services.mkdir()
        self.config = folder / f"{name}.conf"
        self.config.write_text(
            "<!DOCTYPE busconfig PUBLIC '-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN'"
            " 'http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd'>"
            f"<busconfig><type>session</type><listen>{self.address}</listen><servicedir>{self.services}</servicedir>"
            f"{'<auth>ANONYMOUS</auth><allow_anonymous/>' if listen else ''}"
            "<policy context='default'><allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/>"
            "<allow own='*'/></policy></busconfig>"
        )
        self.start()

    def start(self):
        """Called again for a bus that was stopped, which listens where it did."""
        self.process = subprocess.Popen(
            ["dbus-daemon", f"--config-file={self.config}", "--nofork", "--print-address"],
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
        )
        # It listens when it says where.
        where = self.process.stdout.readline().decode().strip()
        if self.chooses_port:
            self.address = where
        self.connection = self.connect(self.address)

    @staticmethod
    def connect(address):
        connection = Gio.DBusConnection.new_for_address_sync(
            address,
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION,
            None,
            None,
        )
        connection.set_exit_on_close(False)
        return connection

    def clients(self):
        """The names of the connections to it."""
        names = self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "ListNames")
        return [name for name in names if name.startswith(":")]

    def call(self, name, path, interface, method, arguments=None, reply=None):
        result = self.connection.call_sync(
            name, path, interface, method, arguments, reply, Gio.DBusCallFlags.NO_AUTO_START, PATIENCE_MS, None
        )
        values = result.unpack()
        return values[0] if values else None

    def offer(self, name, command):
        """From now on the bus starts the command when somebody calls the name."""
        (self.services / f"{name}.service").write_text(f"[D-BUS Service]\nName={name}\nExec={command}\n")
        self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "ReloadConfig")

    def wait_for(self, name, present=True):
        """Waits until somebody owns the name, or nobody."""
        loop = GLib.MainLoop()
        heard = []

        def hear(is_there):
            if is_there == present:
                heard.append(name)
                loop.quit()

        watch = Gio.bus_watch_name_on_connection(
            self.connection, name, Gio.BusNameWatcherFlags.NONE, lambda *_: hear(True), lambda *_: hear(False)
        )
        alarm = GLib.timeout_add(PATIENCE_MS, loop.quit)
        loop.run()
        Gio.bus_unwatch_name(watch)
        if not heard:
            raise AssertionError(f"waited in vain for {name} to be {'there' if present else 'gone'}")
        GLib.source_remove(alarm)

    def expect_call(self, member, text):
        """What waits until somebody has called the method of that name since now, with the text in its arguments."""
        monitor = self.connect(self.address)
        loop = GLib.MainLoop()
        heard = []

        def hear(_connection, message, incoming):
            body = message.get_body()
            if incoming and message.get_member() == member and body and text in body.print_(False):
                heard.append(message)
                loop.quit()
            return None if incoming else message

        rules = GLib.Variant("(asu)", ([f"type='method_call',member='{member}'"], 0))
        monitor.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus.Monitoring", "BecomeMonitor",
            rules, None, Gio.DBusCallFlags.NONE, PATIENCE_MS, None,
        )
        monitor.add_filter(hear)

        def wait():
            alarm = GLib.timeout_add(PATIENCE_MS, loop.quit)
            if not heard:
                loop.run()
            monitor.close_sync(None)
            if not heard:
                raise AssertionError(f"waited in vain for a call of {member}")
            GLib.source_remove(alarm)

        return wait

    def hang(self):
        """It answers nobody before it wakes."""
        self.process.send_signal(signal.SIGSTOP)

    def wake(self):
        self.process.send_signal(signal.SIGCONT)

    def stop(self):
        self.wake()
        if not self.connection.is_closed():
            self.connection.close_sync(None)
        self.process.terminate()
        self.process.wait()
        self.process.stdout.close()


class FalteringBus:
    """What stands for a bus: it lets every client in, says these words to what a client says first, and then no more."""

    def __init__(self, family, place, words):
        self.words = words
        self.clients = []
        self.listener = socket.socket(family)
        self.listener.bind(place)
        self.listener.listen()
        threading.Thread(target=self.serve, daemon=True).start()

    def serve(self):
        with contextlib.suppress(OSError):
            while True:
                client, _ = self.listener.accept()
                self.clients.append(client)
                threading.Thread(target=self.greet, args=(client,), daemon=True).start()

    def greet(self, client):
        with contextlib.suppress(OSError):
            client.recv(1)
            client.sendall(self.words)

    def stop(self):
        # What waits for a client on another thread would go on when it is closed alone.
        self.listener.shutdown(socket.SHUT_RDWR)
        self.listener.close()
        for client in self.clients:
            client.close()


class Daemon:
    """A process that owns a name on a bus."""

    def __init__(self, bus, name, path, command, environment):
        self.bus = bus
        self.name = name
        self.path = path
        self.process = subprocess.Popen(
            command, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL
        )
        bus.wait_for(name)

    def call(self, interface, method, arguments=None, path=None):
        return self.bus.call(self.name, path or self.path, interface, method, arguments)

    def mock(self, method, arguments, path=None):
        return self.call(MOCK, method, arguments, path)

    def answer(self, interface, method, signature, code, path=None):
        """From now on the method runs the code, whose `ret` is its reply of that signature."""
        self.mock("AddMethod", GLib.Variant("(sssss)", (interface, method, "", signature, code)), path)

    def hang(self):
        """It keeps its name and answers nobody."""
        self.process.send_signal(signal.SIGSTOP)

    def wake(self):
        self.process.send_signal(signal.SIGCONT)

    def stop(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()


class MachineTest(support.PhoneTest):
    """A test on a machine with two buses and no daemons on them."""

    def setUp(self):
        super().setUp()
        self.system = self.start_bus("system")
        self.session = self.start_bus("session")
        runtime = self.folder / "runtime"
        runtime.mkdir(mode=0o700)
        self.environment.update(
            DBUS_SYSTEM_BUS_ADDRESS=self.system.address,
            DBUS_SESSION_BUS_ADDRESS=self.session.address,
            XDG_RUNTIME_DIR=str(runtime),
            XDG_CONFIG_HOME=str(self.folder / "config"),
            XDG_CONFIG_DIRS=str(self.folder / "etc"),
            XDG_DATA_DIRS=str(self.folder / "share"),
        )

    def start_bus(self, name, listen=None):
        bus = Bus(self.folder, name, listen)
        self.addCleanup(bus.stop)
        return bus

    def start_faltering_bus(self, family, words):
        """The address of one that says these words to every client and then hangs."""
        path = f"{self.folder}/faltering-{time.monotonic_ns()}"
        bus = FalteringBus(family, path if family == socket.AF_UNIX else (LOCAL_HOST, 0), words)
        self.addCleanup(bus.stop)
        if family == socket.AF_UNIX:
            return f"unix:path={path}"
        return f"tcp:host={LOCAL_HOST},port={bus.listener.getsockname()[1]}"

    def start_bus_proxy(self, bus, *rules):
        """The address at which programs in a sandbox reach the bus, by these rules of xdg-dbus-proxy."""
        if not shutil.which("xdg-dbus-proxy"):
            self.skipTest("xdg-dbus-proxy is not installed")
        path = f"{self.folder}/proxy-{time.monotonic_ns()}"
        ready, end = os.pipe()
        proxy = subprocess.Popen(
            ["xdg-dbus-proxy", f"--fd={end}", bus.address, path, "--filter", *rules], pass_fds=(end,)
        )
        self.addCleanup(proxy.wait)
        self.addCleanup(proxy.kill)
        os.close(end)
        self.assertEqual(os.read(ready, 1), b"x")
        # The proxy ends when its other end is closed.
        self.addCleanup(os.close, ready)
        return f"unix:path={path}"

    def start_daemon(self, bus, name, path, command):
        environment = {name: value for name, value in self.environment.items() if not name.startswith("LSAN")}
        daemon = Daemon(bus, name, path, command, environment)
        self.addCleanup(daemon.stop)
        return daemon

    def mock_template(self, template, name, path):
        return self.start_daemon(self.system, name, path, [python_path(), "-m", "dbusmock", "--template", template])

    def mock_daemon(self, bus, name, path, interface):
        """A daemon that has no methods yet."""
        kind = ["--system"] if bus is self.system else []
        return self.start_daemon(
            bus, name, path, [python_path(), "-m", "dbusmock", *kind, name, path, interface]
        )

    def portal_command(self, response):
        """What runs a portal of ours that keeps its records in the folder of the test."""
        parameters = json.dumps({"folder": str(self.folder), "response": response})
        return [python_path(), "-m", "dbusmock", "--template", PORTAL_TEMPLATE, "--parameters", parameters]

    def start_portal(self, response=0):
        return self.start_daemon(self.session, PORTAL, PORTAL_PATH, self.portal_command(response))

    def portal_record(self, name):
        """The mails or links that the portal was handed."""
        file = self.folder / name
        return [json.loads(line) for line in file.read_text().splitlines()] if file.exists() else []

    def offer_portal_that_waits(self):
        """A portal that the bus starts, and that is not there before the function is called that this returns."""
        gate = self.folder / "gate"
        os.mkfifo(gate)
        self.addCleanup(self.close_gate, gate)
        script = self.folder / "portal.sh"
        script.write_text(f"read -r _ <'{gate}' || exit\nexec {shlex.join(self.portal_command(0))}\n")
        self.session.offer(PORTAL, f"/bin/sh {script}")
        return lambda: gate.write_text("go\n")

    def close_gate(self, gate):
        """Who waits at it goes away, and who comes later finds none."""
        # The end of a pipe that nobody writes into reaches those who wait for the first who does.
        writer = os.open(gate, os.O_RDWR | os.O_NONBLOCK)
        gate.unlink()
        os.close(writer)

    def quickest(self, attempt, expected, longest=LONGEST_SECONDS):
        """The seconds of the first attempt that was quick enough, by default as quick as a page must be, and came to
        what is expected. Each attempt returns its seconds and what it came to."""
        tried = []
        for _ in range(ATTEMPTS):
            seconds, result = attempt()
            if seconds < longest and result == expected:
                return seconds
            tried.append((seconds, result))
        raise AssertionError(f"not one of these within {longest} s and {expected!r}: {tried!r}")

    @contextlib.contextmanager
    def bounded(self):
        """What is done in it does not wait until the bus library gives up."""
        start = time.monotonic()
        yield
        self.assertLess(time.monotonic() - start, UNBOUNDED_SECONDS)

    def on_linux(self):
        """A session with the driver on this machine."""
        return self.drive("--phone", "linux")
