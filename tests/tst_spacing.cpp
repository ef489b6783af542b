#include "boxes.h"
#include "document.h"
#include "progresslog.h"
#include "testmain.h"
#include "told.h"
#include "window.h"

#include "gedcom.h"
#include "twitem.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString modification(const QString &text)
{
    return u"INFO : Modification de "_s + text;
}

QString mismatch(const QString &entry)
{
    return u"ERROR : Pas de correspondance pour \"/\" pour l'entrée "_s + entry;
}

/// The last line of the journal; it has two blanks before its last word.
QString journalSummary(int count)
{
    return u"INFO : %1 entrées INDI.NAME  modifiées."_s.arg(count);
}

QString summary(int count)
{
    return u"%1 noms espacés."_s.arg(count);
}

QString boxText(const QString &line)
{
    return u"Erreur dans le nom pour l'entrée "_s + line;
}

} // namespace

/// The blank in front of surnames.
class TstSpacing : public QObject
{
    Q_OBJECT

private slots:
    void spaces_data();
    void spaces();
    void leavesAlone_data();
    void leavesAlone();
    void malformed_data();
    void malformed();
    void records();
    void emptyDocument();
    void boxesComeOneByOne();
    void secondRun();
    void changesNothingElse();
    void deletedEntriesTakeNoPart();
    void levelThatReadsLikeAName();
    void halfOfACharacter();
    void frame();
    void progress_data();
    void progress();
    void malformedNameCounts();
    void eventsAfterTheSummary();
    void rangeIsThatOfTheLiveEntries();
    void entriesAreListedBeforeTheyAreChanged();
    void barKeepsItsVisibility();
    void throughTheForm();
};

void TstSpacing::spaces_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const QString &value, const QString &expected) {
        QTest::newRow(name) << value << expected;
    };
    row("first names and surname", u"Jean/MARTIN/"_s, u"Jean /MARTIN/"_s);
    row("one letter", u"J/M/"_s, u"J /M/"_s);
    row("empty surname", u"Jean//"_s, u"Jean //"_s);
    row("surname of blanks", u"Jean/ /"_s, u"Jean / /"_s);
    row("several first names", u"Jean Paul/DE LA TOUR/"_s, u"Jean Paul /DE LA TOUR/"_s);
    row("three slashes, the first one only", u"Jean/MARTIN/DUPONT/"_s, u"Jean /MARTIN/DUPONT/"_s);
    row("two surnames, the first one only", u"Jean/MARTIN/Paul/DUPONT/"_s,
        u"Jean /MARTIN/Paul/DUPONT/"_s);
    row("text between surname and final slash", u"Jean/MARTIN/ fils/"_s, u"Jean /MARTIN/ fils/"_s);
    row("tab in front of the slash is no blank", u"Jean\t/MARTIN/"_s, u"Jean\t /MARTIN/"_s);
    row("nor is a no-break space", u"Jean\u00A0/MARTIN/"_s, u"Jean\u00A0 /MARTIN/"_s);
    row("blanks in front are trimmed", u"  Jean/MARTIN/"_s, u"Jean /MARTIN/"_s);
    row("white space in front is trimmed", u"\t\u00A0Jean/MARTIN/"_s, u"Jean /MARTIN/"_s);
    row("white space alone in front of the slash is trimmed, blank and all", u" \t/MARTIN/"_s,
        u"/MARTIN/"_s);
    row("inner blanks stay", u"Jean  Paul/LE  BRETON/"_s, u"Jean  Paul /LE  BRETON/"_s);
    row("backslash", u"Jean\\/MARTIN/"_s, u"Jean\\ /MARTIN/"_s);
    row("placeholders", u"%1 %2%3/%4%L1/"_s, u"%1 %2%3 /%4%L1/"_s);
    row("markup, its slash being the first", u"<b>Jean</b>/MARTIN/"_s, u"<b>Jean< /b>/MARTIN/"_s);
    row("ampersand", u"Jean&Paul/A & B/"_s, u"Jean&Paul /A & B/"_s);
    row("right to left", u"משה/כהן/"_s, u"משה /כהן/"_s);
    row("character of two halves in front of the slash", u"Jean😀/𝄞/"_s, u"Jean😀 /𝄞/"_s);
    row("accent of its own", u"Rene\u0301/MARTIN/"_s, u"Rene\u0301 /MARTIN/"_s);
    row("over the size of a line", QString(300, u'J') + u"/MARTIN/"_s,
        QString(300, u'J') + u" /MARTIN/"_s);
}

