#pragma once

#include "Linux/BackgroundActs.h"
#include "Linux/BusCaller.h"
#include "Phone/Mail.h"

#include <functional>

/// Hands drafts to the user's mail program by way of the email portal or, where there is none or it refuses, of
/// xdg-email. A draft that the portal may still show is not handed to another program.
class PortalMail final : public Mail {
public:
    /// Where a path of the phone lies on this machine.
    using HostPath = std::function<std::string(const std::string&)>;

    PortalMail(BusCaller sessionBus, std::shared_ptr<BackgroundActs> acts, HostPath hostPath)
        : _bus(std::move(sessionBus))
        , _acts(std::move(acts))
        , _hostPath(std::move(hostPath))
    {
    }

    // Mail
    bool compose(const MailDraft& draft) override;
    bool asksUserFirst() const override { return true; }

private:
    BusCaller _bus;
    std::shared_ptr<BackgroundActs> _acts;
    HostPath _hostPath;
};
