#include "brokenged.h"

#include <QList>
#include <QRandomGenerator>
#include <QString>
#include <QStringEncoder>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

class Breaker
{
public:
    explicit Breaker(quint32 number) : m_random(number) { }

    QByteArray file();

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
    QByteArray encoded(const QString &text);
    void breakBytes(QByteArray *bytes);

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
        lines->insert(i, drawn({u"0 TRLR"_s, u"0"_s, u"1"_s, u"0 HEAD"_s, u"12 rue"_s, u"0 "_s}));
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

QByteArray Breaker::encoded(const QString &text)
{
    switch (draw(8)) {
    case 0:
        return "\xEF\xBB\xBF" + text.toUtf8();
    case 1:
        return QByteArray("\xFF\xFE") + QByteArray(QStringEncoder(QStringConverter::Utf16LE)(text));
    case 2:
        return QStringEncoder(QStringConverter::Utf16BE)(text);
    case 3:
        return text.toLatin1();
    default:
        return text.toUtf8();
    }
}

void Breaker::breakBytes(QByteArray *bytes)
{
    for (int count = draw(4); count > 0 && !bytes->isEmpty(); --count) {
        const int at = draw(int(bytes->size()));
        if (draw(4) == 0)
            bytes->truncate(at);
        else
            (*bytes)[at] = char(draw(256));
    }
}

QByteArray Breaker::file()
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
    QByteArray bytes = encoded(lines.join(end) + (draw(4) == 0 ? QString() : end));
    if (draw(3) == 0)
        breakBytes(&bytes);
    return bytes;
}

} // namespace

QByteArray brokenFile(quint32 number)
{
    return Breaker(number).file();
}
