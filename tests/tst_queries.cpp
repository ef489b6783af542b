#include "document.h"
#include "matching.h"
#include "testmain.h"
#include "twitem.h"

#include <QHash>
#include <QObject>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QStringList linesOf(const QList<TwItem *> &entries)
{
    QStringList lines;
    for (const TwItem *twi : entries)
        lines += lineText(twi);
    return lines;
}

/// Two persons, a family and records of other kinds; every line is there once.
QStringList family()
{
    return {
        u"0 HEAD"_s,
        u"1 CHAR UTF-8"_s,
        u"0 @I1@ INDI"_s,
        u"1 NAME Jean /DUPONT/"_s,
        u"1 BIRT"_s,
        u"2 DATE 1900"_s,
        u"2 PLAC Lyon"_s,
        u"3 NOTE lieu"_s,
        u"1 BIRT Y"_s,
        u"2 DATE 1901"_s,
        u"1 DEAT"_s,
        u"2 DATE 1970"_s,
        u"1 ASSO @I2@"_s,
        u"2 NAME Marie"_s,
        u"1 OCCUPAT maçon"_s,
        u"2 BIRT z"_s,
        u"3 DATE 1920"_s,
        u"0 @F1@ FAM"_s,
        u"1 BIRT f"_s,
        u"2 DATE 1930"_s,
        u"1 MARR"_s,
        u"2 DATE 1925"_s,
        u"0 @M1@ SUBM"_s,
        u"1 NAME Paul"_s,
        u"0 @U1@ SUBN"_s,
        u"1 DATE 1940"_s,
        u"0 @N1@ NOTE texte libre"_s,
        u"1 CONC suite"_s,
    };
}

/// The meaning of a path in its simplest form, without shortcuts.
class PlainPaths
{
public:
    explicit PlainPaths(const QList<TwItem *> &entries)
    {
        for (TwItem *twi : entries) {
            m_tags.insert(twi, tagOf(twi));
            QStringList fullTag;
            for (TwItem *step = twi; step && step->text(0).toInt() >= 0; step = step->getParent()) {
                const QString tag = tagOf(step);
                if (tag == u"ERREUR"_s)
                    break;
                fullTag.prepend(tag);
            }
            m_fullTags.insert(twi, fullTag);
        }
    }

    bool isTagMatch(TwItem *twi, const QStringList &patterns) const
    {
        if (patterns.isEmpty())
            return true;
        const QStringList fullTag = m_fullTags.value(twi);
        for (QString pattern : patterns) {
            QStringList components = pattern.split(u'.');
            if (pattern.contains(u'*') && components.size() == fullTag.size()) {
                for (qsizetype i = 0; i < components.size(); ++i) {
                    if (components.at(i) == u"*"_s)
                        components[i] = fullTag.at(i);
                }
                pattern = components.join(u'.');
            }
            if (pattern == fullTag.join(u'.') || pattern == m_tags.value(twi))
                return true;
        }
        return false;
    }

    void childs(TwItem *from, const QStringList &path, QList<TwItem *> *found) const
    {
        const int level = from->text(0).toInt() + 1;
        const QStringList pattern{path.join(u'.')};
        if (isTagMatch(from, pattern)) {
            found->append(from);
            return;
        }
        if (m_fullTags.value(from).size() >= path.size())
            return;
        for (TwItem *twi : from->getTabTwiChilds(false)) {
            if (twi->isToDelete() || twi->text(0).toInt() != level)
                continue;
            if (level < 0 || level >= path.size())
                continue;
            if (path.at(level) != m_tags.value(twi) && path.at(level) != u"*"_s)
                continue;
            if (level < path.size() - 1)
                childs(twi, path, found);
            else if (isTagMatch(twi, pattern))
                found->append(twi);
        }
    }

private:
    static QString tagOf(const TwItem *twi)
    {
        for (const QString &value : twi->getTwiValuesList()) {
            if (twi->m_rxTag.match(value).hasMatch())
                return value;
        }
        return u"ERREUR"_s;
    }

    QHash<TwItem *, QString> m_tags;
    QHash<TwItem *, QStringList> m_fullTags;
};

/// A document with every kind of tag below every kind of record, some entries deleted and some
/// levels replaced by other texts.
class Thicket
{
public:
    Thicket()
    {
        QStringList lines{u"1 ABC"_s, u"1 DATE"_s};
        const QStringList heads{u"0 @I1@ INDI"_s, u"0 @N1@ NOTE texte"_s, u"0 @U1@ SUBN"_s,
                                u"0 ERREUR"_s,    u"0 @I2@ INDI"_s,       u"0 DATE"_s};
        for (const QString &head : heads) {
            lines += head;
            for (const auto *tag : {"BIRT", "DATE", "OCCUPAT", "ERREUR", "XY ABC"}) {
                lines += u"1 "_s + QLatin1StringView(tag);
                lines += {u"2 DATE"_s,    u"3 DATE"_s, u"4 BIRT"_s, u"2 BIRT"_s,
                          u"3 XY DATE"_s, u"2 XY"_s,   u"3 DATE"_s, u"2 INDI"_s};
            }
        }
        loaded = document.load(lines);
        entries = document.gedcom.getTabTotalTwItems();
        for (qsizetype i = 10; i < entries.size(); i += 17)
            entries.at(i)->setDelete(true);
        for (qsizetype i = 20; i < entries.size(); i += 67)
            entries.at(i)->setText(0, i % 2 == 0 ? u"-1"_s : u"-2"_s);
        for (qsizetype i = 33; i < entries.size(); i += 71)
            entries.at(i)->setText(0, u"X"_s);
        document.entry(u"0 @I2@ INDI"_s)->setText(0, u"-1"_s);
        for (int i = 0; i < document.tree.topLevelItemCount(); ++i) {
            auto *twi = static_cast<TwItem *>(document.tree.topLevelItem(i));
            if (!entries.contains(twi))
                entries += twi; // a section node
        }
    }

    /// Paths of every length, with fewer kinds of components in the longer ones.
    static QList<QStringList> paths()
    {
        const auto product = [](const QStringList &components, int length) {
            QList<QStringList> products{QStringList()};
            while (length-- > 0) {
                QList<QStringList> longer;
                for (const QStringList &path : std::as_const(products)) {
                    for (const QString &component : components)
                        longer += path + QStringList{component};
                }
                products = longer;
            }
            return products;
        };
        const QStringList components{u"INDI"_s, u"*"_s,   u"DATE"_s, u"BIRT"_s,
                                     u""_s,     u"ABC"_s, u"birt"_s, u"ERREUR"_s};
        QList<QStringList> paths = product(components, 0) + product(components, 1)
                                 + product(components, 2) + product(components.first(6), 3)
                                 + product(components.first(3), 4);
        paths += {{u"INDI"_s, u"BIRT"_s, u"DATE"_s, u"DATE"_s},
                  {u"INDI"_s, u"BIRT"_s, u"DATE"_s, u"DATE"_s, u"BIRT"_s},
                  {u"*"_s, u"*"_s, u"*"_s, u"*"_s, u"*"_s},
                  {u"*"_s, u"*"_s, u"*"_s, u"*"_s, u"*"_s, u"*"_s},
                  {u"INDI"_s, u"*"_s, u"DATE "_s},
                  {u" BIRT"_s},
                  {u"B*"_s},
                  {u"INDI"_s, u"B*"_s},
                  {u"INDI"_s, u"**"_s},
                  {u"*BIRT"_s}};
        return paths;
    }

