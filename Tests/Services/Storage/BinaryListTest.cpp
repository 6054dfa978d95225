#include "BigEndian.h"
#include "BinaryListMaker.h"
#include "TemporaryDirectory.h"

#include "Storage/StoredPropertyLists.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

namespace {

constexpr std::size_t mostBytes = std::size_t { 16 } << 20;

std::optional<Value> read(const Bytes& bytes)
{
    return StoredPropertyLists().read(bytes);
}

Bytes real(double value)
{
    Bytes object { 0x23 };
    appendBigEndian(object, std::bit_cast<std::uint64_t>(value), 8);
    return object;
}

Bytes utf16(const std::u16string& text)
{
    Bytes object = markerWithCount(0x6F, text.size());
    for (const char16_t unit : text)
        appendBigEndian(object, unit, 2);
    return object;
}

Bytes ascii(std::size_t size)
{
    Bytes object = markerWithCount(0x5F, size);
    object.resize(object.size() + size, 'a');
    return object;
}

void appendTrailer(
    Bytes& list, std::size_t offsetSize, std::size_t referenceSize, std::size_t objects, std::size_t table)
{
    appendBigEndian(list, 0, 6);
    appendBigEndian(list, offsetSize, 1);
    appendBigEndian(list, referenceSize, 1);
    appendBigEndian(list, objects, 8);
    appendBigEndian(list, 0, 8);
    appendBigEndian(list, table, 8);
}

Bytes data(std::size_t size)
{
    Bytes object = markerWithCount(0x4F, size);
    object.resize(object.size() + size, 7);
    return object;
}

} // namespace

TEST(BinaryList, BooleansAreRead)
{
    EXPECT_EQ(read(listOf({ 0x08 })), Value(false));
    EXPECT_EQ(read(listOf({ 0x09 })), Value(true));
}

TEST(BinaryList, IntegersOfEveryWidthKeepTheirSign)
{
    EXPECT_EQ(read(listOf({ 0x10, 0xFB })), Value(251));
    EXPECT_EQ(read(listOf({ 0x11, 0xFF, 0xFB })), Value(65531));
    EXPECT_EQ(read(listOf({ 0x12, 0xFF, 0xFF, 0xFF, 0xFB })), Value(4294967291L));
    EXPECT_EQ(read(listOf({ 0x13, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFB })), Value(-5));
    EXPECT_EQ(read(listOf({ 0x13, 0x80, 0, 0, 0, 0, 0, 0, 0 })), Value(std::numeric_limits<std::int64_t>::min()));
}

TEST(BinaryList, SixteenByteIntegersAreReadWithinSixtyFourBits)
{
    const auto integer = [](std::int64_t high, std::int64_t low) {
        Bytes object { 0x14 };
        appendBigEndian(object, static_cast<std::uint64_t>(high), 8);
        appendBigEndian(object, static_cast<std::uint64_t>(low), 8);
        return listOf(object);
    };
    EXPECT_EQ(read(integer(0, -5)), Value(std::numeric_limits<unsigned long>::max() - 4));
    EXPECT_EQ(read(integer(-1, -5)), Value(-5));
    EXPECT_EQ(read(integer(0, 5)), Value(5));
    EXPECT_EQ(read(integer(-1, 5)), std::nullopt);
    EXPECT_EQ(read(integer(5, 5)), std::nullopt);
}

TEST(BinaryList, RealsOfBothWidthsAreRead)
{
    EXPECT_EQ(read(listOf({ 0x22, 0x3F, 0xC0, 0, 0 })), Value(1.5));
    EXPECT_EQ(read(listOf(real(0.1))), Value(0.1));
    EXPECT_EQ(
        read(listOf(real(-std::numeric_limits<double>::infinity()))), Value(-std::numeric_limits<double>::infinity()));
    EXPECT_TRUE(std::isnan(read(listOf(real(std::nan(""))))->real()));
    EXPECT_TRUE(std::signbit(read(listOf({ 0x22, 0x80, 0, 0, 0 }))->real()));
}

