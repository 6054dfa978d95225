#pragma once

#include <QHash>
#include <QStringList>

/// The files that an icon may be read from. QIcon does not say which one it will read, so all of them are looked at
/// before it may.
class IconFiles {
public:
    /// Files that stand for one another, the one to read before the others: they lie in the same directory of a theme,
    /// below different folders.
    using Versions = QStringList;

    IconFiles() = default;
    /// `folders` hold the themes, the first before the others; `looseFolders` hold icons that belong to none.
    IconFiles(QStringList folders, QStringList looseFolders);

    /// Every file of that icon in the theme, in those that it inherits from, in hicolor and outside of themes.
    QList<Versions> of(const QString& icon, const QString& theme);

private:
    /// Directories that stand for one another, and exist.
    using Places = QStringList;

    struct Theme {
        QStringList parents;
        QList<Places> directories;
    };

    const Theme& themeNamed(const QString& name);
    Theme readTheme(const QString& name) const;
    QList<Places> directoriesFor(const QString& theme);

    QStringList _folders;
    QStringList _looseFolders;
    QHash<QString, Theme> _themes;
};

/// False for a file that would take absurdly long to draw, or much memory, and for one that is no picture.
bool isHarmlessIcon(const QString& file);
