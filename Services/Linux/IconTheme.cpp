#include "Linux/IconTheme.h"

#include "Linux/KeyFile.h"

#include <QFileInfo>

#include <algorithm>
#include <limits>
#include <vector>

namespace {

constexpr const char* lastTheme = "hicolor";
constexpr const char* indexFile = "/index.theme";
constexpr const char* themeGroup = "Icon Theme";
constexpr const char* suffixes[] = { ".png", ".svg", ".xpm" };
constexpr int defaultThreshold = 2;
constexpr int exact = 0;

enum class Kind { Fixed, Scalable, Threshold };

/// A folder of a theme, with the sizes that its pictures are for.
struct Directory {
    QString name;
    Kind kind = Kind::Threshold;
    int size = 0;
    int smallest = 0;
    int largest = 0;
    int scale = 1;
};

int numberIn(const KeyFile& index, const QString& group, const char* key, int missing)
{
    bool isNumber = false;
    const int number = index.value(group, QLatin1String(key)).toInt(&isNumber);
    return isNumber ? number : missing;
}

Directory directoryIn(const KeyFile& index, const QString& name)
{
    Directory directory;
    directory.name = name;
    directory.size = numberIn(index, name, "Size", 0);
    directory.scale = std::max(1, numberIn(index, name, "Scale", 1));
    const QString kind = index.value(name, QStringLiteral("Type"));
    const int threshold = numberIn(index, name, "Threshold", defaultThreshold);
    if (kind == QLatin1String("Fixed")) {
        directory.kind = Kind::Fixed;
        directory.smallest = directory.largest = directory.size;
    } else if (kind == QLatin1String("Scalable")) {
        directory.kind = Kind::Scalable;
        directory.smallest = numberIn(index, name, "MinSize", directory.size);
        directory.largest = numberIn(index, name, "MaxSize", directory.size);
    } else {
        directory.smallest = directory.size - threshold;
        directory.largest = directory.size + threshold;
    }
    return directory;
}

/// How far the pictures of the directory are from what is wanted, in pixels; 0 for those that match.
int distance(const Directory& directory, int size, int scale)
{
    if (directory.scale == scale && size >= directory.smallest && size <= directory.largest)
        return exact;
    const int wanted = size * scale;
    const int smallest = directory.smallest * directory.scale;
    const int largest = directory.largest * directory.scale;
    // One that is to be shrunk looks better than one that is to be stretched; both come after those that match.
    if (wanted < smallest)
        return smallest - wanted + 1;
    if (wanted > largest)
        return 2 * (wanted - largest) + 1;
    return 1;
}

QString pictureNamed(const QString& path)
{
    for (const char* suffix : suffixes) {
        QString file = path + QLatin1String(suffix);
        if (QFileInfo(file).isFile())
            return file;
    }
    return {};
}

/// One theme, spread over several folders.
class Theme {
public:
    Theme(const QString& name, const QStringList& folders)
    {
        for (const QString& folder : folders) {
            const QString path = folder + QLatin1Char('/') + name;
            _paths.append(path);
            const KeyFile index(path + QLatin1String(indexFile));
            if (_directories.empty() && index.hasGroup(QLatin1String(themeGroup)))
                readIndex(index);
        }
    }

    const QStringList& parents() const { return _parents; }

    QString fileOf(const QString& icon, int size, int scale) const
    {
        std::vector<std::pair<int, const Directory*>> byDistance;
        for (const Directory& directory : _directories)
            byDistance.emplace_back(distance(directory, size, scale), &directory);
        std::ranges::stable_sort(byDistance, {}, &std::pair<int, const Directory*>::first);
        for (const auto& [ignored, directory] : byDistance) {
            for (const QString& path : _paths) {
                const QString file = pictureNamed(path + QLatin1Char('/') + directory->name + QLatin1Char('/') + icon);
                if (!file.isEmpty())
                    return file;
            }
        }
        return {};
    }

private:
    void readIndex(const KeyFile& index)
    {
        const QString group = QLatin1String(themeGroup);
        _parents = index.list(group, QStringLiteral("Inherits"));
        for (const char* key : { "Directories", "ScaledDirectories" }) {
            for (const QString& name : index.list(group, QLatin1String(key)))
                _directories.push_back(directoryIn(index, name));
        }
    }

    QStringList _paths;
    QStringList _parents;
    std::vector<Directory> _directories;
};

} // namespace

IconTheme::IconTheme(QString theme, QStringList folders, QStringList looseFolders)
    : _theme(std::move(theme))
    , _folders(std::move(folders))
    , _looseFolders(std::move(looseFolders))
{
}

QString IconTheme::fileOf(const QString& icon, int size, int scale) const
{
    QStringList waiting { _theme };
    QStringList seen { QLatin1String(lastTheme) };
    while (!waiting.isEmpty()) {
        const QString name = waiting.takeFirst().trimmed();
        if (name.isEmpty() || seen.contains(name))
            continue;
        seen.append(name);
        const Theme theme(name, _folders);
        const QString file = theme.fileOf(icon, size, scale);
        if (!file.isEmpty())
            return file;
        waiting = theme.parents() + waiting;
    }
    const QString file = Theme(QLatin1String(lastTheme), _folders).fileOf(icon, size, scale);
    if (!file.isEmpty())
        return file;
    for (const QString& folder : _looseFolders) {
        const QString loose = pictureNamed(folder + QLatin1Char('/') + icon);
        if (!loose.isEmpty())
            return loose;
    }
    return {};
}
