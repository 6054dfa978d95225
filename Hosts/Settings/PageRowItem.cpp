#include "PageRowItem.h"

#include "ControlPainter.h"
#include "Glyph.h"
#include "SettingsHost.h"
#include "TextBlock.h"
#include "ViewPainter.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPropertyAnimation>
#include <QStyleHints>

#include <algorithm>
#include <cmath>

namespace {

constexpr double cardRadius = 10;
constexpr double separatorWidth = 0.5;
constexpr double headerPoints = 13;
constexpr double sectionGap = 18;
constexpr double textGap = 7;
constexpr double disclosureWidth = 8;
constexpr double disclosureHeight = 14;
constexpr double checkmarkSize = 15;
constexpr double accessoryLine = 2;
constexpr double focusInset = 1.5;
constexpr double focusWidth = 3;
constexpr int knobMilliseconds = 180;
/// Fingers are thicker than controls.
constexpr double touchMargin = 8;
/// A slider without steps moves by this part of its range at a key.
constexpr float stepsWithoutSegments = 20;

} // namespace

PageRowItem::PageRowItem(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    connect(this, &QQuickItem::activeFocusChanged, this, [this] { update(); });
}

PageRowItem::~PageRowItem()
{
    if (_page && _cell && !_gone)
        _page->endDisplaying(*_cell);
}

void PageRowItem::setPage(PageModel* page)
{
    if (_page == page)
        return;
    if (_page) {
        _page->disconnect(this);
        _page->theme()->disconnect(this);
    }
    _page = page;
    if (_page) {
        connect(_page, &PageModel::refreshed, this, &PageRowItem::refresh);
        connect(_page, &PageModel::rowsAboutToBeRemoved, this,
            [this](const QModelIndex&, int first, int last) { leaveWith(first, last); });
        connect(_page->theme(), &Theme::changed, this, &PageRowItem::refresh);
        connect(_page->theme(), &Theme::showsFocusChanged, this, [this] { update(); });
    }
    emit pageChanged();
    refresh();
}

void PageRowItem::setRow(int row)
{
    if (_row == row)
        return;
    _row = row;
    emit rowChanged();
    refresh();
}

void PageRowItem::componentComplete()
{
    QQuickPaintedItem::componentComplete();
    refresh();
}

void PageRowItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.width() != oldGeometry.width())
        layout();
}

void PageRowItem::takeEstimatedHeight()
{
    if (!_cell)
        setImplicitHeight(_page->estimatedHeight(_row));
}

void PageRowItem::refresh()
{
    if (!_page || _row < 0 || _gone)
        return;
    if (!isComponentComplete() || _page->isSettling()) {
        takeEstimatedHeight();
        return;
    }
    _cell = _page->cellAt(_row);
    _workable = _cell && _page->canBeWorked(_row);
    _kind = kindOfRow();
    // A cell that was made anew under the user's finger goes on from where the finger is.
    if (const auto moved = _dragged ? slider() : nullptr)
        moved->setValue(*_dragged);
    takeKnob();
    layout();
    update();
    emit refreshed();
}

/// What is removed keeps its look, and does nothing more.
void PageRowItem::leaveWith(int first, int last)
{
    if (_row < first || _row > last)
        return;
    _gone = true;
    _workable = false;
    _keyHeld = false;
    _dragged.reset();
}

void PageRowItem::layout()
{
    if (!isComponentComplete() || !_page || _gone || width() <= 0)
        return;
    if (!_cell) {
        setImplicitHeight(textsHeight());
        return;
    }
    const double height = _cell->preferredHeightForWidth(width());
    _cell->setFrame({ 0, 0, width(), height });
    _cell->layoutIfNeeded();
    setImplicitHeight(height);
    update();
}

double PageRowItem::textsHeight() const
{
    const double margin = UITableViewCell::horizontalMargin(width());
    const QFont font = _page->theme()->font(headerPoints);
    const auto heightOf = [&](const QString& text) {
        return text.isEmpty() ? 0 : textGap + TextBlock { text, font, 0 }.size(width() - 2 * margin).height();
    };
    return std::ceil(heightOf(_page->footerAbove(_row)) + (_row == 0 ? 0 : sectionGap) + heightOf(_page->header(_row)));
}

