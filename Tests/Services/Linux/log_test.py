"""What a command logs, in the log of the machine."""

import plistlib
import shlex
import socket
import subprocess
import unittest

import support
from machine import MachineTest

SWITCH = "ShowSimSlectionForCalls"
# A folder of devices for the command's own process alone, in which the log is the socket of the test.
OWN_DEVICES = """
mount --rbind /dev {devices} && mount -t tmpfs none /dev && ln -s {log} /dev/log
for device in null zero urandom; do
    touch /dev/$device && mount --bind {devices}/$device /dev/$device || exit
done
exec "$@"
"""


class MachineLogTest(MachineTest):
    def setUp(self):
        super().setUp()
        self.log = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.addCleanup(self.log.close)
        self.log.bind(str(self.folder / "log"))
        self.log.setblocking(False)
        (self.folder / "devices").mkdir()
        try:
            done = subprocess.run(self.with_log("true"), capture_output=True)
            permitted = done.returncode == 0
        except FileNotFoundError:
            permitted = False
        if not permitted:
            self.skipTest("a mount of its own is not permitted here")

    def with_log(self, *command):
        script = OWN_DEVICES.format(
            devices=shlex.quote(str(self.folder / "devices")), log=shlex.quote(str(self.folder / "log"))
        )
        return ["unshare", "-m", "/bin/sh", "-c", script, "sh", *command]

    def logged(self):
        records = []
        try:
            while True:
                records.append(self.log.recv(1 << 16).decode())
        except BlockingIOError:
            return records

    def test_a_save_that_failed_is_logged_and_shown(self):
        self.place_bundle()
        self.write_settings_bytes(plistlib.dumps([1, 2]))
        done = subprocess.run(
            self.with_log(*self.command("--phone", "linux", "--no-provision", "set", "calls", SWITCH, "off")),
            env=self.environment,
            capture_output=True,
        )
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        shown = [line for line in done.stdout.decode().splitlines() if line.startswith("log  text ")]
        self.assertEqual(len(shown), 1)
        line = shown[0].removeprefix("log  text ")
        self.assertIn(f"Unable to save settings to {support.SETTINGS_PATH}", line)
        self.assertEqual([record.partition("]: ")[2] for record in self.logged()], [line])


if __name__ == "__main__":
    unittest.main()
