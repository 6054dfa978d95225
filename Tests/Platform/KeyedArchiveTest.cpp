#include "Foundation/NSFileManager.h"
#include "Foundation/NSKeyedArchiver.h"
#include "Platform/PhoneTest.h"
#include "UIKit/UIImage.h"

#include <cmath>

namespace {

/// The content of a class entry in an archive's table of objects.
Value classEntry(const std::string& name)
{
    return Dictionary { { "$classname", name }, { "$classes", Array { name, "NSObject" } } };
}

/// An array in an archive's table of objects, whose class stands at that index.
Value arrayEntry(std::uint64_t classIndex, Array references)
{
    return Dictionary { { "$class", Uid { classIndex } }, { "NS.objects", std::move(references) } };
}

class KeyedArchives : public PhoneTest {
protected:
    /// A well-formed archive around a table of objects, whose root is the object of index 1.
    static Dictionary archiveOf(Array objects)
    {
        return { { "$version", 100000 }, { "$archiver", "NSKeyedArchiver" },
            { "$top", Dictionary { { "root", Uid { 1 } } } }, { "$objects", std::move(objects) } };
    }
    static Value unarchived(const Value& archive)
    {
        const auto serialized = dataWithPropertyList(archive);
        EXPECT_TRUE(serialized.data);
        return serialized.data ? NSKeyedUnarchiver::unarchiveObjectWithData(*serialized.data) : Value("no archive");
    }
    static Value unarchivedObjects(Array objects) { return unarchived(archiveOf(std::move(objects))); }
    /// What comes back of a value that is archived; the text "refused" when it cannot be.
    static Value roundTrip(const Value& value)
    {
        const auto archive = NSKeyedArchiver::archivedDataWithRootObject(value);
        return archive ? NSKeyedUnarchiver::unarchiveObjectWithData(*archive) : Value("refused");
    }
    static std::shared_ptr<UIImage> quarters()
    {
        Bitmap bitmap { 2, 2, { 255, 0, 0, 255, 0, 255, 0, 128, 0, 0, 255, 1, 10, 20, 30, 254 } };
        return UIImage::imageWithBitmap(std::make_shared<const Bitmap>(bitmap), 2);
    }
    static Value nested(int depth, Value value)
    {
        for (int i = 0; i < depth; ++i)
            value = i % 2 == 0 ? Value(Array { value }) : Value(Dictionary { { "key", value } });
        return value;
    }
};

TEST_F(KeyedArchives, BringAnImageBackWithItsPixelsAndItsScale)
{
    const auto image = roundTrip(quarters()).as<UIImage>();
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), (CGSize { 1, 1 }));
    EXPECT_EQ(image->scale(), 2);
    ASSERT_TRUE(image->bitmap());
    EXPECT_EQ(image->bitmap()->rgba, quarters()->bitmap()->rgba);
}

TEST_F(KeyedArchives, BringAnIconOfAnAppBackWithoutDrawingIt)
{
    /// Fails the test when it is asked for an icon.
    class UnusedIcons final : public AppIcons {
        std::shared_ptr<const Bitmap> icon(const std::string& app, double, double) override
        {
            ADD_FAILURE() << app;
            return nullptr;
        }
    };
    Phone::current().appIcons = std::make_shared<UnusedIcons>();
    const Value icon = UIImage::imageWithIconOfApp("org.example.App", 3);
    const auto again = roundTrip(icon).as<UIImage>();
    ASSERT_TRUE(again);
    EXPECT_EQ(again->app(), "org.example.App");
    EXPECT_EQ(again->size(), (CGSize { 29, 29 }));
    EXPECT_EQ(again->scale(), 3);
    const auto archive = NSKeyedArchiver::archivedDataWithRootObject(icon);
    Phone::current().appIcons = nullptr;
    ASSERT_TRUE(archive);
    EXPECT_TRUE(NSKeyedUnarchiver::unarchiveObjectWithData(*archive).isNull());
}

TEST_F(KeyedArchives, BringPlainValuesBack)
{
    for (const Value& value : { Value("text"), Value(""), Value("$null"), Value(-5), Value(18446744073709551611UL),
             Value(2.5), Value(true), Value(false), Value(Bytes { 1, 2 }), Value(Date { 1.5 }), Value(Uid { 7 }) })
        EXPECT_EQ(roundTrip(value), value);
}

