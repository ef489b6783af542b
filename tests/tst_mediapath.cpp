#include "boxes.h"
#include "document.h"
#include "progresslog.h"
#include "testmain.h"
#include "told.h"

#include "gedcom.h"
#include "twitem.h"

#include <QTest>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// A journal line of one rewritten path.
QString edited(const QString &fullTag, const QString &before, const QString &after, int line)
{
    return "INFO : Modification de "_L1 + fullTag + u' ' + before + " en "_L1 + after + " (l."_L1
         + QString::number(line) + u')';
}

/// The journal of a run that rewrites these paths.
QStringList journalOf(const QStringList &changes)
{
    return QStringList{u"INFO : %1 entrées OBJE.FILE trouvées."_s.arg(changes.size())} + changes
         + QStringList{u"INFO : %1 chemins modifiés."_s.arg(changes.size())};
}

/// A media record with \p count files, the first on line 2, "media/1.jpg".
QStringList mediaRecord(int count)
{
    QStringList lines{u"0 @O1@ OBJE"_s, u"1 FILE media/1.jpg"_s};
    for (int i = 2; i <= count; ++i)
        lines += u"1 FILE media/%1.jpg"_s.arg(i);
    return lines.first(count + 1);
}

} // namespace

/// Replacing or removing the folder of media files.
class TstMediapath : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void values_data();
    void values();
    void entries_data();
    void entries();
    void replacedColumns_data();
    void replacedColumns();
    void deletedEntriesTakeNoPart();
    void hiddenEntriesTakePart();
    void nothingButTextChanges();
    void secondRun();
    void saved();
    void nothingToDo_data();
    void nothingToDo();
    void frame();
    void progress_data();
    void progress();
    void eventsDuringTheRun();
    void barKeepsItsVisibility();

private:
    AnsweredBoxes m_boxes; // none is expected; an unanswered one would block the test for ever
};

void TstMediapath::cleanup()
{
    QCOMPARE(m_boxes.texts(), QStringList());
}

