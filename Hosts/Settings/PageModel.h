#pragma once

#include "PictureHandle.h"
#include "PreferencesUI/PSListController.h"
#include "PreferencesUI/PSTableCell.h"
#include "Theme.h"

#include <QAbstractListModel>

#include <memory>
#include <vector>

class SettingsHost;

/// A page on the screen: the rows of its list controller as the items of a view, group for group and row for row, and
/// one more at the end for the last group's footer. Rows come and go as the page inserts and removes them; a reload
/// moves only what is different afterwards. A page that is no list has no items.
class PageModel final : public QAbstractListModel,
                        public UITableViewObserver,
                        public std::enable_shared_from_this<PageModel> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The host makes the pages.")
    Q_PROPERTY(QString title READ title NOTIFY barChanged)
    Q_PROPERTY(QString backTitle READ backTitle CONSTANT)
    Q_PROPERTY(QColor barColor READ barColor NOTIFY barChanged)
    Q_PROPERTY(QColor barTextColor READ barTextColor NOTIFY barChanged)
    Q_PROPERTY(PictureHandle titlePicture READ titlePicture NOTIFY barChanged)
    Q_PROPERTY(int titleFade READ titleFade CONSTANT)
    Q_PROPERTY(bool first READ isFirst CONSTANT)
    Q_PROPERTY(PictureHandle leftPicture READ leftPicture NOTIFY barChanged)
    Q_PROPERTY(QString rightName READ rightName NOTIFY barChanged)
    Q_PROPERTY(bool leaving READ isLeaving NOTIFY leavingChanged)
    Q_PROPERTY(QString link READ link CONSTANT)
    Q_PROPERTY(Theme* theme READ theme CONSTANT)

public:
    PageModel(std::shared_ptr<UIViewController> controller, const std::shared_ptr<UIViewController>& below,
        SettingsHost& host);

    /// Null for a page that is no list.
    const std::shared_ptr<PSListController>& list() const { return _list; }
    const std::shared_ptr<UIViewController>& controller() const { return _controller; }
    SettingsHost& host() const { return _host; }
    Theme* theme() const;

    QString title() const;
    QString backTitle() const { return _backTitle; }
    QColor barColor() const;
    QColor barTextColor() const;
    PictureHandle titlePicture() const;
    /// Milliseconds in which the title picture comes up; 0 for at once.
    int titleFade() const { return theme()->isAnimated() ? _titleFade : 0; }
    bool isFirst() const { return _first; }
    PictureHandle leftPicture() const;
    /// What the button at the end of the bar is called; empty without one.
    QString rightName() const;
    bool isLeaving() const { return _leaving; }
    void setLeaving();
    /// The address that a page shows which is no list; empty for others.
    QString link() const;

    /// One page back, by the bar's left button or another way.
    Q_INVOKABLE void goBack();
    Q_INVOKABLE void pressLeft();
    Q_INVOKABLE void pressRight();
    Q_INVOKABLE void openLink();
    /// The page stays for as long as the item that shows it, however late that goes.
    Q_INVOKABLE void liveWith(QObject* item);
    /// The next item in that direction (1 or -1) that a user can do something with; the index itself when there is
    /// none.
    Q_INVOKABLE int nextWorkable(int index, int direction) const;
    /// The item itself when a user can do something with it, else the one nearest behind it, else before it; -1 for
    /// none.
    Q_INVOKABLE int nearestWorkable(int index) const;
    /// The width of the rows, which the page lays its cells out in.
    Q_INVOKABLE void setRowWidth(double width);

    // What stands at an index, for the items of the view.
    bool isRow(int index) const;
    bool isFirstOfSection(int index) const;
    bool isLastOfSection(int index) const;
    /// How high the page expects the row to be, in points, without making its cell; 0 for what is no row.
    double estimatedHeight(int index) const;
    /// The cell of the row, made where there is none yet; null for what is no row.
    std::shared_ptr<PSTableCell> cellAt(int index) const;
    /// The cell has been scrolled out of sight.
    void endDisplaying(const PSTableCell& cell);
    std::optional<NSIndexPath> pathAt(int index) const;
    bool canBeTapped(int index) const;
    bool canBeWorked(int index) const;
    /// Above the group at that index: what the group before it says at its end. And the group's own title.
    QString footerAbove(int index) const;
    QString header(int index) const;
    QString identifier(int index) const;
    void tap(int index);
    /// Tells the items to look at their rows again.
    void refresh();

    // QAbstractListModel
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    // UITableViewObserver
    void didInsertItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated) override;
    void didRemoveItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated) override;
    void didReloadData() override;
    void didReloadSection(std::size_t section, UITableViewRowAnimation animation) override;
    void didReloadCells() override;

    /// True while rows are matched with those of a reload; items wait for `refreshed` then.
    bool isSettling() const { return _settling; }
    /// Takes the bar and the rows up when the page has loaded.
    void pageDidLoad();

signals:
    void refreshed();
    void barChanged();
    void leavingChanged();

private:
    void takeRows(const Rows& fresh);
    void replaceMiddle(std::size_t first, std::size_t oldLast, std::size_t newLast, const Rows& fresh);

    std::shared_ptr<UIViewController> _controller;
    std::shared_ptr<PSListController> _list;
    SettingsHost& _host;
    QString _backTitle;
    Rows _rows;
    int _titleFade = 0;
    bool _first;
    bool _leaving = false;
    bool _settling = false;
};
