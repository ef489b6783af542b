#ifndef TABLE_H
#define TABLE_H

#include <QString>

struct Row;

/// Runs every row for files of \p lines lines and of a tenth of them, each in a process of its own
/// with its input in the folder \p inputs, and prints the table. Returns the exit code.
int printTable(int lines, const QString &inputs);

/// The path of the file that the row needs, which is made if it is not there.
QString inputFile(const QString &inputs, const Row &row);

#endif // TABLE_H
