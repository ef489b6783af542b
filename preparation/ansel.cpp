#include "ansel.h"

#include <algorithm>

namespace {

// From 0xA0, sixteen a row; 0 where there is no character. The boxes, the e and the o with a line
// through the middle, which Unicode has without it, the sharp s and the slash through a letter are
// the additions of GEDCOM.
constexpr char16_t Characters[] = {
    // A0: L, O and D with stroke, thorn, AE, OE, prime, middle dot, flat, registered, plus-minus, O
    // and U with horn, alif
    0, 0x0141, 0x00D8, 0x0110, 0x00DE, 0x00C6, 0x0152, 0x02B9, //
    0x00B7, 0x266D, 0x00AE, 0x00B1, 0x01A0, 0x01AF, 0x02BE, 0,
    // B0: ayn, the small letters, double prime, dotless i, pound, eth, o and u with horn, empty and
    // black box
    0x02BF, 0x0142, 0x00F8, 0x0111, 0x00FE, 0x00E6, 0x0153, 0x02BA, //
    0x0131, 0x00A3, 0x00F0, 0, 0x01A1, 0x01B0, 0x25A1, 0x25A0,
    // C0: degree, script l, sound recording copyright, copyright, sharp, inverted question and
    // exclamation mark; e and o with a line, sharp s
    0x00B0, 0x2113, 0x2117, 0x00A9, 0x266F, 0x00BF, 0x00A1, 0, //
    0, 0, 0, 0, 0, 0x0065, 0x006F, 0x00DF,
    // D0
    0, 0, 0, 0, 0, 0, 0, 0, //
    0, 0, 0, 0, 0, 0, 0, 0,
    // E0: hook above, grave, acute, circumflex, tilde, macron, breve, dot above, diaeresis, caron,
    // ring above, the halves of a ligature, comma above right, double acute, candrabindu
    0x0309, 0x0300, 0x0301, 0x0302, 0x0303, 0x0304, 0x0306, 0x0307, //
    0x0308, 0x030C, 0x030A, 0xFE20, 0xFE21, 0x0315, 0x030B, 0x0310,
    // F0: cedilla, ogonek, dot below, two dots below, ring below, double underscore, underscore,
    // comma below, half ring below, breve below, the halves of a double tilde, slash, comma above
    0x0327, 0x0328, 0x0323, 0x0324, 0x0325, 0x0333, 0x0332, 0x0326, //
    0x031C, 0x032E, 0xFE22, 0xFE23, 0x0338, 0, 0x0313, 0};

} // namespace

QChar anselCharacter(char byte)
{
    return uchar(byte) < 0xA0 ? QChar() : QChar(Characters[uchar(byte) - 0xA0]);
}

bool isAnselMark(char byte)
{
    return uchar(byte) >= 0xE0 && !anselCharacter(byte).isNull();
}

QString anselLetter(QByteArrayView marks, QChar base)
{
    QString inner(base); // the mark next to the letter first
    QString outer(base);
    for (qsizetype i = 0; i < marks.size(); ++i) {
        inner += anselCharacter(marks.at(marks.size() - 1 - i));
        outer += anselCharacter(marks.at(i));
    }
    return std::min(inner.normalized(QString::NormalizationForm_C),
                    outer.normalized(QString::NormalizationForm_C),
                    [](const QString &a, const QString &b) { return a.size() < b.size(); });
}
