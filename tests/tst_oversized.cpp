#include "document.h"
#include "testmain.h"
#include "told.h"

#include <QRandomGenerator>
#include <QScrollBar>
#include <QTreeWidgetItemIterator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// \p size characters without a blank. The pattern is 23 characters long, so a piece that begins at
/// the wrong place shows.
QString run(qsizetype size)
{
    QString text;
    for (qsizetype i = 0; i < size; ++i)
        text += QChar(u'a' + char16_t(i % 23));
    return text;
}

/// An invalid tag of \p size characters.
QString longTag(qsizetype size)
{
    return QString(size, u'x');
}

/// The journal line of one cut. Both pieces are given as the journal quotes them, full tag and
/// line.
QString added(const QString &conc, const QString &cut, int line)
{
    return u"INFO : Ajout de la balise "_s + conc + u" complétant la balise "_s + cut + " (l."_L1
         + QString::number(line) + u')';
}

/// What a check reports that finds \p found lines and logs \p splits as cuts, without the bar.
QStringList toldOfCheck(int found, const QStringList &splits)
{
    QStringList told{u"status: Vérification de la taille des balises en cours..."_s};
    if (found > 0) {
        told += u"status: Déconcaténation de %1 balises > 255 caractères en cours..."_s.arg(found);
        told += u"INFO : %1 balises > 255 caractères détectées, déconcaténation..."_s.arg(found);
        told += splits;
    }
    told += u"INFO : %1 balises > 255 caractères déconcaténées."_s.arg(found);
    told +=
        u"status: Vérification de la taille des balises terminée. %1 balises déconcaténées. "_s.arg(
            splits.size());
    return told;
}

QList<TwItem *> created(Document *doc)
{
    QList<TwItem *> tabTwi = doc->gedcom.getTabTotalTwItems();
    tabTwi.removeIf([](const TwItem *twi) { return twi->getNumLineGedFile() != "-1"_L1; });
    return tabTwi;
}

QList<QTreeWidgetItem *> hiddenRows(Document *doc)
{
    QList<QTreeWidgetItem *> rows;
    for (QTreeWidgetItemIterator it(&doc->tree); *it; ++it) {
        if ((*it)->isHidden())
            rows.append(*it);
    }
    return rows;
}

const QString Indi = u"0 @I1@ INDI"_s;
const QString Note = u"1 NOTE "_s; // leaves room for 248 characters of a value
const QString Conc = u"2 CONC "_s;

void addCutColumns()
{
    QTest::addColumn<QStringList>("record");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QStringList>("splits");
    QTest::addColumn<int>("left"); // lines over the limit that stay
}

/// A person with one note, cut once.
void addNote(const char *name, const QString &value, const QString &one, const QString &two)
{
    QTest::newRow(name) << QStringList{Indi, Note + value}
                        << QStringList{Indi, Note + one, Conc + two}
                        << QStringList{added("INDI.NOTE.CONC "_L1 + Conc + two,
                                             "INDI.NOTE "_L1 + Note + one, 2)}
                        << 0;
}

void addUncut(const char *name, const QStringList &record, int left)
{
    QTest::newRow(name) << record << record << QStringList{} << left;
}

} // namespace

/// Cutting lines of over 255 characters.
class TstOversized : public QObject
{
    Q_OBJECT

private slots:
    void characters_data();
    void characters();
    void chains_data();
    void chains();
    void placeOfTheRest_data();
    void placeOfTheRest();
    void roots_data();
    void roots();
    void levels_data();
    void levels();
    void longTags_data();
    void longTags();
    void cutBetweenTheUnitsOfACharacter();
    void noRecords();
    void deletedEntriesAreNotCut();
    void receiverAndListOfSplit();
    void chainGoesOnFromEachCut();
    void hiddenRowsStayHidden();
    void deletedRowsBehindACutStayHidden();
    void viewStaysAsItWas_data();
    void viewStaysAsItWas();
    void newRowsStandInTheTree();
    void theRestReachesTheFileWhateverTheLevels_data();
    void theRestReachesTheFileWhateverTheLevels();
    void progressAndEvents();
    void deletionDuringTheScan();
    void foldingGivesTheValuesBack_data();
    void foldingGivesTheValuesBack();
    void allAtOnceAsOneByOne_data();
    void allAtOnceAsOneByOne();

private:
    /// Cuts the record of a row and compares.
    void compareCuts();
};

void TstOversized::compareCuts()
{
    QFETCH(QStringList, record);
    QFETCH(QStringList, expected);
    QFETCH(QStringList, splits);
    QFETCH(int, left);

    Document doc;
    QVERIFY(doc.load(record));
    QCOMPARE(doc.lines(), record);
    // A line that can be cut has one journal line, however many pieces it gives. A line that stays
    // over the limit may still have been cut.
    const auto tooLong = [](const QStringList &lines) {
        return int(std::count_if(lines.begin(), lines.end(),
                                 [](const QString &line) { return line.size() > 255; }));
    };
    const int found = tooLong(record);
    QCOMPARE(tooLong(expected), left);

    Told told(&doc);
    QCOMPARE(doc.gedcom.checkOversized(), int(splits.size()));
    QCOMPARE(told.take(), toldOfCheck(found, splits));
    QCOMPARE(doc.lines(), expected);

    const QList<TwItem *> pieces = created(&doc);
    QCOMPARE(pieces.size(), expected.size() - record.size());
    for (TwItem *piece : pieces) {
        QCOMPARE(piece->toolTip(0), u"ligne -1"_s);
        QVERIFY(!piece->isHidden());
        QVERIFY(!piece->isToDelete());
    }

    // The pieces stay, and a second check finds nothing more to cut.
    QCOMPARE(doc.gedcom.checkOversized(), 0);
    QCOMPARE(told.take(), toldOfCheck(left, {}));
    QCOMPARE(doc.lines(), expected);
}

