#include "Pictures/Module/IconFiles.h"

#include "Pictures/PictureFile.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QSettings>

#include <algorithm>

namespace {

constexpr const char* lastTheme = "hicolor";
constexpr const char* indexFile = "/index.theme";
constexpr const char* parentsKey = "Icon Theme/Inherits";
constexpr const char* directoryKeys[] = { "Icon Theme/Directories", "Icon Theme/ScaledDirectories" };
constexpr const char* drawingSuffix = ".svg";
constexpr const char* suffixes[] = { ".png", drawingSuffix, ".xpm" };
constexpr const char* pixmapStart = "/* XPM */";
constexpr qint64 longestPicture = 4 << 20;
constexpr int largestSide = 2048;
/// What takes this much in a PNG file may unfold to a thousand times as much.
constexpr std::size_t longestNotes = 32U << 10U;

/// A name without its last parts, one after the other: QIcon takes "phone" for "phone-call" where that is missing.
QStringList namesFor(const QString& icon)
{
    QStringList names { icon };
    for (qsizetype dash; (dash = names.last().lastIndexOf(QLatin1Char('-'))) > 0;)
        names.append(names.last().left(dash));
    return names;
}

/// What is there of that name in the folders.
QStringList existing(const QStringList& folders, const QString& name)
{
    QStringList paths;
    for (const QString& folder : folders) {
        const QString path = folder + QLatin1Char('/') + name;
        if (QFileInfo::exists(path))
            paths.append(path);
    }
    return paths;
}

bool isHarmlessPixels(const QByteArray& content, const Bytes& file)
{
    if (!content.startsWith(pixmapStart) && !isHarmlessPicture(file))
        return false;
    QBuffer buffer;
    buffer.setData(content);
    const QSize size = QImageReader(&buffer).size();
    return !size.isEmpty() && std::max(size.width(), size.height()) <= largestSide
        && lengthOfNotes(file) <= longestNotes;
}

} // namespace

IconFiles::IconFiles(QStringList folders, QStringList looseFolders)
    : _folders(std::move(folders))
    , _looseFolders(std::move(looseFolders))
{
}

QList<IconFiles::Versions> IconFiles::of(const QString& icon, const QString& theme)
{
    QList<Versions> files;
    for (const QString& name : namesFor(icon)) {
        for (const Places& places : directoriesFor(theme)) {
            for (const char* suffix : suffixes)
                files.append(existing(places, name + QLatin1String(suffix)));
        }
    }
    files.removeAll(Versions());
    return files;
}

QList<IconFiles::Places> IconFiles::directoriesFor(const QString& theme)
{
    QList<Places> directories;
    QStringList themes { theme };
    for (qsizetype i = 0; i < themes.size(); ++i) {
        const Theme& next = themeNamed(themes[i]);
        directories += next.directories;
        for (const QString& parent : next.parents + QStringList { QLatin1String(lastTheme) }) {
            if (!themes.contains(parent))
                themes.append(parent);
        }
    }
    for (const QString& folder : _looseFolders)
        directories.append({ folder });
    return directories;
}

const IconFiles::Theme& IconFiles::themeNamed(const QString& name)
{
    const auto known = _themes.constFind(name);
    return known != _themes.cend() ? *known : *_themes.insert(name, readTheme(name));
}

IconFiles::Theme IconFiles::readTheme(const QString& name) const
{
    Theme theme;
    QStringList directories;
    const QStringList paths = existing(_folders, name);
    for (const QString& path : paths) {
        const QSettings index(path + QLatin1String(indexFile), QSettings::IniFormat);
        theme.parents += index.value(QLatin1String(parentsKey)).toStringList();
        for (const char* key : directoryKeys)
            directories += index.value(QLatin1String(key)).toStringList();
    }
    directories.removeDuplicates();
    for (const QString& directory : directories)
        theme.directories.append(existing(paths, directory));
    theme.directories.removeAll(Places());
    return theme;
}

bool isHarmlessIcon(const QString& path)
{
    QFile file(path);
    // Opening a pipe waits for whoever writes into it.
    if (!QFileInfo(path).isFile() || file.size() > longestPicture || !file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray content = file.readAll();
    const Bytes bytes(content.begin(), content.end());
    // By its name a drawing is drawn at the size that is shown, by its content alone at its own.
    if (path.endsWith(QLatin1String(drawingSuffix)))
        return isHarmlessDrawing(bytes);
    return isHarmlessPixels(content, bytes);
}