std::shared_ptr<UIControl> PageRowItem::control() const
{
    const auto cell = std::dynamic_pointer_cast<PSControlTableCell>(_cell);
    return cell ? cell->control() : nullptr;
}

std::shared_ptr<UISwitch> PageRowItem::switchControl() const
{
    return std::dynamic_pointer_cast<UISwitch>(control());
}

std::shared_ptr<UISlider> PageRowItem::slider() const
{
    return std::dynamic_pointer_cast<UISlider>(control());
}

PageRowItem::Kind PageRowItem::kindOfRow() const
{
    if (!_cell)
        return Kind::Texts;
    if (switchControl())
        return Kind::Switch;
    if (slider())
        return Kind::Slider;
    if (!_workable)
        return Kind::Static;
    const bool opens = _cell->specifier()
        && (_cell->specifier()->detailControllerClass() || !_cell->specifier()->buttonAction().empty());
    return opens || _cell->accessoryType() == UITableViewCellAccessoryType::DisclosureIndicator ? Kind::Button
                                                                                                : Kind::Choice;
}

QString PageRowItem::name() const
{
    if (_cell)
        return QString::fromStdString(_cell->title().value_or(std::string()));
    if (!_page)
        return {};
    QStringList texts { _page->footerAbove(_row), _page->header(_row) };
    texts.removeAll(QString());
    return texts.join(QLatin1Char('\n'));
}

QString PageRowItem::detail() const
{
    const auto label = _cell ? _cell->detailTextLabel() : nullptr;
    if (label && label->text())
        return QString::fromStdString(*label->text());
    const auto segmentable = std::dynamic_pointer_cast<PSSegmentableSlider>(slider());
    return segmentable ? QString::fromStdString(segmentable->valueText()) : QString();
}

bool PageRowItem::isChecked() const
{
    if (const auto toggle = switchControl())
        return toggle->isOn();
    return _cell && _cell->accessoryType() == UITableViewCellAccessoryType::Checkmark;
}

double PageRowItem::value() const
{
    return slider() ? double { slider()->value() } : 0;
}

double PageRowItem::minimumValue() const
{
    return slider() ? double { slider()->minimumValue() } : 0;
}

double PageRowItem::maximumValue() const
{
    return slider() ? double { slider()->maximumValue() } : 0;
}

double PageRowItem::stepSize() const
{
    const auto moved = slider();
    if (!moved)
        return 0;
    const auto segmentable = std::dynamic_pointer_cast<PSSegmentableSlider>(moved);
    const bool segmented = segmentable && segmentable->segmentCount() > 0;
    const float steps = segmented ? static_cast<float>(segmentable->segmentCount()) : stepsWithoutSegments;
    return double { (moved->maximumValue() - moved->minimumValue()) / steps };
}

QRectF PageRowItem::controlFrame() const
{
    return control() ? ViewPainter::placed(control()->frame(), boundingRect(), _page->theme()->isMirrored()) : QRectF();
}

QRectF PageRowItem::thumbFrame() const
{
    if (!slider())
        return {};
    QRectF thumb(0, 0, ControlPainter::thumbDiameter, ControlPainter::thumbDiameter);
    const QRectF frame = controlFrame();
    thumb.moveCenter({ ControlPainter::thumbX(*slider(), frame, _page->theme()->isMirrored()), frame.center().y() });
    return thumb;
}

void PageRowItem::setKnob(double knob)
{
    if (_knob == knob)
        return;
    _knob = knob;
    update();
    emit knobChanged();
}

