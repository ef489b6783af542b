#ifndef CHARACTERTABLE_H
#define CHARACTERTABLE_H

// What the bytes of the encodings with one byte a character stand for. The system's own library
// knows it: iconv, and on Windows the code pages.

#include "encoding.h"

#include <array>

/// The characters of the bytes from 0x80 to 0xFF, in UTF-8. Empty where there is none, or only one
/// that no text has: a control character or one for private use.
using CharacterTable = std::array<QByteArray, 128>;

/// Empty throughout for an encoding that the system does not know. Windows1252, Cp437, Cp850,
/// MacRoman, Latin1 and Latin9 have a table.
[[nodiscard]] CharacterTable tableOf(Encoding encoding);

#endif // CHARACTERTABLE_H