    Document document;
    bool loaded = false;
    QList<TwItem *> entries;
};

QStringList split(const QString &path, QChar separator)
{
    return path.isNull() ? QStringList() : path.split(separator);
}

} // namespace

/// Finding entries: patterns of tags, paths down and up the tree, lists by text or expression.
class TstQueries : public QObject
{
    Q_OBJECT

private slots:
    void isTagMatch_data();
    void isTagMatch();
    void isTagMatchAgreesWithThePlainForm();
    void childsFromFullTag_data();
    void childsFromFullTag();
    void childsFromFullTagAccumulate();
    void childsFromFullTagBelowANegativeLevel();
    void childsFromFullTagAgreeWithThePlainForm();
    void itemParentFromFullTag_data();
    void itemParentFromFullTag();
    void childsMatchReg_data();
    void childsMatchReg();
    void columnIndex_data();
    void columnIndex();
    void columnIndexMatchRx_data();
    void columnIndexMatchRx();
    void itemsMatch_data();
    void itemsMatch();
    void commonTag_data();
    void commonTag();
    void documentLists_data();
    void documentLists();
    void documentListsLeaveOutDeletedEntries();
    void documentListsAreEmptyBeforeALoad();
    void invalidExpressionOnEntries();
    void invalidExpressionOnTheDocument();
    void queriesOnlyRead();
    void generatedLines_data();
    void generatedLines();
};

void TstQueries::isTagMatch_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("patterns"); // separated by ";"; null for no pattern at all
    QTest::addColumn<bool>("expected");

    const auto add = [](const char *name, const QString &line, const QString &patterns,
                        bool expected) { QTest::newRow(name) << line << patterns << expected; };
    const QString indi = u"0 @I1@ INDI"_s;
    const QString birt = u"1 BIRT"_s;
    const QString date = u"2 DATE 1900"_s;
    const QString noTag = u"1 OCCUPAT maçon"_s;
    add("no pattern: everything", date, QString(), true);
    add("no pattern: also without a tag", noTag, QString(), true);
    add("empty pattern: nothing", date, u""_s, false);
    add("empty pattern: no record", indi, u""_s, false);
    add("empty pattern: an entry without a tag", noTag, u""_s, true);
    add("empty pattern: a record without a tag", u"0 @N1@ NOTE texte libre"_s, u""_s, true);
    add("empty pattern below an entry without a tag", u"2 BIRT z"_s, u""_s, false);
    add("empty pattern among others", noTag, u"NAME;;DATE"_s, true);
    add("bare tag of a record", indi, u"INDI"_s, true);
    add("bare tag of level 1", birt, u"BIRT"_s, true);
    add("bare tag of level 2", date, u"DATE"_s, true);
    add("bare tag of level 3", u"3 NOTE lieu"_s, u"NOTE"_s, true);
    add("bare tag of an ancestor", date, u"BIRT"_s, false);
    add("bare tag, beginning", date, u"DAT"_s, false);
    add("bare tag, lower case", date, u"date"_s, false);
    add("bare tag, blank in front", date, u" DATE"_s, false);
    add("bare tag, blank behind", date, u"DATE "_s, false);
    add("bare tag below an entry without a tag", u"3 DATE 1920"_s, u"DATE"_s, true);
    add("full tag", date, u"INDI.BIRT.DATE"_s, true);
    add("full tag of another record", date, u"FAM.BIRT.DATE"_s, false);
    add("full tag of another entry", date, u"INDI.DEAT.DATE"_s, false);
    add("full tag, lower case", date, u"indi.birt.date"_s, false);
    add("full tag, blank at a dot", date, u"INDI. BIRT.DATE"_s, false);
    add("full tag, dot behind", date, u"INDI.BIRT.DATE."_s, false);
    add("full tag, dot in front", date, u".INDI.BIRT.DATE"_s, false);
    add("full tag, dot twice", date, u"INDI..DATE"_s, false);
    add("tail of the full tag", date, u"BIRT.DATE"_s, false);
    add("head of the full tag", date, u"INDI.BIRT"_s, false);
    add("full tag off screen", u"1 NAME Paul"_s, u"SUBM.NAME"_s, true);
    add("full tag of an unknown kind", u"1 DATE 1940"_s, u"SUBN.DATE"_s, true);
    add("full tag cut off by an entry without a tag", u"3 DATE 1920"_s, u"BIRT.DATE"_s, true);
    add("path through an entry without a tag", u"3 DATE 1920"_s, u"INDI.ERREUR.BIRT.DATE"_s, false);
    add("star in the middle", date, u"INDI.*.DATE"_s, true);
    add("star in front", date, u"*.BIRT.DATE"_s, true);
    add("star at the end", date, u"INDI.BIRT.*"_s, true);
    add("stars alone", date, u"*.*.*"_s, true);
    add("too few stars", date, u"*.*"_s, false);
    add("too many stars", date, u"*.*.*.*"_s, false);
    add("star for one level only", date, u"INDI.*"_s, false);
    add("star for no level", date, u"INDI.BIRT.*.DATE"_s, false);
    add("star and another component", date, u"FAM.*.DATE"_s, false);
    add("star and lower case", date, u"INDI.*.date"_s, false);
    add("star in a component", date, u"INDI.BIRT.DA*"_s, false);
    add("star in a bare tag", date, u"DA*"_s, false);
    add("two stars in a component", date, u"INDI.**.DATE"_s, false);
    add("star with a blank", date, u"INDI.* .DATE"_s, false);
    add("star alone: a person", indi, u"*"_s, true);
    add("star alone: a header", u"0 HEAD"_s, u"*"_s, true);
    add("star alone: a family", u"0 @F1@ FAM"_s, u"*"_s, true);
    add("star alone: no entry", birt, u"*"_s, false);
    add("star alone: no deep entry", date, u"*"_s, false);
    add("star alone: nothing without a tag", noTag, u"*"_s, false);
    add("*.NAME: INDI.NAME", u"1 NAME Jean /DUPONT/"_s, u"*.NAME"_s, true);
    add("*.NAME: not INDI.ASSO.NAME", u"2 NAME Marie"_s, u"*.NAME"_s, false);
    add("INDI.*: a direct child", birt, u"INDI.*"_s, true);
    add("INDI.*: another direct child", u"1 ASSO @I2@"_s, u"INDI.*"_s, true);
    add("INDI.*: not the record", indi, u"INDI.*"_s, false);
    add("INDI.*: not a child of FAM", u"1 MARR"_s, u"INDI.*"_s, false);
    add("INDI.*: not a child without a tag", noTag, u"INDI.*"_s, false);
    add("two patterns, neither", u"2 DATE 1925"_s, u"BIRT;INDI.DEAT.DATE"_s, false);
    add("two patterns, the first", u"1 BIRT f"_s, u"BIRT;INDI.DEAT.DATE"_s, true);
    add("two patterns, the second", u"2 DATE 1970"_s, u"BIRT;INDI.DEAT.DATE"_s, true);
    add("two patterns, the second with a star", date, u"INDI.*.*.DATE;INDI.*.DATE"_s, true);
    add("a star of one pattern leaves the next alone", date, u"*.*.*.*;INDI.x.DATE"_s, false);
    add("the word for no tag", noTag, u"ERREUR"_s, true);
    add("the word for no tag, on a tag", birt, u"ERREUR"_s, false);
    add("the word for no tag, in a path", noTag, u"INDI.ERREUR"_s, false);
}

