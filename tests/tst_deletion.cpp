#include "boxes.h"
#include "document.h"
#include "markingtranslator.h"
#include "progresslog.h"
#include "testmain.h"
#include "told.h"
#include "window.h"

#include <QMap>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Deletes with these options: "tags=BIRT;DATE", "emptyOnly=true", "noChilds=true",
/// "contains=true", "rx=true", "value=Paris". Without "tags" the list of patterns is empty. Returns
/// the number of deletions.
int runDeletion(Document &document, const QStringList &options)
{
    QStringList tags;
    QString value;
    QMap<QString, bool> flags{
        {u"emptyOnly"_s, false}, {u"noChilds"_s, false}, {u"contains"_s, false}, {u"rx"_s, false}};
    for (const QString &option : options) {
        const QString key = option.section(u'=', 0, 0);
        const QString text = option.section(u'=', 1);
        if (key == "tags"_L1)
            tags = text.split(u';');
        else if (key == "value"_L1)
            value = text;
        else if (text != "true"_L1 || !flags.contains(key))
            QTest::qFail(qPrintable("unknown option: " + option), __FILE__, __LINE__);
        else
            flags[key] = true;
    }
    return document.gedcom.delListTag(tags, flags.value(u"emptyOnly"_s), flags.value(u"noChilds"_s),
                                      flags.value(u"contains"_s), flags.value(u"rx"_s), value);
}

QStringList deletionJournal(QStringList entries)
{
    for (QString &entry : entries)
        entry.prepend(u"INFO : Suppression de l'entrée : "_s);
    return entries + QStringList{u"INFO : %1 suppressions effectuées."_s.arg(entries.size())};
}

} // namespace

/// The deletion of tags: patterns, conditions and the order in which entries go.
class TstDeletion : public QObject
{
    Q_OBJECT

private slots:
    void entries_data();
    void entries();
    void conditionsAddUp_data();
    void conditionsAddUp();
    void frame();
    void secondRunFindsNothing();
    void marksAndHides();
    void earlierDeletionsCountNoMore();
    void liveEntryBelowAFoldedOne_data();
    void liveEntryBelowAFoldedOne();
    void progress_data();
    void progress();
    void eventsAreProcessedOnlyAtThePeriod();
    void rangeIsThatOfTheLiveEntries();
    void createdEntryHasNoLine();
    void textsAreTranslated();
    void throughTheForm();
};

