#ifndef PROCESS_H
#define PROCESS_H

#include <QByteArray>
#include <QStringList>

/// What a process has taken, from its start to its end.
struct ProcessCost
{
    bool succeeded = false;
    double seconds = 0;
    double peakMegabytes = 0; // of resident memory
    QByteArray output;
};

/// Runs \p command to its end. Its error output is dropped.
ProcessCost runProcess(const QStringList &command);

#endif // PROCESS_H
