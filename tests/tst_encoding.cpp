#include "testmain.h"

#include "encoding.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// A file with that HEAD.CHAR, without one if it is empty, and a person of that name.
QByteArray gedcom(const QByteArray &charset, const QByteArray &name)
{
    return "0 HEAD\n1 SOUR TEST\n" + (charset.isEmpty() ? "" : "1 CHAR " + charset + '\n')
         + "1 GEDC\n0 @I1@ INDI\n1 NAME " + name + "\n0 TRLR\n";
}

/// \p text in UTF-16, the less significant byte first.
QByteArray utf16LE(const QString &text)
{
    QByteArray bytes;
    for (const QChar c : text) {
        bytes += char(c.cell());
        bytes += char(c.row());
    }
    return bytes;
}

/// The two bytes of each unit change places.
QByteArray swapped(QByteArray bytes)
{
    for (qsizetype i = 0; i + 1 < bytes.size(); i += 2)
        std::swap(bytes[i], bytes[i + 1]);
    return bytes;
}

QByteArray bytesFrom(int first, int last)
{
    QByteArray bytes;
    for (int byte = first; byte <= last; ++byte)
        bytes += char(byte);
    return bytes;
}

/// What could not be decoded: "2:5 E9", one after the other.
QStringList placesOf(const Decoded &decoded)
{
    QStringList places;
    for (const Undecoded &piece : decoded.undecoded)
        places += u"%1:%2 %3"_s.arg(QString::number(piece.line), QString::number(piece.column),
                                    QString::fromLatin1(piece.bytes.toHex().toUpper()));
    return places;
}

} // namespace

/// Which encoding a file has, and its text as UTF-8. ANSEL has a test of its own.
class TstEncoding : public QObject
{
    Q_OBJECT

private slots:
    void names();
    void namesInUse_data();
    void namesInUse();
    void characters_data();
    void characters();
    void decodes_data();
    void decodes();
    void validUtf8IsNotCopied();
    void undecoded_data();
    void undecoded();
    void cutSequences_data();
    void cutSequences();
    void chooses_data();
    void chooses();
    void choosesByLetters_data();
    void choosesByLetters();
    void anyBytes();
    void noByteIsLost();
};

void TstEncoding::names()
{
    QStringList names;
    for (const Encoding encoding : allEncodings()) {
        names += encodingName(encoding);
        QCOMPARE(encodingFromName(names.last()), encoding);
        QCOMPARE(encodingFromName(names.last().toLower()), encoding);
    }
    QCOMPARE(names, QStringList({u"UTF-8"_s, u"UTF-16LE"_s, u"UTF-16BE"_s, u"ANSEL"_s,
                                 u"Windows-1252"_s, u"CP437"_s, u"CP850"_s, u"MacRoman"_s,
                                 u"ISO-8859-1"_s, u"ISO-8859-15"_s}));
}

void TstEncoding::namesInUse_data()
{
    QTest::addColumn<Encoding>("expected");

    QTest::newRow("utf8") << Encoding::Utf8;
    QTest::newRow("ANSI") << Encoding::Windows1252;
    QTest::newRow("ANSI 1252") << Encoding::Windows1252;
    QTest::newRow(" cp-1252 ") << Encoding::Windows1252;
    QTest::newRow("IBM WINDOWS") << Encoding::Windows1252;
    QTest::newRow("IBMPC") << Encoding::Cp437;
    QTest::newRow("MS-DOS") << Encoding::Cp437;
    QTest::newRow("IBM 850") << Encoding::Cp850;
    QTest::newRow("Macintosh") << Encoding::MacRoman;
    QTest::newRow("Latin 1") << Encoding::Latin1;
    QTest::newRow("iso_8859-1") << Encoding::Latin1;
    QTest::newRow("ISO8859-15") << Encoding::Latin9;
}

