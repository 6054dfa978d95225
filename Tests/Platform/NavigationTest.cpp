#include "Support/TestPhone.h"

#include <functional>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

/// A page that writes down what the platform calls on it.
class Page final : public UIViewController {
    NS_CLASS(Page, UIViewController)
public:
    void viewDidLoad() override
    {
        calls.emplace_back("load");
        if (onLoad)
            onLoad();
    }
    void viewWillAppear() override
    {
        calls.emplace_back("appear");
        if (onAppear)
            onAppear();
    }
    void viewDidAppear() override { calls.emplace_back("shown"); }
    void backButtonAction(const std::shared_ptr<UIBarButtonItem>& sender)
    {
        calls.push_back(sender ? "back" : "back from nobody");
    }

    Strings calls;
    std::function<void()> onLoad;
    std::function<void()> onAppear;
};

NS_IMPLEMENTATION(Page, NS_METHOD(backButtonAction))

/// Answers a picker.
class PickerDelegate final : public UIImagePickerControllerDelegate {
public:
    explicit PickerDelegate(Strings& lines)
        : _lines(lines)
    {
    }
    void imagePickerController_didFinishPickingMediaWithInfo(
        const std::shared_ptr<UIImagePickerController>& picker, const Dictionary& info) override
    {
        _lines.emplace_back(valueForKey(info, UIImagePickerControllerEditedImage).as<UIImage>() ? "image" : "no image");
        picker->dismissViewControllerAnimated_completion(true, nullptr);
    }
    bool imagePickerControllerDidCancel(const std::shared_ptr<UIImagePickerController>& /*picker*/) override
    {
        _lines.emplace_back("cancel");
        return answersCancel;
    }
    bool answersCancel = false;

private:
    Strings& _lines;
};

class Navigation : public ::testing::Test {
protected:
    Navigation() { navigation->setObserver(screen); }

    std::shared_ptr<Page> push()
    {
        auto page = std::make_shared<Page>();
        navigation->pushViewController_animated(page, true);
        return page;
    }
    Strings takeLines() { return std::exchange(screen->lines, {}); }

    const std::shared_ptr<ScreenRecorder> screen = std::make_shared<ScreenRecorder>();
    const std::shared_ptr<UINavigationController> navigation = std::make_shared<UINavigationController>();
};

TEST_F(Navigation, PushLoadsAndShowsAPage)
{
    const auto page = push();
    EXPECT_EQ(navigation->topViewController(), page);
    EXPECT_EQ(page->navigationController(), navigation);
    EXPECT_EQ(page->calls, (Strings { "load", "appear", "shown" }));
    EXPECT_EQ(takeLines(), Strings { "push Page" });
}

TEST_F(Navigation, PushPutsThePageOnTheStackBeforeItLoads)
{
    const auto page = std::make_shared<Page>();
    page->onLoad = [&] { EXPECT_EQ(navigation->topViewController(), page); };
    navigation->pushViewController_animated(page, true);
    EXPECT_EQ(page->calls, (Strings { "load", "appear", "shown" }));
}

TEST_F(Navigation, ObserverWithAScreenSaysWhenThePageOnTopIsShown)
{
    screen->showsLater = true;
    const auto first = push();
    EXPECT_EQ(first->calls, (Strings { "load", "appear" }));
    navigation->topPageIsShown();
    EXPECT_EQ(first->calls, (Strings { "load", "appear", "shown" }));
    const auto second = push();
    navigation->popViewControllerAnimated(true);
    EXPECT_EQ(second->calls, (Strings { "load", "appear" }));
    EXPECT_EQ(first->calls, (Strings { "load", "appear", "shown", "appear" }));
}

TEST_F(Navigation, NoPageOnTopIsNotShown)
{
    navigation->topPageIsShown();
    EXPECT_EQ(navigation->topViewController(), nullptr);
}

TEST_F(Navigation, PushOfNothingDoesNothing)
{
    navigation->pushViewController_animated(nullptr, true);
    EXPECT_EQ(navigation->topViewController(), nullptr);
    EXPECT_EQ(takeLines(), Strings {});
}

