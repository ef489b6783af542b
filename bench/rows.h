#ifndef ROWS_H
#define ROWS_H

#include "inputs.h"

#include <QList>
#include <QString>

#include <functional>

/// What a row is compared with.
enum class Base {
    Load, ///< the floor's load of the same lines
    Save, ///< the floor's save of the same lines
};

/// Runs the work, times it with the layout that follows, and keeps the number that it returns.
using Timed = std::function<void(const std::function<qint64()> &)>;

/// One line of the table.
struct Row
{
    QString name;
    Shape shape;
    int lines; // of its file
    double target; // greatest ratio to the base, 0 without one
    std::function<void(const QString &input, const Timed &timed)> run;
    Base base = Base::Load;
    bool counts = false; // what it changes: nothing if it is named so
};

/// The rows of the floor program: its load, its save, and what the framework takes for all rows.
QList<Row> floorRows(int lines);

/// The rows of the program, for files of \p lines lines, in the order of the table.
QList<Row> programRows(int lines);

/// Files of awkward shapes.
QList<Row> awkwardRows(int lines);

#endif // ROWS_H