void TstSpacing::spaces()
{
    QFETCH(QString, value);
    QFETCH(QString, expected);

    QTest::failOnWarning(QRegularExpression(u".*"_s));
    const AnsweredBoxes boxes;
    const QStringList before{u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"1 SEX M"_s};
    Document document;
    QVERIFY(document.load(before + QStringList{"1 NAME "_L1 + value}));
    document.newJournal();
    QCOMPARE(document.gedcom.setSpaceNames(), 1);
    QCOMPARE(document.lines(), before + QStringList{"1 NAME "_L1 + expected});
    QCOMPARE(document.newJournal(), QStringList({modification("INDI.NAME "_L1 + value + " en "_L1
                                                              + expected + " (l.5)"_L1),
                                                 journalSummary(1)}));
    QCOMPARE(document.status(), summary(1));
    QCOMPARE(boxes.texts(), QStringList());
}

void TstSpacing::leavesAlone_data()
{
    QTest::addColumn<QString>("line");

    const auto row = [](const char *name, const QString &line) { QTest::newRow(name) << line; };
    row("spaced already", u"1 NAME Jean /MARTIN/"_s);
    row("spaced twice", u"1 NAME Jean  /MARTIN/"_s);
    row("spaced, without a final slash", u"1 NAME Jean /MARTIN"_s);
    row("spaced, with text behind the surname", u"1 NAME Jean /MARTIN/ fils"_s);
    row("spaced, and a second surname that is not", u"1 NAME Jean /MARTIN/DUPONT/"_s);
    row("blank alone in front of the slash", u"1 NAME  /MARTIN/"_s);
    row("surname alone", u"1 NAME /MARTIN/"_s);
    row("surname alone, without a final slash", u"1 NAME /MARTIN"_s);
    row("surname first", u"1 NAME /MARTIN/Jean/"_s);
    row("slash alone", u"1 NAME /"_s);
    row("no slash", u"1 NAME Jean"_s);
    row("no slash, surname in capitals", u"1 NAME JeanMARTIN"_s);
    row("backslashes", u"1 NAME Jean\\MARTIN\\"_s);
    row("slashes that are others", u"1 NAME Jean\u2044MARTIN\uFF0F"_s);
    row("no value", u"1 NAME"_s);
    row("blank value", u"1 NAME  "_s);
    row("tab behind the tag", u"1 NAME\tJean/MARTIN/"_s);
    row("other tag", u"1 TITL Jean/MARTIN/"_s);
    row("tag that begins with it", u"1 NAMES Jean/MARTIN/"_s);
    row("tag that ends in it", u"1 _NAME Jean/MARTIN/"_s);
    row("tag in lower case", u"1 name Jean/MARTIN/"_s);
    row("tag that holds a slash", u"1 NAME/ Jean/MARTIN/"_s);
    row("tag as a value", u"1 TYPE NAME Jean/MARTIN/"_s);
    row("level of two digits", u"1  NAME Jean/MARTIN/"_s);
}

void TstSpacing::leavesAlone()
{
    QFETCH(QString, line);

    QTest::failOnWarning(QRegularExpression(u".*"_s));
    const AnsweredBoxes boxes;
    const QStringList lines{u"0 @I1@ INDI"_s, line, u"2 NAME Jean/MARTIN/"_s,
                            u"3 NAME Jean/MARTIN"_s};
    Document document;
    QVERIFY(document.load(lines));
    document.newJournal();
    QCOMPARE(document.gedcom.setSpaceNames(), 0);
    QCOMPARE(document.lines(), lines);
    QCOMPARE(document.newJournal(), QStringList{journalSummary(0)});
    QCOMPARE(document.status(), summary(0));
    QCOMPARE(boxes.texts(), QStringList());
}

