#include <QGuiApplication>
#include <QQuickView>

/// The least that a window of settings can be: what it costs is what the toolkit costs. Ends after its first frame.
int main(int argumentCount, char** arguments)
{
    QGuiApplication application(argumentCount, arguments);
    QQuickView view;
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.resize(390, 780);
    QObject::connect(&view, &QQuickWindow::frameSwapped, &application, &QGuiApplication::quit, Qt::QueuedConnection);
    view.setSource(QUrl(QStringLiteral("qrc:/Tandem/Floor/Floor.qml")));
    view.show();
    return QGuiApplication::exec();
}