void TstMediapath::values_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("newPath");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const QString &value, const QString &newPath,
                        const QString &expected) {
        QTest::newRow(name) << value << newPath << expected;
    };
    const QString photos = u"photos/"_s;
    const QString none;
    row("directory replaced", u"media/a.jpg"_s, photos, u"photos/a.jpg"_s);
    row("directories replaced", u"media/sub/a.jpg"_s, photos, u"photos/a.jpg"_s);
    row("directories taken away", u"media/sub/a.jpg"_s, none, u"a.jpg"_s);
    row("absolute path", u"/home/jean/a.jpg"_s, photos, u"photos/a.jpg"_s);
    row("slash in front", u"/a.jpg"_s, photos, u"photos/a.jpg"_s);
    row("slash in front taken away", u"/a.jpg"_s, none, u"a.jpg"_s);
    row("two slashes in a row", u"media//a.jpg"_s, photos, u"photos/a.jpg"_s);
    row("slash at the end", u"media/"_s, photos, photos);
    row("slash at the end, nothing stays", u"media/"_s, none, none);
    row("web address", u"https://site.fr/m/a.jpg?x=1"_s, photos, u"photos/a.jpg?x=1"_s);
    row("no directory", u"a.jpg"_s, photos, u"photos/a.jpg"_s);
    row("no directory, none wanted", u"a.jpg"_s, none, u"a.jpg"_s);

    row("backslashes only", uR"(C:\media\a.jpg)"_s, photos, uR"(photos/C:\media\a.jpg)"_s);
    row("backslashes only, none wanted", uR"(C:\media\a.jpg)"_s, none, uR"(C:\media\a.jpg)"_s);
    row("backslash before the slash", uR"(C:\media/a.jpg)"_s, photos, u"photos/a.jpg"_s);
    row("backslash before the slash, none wanted", uR"(C:\media/a.jpg)"_s, none, u"a.jpg"_s);
    row("backslash behind the slash", uR"(media/sub\a.jpg)"_s, photos, uR"(photos/sub\a.jpg)"_s);

    row("no dot", u"media/photo"_s, photos, u"photos/photo"_s);
    row("no dot, none wanted", u"media/photo"_s, none, u"photo"_s);
    row("no dot, no directory", u"photo"_s, photos, u"photos/photo"_s);
    row("dot in the directory", u"me.dia/photo"_s, photos, u"photos/photo"_s);
    row("two dots", u"../a.b.jpg"_s, photos, u"photos/a.b.jpg"_s);

    row("blanks at both ends", u"  media/a.jpg  "_s, photos, u"photos/a.jpg"_s);
    row("blanks at both ends, none wanted", u"  media/a.jpg  "_s, none, u"a.jpg"_s);
    row("blanks without directory, none wanted", u"  a.jpg  "_s, none, u"a.jpg"_s);
    row("blanks without directory come inside", u" a.jpg "_s, photos, u"photos/ a.jpg"_s);
    row("blank behind the slash", u"media/ a b.jpg"_s, none, u"a b.jpg"_s);
    row("other white space", u"\t\u00A0media/a.jpg\u00A0\t"_s, none, u"a.jpg"_s);
    row("nothing but blanks", u"   "_s, none, none);

    row("path without a separator", u"media/a.jpg"_s, u"photos"_s, u"photosa.jpg"_s);
    row("path with backslashes", u"media/a.jpg"_s, uR"(C:\photos\)"_s, uR"(C:\photos\a.jpg)"_s);
    row("path of several parts", u"media/a.jpg"_s, u"../a.b/c/"_s, u"../a.b/c/a.jpg"_s);
    row("path of a slash", u"media/a.jpg"_s, u"/"_s, u"/a.jpg"_s);
    row("blanks in the path", u"media/a.jpg"_s, u"mes  photos/"_s, u"mes  photos/a.jpg"_s);
    row("blanks around the path", u"media/a.jpg"_s, u"  photos/ "_s, u"photos/ a.jpg"_s);
    row("blank path", u"media/a.jpg"_s, u"  "_s, u"a.jpg"_s);
    row("accents", u"médias/été.jpg"_s, u"été à Nîmes/"_s, u"été à Nîmes/été.jpg"_s);

    row("placeholders in the path", u"media/a.jpg"_s, u"%1/%3/%20/"_s, u"%1/%3/%20/a.jpg"_s);
    row("placeholders in the value", u"%2/%1 %3 %4.jpg"_s, photos, u"photos/%1 %3 %4.jpg"_s);
    row("placeholders in both", u"%4/%3%1.jpg"_s, u"%2%1/%L3/"_s, u"%2%1/%L3/%3%1.jpg"_s);
}

void TstMediapath::values()
{
    QFETCH(QString, value);
    QFETCH(QString, newPath);
    QFETCH(QString, expected);

    Document doc;
    QVERIFY(doc.load({u"0 @O1@ OBJE"_s, "1 FILE "_L1 + value, u"2 FORM jpg"_s}));
    doc.newJournal();
    QCOMPARE(doc.gedcom.setMediaFilePath(newPath), 1);
    QCOMPARE(doc.lines(),
             QStringList({u"0 @O1@ OBJE"_s, "1 FILE "_L1 + expected, u"2 FORM jpg"_s}));
    QCOMPARE(doc.newJournal(), journalOf({edited(u"OBJE.FILE"_s, value, expected, 2)}));
    QCOMPARE(doc.status(), u"1 chemins modifiés."_s);
}