void TstSpacing::malformed_data()
{
    QTest::addColumn<QString>("line");

    const auto row = [](const char *name, const QString &line) { QTest::newRow(name) << line; };
    row("no final slash", u"1 NAME Jean/MARTIN"_s);
    row("one slash, at the end", u"1 NAME Jean/"_s);
    row("text behind the surname", u"1 NAME Jean/MARTIN/ fils"_s);
    row("blank behind the surname", u"1 NAME Jean/MARTIN/ "_s);
    row("tab behind the surname", u"1 NAME Jean/MARTIN/\t"_s);
    row("second surname without a final slash", u"1 NAME Jean/MARTIN/DUPONT"_s);
    row("blanks in front stay", u"1 NAME  Jean/MARTIN"_s);
    row("placeholders", u"1 NAME %1%2/%3 %L1%n"_s);
    row("markup and ampersands", u"1 NAME Jean & <b>Paul &amp; <i>x</i>"_s);
    row("quotes", u"1 NAME \"Jean\"/l'AÎNÉ"_s);
    row("right to left", u"1 NAME משה/כהן"_s);
    row("character of two halves", u"1 NAME 😀/MARTIN"_s);
    row("very many slashes", "1 NAME Jean"_L1 + QString(4000, u'/') + u'x');
}

void TstSpacing::malformed()
{
    QFETCH(QString, line);

    const AnsweredBoxes boxes;
    const QStringList before{u"0 @I1@ INDI"_s, line};
    Document document;
    QVERIFY(document.load(before + QStringList{u"0 @I2@ INDI"_s, u"1 NAME Paul/DUPONT/"_s}));
    document.newJournal();
    QCOMPARE(document.gedcom.setSpaceNames(), 1);
    QCOMPARE(boxes.texts(), QStringList{boxText(line)});
    QCOMPARE(boxes.titles(), QStringList{u"Erreur"_s});
    QVERIFY(boxes.allCritical(nullptr));
    // It is left unchanged, and the run goes on.
    QCOMPARE(document.lines(), before + QStringList({u"0 @I2@ INDI"_s, u"1 NAME Paul /DUPONT/"_s}));
    QCOMPARE(document.newJournal(),
             QStringList({mismatch(line + " (l.2)"_L1),
                          modification(u"INDI.NAME Paul/DUPONT/ en Paul /DUPONT/ (l.4)"_s),
                          journalSummary(1)}));
    QCOMPARE(document.status(), summary(1));
}

void TstSpacing::records()
{
    const AnsweredBoxes boxes;
    Document document;
    QVERIFY(document.load({
        u"0 HEAD"_s,      u"1 NAME a/A/"_s, u"0 @I1@ INDI"_s, u"1 NAME b/B/"_s, u"1 NAME c/C/"_s,
        u"2 NAME d/D/"_s, u"0 @S1@ SOUR"_s, u"1 NAME e/E/"_s, u"0 @R1@ REPO"_s, u"1 NAME f/F/"_s,
        u"0 @U1@ SUBM"_s, u"1 NAME g/G/"_s, u"0 @X1@ SUBN"_s, u"1 NAME h/H/"_s, u"0 @N1@ NOTE x"_s,
        u"1 NAME i/I/"_s, u"0 @R2@ REPO"_s, u"1 NAME j/J"_s,  u"0 NAME k/K/"_s, u"1XNAME l/L/"_s,
    }));
    document.newJournal();
    QCOMPARE(document.gedcom.setSpaceNames(), 9);
    QCOMPARE(document.lines(),
             QStringList({
                 u"0 HEAD"_s,       u"1 NAME a /A/"_s, u"0 @I1@ INDI"_s,   u"1 NAME b /B/"_s,
                 u"1 NAME c /C/"_s, u"2 NAME d/D/"_s,  u"0 @S1@ SOUR"_s,   u"1 NAME e /E/"_s,
                 u"0 @R1@ REPO"_s,  u"1 NAME f /F/"_s, u"0 @U1@ SUBM"_s,   u"1 NAME g /G/"_s,
                 u"0 @X1@ SUBN"_s,  u"1 NAME h /H/"_s, u"0 @N1@ NOTE x"_s, u"1 NAME i /I/"_s,
                 u"0 @R2@ REPO"_s,  u"1 NAME j/J"_s,   u"0 NAME k/K/"_s,   u"1 NAME l /L/"_s,
             }));
    QCOMPARE(document.newJournal(), QStringList({
                                        modification(u"HEAD.NAME a/A/ en a /A/ (l.2)"_s),
                                        modification(u"INDI.NAME b/B/ en b /B/ (l.4)"_s),
                                        modification(u"INDI.NAME c/C/ en c /C/ (l.5)"_s),
                                        modification(u"SOUR.NAME e/E/ en e /E/ (l.8)"_s),
                                        modification(u"REPO.NAME f/F/ en f /F/ (l.10)"_s),
                                        modification(u"SUBM.NAME g/G/ en g /G/ (l.12)"_s),
                                        modification(u"SUBN.NAME h/H/ en h /H/ (l.14)"_s),
                                        // The record above has no tag.
                                        modification(u"NAME i/I/ en i /I/ (l.16)"_s),
                                        mismatch(u"1 NAME j/J (l.18)"_s),
                                        modification(u"NAME.NAME l/L/ en l /L/ (l.20)"_s),
                                        journalSummary(9),
                                    }));
    QCOMPARE(document.status(), summary(9));
    QCOMPARE(boxes.texts(), QStringList{boxText(u"1 NAME j/J"_s)});
}

