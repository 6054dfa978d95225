#include "Bus/TestDaemon.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using Texts = std::vector<std::string>;

TEST(Variants, HaveTheirTypeAndNoOther)
{
    const Variant text = parsed("'a'");
    EXPECT_TRUE(text.is("s"));
    EXPECT_FALSE(text.is("o"));
    EXPECT_EQ(text.text(), "a");
    EXPECT_EQ(text.path(), std::nullopt);
    EXPECT_EQ(text.boolean(), std::nullopt);
    EXPECT_EQ(text.number(), std::nullopt);
    EXPECT_EQ(text.real(), std::nullopt);
    EXPECT_EQ(parsed("objectpath '/a'").path(), "/a");
    EXPECT_EQ(parsed("true").boolean(), true);
    EXPECT_EQ(parsed("1.5").real(), 1.5);
}

TEST(Variants, NothingIsOfNoType)
{
    const Variant nothing;
    EXPECT_FALSE(nothing);
    EXPECT_FALSE(nothing.is("s"));
    EXPECT_EQ(nothing.size(), 0U);
    EXPECT_FALSE(nothing[0]);
    EXPECT_FALSE(nothing.unwrapped());
    EXPECT_EQ(nothing.number(), std::nullopt);
    EXPECT_EQ(propertiesIn(nothing), std::nullopt);
}

TEST(Variants, NumbersOfEveryWidth)
{
    for (const char* text : { "byte 7", "int16 7", "uint16 7", "7", "uint32 7", "int64 7", "uint64 7" })
        EXPECT_EQ(parsed(text).number(), 7) << text;
    EXPECT_EQ(parsed("int64 -7").number(), -7);
    EXPECT_EQ(parsed("uint64 18446744073709551615").number(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(parsed("handle 7").number(), std::nullopt);
}

TEST(Variants, PropertiesAreReadThroughVariantsAndByTheirType)
{
    const auto properties = propertiesIn(parsed(
        "{'Text': <'a'>, 'Deep': <<<'b'>>>, 'Yes': <true>, 'No': <false>, 'Number': <uint16 5>, 'Real': <0.5>,"
        " 'Path': <objectpath '/a'>, 'Texts': <['a', 'b']>, 'Paths': <[objectpath '/a', '/b']>, 'None': <@as []>}"));
    ASSERT_TRUE(properties);
    EXPECT_EQ(textOf(*properties, "Text"), "a");
    EXPECT_EQ(textOf(*properties, "Deep"), "b");
    EXPECT_EQ(textOf(*properties, "Path"), "");
    EXPECT_EQ(textOf(*properties, "Missing"), "");
    EXPECT_TRUE(isTrue(*properties, "Yes"));
    EXPECT_FALSE(isTrue(*properties, "No"));
    EXPECT_TRUE(isFalse(*properties, "No"));
    EXPECT_FALSE(isFalse(*properties, "Missing"));
    EXPECT_FALSE(isTrue(*properties, "Number"));
    EXPECT_EQ(numberOf(*properties, "Number"), 5);
    EXPECT_EQ(numberOf(*properties, "Real"), std::nullopt);
    EXPECT_EQ(realOf(*properties, "Real"), 0.5);
    EXPECT_EQ(pathOf(*properties, "Path"), "/a");
    EXPECT_EQ(pathOf(*properties, "Text"), "");
    EXPECT_EQ(textsOf(*properties, "Texts"), (Texts { "a", "b" }));
    EXPECT_EQ(textsOf(*properties, "Paths"), Texts());
    EXPECT_EQ(textsOf(*properties, "None"), Texts());
    EXPECT_EQ(pathsOf(*properties, "Paths"), (Texts { "/a", "/b" }));
    EXPECT_EQ(pathsOf(*properties, "Texts"), Texts());
}

TEST(Variants, ObjectsOfAnotherTypeAreNone)
{
    EXPECT_EQ(objectsIn(parsed("{'a': {'b': <1>}}")), std::nullopt);
    EXPECT_EQ(interfacesIn(parsed("{'b': <1>}")), std::nullopt);
    EXPECT_EQ(propertiesIn(parsed("['b']")), std::nullopt);
    EXPECT_EQ(
        objectsIn(parsed("{objectpath '/a': {'b': {'c': <1>}}}"))->at("/a").at("b").at("c").unwrapped().number(), 1);
}

TEST(Variants, AreMade)
{
    const Variant made = Variant::ofTuple(
        { Variant::ofText("a\xff"), Variant::ofTexts({ "b" }), Variant::ofBoolean(true), Variant::ofUnsigned(5),
            Variant::ofFiles({ 0, 1 }), Variant::ofProperties({ { "c", Variant::ofText("d") } }) });
    EXPECT_TRUE(made.is("(sasbuaha{sv})"));
    EXPECT_EQ(made[0].text(), "a\xef\xbf\xbd");
    EXPECT_EQ(textsIn(made[1]), Texts { "b" });
    EXPECT_EQ(made[2].boolean(), true);
    EXPECT_EQ(made[3].number(), 5);
    EXPECT_EQ(made[4].size(), 2U);
    EXPECT_EQ(textOf(*propertiesIn(made[5]), "c"), "d");
    EXPECT_TRUE(Variant::ofTuple({}).is("()"));
}

} // namespace