void TstMediapath::entries_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QList<int>>("taken"); // line numbers

    const auto row = [](const char *name, const QStringList &lines, const QList<int> &taken) {
        QTest::newRow(name) << lines << taken;
    };
    row("several files of a record, with what stands between",
        {u"0 @O1@ OBJE"_s, u"1 TITL media/t.jpg"_s, u"1 FILE media/a.jpg"_s, u"2 FORM jpg"_s,
         u"2 TITL media/u.jpg"_s, u"1 FILE media/b.jpg"_s, u"1 CHAN"_s, u"1 FILE media/c"_s},
        {3, 6, 8});
    row("records in file order, wherever they stand",
        {u"0 @O10@ OBJE"_s, u"1 FILE media/a.jpg"_s, u"0 @I1@ INDI"_s, u"1 SEX M"_s,
         u"0 @O2@ OBJE"_s, u"1 FILE media/b.jpg"_s, u"0 @O123456@ OBJE"_s, u"1 FILE media/c.jpg"_s},
        {2, 6, 8});
    row("files elsewhere",
        {u"0 HEAD"_s, u"1 FILE media/h.ged"_s, u"0 @I1@ INDI"_s, u"1 FILE media/i.jpg"_s,
         u"1 OBJE"_s, u"2 FILE media/j.jpg"_s, u"0 @S1@ SOUR"_s, u"1 OBJE"_s,
         u"2 FILE media/s.jpg"_s, u"0 @U1@ SUBM"_s, u"1 FILE media/u.jpg"_s, u"0 @X1@ SUBN"_s,
         u"1 FILE media/x.jpg"_s},
        {});
    row("deeper in a media record",
        {u"0 @O1@ OBJE"_s, u"1 FILE media/a.jpg"_s, u"2 FILE media/b.jpg"_s, u"1 SOUR @S1@"_s,
         u"2 OBJE"_s, u"3 FILE media/c.jpg"_s},
        {2});
    row("tags that only look like it",
        {u"0 @O1@ OBJE"_s, u"1 _FILE media/a.jpg"_s, u"1 FILES media/b.jpg"_s,
         u"1 file media/c.jpg"_s, u"1  FILE media/d.jpg"_s, u"10 FILE media/e.jpg"_s,
         u"1 TITL 1 FILE media/f.jpg"_s, u"1 FILE\tmedia/g.jpg"_s, u"1 FILE"_s},
        {});
    row("records that only look like it", {u"0 OBJE"_s,           u"1 FILE media/a.jpg"_s,
                                           u"0 @M1@ OBJE"_s,      u"1 FILE media/b.jpg"_s,
                                           u"0 @O@ OBJE"_s,       u"1 FILE media/c.jpg"_s,
                                           u"0 @O1A@ OBJE"_s,     u"1 FILE media/d.jpg"_s,
                                           u"0 @OB1@ OBJE"_s,     u"1 FILE media/e.jpg"_s,
                                           u"0 @O1@ OBJE x"_s,    u"1 FILE media/f.jpg"_s,
                                           u"0 @O1@ OBJET"_s,     u"1 FILE media/g.jpg"_s,
                                           u"0 @o1@ OBJE"_s,      u"1 FILE media/h.jpg"_s,
                                           u"0 @O1@ INDI"_s,      u"1 FILE media/i.jpg"_s,
                                           u"0 @O1@ OBJE "_s,     u"1 FILE media/j.jpg"_s,
                                           u"0 X @O1@ OBJE"_s,    u"1 FILE media/k.jpg"_s,
                                           u"0 @O1 @ OBJE"_s,     u"1 FILE media/l.jpg"_s,
                                           u"0  @O1@ OBJE"_s,     u"1 FILE media/m.jpg"_s,
                                           u"0 O1 OBJE"_s,        u"1 FILE media/n.jpg"_s,
                                           u"0 @O1@ NOTE OBJE"_s, u"1 FILE media/o.jpg"_s},
        {});
    row("the blank behind the level may be anything", {u"0 @O1@ OBJE"_s, u"1XFILE media/a.jpg"_s},
        {2});
}

void TstMediapath::entries()
{
    QFETCH(QStringList, lines);
    QFETCH(QList<int>, taken);

    Document doc;
    QVERIFY(doc.load(lines));
    QStringList expected = doc.lines();
    doc.newJournal();
    QCOMPARE(doc.gedcom.setMediaFilePath(u"photos/"_s), int(taken.size()));

    QStringList changes;
    for (const int line : std::as_const(taken)) {
        const QString before = expected.at(line - 1).mid(7); // after "1 FILE "
        const QString after = "photos/"_L1 + before.section(u'/', 1);
        changes += edited(u"OBJE.FILE"_s, before, after, line);
        expected[line - 1] = "1 FILE "_L1 + after;
    }
    QCOMPARE(doc.newJournal(), journalOf(changes));
    QCOMPARE(doc.lines(), expected);
    QCOMPARE(doc.status(), u"%1 chemins modifiés."_s.arg(taken.size()));
}

