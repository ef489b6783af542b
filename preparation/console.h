#ifndef CONSOLE_H
#define CONSOLE_H

// The face of varlune-preparer for terminals and scripts.

#include <QStringList>

/// What the process tells of itself when it ends; the greatest of its files counts.
enum ExitStatus {
    Done = 0,
    DoneWithWarnings = 1,
    NotPossible = 2,
};

/// Prepares the files that the command line \p arguments names, and returns the exit status. Needs
/// a QCoreApplication, whose name and version it tells.
[[nodiscard]] int runConsole(const QStringList &arguments);

#endif // CONSOLE_H