void TstDeletion::entries_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("deleted");

    const QStringList head{u"0 HEAD"_s, u"1 CHAR UTF-8"_s};
    const auto row = [&head](const char *name, const QStringList &lines, const QStringList &options,
                             const QStringList &deleted) {
        QTest::newRow(name) << head + lines << options << deleted;
    };

    const QStringList births{
        u"0 @I1@ INDI"_s, u"1 BIRT"_s,     u"2 DATE 1900"_s, u"2 SOUR @S1@"_s,
        u"3 PAGE 7"_s,    u"0 @F1@ FAM"_s, u"1 BIRT"_s,      u"2 DATE 1910"_s,
    };
    row("full tag, with all it holds", births, {u"tags=INDI.BIRT"_s},
        {
            u"INDI.BIRT.DATE 2 DATE 1900 (l.5)"_s,
            u"INDI.BIRT.SOUR 2 SOUR @S1@ (l.6)"_s,
            u"INDI.BIRT.SOUR.PAGE 3 PAGE 7 (l.7)"_s,
            u"INDI.BIRT 1 BIRT (l.4)"_s,
        });
    row("bare tag at any depth, from the end of the file to its start", births, {u"tags=DATE"_s},
        {u"FAM.BIRT.DATE 2 DATE 1910 (l.10)"_s, u"INDI.BIRT.DATE 2 DATE 1900 (l.5)"_s});
    row("star stands for one level", births, {u"tags=*.BIRT.SOUR"_s},
        {u"INDI.BIRT.SOUR.PAGE 3 PAGE 7 (l.7)"_s, u"INDI.BIRT.SOUR 2 SOUR @S1@ (l.6)"_s});
    row("tail of a full tag matches nothing", births, {u"tags=BIRT.DATE"_s}, {});
    row("tag that is not there", births, {u"tags=DEAT"_s}, {});
    row("tag in lower case", births, {u"tags=birt"_s}, {});
    row("tag behind a blank", births, {u"tags=NOTE; BIRT"_s}, {});
    row("own line of a child that goes first", births, {u"tags=INDI.BIRT;SOUR"_s},
        {
            u"INDI.BIRT.SOUR.PAGE 3 PAGE 7 (l.7)"_s,
            u"INDI.BIRT.SOUR 2 SOUR @S1@ (l.6)"_s,
            u"INDI.BIRT.DATE 2 DATE 1900 (l.5)"_s,
            u"INDI.BIRT 1 BIRT (l.4)"_s,
        });
    row("no line twice when child and parent are named", births, {u"tags=DATE;SOUR;PAGE;BIRT"_s},
        {
            u"FAM.BIRT.DATE 2 DATE 1910 (l.10)"_s,
            u"FAM.BIRT 1 BIRT (l.9)"_s,
            u"INDI.BIRT.SOUR.PAGE 3 PAGE 7 (l.7)"_s,
            u"INDI.BIRT.SOUR 2 SOUR @S1@ (l.6)"_s,
            u"INDI.BIRT.DATE 2 DATE 1900 (l.5)"_s,
            u"INDI.BIRT 1 BIRT (l.4)"_s,
        });
    row("whole record", births, {u"tags=FAM"_s},
        {
            u"FAM.BIRT 1 BIRT (l.9)"_s,
            u"FAM.BIRT.DATE 2 DATE 1910 (l.10)"_s,
            u"FAM 0 @F1@ FAM (l.8)"_s,
        });
    row("record that is not on screen", {u"0 @U1@ SUBM"_s, u"1 NAME Moi"_s}, {u"tags=SUBM"_s},
        {u"SUBM.NAME 1 NAME Moi (l.4)"_s, u"SUBM 0 @U1@ SUBM (l.3)"_s});
    row("no pattern at all is no restriction", {}, {},
        {u"HEAD.CHAR 1 CHAR UTF-8 (l.2)"_s, u"HEAD 0 HEAD (l.1)"_s});
    row("placeholders in a value are text", {u"0 @I1@ INDI"_s, u"1 NOTE 100 %1 %2"_s},
        {u"tags=NOTE"_s}, {u"INDI.NOTE 1 NOTE 100 %1 %2 (l.4)"_s});

    const QStringList untagged{
        u"0 @I1@ INDI"_s,       u"1 NOTE court"_s, u"1 _FA1 privé"_s, u"2 TYPE x"_s,
        u"0 @N1@ NOTE texte"_s, u"1 CONT suite"_s, u"2 SOUR @S1@"_s,
    };
    const QStringList untaggedDeleted{
        u"CONT 1 CONT suite (l.8)"_s,  u"CONT.SOUR 2 SOUR @S1@ (l.9)"_s,
        u" 0 @N1@ NOTE texte (l.7)"_s, u"TYPE 2 TYPE x (l.6)"_s,
        u" 1 _FA1 privé (l.5)"_s,
    };
    row("empty pattern matches what has no tag", untagged, {u"tags="_s}, untaggedDeleted);
    row("final semicolon is an empty pattern", untagged, {u"tags=NOTE;"_s},
        untaggedDeleted + QStringList{u"INDI.NOTE 1 NOTE court (l.4)"_s});

    const QStringList notes{
        u"0 @I1@ INDI"_s, u"1 NOTE"_s,     u"1 NOTE texte"_s, u"1 NOTE   "_s,
        u"1 NOTE\t"_s,    u"1 NOTE \t "_s, u"2 DATE 1900"_s,
    };
    row("empty ones only", notes, {u"tags=NOTE"_s, u"emptyOnly=true"_s},
        {
            u"INDI.NOTE.DATE 2 DATE 1900 (l.9)"_s,
            u"INDI.NOTE 1 NOTE \t  (l.8)"_s,
            u"INDI.NOTE 1 NOTE    (l.6)"_s,
            u"INDI.NOTE 1 NOTE (l.4)"_s,
        });
    row("a record without identifier is empty, one with it is not",
        {u"0 @I1@ INDI"_s, u"1 SEX M"_s}, {u"tags=*"_s, u"emptyOnly=true"_s},
        {u"HEAD.CHAR 1 CHAR UTF-8 (l.2)"_s, u"HEAD 0 HEAD (l.1)"_s});

    const QStringList empties{
        u"0 @I1@ INDI"_s, u"1 BIRT"_s,      u"2 DATE"_s, u"1 BIRT"_s,
        u"2 DATE"_s,      u"2 DATE 1900"_s, u"1 DEAT"_s, u"2 DATE"_s,
    };
    row("empty and childless goes upwards", empties,
        {u"tags=BIRT;DATE"_s, u"emptyOnly=true"_s, u"noChilds=true"_s},
        {
            u"INDI.DEAT.DATE 2 DATE (l.10)"_s,
            u"INDI.BIRT.DATE 2 DATE (l.7)"_s,
            u"INDI.BIRT.DATE 2 DATE (l.5)"_s,
            u"INDI.BIRT 1 BIRT (l.4)"_s,
        });
    row("childless ones only", empties, {u"tags=BIRT;DEAT"_s, u"noChilds=true"_s}, {});
    row("a record is childless when nothing of it is left",
        {u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 DATE"_s},
        {u"tags=DATE;INDI;BIRT"_s, u"noChilds=true"_s},
        {
            u"INDI.BIRT.DATE 2 DATE (l.5)"_s,
            u"INDI.BIRT 1 BIRT (l.4)"_s,
            u"INDI 0 @I1@ INDI (l.3)"_s,
        });
    row("a record is not childless above a grandchild",
        {u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 DATE"_s}, {u"tags=INDI"_s, u"noChilds=true"_s}, {});

    const QStringList places{
        u"0 @I1@ INDI"_s, u"1 RESI Paris, France"_s, u"1 RESI"_s, u"2 PLAC Paris, France"_s,
        u"1 RESI"_s,      u"2 PLAC Paris"_s,
    };
    const QStringList byContent{u"tags=RESI"_s, u"contains=true"_s};
    row("content, a part of the entry or a whole column of a child", places,
        byContent + QStringList{u"value=Paris"_s},
        {
            u"INDI.RESI.PLAC 2 PLAC Paris (l.8)"_s,
            u"INDI.RESI 1 RESI (l.7)"_s,
            u"INDI.RESI 1 RESI Paris, France (l.4)"_s,
        });
    const QStringList allPlaces{
        u"INDI.RESI.PLAC 2 PLAC Paris (l.8)"_s,         u"INDI.RESI 1 RESI (l.7)"_s,
        u"INDI.RESI.PLAC 2 PLAC Paris, France (l.6)"_s, u"INDI.RESI 1 RESI (l.5)"_s,
        u"INDI.RESI 1 RESI Paris, France (l.4)"_s,
    };
    row("content by regex, a part of either", places,
        byContent + QStringList{u"rx=true"_s, u"value=Paris"_s}, allPlaces);
    row("content by regex, one column at a time", places,
        byContent + QStringList{u"rx=true"_s, u"value=^Paris$"_s},
        {u"INDI.RESI.PLAC 2 PLAC Paris (l.8)"_s, u"INDI.RESI 1 RESI (l.7)"_s});
    row("content by regex, no column spans a line", places,
        byContent + QStringList{u"rx=true"_s, u"value=PLAC Paris"_s}, {});
    row("content in another case", places, byContent + QStringList{u"value=paris"_s}, {});
    row("content in another case by regex", places,
        byContent + QStringList{u"rx=true"_s, u"value=paris"_s}, {});
    row("content in any case by regex", places,
        byContent + QStringList{u"rx=true"_s, u"value=(?i)pARIS"_s}, allPlaces);
    row("invalid regex matches nothing", places,
        byContent + QStringList{u"rx=true"_s, u"value=("_s}, {});
    row("empty regex matches everything", places,
        byContent + QStringList{u"rx=true"_s, u"value="_s}, allPlaces);
    row("empty content is in every entry", places, byContent + QStringList{u"value="_s}, allPlaces);
    row("regex and value without content", places, {u"tags=RESI"_s, u"rx=true"_s, u"value=("_s},
        allPlaces);
    row("tag of a child as content", places, byContent + QStringList{u"value=PLAC"_s},
        {
            u"INDI.RESI.PLAC 2 PLAC Paris (l.8)"_s,
            u"INDI.RESI 1 RESI (l.7)"_s,
            u"INDI.RESI.PLAC 2 PLAC Paris, France (l.6)"_s,
            u"INDI.RESI 1 RESI (l.5)"_s,
        });
    row("part of a child's tag as content", places, byContent + QStringList{u"value=PLA"_s}, {});
    row("part of the own tag as content", places, byContent + QStringList{u"value=ESI"_s},
        allPlaces);
    row("level of a child as content", places, byContent + QStringList{u"value=2"_s},
        {
            u"INDI.RESI.PLAC 2 PLAC Paris (l.8)"_s,
            u"INDI.RESI 1 RESI (l.7)"_s,
            u"INDI.RESI.PLAC 2 PLAC Paris, France (l.6)"_s,
            u"INDI.RESI 1 RESI (l.5)"_s,
        });
    row("own level as content", places, byContent + QStringList{u"value=1"_s}, allPlaces);

    const QStringList deep{
        u"0 @I1@ INDI"_s,  u"1 RESI"_s,      u"2 ADDR"_s,
        u"3 CITY Paris"_s, u"0 @I2@ INDI"_s, u"1 RESI Lyon"_s,
    };
    row("content deep below an event", deep, {u"tags=RESI"_s, u"contains=true"_s, u"value=Paris"_s},
        {});
    row("content deep below an event by regex", deep,
        {u"tags=RESI"_s, u"contains=true"_s, u"rx=true"_s, u"value=Paris"_s}, {});
    const QStringList deepRecord{
        u"INDI.RESI 1 RESI (l.4)"_s,
        u"INDI.RESI.ADDR 2 ADDR (l.5)"_s,
        u"INDI.RESI.ADDR.CITY 3 CITY Paris (l.6)"_s,
        u"INDI 0 @I1@ INDI (l.3)"_s,
    };
    row("content deep below a record", deep, {u"tags=INDI"_s, u"contains=true"_s, u"value=Paris"_s},
        deepRecord);
    row("content deep below a record by regex", deep,
        {u"tags=INDI"_s, u"contains=true"_s, u"rx=true"_s, u"value=^P.ris$"_s}, deepRecord);
    row("content of a child that has just been deleted", deep,
        {u"tags=CITY;ADDR"_s, u"contains=true"_s, u"value=Paris"_s},
        {u"INDI.RESI.ADDR.CITY 3 CITY Paris (l.6)"_s});
}

void TstDeletion::entries()
{
    QFETCH(QStringList, lines);
    QFETCH(QStringList, options);
    QFETCH(QStringList, deleted);

    Document document;
    QVERIFY(document.load(lines));
    document.newJournal();

    QCOMPARE(runDeletion(document, options), int(deleted.size()));
    QCOMPARE(document.newJournal(), deletionJournal(deleted));
    QCOMPARE(document.status(), u"%1 balises supprimées."_s.arg(deleted.size()));

    QSet<qsizetype> gone;
    for (const QString &entry : std::as_const(deleted))
        gone += entry.section("(l."_L1, -1).chopped(1).toInt() - 1;
    QStringList left;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (!gone.contains(i))
            left += lines.at(i);
    }
    QCOMPARE(gone.size(), deleted.size());
    QCOMPARE(document.lines(), left);
}

void TstDeletion::conditionsAddUp_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("deleted");

    const auto row = [](const char *name, const QStringList &options, const QString &deleted) {
        QTest::newRow(name) << options << deleted;
    };
    const QString empty = u"emptyOnly=true"_s;
    const QString childless = u"noChilds=true"_s;
    const QString content = u"contains=true"_s;
    row("none", {}, u"13 12 11 10 9 8 7 6 5 4 3 2"_s);
    row("empty", {empty}, u"7 6 5 4 3 2"_s);
    row("childless", {childless}, u"9 8 3 2"_s);
    row("content", {content}, u"11 10 8 5 4 2"_s);
    row("empty and childless", {empty, childless}, u"3 2"_s);
    row("empty with content", {empty, content}, u"5 4 2"_s);
    row("childless with content", {childless, content}, u"8 2"_s);
    row("all", {empty, childless, content}, u"2"_s);
}