TEST_F(KeyedArchives, BringNestedContainersBackWithTheirNulls)
{
    const Value value = Dictionary { { "list", Array { 1, nullptr, Array {}, Dictionary {}, "" } }, { "", nullptr },
        { "deeper", Dictionary { { "Zürich", Array { Array { Array { "core" } } } } } } };
    EXPECT_EQ(roundTrip(value), value);
    EXPECT_EQ(roundTrip(Array {}), Value(Array {}));
    EXPECT_EQ(roundTrip(Dictionary {}), Value(Dictionary {}));
}

TEST_F(KeyedArchives, BringImagesInContainersBack)
{
    const Value value = roundTrip(Dictionary { { "icons", Array { quarters(), quarters() } } });
    ASSERT_TRUE(value["icons"].array());
    ASSERT_EQ(value["icons"].array()->size(), 2U);
    for (const Value& icon : *value["icons"].array())
        EXPECT_TRUE(icon.as<UIImage>());
}

TEST_F(KeyedArchives, OfNullBringNullBack)
{
    EXPECT_EQ(roundTrip(nullptr), Value());
}

TEST_F(KeyedArchives, RefuseWhatCannotBeArchived)
{
    for (const Value& value : { Value(PSSpecifier::emptyGroupSpecifier()), Value(&UIImage::classObject()),
             Value(std::make_shared<UIImage>()) }) {
        EXPECT_EQ(NSKeyedArchiver::archivedDataWithRootObject(value), std::nullopt);
        EXPECT_EQ(
            NSKeyedArchiver::archivedDataWithRootObject(Array { 1, Dictionary { { "a", value } } }), std::nullopt);
    }
}

TEST_F(KeyedArchives, HoldContainersAsDeepAsTheyCanBeReadAndRefuseDeeperOnes)
{
    EXPECT_EQ(roundTrip(nested(64, "core")), nested(64, "core"));
    EXPECT_EQ(roundTrip(nested(65, "core")), Value("refused"));
    EXPECT_EQ(roundTrip(nested(5000, "core")), Value("refused"));
}

TEST_F(KeyedArchives, NeedThePropertyListServiceAndTheImageService)
{
    const Value value(quarters());
    const auto archive = NSKeyedArchiver::archivedDataWithRootObject(value);
    ASSERT_TRUE(archive);
    Phone::current().images = nullptr;
    EXPECT_EQ(NSKeyedUnarchiver::unarchiveObjectWithData(*archive), Value());
    EXPECT_EQ(NSKeyedArchiver::archivedDataWithRootObject(value), std::nullopt);
    Phone::current().propertyLists = nullptr;
    EXPECT_EQ(NSKeyedUnarchiver::unarchiveObjectWithData(*archive), Value());
    EXPECT_EQ(NSKeyedArchiver::archivedDataWithRootObject("text"), std::nullopt);
}

TEST_F(KeyedArchives, OtherDataAreNone)
{
    for (const char* text : { "", "bplist00", "<plist><dict/></plist>", "\x89PNG\r\n\x1A\n" })
        EXPECT_EQ(NSKeyedUnarchiver::unarchiveObjectWithData(bytesOf(text)), Value()) << text;
    EXPECT_EQ(NSKeyedUnarchiver::unarchiveObjectWithData(phone.png(2, 2)), Value());
    for (const Value& root : { Value("text"), Value(Array { "$null", "text" }), Value(Dictionary {}) })
        EXPECT_EQ(unarchived(root), Value());
}

TEST_F(KeyedArchives, CutOffAtAnyByteGiveNull)
{
    const Bytes whole = *NSKeyedArchiver::archivedDataWithRootObject(Dictionary { { "icon", quarters() }, { "n", 1 } });
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_EQ(NSKeyedUnarchiver::unarchiveObjectWithData(cut), Value()) << length;
    }
}

TEST_F(KeyedArchives, WithAnyBitTurnedDoNoHarm)
{
    const Bytes whole = *NSKeyedArchiver::archivedDataWithRootObject(Dictionary { { "icon", quarters() }, { "n", 1 } });
    for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
        Bytes turned = whole;
        turned[bit / 8] ^= static_cast<std::uint8_t>(1U << bit % 8);
        const Value value = NSKeyedUnarchiver::unarchiveObjectWithData(turned);
        if (const auto icon = value["icon"].as<UIImage>())
            icon->bitmap();
    }
}