void TstQueries::isTagMatch()
{
    QFETCH(const QString, line);
    QFETCH(const QString, patterns);

    Document document;
    QVERIFY(document.load(family()));
    TwItem *twi = document.entry(line);
    QVERIFY(twi);
    QTEST(twi->isTagMatch(split(patterns, u';')), "expected");
}

void TstQueries::isTagMatchAgreesWithThePlainForm()
{
    Thicket thicket;
    QVERIFY(thicket.loaded);
    const PlainPaths plain(thicket.entries);
    QStringList patterns;
    for (const QStringList &path : Thicket::paths())
        patterns += path.join(u'.');

    QStringList differences;
    int matches = 0;
    int trials = 0;
    const auto compare = [&](TwItem *twi, const QStringList &list) {
        const bool expected = plain.isTagMatch(twi, list);
        if (twi->isTagMatch(list) != expected)
            differences += lineText(twi) + u" / "_s + list.join(u';');
        matches += expected ? 1 : 0;
        ++trials;
    };
    for (TwItem *twi : std::as_const(thicket.entries)) {
        compare(twi, {});
        for (qsizetype i = 0; i < patterns.size(); ++i) {
            compare(twi, {patterns.at(i)});
            if (i % 5 == 0) {
                compare(twi, {patterns.at(i), patterns.at(i * 7 % patterns.size())});
                compare(twi, {patterns.at(i * 11 % patterns.size()), u"*.*"_s, patterns.at(i)});
            }
        }
    }
    QCOMPARE(differences, QStringList());
    QVERIFY2(matches > 5000 && trials - matches > 100000, qPrintable(QString::number(matches)));
}

void TstQueries::childsFromFullTag_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("expected");

    const auto add = [](const char *name, const QString &from, const QString &path,
                        const QStringList &expected) {
        QTest::newRow(name) << from << path << expected;
    };
    using L = QStringList;
    const QString indi = u"0 @I1@ INDI"_s;
    const QString fam = u"0 @F1@ FAM"_s;
    const QString birt = u"1 BIRT"_s;
    add("the record itself", indi, u"INDI"_s, L{indi});
    add("star for the record itself", indi, u"*"_s, L{indi});
    add("one component, another record", fam, u"INDI"_s, L{});
    add("one component never names a child", indi, u"BIRT"_s, L{});
    add("direct children", indi, u"INDI.BIRT"_s, L{birt, u"1 BIRT Y"_s});
    add("star for direct children", indi, u"INDI.*"_s,
        L{u"1 NAME Jean /DUPONT/"_s, birt, u"1 BIRT Y"_s, u"1 DEAT"_s, u"1 ASSO @I2@"_s});
    add("record of another kind with such a child", fam, u"INDI.BIRT"_s, L{});
    add("record of another kind with such a grandchild", fam, u"INDI.BIRT.DATE"_s, L{});
    add("star for the kind of record", fam, u"*.BIRT"_s, L{u"1 BIRT f"_s});
    add("all entries at a path", indi, u"INDI.BIRT.DATE"_s, L{u"2 DATE 1900"_s, u"2 DATE 1901"_s});
    add("star on the way", indi, u"INDI.*.DATE"_s,
        L{u"2 DATE 1900"_s, u"2 DATE 1901"_s, u"2 DATE 1970"_s});
    add("star at the end", indi, u"INDI.BIRT.*"_s,
        L{u"2 DATE 1900"_s, u"2 PLAC Lyon"_s, u"2 DATE 1901"_s});
    add("stars alone, depth first", indi, u"*.*.*"_s,
        L{u"2 DATE 1900"_s, u"2 PLAC Lyon"_s, u"2 DATE 1901"_s, u"2 DATE 1970"_s,
          u"2 NAME Marie"_s});
    add("third level", indi, u"INDI.BIRT.PLAC.NOTE"_s, L{u"3 NOTE lieu"_s});
    add("third level by stars", indi, u"*.*.*.*"_s, L{u"3 NOTE lieu"_s});
    add("no such entry", indi, u"INDI.BIRT.NOTE"_s, L{});
    add("path deeper than the record", indi, u"INDI.BIRT.DATE.NOTE"_s, L{});
    add("lower case", indi, u"INDI.birt"_s, L{});
    add("star in a component", indi, u"INDI.BI*"_s, L{});
    add("an entry that is the path", birt, u"INDI.BIRT"_s, L{birt});
    add("an entry that is the path by its star", birt, u"INDI.*"_s, L{birt});
    add("an entry whose tag is the path", birt, u"BIRT"_s, L{birt});
    add("below an entry, its own branch alone", birt, u"INDI.BIRT.DATE"_s, L{u"2 DATE 1900"_s});
    add("below an entry that is not on the path", birt, u"INDI.DEAT.DATE"_s, L{});
    add("below an entry, two levels", birt, u"INDI.BIRT.PLAC.NOTE"_s, L{u"3 NOTE lieu"_s});
    add("an entry as long as the path", birt, u"INDI.NAME"_s, L{});
    add("an entry longer than the path", u"2 DATE 1900"_s, u"INDI.NAME"_s, L{});
    add("entry off screen", u"0 @M1@ SUBM"_s, u"SUBM.NAME"_s, L{u"1 NAME Paul"_s});
    add("record of unknown kind", u"0 @U1@ SUBN"_s, u"SUBN.DATE"_s, L{u"1 DATE 1940"_s});
    // If a tag is missing on the way, level and full tag have different lengths.
    add("path through an entry without a tag", indi, u"INDI.ERREUR"_s, L{});
    add("path through an entry without a tag, by a star", indi, u"INDI.*.BIRT"_s, L{});
    add("the entry without a tag itself", u"1 OCCUPAT maçon"_s, u"ERREUR"_s,
        L{u"1 OCCUPAT maçon"_s});
    add("below an entry without a tag", u"1 OCCUPAT maçon"_s, u"*.*.BIRT"_s, L{});
    add("below an entry without a tag, past the end of the path", u"1 OCCUPAT maçon"_s,
        u"BIRT.DATE"_s, L{});
    add("candidate past the end of the path", u"2 BIRT z"_s, u"FAM.DATE"_s, L{});
    add("candidate past the end of a path that it has", u"2 BIRT z"_s, u"BIRT.DATE"_s, L{});
    add("record without a tag", u"0 @N1@ NOTE texte libre"_s, u"*.CONC"_s, L{});
    add("no path", indi, QString(), L{});
    add("no path, entry without a tag", u"1 OCCUPAT maçon"_s, QString(), L{u"1 OCCUPAT maçon"_s});
}

