#ifndef OVERSIZED_H
#define OVERSIZED_H

// Cutting lines that are longer than MaxLineSize: what is cut off and where it is to be inserted.

#include <QList>
#include <QString>

class TwItem;

/// What is cut off one line, and where it goes.
struct Cut
{
    TwItem *parent = nullptr; // null if nothing is cut off
    int index = 0; // where the first piece goes among its children
    QList<TwItem *> pieces; // new entries, in the order of the text
    QString wholeLine; // all pieces as one uncut line, for the journal
};

/// Shortens the line of \p twi to MaxLineSize. Changes nothing if the line fits or cannot be cut.
/// The caller owns the pieces until they are inserted.
[[nodiscard]] Cut cutOff(TwItem *twi);

/// Whether cutting \p tooBigs line by line would be too slow: each cut rebuilds the list of its
/// record, and these lists together exceed twice the document of \p size entries. All lines are
/// then cut before the first cut is logged.
[[nodiscard]] bool mustCutAtOnce(const QList<TwItem *> &tooBigs, qsizetype size);

#endif // OVERSIZED_H
