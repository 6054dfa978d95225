#include "RowAccess.h"

#include <utility>

namespace {

enum PartIndex { Footer, Header, PartCount };

} // namespace

/// One of the texts.
class RowAccess::Part final : public QAccessibleInterface {
public:
    Part(const RowAccess& whole, PartIndex index)
        : _whole(whole)
        , _index(index)
    {
    }

    // QAccessibleInterface
    bool isValid() const override { return _whole.isValid(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return _whole.window(); }
    QAccessibleInterface* parent() const override { return const_cast<RowAccess*>(&_whole); }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    QAccessible::Role role() const override { return _index == Header ? QAccessible::Heading : QAccessible::Paragraph; }
    QAccessible::State state() const override { return _whole.ItemAccess::state(); }
    QRect rect() const override
    {
        if (!isValid())
            return {};
        QRectF place = _whole.item()->boundingRect();
        _index == Header ? place.setTop(place.center().y()) : place.setBottom(place.center().y());
        return _whole.onScreen(place);
    }
    QString text(QAccessible::Text text) const override
    {
        if (!isValid() || text != QAccessible::Name)
            return {};
        return _index == Header ? _whole.item()->header() : _whole.item()->footer();
    }
    void setText(QAccessible::Text /*text*/, const QString& /*value*/) override { }

private:
    const RowAccess& _whole;
    PartIndex _index;
};

RowAccess::RowAccess(PageRowItem& item)
    : ItemAccess(item)
    , _wasChecked(item.isChecked())
    , _toldValue(item.value())
{
    QObject::connect(&item, &PageRowItem::refreshed, &item, [&item] {
        if (auto* access = dynamic_cast<RowAccess*>(QAccessible::queryAccessibleInterface(&item)))
            access->tellChanges();
    });
}

RowAccess::~RowAccess()
{
    for (const QAccessible::Id id : _parts)
        QAccessible::deleteAccessibleInterface(id);
}

void RowAccess::tellChanges()
{
    if (std::exchange(_wasChecked, item()->isChecked()) != item()->isChecked()) {
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent event(item(), changed);
        QAccessible::updateAccessibility(&event);
    }
    if (isSlider() && std::exchange(_toldValue, item()->value()) != item()->value()) {
        QAccessibleValueChangeEvent event(item(), item()->value());
        QAccessible::updateAccessibility(&event);
    }
}

bool RowAccess::isSlider() const
{
    return item() && item()->kind() == PageRowItem::Kind::Slider;
}

bool RowAccess::canBeChecked() const
{
    return item() && (item()->kind() == PageRowItem::Kind::Switch || item()->kind() == PageRowItem::Kind::Choice);
}

bool RowAccess::hasTwoTexts() const
{
    return item() && !item()->footer().isEmpty() && !item()->header().isEmpty();
}

QAccessibleInterface* RowAccess::part(std::size_t index) const
{
    if (_parts.empty()) {
        for (const PartIndex made : { Footer, Header })
            _parts.push_back(QAccessible::registerAccessibleInterface(new Part(*this, made)));
    }
    return QAccessible::accessibleInterface(_parts[index]);
}

QAccessibleInterface* RowAccess::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    return part(static_cast<std::size_t>(index));
}

int RowAccess::childCount() const
{
    return hasTwoTexts() ? PartCount : 0;
}

int RowAccess::indexOfChild(const QAccessibleInterface* child) const
{
    for (int i = 0; i < childCount(); ++i) {
        if (this->child(i) == child)
            return i;
    }
    return -1;
}

QAccessible::Role RowAccess::role() const
{
    switch (item() ? item()->kind() : PageRowItem::Kind::Static) {
    case PageRowItem::Kind::Texts:
        if (hasTwoTexts())
            return QAccessible::Grouping;
        return item()->header().isEmpty() ? QAccessible::Paragraph : QAccessible::Heading;
    case PageRowItem::Kind::Button:
        return QAccessible::Button;
    case PageRowItem::Kind::Choice:
        return QAccessible::RadioButton;
    case PageRowItem::Kind::Switch:
        return QAccessible::CheckBox;
    case PageRowItem::Kind::Slider:
        return QAccessible::Slider;
    default:
        return QAccessible::ListItem;
    }
}

QAccessible::State RowAccess::state() const
{
    if (!item())
        return {};
    QAccessible::State state = ItemAccess::state();
    state.focusable = item()->isWorkable();
    state.focused = item()->hasActiveFocus();
    state.checkable = canBeChecked();
    state.checked = canBeChecked() && item()->isChecked();
    const bool hasControl = isSlider() || item()->kind() == PageRowItem::Kind::Switch;
    state.disabled = hasControl && !item()->isWorkable();
    return state;
}

QString RowAccess::text(QAccessible::Text text) const
{
    if (!item() || hasTwoTexts())
        return {};
    switch (text) {
    case QAccessible::Name:
        return item()->name();
    case QAccessible::Value:
        return isSlider() ? item()->detail() : QString();
    case QAccessible::Description:
        return isSlider() ? QString() : item()->detail();
    default:
        return {};
    }
}

void* RowAccess::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface*>(this);
    if (type == QAccessible::ValueInterface && isSlider())
        return static_cast<QAccessibleValueInterface*>(this);
    return nullptr;
}

QStringList RowAccess::actionNames() const
{
    if (!item() || !item()->isWorkable())
        return {};
    if (isSlider())
        return { increaseAction(), decreaseAction(), setFocusAction() };
    const bool isSwitch = item()->kind() == PageRowItem::Kind::Switch;
    return { isSwitch ? toggleAction() : pressAction(), setFocusAction() };
}

void RowAccess::doAction(const QString& action)
{
    if (!item())
        return;
    if (action == increaseAction())
        item()->increase();
    else if (action == decreaseAction())
        item()->decrease();
    else if (action == setFocusAction())
        item()->forceActiveFocus(Qt::OtherFocusReason);
    else if (action == pressAction() || action == toggleAction())
        item()->activate();
}

QVariant RowAccess::currentValue() const
{
    return item() ? item()->value() : QVariant();
}

void RowAccess::setCurrentValue(const QVariant& value)
{
    if (item())
        item()->chooseValue(value.toDouble());
}

QVariant RowAccess::minimumValue() const
{
    return item() ? item()->minimumValue() : QVariant();
}

QVariant RowAccess::maximumValue() const
{
    return item() ? item()->maximumValue() : QVariant();
}

QVariant RowAccess::minimumStepSize() const
{
    return item() ? item()->stepSize() : QVariant();
}
