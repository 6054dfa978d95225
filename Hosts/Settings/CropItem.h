#pragma once

#include "SettingsHost.h"

#include <QImage>
#include <QQuickPaintedItem>

/// A photo under a square: the user moves and enlarges the photo until the square shows what is wanted. The photo
/// always covers the square.
class CropItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(SettingsHost* host MEMBER _host REQUIRED)
    Q_PROPERTY(QString photo READ photo WRITE setPhoto NOTIFY photoChanged REQUIRED)
    Q_PROPERTY(bool usable READ isUsable NOTIFY photoChanged)

public:
    explicit CropItem(QQuickItem* parent = nullptr);

    QString photo() const { return _photo; }
    void setPhoto(const QString& photo);
    /// False for a file that is no picture, or one too large.
    bool isUsable() const { return !_image.isNull(); }

    Q_INVOKABLE void moveBy(double x, double y);
    /// Enlarges around a point of the item.
    Q_INVOKABLE void zoomBy(double factor, double x, double y);
    Q_INVOKABLE void pickInto(SheetModel* sheet) const;
    /// Where the square is in the item.
    QRectF square() const;
    /// What the square shows, in the photo's own pixels.
    QImage cropped() const;

    // QQuickPaintedItem
    void paint(QPainter* painter) override;

signals:
    void photoChanged();

protected:
    // QQuickItem
    void componentComplete() override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    void load();
    double pointsPerPixel() const;
    void keepCovered();
    /// Never asked for without an image.
    QRect croppedPixels() const;

    SettingsHost* _host = nullptr;
    QString _photo;
    QImage _image;
    /// 1 shows as much as the square can hold.
    double _zoom = 1;
    /// The pixel in the middle of the square.
    QPointF _middle;
};
