#ifndef BROKENGED_H
#define BROKENGED_H

#include <QByteArray>

/// A GEDCOM file with the faults of files from anywhere: in its lines, its levels, its line ends,
/// its encoding and its bytes. The same one for the same number.
QByteArray brokenFile(quint32 number);

#endif // BROKENGED_H
