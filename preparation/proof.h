#ifndef PROOF_H
#define PROOF_H

#include "preparation.h"

#include <QByteArrayView>

/// Reads a text as Varlune's loader does, by the same rules and without a tree. Its lines end in
/// LF.
[[nodiscard]] Proof proveOpening(QByteArrayView text);

#endif // PROOF_H
