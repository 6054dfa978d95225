#include "PageModel.h"

#include "SettingsHost.h"
#include "UIKit/UIViewAnimation.h"
#include "libvexil/VXMiscSettingsViewController.h"
#include "libvexil/VXWebKitViewController.h"

#include <algorithm>

namespace {

constexpr double millisecondsPerSecond = 1000;
/// Above so many pairs to compare, what lies between the ends of two lists is replaced and not matched.
constexpr std::size_t greatestMatch = 4'000'000;
/// Colours lighter than this have dark texts on them.
constexpr float lightBar = 0.6F;

bool standForTheSame(const Row& a, const Row& b)
{
    if (a == b)
        return true;
    if (a->cellType() != b->cellType() || a->identifier() != b->identifier())
        return false;
    return a->identifier() || a->name() == b->name();
}

QString textOf(const std::optional<std::string>& text)
{
    return text ? QString::fromStdString(*text) : QString();
}

/// Texts break where a phone would cut them, so that nothing is lost on narrow screens and at large text sizes.
void letTextsBreak(PSTableCell& cell)
{
    cell.textLabel()->setNumberOfLines(0);
    if (cell.detailTextLabel())
        cell.detailTextLabel()->setNumberOfLines(0);
}

/// Which rows of the first list go and which of the second come, so that the rest, the longest common sequence, stays.
struct Matching {
    std::vector<bool> kept;
    std::vector<bool> known;
};

Matching matchRows(const Row* before, std::size_t beforeCount, const Row* after, std::size_t afterCount)
{
    Matching result { std::vector<bool>(beforeCount), std::vector<bool>(afterCount) };
    if (beforeCount * afterCount > greatestMatch)
        return result;
    std::vector<std::size_t> longest((beforeCount + 1) * (afterCount + 1));
    const auto at = [&](std::size_t i, std::size_t j) -> std::size_t& { return longest[i * (afterCount + 1) + j]; };
    for (std::size_t i = beforeCount; i-- > 0;) {
        for (std::size_t j = afterCount; j-- > 0;)
            at(i, j) =
                standForTheSame(before[i], after[j]) ? at(i + 1, j + 1) + 1 : std::max(at(i + 1, j), at(i, j + 1));
    }
    for (std::size_t i = 0, j = 0; i < beforeCount && j < afterCount;) {
        if (standForTheSame(before[i], after[j])) {
            result.kept[i++] = true;
            result.known[j++] = true;
        } else if (at(i + 1, j) >= at(i, j + 1)) {
            ++i;
        } else {
            ++j;
        }
    }
    return result;
}

} // namespace

PageModel::PageModel(
    std::shared_ptr<UIViewController> controller, const std::shared_ptr<UIViewController>& below, SettingsHost& host)
    : _controller(std::move(controller))
    , _list(std::dynamic_pointer_cast<PSListController>(_controller))
    , _host(host)
    , _backTitle(below ? QString::fromStdString(below->title()) : QString())
    , _first(!below)
{
}

void PageModel::pageDidLoad()
{
    if (const auto& titleView = _controller->navigationItem().titleView) {
        const float shown = UIViewAnimations::shared().presentedAlpha(*titleView);
        if (shown < titleView->alpha())
            _titleFade = static_cast<int>(_host.lastFadeSeconds() * millisecondsPerSecond);
    }
    if (_list)
        didReloadData();
}

Theme* PageModel::theme() const
{
    return &_host.themeObject();
}

QString PageModel::title() const
{
    return QString::fromStdString(_controller->title());
}

QColor PageModel::barColor() const
{
    const auto product = std::dynamic_pointer_cast<VXMiscSettingsViewController>(_list);
    if (product && product->hasCustomNavigationBarColor())
        return colorOf(product->customNavigationBarColor());
    return theme()->cardColor();
}

QColor PageModel::barTextColor() const
{
    return barColor().lightnessF() > lightBar ? QColor(Qt::black) : QColor(Qt::white);
}

PictureHandle PageModel::titlePicture() const
{
    const auto view = std::dynamic_pointer_cast<UIImageView>(_controller->navigationItem().titleView);
    return PictureHandle(view ? view->image() : nullptr);
}

PictureHandle PageModel::leftPicture() const
{
    const auto& item = _controller->navigationItem().leftBarButtonItem;
    return PictureHandle(item ? item->image() : nullptr);
}

