"""Several processes of ours on the same settings: none loses what another has changed, and each shows it."""

import fcntl
import os
import threading

from support import (
    CALLS_CHANGED,
    CALLS_PAGE,
    MESSAGES_CHANGED,
    RELOAD,
    SETTINGS_RELOADED,
    PhoneTest,
    notification,
    page_definition,
    page_of,
    rows_of,
)

JAMI = "TandemCallsApp-net.jami.Jami"
LINPHONE = "TandemCallsApp-com.belledonne.linphone"
SLIDER = "TandemSimSelectionTimeForCalls"
SWITCH = "ShowSimSlectionForCalls"
FEATURE = "TandemEnabledCalls"


class AnotherProcessChangesAKey(PhoneTest):
    def setUp(self):
        super().setUp()
        self.write_settings({"kept": 5})
        self.driver = self.drive().open("calls")
        self.calls = page_definition("Calls")

    def change(self, row, value):
        code, _, complaint = self.run_tandem("set", "calls", row, value)
        self.assertEqual((code, complaint), (0, ""))

    def shown(self, events, hidden=(), **settings):
        expected = page_of(CALLS_PAGE, self.calls, settings=settings, hidden=hidden)
        self.assertEqual(self.driver.ask("rows"), {**expected, "events": events})

    # The core library reads the file, then the root page and the page on top build their rows anew.
    CAUGHT_UP = [SETTINGS_RELOADED, RELOAD, RELOAD]

    def test_the_rows_show_it(self):
        self.change(SLIDER, "8")
        self.shown(self.CAUGHT_UP, **{SLIDER: 8.0})
        self.shown([], **{SLIDER: 8.0})

    def test_rows_come_and_go_with_it(self):
        self.change(SWITCH, "off")
        self.shown(self.CAUGHT_UP, {SLIDER}, **{SWITCH: False})
        self.change(FEATURE, "off")
        hidden = {item["id"] for item in self.calls["items"][1:-1]}
        self.shown(self.CAUGHT_UP, hidden, **{SWITCH: False, FEATURE: False})
        self.change(FEATURE, "on")
        self.shown(self.CAUGHT_UP, {SLIDER}, **{SWITCH: False, FEATURE: True})

    def test_a_change_of_another_key_keeps_it(self):
        self.change(SLIDER, "8")
        self.assertEqual(
            self.driver.events("set", row=JAMI, value=False),
            [*self.CAUGHT_UP, notification(CALLS_CHANGED), SETTINGS_RELOADED],
        )
        self.assert_stored({"kept": 5, SLIDER: 8.0, JAMI: False})
        self.shown([], **{SLIDER: 8.0, JAMI: False})

    def test_a_change_of_the_same_key_follows_it(self):
        self.change(SLIDER, "8")
        self.driver.ask("set", row=SLIDER, value=2)
        self.assert_stored({"kept": 5, SLIDER: 2.0})

    def test_row_that_is_gone_meanwhile(self):
        self.change(FEATURE, "off")
        self.assertEqual(
            self.driver.request("set", row=SLIDER, value=2),
            {"ok": False, "error": f'no row "{SLIDER}" on this page', "events": self.CAUGHT_UP},
        )
        self.assert_stored({"kept": 5, FEATURE: False})

    def test_master_switch_off_while_a_page_is_open(self):
        code, _, _ = self.run_tandem("set", "root", "TandemEnabled", "off")
        self.assertEqual(code, 0)
        self.shown(self.CAUGHT_UP, TandemEnabled=False)
        self.driver.ask("back")
        self.assertEqual(
            self.driver.rows(),
            rows_of(
                page_definition("Root"),
                settings={"TandemEnabled": False},
                hidden=[item["id"] for item in page_definition("Root")["items"][2:-4]],
            ),
        )

    def test_change_within_one_step_of_the_clock(self):
        """Same length, same file, same time: the content tells."""
        self.driver.ask("set", row=JAMI, value=False)
        self.assert_stored({"kept": 5, JAMI: False})
        status = self.settings_file.stat()
        content = self.settings_file.read_bytes()
        self.write_settings({"kept": 6, JAMI: False})
        self.assertEqual(len(self.settings_file.read_bytes()), len(content))
        os.utime(self.settings_file, ns=(status.st_atime_ns, status.st_mtime_ns))
        self.driver.ask("set", row=JAMI, value=True)
        self.assert_stored({"kept": 6, JAMI: True})

    def test_touched_and_not_changed(self):
        os.utime(self.settings_file)
        self.driver.ask("set", row=JAMI, value=False)
        self.assert_stored({"kept": 5, JAMI: False})

    def test_file_that_is_gone_and_back(self):
        content = self.settings_file.read_bytes()
        self.settings_file.unlink()
        self.assertEqual(self.driver.rows(), rows_of(self.calls))
        self.settings_file.write_bytes(content)
        self.driver.ask("set", row=JAMI, value=False)
        self.assert_stored({"kept": 5, JAMI: False})

    def test_two_sessions(self):
        other = self.drive().open("messages")
        ask = "ShowSimSlectionForMessages"
        slider = "TandemSimSelectionTimeForMessages"
        self.driver.ask("set", row=JAMI, value=False)
        self.assertEqual(
            other.events("set", row=slider, value=9),
            [*self.CAUGHT_UP, notification(MESSAGES_CHANGED), SETTINGS_RELOADED],
        )
        self.driver.ask("set", row=JAMI, value=True)
        other.ask("set", row=ask, value=False)
        self.driver.ask("set", row=SLIDER, value=2)
        self.assert_stored({"kept": 5, JAMI: True, slider: 9.0, ask: False, SLIDER: 2.0})

    def test_lock_that_another_program_keeps(self):
        """A turn waits for the lock, and goes on when it is free."""
        folder = os.open(self.preferences, os.O_RDONLY)
        self.addCleanup(os.close, folder)
        fcntl.flock(folder, fcntl.LOCK_EX)
        replies = []
        asking = threading.Thread(target=lambda: replies.append(self.driver.request("set", row=JAMI, value=False)))
        asking.start()
        content = self.read_settings()
        self.write_settings({**content, "kept": 7})
        fcntl.flock(folder, fcntl.LOCK_UN)
        asking.join()
        self.assertTrue(replies[0]["ok"])
        self.assert_stored({"kept": 7, JAMI: False})


