#include "document.h"
#include "testmain.h"
#include "twitem.h"

#include <QObject>
#include <QTest>

#include <random>
#include <type_traits>

using namespace Qt::StringLiterals;

static_assert(std::is_same_v<decltype(TwItem::m_rxTag), const QRegularExpression>);
static_assert(std::is_base_of_v<QTreeWidgetItem, TwItem>);

namespace {

/// The second columns, joined with blanks: the shape of a list of entries in one line.
QString tags(const QList<TwItem *> &entries)
{
    QStringList texts;
    for (const TwItem *twi : entries)
        texts += twi->text(1);
    return texts.join(u' ');
}

/// The same for the children in the tree.
QString treeTags(const QTreeWidgetItem *twi)
{
    QStringList texts;
    for (int i = 0; i < twi->childCount(); ++i)
        texts += twi->child(i)->text(1);
    return texts.join(u' ');
}

TwItem *newEntry(const QString &line)
{
    auto *twi = new TwItem(-1);
    twi->setTwiValuesFromStr(line, twi);
    return twi;
}

/// A record in which each tag occurs once.
QStringList family()
{
    return {u"0 @I1@ INDI"_s, u"1 NAME Jean"_s, u"1 BIRT"_s, u"2 DATE 1900"_s,
            u"2 PLAC Lyon"_s, u"3 NOTE x"_s,    u"1 DEAT"_s, u"2 AGE 70"_s};
}

} // namespace

/// One entry: its columns, tag, level, lists and lines, and what inserting and deleting do to them.
class TstTwItem : public QObject
{
    Q_OBJECT

private slots:
    void construction_data();
    void construction();
    void columns_data();
    void columns();
    void columnsBeyondTheLineAreKept();
    void root_data();
    void root();
    void tag_data();
    void tag();
    void tagHasTheFormOfTheExpression();
    void tagsAreNotCached();
    void sectionNodes();
    void fullTag();
    void fullTagEndsAtANegativeLevel();
    void parentAndIndexes();
    void childLists();
    void outputLines();
    void insertTabChild_data();
    void insertTabChild();
    void insertionRebuildsFromTheTree();
    void insertionWithoutRoot();
    void delChilds();
    void delChildsWalksTheTree();
    void setDelete();
    void setTwiHidden();
    void insertStrAtIndex_data();
    void insertStrAtIndex();
    void insertStrAtIndexChangesOneColumn();
};

void TstTwItem::construction_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("decimal");

    QTest::newRow("first line") << 1 << u"1"_s;
    QTest::newRow("large number, not grouped") << 1234567 << u"1234567"_s;
    QTest::newRow("entry of the program") << -1 << u"-1"_s;
}

void TstTwItem::construction()
{
    QFETCH(const int, number);
    QFETCH(const QString, decimal);

    TwItem twi(number);
    const TwItem other(number);
    QCOMPARE(twi.type(), 0);
    QCOMPARE(std::as_const(twi).getNumLineGedFile(), decimal);
    QCOMPARE(twi.toolTip(0), u"ligne "_s + decimal);
    QCOMPARE(twi.toolTip(1), u"ligne "_s + decimal);
    QVERIFY(!twi.data(2, Qt::ToolTipRole).isValid());
    QVERIFY(!twi.data(3, Qt::ToolTipRole).isValid());
    QVERIFY(twi.icon(0).isNull());
    QVERIFY(!twi.isToDelete());
    QVERIFY(!twi.isRoot());
    QVERIFY(!twi.getParent());
    QVERIFY(twi.getTabTwiChilds(false).isEmpty());
    QCOMPARE(twi.getTag(), u"ERREUR"_s);
    QCOMPARE(twi.getFullTag(), QStringList());
    QCOMPARE(twi.getLevel(), 0);

    QCOMPARE(twi.m_rxTag.pattern(), u"^_?[A-Z]{3,6}$"_s);
    QCOMPARE(twi.m_rxTag.patternOptions(), QRegularExpression::NoPatternOption);
    QCOMPARE(other.m_rxTag.pattern(), u"^_?[A-Z]{3,6}$"_s);
    QVERIFY(&twi.m_rxTag != &other.m_rxTag);

    twi.setLineNumber(number + 41);
    QCOMPARE(twi.getNumLineGedFile(), QString::number(number + 41));
    QCOMPARE(twi.toolTip(0), u"ligne "_s + decimal);
}

