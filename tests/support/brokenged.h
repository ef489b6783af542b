#ifndef BROKENGED_H
#define BROKENGED_H

#include <QByteArray>
#include <QString>

struct BrokenFile
{
    QByteArray bytes;
    QString encoding; // by its usual name
    QString text; // what the bytes say in it, without a mark
    bool isIntact = true; // no byte has been changed since
};

/// A GEDCOM file with the faults of files from anywhere: in its lines, its levels, its line ends,
/// its encoding and its bytes. The same one for the same number.
BrokenFile brokenFile(quint32 number);

#endif // BROKENGED_H
