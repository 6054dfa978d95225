#include "Driver/EventLog.h"

#include "Foundation/NSNotificationCenter.h"
#include "PreferencesUI/PSListController.h"
#include "UIKit/UIAlertController.h"
#include "UIKit/UIViewAnimation.h"
#include "libtandem/TDSettings.h"

namespace {

/// The services that the pages send something to, each passing it on to the phone's own when there is one.
class LoggedSystemLog final : public SystemLog {
public:
    LoggedSystemLog(EventLog& events, std::shared_ptr<SystemLog> next)
        : _events(events)
        , _next(std::move(next))
    {
    }

    void write(const std::string& line) override
    {
        _events.add({ { "event", "log" }, { "text", line } });
        if (_next)
            _next->write(line);
    }

private:
    EventLog& _events;
    std::shared_ptr<SystemLog> _next;
};

class LoggedNotifications final : public DarwinNotifications {
public:
    LoggedNotifications(EventLog& events, std::shared_ptr<DarwinNotifications> next)
        : _events(events)
        , _next(std::move(next))
    {
    }

    void post(const std::string& name) override
    {
        _events.add({ { "event", "notification" }, { "name", name } });
        _next->post(name);
    }

    void addObserver(const std::string& name, Handler handler) override
    {
        _next->addObserver(name, std::move(handler));
    }

private:
    EventLog& _events;
    std::shared_ptr<DarwinNotifications> _next;
};

class LoggedMail final : public Mail {
public:
    LoggedMail(EventLog& events, std::shared_ptr<Mail> next)
        : _events(events)
        , _next(std::move(next))
    {
    }

    bool compose(const MailDraft& draft) override
    {
        _events.add({ { "event", "mail" }, { "recipient", draft.recipient }, { "subject", draft.subject },
            { "attachment", draft.attachments.empty() ? Json() : Json(draft.attachments.front()) } });
        return _next->compose(draft);
    }

    bool asksUserFirst() const override { return _next->asksUserFirst(); }

private:
    EventLog& _events;
    std::shared_ptr<Mail> _next;
};

class LoggedLinks final : public Links {
public:
    LoggedLinks(EventLog& events, std::shared_ptr<Links> next)
        : _events(events)
        , _next(std::move(next))
    {
    }

    bool open(const std::string& url, std::function<void()> onFailure) override
    {
        _events.add({ { "event", "link" }, { "url", url } });
        return _next->open(url, std::move(onFailure));
    }

private:
    EventLog& _events;
    std::shared_ptr<Links> _next;
};

const char* nameOfStyle(UIAlertActionStyle style)
{
    switch (style) {
    case UIAlertActionStyle::Cancel:
        return "cancel";
    case UIAlertActionStyle::Destructive:
        return "destructive";
    default:
        return "default";
    }
}

const char* nameOfSource(UIImagePickerControllerSourceType source)
{
    switch (source) {
    case UIImagePickerControllerSourceType::Camera:
        return "camera";
    case UIImagePickerControllerSourceType::SavedPhotosAlbum:
        return "savedPhotosAlbum";
    default:
        return "photoLibrary";
    }
}

Json jsonOfAlert(const UIAlertController& alert)
{
    if (alert.preferredStyle() == UIAlertControllerStyle::Alert)
        return { { "event", "error" }, { "message", alert.message() } };
    Json actions = Json::array();
    for (const UIAlertAction& action : alert.actions())
        actions.push_back({ { "title", action.title }, { "style", nameOfStyle(action.style) } });
    return { { "event", "sheet" }, { "title", alert.title() }, { "message", alert.message() },
        { "actions", std::move(actions) } };
}

bool isErrorAlert(const std::shared_ptr<UIViewController>& controller)
{
    const auto alert = std::dynamic_pointer_cast<UIAlertController>(controller);
    return alert && alert->preferredStyle() == UIAlertControllerStyle::Alert;
}

Json identifierOf(const std::shared_ptr<NSObject>& item)
{
    const auto row = std::dynamic_pointer_cast<PSSpecifier>(item);
    return row ? jsonOf(row->identifier()) : Json();
}

} // namespace

