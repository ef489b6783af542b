#include "testmain.h"

#include "encoding.h"

#include <QTest>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

struct Character
{
    char byte;
    char16_t character;
    const char *name; // as the standard has it
};

constexpr Character Letters[] = {
    {'\xA1', 0x0141, "slash L"},
    {'\xA2', 0x00D8, "slash O"},
    {'\xA3', 0x0110, "slash D"},
    {'\xA4', 0x00DE, "thorn, upper case"},
    {'\xA5', 0x00C6, "ligature AE"},
    {'\xA6', 0x0152, "ligature OE"},
    {'\xA7', 0x02B9, "single prime"},
    {'\xA8', 0x00B7, "middle dot"},
    {'\xA9', 0x266D, "musical flat"},
    {'\xAA', 0x00AE, "registered sign"},
    {'\xAB', 0x00B1, "plus-or-minus"},
    {'\xAC', 0x01A0, "hook O"},
    {'\xAD', 0x01AF, "hook U"},
    {'\xAE', 0x02BE, "alif"},
    {'\xB0', 0x02BF, "ayn"},
    {'\xB1', 0x0142, "slash l"},
    {'\xB2', 0x00F8, "slash o"},
    {'\xB3', 0x0111, "slash d"},
    {'\xB4', 0x00FE, "thorn, lower case"},
    {'\xB5', 0x00E6, "ligature ae"},
    {'\xB6', 0x0153, "ligature oe"},
    {'\xB7', 0x02BA, "double prime"},
    {'\xB8', 0x0131, "dotless i"},
    {'\xB9', 0x00A3, "british pound"},
    {'\xBA', 0x00F0, "eth"},
    {'\xBC', 0x01A1, "hook o"},
    {'\xBD', 0x01B0, "hook u"},
    {'\xBE', 0x25A1, "empty box"},
    {'\xBF', 0x25A0, "black box"},
    {'\xC0', 0x00B0, "degree sign"},
    {'\xC1', 0x2113, "script l"},
    {'\xC2', 0x2117, "phonograph copyright mark"},
    {'\xC3', 0x00A9, "copyright symbol"},
    {'\xC4', 0x266F, "musical sharp"},
    {'\xC5', 0x00BF, "inverted question mark"},
    {'\xC6', 0x00A1, "inverted exclamation mark"},
    {'\xCD', 0x0065, "midline e"},
    {'\xCE', 0x006F, "midline o"},
    {'\xCF', 0x00DF, "es zet"},
};

constexpr Character Marks[] = {
    {'\xE0', 0x0309, "low rising tone mark"},
    {'\xE1', 0x0300, "grave accent"},
    {'\xE2', 0x0301, "acute accent"},
    {'\xE3', 0x0302, "circumflex accent"},
    {'\xE4', 0x0303, "tilde"},
    {'\xE5', 0x0304, "macron"},
    {'\xE6', 0x0306, "breve"},
    {'\xE7', 0x0307, "dot above"},
    {'\xE8', 0x0308, "umlaut (dieresis)"},
    {'\xE9', 0x030C, "hacek"},
    {'\xEA', 0x030A, "circle above (angstrom)"},
    {'\xEB', 0xFE20, "ligature, left half"},
    {'\xEC', 0xFE21, "ligature, right half"},
    {'\xED', 0x0315, "high comma, off center"},
    {'\xEE', 0x030B, "double acute accent"},
    {'\xEF', 0x0310, "candrabindu"},
    {'\xF0', 0x0327, "cedilla"},
    {'\xF1', 0x0328, "right hook"},
    {'\xF2', 0x0323, "dot below"},
    {'\xF3', 0x0324, "double dot below"},
    {'\xF4', 0x0325, "circle below"},
    {'\xF5', 0x0333, "double underscore"},
    {'\xF6', 0x0332, "underscore"},
    {'\xF7', 0x0326, "left hook"},
    {'\xF8', 0x031C, "right cedilla"},
    {'\xF9', 0x032E, "half circle below"},
    {'\xFA', 0xFE22, "double tilde, left half"},
    {'\xFB', 0xFE23, "double tilde, right half"},
    {'\xFC', 0x0338, "diacritic slash through char"},
    {'\xFE', 0x0313, "high comma, centered"},
};

