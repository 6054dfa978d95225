#include "Linux/DesktopHomeScreen.h"

#include "Foundation/NSKeyedArchiver.h"
#include "Linux/CountedTime.h"
#include "Linux/KeyFile.h"
#include "Phone/Phone.h"
#include "UIKit/UIImage.h"

#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr const char* entryGroup = "Desktop Entry";
constexpr int iconPoints = 29;
constexpr const char* drawing = "svg";
/// Beyond these an icon takes longer to read than all the icons of a page may.
constexpr qint64 largestPicture = 4 << 20;
constexpr qint64 largestDrawing = 512 << 10;
constexpr int largestSide = 2048;
/// The last chunk of every PNG file: its length, its name and its checksum.
const QByteArray pngEnd("\0\0\0\0IEND\xAE\x42\x60\x82", 12);
constexpr const char* pictureFormats[] = { "png", "xpm", drawing, "jpeg", "gif", "bmp" };

bool isEntryName(const QString& app)
{
    return !app.isEmpty() && !app.contains(QLatin1Char('/')) && !app.startsWith(QLatin1Char('.'));
}

/// The library that reads these writes to the standard error output when one breaks off.
bool isTornPng(const QString& path)
{
    QFile file(path);
    return !file.open(QIODevice::ReadOnly) || !file.seek(std::max<qint64>(0, file.size() - pngEnd.size()))
        || file.readAll() != pngEnd;
}

/// Asked before anything of the picture is read.
bool isReadable(const QByteArray& format, qint64 length)
{
    const bool isKnown = std::ranges::any_of(pictureFormats, [&format](const char* known) { return format == known; });
    return isKnown && length <= (format == drawing ? largestDrawing : largestPicture);
}

/// The picture of the file, as large as fits into a square of that many pixels, in its middle. Null when the file holds
/// no picture, or one too large for an icon.
QImage squareOf(const QString& file, int pixels)
{
    QImageReader reader(file);
    reader.setDecideFormatFromContent(true);
    if (!isReadable(reader.format(), QFileInfo(file).size()) || (reader.format() == "png" && isTornPng(file)))
        return {};
    const QSize own = reader.size();
    // A drawing is drawn at the size it is shown, rather than drawn and then stretched.
    if (reader.format() == drawing && own.isValid())
        reader.setScaledSize(own.scaled(pixels, pixels, Qt::KeepAspectRatio).expandedTo({ 1, 1 }));
    else if (own.width() > largestSide || own.height() > largestSide)
        return {};
    const QImage whole = reader.read();
    if (whole.isNull())
        return {};
    const QImage picture = whole.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
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

QStringList themeFolders(const QStringList& dataFolders)
{
    QStringList folders { QDir::homePath() + QStringLiteral("/.icons") };
    for (const QString& folder : dataFolders)
        folders.append(folder + QStringLiteral("/icons"));
    return folders;
}

QStringList looseFolders(const QStringList& dataFolders)
{
    QStringList folders;
    for (const QString& folder : dataFolders)
        folders << folder + QStringLiteral("/icons") << folder + QStringLiteral("/pixmaps");
    return folders;
}

} // namespace

DesktopHomeScreen::DesktopHomeScreen(
    const QStringList& dataFolders, ChosenTheme theme, std::shared_ptr<WaitBudget> budget)
    : _dataFolders(dataFolders)
    , _theme(std::move(theme))
    , _budget(std::move(budget))
    , _themes(themeFolders(dataFolders), looseFolders(dataFolders))
{
}

Value DesktopHomeScreen::ask(const std::string& service, const std::string& message, const Value& userInfo)
{
    const auto* app = userInfo[AppIconRequest::data].string();
    if (service != AppIconRequest::service || message != AppIconRequest::message || !app)
        return {};
    if (_budget->patience().count() <= 0)
        return {};
    const Value icon = archivedIcon(QString::fromStdString(*app));
    return icon.isNull() ? Value() : Value(Dictionary { { AppIconRequest::data, icon } });
}

Value DesktopHomeScreen::archivedIcon(const QString& app)
{
    const double scale = Phone::current().screenScale;
    const QString name = isEntryName(app) ? iconNameOf(app) : QString();
    if (name.isEmpty())
        return {};
    const QString file = name.contains(QLatin1Char('/')) ? fileOfPath(name) : fileInThemes(name, _theme(), scale);
    return file.isEmpty() ? Value() : archiveOf(file, scale);
}

QString DesktopHomeScreen::iconNameOf(const QString& app) const
{
    const CountedTime counted(*_budget);
    for (const QString& folder : _dataFolders) {
        const KeyFile entry(folder + QStringLiteral("/applications/") + app + QStringLiteral(".desktop"));
        if (entry.hasGroup(QLatin1String(entryGroup)))
            return entry.value(QLatin1String(entryGroup), QStringLiteral("Icon"));
    }
    return {};
}

QString DesktopHomeScreen::fileOfPath(const QString& path) const
{
    const CountedTime counted(*_budget);
    return QDir::isAbsolutePath(path) && QFileInfo(path).isFile() ? path : QString();
}

QString DesktopHomeScreen::fileInThemes(const QString& name, const QString& theme, double scale)
{
    const CountedTime counted(*_budget);
    return _themes.fileOf(name, theme, iconPoints, static_cast<int>(std::ceil(scale)));
}

Value DesktopHomeScreen::archiveOf(const QString& file, double scale)
{
    const CountedTime counted(*_budget);
    const QFileInfo info(file);
    const QString key = QStringLiteral("%1|%2|%3|%4")
                            .arg(scale)
                            .arg(info.lastModified().toMSecsSinceEpoch())
                            .arg(info.size())
                            .arg(file);
    const auto known = _archives.constFind(key);
    if (known != _archives.cend())
        return *known;
    const QImage square = squareOf(file, static_cast<int>(std::lround(iconPoints * scale)));
    const auto image = square.isNull() ? nullptr : UIImage::imageWithData(pngOf(square), scale);
    auto archive = image ? NSKeyedArchiver::archivedDataWithRootObject(image) : std::nullopt;
    return *_archives.insert(key, archive ? Value(std::move(*archive)) : Value());
}