TEST_F(KeyedArchives, WithoutTheirOwnNameTableOrRootGiveNull)
{
    const Dictionary whole = archiveOf({ "$null", "text" });
    EXPECT_EQ(unarchived(whole), Value("text"));
    for (const char* part : { "$archiver", "$top", "$objects" }) {
        Dictionary without = whole;
        without.erase(part);
        EXPECT_EQ(unarchived(without), Value()) << part;
        for (const Value& wrong : { Value("text"), Value(1), Value(Array {}), Value(Dictionary {}) }) {
            without.insert_or_assign(part, wrong);
            EXPECT_EQ(unarchived(without), Value()) << part;
        }
    }
}

TEST_F(KeyedArchives, WhoseRootIsNotInTheTableGiveNull)
{
    for (const std::uint64_t index : { 0UL, 2UL, 4294967295UL }) {
        Dictionary archive = archiveOf({ "$null", "text" });
        archive.insert_or_assign("$top", Dictionary { { "root", Uid { index } } });
        EXPECT_EQ(unarchived(archive), Value()) << index;
    }
    EXPECT_EQ(unarchivedObjects({}), Value());
}

TEST_F(KeyedArchives, MayHoldMutableContainers)
{
    EXPECT_EQ(
        unarchivedObjects({ "$null", arrayEntry(2, { Uid { 3 }, Uid { 0 } }), classEntry("NSMutableArray"), "a" }),
        Value(Array { "a", nullptr }));
    EXPECT_EQ(unarchivedObjects({ "$null",
                  Dictionary { { "$class", Uid { 2 } }, { "NS.keys", Array { Uid { 3 } } },
                      { "NS.objects", Array { Uid { 4 } } } },
                  classEntry("NSMutableDictionary"), "key", 5 }),
        Value(Dictionary { { "key", 5 } }));
}

TEST_F(KeyedArchives, WithABrokenContainerGiveNull)
{
    const auto dictionaryOf = [](const Value& keys, const Value& values) {
        Dictionary entry { { "$class", Uid { 2 } } };
        if (!keys.isNull())
            entry.emplace("NS.keys", keys);
        if (!values.isNull())
            entry.emplace("NS.objects", values);
        return unarchivedObjects({ "$null", entry, classEntry("NSDictionary"), "key", 5 });
    };
    const Value key = Array { Uid { 3 } };
    const Value value = Array { Uid { 4 } };
    EXPECT_EQ(dictionaryOf(key, value), Value(Dictionary { { "key", 5 } }));
    EXPECT_EQ(dictionaryOf({}, value), Value());
    EXPECT_EQ(dictionaryOf(key, {}), Value());
    EXPECT_EQ(dictionaryOf(key, Array {}), Value());
    EXPECT_EQ(dictionaryOf(Array { Uid { 3 }, Uid { 3 } }, value), Value());
    EXPECT_EQ(dictionaryOf(value, key), Value());
    EXPECT_EQ(dictionaryOf(Array { Uid { 0 } }, value), Value());
    EXPECT_EQ(dictionaryOf(Uid { 3 }, value), Value());
    EXPECT_EQ(unarchivedObjects({ "$null", Dictionary { { "$class", Uid { 2 } } }, classEntry("NSArray") }), Value());
    EXPECT_EQ(unarchivedObjects({ "$null", arrayEntry(2, { Uid { 9 } }), classEntry("NSArray") }), Value());
}

TEST_F(KeyedArchives, WithAClassThatIsNotKnownHereGiveNull)
{
    for (const char* name : { "NSColor", "", "UIView", "nsarray", "PSSpecifier" }) {
        EXPECT_EQ(unarchivedObjects({ "$null", arrayEntry(2, {}), classEntry(name) }), Value()) << name;
        EXPECT_EQ(unarchivedObjects({ "$null", arrayEntry(2, { Uid { 4 }, Uid { 3 } }), classEntry("NSArray"),
                      arrayEntry(5, {}), "text", classEntry(name) }),
            Value())
            << name;
    }
}

