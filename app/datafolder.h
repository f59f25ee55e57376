#pragma once

#include <QString>

// Where config.ini, project.db and the log files live. Beside the executable
// when its folder is writable (the build folder, a copied folder); otherwise, as
// for an installed copy, the per-user data folder, created on first use and
// seeded with the config.ini and project.db found beside the executable.
// Chosen once per process; needs the application object.
QString dataFolder();

// The choice itself, for tests: returns programFolder or userFolder.
QString chooseDataFolder(const QString &programFolder, const QString &userFolder);

// "log" below the working directory while the files are beside the executable,
// the data folder's "log" otherwise.
QString logFolder();
