#pragma once

#include "Driver/Json.h"
#include "Phone/Phone.h"
#include "UIKit/UITableView.h"
#include "UIKit/UIViewController.h"

/// What happened since it was last asked, in order, as JSON objects with an "event".
class EventLog final : public UIPresentationObserver,
                       public UITableViewObserver,
                       public std::enable_shared_from_this<EventLog> {
public:
    /// Stands before the phone's log, notifications, mail and links, so that what the pages send there is seen here
    /// too.
    void decorate(Phone& phone);
    /// Hears of animations and of the core library's reloads from now on.
    void observeProcess();

    void add(Json event) { _events.push_back(std::move(event)); }
    /// The events so far, which are forgotten here.
    Json take();

    // UIPresentationObserver
    void willPush(const std::shared_ptr<UIViewController>& page) override;
    void didPush(const std::shared_ptr<UIViewController>& page) override;
    void didPop(const std::shared_ptr<UIViewController>& page) override;
    void didPresent(const std::shared_ptr<UIViewController>& controller) override;
    void didDismiss(const std::shared_ptr<UIViewController>& controller) override;

    // UITableViewObserver
    void didInsertItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated) override;
    void didRemoveItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated) override;
    void didReloadData() override;
    void didReloadSection(std::size_t section, UITableViewRowAnimation animation) override;

private:
    class ReloadListener;

    Json _events = Json::array();
    std::shared_ptr<ReloadListener> _reloadListener;
};
