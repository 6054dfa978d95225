#pragma once

#include "Foundation/NSBundle.h"
#include "Phone/Images.h"
#include "UIKit/UIGeometry.h"

#include <memory>
#include <optional>
#include <string>

enum class UIImageRenderingMode { Automatic = 0, AlwaysOriginal = 1, AlwaysTemplate = 2 };

/// A picture. Its pixels are decoded, or an app's icon looked up, when they are first needed; what cannot be had then
/// is not tried again.
class UIImage final : public NSObject {
    NS_CLASS(UIImage, NSObject)
public:
    UIImage() = default;

    /// Null when the data are no picture. `scale` is pixels a point.
    static std::shared_ptr<UIImage> imageWithData(Bytes data, double scale = 1);
    static std::shared_ptr<UIImage> imageWithBitmap(std::shared_ptr<const Bitmap> bitmap, double scale);
    /// The icon of the app, as large as a settings row shows it. Null on a phone without icons of apps.
    static std::shared_ptr<UIImage> imageWithIconOfApp(std::string app, double scale);
    /// Null when the file is missing or cannot be decoded. For pictures that are drawn at once: it decodes them.
    static std::shared_ptr<UIImage> imageWithContentsOfFile(const std::string& path);
    /// The PNG of that name in the bundle, the variant for the screen's scale ("name@2x.png") before the plain one;
    /// null when there is none.
    static std::shared_ptr<UIImage> imageNamed_inBundle(const std::string& name, const NSBundle& bundle);

    /// In points.
    CGSize size() const { return _size; }
    double scale() const { return _scale; }
    UIImageRenderingMode renderingMode() const { return _renderingMode; }
    /// The same pixels in another mode; a template image is drawn in the tint colour of the view that shows it.
    std::shared_ptr<UIImage> imageWithRenderingMode(UIImageRenderingMode mode) const;

    /// Stretched into the rectangle of the current image context; does nothing without one.
    void drawInRect(const CGRect& rect) const;
    /// Null when the pixels cannot be decoded.
    std::shared_ptr<const Bitmap> bitmap() const;
    /// The file that the picture was read from; empty for one that was drawn, and for an app's icon.
    const Bytes& encoded() const { return _encoded; }
    /// The app whose icon the picture is; empty for any other picture.
    const std::string& app() const { return _app; }

private:
    std::shared_ptr<const Bitmap> decoded() const;

    CGSize _size;
    double _scale = 1;
    UIImageRenderingMode _renderingMode = UIImageRenderingMode::Automatic;
    Bytes _encoded;
    /// Whose icon it is; empty for any other picture.
    std::string _app;
    /// Absent until it was needed.
    mutable std::optional<std::shared_ptr<const Bitmap>> _bitmap;
};

/// The picture as a PNG file; nothing for null or a picture whose pixels cannot be had.
std::optional<Bytes> UIImagePNGRepresentation(const std::shared_ptr<UIImage>& image);

/// Opens a context of that size in points and makes it the current one. A scale of 0 stands for the main screen's.
void UIGraphicsBeginImageContextWithOptions(CGSize size, bool opaque, double scale);
/// What has been drawn into the current context; null without one.
std::shared_ptr<UIImage> UIGraphicsGetImageFromCurrentImageContext();
/// Closes the current context; does nothing without one.
void UIGraphicsEndImageContext();
/// Closes whatever contexts are open, and gives their number. Called by hosts at the end of a turn, so that contexts
/// left open on purpose do not gather.
std::size_t UIGraphicsDrainImageContexts();

/// The main screen.
struct UIScreen {
    /// Pixels a point.
    static double mainScreenScale();
};