void TstOversized::characters_data()
{
    addCutColumns();

    addUncut("255 characters stay", {Indi, Note + run(248)}, 0);
    addNote("256 characters leave one character over", run(249), run(248), run(249).right(1));
    addUncut("characters are counted, not their bytes", {Indi, Note + QString(248, u'é')}, 0);
    addNote("accents are one character at the cut", QString(250, u'é'), QString(248, u'é'),
            u"éé"_s);
    addNote("a blank at the cut goes to the second line", run(247) + " suite"_L1, run(247),
            u" suite"_s);
    addNote("a blank behind the cut begins the second line", run(248) + " suite"_L1, run(248),
            u" suite"_s);
    addNote("of two blanks at the cut one stays in front of it", run(246) + "  suite"_L1,
            run(246) + u' ', u" suite"_s);
    addNote("of two blanks around the cut both go", run(247) + "  suite"_L1, run(247),
            u"  suite"_s);
    addNote("a blank alone can be left over", run(247) + "  "_L1, run(247), u"  "_s);
    addNote("a value of nothing but blanks is cut", QString(300, u' '), QString(247, u' '),
            QString(53, u' '));
    addNote("a value may hold what looks like a place marker", "%1 %2 %3 "_L1 + run(300),
            "%1 %2 %3 "_L1 + run(239), run(300).mid(239));
    const QString faces = u"\U0001F600"_s.repeated(3);
    addUncut("a character of two units counts as two", {Indi, Note + run(242) + faces}, 0);
    addNote("a cut may fall between two such characters", run(246) + faces,
            run(246) + faces.left(2), faces.mid(2));
}

void TstOversized::characters()
{
    compareCuts();
}

void TstOversized::chains_data()
{
    addCutColumns();

    const QString text = run(600);
    QTest::newRow("of several cuts the first is told")
        << QStringList{Indi, u"1 BIRT"_s, "2 NOTE "_L1 + text}
        << QStringList{Indi, u"1 BIRT"_s, "2 NOTE "_L1 + text.left(248),
                       "3 CONC "_L1 + text.mid(248, 248), "3 CONC "_L1 + text.mid(496)}
        << QStringList{added("INDI.BIRT.NOTE.CONC 3 CONC "_L1 + text.mid(248),
                             "INDI.BIRT.NOTE 2 NOTE "_L1 + text.left(248), 3)}
        << 0;
    const QString blanks = run(247) + u' ' + run(246) + u' ' + run(30);
    QTest::newRow("each cut of a chain steps back from a blank")
        << QStringList{Indi, Note + blanks}
        << QStringList{Indi, Note + run(247), Conc + u' ' + run(246), Conc + u' ' + run(30)}
        << QStringList{added("INDI.NOTE.CONC 2 CONC "_L1 + blanks.mid(247),
                             "INDI.NOTE 1 NOTE "_L1 + run(247), 2)}
        << 0;
    QTest::newRow("a rest of exactly 255 characters ends the chain")
        << QStringList{Indi, Note + run(496)}
        << QStringList{Indi, Note + run(248), Conc + run(496).mid(248)}
        << QStringList{added("INDI.NOTE.CONC 2 CONC "_L1 + run(496).mid(248),
                             "INDI.NOTE 1 NOTE "_L1 + run(248), 2)}
        << 0;
}

void TstOversized::chains()
{
    compareCuts();
}

void TstOversized::placeOfTheRest_data()
{
    addCutColumns();

    const QString value = run(300);
    const QString one = value.left(248);
    const QString two = value.mid(248);
    QTest::newRow("a continuation gets a sibling directly behind it")
        << QStringList{Indi, u"1 NOTE a"_s, u"2 CONT b"_s, "2 CONT "_L1 + value, u"2 CONT c"_s}
        << QStringList{Indi,       u"1 NOTE a"_s, u"2 CONT b"_s, "2 CONT "_L1 + one,
                       Conc + two, u"2 CONT c"_s}
        << QStringList{added("INDI.NOTE.CONC 2 CONC "_L1 + two, "INDI.NOTE.CONT 2 CONT "_L1 + one,
                             4)}
        << 0;
    QTest::newRow("a CONC line of the file gets a sibling too")
        << QStringList{Indi, u"1 NOTE a"_s, Conc + value, u"2 CONC c"_s}
        << QStringList{Indi, u"1 NOTE a"_s, Conc + one, Conc + two, u"2 CONC c"_s}
        << QStringList{added("INDI.NOTE.CONC 2 CONC "_L1 + two, "INDI.NOTE.CONC 2 CONC "_L1 + one,
                             3)}
        << 0;
    QTest::newRow("the sibling of a continuation stands behind what hangs below that")
        << QStringList{Indi, u"1 NOTE a"_s, "2 CONT "_L1 + value, u"3 SOUR b"_s}
        << QStringList{Indi, u"1 NOTE a"_s, "2 CONT "_L1 + one, u"3 SOUR b"_s, Conc + two}
        << QStringList{added("INDI.NOTE.CONC 2 CONC "_L1 + two, "INDI.NOTE.CONT 2 CONT "_L1 + one,
                             3)}
        << 0;
    QTest::newRow("a line gets its rest in front of its children")
        << QStringList{Indi, Note + value, u"2 CONC b"_s, u"2 CONT c"_s, u"2 SOUR d"_s}
        << QStringList{Indi, Note + one, Conc + two, u"2 CONC b"_s, u"2 CONT c"_s, u"2 SOUR d"_s}
        << QStringList{added("INDI.NOTE.CONC 2 CONC "_L1 + two, "INDI.NOTE 1 NOTE "_L1 + one, 2)}
        << 0;
    QTest::newRow("a tag that only contains CONC is no continuation")
        << QStringList{Indi, "1 _CONC "_L1 + value}
        << QStringList{Indi, "1 _CONC "_L1 + value.left(247), Conc + value.mid(247)}
        << QStringList{added("INDI._CONC.CONC 2 CONC "_L1 + value.mid(247),
                             "INDI._CONC 1 _CONC "_L1 + value.left(247), 2)}
        << 0;
    QTest::newRow("the length of the tag counts, of one that is none too")
        << QStringList{Indi, "1 xy "_L1 + value}
        << QStringList{Indi, "1 xy "_L1 + value.left(250), Conc + value.mid(250)}
        << QStringList{added("CONC 2 CONC "_L1 + value.mid(250), " 1 xy "_L1 + value.left(250), 2)}
        << 0;
}

void TstOversized::placeOfTheRest()
{
    compareCuts();
}

