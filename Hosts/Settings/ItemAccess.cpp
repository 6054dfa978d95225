#include "ItemAccess.h"

#include "ListAccess.h"
#include "RowAccess.h"

#include <QQuickWindow>

namespace {

QAccessibleInterface* accessOf(const QString& /*className*/, QObject* object)
{
    if (auto* row = qobject_cast<PageRowItem*>(object))
        return new RowAccess(*row);
    if (object->inherits("QQuickListView"))
        return new ListAccess(*static_cast<QQuickItem*>(object));
    return nullptr;
}

} // namespace

void ItemAccess::install()
{
    QAccessible::installFactory(accessOf);
}

QAccessibleInterface* ItemAccess::parent() const
{
    for (QQuickItem* above = item() ? item()->parentItem() : nullptr; above; above = above->parentItem()) {
        if (QAccessibleInterface* known = QAccessible::queryAccessibleInterface(above))
            return known;
    }
    return QAccessible::queryAccessibleInterface(window());
}

QWindow* ItemAccess::window() const
{
    return item() ? item()->window() : nullptr;
}

QRect ItemAccess::onScreen(const QRectF& place) const
{
    if (!item() || !item()->window())
        return {};
    const QRectF inScene = item()->mapRectToScene(place);
    return { item()->window()->mapToGlobal(inScene.topLeft().toPoint()), inScene.size().toSize() };
}

QRect ItemAccess::rect() const
{
    return item() ? onScreen(item()->boundingRect()) : QRect();
}

QAccessible::State ItemAccess::state() const
{
    QAccessible::State state;
    const QQuickWindow* shownIn = item() ? item()->window() : nullptr;
    state.invisible = !shownIn || !shownIn->isVisible() || !item()->isVisible() || item()->opacity() <= 0;
    state.offscreen =
        shownIn && !QRectF({}, shownIn->size()).intersects(item()->mapRectToScene(item()->boundingRect()));
    return state;
}
