#pragma once

#include "PictureHandle.h"

#include <QColor>
#include <QQuickPaintedItem>

/// Shows a phone's picture at its own size in points, or shrunk into the item.
class PictureItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(PictureHandle picture READ picture WRITE setPicture NOTIFY changed REQUIRED)
    Q_PROPERTY(QColor tint READ tint WRITE setTint NOTIFY changed)

public:
    explicit PictureItem(QQuickItem* parent = nullptr);

    PictureHandle picture() const { return _picture; }
    void setPicture(const PictureHandle& picture);
    /// The colour in which template pictures are drawn.
    QColor tint() const { return _tint; }
    void setTint(const QColor& tint);

    // QQuickPaintedItem
    void paint(QPainter* painter) override;

signals:
    void changed();

private:
    PictureHandle _picture;
    QColor _tint;
};
