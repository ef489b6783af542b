#include "brokenged.h"

#include <QList>
#include <QRandomGenerator>
#include <QStringEncoder>
#include <QStringList>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

/// The bytes that a character has, null where there are none.
struct Sign
{
    char16_t character;
    const char *ansel;
    const char *cp437;
    const char *macRoman;
};

constexpr Sign Signs[] = {
    {u'é', "\xE2\x65", "\x82", "\x8E"},    {u'É', "\xE2\x45", "\x90", "\x83"},
    {u'°', "\xC0", "\xF8", "\xA1"},        {u'œ', "\xB6", nullptr, "\xCF"},
    {u'\u2014', nullptr, nullptr, "\xD1"},
};

/// The text in an encoding of one byte a character. What that does not have is a "?" in the text.
BrokenFile inBytes(QString text, const char *Sign::*encoding, const QString &name)
{
    QByteArray bytes;
    for (QChar &c : text) {
        const auto *const sign = std::find_if(std::begin(Signs), std::end(Signs),
                                              [c](const Sign &s) { return s.character == c; });
        if (sign != std::end(Signs) && sign->*encoding) {
            bytes += sign->*encoding;
            continue;
        }
        if (c >= QChar(0x80))
            c = u'?';
        bytes += c.toLatin1();
    }
    return {bytes, name, text};
}

class Breaker
{
public:
    explicit Breaker(quint32 number) : m_random(number) { }

    BrokenFile file();

private:
    int draw(int count)
    {
        return int(m_random.bounded(count));
    }
    QString drawn(const QStringList &list)
    {
        return list.at(draw(int(list.size())));
    }
    QString value();
    QStringList record();
    void breakLine(QStringList *lines, int i);
    BrokenFile encoded(const QString &drawn);
    void breakBytes(BrokenFile *file);

    QRandomGenerator m_random;
};

QString Breaker::value()
{
    static const QStringList values{u"René /LE GUÉ/"_s, u"12 MAR 1805"_s, u"@I1@"_s,
                                    u"@S3@"_s,          u"@3I@"_s,        u"  un texte "_s,
                                    u"a\tb"_s,          u"étage n° 3"_s,  u"<p>x</p>"_s,
                                    QString(),          QString(),        u" "_s,
                                    QString(300, u'y'), u"œuvre — 😀"_s,   u"@#DJULIAN@ 1700"_s,
                                    u"\u2028u"_s,       u"10 rue X"_s,    u"e\u0301"_s};
    return drawn(values);
}

QStringList Breaker::record()
{
    static const QStringList heads{u"0 @I%1@ INDI"_s,
                                   u"0 @%1F@ FAM"_s,
                                   u"0 @S%1@ SOUR"_s,
                                   u"0 @N%1@ NOTE"_s,
                                   u"0 @N%1@ NOTEvieux texte"_s,
                                   u"0 @N%1@ NOTE court"_s,
                                   u"0 @X%1@ _LIEU"_s,
                                   u"0 @B%1@ SUBN"_s,
                                   u"0 @U%1@ SUBM"_s,
                                   u"0 _PUBLISH"_s,
                                   u"0 @a b%1@ OBJE"_s};
    static const QStringList tags{u"NAME"_s, u"BIRT"_s, u"DATE"_s, u"NOTE"_s, u"SOUR"_s,
                                  u"OBJE"_s, u"CONT"_s, u"CONC"_s, u"_UID"_s, u"CHAN"_s,
                                  u"name"_s, u"CHAR"_s, u"VERS"_s};
    QStringList lines{drawn(heads)};
    lines.first().replace(u"%1"_s, QString::number(draw(9)));
    int level = 0;
    if (draw(6) == 0)
        lines += drawn({u"1 CONC suite"_s, u"1 CONC"_s});
    for (int count = draw(7); count > 0; --count) {
        level = std::clamp(level + 1 - draw(3), 1, 12);
        if (draw(12) == 0)
            level = std::min(level + 1 + draw(3), 12);
        const QString text = value();
        lines += QString::number(level) + u' ' + drawn(tags)
               + (text.isEmpty() && draw(2) == 0 ? QString() : u' ' + text);
    }
    return lines;
}