void TstTwItem::columns_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("written");

    const auto add = [](const char *name, const QString &line, const QStringList &values, int level,
                        const QString &written = {}) {
        QTest::newRow(name) << line << values << level << (written.isNull() ? line : written);
    };
    using L = QStringList;
    add("tag alone at level 0", u"0 HEAD"_s, L{u"0"_s, u"HEAD"_s}, 0);
    add("identifier and tag", u"0 @I12@ INDI"_s, L{u"0"_s, u"@I12@"_s, u"INDI"_s}, 0);
    add("text behind the tag of a record", u"0 @N3@ NOTE texte libre"_s,
        L{u"0"_s, u"@N3@"_s, u"NOTE texte libre"_s}, 0);
    add("value with a blank", u"1 NAME Jean /DUPONT/"_s, L{u"1"_s, u"NAME"_s, u"Jean /DUPONT/"_s},
        1);
    add("tag alone", u"1 BIRT"_s, L{u"1"_s, u"BIRT"_s}, 1);
    add("reference", u"2 NOTE @N3@"_s, L{u"2"_s, u"NOTE"_s, u"@N3@"_s}, 2);
    add("leading blank of a value", u"3 CONC  suite"_s, L{u"3"_s, u"CONC"_s, u" suite"_s}, 3);
    add("blanks around and inside a value", u"2 CONT   a  b  "_s,
        L{u"2"_s, u"CONT"_s, u"  a  b  "_s}, 2);
    add("value of one blank", u"2 CONT  "_s, L{u"2"_s, u"CONT"_s, u" "_s}, 2);
    add("trailing blank behind the tag", u"1 NAME "_s, L{u"1"_s, u"NAME"_s}, 1, u"1 NAME"_s);
    add("level 9", u"9 NOTE x"_s, L{u"9"_s, u"NOTE"_s, u"x"_s}, 9);
    add("level 10", u"10 NOTE x"_s, L{u"1"_s, QString(), u"NOTE x"_s}, 1, u"1  NOTE x"_s);
    add("level 12", u"12 NOTE texte"_s, L{u"1"_s, QString(), u"NOTE texte"_s}, 1,
        u"1  NOTE texte"_s);
    add("level 25", u"25 NOTE x"_s, L{u"2"_s, QString(), u"NOTE x"_s}, 2, u"2  NOTE x"_s);
    add("second character is a letter", u"1XNAME Jean"_s, L{u"1"_s, u"NAME"_s, u"Jean"_s}, 1,
        u"1 NAME Jean"_s);
    add("second character is a tab", u"1\tNAME Jean"_s, L{u"1"_s, u"NAME"_s, u"Jean"_s}, 1,
        u"1 NAME Jean"_s);
    add("tab is no separator", u"1 NAME\tJean le Bon"_s, L{u"1"_s, u"NAME\tJean"_s, u"le Bon"_s},
        1);
    add("no-break space is no separator", u"1 NAME\u00a0Jean"_s, L{u"1"_s, u"NAME\u00a0Jean"_s}, 1);
    add("blank in front", u" 1 NAME x"_s, L{u" "_s, QString(), u"NAME x"_s}, 0, u"   NAME x"_s);
    add("letter in front", u"é NAME x"_s, L{u"é"_s, u"NAME"_s, u"x"_s}, 0);
    add("level and three blanks", u"1   "_s, L{u"1"_s, QString(), u" "_s}, 1);
    add("level and two blanks", u"1  "_s, L{u"1"_s, QString()}, 1, u"1 "_s);
    // The tool tips create a second column, so a blank is written after the level.
    add("level and blank", u"1 "_s, L{u"1"_s}, 1);
    add("level alone", u"1"_s, L{u"1"_s}, 1, u"1 "_s);
    add("empty line", u""_s, L{}, 0, u" "_s);
}

void TstTwItem::columns()
{
    QFETCH(const QString, line);
    QFETCH(const QStringList, values);
    QFETCH(const int, level);
    QFETCH(const QString, written);

    const TwItem receiver(7);
    QCOMPARE(receiver.getValuesListFromLine(line), values);

    TwItem twi(8);
    twi.setTwiValuesFromStr(line, &twi);
    QStringList columns = values;
    while (columns.size() < 2)
        columns += QString();
    QCOMPARE(std::as_const(twi).getTwiValuesList(), columns);
    QCOMPARE(twi.columnCount(), int(columns.size()));
    QCOMPARE(twi.getLevel(), level);
    QCOMPARE(twi.getGedEntryList(), QStringList{written});
}

void TstTwItem::columnsBeyondTheLineAreKept()
{
    TwItem receiver(1);
    receiver.setTwiValuesFromStr(u"1 NAME Jean"_s, &receiver);
    TwItem twi(2);
    receiver.setTwiValuesFromStr(u"2 DATE 1900"_s, &twi);
    QCOMPARE(twi.getTwiValuesList(), (QStringList{u"2"_s, u"DATE"_s, u"1900"_s}));

    receiver.setTwiValuesFromStr(u"3 PLAC"_s, &twi);
    QCOMPARE(twi.getTwiValuesList(), (QStringList{u"3"_s, u"PLAC"_s, u"1900"_s}));
    receiver.setTwiValuesFromStr(u"4"_s, &twi);
    QCOMPARE(twi.getTwiValuesList(), (QStringList{u"4"_s, u"PLAC"_s, u"1900"_s}));
    receiver.setTwiValuesFromStr(u""_s, &twi);
    QCOMPARE(twi.getTwiValuesList(), (QStringList{u"4"_s, u"PLAC"_s, u"1900"_s}));
    receiver.setTwiValuesFromStr(u"10 NOTE x"_s, &twi);
    QCOMPARE(twi.getTwiValuesList(), (QStringList{u"1"_s, QString(), u"NOTE x"_s}));

    QCOMPARE(receiver.getTwiValuesList(), (QStringList{u"1"_s, u"NAME"_s, u"Jean"_s}));
}

void TstTwItem::root_data()
{
    QTest::addColumn<QString>("level");
    QTest::addColumn<bool>("root");

    QTest::newRow("zero") << u"0"_s << true;
    QTest::newRow("one") << u"1"_s << false;
    QTest::newRow("no text, which reads as zero") << u""_s << false;
    QTest::newRow("word, which reads as zero") << u"personnes"_s << false;
    QTest::newRow("two zeros") << u"00"_s << false;
    QTest::newRow("zero and blank") << u"0 "_s << false;
}

void TstTwItem::root()
{
    QFETCH(const QString, level);

    TwItem twi(1);
    twi.setText(0, level);
    twi.setText(1, u"HEAD"_s);
    QTEST(twi.isRoot(), "root");
}

void TstTwItem::tag_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("tag");

    const QString none = u"ERREUR"_s;
    QTest::newRow("record without identifier") << u"0 HEAD"_s << u"HEAD"_s;
    QTest::newRow("record with identifier") << u"0 @I12@ INDI"_s << u"INDI"_s;
    QTest::newRow("record with text behind the tag") << u"0 @N3@ NOTE texte libre"_s << none;
    QTest::newRow("tag and value") << u"1 NAME x"_s << u"NAME"_s;
    QTest::newRow("private tag") << u"1 _UID x"_s << u"_UID"_s;
    QTest::newRow("shortest private tag") << u"1 _AB x"_s << none;
    QTest::newRow("longest private tag") << u"1 _ABCDEF x"_s << u"_ABCDEF"_s;
    QTest::newRow("private tag of seven letters") << u"1 _ABCDEFG x"_s << none;
    QTest::newRow("two underscores") << u"1 __UID x"_s << none;
    QTest::newRow("digit") << u"1 _FA1 x"_s << none;
    QTest::newRow("two letters") << u"1 XY x"_s << none;
    QTest::newRow("three letters") << u"1 FAM x"_s << u"FAM"_s;
    QTest::newRow("six letters") << u"1 ABCDEF x"_s << u"ABCDEF"_s;
    QTest::newRow("seven letters") << u"1 ABCDEFG x"_s << none;
    QTest::newRow("lower case") << u"1 name x"_s << none;
    QTest::newRow("accent") << u"1 NOMÉ x"_s << none;
    QTest::newRow("value in place of a short tag") << u"1 XY ABC"_s << u"ABC"_s;
    QTest::newRow("private value in place of a tag") << u"1 _FA1 _ABC"_s << u"_ABC"_s;
    QTest::newRow("value in place of an empty tag") << u"10 NOTE"_s << u"NOTE"_s;
    QTest::newRow("value with a blank in place of a tag") << u"10 NOTE x"_s << none;
    QTest::newRow("tag comes before a value like a tag") << u"1 NOTE INDI"_s << u"NOTE"_s;
    QTest::newRow("the word itself") << u"1 ERREUR NOTE"_s << none;
    QTest::newRow("level alone") << u"1"_s << none;
    QTest::newRow("empty line") << u""_s << none;
}

