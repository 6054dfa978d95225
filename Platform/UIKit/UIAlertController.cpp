#include "UIKit/UIAlertController.h"

NS_IMPLEMENTATION(UIAlertController)
NS_IMPLEMENTATION(UIImagePickerController)
NS_IMPLEMENTATION(UIActivityViewController)

std::shared_ptr<UIAlertController> UIAlertController::alertControllerWithTitle_message_preferredStyle(
    std::string title, std::string message, UIAlertControllerStyle style)
{
    auto alert = std::make_shared<UIAlertController>();
    alert->setTitle(std::move(title));
    alert->_message = std::move(message);
    alert->_style = style;
    return alert;
}

bool UIAlertController::chooseAction(std::size_t index)
{
    if (index >= _actions.size())
        return false;
    const auto handler = _actions[index].handler;
    const auto keptAlive = self();
    // This one too, and not only what it presents.
    if (const auto presenting = presentingViewController())
        presenting->dismissViewControllerAnimated_completion(true, nullptr);
    if (handler)
        handler();
    return true;
}

void UIImagePickerController::finishPickingImage(const std::shared_ptr<UIImage>& edited)
{
    const auto keptAlive = self();
    Dictionary info;
    if (edited)
        info.emplace(UIImagePickerControllerEditedImage, edited);
    if (const auto delegate = _delegate.lock())
        delegate->imagePickerController_didFinishPickingMediaWithInfo(self(), info);
    else
        dismissViewControllerAnimated_completion(true, nullptr);
}

void UIImagePickerController::cancel()
{
    const auto keptAlive = self();
    const auto delegate = _delegate.lock();
    if (!delegate || !delegate->imagePickerControllerDidCancel(self()))
        dismissViewControllerAnimated_completion(true, nullptr);
}

std::shared_ptr<UIActivityViewController> UIActivityViewController::activityWithMessage_image(
    std::string message, std::shared_ptr<UIImage> image)
{
    auto activity = std::make_shared<UIActivityViewController>();
    activity->_message = std::move(message);
    activity->_image = std::move(image);
    return activity;
}
