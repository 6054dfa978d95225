#pragma once

#include "Driver/EventLog.h"
#include "Driver/Json.h"
#include "Shared/HostSession.h"

#include <functional>
#include <memory>
#include <string>

/// A phone whose pages are worked by requests: JSON objects with a "do", each answered by an object with "ok" and
/// "events".
class DriverSession {
public:
    /// Opens the root page. The result is never null.
    static Result<std::unique_ptr<DriverSession>> open(const HostOptions& options);

    /// Does what the request asks; the reply is {"ok":true,...} or {"ok":false,"error":"..."}, with the events since
    /// the last reply.
    Json handle(const Json& request);
    /// The same for a line of text, which may be anything.
    Json handleLine(const std::string& line);
    /// The reply to a "rows" request, with one more field: in "cells" the "cell" of each row, null for a group.
    Json rowsWithCells();
    /// Whether the page on top has a row of that identifier.
    bool hasRow(const std::string& identifier);

    HostSession& host() { return *_host; }

private:
    /// What a request adds to its reply; raises RequestError when it cannot be done.
    using Action = std::function<Json(DriverSession&, const Json&)>;

    DriverSession() = default;

    /// What `act` adds to a reply, done in a turn.
    Json replyTo(const std::function<Json()>& act);
    Json perform(const Json& request);
    Json rows();
    Json cell(const Json& request);
    Json cells(std::size_t count);
    Json set(const Json& request);
    Json tap(const Json& request);
    Json openPage(const Json& request);
    Json back();
    Json choose(const Json& request);
    Json pick(const Json& request);
    Json post(const Json& request);
    Json appearance(const Json& request);
    Json hook(const Json& request);

    std::shared_ptr<UIViewController> top();
    /// The list page on top. Raises a RequestError for another controller.
    std::shared_ptr<PSListController> page();
    /// The same where no sheet or picker covers it.
    std::shared_ptr<PSListController> uncoveredPage();
    std::size_t indexOfRow(PSListController& page, const Json& request);
    NSIndexPath pathOfRow(PSListController& page, const Json& request);
    void tapRow(PSListController& page, NSIndexPath path);
    void acknowledgeAlert();
    void showCompanions();

    std::shared_ptr<EventLog> _events = std::make_shared<EventLog>();
    std::unique_ptr<HostSession> _host;
};
