#include "ListAccess.h"

#include <algorithm>

std::vector<PageRowItem*> ListAccess::rows() const
{
    const auto* content = list() ? list()->property("contentItem").value<QQuickItem*>() : nullptr;
    std::vector<PageRowItem*> rows;
    if (!content)
        return rows;
    for (QQuickItem* child : content->childItems()) {
        auto* row = qobject_cast<PageRowItem*>(child);
        if (row && row->isTold())
            rows.push_back(row);
    }
    std::ranges::sort(rows, {}, &PageRowItem::row);
    return rows;
}

QAccessibleInterface* ListAccess::child(int index) const
{
    const auto all = rows();
    const auto place = static_cast<std::size_t>(index);
    return index >= 0 && place < all.size() ? QAccessible::queryAccessibleInterface(all[place]) : nullptr;
}

int ListAccess::indexOfChild(const QAccessibleInterface* child) const
{
    const auto all = rows();
    const auto found = std::ranges::find(all, child ? child->object() : nullptr);
    return found == all.end() ? -1 : static_cast<int>(found - all.begin());
}

QAccessible::State ListAccess::state() const
{
    QAccessible::State state = ItemAccess::state();
    // Its rows have it.
    state.focusable = false;
    return state;
}

QString ListAccess::text(QAccessible::Text text) const
{
    const auto* page = list() ? list()->property("page").value<PageModel*>() : nullptr;
    return page && text == QAccessible::Name ? page->title() : QString();
}