void TstMediapath::replacedColumns_data()
{
    QTest::addColumn<QStringList>("columns");
    QTest::addColumn<QString>("newPath");
    QTest::addColumn<int>("column");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QString>("fullTag");

    const QString photos = u"photos/"_s;
    const QString untagged;
    QTest::newRow("dot in the tag column")
        << QStringList{u"1"_s, u"FILE a.b/c"_s, u"media/x.jpg"_s} << photos << 1
        << QStringList{u"1"_s, u"photos/c"_s, u"media/x.jpg"_s} << untagged;
    QTest::newRow("dot in the tag column, without a slash")
        << QStringList{u"1"_s, u"FILE a.b"_s, u"media/x.jpg"_s} << photos << 1
        << QStringList{u"1"_s, u"photos/FILE a.b"_s, u"media/x.jpg"_s} << untagged;
    QTest::newRow("slash in the tag column, dot in the value")
        << QStringList{u"1"_s, u"FILE a/b"_s, u"media/x.jpg"_s} << photos << 2
        << QStringList{u"1"_s, u"FILE a/b"_s, u"photos/x.jpg"_s} << untagged;
    QTest::newRow("slash in the tag column, no dot")
        << QStringList{u"1"_s, u"FILE a/b"_s, u"media/x"_s} << photos << 2
        << QStringList{u"1"_s, u"FILE a/b"_s, u"photos/x"_s} << untagged;
    QTest::newRow("dot in the level column")
        << QStringList{u"1 FILE a.b/2"_s, u"FILE"_s, u"media/x.jpg"_s} << photos << 0
        << QStringList{u"photos/2"_s, u"FILE"_s, u"media/x.jpg"_s} << u"OBJE.FILE"_s;
    QTest::newRow("dot in the level column and in the tag column")
        << QStringList{u"1 FILE a.b/2"_s, u"FILE c.d/e"_s, u"media/x.jpg"_s} << QString() << 0
        << QStringList{u"2"_s, u"FILE c.d/e"_s, u"media/x.jpg"_s} << untagged;
    // The journal quotes the entry as it is after the change.
    QTest::newRow("the rewrite gives the tag")
        << QStringList{u"1"_s, u"FILE a.b/SOUR"_s, u"media/x.jpg"_s} << QString() << 1
        << QStringList{u"1"_s, u"SOUR"_s, u"media/x.jpg"_s} << u"OBJE.SOUR"_s;
    QTest::newRow("empty value") << QStringList{u"1"_s, u"FILE"_s, QString()} << photos << 2
                                 << QStringList{u"1"_s, u"FILE"_s, photos} << u"OBJE.FILE"_s;
    QTest::newRow("empty value, none wanted")
        << QStringList{u"1"_s, u"FILE"_s, QString()} << QString() << 2
        << QStringList{u"1"_s, u"FILE"_s, QString()} << u"OBJE.FILE"_s;
    QTest::newRow("no value column, dot in the tag column")
        << QStringList{u"1 FILE"_s, u"media/x.jpg"_s} << photos << 1
        << QStringList{u"1 FILE"_s, u"photos/x.jpg"_s} << untagged;
    QTest::newRow("no value column, no dot")
        << QStringList{u"1 FILE"_s, u"media/x"_s} << photos << 2
        << QStringList{u"1 FILE"_s, u"media/x"_s, photos} << untagged;
}

void TstMediapath::replacedColumns()
{
    QFETCH(QStringList, columns);
    QFETCH(QString, newPath);
    QFETCH(int, column);
    QFETCH(QStringList, expected);
    QFETCH(QString, fullTag);

    Document doc;
    QVERIFY(doc.load({u"0 @O1@ OBJE"_s, u"1 X"_s}));
    TwItem *twi = doc.entry(u"1 X"_s);
    for (int i = 0; i < int(columns.size()); ++i)
        twi->setText(i, columns.at(i));
    doc.newJournal();
    QCOMPARE(doc.gedcom.setMediaFilePath(newPath), 1);
    QCOMPARE(twi->getTwiValuesList(), expected);
    QCOMPARE(doc.newJournal(),
             journalOf({edited(fullTag, columns.value(column), expected.at(column), 2)}));
}

