#include "Witness.h"

/// The same for one table.
class Witness::TableWitness final : public UITableViewObserver {
public:
    TableWitness(std::shared_ptr<EventLog> events, std::weak_ptr<UITableViewObserver> window)
        : _events(std::move(events))
        , _window(std::move(window))
    {
    }

    // UITableViewObserver
    void didInsertItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated) override
    {
        tell([&](UITableViewObserver& observer) { observer.didInsertItem(index, item, animated); });
    }
    void didRemoveItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated) override
    {
        tell([&](UITableViewObserver& observer) { observer.didRemoveItem(index, item, animated); });
    }
    void didReloadData() override
    {
        tell([](UITableViewObserver& observer) { observer.didReloadData(); });
    }
    void didReloadSection(std::size_t section, UITableViewRowAnimation animation) override
    {
        tell([&](UITableViewObserver& observer) { observer.didReloadSection(section, animation); });
    }
    void didReloadCells() override
    {
        tell([](UITableViewObserver& observer) { observer.didReloadCells(); });
    }

private:
    template <class Tell>
    void tell(const Tell& tell)
    {
        tell(*_events);
        if (const auto window = _window.lock())
            tell(*window);
    }

    std::shared_ptr<EventLog> _events;
    std::weak_ptr<UITableViewObserver> _window;
};

std::shared_ptr<Witness> Witness::standBefore(
    const std::shared_ptr<SettingsHost>& host, const std::shared_ptr<EventLog>& events)
{
    auto witness = std::make_shared<Witness>();
    witness->_host = host;
    witness->_events = events;
    witness->watchTable(host->session().rootPage());
    host->session().navigation().setObserver(witness);
    return witness;
}

void Witness::watchTable(const std::shared_ptr<UIViewController>& page)
{
    const auto list = std::dynamic_pointer_cast<PSListController>(page);
    if (!list)
        return;
    _tables.push_back(std::make_shared<TableWitness>(_events, list->table().observer()));
    list->table().setObserver(_tables.back());
}

template <class Tell>
void Witness::tell(const Tell& tell)
{
    // Written down first, because what the window does on hearing it comes after it.
    tell(*_events);
    if (const auto host = _host.lock())
        tell(*host);
}

void Witness::willPush(const std::shared_ptr<UIViewController>& page)
{
    tell([&](UIPresentationObserver& observer) { observer.willPush(page); });
    watchTable(page);
}

void Witness::didPush(const std::shared_ptr<UIViewController>& page)
{
    tell([&](UIPresentationObserver& observer) { observer.didPush(page); });
}

void Witness::didPop(const std::shared_ptr<UIViewController>& page)
{
    tell([&](UIPresentationObserver& observer) { observer.didPop(page); });
}

void Witness::didPresent(const std::shared_ptr<UIViewController>& controller)
{
    tell([&](UIPresentationObserver& observer) { observer.didPresent(controller); });
}

void Witness::didDismiss(const std::shared_ptr<UIViewController>& controller)
{
    tell([&](UIPresentationObserver& observer) { observer.didDismiss(controller); });
}
