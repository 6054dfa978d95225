#include "MockPortal.h"

#include "Linux/Portal.h"

#include <QDBusMetaType>
#include <QDeadlineTimer>

#include <chrono>
#include <utility>

namespace {

constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";
constexpr std::chrono::seconds patience { 60 };

} // namespace

MockPortal::MockPortal(QDBusConnection bus, GroupsOfProperties settings)
    : _bus(std::move(bus))
    , _settings(std::move(settings))
{
    qDBusRegisterMetaType<GroupsOfProperties>();
    moveToThread(&_thread);
    _thread.start();
    _bus.registerVirtualObject(QLatin1String(portalPath), this);
}

MockPortal::~MockPortal()
{
    _bus.unregisterObject(QLatin1String(portalPath));
    _thread.quit();
    _thread.wait();
}

void MockPortal::appear()
{
    _bus.registerService(QLatin1String(portalService));
}

void MockPortal::change(const QString& group, const QString& key, const QVariant& value)
{
    const QMutexLocker lock(&_mutex);
    _settings[group].insert(key, value);
    QDBusMessage signal = QDBusMessage::createSignal(
        QLatin1String(portalPath), QLatin1String(settingsInterface), QStringLiteral("SettingChanged"));
    signal << group << key << QVariant::fromValue(QDBusVariant(value));
    _bus.send(signal);
}

void MockPortal::answerAtLast()
{
    const QMutexLocker lock(&_mutex);
    _isSlow = false;
    for (const QDBusMessage& answer : std::exchange(_waiting, {}))
        _bus.send(answer);
}

bool MockPortal::waitForQuestions(int questions)
{
    const QDeadlineTimer end(patience);
    const QMutexLocker lock(&_mutex);
    while (_questions < questions && _wasAsked.wait(&_mutex, end)) { }
    return _questions >= questions;
}

QString MockPortal::introspect(const QString& /*path*/) const
{
    return {};
}

bool MockPortal::handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/)
{
    const QMutexLocker lock(&_mutex);
    if (message.interface() != QLatin1String(settingsInterface) || message.member() != QLatin1String("ReadAll"))
        return false;
    if (_isSlow)
        _waiting.append(answerTo(message));
    else
        _bus.send(answerTo(message));
    ++_questions;
    _wasAsked.wakeAll();
    return true;
}

QDBusMessage MockPortal::answerTo(const QDBusMessage& question) const
{
    GroupsOfProperties asked;
    for (const QString& group : question.arguments().constFirst().toStringList()) {
        if (_settings.contains(group))
            asked.insert(group, _settings.value(group));
    }
    return question.createReply(QVariant::fromValue(asked));
}
