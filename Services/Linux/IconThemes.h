#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <memory>

/// Looks icons up as freedesktop desktops do: in the theme, in those it inherits from, in
/// hicolor, and outside of themes; in each, the directory of the size before the one that is nearest to it.
///
/// Which directories a theme has is read once, and again after its own folder has changed: who installs icons touches
/// it, so that others see them.
class IconThemes {
public:
    /// `folders` hold the themes, the first before the others; `looseFolders` hold icons of no theme.
    IconThemes(QStringList folders, QStringList looseFolders);
    ~IconThemes();

    /// The picture file of that icon for a square of `size` points at `scale` pixels a point; empty when there is none.
    QString fileOf(const QString& icon, const QString& theme, int size, int scale);

private:
    class Theme;

    const Theme& themeNamed(const QString& name);
    QString looseFileOf(const QString& icon) const;

    QStringList _folders;
    QStringList _looseFolders;
    QMap<QString, std::shared_ptr<const Theme>> _themes;
};
