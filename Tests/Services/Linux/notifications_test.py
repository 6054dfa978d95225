"""Notifications between processes, by way of the bus of the user."""

import pathlib
import re
import statistics
import subprocess
import time
import unittest

from gi.repository import Gio, GLib

import support
from machine import PORTAL, MachineTest, python_path

BUS = "org.freedesktop.DBus"
BUS_PATH = "/org/freedesktop/DBus"

INTERFACE = "com.vexil.DarwinNotifications"
PATH = "/com/vexil/DarwinNotifications"
MANY = 10_000
ROUND_TRIPS = 200
LISTENING_IN_SANDBOX = f"--broadcast=com.vexil.Tandem.Notifications.*={INTERFACE}.Posted@{PATH}"
TALKING_IN_SANDBOX = "--talk=com.vexil.Tandem.Notifications.*"
POSTING_IN_SANDBOX = "--own=com.vexil.Tandem.Notifications.*"
PORTALS_IN_SANDBOX = f"--talk={PORTAL}"
# Less than any daemon is waited for.
AT_ONCE_SECONDS = 0.3
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

    def ask_bus(self, method, arguments=None):
        return self.session.call(BUS, BUS_PATH, BUS, method, arguments)

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
            self.ask_bus("GetId")
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
        self.session.hang()
        driver = self.on_linux().open("calls")
        self.session.wake()
        driver.ask("set", row="ShowSimSlectionForCalls", value=False)
        self.assertEqual(watch.next(), support.CALLS_CHANGED)

    def test_bus_that_hangs_gets_what_is_posted_when_it_wakes(self):
        watch = self.watch()
        self.session.hang()
        driver = self.on_linux().open("calls")
        driver.ask("set", row="ShowSimSlectionForCalls", value=False)
        driver.ask("back")
        driver.ask("set", row="TandemEnabled", value=False)
        self.session.wake()
        self.assertEqual([watch.next(), watch.next()], [support.CALLS_CHANGED, support.MASTER_CHANGED])

    def test_bus_that_hangs_when_the_program_ends_gets_what_was_posted(self):
        watch = self.watch()
        driver = self.on_linux().open("calls")
        self.session.hang()
        driver.ask("set", row="ShowSimSlectionForCalls", value=False)
        driver.close()
        self.session.wake()
        self.assertEqual(watch.next(), support.CALLS_CHANGED)

    def test_bus_that_comes_later_gets_what_is_posted_then(self):
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.folder}/late"
        driver = self.on_linux().open("calls")
        driver.ask("set", row="ShowSimSlectionForCalls", value=False)
        self.session = self.start_bus("late")
        watch = self.watch()
        driver.ask("back")
        driver.ask("set", row="TandemEnabled", value=False)
        self.assertEqual(watch.next(), support.MASTER_CHANGED)

    def seconds_to_end(self, hang_before_start):
        """How long a session takes to end that has posted something on a bus that hangs."""

        def attempt():
            if hang_before_start:
                self.session.hang()
            driver = self.on_linux().open("calls")
            # Texts are coloured, for which the desktop is waited for.
            driver.ask("cell", row="ShowSimSlectionForCalls")
            self.session.hang()
            driver.ask("set", row="ShowSimSlectionForCalls", value=False)
            start = time.monotonic()
            driver.close()
            seconds = time.monotonic() - start
            self.session.wake()
            return seconds, None

        return self.quickest(attempt, None, AT_ONCE_SECONDS)

    def test_bus_that_hangs_does_not_delay_the_end(self):
        print("end of a session, bus hung since before it: %.0f ms" % (1000 * self.seconds_to_end(True)))
        print("end of a session, bus hung in the middle: %.0f ms" % (1000 * self.seconds_to_end(False)))

    def test_poster_owns_a_name_of_its_own(self):
        heard = []
        loop = GLib.MainLoop()

        def hear(_connection, sender, *_):
            heard.append(sender)
            if len(heard) == 2:
                loop.quit()

        self.session.connection.signal_subscribe(
            None, INTERFACE, "Posted", PATH, None, Gio.DBusSignalFlags.NONE, hear
        )
        drivers = [self.on_linux().open("calls") for _ in range(2)]
        for driver in drivers:
            driver.ask("set", row="ShowSimSlectionForCalls", value=False)
        loop.run()
        self.assertEqual(len(set(heard)), 2)
        for sender in heard:
            name = "com.vexil.Tandem.Notifications.c" + sender.removeprefix(":").replace(".", "_")
            self.assertEqual(self.ask_bus("GetNameOwner", GLib.Variant("(s)", (name,))), sender)

    def test_process_that_posts_nothing_owns_no_name(self):
        self.on_linux().open("calls")
        self.assertEqual([name for name in self.ask_bus("ListNames") if "vexil" in name], [])

    def enter_sandbox(self, *flags):
        """What is started from now on sees the bus through a proxy with these flags of the documentation."""
        documented = re.findall(r"--\w+=[^\s`]+", MANUAL.read_text())
        for flag in flags:
            self.assertIn(flag, documented)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.start_bus_proxy(self.session, *flags)

    def leave_sandbox(self):
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.session.address

    def change_calls(self):
        self.run_tandem("--phone", "linux", "set", "calls", "ShowSimSlectionForCalls", "off")

    def test_listener_in_a_sandbox(self):
        for flag in (LISTENING_IN_SANDBOX, TALKING_IN_SANDBOX):
            with self.subTest(flag=flag):
                self.enter_sandbox(flag)
                watch = self.watch()
                self.leave_sandbox()
                # One who has no name below ours is not let through.
                self.post("unnamed")
                self.change_calls()
                self.assertEqual(watch.next(), support.CALLS_CHANGED)

    def test_program_in_a_sandbox(self):
        self.start_portal()
        watch = self.watch()
        self.enter_sandbox(PORTALS_IN_SANDBOX)
        self.change_calls()
        self.assertEqual(watch.next(), support.CALLS_CHANGED)
        driver = self.on_linux()
        driver.ask("tap", row="VexilProducts")
        driver.close()
        self.assertEqual(self.portal_record("links"), ["https://vexil.example/products?from=Pairo"])

    def test_program_in_a_sandbox_and_listener_in_another(self):
        self.enter_sandbox(LISTENING_IN_SANDBOX)
        watch = self.watch()
        self.leave_sandbox()
        self.enter_sandbox(POSTING_IN_SANDBOX)
        self.change_calls()
        self.assertEqual(watch.next(), support.CALLS_CHANGED)

    def test_example_of_the_documentation(self):
        [script] = re.findall(r"```python\n(.*?)```", MANUAL.read_text(), re.DOTALL)
        self.assertLessEqual(len(script.splitlines()), 10)
        file = self.folder / "listener.py"
        file.write_text(script)
        wait_for_match = self.session.expect_call("AddMatch", INTERFACE)
        listener = Listener(self, [python_path(), "-u", file])
        wait_for_match()
        self.post(support.CALLS_CHANGED)
        self.assertEqual(listener.next(), support.CALLS_CHANGED)


if __name__ == "__main__":
    unittest.main()