class ManyChangesAtOnce(PhoneTest):
    """Each process changes a key of its own, again and again; the file always holds its last value."""

    CHANGES = 100
    in_memory = True

    def read_locked(self):
        folder = os.open(self.preferences, os.O_RDONLY)
        try:
            fcntl.flock(folder, fcntl.LOCK_EX)
            return self.read_settings()
        finally:
            os.close(folder)

    def alternate(self, change, key, values, lost):
        last = None
        for i in range(self.CHANGES):
            if i > 0 and self.read_locked().get(key) != last:
                lost.append((key, i))
            last = values[i % len(values)]
            change(last)

    def run_together(self, *jobs):
        lost = []
        threads = [threading.Thread(target=self.alternate, args=(*job, lost)) for job in jobs]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(lost, [])

    def test_two_sessions(self):
        self.write_settings({"kept": 5})
        first, second = self.drive().open("calls"), self.drive().open("calls")
        self.run_together(
            (lambda value: first.ask("set", row=JAMI, value=value), JAMI, (False, True)),
            (lambda value: second.ask("set", row=LINPHONE, value=value), LINPHONE, (False, True)),
        )
        self.assert_stored({"kept": 5, JAMI: True, LINPHONE: True})
        for driver in (first, second):
            self.assertEqual(driver.rows(), rows_of(page_definition("Calls"), settings={JAMI: True, LINPHONE: True}))

    def test_a_session_and_commands(self):
        self.write_settings({"kept": 5})
        driver = self.drive().open("messages")
        slider = "TandemSimSelectionTimeForMessages"

        self.CHANGES = 50

        def command(value):
            code, _, complaint = self.run_tandem("set", "calls", SLIDER, value)
            self.assertEqual((code, complaint), (0, ""))

        self.run_together(
            (lambda value: driver.ask("set", row=slider, value=value), slider, (2.0, 9.0)),
            (command, SLIDER, (4.0, 5.0)),
        )
        self.assert_stored({"kept": 5, slider: 9.0, SLIDER: 5.0})

    def test_requests_in_one_long_stream(self):
        """A process that is never idle keeps no other from its turn."""
        self.write_settings({"kept": 5})
        busy, other = self.drive().open("calls"), self.drive().open("messages")
        slider = "TandemSimSelectionTimeForMessages"
        change = f'{{"do":"set","row":"{JAMI}","value":%s}}\n'
        lines = [(change % value).encode() for value in ("false", "true")] * 500

        def feed():
            busy.process.stdin.write(b"".join(lines))
            busy.process.stdin.flush()

        feeding = threading.Thread(target=feed)
        replies = []
        reading = threading.Thread(target=lambda: replies.extend(busy.receive()["ok"] for _ in lines))
        feeding.start()
        reading.start()
        lost = []
        self.alternate(lambda value: other.ask("set", row=slider, value=value), slider, (2.0, 9.0), lost)
        feeding.join()
        reading.join()
        self.assertEqual((lost, replies), ([], [True] * len(lines)))
        self.assert_stored({"kept": 5, JAMI: True, slider: 9.0})