QString ansel(const QByteArray &bytes)
{
    return QString::fromUtf8(decode(bytes, Encoding::Ansel).utf8);
}

/// The bytes that stand for a character of their own; empty if it has none, or is a mark.
QByteArray baseBytes(QChar c)
{
    if (c >= u' ' && c <= u'~')
        return QByteArray(1, c.toLatin1());
    const auto *const letter = std::find_if(std::begin(Letters), std::end(Letters),
                                            [c](const Character &l) { return c == l.character; });
    return letter == std::end(Letters) ? QByteArray() : QByteArray(1, letter->byte);
}

QByteArray markBytes(QChar c)
{
    const auto *const mark = std::find_if(std::begin(Marks), std::end(Marks),
                                          [c](const Character &m) { return c == m.character; });
    return mark == std::end(Marks) ? QByteArray() : QByteArray(1, mark->byte);
}

/// The decomposition of a letter that Unicode composes, one mark after the other, down to
/// characters of ANSEL: o and u with horn are such. Empty if it is not made of those.
QString partsOf(QChar letter)
{
    static const QHash<QString, QChar> horned{
        {u"O\u031B"_s, u'Ơ'}, {u"o\u031B"_s, u'ơ'}, {u"U\u031B"_s, u'Ư'}, {u"u\u031B"_s, u'ư'}};
    QString parts(letter);
    while (parts.at(0).decompositionTag() == QChar::Canonical)
        parts = parts.at(0).decomposition() + parts.mid(1);
    if (const QChar horn = horned.value(parts.left(2)); !horn.isNull())
        parts = horn + parts.mid(2);
    const bool isAnsel = !baseBytes(parts.at(0)).isEmpty()
                      && std::all_of(parts.begin() + 1, parts.end(),
                                     [](QChar mark) { return !markBytes(mark).isEmpty(); });
    return isAnsel ? parts : QString();
}

} // namespace

/// The character set ANSEL.
class TstAnsel : public QObject
{
    Q_OBJECT

private slots:
    void ascii();
    void letters_data();
    void letters();
    void marks_data();
    void marks();
    void bytesWithoutCharacter();
    void composedLetters();
    void otherOrderOfMarks();
    void placeOfMarks_data();
    void placeOfMarks();
    void tooManyMarks();
    void marksWithoutLetter_data();
    void marksWithoutLetter();
};

void TstAnsel::ascii()
{
    QByteArray bytes;
    for (int c = 0; c < 0x80; ++c)
        bytes += char(c);
    const Decoded decoded = decode(bytes, Encoding::Ansel);
    QCOMPARE(decoded.utf8, bytes);
    QVERIFY(decoded.undecoded.isEmpty());
}

void TstAnsel::letters_data()
{
    QTest::addColumn<char>("byte");
    QTest::addColumn<char16_t>("character");
    for (const Character &letter : Letters)
        QTest::newRow(letter.name) << letter.byte << letter.character;
}

void TstAnsel::letters()
{
    QFETCH(char, byte);
    QFETCH(char16_t, character);

    QCOMPARE(ansel("a" + QByteArray(1, byte) + "b"), u'a' + QString(character) + u'b');
}

void TstAnsel::marks_data()
{
    QTest::addColumn<char>("byte");
    QTest::addColumn<char16_t>("character");
    for (const Character &mark : Marks)
        QTest::newRow(mark.name) << mark.byte << mark.character;
}

void TstAnsel::marks()
{
    QFETCH(char, byte);
    QFETCH(char16_t, character);

    // No mark composes with a q.
    QCOMPARE(ansel("a" + QByteArray(1, byte) + "qb"), u"aq"_s + QChar(character) + u'b');
}