void TstEncoding::namesInUse()
{
    QFETCH(Encoding, expected);

    QCOMPARE(encodingFromName(QString::fromLatin1(QTest::currentDataTag())), expected);
    // They say too little, or nothing that is known.
    for (const QString &name :
         {u"UNICODE"_s, u"ASCII"_s, u"UTF-16"_s, u"KOI8"_s, u"-"_s, QString()})
        QCOMPARE(encodingFromName(name), std::nullopt);
}

void TstEncoding::characters_data()
{
    QTest::addColumn<Encoding>("encoding");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<QString>("expected");

    QTest::newRow("Windows-1252 from 82")
        << Encoding::Windows1252 << 0x82 << 0x9F << u"‚ƒ„…†‡ˆ‰Š‹Œ<8D>Ž<8F><90>‘’“”•–—˜™š›œ<9D>žŸ"_s;
    QTest::newRow("Windows-1252 from A0")
        << Encoding::Windows1252 << 0xA0 << 0xFF
        << u"\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶·¸¹º»¼½¾¿ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß"
           u"àáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ"_s;
    QTest::newRow("ISO 8859-1, without the control characters")
        << Encoding::Latin1 << 0x9E << 0xFF
        << u"<9E><9F>\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶·¸¹º»¼½¾¿ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß"
           u"àáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ"_s;
    QTest::newRow("ISO 8859-15, without the control characters")
        << Encoding::Latin9 << 0x9E << 0xFF
        << u"<9E><9F>\u00A0¡¢£€¥Š§š©ª«¬\u00AD®¯°±²³Žµ¶·ž¹º»ŒœŸ¿ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß"
           u"àáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ"_s;
    QTest::newRow("CP437")
        << Encoding::Cp437 << 0x80 << 0xFF
        << u"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒáíóúñÑªº¿⌐¬½¼¡«»░▒▓│┤╡╢╖╕╣║╗╝╜╛┐"
           u"└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀αßΓπΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00A0"_s;
    QTest::newRow("CP850")
        << Encoding::Cp850 << 0x80 << 0xFF
        << u"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜø£Ø×ƒáíóúñÑªº¿®¬½¼¡«»░▒▓│┤ÁÂÀ©╣║╗╝¢¥┐"
           u"└┴┬├─┼ãÃ╚╔╩╦╠═╬¤ðÐÊËÈıÍÎÏ┘┌█▄¦Ì▀ÓßÔÒõÕµþÞÚÛÙýÝ¯´\u00AD±‗¾¶§÷¸°¨·¹³²■\u00A0"_s;
    // BD and C6, an omega and a delta, are signs of their own or Greek letters, as the system has
    // it.
    QTest::newRow("MacRoman to BC")
        << Encoding::MacRoman << 0x80 << 0xBC
        << u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªº"_s;
    QTest::newRow("MacRoman to C5") << Encoding::MacRoman << 0xBE << 0xC5 << u"æø¿¡¬√ƒ≈"_s;
    QTest::newRow("MacRoman from C7, without the logo")
        << Encoding::MacRoman << 0xC7 << 0xFF
        << u"«»…\u00A0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ<F0>ÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ"_s;
}

void TstEncoding::characters()
{
    QFETCH(Encoding, encoding);
    QFETCH(int, first);
    QFETCH(int, last);
    QFETCH(QString, expected);

    QCOMPARE(QString::fromUtf8(decode(bytesFrom(first, last), encoding).utf8), expected);
    const QByteArray ascii = bytesFrom(0, 0x7F);
    QCOMPARE(decode(ascii, encoding).utf8, ascii);
}