void TstOversized::roots_data()
{
    addCutColumns();

    const QString text = run(600);
    const QString value = run(300);
    const QString one = value.left(248);
    const QString two = value.mid(248);
    // The text of a note record shares a column with the tag, so the record has no tag.
    QTest::newRow("a root note with its text is cut")
        << QStringList{"0 @N1@ NOTE "_L1 + value, u"1 CONT b"_s}
        << QStringList{"0 @N1@ NOTE "_L1 + value.left(243), "1 CONC "_L1 + value.mid(243),
                       u"1 CONT b"_s}
        << QStringList{added("CONC 1 CONC "_L1 + value.mid(243),
                             " 0 @N1@ NOTE "_L1 + value.left(243), 1)}
        << 0;
    QTest::newRow("a root note with a long text is cut into a chain")
        << QStringList{"0 @N1@ NOTE "_L1 + text, u"1 CONT b"_s, u"2 SOUR c"_s}
        << QStringList{"0 @N1@ NOTE "_L1 + text.left(243), "1 CONC "_L1 + text.mid(243, 248),
                       "1 CONC "_L1 + text.mid(491), u"1 CONT b"_s, u"2 SOUR c"_s}
        << QStringList{added("CONC 1 CONC "_L1 + text.mid(243), " 0 @N1@ NOTE "_L1 + text.left(243),
                             1)}
        << 0;
    QTest::newRow("a root without an identifier is cut")
        << QStringList{"0 HEAD "_L1 + value, u"1 CHAR UTF-8"_s}
        << QStringList{"0 HEAD "_L1 + one, "1 CONC "_L1 + two, u"1 CHAR UTF-8"_s}
        << QStringList{added("HEAD.CONC 1 CONC "_L1 + two, "HEAD 0 HEAD "_L1 + one, 1)} << 0;
    QTest::newRow("records that are not on screen or of an unknown kind are cut")
        << QStringList{u"0 @U1@ SUBM"_s, Note + value, u"0 @U2@ SUBN"_s, Note + value}
        << QStringList{u"0 @U1@ SUBM"_s, Note + one, Conc + two,
                       u"0 @U2@ SUBN"_s, Note + one, Conc + two}
        << QStringList{added("SUBM.NOTE.CONC 2 CONC "_L1 + two, "SUBM.NOTE 1 NOTE "_L1 + one, 2),
                       added("SUBN.NOTE.CONC 2 CONC "_L1 + two, "SUBN.NOTE 1 NOTE "_L1 + one, 4)}
        << 0;

    // At a root the place in the tree is used as the place in the file.
    QTest::newRow("a rest at level 1 lands too early behind entries that have children")
        << QStringList{u"0 @N1@ NOTE a"_s, u"1 SOUR @S1@"_s, u"2 PAGE b"_s, u"2 DATA c"_s,
                       "1 CONT "_L1 + value}
        << QStringList{u"0 @N1@ NOTE a"_s, u"1 SOUR @S1@"_s, u"2 PAGE b"_s,
                       "1 CONC "_L1 + two, u"2 DATA c"_s,    "1 CONT "_L1 + one}
        << QStringList{added("CONC 1 CONC "_L1 + two, "CONT 1 CONT "_L1 + one, 5)} << 0;
    QTest::newRow("a later cut below the root brings it to its place")
        << QStringList{u"0 @N1@ NOTE a"_s, u"1 SOUR @S1@"_s,     u"2 PAGE b"_s,
                       u"2 DATA c"_s,      "1 CONT "_L1 + value, Note + value}
        << QStringList{u"0 @N1@ NOTE a"_s, u"1 SOUR @S1@"_s,   u"2 PAGE b"_s, u"2 DATA c"_s,
                       "1 CONT "_L1 + one, "1 CONC "_L1 + two, Note + one,    Conc + two}
        << QStringList{added("CONC 1 CONC "_L1 + two, "CONT 1 CONT "_L1 + one, 5),
                       added("NOTE.CONC 2 CONC "_L1 + two, "NOTE 1 NOTE "_L1 + one, 6)}
        << 0;
    QTest::newRow("a cut below the root puts the record into the order of the tree")
        << QStringList{Indi, u"1 NOTE a"_s, "2 TEXT "_L1 + value, u"1 NOTE c"_s, u"3 DATA d"_s}
        << QStringList{Indi,          u"1 NOTE a"_s, "2 TEXT "_L1 + one, "3 CONC "_L1 + two,
                       u"3 DATA d"_s, u"1 NOTE c"_s}
        << QStringList{added("INDI.NOTE.TEXT.CONC 3 CONC "_L1 + two,
                             "INDI.NOTE.TEXT 2 TEXT "_L1 + one, 3)}
        << 0;
}

void TstOversized::roots()
{
    compareCuts();
}

void TstOversized::levels_data()
{
    addCutColumns();

    const QString text = run(600);
    const QString value = run(300);
    const QString one = value.left(248);
    const QString two = value.mid(248);
    QStringList nine{Indi};
    for (int level = 1; level < 9; ++level)
        nine += QString::number(level) + " EVEN"_L1;
    // The line 10 CONC reads as level 1, an empty tag and a value that begins with CONC.
    QTest::newRow("below level 9 there is no further level")
        << nine + QStringList{"9 NOTE "_L1 + value}
        << nine + QStringList{"9 NOTE "_L1 + one, "1  CONC "_L1 + two}
        << QStringList{added(" 1  CONC "_L1 + two,
                             "INDI"_L1 + u".EVEN"_s.repeated(8) + ".NOTE 9 NOTE "_L1 + one, 10)}
        << 0;
    QTest::newRow("what stands below level 9 is cut like a line of level 1")
        << nine + QStringList{"9 NOTE "_L1 + text}
        << nine
               + QStringList{"9 NOTE "_L1 + text.left(248), "1  CONC "_L1 + text.mid(248, 247),
                             "2 CONC "_L1 + text.mid(495)}
        << QStringList{added(
               " 1  CONC "_L1 + text.mid(248),
               "INDI"_L1 + u".EVEN"_s.repeated(8) + ".NOTE 9 NOTE "_L1 + text.left(248), 10)}
        << 0;
    QTest::newRow("a continuation of level 9 stays at its level")
        << nine + QStringList{"9 CONT "_L1 + value}
        << nine + QStringList{"9 CONT "_L1 + one, "9 CONC "_L1 + two}
        << QStringList{added("INDI"_L1 + u".EVEN"_s.repeated(8) + ".CONC 9 CONC "_L1 + two,
                             "INDI"_L1 + u".EVEN"_s.repeated(8) + ".CONT 9 CONT "_L1 + one, 10)}
        << 0;
}

void TstOversized::levels()
{
    compareCuts();
}