void TstAnsel::bytesWithoutCharacter()
{
    QByteArray without;
    for (int byte = 0x80; byte < 0x100; ++byte) {
        const auto isByte = [byte](const Character &c) { return c.byte == char(byte); };
        if (std::none_of(std::begin(Letters), std::end(Letters), isByte)
            && std::none_of(std::begin(Marks), std::end(Marks), isByte))
            without += char(byte);
    }
    QCOMPARE(without.size(), 128 - 39 - 30);

    const Decoded decoded = decode(without, Encoding::Ansel);
    QCOMPARE(decoded.utf8, '<' + without.toHex('>').toUpper().replace(">", "><") + '>');
    QCOMPARE(decoded.undecoded.size(), without.size());
    for (qsizetype i = 0; i < without.size(); ++i) {
        QCOMPARE(decoded.undecoded.at(i).line, 1);
        QCOMPARE(decoded.undecoded.at(i).column, i + 1);
        QCOMPARE(decoded.undecoded.at(i).bytes, without.sliced(i, 1));
    }
}

/// Every letter that Unicode composes of a character of ANSEL and its marks.
void TstAnsel::composedLetters()
{
    int withOneMark = 0;
    int withTwoMarks = 0;
    for (char16_t code = 0x80; code < 0xFFFF; ++code) {
        const QString letter{QChar(code)};
        const QString parts = partsOf(letter.at(0));
        // Those that have a decomposition, but that nothing composes to, such as the Kelvin sign.
        if (parts.size() < 2 || letter.normalized(QString::NormalizationForm_C) != letter)
            continue;

        QByteArray bytes = baseBytes(parts.at(0));
        for (const QChar mark : parts.sliced(1))
            bytes.prepend(markBytes(mark));
        QCOMPARE(ansel("x" + bytes + "x"), u'x' + letter + u'x');
        ++(parts.size() == 2 ? withOneMark : withTwoMarks);
    }
    QCOMPARE(withOneMark, 340);
    QCOMPARE(withTwoMarks, 94);
}

void TstAnsel::otherOrderOfMarks()
{
    // Outer mark first, then inner mark first.
    QCOMPARE(ansel("\xE2\xE3\x61"), u"\u1EA5"_s);
    QCOMPARE(ansel("\xE3\xE2\x61"), u"\u1EA5"_s);
    // Above and below, which Unicode has in one order only.
    QCOMPARE(ansel("\xF2\xE3o"), u"\u1ED9"_s);
    QCOMPARE(ansel("\xE3\xF2o"), u"\u1ED9"_s);
    // Both compose, or neither does: the mark next to the letter is the inner one.
    QCOMPARE(ansel("\xE5\xE8U"), u"\u01D5"_s);
    QCOMPARE(ansel("\xE8\xE5U"), u"\u1E7A"_s);
    QCOMPARE(ansel("\xE2\xE1q"), u"q\u0300\u0301"_s);
    QCOMPARE(ansel("\xE1\xE2q"), u"q\u0301\u0300"_s);
}

void TstAnsel::placeOfMarks_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");

    QTest::newRow("one letter after the other") << "n\xE2\x65\xE2\x65"_ba << u"néé"_s;
    QTest::newRow("ligature of two letters") << "\xEBt\xECs"_ba << u"t\uFE20s\uFE21"_s;
    QTest::newRow("double tilde over two letters") << "\xFAn\xFBg"_ba << u"n\uFE22g\uFE23"_s;
    QTest::newRow("letter that is no ASCII") << "\xE2\xB5"_ba << u"ǽ"_s;
    QTest::newRow("accent by itself, over a blank") << "a \xE2 b"_ba << u"a  \u0301b"_s;
    QTest::newRow("in front of a digit") << "\xE3\x31"_ba << u"1\u0302"_s;
    QTest::newRow("letter in the CONC line below")
        << "1 NOTE Andr\xE2\n2 CONC e\n"_ba << u"1 NOTE Andr\n2 CONC é\n"_s;
    QTest::newRow("letter below, other line ends and blanks")
        << "1 NOTE a\xF2\xE3\r\n\t 12  CONC o\r\n"_ba << u"1 NOTE a\r\n\t 12  CONC ộ\r\n"_s;
    QTest::newRow("letter below, line ends of old")
        << "1 NOTE \xE1\r2 CONC a"_ba << u"1 NOTE \r2 CONC à"_s;
}

