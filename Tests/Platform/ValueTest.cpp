#include "Platform/GermanNumbers.h"
#include "Runtime/NSObject.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
constexpr unsigned long above = 18446744073709551611UL;

class Thing final : public NSObject {
    NS_CLASS(Thing, NSObject)
};

NS_IMPLEMENTATION(Thing)

/// One value of each kind, in the order of the kinds.
std::vector<Value> oneOfEachKind()
{
    return { Value(), true, 1, above, 1.0, "1", Bytes { 1 }, Date { 1 }, Uid { 1 }, Array { 1 },
        Dictionary { { "1", 1 } }, std::make_shared<Thing>(), &Thing::classObject() };
}

TEST(Values, HaveTheKindOfWhatTheyWereMadeOf)
{
    const std::vector<Value> values = oneOfEachKind();
    for (std::size_t i = 0; i < values.size(); ++i)
        EXPECT_EQ(static_cast<std::size_t>(values[i].kind()), i);
    EXPECT_EQ(Value("text").kind(), Value::Kind::String);
    EXPECT_EQ(Value(std::string_view("text")).kind(), Value::Kind::String);
    EXPECT_EQ(Value(2.5F).kind(), Value::Kind::Real);
}

TEST(Values, MadeOfNothingAreNull)
{
    const std::vector<Value> nulls { nullptr, std::optional<std::string>(), std::shared_ptr<Thing>(),
        static_cast<const Class*>(nullptr), static_cast<const char*>(nullptr) };
    for (const Value& null : nulls) {
        EXPECT_TRUE(null.isNull());
        EXPECT_EQ(null, Value());
    }
    EXPECT_FALSE(Value("").isNull());
    EXPECT_FALSE(Value(Bytes()).isNull());
    EXPECT_FALSE(Value(0).isNull());
}

TEST(Values, OfDifferentKindsAreNeverEqual)
{
    const std::vector<Value> values = oneOfEachKind();
    for (std::size_t i = 0; i < values.size(); ++i) {
        for (std::size_t j = 0; j < values.size(); ++j)
            EXPECT_EQ(values[i] == values[j], i == j) << i << " " << j;
    }
}

TEST(Values, OfTheSameContentAreEqualThoughMadeApart)
{
    EXPECT_EQ(Value(Array { 1, Array { "a", Dictionary { { "k", Bytes { 1 } } } } }),
        Value(Array { 1, Array { "a", Dictionary { { "k", Bytes { 1 } } } } }));
    EXPECT_FALSE(Value(Array { 1, 2 }) == Value(Array { 2, 1 }));
    EXPECT_FALSE(Value(Array { 1 }) == Value(Array { 1.0 }));
    EXPECT_FALSE(Value(Dictionary { { "a", 1 } }) == Value(Dictionary { { "a", true } }));
    EXPECT_FALSE(Value(Dictionary { { "a", nullptr } }) == Value(Dictionary {}));
    EXPECT_FALSE(Value("é") == Value("e\xCC\x81"));
    EXPECT_FALSE(Value(std::string("a\0b", 3)) == Value("a"));
}

TEST(Values, ThatAreObjectsAreEqualByIdentity)
{
    const auto thing = std::make_shared<Thing>();
    EXPECT_EQ(Value(thing), Value(std::shared_ptr<NSObject>(thing)));
    EXPECT_FALSE(Value(thing) == Value(std::make_shared<Thing>()));
    EXPECT_FALSE(Value(&Thing::classObject()) == Value(&NSObject::classObject()));
}

TEST(Integers, KeepTheirSignAndTheirFullRange)
{
    EXPECT_EQ(Value(smallest).integer(), smallest);
    EXPECT_EQ(Value(largest).integer(), largest);
    EXPECT_EQ(Value(above).unsignedInteger(), above);
    EXPECT_FALSE(Value(-5) == Value(above));
    EXPECT_EQ(static_cast<std::uint64_t>(Value(-5).integer()), above);
}

TEST(Integers, AreUnsignedOnlyAboveTheLargestSignedOne)
{
    EXPECT_EQ(Value(9223372036854775807UL), Value(largest));
    EXPECT_EQ(Value(9223372036854775808UL).kind(), Value::Kind::Unsigned);
    EXPECT_EQ(Value(0UL), Value(0));
}

TEST(BooleanReading, IsTrueForNumbersThatAreNotZero)
{
    for (const Value& value : { Value(true), Value(-1), Value(above), Value(0.1), Value(-1e-300),
             Value(std::numeric_limits<double>::infinity()) })
        EXPECT_TRUE(value.boolValue());
    for (const Value& value : { Value(), Value(false), Value(0), Value(0.0), Value(-0.0) })
        EXPECT_FALSE(value.boolValue());
}

