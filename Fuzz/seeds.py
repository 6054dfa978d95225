#!/usr/bin/env python3
"""Small lists to begin with: seeds.py DIRECTORY writes them into a folder for each fuzzer."""

import pathlib
import random
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "Tests/Services/Storage/RandomLists"))
import random_lists

FUZZERS = {
    "plistlib binary": "BinaryList",
    "binary": "BinaryList",
    "plistlib XML": "XmlList",
    "XML": "XmlList",
    "string table": "StringTable",
}
LISTS = 600
LONGEST = 1000


def main():
    directory = pathlib.Path(sys.argv[1])
    for number in range(LISTS):
        form, content, _ = random_lists.random_list(random.Random(number))
        folder = directory / FUZZERS[form]
        folder.mkdir(parents=True, exist_ok=True)
        if len(content) <= LONGEST:
            (folder / str(number)).write_bytes(content)


if __name__ == "__main__":
    main()
