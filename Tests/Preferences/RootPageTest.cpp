#include "Foundation/NSString.h"
#include "Support/PageTest.h"
#include "TDPageStyle.h"
#include "UIKit/UIViewAnimation.h"
#include "libtandem/TDSettings.h"
#include "libvexil/VXWebKitViewController.h"

namespace {

constexpr UIColor disabledText { 2.0F / 3, 2.0F / 3, 2.0F / 3, 0.5F };

class RootPage : public PageTest {
protected:
    static Array tenItems()
    {
        Array items = plainItems({ "r0", "r1", "r2", "r3", "r4", "r5", "r6", "r7", "r8", "r9" });
        items[1] = item("PSSwitchCell", "r1",
            { { "key", "TandemEnabled" }, { "default", true }, { "set", "tandemEnabledOrDisabled:specifier:" } });
        return items;
    }

    Strings rows() { return identifiersOf(root->specifiers()); }
};

TEST_F(RootPage, DisabledProductShowsTheFirstTwoAndTheLastFourOfTenRows)
{
    phone.writePage("Root", tenItems());
    phone.storeSettings({ { "TandemEnabled", false } });
    openRoot();
    EXPECT_EQ(rows(), (Strings { "r0", "r1", "r6", "r7", "r8", "r9" }));
}

TEST_F(RootPage, FewerThanSixRowsHideNothing)
{
    phone.storeSettings({ { "TandemEnabled", false } });
    Strings identifiers;
    for (int count = 0; count <= 6; ++count) {
        phone.writePage("Root", plainItems(identifiers));
        openRoot();
        EXPECT_EQ(rows(), identifiers) << count;
        identifiers.push_back("r" + std::to_string(count));
    }
}

TEST_F(RootPage, MasterSwitchWithZeroToSixRowsKeepsThemAll)
{
    Strings identifiers;
    for (int count = 0; count <= 6; ++count) {
        phone.writePage("Root", plainItems(identifiers));
        openRoot();
        const Row row = PSSpecifier::emptyGroupSpecifier();
        row->setProperty_forKey("TandemEnabled", PSProperty::key);
        for (const bool on : { false, true, true, false, false }) {
            root->tandemEnabledOrDisabled_specifier(on, row);
            EXPECT_EQ(rows(), identifiers) << count;
        }
        EXPECT_EQ(screen->lines, (Strings { "reload", "reload", "reload", "reload", "reload" })) << count;
        identifiers.push_back("r" + std::to_string(count));
    }
}

TEST_F(RootPage, TurningTheMasterSwitchOffRemovesFromTheHighestRowDownAndReloads)
{
    phone.writePage("Root", tenItems());
    openRoot();
    moveSwitch(*root, "r1", false);
    EXPECT_EQ(screen->lines,
        (Strings { "remove 5 r5 animated", "remove 4 r4 animated", "remove 3 r3 animated", "remove 2 r2 animated",
            "reload" }));
    EXPECT_EQ(rows(), (Strings { "r0", "r1", "r6", "r7", "r8", "r9" }));
    EXPECT_EQ(phone.storedSettings(), Value(Dictionary { { "TandemEnabled", false } }));
}

TEST_F(RootPage, TurningTheMasterSwitchOnInsertsTheFreshRowsAndReloads)
{
    phone.writePage("Root", tenItems());
    phone.storeSettings({ { "TandemEnabled", false } });
    openRoot();
    moveSwitch(*root, "r1", true);
    EXPECT_EQ(screen->lines,
        (Strings { "insert 2 r2 animated", "insert 3 r3 animated", "insert 4 r4 animated", "insert 5 r5 animated",
            "reload" }));
    EXPECT_EQ(rows(), (Strings { "r0", "r1", "r2", "r3", "r4", "r5", "r6", "r7", "r8", "r9" }));
}

TEST_F(RootPage, TurningTheMasterSwitchOffTwiceRemovesNothingTheSecondTime)
{
    phone.writePage("Root", tenItems());
    phone.storeSettings({ { "TandemEnabled", false } });
    openRoot();
    moveSwitch(*root, "r1", false);
    EXPECT_EQ(screen->lines, Strings { "reload" });
    EXPECT_EQ(rows(), (Strings { "r0", "r1", "r6", "r7", "r8", "r9" }));
}

TEST_F(RootPage, MasterSwitchBeforeTheRowsAreBuiltStoresAndReloads)
{
    phone.writePage("Root", tenItems());
    const auto page = std::make_shared<TDRootListController>();
    page->initForContentSize(size);
    page->table().setObserver(screen);
    const Row row = PSSpecifier::emptyGroupSpecifier();
    row->setProperty_forKey("TandemEnabled", PSProperty::key);
    page->tandemEnabledOrDisabled_specifier(false, row);
    EXPECT_EQ(screen->lines, Strings { "reload" });
    EXPECT_EQ(phone.storedSettings(), Value(Dictionary { { "TandemEnabled", false } }));
}

TEST_F(RootPage, RowsThatTheMasterSwitchInsertsHaveNoIconUntilTheReload)
{
    Array items = tenItems();
    items[3] = item("PSLinkCell", "r3", { { "bundleIdentifier", "app" } });
    phone.writePage("Root", items);
    phone.installApp("app");
    phone.storeSettings({ { "TandemEnabled", false } });
    openRoot();
    EXPECT_EQ(phone.homeScreen->requests.size(), 0U);
    moveSwitch(*root, "r1", true);
    EXPECT_EQ(phone.homeScreen->requests.size(), 1U);
    EXPECT_TRUE(rowOf(*root, "r3")->propertyForKey("iconImage").as<UIImage>());
}

TEST_F(RootPage, AppRowsAskTheHomeScreenForTheirIcons)
{
    Array items = plainItems({ "a", "b", "c", "d", "e", "f" });
    items[0] = item("PSLinkCell", "known", { { "bundleIdentifier", "known.app" } });
    items[1] = item("PSLinkCell", "unknown", { { "bundleIdentifier", "unknown.app" } });
    phone.writePage("Root", items);
    phone.installApp("known.app");
    openRoot();
    const auto request = [](const char* app) {
        return FakeHomeScreen::Request { "com.vexil.tandem", "com.vexil.tandem.app.icon",
            Dictionary { { "TDServiceMessageData", app } } };
    };
    EXPECT_EQ(phone.homeScreen->requests, (std::vector { request("known.app"), request("unknown.app") }));
    const auto icon = rowOf(*root, "known")->propertyForKey("iconImage").as<UIImage>();
    ASSERT_TRUE(icon);
    EXPECT_EQ(icon->size(), (CGSize { 30, 30 }));
    EXPECT_EQ(rowOf(*root, "unknown")->propertyForKey("iconImage"), Value());
    EXPECT_TRUE(cellOf(*root, "known")->imageView()->image());
}

TEST_F(RootPage, BundleIdentifierThatIsNoTextIsAskedForAsItIs)
{
    phone.writePage("Root", Array { item("PSLinkCell", "row", { { "bundleIdentifier", 5 } }) });
    openRoot();
    EXPECT_EQ(phone.homeScreen->requests,
        (std::vector { FakeHomeScreen::Request {
            "com.vexil.tandem", "com.vexil.tandem.app.icon", Dictionary { { "TDServiceMessageData", 5 } } } }));
}

TEST_F(RootPage, RubbishFromTheHomeScreenLeavesTheRowsOwnIconOrNone)
{
    const std::vector<Value> replies { Value(), Value(1), Dictionary(),
        Dictionary { { "TDServiceMessageData", "text" } }, Dictionary { { "TDServiceMessageData", Bytes { 1, 2, 3 } } },
        Dictionary { { "TDServiceMessageData", phone.png(1, 1) } } };
    phone.writeFile(stringByAppendingPathComponent(TestPhone::bundlePath, "Own.png"), phone.png(29, 29));
    phone.writePage("Root",
        Array { item("PSLinkCell", "none", { { "bundleIdentifier", "app" } }),
            item("PSLinkCell", "own", { { "bundleIdentifier", "app" }, { "icon", "Own" } }) });
    for (const Value& reply : replies) {
        phone.homeScreen->addReply("app", reply);
        openRoot();
        EXPECT_EQ(rowOf(*root, "none")->propertyForKey("iconImage"), Value());
        EXPECT_TRUE(rowOf(*root, "own")->propertyForKey("iconImage").as<UIImage>());
    }
    EXPECT_EQ(phone.log->lines, Strings {});
}

TEST_F(RootPage, CellThatCannotBeWorkedIsLightGreyAtHalfAlphaOnLightAndDark)
{
    phone.writePage(
        "Root", Array { item("PSTitleValueCell", "off", { { "enabled", false } }), item("PSTitleValueCell", "on") });
    openRoot();
    EXPECT_EQ(cellOf(*root, "off")->textLabel()->textColor(), disabledText);
    EXPECT_EQ(cellOf(*root, "off")->detailTextLabel()->textColor(), disabledText);
    EXPECT_EQ(cellOf(*root, "on")->textLabel()->textColor(), accentColor);
    EXPECT_EQ(cellOf(*root, "on")->detailTextLabel()->textColor(), accentColor);
    phone.appearance->becomeDark();
    root->traitCollectionDidChange();
    EXPECT_EQ(cellOf(*root, "off")->textLabel()->textColor(), disabledText);
    EXPECT_EQ(cellOf(*root, "off")->detailTextLabel()->textColor(), disabledText);
    EXPECT_EQ(cellOf(*root, "on")->textLabel()->textColor(), UIColor::whiteColor());
    EXPECT_EQ(cellOf(*root, "on")->detailTextLabel()->textColor(), UIColor::whiteColor());
}

TEST_F(RootPage, AccentColourIsTheExactSinglePrecisionOne)
{
    EXPECT_EQ(accentColor.red, 0.10980392F);
    EXPECT_EQ(accentColor.green, 0.30196080F);
    EXPECT_EQ(accentColor.blue, 0.66666669F);
    EXPECT_EQ(accentColor.alpha, 1.0F);
}

TEST_F(RootPage, SimSettingsEntryShowsATintedTemplateIcon)
{
    phone.writeFile(stringByAppendingPathComponent(TestPhone::bundlePath, "Sim.png"), phone.png(29, 29));
    phone.writePage("Root",
        Array { item("PSLinkCell", "TDSimSettingsController", { { "icon", "Sim.png" } }),
            item("PSLinkCell", "other", { { "icon", "Sim" } }) });
    openRoot();
    const auto icon = cellOf(*root, "TDSimSettingsController")->imageView();
    EXPECT_EQ(icon->image()->renderingMode(), UIImageRenderingMode::AlwaysTemplate);
    EXPECT_EQ(icon->tintColor(), accentColor);
    EXPECT_EQ(cellOf(*root, "other")->imageView()->image()->renderingMode(), UIImageRenderingMode::Automatic);
    EXPECT_EQ(cellOf(*root, "other")->imageView()->tintColor(), std::nullopt);
    phone.appearance->becomeDark();
    root->traitCollectionDidChange();
    EXPECT_EQ(cellOf(*root, "TDSimSettingsController")->imageView()->tintColor(), UIColor::whiteColor());
}

TEST_F(RootPage, ProductsEntryHasADisclosureIndicatorAndOpensTheProductsPage)
{
    phone.writePage("Root", Array { item("PSLinkCell", "VexilProducts"), item("PSLinkCell", "other") });
    openRoot();
    root->setSpecifier(PSSpecifier::groupSpecifierWithName("Pairo für dich & mich"));
    EXPECT_EQ(cellOf(*root, "VexilProducts")->accessoryType(), UITableViewCellAccessoryType::DisclosureIndicator);
    EXPECT_EQ(cellOf(*root, "other")->accessoryType(), UITableViewCellAccessoryType::None);
    tap(*root, "VexilProducts");
    const auto page = std::dynamic_pointer_cast<VXWebKitViewController>(navigation->topViewController());
    ASSERT_TRUE(page);
    EXPECT_EQ(page->title(), "Label of VexilProducts");
    EXPECT_EQ(
        phone.links->urls, Strings { "https://vexil.example/products?from=Pairo%20f%C3%BCr%20dich%20%26%20mich" });
    EXPECT_EQ(screen->lines, Strings { "push VXWebKitViewController" });
}

TEST_F(RootPage, OtherRowsGoToTheBase)
{
    phone.writePage("Root", Array { item("PSLinkCell", "calls", { { "detail", "TDCallsSettingsController" } }) });
    phone.writePage("Calls", plainItems({ "x", "y" }));
    openRoot();
    tap(*root, "calls");
    EXPECT_EQ(screen->lines, Strings { "push TDCallsSettingsController" });
    EXPECT_EQ(navigation->topViewController()->title(), "Label of calls");
}

TEST_F(RootPage, TitleImageFadesInOverOneSecond)
{
    double time = 100;
    UIViewAnimations::shared().setClock([&] { return time; });
    phone.writeFile(stringByAppendingPathComponent(TestPhone::bundlePath, "Tandem@2x.png"), phone.png(160, 60));
    openRoot();
    const auto title = std::dynamic_pointer_cast<UIImageView>(root->navigationItem().titleView);
    ASSERT_TRUE(title);
    EXPECT_EQ(title->image()->size(), (CGSize { 80, 30 }));
    EXPECT_EQ(title->alpha(), 1);
    EXPECT_EQ(UIViewAnimations::shared().presentedAlpha(*title), 0);
    time = 100.5;
    EXPECT_FLOAT_EQ(UIViewAnimations::shared().presentedAlpha(*title), 0.5F);
    time = 101;
    EXPECT_EQ(UIViewAnimations::shared().presentedAlpha(*title), 1);
    EXPECT_FALSE(UIViewAnimations::shared().isRunning());
}

TEST_F(RootPage, EnabledIsAskedOfTheCoreLibraryNotOfThePagesOwnSettings)
{
    phone.writePage("Root", tenItems());
    phone.storeSettings({ { "TandemEnabled", false } });
    openRoot();
    root->setSettings(Dictionary { { "TandemEnabled", true } });
    root->reloadSpecifiers();
    EXPECT_EQ(rows().size(), 6U);
}

TEST_F(RootPage, PageIsNotKeptAliveByItsObservations)
{
    phone.writePage("Root", tenItems());
    openRoot();
    const std::weak_ptr<TDRootListController> page = root;
    root.reset();
    navigation = std::make_shared<UINavigationController>();
    EXPECT_TRUE(page.expired());
}

} // namespace