void TstDeletion::conditionsAddUp()
{
    QFETCH(QStringList, options);
    QFETCH(QString, deleted);

    Document document;
    // Each of the eight kinds of entry; the searched content is a part of one of the two tags.
    QVERIFY(document.load({
        u"0 @I1@ INDI"_s,
        u"1 EVEN"_s,
        u"1 OCCU"_s,
        u"1 EVEN"_s,
        u"2 DATE 1"_s,
        u"1 OCCU"_s,
        u"2 DATE 2"_s,
        u"1 EVEN x"_s,
        u"1 OCCU x"_s,
        u"1 EVEN x"_s,
        u"2 DATE 3"_s,
        u"1 OCCU x"_s,
        u"2 DATE 4"_s,
    }));
    document.newJournal();
    options += QStringList{u"tags=EVEN;OCCU"_s, u"value=EVE"_s};
    QCOMPARE(runDeletion(document, options), int(deleted.count(u' ')) + 1);

    QStringList numbers;
    const QStringList journal = document.newJournal();
    for (const QString &line : journal) {
        if (line.contains(u"Suppression"_s))
            numbers += line.section("(l."_L1, -1).chopped(1);
    }
    QCOMPARE(numbers.join(u' '), deleted);
    QCOMPARE(journal.size(), numbers.size() + 1);
}