TEST_F(Navigation, PageThatIsOnTheStackIsNotPushedAgain)
{
    const auto first = push();
    const auto second = push();
    takeLines();
    navigation->pushViewController_animated(first, true);
    navigation->pushViewController_animated(second, true);
    EXPECT_EQ(navigation->viewControllers().size(), 2U);
    EXPECT_EQ(takeLines(), Strings {});
}

TEST_F(Navigation, PopShowsThePageBelowAndDoesNotLoadItAgain)
{
    const auto first = push();
    const auto second = push();
    takeLines();
    EXPECT_EQ(navigation->popViewControllerAnimated(true), second);
    EXPECT_EQ(navigation->topViewController(), first);
    EXPECT_EQ(first->calls, (Strings { "load", "appear", "shown", "appear", "shown" }));
    EXPECT_EQ(second->calls, (Strings { "load", "appear", "shown" }));
    EXPECT_EQ(takeLines(), Strings { "pop Page" });
}

TEST_F(Navigation, PopLeavesTheFirstPage)
{
    EXPECT_EQ(navigation->popViewControllerAnimated(true), nullptr);
    const auto first = push();
    takeLines();
    EXPECT_EQ(navigation->popViewControllerAnimated(true), nullptr);
    EXPECT_EQ(navigation->topViewController(), first);
    EXPECT_EQ(takeLines(), Strings {});
}

TEST_F(Navigation, PoppedPageIsNoLongerUnderTheBarAndIsNotKept)
{
    push();
    auto page = push();
    navigation->popViewControllerAnimated(true);
    EXPECT_EQ(page->navigationController(), nullptr);
    const std::weak_ptr<Page> watched = page;
    page.reset();
    EXPECT_TRUE(watched.expired());
}

TEST_F(Navigation, PageThatRaisesWhileItLoadsIsTakenOffAgain)
{
    const auto first = push();
    takeLines();
    const auto page = std::make_shared<Page>();
    page->onLoad = [] { throw std::out_of_range("no such row"); };
    EXPECT_THROW(navigation->pushViewController_animated(page, true), std::out_of_range);
    EXPECT_EQ(navigation->topViewController(), first);
    EXPECT_EQ(page->navigationController(), nullptr);
    EXPECT_EQ(takeLines(), Strings {});
}

TEST_F(Navigation, PageThatRaisedWhileItLoadedIsLoadedWhenItIsPushedAgain)
{
    push();
    const auto page = std::make_shared<Page>();
    page->onLoad = [] { throw std::out_of_range("no such row"); };
    EXPECT_THROW(navigation->pushViewController_animated(page, true), std::out_of_range);
    page->onLoad = nullptr;
    navigation->pushViewController_animated(page, true);
    EXPECT_EQ(page->calls, (Strings { "load", "load", "appear", "shown" }));
    EXPECT_EQ(navigation->topViewController(), page);
}

TEST_F(Navigation, PageThatRaisesWhenItAppearsIsTakenOffAgain)
{
    const auto first = push();
    const auto page = std::make_shared<Page>();
    page->onAppear = [] { throw std::out_of_range("no such row"); };
    EXPECT_THROW(navigation->pushViewController_animated(page, true), std::out_of_range);
    EXPECT_EQ(navigation->topViewController(), first);
}

TEST_F(Navigation, PageThatPushesAnotherAndThenRaisesIsTheOneThatGoes)
{
    push();
    const auto page = std::make_shared<Page>();
    std::shared_ptr<Page> other;
    page->onLoad = [&] {
        other = push();
        throw std::out_of_range("no such row");
    };
    EXPECT_THROW(navigation->pushViewController_animated(page, true), std::out_of_range);
    EXPECT_EQ(navigation->viewControllers().size(), 2U);
    EXPECT_EQ(navigation->topViewController(), other);
}