TEST(BinaryList, DatesKeepFractionsAndFarYears)
{
    for (const double seconds : { 0.0, 0.25, -1e11, 3e9 + 0.125, 2.5e11 }) {
        Bytes object = real(seconds);
        object[0] = 0x33;
        EXPECT_EQ(read(listOf(object)), Value(Date { seconds }));
    }
}

TEST(BinaryList, TextsOfBothEncodingsAreRead)
{
    EXPECT_EQ(read(listOf({ 0x50 })), Value(""));
    EXPECT_EQ(read(listOf({ 0x52, 'o', 'k' })), Value("ok"));
    EXPECT_EQ(read(listOf(utf16(u"SIM ä 電 😀"))), Value("SIM ä 電 😀"));
}

TEST(BinaryList, EmptyUtf16TextIsEmptyText)
{
    BinaryListMaker maker;
    const auto empty = maker.add({ 0x60 });
    maker.addArray({ empty, empty });
    EXPECT_EQ(read(maker.list()), Value(Array { "", "" }));
}

TEST(BinaryList, TextsKeepTheirNuls)
{
    using namespace std::string_literals;
    BinaryListMaker maker;
    const auto ascii = maker.add({ 0x53, 'a', 0, 'b' });
    const auto wide = maker.add(utf16(u"ä\0b"s));
    maker.addArray({ ascii, wide, ascii });
    EXPECT_EQ(read(maker.list()), Value(Array { "a\0b"s, "ä\0b"s, "a\0b"s }));
}

TEST(BinaryList, TextThatIsNoUnicodeMakesNoList)
{
    EXPECT_EQ(read(listOf({ 0x51, 0xE4 })), std::nullopt);
    EXPECT_EQ(read(listOf({ 0x61, 0xD8, 0x3D })), std::nullopt);
    EXPECT_EQ(read(listOf({ 0x61, 0xDE, 0x00 })), std::nullopt);
    EXPECT_EQ(read(listOf({ 0x62, 0xD8, 0x3D, 0x00, 0x61 })), std::nullopt);
}

TEST(BinaryList, DataAndUidsAreRead)
{
    EXPECT_EQ(read(listOf({ 0x40 })), Value(Bytes()));
    EXPECT_EQ(read(listOf({ 0x42, 0, 0xFF })), Value(Bytes { 0, 0xFF }));
    EXPECT_EQ(read(listOf({ 0x80, 7 })), Value(Uid { 7 }));
    EXPECT_EQ(read(listOf({ 0x82, 1, 0, 2 })), Value(Uid { 65538 }));
    EXPECT_EQ(read(listOf({ 0x83, 0xFF, 0xFF, 0xFF, 0xFF })), Value(Uid { 4294967295 }));
    EXPECT_EQ(read(listOf({ 0x84, 1, 0, 0, 0, 0 })), Value(Uid { 4294967296 }));
}

TEST(BinaryList, UidsAreReadWithinSixtyFourBits)
{
    constexpr std::uint64_t most = ~std::uint64_t { 0 };
    Bytes eight = { 0x87 }, sixteen = { 0x8F };
    appendBigEndian(eight, most, 8);
    appendBigEndian(sixteen, 0, 8);
    appendBigEndian(sixteen, most, 8);
    EXPECT_EQ(read(listOf(eight)), Value(Uid { most }));
    EXPECT_EQ(read(listOf(sixteen)), Value(Uid { most }));
    sixteen[8] = 1;
    EXPECT_EQ(read(listOf(sixteen)), std::nullopt);
}

TEST(BinaryList, SharedObjectsUnfold)
{
    BinaryListMaker maker(1);
    const auto key = maker.add({ 0x51, 'k' });
    const auto shared = maker.addArray({ key, key });
    maker.addDictionary({ key }, { shared });
    const Value text("k");
    EXPECT_EQ(read(maker.list()), Value(Dictionary { { "k", Array { text, text } } }));
}

TEST(BinaryList, UidDictionaryStaysADictionary)
{
    BinaryListMaker maker;
    const auto key = maker.add(Bytes { 0x56, 'C', 'F', '$', 'U', 'I', 'D' });
    const auto index = maker.add({ 0x10, 3 });
    maker.addDictionary({ key }, { index });
    EXPECT_EQ(read(maker.list()), Value(Dictionary { { "CF$UID", 3 } }));
}