void TstOversized::longTags_data()
{
    addCutColumns();

    const QString value = run(300);
    const QString one = value.left(248);
    const QString two = value.mid(248);
    addUncut("a line without a value is left", {Indi, "1 "_L1 + longTag(254)}, 1);
    addUncut("a root without a value is left", {"0 "_L1 + longTag(300), u"1 NOTE a"_s}, 1);
    addUncut("a continuation at the top of the tree is left",
             {"0 CONC "_L1 + value, u"1 NOTE a"_s, "0 CONT "_L1 + value, u"1 NOTE a"_s}, 2);
    addUncut("a continuation below the section of the notes is left",
             {"0 CONC NOTE "_L1 + value, u"1 NOTE a"_s}, 1);
    QTest::newRow("a line that is left does not hold up the next one")
        << QStringList{Indi, "1 "_L1 + longTag(254), Note + value}
        << QStringList{Indi, "1 "_L1 + longTag(254), Note + one, Conc + two}
        << QStringList{added("INDI.NOTE.CONC 2 CONC "_L1 + two, "INDI.NOTE 1 NOTE "_L1 + one, 3)}
        << 1;
    // Level and tag together, without the blanks: 252 characters leave room for one.
    QTest::newRow("a long tag leaves room for one character")
        << QStringList{Indi, "1 "_L1 + longTag(251) + " abc"_L1}
        << QStringList{Indi, "1 "_L1 + longTag(251) + " a"_L1, u"2 CONC bc"_s}
        << QStringList{added(u"CONC 2 CONC bc"_s, " 1 "_L1 + longTag(251) + " a"_L1, 2)} << 0;
    QTest::newRow("the one character can be a blank, and goes")
        << QStringList{Indi, "1 "_L1 + longTag(251) + "  bc"_L1}
        << QStringList{Indi, "1 "_L1 + longTag(251) + u' ', u"2 CONC  bc"_s}
        << QStringList{added(u"CONC 2 CONC  bc"_s, " 1 "_L1 + longTag(251) + u' ', 2)} << 0;
    QTest::newRow("a long tag leaves room for nothing")
        << QStringList{Indi, "1 "_L1 + longTag(252) + " abc"_L1}
        << QStringList{Indi, "1 "_L1 + longTag(252) + u' ', u"2 CONC abc"_s}
        << QStringList{added(u"CONC 2 CONC abc"_s, " 1 "_L1 + longTag(252) + u' ', 2)} << 0;
    QTest::newRow("a tag over the limit loses its whole value and stays")
        << QStringList{Indi, "1 "_L1 + longTag(253) + " abc"_L1}
        << QStringList{Indi, "1 "_L1 + longTag(253) + u' ', u"2 CONC abc"_s}
        << QStringList{added(u"CONC 2 CONC abc"_s, " 1 "_L1 + longTag(253) + u' ', 2)} << 1;
    QTest::newRow("an identifier over the limit loses its tag")
        << QStringList{"0 @"_L1 + longTag(300) + "@ INDI"_L1, u"1 SEX M"_s}
        << QStringList{"0 @"_L1 + longTag(300) + "@ "_L1, u"1 CONC INDI"_s, u"1 SEX M"_s}
        << QStringList{added(u"CONC 1 CONC INDI"_s, " 0 @"_L1 + longTag(300) + "@ "_L1, 1)} << 1;
    // The place of the rest depends on the tag of the shortened line.
    QTest::newRow("a value that is cut down to CONC makes a continuation of its line")
        << QStringList{Indi, "1 "_L1 + longTag(248) + " CONCabcd"_L1, u"1 SEX M"_s}
        << QStringList{Indi, "1 "_L1 + longTag(248) + " CONC"_L1, u"1 CONC abcd"_s, u"1 SEX M"_s}
        << QStringList{added(u"INDI.CONC 1 CONC abcd"_s,
                             "INDI.CONC 1 "_L1 + longTag(248) + " CONC"_L1, 2)}
        << 0;
    QTest::newRow("a value CONC that is gone makes no continuation of its line")
        << QStringList{Indi, "1 "_L1 + longTag(253) + " CONC"_L1, u"1 SEX M"_s}
        << QStringList{Indi, "1 "_L1 + longTag(253) + u' ', u"2 CONC CONC"_s, u"1 SEX M"_s}
        << QStringList{added(u"CONC 2 CONC CONC"_s, " 1 "_L1 + longTag(253) + u' ', 2)} << 1;
}

void TstOversized::longTags()
{
    compareCuts();
}

void TstOversized::cutBetweenTheUnitsOfACharacter()
{
    const QString faces = u"\U0001F600"_s.repeated(3);
    Document doc;
    QVERIFY(doc.load({u"0 @I1@ INDI"_s, "1 NOTE "_L1 + run(247) + faces}));
    QCOMPARE(doc.gedcom.checkOversized(), 1);
    const QString cut = "1 NOTE "_L1 + run(247) + faces.first(1);
    const QString conc = "2 CONC "_L1 + faces.mid(1);
    QCOMPARE(cut.size(), 255);
    QCOMPARE(doc.lines(), (QStringList{u"0 @I1@ INDI"_s, cut, conc}));
    // The expression that removes the times matches nothing in such a line.
    const QStringList journal = doc.gedcom.getJournal().split(u"\r\n"_s);
    QCOMPARE(journal.at(journal.size() - 3).sliced(u"hh:mm:ss.zzz - "_s.size()),
             added("INDI.NOTE.CONC "_L1 + conc, "INDI.NOTE "_L1 + cut, 2));

    QCOMPARE(doc.gedcom.unConc(), 1);
    QCOMPARE(doc.lines(), (QStringList{u"0 @I1@ INDI"_s, "1 NOTE "_L1 + run(247) + faces}));
}

void TstOversized::noRecords()
{
    Document doc;
    QVERIFY(doc.load({}));
    Told told(&doc);
    QCOMPARE(doc.gedcom.checkOversized(), 0);
    QCOMPARE(told.take(), toldOfCheck(0, {}));
    QCOMPARE(doc.lines(), QStringList{});
}

