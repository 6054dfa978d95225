#pragma once

#include "Driver/EventLog.h"
#include "SettingsHost.h"

/// Stands before a window's host, and before the window as the observer of each page's table: writes down what it is
/// told as the driver writes it, and passes it on.
class Witness final : public UIPresentationObserver, public std::enable_shared_from_this<Witness> {
public:
    /// For a host that has just opened its root page. Observers are held weakly, so what is returned must be kept.
    static std::shared_ptr<Witness> standBefore(
        const std::shared_ptr<SettingsHost>& host, const std::shared_ptr<EventLog>& events);

    // UIPresentationObserver
    bool showsPagesLater() const override { return true; }
    void willPush(const std::shared_ptr<UIViewController>& page) override;
    void didPush(const std::shared_ptr<UIViewController>& page) override;
    void didPop(const std::shared_ptr<UIViewController>& page) override;
    void didPresent(const std::shared_ptr<UIViewController>& controller) override;
    void didDismiss(const std::shared_ptr<UIViewController>& controller) override;

private:
    class TableWitness;

    void watchTable(const std::shared_ptr<UIViewController>& page);
    template <class Tell>
    void tell(const Tell& tell);

    std::weak_ptr<SettingsHost> _host;
    std::shared_ptr<EventLog> _events;
    std::vector<std::shared_ptr<TableWitness>> _tables;
};
