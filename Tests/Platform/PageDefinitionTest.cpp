#include "Foundation/NSString.h"
#include "Platform/PhoneTest.h"
#include "PreferencesUI/PSPageDefinition.h"

namespace {

/// The target of the rows, of a class of the test program.
class DefinitionTarget final : public NSObject {
    NS_CLASS(DefinitionTarget, NSObject)
};

/// A cell that page definitions may name.
class NamedCell final : public PSTableCell {
    NS_CLASS(NamedCell, PSTableCell)
};

NS_IMPLEMENTATION(DefinitionTarget)
NS_IMPLEMENTATION(NamedCell)

class PageDefinitions : public PhoneTest {
protected:
    static constexpr const char* bundle = TestPhone::bundlePath;

    PSPageDefinition load(const std::string& name = "Page") const { return loadPageDefinition(name, target); }
    /// The only row of a page with that item.
    Row rowOf(const Dictionary& item)
    {
        phone.writePage("Page", Array { item });
        const Rows rows = load().rows;
        EXPECT_EQ(rows.size(), 1U);
        return rows.empty() ? PSSpecifier::emptyGroupSpecifier() : rows[0];
    }
    void addToBundle(const std::string& file, const Bytes& content)
    {
        phone.writeFile(stringByAppendingPathComponent(bundle, file), content);
    }
    void addTableToBundle(const std::string& table, const Dictionary& texts)
    {
        phone.writePropertyList(stringByAppendingPathComponent(bundle, "de.lproj/" + table + ".strings"), texts);
    }

