#ifndef PROCESS_H
#define PROCESS_H

#include <QByteArray>
#include <QStringList>

/// What a process has taken, from its start to its end.
struct ProcessCost
{
    bool succeeded = false;
    double seconds = 0;
    double peakMegabytes = 0; // of resident memory; at least what this process itself has taken
    QByteArray output;
};

/// Runs \p command to its end. \p errors tells whether its error output is shown.
ProcessCost runProcess(const QStringList &command, bool errors);

#endif // PROCESS_H
