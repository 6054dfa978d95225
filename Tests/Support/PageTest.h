#pragma once

#include "Support/TestPhone.h"
#include "TDRootListController.h"

/// Pages on a test phone, under a navigation controller that records what the screen shows.
class PageTest : public ::testing::Test {
protected:
    PageTest();

    /// The root page; most tests give it first a page definition of their own.
    std::shared_ptr<TDRootListController> openRoot();
    /// A page that the root page has opened; the root page is opened where it was not.
    template <class Page>
    std::shared_ptr<Page> open()
    {
        if (!root)
            openRoot();
        return openUnder<Page>(root);
    }
    /// A page under that parent, or under none.
    template <class Page>
    std::shared_ptr<Page> openUnder(const std::shared_ptr<PSListController>& parent)
    {
        auto page = std::make_shared<Page>();
        page->initForContentSize(size);
        page->setParentController(parent);
        navigation->pushViewController_animated(page, false);
        screen->lines.clear();
        return page;
    }

    /// A page below the root page that is not shown yet, so that its rows are not built.
    template <class Page>
    std::shared_ptr<Page> makeUnshown()
    {
        if (!root)
            openRoot();
        auto page = std::make_shared<Page>();
        page->initForContentSize(size);
        page->setParentController(root);
        page->table().setObserver(screen);
        screen->lines.clear();
        return page;
    }

    /// The cell of a row, laid out at that width.
    static std::shared_ptr<PSTableCell> cellOf(
        PSListController& page, const std::string& identifier, double width = 375);
    static Row rowOf(PSListController& page, const std::string& identifier);
    /// As the user does it: the row's control is moved and let go.
    static void moveSwitch(PSListController& page, const std::string& identifier, bool on);
    static void moveSlider(PSListController& page, const std::string& identifier, float value);
    static void tap(PSListController& page, const std::string& identifier);

    static constexpr CGSize size { 375, 667 };
    TestPhone phone { TDRootListController::classObject() };
    std::shared_ptr<UINavigationController> navigation = std::make_shared<UINavigationController>();
    std::shared_ptr<ScreenRecorder> screen = std::make_shared<ScreenRecorder>();
    std::shared_ptr<TDRootListController> root;
};
