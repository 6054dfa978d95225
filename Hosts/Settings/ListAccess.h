#pragma once

#include "ItemAccess.h"
#include "PageRowItem.h"

#include <vector>

/// A page's list for screen readers: its rows from the first to the last, in whichever order they were made.
class ListAccess final : public ItemAccess {
public:
    explicit ListAccess(QQuickItem& list)
        : ItemAccess(list)
    {
    }

    // QAccessibleInterface
    QAccessibleInterface* child(int index) const override;
    int childCount() const override { return static_cast<int>(rows().size()); }
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessible::Role role() const override { return QAccessible::List; }
    QAccessible::State state() const override;
    QString text(QAccessible::Text text) const override;

private:
    QQuickItem* list() const { return static_cast<QQuickItem*>(object()); }
    std::vector<PageRowItem*> rows() const;
};