void TstOversized::deletedEntriesAreNotCut()
{
    const QString value = run(300);
    Document doc;
    QVERIFY(doc.load({u"0 @I1@ INDI"_s, "1 NOTE "_L1 + value, u"0 @I2@ INDI"_s,
                      "1 TEXT "_L1 + value, "2 PAGE "_L1 + value, "1 EVEN "_L1 + value}));
    TwItem *note = doc.entry("1 NOTE "_L1 + value);
    TwItem *text = doc.entry("1 TEXT "_L1 + value);
    doc.entry(u"0 @I1@ INDI"_s)->setDelete(true); // its note stays live but out of reach
    text->setDelete(true); // its page stays live, and is cut

    Told told(&doc);
    QCOMPARE(doc.gedcom.checkOversized(), 2);
    QCOMPARE(told.take(), toldOfCheck(2, {added("INDI.TEXT.PAGE.CONC 3 CONC "_L1 + value.mid(248),
                                                "INDI.TEXT.PAGE 2 PAGE "_L1 + value.left(248), 5),
                                          added("INDI.EVEN.CONC 2 CONC "_L1 + value.mid(248),
                                                "INDI.EVEN 1 EVEN "_L1 + value.left(248), 6)}));
    QCOMPARE(doc.lines(),
             (QStringList{u"0 @I2@ INDI"_s, "2 PAGE "_L1 + value.left(248),
                          "3 CONC "_L1 + value.mid(248), "1 EVEN "_L1 + value.left(248),
                          "2 CONC "_L1 + value.mid(248)}));
    QCOMPARE(lineText(note), "1 NOTE "_L1 + value);
    QCOMPARE(lineText(text), "1 TEXT "_L1 + value);
    QCOMPARE(note->childCount(), 0);
    QVERIFY(text->isHidden());
}

void TstOversized::receiverAndListOfSplit()
{
    const QString value = run(600);
    const QString before = u"ce qui était là"_s;
    Document doc;
    QVERIFY(doc.load({u"0 @I1@ INDI"_s, "1 NOTE "_L1 + value, "1 TEXT "_L1 + value}));
    TwItem *note = doc.entry("1 NOTE "_L1 + value);
    TwItem *text = doc.entry("1 TEXT "_L1 + value);

    // The text is cut whichever entry is the receiver; the list gets one more line.
    const QStringList list{before};
    QCOMPARE(note->splitTagOverSized(text, list),
             (QStringList{before, added("INDI.TEXT.CONC 2 CONC "_L1 + value.mid(248),
                                        "INDI.TEXT 1 TEXT "_L1 + value.left(248), 3)
                                      .remove(u"INFO : "_s)}));
    QCOMPARE(list, QStringList{before});
    QCOMPARE(doc.lines(),
             (QStringList{u"0 @I1@ INDI"_s, "1 NOTE "_L1 + value, "1 TEXT "_L1 + value.left(248),
                          "2 CONC "_L1 + value.mid(248, 248), "2 CONC "_L1 + value.mid(496)}));
}

void TstOversized::chainGoesOnFromEachCut()
{
    // 20 full pieces and a last one: every line but the last has exactly 255 characters.
    const QString value = run(20 * 248 + 7);
    Document doc;
    QVERIFY(doc.load({u"0 @I1@ INDI"_s, "1 NOTE "_L1 + value, u"2 CONT fin"_s}));
    QCOMPARE(doc.gedcom.checkOversized(), 1);
    QStringList expected{u"0 @I1@ INDI"_s, "1 NOTE "_L1 + value.left(248)};
    for (qsizetype at = 248; at < value.size(); at += 248)
        expected += "2 CONC "_L1 + value.mid(at, 248);
    QCOMPARE(expected.size(), 22);
    expected += u"2 CONT fin"_s;
    QCOMPARE(doc.lines(), expected);
}

void TstOversized::hiddenRowsStayHidden()
{
    const QString value = run(300);
    QStringList lines;
    for (int person = 1; person <= 4; ++person) {
        lines += u"0 @I%1@ INDI"_s.arg(person);
        lines += "1 NOTE "_L1 + value;
        lines += {u"2 CONC "_s + run(200), u"2 CONT b"_s, u"2 CONC c"_s, u"1 SEX M"_s};
        lines += {"1 TEXT "_L1 + value, u"2 DATE 1900"_s};
    }
    lines += {u"0 @U1@ SUBN"_s, "1 NOTE "_L1 + value, u"2 CONC d"_s};

    // The same document twice, with the same deletions; in one of them the review tools hide rows.
    Document plain;
    Document hidden;
    for (Document *doc : {&plain, &hidden}) {
        QVERIFY(doc->load(lines));
        QCOMPARE(doc->gedcom.unConc(), 9);
        QVERIFY(doc->entry(u"0 @I4@ INDI"_s)->setDelete(true));
        QVERIFY(doc->entry(u"2 DATE 1900"_s)->setDelete(true));
    }
    const QList<TwItem *> tabTwi = hidden.gedcom.getTabTotalTwItems();
    const QStringList toHide{u"0 @I2@ INDI"_s, u"0 @U1@ SUBN"_s, u"1 SEX M"_s,
                             "1 TEXT "_L1 + value};
    for (TwItem *twi : tabTwi)
        twi->setTwiHidden(toHide.contains(lineText(twi)) || twi->getTag() == "CONT"_L1);
    const QList<QTreeWidgetItem *> before = hiddenRows(&hidden);
    // Nine folded lines, the deleted person and date, eleven rows of the three live persons, the
    // unknown record, and the empty section of the notes.
    QCOMPARE(before.size(), 23);

    plain.newJournal();
    hidden.newJournal();
    QCOMPARE(plain.gedcom.checkOversized(), 7);
    QCOMPARE(hidden.gedcom.checkOversized(), 7);
    QCOMPARE(hidden.lines(), plain.lines());
    QCOMPARE(hidden.newJournal(), plain.newJournal());
    // Compared as pointers: there are new rows between the old ones.
    QCOMPARE(hiddenRows(&hidden), before);
    const QList<TwItem *> pieces = created(&hidden);
    QCOMPARE(pieces.size(), 10); // two for each note of 501 characters, one for each of the others
    for (const TwItem *piece : pieces)
        QVERIFY(!piece->isHidden());
}

void TstOversized::deletedRowsBehindACutStayHidden()
{
    constexpr int Count = 5'000;
    const QString value = run(300);
    Document doc;
    QVERIFY(doc.load(QStringList{u"0 @I1@ INDI"_s, "1 NOTE "_L1 + value}
                     + QStringList(Count, u"2 CONT a"_s) + QStringList{u"2 CONT b"_s}));
    TwItem *note = doc.entry("1 NOTE "_L1 + value);
    const QList<TwItem *> siblings = note->getTabTwiChilds(false);
    for (int i = 0; i < Count; ++i)
        QVERIFY(siblings.at(i)->setDelete(true));
    const QList<QTreeWidgetItem *> before = hiddenRows(&doc);
    QCOMPARE(before.size(), Count + 1); // and the section of the notes

    QCOMPARE(doc.gedcom.checkOversized(), 1);
    QCOMPARE(hiddenRows(&doc), before);
    QCOMPARE(doc.lines(), (QStringList{u"0 @I1@ INDI"_s, "1 NOTE "_L1 + value.left(248),
                                       "2 CONC "_L1 + value.mid(248), u"2 CONT b"_s}));
    // They follow the new row in the same order, in the tree and in the list.
    QCOMPARE(note->getTabTwiChilds(false), created(&doc) + siblings);
    QCOMPARE(note->childCount(), Count + 2);
    for (int i = 0; i <= Count; ++i)
        QCOMPARE(note->child(i + 1), siblings.at(i));
}