TEST_F(Navigation, WorksWithoutAnObserver)
{
    navigation->setObserver(std::weak_ptr<UIPresentationObserver>());
    push();
    const auto page = push();
    page->presentViewController_animated_completion(std::make_shared<Page>(), true, nullptr);
    page->dismissViewControllerAnimated_completion(true, nullptr);
    EXPECT_EQ(navigation->popViewControllerAnimated(true), page);
    EXPECT_EQ(takeLines(), Strings {});
}

TEST_F(Navigation, PagesAreLoadedOnce)
{
    const auto page = std::make_shared<Page>();
    page->onLoad = [&] { page->loadViewIfNeeded(); };
    page->loadViewIfNeeded();
    page->loadViewIfNeeded();
    EXPECT_EQ(page->calls, Strings { "load" });
}

TEST_F(Navigation, PresentShowsAnotherControllerUntilItIsDismissed)
{
    const auto page = push();
    const auto sheet = std::make_shared<Page>();
    takeLines();
    Strings completed;
    page->presentViewController_animated_completion(sheet, true, [&] { completed.emplace_back("up"); });
    EXPECT_EQ(page->presentedViewController(), sheet);
    EXPECT_EQ(sheet->presentingViewController(), page);
    EXPECT_EQ(sheet->navigationController(), navigation);
    EXPECT_EQ(sheet->calls, Strings { "load" });
    page->dismissViewControllerAnimated_completion(true, [&] { completed.emplace_back("down"); });
    EXPECT_EQ(page->presentedViewController(), nullptr);
    EXPECT_EQ(sheet->presentingViewController(), nullptr);
    EXPECT_EQ(completed, (Strings { "up", "down" }));
    EXPECT_EQ(takeLines(), (Strings { "present Page", "dismiss" }));
}

TEST_F(Navigation, ControllerThatPresentsNothingDismissesItself)
{
    const auto page = push();
    const auto sheet = std::make_shared<Page>();
    page->presentViewController_animated_completion(sheet, true, nullptr);
    sheet->dismissViewControllerAnimated_completion(true, nullptr);
    EXPECT_EQ(page->presentedViewController(), nullptr);
}

TEST_F(Navigation, DismissWithNothingUpDoesNothing)
{
    const auto page = push();
    takeLines();
    bool completed = false;
    page->dismissViewControllerAnimated_completion(true, [&] { completed = true; });
    EXPECT_FALSE(completed);
    EXPECT_EQ(takeLines(), Strings {});
}

TEST_F(Navigation, PresentWhileSomethingIsUpDoesNothing)
{
    const auto page = push();
    const auto first = std::make_shared<Page>();
    const auto second = std::make_shared<Page>();
    takeLines();
    page->presentViewController_animated_completion(first, true, nullptr);
    bool completed = false;
    page->presentViewController_animated_completion(second, true, [&] { completed = true; });
    page->presentViewController_animated_completion(first, true, [&] { completed = true; });
    EXPECT_FALSE(completed);
    EXPECT_EQ(page->presentedViewController(), first);
    EXPECT_EQ(second->calls, Strings {});
    EXPECT_EQ(takeLines(), Strings { "present Page" });
}

TEST_F(Navigation, ControllerThatIsUpCannotBePresentedByAnother)
{
    const auto page = push();
    const auto other = push();
    const auto sheet = std::make_shared<Page>();
    page->presentViewController_animated_completion(sheet, true, nullptr);
    other->presentViewController_animated_completion(sheet, true, nullptr);
    EXPECT_EQ(other->presentedViewController(), nullptr);
    EXPECT_EQ(sheet->presentingViewController(), page);
}

TEST_F(Navigation, PresentOfNothingOrOfItselfDoesNothing)
{
    const auto page = push();
    takeLines();
    page->presentViewController_animated_completion(nullptr, true, nullptr);
    page->presentViewController_animated_completion(page, true, nullptr);
    EXPECT_EQ(page->presentedViewController(), nullptr);
    EXPECT_EQ(takeLines(), Strings {});
}

