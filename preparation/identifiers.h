#ifndef IDENTIFIERS_H
#define IDENTIFIERS_H

// Identifiers in the forms that Varlune's links, filters and media look for: @I1@, @F1@, @S1@, @O1@
// and @R1@.

#include "preparation.h"

#include <QByteArrayView>
#include <QHash>

/// New identifiers by old ones.
using Renames = QHash<QByteArray, QByteArray>;

/// Whether a record of that tag can be seen by its identifier. Other records need no form.
[[nodiscard]] bool hasSeenForm(QByteArrayView tag, QByteArrayView identifier);

/// Finds an identifier of its form for each record of \p source that has another one. The number in
/// the old one is kept where it is free, and no pointer that leads nowhere begins to lead
/// somewhere. \p hasCleanLines: the copy will have the lines without their control characters.
[[nodiscard]] QList<RenamedIdentifier> renameIdentifiers(QByteArrayView source, bool hasCleanLines);

#endif // IDENTIFIERS_H