    const std::shared_ptr<DefinitionTarget> target = std::make_shared<DefinitionTarget>();
};

TEST_F(PageDefinitions, GiveATitleAndARowForEachItem)
{
    phone.writePage("Page", Array { item("PSGroupCell", "group"), item("PSSwitchCell", "switch") });
    const PSPageDefinition page = load();
    EXPECT_EQ(page.title, "Page");
    EXPECT_EQ(identifiersOf(page.rows), (Strings { "group", "switch" }));
    EXPECT_TRUE(page.rows[0]->isGroup());
    EXPECT_EQ(page.rows[1]->cellType(), PSCellType::Switch);
}

TEST_F(PageDefinitions, GiveARowAllThatItsItemSays)
{
    addToBundle("Misc@2x.png", phone.png(58, 58));
    const Dictionary item { { "cell", "PSSliderCell" }, { "cellClass", "NamedCell" }, { "label", "Time" },
        { "id", "TandemTime" }, { "key", "Time" }, { "default", 3 }, { "defaults", "com.vexil.other" },
        { "set", "write:row:" }, { "get", "read:" }, { "action", "act:" }, { "detail", "DefinitionTarget" },
        { "icon", "Misc" }, { "min", 1 }, { "max", 10 }, { "showValue", true }, { "isSegmented", true },
        { "segmentCount", 9 }, { "isContinuous", false }, { "footerText", "Footer" }, { "bundleIdentifier", "org.app" },
        { "negate", true }, { "PostNotification", "changed" }, { "enabled", false }, { "own", Array { 1 } } };
    const Row row = rowOf(item);
    EXPECT_EQ(row->name(), "Time");
    EXPECT_EQ(row->identifier(), "TandemTime");
    EXPECT_EQ(row->cellType(), PSCellType::Slider);
    EXPECT_EQ(row->target(), target);
    EXPECT_EQ(row->setter(), "write:row:");
    EXPECT_EQ(row->getter(), "read:");
    EXPECT_EQ(row->buttonAction(), "act:");
    EXPECT_EQ(row->detailControllerClass(), &DefinitionTarget::classObject());
    const auto icon = row->propertyForKey(PSProperty::iconImage).as<UIImage>();
    ASSERT_TRUE(icon);
    EXPECT_EQ(icon->size(), (CGSize { 29, 29 }));
    Dictionary expected = item;
    expected.insert_or_assign("cellClass", &NamedCell::classObject());
    expected.insert_or_assign("iconImage", icon);
    EXPECT_EQ(row->properties(), expected);
}

TEST_F(PageDefinitions, ReadAndWriteThroughTheGeneralPairWhereNoneIsNamed)
{
    const Row row = rowOf({});
    EXPECT_EQ(row->setter(), "setPreferenceValue:specifier:");
    EXPECT_EQ(row->getter(), "readPreferenceValue:");
    EXPECT_EQ(row->buttonAction(), "");
    EXPECT_EQ(row->detailControllerClass(), nullptr);
    EXPECT_EQ(row->name(), std::nullopt);
    EXPECT_EQ(row->identifier(), std::nullopt);
    EXPECT_EQ(row->properties(), Dictionary());
}

TEST_F(PageDefinitions, ShowAStaticTextForACellThatIsNotKnown)
{
    for (const Value& cell : { Value("PSNoSuchCell"), Value(""), Value(6), Value(Array {}) })
        EXPECT_EQ(rowOf({ { "cell", cell } })->cellType(), PSCellType::StaticText);
}

TEST_F(PageDefinitions, LeaveOutAClassThatIsNotKnown)
{
    const Row row = rowOf({ { "cellClass", "NoSuchCell" }, { "detail", "NoSuchController" } });
    EXPECT_EQ(row->propertyForKey(PSProperty::cellClass), Value());
    EXPECT_EQ(row->detailControllerClass(), nullptr);
    EXPECT_EQ(row->propertyForKey(PSProperty::detail), Value("NoSuchController"));
}

TEST_F(PageDefinitions, PassOverWhatIsOfAnotherType)
{
    for (const Value& wrong :
        { Value(5), Value(true), Value(Array { "x" }), Value(Dictionary { { "x", 1 } }), Value(Bytes { 1 }) }) {
        Dictionary item;
        for (const char* key :
            { "cell", "cellClass", "label", "id", "set", "get", "action", "detail", "icon", "footerText" })
            item.emplace(key, wrong);
        const Row row = rowOf(item);
        EXPECT_EQ(row->name(), std::nullopt);
        EXPECT_EQ(row->identifier(), std::nullopt);
        EXPECT_EQ(row->cellType(), PSCellType::StaticText);
        EXPECT_EQ(row->setter(), "setPreferenceValue:specifier:");
        EXPECT_EQ(row->getter(), "readPreferenceValue:");
        EXPECT_EQ(row->buttonAction(), "");
        EXPECT_EQ(row->detailControllerClass(), nullptr);
        EXPECT_EQ(row->properties(), item);
    }
}

TEST_F(PageDefinitions, FindAnIconWithOrWithoutItsType)
{
    addToBundle("Misc.png", phone.png(29, 29));
    for (const char* name : { "Misc", "Misc.png" })
        EXPECT_TRUE(rowOf({ { "icon", name } })->propertyForKey(PSProperty::iconImage).as<UIImage>()) << name;
}

TEST_F(PageDefinitions, LeaveOutAnIconThatIsMissingOrNoPicture)
{
    addToBundle("broken.png", bytesOf("broken"));
    for (const char* name : { "Missing", "broken", "", ".png", "../../../etc/passwd", "broken.png.png" }) {
        const Row row = rowOf({ { "icon", name } });
        EXPECT_EQ(row->properties(), (Dictionary { { "icon", name } })) << name;
    }
}

TEST_F(PageDefinitions, DoNotTakeATextForAnImage)
{
    EXPECT_FALSE(rowOf({ { "iconImage", "Misc" } })->propertyForKey(PSProperty::iconImage).as<UIImage>());
}

TEST_F(PageDefinitions, TranslateTitlesLabelsAndFootersInTheApplicationsOwnBundle)
{
    phone.translate("de", { { "Page", "Seite" }, { "Label of row", "Zeile" }, { "Footer", "Fuß" } });
    for (const char* table : { "Page", "Localizable" })
        addTableToBundle(table, { { "Label of row", "Falsch" }, { "Label of other", "Falsch" } });
    phone.writePage(
        "Page", Array { item("PSLinkCell", "row", { { "footerText", "Footer" } }), item("PSLinkCell", "other") });
    const PSPageDefinition page = load();
    EXPECT_EQ(page.title, "Seite");
    EXPECT_EQ(page.rows[0]->name(), "Zeile");
    EXPECT_EQ(page.rows[0]->propertyForKey(PSProperty::footerText), Value("Fuß"));
    EXPECT_EQ(page.rows[0]->propertyForKey(PSProperty::label), Value("Label of row"));
    EXPECT_EQ(page.rows[1]->name(), "Label of other");
}

TEST_F(PageDefinitions, LeaveIdentifiersKeysAndClassesUntranslated)
{
    phone.translate("de", { { "NamedCell", "x" }, { "row", "x" }, { "Key", "x" }, { "PSSwitchCell", "x" } });
    const Row row =
        rowOf({ { "cell", "PSSwitchCell" }, { "cellClass", "NamedCell" }, { "id", "row" }, { "key", "Key" } });
    EXPECT_EQ(row->identifier(), "row");
    EXPECT_EQ(row->cellType(), PSCellType::Switch);
    EXPECT_EQ(row->properties(),
        (Dictionary { { "cell", "PSSwitchCell" }, { "cellClass", &NamedCell::classObject() }, { "id", "row" },
            { "key", "Key" } }));
}

TEST_F(PageDefinitions, MakeTheirRowsAnewAtEachLoad)
{
    phone.writePage("Page", plainItems({ "a" }));
    const Rows first = load().rows;
    const Rows second = load().rows;
    EXPECT_NE(first[0], second[0]);
    first[0]->setProperty_forKey("changed", "key");
    EXPECT_EQ(second[0]->propertyForKey("key"), Value());
}

TEST_F(PageDefinitions, LeaveOutItemsThatAreNoDictionaries)
{
    phone.writePage("Page", Array { "text", item("PSLinkCell", "a"), 5, Array { item("PSLinkCell", "b") }, true });
    EXPECT_EQ(identifiersOf(load().rows), Strings { "a" });
}

TEST_F(PageDefinitions, ThatCannotBeReadHaveNoTitleAndNoRows)
{
    addToBundle("Broken.plist", bytesOf("<plist><dict>"));
    phone.writePropertyList(stringByAppendingPathComponent(bundle, "Array.plist"), Array { item("PSLinkCell", "a") });
    phone.files->createDirectory(stringByAppendingPathComponent(bundle, "Folder.plist"));
    for (const char* name : { "Missing", "Broken", "Array", "Folder", "", "..", "Page.plist" }) {
        const PSPageDefinition page = load(name);
        EXPECT_EQ(page.title, std::nullopt) << name;
        EXPECT_EQ(page.rows, Rows {}) << name;
    }
}

TEST_F(PageDefinitions, WithoutItemsHaveNoRows)
{
    const auto pageWith = [&](const Dictionary& content) {
        phone.writePropertyList(stringByAppendingPathComponent(bundle, "Page.plist"), content);
        return load();
    };
    EXPECT_EQ(pageWith({ { "title", "Title" } }).title, "Title");
    EXPECT_EQ(pageWith({ { "title", "Title" } }).rows, Rows {});
    EXPECT_EQ(pageWith({ { "title", 5 }, { "items", "none" } }).title, std::nullopt);
    EXPECT_EQ(pageWith({ { "items", Dictionary { { "a", item("PSLinkCell", "a") } } } }).rows, Rows {});
}

TEST_F(PageDefinitions, WithoutATargetAreEmpty)
{
    phone.writePage("Page", plainItems({ "a" }));
    EXPECT_EQ(loadPageDefinition("Page", nullptr).rows, Rows {});
}

TEST_F(PageDefinitions, MayBeLong)
{
    phone.writePage("Page", Array(3000, item("PSLinkCell", "row")));
    EXPECT_EQ(load().rows.size(), 3000U);
}

TEST_F(PageDefinitions, DoNotKeepTheirTargetAlive)
{
    phone.writePage("Page", plainItems({ "a" }));
    auto gone = std::make_shared<DefinitionTarget>();
    const Rows rows = loadPageDefinition("Page", gone).rows;
    gone.reset();
    EXPECT_EQ(rows[0]->target(), nullptr);
}

} // namespace
