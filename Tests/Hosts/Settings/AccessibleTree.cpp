#include "AccessibleTree.h"

#include <QMetaEnum>
#include <QVariant>
#include <QWindow>

#include <array>
#include <utility>

namespace {

constexpr int indent = 2;

std::string nameOf(QAccessible::Role role)
{
    return QMetaEnum::fromType<QAccessible::Role>().valueToKey(role);
}

std::string quoted(const QString& text)
{
    QString line = text;
    return '"' + line.replace(QLatin1Char('\n'), QLatin1String("\\n")).toStdString() + '"';
}

std::string statesOf(const QAccessible::State& state)
{
    const std::array<std::pair<bool, const char*>, 13> states { { { state.disabled, "disabled" },
        { state.focusable, "focusable" }, { state.focused, "focused" }, { state.checkable, "checkable" },
        { state.checked, "checked" }, { state.selectable, "selectable" }, { state.selected, "selected" },
        { state.editable, "editable" }, { state.readOnly, "readOnly" }, { state.hasPopup, "hasPopup" },
        { state.modal, "modal" }, { state.offscreen, "offscreen" }, { state.invisible, "invisible" } } };
    std::string text;
    for (const auto& [is, name] : states) {
        if (is)
            text += (text.empty() ? " [" : " ") + std::string(name);
    }
    return text.empty() ? text : text + ']';
}

std::string valueOf(QAccessibleValueInterface* value)
{
    if (!value)
        return {};
    const auto number = [](const QVariant& part) { return QString::number(part.toDouble()).toStdString(); };
    return " = " + number(value->currentValue()) + " of " + number(value->minimumValue()) + " to "
        + number(value->maximumValue()) + " by " + number(value->minimumStepSize());
}

std::string actionsOf(QAccessibleActionInterface* actions)
{
    // The toolkit names some of its own twice.
    QStringList names = actions ? actions->actionNames() : QStringList();
    names.removeDuplicates();
    return names.isEmpty() ? std::string() : " > " + names.join(", ").toStdString();
}

void write(QAccessibleInterface& item, int depth, std::string& text)
{
    text.append(static_cast<std::size_t>(depth * indent), ' ');
    text += nameOf(item.role()) + ' ' + quoted(item.text(QAccessible::Name)) + statesOf(item.state())
        + valueOf(item.valueInterface()) + actionsOf(item.actionInterface());
    if (const QString description = item.text(QAccessible::Description); !description.isEmpty())
        text += " | " + quoted(description);
    text += '\n';
    for (int i = 0; i < item.childCount(); ++i) {
        if (QAccessibleInterface* child = item.child(i))
            write(*child, depth + 1, text);
    }
}

} // namespace

QAccessibleInterface* accessibleTreeOf(QWindow& window)
{
    return QAccessible::queryAccessibleInterface(&window);
}

bool canBeSeen(const QAccessibleInterface& item)
{
    return !item.state().invisible;
}

std::string textOf(QAccessibleInterface& tree)
{
    std::string text;
    write(tree, 0, text);
    return text;
}

QAccessibleInterface* findAccessible(
    QAccessibleInterface* below, const std::function<bool(QAccessibleInterface&)>& isWanted)
{
    if (!below || !canBeSeen(*below))
        return nullptr;
    if (isWanted(*below))
        return below;
    for (int i = 0; i < below->childCount(); ++i) {
        if (QAccessibleInterface* found = findAccessible(below->child(i), isWanted))
            return found;
    }
    return nullptr;
}

QAccessibleInterface* findAccessible(QAccessibleInterface* below, QAccessible::Role role, const QString& name)
{
    return findAccessible(
        below, [&](QAccessibleInterface& item) { return item.role() == role && item.text(QAccessible::Name) == name; });
}
