#include "boxes.h"
#include "document.h"
#include "progresslog.h"
#include "testmain.h"
#include "told.h"

#include "gedcom.h"
#include "twitem.h"

#include <QDialog>
#include <QPaintEvent>
#include <QScrollBar>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString summary(int count)
{
    return u"%1 balises CONC reconcaténées."_s.arg(count);
}

/// The area that a widget has painted while this object lives.
class Painted : public QObject
{
public:
    explicit Painted(QWidget *widget)
    {
        widget->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            area += static_cast<QPaintEvent *>(event)->region();
        return false;
    }

    QRegion area;
};

/// A person of 250 entries: notes of four lines each and a last one of one line.
QStringList cutNotes()
{
    QStringList lines{u"0 @I1@ INDI"_s};
    for (int i = 1; i < 250; ++i)
        lines += QStringList{u"2 CONC d"_s, u"1 NOTE a"_s, u"2 CONC b"_s, u"2 CONC c"_s}.at(i % 4);
    return lines;
}

} // namespace

/// Folding CONC lines into the line before.
class TstUnconc : public QObject
{
    Q_OBJECT

private slots:
    void folds_data();
    void folds();
    void loadDoesNotFold();
    void recordOfOneLineIsRefusedAfterASave();
    void foldedEntryStaysInTheTree();
    void deletedEntriesTakeNoPart();
    void deletedRecordsTakeNoPart();
    void secondRunFindsNothing();
    void cutLinesAreFoldedBack();
    void emptyDocument();
    void statusTexts();
    void progress_data();
    void progress();
    void barKeepsItsVisibility();
    void toldInOrder();
    void runInARunFoldsOnce();
    void resizeInARunIsPainted();
    void layoutGoesOnBehindADialog();

private:
    AnsweredBoxes m_boxes; // an unanswered one would block the test for ever
};

