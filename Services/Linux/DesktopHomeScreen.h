#pragma once

#include "Phone/HomeScreen.h"

#include <QStringList>

/// Answers for the icons of installed apps: the icon that an app's desktop entry names, looked up in the icon themes,
/// 29 points wide and high at the screen's scale, as a keyed archive of an image.
class DesktopHomeScreen final : public HomeScreen {
public:
    /// The data folders of the user and of the system, the first before the others.
    explicit DesktopHomeScreen(QStringList dataFolders, QString theme = {});

    /// $XDG_DATA_HOME and $XDG_DATA_DIRS, or what stands for them.
    static QStringList userDataFolders();

    // HomeScreen
    Value ask(const std::string& service, const std::string& message, const Value& userInfo) override;

private:
    Value archivedIcon(const QString& app) const;
    /// Empty when no entry of that name is installed, or it names no icon.
    QString iconNameOf(const QString& app) const;
    QString fileOfIcon(const QString& name, double scale) const;

    QStringList _dataFolders;
    QString _theme;
};
