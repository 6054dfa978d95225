#include "Driver/Watch.h"

#include "Driver/PlainText.h"
#include "Linux/Bus/BusAddress.h"
#include "Linux/Desktop/BusNotifications.h"

#include <chrono>
#include <iostream>

namespace {

/// A bus that hangs for so long is none.
constexpr std::chrono::seconds openingPatience { 5 };

} // namespace

bool watchNotifications(const std::vector<std::string>& names)
{
    const auto context = std::make_shared<BusContext>();
    const auto bus = std::make_shared<Bus>(context, sessionBusAddress());
    BusNotifications notifications(bus);
    const auto print = [](const std::string& name) { std::cout << plainText(name) << std::endl; };
    for (const std::string& name : names)
        notifications.addObserver(name, print);
    if (names.empty())
        notifications.addObserverOfAll(print);

    bool isWatching = false;
    // It answers when it knows what was asked for before.
    const auto ready = bus->call(requestToBus("GetId", {}), [&isWatching](const BusReply& reply) {
        isWatching = reply.error.empty();
        if (isWatching)
            std::cerr << "watching" << std::endl;
    });
    context->waitUntil([&] { return isWatching || !bus->isOpening(); }, BusContext::Clock::now() + openingPatience);
    while (bus->isConnected())
        context->takeInNext();
    return false;
}
