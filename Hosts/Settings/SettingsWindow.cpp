#include "SettingsWindow.h"

#include <QQmlEngine>
#include <QQuickItem>

// The types that QML sees are registered by a function that the build writes; called by name, so that it is linked.
extern void qml_register_types_Tandem_Settings();

namespace {

constexpr int smallestWidth = 320;
constexpr int smallestHeight = 240;
constexpr int firstWidth = 390;
constexpr int firstHeight = 780;
const QUrl mainFile(QStringLiteral("qrc:/Tandem/Settings/Main.qml"));

} // namespace

SettingsWindow::SettingsWindow(std::shared_ptr<SettingsHost> host)
    : _host(std::move(host))
{
    qml_register_types_Tandem_Settings();
    QQmlEngine::setObjectOwnership(_host.get(), QQmlEngine::CppOwnership);
    engine()->addImportPath(QStringLiteral("qrc:/"));
    setTitle(QStringLiteral("Pairo"));
    setResizeMode(SizeRootObjectToView);
    setMinimumSize({ smallestWidth, smallestHeight });
    resize(firstWidth, firstHeight);
    setColor(_host->theme()->pageColor());
    setInitialProperties({ { QStringLiteral("host"), QVariant::fromValue(_host.get()) } });
    setSource(mainFile);
}

SettingsWindow::~SettingsWindow()
{
    // The items ask the pages until they are gone, so they go first.
    setSource({});
}