void TstUnconc::folds_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QStringList>("journal"); // without the summary
    QTest::addColumn<int>("count");

    QTest::newRow("no CONC line") << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONT b"_s}
                                  << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONT b"_s}
                                  << QStringList() << 0;
    QTest::newRow("one CONC line")
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE Jean Du"_s, u"2 CONC pont né à Lyon"_s,
                       u"1 SEX M"_s}
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE Jean Dupont né à Lyon"_s, u"1 SEX M"_s}
        << QStringList{u"INFO : Balise 'INDI.NOTE.CONC pont né à Lyon (l.3) concaténée dans la "
                       u"balise INDI.NOTE Jean Dupont né à Lyon (l.2)"_s}
        << 1;
    QTest::newRow("chain, last line first")
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONC b"_s, u"2 CONC c"_s, u"2 CONC d"_s}
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE abcd"_s}
        << QStringList{u"INFO : Balise 'INDI.NOTE.CONC d (l.5) concaténée dans la balise "
                       u"INDI.NOTE.CONC cd (l.4)"_s,
                       u"INFO : Balise 'INDI.NOTE.CONC cd (l.4) concaténée dans la balise "
                       u"INDI.NOTE.CONC bcd (l.3)"_s,
                       u"INFO : Balise 'INDI.NOTE.CONC bcd (l.3) concaténée dans la balise "
                       u"INDI.NOTE abcd (l.2)"_s}
        << 3;
    QTest::newRow("blanks at both sides of the cut")
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a "_s, u"2 CONC   b  "_s}
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a   b  "_s}
        << QStringList{u"INFO : Balise 'INDI.NOTE.CONC   b   (l.3) concaténée dans la balise "
                       u"INDI.NOTE a   b   (l.2)"_s}
        << 1;
    QTest::newRow("behind CONT, into the CONT line")
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONT x"_s, u"2 CONC y"_s, u"2 CONT z"_s}
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONT xy"_s, u"2 CONT z"_s}
        << QStringList{u"INFO : Balise 'INDI.NOTE.CONC y (l.4) concaténée dans la balise "
                       u"INDI.NOTE.CONT xy (l.3)"_s}
        << 1;
    QTest::newRow("behind the sub-entry of another line, into that")
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 SOUR @S1@"_s, u"3 PAGE p"_s,
                       u"2 CONC b"_s}
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 SOUR @S1@"_s, u"3 PAGE pb"_s}
        << QStringList{u"INFO : Balise 'INDI.NOTE.CONC b (l.5) concaténée dans la balise "
                       u"INDI.NOTE.SOUR.PAGE pb (l.4)"_s}
        << 1;
    QTest::newRow("parent behind a lower level, into the line before")
        << QStringList{u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 NOTE a"_s, u"1 SEX M"_s, u"3 CONC b"_s}
        << QStringList{u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 NOTE a"_s, u"1 SEX Mb"_s}
        << QStringList{u"INFO : Balise 'INDI.BIRT.NOTE.CONC b (l.5) concaténée dans la balise "
                       u"INDI.SEX Mb (l.4)"_s}
        << 1;
    QTest::newRow("at level 1 behind a line of level 2")
        << QStringList{u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 DATE a"_s, u"1 CONC b"_s}
        << QStringList{u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 DATE ab"_s}
        << QStringList{u"INFO : Balise 'INDI.CONC b (l.4) concaténée dans la balise "
                       u"INDI.BIRT.DATE ab (l.3)"_s}
        << 1;
    QTest::newRow("line without a value gets one")
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE"_s, u"2 CONC a"_s}
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a"_s}
        << QStringList{u"INFO : Balise 'INDI.NOTE.CONC a (l.3) concaténée dans la balise "
                       u"INDI.NOTE a (l.2)"_s}
        << 1;
    QTest::newRow("CONC without a value adds nothing")
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONC"_s, u"2 CONC b"_s}
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE ab"_s}
        << QStringList{u"INFO : Balise 'INDI.NOTE.CONC b (l.4) concaténée dans la balise "
                       u"INDI.NOTE.CONC b (l.3)"_s,
                       u"INFO : Balise 'INDI.NOTE.CONC b (l.3) concaténée dans la balise "
                       u"INDI.NOTE ab (l.2)"_s}
        << 2;
    QTest::newRow("CONC without a value alone")
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONC"_s}
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a"_s}
        << QStringList{u"INFO : Balise 'INDI.NOTE.CONC  (l.3) concaténée dans la balise "
                       u"INDI.NOTE a (l.2)"_s}
        << 1;
    QTest::newRow("neither has a value, an empty third column comes")
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE"_s, u"2 CONC"_s}
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE "_s}
        << QStringList{u"INFO : Balise 'INDI.NOTE.CONC  (l.3) concaténée dans la balise "
                       u"INDI.NOTE  (l.2)"_s}
        << 1;

    QTest::newRow("into a note record with text")
        << QStringList{u"0 @N1@ NOTE texte"_s, u"1 CONC  long"_s, u"1 CONT x"_s}
        << QStringList{u"0 @N1@ NOTE texte long"_s, u"1 CONT x"_s}
        << QStringList{u"INFO : Balise 'CONC  long (l.2) concaténée dans la balise  NOTE texte "
                       u"long (l.1)"_s}
        << 1;
    // The journal quotes the record as it is then, with a tag grown into something else.
    QTest::newRow("into a note record without text")
        << QStringList{u"0 @N1@ NOTE"_s, u"1 CONC x"_s} << QStringList{u"0 @N1@ NOTEx"_s}
        << QStringList{u"INFO : Balise 'CONC x (l.2) concaténée dans la balise  NOTEx (l.1)"_s}
        << 1;
    QTest::newRow("into a note record, with a capital that gives another tag")
        << QStringList{u"0 @N1@ NOTE"_s, u"1 CONC S"_s} << QStringList{u"0 @N1@ NOTES"_s}
        << QStringList{u"INFO : Balise 'NOTES.CONC S (l.2) concaténée dans la balise NOTES NOTES (l.1)"_s}
        << 1;
    // What helps against that, before the file is opened.
    QTest::newRow("into a note record, first text moved behind the tag")
        << QStringList{u"0 @N1@ NOTE x"_s, u"1 CONC y"_s} << QStringList{u"0 @N1@ NOTE xy"_s}
        << QStringList{u"INFO : Balise 'CONC y (l.2) concaténée dans la balise  NOTE xy (l.1)"_s}
        << 1;
    QTest::newRow("into a note record, first line made CONT")
        << QStringList{u"0 @N1@ NOTE"_s, u"1 CONT x"_s, u"1 CONC y"_s}
        << QStringList{u"0 @N1@ NOTE"_s, u"1 CONT xy"_s}
        << QStringList{u"INFO : Balise 'NOTE.CONC y (l.3) concaténée dans la balise NOTE.CONT xy "
                       u"(l.2)"_s}
        << 1;
    QTest::newRow("into a root of two columns")
        << QStringList{u"0 HEAD"_s, u"1 CONC x"_s} << QStringList{u"0 HEAD x"_s}
        << QStringList{u"INFO : Balise 'HEAD.CONC x (l.2) concaténée dans la balise HEAD x (l.1)"_s}
        << 1;
    QTest::newRow("several records")
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONC b"_s,
                       u"0 @U1@ SUBM"_s, u"1 NOTE c"_s, u"2 CONC d"_s,
                       u"0 @X1@ SUBN"_s, u"1 NOTE e"_s, u"2 CONC f"_s}
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE ab"_s,   u"0 @U1@ SUBM"_s,
                       u"1 NOTE cd"_s,   u"0 @X1@ SUBN"_s, u"1 NOTE ef"_s}
        << QStringList{u"INFO : Balise 'SUBN.NOTE.CONC f (l.9) concaténée dans la balise "
                       u"SUBN.NOTE ef (l.8)"_s,
                       u"INFO : Balise 'SUBM.NOTE.CONC d (l.6) concaténée dans la balise "
                       u"SUBM.NOTE cd (l.5)"_s,
                       u"INFO : Balise 'INDI.NOTE.CONC b (l.3) concaténée dans la balise "
                       u"INDI.NOTE ab (l.2)"_s}
        << 3;
    QTest::newRow("last record of the document below one that has none")
        << QStringList{u"0 HEAD"_s, u"1 CHAR x"_s, u"0 @N1@ NOTE a"_s, u"1 CONC b"_s}
        << QStringList{u"0 HEAD"_s, u"1 CHAR x"_s, u"0 @N1@ NOTE ab"_s}
        << QStringList{u"INFO : Balise 'CONC b (l.4) concaténée dans la balise  NOTE ab (l.3)"_s}
        << 1;

    const QStringList others{u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 _CONC b"_s,   u"2 CONCX c"_s,
                             u"2 XCONC d"_s,   u"2 conc e"_s, u"2 NOTE CONC"_s, u"2 CONT CONC f"_s};
    QTest::newRow("tags that only look like it") << others << others << QStringList() << 0;
    const QStringList tenth{u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"10 CONC b"_s};
    QTest::newRow("level of two digits hides the tag")
        << tenth << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"1  CONC b"_s} << QStringList()
        << 0;
    QTest::newRow("the tag may be the third column")
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 XY CONC"_s}
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE aCONC"_s}
        << QStringList{u"INFO : Balise 'INDI.NOTE.CONC CONC (l.3) concaténée dans la balise "
                       u"INDI.NOTE aCONC (l.2)"_s}
        << 1;
    QTest::newRow("first line of the document is not looked at")
        << QStringList{u"0 CONC x"_s, u"1 NOTE a"_s} << QStringList{u"0 CONC x"_s, u"1 NOTE a"_s}
        << QStringList() << 0;
    QTest::newRow("a root may be a CONC line")
        << QStringList{u"0 HEAD"_s, u"1 CHAR x"_s, u"0 CONC y"_s, u"1 NOTE a"_s}
        << QStringList{u"0 HEAD"_s, u"1 CHAR xy"_s}
        << QStringList{u"INFO : Balise 'CONC y (l.3) concaténée dans la balise HEAD.CHAR xy "
                       u"(l.2)"_s}
        << 1;
    QTest::newRow("lines below a CONC line stay")
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONC b"_s, u"3 SOUR c"_s, u"4 CONC d"_s}
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE ab"_s, u"3 SOUR cd"_s}
        << QStringList{u"INFO : Balise 'INDI.NOTE.CONC.SOUR.CONC d (l.5) concaténée dans la balise "
                       u"INDI.NOTE.CONC.SOUR cd (l.4)"_s,
                       u"INFO : Balise 'INDI.NOTE.CONC b (l.3) concaténée dans la balise "
                       u"INDI.NOTE ab (l.2)"_s}
        << 2;
    QTest::newRow("placeholders in the texts")
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE %2 %1"_s, u"2 CONC %2%1%3"_s}
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE %2 %1%2%1%3"_s}
        << QStringList{u"INFO : Balise 'INDI.NOTE.CONC %2%1%3 (l.3) concaténée dans la balise "
                       u"INDI.NOTE %2 %1%2%1%3 (l.2)"_s}
        << 1;
}