void TstEncoding::decodes_data()
{
    QTest::addColumn<Encoding>("encoding");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("UTF-8") << Encoding::Utf8 << "Étienne\r\n/LEFÈVRE/\rœ𝄞\n"_ba;
    QTest::newRow("UTF-8 with mark") << Encoding::Utf8 << "\uFEFFÉtienne\r\n/LEFÈVRE/\rœ𝄞\n"_ba;
    const QByteArray utf16 = utf16LE(u"Étienne\r\n/LEFÈVRE/\rœ𝄞\n"_s);
    QTest::newRow("UTF-16LE") << Encoding::Utf16LE << utf16;
    QTest::newRow("UTF-16LE with mark") << Encoding::Utf16LE << "\xFF\xFE"_ba + utf16;
    QTest::newRow("UTF-16BE") << Encoding::Utf16BE << swapped(utf16);
    QTest::newRow("UTF-16BE with mark") << Encoding::Utf16BE << "\xFE\xFF"_ba + swapped(utf16);
}

void TstEncoding::decodes()
{
    QFETCH(Encoding, encoding);
    QFETCH(QByteArray, bytes);

    const Decoded decoded = decode(bytes, encoding);
    QCOMPARE(QString::fromUtf8(decoded.utf8), u"Étienne\r\n/LEFÈVRE/\rœ𝄞\n"_s);
    QVERIFY(decoded.undecoded.isEmpty());
    // Of a text that is longer than what is converted at once, too.
    const QByteArray text = bytes + bytes.last(encoding == Encoding::Utf8 ? 5 : 6).repeated(9999);
    QCOMPARE(decode(text, encoding).utf8, decoded.utf8 + decoded.utf8.last(5).repeated(9999));
}

void TstEncoding::validUtf8IsNotCopied()
{
    const QByteArray bytes = "\uFEFF1 NAME Étienne\n"_ba;
    const Decoded decoded = decode(bytes, Encoding::Utf8);
    QCOMPARE(decoded.utf8.constData(), bytes.constData() + 3);
    QCOMPARE(decoded.utf8.size(), bytes.size() - 3);

    QCOMPARE(decode({}, Encoding::Utf8).utf8, QByteArray());
    QCOMPARE(decode("\uFEFF", Encoding::Windows1252).utf8, QByteArray());
}

void TstEncoding::undecoded_data()
{
    QTest::addColumn<Encoding>("encoding");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<QStringList>("places");

    QTest::newRow("line feeds") << Encoding::Utf8 << "É\n\nÉé\xE9!"_ba
                                << "É\n\nÉé<E9>!"_ba << QStringList{u"3:3 E9"_s};
    QTest::newRow("carriage returns") << Encoding::Utf8 << "É\r\rÉé\xE9!"_ba
                                      << "É\r\rÉé<E9>!"_ba << QStringList{u"3:3 E9"_s};
    QTest::newRow("both") << Encoding::Utf8 << "É\r\n\r\nÉé\xE9!"_ba
                          << "É\r\n\r\nÉé<E9>!"_ba << QStringList{u"3:3 E9"_s};
    QTest::newRow("mixed") << Encoding::Utf8 << "\n\r\r\n\n\r\xE9"_ba
                           << "\n\r\r\n\n\r<E9>"_ba << QStringList{u"6:1 E9"_s};
    QTest::newRow("line end between the bytes of one")
        << Encoding::Utf8 << "\xE9\r\xE9\n\xE9"_ba
        << "<E9>\r<E9>\n<E9>"_ba << QStringList{u"1:1 E9"_s, u"2:1 E9"_s, u"3:1 E9"_s};
    QTest::newRow("characters of two to four bytes, and the digits of another one")
        << Encoding::Utf8 << "éœ𝄞\xE9xy\xFF"_ba
        << "éœ𝄞<E9>xy<FF>"_ba << QStringList{u"1:4 E9"_s, u"1:7 FF"_s};
    QTest::newRow("mark is not counted") << Encoding::Utf8 << "\uFEFFa\xE9"_ba
                                         << "a<E9>"_ba << QStringList{u"1:2 E9"_s};
    QTest::newRow("too long for its character")
        << Encoding::Utf8 << "\xC0\xAF"_ba
        << "<C0><AF>"_ba << QStringList{u"1:1 C0"_s, u"1:2 AF"_s};
    QTest::newRow("half a pair in UTF-8")
        << Encoding::Utf8 << "\xED\xA0\x80"_ba
        << "<ED><A0><80>"_ba << QStringList{u"1:1 ED"_s, u"1:2 A0"_s, u"1:3 80"_s};
    QTest::newRow("beyond Unicode")
        << Encoding::Utf8 << "\xF4\x90\x80\x80!"_ba
        << "<F4><90><80><80>!"_ba
        << QStringList{u"1:1 F4"_s, u"1:2 90"_s, u"1:3 80"_s, u"1:4 80"_s};
    QTest::newRow("broken off by the end")
        << Encoding::Utf8 << "a\xE2\x82"_ba
        << "a<E2><82>"_ba << QStringList{u"1:2 E2"_s, u"1:3 82"_s};
    QTest::newRow("single byte") << Encoding::Windows1252 << "\xE9\r\n\xE9\x81."_ba
                                 << "é\r\né<81>."_ba << QStringList{u"2:2 81"_s};
    QTest::newRow("control character") << Encoding::Latin1 << "l\x92\x61n"_ba
                                       << "l<92>an"_ba << QStringList{u"1:2 92"_s};
    QTest::newRow("odd byte at the end") << Encoding::Utf16LE << utf16LE(u"é\n𝄞a"_s) + 'b'
                                         << "é\n𝄞a<62>"_ba << QStringList{u"2:3 62"_s};
    QTest::newRow("odd byte alone") << Encoding::Utf16BE << "b"_ba
                                    << "<62>"_ba << QStringList{u"1:1 62"_s};
    QTest::newRow("half a pair at the end")
        << Encoding::Utf16LE << utf16LE(u"é\n"_s) + "\x34\xD8"_ba
        << "é\n<34D8>"_ba << QStringList{u"2:1 34D8"_s};
    QTest::newRow("halves in the wrong order")
        << Encoding::Utf16BE << "\xDD\x1E\xD8\x34\x00\x61"_ba
        << "<DD1E><D834>a"_ba << QStringList{u"1:1 DD1E"_s, u"1:2 D834"_s};
}

