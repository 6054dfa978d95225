#pragma once

#include "UIKit/UIAlertController.h"

#include <functional>
#include <memory>
#include <string>

/// An alert that the user reads and closes.
std::shared_ptr<UIAlertController> errorAlert(const std::string& title, const std::string& message);

/// What shows the message above whatever stands on the screen, as long as the navigation is there: what fails late must
/// be told, though its page is covered or left.
std::function<void()> showingErrorOnTop(
    const std::shared_ptr<UINavigationController>& navigation, std::string title, std::string message);
