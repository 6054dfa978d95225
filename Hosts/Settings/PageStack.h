#pragma once

#include "PageModel.h"

/// The pages on the screen from the lowest to the topmost, and those that are just leaving it.
class PageStack : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The host has the one stack of its window.")
    Q_PROPERTY(int depth READ depth NOTIFY depthChanged)

public:
    using QAbstractListModel::QAbstractListModel;

    void push(std::shared_ptr<PageModel> page);
    /// The page leaves the stack; it stays on the screen until `hasLeft` is called.
    void pop(const UIViewController& controller);
    /// Called when the page is out of sight; it goes when the view that calls has come to an end.
    Q_INVOKABLE void hasLeft(PageModel* page);
    /// How many pages are there without those that are leaving.
    int depth() const;
    /// Null before the first.
    PageModel* top() const;
    const std::vector<std::shared_ptr<PageModel>>& pages() const { return _pages; }

    // QAbstractListModel
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void depthChanged();

private:
    void remove(const PageModel* page);

    std::vector<std::shared_ptr<PageModel>> _pages;
};