void TstQueries::childsFromFullTag()
{
    QFETCH(const QString, from);
    QFETCH(const QString, path);

    Document document;
    QVERIFY(document.load(family()));
    TwItem *twi = document.entry(from);
    QVERIFY(twi);
    QList<TwItem *> found;
    twi->getChildsListFromFullTag(split(path, u'.'), &found, twi);
    QTEST(linesOf(found), "expected");
}

void TstQueries::childsFromFullTagAccumulate()
{
    Document document;
    QVERIFY(document.load(family()));
    TwItem *indi = document.entry(u"0 @I1@ INDI"_s);
    TwItem *fam = document.entry(u"0 @F1@ FAM"_s);
    QStringList path{u"*"_s, u"BIRT"_s, u"DATE"_s};

    // The receiver does not matter, and the list is never cleared.
    QList<TwItem *> found;
    TwItem receiver(1);
    receiver.getChildsListFromFullTag(path, &found, indi);
    receiver.getChildsListFromFullTag(path, &found, fam);
    receiver.getChildsListFromFullTag(path, &found, fam);
    QCOMPARE(linesOf(found),
             (QStringList{u"2 DATE 1900"_s, u"2 DATE 1901"_s, u"2 DATE 1930"_s, u"2 DATE 1930"_s}));

    // Deleted entries are invisible, as is everything below a deleted step.
    document.entry(u"1 BIRT"_s)->setDelete(true);
    document.entry(u"2 DATE 1930"_s)->setDelete(true);
    found.clear();
    indi->getChildsListFromFullTag(path, &found, indi);
    fam->getChildsListFromFullTag(path, &found, fam);
    QCOMPARE(linesOf(found), QStringList{u"2 DATE 1901"_s});
    QCOMPARE(indi->child(1)->text(1), u"BIRT"_s);
    QCOMPARE(indi->child(1)->child(0)->text(2), u"1900"_s);

    // Hidden does not mean deleted.
    document.entry(u"2 DATE 1901"_s)->setTwiHidden(true);
    found.clear();
    indi->getChildsListFromFullTag(path, &found, indi);
    QCOMPARE(linesOf(found), QStringList{u"2 DATE 1901"_s});
}

void TstQueries::childsFromFullTagBelowANegativeLevel()
{
    Document document;
    QVERIFY(document.load(family()));
    TwItem *birt = document.entry(u"1 BIRT"_s);
    TwItem *date = document.entry(u"2 DATE 1900"_s);
    const QStringList path{u"*"_s, u"DATE"_s};

    // A replacement has changed the levels: a path has no component before its first.
    birt->setText(0, u"-2"_s);
    date->setText(0, u"-1"_s);
    QList<TwItem *> found;
    birt->getChildsListFromFullTag(path, &found, birt);
    QCOMPARE(linesOf(found), QStringList());

    birt->setText(0, u"-1"_s);
    date->setText(0, u"0"_s);
    document.entry(u"2 PLAC Lyon"_s)->setText(0, u"0"_s);
    birt->getChildsListFromFullTag({u"DATE"_s}, &found, birt);
    QCOMPARE(linesOf(found), QStringList{u"0 DATE 1900"_s});
}

void TstQueries::childsFromFullTagAgreeWithThePlainForm()
{
    Thicket thicket;
    QVERIFY(thicket.loaded);
    const PlainPaths plain(thicket.entries);
    const QList<QStringList> paths = Thicket::paths();

    QStringList differences;
    int below = 0;
    for (const QStringList &path : paths) {
        for (TwItem *twi : std::as_const(thicket.entries)) {
            QList<TwItem *> expected;
            plain.childs(twi, path, &expected);
            QList<TwItem *> actual;
            twi->getChildsListFromFullTag(path, &actual, twi);
            if (actual != expected)
                differences += lineText(twi) + u" / "_s + path.join(u'.');
            below += int(expected.size() - expected.count(twi));
        }
    }
    QCOMPARE(differences, QStringList());
    QVERIFY2(below > 500, qPrintable(QString::number(below)));
}

void TstQueries::itemParentFromFullTag_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected"); // empty for none

    const auto add = [](const char *name, const QString &line, const QString &path,
                        const QString &expected) {
        QTest::newRow(name) << line << path << expected;
    };
    const QString note = u"3 NOTE lieu"_s;
    add("the entry itself", note, u"INDI.BIRT.PLAC.NOTE"_s, note);
    add("the parent", note, u"INDI.BIRT.PLAC"_s, u"2 PLAC Lyon"_s);
    add("the grandparent", note, u"INDI.BIRT"_s, u"1 BIRT"_s);
    add("the record", note, u"INDI"_s, u"0 @I1@ INDI"_s);
    add("the record itself", u"0 @I1@ INDI"_s, u"INDI"_s, u"0 @I1@ INDI"_s);
    add("the second of two alike", u"2 DATE 1901"_s, u"INDI.BIRT"_s, u"1 BIRT Y"_s);
    add("no ancestor", note, u"INDI.DEAT"_s, u""_s);
    add("another kind of record", note, u"FAM"_s, u""_s);
    add("as long, and different", note, u"INDI.DEAT.PLAC.NOTE"_s, u""_s);
    add("longer", u"1 BIRT"_s, u"INDI.BIRT.DATE"_s, u""_s);
    add("bare tag", note, u"BIRT"_s, u""_s);
    add("bare tag of the entry", note, u"NOTE"_s, u""_s);
    add("star is nothing special", note, u"INDI.*"_s, u""_s);
    add("star alone", note, u"*"_s, u""_s);
    add("lower case", note, u"indi"_s, u""_s);
    add("one empty component", note, u""_s, u""_s);
    add("no path", note, QString(), u""_s);
    add("no path, record", u"0 @I1@ INDI"_s, QString(), u""_s);
    add("no path, entry without a tag", u"1 OCCUPAT maçon"_s, QString(), u""_s);
    add("unknown kind", u"1 DATE 1940"_s, u"SUBN"_s, u"0 @U1@ SUBN"_s);
    add("unknown kind, no ancestor", u"1 DATE 1940"_s, u"INDI"_s, u""_s);
    add("off screen", u"1 NAME Paul"_s, u"SUBM"_s, u"0 @M1@ SUBM"_s);
    // The way up is as long as the full tag, which an entry without a tag cuts short.
    add("cut off, the entry itself", u"3 DATE 1920"_s, u"BIRT.DATE"_s, u"3 DATE 1920"_s);
    add("cut off, the parent", u"3 DATE 1920"_s, u"BIRT"_s, u"2 BIRT z"_s);
    add("cut off, the record out of reach", u"3 DATE 1920"_s, u"INDI"_s, u""_s);
    add("cut off, no step", u"2 BIRT z"_s, u"INDI"_s, u""_s);
    add("no tag, no step", u"1 OCCUPAT maçon"_s, u"INDI"_s, u""_s);
}

