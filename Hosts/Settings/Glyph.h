#pragma once

#include <QColor>
#include <QQuickPaintedItem>

/// The few signs that the application draws itself, as lines in one colour.
class Glyph : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Shape shape READ shape WRITE setShape NOTIFY changed REQUIRED)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed REQUIRED)
    Q_PROPERTY(bool mirrored READ isMirrored WRITE setMirrored NOTIFY changed)

public:
    enum class Shape { Back, Forward, Share, Checkmark };
    Q_ENUM(Shape)

    explicit Glyph(QQuickItem* parent = nullptr);

    Shape shape() const { return _shape; }
    void setShape(Shape shape);
    QColor color() const { return _color; }
    void setColor(const QColor& color);
    bool isMirrored() const { return _mirrored; }
    void setMirrored(bool mirrored);

    /// Draws the sign to fill the frame, its proportions kept.
    static void draw(
        QPainter& painter, Shape shape, const QRectF& frame, const QColor& color, double lineWidth, bool mirrored);

    // QQuickPaintedItem
    void paint(QPainter* painter) override;

signals:
    void changed();

private:
    Shape _shape = Shape::Back;
    QColor _color;
    bool _mirrored = false;
};
