#pragma once

#include "Phone/Phone.h"

#include <map>
#include <set>
#include <string>
#include <vector>

/// Remembers every line.
class RecordedLog final : public SystemLog {
public:
    void write(const std::string& line) override
    {
        lines.push_back(line);
        if (onWrite)
            onWrite(line);
    }
    std::vector<std::string> lines;
    /// Called while a line is written.
    std::function<void(const std::string&)> onWrite;
};

/// Remembers every name, and tells observers.
class RecordedNotifications final : public DarwinNotifications {
public:
    void post(const std::string& name) override
    {
        names.push_back(name);
        if (onPost)
            onPost(name);
        const auto observers = _handlers.find(name);
        if (observers == _handlers.end())
            return;
        for (const Handler& handler : observers->second)
            handler(name);
    }
    void addObserver(const std::string& name, Handler handler) override
    {
        _handlers[name].push_back(std::move(handler));
    }

    std::vector<std::string> names;
    /// Called while a name is posted.
    std::function<void(const std::string&)> onPost;

private:
    std::map<std::string, std::vector<Handler>> _handlers;
};

class FakePairedDevices final : public PairedDevices {
public:
    void addDevice(const std::string& name, const std::string& address) { _devices.push_back({ name, address }); }
    void removeDevice(const std::string& address)
    {
        std::erase_if(_devices, [&](const PairedDevice& device) { return device.address == address; });
    }
    std::vector<PairedDevice> devices() const override { return _devices; }

private:
    std::vector<PairedDevice> _devices;
};

class FakeSubscriptions final : public Subscriptions {
public:
    void addSim(Subscription sim) { _sims.push_back(std::move(sim)); }
    void removeSim(const std::string& uuid)
    {
        std::erase_if(_sims, [&](const Subscription& sim) { return sim.uuid == uuid; });
    }
    std::vector<Subscription> subscriptions() const override
    {
        ++timesAsked;
        return _sims;
    }
    /// Angle brackets, so that a formatted number can be told from one that is not.
    std::string formattedNumber(const std::string& number) const override { return "<" + number + ">"; }

    mutable int timesAsked = 0;

private:
    std::vector<Subscription> _sims;
};

/// Answers what it was told to answer, and remembers what it was asked.
class FakeHomeScreen final : public HomeScreen {
public:
    struct Request {
        std::string service;
        std::string message;
        Value userInfo;
        bool operator==(const Request&) const = default;
    };

    void addReply(const std::string& app, Value reply) { _replies.insert_or_assign(app, std::move(reply)); }
    Value ask(const std::string& service, const std::string& message, const Value& userInfo) override
    {
        requests.push_back({ service, message, userInfo });
        const auto app = userInfo["TDServiceMessageData"].optionalString();
        const auto reply = app ? _replies.find(*app) : _replies.end();
        return reply == _replies.end() ? Value() : reply->second;
    }

    std::vector<Request> requests;

private:
    std::map<std::string, Value> _replies;
};

class FakeAppearance final : public Appearance {
public:
    void becomeDark() { _dark = true; }
    void becomeLight() { _dark = false; }
    bool isDark() const override { return _dark; }

private:
    bool _dark = false;
};

class RecordedMail final : public Mail {
public:
    bool compose(const MailDraft& draft) override
    {
        drafts.push_back(draft);
        return works;
    }
    bool asksUserFirst() const override { return leavesPhone; }
    std::vector<MailDraft> drafts;
    bool works = true;
    bool leavesPhone = false;
};

class RecordedLinks final : public Links {
public:
    bool open(const std::string& url, std::function<void()> onFailure) override
    {
        urls.push_back(url);
        fail = std::move(onFailure);
        return works;
    }
    std::vector<std::string> urls;
    /// The browser has not opened the last one after all.
    std::function<void()> fail;
    bool works = true;
};