void TstQueries::itemParentFromFullTag()
{
    QFETCH(const QString, line);
    QFETCH(const QString, path);
    QFETCH(const QString, expected);

    Document document;
    QVERIFY(document.load(family()));
    TwItem *twi = document.entry(line);
    QVERIFY(twi);
    TwItem receiver(1); // does not matter
    TwItem *expectedTwi = expected.isEmpty() ? nullptr : document.entry(expected);
    QVERIFY(expected.isEmpty() || expectedTwi);
    QCOMPARE(receiver.getItemParentFromFullTag(split(path, u'.'), twi), expectedTwi);
}

void TstQueries::childsMatchReg_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QStringList>("expected");

    using L = QStringList;
    const QString indi = u"0 @I1@ INDI"_s;
    QTest::newRow("record: all descendants, in order")
        << indi << uR"(^[0-9] DATE)"_s
        << L{u"2 DATE 1900"_s, u"2 DATE 1901"_s, u"2 DATE 1970"_s, u"3 DATE 1920"_s};
    QTest::newRow("record: not itself") << indi << u"INDI"_s << L{};
    QTest::newRow("entry: direct children alone")
        << u"1 BIRT"_s << u".*"_s << L{u"2 DATE 1900"_s, u"2 PLAC Lyon"_s};
    QTest::newRow("the whole line counts") << indi << u"^1 ASSO @I"_s << L{u"1 ASSO @I2@"_s};
    QTest::newRow("end of the line") << indi << u"BIRT$"_s << L{u"1 BIRT"_s};
    QTest::newRow("part of the line") << indi << u"yo"_s << L{u"2 PLAC Lyon"_s};
    QTest::newRow("case counts") << indi << u"lyon"_s << L{};
    QTest::newRow("empty pattern") << u"2 PLAC Lyon"_s << u""_s << L{u"3 NOTE lieu"_s};
    QTest::newRow("no children") << u"3 NOTE lieu"_s << u""_s << L{};
}

void TstQueries::childsMatchReg()
{
    QFETCH(const QString, from);
    QFETCH(const QString, pattern);
    QFETCH(QStringList, expected);

    Document document;
    QVERIFY(document.load(family()));
    TwItem *twi = document.entry(from);
    QVERIFY(twi);
    QCOMPARE(linesOf(twi->getTabTwiChildsMatchReg(QRegularExpression(pattern))), expected);

    // Hidden rows count; deleted entries do not, but those below them do.
    for (TwItem *child : twi->getTabTwiChilds(false))
        child->setTwiHidden(true);
    for (const QString &deleted : {u"1 BIRT"_s, u"2 DATE 1901"_s}) {
        document.entry(deleted)->setDelete(true);
        expected.removeAll(deleted);
    }
    QCOMPARE(linesOf(twi->getTabTwiChildsMatchReg(QRegularExpression(pattern))), expected);
}

void TstQueries::columnIndex_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("text");
    // Equal or containing, each with and without case.
    QTest::addColumn<QList<int>>("expected");

    using L = QList<int>;
    const QString line = u"1 NAME Jean /DUPONT/ 1"_s;
    QTest::newRow("level") << line << u"1"_s << L{0, 0, 0, 0};
    QTest::newRow("tag") << line << u"NAME"_s << L{1, 1, 1, 1};
    QTest::newRow("tag in lower case") << line << u"name"_s << L{-1, 1, -1, 1};
    QTest::newRow("whole value") << line << u"Jean /DUPONT/ 1"_s << L{2, 2, 2, 2};
    QTest::newRow("whole value in capitals") << line << u"JEAN /DUPONT/ 1"_s << L{-1, 2, -1, 2};
    QTest::newRow("part of the value") << line << u"Jean"_s << L{-1, -1, 2, 2};
    QTest::newRow("part of the value in lower case") << line << u"dupont"_s << L{-1, -1, -1, 2};
    QTest::newRow("blank behind") << line << u"NAME "_s << L{-1, -1, -1, -1};
    QTest::newRow("over two columns") << line << u"1 NAME"_s << L{-1, -1, -1, -1};
    QTest::newRow("nothing of it") << line << u"Marie"_s << L{-1, -1, -1, -1};
    QTest::newRow("empty text") << line << u""_s << L{-1, -1, 0, 0};
    QTest::newRow("empty text, empty tag") << u"10 NOTE x"_s << u""_s << L{1, 1, 0, 0};
    QTest::newRow("empty text, empty entry") << u""_s << u""_s << L{0, 0, 0, 0};
    QTest::newRow("mixed case against capitals")
        << u"1 GIVN JEAN"_s << u"Jean"_s << L{-1, 2, -1, 2};
    QTest::newRow("capitals against mixed case")
        << u"1 GIVN Jean"_s << u"JEAN"_s << L{-1, 2, -1, 2};
    QTest::newRow("accents have a case") << u"1 GIVN Élie"_s << u"élIE"_s << L{-1, 2, -1, 2};
    QTest::newRow("accents are letters of their own")
        << u"1 GIVN Élie"_s << u"ELIE"_s << L{-1, -1, -1, -1};
    // Upper case is compared, not folded case.
    QTest::newRow("letter whose capitals are two")
        << u"1 GIVN Groß"_s << u"GROSS"_s << L{-1, 2, -1, -1};
    QTest::newRow("no expression") << line << u"."_s << L{-1, -1, -1, -1};
    QTest::newRow("tag before value") << u"1 NOTE NOTE"_s << u"NOTE"_s << L{1, 1, 1, 1};
    QTest::newRow("value equal, tag containing") << u"1 _NOTE NOTE"_s << u"NOTE"_s << L{2, 2, 1, 1};
    QTest::newRow("level before value") << u"1 SEQ 1"_s << u"1"_s << L{0, 0, 0, 0};
    QTest::newRow("identifier") << u"0 @I1@ INDI"_s << u"@I1@"_s << L{1, 1, 1, 1};
}

void TstQueries::columnIndex()
{
    QFETCH(const QString, line);
    QFETCH(const QString, text);

    TwItem source(1);
    source.setTwiValuesFromStr(line, &source);
    const TwItem &twi = source;
    QTEST((QList<int>{twi.getColumnIndexEqualString(text, true),
                      twi.getColumnIndexEqualString(text, false),
                      twi.getColumnIndexContainsString(text, true),
                      twi.getColumnIndexContainsString(text, false)}),
          "expected");
}

