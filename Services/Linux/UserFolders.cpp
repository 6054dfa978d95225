#include "Linux/UserFolders.h"

#include <QDir>

namespace {

QStringList folders(const char* userVariable, const char* userDefault, const char* systemVariable, const char* system)
{
    QString own = qEnvironmentVariable(userVariable);
    if (!QDir::isAbsolutePath(own))
        own = QDir::homePath() + QLatin1String(userDefault);
    QString others = qEnvironmentVariable(systemVariable);
    if (others.isEmpty())
        others = QLatin1String(system);
    return QStringList { own } + others.split(QLatin1Char(':'), Qt::SkipEmptyParts);
}

} // namespace

QStringList dataFolders()
{
    return folders("XDG_DATA_HOME", "/.local/share", "XDG_DATA_DIRS", "/usr/local/share:/usr/share");
}

QStringList configurationFolders()
{
    return folders("XDG_CONFIG_HOME", "/.config", "XDG_CONFIG_DIRS", "/etc/xdg");
}