void TstEncoding::undecoded()
{
    QFETCH(Encoding, encoding);
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, expected);
    QFETCH(QStringList, places);

    const Decoded decoded = decode(bytes, encoding);
    QCOMPARE(decoded.utf8, expected);
    QCOMPARE(placesOf(decoded), places);
}

void TstEncoding::cutSequences_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("two bytes") << "1 NOTE Andr\xC3\n2 CONC \xA9!\n"_ba
                               << "1 NOTE Andr\n2 CONC é!\n"_ba;
    QTest::newRow("two of three bytes") << "1 NOTE c\xC5\x93ur \xE2\x82\r\n2 CONC \xAC\r\n"_ba
                                        << "1 NOTE cœur \r\n2 CONC €\r\n"_ba;
    QTest::newRow("one of four bytes, to the end of the file")
        << "1 NOTE \xF0\r 2 CONC \x9D\x84\x9E"_ba
        << "1 NOTE \r 2 CONC 𝄞"_ba;
    QTest::newRow("next line is no CONC") << "1 NOTE Andr\xC3\n2 CONT \xA9\n"_ba
                                          << "1 NOTE Andr<C3>\n2 CONT <A9>\n"_ba;
    QTest::newRow("no second half") << "1 NOTE Andr\xC3\n2 CONC e\n"_ba
                                    << "1 NOTE Andr<C3>\n2 CONC e\n"_ba;
    QTest::newRow("second half too short") << "1 NOTE \xE2\n2 CONC \x82"_ba
                                           << "1 NOTE <E2>\n2 CONC <82>"_ba;
    QTest::newRow("not at the end of its line") << "1 NOTE \xC3 \n2 CONC \xA9\n"_ba
                                                << "1 NOTE <C3> \n2 CONC <A9>\n"_ba;
}