void TstTwItem::tag()
{
    QFETCH(const QString, line);

    TwItem twi(1);
    twi.setTwiValuesFromStr(line, &twi);
    QTEST(twi.getTag(), "tag");
}

void TstTwItem::tagHasTheFormOfTheExpression()
{
    const QList<QChar> alphabet{
        u'A',          u'Z',          u'M',          u'a',         u'z',     u'_',
        u'0',          u'é',          u'É',          u' ',         u'\n',    u'\r',
        u'\t',         u'@',          u'[',          u'.',         QChar(0), QChar(0xd83d),
        QChar(0xde00), QChar(0x2028), QChar(0xff21), QChar(0x212a)};
    QStringList texts{QString()};
    // All texts of up to three characters.
    for (qsizetype from = 0, length = 1; length <= 3; ++length) {
        const qsizetype to = texts.size();
        for (; from < to; ++from) {
            for (const QChar c : alphabet)
                texts += texts.at(from) + c;
        }
    }
    // Capitals with one or two other characters between, before or after them.
    for (qsizetype length = 2; length <= 8; ++length) {
        const QString capitals = u"AZAMZAZA"_s.left(length);
        texts += capitals;
        for (const QChar c : alphabet) {
            for (qsizetype at = 0; at <= length; ++at)
                texts += QString(capitals).insert(at, c);
            texts += u'_' + capitals + c;
            texts += capitals + u'\n' + c;
            texts += capitals + QChar(0xd83d) + c; // a pair, or a lone half
            texts += c + capitals + u'\n';
        }
    }
    // Any texts, mostly of capitals.
    std::mt19937 generator(20240229);
    for (qsizetype length = 0; length <= 9; ++length) {
        for (int i = 0; i < 1500; ++i) {
            QString text;
            while (text.size() < length) {
                const auto number = qsizetype(generator() >> 8);
                text +=
                    alphabet.at(number % 4 != 0 ? number / 4 % 3 : number / 4 % alphabet.size());
            }
            texts += text;
        }
    }

    TwItem inTagColumn(1);
    inTagColumn.setTwiValuesFromStr(u"1 TAG valeur"_s, &inTagColumn);
    TwItem inValueColumn(2);
    inValueColumn.setTwiValuesFromStr(u"0 @I1@ INDI"_s, &inValueColumn);
    int matches = 0;
    for (const QString &text : std::as_const(texts)) {
        const bool matching = inTagColumn.m_rxTag.match(text).hasMatch();
        const QString expected = matching ? text : u"ERREUR"_s;
        inTagColumn.setText(1, text);
        QCOMPARE(inTagColumn.getTag(), expected);
        inValueColumn.setText(2, text);
        QCOMPARE(inValueColumn.getTag(), expected);
        matches += matching ? 1 : 0;
    }
    QVERIFY2(matches > 1000 && texts.size() - matches > 10000,
             qPrintable(QString::number(matches)));
}

void TstTwItem::tagsAreNotCached()
{
    Document document;
    QVERIFY(document.load(family()));
    TwItem *birt = document.entry(u"1 BIRT"_s);
    TwItem *date = document.entry(u"2 DATE 1900"_s);
    QCOMPARE(birt->getTag(), u"BIRT"_s);
    QCOMPARE(date->getFullTag(), (QStringList{u"INDI"_s, u"BIRT"_s, u"DATE"_s}));

    birt->setText(1, u"EVEN"_s);
    QCOMPARE(birt->getTag(), u"EVEN"_s);
    QCOMPARE(date->getFullTag(), (QStringList{u"INDI"_s, u"EVEN"_s, u"DATE"_s}));
    QCOMPARE(birt->getTwiValuesList(), (QStringList{u"1"_s, u"EVEN"_s}));

    // A replacement can put anything anywhere; every column counts, from the first.
    birt->setText(1, u"x"_s);
    QCOMPARE(birt->getTag(), u"ERREUR"_s);
    birt->setText(3, u"CHAN"_s);
    QCOMPARE(birt->getTag(), u"CHAN"_s);
    birt->setText(0, u"SUBM"_s);
    QCOMPARE(birt->getTag(), u"SUBM"_s);
    QCOMPARE(birt->getTwiValuesList(), (QStringList{u"SUBM"_s, u"x"_s, QString(), u"CHAN"_s}));
}

void TstTwItem::sectionNodes()
{
    Document document;
    QVERIFY(document.load(family()));
    TwItem *section = sectionNode(document.tree, u"personnes"_s);

    QCOMPARE(section->getTwiValuesList(), (QStringList{u"personnes"_s, u"1"_s}));
    QVERIFY(!section->isRoot());
    QCOMPARE(section->getTag(), u"ERREUR"_s);
    QCOMPARE(section->getFullTag(), QStringList());
    QCOMPARE(section->getLevel(), 0);
    QCOMPARE(section->getNumLineGedFile(), u"-1"_s);
    QCOMPARE(section->toolTip(0), u"ligne -1"_s);
    QCOMPARE(section->toolTip(1), u"ligne -1"_s);
    QVERIFY(!section->getParent());

    // The records below it have numbers and no icons.
    TwItem *root = document.entry(u"0 @I1@ INDI"_s);
    QCOMPARE(root->getParent(), section);
    QVERIFY(root->isRoot());
    QStringList toolTips;
    for (TwItem *twi : root->getTabTwiChilds(false)) {
        toolTips += twi->toolTip(0);
        QCOMPARE(twi->toolTip(1), twi->toolTip(0));
        QVERIFY(twi->icon(0).isNull());
    }
    QCOMPARE(toolTips, (QStringList{u"ligne 2"_s, u"ligne 3"_s, u"ligne 4"_s, u"ligne 5"_s,
                                    u"ligne 6"_s, u"ligne 7"_s, u"ligne 8"_s}));
    QVERIFY(root->icon(0).isNull());
}

