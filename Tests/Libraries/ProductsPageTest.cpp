#include "Support/TestPhone.h"
#include "UIKit/UIAlertController.h"
#include "libvexil/VXWebKitViewController.h"

namespace {

class ProductsPage : public ::testing::Test {
protected:
    std::shared_ptr<VXWebKitViewController> open(std::optional<std::string> product, bool loadDefault = true)
    {
        auto page = std::make_shared<VXWebKitViewController>();
        EXPECT_TRUE(page->initWithProduct_loadDefault(std::move(product), loadDefault));
        page->setTitle("More");
        navigation->pushViewController_animated(page, true);
        return page;
    }

    /// The alert above what the user sees, as "title: message"; empty for none.
    std::string shownAlert() const
    {
        const auto top = navigation->topViewController()->topmostViewController();
        const auto alert = std::dynamic_pointer_cast<UIAlertController>(top);
        return alert ? alert->title() + ": " + alert->message() : std::string();
    }

    TestPhone phone { PSSpecifier::classObject() };
    std::shared_ptr<UINavigationController> navigation = std::make_shared<UINavigationController>();
};

TEST_F(ProductsPage, IsFoundByName)
{
    ASSERT_TRUE(NSClassFromString("VXWebKitViewController"));
    EXPECT_TRUE(NSClassFromString("VXWebKitViewController")->allocAs<VXWebKitViewController>());
}

TEST_F(ProductsPage, OpensTheProductsInTheBrowserOnce)
{
    const auto page = open("Pairo");
    EXPECT_EQ(page->url(), "https://vexil.example/products?from=Pairo");
    page->loadViewIfNeeded();
    EXPECT_EQ(phone.links->urls, Strings { "https://vexil.example/products?from=Pairo" });
}

TEST_F(ProductsPage, SaysNothingOfWhereTheUserComesFromWhereThatIsUnknown)
{
    open(std::nullopt);
    open("");
    EXPECT_EQ(
        phone.links->urls, (Strings { "https://vexil.example/products", "https://vexil.example/products?from=" }));
}

TEST_F(ProductsPage, LeavesAnEscapedNameAsItIs)
{
    open("Z%C3%BCrich%20%26");
    EXPECT_EQ(phone.links->urls, Strings { "https://vexil.example/products?from=Z%C3%BCrich%20%26" });
}

TEST_F(ProductsPage, OpensNothingUnlessItIsToldTo)
{
    EXPECT_EQ(open("Pairo", false)->url(), "https://vexil.example/products?from=Pairo");
    EXPECT_EQ(phone.links->urls, Strings {});
}

TEST_F(ProductsPage, OpensNothingWithoutABrowserOrBeforeItIsInitialised)
{
    Phone::current().links = nullptr;
    open("Pairo");
    EXPECT_EQ(shownAlert(), "");
    Phone::current().links = phone.links;
    navigation->pushViewController_animated(std::make_shared<VXWebKitViewController>(), true);
    EXPECT_EQ(phone.links->urls, Strings {});
}

TEST_F(ProductsPage, IsOpenedAgainWhenTheUserWantsThat)
{
    open("Pairo")->openInBrowser();
    EXPECT_EQ(phone.links->urls,
        (Strings { "https://vexil.example/products?from=Pairo", "https://vexil.example/products?from=Pairo" }));
}

TEST_F(ProductsPage, TellsWhereNoBrowserCanBeReached)
{
    phone.links->works = false;
    open("Pairo");
    EXPECT_EQ(shownAlert(), "More: No browser could be reached.");
}

TEST_F(ProductsPage, TellsOfABrowserThatFailsLater)
{
    open("Pairo");
    EXPECT_EQ(shownAlert(), "");
    phone.links->fail();
    EXPECT_EQ(shownAlert(), "More: No browser could be reached.");
}

TEST_F(ProductsPage, TellsOfABrowserThatFailsAfterThePageWasLeft)
{
    navigation->pushViewController_animated(std::make_shared<UIViewController>(), true);
    open("Pairo");
    navigation->popViewControllerAnimated(true);
    phone.links->fail();
    EXPECT_EQ(shownAlert(), "More: No browser could be reached.");
}

TEST_F(ProductsPage, NobodyIsLeftToTellWhenTheWindowHasGone)
{
    open("Pairo");
    navigation.reset();
    phone.links->fail();
}

} // namespace
