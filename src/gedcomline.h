#ifndef GEDCOMLINE_H
#define GEDCOMLINE_H

// The text of a GEDCOM line, as held in the columns of a tree row: its parts, its size, the form of
// a tag. Depends on Qt's row class only, not on the document.

#include <QString>
#include <QStringView>

class QRegularExpression;
class QTreeWidgetItem;

// The columns of an entry. In a section node the first two hold its label and the number of its
// records.
inline constexpr int LevelColumn = 0;
inline constexpr int TagColumn = 1; // or the identifier of a record
inline constexpr int ValueColumn = 2;

inline constexpr int MaxLineSize = 255; // characters of a GEDCOM line, without its line ending

/// The form of a tag, compiled once: one expression per entry would cost minutes and gigabytes in a
/// file of a million lines. Copies share the compiled expression.
[[nodiscard]] const QRegularExpression &tagExpression();

/// Whether tagExpression() matches, without running the expression engine on every line.
[[nodiscard]] bool isTag(QStringView text);

/// Whether \p tag marks a continuation line: CONT or CONC.
[[nodiscard]] bool isContinuation(const QString &tag);

/// The line of the file that a row stands for: its columns joined with one blank.
[[nodiscard]] QString lineText(const QTreeWidgetItem *row);

/// The number of characters of lineText(), without building it.
[[nodiscard]] qsizetype lineSize(const QTreeWidgetItem *row);

/// Whether lineText() begins with \p prefix. Most lines are ruled out by their first column.
[[nodiscard]] bool lineBeginsWith(const QTreeWidgetItem *row, QStringView prefix);

/// The number in column 0, 0 if it holds none.
[[nodiscard]] int levelOf(const QTreeWidgetItem *row);

/// The level of a child of \p row: one more than levelOf(). Wider than int, since a replacement can
/// have made that number the greatest there is.
[[nodiscard]] qint64 childLevel(const QTreeWidgetItem *row);

/// The last component of a path; "/" and the backslash both separate folders.
[[nodiscard]] QString bareFileName(const QString &path);

#endif // GEDCOMLINE_H