TEST_F(KeyedArchives, WhoseClassIsNoClassGiveNull)
{
    for (const Value& entry : { Value("NSArray"), Value(5), Value(Dictionary {}), Value(Array { "NSArray" }),
             Value(Dictionary { { "$classname", 5 } }) })
        EXPECT_EQ(unarchivedObjects({ "$null", arrayEntry(2, {}), entry }), Value());
    for (const std::uint64_t index : { 0UL, 1UL, 77UL, 4294967295UL })
        EXPECT_EQ(unarchivedObjects({ "$null", arrayEntry(index, {}), classEntry("NSArray") }), Value()) << index;
    EXPECT_EQ(
        unarchivedObjects({ "$null", Dictionary { { "$class", "NSArray" }, { "NS.objects", Array {} } } }), Value());
}

TEST_F(KeyedArchives, ThatReferToThemselvesInACircleGiveNull)
{
    EXPECT_EQ(unarchivedObjects({ "$null", arrayEntry(2, { Uid { 1 } }), classEntry("NSArray") }), Value());
    EXPECT_EQ(unarchivedObjects({ "$null", arrayEntry(2, { Uid { 3 } }), classEntry("NSArray"),
                  arrayEntry(2, { Uid { 1 }, Uid { 3 } }) }),
        Value());
    EXPECT_EQ(unarchivedObjects({ "$null",
                  Dictionary { { "$class", Uid { 2 } }, { "NS.keys", Array { Uid { 3 } } },
                      { "NS.objects", Array { Uid { 1 } } } },
                  classEntry("NSDictionary"), "key" }),
        Value());
    EXPECT_EQ(unarchivedObjects({ "$null", Dictionary { { "$class", Uid { 2 } }, { "UIImageData", Uid { 1 } } },
                  classEntry("UIImage") }),
        Value());
}

TEST_F(KeyedArchives, MayReferToAnObjectTwice)
{
    EXPECT_EQ(unarchivedObjects({ "$null", arrayEntry(2, { Uid { 3 }, Uid { 3 }, Uid { 4 }, Uid { 4 } }),
                  classEntry("NSArray"), "text", arrayEntry(2, { Uid { 3 } }) }),
        Value(Array { "text", "text", Array { "text" }, Array { "text" } }));
}

TEST_F(KeyedArchives, ThatWouldUnfoldWithoutEndGiveNull)
{
    Array objects { "$null" };
    for (std::uint64_t level = 1; level <= 40; ++level)
        objects.push_back(arrayEntry(42, { Uid { level + 1 }, Uid { level + 1 } }));
    objects.emplace_back("core");
    objects.push_back(classEntry("NSArray"));
    EXPECT_EQ(unarchivedObjects(objects), Value());
}

TEST_F(KeyedArchives, ThatWouldUnfoldToMoreTextThanAPhoneHoldsGiveNull)
{
    for (const Value& large : { Value(std::string(1 << 20, 'x')), Value(Bytes(1 << 20)) })
        EXPECT_EQ(unarchivedObjects({ "$null", arrayEntry(2, Array(50000, Uid { 3 })), classEntry("NSArray"), large }),
            Value());
}

TEST_F(KeyedArchives, OfAnImageThatHasNoPixelsGiveNull)
{
    const auto imageWith = [](Dictionary fields) {
        fields.emplace("$class", Uid { 2 });
        return unarchivedObjects({ "$null", fields, classEntry("UIImage"), Bytes { 1, 2, 3 }, "text" });
    };
    EXPECT_EQ(imageWith({}), Value());
    EXPECT_EQ(imageWith({ { "UIImageData", Uid { 0 } } }), Value());
    EXPECT_EQ(imageWith({ { "UIImageData", Uid { 3 } } }), Value());
    EXPECT_EQ(imageWith({ { "UIImageData", Uid { 4 } } }), Value());
    EXPECT_EQ(imageWith({ { "UIImageData", Bytes {} }, { "UIScale", 2 } }), Value());
}

TEST_F(KeyedArchives, OfAnImageWithASenselessScaleHaveScaleOne)
{
    const Bytes png = phone.png(4, 2);
    for (const Value& scale : { Value(), Value(0), Value(-2), Value("two"), Value(std::nan("")) }) {
        Dictionary fields { { "$class", Uid { 2 } }, { "UIImageData", png } };
        if (!scale.isNull())
            fields.emplace("UIScale", scale);
        const auto image = unarchivedObjects({ "$null", fields, classEntry("UIImage") }).as<UIImage>();
        ASSERT_TRUE(image);
        EXPECT_EQ(image->scale(), 1);
        EXPECT_EQ(image->size(), (CGSize { 4, 2 }));
    }
}

} // namespace