TEST_F(Navigation, DismissTakesDownAllThatStandsAbove)
{
    const auto page = push();
    const auto lower = std::make_shared<Page>();
    const auto upper = std::make_shared<Page>();
    page->presentViewController_animated_completion(lower, true, nullptr);
    page->topmostViewController()->presentViewController_animated_completion(upper, true, nullptr);
    EXPECT_EQ(page->topmostViewController(), upper);
    takeLines();
    page->dismissViewControllerAnimated_completion(true, nullptr);
    EXPECT_EQ(page->topmostViewController(), page);
    EXPECT_EQ(upper->presentingViewController(), nullptr);
    EXPECT_EQ(takeLines(), (Strings { "dismiss", "dismiss" }));
}

TEST_F(Navigation, WhatIsUncoveredIsToldOfAgain)
{
    const auto page = push();
    const auto lower = std::make_shared<Page>();
    page->presentViewController_animated_completion(lower, true, nullptr);
    lower->presentViewController_animated_completion(std::make_shared<Page>(), true, nullptr);
    takeLines();
    lower->dismissViewControllerAnimated_completion(true, nullptr);
    EXPECT_EQ(takeLines(), (Strings { "dismiss", "present Page" }));
}

TEST_F(Navigation, PresentedControllersStandOnEachOther)
{
    const auto page = push();
    const auto lower = std::make_shared<Page>();
    const auto upper = std::make_shared<Page>();
    page->presentViewController_animated_completion(lower, true, nullptr);
    lower->presentViewController_animated_completion(upper, true, nullptr);
    EXPECT_EQ(lower->presentedViewController(), upper);
    upper->dismissViewControllerAnimated_completion(true, nullptr);
    EXPECT_EQ(lower->presentedViewController(), nullptr);
    EXPECT_EQ(page->presentedViewController(), lower);
}

TEST_F(Navigation, ControllerThatRaisesWhileItLoadsIsNotPresented)
{
    const auto page = push();
    takeLines();
    const auto sheet = std::make_shared<Page>();
    sheet->onLoad = [] { throw std::out_of_range("no such row"); };
    EXPECT_THROW(page->presentViewController_animated_completion(sheet, true, nullptr), std::out_of_range);
    EXPECT_EQ(page->presentedViewController(), nullptr);
    EXPECT_EQ(sheet->presentingViewController(), nullptr);
    EXPECT_EQ(takeLines(), Strings {});
}

TEST_F(Navigation, PresentedControllerDoesNotKeepThePageThatPresentsIt)
{
    push();
    auto page = push();
    const auto sheet = std::make_shared<Page>();
    page->presentViewController_animated_completion(sheet, true, nullptr);
    navigation->popViewControllerAnimated(true);
    const std::weak_ptr<Page> watched = page;
    page.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(sheet->presentingViewController(), nullptr);
    sheet->dismissViewControllerAnimated_completion(true, nullptr);
}

TEST_F(Navigation, BarButtonHasItsTargetPerformItsAction)
{
    const auto page = push();
    page->calls.clear();
    const auto image = std::make_shared<UIImage>();
    const auto button = UIBarButtonItem::itemWithImage_style_target_action(
        image, UIBarButtonItemStyle::Plain, page, "backButtonAction:");
    EXPECT_EQ(button->image(), image);
    EXPECT_EQ(button->style(), UIBarButtonItemStyle::Plain);
    EXPECT_EQ(button->target(), page);
    EXPECT_EQ(button->action(), "backButtonAction:");
    button->performAction();
    EXPECT_EQ(page->calls, Strings { "back" });
}

TEST_F(Navigation, BarButtonWhoseTargetIsGoneOrDoesNotRespondDoesNothing)
{
    auto page = std::make_shared<Page>();
    const auto button =
        UIBarButtonItem::itemWithImage_style_target_action(nullptr, UIBarButtonItemStyle::Done, page, "noSuchAction:");
    button->performAction();
    EXPECT_EQ(page->calls, Strings {});
    page.reset();
    EXPECT_EQ(button->target(), nullptr);
    button->performAction();
    UIBarButtonItem::itemWithImage_style_target_action(nullptr, UIBarButtonItemStyle::Plain, nullptr, "x:")
        ->performAction();
}

