#ifndef OVERSIZED_H
#define OVERSIZED_H

// Lines over the greatest size: what is cut off one of them and where it goes, before it stands
// there.

#include <QList>
#include <QString>

class TwItem;

/// What is cut off one line, and where it goes.
struct Cut
{
    TwItem *parent = nullptr; // null if nothing is cut off
    int index = 0; // of the first piece among its children
    QList<TwItem *> pieces; // new entries, in the order of the text
    QString
        wholeLine; // the line text of one entry with all of the pieces, which the journal quotes
};

/// Shortens the line of \p twi to the greatest size. Nothing is changed if the line fits or cannot
/// be cut. The pieces belong to nobody until they are put into place.
[[nodiscard]] Cut cutOff(TwItem *twi);

/// Whether the lists of the records, made anew at each cut of one of \p tooBigs, are together
/// longer than twice the document of \p size entries. All lines are then cut before the first is
/// logged.
[[nodiscard]] bool mustCutAtOnce(const QList<TwItem *> &tooBigs, qsizetype size);

#endif // OVERSIZED_H