TEST(BooleanReading, OfATextLooksBehindSpacesASignAndZeros)
{
    for (const char* text :
        { "YES", "yes", "Y", "true", "T", "tomorrow", "1", "9", "  7", "\t\n1", "-1", "+1", "0001", "-00y" })
        EXPECT_TRUE(Value(text).boolValue()) << text;
    for (const char* text :
        { "", " ", "NO", "no", "false", "off", "on", "0", "000", "-", "+", "--1", "+ 1", "0.1", "00 1", "\xEF\xBC\x91",
            "\x01"
            "1" })
        EXPECT_FALSE(Value(text).boolValue()) << text;
    EXPECT_FALSE(Value(std::string("\0"
                                   "1",
                           2))
                     .boolValue());
}

TEST(BooleanReading, IsFalseForWhatIsNeitherNumberNorText)
{
    for (const Value& value : { Value(Bytes { 1 }), Value(Date { 1 }), Value(Uid { 1 }), Value(Array { true }),
             Value(Dictionary { { "a", true } }), Value(std::make_shared<Thing>()), Value(&Thing::classObject()) })
        EXPECT_FALSE(value.boolValue());
}

TEST(RealReading, IsTheNumber)
{
    EXPECT_EQ(Value(true).doubleValue(), 1);
    EXPECT_EQ(Value(-5).doubleValue(), -5);
    EXPECT_EQ(Value(above).doubleValue(), 18446744073709551616.0);
    EXPECT_EQ(Value(2.5).doubleValue(), 2.5);
    EXPECT_TRUE(std::isnan(Value(std::nan("")).doubleValue()));
}

TEST(RealReading, OfATextIsTheNumberThatItBeginsWith)
{
    const std::pair<const char*, double> cases[] = { { "2.5", 2.5 }, { " 2.5 km", 2.5 }, { "-.5", -.5 }, { "+3", 3 },
        { "1e3", 1000 }, { "1e", 1 }, { "", 0 }, { "-", 0 }, { "+-3", 0 }, { "three", 0 }, { ".", 0 }, { "1,5", 1 },
        { "1e999", 0 }, { "-1e999", 0 }, { "1e-999", 0 }, { "0x10", 0 }, { "inf", 0 }, { "nan", 0 } };
    for (const auto& [text, number] : cases)
        EXPECT_EQ(Value(text).doubleValue(), number) << text;
}

TEST(RealReading, OfATextUsesADecimalPointWhateverTheLocale)
{
    const GermanNumbers locale;
    if (!locale.isSet())
        GTEST_SKIP() << "no locale with a decimal comma";
    EXPECT_EQ(Value("2.5").doubleValue(), 2.5);
    EXPECT_EQ(Value("2,5").doubleValue(), 2);
    EXPECT_EQ(Value("-7.9").integerValue(), -7);
}

TEST(RealReading, IsZeroForWhatIsNoNumber)
{
    for (const Value& value :
        { Value(), Value(Bytes { 1 }), Value(Date { 1 }), Value(Uid { 1 }), Value(Array { 1 }), Value(Dictionary()) })
        EXPECT_EQ(value.doubleValue(), 0);
}

TEST(IntegerReading, IsCutTowardsZero)
{
    EXPECT_EQ(Value(2.9).integerValue(), 2);
    EXPECT_EQ(Value(-2.9).integerValue(), -2);
    EXPECT_EQ(Value(true).integerValue(), 1);
    EXPECT_EQ(Value("42 rows").integerValue(), 42);
    EXPECT_EQ(Value("-7.9").integerValue(), -7);
    EXPECT_EQ(Value(Array { 3 }).integerValue(), 0);
    EXPECT_EQ(Value().integerValue(), 0);
}

TEST(IntegerReading, IsClampedToTheRange)
{
    EXPECT_EQ(Value(above).integerValue(), largest);
    EXPECT_EQ(Value(9223372036854775808.0).integerValue(), largest);
    EXPECT_EQ(Value(-9223372036854775808.0).integerValue(), smallest);
    EXPECT_EQ(Value(1e300).integerValue(), largest);
    EXPECT_EQ(Value(-std::numeric_limits<double>::infinity()).integerValue(), smallest);
    EXPECT_EQ(Value(std::nan("")).integerValue(), 0);
    EXPECT_EQ(Value("99999999999999999999").integerValue(), largest);
    EXPECT_EQ(Value("-99999999999999999999").integerValue(), smallest);
}

TEST(IntegerReading, LosesNoDigitOfALargeInteger)
{
    EXPECT_EQ(Value(9007199254740993).integerValue(), 9007199254740993);
    EXPECT_EQ(Value("9007199254740993").integerValue(), 9007199254740993);
    EXPECT_EQ(Value(" +9223372036854775807").integerValue(), largest);
    EXPECT_EQ(Value("-9223372036854775808").integerValue(), smallest);
}