void TstEncoding::cutSequences()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, expected);

    const Decoded decoded = decode(bytes, Encoding::Utf8);
    QCOMPARE(decoded.utf8, expected);
    QCOMPARE(decoded.undecoded.size(), expected.count('<'));
    QCOMPARE(decoded.cutLines, expected.contains('<') ? QList<qint64>() : QList<qint64>({1, 2}));
}

void TstEncoding::chooses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Encoding>("encoding");
    QTest::addColumn<QString>("reason");

    QTest::newRow("nothing") << ""_ba << Encoding::Utf8 << u"texte en ASCII pur"_s;
    QTest::newRow("mark of UTF-8 wins over all")
        << "\uFEFF"_ba + gedcom("ANSEL", "Andr\xE9") << Encoding::Utf8 << u"marque UTF-8 en tête"_s;
    QTest::newRow("mark of UTF-16LE")
        << "\xFF\xFE\x30\x00"_ba << Encoding::Utf16LE << u"marque UTF-16LE en tête"_s;
    QTest::newRow("mark of UTF-16BE")
        << "\xFE\xFF\x00\x30"_ba << Encoding::Utf16BE << u"marque UTF-16BE en tête"_s;

    const QByteArray utf16 = utf16LE(u"0 HEAD\n1 CHAR UNICODE\n0 @I1@ INDI\n1 NAME Иван\n"_s);
    const QString zeros = u"un octet sur deux est nul, comme en UTF-16"_s;
    QTest::newRow("UTF-16LE without mark") << utf16 << Encoding::Utf16LE << zeros;
    QTest::newRow("UTF-16BE without mark") << swapped(utf16) << Encoding::Utf16BE << zeros;
    QTest::newRow("UTF-16LE behind blanks and line ends")
        << utf16LE(u"\r\n\t \n"_s) + utf16 << Encoding::Utf16LE << zeros;
    QTest::newRow("UTF-16BE of two characters")
        << swapped(utf16LE(u"0 "_s)) << Encoding::Utf16BE << zeros;
    QTest::newRow("zero bytes that make no text")
        << "\x01\x00\x02\x00\x03\x00"_ba << Encoding::Utf8 << u"texte en ASCII pur"_s;

    QTest::newRow("pure ASCII, whatever is declared")
        << gedcom("UNICODE", "Andre") << Encoding::Utf8 << u"texte en ASCII pur"_s;
    QTest::newRow("UTF-8") << gedcom("UTF-8", "André") << Encoding::Utf8 << u"UTF-8 valide"_s;
    QTest::newRow("UTF-8 without HEAD.CHAR")
        << gedcom("", "André") << Encoding::Utf8 << u"UTF-8 valide"_s;
    QTest::newRow("UTF-8 declared as ANSEL")
        << gedcom("ANSEL", "André") << Encoding::Utf8
        << u"UTF-8 valide, bien que HEAD.CHAR dise « ANSEL »"_s;
    QTest::newRow("UTF-8 with a bad byte") << gedcom("UTF-8", "André Désiré\xE9") << Encoding::Utf8
                                           << u"UTF-8 valide, à quelques octets près"_s;
    QTest::newRow("UTF-8 with a bad byte, declared as ANSI")
        << gedcom("ANSI", "André Désiré\xE9") << Encoding::Utf8
        << u"UTF-8 valide, à quelques octets près"_s;

    QTest::newRow("declared ANSEL")
        << gedcom("ANSEL", "Andr\xE2\x65") << Encoding::Ansel << u"HEAD.CHAR dit « ANSEL »"_s;
    QTest::newRow("declared ANSEL, with rare letters")
        << gedcom("ANSEL", "Dvo\xE9r\xE2\x61k") << Encoding::Ansel << u"HEAD.CHAR dit « ANSEL »"_s;
    QTest::newRow("declared ANSI")
        << gedcom("ANSI", "Andr\xE9") << Encoding::Windows1252 << u"HEAD.CHAR dit « ANSI »"_s;
    QTest::newRow("declared with blanks")
        << gedcom("  ansi \t 1252  ", "Andr\xE9") << Encoding::Windows1252
        << u"HEAD.CHAR dit « ansi 1252 »"_s;
    QTest::newRow("declared with other line ends and indentation")
        << gedcom("ANSI", "Andr\xE9").replace('\n', "\r\r ") << Encoding::Windows1252
        << u"HEAD.CHAR dit « ANSI »"_s;
    QTest::newRow("declared behind zeros in front of the level")
        << gedcom("MACINTOSH", "Andr\x8E").replace("0 ", "00 ").replace("1 ", "\t01\t")
        << Encoding::MacRoman << u"HEAD.CHAR dit « MACINTOSH »"_s;
    QTest::newRow("declared in small letters")
        << gedcom("MACINTOSH", "Andr\x8E").replace("CHAR", "char") << Encoding::MacRoman
        << u"HEAD.CHAR dit « MACINTOSH »"_s;
    QTest::newRow("declared IBMPC")
        << gedcom("IBMPC", "Andr\x82") << Encoding::Cp437 << u"HEAD.CHAR dit « IBMPC »"_s;
    QTest::newRow("declared IBMPC, with a letter of CP850")
        << gedcom("IBMPC", "GEN\xD4VE") << Encoding::Cp850 << u"HEAD.CHAR dit « IBMPC »"_s;
    QTest::newRow("declared CP437, with the same byte")
        << gedcom("CP437", "Andr\x82 GEN\xD4VE") << Encoding::Cp437 << u"HEAD.CHAR dit « CP437 »"_s;
    QTest::newRow("declared MACINTOSH") << gedcom("MACINTOSH", "Andr\x8E") << Encoding::MacRoman
                                        << u"HEAD.CHAR dit « MACINTOSH »"_s;
    QTest::newRow("declared ISO 8859-1") << gedcom("ISO-8859-1", "Andr\xE9") << Encoding::Latin1
                                         << u"HEAD.CHAR dit « ISO-8859-1 »"_s;
    QTest::newRow("declared ISO 8859-15")
        << gedcom("ISO8859-15", "c\xBDur") << Encoding::Latin9 << u"HEAD.CHAR dit « ISO8859-15 »"_s;
    QTest::newRow("declared ANSI, with nothing but signs")
        << gedcom("ANSI", "Jean \x86 1850") << Encoding::Windows1252 << u"HEAD.CHAR dit « ANSI »"_s;

    QTest::newRow("declared ANSEL, which it is not")
        << gedcom("ANSEL", "Andr\xE9 Lef\xE8vre") << Encoding::Windows1252
        << u"HEAD.CHAR dit « ANSEL », mais les lettres accentuées sont celles de Windows-1252"_s;
    QTest::newRow("declared ANSI, which it is not")
        << gedcom("ANSI", "Andr\x82 Lef\x8Avre") << Encoding::Cp437
        << u"HEAD.CHAR dit « ANSI », mais les lettres accentuées sont celles de CP437"_s;
    QTest::newRow("declared ISO 8859-1, with quotes of Windows")
        << gedcom("ISO-8859-1", "\x93l\x92\xE9t\xE9\x94") << Encoding::Windows1252
        << u"HEAD.CHAR dit « ISO-8859-1 », mais les lettres accentuées sont celles de "
           u"Windows-1252"_s;
    QTest::newRow("declared UNICODE, 8-bit")
        << gedcom("UNICODE", "Andr\xE9") << Encoding::Windows1252
        << u"HEAD.CHAR dit « UNICODE », mais les lettres accentuées sont celles de Windows-1252"_s;
    QTest::newRow("declared UTF-8, which it is not")
        << gedcom("UTF-8", "Andr\xE9 D\xE9sir\xE9") << Encoding::Windows1252
        << u"HEAD.CHAR dit « UTF-8 », mais les lettres accentuées sont celles de Windows-1252"_s;
    QTest::newRow("declared ASCII, 8-bit")
        << gedcom("ASCII", "Andr\x8E") << Encoding::MacRoman
        << u"HEAD.CHAR dit « ASCII », mais les lettres accentuées sont celles de MacRoman"_s;
    QTest::newRow("declared, but in another record")
        << gedcom("", "Andr\x82\n1 CHAR ANSI") << Encoding::Cp437
        << u"HEAD.CHAR manque, les lettres accentuées sont celles de CP437"_s;
    QTest::newRow("nothing to go by")
        << gedcom("", "\xF7") << Encoding::Windows1252
        << u"HEAD.CHAR manque, rien ne désigne un encodage, Windows-1252 est le plus courant"_s;
}

