#ifndef JOURNALTEXT_H
#define JOURNALTEXT_H

// How the journal quotes an entry: one wording for each thing that several operations log.

#include <QString>

class TwItem;

/// The full tag joined with ".".
[[nodiscard]] QString fullTagText(TwItem *twi);

/// The full tag joined with ".", a blank, the line text.
[[nodiscard]] QString entryText(TwItem *twi);

/// The line of the loaded file: " (l.12)".
[[nodiscard]] QString lineReference(const TwItem *twi);

/// The line that logs that a column of the entry, \p before, now reads \p after.
[[nodiscard]] QString editLog(TwItem *twi, const QString &before, const QString &after);

/// The line that logs a deletion, with the entry and its line reference.
[[nodiscard]] QString deletionLog(TwItem *twi);

/// The line that logs a fold of \p twiConc into \p twiTarget, whose value has grown already. The
/// quote mark in front of the first has no partner.
[[nodiscard]] QString foldLog(TwItem *twiConc, TwItem *twiTarget);

/// The line that logs a cut. \p concText quotes the new entry as entryText() does.
[[nodiscard]] QString cutLog(const QString &concText, TwItem *twiOri);

#endif // JOURNALTEXT_H