void TstMediapath::deletedEntriesTakeNoPart()
{
    Document doc;
    QVERIFY(doc.load({u"0 @O1@ OBJE"_s, u"1 FILE media/a.jpg"_s, u"1 FILE media/b.jpg"_s,
                      u"2 FORM jpg"_s, u"0 @O2@ OBJE"_s, u"1 FILE media/c.jpg"_s, u"0 @O3@ OBJE"_s,
                      u"1 FILE media/d.jpg"_s, u"1 TITL x"_s}));
    TwItem *b = doc.entry(u"1 FILE media/b.jpg"_s);
    TwItem *c = doc.entry(u"1 FILE media/c.jpg"_s);
    QCOMPARE(doc.gedcom.delListTag({u"FILE"_s}, false, false, true, false, u"b.jpg"_s), 2);
    // The file below stays live, but nothing below the record counts any longer.
    doc.entry(u"0 @O2@ OBJE"_s)->setDelete(true);
    QVERIFY(!c->isToDelete());
    doc.newJournal();

    QCOMPARE(doc.gedcom.setMediaFilePath(u"photos/"_s), 2);
    QCOMPARE(doc.newJournal(),
             journalOf({u"INFO : Modification de OBJE.FILE media/a.jpg en photos/a.jpg (l.2)"_s,
                        u"INFO : Modification de OBJE.FILE media/d.jpg en photos/d.jpg (l.8)"_s}));
    QCOMPARE(doc.status(), u"2 chemins modifiés."_s);
    QCOMPARE(doc.progress.maximum(), 2);
    QCOMPARE(doc.lines(), QStringList({u"0 @O1@ OBJE"_s, u"1 FILE photos/a.jpg"_s, u"0 @O3@ OBJE"_s,
                                       u"1 FILE photos/d.jpg"_s, u"1 TITL x"_s}));
    QCOMPARE(b->text(2), u"media/b.jpg"_s);
    QCOMPARE(c->text(2), u"media/c.jpg"_s);
}

void TstMediapath::hiddenEntriesTakePart()
{
    Document doc;
    QVERIFY(doc.load(mediaRecord(2)));
    TwItem *root = doc.entry(u"0 @O1@ OBJE"_s);
    TwItem *file = doc.entry(u"1 FILE media/2.jpg"_s);
    root->setTwiHidden(true);
    file->setTwiHidden(true);
    QCOMPARE(doc.gedcom.setMediaFilePath(u"photos/"_s), 2);
    QCOMPARE(file->text(2), u"photos/2.jpg"_s);
    QVERIFY(root->isHidden());
    QVERIFY(file->isHidden());
}

void TstMediapath::nothingButTextChanges()
{
    Document doc;
    QVERIFY(doc.load({u"0 @O1@ OBJE"_s, u"1 FILE media/a.jpg"_s, u"2 FORM jpg"_s, u"1 TITL x"_s}));
    const QList<TwItem *> entries = doc.gedcom.getTabTotalTwItems();
    QCOMPARE(entries.size(), 4);
    QCOMPARE(doc.gedcom.setMediaFilePath(u"photos/"_s), 1);
    QCOMPARE(doc.gedcom.getTabTotalTwItems(), entries);
    QCOMPARE(entries.at(1)->getParent(), entries.at(0));
    QCOMPARE(entries.at(2)->getParent(), entries.at(1));
    QCOMPARE(entries.at(0)->childCount(), 2);
    for (TwItem *twi : entries) {
        QVERIFY(!twi->isToDelete());
        QVERIFY(!twi->isHidden());
    }
}

