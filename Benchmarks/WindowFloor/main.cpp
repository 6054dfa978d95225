#include <QGuiApplication>
#include <QQuickView>

#include <cstdio>

/// The least that a window of settings can be: what it costs is what the toolkit costs. Says when its first frame is
/// there, and ends; with --stay, only says so.
int main(int argumentCount, char** arguments)
{
    QGuiApplication application(argumentCount, arguments);
    QQuickView view;
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.resize(390, 780);
    QObject::connect(&view, &QQuickWindow::frameSwapped, &application, [] {
        std::puts("frame");
        std::fflush(stdout);
        if (!QGuiApplication::arguments().contains(QStringLiteral("--stay")))
            QGuiApplication::quit();
    });
    view.setSource(QUrl(QStringLiteral("qrc:/Tandem/Floor/Floor.qml")));
    view.show();
    return QGuiApplication::exec();
}
