#ifndef GEDCOMLINE_H
#define GEDCOMLINE_H

// A GEDCOM line as text, as the columns of a row hold it: its parts, its size, the form of a tag.
// Knows rows of the framework alone, no document.

#include <QString>
#include <QStringView>

class QRegularExpression;
class QTreeWidgetItem;

// The columns of an entry. A section node has its label and the number of its records instead.
inline constexpr int LevelColumn = 0;
inline constexpr int TagColumn = 1; // or the identifier of a record
inline constexpr int ValueColumn = 2;

inline constexpr int MaxLineSize = 255; // characters of a GEDCOM line, its end not counted

/// The form of a tag, compiled once: a million entries that each built their own would take minutes
/// and gigabytes. Copies share it.
[[nodiscard]] const QRegularExpression &tagExpression();

/// Whether tagExpression() matches, without the price of the expression engine at every line.
[[nodiscard]] bool isTag(QStringView text);

/// Whether \p tag is that of a line which goes on with the value of an earlier one.
[[nodiscard]] bool isContinuation(const QString &tag);

/// The line of the file that a row stands for: its columns joined with one blank.
[[nodiscard]] QString lineText(const QTreeWidgetItem *row);

/// The number of characters of lineText(), without building it.
[[nodiscard]] qsizetype lineSize(const QTreeWidgetItem *row);

/// Whether lineText() begins with \p prefix. The first column tells most lines apart.
[[nodiscard]] bool lineBeginsWith(const QTreeWidgetItem *row, QStringView prefix);

/// The level of a child of \p row: one more than its column 0 says, which a replacement can have
/// made the greatest number there is.
[[nodiscard]] qint64 childLevel(const QTreeWidgetItem *row);

/// The file name at the end of a path, whose folders are ended by "/" or by a backslash.
[[nodiscard]] QString bareFileName(const QString &path);

#endif // GEDCOMLINE_H
