#ifndef ENCODING_H
#define ENCODING_H

// The encodings of GEDCOM files: which one a file has, and its text as UTF-8.

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringView>

#include <optional>

/// Latin1 is ISO 8859-1 and Latin9 is ISO 8859-15.
enum class Encoding {
    Utf8,
    Utf16LE,
    Utf16BE,
    Ansel,
    Windows1252,
    Cp437,
    Cp850,
    MacRoman,
    Latin1,
    Latin9
};

/// The name that users read and type: "UTF-8", "Windows-1252".
[[nodiscard]] QString encodingName(Encoding encoding);

/// The encoding of that name or of one that is in use beside it: "ANSI", "IBMPC", "Latin 1". Case,
/// blanks and punctuation do not count.
[[nodiscard]] std::optional<Encoding> encodingFromName(QStringView name);

/// All of them, in the order in which users are offered them.
[[nodiscard]] QList<Encoding> allEncodings();

struct EncodingChoice
{
    Encoding encoding;
    QString reason; // for the user, without a capital and a full stop
};

/// The encoding of a file, from its first sign that counts: a byte-order mark; the zero bytes of
/// UTF-16; being valid as UTF-8, or nearly so; HEAD.CHAR, unless its encoding makes no text of the
/// bytes where another one does; the encoding in which the bytes give the most usual letters of
/// western names.
[[nodiscard]] EncodingChoice chooseEncoding(QByteArrayView bytes);

/// Bytes that have no character in the encoding, and where they stand: lines end at LF, CR or CR
/// LF, the column is counted in characters, both from 1. Each such piece counts as one character.
struct Undecoded
{
    qint64 line;
    qint64 column;
    QByteArray bytes;
};

struct Decoded
{
    QByteArray utf8;
    QList<Undecoded> undecoded;
    QList<qint64> cutLines; // that have lost or got a part of a character, in their order
};

/// The text without a byte-order mark, its line ends as they are; ANSEL comes in the composed form
/// NFC. What does not decode stands there in hexadecimal digits, "<E9>", as does a control
/// character from 0x80 on.
///
/// A character whose bytes were cut in two, its second half in the CONC line below, stands whole at
/// the beginning of the value there.
///
/// Valid UTF-8 without such is not copied: the result then points into \p bytes, which must outlive
/// it.
[[nodiscard]] Decoded decode(QByteArrayView bytes, Encoding encoding);

#endif // ENCODING_H
