#pragma once

#include "Foundation/FileCache.h"
#include "Phone/Phone.h"

#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// The services of a phone that a file describes. They hold what they were given and ask nobody.

class DemoAppearance final : public Appearance {
public:
    DemoAppearance(bool dark, double textScale, bool reducedMotion)
        : _dark(dark)
        , _textScale(textScale)
        , _reducedMotion(reducedMotion)
    {
    }

    // Appearance
    bool isDark() const override { return _dark; }
    double textScale() const override { return _textScale; }
    bool isMotionReduced() const override { return _reducedMotion; }

private:
    const bool _dark;
    const double _textScale;
    const bool _reducedMotion;
};

class DemoPairedDevices final : public PairedDevices {
public:
    explicit DemoPairedDevices(std::vector<PairedDevice> devices)
        : _devices(std::move(devices))
    {
    }

    // PairedDevices
    std::vector<PairedDevice> devices() const override { return _devices; }

private:
    std::vector<PairedDevice> _devices;
};

class DemoSubscriptions final : public Subscriptions {
public:
    explicit DemoSubscriptions(std::vector<Subscription> subscriptions)
        : _subscriptions(std::move(subscriptions))
    {
    }

    // Subscriptions
    std::vector<Subscription> subscriptions() const override { return _subscriptions; }
    std::string formattedNumber(const std::string& number) const override;

private:
    std::vector<Subscription> _subscriptions;
};

/// Answers for the icons of the apps it knows, each from a picture file that is read when it is first asked for, and
/// again only when it has changed.
class DemoHomeScreen final : public HomeScreen {
public:
    /// The pictures are absolute paths by app; `scale` is their number of pixels a point.
    DemoHomeScreen(std::map<std::string, std::string> pictures, double scale)
        : _pictures(std::move(pictures))
        , _scale(scale)
    {
    }

    // HomeScreen
    Value ask(const std::string& service, const std::string& message, const Value& userInfo) override;

private:
    Value archivedIcon(const std::string& app);
    /// Null for a file that holds no picture.
    Value archiveOfPicture(const std::string& file) const;

    std::map<std::string, std::string> _pictures;
    double _scale;
    FileCache<Value> _archives;
};

/// Notifications inside this process. One that is posted by a handler waits until those before it have been delivered.
class DemoNotifications final : public DarwinNotifications {
public:
    // DarwinNotifications
    void post(const std::string& name) override;
    void addObserver(const std::string& name, Handler handler) override;

private:
    void deliver(const std::string& name);

    std::vector<std::pair<std::string, Handler>> _observers;
    /// The one being delivered is at the front.
    std::deque<std::string> _pending;
};

/// Keeps the drafts instead of showing them.
class DemoMail final : public Mail {
public:
    const std::vector<MailDraft>& drafts() const { return _drafts; }

    // Mail
    bool compose(const MailDraft& draft) override;

private:
    std::vector<MailDraft> _drafts;
};

/// Keeps the addresses instead of opening them.
class DemoLinks final : public Links {
public:
    const std::vector<std::string>& urls() const { return _urls; }

    // Links
    bool open(const std::string& url, std::function<void()> onFailure) override;

private:
    std::vector<std::string> _urls;
};
