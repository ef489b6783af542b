#ifndef ENCODINGFIT_H
#define ENCODINGFIT_H

// How well an encoding fits bytes that no mark and no form of theirs explains.

#include "encoding.h"

/// Points for the text that \p sample has in the encoding; above 0 if it looks like one.
///
/// Each letter gets more the more usual it is in French and other western names: "é" 5, other
/// French ones 4, German ones 3, those of the other languages 2, what else is a Latin letter 1; and
/// a sign that is usual between words 1. A wrong encoding shows by what no name has, which costs 3:
/// a letter of another script, a capital within a word ("RenÈ"), a sign within a word ("Ren‚e"). It
/// costs 5 if a byte has no character, or a mark of ANSEL no letter.
[[nodiscard]] int fitOf(QByteArrayView sample, Encoding encoding);

/// The first of \p encodings that has the most points.
[[nodiscard]] Encoding bestFit(QByteArrayView sample, const QList<Encoding> &encodings);

#endif // ENCODINGFIT_H
