#pragma once

#include "Linux/BackgroundActs.h"
#include "Phone/Links.h"

#include <QDBusConnection>

/// Opens links by way of the OpenURI portal. Only http and https links are opened.
class PortalLinks final : public Links {
public:
    PortalLinks(QDBusConnection sessionBus, std::shared_ptr<BackgroundActs> acts)
        : _bus(std::move(sessionBus))
        , _acts(std::move(acts))
    {
    }

    // Links
    bool open(const std::string& url) override;

private:
    QDBusConnection _bus;
    std::shared_ptr<BackgroundActs> _acts;
};