void TstOversized::viewStaysAsItWas_data()
{
    QTest::addColumn<bool>("selected");
    QTest::addColumn<bool>("folded");
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<int>("more"); // long lines of one record, for which the rows leave the tree

    const auto row = [](const char *name, bool selected, bool folded, bool hidden) {
        QTest::addRow("%s", name) << selected << folded << hidden << 0;
        QTest::addRow("%s, a record of long lines", name) << selected << folded << hidden << 40;
    };
    row("the current row is selected", true, false, false);
    row("the current row is not selected", false, false, false);
    row("the current row is below a folded one", true, true, false);
    row("the current row is hidden", true, false, true);
}

void TstOversized::viewStaysAsItWas()
{
    QFETCH(bool, selected);
    QFETCH(bool, folded);
    QFETCH(bool, hidden);
    QFETCH(int, more);

    QStringList lines;
    for (int person = 1; person <= 40; ++person) {
        lines += {u"0 @I%1@ INDI"_s.arg(person), u"1 BIRT"_s, u"2 DATE 1900"_s,
                  "1 NOTE "_L1 + run(300), u"2 CONT a"_s};
    }
    lines += QStringList(more, "1 NOTE "_L1 + run(300));
    Document doc;
    QVERIFY(doc.load(lines));
    const auto root = [&doc](int person) { return doc.entry(u"0 @I%1@ INDI"_s.arg(person)); };
    const auto lineOf = [&root](int person, const QString &tag) -> TwItem * {
        const QList<TwItem *> tabTwi = root(person)->getTabTwiChilds(false);
        const auto found = std::find_if(tabTwi.begin(), tabTwi.end(),
                                        [&tag](TwItem *twi) { return twi->getTag() == tag; });
        return *found;
    };
    TwItem *persons = sectionNode(doc.tree, u"personnes"_s);
    doc.tree.resize(300, 200);
    doc.tree.show();
    persons->setExpanded(true);
    for (int person = 1; person <= 40; person += 2)
        root(person)->setExpanded(true);
    lineOf(5, u"NOTE"_s)->setExpanded(true); // a row is added in it
    root(7)->setTwiHidden(true);
    QTreeWidgetItem *current = lineOf(21, u"BIRT"_s);
    doc.tree.setCurrentItem(current, 1);
    current->setSelected(selected);
    root(21)->setExpanded(!folded);
    current->setHidden(hidden);
    doc.tree.doItemsLayout();
    doc.tree.verticalScrollBar()->setValue(30);
    doc.tree.horizontalScrollBar()->setValue(5);
    QCOMPARE(doc.tree.verticalScrollBar()->value(), 30);
    QCOMPARE(doc.tree.horizontalScrollBar()->value(), 5);

    const auto expandedRows = [&doc] {
        QList<QTreeWidgetItem *> rows;
        for (QTreeWidgetItemIterator it(&doc.tree); *it; ++it) {
            if ((*it)->isExpanded())
                rows.append(*it);
        }
        return rows;
    };
    const QList<QTreeWidgetItem *> expanded = expandedRows();
    QCOMPARE(expanded.size(), folded ? 21 : 22);
    const QList<QTreeWidgetItem *> hiddenBefore = hiddenRows(&doc);
    const QList<QTreeWidgetItem *> selection = doc.tree.selectedItems();
    QCOMPARE(selection.contains(current), selected && !hidden);
    QCOMPARE(doc.tree.currentItem(), current);
    QCOMPARE(doc.tree.currentColumn(), 1);

    QCOMPARE(doc.gedcom.checkOversized(), 40 + more);
    QCOMPARE(created(&doc).size(), 40 + more);
    QCOMPARE(expandedRows(), expanded);
    QCOMPARE(hiddenRows(&doc), hiddenBefore);
    QCOMPARE(doc.tree.currentItem(), current);
    QCOMPARE(doc.tree.currentColumn(), 1);
    QCOMPARE(doc.tree.selectedItems(), selection);
    QCOMPARE(doc.tree.verticalScrollBar()->value(), 30);
    QCOMPARE(doc.tree.horizontalScrollBar()->value(), 5);
    QVERIFY(doc.tree.updatesEnabled());
    QVERIFY(doc.tree.hasAutoScroll());
    // Rows and sections keep their order.
    QCOMPARE(doc.tree.topLevelItemCount(), 7);
    QCOMPARE(doc.tree.indexOfTopLevelItem(persons), 1);
    QCOMPARE(persons->indexOfChild(root(40)), 39);
}

void TstOversized::newRowsStandInTheTree()
{
    const QString value = run(300);
    Document doc;
    QVERIFY(doc.load({u"0 @I1@ INDI"_s, "1 NOTE "_L1 + value, u"2 CONT a"_s, "2 CONT "_L1 + value,
                      u"0 @N1@ NOTE "_s + value, u"1 CONT b"_s}));
    QCOMPARE(doc.gedcom.checkOversized(), 3);

    const auto childLines = [](const QTreeWidgetItem *row) {
        QStringList lines;
        for (int i = 0; i < row->childCount(); ++i)
            lines += lineText(static_cast<const TwItem *>(row->child(i)));
        return lines;
    };
    const QStringList noteLines{"2 CONC "_L1 + value.mid(248), u"2 CONT a"_s,
                                "2 CONT "_L1 + value.left(248), "2 CONC "_L1 + value.mid(248)};
    TwItem *note = doc.entry("1 NOTE "_L1 + value.left(248));
    QCOMPARE(childLines(note), noteLines);
    // The child list of the entry follows the tree.
    QStringList listed;
    const QList<TwItem *> tabTwi = note->getTabTwiChilds(false);
    for (const TwItem *twi : tabTwi)
        listed += lineText(twi);
    QCOMPARE(listed, noteLines);
    QCOMPARE(childLines(doc.entry("0 @N1@ NOTE "_L1 + value.left(243))),
             (QStringList{"1 CONC "_L1 + value.mid(243), u"1 CONT b"_s}));
}