void Breaker::breakLine(QStringList *lines, int i)
{
    QString &line = (*lines)[i];
    switch (draw(14)) {
    case 0:
        lines->insert(i, drawn({QString(), u"  "_s, u"\t"_s}));
        break;
    case 1:
        line.prepend(drawn({u" "_s, u"\t"_s, u"   "_s, u"\uFEFF"_s}));
        break;
    case 2:
        line.replace(u' ', u'\t');
        break;
    case 3:
        line.prepend(u'0');
        break;
    case 4:
        line = value();
        break;
    case 5:
        line.replace(0, 1, QChar(u'0' + draw(10)));
        break;
    case 6:
        line.insert(draw(int(line.size()) + 1), QChar(draw(32)));
        break;
    case 7:
        line.insert(draw(int(line.size()) + 1), drawn({u"\n"_s, u"\r"_s, u" "_s, u"@"_s}));
        break;
    case 8:
        lines->removeAt(i);
        break;
    case 9:
        lines->insert(i, drawn({u"0 TRLR"_s, u"0"_s, u"1"_s, u"0 HEAD"_s, u"12 rue"_s, u"0 "_s,
                                u"12 RUE DU PORT"_s, u"3 MARS 1850"_s, u"4 PAGE x"_s}));
        break;
    case 10:
        line.truncate(draw(int(line.size()) + 1));
        break;
    case 11:
        line = line.toLower();
        break;
    case 12:
        line += u' ';
        break;
    default:
        lines->swapItemsAt(i, draw(int(lines->size())));
    }
}

BrokenFile Breaker::encoded(const QString &drawn)
{
    const QString text = QString::fromUtf8(drawn.toUtf8()); // half a pair is no text
    // A mark that a fault has put in front of all is that of the file.
    const QString unmarked = text.startsWith(QChar::ByteOrderMark) ? text.mid(1) : text;
    switch (draw(11)) {
    case 0:
        return {"\xEF\xBB\xBF" + text.toUtf8(), u"UTF-8"_s, text};
    case 1:
        return {"\xFF\xFE" + QByteArray(QStringEncoder(QStringConverter::Utf16LE)(text)),
                u"UTF-16LE"_s, text};
    case 2:
        return {QStringEncoder(QStringConverter::Utf16BE)(text), u"UTF-16BE"_s, unmarked};
    case 3: {
        const QByteArray bytes = text.toLatin1();
        return {bytes, u"ISO-8859-1"_s, QString::fromLatin1(bytes)};
    }
    case 4:
        return inBytes(text, &Sign::ansel, u"ANSEL"_s);
    case 5:
        return inBytes(text, &Sign::cp437, u"CP437"_s);
    case 6:
        return inBytes(text, &Sign::macRoman, u"MacRoman"_s);
    default:
        return {text.toUtf8(), u"UTF-8"_s, unmarked};
    }
}

void Breaker::breakBytes(BrokenFile *file)
{
    QByteArray &bytes = file->bytes;
    for (int count = draw(4); count > 0 && !bytes.isEmpty(); --count) {
        const int at = draw(int(bytes.size()));
        if (draw(4) == 0)
            bytes.truncate(at);
        else
            bytes[at] = char(draw(256));
        file->isIntact = false;
    }
}

BrokenFile Breaker::file()
{
    QStringList lines;
    if (draw(8) != 0)
        lines << u"0 HEAD"_s << u"1 SOUR Essai"_s
              << "1 CHAR "_L1 + drawn({u"UTF-8"_s, u"ANSEL"_s, u"ANSI"_s, u"IBMPC"_s});
    for (int count = 1 + draw(6); count > 0; --count)
        lines += record();
    if (draw(8) != 0)
        lines += u"0 TRLR"_s;
    for (int count = draw(6); count > 0 && !lines.isEmpty(); --count)
        breakLine(&lines, draw(int(lines.size())));
    const QString end = drawn({u"\n"_s, u"\n"_s, u"\r\n"_s, u"\r"_s, u"\r\r\n"_s, u"\n\r"_s});
    BrokenFile file = encoded(lines.join(end) + (draw(4) == 0 ? QString() : end));
    if (draw(3) == 0)
        breakBytes(&file);
    return file;
}

} // namespace

BrokenFile brokenFile(quint32 number)
{
    return Breaker(number).file();
}
