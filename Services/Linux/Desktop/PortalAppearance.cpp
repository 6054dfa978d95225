#include "Linux/Desktop/PortalAppearance.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

constexpr const char* colorScheme = "color-scheme";
constexpr std::int64_t preferDark = 1;
constexpr const char* reducedMotion = "reduced-motion";
constexpr std::int64_t preferReduced = 1;
/// How desktops said it before there was a setting of all desktops.
constexpr const char* animations = "enable-animations";
constexpr const char* textScaling = "text-scaling-factor";
constexpr double usualText = 1;
constexpr double smallestText = 0.5;
constexpr double largestText = 3;

double textScaleIn(const BusProperties& settings)
{
    const double scale = realOf(settings, textScaling).value_or(usualText);
    return std::isfinite(scale) ? std::clamp(scale, smallestText, largestText) : usualText;
}

} // namespace

PortalAppearance::PortalAppearance(std::shared_ptr<PortalSettings> settings)
    : _settings(std::move(settings))
{
    _settings->setObserver([this] { update(); });
}

PortalAppearance::Looks PortalAppearance::read() const
{
    const BusProperties& appearance = _settings->group(PortalSettings::appearanceGroup);
    const BusProperties& interface = _settings->group(PortalSettings::interfaceGroup);
    return { numberOf(appearance, colorScheme) == preferDark, textScaleIn(interface),
        numberOf(appearance, reducedMotion) == preferReduced || isFalse(interface, animations) };
}

const PortalAppearance::Looks& PortalAppearance::looks() const
{
    if (!_looks)
        _looks = read();
    return *_looks;
}

void PortalAppearance::update()
{
    // What nobody has asked for cannot have changed.
    if (!_looks)
        return;
    const Looks now = read();
    if (_looks == now)
        return;
    _looks = now;
    if (_observer)
        _observer();
}
