#pragma once

#include "UIKit/UIImage.h"

#include <QObject>
#include <qqmlregistration.h>

#include <memory>

/// A phone's picture on its way through QML to the item that paints it.
class PictureHandle {
    Q_GADGET
    QML_VALUE_TYPE(phonePicture)
    Q_PROPERTY(bool present READ isPresent)
public:
    PictureHandle() = default;
    explicit PictureHandle(std::shared_ptr<UIImage> image)
        : _image(std::move(image))
    {
    }
    const std::shared_ptr<UIImage>& image() const { return _image; }
    bool isPresent() const { return _image != nullptr; }
    bool operator==(const PictureHandle&) const = default;

private:
    std::shared_ptr<UIImage> _image;
};
