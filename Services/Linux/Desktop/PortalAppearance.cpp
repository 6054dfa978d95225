#include "Linux/Desktop/PortalAppearance.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr const char* colorScheme = "color-scheme";
constexpr qlonglong preferDark = 1;
constexpr const char* reducedMotion = "reduced-motion";
constexpr qlonglong preferReduced = 1;
/// How desktops said it before there was a setting of all desktops.
constexpr const char* animations = "enable-animations";
constexpr const char* textScaling = "text-scaling-factor";
constexpr double smallestText = 0.5;
constexpr double largestText = 3;

double textScaleIn(const QVariantMap& settings)
{
    const QVariant scale = unwrapped(settings.value(QLatin1String(textScaling)));
    const bool isNumber = scale.typeId() == QMetaType::Double && std::isfinite(scale.toDouble());
    return isNumber ? std::clamp(scale.toDouble(), smallestText, largestText) : 1;
}

} // namespace

PortalAppearance::PortalAppearance(std::shared_ptr<PortalSettings> settings)
    : _settings(std::move(settings))
{
    _settings->setObserver([this] { update(); });
}

PortalAppearance::Looks PortalAppearance::read() const
{
    const QVariantMap appearance = _settings->group(PortalSettings::appearanceGroup);
    const QVariantMap interface = _settings->group(PortalSettings::interfaceGroup);
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
    const Looks now = read();
    if (_looks == now)
        return;
    _looks = now;
    if (_observer)
        _observer();
}