/// Hears the core library's word that it has read its settings.
class EventLog::ReloadListener final : public NSObject {
    NS_CLASS(ReloadListener, NSObject)
public:
    ReloadListener() = default;
    explicit ReloadListener(EventLog& events)
        : _events(&events)
    {
    }
    void settingsReloaded(const Value& /*notification*/)
    {
        if (_events)
            _events->add({ { "event", "settingsReloaded" } });
    }

private:
    EventLog* _events = nullptr;
};

const Class& EventLog::ReloadListener::classObject()
{
    static const Class cls(
        "EventLogReloadListener", &NSObject::classObject(), nullptr, { NS_METHOD(settingsReloaded) });
    return cls;
}

void EventLog::decorate(Phone& phone)
{
    phone.systemLog = std::make_shared<LoggedSystemLog>(*this, phone.systemLog);
    if (phone.darwinNotifications)
        phone.darwinNotifications = std::make_shared<LoggedNotifications>(*this, phone.darwinNotifications);
    if (phone.mail)
        phone.mail = std::make_shared<LoggedMail>(*this, phone.mail);
    if (phone.links)
        phone.links = std::make_shared<LoggedLinks>(*this, phone.links);
}

void EventLog::observeProcess()
{
    UIViewAnimations::shared().setObserver([this](const UIViewAnimation& animation) {
        add({ { "event", "fadeIn" }, { "from", animation.from }, { "to", animation.to },
            { "seconds", animation.duration } });
    });
    _reloadListener = std::make_shared<ReloadListener>(*this);
    NSNotificationCenter::defaultCenter().addObserver_selector_name(
        _reloadListener, "settingsReloaded:", TDSettings::reloadedNotification);
}

Json EventLog::take()
{
    return std::exchange(_events, Json::array());
}

void EventLog::willPush(const std::shared_ptr<UIViewController>& page)
{
    if (const auto list = std::dynamic_pointer_cast<PSListController>(page))
        list->table().setObserver(weak_from_this());
}

void EventLog::didPush(const std::shared_ptr<UIViewController>& page)
{
    // The first page is where a session starts, and no step of it.
    if (page->navigationController()->viewControllers().size() > 1)
        add({ { "event", "push" }, { "page", page->isa().name() }, { "title", page->title() } });
}

void EventLog::didPop(const std::shared_ptr<UIViewController>& page)
{
    add({ { "event", "pop" }, { "page", page->isa().name() }, { "title", page->title() } });
}

void EventLog::didPresent(const std::shared_ptr<UIViewController>& controller)
{
    if (const auto alert = std::dynamic_pointer_cast<UIAlertController>(controller))
        add(jsonOfAlert(*alert));
    else if (const auto picker = std::dynamic_pointer_cast<UIImagePickerController>(controller))
        add({ { "event", "picker" }, { "source", nameOfSource(picker->sourceType()) },
            { "allowsEditing", picker->allowsEditing() } });
    else if (const auto share = std::dynamic_pointer_cast<UIActivityViewController>(controller))
        add({ { "event", "share" }, { "message", share->message() }, { "image", jsonOf(share->image()) } });
}

void EventLog::didDismiss(const std::shared_ptr<UIViewController>& controller)
{
    // An error alert is read by being printed.
    if (isErrorAlert(controller))
        return;
    const bool isPicker = std::dynamic_pointer_cast<UIImagePickerController>(controller) != nullptr;
    const bool isShare = std::dynamic_pointer_cast<UIActivityViewController>(controller) != nullptr;
    add({ { "event", "dismiss" }, { "what", isPicker ? "picker" : isShare ? "share" : "sheet" } });
}

void EventLog::didInsertItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated)
{
    add({ { "event", "insert" }, { "index", index }, { "identifier", identifierOf(item) }, { "animated", animated } });
}

void EventLog::didRemoveItem(std::size_t index, const std::shared_ptr<NSObject>& item, bool animated)
{
    add({ { "event", "remove" }, { "index", index }, { "identifier", identifierOf(item) }, { "animated", animated } });
}

void EventLog::didReloadData()
{
    add({ { "event", "reload" } });
}

void EventLog::didReloadSection(std::size_t section, UITableViewRowAnimation animation)
{
    add({ { "event", "reloadSection" }, { "section", section }, { "animation", static_cast<int>(animation) } });
}
