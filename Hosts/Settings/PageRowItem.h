#pragma once

#include "PageModel.h"

#include <QPointer>
#include <QQuickPaintedItem>

#include <optional>

class QPropertyAnimation;

/// One item of a page on the screen: a row with its cell and control, or the texts between two groups of rows. It draws
/// the cell's views where the layout put them, and hands touches and keys to the control as a phone would.
class PageRowItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(PageModel* page READ page WRITE setPage NOTIFY pageChanged REQUIRED)
    Q_PROPERTY(int row READ row WRITE setRow NOTIFY rowChanged REQUIRED)
    Q_PROPERTY(Kind kind READ kind NOTIFY refreshed)
    Q_PROPERTY(QString name READ name NOTIFY refreshed)
    Q_PROPERTY(QString detail READ detail NOTIFY refreshed)
    Q_PROPERTY(QString footer READ footer NOTIFY refreshed)
    Q_PROPERTY(QString header READ header NOTIFY refreshed)
    Q_PROPERTY(bool workable READ isWorkable NOTIFY refreshed)
    Q_PROPERTY(bool checked READ isChecked NOTIFY refreshed)
    Q_PROPERTY(double value READ value WRITE chooseValue NOTIFY refreshed)
    Q_PROPERTY(double minimumValue READ minimumValue NOTIFY refreshed)
    Q_PROPERTY(double maximumValue READ maximumValue NOTIFY refreshed)
    Q_PROPERTY(double stepSize READ stepSize NOTIFY refreshed)
    Q_PROPERTY(double knob READ knob WRITE setKnob NOTIFY knobChanged)

public:
    /// What the item is to the user; Texts stands between the groups.
    enum class Kind { Texts, Static, Button, Choice, Switch, Slider };
    Q_ENUM(Kind)

    explicit PageRowItem(QQuickItem* parent = nullptr);
    ~PageRowItem() override;

    PageModel* page() const { return _page; }
    void setPage(PageModel* page);
    int row() const { return _row; }
    void setRow(int row);
    Kind kind() const { return _kind; }
    /// What a screen reader says, first and then.
    QString name() const;
    QString detail() const;
    /// What Texts are: those of the group above, and those of the one below.
    QString footer() const { return _page && !_cell ? _page->footerAbove(_row) : QString(); }
    QString header() const { return _page && !_cell ? _page->header(_row) : QString(); }
    bool isWorkable() const { return _workable; }
    /// Screen readers are told of it: it says something, and nothing covers its page.
    bool isTold() const { return isEnabled() && !name().isEmpty(); }
    /// The switch is on, or the choice is the one that is made.
    bool isChecked() const;
    double value() const;
    double minimumValue() const;
    double maximumValue() const;
    double stepSize() const;
    /// Where a switch's knob is, from 0 to 1.
    double knob() const { return _knob; }
    void setKnob(double knob);

    /// Moves the slider there and lets it go, as a screen reader does.
    void chooseValue(double value);
    /// What a tap, Space or Enter does: turns the switch, or taps the row.
    Q_INVOKABLE void activate();
    Q_INVOKABLE void increase() { stepBy(1); }
    Q_INVOKABLE void decrease() { stepBy(-1); }

    const std::shared_ptr<PSTableCell>& cell() const { return _cell; }
    /// Where the control is in the item; empty without one.
    QRectF controlFrame() const;
    QRectF thumbFrame() const;

    // QQuickPaintedItem
    void paint(QPainter* painter) override;

signals:
    void pageChanged();
    void rowChanged();
    void refreshed();
    void knobChanged();
    /// The user has worked the row with a finger or the mouse; what it does comes after.
    void touched();

protected:
    // QQuickItem
    void componentComplete() override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    enum class Touch { None, Row, Switch, Track, Thumb };

    void refresh();
    /// Holds the place of a row whose cell is not made yet.
    void takeEstimatedHeight();
    void leaveWith(int first, int last);
    void layout();
    double textsHeight() const;
    std::shared_ptr<UIControl> control() const;
    std::shared_ptr<UISwitch> switchControl() const;
    std::shared_ptr<UISlider> slider() const;
    Kind kindOfRow() const;
    void takeKnob();
    void turnSwitch(bool on);
    void dragTo(float value);
    void letGo();
    void stepBy(int steps);
    void endTouch();
    void setPressed(bool pressed);
    bool moveByKey(int key);

    void paintTexts(QPainter& painter);
    void paintCard(QPainter& painter);
    void paintCell(QPainter& painter);
    void paintAccessory(QPainter& painter);
    void paintSeparator(QPainter& painter);
    void paintFocus(QPainter& painter);

    QPointer<PageModel> _page;
    QPointer<QPropertyAnimation> _knobAnimation;
    std::shared_ptr<PSTableCell> _cell;
    QString _shownIdentifier;
    int _row = -1;
    Kind _kind = Kind::Texts;
    Touch _touch = Touch::None;
    QPointF _touchStart;
    double _knob = 0;
    /// The value under the user's finger or key until it is let go.
    std::optional<float> _dragged;
    bool _keyHeld = false;
    bool _workable = false;
    bool _pressed = false;
    /// The row has gone from the page; the item only fades away.
    bool _gone = false;
};
