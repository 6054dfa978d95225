#pragma once

#include "Linux/BusValues.h"

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QMutex>
#include <QThread>
#include <QWaitCondition>

/// A settings portal that answers from a thread of its own, as another process would.
class MockPortal final : public QDBusVirtualObject {
public:
    MockPortal(QDBusConnection bus, GroupsOfProperties settings);
    MockPortal(const MockPortal&) = delete;
    MockPortal& operator=(const MockPortal&) = delete;
    ~MockPortal() override;

    /// From now on it is the desktop's portal.
    void appear();
    /// The user changes a setting.
    void change(const QString& group, const QString& key, const QVariant& value);
    /// Sends the answers that it has kept back, as they were when it was asked, and all that follow. It must have been
    /// told to wait.
    void answerAtLast();
    void keepWaiting() { _isSlow = true; }
    /// Waits until it has been asked that often; false when it was not.
    bool waitForQuestions(int questions);

    // QDBusVirtualObject
    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    QDBusMessage answerTo(const QDBusMessage& question) const;

    QDBusConnection _bus;
    QThread _thread;
    QMutex _mutex;
    GroupsOfProperties _settings;
    bool _isSlow = false;
    QList<QDBusMessage> _waiting;
    int _questions = 0;
    QWaitCondition _wasAsked;
};