void TstMediapath::secondRun()
{
    Document doc;
    QVERIFY(doc.load(
        {u"0 @O1@ OBJE"_s, u"1 FILE media/a.jpg"_s, u"1 FILE b.jpg"_s, uR"(1 FILE C:\c.jpg)"_s}));
    const QStringList photos{u"0 @O1@ OBJE"_s, u"1 FILE photos/a.jpg"_s, u"1 FILE photos/b.jpg"_s,
                             uR"(1 FILE photos/C:\c.jpg)"_s};
    QCOMPARE(doc.gedcom.setMediaFilePath(u"photos/"_s), 3);
    QCOMPARE(doc.lines(), photos);
    doc.newJournal();

    QCOMPARE(doc.gedcom.setMediaFilePath(u"photos/"_s), 3);
    QCOMPARE(doc.lines(), photos);
    const QString same = u"INFO : Modification de OBJE.FILE photos/%1 en photos/%1 (l.%2)"_s;
    QCOMPARE(doc.newJournal(),
             journalOf({same.arg(u"a.jpg"_s, u"2"_s), same.arg(u"b.jpg"_s, u"3"_s),
                        same.arg(uR"(C:\c.jpg)"_s, u"4"_s)}));
    QCOMPARE(doc.status(), u"3 chemins modifiés."_s);

    QCOMPARE(doc.gedcom.setMediaFilePath(QString()), 3);
    const QStringList bare{u"0 @O1@ OBJE"_s, u"1 FILE a.jpg"_s, u"1 FILE b.jpg"_s,
                           uR"(1 FILE C:\c.jpg)"_s};
    QCOMPARE(doc.lines(), bare);
    doc.newJournal();
    QCOMPARE(doc.gedcom.setMediaFilePath(QString()), 3);
    QCOMPARE(doc.lines(), bare);
    QCOMPARE(doc.newJournal(),
             journalOf({u"INFO : Modification de OBJE.FILE a.jpg en a.jpg (l.2)"_s,
                        u"INFO : Modification de OBJE.FILE b.jpg en b.jpg (l.3)"_s,
                        uR"(INFO : Modification de OBJE.FILE C:\c.jpg en C:\c.jpg (l.4))"_s}));
}

void TstMediapath::saved()
{
    Document doc;
    QVERIFY(doc.load({u"0 @O1@ OBJE"_s, u"1 FILE  media/été.jpg "_s, u"1 FILE media/"_s}));
    const QByteArray before = readBytes(doc.path());
    QCOMPARE(doc.gedcom.setMediaFilePath(QString()), 2);
    QCOMPARE(readBytes(doc.path()), before);
    QVERIFY(doc.gedcom.writeGedFile(doc.path()));
    QCOMPARE(readLines(doc.path()),
             QStringList({u"0 @O1@ OBJE"_s, u"1 FILE été.jpg"_s, u"1 FILE "_s, u"0 TRLR"_s}));
}

void TstMediapath::nothingToDo_data()
{
    QTest::addColumn<QStringList>("lines");

    QTest::newRow("empty document") << QStringList();
    QTest::newRow("no media record") << QStringList{u"0 @I1@ INDI"_s, u"1 FILE media/a.jpg"_s};
    QTest::newRow("media record without a file") << QStringList{u"0 @O1@ OBJE"_s, u"1 TITL x"_s};
}

void TstMediapath::nothingToDo()
{
    QFETCH(QStringList, lines);

    Document doc;
    QVERIFY(doc.load(lines));
    doc.newJournal();
    QCOMPARE(doc.gedcom.setMediaFilePath(u"photos/"_s), 0);
    QCOMPARE(doc.lines(), lines);
    QCOMPARE(doc.newJournal(), QStringList({u"INFO : 0 entrées OBJE.FILE trouvées."_s,
                                            u"INFO : 0 chemins modifiés."_s}));
    QCOMPARE(doc.status(), u"0 chemins modifiés."_s);
    QCOMPARE(doc.progress.minimum(), 0);
    QCOMPARE(doc.progress.maximum(), 0);
}

void TstMediapath::frame()
{
    Document doc;
    QVERIFY(doc.load(mediaRecord(25)));
    Told told(&doc);
    told.inDetail();
    QCOMPARE(doc.gedcom.setMediaFilePath(u"photos/"_s), 25);

    QStringList changes;
    for (int i = 1; i <= 25; ++i)
        changes +=
            edited(u"OBJE.FILE"_s, u"media/%1.jpg"_s.arg(i), u"photos/%1.jpg"_s.arg(i), i + 1);
    const QStringList journal = journalOf(changes);
    const QStringList start{u"debug: ON setMediaFilePath"_s,
                            u"bar at -1 of 27"_s, // the range is still that of the load
                            u"status: Modification des chemins médias en cours..."_s,
                            u"bar at -1 of 27"_s};
    const QStringList end{u"status: 25 chemins modifiés."_s, u"bar at 20 of 25"_s,
                          u"debug: OFF setMediaFilePath"_s, u"bar at 20 of 25"_s};
    QCOMPARE(told.take(),
             start + withMoves(journal, {{11, u"10 of 25"_s}, {21, u"20 of 25"_s}}) + end);
    QCOMPARE(doc.progress.value(), -1);
}