void TstTwItem::fullTag()
{
    const QList<std::pair<QString, QString>> lines{
        // Does not begin with level 0 and is therefore at the top of the tree.
        {u"1 ABC"_s, u"ABC"_s},
        {u"1 DATE"_s, u"ABC.DATE"_s},
        {u"0 HEAD"_s, u"HEAD"_s},
        {u"1 CHAR UTF-8"_s, u"HEAD.CHAR"_s},
        {u"0 @I1@ INDI"_s, u"INDI"_s},
        {u"1 BIRT"_s, u"INDI.BIRT"_s},
        {u"2 DATE 3 MAY 1900"_s, u"INDI.BIRT.DATE"_s},
        {u"3 _UID 7"_s, u"INDI.BIRT.DATE._UID"_s},
        {u"1 XY ABC"_s, u"INDI.ABC"_s},
        {u"2 NOTE x"_s, u"INDI.ABC.NOTE"_s},
        // An entry without a tag cuts the path short.
        {u"1 OCCUPAT maçon"_s, u""_s},
        {u"2 DATE 1920"_s, u"DATE"_s},
        {u"3 NOTE x"_s, u"DATE.NOTE"_s},
        {u"1 ERREUR"_s, u""_s},
        {u"2 PLAC Lyon"_s, u"PLAC"_s},
        {u"0 @N3@ NOTE texte libre"_s, u""_s},
        {u"1 CONC suite"_s, u"CONC"_s},
        // Off screen.
        {u"0 @M1@ SUBM"_s, u"SUBM"_s},
        {u"1 NAME x"_s, u"SUBM.NAME"_s},
        // Unknown kinds, at the top of the tree.
        {u"0 @U1@ SUBN"_s, u"SUBN"_s},
        {u"1 EVEN"_s, u"SUBN.EVEN"_s},
        {u"2 DATE 1901"_s, u"SUBN.EVEN.DATE"_s},
        {u"1 SEPTLET"_s, u""_s},
        {u"2 EVEN"_s, u"EVEN"_s},
        {u"3 DATE 1902"_s, u"EVEN.DATE"_s},
        {u"0 @U2@ SEPTLET"_s, u""_s},
        {u"1 EVEN"_s, u"EVEN"_s},
    };
    QStringList texts;
    QStringList expected;
    for (const auto &[line, fullTag] : lines) {
        texts += line;
        expected += line + u" = "_s + fullTag;
    }
    Document document;
    QVERIFY(document.load(texts));

    QStringList actual;
    for (TwItem *twi : document.gedcom.getTabTotalTwItems())
        actual += lineText(twi) + u" = "_s + twi->getFullTag().join(u'.');
    QCOMPARE(actual, expected);
}

void TstTwItem::fullTagEndsAtANegativeLevel()
{
    Document document;
    QVERIFY(document.load(family()));
    TwItem *plac = document.entry(u"2 PLAC Lyon"_s);
    TwItem *note = document.entry(u"3 NOTE x"_s);

    plac->setText(0, u"x"_s); // counts as 0 but ends nothing
    QCOMPARE(note->getFullTag(), (QStringList{u"INDI"_s, u"BIRT"_s, u"PLAC"_s, u"NOTE"_s}));
    plac->setText(0, u"-2"_s);
    QCOMPARE(note->getFullTag(), QStringList{u"NOTE"_s});
    QCOMPARE(plac->getFullTag(), QStringList());
    QCOMPARE(plac->getTag(), u"PLAC"_s);
    QCOMPARE(plac->getLevel(), -2);
}

void TstTwItem::parentAndIndexes()
{
    Document document;
    QVERIFY(document.load(family()));
    TwItem *root = document.entry(u"0 @I1@ INDI"_s);
    const QList<TwItem *> all = root->getTabTwiChilds(false);
    document.entry(u"2 DATE 1900"_s)->setDelete(true);

    QStringList actual;
    const TwItem receiver(1);
    for (TwItem *twi : all) {
        actual += u"%1 %2 %3 %4"_s.arg(twi->text(1), twi->getParent()->text(1),
                                       QString::number(receiver.getThisTwiIndexParent(twi)),
                                       QString::number(receiver.getThisTabIndexParent(twi)));
    }
    // The root's list has all descendants; both lists include deleted entries.
    QCOMPARE(actual, (QStringList{u"NAME @I1@ 0 0"_s, u"BIRT @I1@ 1 1"_s, u"DATE BIRT 0 0"_s,
                                  u"PLAC BIRT 1 1"_s, u"NOTE PLAC 0 0"_s, u"DEAT @I1@ 2 5"_s,
                                  u"AGE DEAT 0 0"_s}));

    // In the tree but not in the list.
    auto *stranger = newEntry(u"2 CHAN"_s);
    document.entry(u"1 DEAT"_s)->addChild(stranger);
    QCOMPARE(receiver.getThisTwiIndexParent(stranger), 1);
    QCOMPARE(receiver.getThisTabIndexParent(stranger), -1);
    delete stranger; // no document of the program has one
}