TEST(BinaryList, KeyThatStandsTwiceHasItsLastValue)
{
    BinaryListMaker maker;
    const auto key = maker.add({ 0x51, 'k' }), one = maker.add({ 0x10, 1 }), two = maker.add({ 0x10, 2 });
    maker.addDictionary({ key, key }, { one, two });
    EXPECT_EQ(read(maker.list()), Value(Dictionary { { "k", 2 } }));
}

TEST(BinaryList, NullsSetsAndUnknownObjectsMakeNoList)
{
    for (const std::uint8_t marker : { 0x00, 0x0F, 0x15, 0x20, 0x24, 0x32, 0x70, 0x90, 0xB0, 0xC0, 0xE0, 0xF0 })
        EXPECT_EQ(read(listOf({ marker, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0 })), std::nullopt)
            << int { marker };
}

TEST(BinaryList, KeysMustBeTexts)
{
    for (const Bytes& key : { Bytes { 0x10, 1 }, Bytes { 0x41, 'k' }, Bytes { 0x80, 1 }, Bytes { 0xA0 } }) {
        BinaryListMaker maker;
        const auto index = maker.add(key);
        maker.addDictionary({ index }, { index });
        EXPECT_EQ(read(maker.list()), std::nullopt);
    }
}

TEST(BinaryList, KeysKeepTheirNuls)
{
    using namespace std::string_literals;
    BinaryListMaker maker;
    const auto ascii = maker.add({ 0x52, 'k', 0 }), shorter = maker.add({ 0x51, 'k' });
    const auto wide = maker.add(utf16(u"ä\0"s)), yes = maker.add({ 0x09 });
    maker.addDictionary({ ascii, shorter, wide }, { yes, yes, yes });
    EXPECT_EQ(read(maker.list()), Value(Dictionary { { "k\0"s, true }, { "k", true }, { "ä\0"s, true } }));
}

TEST(BinaryList, ObjectsThatReachIntoTheOffsetTableMakeNoList)
{
    for (const Bytes& object :
        { Bytes { 0x13, 0 }, Bytes { 0x14, 0, 0 }, Bytes { 0x23, 0 }, Bytes { 0x33, 0 }, Bytes { 0x42, 0 },
            Bytes { 0x52, 'a' }, Bytes { 0x62, 0, 'a' }, Bytes { 0x81, 0 }, Bytes { 0xA1, 0 }, Bytes { 0xD1, 0, 0 },
            Bytes { 0x4F }, Bytes { 0x4F, 0x13, 0 }, Bytes { 0x4F, 0x23, 0, 0, 0, 0, 0, 0, 0, 0 } })
        EXPECT_EQ(read(listOf(object)), std::nullopt);
    for (const std::uint8_t marker : { 0x4F, 0x5F, 0x6F, 0xAF, 0xDF }) {
        for (const std::uint64_t count :
            { std::uint64_t { 1 }, std::uint64_t { 1 } << 31, std::uint64_t { 1 } << 63, ~std::uint64_t { 0 } })
            EXPECT_EQ(read(listOf(markerWithCount(marker, count))), std::nullopt);
    }
}

