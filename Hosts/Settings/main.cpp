#include "PictureBook.h"
#include "SettingsWindow.h"
#include "WindowOptions.h"

#include "Shared/LeakCheck.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QLocale>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <filesystem>
#include <thread>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr int exitFailure = 1;
constexpr int exitUsage = 2;
constexpr double usualPoints = 17;
/// By this the user chooses how the toolkit draws.
constexpr const char* graphicsVariable = "QSG_RHI_BACKEND";
/// Pictures have so many pixels a point.
constexpr const char* pictureScale = "2";

int fail(const std::string& message, int code)
{
    std::fprintf(stderr, "tandem-settings: %s\n", message.c_str());
    return code;
}

std::unique_ptr<Theme> themeFor(const WindowOptions& options)
{
    auto theme = std::make_unique<Theme>();
    theme->setTextScale(options.textScale.value_or(1));
    theme->setMirrored(
        options.mirrored || QGuiApplication::isRightToLeft() || QLocale().textDirection() == Qt::RightToLeft);
    theme->setAnimated(!options.reducedMotion && !options.pictures);
    theme->setFollowing({ !options.textScale && !options.pictures, !options.reducedMotion && !options.pictures });
    return theme;
}

void endAtFirstFrame()
{
    std::puts("frame");
    std::fflush(stdout);
    QGuiApplication::quit();
}

int showWindow(SettingsWindow& window, const WindowOptions& options)
{
    if (options.dark)
        window.host().setDark(true);
    if (options.untilFirstFrame)
        QObject::connect(&window, &QQuickWindow::frameSwapped, qGuiApp, endAtFirstFrame);
    window.show();
    // After the first frame, as nothing of it waits for this.
    QTimer::singleShot(0, &window, [&window] { window.host().startFollowing(); });
    return QGuiApplication::exec();
}

int writePictures(SettingsWindow& window, const WindowOptions& options)
{
    window.resize(options.width, window.height());
    window.show();
    const auto written = PictureBook(window, *options.pictures).write();
    return written ? 0 : fail(written.failure().text, exitFailure);
}

/// Pictures show a phone that nobody has used, or the one at the root as it is: what is worked for them is a copy.
HostOptions hostOptions(const WindowOptions& options, std::optional<QTemporaryDir>& scratch)
{
    HostOptions host = options.host;
    if (!options.pictures)
        return host;
    const std::string own = std::exchange(host.root, scratch.emplace().path().toStdString());
    host.provision = true;
    if (!own.empty()) {
        // All that the pages change is in there.
        const std::string folder = SettingsFile::folder;
        std::error_code ignored;
        fs::create_directories(host.root + folder, ignored);
        fs::copy(own + folder, host.root + folder, fs::copy_options::recursive, ignored);
    }
    return host;
}

int run(int argumentCount, char** arguments)
{
    const auto options = WindowOptions::parse({ arguments + 1, arguments + argumentCount });
    if (!options)
        return fail(options.failure().text + " (tandem-settings --help tells more)", exitUsage);
    if (options->help) {
        std::fputs(qUtf8Printable(WindowOptions::usage()), stdout);
        return 0;
    }
    if (options->pictures) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_SCALE_FACTOR", pictureScale);
    }
    // Lists of rows gain nothing from a graphics driver, whose loading takes longer than all the rest of the start.
    if (options->pictures || !qEnvironmentVariableIsSet(graphicsVariable))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication application(argumentCount, arguments);
    QGuiApplication::setApplicationName(QStringLiteral("tandem-settings"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Pairo"));

    // Fonts and the window's files are looked up beside this thread while it opens the phone.
    const std::jthread lookingUp([] { QFontDatabase::families(); });
    auto engine = SettingsWindow::loadingEngine();
    auto theme = themeFor(*options);
    // A text is made with this font before it gets its own; so no other family is ever loaded for it.
    QGuiApplication::setFont(theme->font(usualPoints));
    std::optional<QTemporaryDir> scratch;
    const auto host = SettingsHost::open(hostOptions(*options, scratch), std::move(theme), nullptr);
    if (!host)
        return fail(host.failure().text, exitFailure);
    SettingsWindow window(*host, std::move(engine));
    if (window.status() == QQuickView::Error)
        return fail("the window cannot be made", exitFailure);
    return options->pictures ? writePictures(window, *options) : showWindow(window, *options);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const int code = run(argumentCount, arguments);
    lookForLeaks();
    return code;
}