void TstTwItem::childLists()
{
    Document document;
    QVERIFY(document.load(family()));
    TwItem *root = document.entry(u"0 @I1@ INDI"_s);
    TwItem *birt = document.entry(u"1 BIRT"_s);
    TwItem *plac = document.entry(u"2 PLAC Lyon"_s);
    QCOMPARE(tags(root->getTabTwiChilds(false)), u"NAME BIRT DATE PLAC NOTE DEAT AGE"_s);
    QCOMPARE(tags(root->getTabTwiChilds(true)), u"NAME BIRT DATE PLAC NOTE DEAT AGE"_s);
    QCOMPARE(tags(birt->getTabTwiChilds(false)), u"DATE PLAC"_s);
    QCOMPARE(treeTags(root), u"NAME BIRT DEAT"_s);
    QCOMPARE(treeTags(birt), u"DATE PLAC"_s);
    QCOMPARE(tags(plac->getTabTwiChilds(true)), u"NOTE"_s);
    QCOMPARE(tags(document.entry(u"3 NOTE x"_s)->getTabTwiChilds(true)), u""_s);

    // The mark decides, not the hidden state.
    document.entry(u"2 DATE 1900"_s)->setHidden(true);
    QCOMPARE(tags(birt->getTabTwiChilds(true)), u"DATE PLAC"_s);
    plac->setDelete(true);
    plac->setHidden(false);
    QCOMPARE(tags(birt->getTabTwiChilds(true)), u"DATE"_s);
    QCOMPARE(tags(birt->getTabTwiChilds(false)), u"DATE PLAC"_s);
    QCOMPARE(tags(root->getTabTwiChilds(true)), u"NAME BIRT DATE NOTE DEAT AGE"_s);
    QCOMPARE(tags(root->getTabTwiChilds(false)), u"NAME BIRT DATE PLAC NOTE DEAT AGE"_s);
    QCOMPARE(treeTags(birt), u"DATE PLAC"_s);

    // The result is a copy.
    QList<TwItem *> copy = birt->getTabTwiChilds(false);
    copy.clear();
    QCOMPARE(tags(birt->getTabTwiChilds(false)), u"DATE PLAC"_s);
}

void TstTwItem::outputLines()
{
    Document document;
    QVERIFY(document.load(family()));
    TwItem *root = document.entry(u"0 @I1@ INDI"_s);
    QCOMPARE(root->getGedEntryList(), family());

    // Descendants of a deleted entry are still lines, and so is a hidden row.
    document.entry(u"1 BIRT"_s)->setDelete(true);
    document.entry(u"2 AGE 70"_s)->setDelete(true);
    document.entry(u"1 NAME Jean"_s)->setTwiHidden(true);
    QStringList expected = family();
    expected.removeAll(u"1 BIRT"_s);
    expected.removeAll(u"2 AGE 70"_s);
    QCOMPARE(root->getGedEntryList(), expected);

    // The level is the text of the column; nothing checks it.
    document.entry(u"3 NOTE x"_s)->setText(0, u"7"_s);
    document.entry(u"2 PLAC Lyon"_s)->setText(1, QString());
    document.entry(u"2 DATE 1900"_s)->setText(3, u"en trop"_s);
    QCOMPARE(root->getGedEntryList(),
             (QStringList{u"0 @I1@ INDI"_s, u"1 NAME Jean"_s, u"2 DATE 1900 en trop"_s,
                          u"2  Lyon"_s, u"7 NOTE x"_s, u"1 DEAT"_s}));

    root->setDelete(true);
    QCOMPARE(root->getGedEntryList(), QStringList());
}

void TstTwItem::insertTabChild_data()
{
    QTest::addColumn<QString>("receiver");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("flat");
    QTest::addColumn<QString>("list");
    QTest::addColumn<QString>("tree");

    const auto atRoot = [](const char *name, int index, const QString &flat, const QString &tree) {
        QTest::newRow(name) << u"0 @I1@ INDI"_s << index << flat << flat << tree;
    };
    const auto atEntry = [](const char *name, const QString &receiver, int index,
                            const QString &flat, const QString &children) {
        QTest::newRow(name) << receiver << index << flat << children << children;
    };
    atRoot("root, in front", 0, u"NEW NAME BIRT DATE PLAC NOTE DEAT AGE"_s,
           u"NEW NAME BIRT DEAT"_s);
    atRoot("root, behind an entry without children", 1, u"NAME NEW BIRT DATE PLAC NOTE DEAT AGE"_s,
           u"NAME NEW BIRT DEAT"_s);
    // The index in the tree is used for the root's list.
    atRoot("root, behind an entry with children", 2, u"NAME BIRT NEW DATE PLAC NOTE DEAT AGE"_s,
           u"NAME BIRT NEW DEAT"_s);
    atRoot("root, end", 3, u"NAME BIRT DATE NEW PLAC NOTE DEAT AGE"_s, u"NAME BIRT DEAT NEW"_s);
    atRoot("root, negative index", -1, u"NAME BIRT DATE NEW PLAC NOTE DEAT AGE"_s,
           u"NAME BIRT DEAT NEW"_s);
    atRoot("root, past the end of the tree", 5, u"NAME BIRT DATE NEW PLAC NOTE DEAT AGE"_s,
           u"NAME BIRT DEAT NEW"_s);
    atRoot("root, past the end of the list", 99, u"NAME BIRT DATE NEW PLAC NOTE DEAT AGE"_s,
           u"NAME BIRT DEAT NEW"_s);

    const QString birt = u"1 BIRT"_s;
    atEntry("entry, in front", birt, 0, u"NAME BIRT NEW DATE PLAC NOTE DEAT AGE"_s,
            u"NEW DATE PLAC"_s);
    atEntry("entry, between", birt, 1, u"NAME BIRT DATE NEW PLAC NOTE DEAT AGE"_s,
            u"DATE NEW PLAC"_s);
    atEntry("entry, end behind children of a child", birt, 2,
            u"NAME BIRT DATE PLAC NOTE NEW DEAT AGE"_s, u"DATE PLAC NEW"_s);
    atEntry("entry, negative index", birt, -7, u"NAME BIRT DATE PLAC NOTE NEW DEAT AGE"_s,
            u"DATE PLAC NEW"_s);
    atEntry("entry, past the end", birt, 3, u"NAME BIRT DATE PLAC NOTE NEW DEAT AGE"_s,
            u"DATE PLAC NEW"_s);
    atEntry("entry, first child", u"1 NAME Jean"_s, -1, u"NAME NEW BIRT DATE PLAC NOTE DEAT AGE"_s,
            u"NEW"_s);
    atEntry("entry, second level", u"2 PLAC Lyon"_s, 0, u"NAME BIRT DATE PLAC NEW NOTE DEAT AGE"_s,
            u"NEW NOTE"_s);
    atEntry("entry, third level", u"3 NOTE x"_s, 0, u"NAME BIRT DATE PLAC NOTE NEW DEAT AGE"_s,
            u"NEW"_s);
}