/// A page with a sheet of three actions that write down what they do.
class Alerts : public Navigation {
protected:
    std::shared_ptr<UIAlertController> present(UIAlertControllerStyle style = UIAlertControllerStyle::ActionSheet)
    {
        auto alert = UIAlertController::alertControllerWithTitle_message_preferredStyle("Pairo", "Really?", style);
        alert->addAction(
            { "Change", UIAlertActionStyle::Destructive, [this] { screen->lines.emplace_back("change"); } });
        alert->addAction({ "Reset", UIAlertActionStyle::Default, [this] { screen->lines.emplace_back("reset"); } });
        alert->addAction({ "Cancel", UIAlertActionStyle::Cancel, nullptr });
        page->presentViewController_animated_completion(alert, true, nullptr);
        return alert;
    }
    const std::shared_ptr<Page> page = push();
};

TEST_F(Alerts, ShowTheirTitleMessageAndActions)
{
    const auto alert = present();
    EXPECT_EQ(alert->title(), "Pairo");
    EXPECT_EQ(alert->message(), "Really?");
    EXPECT_EQ(alert->preferredStyle(), UIAlertControllerStyle::ActionSheet);
    Strings titles;
    for (const UIAlertAction& action : alert->actions())
        titles.push_back(action.title);
    EXPECT_EQ(titles, (Strings { "Change", "Reset", "Cancel" }));
    EXPECT_EQ(alert->actions()[0].style, UIAlertActionStyle::Destructive);
    EXPECT_EQ(takeLines(), (Strings { "push Page", "sheet Pairo" }));
    alert->dismissViewControllerAnimated_completion(true, nullptr);
    present(UIAlertControllerStyle::Alert);
    EXPECT_EQ(takeLines(), (Strings { "dismiss", "error Really?" }));
}

TEST_F(Alerts, GoBeforeTheHandlerRuns)
{
    const auto alert = present();
    takeLines();
    EXPECT_TRUE(alert->chooseAction(1));
    EXPECT_EQ(takeLines(), (Strings { "dismiss", "reset" }));
    EXPECT_EQ(page->presentedViewController(), nullptr);
}

TEST_F(Alerts, GoWithoutAHandlerToo)
{
    const auto alert = present();
    takeLines();
    EXPECT_TRUE(alert->chooseAction(2));
    EXPECT_EQ(takeLines(), Strings { "dismiss" });
}

TEST_F(Alerts, StayWhenThereIsNoSuchAction)
{
    const auto alert = present();
    takeLines();
    for (const std::size_t index : { std::size_t { 3 }, SIZE_MAX })
        EXPECT_FALSE(alert->chooseAction(index));
    EXPECT_EQ(takeLines(), Strings {});
    EXPECT_EQ(page->presentedViewController(), alert);
}

TEST_F(Alerts, LetTheHandlerPresentTheNextOne)
{
    auto alert = UIAlertController::alertControllerWithTitle_message_preferredStyle(
        "First", "", UIAlertControllerStyle::ActionSheet);
    alert->addAction({ "Next", UIAlertActionStyle::Default, [this] { present(); } });
    page->presentViewController_animated_completion(alert, true, nullptr);
    takeLines();
    alert->chooseAction(0);
    EXPECT_EQ(takeLines(), (Strings { "dismiss", "sheet Pairo" }));
}

TEST_F(Alerts, LiveThroughAHandlerThatLetsGoOfThem)
{
    auto alert = UIAlertController::alertControllerWithTitle_message_preferredStyle(
        "First", "", UIAlertControllerStyle::ActionSheet);
    const std::weak_ptr<UIAlertController> watched = alert;
    alert->addAction({ "Next", UIAlertActionStyle::Default,
        [&] { screen->lines.push_back(watched.expired() ? "gone" : "there"); } });
    page->presentViewController_animated_completion(alert, true, nullptr);
    takeLines();
    UIAlertController* raw = std::exchange(alert, nullptr).get();
    raw->chooseAction(0);
    EXPECT_EQ(takeLines(), (Strings { "dismiss", "there" }));
    EXPECT_TRUE(watched.expired());
}

