#!/usr/bin/env python3
"""Random property lists, read and written again by our code, compared with what Python's plistlib makes of both.

    random_lists.py PROGRAM COUNT [SEED]

PROGRAM is CopyLists. The lists are of five forms: binary and XML as plistlib writes them; binary, XML and string tables
as they are written here, in every width, encoding and spelling that the formats allow.
"""

import base64
import collections
import datetime
import plistlib
import random
import struct
import subprocess
import sys

LISTS_AT_ONCE = 2000
REFERENCE_DATE = datetime.datetime(2001, 1, 1)
MOST_SECONDS = (datetime.datetime.max - REFERENCE_DATE) // datetime.timedelta(seconds=1)
LEAST_SECONDS = (datetime.datetime.min - REFERENCE_DATE) // datetime.timedelta(seconds=1)
# One list in so many has objects enough for references of two bytes, or of four.
HUNDREDS_OF_OBJECTS = 200
THOUSANDS_OF_OBJECTS = 50_000

ALPHABETS = [
    "abcdefghijklmnopqrstuvwxyz ABC 0123456789",
    " <>&\"'\\/;=%@$.-_]\t\n",
    "äöüßéñ¡ÿ\u0080\u07ff",
    "電話日本語\u0800\ud7ff\ue000\ufffd",
    "😀🇩🇪\U00010000\U0010fffd",
]
REALS = [0.0, -0.0, 0.1, 1.0, -2.5, 1e22, 5e-324, 1.7976931348623157e308, *map(float, ["inf", "-inf", "nan"])]
CONTROLS = "\0\1\7\b\v\f\r\x1b\x7f"


class Values:
    """Random values. What a format cannot express is left out."""

    def __init__(self, chance, controls, uids, fractions):
        self.chance = chance
        self.uids = uids
        self.fractions = fractions
        self.alphabets = ALPHABETS + ([CONTROLS] if controls else [])
        self.made = []

    def text(self):
        length = self.chance.choice([0, 1, 3, 8, 14, 15, 16, 30])
        if self.rarely(50):
            length = self.chance.choice([254, 255, 256])
        if self.rarely(2000):
            length = self.chance.choice([65535, 65536, 70000])
        alphabet = self.chance.choice(self.alphabets)
        if self.rarely(4):
            alphabet += self.chance.choice(self.alphabets)
        return "".join(self.chance.choices(alphabet, k=length))

    def rarely(self, times):
        return self.chance.randrange(times) == 0

    def integer(self):
        edge = 1 << self.chance.choice([0, 7, 8, 15, 16, 24, 31, 32, 40, 53, 62, 63, 64])
        below = self.chance.randrange(edge + 1)
        number = self.chance.choice([below, edge - 1, edge, edge + 1, -edge, -edge - 1, 1 - edge])
        return min(max(number, -(1 << 63)), (1 << 64) - 1)

    def real(self):
        if self.rarely(2):
            return self.chance.choice(REALS)
        return struct.unpack(">d", self.chance.randbytes(8))[0]

    def date(self):
        if self.rarely(2):
            seconds, micros = self.chance.randint(-(10**9), 10**9), self.chance.randrange(1_000_000)
        else:
            # Parts of 64 keep all their bits in every year.
            seconds, micros = self.chance.randint(LEAST_SECONDS, MOST_SECONDS), self.chance.randrange(64) * 15_625
        return REFERENCE_DATE + datetime.timedelta(seconds=seconds, microseconds=micros if self.fractions else 0)

    def data(self):
        length = self.chance.choice([0, 1, 2, 3, 14, 15, 16, 100])
        return self.chance.randbytes(self.chance.choice([255, 256, 65536, 70000]) if self.rarely(500) else length)

    def uid(self):
        return plistlib.UID(self.chance.randrange(1 << self.chance.choice([1, 8, 9, 16, 17, 32, 33, 64])))

    def scalar(self):
        makers = [self.text, self.text, self.integer, self.integer, self.real, self.date, self.data, self.boolean]
        return self.chance.choice(makers + ([self.uid] if self.uids else []))()

    def boolean(self):
        return self.chance.choice([True, False])

    def container(self, depth):
        size = self.chance.choice([0, 1, 1, 2, 3, 4, 14 if self.rarely(10) else 2, 15 if self.rarely(10) else 3])
        if self.rarely(2):
            return [self.value(depth - 1) for _ in range(size)]
        return {self.text(): self.value(depth - 1) for _ in range(size)}

    def value(self, depth):
        if self.made and self.rarely(8):
            return self.chance.choice(self.made)
        value = self.scalar() if depth == 0 or self.rarely(2) else self.container(depth)
        self.made.append(value)
        return value

    def root(self):
        if self.rarely(HUNDREDS_OF_OBJECTS):
            return [self.scalar() for _ in range(self.chance.choice([254, 255, 256, 257, 400]))]
        if self.rarely(THOUSANDS_OF_OBJECTS):
            return [number for number in range(self.chance.choice([65534, 65535, 65536, 70000]))]
        return self.value(self.chance.choice([1, 2, 3, 3, 4, 6]))


