#include "Pictures/Module/WindowlessApplication.h"

#include <QGuiApplication>

#include <clocale>
#include <iostream>

namespace {

void keepQuiet(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::cerr << text.toStdString() << std::endl;
}

} // namespace

void ensureApplication()
{
    if (QCoreApplication::instance())
        return;
    // What Qt finds remarkable about the machine does not concern the user.
    qInstallMessageHandler(keepQuiet);
    static char program[] = "tandem";
    static char option[] = "-platform";
    static char platform[] = "offscreen";
    // The application takes the words that it knows out of the list.
    static char* words[] = { program, option, platform, nullptr };
    static int count = 3;
    // Never deleted: at the end of the process, parts of Qt are gone before this would be.
    [[maybe_unused]] static const auto* const application = new QGuiApplication(count, words);
    // It has taken the user's locale over; numbers are read and written as before.
    std::setlocale(LC_NUMERIC, "C");
}