void TstDeletion::frame()
{
    Document document;
    QStringList lines{u"0 HEAD"_s};
    for (int i = 0; i < 120; ++i)
        lines += u"1 NOTE"_s;
    QVERIFY(document.load(lines));
    Told told(&document);
    told.inDetail();
    QCOMPARE(runDeletion(document, {u"tags=NOTE"_s}), 120);

    QStringList deleted;
    for (int line = 121; line > 1; --line)
        deleted += u"HEAD.NOTE 1 NOTE (l.%1)"_s.arg(line);
    const QStringList journal = deletionJournal(deleted);
    const QStringList start{u"debug: ON delListTag"_s,
                            u"bar at -1 of 122"_s, // the range is still that of the load
                            u"status: Suppression des balises en cours..."_s,
                            u"bar at -1 of 122"_s};
    const QStringList end{u"status: 120 balises supprimées."_s, u"bar at 100 of 121"_s,
                          u"debug: OFF delListTag"_s, u"bar at 100 of 121"_s};
    QCOMPARE(told.take(), start + withMoves(journal, {{100, u"100 of 121"_s}}) + end);
    QCOMPARE(document.progress.minimum(), 0);
    QCOMPARE(document.progress.value(), -1);
}

void TstDeletion::secondRunFindsNothing()
{
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NOTE texte"_s, u"2 CONT suite"_s, u"1 SEX M"_s}));
    document.newJournal();

    QCOMPARE(runDeletion(document, {u"tags=NOTE"_s}), 2);
    QCOMPARE(document.newJournal(), deletionJournal({
                                        u"INDI.NOTE.CONT 2 CONT suite (l.3)"_s,
                                        u"INDI.NOTE 1 NOTE texte (l.2)"_s,
                                    }));
    QCOMPARE(document.status(), u"2 balises supprimées."_s);
    QCOMPARE(runDeletion(document, {u"tags=NOTE"_s}), 0);
    QCOMPARE(document.newJournal(), QStringList{u"INFO : 0 suppressions effectuées."_s});
    QCOMPARE(document.status(), u"0 balises supprimées."_s);
}

