#ifndef REFUSAL_H
#define REFUSAL_H

// Why a file cannot be prepared: sentences that say what is wrong and what to do, or nothing.

#include <QByteArrayView>
#include <QString>

/// Of what cannot be read, or is too large to be opened. The content of what may be read is in
/// \p bytes afterwards.
[[nodiscard]] QString readForPreparation(const QString &path, QByteArray *bytes);

/// Of bytes that are no text at all, by their first ones.
[[nodiscard]] QString refusalOfBytes(QByteArrayView bytes);

/// Of a decoded text that is rather something else.
[[nodiscard]] QString refusalOfText(QByteArrayView text);

/// Of a text without any record. \p isForced: its encoding is not the one that the file shows.
[[nodiscard]] QString refusalWithoutRecords(QByteArrayView text, bool isForced);

#endif // REFUSAL_H
