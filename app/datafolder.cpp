#include "app/datafolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

QString chooseDataFolder(const QString &programFolder, const QString &userFolder)
{
    if (QFileInfo(programFolder).isWritable())
        return programFolder;
    QDir().mkpath(userFolder);
    // An older copy kept its files beside the executable: carry them over once,
    // made writable, as copying keeps the installed files' read-only modes.
    for (const char *name : {"config.ini", "project.db"}) {
        const QString from = programFolder + QLatin1Char('/') + QLatin1String(name);
        const QString to = userFolder + QLatin1Char('/') + QLatin1String(name);
        if (QFile::exists(from) && !QFile::exists(to) && QFile::copy(from, to))
            QFile::setPermissions(to, QFile::permissions(to) | QFile::ReadOwner | QFile::WriteOwner);
    }
    return userFolder;
}

QString dataFolder()
{
    static const QString folder = chooseDataFolder(
            QCoreApplication::applicationDirPath(), QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    return folder;
}

QString logFolder()
{
    // Relative on purpose: run from the build folder, the log goes to the
    // working directory as it always has.
    const QString folder = dataFolder();
    return folder == QCoreApplication::applicationDirPath() ? QStringLiteral("log") : folder + QStringLiteral("/log");
}