QString PageModel::rightName() const
{
    const auto& item = _controller->navigationItem().rightBarButtonItem;
    return item ? QString::fromStdString(item->accessibilityLabel()) : QString();
}

QString PageModel::link() const
{
    const auto page = std::dynamic_pointer_cast<VXWebKitViewController>(_controller);
    return page ? QString::fromStdString(page->url()) : QString();
}

void PageModel::setLeaving()
{
    _leaving = true;
    if (_list)
        _list->table().setObserver({});
    emit leavingChanged();
}

void PageModel::goBack()
{
    if (_leaving || _host.topPage() != this || _controller->presentedViewController())
        return;
    _host.turn([this] { _controller->navigationController()->popViewControllerAnimated(true); });
}

void PageModel::pressLeft()
{
    const auto item = _controller->navigationItem().leftBarButtonItem;
    if (!item)
        goBack();
    else if (!_leaving && _host.topPage() == this && !_controller->presentedViewController())
        _host.turn([&] { item->performAction(); });
}

void PageModel::pressRight()
{
    const auto item = _controller->navigationItem().rightBarButtonItem;
    if (item && !_leaving && !_controller->presentedViewController())
        _host.turn([&] { item->performAction(); });
}

void PageModel::openLink()
{
    if (const auto page = std::dynamic_pointer_cast<VXWebKitViewController>(_controller))
        _host.turn([&page] { page->openInBrowser(); });
}

void PageModel::liveWith(QObject* item)
{
    // The connection holds the page until the item, and the connection with it, is gone.
    QObject::connect(item, &QObject::destroyed, [keptAlive = shared_from_this()] {});
}

int PageModel::nextWorkable(int index, int direction) const
{
    for (int next = index + direction; next >= 0 && next < rowCount(); next += direction) {
        if (canBeWorked(next))
            return next;
    }
    return index;
}

int PageModel::nearestWorkable(int index) const
{
    if (canBeWorked(index))
        return index;
    for (const int direction : { 1, -1 }) {
        if (const int next = nextWorkable(index, direction); next != index)
            return next;
    }
    return -1;
}

void PageModel::setRowWidth(double width)
{
    if (!_list || width <= 0)
        return;
    CGRect frame = _list->table().frame();
    if (frame.width == width)
        return;
    frame.width = width;
    _list->table().setFrame(frame);
}

bool PageModel::isRow(int index) const
{
    return index >= 0 && index < static_cast<int>(_rows.size()) && !_rows[static_cast<std::size_t>(index)]->isGroup();
}

bool PageModel::isFirstOfSection(int index) const
{
    return !isRow(index - 1);
}

bool PageModel::isLastOfSection(int index) const
{
    return !isRow(index + 1);
}

std::optional<NSIndexPath> PageModel::pathAt(int index) const
{
    if (!isRow(index))
        return std::nullopt;
    const auto place = static_cast<std::size_t>(index);
    const Rows& rows = _list->specifiers();
    if (place >= rows.size() || rows[place] != _rows[place])
        return std::nullopt;
    return _list->indexPathForIndex(place);
}

double PageModel::estimatedHeight(int index) const
{
    const auto path = pathAt(index);
    return path ? _list->tableView_estimatedHeightForRowAtIndexPath(_list->table(), *path) : 0;
}

std::shared_ptr<PSTableCell> PageModel::cellAt(int index) const
{
    const auto path = pathAt(index);
    if (!path)
        return nullptr;
    auto cell = std::dynamic_pointer_cast<PSTableCell>(_list->table().loadCellForRowAtIndexPath(*path));
    if (cell)
        letTextsBreak(*cell);
    _host.closeImageContexts();
    return cell;
}

void PageModel::endDisplaying(const PSTableCell& cell)
{
    if (cell.specifier())
        _list->table().endDisplayingCell(*cell.specifier(), cell);
}

bool PageModel::canBeTapped(int index) const
{
    const auto path = pathAt(index);
    if (!path)
        return false;
    const auto cell = cellAt(index);
    return cell && cell->isUserInteractionEnabled()
        && _list->tableView_shouldHighlightRowAtIndexPath(_list->table(), *path);
}

bool PageModel::canBeWorked(int index) const
{
    const auto control = std::dynamic_pointer_cast<PSControlTableCell>(cellAt(index));
    if (control && control->control())
        return control->isUserInteractionEnabled() && control->control()->isEnabled();
    return canBeTapped(index);
}

