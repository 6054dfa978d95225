#pragma once

#include <QAccessible>

#include <functional>
#include <string>

class QWindow;

/// The window as a screen reader finds it, from the top; null without one.
QAccessibleInterface* accessibleTreeOf(QWindow& window);

/// All of the tree, a line each, the children further to the right than their parent:
/// role "name" [states] value, = what the value is, its limits and step, > actions, | the description.
std::string textOf(QAccessibleInterface& tree);

/// The first that can be seen and is what is wanted; null for none.
QAccessibleInterface* findAccessible(
    QAccessibleInterface* below, const std::function<bool(QAccessibleInterface&)>& isWanted);
QAccessibleInterface* findAccessible(QAccessibleInterface* below, QAccessible::Role role, const QString& name);

bool canBeSeen(const QAccessibleInterface& item);