void TstQueries::columnIndexMatchRx_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QRegularExpression>("rx");
    QTest::addColumn<int>("expected");

    const auto add = [](const char *name, const QString &line, const QString &pattern, int expected,
                        QRegularExpression::PatternOptions options = {}) {
        QTest::newRow(name) << line << QRegularExpression(pattern, options) << expected;
    };
    const QString line = u"1 FILE C:/1/FILE.jpg"_s;
    add("level", line, u"^[0-9]$"_s, 0);
    add("tag", line, u"^FILE$"_s, 1);
    add("tag before value", line, u"FILE"_s, 1);
    add("value", line, u"jpg$"_s, 2);
    add("value, anchored to the column", line, u"^C:"_s, 2);
    add("not over columns", line, u"^1 FILE "_s, -1);
    add("nothing", line, u"png"_s, -1);
    add("case counts", line, u"JPG"_s, -1);
    add("case of the expression's options", line, u"JPG"_s, 2,
        QRegularExpression::CaseInsensitiveOption);
    add("empty pattern", line, u""_s, 0);
    add("empty column", u"10 NOTE x"_s, u"^$"_s, 1);
    add("entry without columns of its own", u""_s, u"."_s, -1);
}

void TstQueries::columnIndexMatchRx()
{
    QFETCH(const QString, line);
    QFETCH(const QRegularExpression, rx);

    TwItem twi(1);
    twi.setTwiValuesFromStr(line, &twi);
    QTEST(std::as_const(twi).getColumnIndexMatchRx(rx), "expected");
}

void TstQueries::itemsMatch_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");

    using L = QStringList;
    QTest::newRow("tags, in the order of the list")
        << u"DATE"_s << L{u"2 DATE 1970"_s, u"2 DATE 1900"_s, u"2 DATE 1970"_s};
    QTest::newRow("values") << u"Lyon"_s << L{u"2 PLAC Lyon"_s};
    QTest::newRow("identifier and reference") << u"@I1@"_s << L{u"0 @I1@ INDI"_s};
    QTest::newRow("level") << u"0"_s << L{u"0 @I1@ INDI"_s, u"0 @F1@ FAM"_s};
    QTest::newRow("case counts") << u"lyon"_s << L{};
    QTest::newRow("part of a column") << u"Lyo"_s << L{};
    QTest::newRow("empty text, no such column") << u""_s << L{};
}

void TstQueries::itemsMatch()
{
    QFETCH(const QString, text);

    Document document;
    QVERIFY(document.load(family()));
    const Gedcom &gedcom = document.gedcom;
    QList<TwItem *> liste;
    for (const QString &line : {u"2 DATE 1970"_s, u"0 @I1@ INDI"_s, u"2 PLAC Lyon"_s,
                                u"2 DATE 1900"_s, u"0 @F1@ FAM"_s, u"2 DATE 1970"_s})
        liste += document.entry(line);
    const QList<TwItem *> before = liste;
    QTEST(linesOf(gedcom.getTabTwItemsMatch(text, liste)), "expected");
    QCOMPARE(liste, before);

    // The list decides what is searched, deleted or not.
    for (TwItem *twi : std::as_const(liste))
        twi->setDelete(true);
    QTEST(linesOf(gedcom.getTabTwItemsMatch(text, liste)), "expected");
    liste.clear();
    QCOMPARE(linesOf(gedcom.getTabTwItemsMatch(text, liste)), QStringList());
}

void TstQueries::commonTag_data()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("two");
    QTest::addColumn<QString>("common");

    const auto add = [](const char *name, const QString &one, const QString &two,
                        const QString &common) { QTest::newRow(name) << one << two << common; };
    const QString none;
    add("both of one component", u"INDI"_s, u"INDI"_s, none);
    add("one component and a star", u"INDI"_s, u"*"_s, none);
    add("the second of one component", u"INDI.NAME"_s, u"INDI"_s, u"INDI"_s);
    add("the first of one component", u"INDI"_s, u"INDI.NAME"_s, u"INDI"_s);
    add("star of one component", u"INDI.NAME"_s, u"*"_s, u"INDI"_s);
    add("star stands for the first list", u"INDI.BIRT.DATE"_s, u"INDI.*.PLAC"_s, u"INDI.BIRT"_s);
    add("stars everywhere", u"INDI.BIRT.DATE"_s, u"*.*.*"_s, u"INDI.BIRT.DATE"_s);
    add("a difference does not end the scan", u"INDI.BIRT.DATE"_s, u"INDI.DEAT.DATE"_s,
        u"INDI.DATE"_s);
    add("a difference at the first position", u"INDI.BIRT.DATE"_s, u"FAM.BIRT.DATE"_s,
        u"BIRT.DATE"_s);
    add("a star behind a difference", u"INDI.BIRT.DATE"_s, u"FAM.*.PLAC"_s, u"BIRT"_s);
    add("star of the first list is nothing special", u"INDI.*.DATE"_s, u"INDI.BIRT.DATE"_s,
        u"INDI.DATE"_s);
    add("stars of both", u"INDI.*"_s, u"INDI.*"_s, u"INDI.*"_s);
    add("star in a component", u"INDI.BIRT"_s, u"INDI.B*"_s, u"INDI"_s);
    add("equal", u"INDI.BIRT.DATE"_s, u"INDI.BIRT.DATE"_s, u"INDI.BIRT.DATE"_s);
    add("first longer", u"INDI.BIRT.DATE.NOTE"_s, u"INDI.BIRT"_s, u"INDI.BIRT"_s);
    add("second longer", u"INDI.BIRT"_s, u"INDI.BIRT.*.*"_s, u"INDI.BIRT"_s);
    add("by position", u"INDI.BIRT.DATE"_s, u"BIRT.DATE"_s, none);
    add("case counts", u"INDI.BIRT"_s, u"INDI.birt"_s, u"INDI"_s);
    add("nothing in common", u"INDI.BIRT"_s, u"FAM.MARR"_s, none);
    add("first empty", none, u"INDI.BIRT"_s, none);
    add("second empty", u"INDI.BIRT"_s, none, none);
    add("both empty", none, none, none);
}

void TstQueries::commonTag()
{
    QFETCH(const QString, one);
    QFETCH(const QString, two);
    QFETCH(const QString, common);

    Gedcom gedcom;
    const QStringList tagOneList = split(one, u'.');
    const QStringList tagTwoList = split(two, u'.');
    QCOMPARE(gedcom.getCommonTag(tagOneList, tagTwoList), split(common, u'.'));
    // The star is replaced in a copy.
    QCOMPARE(tagOneList, split(one, u'.'));
    QCOMPARE(tagTwoList, split(two, u'.'));
}