void TstEncoding::chooses()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Encoding, encoding);
    QFETCH(QString, reason);

    const EncodingChoice choice = chooseEncoding(bytes);
    QCOMPARE(choice.reason, reason);
    QCOMPARE(encodingName(choice.encoding), encodingName(encoding));
}

/// No HEAD.CHAR helps; some of the names have one such letter only.
void TstEncoding::choosesByLetters_data()
{
    QTest::addColumn<Encoding>("encoding");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");

    const auto add = [](Encoding encoding, const QByteArray &bytes, const QString &text) {
        QTest::addRow("%s in %s", qPrintable(text), qPrintable(encodingName(encoding)))
            << encoding << bytes << text;
    };
    add(Encoding::Ansel, "Ren\xE2\x65", u"René"_s);
    add(Encoding::Ansel, "Lef\xE1\x65vre", u"Lefèvre"_s);
    add(Encoding::Ansel, "Fran\xF0\x63ois", u"François"_s);
    add(Encoding::Ansel, "No\xE8\x65l", u"Noël"_s);
    add(Encoding::Ansel, "\xE2\x45tienne", u"Étienne"_s);
    add(Encoding::Ansel, "FRAN\xF0\x43OIS", u"FRANÇOIS"_s);
    add(Encoding::Ansel, "n\xE2\x65 \xE1\x61 N\xE3imes", u"né à Nîmes"_s);
    add(Encoding::Windows1252, "Ren\xE9", u"René"_s);
    add(Encoding::Windows1252, "Lef\xE8vre", u"Lefèvre"_s);
    add(Encoding::Windows1252, "Fran\xE7ois", u"François"_s);
    add(Encoding::Windows1252, "No\xEBl", u"Noël"_s);
    add(Encoding::Windows1252, "\xC9tienne", u"Étienne"_s);
    add(Encoding::Windows1252, "FRAN\xC7OIS", u"FRANÇOIS"_s);
    add(Encoding::Windows1252, "n\xE9 \xE0 N\xEEmes", u"né à Nîmes"_s);
    add(Encoding::Windows1252, "S\x9Cur de l\x92h\xF4pital", u"Sœur de l’hôpital"_s);
    add(Encoding::Windows1252, "M\xFCller", u"Müller"_s);
    add(Encoding::Windows1252, "Mu\xF1oz", u"Muñoz"_s);
    add(Encoding::Cp437, "Ren\x82", u"René"_s);
    add(Encoding::Cp437, "Lef\x8Avre", u"Lefèvre"_s);
    add(Encoding::Cp437, "Fran\x87ois", u"François"_s);
    add(Encoding::Cp437, "No\x89l", u"Noël"_s);
    add(Encoding::Cp437, "\x90tienne", u"Étienne"_s);
    add(Encoding::Cp437, "n\x82 \x85 N\x8Cmes", u"né à Nîmes"_s);
    add(Encoding::Cp850, "Ren\x82 \xB7 GEN\xD4VE", u"René À GENÈVE"_s);
    add(Encoding::Cp850, "Andr\x82 de J\x9Brgensen", u"André de Jørgensen"_s);
    add(Encoding::MacRoman, "Ren\x8E", u"René"_s);
    add(Encoding::MacRoman, "Lef\x8Fvre", u"Lefèvre"_s);
    add(Encoding::MacRoman, "Fran\x8Dois", u"François"_s);
    add(Encoding::MacRoman, "No\x91l", u"Noël"_s);
    add(Encoding::MacRoman, "\x83tienne", u"Étienne"_s);
    add(Encoding::MacRoman, "n\x8E \x88 N\x94mes", u"né à Nîmes"_s);
    add(Encoding::MacRoman, "S\xCFur", u"Sœur"_s);
    add(Encoding::Latin9, "S\xBDur", u"Sœur"_s);
    add(Encoding::Latin9, "\xBCuvre de Ren\xE9", u"Œuvre de René"_s);
}

