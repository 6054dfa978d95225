#include "Driver/Watch.h"

#include "Driver/PlainText.h"
#include "Linux/LinuxPhone.h"

#include <QCoreApplication>

#include <iostream>

bool watchNotifications(const std::vector<std::string>& names)
{
    const auto application = windowlessApplication();
    BusNotifications notifications { BusCaller(sessionBus(), std::make_shared<WaitBudget>()) };
    if (!notifications.isConnected())
        return false;
    const auto print = [](const std::string& name) { std::cout << plainText(name) << std::endl; };
    for (const std::string& name : names)
        notifications.addObserver(name, print);
    if (names.empty())
        notifications.addObserverOfAll(print);
    notifications.setLostHandler([] { QCoreApplication::quit(); });
    notifications.flush();
    std::cerr << "watching" << std::endl;
    QCoreApplication::exec();
    return false;
}