void TstUnconc::folds()
{
    QFETCH(QStringList, lines);
    QFETCH(QStringList, expected);
    QFETCH(QStringList, journal);
    QFETCH(int, count);

    Document doc;
    QVERIFY(doc.load(lines));
    doc.newJournal();
    QCOMPARE(doc.gedcom.unConc(), count);
    QCOMPARE(doc.lines(), expected);
    QCOMPARE(doc.newJournal(), journal + QStringList{"INFO : "_L1 + summary(count)});
    QCOMPARE(doc.status(), summary(count));
}

void TstUnconc::loadDoesNotFold()
{
    const QStringList lines{u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONC b"_s};
    Document doc;
    QVERIFY(doc.load(lines));
    QCOMPARE(doc.lines(), lines);
}

void TstUnconc::recordOfOneLineIsRefusedAfterASave()
{
    Document doc;
    QVERIFY(doc.load({u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @N1@ NOTE"_s, u"1 CONC x"_s}));
    QCOMPARE(doc.gedcom.unConc(), 1);
    QVERIFY(doc.gedcom.writeGedFile(doc.path()));
    QCOMPARE(readLines(doc.path()),
             (QStringList{u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @N1@ NOTEx"_s, u"0 TRLR"_s}));

    Document again;
    writeBytes(again.path(), readBytes(doc.path()));
    QVERIFY(!again.loadFile());
}

void TstUnconc::foldedEntryStaysInTheTree()
{
    Document doc;
    QVERIFY(doc.load({u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONC b"_s, u"2 CONT c"_s}));
    TwItem *note = doc.entry(u"1 NOTE a"_s);
    TwItem *conc = doc.entry(u"2 CONC b"_s);
    TwItem *cont = doc.entry(u"2 CONT c"_s);
    QCOMPARE(doc.gedcom.unConc(), 1);

    QVERIFY(conc->isToDelete());
    QVERIFY(conc->isHidden());
    QCOMPARE(conc->text(2), u"b"_s);
    QVERIFY(!note->isToDelete());
    QVERIFY(!note->isHidden());
    QVERIFY(!cont->isToDelete());
    QVERIFY(!cont->isHidden());
    QCOMPARE(note->childCount(), 2);
    QCOMPARE(note->child(0), conc);
    QCOMPARE(note->getTabTwiChilds(false), QList<TwItem *>({conc, cont}));
    QVERIFY(!doc.gedcom.getTabTotalTwItems().contains(conc));
}

void TstUnconc::deletedEntriesTakeNoPart()
{
    Document doc;
    QVERIFY(doc.load({u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONT b"_s, u"2 CONC c"_s, u"2 CONC d"_s,
                      u"1 NAME e"_s, u"2 CONC f"_s}));
    TwItem *cont = doc.entry(u"2 CONT b"_s);
    TwItem *conc = doc.entry(u"2 CONC d"_s);
    cont->setDelete(true);
    conc->setDelete(true);
    // The line above is deleted, and its live CONC line is folded into the live line.
    doc.entry(u"1 NAME e"_s)->setDelete(true);
    doc.newJournal();

    QCOMPARE(doc.gedcom.unConc(), 2);
    QCOMPARE(doc.lines(), QStringList({u"0 @I1@ INDI"_s, u"1 NOTE acf"_s}));
    QCOMPARE(doc.newJournal(),
             QStringList({u"INFO : Balise 'INDI.NAME.CONC f (l.7) concaténée dans la balise "
                          u"INDI.NOTE.CONC cf (l.4)"_s,
                          u"INFO : Balise 'INDI.NOTE.CONC cf (l.4) concaténée dans la balise "
                          u"INDI.NOTE acf (l.2)"_s,
                          u"INFO : 2 balises CONC reconcaténées."_s}));
    QCOMPARE(cont->text(2), u"b"_s);
    QCOMPARE(conc->text(2), u"d"_s);
}

void TstUnconc::deletedRecordsTakeNoPart()
{
    Document doc;
    QVERIFY(doc.load(
        {u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONC b"_s, u"0 @I2@ INDI"_s, u"1 CONC c"_s}));
    TwItem *note = doc.entry(u"1 NOTE a"_s);
    TwItem *conc = doc.entry(u"2 CONC b"_s);
    doc.entry(u"0 @I1@ INDI"_s)->setDelete(true);
    doc.newJournal();

    QCOMPARE(doc.gedcom.unConc(), 1);
    QCOMPARE(doc.lines(), QStringList({u"0 @I2@ INDIc"_s}));
    QCOMPARE(note->text(2), u"a"_s);
    QVERIFY(!conc->isToDelete());
    QCOMPARE(doc.newJournal(),
             QStringList({u"INFO : Balise 'CONC c (l.5) concaténée dans la balise  INDIc (l.4)"_s,
                          u"INFO : 1 balises CONC reconcaténées."_s}));
}

void TstUnconc::secondRunFindsNothing()
{
    Document doc;
    QVERIFY(doc.load({u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONC b"_s, u"2 CONC c"_s}));
    QCOMPARE(doc.gedcom.unConc(), 2);
    doc.newJournal();

    QCOMPARE(doc.gedcom.unConc(), 0);
    QCOMPARE(doc.newJournal(), QStringList{u"INFO : 0 balises CONC reconcaténées."_s});
    QCOMPARE(doc.status(), u"0 balises CONC reconcaténées."_s);
    QCOMPARE(doc.lines(), QStringList({u"0 @I1@ INDI"_s, u"1 NOTE abc"_s}));
}

void TstUnconc::cutLinesAreFoldedBack()
{
    // Cut after 248 characters of the value, with a blank before the second one.
    const QString first(248, u'a');
    const QString second = QString(247, u'b');
    const QString third = u" c"_s;
    const QString line = "1 NOTE "_L1 + first + second + third;
    const QStringList lines{u"0 @I1@ INDI"_s, line, u"2 CONT d"_s};
    Document doc;
    QVERIFY(doc.load(lines));
    QCOMPARE(doc.gedcom.checkOversized(), 1);
    QCOMPARE(doc.lines(),
             QStringList({u"0 @I1@ INDI"_s, "1 NOTE "_L1 + first, "2 CONC "_L1 + second,
                          "2 CONC "_L1 + third, u"2 CONT d"_s}));
    doc.newJournal();

    QCOMPARE(doc.gedcom.unConc(), 2);
    QCOMPARE(doc.lines(), lines);
    QCOMPARE(doc.newJournal(),
             QStringList({"INFO : Balise 'INDI.NOTE.CONC "_L1 + third
                              + u" (l.-1) concaténée dans la balise INDI.NOTE.CONC "_s + second
                              + third + " (l.-1)"_L1,
                          "INFO : Balise 'INDI.NOTE.CONC "_L1 + second + third
                              + u" (l.-1) concaténée dans la balise INDI.NOTE "_s + first + second
                              + third + " (l.2)"_L1,
                          u"INFO : 2 balises CONC reconcaténées."_s}));

    // The next save cuts again; the lines folded before take no part.
    QCOMPARE(doc.gedcom.checkOversized(), 1);
    doc.newJournal();
    QCOMPARE(doc.gedcom.unConc(), 2);
    QCOMPARE(doc.lines(), lines);
}

void TstUnconc::emptyDocument()
{
    Document doc;
    QVERIFY(doc.load({}));
    doc.newJournal();
    QCOMPARE(doc.gedcom.unConc(), 0);
    QCOMPARE(doc.newJournal(), QStringList{u"INFO : 0 balises CONC reconcaténées."_s});
    QCOMPARE(doc.status(), u"0 balises CONC reconcaténées."_s);
}

void TstUnconc::statusTexts()
{
    Document doc;
    QVERIFY(doc.load({u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONC b"_s}));
    Told told(&doc);
    doc.gedcom.unConc();
    QCOMPARE(told.take(), QStringList({u"status: Reconcaténation des balises en cours..."_s,
                                       u"INFO : Balise 'INDI.NOTE.CONC b (l.3) concaténée dans la "
                                       u"balise INDI.NOTE ab (l.2)"_s,
                                       "INFO : "_L1 + summary(1), "status: "_L1 + summary(1)}));
}

void TstUnconc::progress_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<QStringList>("expected");

    const QString last = u"events at -1"_s;
    QTest::newRow("empty document") << 0 << 0 << QStringList{last};
    QTest::newRow("two entries") << 2 << 1 << QStringList{last};
    QTest::newRow("index 100 is not reached") << 100 << 99 << QStringList{last};
    QTest::newRow("last entry has the index 100")
        << 101 << 100 << QStringList{u"0 of 100"_s, u"events at 0"_s, last};
    QTest::newRow("two periods") << 250 << 249
                                 << QStringList{u"49 of 249"_s, u"events at 49"_s, u"149 of 249"_s,
                                                u"events at 149"_s, last};
    QTest::newRow("three periods") << 301 << 300
                                   << QStringList{u"0 of 300"_s,
                                                  u"events at 0"_s,
                                                  u"100 of 300"_s,
                                                  u"events at 100"_s,
                                                  u"200 of 300"_s,
                                                  u"events at 200"_s,
                                                  last};
}

void TstUnconc::progress()
{
    QFETCH(int, size);
    QFETCH(int, maximum);
    QFETCH(QStringList, expected);

    // Every third entry is folded; all count for the bar.
    QStringList lines;
    while (lines.size() < size) {
        const bool conc = lines.size() % 3 == 2;
        lines += lines.isEmpty() ? u"0 @I1@ INDI"_s : conc ? u"2 CONC b"_s : u"1 NOTE a"_s;
    }
    Document doc;
    QVERIFY(doc.load(lines));
    const ProgressLog log(&doc.progress);
    QCOMPARE(doc.gedcom.unConc(), size / 3);
    QCOMPARE(log.entries(), expected);
    QCOMPARE(doc.progress.minimum(), 0);
    QCOMPARE(doc.progress.maximum(), maximum);
    QCOMPARE(doc.progress.value(), -1);
}

void TstUnconc::barKeepsItsVisibility()
{
    Document doc;
    QVERIFY(doc.load({u"0 @I1@ INDI"_s, u"1 NOTE a"_s, u"2 CONC b"_s}));
    doc.gedcom.unConc();
    QVERIFY(!doc.progress.isVisible());
    doc.progress.show();
    doc.gedcom.unConc();
    QVERIFY(doc.progress.isVisible());
}

void TstUnconc::toldInOrder()
{
    QStringList lines = QStringList{u"0 @I1@ INDI"_s} + QStringList(249, u"1 NOTE x"_s);
    lines[99] = u"2 CONC a"_s;
    lines[100] = u"2 CONC b"_s;
    lines[200] = u"2 CONC c"_s;
    lines[201] = u"2 CONC d"_s;
    Document doc;
    QVERIFY(doc.load(lines));
    Told told(&doc);
    told.inDetail();
    QCOMPARE(doc.gedcom.unConc(), 4);
    const QStringList journal{
        u"INFO : Balise 'INDI.NOTE.CONC d (l.202) concaténée dans la balise INDI.NOTE.CONC cd "
        u"(l.201)"_s,
        u"INFO : Balise 'INDI.NOTE.CONC cd (l.201) concaténée dans la balise INDI.NOTE xcd "
        u"(l.200)"_s,
        u"INFO : Balise 'INDI.NOTE.CONC b (l.101) concaténée dans la balise INDI.NOTE.CONC ab "
        u"(l.100)"_s,
        u"INFO : Balise 'INDI.NOTE.CONC ab (l.100) concaténée dans la balise INDI.NOTE xab "
        u"(l.99)"_s,
        "INFO : "_L1 + summary(4)};
    const QStringList start{u"debug: ON unConc"_s,
                            u"bar at -1 of 251"_s, // the range is still that of the load
                            u"status: Reconcaténation des balises en cours..."_s,
                            u"bar at -1 of 251"_s};
    const QStringList end{"status: "_L1 + summary(4),
                          u"bar at 149 of 249"_s, // the reset comes after the summary
                          u"debug: OFF unConc"_s, u"bar at -1 of 249"_s};
    QCOMPARE(told.take(),
             start + withMoves(journal, {{2, u"49 of 249"_s}, {3, u"149 of 249"_s}}) + end);
}

void TstUnconc::runInARunFoldsOnce()
{
    Document doc;
    QVERIFY(doc.load(cutNotes()));
    doc.newJournal();
    // After the first step, which ends in the middle of a note.
    int nested = 0;
    const auto run = [&] { nested = doc.gedcom.unConc(); };
    connect(
        &doc.progress, &QProgressBar::valueChanged, this,
        [&] { QMetaObject::invokeMethod(this, run, Qt::QueuedConnection); },
        Qt::SingleShotConnection);
    QCOMPARE(doc.gedcom.unConc(), 37);
    QCOMPARE(nested, 149);

    QCOMPARE(doc.lines(), QStringList{u"0 @I1@ INDI"_s} + QStringList(62, u"1 NOTE abcd"_s)
                              + QStringList{u"1 NOTE a"_s});
    const QStringList journal = doc.newJournal();
    QCOMPARE(journal.filter(u"INFO : Balise '"_s).size(), 37 + 149);
    QCOMPARE(journal.mid(37 + 149),
             QStringList({"INFO : "_L1 + summary(149), "INFO : "_L1 + summary(37)}));
    QCOMPARE(doc.status(), summary(37));
}

void TstUnconc::resizeInARunIsPainted()
{
    Document doc;
    QVERIFY(doc.load(cutNotes()));
    doc.tree.expandAll();
    doc.tree.resize(300, 200);
    doc.tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&doc.tree));
    Painted painted(doc.tree.viewport());
    connect(
        &doc.progress, &QProgressBar::valueChanged, this, [&] { doc.tree.resize(400, 600); },
        Qt::SingleShotConnection);
    // Not just once the run is over: the last status text comes before the last events.
    QRegion paintedInTheRun;
    connect(&doc.statusBar, &QStatusBar::messageChanged, this,
            [&] { paintedInTheRun = painted.area; });
    QCOMPARE(doc.gedcom.unConc(), 186);
    const QRect whole = doc.tree.viewport()->rect();
    QVERIFY(whole.height() > 400);
    QCOMPARE(QRegion(whole) - paintedInTheRun, QRegion());
}

void TstUnconc::layoutGoesOnBehindADialog()
{
    Document doc;
    QVERIFY(doc.load(cutNotes()));
    doc.tree.expandAll();
    doc.tree.resize(300, 200);
    doc.tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&doc.tree));
    const QScrollBar *scrollBar = doc.tree.verticalScrollBar();
    TwItem *note = doc.entry(u"1 NOTE a"_s);
    // The layout tells the scroll bar about a hidden row.
    const auto laidOut = [&](bool hide) -> bool {
        QCoreApplication::processEvents(); // whatever was pending
        const int before = scrollBar->maximum();
        note->setTwiHidden(hide);
        return QTest::qWaitFor(
            [&] { return hide ? scrollBar->maximum() < before : scrollBar->maximum() > before; });
    };

    bool laidOutBehindDialog = false;
    const auto openDialog = [&] {
        QDialog dialog;
        dialog.setModal(true);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        laidOutBehindDialog = laidOut(true);
    };
    connect(
        &doc.progress, &QProgressBar::valueChanged, this,
        [&] { QMetaObject::invokeMethod(this, openDialog, Qt::QueuedConnection); },
        Qt::SingleShotConnection);
    QCOMPARE(doc.gedcom.unConc(), 186);
    QVERIFY(laidOutBehindDialog);
    // Nothing is held back once the run is over.
    QVERIFY(laidOut(false));
}

VARLUNE_TEST_MAIN(TstUnconc)
#include "tst_unconc.moc"