TEST(BinaryList, TrailersThatLieMakeNoList)
{
    BinaryListMaker maker;
    maker.add({ 0x09 });
    const auto good = maker.trailer();
    EXPECT_EQ(read(maker.listWith(good)), Value(true));
    constexpr std::uint64_t most = ~std::uint64_t { 0 };
    auto bad = good;
    for (const std::uint64_t objects : { std::uint64_t { 0 }, std::uint64_t { 2 }, std::uint64_t { 1 } << 61, most }) {
        bad.objects = objects;
        EXPECT_EQ(read(maker.listWith(bad)), std::nullopt) << objects;
    }
    bad = good;
    for (const std::uint64_t root : { std::uint64_t { 1 }, most }) {
        bad.root = root;
        EXPECT_EQ(read(maker.listWith(bad)), std::nullopt) << root;
    }
    bad = good;
    for (const std::uint64_t table :
        { std::uint64_t { 0 }, std::uint64_t { 8 }, std::uint64_t { 10 }, std::uint64_t { 1 } << 32, most }) {
        bad.table = table;
        EXPECT_EQ(read(maker.listWith(bad)), std::nullopt) << table;
    }
    for (const int size : { 0, 1, 7, 9, 200, 255 }) {
        bad = good;
        bad.offsetSize = static_cast<std::uint8_t>(size);
        EXPECT_EQ(read(maker.listWith(bad)), std::nullopt) << size;
    }
    for (const int size : { 0, 9, 255 }) {
        bad = good;
        bad.referenceSize = static_cast<std::uint8_t>(size);
        EXPECT_EQ(read(maker.listWith(bad)), std::nullopt) << size;
    }
}

