#pragma once

#include <QAccessibleObject>
#include <QQuickItem>

/// What screen readers are told of an item is told by one of these instead of the toolkit's own where that says too
/// little, or children out of order. Made when a screen reader asks, so that nobody else waits for it.
class ItemAccess : public QAccessibleObject {
public:
    /// From now on the toolkit finds them.
    static void install();

    // QAccessibleInterface
    /// The nearest item above that screen readers know, or else the window.
    QAccessibleInterface* parent() const override;
    QWindow* window() const override;
    QRect rect() const override;
    /// Whether it is to be seen.
    QAccessible::State state() const override;

protected:
    explicit ItemAccess(QQuickItem& item)
        : QAccessibleObject(&item)
    {
    }
    /// On the screen, of a place in the item.
    QRect onScreen(const QRectF& place) const;

private:
    /// Null when the item is going.
    QQuickItem* item() const { return static_cast<QQuickItem*>(object()); }
};
