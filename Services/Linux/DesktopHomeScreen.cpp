#include "Linux/DesktopHomeScreen.h"

#include "Foundation/NSKeyedArchiver.h"
#include "Linux/IconTheme.h"
#include "Linux/KeyFile.h"
#include "Phone/Phone.h"
#include "UIKit/UIImage.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QPainter>

#include <cmath>

namespace {

constexpr const char* iconService = "com.vexil.tandem";
constexpr const char* iconMessage = "com.vexil.tandem.app.icon";
constexpr const char* messageData = "TDServiceMessageData";
constexpr const char* entryGroup = "Desktop Entry";
constexpr int iconPoints = 29;
constexpr qint64 largestPicture = 16 << 20;
constexpr int largestMegabytes = 256;
constexpr const char* systemDataFolders = "/usr/local/share:/usr/share";

bool isEntryName(const QString& app)
{
    return !app.isEmpty() && !app.contains(QLatin1Char('/')) && !app.startsWith(QLatin1Char('.'));
}

/// The picture of the file, as large as fits into a square of that many pixels, in its middle. Null when the file holds
/// no picture.
QImage squareOf(const QString& file, int pixels)
{
    if (QFileInfo(file).size() > largestPicture)
        return {};
    QImageReader reader(file);
    reader.setDecideFormatFromContent(true);
    QImageReader::setAllocationLimit(largestMegabytes);
    const QSize own = reader.size();
    // A drawing is drawn at the size it is shown, rather than drawn and then stretched.
    if (own.isValid() && (reader.format() == "svg" || reader.format() == "svgz"))
        reader.setScaledSize(own.scaled(pixels, pixels, Qt::KeepAspectRatio).expandedTo({ 1, 1 }));
    const QImage picture = reader.read().scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (picture.isNull())
        return {};
    QImage square(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    square.fill(Qt::transparent);
    QPainter painter(&square);
    painter.drawImage((pixels - picture.width()) / 2, (pixels - picture.height()) / 2, picture);
    return square;
}

Bytes pngOf(const QImage& image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return Bytes(buffer.data().begin(), buffer.data().end());
}

} // namespace

DesktopHomeScreen::DesktopHomeScreen(QStringList dataFolders, QString theme)
    : _dataFolders(std::move(dataFolders))
    , _theme(std::move(theme))
{
}

QStringList DesktopHomeScreen::userDataFolders()
{
    QString own = qEnvironmentVariable("XDG_DATA_HOME");
    if (!QDir::isAbsolutePath(own))
        own = QDir::homePath() + QStringLiteral("/.local/share");
    QString system = qEnvironmentVariable("XDG_DATA_DIRS");
    if (system.isEmpty())
        system = QLatin1String(systemDataFolders);
    return QStringList { own } + system.split(QLatin1Char(':'), Qt::SkipEmptyParts);
}

Value DesktopHomeScreen::ask(const std::string& service, const std::string& message, const Value& userInfo)
{
    const auto* app = userInfo[messageData].string();
    if (service != iconService || message != iconMessage || !app)
        return {};
    const Value icon = archivedIcon(QString::fromStdString(*app));
    return icon.isNull() ? Value() : Value(Dictionary { { messageData, icon } });
}

Value DesktopHomeScreen::archivedIcon(const QString& app) const
{
    const double scale = Phone::current().screenScale;
    const QString name = isEntryName(app) ? iconNameOf(app) : QString();
    const QString file = name.isEmpty() ? QString() : fileOfIcon(name, scale);
    const QImage square = file.isEmpty() ? QImage() : squareOf(file, static_cast<int>(std::lround(iconPoints * scale)));
    if (square.isNull())
        return {};
    const auto image = UIImage::imageWithData(pngOf(square), scale);
    auto archive = image ? NSKeyedArchiver::archivedDataWithRootObject(image) : std::nullopt;
    return archive ? Value(std::move(*archive)) : Value();
}

QString DesktopHomeScreen::iconNameOf(const QString& app) const
{
    for (const QString& folder : _dataFolders) {
        const KeyFile entry(folder + QStringLiteral("/applications/") + app + QStringLiteral(".desktop"));
        if (entry.hasGroup(QLatin1String(entryGroup)))
            return entry.value(QLatin1String(entryGroup), QStringLiteral("Icon"));
    }
    return {};
}

QString DesktopHomeScreen::fileOfIcon(const QString& name, double scale) const
{
    if (QDir::isAbsolutePath(name))
        return QFileInfo(name).isFile() ? name : QString();
    if (name.contains(QLatin1Char('/')))
        return {};
    QStringList folders { QDir::homePath() + QStringLiteral("/.icons") };
    QStringList looseFolders;
    for (const QString& folder : _dataFolders) {
        folders.append(folder + QStringLiteral("/icons"));
        looseFolders << folder + QStringLiteral("/icons") << folder + QStringLiteral("/pixmaps");
    }
    return IconTheme(_theme, folders, looseFolders).fileOf(name, iconPoints, static_cast<int>(std::ceil(scale)));
}
