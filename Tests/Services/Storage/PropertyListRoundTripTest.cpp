#include "Python.h"
#include "TemporaryDirectory.h"

#include "Storage/StoredPropertyLists.h"

#include <gtest/gtest.h>

namespace {

/// "write" makes a file of the values, "compare" prints how another file differs from them.
const std::string script = R"python(
import datetime, plistlib, struct, sys

both = {
    "true": True, "false": False,
    "integers": [0, 1, -1, 127, 128, 255, 256, -128, 65535, 65536, 2**24, 2**31 - 1, 2**31, 2**32 - 1, 2**32,
                 2**63 - 1, -2**63, 2**63, 2**64 - 5, -5, 2**64 - 1],
    "reals": [-0.0, 0.1, 1.5, -2.25, 1e22, 5e-324, 1.7976931348623157e308, float("inf"), float("-inf"), float("nan")],
    "dates": [datetime.datetime(1, 1, 1), datetime.datetime(1900, 2, 28, 23, 59, 59), datetime.datetime(1969, 12, 31, 23, 59, 59),
              datetime.datetime(2001, 1, 1), datetime.datetime(2024, 2, 29, 12, 30, 45), datetime.datetime(2069, 1, 20),
              datetime.datetime(9999, 12, 31, 23, 59, 59)],
    "data": [b"", b"\0", b"\xff" * 14, b"x" * 15, bytes(range(256)) * 300],
    "texts": ["", "a", "x" * 14, "y" * 15, "<&>\"'", "]]>", " spaces ", "line\nbreak\ttab", "\u00e4\u96fb", "\U0001f600 SIM", "z" * 70000],
    "empty": [[], {}, [[]], [{}], {"": []}],
    "nested": {"a": {"b": [{"c": [[[1, "two", 3.0, {"four": b"five"}]]]}]}},
    "\u043a\u043b\u044e\u0447": 1, "\U0001f600": 2, "<key> & ]]>": 3, "": 4,
    "same": ["same", "same", {"same": "same"}],
}
binaryOnly = {
    "uids": [plistlib.UID(0), plistlib.UID(255), plistlib.UID(256), plistlib.UID(65536), plistlib.UID(2**32 - 1)],
    "nuls": ["a\0b", "\0", "\u00e4\0\u00f6", "\U0001f600\0"],
    "fractions": [datetime.datetime(2024, 1, 1, 0, 0, 0, 125000), datetime.datetime(1850, 1, 1, 0, 0, 0, 500000),
                  datetime.datetime(2500, 6, 7, 8, 9, 10, 250000)],
    "many": {"key%d" % i: i for i in range(1000)},
}

def compare(mine, other, path):
    if type(mine) is not type(other):
        print(path, "is", type(other), "and was", type(mine))
    elif isinstance(mine, dict):
        if set(mine) != set(other):
            print(path, "has keys", sorted(other), "and had", sorted(mine))
        for key in set(mine) & set(other):
            compare(mine[key], other[key], path + "/" + key)
    elif isinstance(mine, list):
        if len(mine) != len(other):
            print(path, "has", len(other), "items and had", len(mine))
        for i, (a, b) in enumerate(zip(mine, other)):
            compare(a, b, "%s/%d" % (path, i))
    elif isinstance(mine, float):
        if struct.pack(">d", mine) != struct.pack(">d", other):
            print(path, "is", other, "and was", mine)
    elif mine != other:
        print(path, "is", other, "and was", mine)

command, form, path = sys.argv[1:]
values = dict(both, **binaryOnly) if form == "binary" else both
if command == "write":
    with open(path, "wb") as file:
        plistlib.dump(values, file, fmt=plistlib.FMT_BINARY if form == "binary" else plistlib.FMT_XML)
else:
    with open(path, "rb") as file:
        data = file.read()
    assert data.startswith(b"bplist00")
    compare(values, plistlib.loads(data), "")
)python";

/// How the values of that form differ for Python after we have read and written them.
std::string differencesAfterRoundTrip(const std::string& form)
{
    const TemporaryDirectory directory;
    const std::string original = directory.path("original.plist"), copy = directory.path("copy.plist");
    std::string output = runPython(script, "write " + form + " '" + original + "'");
    const StoredPropertyLists lists;
    const auto value = lists.read(bytesOf(directory.read("original.plist")));
    if (!value)
        return output + "cannot be read";
    const auto bytes = lists.writeBinary(*value, output);
    if (!bytes)
        return output + "cannot be written";
    directory.write("copy.plist", textOf(*bytes));
    return output + runPython(script, "compare " + form + " '" + copy + "'");
}

} // namespace

TEST(PropertyListRoundTrip, BinaryListOfPythonKeepsEveryValue)
{
    EXPECT_EQ(differencesAfterRoundTrip("binary"), "");
}

TEST(PropertyListRoundTrip, XmlListOfPythonKeepsEveryValue)
{
    EXPECT_EQ(differencesAfterRoundTrip("xml"), "");
}