void TstEncoding::choosesByLetters()
{
    QFETCH(Encoding, encoding);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);

    const QByteArray file = gedcom({}, bytes);
    const EncodingChoice choice = chooseEncoding(file);
    QCOMPARE(choice.reason, u"HEAD.CHAR manque, les lettres accentuées sont celles de "_s
                                + encodingName(encoding));
    QCOMPARE(encodingName(choice.encoding), encodingName(encoding));
    QCOMPARE(QString::fromUtf8(decode(file, encoding).utf8),
             QString::fromUtf8(gedcom({}, text.toUtf8())));
}

/// Bytes by chance, of which some are usual ones: the result is text, and what does not decode
/// stands where it is said to.
void TstEncoding::anyBytes()
{
    QRandomGenerator chance(14);
    static const QRegularExpression lineEnd(u"\r\n|\r|\n"_s);
    for (int round = 0; round < 300; ++round) {
        QByteArray bytes;
        for (int i = chance.bounded(120); i > 0; --i)
            bytes += chance.bounded(3) == 0
                       ? QByteArrayList{"\n",         "\r",   "\r\n",     "\n2 CONC ",
                                        "\n2 CONC e", "\xC3", "\xE2\x82", "1 CHAR ANSEL\n",
                                        "\x00"_ba}
                             .at(chance.bounded(9))
                       : QByteArray(1, char(chance.bounded(256)));

        QVERIFY(!chooseEncoding(bytes).reason.isEmpty());
        for (const Encoding encoding : allEncodings()) {
            const Decoded decoded = decode(bytes, encoding);
            QVERIFY(decoded.utf8.isValidUtf8());
            const QStringList lines = QString::fromUtf8(decoded.utf8).split(lineEnd);
            const Undecoded *before = nullptr;
            qsizetype shift = 0; // what the digits have more than the piece they stand for
            for (const Undecoded &piece : decoded.undecoded) {
                if (!before || before->line != piece.line)
                    shift = 0;
                const QString digits =
                    u'<' + QString::fromLatin1(piece.bytes.toHex().toUpper()) + u'>';
                QCOMPARE(
                    lines.at(piece.line - 1).toUcs4().mid(piece.column - 1 + shift, digits.size()),
                    digits.toUcs4());
                shift += digits.size() - 1;
                before = &piece;
            }
        }
    }
}

void TstEncoding::noByteIsLost()
{
    QRandomGenerator chance(1914);
    for (int round = 0; round < 300; ++round) {
        QByteArray bytes = "é"_ba;
        for (int i = chance.bounded(120); i > 0; --i)
            bytes += char(chance.bounded(256));
        bytes.replace('<', '>');

        const Decoded decoded = decode(bytes, Encoding::Utf8);
        QByteArray restored;
        for (qsizetype i = 0; i < decoded.utf8.size(); ++i) {
            if (decoded.utf8.at(i) == '<') {
                const qsizetype end = decoded.utf8.indexOf('>', i);
                restored += QByteArray::fromHex(decoded.utf8.sliced(i + 1, end - i - 1));
                i = end;
            } else {
                restored += decoded.utf8.at(i);
            }
        }
        QCOMPARE(restored, bytes);
    }
}

VARLUNE_TEST_MAIN(TstEncoding)
#include "tst_encoding.moc"
