"""Notifications between processes, by way of the bus of the user."""

import pathlib
import re
import signal
import statistics
import subprocess
import time
import unittest

from gi.repository import Gio, GLib

import support
from machine import MachineTest, python_path

INTERFACE = "com.vexil.DarwinNotifications"
PATH = "/com/vexil/DarwinNotifications"
MANY = 10_000
ROUND_TRIPS = 200
MANUAL = pathlib.Path(__file__).parents[3] / "Documentation" / "notifications.md"


class Listener:
    """Another process that prints the names as they come, a line each."""

    def __init__(self, test, command, ready=None):
        self.process = subprocess.Popen(
            command, env=test.environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True
        )
        test.addCleanup(self.stop)
        if ready:
            test.assertEqual(self.process.stderr.readline().strip(), ready)

    def next(self):
        return self.process.stdout.readline().rstrip("\n")

    def stop(self):
        self.process.kill()
        self.process.wait()
        self.process.stdout.close()
        self.process.stderr.close()


class NotificationsTest(MachineTest):
    def watch(self, *names):
        return Listener(self, [support.TANDEM, "watch", *names], ready="watching")

    def post(self, name):
        self.session.connection.emit_signal(None, PATH, INTERFACE, "Posted", GLib.Variant("(s)", (name,)))

    def flush(self):
        self.session.connection.flush_sync(None)

    def test_change_of_one_process_reaches_another(self):
        watch = self.watch()
        self.run_tandem("--phone", "linux", "set", "calls", "ShowSimSlectionForCalls", "off")
        self.assertEqual(watch.next(), support.CALLS_CHANGED)

    def test_names_that_were_asked_for_alone(self):
        watch = self.watch(support.CALLS_CHANGED, "a name, with 'all' \\ sorts")
        for name in ("other", "a name, with 'all' \\ sorts", support.MESSAGES_CHANGED, support.CALLS_CHANGED):
            self.post(name)
        self.assertEqual(watch.next(), "a name, with 'all' \\ sorts")
        self.assertEqual(watch.next(), support.CALLS_CHANGED)

    def test_names_that_would_change_the_terminal(self):
        watch = self.watch()
        self.post("\x1b[31m\x07a\nb\r\u009bü\u202e")
        self.assertEqual(watch.next(), r"\x1b[31m\x07a\x0ab\x0d\xc2\x9bü\xe2\x80\xae")

    def test_ten_thousand_in_order(self):
        watch = self.watch()
        # From a thread of GLib's own, while this one reads what comes out.
        for n in range(MANY):
            self.post(f"n{n}")
        for n in range(MANY):
            self.assertEqual(watch.next(), f"n{n}")

    def test_many_posted_by_a_session(self):
        watch = self.watch(support.CALLS_CHANGED, support.MASTER_CHANGED)
        driver = self.on_linux().open("calls")
        expected = []
        for n in range(100):
            driver.ask("set", row="ShowSimSlectionForCalls", value=bool(n % 2))
            expected.append(support.CALLS_CHANGED)
        driver.ask("back")
        driver.ask("set", row="TandemEnabled", value=False)
        expected.append(support.MASTER_CHANGED)
        self.assertEqual([watch.next() for _ in expected], expected)

    def test_latency(self):
        watch = self.watch()
        latencies = []
        floors = []
        for _ in range(ROUND_TRIPS):
            start = time.perf_counter()
            self.post("x")
            self.flush()
            watch.next()
            latencies.append(time.perf_counter() - start)
            start = time.perf_counter()
            self.session.call(
                "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId"
            )
            floors.append(time.perf_counter() - start)
        print(
            "from posting to another process's line: median %.0f us; a call to the bus itself: median %.0f us"
            % (statistics.median(latencies) * 1e6, statistics.median(floors) * 1e6)
        )

    def test_bus_that_goes_away_ends_the_watch(self):
        watch = self.watch()
        self.session.process.kill()
        self.session.process.wait()
        self.assertEqual(watch.process.wait(), 1)
        self.assertIn("session bus", watch.process.stderr.read())

    def test_no_bus(self):
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.folder}/nothing"
        code, _, complaint = self.run_tandem("watch")
        self.assertEqual(code, 1)
        self.assertIn("no session bus", complaint)

    def test_bus_that_hung_when_the_program_started_gets_what_is_posted_later(self):
        watch = self.watch(support.CALLS_CHANGED)
        self.session.process.send_signal(signal.SIGSTOP)
        self.addCleanup(self.session.process.send_signal, signal.SIGCONT)
        driver = self.on_linux().open("calls")
        self.session.process.send_signal(signal.SIGCONT)
        # It has come back when it answers somebody.
        self.session.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId")
        driver.ask("set", row="ShowSimSlectionForCalls", value=False)
        self.assertEqual(watch.next(), support.CALLS_CHANGED)

    def test_example_of_the_documentation(self):
        [script] = re.findall(r"```python\n(.*?)```", MANUAL.read_text(), re.DOTALL)
        self.assertLessEqual(len(script.splitlines()), 10)
        file = self.folder / "listener.py"
        file.write_text(script)
        waiter = self.wait_for_match()
        listener = Listener(self, [python_path(), "-u", file])
        waiter()
        self.post(support.CALLS_CHANGED)
        self.assertEqual(listener.next(), support.CALLS_CHANGED)

    def wait_for_match(self):
        """What waits until another process has asked the bus for signals of ours."""
        monitor = Gio.DBusConnection.new_for_address_sync(
            self.session.address,
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION,
            None,
            None,
        )
        loop = GLib.MainLoop()

        def hear(_connection, message, incoming):
            body = message.get_body()
            if incoming and message.get_member() == "AddMatch" and INTERFACE in body.unpack()[0]:
                loop.quit()
            return None if incoming else message

        rules = GLib.Variant("(asu)", (["type='method_call',member='AddMatch'"], 0))
        monitor.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus.Monitoring", "BecomeMonitor",
            rules, None, Gio.DBusCallFlags.NONE, -1, None,
        )
        monitor.add_filter(hear)

        def wait():
            loop.run()
            monitor.close_sync(None)

        return wait


if __name__ == "__main__":
    unittest.main()
