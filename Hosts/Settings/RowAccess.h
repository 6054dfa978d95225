#pragma once

#include "ItemAccess.h"
#include "PageRowItem.h"

#include <vector>

/// An item of a page for screen readers: what it is, its value and state, and what can be done with it.
class RowAccess final : public ItemAccess, public QAccessibleActionInterface, public QAccessibleValueInterface {
public:
    explicit RowAccess(PageRowItem& item);
    ~RowAccess() override;

    // QAccessibleInterface
    QAccessibleInterface* child(int index) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text text) const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    // QAccessibleActionInterface
    QStringList actionNames() const override;
    void doAction(const QString& action) override;
    QStringList keyBindingsForAction(const QString& /*action*/) const override { return {}; }

    // QAccessibleValueInterface
    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant minimumValue() const override;
    QVariant maximumValue() const override;
    QVariant minimumStepSize() const override;

private:
    class Part;

    /// Null when the item is going.
    PageRowItem* item() const { return static_cast<PageRowItem*>(object()); }
    bool isSlider() const;
    bool canBeChecked() const;
    bool hasTwoTexts() const;
    void tellChanges();
    QAccessibleInterface* part(std::size_t index) const;

    /// Where both stand between two groups: the footer of the one above and the title of the one below, by their
    /// identifiers.
    mutable std::vector<QAccessible::Id> _parts;
    bool _wasChecked = false;
    double _toldValue = 0;
};