void TstDeletion::marksAndHides()
{
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NOTE texte"_s, u"2 CONT suite"_s, u"1 SEX M"_s}));
    TwItem *root = document.entry(u"0 @I1@ INDI"_s);
    TwItem *note = document.entry(u"1 NOTE texte"_s);
    TwItem *cont = document.entry(u"2 CONT suite"_s);
    TwItem *sex = document.entry(u"1 SEX M"_s);
    runDeletion(document, {u"tags=NOTE"_s});

    for (TwItem *twi : {note, cont}) {
        QVERIFY(twi->isToDelete());
        QVERIFY(twi->isHidden());
    }
    for (TwItem *twi : {root, sex}) {
        QVERIFY(!twi->isToDelete());
        QVERIFY(!twi->isHidden());
    }
    // The entries keep their place and are only missing from the live lists.
    QCOMPARE(root->childCount(), 2);
    QCOMPARE(root->getTabTwiChilds(false), (QList<TwItem *>{note, cont, sex}));
    QCOMPARE(root->getTabTwiChilds(true), QList<TwItem *>{sex});
    QCOMPARE(note->getTabTwiChilds(false), QList<TwItem *>{cont});
    QCOMPARE(document.gedcom.getTabTotalTwItems(), (QList<TwItem *>{root, sex}));
}