void TstSpacing::emptyDocument()
{
    Document document;
    QVERIFY(document.load({}));
    document.newJournal();
    QCOMPARE(document.gedcom.setSpaceNames(), 0);
    QCOMPARE(document.newJournal(), QStringList{journalSummary(0)});
    QCOMPARE(document.status(), summary(0));
    QCOMPARE(document.progress.maximum(), 0);
}

void TstSpacing::boxesComeOneByOne()
{
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NAME a/A/"_s, u"1 NAME b/B"_s, u"1 NAME c/C/"_s,
                           u"1 NAME d/D"_s, u"1 NAME d/D"_s, u"1 NAME e/E/"_s}));
    document.newJournal();
    QStringList states;
    AnsweredBoxes boxes;
    boxes.setInspector([&](const QMessageBox *box) {
        states += document.newJournal().join(u" | "_s);
        states += document.lines().join(u','); // the rest waits for the answer
        QVERIFY(box->isModal());
        QCOMPARE(box->informativeText(), QString());
        QCOMPARE(box->detailedText(), QString());
        QCOMPARE(document.status(), u"Espacement des noms en cours..."_s);
    });
    QCOMPARE(document.gedcom.setSpaceNames(), 3);

    QCOMPARE(boxes.texts(), QStringList({boxText(u"1 NAME b/B"_s), boxText(u"1 NAME d/D"_s),
                                         boxText(u"1 NAME d/D"_s)}));
    QCOMPARE(boxes.titles(), QStringList({u"Erreur"_s, u"Erreur"_s, u"Erreur"_s}));
    QVERIFY(boxes.allCritical(nullptr));
    const QString third = u"0 @I1@ INDI,1 NAME a /A/,1 NAME b/B,1 NAME c /C/,1 NAME d/D,1 NAME "
                          u"d/D,1 NAME e/E/"_s;
    QCOMPARE(states, QStringList({
                         modification(u"INDI.NAME a/A/ en a /A/ (l.2)"_s) + u" | "_s
                             + mismatch(u"1 NAME b/B (l.3)"_s),
                         u"0 @I1@ INDI,1 NAME a /A/,1 NAME b/B,1 NAME c/C/,1 NAME d/D,1 NAME "
                         u"d/D,1 NAME e/E/"_s,
                         modification(u"INDI.NAME c/C/ en c /C/ (l.4)"_s) + u" | "_s
                             + mismatch(u"1 NAME d/D (l.5)"_s),
                         third,
                         mismatch(u"1 NAME d/D (l.6)"_s),
                         third,
                     }));
    QCOMPARE(document.newJournal(),
             QStringList({modification(u"INDI.NAME e/E/ en e /E/ (l.7)"_s), journalSummary(3)}));
}

