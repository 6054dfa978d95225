#pragma once

#include "UIKit/UIViewController.h"

#include <functional>
#include <optional>
#include <vector>

enum class UIAlertControllerStyle { ActionSheet = 0, Alert = 1 };
enum class UIAlertActionStyle { Default = 0, Cancel = 1, Destructive = 2 };

/// One choice of a sheet or an alert. The handler runs after the sheet has gone; null for none.
struct UIAlertAction {
    std::string title;
    UIAlertActionStyle style = UIAlertActionStyle::Default;
    std::function<void()> handler;
};

/// A question from the bottom of the screen, or an alert in its middle.
class UIAlertController final : public UIViewController {
    NS_CLASS(UIAlertController, UIViewController)
public:
    static std::shared_ptr<UIAlertController> alertControllerWithTitle_message_preferredStyle(
        std::string title, std::string message, UIAlertControllerStyle style);

    const std::string& message() const { return _message; }
    UIAlertControllerStyle preferredStyle() const { return _style; }
    void addAction(UIAlertAction action) { _actions.push_back(std::move(action)); }
    const std::vector<UIAlertAction>& actions() const { return _actions; }
    /// The user chooses the action of that index: the sheet goes, then the handler runs. False when there is no such
    /// action.
    bool chooseAction(std::size_t index);

private:
    std::string _message;
    UIAlertControllerStyle _style = UIAlertControllerStyle::ActionSheet;
    std::vector<UIAlertAction> _actions;
};

class UIImagePickerControllerDelegate;

/// The key of the picture as the user cropped it.
inline constexpr const char* UIImagePickerControllerEditedImage = "UIImagePickerControllerEditedImage";

enum class UIImagePickerControllerSourceType { PhotoLibrary = 0, Camera = 1, SavedPhotosAlbum = 2 };

/// The photo library, from which the user picks one picture and, where editing is allowed, crops it.
class UIImagePickerController final : public UIViewController {
    NS_CLASS(UIImagePickerController, UIViewController)
public:
    void setDelegate(std::weak_ptr<UIImagePickerControllerDelegate> delegate) { _delegate = std::move(delegate); }
    bool allowsEditing() const { return _allowsEditing; }
    void setAllowsEditing(bool allows) { _allowsEditing = allows; }
    UIImagePickerControllerSourceType sourceType() const { return _sourceType; }
    void setSourceType(UIImagePickerControllerSourceType type) { _sourceType = type; }

    /// The user has picked: the delegate is told, and takes the picker down.
    void finishPickingImage(const std::shared_ptr<UIImage>& edited);
    /// The user has cancelled. The platform takes the picker down by itself where the delegate does not answer.
    void cancel();

private:
    std::weak_ptr<UIImagePickerControllerDelegate> _delegate;
    bool _allowsEditing = false;
    UIImagePickerControllerSourceType _sourceType = UIImagePickerControllerSourceType::PhotoLibrary;
};

/// Told of what the user picked. The picker holds its delegate weakly.
class UIImagePickerControllerDelegate {
public:
    virtual ~UIImagePickerControllerDelegate() = default;
    virtual void imagePickerController_didFinishPickingMediaWithInfo(
        const std::shared_ptr<UIImagePickerController>& picker, const Dictionary& info) = 0;
    /// False, the default, when the delegate does not answer.
    virtual bool imagePickerControllerDidCancel(const std::shared_ptr<UIImagePickerController>& /*picker*/)
    {
        return false;
    }
};

/// The share sheet: a message and a picture that the user sends, copies or saves.
class UIActivityViewController final : public UIViewController {
    NS_CLASS(UIActivityViewController, UIViewController)
public:
    static std::shared_ptr<UIActivityViewController> activityWithMessage_image(
        std::string message, std::shared_ptr<UIImage> image);

    const std::string& message() const { return _message; }
    /// Null when there is only the message.
    const std::shared_ptr<UIImage>& image() const { return _image; }

private:
    std::string _message;
    std::shared_ptr<UIImage> _image;
};
