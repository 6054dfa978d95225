#include "Pictures/Module/ThemedIcons.h"

#include "Pictures/Module/Bitmaps.h"
#include "Pictures/Module/WindowlessApplication.h"

#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QPainter>
#include <QPixmap>

#include <algorithm>

namespace {

constexpr const char* lastTheme = "hicolor";
constexpr const char* neutralIcon = ":/tandem/App.png";

QStringList listOf(const std::vector<std::string>& texts)
{
    QStringList list;
    for (const std::string& text : texts)
        list.append(QString::fromStdString(text));
    return list;
}

/// A name that is a path would lead out of the folders of themes.
QString themeIn(const IconRequest& request)
{
    const QString theme = QString::fromStdString(request.theme);
    return theme.isEmpty() || theme.contains(QLatin1Char('/')) ? QLatin1String(lastTheme) : theme;
}

/// With those of the themes in them.
QStringList foldersIn(const IconRequest& request)
{
    QStringList folders = listOf(request.looseFolders);
    for (const QString& folder : listOf(request.themeFolders)) {
        folders.append(folder);
        for (const QFileInfo& theme : QDir(folder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot))
            folders.append(theme.filePath());
    }
    return folders;
}

QStringList flat(const QList<IconFiles::Versions>& files)
{
    QStringList all;
    for (const IconFiles::Versions& versions : files)
        all += versions;
    return all;
}

/// Of the versions of each file the first that is harmless.
QStringList usable(const QList<IconFiles::Versions>& files)
{
    QStringList used;
    for (const IconFiles::Versions& versions : files) {
        const auto harmless = std::ranges::find_if(versions, isHarmlessIcon);
        if (harmless != versions.end())
            used.append(*harmless);
    }
    return used;
}

/// Null when none of the files may be used.
QIcon iconOf(const QString& name, const QList<IconFiles::Versions>& files)
{
    const QStringList used = usable(files);
    const bool isChoiceFree = !used.isEmpty() && used.size() == flat(files).size();
    const QIcon themed = isChoiceFree ? QIcon::fromTheme(name) : QIcon();
    if (!themed.isNull())
        return themed;
    // An icon that is made of files takes no other, and of those the one whose size is nearest.
    QIcon icon;
    for (const QString& file : used)
        icon.addFile(file);
    return icon;
}

/// The icon as large as fits into a square, in its middle. Null when it cannot be drawn.
QImage squareOf(const QIcon& icon, const IconRequest& request)
{
    const int points = qRound(request.points);
    const int pixels = qRound(request.points * request.scale);
    QImage picture = icon.pixmap(QSize(points, points), request.scale).toImage();
    picture.setDevicePixelRatio(1);
    if (picture.isNull() || picture.size() == QSize(pixels, pixels))
        return picture;
    picture = picture.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QImage square(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    square.fill(Qt::transparent);
    QPainter painter(&square);
    painter.drawImage((pixels - picture.width()) / 2, (pixels - picture.height()) / 2, picture);
    return square;
}

} // namespace

ThemedIcons::ThemedIcons()
{
    ensureApplication();
}

std::shared_ptr<const Bitmap> ThemedIcons::picture(const IconRequest& request)
{
    follow(request);
    const QString name = QString::fromStdString(request.name);
    const QString key = QStringLiteral("%1|%2|%3").arg(request.points).arg(request.scale).arg(name);
    const auto known = _drawn.constFind(key);
    if (known != _drawn.cend() && areCurrent(known->files))
        return known->picture;
    const QList<IconFiles::Versions> files = filesOf(name);
    // Has QIcon look again for what it has missed, and read again what it has read.
    QIcon::setFallbackSearchPaths(QIcon::fallbackSearchPaths());
    const Drawn drawn { stampsOf(flat(files)), bitmapOf(squareOf(iconOf(name, files), request)) };
    if (!drawn.picture)
        return bitmapOf(squareOf(QIcon(QLatin1String(neutralIcon)), request));
    return _drawn.insert(key, drawn)->picture;
}

void ThemedIcons::follow(const IconRequest& request)
{
    const QString theme = themeIn(request);
    const Stamps folders = stampsOf(foldersIn(request));
    if (theme == _theme && folders == _folders)
        return;
    _theme = theme;
    _folders = folders;
    _files = IconFiles(listOf(request.themeFolders), listOf(request.looseFolders));
    _drawn.clear();
    QIcon::setThemeSearchPaths(listOf(request.themeFolders));
    QIcon::setFallbackSearchPaths(listOf(request.looseFolders));
    QIcon::setThemeName(theme);
    QIcon::setFallbackThemeName(QLatin1String(lastTheme));
}

QList<IconFiles::Versions> ThemedIcons::filesOf(const QString& name)
{
    if (QDir::isAbsolutePath(name))
        return { { name } };
    const bool isName = !name.isEmpty() && !name.contains(QLatin1Char('/'));
    return isName ? _files.of(name, _theme) : QList<IconFiles::Versions>();
}

ThemedIcons::Stamps ThemedIcons::stampsOf(const QStringList& files)
{
    Stamps stamps;
    for (const QString& file : files)
        stamps.append({ file, QFileInfo(file).lastModified() });
    return stamps;
}

bool ThemedIcons::areCurrent(const Stamps& stamps)
{
    return std::ranges::all_of(
        stamps, [](const auto& stamp) { return QFileInfo(stamp.first).lastModified() == stamp.second; });
}
