#pragma once

#include "Pictures/Module/IconFiles.h"
#include "Pictures/PictureModule.h"

#include <QDateTime>
#include <QHash>

#include <utility>

/// Draws the icons of apps. QIcon looks them up, in the theme that is asked for, in those that it inherits from, in
/// hicolor, and outside of themes. One a process, because QIcon has one theme a process.
///
/// A picture is kept until its files change. Themes are read again when something was installed in a folder of themes:
/// who does so touches the theme's own folder, so that others notice.
class ThemedIcons {
public:
    ThemedIcons();

    /// The icon or, where there is none that can be drawn, a neutral one; null for an empty square.
    std::shared_ptr<const Bitmap> picture(const IconRequest& request);

private:
    /// Files and when they were last changed.
    using Stamps = QList<std::pair<QString, QDateTime>>;

    struct Drawn {
        Stamps files;
        std::shared_ptr<const Bitmap> picture;
    };

    static Stamps stampsOf(const QStringList& files);
    static bool areCurrent(const Stamps& stamps);
    /// Has QIcon look in the request's theme and folders, as they are now.
    void follow(const IconRequest& request);
    QList<IconFiles::Versions> filesOf(const QString& name);

    QString _theme;
    Stamps _folders;
    IconFiles _files;
    QHash<QString, Drawn> _drawn;
};