TEST_F(Alerts, ThatWereNeverShownRunTheirHandler)
{
    auto alert =
        UIAlertController::alertControllerWithTitle_message_preferredStyle("", "", UIAlertControllerStyle::Alert);
    alert->addAction({ "OK", UIAlertActionStyle::Default, [this] { screen->lines.emplace_back("ok"); } });
    takeLines();
    EXPECT_TRUE(alert->chooseAction(0));
    EXPECT_EQ(takeLines(), Strings { "ok" });
}

TEST_F(Alerts, WhoseHandlerRaisesAreGoneAllTheSame)
{
    auto alert =
        UIAlertController::alertControllerWithTitle_message_preferredStyle("", "", UIAlertControllerStyle::Alert);
    alert->addAction({ "OK", UIAlertActionStyle::Default, [] { throw std::out_of_range("no such row"); } });
    page->presentViewController_animated_completion(alert, true, nullptr);
    EXPECT_THROW(alert->chooseAction(0), std::out_of_range);
    EXPECT_EQ(page->presentedViewController(), nullptr);
}

class Pickers : public Navigation {
protected:
    Pickers()
    {
        picker->setDelegate(delegate);
        page->presentViewController_animated_completion(picker, true, nullptr);
        takeLines();
    }
    const std::shared_ptr<Page> page = push();
    const std::shared_ptr<UIImagePickerController> picker = std::make_shared<UIImagePickerController>();
    std::shared_ptr<PickerDelegate> delegate = std::make_shared<PickerDelegate>(screen->lines);
};

TEST_F(Pickers, BeginWithThePhotoLibraryWithoutEditing)
{
    EXPECT_FALSE(picker->allowsEditing());
    EXPECT_EQ(picker->sourceType(), UIImagePickerControllerSourceType::PhotoLibrary);
}

TEST_F(Pickers, HandTheImageToTheDelegateWhichTakesThemDown)
{
    picker->finishPickingImage(std::make_shared<UIImage>());
    EXPECT_EQ(takeLines(), (Strings { "image", "dismiss" }));
    EXPECT_EQ(page->presentedViewController(), nullptr);
}

TEST_F(Pickers, HandOverNoImageWhereThereIsNone)
{
    picker->finishPickingImage(nullptr);
    EXPECT_EQ(takeLines(), (Strings { "no image", "dismiss" }));
}

TEST_F(Pickers, GoByThemselvesWhenTheyAreCancelledAndTheDelegateDoesNotAnswer)
{
    picker->cancel();
    EXPECT_EQ(takeLines(), (Strings { "cancel", "dismiss" }));
}

TEST_F(Pickers, StayWhenTheDelegateAnswersTheCancel)
{
    delegate->answersCancel = true;
    picker->cancel();
    EXPECT_EQ(takeLines(), Strings { "cancel" });
    EXPECT_EQ(page->presentedViewController(), picker);
}

TEST_F(Pickers, WhoseDelegateIsGoneGoByThemselves)
{
    delegate.reset();
    picker->finishPickingImage(std::make_shared<UIImage>());
    EXPECT_EQ(takeLines(), Strings { "dismiss" });
    page->presentViewController_animated_completion(picker, true, nullptr);
    takeLines();
    picker->cancel();
    EXPECT_EQ(takeLines(), Strings { "dismiss" });
}

TEST(ShareSheets, OfferAMessageAndAPicture)
{
    const auto image = std::make_shared<UIImage>();
    const auto sheet = UIActivityViewController::activityWithMessage_image("message", image);
    EXPECT_EQ(sheet->message(), "message");
    EXPECT_EQ(sheet->image(), image);
    EXPECT_EQ(UIActivityViewController::activityWithMessage_image("", nullptr)->image(), nullptr);
}

} // namespace