void TstDeletion::earlierDeletionsCountNoMore()
{
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 DATE 1900"_s, u"2 PLAC Paris"_s}));
    runDeletion(document, {u"tags=DATE"_s});
    document.newJournal();

    QCOMPARE(runDeletion(document, {u"tags=BIRT"_s, u"noChilds=true"_s}), 0);
    QCOMPARE(runDeletion(document, {u"tags=BIRT"_s, u"contains=true"_s, u"value=1900"_s}), 0);
    document.newJournal();
    QCOMPARE(runDeletion(document, {u"tags=BIRT"_s}), 2);
    QCOMPARE(document.newJournal(), deletionJournal({
                                        u"INDI.BIRT.PLAC 2 PLAC Paris (l.4)"_s,
                                        u"INDI.BIRT 1 BIRT (l.2)"_s,
                                    }));
}

void TstDeletion::liveEntryBelowAFoldedOne_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("deleted");
    QTest::addColumn<QStringList>("left");

    const QStringList note{u"INDI.NOTE 1 NOTE texte long (l.2)"_s};
    const QStringList record{u"0 @I1@ INDI"_s, u"3 SOUR @S1@"_s};
    QTest::newRow("no live child, so that nothing below is looked at")
        << QStringList{u"tags=NOTE"_s} << note << record;
    QTest::newRow("childless") << QStringList{u"tags=NOTE"_s, u"noChilds=true"_s} << note << record;
    QTest::newRow("no content either")
        << QStringList{u"tags=NOTE"_s, u"contains=true"_s, u"value=SOUR"_s} << QStringList{}
        << QStringList{u"0 @I1@ INDI"_s, u"1 NOTE texte long"_s, u"3 SOUR @S1@"_s};
    QTest::newRow("a record holds it")
        << QStringList{u"tags=INDI"_s, u"contains=true"_s, u"value=SOUR"_s}
        << QStringList{note.constFirst(), u"INDI.NOTE.CONC.SOUR 3 SOUR @S1@ (l.4)"_s,
                       u"INDI 0 @I1@ INDI (l.1)"_s}
        << QStringList{};
}

void TstDeletion::liveEntryBelowAFoldedOne()
{
    QFETCH(QStringList, options);
    QFETCH(QStringList, deleted);
    QFETCH(QStringList, left);

    Document document;
    QVERIFY(
        document.load({u"0 @I1@ INDI"_s, u"1 NOTE texte"_s, u"2 CONC  long"_s, u"3 SOUR @S1@"_s}));
    QCOMPARE(document.gedcom.unConc(), 1);
    document.newJournal();

    QCOMPARE(runDeletion(document, options), int(deleted.size()));
    QCOMPARE(document.newJournal(), deletionJournal(deleted));
    QCOMPARE(document.lines(), left);
}

void TstDeletion::progress_data()
{
    QTest::addColumn<int>("entries");
    QTest::addColumn<QList<int>>("values");

    QTest::newRow("2 entries") << 2 << QList<int>{};
    QTest::newRow("99 entries") << 99 << QList<int>{};
    QTest::newRow("100 entries") << 100 << QList<int>{100};
    QTest::newRow("350 entries") << 350 << QList<int>{100, 200, 300};
}

void TstDeletion::progress()
{
    QFETCH(int, entries);
    QFETCH(QList<int>, values);

    Document document;
    QStringList lines{u"0 HEAD"_s};
    while (lines.size() < entries)
        lines += lines.size() % 2 ? u"1 NOTE"_s : u"1 DATE"_s;
    QVERIFY(document.load(lines));

    const ProgressLog log(&document.progress);
    const QSignalSpy statusSpy(&document.statusBar, &QStatusBar::messageChanged);
    // Every entry counts for the bar, whether it matches or not.
    const int count = runDeletion(document, {u"tags=NOTE"_s});
    QCOMPARE(count, entries / 2);

    // Events are processed once a step.
    QStringList steps;
    for (const int value : std::as_const(values)) {
        steps += u"%1 of %2"_s.arg(value).arg(entries);
        steps += u"events at %1"_s.arg(value);
    }
    QCOMPARE(log.entries(), steps);
    QCOMPARE(document.progress.minimum(), 0);
    QCOMPARE(document.progress.maximum(), entries);
    QCOMPARE(document.progress.value(), -1);
    QCOMPARE(statusSpy.size(), 2);
    QCOMPARE(statusSpy.at(0).constFirst().toString(), u"Suppression des balises en cours..."_s);
    QCOMPARE(statusSpy.at(1).constFirst().toString(), u"%1 balises supprimées."_s.arg(count));
}