void TstQueries::documentLists_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<bool>("usePatern");
    QTest::addColumn<bool>("withChilds");
    QTest::addColumn<QStringList>("expected");

    const auto add = [](const char *name, const QString &pattern, bool usePatern, bool withChilds,
                        const QStringList &expected) {
        QTest::newRow(name) << pattern << usePatern << withChilds << expected;
    };
    using L = QStringList;
    const L roots{u"0 HEAD"_s,      u"0 @I1@ INDI"_s, u"0 @F1@ FAM"_s,
                  u"0 @M1@ SUBM"_s, u"0 @U1@ SUBN"_s, u"0 @N1@ NOTE texte libre"_s};
    add("all roots", u""_s, false, false, roots);
    add("all roots, pattern not asked", u"FAM"_s, false, false, roots);
    add("everything", u""_s, false, true, family());
    add("everything, pattern not asked", u"FAM"_s, false, true, family());
    add("matching roots", u"^0 @[IF]"_s, true, false, L{u"0 @I1@ INDI"_s, u"0 @F1@ FAM"_s});
    add("matching roots, entries not looked at", u"DATE"_s, true, false, L{});
    add("empty pattern matches all roots", u""_s, true, false, roots);
    add("matching entries below roots that do not match", u"DATE 19[0-3]"_s, true, true,
        L{u"2 DATE 1900"_s, u"2 DATE 1901"_s, u"3 DATE 1920"_s, u"2 DATE 1930"_s,
          u"2 DATE 1925"_s});
    add("matching root, its entries for themselves", u"SUB"_s, true, true,
        L{u"0 @M1@ SUBM"_s, u"0 @U1@ SUBN"_s});
    add("roots and entries in the order of the file", u"BIRT|FAM|INDI"_s, true, true,
        L{u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"1 BIRT Y"_s, u"2 BIRT z"_s, u"0 @F1@ FAM"_s,
          u"1 BIRT f"_s});
    add("empty pattern matches everything", u""_s, true, true, family());
    add("anchored to the whole line", u"^2 PLAC Lyon$"_s, true, true, L{u"2 PLAC Lyon"_s});
    add("nothing matches", u"^DATE"_s, true, true, L{});
}

void TstQueries::documentLists()
{
    QFETCH(const QString, pattern);
    QFETCH(const bool, usePatern);
    QFETCH(const bool, withChilds);
    QFETCH(const QStringList, expected);

    Document document;
    QVERIFY(document.load(family()));
    const Gedcom &gedcom = document.gedcom;
    const QRegularExpression rx(pattern);
    QCOMPARE(linesOf(gedcom.getTabTwItemsRootMatch(rx, usePatern, withChilds)), expected);
    if (usePatern && withChilds)
        QCOMPARE(linesOf(document.gedcom.getTabTotalTwItemsMatch(rx)), expected);
    if (!usePatern && withChilds)
        QCOMPARE(linesOf(document.gedcom.getTabTotalTwItems()), expected);
    if (!usePatern && !withChilds)
        QCOMPARE(linesOf(gedcom.getTabTwItemsRoot()), expected);
}

void TstQueries::documentListsLeaveOutDeletedEntries()
{
    Document document;
    QVERIFY(document.load(family()));
    Gedcom &gedcom = document.gedcom;
    QStringList expected = family();
    const auto remove = [&](const QString &line) {
        document.entry(line)->setDelete(true);
        expected.removeAll(line);
    };
    // A single entry; its descendants are still listed.
    remove(u"1 BIRT"_s);
    remove(u"2 DATE 1970"_s);
    // Hidden does not mean deleted.
    document.entry(u"2 PLAC Lyon"_s)->setTwiHidden(true);
    document.entry(u"0 HEAD"_s)->setTwiHidden(true);
    QCOMPARE(linesOf(gedcom.getTabTotalTwItems()), expected);
    QCOMPARE(
        linesOf(gedcom.getTabTotalTwItemsMatch(QRegularExpression(u"^. (BIRT|DATE 19[07]0)"_s))),
        (QStringList{u"2 DATE 1900"_s, u"1 BIRT Y"_s, u"2 BIRT z"_s, u"1 BIRT f"_s}));

    // A record with everything below it.
    document.entry(u"0 @F1@ FAM"_s)->setDelete(true);
    document.entry(u"0 @M1@ SUBM"_s)->setDelete(true);
    for (const QString &line : {u"0 @F1@ FAM"_s, u"1 BIRT f"_s, u"2 DATE 1930"_s, u"1 MARR"_s,
                                u"2 DATE 1925"_s, u"0 @M1@ SUBM"_s, u"1 NAME Paul"_s})
        expected.removeAll(line);
    QCOMPARE(linesOf(gedcom.getTabTotalTwItems()), expected);
    QCOMPARE(
        linesOf(gedcom.getTabTotalTwItemsMatch(QRegularExpression(u"^1 |FAM|SUBM"_s))),
        (QStringList{u"1 CHAR UTF-8"_s, u"1 NAME Jean /DUPONT/"_s, u"1 BIRT Y"_s, u"1 DEAT"_s,
                     u"1 ASSO @I2@"_s, u"1 OCCUPAT maçon"_s, u"1 DATE 1940"_s, u"1 CONC suite"_s}));
    const QStringList roots{u"0 HEAD"_s, u"0 @I1@ INDI"_s, u"0 @U1@ SUBN"_s,
                            u"0 @N1@ NOTE texte libre"_s};
    QCOMPARE(linesOf(gedcom.getTabTwItemsRoot()), roots);
    QCOMPARE(linesOf(gedcom.getTabTwItemsRootMatch(QRegularExpression(u"FAM|I1"_s), true, false)),
             QStringList{u"0 @I1@ INDI"_s});

    // A root is a root because the document lists it, whatever its level reads after a replacement.
    document.entry(u"0 @U1@ SUBN"_s)->setText(0, u"X"_s);
    QCOMPARE(linesOf(gedcom.getTabTwItemsRoot()),
             QStringList(roots).replaceInStrings(u"0 @U1@"_s, u"X @U1@"_s));
}

void TstQueries::documentListsAreEmptyBeforeALoad()
{
    Gedcom gedcom;
    QVERIFY(gedcom.getTabTwItemsRoot().isEmpty());
    QVERIFY(gedcom.getTabTotalTwItems().isEmpty());
    QVERIFY(gedcom.getTabTotalTwItemsMatch(QRegularExpression()).isEmpty());
    QVERIFY(gedcom.getTabTwItemsRootMatch(QRegularExpression(), true, true).isEmpty());
}

void TstQueries::invalidExpressionOnEntries()
{
    Document document;
    QVERIFY(document.load(family()));
    TwItem *indi = document.entry(u"0 @I1@ INDI"_s);
    const QRegularExpression rx(u"(DATE"_s);
    QVERIFY(!rx.isValid());

    QTest::failOnWarning(QRegularExpression(QString()));
    QCOMPARE(linesOf(indi->getTabTwiChildsMatchReg(rx)), QStringList());
    QCOMPARE(indi->getColumnIndexMatchRx(rx), -1);
}

void TstQueries::invalidExpressionOnTheDocument()
{
    Document document;
    const QStringList lines{u"0 HEAD"_s, u"1 DATE 1900"_s};
    QVERIFY(document.load(lines));
    const QRegularExpression rx(u"[DATE"_s);
    QVERIFY(!rx.isValid());

    QTest::failOnWarning(QRegularExpression(QString()));
    QCOMPARE(linesOf(document.gedcom.getTabTotalTwItemsMatch(rx)), QStringList());
    QCOMPARE(linesOf(document.gedcom.getTabTwItemsRootMatch(rx, true, false)), QStringList());
    QCOMPARE(linesOf(document.gedcom.getTabTwItemsRootMatch(rx, false, true)), lines);
}