void PageRowItem::takeKnob()
{
    const double wanted = isChecked() && switchControl() ? 1 : 0;
    const bool sameRow = std::exchange(_shownIdentifier, _page->identifier(_row)) == _page->identifier(_row);
    if (_knobAnimation && _knobAnimation->endValue().toDouble() == wanted && sameRow)
        return;
    delete _knobAnimation;
    // A row that has only just come up shows its switch as it is.
    if (!sameRow || !_page->theme()->isAnimated() || _knob == wanted) {
        setKnob(wanted);
        return;
    }
    _knobAnimation = new QPropertyAnimation(this, "knob", this);
    _knobAnimation->setDuration(knobMilliseconds);
    _knobAnimation->setEasingCurve(QEasingCurve::InOutQuad);
    _knobAnimation->setEndValue(wanted);
    _knobAnimation->start(QAbstractAnimation::DeleteWhenStopped);
}

void PageRowItem::activate()
{
    if (!_workable || !_page || _page->isLeaving() || _page->controller()->presentedViewController())
        return;
    if (const auto toggle = switchControl())
        turnSwitch(!toggle->isOn());
    else if (!slider())
        _page->tap(_row);
}

void PageRowItem::turnSwitch(bool on)
{
    const auto keptAlive = _page->shared_from_this();
    keptAlive->host().turn([&] {
        // Looked up in the turn, because catching up may have made the cell anew.
        const auto cell = std::dynamic_pointer_cast<PSControlTableCell>(keptAlive->cellAt(_row));
        const auto toggle = cell ? std::dynamic_pointer_cast<UISwitch>(cell->control()) : nullptr;
        if (!toggle || !toggle->isEnabled())
            return;
        toggle->setOn_animated(on, true);
        toggle->sendActionsForControlEvents(UIControlEventValueChanged);
    });
    keptAlive->refresh();
}

void PageRowItem::dragTo(float value)
{
    const auto moved = slider();
    if (!moved)
        return;
    // A slider with steps goes from step to step.
    _dragged = value = moved->restingValue(value);
    // Only a continuous slider tells its targets while it moves; the others need no turn for it.
    if (moved->isContinuous())
        _page->host().turn([&] { moved->drag(value); });
    else
        moved->drag(value);
    update();
    emit refreshed();
}

void PageRowItem::letGo()
{
    const auto value = std::exchange(_dragged, std::nullopt);
    if (!value || !_page)
        return;
    const auto keptAlive = _page->shared_from_this();
    keptAlive->host().turn([&] {
        const auto cell = std::dynamic_pointer_cast<PSControlTableCell>(keptAlive->cellAt(_row));
        const auto moved = cell ? std::dynamic_pointer_cast<UISlider>(cell->control()) : nullptr;
        if (!moved)
            return;
        moved->setValue(*value);
        moved->release();
    });
    keptAlive->refresh();
}

void PageRowItem::chooseValue(double value)
{
    if (!_workable || !slider())
        return;
    dragTo(static_cast<float>(value));
    letGo();
}

void PageRowItem::stepBy(int steps)
{
    chooseValue(value() + steps * stepSize());
}

void PageRowItem::setPressed(bool pressed)
{
    if (std::exchange(_pressed, pressed) != pressed)
        update();
}

void PageRowItem::mousePressEvent(QMouseEvent* event)
{
    const QRectF reach = controlFrame().adjusted(-touchMargin, -touchMargin, touchMargin, touchMargin);
    const bool onControl = control() && reach.contains(event->position());
    _touch = Touch::None;
    if (_workable && slider() && onControl)
        _touch = thumbFrame().adjusted(-touchMargin, -touchMargin, touchMargin, touchMargin).contains(event->position())
            ? Touch::Thumb
            : Touch::Track;
    else if (_workable && switchControl() && onControl)
        _touch = Touch::Switch;
    else if (_workable && !control())
        _touch = Touch::Row;
    if (_touch == Touch::None) {
        event->ignore();
        return;
    }
    _touchStart = event->position();
    // The list scrolls with what begins anywhere but on the thumb.
    setKeepMouseGrab(_touch == Touch::Thumb);
    setPressed(_touch == Touch::Row);
}

