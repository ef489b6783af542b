#ifndef REPAIRS_H
#define REPAIRS_H

// The repairs and the warnings. One pass over the lines of the source makes the copy.

#include "preparation.h"

/// Fills the copy of \p preparation from its source, with the occurrences and the renamed
/// identifiers. Returns the number of records of the source, or nothing if \p progress has stopped
/// it.
[[nodiscard]] std::optional<qint64> repair(Preparation *preparation, const Options &options,
                                           const Progress &progress);

#endif // REPAIRS_H