void TstSpacing::secondRun()
{
    const AnsweredBoxes boxes;
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NAME Jean/MARTIN/"_s, u"1 NAME Jean/MARTIN"_s,
                           u"1 NAME  \t/MARTIN/"_s}));
    QCOMPARE(document.gedcom.setSpaceNames(), 2);
    const QStringList lines = document.lines();
    QCOMPARE(lines, QStringList({u"0 @I1@ INDI"_s, u"1 NAME Jean /MARTIN/"_s,
                                 u"1 NAME Jean/MARTIN"_s, u"1 NAME /MARTIN/"_s}));
    document.newJournal();

    QCOMPARE(document.gedcom.setSpaceNames(), 0);
    QCOMPARE(document.lines(), lines);
    // Malformed names are reported each time.
    QCOMPARE(document.newJournal(),
             QStringList({mismatch(u"1 NAME Jean/MARTIN (l.3)"_s), journalSummary(0)}));
    QCOMPARE(boxes.texts(),
             QStringList({boxText(u"1 NAME Jean/MARTIN"_s), boxText(u"1 NAME Jean/MARTIN"_s)}));
    QCOMPARE(document.status(), summary(0));
}

void TstSpacing::changesNothingElse()
{
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NAME Jean/MARTIN/"_s, u"2 GIVN Jean"_s}));
    TwItem *root = document.entry(u"0 @I1@ INDI"_s);
    TwItem *name = document.entry(u"1 NAME Jean/MARTIN/"_s);
    TwItem *given = document.entry(u"2 GIVN Jean"_s);
    name->setExpanded(true);
    QCOMPARE(document.gedcom.setSpaceNames(), 1);
    QCOMPARE(name->getTwiValuesList(), QStringList({u"1"_s, u"NAME"_s, u"Jean /MARTIN/"_s}));
    QCOMPARE(name->getNumLineGedFile(), u"2"_s);
    QCOMPARE(root->getTabTwiChilds(false), QList<TwItem *>({name, given}));
    QCOMPARE(name->getTabTwiChilds(false), QList<TwItem *>{given});
    for (TwItem *twi : {root, name, given}) {
        QVERIFY(!twi->isHidden());
        QVERIFY(!twi->isToDelete());
    }
    QVERIFY(name->isExpanded());
}

void TstSpacing::deletedEntriesTakeNoPart()
{
    const AnsweredBoxes boxes;
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NAME a/A/"_s, u"1 NAME b/B"_s, u"1 NAME c/C/"_s,
                           u"0 @I2@ INDI"_s, u"1 NAME d/D/"_s, u"1 NAME e/E"_s}));
    TwItem *deleted = document.entry(u"1 NAME a/A/"_s);
    TwItem *below = document.entry(u"1 NAME d/D/"_s);
    deleted->setDelete(true);
    document.entry(u"1 NAME b/B"_s)->setDelete(true);
    document.entry(u"0 @I2@ INDI"_s)->setDelete(true);
    document.newJournal();

    QCOMPARE(document.gedcom.setSpaceNames(), 1);
    QCOMPARE(document.newJournal(),
             QStringList({modification(u"INDI.NAME c/C/ en c /C/ (l.4)"_s), journalSummary(1)}));
    QCOMPARE(deleted->text(2), u"a/A/"_s);
    QCOMPARE(below->text(2), u"d/D/"_s);
    QCOMPARE(boxes.texts(), QStringList());
}

void TstSpacing::levelThatReadsLikeAName()
{
    // A replacement can put any text there. The first column with a slash counts.
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 DATE x/y/"_s, u"1 NAME Jean/MARTIN/"_s}));
    document.entry(u"1 DATE x/y/"_s)->setText(0, u"1 NAME a/b/"_s);
    document.entry(u"1 NAME Jean/MARTIN/"_s)->setText(0, {});
    document.newJournal();
    QCOMPARE(document.gedcom.setSpaceNames(), 1);
    QCOMPARE(document.lines(),
             QStringList({u"0 @I1@ INDI"_s, u"1 NAME a /b/ DATE x/y/"_s, u" NAME Jean/MARTIN/"_s}));
    QCOMPARE(document.newJournal(),
             QStringList({modification(u"INDI.DATE 1 NAME a/b/ en 1 NAME a /b/ (l.2)"_s),
                          journalSummary(1)}));
}

