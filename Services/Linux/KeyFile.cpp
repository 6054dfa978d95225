#include "Linux/KeyFile.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

namespace {

constexpr qint64 largestFile = 1 << 20;

}

KeyFile::KeyFile(const QString& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || QFileInfo(path).size() > largestFile || !file.open(QIODevice::ReadOnly))
        return;
    QString group;
    for (const QString& whole : QString::fromUtf8(file.read(largestFile)).split(QLatin1Char('\n'))) {
        const QString line = whole.trimmed();
        if (line.startsWith(QLatin1Char('[')) && line.endsWith(QLatin1Char(']'))) {
            group = line.mid(1, line.size() - 2);
            continue;
        }
        const qsizetype sign = line.indexOf(QLatin1Char('='));
        if (sign <= 0 || line.startsWith(QLatin1Char('#')))
            continue;
        const QString key = line.left(sign).trimmed();
        if (!_groups[group].contains(key))
            _groups[group].insert(key, line.mid(sign + 1).trimmed());
    }
}

QStringList KeyFile::list(const QString& group, const QString& key) const
{
    return value(group, key).split(QLatin1Char(','), Qt::SkipEmptyParts);
}