void TstTwItem::insertTabChild()
{
    QFETCH(const QString, receiver);
    QFETCH(const int, index);

    Document document;
    QVERIFY(document.load(family()));
    TwItem *root = document.entry(u"0 @I1@ INDI"_s);
    TwItem *twi = document.entry(receiver);
    TwItem *child = newEntry(u"9 NEW"_s);
    twi->insertTabChild(index, child);

    QCOMPARE(child->getParent(), twi);
    QTEST(tags(root->getTabTwiChilds(false)), "flat");
    QTEST(tags(twi->getTabTwiChilds(false)), "list");
    QTEST(treeTags(twi), "tree");
    // The lists of the other entries.
    TwItem *deat = document.entry(u"1 DEAT"_s);
    QCOMPARE(tags(deat->getTabTwiChilds(false)), u"AGE"_s);
    TwItem *birt = document.entry(u"1 BIRT"_s);
    if (birt != twi)
        QCOMPARE(tags(birt->getTabTwiChilds(false)), u"DATE PLAC"_s);
}

void TstTwItem::insertionRebuildsFromTheTree()
{
    Document document;
    QVERIFY(document.load(family()
                          + QStringList{u"0 @I2@ INDI"_s, u"1 AAA"_s, u"2 BBB"_s, u"1 CCC"_s,
                                        u"3 DDD"_s, u"0 @M1@ SUBM"_s, u"1 ADDR"_s, u"1 PHON"_s}));
    TwItem *root = document.entry(u"0 @I1@ INDI"_s);
    const auto flat = [](TwItem *twi) { return tags(twi->getTabTwiChilds(false)); };

    // An insertion at the root leaves a list that the next one below it corrects. Deleted entries
    // stay in it.
    TwItem *birt = document.entry(u"1 BIRT"_s);
    TwItem *plac = document.entry(u"2 PLAC Lyon"_s);
    birt->setDelete(true);
    plac->setDelete(true);
    root->insertTabChild(-1, newEntry(u"1 CHAN"_s));
    QCOMPARE(flat(root), u"NAME BIRT DATE CHAN PLAC NOTE DEAT AGE"_s);
    birt->insertTabChild(0, newEntry(u"2 NEW"_s));
    QCOMPARE(flat(root), u"NAME BIRT NEW DATE PLAC NOTE DEAT AGE CHAN"_s);
    QCOMPARE(tags(root->getTabTwiChilds(true)), u"NAME NEW DATE NOTE DEAT AGE CHAN"_s);
    QCOMPARE(flat(birt), u"NEW DATE PLAC"_s);
    QCOMPARE(flat(plac), u"NOTE"_s);

    // A whole branch can be inserted at an entry; a root lists only its top.
    TwItem *branch = newEntry(u"1 EVEN"_s);
    branch->insertTabChild(0, newEntry(u"2 TYPE"_s));
    QCOMPARE(flat(branch), u"TYPE"_s);
    root->insertTabChild(0, branch);
    QCOMPARE(flat(root), u"EVEN NAME BIRT NEW DATE PLAC NOTE DEAT AGE CHAN"_s);
    TwItem *second = newEntry(u"2 SOUR"_s);
    second->insertTabChild(-1, newEntry(u"3 PAGE"_s));
    document.entry(u"1 DEAT"_s)->insertTabChild(0, second);
    QCOMPARE(flat(root), u"EVEN TYPE NAME BIRT NEW DATE PLAC NOTE DEAT SOUR PAGE AGE CHAN"_s);

    // A list taken by insertTabChild alone is rebuilt, one made by the tree is not invented.
    TwItem *stranger = newEntry(u"2 TREE"_s);
    birt->addChild(stranger);
    QCOMPARE(flat(birt), u"NEW DATE PLAC"_s);
    document.entry(u"1 NAME Jean"_s)->insertTabChild(0, newEntry(u"2 GIVN"_s));
    QCOMPARE(flat(birt), u"NEW DATE PLAC"_s);
    QCOMPARE(flat(root),
             u"EVEN TYPE NAME GIVN BIRT NEW DATE PLAC NOTE TREE DEAT SOUR PAGE AGE CHAN"_s);
    delete stranger; // no document of the program has one
    birt->insertTabChild(-1, newEntry(u"2 LAST"_s));
    QCOMPARE(flat(birt), u"NEW DATE PLAC LAST"_s);
    QCOMPARE(flat(root),
             u"EVEN TYPE NAME GIVN BIRT NEW DATE PLAC NOTE LAST DEAT SOUR PAGE AGE CHAN"_s);

    // Where tree and file differ, the tree counts from then on.
    TwItem *other = document.entry(u"0 @I2@ INDI"_s);
    QCOMPARE(flat(other), u"AAA BBB CCC DDD"_s);
    document.entry(u"1 CCC"_s)->insertTabChild(-1, newEntry(u"2 NEW"_s));
    QCOMPARE(flat(other), u"AAA BBB DDD CCC NEW"_s);
    QCOMPARE(flat(document.entry(u"2 BBB"_s)), u"DDD"_s);

    // Records off screen are records like the others.
    document.entry(u"1 ADDR"_s)->insertTabChild(-1, newEntry(u"2 CONT"_s));
    QCOMPARE(flat(document.entry(u"0 @M1@ SUBM"_s)), u"ADDR CONT PHON"_s);
}

