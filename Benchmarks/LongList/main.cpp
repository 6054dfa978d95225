// How long a page of so many rows takes to open, and each frame of scrolling through all of it: long-list ROWS

#include "PageRowItem.h"
#include "SettingsWindow.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQuickItem>
#include <QTemporaryDir>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <vector>

namespace {

constexpr double nanosecondsPerMillisecond = 1e6;
constexpr double scrollStep = 150;
constexpr double slowFrame = 16;
constexpr const char* pageEntry = "Bluetooth";

/// A phone with a paired device for every row.
std::string phoneFile(const QTemporaryDir& folder, int rows)
{
    nlohmann::json phone { { "scale", 1 }, { "pairedDevices", nlohmann::json::array() } };
    for (int i = 0; i < rows; ++i) {
        char address[] = "00:00:00:00:00:00";
        std::snprintf(address, sizeof address, "00:00:00:%02X:%02X:%02X", i >> 16 & 0xFF, i >> 8 & 0xFF, i & 0xFF);
        phone["pairedDevices"].push_back({ { "name", "Device " + std::to_string(i) }, { "address", address } });
    }
    const std::string file = folder.filePath(QStringLiteral("phone.json")).toStdString();
    std::ofstream(file) << phone.dump();
    return file;
}

QQuickItem* listBelow(QQuickItem* item)
{
    if (item->inherits("QQuickListView") && item->isEnabled())
        return item;
    for (QQuickItem* child : item->childItems()) {
        if (QQuickItem* found = listBelow(child))
            return found;
    }
    return nullptr;
}

int indexOf(const PageModel& page, const QString& identifier)
{
    for (int i = 0; i < page.rowCount(); ++i) {
        if (page.identifier(i) == identifier)
            return i;
    }
    return -1;
}

/// Acts, and gives the milliseconds until the frame that shows it is there.
template <class Act>
double millisecondsOf(SettingsWindow& window, const Act& act)
{
    bool isShown = false;
    const auto connection = QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&] { isShown = true; });
    QElapsedTimer watch;
    watch.start();
    act();
    window.update();
    while (!isShown)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const double elapsed = static_cast<double>(watch.nsecsElapsed()) / nanosecondsPerMillisecond;
    QObject::disconnect(connection);
    // What follows a frame is not part of the next one.
    QCoreApplication::processEvents();
    return elapsed;
}

std::vector<double> scrollThrough(SettingsWindow& window, QQuickItem& list)
{
    std::vector<double> frames;
    double position = list.property("originY").toDouble();
    const auto end = [&] {
        return list.property("originY").toDouble() + list.property("contentHeight").toDouble() - list.height();
    };
    for (; position < end(); position += scrollStep)
        frames.push_back(millisecondsOf(window, [&] { list.setProperty("contentY", position); }));
    std::ranges::sort(frames);
    return frames;
}

int run(int rows)
{
    const QTemporaryDir folder;
    HostOptions options;
    options.root = folder.filePath(QStringLiteral("root")).toStdString();
    options.phone = phoneFile(folder, rows);
    auto theme = std::make_unique<Theme>();
    theme->setAnimated(false);
    const auto opened = SettingsHost::open(options, std::move(theme), nullptr);
    if (!opened) {
        std::fprintf(stderr, "%s\n", opened.failure().text.c_str());
        return 1;
    }
    const auto& host = *opened;
    SettingsWindow window(host);
    millisecondsOf(window, [&] { window.show(); });
    const double opened =
        millisecondsOf(window, [&] { host->topPage()->tap(indexOf(*host->topPage(), QLatin1String(pageEntry))); });
    const int shown = host->topPage()->rowCount();
    const auto frames = scrollThrough(window, *listBelow(window.rootObject()));
    const auto slow = std::ranges::count_if(frames, [](double frame) { return frame > slowFrame; });
    if (frames.empty()) {
        std::printf("%d items: opened in %.1f ms; nothing to scroll\n", shown, opened);
        return 0;
    }
    std::printf(
        "%d items: opened in %.1f ms; %zu frames of scrolling, median %.2f ms, longest %.2f ms, %td over %.0f ms\n",
        shown, opened, frames.size(), frames[frames.size() / 2], frames.back(), slow, slowFrame);
    return 0;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const QTemporaryDir home;
    for (const char* name : { "HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR" })
        qputenv(name, home.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Frames follow one another without a pause.
    qputenv("QT_QPA_UPDATE_IDLE_TIME", "0");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication application(argumentCount, arguments);
    return run(argumentCount > 1 ? std::atoi(arguments[1]) : 0);
}