void TstOversized::theRestReachesTheFileWhateverTheLevels_data()
{
    QTest::addColumn<QString>("first"); // line of the record
    QTest::addColumn<QString>("replaced"); // the line whose level is replaced, if any
    QTest::addColumn<QString>("level");

    QTest::newRow("first record behind a blank") << u" 0 HEAD"_s << QString() << QString();
    QTest::newRow("first record of level 1") << u"1 HEAD"_s << QString() << QString();
    QTest::newRow("level of the root replaced") << u"0 HEAD"_s << u"0 HEAD"_s << u"5"_s;
    QTest::newRow("level of an event replaced by that of a root")
        << u"0 HEAD"_s << u"1 EVEN"_s << u"0"_s;
    QTest::newRow("level of the line itself replaced by that of a root")
        << u"0 HEAD"_s << "2 NOTE "_L1 + run(400) << u"0"_s;
}

void TstOversized::theRestReachesTheFileWhateverTheLevels()
{
    QFETCH(QString, first);
    QFETCH(QString, replaced);
    QFETCH(QString, level);

    Document document;
    QVERIFY(document.load({first, u"1 EVEN"_s, "2 NOTE "_L1 + run(400), u"1 CHAN"_s}));
    if (!replaced.isEmpty())
        document.entry(replaced)->setText(0, level);
    QCOMPARE(document.gedcom.checkOversized(), 1);
    const QStringList lines = document.lines();
    QCOMPARE(lines.size(), 5);
    QCOMPARE(lines.at(2).mid(7) + lines.at(3).mid(7), run(400));
}

void TstOversized::progressAndEvents()
{
    // 250 entries, of which 25 are cut.
    const QString value = run(249);
    QStringList lines;
    QStringList splits;
    for (int person = 1; person <= 25; ++person) {
        lines += u"0 @I%1@ INDI"_s.arg(person);
        for (int i = 0; i < 8; ++i)
            lines += u"1 SEX M"_s;
        lines += "1 NOTE "_L1 + value;
        splits += added("INDI.NOTE.CONC 2 CONC "_L1 + value.right(1),
                        "INDI.NOTE 1 NOTE "_L1 + value.left(248), 10 * person);
    }
    Document doc;
    QVERIFY(doc.load(lines));
    doc.progress.setVisible(true);

    QStringList expected = toldOfCheck(25, splits);
    // After the first text; then after the 10th and the 20th cut, which begin at index 3.
    const QStringList scan{u"bar: 100 of 249"_s, u"events"_s, u"bar: 200 of 249"_s, u"events"_s};
    const QStringList cuts = QStringList{u"bar: 10 of 24"_s, u"events"_s} + expected.mid(13, 10)
                           + QStringList{u"bar: 20 of 24"_s, u"events"_s};
    expected = expected.mid(0, 1) + scan + expected.mid(1, 12) + cuts + expected.mid(23);

    QList<int> values; // of the bar at each text
    connect(&doc.statusBar, &QStatusBar::messageChanged, this,
            [&] { values += doc.progress.value(); });
    // An event finds exactly the cuts that have been logged.
    QStringList cutBy;
    connect(&doc.progress, &QProgressBar::valueChanged, this, [&](int done) {
        if (done == 10 || done == 20)
            cutBy += u"%1 by %2"_s.arg(created(&doc).size()).arg(done);
    });
    Told told(&doc);
    QTest::ignoreMessage(QtDebugMsg, "ON checkOversized");
    QTest::ignoreMessage(QtDebugMsg, "OFF checkOversized");
    QCOMPARE(doc.gedcom.checkOversized(), 25);
    QCOMPARE(told.take(), expected);
    QCOMPARE(cutBy, (QStringList{u"10 by 10"_s, u"20 by 20"_s}));
    QCOMPARE(values.constLast(), -1); // the reset comes before the summary
    QCOMPARE(doc.progress.value(), -1); // reset
    QVERIFY(doc.progress.isVisible()); // only the caller shows and hides it
}

void TstOversized::deletionDuringTheScan()
{
    // The scan processes events after the hundredth entry; it has found the first of the lines.
    const QString value = run(300);
    QStringList lines = QStringList{u"0 @I1@ INDI"_s} + QStringList(249, u"1 SEX M"_s);
    lines[50] = "1 NOTE "_L1 + value;
    lines[150] = "1 TEXT "_L1 + value;
    lines[200] = "1 EVEN "_L1 + value;
    Document doc;
    QVERIFY(doc.load(lines));
    TwItem *found = doc.entry(lines.at(50));
    TwItem *ahead = doc.entry(lines.at(150));
    const auto deleteBoth = [&] {
        QVERIFY(found->setDelete(true));
        QVERIFY(ahead->setDelete(true));
    };
    connect(
        &doc.progress, &QProgressBar::valueChanged, this,
        [&] { QMetaObject::invokeMethod(this, deleteBoth, Qt::QueuedConnection); },
        Qt::SingleShotConnection);
    doc.newJournal();
    QCOMPARE(doc.gedcom.checkOversized(), 1);

    // No rest of a deleted line comes back to life.
    const QString rest = "2 CONC "_L1 + value.mid(248);
    QCOMPARE(doc.newJournal(),
             (QStringList{
                 u"INFO : 3 balises > 255 caractères détectées, déconcaténation..."_s,
                 added("INDI.EVEN.CONC "_L1 + rest, "INDI.EVEN 1 EVEN "_L1 + value.left(248), 201),
                 u"INFO : 3 balises > 255 caractères déconcaténées."_s}));
    QCOMPARE(doc.status(), u"Vérification de la taille des balises terminée. 1 balises "
                           "déconcaténées. "_s);
    lines[200] = "1 EVEN "_L1 + value.left(248);
    lines.insert(201, rest);
    lines.removeAt(150);
    lines.removeAt(50);
    QCOMPARE(doc.lines(), lines);
    for (TwItem *twi : {found, ahead}) {
        QCOMPARE(twi->text(2), value);
        QCOMPARE(twi->childCount(), 0);
        QVERIFY(twi->isHidden());
    }
}

void TstOversized::foldingGivesTheValuesBack_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 12; ++seed)
        QTest::addRow("generated document %u", seed) << seed;
}

