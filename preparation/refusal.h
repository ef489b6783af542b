#ifndef REFUSAL_H
#define REFUSAL_H

// Why a file cannot be prepared: sentences that say what is wrong and what to do, or nothing.

#include "encoding.h"

#include <QByteArrayView>
#include <QString>

/// Of what cannot be read, or is too large to be opened. The content of what may be read is in
/// \p bytes afterwards.
[[nodiscard]] QString readForPreparation(const QString &path, QByteArray *bytes);

/// Of bytes that are no text at all, by their first ones.
[[nodiscard]] QString refusalOfBytes(QByteArrayView bytes);

/// Of bytes that are rather something else in that encoding, by their first ones. \p isForced: the
/// encoding is not the one that the file shows; what does not decode then says nothing of the file.
[[nodiscard]] QString refusalOfText(QByteArrayView bytes, Encoding encoding, bool isForced);

/// Of a text without any record. \p begin: the first bytes of its file.
[[nodiscard]] QString refusalWithoutRecords(QByteArrayView text, QByteArrayView begin,
                                            bool isForced);

#endif // REFUSAL_H
