#include "SettingsWindow.h"

#include "ItemAccess.h"

#include <QCoreApplication>
#include <QQmlComponent>
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

std::unique_ptr<QQmlEngine> SettingsWindow::loadingEngine()
{
    qml_register_types_Tandem_Settings();
    auto engine = std::make_unique<QQmlEngine>();
    engine->addImportPath(QStringLiteral("qrc:/"));
    // What it loads stays in the engine for the window; the component itself goes with the engine.
    new QQmlComponent(engine.get(), mainFile, QQmlComponent::Asynchronous, engine.get());
    return engine;
}

SettingsWindow::SettingsWindow(std::shared_ptr<SettingsHost> host, std::unique_ptr<QQmlEngine> engine)
    : QQuickView(engine.get(), nullptr)
    , _host(std::move(host))
{
    // Goes after all that lives in it.
    engine.release()->setParent(this);
    ItemAccess::install();
    QQmlEngine::setObjectOwnership(_host.get(), QQmlEngine::CppOwnership);
    connect(this, &QQuickWindow::frameSwapped, _host.get(), &SettingsHost::pageIsShown, Qt::QueuedConnection);
    connect(_host.get(), &SettingsHost::sceneChanged, this, [this] { _secondTaps.noteNewScene(); });
    setTitle(QStringLiteral("Pairo"));
    setResizeMode(SizeRootObjectToView);
    setMinimumSize({ smallestWidth, smallestHeight });
    resize(firstWidth, firstHeight);
    setColor(_host->theme()->pageColor());
    // With its size from the start, the page is laid out once.
    setInitialProperties({ { QStringLiteral("host"), QVariant::fromValue(_host.get()) },
        { QStringLiteral("width"), firstWidth }, { QStringLiteral("height"), firstHeight } });
    setSource(mainFile);
}

SettingsWindow::~SettingsWindow()
{
    // The items ask the pages until they are gone, so they go first, those too that loaders let go later.
    setSource({});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

bool SettingsWindow::event(QEvent* event)
{
    if (_secondTaps.swallows(*event)) {
        event->accept();
        return true;
    }
    return QQuickView::event(event);
}
