#include <QGuiApplication>
#include <QQuickWindow>
#include <QStyleHints>
#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int argumentCount, char** arguments)
{
    // Nothing of the user's is read or written, and nothing is shown.
    const QTemporaryDir home;
    for (const char* name : { "HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR" })
        qputenv(name, home.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    testing::InitGoogleTest(&argumentCount, arguments);
    QGuiApplication application(argumentCount, arguments);
    // Taps of tests follow one another more closely than those of people, and each is meant.
    QGuiApplication::styleHints()->setMouseDoubleClickInterval(0);
    return RUN_ALL_TESTS();
}
