#pragma once

#include "Linux/Desktop/PortalSettings.h"
#include "Phone/Appearance.h"

#include <functional>
#include <memory>
#include <optional>

/// What the user chose for the desktop: light or dark, the text size, whether things move. It is followed as it
/// changes; light, of the usual size and moving where nobody tells.
class PortalAppearance final : public Appearance {
public:
    /// Becomes the observer of the settings.
    explicit PortalAppearance(std::shared_ptr<PortalSettings> settings);
    PortalAppearance(const PortalAppearance&) = delete;
    PortalAppearance& operator=(const PortalAppearance&) = delete;
    ~PortalAppearance() override { _settings->setObserver(nullptr); }

    /// Called when the context delivers its news, after one of them has changed; not before the first was asked for.
    void setObserver(std::function<void()> observer) { _observer = std::move(observer); }

    // Appearance
    bool isDark() const override { return looks().isDark; }
    double textScale() const override { return looks().textScale; }
    bool isMotionReduced() const override { return looks().isMotionReduced; }

private:
    struct Looks {
        bool isDark = false;
        double textScale = 1;
        bool isMotionReduced = false;
        bool operator==(const Looks&) const = default;
    };

    Looks read() const;
    const Looks& looks() const;
    void update();

    std::shared_ptr<PortalSettings> _settings;
    mutable std::optional<Looks> _looks;
    std::function<void()> _observer;
};
