"""Which files of a folder were opened meanwhile, and how: asked of the kernel, which tells of every program."""

import collections
import ctypes
import os
import struct

CLOSED_AFTER_WRITING = 0x8
CLOSED_AFTER_READING = 0x10
# Not counted, but between two closings that are alike: the kernel would tell of those as one.
OPENED = 0x20
EVENT = struct.Struct("iIII")

libc = ctypes.CDLL(None, use_errno=True)


class OpenedFiles:
    """Counts from its making on."""

    def __init__(self, folder):
        self._queue = libc.inotify_init1(os.O_NONBLOCK | os.O_CLOEXEC)
        mask = OPENED | CLOSED_AFTER_WRITING | CLOSED_AFTER_READING
        if self._queue < 0 or libc.inotify_add_watch(self._queue, os.fsencode(folder), mask) < 0:
            raise OSError(ctypes.get_errno(), f"{folder} cannot be watched")

    def take(self):
        """How often each file was opened to be read, and to be written, since the last call."""
        read, written = collections.Counter(), collections.Counter()
        while content := self._pending():
            while content:
                _, mask, _, length = EVENT.unpack_from(content)
                name = os.fsdecode(content[EVENT.size : EVENT.size + length].rstrip(b"\0"))
                read[name] += bool(mask & CLOSED_AFTER_READING)
                written[name] += bool(mask & CLOSED_AFTER_WRITING)
                content = content[EVENT.size + length :]
        return dict(+read), dict(+written)

    def _pending(self):
        try:
            return os.read(self._queue, 1 << 16)
        except BlockingIOError:
            return b""

    def close(self):
        os.close(self._queue)
