#pragma once

#include "Linux/IconThemes.h"
#include "Linux/WaitBudget.h"
#include "Phone/HomeScreen.h"

#include <QHash>
#include <QStringList>

#include <functional>
#include <memory>

/// Answers for the icons of installed apps: the icon that an app's desktop entry names, looked up in the icon themes,
/// 29 points wide and high at the screen's scale, as a keyed archive of an image.
///
/// What it takes to read icons counts as waiting for a daemon. When a page's time is spent, the other icons are left
/// out until the rows are built again; those that were read are kept.
class DesktopHomeScreen final : public HomeScreen {
public:
    /// Empty where the user has chosen none. It counts the time that it takes.
    using ChosenTheme = std::function<QString()>;

    /// The data folders of the user and of the system, the first before the others.
    DesktopHomeScreen(const QStringList& dataFolders, ChosenTheme theme, std::shared_ptr<WaitBudget> budget);

    // HomeScreen
    Value ask(const std::string& service, const std::string& message, const Value& userInfo) override;

private:
    Value archivedIcon(const QString& app);
    // The time that these take is counted.
    /// Empty when no entry of that name is installed, or it names no icon.
    QString iconNameOf(const QString& app) const;
    QString fileOfPath(const QString& path) const;
    QString fileInThemes(const QString& name, const QString& theme, double scale);
    Value archiveOf(const QString& file, double scale);

    QStringList _dataFolders;
    ChosenTheme _theme;
    std::shared_ptr<WaitBudget> _budget;
    IconThemes _themes;
    /// By what they are made of.
    QHash<QString, Value> _archives;
};