void PageRowItem::mouseMoveEvent(QMouseEvent* event)
{
    const QPointF moved = event->position() - _touchStart;
    if (_touch == Touch::Track && std::abs(moved.x()) > QGuiApplication::styleHints()->startDragDistance()) {
        _touch = Touch::Thumb;
        setKeepMouseGrab(true);
    }
    if (_touch == Touch::Thumb && slider())
        dragTo(ControlPainter::valueAt(*slider(), controlFrame(), event->position().x(), _page->theme()->isMirrored()));
    else if (_touch == Touch::Row)
        setPressed(contains(event->position()));
}

void PageRowItem::mouseReleaseEvent(QMouseEvent* event)
{
    const Touch touch = std::exchange(_touch, Touch::None);
    setKeepMouseGrab(false);
    setPressed(false);
    const bool inside = contains(event->position());
    if (touch != Touch::None && inside)
        emit touched();
    if (touch == Touch::Track && slider())
        dragTo(ControlPainter::valueAt(*slider(), controlFrame(), event->position().x(), _page->theme()->isMirrored()));
    if (touch == Touch::Track || touch == Touch::Thumb)
        letGo();
    else if (touch != Touch::None && inside)
        activate();
}

void PageRowItem::mouseDoubleClickEvent(QMouseEvent* event)
{
    // Two quick taps are two taps; the second may already have been told as a press.
    if (_touch == Touch::None)
        mousePressEvent(event);
}

void PageRowItem::mouseUngrabEvent()
{
    if (_touch != Touch::None)
        endTouch();
}

/// Something else took the touch over: a row is not tapped, and a slider goes back to what it was.
void PageRowItem::endTouch()
{
    _touch = Touch::None;
    setKeepMouseGrab(false);
    setPressed(false);
    if (!std::exchange(_dragged, std::nullopt) || !_page || !_cell)
        return;
    _cell->refreshCellContentsWithSpecifier(_cell->specifier());
    refresh();
}

bool PageRowItem::moveByKey(int key)
{
    const double step = stepSize() * (_page->theme()->isMirrored() ? -1 : 1);
    switch (key) {
    case Qt::Key_Left:
        dragTo(static_cast<float>(value() - step));
        return true;
    case Qt::Key_Right:
        dragTo(static_cast<float>(value() + step));
        return true;
    case Qt::Key_Home:
        dragTo(slider()->minimumValue());
        return true;
    case Qt::Key_End:
        dragTo(slider()->maximumValue());
        return true;
    default:
        return false;
    }
}

void PageRowItem::keyPressEvent(QKeyEvent* event)
{
    const bool plain = event->modifiers() == Qt::NoModifier || event->modifiers() == Qt::KeypadModifier;
    if (_workable && plain && slider() && moveByKey(event->key())) {
        _keyHeld = true;
        return;
    }
    const bool activates =
        event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (_workable && plain && activates && !slider()) {
        if (!event->isAutoRepeat())
            activate();
        return;
    }
    event->ignore();
}

void PageRowItem::keyReleaseEvent(QKeyEvent* event)
{
    if (!_keyHeld || event->isAutoRepeat()) {
        event->ignore();
        return;
    }
    _keyHeld = false;
    letGo();
}

void PageRowItem::focusOutEvent(QFocusEvent* event)
{
    QQuickPaintedItem::focusOutEvent(event);
    if (std::exchange(_keyHeld, false))
        letGo();
}

void PageRowItem::paint(QPainter* painter)
{
    if (!_page)
        return;
    if (!_cell) {
        paintTexts(*painter);
        return;
    }
    painter->setRenderHint(QPainter::Antialiasing);
    painter->save();
    paintCard(*painter);
    paintCell(*painter);
    paintAccessory(*painter);
    paintSeparator(*painter);
    painter->restore();
    if (hasActiveFocus() && _page->theme()->showsFocus())
        paintFocus(*painter);
}

