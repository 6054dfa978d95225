#pragma once

#include "UIKit/UILabel.h"

#include <functional>

#include <string>
#include <vector>

class UINavigationController;
class UIViewController;

enum class UIBarButtonItemStyle { Plain = 0, Done = 2 };

/// A button of the bar: a picture or a title, and what its target performs when it is tapped.
class UIBarButtonItem final : public NSObject {
    NS_CLASS(UIBarButtonItem, NSObject)
public:
    UIBarButtonItem() = default;
    /// The target is held weakly.
    static std::shared_ptr<UIBarButtonItem> itemWithImage_style_target_action(std::shared_ptr<UIImage> image,
        UIBarButtonItemStyle style, const std::shared_ptr<NSObject>& target, std::string action);

    const std::shared_ptr<UIImage>& image() const { return _image; }
    UIBarButtonItemStyle style() const { return _style; }
    std::shared_ptr<NSObject> target() const { return _target.lock(); }
    const std::string& action() const { return _action; }
    /// The name that a screen reader says.
    const std::string& accessibilityLabel() const { return _accessibilityLabel; }
    void setAccessibilityLabel(std::string label) { _accessibilityLabel = std::move(label); }
    /// The user taps the button.
    void performAction();

private:
    std::shared_ptr<UIImage> _image;
    UIBarButtonItemStyle _style = UIBarButtonItemStyle::Plain;
    std::weak_ptr<NSObject> _target;
    std::string _action;
    std::string _accessibilityLabel;
};

/// What the bar shows while its page is on top. Null parts are the platform's own, or absent.
struct UINavigationItem {
    std::shared_ptr<UIView> titleView;
    std::shared_ptr<UIBarButtonItem> leftBarButtonItem;
    std::shared_ptr<UIBarButtonItem> rightBarButtonItem;
};

/// A page, a sheet or a picker.
class UIViewController : public NSObject {
    NS_CLASS(UIViewController, NSObject)
public:
    ~UIViewController() override;

    const std::string& title() const { return _title; }
    virtual void setTitle(std::string title) { _title = std::move(title); }
    UINavigationItem& navigationItem() { return _navigationItem; }

    /// Called once, before the page is first shown; again only when it has raised.
    virtual void viewDidLoad() { }
    /// Called each time the page comes on top.
    virtual void viewWillAppear() { }
    /// Called each time the page stands on the screen: for what takes too long to keep the user waiting before.
    virtual void viewDidAppear() { }
    /// The system's appearance has changed while the page was there.
    virtual void traitCollectionDidChange() { }
    void loadViewIfNeeded();

    std::shared_ptr<UINavigationController> navigationController() const { return _navigationController.lock(); }
    void setNavigationController(const std::shared_ptr<UINavigationController>& controller)
    {
        _navigationController = controller;
    }

    /// Shows the other controller above this one, until it is dismissed. The block runs when it is up; null for none.
    /// Does nothing while this one presents another, and for a controller that is up already.
    void presentViewController_animated_completion(
        const std::shared_ptr<UIViewController>& controller, bool animated, const std::function<void()>& completion);
    /// Takes down what this one presents or, presenting nothing, this one itself.
    void dismissViewControllerAnimated_completion(bool animated, const std::function<void()>& completion);
    const std::shared_ptr<UIViewController>& presentedViewController() const { return _presented; }
    std::shared_ptr<UIViewController> presentingViewController() const { return _presenting.lock(); }
    /// What is on top of all that is presented above this one; this one itself where that is nothing.
    std::shared_ptr<UIViewController> topmostViewController();

private:
    std::string _title;
    UINavigationItem _navigationItem;
    std::weak_ptr<UINavigationController> _navigationController;
    std::shared_ptr<UIViewController> _presented;
    std::weak_ptr<UIViewController> _presenting;
    bool _loaded = false;
};

/// Told of what comes and goes on the screen. All have an empty body: an observer answers those it shows.
class UIPresentationObserver {
public:
    virtual ~UIPresentationObserver() = default;
    /// True for an observer with a screen, which calls `topPageIsShown` when the page is there. For others a page is
    /// shown as soon as it is on top.
    virtual bool showsPagesLater() const { return false; }
    virtual void willPush(const std::shared_ptr<UIViewController>& /*page*/) { }
    virtual void didPush(const std::shared_ptr<UIViewController>& /*page*/) { }
    virtual void didPop(const std::shared_ptr<UIViewController>& /*page*/) { }
    /// Called again for what is on top when that is gone which it presented itself.
    virtual void didPresent(const std::shared_ptr<UIViewController>& /*controller*/) { }
    virtual void didDismiss(const std::shared_ptr<UIViewController>& /*controller*/) { }
};

/// A stack of pages under a bar.
class UINavigationController final : public UIViewController {
    NS_CLASS(UINavigationController, UIViewController)
public:
    /// Observers are held weakly; there is one at a time, the host.
    void setObserver(std::weak_ptr<UIPresentationObserver> observer) { _observer = std::move(observer); }
    std::shared_ptr<UIPresentationObserver> observer() const { return _observer.lock(); }

    /// The page stands on the stack before it loads; one that throws while it loads is taken off again. Does nothing
    /// for a page that is on the stack already.
    void pushViewController_animated(const std::shared_ptr<UIViewController>& controller, bool animated);
    /// The page that was taken off; null when only the first one is there.
    std::shared_ptr<UIViewController> popViewControllerAnimated(bool animated);
    /// The page on top stands on the screen from now on.
    void topPageIsShown();
    const std::vector<std::shared_ptr<UIViewController>>& viewControllers() const { return _stack; }
    /// Null when the stack is empty.
    std::shared_ptr<UIViewController> topViewController() const { return _stack.empty() ? nullptr : _stack.back(); }

private:
    void pageCameOnTop();

    std::weak_ptr<UIPresentationObserver> _observer;
    std::vector<std::shared_ptr<UIViewController>> _stack;
};
