#include "libvexil/VXErrorAlert.h"

#include "libvexil/VXText.h"

#include <utility>

std::shared_ptr<UIAlertController> errorAlert(const std::string& title, const std::string& message)
{
    const auto alert = UIAlertController::alertControllerWithTitle_message_preferredStyle(
        title, message, UIAlertControllerStyle::Alert);
    alert->addAction({ translated("OK"), UIAlertActionStyle::Cancel, nullptr });
    return alert;
}

std::function<void()> showingErrorOnTop(
    const std::shared_ptr<UINavigationController>& navigation, std::string title, std::string message)
{
    return [weak = std::weak_ptr(navigation), title = std::move(title), message = std::move(message)] {
        const auto shown = weak.lock();
        if (const auto page = shown ? shown->topViewController() : nullptr)
            page->topmostViewController()->presentViewController_animated_completion(
                errorAlert(title, message), true, nullptr);
    };
}