QString PageModel::footerAbove(int index) const
{
    for (int above = std::min(index, static_cast<int>(_rows.size())) - 1; above >= 0; --above) {
        const Row& row = _rows[static_cast<std::size_t>(above)];
        if (row->isGroup())
            return textOf(_list->footerOfGroup(row)).trimmed();
    }
    return {};
}

QString PageModel::header(int index) const
{
    return index >= 0 && index < static_cast<int>(_rows.size()) ? textOf(_rows[static_cast<std::size_t>(index)]->name())
                                                                : QString();
}

QString PageModel::identifier(int index) const
{
    return index >= 0 && index < static_cast<int>(_rows.size())
        ? textOf(_rows[static_cast<std::size_t>(index)]->identifier())
        : QString();
}

void PageModel::tap(int index)
{
    if (_leaving || !canBeTapped(index) || _controller->presentedViewController())
        return;
    const Row row = _rows[static_cast<std::size_t>(index)];
    _host.turn([&] {
        // The turn may have rebuilt the rows; the tap is meant for what the user saw.
        const auto now = std::find_if(
            _rows.begin(), _rows.end(), [&](const Row& candidate) { return standForTheSame(candidate, row); });
        const auto path = now == _rows.end() ? std::nullopt : pathAt(static_cast<int>(now - _rows.begin()));
        if (!path)
            return;
        _list->table().loadCellForRowAtIndexPath(*path);
        _list->table().selectRowAtIndexPath(*path);
        _list->tableView_didSelectRowAtIndexPath(_list->table(), *path);
    });
    refresh();
}

void PageModel::refresh()
{
    if (!_settling)
        emit refreshed();
}

int PageModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() || !_list ? 0 : static_cast<int>(_rows.size()) + 1;
}

QVariant PageModel::data(const QModelIndex& index, int role) const
{
    return index.isValid() && role == Qt::DisplayRole ? header(index.row()) : QVariant();
}

void PageModel::didInsertItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool /*animated*/)
{
    const auto row = std::dynamic_pointer_cast<PSSpecifier>(item);
    if (!row || index > _rows.size())
        return;
    beginInsertRows({}, static_cast<int>(index), static_cast<int>(index));
    _rows.insert(_rows.begin() + static_cast<std::ptrdiff_t>(index), row);
    endInsertRows();
    refresh();
}

void PageModel::didRemoveItem(std::size_t index, const std::shared_ptr<NSObject>& /*item*/, bool /*animated*/)
{
    if (index >= _rows.size())
        return;
    beginRemoveRows({}, static_cast<int>(index), static_cast<int>(index));
    _rows.erase(_rows.begin() + static_cast<std::ptrdiff_t>(index));
    endRemoveRows();
    refresh();
}

void PageModel::didReloadData()
{
    const Rows fresh = _list->specifiers();
    _settling = true;
    takeRows(fresh);
    _settling = false;
    emit barChanged();
    refresh();
}

void PageModel::takeRows(const Rows& fresh)
{
    std::size_t first = 0;
    while (first < _rows.size() && first < fresh.size() && standForTheSame(_rows[first], fresh[first]))
        ++first;
    std::size_t oldLast = _rows.size();
    std::size_t newLast = fresh.size();
    while (oldLast > first && newLast > first && standForTheSame(_rows[oldLast - 1], fresh[newLast - 1])) {
        --oldLast;
        --newLast;
    }
    replaceMiddle(first, oldLast, newLast, fresh);
    _rows = fresh;
}

void PageModel::replaceMiddle(std::size_t first, std::size_t oldLast, std::size_t newLast, const Rows& fresh)
{
    const Matching matching = matchRows(_rows.data() + first, oldLast - first, fresh.data() + first, newLast - first);
    for (std::size_t i = oldLast; i-- > first;) {
        if (!matching.kept[i - first])
            didRemoveItem(i, nullptr, true);
    }
    if (_rows.empty() && newLast > first) {
        beginInsertRows({}, 0, static_cast<int>(newLast - first) - 1);
        _rows = fresh;
        endInsertRows();
        return;
    }
    for (std::size_t i = first; i < newLast; ++i) {
        if (!matching.known[i - first])
            didInsertItem(i, fresh[i], true);
    }
}

void PageModel::didReloadSection(std::size_t /*section*/, UITableViewRowAnimation /*animation*/)
{
    refresh();
}

void PageModel::didReloadCells()
{
    emit barChanged();
    refresh();
}
