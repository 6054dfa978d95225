#include "UIKit/UIViewController.h"

#include <algorithm>

NS_IMPLEMENTATION(UIBarButtonItem)
NS_IMPLEMENTATION(
    UIViewController, NS_METHOD(title), NS_METHOD(setTitle), NS_METHOD(viewDidLoad), NS_METHOD(navigationController))
NS_IMPLEMENTATION(UINavigationController)

std::shared_ptr<UIBarButtonItem> UIBarButtonItem::itemWithImage_style_target_action(std::shared_ptr<UIImage> image,
    UIBarButtonItemStyle style, const std::shared_ptr<NSObject>& target, std::string action)
{
    auto item = std::make_shared<UIBarButtonItem>();
    item->_image = std::move(image);
    item->_style = style;
    item->_target = target;
    item->_action = std::move(action);
    return item;
}

void UIBarButtonItem::performAction()
{
    if (const auto receiver = target())
        receiver->performSelector(_action, self());
}

UIViewController::~UIViewController() = default;

void UIViewController::loadViewIfNeeded()
{
    if (_loaded)
        return;
    _loaded = true;
    try {
        viewDidLoad();
    } catch (...) {
        _loaded = false;
        throw;
    }
}

void UIViewController::presentViewController_animated_completion(
    const std::shared_ptr<UIViewController>& controller, bool /*animated*/, const std::function<void()>& completion)
{
    if (!controller || controller.get() == this || _presented || controller->presentingViewController())
        return;
    _presented = controller;
    controller->_presenting = self();
    controller->setNavigationController(navigationController());
    try {
        controller->loadViewIfNeeded();
    } catch (...) {
        _presented.reset();
        controller->_presenting.reset();
        throw;
    }
    const auto navigation = navigationController();
    if (const auto observer = navigation ? navigation->observer() : nullptr)
        observer->didPresent(controller);
    if (completion)
        completion();
}

void UIViewController::dismissViewControllerAnimated_completion(bool animated, const std::function<void()>& completion)
{
    if (!_presented) {
        if (const auto presenting = presentingViewController())
            presenting->dismissViewControllerAnimated_completion(animated, completion);
        return;
    }
    const auto navigation = navigationController();
    const auto observer = navigation ? navigation->observer() : nullptr;
    // With all that it presents itself, from the top.
    for (auto top = topmostViewController(); top.get() != this;) {
        const auto presenting = top->presentingViewController();
        presenting->_presented.reset();
        top->_presenting.reset();
        if (observer)
            observer->didDismiss(top);
        top = presenting;
    }
    if (observer && presentingViewController())
        observer->didPresent(self());
    if (completion)
        completion();
}

std::shared_ptr<UIViewController> UIViewController::topmostViewController()
{
    auto top = self();
    while (top->_presented)
        top = top->_presented;
    return top;
}

void UINavigationController::pushViewController_animated(
    const std::shared_ptr<UIViewController>& controller, bool /*animated*/)
{
    if (!controller || std::ranges::find(_stack, controller) != _stack.end())
        return;
    controller->setNavigationController(self());
    _stack.push_back(controller);
    const auto told = observer();
    try {
        if (told)
            told->willPush(controller);
        controller->loadViewIfNeeded();
        controller->viewWillAppear();
    } catch (...) {
        // Not always the last one: it may have pushed another.
        std::erase(_stack, controller);
        controller->setNavigationController(nullptr);
        throw;
    }
    if (told)
        told->didPush(controller);
    pageCameOnTop();
}

std::shared_ptr<UIViewController> UINavigationController::popViewControllerAnimated(bool /*animated*/)
{
    if (_stack.size() < 2)
        return nullptr;
    auto popped = _stack.back();
    _stack.pop_back();
    if (const auto told = observer())
        told->didPop(popped);
    popped->setNavigationController(nullptr);
    _stack.back()->viewWillAppear();
    pageCameOnTop();
    return popped;
}

void UINavigationController::pageCameOnTop()
{
    const auto told = observer();
    if (!told || !told->showsPagesLater())
        topPageIsShown();
}

void UINavigationController::topPageIsShown()
{
    if (const auto page = topViewController())
        page->viewDidAppear();
}