void TstOversized::foldingGivesTheValuesBack()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const auto oneOf = [&random](const QStringList &list) {
        return list.at(random.bounded(int(list.size())));
    };
    const auto value = [&]() -> QString {
        static const QList<int> sizes{0, 3, 40, 230, 470, 700, 960};
        const int size = sizes.at(random.bounded(int(sizes.size()))) + random.bounded(50);
        const int blanks = random.bounded(3);
        QString text;
        while (text.size() < size) {
            text += random.bounded(3) < blanks ? u" "_s
                                               : oneOf({u"a"_s, u"Z"_s, u"é"_s, u"\U0001F600"_s});
        }
        return text;
    };
    // A line without a value has no blank after its tag.
    const auto line = [&](int level, const QString &tag) -> QString {
        const QString text = value();
        return QString::number(level) + u' ' + tag + (text.isEmpty() ? text : u' ' + text);
    };

    QStringList lines;
    for (int record = 1; record <= 12; ++record) {
        lines += u"0 @N%1@ NOTE a"_s.arg(record) + value();
        // Before any line with children, where tree and file agree at a root.
        for (int i = random.bounded(3); i > 0; --i)
            lines += line(1, oneOf({u"CONT"_s, u"CONC"_s}));
        int level = 1;
        lines += line(1, u"TEXT"_s);
        for (int i = random.bounded(12); i > 0; --i) {
            level = 1 + random.bounded(std::min(level + 1, 7));
            lines += line(level, oneOf({u"NOTE"_s, u"EVEN"_s, u"_UID"_s, u"xy"_s, u"_A1"_s}));
            for (int j = random.bounded(3); j > 0; --j)
                lines += line(level + 1, oneOf({u"CONT"_s, u"CONC"_s}));
        }
    }

    Document doc;
    QVERIFY(doc.load(lines));
    QCOMPARE(doc.lines(), lines);
    doc.gedcom.unConc();
    const QStringList folded = doc.lines();
    QVERIFY(folded.filter(u" CONC"_s).isEmpty());

    QVERIFY(doc.gedcom.checkOversized() > 0);
    const QStringList cut = doc.lines();
    for (const QString &cutLine : cut)
        QVERIFY2(cutLine.size() <= 255, qPrintable(cutLine));
    QCOMPARE(cut.size() - folded.size(), created(&doc).size());

    QCOMPARE(doc.gedcom.unConc(), int(cut.size() - folded.size()));
    QCOMPARE(doc.lines(), folded);
    // Again, now before rows that are folded and hidden.
    doc.gedcom.checkOversized();
    QCOMPARE(doc.lines(), cut);
}

void TstOversized::allAtOnceAsOneByOne_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<QStringList>("replacement"); // text, replacement, tags; or none
    for (quint32 seed = 1; seed <= 12; ++seed) {
        QTest::addRow("records %u", seed) << seed << QStringList{};
        QTest::addRow("records %u, levels replaced", seed)
            << seed << QStringList{u"2"_s, u"0"_s, u"NOTE"_s};
        QTest::addRow("records %u, tags replaced", seed)
            << seed << QStringList{u"TITL"_s, u"CONT"_s, u"TITL"_s};
        QTest::addRow("records %u, root replaced", seed)
            << seed << QStringList{u"0"_s, u"00"_s, u"SOUR"_s};
    }
}

// Siblings that are cut in a row are put into place together.
void TstOversized::allAtOnceAsOneByOne()
{
    QFETCH(const quint32, seed);
    QFETCH(const QStringList, replacement);
    QRandomGenerator random(seed);
    const QStringList tags{u"NOTE"_s, u"CONT"_s,    u"CONC"_s,   u"TITL"_s,
                           u"x"_s,    longTag(249), longTag(120)};
    const QStringList values{u""_s,
                             u"court"_s,
                             run(248),
                             run(251),
                             run(800),
                             run(247) + " a"_L1,
                             "NOTEC"_L1 + run(300),
                             QString(600, u' ')};
    QStringList lines;
    for (int record = 1; record <= 6; ++record) {
        lines += u"0 @S%1@ SOUR"_s.arg(record);
        // Some records have lines of one level only, some of one tag only; one reaches the last
        // level, whose rests have no level of their own.
        const int levels = record == 6 ? 9 : record % 3 + 1;
        const qsizetype tagCount = record % 2 ? tags.size() : 2;
        int level = 0;
        for (int i = 0; i < 40; ++i) {
            level = levels == 9 && random.bounded(4) > 0
                      ? std::min(level + 1, levels)
                      : int(random.bounded(1, std::min(level + 1, levels) + 1));
            lines += QString::number(level) + u' ' + tags.at(random.bounded(int(tagCount))) + u' '
                   + values.at(random.bounded(int(values.size())));
        }
    }

    Document together;
    Document apart;
    for (Document *doc : {&together, &apart}) {
        QVERIFY(doc->load(lines));
        if (!replacement.isEmpty())
            doc->gedcom.searchAndReplace(replacement.at(0), replacement.at(1), replacement.at(2),
                                         true, false);
        // Deleted entries are skipped.
        doc->gedcom.delListTag({u"SOUR.TITL"_s}, false, true, false, false, {});
        doc->newJournal();
    }
    together.gedcom.checkOversized();

    QStringList logs;
    const QList<TwItem *> entries = apart.gedcom.getTabTotalTwItems();
    for (TwItem *twi : entries) {
        if (lineSize(twi) > MaxLineSize)
            logs = twi->splitTagOverSized(twi, logs);
    }
    QVERIFY(!logs.isEmpty());
    for (QString &log : logs)
        log.prepend("INFO : "_L1);
    QCOMPARE(together.newJournal().mid(1, logs.size()), logs);
    QCOMPARE(together.lines(), apart.lines());

    const auto rows = [](Document *doc) {
        QStringList texts;
        for (QTreeWidgetItemIterator it(&doc->tree); *it; ++it) {
            int depth = 0;
            for (const QTreeWidgetItem *above = (*it)->parent(); above; above = above->parent())
                ++depth;
            texts += QString(depth, u'>') + lineText(static_cast<TwItem *>(*it));
        }
        return texts;
    };
    QCOMPARE(rows(&together), rows(&apart));
    const QList<TwItem *> allTogether = together.gedcom.getTabTotalTwItems();
    const QList<TwItem *> allApart = apart.gedcom.getTabTotalTwItems();
    QCOMPARE(allTogether.size(), allApart.size());
    for (qsizetype i = 0; i < allApart.size(); ++i) {
        const QList<TwItem *> children = allTogether.at(i)->getTabTwiChilds(false);
        const QList<TwItem *> expected = allApart.at(i)->getTabTwiChilds(false);
        QCOMPARE(children.size(), expected.size());
        for (qsizetype k = 0; k < expected.size(); ++k)
            QCOMPARE(lineText(children.at(k)), lineText(expected.at(k)));
    }
}

VARLUNE_TEST_MAIN(TstOversized)
#include "tst_oversized.moc"
