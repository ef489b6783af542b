#ifndef FLOOR_H
#define FLOOR_H

#include <QString>

class QTreeWidget;

/// The least that any program must do that shows a GEDCOM file in this widget: read the file twice,
/// the first time for the range of a progress bar, make an item a line with its texts, two tool
/// tips and its tag expression, and hang it under its parent, all records under one row. Returns
/// the number of lines.
int floorLoad(const QString &path, QTreeWidget *tree);

/// Writes the lines of the items to \p path, each one flushed as the program flushes it. Returns
/// the number of lines.
int floorSave(const QString &path, const QTreeWidget *tree);

#endif // FLOOR_H
