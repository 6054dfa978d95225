#pragma once

#include <QHash>
#include <QString>

/// A file of groups of keys, as desktop entries and icon themes are written. Of a group or key that stands twice the
/// first counts.
class KeyFile {
public:
    /// A file that is missing, unreadable or larger than a megabyte has no groups.
    explicit KeyFile(const QString& path);

    bool hasGroup(const QString& group) const { return _groups.contains(group); }
    /// Empty when there is none.
    QString value(const QString& group, const QString& key) const { return _groups.value(group).value(key); }
    QStringList list(const QString& group, const QString& key) const;

private:
    QHash<QString, QHash<QString, QString>> _groups;
};
