#include "Linux/IconThemes.h"

#include "Linux/KeyFile.h"

#include <QDateTime>
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
    /// Where it is, in the order of the folders.
    QStringList paths;
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

/// Empty when there is none.
QString pictureNamed(const QString& path)
{
    for (const char* suffix : suffixes) {
        QString file = path + QLatin1String(suffix);
        if (QFileInfo(file).isFile())
            return file;
    }
    return {};
}

QStringList existing(const QStringList& paths)
{
    QStringList found;
    std::ranges::copy_if(paths, std::back_inserter(found), [](const QString& path) { return QFileInfo(path).isDir(); });
    return found;
}

} // namespace

/// One theme, spread over several folders, as it was when it was read.
class IconThemes::Theme {
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
        _times = times();
        findDirectories();
    }

    bool hasChanged() const { return _times != times(); }
    const QStringList& parents() const { return _parents; }

    QString fileOf(const QString& icon, int size, int scale) const
    {
        std::vector<std::pair<int, const Directory*>> byDistance;
        for (const Directory& directory : _directories)
            byDistance.emplace_back(distance(directory, size, scale), &directory);
        std::ranges::stable_sort(byDistance, {}, &std::pair<int, const Directory*>::first);
        for (const auto& [ignored, directory] : byDistance) {
            for (const QString& path : directory->paths) {
                const QString file = pictureNamed(path + QLatin1Char('/') + icon);
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

    /// Most themes lie in one folder, and hicolor lists far more directories than there are.
    void findDirectories()
    {
        const QStringList paths = existing(_paths);
        for (Directory& directory : _directories) {
            QStringList wanted;
            for (const QString& path : paths)
                wanted.append(path + QLatin1Char('/') + directory.name);
            directory.paths = existing(wanted);
        }
        std::erase_if(_directories, [](const Directory& directory) { return directory.paths.isEmpty(); });
    }

    QList<QDateTime> times() const
    {
        QList<QDateTime> times;
        for (const QString& path : _paths)
            times << QFileInfo(path).lastModified() << QFileInfo(path + QLatin1String(indexFile)).lastModified();
        return times;
    }

    QStringList _paths;
    QList<QDateTime> _times;
    QStringList _parents;
    std::vector<Directory> _directories;
};

IconThemes::IconThemes(QStringList folders, QStringList looseFolders)
    : _folders(std::move(folders))
    , _looseFolders(std::move(looseFolders))
{
}

IconThemes::~IconThemes() = default;

const IconThemes::Theme& IconThemes::themeNamed(const QString& name)
{
    std::shared_ptr<const Theme>& theme = _themes[name];
    if (!theme || theme->hasChanged())
        theme = std::make_shared<Theme>(name, _folders);
    return *theme;
}

QString IconThemes::fileOf(const QString& icon, const QString& theme, int size, int scale)
{
    QStringList waiting { theme };
    QStringList seen { QLatin1String(lastTheme) };
    while (!waiting.isEmpty()) {
        const QString name = waiting.takeFirst().trimmed();
        if (name.isEmpty() || name.contains(QLatin1Char('/')) || seen.contains(name))
            continue;
        seen.append(name);
        const Theme& next = themeNamed(name);
        const QString file = next.fileOf(icon, size, scale);
        if (!file.isEmpty())
            return file;
        waiting = next.parents() + waiting;
    }
    const QString file = themeNamed(QLatin1String(lastTheme)).fileOf(icon, size, scale);
    return file.isEmpty() ? looseFileOf(icon) : file;
}

QString IconThemes::looseFileOf(const QString& icon) const
{
    for (const QString& folder : _looseFolders) {
        const QString file = pictureNamed(folder + QLatin1Char('/') + icon);
        if (!file.isEmpty())
            return file;
    }
    return {};
}
