#pragma once

#include "Phone/Appearance.h"

#include <memory>
#include <optional>

/// How the system looks, but for what the host's user has chosen otherwise for this program.
class ChosenAppearance final : public Appearance {
public:
    explicit ChosenAppearance(std::shared_ptr<const Appearance> system)
        : _system(std::move(system))
    {
    }

    /// From now on, whatever the system says.
    void setDark(bool dark) { _dark = dark; }

    // Appearance
    bool isDark() const override { return _dark ? *_dark : _system->isDark(); }
    double textScale() const override { return _system->textScale(); }
    bool isMotionReduced() const override { return _system->isMotionReduced(); }

private:
    std::shared_ptr<const Appearance> _system;
    std::optional<bool> _dark;
};
