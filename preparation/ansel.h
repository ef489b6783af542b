#ifndef ANSEL_H
#define ANSEL_H

// The character set ANSEL as GEDCOM 5.5.1 has it in its appendix: ANSI/NISO Z39.47 with additions
// of its own. A mark of ANSEL stands in front of its letter, that of Unicode behind.

#include <QByteArrayView>
#include <QString>

/// The character of a byte from 0x80 to 0xFF, a combining one for a mark. Null if there is none.
[[nodiscard]] QChar anselCharacter(char byte);

/// Whether the byte is a mark, which changes the letter that comes next.
[[nodiscard]] bool isAnselMark(char byte);

/// \p base with the marks that stand in front of it in the file, composed (NFC). Of several marks
/// that next to the letter is the inner one; the other order is in use as well, and is read so
/// where only that composes: both "hook above, circumflex, a" and "circumflex, hook above, a" are
/// one Vietnamese letter.
[[nodiscard]] QString anselLetter(QByteArrayView marks, QChar base);

#endif // ANSEL_H