void TstQueries::queriesOnlyRead()
{
    Document document;
    QVERIFY(document.load(family()));
    document.statusBar.showMessage(u"avant"_s);
    document.progress.setRange(0, 100);
    document.progress.setValue(50);
    Gedcom &gedcom = document.gedcom;
    const QString journal = gedcom.getJournal();
    const QSignalSpy progress(&document.progress, &QProgressBar::valueChanged);
    const QSignalSpy data(document.tree.model(), &QAbstractItemModel::dataChanged);
    const QSignalSpy inserted(document.tree.model(), &QAbstractItemModel::rowsInserted);
    const QSignalSpy removed(document.tree.model(), &QAbstractItemModel::rowsRemoved);

    const QRegularExpression rx(u"DATE"_s);
    QList<TwItem *> liste = gedcom.getTabTotalTwItems();
    const QStringList path{u"INDI"_s, u"*"_s, u"DATE"_s};
    qsizetype results = gedcom.getTabTwItemsRoot().size();
    results += gedcom.getTabTotalTwItemsMatch(rx).size();
    results += gedcom.getTabTwItemsRootMatch(rx, true, false).size();
    results += gedcom.getTabTwItemsMatch(u"DATE"_s, liste).size();
    results += gedcom.getCommonTag(path, {u"*"_s, u"BIRT"_s}).size();
    for (TwItem *twi : std::as_const(liste)) {
        QList<TwItem *> found;
        twi->getChildsListFromFullTag(path, &found, twi);
        results += found.size() + twi->getTabTwiChildsMatchReg(rx).size()
                 + (twi->isTagMatch({u"INDI.*"_s, u"DATE"_s}) ? 1 : 0)
                 + (twi->getItemParentFromFullTag({u"INDI"_s}, twi) ? 1 : 0)
                 + twi->getColumnIndexMatchRx(rx) + twi->getColumnIndexEqualString(u"DATE"_s, false)
                 + twi->getColumnIndexContainsString(u"DATE"_s, true);
    }
    QVERIFY(results != 0);

    QCOMPARE(document.lines(), family());
    QCOMPARE(gedcom.getJournal(), journal);
    QCOMPARE(document.status(), u"avant"_s);
    QCOMPARE(document.progress.value(), 50);
    QCOMPARE(progress.count() + data.count() + inserted.count() + removed.count(), 0);
    QVERIFY(std::none_of(liste.cbegin(), liste.cend(),
                         [](TwItem *twi) { return twi->isToDelete() || twi->isHidden(); }));
}

void TstQueries::generatedLines_data()
{
    QTest::addColumn<QString>("pattern");
    for (const QString &pattern : {u"^2 SOUR @S"_s,
                                   u"^1 FILE "_s,
                                   u"^1 FILE"_s,
                                   u"^"_s,
                                   u"^1"_s,
                                   u"^1 "_s,
                                   u"^ "_s,
                                   u"^@S"_s,
                                   u"^2 SOUR @S1@ B"_s,
                                   u"^1  FILE"_s,
                                   u"^[0-9] FILE"_s,
                                   u"2 SOUR @S"_s,
                                   u"^1 FILE$"_s,
                                   u"^2 SOUR.@S"_s,
                                   u"^[0-9] FILE"_s,
                                   u"^[0-9] SOUR @S1"_s,
                                   u"^[0-9]"_s,
                                   u"^[0-9]F"_s,
                                   u"^0 @S[0-9]+@ SOUR$"_s,
                                   u"^0 @S[0-9]+@ FILE$"_s,
                                   u"^0 @S[0-9]+@ S[A-Z]+$"_s,
                                   u"^@S[0-9]+@$"_s,
                                   u"^@S[0-9]+@$\n"_s,
                                   u"^0 @S[0-9]+@ SOUR$\n"_s,
                                   u"^@S[0-9]+$"_s,
                                   u"^@S[0-9]+@"_s,
                                   u"^@S[0-9]*@$"_s,
                                   u"^@S[0-9]+@@$"_s,
                                   u"^@S1[0-9]+@$"_s,
                                   u"FILE"_s,
                                   u"@S1@$"_s,
                                   u"^.?$"_s,
                                   u""_s,
                                   u"^file"_s,
                                   u"("_s})
        QTest::addRow("\"%s\"", qPrintable(pattern)) << pattern;
}

// Neither the expressions that only ask for the beginning of a line nor those tried on many entries
// use the expression engine each time.
void TstQueries::generatedLines()
{
    QFETCH(const QString, pattern);
    const QStringList levels{u"1"_s,      u"2"_s,        u""_s,  u"1 "_s,     u"12"_s,
                             u"2 SOUR"_s, u"2 SOUR @"_s, u"0"_s, u"0 @S7@"_s, u"٣"_s};
    const QStringList tags{u"FILE"_s, u"SOUR"_s,      u""_s,      u"SOUR @S1@"_s,
                           u"@S1@"_s, u"@S1@ SOUR"_s, u" FILE"_s, u"FILE "_s};
    const QStringList values{
        u"@S1@"_s,           u"@S"_s,     u""_s,       u" "_s,        u"@S1@ B"_s,
        u"a.jpg"_s,          u"SOUR"_s,   u"FILE"_s,   u"SOUR\n"_s,   u"XSOUR"_s,
        u"file\n1 FILE a"_s, u"@S12@"_s,  u"@S1@\n"_s, u"@S1@\n\n"_s, u"@S@"_s,
        u"@S1@2@"_s,         u"@S1a2@"_s, u" @S1@"_s,  u"@S٣@"_s};

    Document document;
    QVERIFY(document.load({u"0 @S1@ SOUR"_s, u"1 TITL x"_s}));
    TwItem *root = document.entry(u"0 @S1@ SOUR"_s);
    for (const QString &level : levels) {
        for (qsizetype i = 0; i <= tags.size() * values.size(); ++i) {
            auto *twi = new TwItem(-1);
            twi->setText(0, level);
            if (i < tags.size())
                twi->setText(1, tags.at(i));
            if (i < tags.size() * values.size()) {
                twi->setText(1, tags.at(i % tags.size()));
                twi->setText(2, values.at(i / tags.size()));
            }
            root->insertTabChild(-1, twi);
        }
    }

    for (const auto option :
         {QRegularExpression::NoPatternOption, QRegularExpression::CaseInsensitiveOption,
          QRegularExpression::MultilineOption}) {
        const QRegularExpression rx(pattern, option);
        QStringList lines;
        ColumnMatcher matcher(rx);
        const QList<TwItem *> entries = root->getTabTwiChilds(true);
        for (TwItem *twi : entries) {
            if (rx.isValid() && rx.match(lineText(twi)).hasMatch())
                lines += lineText(twi);
            QCOMPARE(matcher.firstColumn(twi), twi->getColumnIndexMatchRx(rx));
        }
        QCOMPARE(linesOf(root->getTabTwiChildsMatchReg(rx)), lines);
        if (rx.isValid() && rx.match(lineText(root)).hasMatch())
            lines.prepend(lineText(root));
        QCOMPARE(linesOf(document.gedcom.getTabTotalTwItemsMatch(rx)), lines);
    }
}

VARLUNE_TEST_MAIN(TstQueries)
#include "tst_queries.moc"