void TstTwItem::insertionWithoutRoot()
{
    Document document;
    QVERIFY(document.load(QStringList{u"1 ABC"_s, u"1 DEF"_s, u"2 GHI"_s} + family()));
    const auto flat = [](TwItem *twi) { return tags(twi->getTabTwiChilds(false)); };

    // A replacement has taken the level of the record.
    TwItem *root = document.entry(u"0 @I1@ INDI"_s);
    root->setText(0, u"X"_s);
    TwItem *birt = document.entry(u"1 BIRT"_s);
    birt->insertTabChild(1, newEntry(u"2 NEW"_s));
    QCOMPARE(flat(birt), u"DATE NEW PLAC"_s);
    QCOMPARE(treeTags(birt), u"DATE NEW PLAC"_s);
    QCOMPARE(flat(root), u"NAME BIRT DATE NEW PLAC NOTE DEAT AGE"_s);
    root->insertTabChild(-1, newEntry(u"1 CHAN"_s));
    QCOMPARE(flat(root), u"NAME BIRT DATE CHAN NEW PLAC NOTE DEAT AGE"_s);
    QCOMPARE(treeTags(root), u"NAME BIRT DEAT CHAN"_s);

    // A record that never had level 0 and is at the top of the tree.
    TwItem *head = document.entry(u"1 ABC"_s);
    TwItem *entry = document.entry(u"2 GHI"_s);
    entry->insertTabChild(-1, newEntry(u"3 NEW"_s));
    QCOMPARE(flat(entry), u"NEW"_s);
    QCOMPARE(treeTags(entry), u"NEW"_s);
    QCOMPARE(flat(head), u"DEF GHI NEW"_s);
    head->insertTabChild(0, newEntry(u"1 CHAN"_s));
    QCOMPARE(flat(head), u"CHAN DEF GHI NEW"_s);
    QCOMPARE(treeTags(head), u"CHAN DEF"_s);

    // A replacement has turned an entry inside a record into a root: both lists have the new entry.
    Document other;
    QVERIFY(other.load({u"0 @I2@ INDI"_s, u"1 AAA"_s, u"2 BBB"_s, u"3 CCC"_s, u"1 DDD"_s}));
    TwItem *inner = other.entry(u"1 AAA"_s);
    inner->setText(0, u"0"_s);
    other.entry(u"2 BBB"_s)->insertTabChild(-1, newEntry(u"3 NEW"_s));
    QCOMPARE(flat(inner), u"BBB CCC NEW"_s);
    QCOMPARE(flat(other.entry(u"0 @I2@ INDI"_s)), u"AAA BBB CCC NEW DDD"_s);
    inner->insertTabChild(0, newEntry(u"2 OLD"_s));
    QCOMPARE(flat(inner), u"OLD BBB CCC NEW"_s);
    QCOMPARE(flat(other.entry(u"0 @I2@ INDI"_s)), u"AAA OLD BBB CCC NEW DDD"_s);
}

void TstTwItem::delChilds()
{
    Document document;
    QVERIFY(document.load({u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 DATE %1 %2"_s, u"2 OCCUPAT x"_s,
                           u"3 NOTE y"_s, u"1 NAME  Jean "_s, u"12 NOTE x"_s}));
    TwItem *root = document.entry(u"0 @I1@ INDI"_s);
    TwItem *birt = document.entry(u"1 BIRT"_s);
    TwItem *date = document.entry(u"2 DATE %1 %2"_s);
    const QString journal = document.gedcom.getJournal();

    QCOMPARE(date->delChilds(), QStringList());
    QVERIFY(!date->isToDelete());

    // A deleted entry gives no text, but the entries below it do.
    QVERIFY(document.entry(u"2 OCCUPAT x"_s)->setDelete(true));
    document.entry(u"3 NOTE y"_s)->insertTabChild(-1, newEntry(u"4 CONT z"_s));
    QCOMPARE(birt->delChilds(),
             (QStringList{u"Suppression de l'entrée : INDI.BIRT.DATE 2 DATE %1 %2 (l.3)"_s,
                          u"Suppression de l'entrée : NOTE 3 NOTE y (l.5)"_s,
                          u"Suppression de l'entrée : NOTE.CONT 4 CONT z (l.-1)"_s}));
    QVERIFY(!birt->isToDelete());
    QVERIFY(!birt->isHidden());
    QCOMPARE(root->getGedEntryList(),
             (QStringList{u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"1 NAME  Jean "_s, u"1  NOTE x"_s}));

    QCOMPARE(root->delChilds(),
             (QStringList{u"Suppression de l'entrée : INDI.BIRT 1 BIRT (l.2)"_s,
                          u"Suppression de l'entrée : INDI.NAME 1 NAME  Jean  (l.6)"_s,
                          u"Suppression de l'entrée :  1  NOTE x (l.7)"_s}));
    QCOMPARE(root->getGedEntryList(), QStringList{u"0 @I1@ INDI"_s});
    for (TwItem *twi : root->getTabTwiChilds(false)) {
        QVERIFY(twi->isToDelete());
        QVERIFY(twi->isHidden());
    }
    QVERIFY(!root->isToDelete());
    QVERIFY(!root->isHidden());

    QCOMPARE(root->delChilds(), QStringList());
    QCOMPARE(document.gedcom.getJournal(), journal); // that is the caller's business
}

void TstTwItem::delChildsWalksTheTree()
{
    Document document;
    QVERIFY(document.load(family()));
    TwItem *deat = document.entry(u"1 DEAT"_s);
    TwItem *stranger = newEntry(u"2 CAUS peste"_s);
    deat->insertChild(0, stranger); // in the tree, and in no list
    document.entry(u"2 AGE 70"_s)->setTwiHidden(true); // hidden by a search, and as live as before

    QCOMPARE(deat->delChilds(),
             (QStringList{u"Suppression de l'entrée : INDI.DEAT.CAUS 2 CAUS peste (l.-1)"_s,
                          u"Suppression de l'entrée : INDI.DEAT.AGE 2 AGE 70 (l.8)"_s}));
    delete stranger; // no document of the program has one
}

