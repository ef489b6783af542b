#include "encoding.h"

#include "ansel.h"
#include "bytes.h"
#include "charactertable.h"
#include "decodedtext.h"

#include <QHash>
#include <QtEndian>

#include <algorithm>
#include <utility>

namespace {

constexpr qsizetype MaxMarks = 8; // of one letter of ANSEL; bytes with more than that are no text
constexpr qsizetype MaxPending = 4096; // characters of UTF-16 text that are converted at once

/// The first index from \p at on that holds no ASCII character.
qsizetype endOfAscii(QByteArrayView bytes, qsizetype at)
{
    return std::find_if_not(bytes.begin() + at, bytes.end(), isAscii) - bytes.begin();
}

/// The index at which the value of a line goes on that ends at \p at: behind "2 CONC " in the next
/// line. -1 if that is no such line.
qsizetype continuationOf(QByteArrayView bytes, qsizetype at)
{
    const auto skip = [&](auto belongs) {
        const qsizetype begin = at;
        while (at < bytes.size() && belongs(bytes.at(at)))
            ++at;
        return at > begin;
    };
    const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };

    if (!skip(isLineEnd))
        return -1;
    skip(isBlank);
    if (!skip([](char c) { return c >= '0' && c <= '9'; }) || !skip(isBlank)
        || !bytes.sliced(at).startsWith("CONC "))
        return -1;
    return at + 5;
}

/// The number of bytes that the UTF-8 sequence which \p first begins should have, 0 if none does.
qsizetype sequenceSize(char first)
{
    const auto byte = uchar(first);
    if (byte < 0xC0)
        return 0;
    if (byte < 0xE0)
        return 2;
    return byte < 0xF0 ? 3 : 4;
}

/// Whether a sequence of UTF-8 is a control character from 0x80 on.
bool isControl(QByteArrayView sequence)
{
    return sequence.size() > 1 && sequence[0] == '\xC2' && uchar(sequence[1]) < 0xA0;
}

bool hasControls(QByteArrayView utf8)
{
    for (qsizetype i = utf8.indexOf('\xC2'); i >= 0; i = utf8.indexOf('\xC2', i + 1)) {
        if (isControl(utf8.sliced(i)))
            return true;
    }
    return false;
}

/// A sequence that the end of the line at \p at cuts in two is appended behind the beginning of the
/// CONC line below. Returns the index that comes next, or -1 if there is none.
qsizetype joinCutSequence(QByteArrayView bytes, qsizetype at, DecodedText *text)
{
    const qsizetype size = sequenceSize(bytes.at(at));
    const auto *const limit = bytes.begin() + std::min(at + size, bytes.size());
    const qsizetype lineEnd = std::find_if(bytes.begin() + at, limit, isLineEnd) - bytes.begin();
    const qsizetype rest = size - (lineEnd - at);
    const qsizetype value = rest > 0 ? continuationOf(bytes, lineEnd) : -1;
    if (value < 0 || bytes.size() - value < rest)
        return -1;
    const QByteArray sequence =
        bytes.sliced(at, size - rest).toByteArray() + bytes.sliced(value, rest).toByteArray();
    if (!sequence.isValidUtf8() || isControl(sequence))
        return -1;
    text->appendCut(bytes.sliced(lineEnd, value - lineEnd));
    text->append(sequence);
    return value + rest;
}

Decoded decodeUtf8(QByteArrayView bytes)
{
    if (bytes.isValidUtf8() && !hasControls(bytes))
        return {QByteArray::fromRawData(bytes.data(), bytes.size()), {}, {}};

    DecodedText text(bytes.size());
    for (qsizetype i = 0; i < bytes.size();) {
        const qsizetype end = endOfAscii(bytes, i);
        text.append(bytes.sliced(i, end - i));
        i = end;
        if (i == bytes.size())
            break;
        const qsizetype size = sequenceSize(bytes.at(i));
        if (size > 0 && size <= bytes.size() - i && bytes.sliced(i, size).isValidUtf8()) {
            const QByteArrayView sequence = bytes.sliced(i, size);
            if (isControl(sequence))
                text.appendUndecoded(sequence);
            else
                text.append(sequence);
            i += size;
        } else if (const qsizetype next = joinCutSequence(bytes, i, &text); next > 0) {
            i = next;
        } else {
            text.appendUndecoded(bytes.sliced(i, 1));
            ++i;
        }
    }
    return text.take();
}

