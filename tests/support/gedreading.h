#ifndef GEDREADING_H
#define GEDREADING_H

// A reading of GEDCOM texts for the tests alone, by other means than the program's: what any
// generous reader finds in a file, before it is prepared and after.

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The values of a text, one a line: its level, identifier, tag and the value with its
/// continuations joined. What a preparation may change is taken out of both sides: how lines are
/// laid out, which levels are skipped, control characters, the trailer, the character set in the
/// header, a header that is missing, and the lines that a record of one line is given.
QStringList valuesOf(const QByteArray &utf8);

#endif // GEDREADING_H
