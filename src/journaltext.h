#ifndef JOURNALTEXT_H
#define JOURNALTEXT_H

// Journal texts that several operations share: how an entry is quoted, and what is said of a change
// to it.

#include <QString>

class TwItem;

/// The full tag joined with ".".
[[nodiscard]] QString fullTagText(TwItem *twi);

/// fullTagText(), a blank and the line text.
[[nodiscard]] QString entryText(TwItem *twi);

/// A reference to the entry's line in the loaded file, with its leading blank: " (l.12)".
[[nodiscard]] QString lineReference(const TwItem *twi);

/// The log text for a column that has changed from \p before to \p after.
[[nodiscard]] QString editLog(TwItem *twi, const QString &before, const QString &after);

/// The log text for the deletion of an entry.
[[nodiscard]] QString deletionLog(TwItem *twi);

/// The log text for the fold of \p twiConc into \p twiTarget, once it has been done. Intentional:
/// its opening quote mark is never closed.
[[nodiscard]] QString foldLog(TwItem *twiConc, TwItem *twiTarget);

/// The log text for a cut of \p twiOri. \p concText quotes the new entry as entryText() does.
[[nodiscard]] QString cutLog(const QString &concText, TwItem *twiOri);

#endif // JOURNALTEXT_H
