#pragma once

#include <QString>
#include <QStringList>

/// Looks icons up as freedesktop desktops do: in the theme, in those it inherits from, in
/// hicolor, and outside of themes; in each, the directory of the size before the one that is nearest to it.
class IconTheme {
public:
    /// `folders` hold the themes, the first before the others; `looseFolders` hold icons of no theme.
    IconTheme(QString theme, QStringList folders, QStringList looseFolders);

    /// The picture file of that icon for a square of `size` points at `scale` pixels a point; empty when there is none.
    QString fileOf(const QString& icon, int size, int scale) const;

private:
    QString _theme;
    QStringList _folders;
    QStringList _looseFolders;
};