void TstSpacing::halfOfACharacter()
{
    // No expression matches text that is not well-formed.
    const AnsweredBoxes boxes;
    const QString value = u"Jean\xD83D/MARTIN/"_s;
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NAME Jean"_s, u"1 NAME a/A/"_s}));
    TwItem *name = document.entry(u"1 NAME Jean"_s);
    name->setText(2, value);
    QCOMPARE(document.gedcom.setSpaceNames(), 1);
    QCOMPARE(name->text(2), value);
    QCOMPARE(boxes.texts(), QStringList{boxText("1 NAME "_L1 + value)});
    QVERIFY(document.gedcom.getJournal().contains(" - "_L1 + mismatch("1 NAME "_L1 + value)
                                                  + " (l.2)\r\n"_L1));
    QCOMPARE(document.lines().at(2), u"1 NAME a /A/"_s);
}

void TstSpacing::frame()
{
    Document document;
    QStringList lines{u"0 @I1@ INDI"_s};
    while (lines.size() < 150)
        lines += u"1 NAME Jean/MARTIN/"_s;
    QVERIFY(document.load(lines));
    Told told(&document);
    told.inDetail();
    QCOMPARE(document.gedcom.setSpaceNames(), 149);

    QStringList journal;
    for (int line = 2; line <= 150; ++line)
        journal += modification(u"INDI.NAME Jean/MARTIN/ en Jean /MARTIN/ (l.%1)"_s.arg(line));
    journal += journalSummary(149);
    const QStringList start{u"debug: ON setSpaceNames"_s,
                            u"bar at -1 of 151"_s, // the range is still that of the load
                            u"status: Espacement des noms en cours..."_s, u"bar at -1 of 151"_s};
    const QStringList end{"status: "_L1 + summary(149), u"bar at 100 of 150"_s,
                          u"debug: OFF setSpaceNames"_s, u"bar at -1 of 150"_s};
    QCOMPARE(told.take(), start + withMoves(journal, {{99, u"100 of 150"_s}}) + end);
    QCOMPARE(document.progress.minimum(), 0);
    QCOMPARE(document.progress.value(), -1);
}

void TstSpacing::progress_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QStringList>("expected");

    const QString last = u"events at -1"_s;
    QTest::newRow("empty document") << 0 << QStringList{last};
    QTest::newRow("99 entries") << 99 << QStringList{last};
    QTest::newRow("100 entries") << 100 << QStringList{u"100 of 100"_s, u"events at 100"_s, last};
    QTest::newRow("299 entries") << 299
                                 << QStringList{u"100 of 299"_s, u"events at 100"_s,
                                                u"200 of 299"_s, u"events at 200"_s, last};
}

void TstSpacing::progress()
{
    QFETCH(int, size);
    QFETCH(QStringList, expected);

    // Every third entry is edited; all count for the bar.
    QStringList lines;
    while (lines.size() < size) {
        lines += lines.isEmpty()       ? u"0 @I1@ INDI"_s
               : lines.size() % 3 == 2 ? u"1 NAME Jean/MARTIN/"_s
                                       : u"1 NAME Jean /MARTIN/"_s;
    }
    Document document;
    QVERIFY(document.load(lines));
    const ProgressLog log(&document.progress);
    QCOMPARE(document.gedcom.setSpaceNames(), size / 3);
    QCOMPARE(log.entries(), expected);
    QCOMPARE(document.progress.minimum(), 0);
    QCOMPARE(document.progress.maximum(), size);
    QCOMPARE(document.progress.value(), -1);
}

void TstSpacing::malformedNameCounts()
{
    const AnsweredBoxes boxes;
    QStringList lines{u"0 @I1@ INDI"_s, u"1 NAME Jean/MARTIN"_s};
    while (lines.size() < 100)
        lines += u"1 NAME Jean/MARTIN/"_s;
    Document document;
    QVERIFY(document.load(lines));
    QStringList values;
    connect(&document.progress, &QProgressBar::valueChanged, this, [&](int value) {
        values += u"%1 of %2"_s.arg(value).arg(document.progress.maximum());
    });
    QCOMPARE(document.gedcom.setSpaceNames(), 98);
    QCOMPARE(values, QStringList{u"100 of 100"_s});
    QCOMPARE(boxes.texts(), QStringList{boxText(u"1 NAME Jean/MARTIN"_s)});
}