void TstTwItem::setDelete()
{
    Document document;
    QVERIFY(document.load(family()));
    TwItem *birt = document.entry(u"1 BIRT"_s);
    TwItem *date = document.entry(u"2 DATE 1900"_s);

    QVERIFY(birt->setDelete(true));
    QVERIFY(birt->isToDelete());
    QVERIFY(birt->isHidden());
    QVERIFY(!birt->setDelete(true));
    QVERIFY(!birt->setDelete(false));
    QVERIFY(birt->isToDelete());
    // Only the entry, which keeps its place.
    QVERIFY(!date->isToDelete());
    QCOMPARE(date->getParent(), birt);
    QCOMPARE(birt->getParent(), document.entry(u"0 @I1@ INDI"_s));

    // A row that was shown again otherwise is not hidden by a second deletion.
    birt->setHidden(false);
    QVERIFY(!birt->setDelete(true));
    QVERIFY(!birt->isHidden());

    // On a live entry false only hides the row.
    for (int i = 0; i < 2; ++i) {
        QVERIFY(date->setDelete(false));
        QVERIFY(!date->isToDelete());
        QVERIFY(date->isHidden());
    }
    date->setTwiHidden(false);
    QVERIFY(!date->isHidden());
    QVERIFY(date->setDelete(true));
    QVERIFY(date->isToDelete());
}

void TstTwItem::setTwiHidden()
{
    Document document;
    QVERIFY(document.load(family()));
    TwItem *birt = document.entry(u"1 BIRT"_s);

    birt->setTwiHidden(true);
    QVERIFY(birt->isHidden());
    QVERIFY(!birt->isToDelete());
    birt->setTwiHidden(false);
    QVERIFY(!birt->isHidden());

    birt->setDelete(true);
    birt->setTwiHidden(false);
    QVERIFY(birt->isHidden());
    birt->setHidden(false);
    birt->setTwiHidden(true);
    QVERIFY(birt->isHidden());
}

void TstTwItem::insertStrAtIndex_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("inserted");
    QTest::addColumn<QString>("match");
    QTest::addColumn<bool>("before");
    QTest::addColumn<QString>("result");

    const auto add = [](const char *name, const QString &text, const QString &inserted,
                        const QString &match, bool before, const QString &result) {
        QTest::newRow(name) << text << inserted << match << before << result;
    };
    add("in front of the match", u"rue de Lyon"_s, u"la "_s, u"de"_s, true, u"rue la de Lyon"_s);
    add("behind the match", u"rue de Lyon"_s, u" la"_s, u"de"_s, false, u"rue de la Lyon"_s);
    add("first of two matches", u"a b a"_s, u"X"_s, u"a"_s, true, u"Xa b a"_s);
    add("behind the first of two matches", u"a b a"_s, u"X"_s, u"a"_s, false, u"aX b a"_s);
    add("case counts", u"LYON Lyon"_s, u"X"_s, u"Lyon"_s, true, u"LYON XLyon"_s);
    add("the match is plain text", u"ab a.b"_s, u"X"_s, u"a.b"_s, true, u"ab Xa.b"_s);
    add("placeholders are plain text", u"a %1"_s, u"%2%1"_s, u"%1"_s, true, u"a %2%1%1"_s);
    add("whole text trimmed", u"\t a b \n"_s, u"X"_s, u"b"_s, false, u"a bX"_s);
    add("inserted text trimmed at the front", u"a"_s, u"  X "_s, u"a"_s, true, u"X a"_s);
    add("inserted text trimmed at the end", u"a"_s, u" X  "_s, u"a"_s, false, u"a X"_s);
    add("blank kept for the match, then trimmed", u" a"_s, u"X"_s, u" a"_s, true, u"X a"_s);
    add("empty match, in front", u"abc"_s, u"X"_s, u""_s, true, u"Xabc"_s);
    add("empty match, behind", u"abc"_s, u"X"_s, u""_s, false, u"Xabc"_s);
    add("nothing to insert", u" abc "_s, u""_s, u"b"_s, true, u"abc"_s);
    add("empty text, empty match", u""_s, u"X"_s, u""_s, true, u"X"_s);
    // The outcome of a failed search is not checked.
    add("no match, in front of nothing", u" abc "_s, u"X"_s, u"z"_s, true, u"abc"_s);
    add("no match of one character, at 0", u"abc"_s, u"X"_s, u"z"_s, false, u"Xabc"_s);
    add("no match of three characters, at 2", u"abc"_s, u"X"_s, u"xyz"_s, false, u"abXc"_s);
    add("no match, past the end, filled with blanks", u"abc"_s, u"X"_s, u"uvwxyz"_s, false,
        u"abc  X"_s);
}

void TstTwItem::insertStrAtIndex()
{
    QFETCH(const QString, text);
    QFETCH(const QString, inserted);
    QFETCH(const QString, match);
    QFETCH(const bool, before);
    QFETCH(const QString, result);

    TwItem twi(1);
    twi.setTwiValuesFromStr(u"1 NOTE x"_s, &twi);
    twi.setText(2, text);
    QVERIFY(twi.insertStrAtIndex(inserted, match, 2, before));
    QCOMPARE(twi.getTwiValuesList(), (QStringList{u"1"_s, u"NOTE"_s, result}));
}

void TstTwItem::insertStrAtIndexChangesOneColumn()
{
    TwItem twi(1);
    twi.setTwiValuesFromStr(u"1 NOTE  NOTE 1 "_s, &twi);
    QVERIFY(!twi.insertStrAtIndex(u"X"_s, u"NOTE"_s, -1, true));
    QCOMPARE(twi.getTwiValuesList(), (QStringList{u"1"_s, u"NOTE"_s, u" NOTE 1 "_s}));

    QVERIFY(twi.insertStrAtIndex(u"_"_s, u"NOTE"_s, 1, true));
    QCOMPARE(twi.getTwiValuesList(), (QStringList{u"1"_s, u"_NOTE"_s, u" NOTE 1 "_s}));
    QVERIFY(twi.insertStrAtIndex(u"2"_s, u"1"_s, 0, false));
    QCOMPARE(twi.getTwiValuesList(), (QStringList{u"12"_s, u"_NOTE"_s, u" NOTE 1 "_s}));

    // A missing column reads as an empty text.
    TwItem shorter(2);
    shorter.setTwiValuesFromStr(u"1 NOTE"_s, &shorter);
    QVERIFY(shorter.insertStrAtIndex(u"x"_s, u""_s, 2, true));
    QCOMPARE(shorter.getTwiValuesList(), (QStringList{u"1"_s, u"NOTE"_s, u"x"_s}));
}

VARLUNE_TEST_MAIN(TstTwItem)
#include "tst_twitem.moc"
