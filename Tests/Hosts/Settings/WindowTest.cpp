#include "WindowTest.h"

#include "Shared/SettingsFile.h"

#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QTimer>

namespace {

constexpr int settlingRounds = 4;
constexpr int frameMilliseconds = 2000;
constexpr int driverMilliseconds = 20'000;

void collect(QQuickItem* below, std::vector<PageRowItem*>& items)
{
    if (auto* row = qobject_cast<PageRowItem*>(below)) {
        items.push_back(row);
        return;
    }
    for (QQuickItem* child : below->childItems())
        collect(child, items);
}

QQuickItem* enabledList(QQuickItem* below)
{
    if (below->inherits("QQuickListView") && below->isEnabled() && below->isVisible())
        return below;
    for (QQuickItem* child : below->childItems()) {
        if (QQuickItem* found = enabledList(child))
            return found;
    }
    return nullptr;
}

void failOnWarning(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message)
{
    if (type != QtDebugMsg && type != QtInfoMsg)
        ADD_FAILURE() << message.toStdString();
}

} // namespace

void showFrames()
{
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        auto* shown = qobject_cast<QQuickWindow*>(window);
        if (!shown || !shown->isExposed())
            continue;
        QEventLoop waiting;
        QObject::connect(shown, &QQuickWindow::frameSwapped, &waiting, &QEventLoop::quit);
        QTimer::singleShot(frameMilliseconds, &waiting, &QEventLoop::quit);
        shown->update();
        waiting.exec();
    }
}

Driver::Driver(const QString& root)
{
    _process.setStandardErrorFile(QProcess::nullDevice());
    _process.start(QStringLiteral(TANDEM_DRIVER), { QStringLiteral("--root"), root, QStringLiteral("drive") });
    EXPECT_TRUE(_process.waitForStarted());
}

Driver::~Driver()
{
    _process.closeWriteChannel();
    _process.waitForFinished();
}

Json Driver::ask(const Json& request)
{
    _process.write(QByteArray::fromStdString(request.dump() + "\n"));
    while (!_process.canReadLine()) {
        if (!_process.waitForReadyRead(driverMilliseconds))
            return nullptr;
    }
    return Json::parse(_process.readLine().toStdString());
}

void settle()
{
    for (int round = 0; round < settlingRounds; ++round) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        showFrames();
    }
}

WindowTest::WindowTest()
{
    EXPECT_TRUE(_root.isValid());
    qInstallMessageHandler(failOnWarning);
}

WindowTest::~WindowTest()
{
    closeWindow();
    qInstallMessageHandler(nullptr);
    // The phone's services tell the events, which go now.
    Phone::setCurrent({});
}

void WindowTest::openWindow(Motion motion)
{
    auto theme = std::make_unique<Theme>();
    theme->setAnimated(motion == Motion::Shown);
    openWindowOn(std::move(theme), nullptr);
}

void WindowTest::openWindowOn(std::unique_ptr<Theme> theme, const HostSession::PhoneDecorator& exchange)
{
    _events = std::make_shared<EventLog>();
    HostOptions options;
    options.root = _root.path().toStdString();
    if (!_phone.empty())
        options.phone = _phone;
    const auto opened = SettingsHost::open(options, std::move(theme), [&](Phone& phone) {
        if (exchange)
            exchange(phone);
        _events->decorate(phone);
        _events->observeProcess();
    });
    ASSERT_TRUE(opened) << opened.failure().text;
    const auto& host = *opened;
    _witness = Witness::standBefore(host, _events);
    _window = std::make_unique<SettingsWindow>(host);
    ASSERT_EQ(_window->status(), QQuickView::Ready);
    _window->resize(375, 667);
    _window->show();
    _window->requestActivate();
    host->startFollowing();
    settle();
}

void WindowTest::openPage(const QString& entry)
{
    page().tap(indexOf(entry));
    settle();
}

int WindowTest::indexOf(const QString& identifier)
{
    for (int i = 0; i < page().rowCount(); ++i) {
        if (page().isRow(i) && page().identifier(i) == identifier)
            return i;
    }
    return -1;
}

QQuickItem* WindowTest::list()
{
    return enabledList(_window->rootObject());
}

std::vector<PageRowItem*> WindowTest::items()
{
    std::vector<PageRowItem*> found;
    if (QQuickItem* view = list())
        collect(view, found);
    std::erase_if(found, [&](const PageRowItem* row) { return row->page() != &page(); });
    return found;
}

PageRowItem* WindowTest::item(const QString& identifier)
{
    const int index = indexOf(identifier);
    if (index < 0 || !list())
        return nullptr;
    QMetaObject::invokeMethod(list(), "positionViewAtIndex", Q_ARG(int, index), Q_ARG(int, 4 /* Contain */));
    settle();
    for (PageRowItem* row : items()) {
        if (row->row() == index)
            return row;
    }
    return nullptr;
}

QPoint WindowTest::inWindow(const PageRowItem& item, const QPointF& place)
{
    return item.mapToScene(place).toPoint();
}

QString WindowTest::settingsFile(const QString& root) const
{
    return root + QString::fromStdString(SettingsFile::path);
}

QByteArray WindowTest::settings(const QString& root) const
{
    QFile file(settingsFile(root));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::vector<std::pair<std::string, Json>> WindowTest::shownRows()
{
    std::vector<std::pair<std::string, Json>> rows;
    for (const Row& row : page().list()->specifiers())
        rows.emplace_back(
            row->identifier().value_or(std::string()), row->isGroup() ? Json() : jsonOf(row->performGetter()));
    return rows;
}

std::vector<std::string> WindowTest::takePosted()
{
    return notificationsAmong(_events->take());
}

std::vector<std::string> notificationsAmong(const Json& events)
{
    std::vector<std::string> names;
    for (const Json& event : events) {
        if (event["event"] == "notification")
            names.push_back(event["name"]);
    }
    return names;
}