TEST(BinaryList, ContainersNestToFiveHundredAndTwelve)
{
    const auto nested = [](std::size_t depth) {
        BinaryListMaker maker;
        maker.addArray({});
        for (std::size_t i = 1; i < depth; ++i)
            maker.addArray({ i - 1 });
        return maker.list();
    };
    EXPECT_TRUE(read(nested(512)));
    EXPECT_EQ(read(nested(513)), std::nullopt);
    EXPECT_EQ(read(nested(10'000)), std::nullopt);
    EXPECT_EQ(read(nested(100'000)), std::nullopt);
}

TEST(BinaryList, DeepObjectsCountWhereverTheyAreSharedFrom)
{
    BinaryListMaker maker;
    maker.addArray({});
    for (std::size_t i = 1; i < 300; ++i)
        maker.addArray({ i - 1 });
    const std::size_t deep = 299;
    std::size_t top = maker.addArray({ deep });
    for (std::size_t i = 0; i < 250; ++i)
        top = maker.addArray({ deep, top });
    EXPECT_EQ(read(maker.list()), std::nullopt);
}

TEST(BinaryList, MillionsOfNestedContainersAreRefused)
{
    constexpr std::size_t depth = 1'800'000;
    Bytes list = bytesOf("bplist00");
    for (std::size_t i = 0; i + 1 < depth; ++i) {
        list.push_back(0xA1);
        appendBigEndian(list, i + 1, 4);
    }
    list.push_back(0xA0);
    const std::size_t table = list.size();
    for (std::size_t i = 0; i < depth; ++i)
        appendBigEndian(list, 8 + 5 * i, 4);
    appendTrailer(list, 4, 4, depth, table);
    ASSERT_LT(list.size(), mostBytes);
    EXPECT_EQ(read(list), std::nullopt);
}

TEST(BinaryList, CyclesAreRefused)
{
    BinaryListMaker itself;
    itself.addArray({ 0 });
    EXPECT_EQ(read(itself.list()), std::nullopt);

    BinaryListMaker byEachOther;
    byEachOther.addArray({ 1 });
    byEachOther.addArray({ 2 });
    byEachOther.addArray({ 0 });
    EXPECT_EQ(read(byEachOther.list(0)), std::nullopt);
}

TEST(BinaryList, ReferencesToNowhereAreRefused)
{
    BinaryListMaker maker;
    maker.addArray({ 1 });
    EXPECT_EQ(read(maker.list()), std::nullopt);
    BinaryListMaker wide(8);
    wide.addArray({ ~std::size_t { 0 } });
    EXPECT_EQ(read(wide.list()), std::nullopt);
}

TEST(BinaryList, SharedContainersAreReadOnceHoweverOftenTheyStandInTheList)
{
    BinaryListMaker maker;
    maker.add({ 0x09 });
    Value expected = true;
    for (std::size_t i = 0; i < 200; ++i) {
        maker.addArray({ i, i });
        expected = Array { expected, expected };
    }
    const auto value = read(maker.list());
    ASSERT_TRUE(value);
    EXPECT_EQ((*value->array())[0].array(), (*value->array())[1].array());
    EXPECT_EQ(*value, expected);
}

TEST(BinaryList, LargeTextsAndDataAreReadOnceHoweverOftenTheyStandInTheList)
{
    constexpr std::size_t size = 7'000'000, places = 100'000;
    BinaryListMaker maker;
    maker.add(data(size));
    maker.add(ascii(size));
    maker.addArray(std::vector<std::size_t>(places, 0));
    maker.addArray(std::vector<std::size_t>(places, 1));
    maker.addArray({ 2, 3 });
    const auto value = read(maker.list());
    ASSERT_TRUE(value);
    const Array& allData = *(*value->array())[0].array();
    const Array& allTexts = *(*value->array())[1].array();
    EXPECT_EQ(allData.front().data()->size(), size);
    EXPECT_EQ(allData.front().data(), allData.back().data());
    EXPECT_EQ(allTexts.front().string()->size(), size);
    EXPECT_EQ(allTexts.front().string(), allTexts.back().string());
}

TEST(BinaryList, NestedContainersWithManyReferencesEachAreRead)
{
    constexpr std::size_t containers = 30, references = 99'000;
    BinaryListMaker maker(1);
    const std::size_t leaf = maker.add({ 0x09 });
    Value expected = true;
    for (std::size_t i = 0; i < containers; ++i) {
        std::vector<std::size_t> items(references, leaf);
        items.back() = i;
        maker.addArray(items);
        Array values(references, true);
        values.back() = expected;
        expected = values;
    }
    EXPECT_EQ(read(maker.list()), expected);
}

/// The objects begin one after another, the first `size` bytes from the end of the last; each has all bytes that
/// follow.
Bytes overlapping(std::size_t objects, const Bytes& object, std::size_t size)
{
    Bytes list = bytesOf("bplist00");
    const std::size_t root = list.size();
    list.push_back(0xAF);
    list.push_back(0x12);
    appendBigEndian(list, objects, 4);
    for (std::size_t i = 1; i <= objects; ++i)
        appendBigEndian(list, i, 4);
    const std::size_t begin = list.size();
    for (std::size_t i = 0; i < objects; ++i)
        list.insert(list.end(), object.begin(), object.end());
    list.resize(list.size() + size, 0);
    const std::size_t table = list.size();
    appendBigEndian(list, root, 4);
    for (std::size_t i = 0; i < objects; ++i)
        appendBigEndian(list, begin + i * object.size(), 4);
    appendTrailer(list, 4, 4, objects + 1, table);
    return list;
}

TEST(BinaryList, OverlappingObjectsAreRefused)
{
    constexpr std::size_t objects = 500'000, size = 4'000'000;
    for (const std::uint8_t marker : { 0x4F, 0x5F, 0x6F, 0xAF, 0xDF }) {
        Bytes object { marker, 0x12 };
        appendBigEndian(object, marker < 0x60 ? size : size / 8, 4);
        const Bytes list = overlapping(objects, object, size);
        ASSERT_LT(list.size(), mostBytes);
        EXPECT_EQ(read(list), std::nullopt) << int { marker };
    }
}

TEST(BinaryList, OffsetsAndReferencesOfEveryWidthAreRead)
{
    for (std::size_t offsetSize = 1; offsetSize <= 8; ++offsetSize) {
        for (std::size_t referenceSize = 1; referenceSize <= 8; ++referenceSize) {
            Bytes list = bytesOf("bplist00");
            list.push_back(0xA2);
            appendBigEndian(list, 1, referenceSize);
            appendBigEndian(list, 2, referenceSize);
            const std::size_t first = list.size();
            for (const std::uint8_t byte : { 0x10, 0x07, 0x08 })
                list.push_back(byte);
            const std::size_t table = list.size();
            for (const std::size_t offset : { std::size_t { 8 }, first, first + 2 })
                appendBigEndian(list, offset, offsetSize);
            appendTrailer(list, offsetSize, referenceSize, 3, table);
            EXPECT_EQ(read(list), Value(Array { 7, false })) << offsetSize << " " << referenceSize;
        }
    }
}

TEST(BinaryList, CountsOfEveryWidthAreRead)
{
    EXPECT_EQ(read(listOf({ 0x5F, 0x10, 1, 'a' })), Value("a"));
    EXPECT_EQ(read(listOf({ 0x5F, 0x11, 0, 1, 'a' })), Value("a"));
    EXPECT_EQ(read(listOf({ 0x5F, 0x12, 0, 0, 0, 1, 'a' })), Value("a"));
    EXPECT_EQ(read(listOf({ 0x5F, 0x13, 0, 0, 0, 0, 0, 0, 0, 1, 'a' })), Value("a"));
}

TEST(BinaryList, WhatNothingRefersToIsNotRead)
{
    BinaryListMaker maker;
    maker.add({ 0xF0 });
    maker.add({ 0x4F, 0x13, 0xFF });
    maker.add({ 0x51, 'a' });
    EXPECT_EQ(read(maker.list()), Value("a"));
}

TEST(BinaryList, FifteenMegabytesOfTextOrDataAreRead)
{
    constexpr std::size_t size = 15'000'000;
    EXPECT_EQ(read(listOf(data(size)))->data()->size(), size);
    EXPECT_EQ(read(listOf(ascii(size)))->string()->size(), size);
    EXPECT_EQ(read(listOf(utf16(std::u16string(size / 2, u'ä'))))->string()->size(), size);
}

TEST(BinaryList, NoMoreThanSixteenMebibytesAreRead)
{
    const std::size_t besides = listOf(data(0)).size();
    EXPECT_TRUE(read(listOf(data(mostBytes - besides))));
    EXPECT_EQ(read(listOf(data(mostBytes - besides + 1))), std::nullopt);
}

TEST(BinaryList, HundredsOfThousandsOfValuesAreRead)
{
    constexpr std::size_t count = 600'000;
    Array expected;
    BinaryListMaker maker;
    std::vector<std::size_t> items;
    for (std::size_t i = 0; i < count; ++i) {
        const double seconds = 0.5 + static_cast<double>(i);
        Bytes object { 0x33 };
        appendBigEndian(object, std::bit_cast<std::uint64_t>(seconds), 8);
        items.push_back(maker.add(object));
        expected.emplace_back(Date { seconds });
    }
    maker.addArray(items);
    EXPECT_EQ(read(maker.list()), Value(expected));
}

TEST(BinaryList, MillionsOfReferencesAreRead)
{
    constexpr std::size_t count = 4'000'000;
    BinaryListMaker maker;
    maker.add({ 0x10, 1 });
    maker.addArray(std::vector<std::size_t>(count, 0));
    EXPECT_EQ(read(maker.list()), Value(Array(count, 1)));
}

/// So many dictionaries with one key of that length.
Bytes dictionariesOfOneKey(std::size_t count, std::size_t length)
{
    BinaryListMaker maker;
    const std::size_t key = maker.add(ascii(length));
    std::vector<std::size_t> dictionaries;
    for (std::size_t i = 0; i < count; ++i)
        dictionaries.push_back(maker.addDictionary({ key }, { key }));
    maker.addArray(dictionaries);
    return maker.list();
}

TEST(BinaryList, ManyDictionariesMayShareAKeyUnlessTheKeysBecomeTooMuch)
{
    EXPECT_EQ(read(dictionariesOfOneKey(100'000, 100))->array()->size(), 100'000);
    EXPECT_EQ(read(dictionariesOfOneKey(100, 100'000))->array()->size(), 100);
    EXPECT_EQ(read(dictionariesOfOneKey(100'000, 10'000'000)), std::nullopt);
}

TEST(BinaryList, OtherVersionsAndMereBeginningsMakeNoList)
{
    const Bytes list = listOf({ 0x09 });
    for (const std::string_view magic : { "bplist01", "bplist15", "bplistXX" }) {
        Bytes other = list;
        std::copy(magic.begin(), magic.end(), other.begin());
        EXPECT_EQ(read(other), std::nullopt) << magic;
    }
    EXPECT_EQ(read(bytesOf("bplist")), std::nullopt);
    EXPECT_EQ(read(bytesOf("bplist00")), std::nullopt);
    EXPECT_EQ(read({}), std::nullopt);
}