TEST(Payloads, OfAnotherKindAreAbsent)
{
    const std::vector<Value> values = oneOfEachKind();
    for (const Value& value : values) {
        EXPECT_EQ(value.string() != nullptr, value.kind() == Value::Kind::String);
        EXPECT_EQ(value.optionalString().has_value(), value.kind() == Value::Kind::String);
        EXPECT_EQ(value.data() != nullptr, value.kind() == Value::Kind::Data);
        EXPECT_EQ(value.array() != nullptr, value.kind() == Value::Kind::Array);
        EXPECT_EQ(value.dictionary() != nullptr, value.kind() == Value::Kind::Dictionary);
        EXPECT_EQ(value.object() != nullptr, value.kind() == Value::Kind::Object);
        EXPECT_EQ(value.as<Thing>() != nullptr, value.kind() == Value::Kind::Object);
        EXPECT_EQ(value.classObject() != nullptr, value.kind() == Value::Kind::Class);
        const auto kind = value.kind();
        EXPECT_EQ(value.isNumber(),
            kind == Value::Kind::Integer || kind == Value::Kind::Unsigned || kind == Value::Kind::Real);
    }
}

TEST(Entries, OfADictionaryAreFoundByTheirWholeKey)
{
    const Value value = Dictionary { { "key", 1 }, { "", 2 }, { std::string("key\0x", 5), 3 } };
    EXPECT_EQ(value["key"], Value(1));
    EXPECT_EQ(value[""], Value(2));
    EXPECT_EQ(value[std::string_view("key\0x", 5)], Value(3));
    EXPECT_EQ(value["ke"], Value());
    EXPECT_EQ(value["Key"], Value());
}

TEST(Entries, OfWhatIsNoDictionaryAreNull)
{
    for (const Value& value : { Value(), Value("key"), Value(Array { "key" }), Value(1) })
        EXPECT_EQ(value["key"]["further"], Value());
}

TEST(Containers, AreSharedBetweenCopiesAndNotChangedThroughTheOriginal)
{
    Array elements { 1, 2 };
    const Value value(elements);
    const Value copy = value;
    EXPECT_EQ(copy.array(), value.array());
    elements.push_back(3);
    EXPECT_EQ(value, Value(Array { 1, 2 }));
}

TEST(Containers, KeepWhatTheyHoldAlive)
{
    auto thing = std::make_shared<Thing>();
    const std::weak_ptr<Thing> watched = thing;
    Value value = Array { Dictionary { { "thing", std::move(thing) } } };
    EXPECT_FALSE(watched.expired());
    value = nullptr;
    EXPECT_TRUE(watched.expired());
}

/// Arrays in one another, each twice in the one around it: few to keep, and without end when unfolded.
Value twiceInOneAnother(const Value& core)
{
    Value value = core;
    for (int i = 0; i < 200; ++i)
        value = Array { value, Dictionary { { "k", value } } };
    return value;
}

TEST(SharedContainers, AreComparedOnceHoweverOftenTheyStandInAValue)
{
    EXPECT_EQ(twiceInOneAnother(1), twiceInOneAnother(1));
    EXPECT_FALSE(twiceInOneAnother(1) == twiceInOneAnother(2));
    const Value value = twiceInOneAnother(1);
    EXPECT_EQ(value, Value(value));
}

TEST(SharedContainers, ComparedWithEachOtherInEveryPairingAreStillFewComparisons)
{
    const auto levels = [](int step) {
        constexpr int width = 4000;
        Array level;
        for (int i = 0; i < width; ++i)
            level.emplace_back(Array { true });
        for (int depth = 0; depth < 12; ++depth) {
            Array next;
            for (int i = 0; i < width; ++i)
                next.emplace_back(Array { level[i], level[(i * 3 + step) % width], level[(i * 5 + step) % width] });
            level = std::move(next);
        }
        return Value(level);
    };
    EXPECT_EQ(levels(1), levels(7));
}

TEST(SharedContainers, OfManyMembersDifferWhereverOneDoes)
{
    const auto lists = [](int last) {
        Array members;
        for (int i = 0; i < 5000; ++i)
            members.emplace_back(Array { i, Dictionary { { "i", i == 4999 ? last : i } } });
        return Value(members);
    };
    EXPECT_EQ(lists(1), lists(1));
    EXPECT_FALSE(lists(1) == lists(2));
}

TEST(TextsAndData, AreComparedOnceHoweverOftenTheyStandInAValue)
{
    constexpr std::size_t size = 5'000'000, places = 200'000;
    const auto inAllPlaces = [](const Value& value) { return Value(Array(places, value)); };
    EXPECT_EQ(inAllPlaces(std::string(size, 'x')), inAllPlaces(std::string(size, 'x')));
    EXPECT_EQ(inAllPlaces(Bytes(size, 7)), inAllPlaces(Bytes(size, 7)));
    EXPECT_FALSE(inAllPlaces(std::string(size, 'x')) == inAllPlaces(std::string(size, 'y')));
}

TEST(TextsAndData, AreSharedBetweenCopies)
{
    const Value text("text"), data(Bytes { 1 });
    EXPECT_EQ(Value(text).string(), text.string());
    EXPECT_EQ(Value(data).data(), data.data());
}

} // namespace