void TstSpacing::eventsAfterTheSummary()
{
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NAME Jean/MARTIN/"_s}));
    QStringList events;
    connect(&document.statusBar, &QStatusBar::messageChanged, this, [&](const QString &text) {
        events += text;
        QMetaObject::invokeMethod(
            this,
            [&events, &document, text] {
                events += u"event behind %1, bar %2"_s.arg(text).arg(document.progress.value());
            },
            Qt::QueuedConnection);
    });
    document.progress.setValue(1);
    QCOMPARE(document.gedcom.setSpaceNames(), 1);
    QCOMPARE(events, QStringList({
                         u"Espacement des noms en cours..."_s,
                         u"1 noms espacés."_s,
                         u"event behind Espacement des noms en cours..., bar -1"_s,
                         u"event behind 1 noms espacés., bar -1"_s,
                     }));
}

void TstSpacing::rangeIsThatOfTheLiveEntries()
{
    Document document;
    QVERIFY(document.load(
        {u"0 @I1@ INDI"_s, u"1 NAME a"_s, u"1 NAME b"_s, u"0 @I2@ INDI"_s, u"1 NAME c"_s}));
    document.gedcom.setSpaceNames();
    QCOMPARE(document.progress.maximum(), 5);
    document.entry(u"1 NAME b"_s)->setDelete(true);
    document.entry(u"0 @I2@ INDI"_s)->setDelete(true);
    document.gedcom.setSpaceNames();
    QCOMPARE(document.progress.maximum(), 2);
}

void TstSpacing::entriesAreListedBeforeTheyAreChanged()
{
    Document document;
    QStringList lines{u"0 @I1@ INDI"_s};
    while (lines.size() < 100)
        lines += u"1 SEX M"_s;
    QVERIFY(document.load(lines + QStringList{u"1 NAME a/A/"_s}));
    TwItem *name = document.entry(u"1 NAME a/A/"_s);
    document.newJournal();
    connect(&document.progress, &QProgressBar::valueChanged, this, [this, name] {
        QMetaObject::invokeMethod(
            this, [name] { name->setDelete(true); }, Qt::QueuedConnection);
    });
    QCOMPARE(document.gedcom.setSpaceNames(), 1);
    QVERIFY(name->isToDelete());
    QCOMPARE(name->text(2), u"a /A/"_s);
    QCOMPARE(document.newJournal(),
             QStringList({modification(u"INDI.NAME a/A/ en a /A/ (l.101)"_s), journalSummary(1)}));
}

void TstSpacing::barKeepsItsVisibility()
{
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NAME a/A/"_s}));
    document.gedcom.setSpaceNames();
    QVERIFY(!document.progress.isVisible());
    document.progress.show();
    document.gedcom.setSpaceNames();
    QVERIFY(document.progress.isVisible());
}

void TstSpacing::throughTheForm()
{
    const AnsweredBoxes boxes;
    const Session session;
    session.window->show();
    session.load({u"0 @I1@ INDI"_s, u"1 NAME Jean/MAR"_s, u"2 CONC TIN/"_s, u"1 NAME Paul/DUPONT"_s,
                  u"0 TRLR"_s});
    const qsizetype before = session.journal().size();
    session.apply({u"cbEspacer"_s});
    // The name is whole again before it is checked.
    QCOMPARE(session.journal().mid(before),
             QStringList({u"INFO : Balise 'INDI.NAME.CONC TIN/ (l.3) concaténée dans la balise "
                          u"INDI.NAME Jean/MARTIN/ (l.2)"_s,
                          u"INFO : 1 balises CONC reconcaténées."_s,
                          modification(u"INDI.NAME Jean/MARTIN/ en Jean /MARTIN/ (l.2)"_s),
                          mismatch(u"1 NAME Paul/DUPONT (l.4)"_s), journalSummary(1)}));
    QCOMPARE(boxes.texts(), QStringList{boxText(u"1 NAME Paul/DUPONT"_s)});
    QCOMPARE(boxes.titles(), QStringList{u"Erreur"_s});
    QVERIFY(boxes.allCritical(nullptr));
    session.trigger(u"actionEnregistrerFichier"_s);
    QCOMPARE(readLines(session.path()), QStringList({u"0 @I1@ INDI"_s, u"1 NAME Jean /MARTIN/"_s,
                                                     u"1 NAME Paul/DUPONT"_s, u"0 TRLR"_s}));
}

VARLUNE_TEST_MAIN(TstSpacing)
#include "tst_spacing.moc"