void TstAnsel::placeOfMarks()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, expected);

    const Decoded decoded = decode(bytes, Encoding::Ansel);
    QCOMPARE(QString::fromUtf8(decoded.utf8), expected);
    QVERIFY(decoded.undecoded.isEmpty());
    QCOMPARE(decoded.cutLines,
             expected.contains("CONC"_L1) ? QList<qint64>({1, 2}) : QList<qint64>());
}

/// The time that sorting marks takes grows with the square of their number.
void TstAnsel::tooManyMarks()
{
    QCOMPARE(decode(QByteArray("\xE2").repeated(8) + 'q', Encoding::Ansel).utf8,
             'q' + "\u0301"_ba.repeated(8));

    const QByteArray marks = QByteArray("\xE2\xF2").repeated(50000);
    const Decoded decoded = decode(marks + 'q' + marks + "\n2 CONC q", Encoding::Ansel);
    const QByteArray expected = "<E2><F2>"_ba.repeated(50000);
    QVERIFY(decoded.utf8 == expected + 'q' + expected + "\n2 CONC q");
    QCOMPARE(decoded.undecoded.size(), 200000);
}

void TstAnsel::marksWithoutLetter_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<qint64>("line");
    QTest::addColumn<qint64>("column");

    QTest::newRow("at the end of the file") << "0 A\n1 B \xE2"_ba
                                            << "0 A\n1 B <E2>"_ba << 2LL << 5LL;
    QTest::newRow("at the end of a line") << "1 B a\xE2\n1 C e\n"_ba
                                          << "1 B a<E2>\n1 C e\n"_ba << 1LL << 6LL;
    QTest::newRow("above a line of another value") << "1 B a\xE2\n2 CONT e\n"_ba
                                                   << "1 B a<E2>\n2 CONT e\n"_ba << 1LL << 6LL;
    QTest::newRow("above a CONC line that has no value")
        << "1 B a\xE2\r\n2 CONC \r\n"_ba
        << "1 B a<E2>\r\n2 CONC \r\n"_ba << 1LL << 6LL;
    QTest::newRow("above a CONC line that begins with a blank")
        << "1 B a\xE2\n2 CONC  e\n"_ba
        << "1 B a<E2>\n2 CONC  e\n"_ba << 1LL << 6LL;
    QTest::newRow("above a CONC line that ends the file") << "1 B a\xE2\n2 CONC "_ba
                                                          << "1 B a<E2>\n2 CONC "_ba << 1LL << 6LL;
    QTest::newRow("in front of a tab") << "1 B \xE2\t."_ba
                                       << "1 B <E2>\t."_ba << 1LL << 5LL;
    QTest::newRow("behind letters that are composed") << "\xE2\x65\xF2q\xE2"_ba
                                                      << "é\x71\u0323<E2>"_ba << 1LL << 4LL;
}

void TstAnsel::marksWithoutLetter()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, expected);
    QFETCH(qint64, line);
    QFETCH(qint64, column);

    const Decoded decoded = decode(bytes, Encoding::Ansel);
    QCOMPARE(decoded.utf8, expected);
    QCOMPARE(decoded.undecoded.size(), 1);
    QCOMPARE(decoded.undecoded.first().line, line);
    QCOMPARE(decoded.undecoded.first().column, column);
    QCOMPARE(decoded.undecoded.first().bytes, "\xE2");
}

VARLUNE_TEST_MAIN(TstAnsel)
#include "tst_ansel.moc"