void TstDeletion::eventsAreProcessedOnlyAtThePeriod()
{
    Document document;
    QStringList lines{u"0 HEAD"_s};
    while (lines.size() < 299)
        lines += u"1 NOTE"_s;
    QVERIFY(document.load(lines));

    QStringList events;
    const auto post = [this, &events](const QString &text) {
        QMetaObject::invokeMethod(
            this, [&events, text] { events += text; }, Qt::QueuedConnection);
    };
    connect(&document.progress, &QProgressBar::valueChanged, this, [&](int value) {
        events += u"bar %1"_s.arg(value);
        post(u"event behind %1"_s.arg(value));
    });
    post(u"event before the run"_s);
    runDeletion(document, {u"tags=NOTE"_s});
    QCOMPARE(events, (QStringList{
                         u"bar 100"_s,
                         u"event before the run"_s,
                         u"event behind 100"_s,
                         u"bar 200"_s,
                         u"event behind 200"_s,
                     }));
    post(u"event after the run"_s);
    QCOMPARE(events.size(), 5);
    QCoreApplication::processEvents();
    QCOMPARE(events.constLast(), u"event after the run"_s);
}

void TstDeletion::rangeIsThatOfTheLiveEntries()
{
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NOTE"_s, u"1 NOTE"_s, u"1 SEX M"_s}));
    runDeletion(document, {u"tags=NOTE"_s});
    QCOMPARE(document.progress.maximum(), 4);
    runDeletion(document, {u"tags=NOTE"_s});
    QCOMPARE(document.progress.maximum(), 2);
}

void TstDeletion::createdEntryHasNoLine()
{
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 NOTE "_s + u"mot "_s.repeated(75) + u"fin"_s}));
    QCOMPARE(document.gedcom.checkOversized(), 1);
    const QStringList lines = document.lines();
    QCOMPARE(lines.size(), 3);
    document.newJournal();

    QCOMPARE(runDeletion(document, {u"tags=CONC"_s}), 1);
    QCOMPARE(document.newJournal(),
             deletionJournal({u"INDI.NOTE.CONC "_s + lines.constLast() + u" (l.-1)"_s}));
    QCOMPARE(document.lines(), lines.mid(0, 2));
}

void TstDeletion::textsAreTranslated()
{
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 DATE 1900"_s}));
    document.newJournal();
    QStringList told;
    connect(&document.statusBar, &QStatusBar::messageChanged, this,
            [&told](const QString &text) { told += text; });
    const MarkingTranslator translator;
    QCOMPARE(runDeletion(document, {u"tags=BIRT"_s}), 2);
    told += document.newJournal();
    QCOMPARE(told.size(), 5);
    for (const QString &text : std::as_const(told))
        QVERIFY2(text.contains(u'['), qPrintable(text));
}

void TstDeletion::throughTheForm()
{
    const QString path = QStringLiteral(TEST_DATA "/suppression/valeur-regex");
    const Session session;
    session.window->show();
    writeBytes(session.path(), readBytes(path + ".avant.ged"_L1));
    const AnsweredBoxes boxes;
    session.open(session.path());

    session.apply({u"gbDelTags"_s, u"leTagsToDel=INDI.RESI"_s, uR"(leValueToDel=(?i)^paris\b)"_s,
                   u"!cbDelEmptyTags"_s, u"!cbDelEmptyClilds"_s, u"cbDelIfContent"_s,
                   u"cbDelIfContentRX"_s});

    QCOMPARE(boxes.texts(), QStringList());
    QCOMPARE(session.journalWindows().size(), 1);
    const QStringList before{
        "INFO : Chargement du fichier "_L1 + session.path(),
        u"INFO : Chargement de 24 lignes terminé."_s,
        u"INFO : Chargement du fichier GED terminé."_s,
        u"INFO : 4 entrées trouvées."_s,
    };
    QCOMPARE(journalIn(session.journalWindows().constFirst()),
             before + readLines(path + ".journal.txt"_L1));
    QCOMPARE(readBytes(session.path()), readBytes(path + ".avant.ged"_L1));

    session.trigger(u"actionEnregistrerFichier"_s);
    QCOMPARE(boxes.texts(), QStringList());
    QCOMPARE(readText(session.path()), readText(path + ".apres.ged"_L1));
}

VARLUNE_TEST_MAIN(TstDeletion)
#include "tst_deletion.moc"
