#include "PageStack.h"

#include <QQmlEngine>

#include <algorithm>

namespace {

constexpr int pageRole = Qt::UserRole;

}

void PageStack::push(std::shared_ptr<PageModel> page)
{
    QQmlEngine::setObjectOwnership(page.get(), QQmlEngine::CppOwnership);
    const int index = static_cast<int>(_pages.size());
    beginInsertRows({}, index, index);
    _pages.push_back(std::move(page));
    endInsertRows();
    emit depthChanged();
}

void PageStack::pop(const UIViewController& controller)
{
    for (const auto& page : _pages) {
        if (page->controller().get() == &controller)
            page->setLeaving();
    }
    emit depthChanged();
}

void PageStack::hasLeft(PageModel* page)
{
    QMetaObject::invokeMethod(
        this, [this, page] { remove(page); }, Qt::QueuedConnection);
}

void PageStack::remove(const PageModel* page)
{
    const auto found =
        std::find_if(_pages.begin(), _pages.end(), [page](const auto& candidate) { return candidate.get() == page; });
    if (found == _pages.end() || !(*found)->isLeaving())
        return;
    const int index = static_cast<int>(found - _pages.begin());
    // The views let go of the page before it goes.
    const auto keptAlive = *found;
    beginRemoveRows({}, index, index);
    _pages.erase(found);
    endRemoveRows();
}

int PageStack::depth() const
{
    return static_cast<int>(
        std::count_if(_pages.begin(), _pages.end(), [](const auto& page) { return !page->isLeaving(); }));
}

PageModel* PageStack::top() const
{
    for (auto page = _pages.rbegin(); page != _pages.rend(); ++page) {
        if (!(*page)->isLeaving())
            return page->get();
    }
    return nullptr;
}

int PageStack::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(_pages.size());
}

QVariant PageStack::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || role != pageRole)
        return {};
    return QVariant::fromValue(_pages.at(static_cast<std::size_t>(index.row())).get());
}

QHash<int, QByteArray> PageStack::roleNames() const
{
    return { { pageRole, "page" } };
}