/// \p unitAt reads the 16 bits at an address.
Decoded decodeUtf16(QByteArrayView bytes, char16_t (*unitAt)(const void *))
{
    DecodedText text(bytes.size() / 2);
    QString decoded; // what is not in the text yet
    const auto flush = [&] {
        text.append(decoded.toUtf8());
        decoded.resize(0);
    };

    const qsizetype units = bytes.size() / 2;
    const auto unit = [&](qsizetype i) { return QChar(unitAt(bytes.data() + 2 * i)); };
    for (qsizetype i = units > 0 && unit(0) == QChar::ByteOrderMark ? 1 : 0; i < units; ++i) {
        const QChar c = unit(i);
        if (c.isHighSurrogate() && i + 1 < units && unit(i + 1).isLowSurrogate()) {
            decoded += c;
            decoded += unit(++i);
        } else if (c.isSurrogate() || (c.unicode() >= 0x80 && c.unicode() < 0xA0)) {
            flush();
            text.appendUndecoded(bytes.sliced(2 * i, 2));
        } else {
            decoded += c;
            if (decoded.size() >= MaxPending)
                flush();
        }
    }
    flush();
    if (bytes.size() % 2 != 0)
        text.appendUndecoded(bytes.last(1));
    return text.take();
}

Decoded decodeBytes(QByteArrayView bytes, const CharacterTable &table)
{
    DecodedText text(bytes.size());
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const qsizetype end = endOfAscii(bytes, i);
        text.append(bytes.sliced(i, end - i));
        i = end;
        if (i == bytes.size())
            break;
        const QByteArray &character = table[uchar(bytes.at(i)) - 0x80];
        if (character.isEmpty())
            text.appendUndecoded(bytes.sliced(i, 1));
        else
            text.append(character);
    }
    return text.take();
}

/// The character that a mark can stand in front of, null if the byte has none. An accent by itself
/// stands in front of a blank.
QChar anselBase(char byte)
{
    if (isAscii(byte))
        return byte < ' ' || byte == 0x7F ? QChar() : QLatin1Char(byte);
    return isAnselMark(byte) ? QChar() : anselCharacter(byte);
}

/// Letters with one mark, which is nearly all, are composed once each.
class AnselLetters
{
public:
    QByteArray utf8(QByteArrayView marks, QChar base)
    {
        if (marks.size() > 1)
            return anselLetter(marks, base).toUtf8();
        QByteArray &letter = m_letters[{marks.front(), base}];
        if (letter.isEmpty())
            letter = anselLetter(marks, base).toUtf8();
        return letter;
    }

private:
    QHash<std::pair<char, QChar>, QByteArray> m_letters;
};

/// The marks in front of \p at with what they belong to, if there is such. Returns the index that
/// comes next.
qsizetype appendMarked(QByteArrayView bytes, QByteArrayView marks, qsizetype at,
                       AnselLetters *letters, DecodedText *text)
{
    if (const qsizetype value = continuationOf(bytes, at);
        value >= 0 && value < bytes.size() && marks.size() <= MaxMarks
        && anselBase(bytes.at(value)).isLetter()) {
        // The letter of a mark that ends its line is the first one of the CONC line below.
        text->appendCut(bytes.sliced(at, value - at));
        at = value;
    }
    const QChar base = at < bytes.size() ? anselBase(bytes.at(at)) : QChar();
    if (!base.isNull() && marks.size() <= MaxMarks) {
        text->append(letters->utf8(marks, base));
        return at + 1;
    }
    for (const char &mark : marks)
        text->appendUndecoded({&mark, 1});
    return at;
}

Decoded decodeAnsel(QByteArrayView bytes)
{
    DecodedText text(bytes.size());
    AnselLetters letters;
    for (qsizetype i = 0; i < bytes.size();) {
        const qsizetype end = endOfAscii(bytes, i);
        text.append(bytes.sliced(i, end - i));
        const auto *const marksEnd =
            std::find_if_not(bytes.begin() + end, bytes.end(), isAnselMark);
        i = marksEnd - bytes.begin();
        if (i > end) {
            i = appendMarked(bytes, bytes.sliced(end, i - end), i, &letters, &text);
        } else if (i < bytes.size()) {
            const QChar character = anselCharacter(bytes.at(i));
            if (character.isNull())
                text.appendUndecoded(bytes.sliced(i, 1));
            else
                text.append(QString(character).toUtf8());
            ++i;
        }
    }
    return text.take();
}

} // namespace

Decoded decode(QByteArrayView bytes, Encoding encoding)
{
    if (encoding == Encoding::Utf16LE)
        return decodeUtf16(bytes, qFromLittleEndian<char16_t>);
    if (encoding == Encoding::Utf16BE)
        return decodeUtf16(bytes, qFromBigEndian<char16_t>);

    // The mark of UTF-8 is no text in any other encoding either that a user may choose against it.
    if (bytes.startsWith("\xEF\xBB\xBF"))
        bytes = bytes.sliced(3);
    switch (encoding) {
    case Encoding::Utf8:
        return decodeUtf8(bytes);
    case Encoding::Ansel:
        return decodeAnsel(bytes);
    default:
        return decodeBytes(bytes, tableOf(encoding));
    }
}
