#pragma once

#include "Linux/BackgroundActs.h"
#include "Linux/BusCaller.h"
#include "Phone/Links.h"

/// Opens links by way of the OpenURI portal. Only http and https links are opened.
class PortalLinks final : public Links {
public:
    PortalLinks(BusCaller sessionBus, std::shared_ptr<BackgroundActs> acts)
        : _bus(std::move(sessionBus))
        , _acts(std::move(acts))
    {
    }

    // Links
    bool open(const std::string& url) override;

private:
    BusCaller _bus;
    std::shared_ptr<BackgroundActs> _acts;
};