def width_of(number):
    """The least bytes that the number fits in."""
    return max(1, (number.bit_length() + 7) // 8)


class BinaryList:
    """A binary list whose widths, kinds of text and order of objects are random. Equal objects may stand twice."""

    def __init__(self, chance, root):
        self.chance = chance
        self.objects = []
        self.indices = {}
        self.root = self.add(root)

    def add(self, value):
        known = self.indices.get(id(value))
        if known is not None and self.chance.randrange(2):
            return known
        index = len(self.objects)
        self.objects.append(None)
        if isinstance(value, list):
            self.objects[index] = (0xA0, [self.add(item) for item in value])
        elif isinstance(value, dict):
            keys = list(value)
            self.chance.shuffle(keys)
            self.objects[index] = (0xD0, [self.add(key) for key in keys] + [self.add(value[key]) for key in keys])
        else:
            self.objects[index] = self.scalar(value)
        self.indices[id(value)] = index
        return index

    def wide(self, number, widths):
        """The number in a random one of the widths that it fits in."""
        width = self.chance.choice([width for width in widths if width >= width_of(number)])
        return width, number.to_bytes(width, "big")

    def integer(self, number):
        if number < 0:
            width = self.chance.choice([8, 16])
            return bytes([0x10 | width.bit_length() - 1]) + number.to_bytes(width, "big", signed=True)
        # From eight bytes on there is a sign.
        width, content = self.wide(number, [1, 2, 4, 16] if number >= 1 << 63 else [1, 2, 4, 8, 16])
        return bytes([0x10 | width.bit_length() - 1]) + content

    def marker(self, marker, count):
        if count < 15 and self.chance.randrange(4):
            return bytes([marker | count])
        width, content = self.wide(count, [1, 2, 4, 8])
        return bytes([marker | 15, 0x10 | width.bit_length() - 1]) + content

    def text(self, text):
        if text.isascii() and self.chance.randrange(4):
            return self.marker(0x50, len(text)) + text.encode("ascii")
        units = text.encode("utf-16be")
        return self.marker(0x60, len(units) // 2) + units

    def real(self, number):
        try:
            single = struct.pack(">f", number)
        except OverflowError:
            single = b""
        if single and struct.unpack(">f", single)[0] == number and self.chance.randrange(2):
            return b"\x22" + single
        return b"\x23" + struct.pack(">d", number)

    def scalar(self, value):
        if isinstance(value, bool):
            return b"\x09" if value else b"\x08"
        if isinstance(value, int):
            return self.integer(value)
        if isinstance(value, float):
            return self.real(value)
        if isinstance(value, str):
            return self.text(value)
        if isinstance(value, bytes):
            return self.marker(0x40, len(value)) + value
        if isinstance(value, datetime.datetime):
            return b"\x33" + struct.pack(">d", (value - REFERENCE_DATE).total_seconds())
        width, content = self.wide(value.data, range(1, 17))
        return bytes([0x80 | width - 1]) + content

    def encode(self):
        count = len(self.objects)
        reference_size = self.chance.randint(width_of(count - 1), 8)
        content = bytearray(b"bplist00")
        offsets = [0] * count
        # Objects have other places in the table than here, and yet others in the file.
        places = self.chance.sample(range(count), count)
        for index in self.chance.sample(range(count), count):
            offsets[places[index]] = len(content)
            found = self.objects[index]
            if isinstance(found, tuple):
                marker, members = found
                content += self.marker(marker, len(members) // (2 if marker == 0xD0 else 1))
                found = b"".join(places[member].to_bytes(reference_size, "big") for member in members)
            content += found
            if not self.chance.randrange(10):
                content += bytes(self.chance.randrange(5))
        offset_size = self.chance.randint(width_of(len(content)), 8)
        table = b"".join(offset.to_bytes(offset_size, "big") for offset in offsets)
        trailer = struct.pack(">6x2B3Q", offset_size, reference_size, count, places[self.root], len(content))
        return bytes(content) + table + trailer


class XmlList:
    """An XML list in a random encoding, with random spellings of each element."""

    ENCODINGS = [
        ("UTF-8", "utf-8"),
        ("utf-8", "utf-8-sig"),
        ("UTF-16", "utf-16"),
        ("ISO-8859-1", "latin-1"),
        ("US-ASCII", "ascii"),
    ]
    DOCTYPES = [
        "",
        "<!DOCTYPE plist>",
        "<!DOCTYPE plist [ ]>",
        '<!DOCTYPE plist PUBLIC "-//DTD//EN" "list.dtd" [<!-- [ --> <!ENTITY e "&#38;#60;">]>',
    ]

    def __init__(self, chance, root):
        self.chance = chance
        self.root = root
        self.name, self.codec = chance.choice(self.ENCODINGS)

    def encode(self):
        doctype = self.chance.choice(self.DOCTYPES)
        declared = self.name != "UTF-8" or self.chance.randrange(2)
        text = f'<?xml version="1.0" encoding="{self.name}"?>\n' if declared else ""
        text += doctype + self.space() + '<plist version="1.0">' + self.element(self.root) + "</plist>" + self.space()
        return text.encode(self.codec)

    def space(self):
        return self.chance.choice(["", "", "\n", "  \t", "<!-- <true/> -->", "<?pi?>"])

    def character(self, character):
        code = ord(character)
        reference = self.chance.choice([f"&#{code};", f"&#x{code:x};", f"&#x{code:04X};"])
        named = {"<": "&lt;", ">": "&gt;", "&": "&amp;", '"': "&quot;", "'": "&apos;"}
        if character in "<&>\r" or not self.chance.randrange(20):
            return self.chance.choice([reference, named.get(character, reference)])
        try:
            character.encode(self.codec)
        except UnicodeEncodeError:
            return reference
        return character

    def text(self, text):
        if "]]>" not in text and "\r" not in text and not self.chance.randrange(4):
            try:
                text.encode(self.codec)
                return f"<![CDATA[{text}]]>"
            except UnicodeEncodeError:
                pass
        split = self.chance.randrange(len(text) + 1)
        comment = self.chance.choice(["", "", "<!-- c -->"])
        return "".join(map(self.character, text[:split])) + comment + "".join(map(self.character, text[split:]))

    def integer(self, number):
        digits = self.chance.choice([str(abs(number)), str(abs(number)), f"0x{abs(number):x}", f"00{abs(number)}"])
        return self.chance.choice(["", " ", "\n"]) + ("-" if number < 0 else self.chance.choice(["", "+"])) + digits

    def data(self, data):
        text = base64.b64encode(data).decode()
        return "\n\t".join(text[i : i + 76] for i in range(0, len(text), 76)) if self.chance.randrange(2) else text

    def element(self, value):
        if isinstance(value, bool):
            return self.chance.choice(["<{0}/>", "<{0}></{0}>", "<{0} />"]).format("true" if value else "false")
        if isinstance(value, dict):
            entries = "".join(
                f"{self.space()}<key>{self.text(key)}</key>{self.space()}{self.element(entry)}"
                for key, entry in value.items()
            )
            return f"<dict>{entries}{self.space()}</dict>"
        if isinstance(value, list):
            return "<array>" + "".join(self.space() + self.element(item) for item in value) + self.space() + "</array>"
        name, content = {
            int: lambda: ("integer", self.integer(value)),
            float: lambda: ("real", repr(value)),
            str: lambda: ("string", self.text(value)),
            bytes: lambda: ("data", self.data(value)),
            datetime.datetime: lambda: ("date", f"{value.year:04}" + value.strftime("-%m-%dT%H:%M:%SZ")),
        }[type(value)]()
        return f"<{name}>{content}</{name}>"


class StringTable:
    """A string table with random quotes, escapes, comments and encoding."""

    ESCAPES = {character: name for character, name in zip("\n\t\r\a\b\f\v\"'\\", "ntrabfv\"'\\")}
    WORD = set("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_$:.-")

    def __init__(self, chance, entries):
        self.chance = chance
        self.entries = entries

    def encode(self):
        text = "".join(
            f"{self.space()}{self.text(key)}{self.space()}={self.space()}{self.text(entry)}{self.space()};"
            for key, entry in self.entries.items()
        )
        encoding = self.chance.choice(["utf-8", "utf-8-sig", "utf-16", "utf-16be"])
        mark = b"\xfe\xff" if encoding == "utf-16be" else b""
        return mark + (text + "/* end */").encode(encoding)

    def space(self):
        return self.chance.choice(["", " ", "\n", " /* ;=\"*/ ", " // '\n"])

    def character(self, character, quote):
        code = ord(character)
        if character in self.ESCAPES and (character in (quote, "\\") or self.chance.randrange(2)):
            return "\\" + self.ESCAPES[character]
        if self.chance.randrange(6):
            return character
        if code < 256 and self.chance.randrange(2):
            return f"\\{code:03o}"
        units = struct.unpack(f">{len(character.encode('utf-16be')) // 2}H", character.encode("utf-16be"))
        return "".join(self.chance.choice([f"\\U{unit:04x}", f"\\U{unit:04X}"]) for unit in units)

    def text(self, text):
        if text and set(text) <= self.WORD and self.chance.randrange(2):
            return text
        quote = self.chance.choice("\"\"'")
        return quote + "".join(self.character(character, quote) for character in text) + quote


def random_list(chance):
    """The form of a list, its bytes, and the value that they stand for."""
    form = chance.choice(["plistlib binary", "plistlib XML", "binary", "binary", "XML", "string table"])
    if form in ("plistlib binary", "binary"):
        value = Values(chance, controls=True, uids=True, fractions=True).root()
    elif form == "string table":
        values = Values(chance, controls=True, uids=False, fractions=False)
        value = {values.text(): values.text() for _ in range(chance.randrange(6))}
        return form, StringTable(chance, value).encode(), value
    else:
        value = Values(chance, controls=False, uids=False, fractions=False).root()
    if form == "binary":
        return form, BinaryList(chance, value).encode(), value
    if form == "XML":
        return form, XmlList(chance, value).encode(), value
    encoding = plistlib.FMT_BINARY if form == "plistlib binary" else plistlib.FMT_XML
    content = plistlib.dumps(value, fmt=encoding, sort_keys=bool(chance.randrange(2)))
    # It takes 0.0 and -0.0 for one object.
    return form, content, plistlib.loads(content)


def is_same(value, other):
    if type(value) is not type(other):
        return False
    if isinstance(value, dict):
        return value.keys() == other.keys() and all(is_same(value[key], other[key]) for key in value)
    if isinstance(value, list):
        return len(value) == len(other) and all(map(is_same, value, other))
    if isinstance(value, float):
        return struct.pack(">d", value) == struct.pack(">d", other) or (value != value and other != other)
    return value == other


def copies_of(program, contents):
    given = b"".join(struct.pack(">I", len(content)) + content for content in contents)
    copied = subprocess.run([program], input=given, stdout=subprocess.PIPE, check=True).stdout
    at = 0
    for _ in contents:
        (size,) = struct.unpack_from(">I", copied, at)
        at += 4 + size
        yield copied[at - size : at]


def is_copied(value, copy):
    try:
        return copy.startswith(b"bplist00") and is_same(value, plistlib.loads(copy))
    except plistlib.InvalidFileException:
        return False


def check(program, count, seed):
    """The lists that were copied wrong, and how many there were of each form."""
    wrong = []
    forms = collections.Counter()
    for first in range(0, count, LISTS_AT_ONCE):
        numbers = range(first, min(first + LISTS_AT_ONCE, count))
        lists = [random_list(random.Random(seed * 1_000_000_007 + number)) for number in numbers]
        copies = copies_of(program, [content for _, content, _ in lists])
        for number, (form, content, value), copy in zip(numbers, lists, copies):
            forms[form] += 1
            if not is_copied(value, copy):
                wrong.append((number, form, content, value, copy))
    return wrong, forms


def main():
    program, count = sys.argv[1], int(sys.argv[2])
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else 1
    wrong, forms = check(program, count, seed)
    for number, form, content, value, copy in wrong[:10]:
        print(f"list {number}, {form}: {content[:500]!r}")
        print(f"  stands for {repr(value)[:500]}")
        print(f"  was copied as {copy[:500]!r}")
    print(f"{count} lists, seed {seed}: {len(wrong)} wrong")
    print(", ".join(f"{number} {form}" for form, number in sorted(forms.items())))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