void TstMediapath::progress_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("no file") << 0 << QStringList();
    QTest::newRow("9 files") << 9 << QStringList();
    QTest::newRow("10 files") << 10 << QStringList{u"10 of 10"_s, u"events at 10"_s};
    QTest::newRow("25 files") << 25
                              << QStringList{u"10 of 25"_s, u"events at 10"_s, u"20 of 25"_s,
                                             u"events at 20"_s};
    QTest::newRow("30 files") << 30 << QStringList{u"10 of 30"_s, u"events at 10"_s,
                                                   u"20 of 30"_s, u"events at 20"_s,
                                                   u"30 of 30"_s, u"events at 30"_s};
}

void TstMediapath::progress()
{
    QFETCH(int, size);
    QFETCH(QStringList, expected);

    // Only the files of all records count for the bar.
    QStringList lines{u"0 @I1@ INDI"_s, u"1 SEX M"_s};
    for (int i = 0; i < size; ++i) {
        if (i % 4 == 0)
            lines += {u"0 @O%1@ OBJE"_s.arg(i), u"1 TITL a.b"_s};
        lines += {u"1 FILE media/a.jpg"_s, u"2 FORM jpg"_s};
    }
    Document doc;
    QVERIFY(doc.load(lines));
    const ProgressLog log(&doc.progress);
    QCOMPARE(doc.gedcom.setMediaFilePath(u"photos/"_s), size);
    QCOMPARE(log.entries(), expected);
    QCOMPARE(doc.progress.minimum(), 0);
    QCOMPARE(doc.progress.maximum(), size);
    QCOMPARE(doc.progress.value(), -1);
}

void TstMediapath::eventsDuringTheRun()
{
    Document doc;
    QVERIFY(doc.load(mediaRecord(25)));
    doc.newJournal();
    TwItem *deleted = doc.entry(u"1 FILE media/15.jpg"_s);
    TwItem *changed = doc.entry(u"1 FILE media/20.jpg"_s);

    QStringList before;
    QMetaObject::invokeMethod(
        this,
        [&] {
            before = doc.newJournal();
            deleted->setDelete(true);
            changed->setText(2, u"autre/z.jpg"_s);
        },
        Qt::QueuedConnection);
    // The list of entries is made at the start; their texts are read when their turn comes.
    QCOMPARE(doc.gedcom.setMediaFilePath(u"photos/"_s), 25);
    QCOMPARE(before.size(), 11);
    QCOMPARE(before.constLast(),
             u"INFO : Modification de OBJE.FILE media/10.jpg en photos/10.jpg (l.11)"_s);

    QStringList expected;
    for (int i = 11; i <= 25; ++i) {
        expected += edited(u"OBJE.FILE"_s, i == 20 ? u"autre/z.jpg"_s : u"media/%1.jpg"_s.arg(i),
                           i == 20 ? u"photos/z.jpg"_s : u"photos/%1.jpg"_s.arg(i), i + 1);
    }
    QCOMPARE(doc.newJournal(), expected + QStringList{u"INFO : 25 chemins modifiés."_s});
    QCOMPARE(deleted->text(2), u"photos/15.jpg"_s);
}

void TstMediapath::barKeepsItsVisibility()
{
    Document doc;
    QVERIFY(doc.load(mediaRecord(10)));
    doc.gedcom.setMediaFilePath(u"photos/"_s);
    QVERIFY(!doc.progress.isVisible());
    doc.progress.show();
    doc.gedcom.setMediaFilePath(u"photos/"_s);
    QVERIFY(doc.progress.isVisible());
}

VARLUNE_TEST_MAIN(TstMediapath)
#include "tst_mediapath.moc"