void PageRowItem::paintTexts(QPainter& painter)
{
    const double margin = UITableViewCell::horizontalMargin(width());
    const Theme& theme = *_page->theme();
    const Qt::Alignment alignment = theme.isMirrored() ? Qt::AlignRight : Qt::AlignLeft;
    const double textWidth = width() - 2 * margin;
    painter.setPen(theme.secondaryTextColor());
    const TextBlock footer { _page->footerAbove(_row), theme.font(headerPoints), 0 };
    if (!footer.text.isEmpty())
        footer.draw(painter, { margin, textGap, textWidth, footer.size(textWidth).height() }, alignment);
    const TextBlock header { _page->header(_row), theme.font(headerPoints), 0 };
    const double headerHeight = header.size(textWidth).height();
    if (!header.text.isEmpty())
        header.draw(painter, { margin, height() - textGap - headerHeight, textWidth, headerHeight }, alignment);
}

void PageRowItem::paintCard(QPainter& painter)
{
    // The card's corners are those of the item's, drawn longer where the card goes on above or below.
    const double above = _page->isFirstOfSection(_row) ? 0 : cardRadius;
    const double below = _page->isLastOfSection(_row) ? 0 : cardRadius;
    QPainterPath card;
    card.addRoundedRect(boundingRect().adjusted(0, -above, 0, below), cardRadius, cardRadius);
    painter.setClipPath(card);
    const auto& own = _cell->backgroundColor();
    QColor background = own ? colorOf(*own) : _page->theme()->cardColor();
    if (_pressed && _cell->selectionStyle() != UITableViewCellSelectionStyle::None)
        background = _page->theme()->pressedColor();
    painter.fillRect(boundingRect(), background);
}

void PageRowItem::paintCell(QPainter& painter)
{
    const Theme& theme = *_page->theme();
    ViewPainter views(painter, theme);
    const QColor valueColor =
        _cell->textLabel()->textColor() ? colorOf(*_cell->textLabel()->textColor()) : theme.textColor();
    views.setVisitor([&](const UIView& view, const QRectF& frame) {
        if (const auto* toggle = dynamic_cast<const UISwitch*>(&view))
            ControlPainter::drawSwitch(painter, *toggle, frame, _knob, theme);
        else if (const auto* moved = dynamic_cast<const UISlider*>(&view))
            ControlPainter::drawSlider(painter, *moved, frame, valueColor, theme);
    });
    views.drawSubviews(*_cell, boundingRect());
}

void PageRowItem::paintAccessory(QPainter& painter)
{
    if (_cell->accessoryView())
        return;
    const Theme& theme = *_page->theme();
    const double margin = UITableViewCell::horizontalMargin(width());
    const auto place = [&](double extent, double high) {
        const double left = theme.isMirrored() ? margin : width() - margin - extent;
        return QRectF(left, (height() - high) / 2, extent, high);
    };
    if (_cell->accessoryType() == UITableViewCellAccessoryType::DisclosureIndicator) {
        QRectF chevron = place(disclosureWidth, disclosureHeight);
        const double wider = (disclosureHeight - disclosureWidth) / 2;
        chevron.adjust(-wider, 0, wider, 0);
        Glyph::draw(painter, Glyph::Shape::Forward, chevron, theme.accessoryColor(), accessoryLine, theme.isMirrored());
    } else if (_cell->accessoryType() == UITableViewCellAccessoryType::Checkmark) {
        const auto& color = _cell->textLabel()->textColor();
        Glyph::draw(painter, Glyph::Shape::Checkmark, place(checkmarkSize, checkmarkSize),
            color ? colorOf(*color) : theme.tintColor(), accessoryLine, false);
    }
}

void PageRowItem::paintSeparator(QPainter& painter)
{
    if (_page->isLastOfSection(_row))
        return;
    const double start = _cell->textLabel()->frame().x;
    const double left = _page->theme()->isMirrored() ? 0 : start;
    painter.fillRect(
        QRectF(left, height() - separatorWidth, width() - start, separatorWidth), _page->theme()->separatorColor());
}

void PageRowItem::paintFocus(QPainter& painter)
{
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(_page->theme()->focusColor(), focusWidth));
    painter.drawRoundedRect(
        boundingRect().adjusted(focusInset, focusInset, -focusInset, -focusInset), cardRadius, cardRadius);
}
