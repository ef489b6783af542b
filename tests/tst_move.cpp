#include "boxes.h"
#include "document.h"
#include "progresslog.h"
#include "testmain.h"
#include "told.h"

#include "gedcom.h"
#include "journaltext.h"
#include "twitem.h"

#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTest>

#include <algorithm>
#include <deque>

using namespace Qt::StringLiterals;

namespace {

// The three check boxes of the form.
constexpr int Copy = 1;
constexpr int Delete = 2;
constexpr int Create = 4;
constexpr int Everything = Copy | Delete | Create;

/// Splits lines that are written here as one, separated by "|".
QStringList cut(const QString &lines)
{
    return lines.isEmpty() ? QStringList() : lines.split(u'|');
}

QString created(const QString &what)
{
    return u"INFO : Création de l'entrée : "_s + what;
}

QString edited(const QString &what)
{
    return u"INFO : Modification de l'entrée : "_s + what;
}

QString deleted(const QString &what)
{
    return u"INFO : Suppression de l'entrée : "_s + what;
}

int countOf(const QStringList &journal, const QString &start)
{
    return int(std::count_if(journal.begin(), journal.end(),
                             [&start](const QString &line) { return line.startsWith(start); }));
}

int deletionsIn(const QStringList &journal)
{
    return countOf(journal, deleted(QString()));
}

/// The journal of a whole run: a line for each change, then the three totals.
QStringList withTotals(const QStringList &changes)
{
    const auto total = [&changes](const QString &text, const QString &start) {
        return text.arg(countOf(changes, start));
    };
    return changes
         + QStringList{
             total(u"INFO : Création de %1 balises terminée."_s, created(QString())),
             total(u"INFO : Edition de %1 balises terminée."_s, edited(QString())),
             total(u"INFO : Suppression de %1 balises terminée."_s, deleted(QString())),
         };
}

int runMove(Document &doc, const QString &sources, const QString &destinations, int flags)
{
    return doc.gedcom.moveTagContent(sources, destinations, flags & Delete, flags & Copy,
                                     flags & Create);
}

/// The record as in the tree, deleted rows included.
QStringList treeLines(TwItem *twi)
{
    QStringList lines{lineText(twi)};
    for (int i = 0; i < twi->childCount(); ++i)
        lines += treeLines(static_cast<TwItem *>(twi->child(i)));
    return lines;
}

/// One line of PlainDocument.
struct PlainEntry
{
    QStringList columns; // at least two, like the rows of the tree
    int number = -1;
    PlainEntry *parent = nullptr;
    QList<PlainEntry *> children; // in the tree
    QList<PlainEntry *> list; // of a root: all descendants in file order; else the children
    bool isDeleted = false;

    [[nodiscard]] int level() const
    {
        return columns.at(0).toInt();
    }
    [[nodiscard]] QString text() const
    {
        return columns.join(u' ');
    }
    [[nodiscard]] QString value() const
    {
        return columns.value(2);
    }
    void setValue(const QString &value)
    {
        columns = {columns.at(0), columns.at(1), value};
    }
    void setLine(const QString &line);
    [[nodiscard]] QString tag() const;
    [[nodiscard]] QStringList fullTag() const;
    [[nodiscard]] QString name() const
    {
        return fullTag().join(u'.');
    }
    [[nodiscard]] QString reference() const
    {
        return u" (l.%1)"_s.arg(number);
    }
    [[nodiscard]] bool matches(const QStringList &path) const;
    /// This entry, or those below it at \p path.
    QList<PlainEntry *> at(const QStringList &path);
    /// This entry or the ancestor with exactly this full tag.
    PlainEntry *named(const QStringList &fullTag);
};

void PlainEntry::setLine(const QString &line)
{
    const QString rest = line.mid(2);
    columns = {line.left(1), rest.section(u' ', 0, 0)};
    if (const QString valuePart = rest.section(u' ', 1); !valuePart.isEmpty())
        columns += valuePart;
}

QString PlainEntry::tag() const
{
    static const QRegularExpression rx(uR"(^_?[A-Z]{3,6}$)"_s);
    for (const QString &column : columns) {
        if (rx.match(column).hasMatch())
            return column;
    }
    return u"ERREUR"_s;
}

QStringList PlainEntry::fullTag() const
{
    QStringList tags;
    for (const PlainEntry *entry = this; entry; entry = entry->parent) {
        if (entry->tag() == "ERREUR"_L1)
            break;
        tags.prepend(entry->tag());
    }
    return tags;
}

bool PlainEntry::matches(const QStringList &path) const
{
    const QStringList own = fullTag();
    QString pattern = path.join(u'.');
    if (pattern.contains(u'*') && path.size() == own.size()) {
        QStringList resolved = path;
        for (qsizetype i = 0; i < own.size(); ++i) {
            if (resolved.at(i) == "*"_L1)
                resolved[i] = own.at(i);
        }
        pattern = resolved.join(u'.');
    }
    return pattern == own.join(u'.') || pattern == tag();
}

QList<PlainEntry *> PlainEntry::at(const QStringList &path)
{
    if (matches(path))
        return {this}; // deleted or not: a record is processed to the end
    const int below = level() + 1;
    if (fullTag().size() >= path.size() || below >= path.size())
        return {};

    QList<PlainEntry *> found;
    for (PlainEntry *entry : std::as_const(list)) {
        if (entry->isDeleted || entry->level() != below)
            continue;
        if (path.at(below) != "*"_L1 && path.at(below) != entry->tag())
            continue;
        if (below < path.size() - 1)
            found += entry->at(path);
        else if (entry->matches(path))
            found += entry;
    }
    return found;
}

PlainEntry *PlainEntry::named(const QStringList &wanted)
{
    if (wanted.isEmpty())
        return nullptr;
    PlainEntry *entry = this;
    for (qsizetype climbed = 0; entry && climbed < fullTag().size(); ++climbed) {
        if (entry->fullTag() == wanted)
            return entry;
        entry = entry->parent;
    }
    return nullptr;
}

/// The document and the operation again, in their simplest form.
class PlainDocument
{
public:
    explicit PlainDocument(const QStringList &lines);
    int move(const QString &sources, const QString &destinations, int flags);
    /// The lines that a save would write.
    [[nodiscard]] QStringList lines() const;
    /// The tags that lead to each entry.
    [[nodiscard]] QList<QStringList> paths() const;

    QList<PlainEntry *> roots;
    QStringList journal; // of the last move

private:
    void insertLast(PlainEntry *parent, PlainEntry *entry);
    PlainEntry *createEntry(const QStringList &path, PlainEntry *common);
    void movePair(PlainEntry *source, const QStringList &destination, int flags);

    std::deque<PlainEntry> m_entries;
};

PlainDocument::PlainDocument(const QStringList &lines)
{
    for (const QString &line : lines) {
        PlainEntry *entry = &m_entries.emplace_back();
        entry->number = int(m_entries.size());
        entry->setLine(line);
        if (entry->level() == 0) {
            roots += entry;
            continue;
        }
        PlainEntry *root = roots.constLast();
        entry->parent = root;
        for (PlainEntry *earlier : std::as_const(root->list)) {
            if (earlier->level() == entry->level() - 1)
                entry->parent = earlier;
        }
        root->list += entry;
        entry->parent->children += entry;
        if (entry->parent != root)
            entry->parent->list += entry;
    }
}

QStringList PlainDocument::lines() const
{
    QStringList lines;
    for (const PlainEntry *root : roots) {
        if (root->isDeleted)
            continue;
        lines += root->text();
        for (const PlainEntry *entry : root->list) {
            if (!entry->isDeleted)
                lines += entry->text();
        }
    }
    return lines;
}

QList<QStringList> PlainDocument::paths() const
{
    QList<QStringList> paths;
    for (const PlainEntry &entry : m_entries) {
        QStringList path;
        for (const PlainEntry *step = &entry; step; step = step->parent)
            path.prepend(step->tag());
        paths += path;
    }
    return paths;
}

void PlainDocument::insertLast(PlainEntry *parent, PlainEntry *entry)
{
    entry->parent = parent;
    parent->list.insert(parent->children.size(), entry);
    parent->children += entry;
    if (parent->level() == 0)
        return;

    PlainEntry *root = parent;
    while (root->parent)
        root = root->parent;
    root->list.clear();
    const auto addChildren = [root](const PlainEntry *above, const auto &self) -> void {
        for (PlainEntry *child : above->children) {
            root->list += child;
            self(child, self);
        }
    };
    addChildren(root, addChildren);
}

PlainEntry *PlainDocument::createEntry(const QStringList &path, PlainEntry *common)
{
    const QList<PlainEntry *> parents = common->at(path.first(path.size() - 1));
    if (parents.isEmpty())
        return nullptr;
    PlainEntry *parent = parents.constFirst();
    PlainEntry *entry = &m_entries.emplace_back();
    entry->setLine(QString::number(parent->level() + 1) + u' ' + path.constLast());
    insertLast(parent, entry);
    journal += created(entry->name() + u' ' + entry->text() + " fille de la balise "_L1
                       + parent->name() + u' ' + parent->text() + parent->reference());
    return entry;
}

void PlainDocument::movePair(PlainEntry *source, const QStringList &destination, int flags)
{
    const QStringList one = source->fullTag();
    QStringList two = destination;
    QStringList agreed;
    for (qsizetype i = 0; i < std::min(one.size(), two.size()); ++i) {
        if (two.at(i) == "*"_L1)
            two[i] = one.at(i);
        if (two.at(i) == one.at(i))
            agreed += one.at(i);
    }
    if (one.size() <= 1 && two.size() <= 1)
        agreed.clear();
    PlainEntry *common = source->named(agreed);
    const bool samePath = one.join(u'.') == two.join(u'.');
    if (common && samePath)
        common = common->parent;
    if (!common)
        return;

    PlainEntry *target = nullptr;
    const QList<PlainEntry *> candidates = common->at(two);
    if (samePath && candidates.size() >= 2)
        target = candidates.at(1);
    else if (!samePath && !candidates.isEmpty() && candidates.constFirst() != source)
        target = candidates.constFirst();
    if (!target && (flags & Create))
        target = createEntry(two, common);
    if (!target)
        return;

    if ((flags & Copy) && !source->value().isEmpty()) {
        const QString before = target->text();
        target->setValue(source->value());
        journal += edited(target->name() + u' ' + before + target->reference() + " en "_L1
                          + target->value().trimmed() + source->reference());
    }
    if ((flags & Delete) && !source->isDeleted) {
        source->isDeleted = true;
        journal += deleted(source->name() + u' ' + source->text() + source->reference());
    }
}

int PlainDocument::move(const QString &sources, const QString &destinations, int flags)
{
    journal.clear();
    const QStringList destinationList = destinations.split(u';');
    const QStringList sourceList = sources.split(u';').mid(0, destinationList.size());
    QList<PlainEntry *> live = roots;
    live.removeIf([](const PlainEntry *root) { return root->isDeleted; });
    for (PlainEntry *root : std::as_const(live)) {
        for (qsizetype i = 0; i < sourceList.size(); ++i) {
            const QList<PlainEntry *> found = root->at(sourceList.at(i).split(u'.'));
            for (PlainEntry *source : found)
                movePair(source, destinationList.at(i).split(u'.'), flags);
        }
    }
    const int count = deletionsIn(journal);
    journal = withTotals(journal);
    return count;
}

/// The tree and the list of a record, one line for each entry.
QStringList dump(PlainEntry *entry, int depth = 0)
{
    QStringList lines{QString(depth, u'>') + entry->text() + entry->reference()
                      + (entry->isDeleted ? " deleted"_L1 : ""_L1)};
    for (PlainEntry *child : std::as_const(entry->children))
        lines += dump(child, depth + 1);
    for (const PlainEntry *listed : std::as_const(entry->list))
        lines += "lists "_L1 + listed->text() + listed->reference();
    return lines;
}

QStringList dump(TwItem *entry, int depth = 0)
{
    QStringList lines{QString(depth, u'>') + lineText(entry) + lineReference(entry)
                      + (entry->isToDelete() ? " deleted"_L1 : ""_L1)};
    for (int i = 0; i < entry->childCount(); ++i)
        lines += dump(static_cast<TwItem *>(entry->child(i)), depth + 1);
    const QList<TwItem *> list = entry->getTabTwiChilds(false);
    for (const TwItem *listed : list)
        lines += "lists "_L1 + lineText(listed) + lineReference(listed);
    return lines;
}

template <typename Entry>
QStringList dumpAll(const QList<Entry *> &roots)
{
    QStringList lines;
    for (Entry *root : roots)
        lines += dump(root);
    return lines;
}

template <typename T>
T pick(QRandomGenerator &random, const QList<T> &list)
{
    return list.at(random.bounded(int(list.size())));
}

/// Records with a few tags that recur often, lines without a tag, and lines after one of a lower
/// level than their parent.
QStringList generatedLines(QRandomGenerator &random)
{
    const QStringList heads{u"0 HEAD"_s,      u"0 @I1@ INDI"_s,       u"0 @I2@ INDI"_s,
                            u"0 @X1@ SUBN"_s, u"0 @N1@ NOTE texte"_s, u"0 @F1@ FAM"_s,
                            u"0 @N2@ NOTE"_s};
    const QStringList values{QString(), u" "_s, u" a"_s, u" b"_s, u"  "_s, u" %1 c "_s, u" NOTE"_s};
    QStringList lines;
    for (int records = 2 + random.bounded(3); records > 0; --records) {
        lines += pick(random, heads);
        int deepest = 0;
        for (int size = 2 + random.bounded(9); size > 0; --size) {
            const int level = 1 + random.bounded(std::min(deepest + 1, 4));
            deepest = std::max(deepest, level);
            const QString tag =
                pick(random, QStringList{u"NOTE"_s, u"NOTE"_s, u"BIRT"_s, u"DATE"_s, u"XY"_s});
            QString value = pick(random, values);
            if (value == u' ')
                value.clear(); // a single blank is no value
            lines += QString::number(level) + u' ' + tag + value;
        }
    }
    return lines;
}

QString generatedSource(QRandomGenerator &random, const PlainDocument &plain)
{
    QStringList path = pick(random, plain.paths());
    if (random.bounded(3) == 0)
        path[random.bounded(int(path.size()))] = u"*"_s;
    if (random.bounded(12) == 0)
        path[random.bounded(int(path.size()))] = pick(random, QStringList{QString(), u"FAM"_s});
    return path.join(u'.');
}

QString generatedDestination(QRandomGenerator &random, const PlainDocument &plain,
                             const QString &source)
{
    const QStringList tags{u"NOTE"_s, u"BIRT"_s, u"DATE"_s, u"TEXT"_s, u"*"_s};
    QStringList path = source.split(u'.');
    switch (random.bounded(8)) {
    case 0:
        path.last() = pick(random, tags);
        break;
    case 1:
        path += pick(random, tags);
        break;
    case 2:
        path.removeLast();
        break;
    case 3:
        path = pick(random, plain.paths());
        break;
    case 4:
        path.last() = pick(random, tags);
        path += pick(random, tags);
        break;
    case 5:
        path = path.mid(0, 1) + QStringList{pick(random, tags)};
        break;
    case 6:
        path[random.bounded(int(path.size()))] = pick(random, tags);
        break;
    default:
        break; // duplicates
    }
    if (!path.isEmpty() && random.bounded(4) == 0)
        path[random.bounded(int(path.size()))] = u"*"_s;
    return path.join(u'.');
}

} // namespace

/// Moving, copying and creating tags.
class TstMove : public QObject
{
    Q_OBJECT

private slots:
    void branches_data();
    void branches();
    void values_data();
    void values();
    void stars_data();
    void stars();
    void levels_data();
    void levels();
    void pairs_data();
    void pairs();
    void duplicates_data();
    void duplicates();
    void withoutDestination_data();
    void withoutDestination();
    void flags_data();
    void flags();
    void createdPlace_data();
    void createdPlace();
    void entriesAfterwards();
    void deletedEntriesAreNotSeen();
    void deletedRecordsTakeNoPart();
    void recordDeletedOnTheWay();
    void recordIsDeletedOnce();
    void recordsAreListedBeforeTheyAreChanged();
    void laterRuns();
    void emptyDocument();
    void debugStream();
    void frame();
    void progress_data();
    void progress();
    void barKeepsItsVisibility();
    void agreesWithPlainReading_data();
    void agreesWithPlainReading();

private:
    void addColumns();
    void compareRow();

    AnsweredBoxes m_boxes; // an unanswered one would block the test for ever
};

void TstMove::addColumns()
{
    QTest::addColumn<QString>("lines");
    QTest::addColumn<QString>("sources");
    QTest::addColumn<QString>("destinations");
    QTest::addColumn<int>("flags");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QStringList>("journal"); // without the totals
}

void TstMove::compareRow()
{
    QFETCH(QString, lines);
    QFETCH(QString, sources);
    QFETCH(QString, destinations);
    QFETCH(int, flags);
    QFETCH(QString, expected);
    QFETCH(QStringList, journal);

    Document doc;
    QVERIFY(doc.load(cut(lines)));
    doc.newJournal();
    QCOMPARE(runMove(doc, sources, destinations, flags), deletionsIn(journal));
    QCOMPARE(doc.newJournal(), withTotals(journal));
    QCOMPARE(doc.lines(), cut(expected));
    QCOMPARE(doc.status(), u"%1 balises traitées."_s.arg(deletionsIn(journal)));
    QCOMPARE(m_boxes.texts(), QStringList());
}

void TstMove::branches_data()
{
    addColumns();

    const QString births =
        u"0 @I1@ INDI|1 BIRT|2 NOTE a|2 SOUR s|1 BIRT|2 SOUR t|2 NOTE b|1 BIRT|2 NOTE c"_s;
    const QStringList birthsMoved{
        edited(u"INDI.BIRT.SOUR 2 SOUR s (l.4) en a (l.3)"_s),
        deleted(u"INDI.BIRT.NOTE 2 NOTE a (l.3)"_s),
        edited(u"INDI.BIRT.SOUR 2 SOUR t (l.6) en b (l.7)"_s),
        deleted(u"INDI.BIRT.NOTE 2 NOTE b (l.7)"_s),
    };
    QTest::newRow("each value stays in its own branch")
        << births << u"INDI.BIRT.NOTE"_s << u"INDI.BIRT.SOUR"_s << (Copy | Delete)
        << u"0 @I1@ INDI|1 BIRT|2 SOUR a|1 BIRT|2 SOUR b|1 BIRT|2 NOTE c"_s << birthsMoved;
    QTest::newRow("a branch without destination gets one")
        << births << u"INDI.BIRT.NOTE"_s << u"INDI.BIRT.SOUR"_s << Everything
        << u"0 @I1@ INDI|1 BIRT|2 SOUR a|1 BIRT|2 SOUR b|1 BIRT|2 SOUR c"_s
        << birthsMoved
               + QStringList{
                   created(u"INDI.BIRT.SOUR 2 SOUR fille de la balise INDI.BIRT 1 BIRT (l.8)"_s),
                   edited(u"INDI.BIRT.SOUR 2 SOUR (l.-1) en c (l.9)"_s),
                   deleted(u"INDI.BIRT.NOTE 2 NOTE c (l.9)"_s),
               };
    QTest::newRow("created in the first of two branches")
        << u"0 @I1@ INDI|1 NOTE a|1 BIRT|1 BIRT"_s << u"INDI.NOTE"_s << u"INDI.BIRT.NOTE"_s
        << Everything << u"0 @I1@ INDI|1 BIRT|2 NOTE a|1 BIRT"_s
        << QStringList{
               created(u"INDI.BIRT.NOTE 2 NOTE fille de la balise INDI.BIRT 1 BIRT (l.3)"_s),
               edited(u"INDI.BIRT.NOTE 2 NOTE (l.-1) en a (l.2)"_s),
               deleted(u"INDI.NOTE 1 NOTE a (l.2)"_s),
           };
    QTest::newRow("found in the second branch, not created in the first")
        << u"0 @I1@ INDI|1 NOTE a|1 BIRT|1 BIRT|2 NOTE x"_s << u"INDI.NOTE"_s << u"INDI.BIRT.NOTE"_s
        << Everything << u"0 @I1@ INDI|1 BIRT|1 BIRT|2 NOTE a"_s
        << QStringList{edited(u"INDI.BIRT.NOTE 2 NOTE x (l.5) en a (l.2)"_s),
                       deleted(u"INDI.NOTE 1 NOTE a (l.2)"_s)};
    QTest::newRow("up the record")
        << u"0 @I1@ INDI|1 BIRT|2 SOUR s|3 NOTE a|1 NOTE n"_s << u"INDI.BIRT.SOUR.NOTE"_s
        << u"INDI.NOTE"_s << (Copy | Delete) << u"0 @I1@ INDI|1 BIRT|2 SOUR s|1 NOTE a"_s
        << QStringList{edited(u"INDI.NOTE 1 NOTE n (l.5) en a (l.4)"_s),
                       deleted(u"INDI.BIRT.SOUR.NOTE 3 NOTE a (l.4)"_s)};
    QTest::newRow("from one event into another")
        << u"0 @I1@ INDI|1 BIRT|2 NOTE a|1 DEAT|1 DEAT|2 SOUR s|1 BIRT|2 NOTE b"_s
        << u"INDI.BIRT.NOTE"_s << u"INDI.DEAT.SOUR"_s << Copy
        << u"0 @I1@ INDI|1 BIRT|2 NOTE a|1 DEAT|1 DEAT|2 SOUR b|1 BIRT|2 NOTE b"_s
        << QStringList{edited(u"INDI.DEAT.SOUR 2 SOUR s (l.6) en a (l.3)"_s),
                       edited(u"INDI.DEAT.SOUR 2 SOUR a (l.6) en b (l.8)"_s)};
    QTest::newRow("first of several destinations, before or behind the source")
        << u"0 @I1@ INDI|1 NOTE a|1 TEXT t|1 TEXT u|0 @I2@ INDI|1 TEXT v|1 NOTE b|1 TEXT w"_s
        << u"INDI.NOTE"_s << u"INDI.TEXT"_s << Copy
        << u"0 @I1@ INDI|1 NOTE a|1 TEXT a|1 TEXT u|0 @I2@ INDI|1 TEXT b|1 NOTE b|1 TEXT w"_s
        << QStringList{edited(u"INDI.TEXT 1 TEXT t (l.3) en a (l.2)"_s),
                       edited(u"INDI.TEXT 1 TEXT v (l.6) en b (l.7)"_s)};

    QTest::newRow("parent as destination, with and without a value")
        << u"0 @I1@ INDI|1 BIRT Y|2 NOTE a|2 DATE d|1 BIRT|2 NOTE b"_s << u"INDI.BIRT.NOTE"_s
        << u"INDI.BIRT"_s << Copy << u"0 @I1@ INDI|1 BIRT a|2 NOTE a|2 DATE d|1 BIRT b|2 NOTE b"_s
        << QStringList{edited(u"INDI.BIRT 1 BIRT Y (l.2) en a (l.3)"_s),
                       edited(u"INDI.BIRT 1 BIRT (l.5) en b (l.6)"_s)};
    // The journal quotes the record as it is then, without a tag. The second note no longer finds a
    // record of this kind.
    QTest::newRow("record as destination loses its tag")
        << u"0 @I1@ INDI|1 NOTE a|1 NOTE b"_s << u"INDI.NOTE"_s << u"INDI"_s << Everything
        << u"0 @I1@ a|1 NOTE b"_s
        << QStringList{edited(u" 0 @I1@ INDI (l.1) en a (l.2)"_s),
                       deleted(u"NOTE 1 NOTE a (l.2)"_s)};
    QTest::newRow("record without identifier as destination")
        << u"0 HEAD|1 NOTE a|1 NOTE b"_s << u"HEAD.NOTE"_s << u"HEAD"_s << (Copy | Delete)
        << u"0 HEAD b"_s
        << QStringList{
               edited(u"HEAD 0 HEAD (l.1) en a (l.2)"_s), deleted(u"HEAD.NOTE 1 NOTE a (l.2)"_s),
               edited(u"HEAD 0 HEAD a (l.1) en b (l.3)"_s), deleted(u"HEAD.NOTE 1 NOTE b (l.3)"_s)};
    QTest::newRow("lone star as destination is the record")
        << u"0 HEAD|1 NOTE a|0 @F1@ FAM|1 NOTE ABC|1 NOTE b"_s << u"*.NOTE"_s << u"*"_s << Copy
        << u"0 HEAD a|1 NOTE a|0 @F1@ b|1 NOTE ABC|1 NOTE b"_s
        << QStringList{edited(u"HEAD 0 HEAD (l.1) en a (l.2)"_s),
                       edited(u"ABC 0 @F1@ FAM (l.3) en ABC (l.4)"_s),
                       edited(u" 0 @F1@ ABC (l.3) en b (l.5)"_s)};
    QTest::newRow("below the source, found or created")
        << u"0 @I1@ INDI|1 BIRT Y|2 NOTE n|1 BIRT Z"_s << u"INDI.BIRT"_s << u"INDI.BIRT.NOTE"_s
        << Everything << u"0 @I1@ INDI|2 NOTE Y|2 NOTE Z"_s
        << QStringList{
               edited(u"INDI.BIRT.NOTE 2 NOTE n (l.3) en Y (l.2)"_s),
               deleted(u"INDI.BIRT 1 BIRT Y (l.2)"_s),
               created(u"INDI.BIRT.NOTE 2 NOTE fille de la balise INDI.BIRT 1 BIRT Z (l.4)"_s),
               edited(u"INDI.BIRT.NOTE 2 NOTE (l.-1) en Z (l.4)"_s),
               deleted(u"INDI.BIRT 1 BIRT Z (l.4)"_s),
           };
    QTest::newRow("children of a deleted source stay")
        << u"0 @I1@ INDI|1 NOTE a|2 CONT b|2 SOUR s|3 PAGE p|1 TEXT t|2 CONT u"_s << u"INDI.NOTE"_s
        << u"INDI.TEXT"_s << (Copy | Delete)
        << u"0 @I1@ INDI|2 CONT b|2 SOUR s|3 PAGE p|1 TEXT a|2 CONT u"_s
        << QStringList{edited(u"INDI.TEXT 1 TEXT t (l.6) en a (l.2)"_s),
                       deleted(u"INDI.NOTE 1 NOTE a (l.2)"_s)};
}

void TstMove::branches()
{
    compareRow();
}

void TstMove::values_data()
{
    addColumns();

    QTest::newRow("value of one blank")
        << u"0 @I1@ INDI|1 NOTE  |1 TEXT t"_s << u"INDI.NOTE"_s << u"INDI.TEXT"_s << (Copy | Delete)
        << u"0 @I1@ INDI|1 TEXT  "_s
        << QStringList{edited(u"INDI.TEXT 1 TEXT t (l.3) en  (l.2)"_s),
                       deleted(u"INDI.NOTE 1 NOTE   (l.2)"_s)};
    QTest::newRow("blanks around a value, in the journal trimmed")
        << u"0 @I1@ INDI|1 NOTE   b  |1 TEXT t"_s << u"INDI.NOTE"_s << u"INDI.TEXT"_s
        << (Copy | Delete) << u"0 @I1@ INDI|1 TEXT   b  "_s
        << QStringList{edited(u"INDI.TEXT 1 TEXT t (l.3) en b (l.2)"_s),
                       deleted(u"INDI.NOTE 1 NOTE   b   (l.2)"_s)};
    QTest::newRow("placeholders in values are text")
        << u"0 @I1@ INDI|1 NOTE %2 %L1 %5|1 TEXT %1 %3 %n|1 BIRT %1|2 NOTE %4"_s
        << u"INDI.NOTE;INDI.BIRT.NOTE"_s << u"INDI.TEXT;INDI.BIRT.TEXT"_s << Everything
        << u"0 @I1@ INDI|1 TEXT %2 %L1 %5|1 BIRT %1|2 TEXT %4"_s
        << QStringList{
               edited(u"INDI.TEXT 1 TEXT %1 %3 %n (l.3) en %2 %L1 %5 (l.2)"_s),
               deleted(u"INDI.NOTE 1 NOTE %2 %L1 %5 (l.2)"_s),
               created(u"INDI.BIRT.TEXT 2 TEXT fille de la balise INDI.BIRT 1 BIRT %1 (l.4)"_s),
               edited(u"INDI.BIRT.TEXT 2 TEXT (l.-1) en %4 (l.5)"_s),
               deleted(u"INDI.BIRT.NOTE 2 NOTE %4 (l.5)"_s),
           };
    QTest::newRow("tag in the third column is overwritten")
        << u"0 @I1@ INDI|1 NOTE a|1 XY TEXT"_s << u"INDI.NOTE"_s << u"INDI.TEXT"_s << Copy
        << u"0 @I1@ INDI|1 NOTE a|1 XY a"_s
        << QStringList{edited(u" 1 XY TEXT (l.3) en a (l.2)"_s)};
    QTest::newRow("tag in the third column is a value")
        << u"0 @I1@ INDI|1 XY TEXT|1 NOTE n"_s << u"INDI.TEXT"_s << u"INDI.NOTE"_s
        << (Copy | Delete) << u"0 @I1@ INDI|1 NOTE TEXT"_s
        << QStringList{edited(u"INDI.NOTE 1 NOTE n (l.3) en TEXT (l.2)"_s),
                       deleted(u"INDI.TEXT 1 XY TEXT (l.2)"_s)};
    QTest::newRow("a branch that loses its tag is lost for the sources behind")
        << u"0 @I1@ INDI|1 XY ABC|2 NOTE a|2 NOTE b"_s << u"INDI.ABC.NOTE"_s << u"INDI.ABC"_s
        << Everything << u"0 @I1@ INDI|1 XY a|2 NOTE b"_s
        << QStringList{edited(u" 1 XY ABC (l.2) en a (l.3)"_s), deleted(u"NOTE 2 NOTE a (l.3)"_s)};
}

void TstMove::values()
{
    compareRow();
}

void TstMove::stars_data()
{
    addColumns();

    QTest::newRow("stars in both paths")
        << u"0 @I1@ INDI|1 BIRT|2 NOTE a|2 SOUR s|1 DEAT|2 SOUR t|2 NOTE b|1 OCCU|2 NOTE c|"
           u"1 NOTE d|1 _FA1|2 NOTE e|2 SOUR u"_s
        << u"INDI.*.NOTE"_s << u"INDI.*.SOUR"_s << Copy
        << u"0 @I1@ INDI|1 BIRT|2 NOTE a|2 SOUR a|1 DEAT|2 SOUR b|2 NOTE b|1 OCCU|2 NOTE c|"
           u"1 NOTE d|1 _FA1|2 NOTE e|2 SOUR u"_s
        << QStringList{edited(u"INDI.BIRT.SOUR 2 SOUR s (l.4) en a (l.3)"_s),
                       edited(u"INDI.DEAT.SOUR 2 SOUR t (l.6) en b (l.7)"_s)};
    QTest::newRow("star for the record, of every kind")
        << u"0 HEAD|1 NOTE a|1 TEXT t|0 @N1@ NOTE|1 NOTE b|1 TEXT u|0 @X1@ SUBN|1 NOTE c|1 TEXT v|"
           u"0 @U1@ SUBM|1 NOTE d|1 TEXT w|0 @N2@ NOTE texte|1 NOTE e|1 TEXT x"_s
        << u"*.NOTE"_s << u"*.TEXT"_s << (Copy | Delete)
        << u"0 HEAD|1 TEXT a|0 @N1@ NOTE|1 TEXT b|0 @X1@ SUBN|1 TEXT c|0 @U1@ SUBM|1 TEXT d|"
           u"0 @N2@ NOTE texte|1 NOTE e|1 TEXT x"_s
        << QStringList{edited(u"HEAD.TEXT 1 TEXT t (l.3) en a (l.2)"_s),
                       deleted(u"HEAD.NOTE 1 NOTE a (l.2)"_s),
                       edited(u"NOTE.TEXT 1 TEXT u (l.6) en b (l.5)"_s),
                       deleted(u"NOTE.NOTE 1 NOTE b (l.5)"_s),
                       edited(u"SUBN.TEXT 1 TEXT v (l.9) en c (l.8)"_s),
                       deleted(u"SUBN.NOTE 1 NOTE c (l.8)"_s),
                       edited(u"SUBM.TEXT 1 TEXT w (l.12) en d (l.11)"_s),
                       deleted(u"SUBM.NOTE 1 NOTE d (l.11)"_s)};
    QTest::newRow("lone star as source is the record")
        << u"0 HEAD|1 NOTE a|0 @I1@ INDI|1 NOTE b|0 @N1@ NOTE texte|1 NOTE c"_s << u"*"_s
        << u"*.NOTE"_s << Copy
        << u"0 HEAD|1 NOTE a|0 @I1@ INDI|1 NOTE INDI|0 @N1@ NOTE texte|1 NOTE c"_s
        << QStringList{edited(u"INDI.NOTE 1 NOTE b (l.4) en INDI (l.3)"_s)};
    QTest::newRow("source that ends in a star takes each child, the destination too")
        << u"0 @I1@ INDI|1 BIRT|2 DATE d|2 PLAC p|2 NOTE n"_s << u"INDI.BIRT.*"_s
        << u"INDI.BIRT.NOTE"_s << Everything << u"0 @I1@ INDI|1 BIRT|2 NOTE p"_s
        << QStringList{
               edited(u"INDI.BIRT.NOTE 2 NOTE n (l.5) en d (l.3)"_s),
               deleted(u"INDI.BIRT.DATE 2 DATE d (l.3)"_s),
               edited(u"INDI.BIRT.NOTE 2 NOTE d (l.5) en p (l.4)"_s),
               deleted(u"INDI.BIRT.PLAC 2 PLAC p (l.4)"_s),
               created(u"INDI.BIRT.NOTE 2 NOTE fille de la balise INDI.BIRT 1 BIRT (l.2)"_s),
               edited(u"INDI.BIRT.NOTE 2 NOTE (l.-1) en p (l.5)"_s),
               deleted(u"INDI.BIRT.NOTE 2 NOTE p (l.5)"_s),
           };
    QTest::newRow("what a pair creates is no source of its own position")
        << u"0 @I1@ INDI|1 NOTE a|1 _FA1 x|1 DATE d"_s << u"INDI.*"_s << u"INDI.TEXT"_s
        << (Copy | Create) << u"0 @I1@ INDI|1 NOTE a|1 _FA1 x|1 DATE d|1 TEXT d"_s
        << QStringList{created(u"INDI.TEXT 1 TEXT fille de la balise INDI 0 @I1@ INDI (l.1)"_s),
                       edited(u"INDI.TEXT 1 TEXT (l.-1) en a (l.2)"_s),
                       edited(u"INDI.TEXT 1 TEXT a (l.-1) en d (l.4)"_s)};
    QTest::newRow("star of the destination takes the component of the source")
        << u"0 @I1@ INDI|1 BIRT|2 TEXT t|1 NOTE a"_s << u"INDI.NOTE"_s << u"INDI.*.TEXT"_s
        << Everything << u"0 @I1@ INDI|1 BIRT|2 TEXT t|2 TEXT a"_s
        << QStringList{
               created(u"INDI.NOTE.TEXT 2 TEXT fille de la balise INDI.NOTE 1 NOTE a (l.4)"_s),
               edited(u"INDI.NOTE.TEXT 2 TEXT (l.-1) en a (l.4)"_s),
               deleted(u"INDI.NOTE 1 NOTE a (l.4)"_s),
           };
    QTest::newRow("star at the end of a shorter destination is the parent")
        << u"0 @I1@ INDI|1 BIRT|1 DEAT|2 NOTE a"_s << u"INDI.DEAT.NOTE"_s << u"INDI.*"_s << Copy
        << u"0 @I1@ INDI|1 BIRT|1 DEAT a|2 NOTE a"_s
        << QStringList{edited(u"INDI.DEAT 1 DEAT (l.3) en a (l.4)"_s)};
    QTest::newRow("star beyond the source is the first child of any tag")
        << u"0 @I1@ INDI|1 NOTE a|2 _FA1 x|2 SOUR s|2 DATE d|1 NOTE b"_s << u"INDI.NOTE"_s
        << u"INDI.NOTE.*"_s << Copy << u"0 @I1@ INDI|1 NOTE a|2 _FA1 x|2 SOUR a|2 DATE d|1 NOTE b"_s
        << QStringList{edited(u"INDI.NOTE.SOUR 2 SOUR s (l.4) en a (l.2)"_s)};
    QTest::newRow("star beyond the source is created as it stands")
        << u"0 @I1@ INDI|1 NOTE b"_s << u"INDI.NOTE"_s << u"INDI.NOTE.*"_s << (Copy | Create)
        << u"0 @I1@ INDI|1 NOTE b|2 * b"_s
        << QStringList{created(u" 2 * fille de la balise INDI.NOTE 1 NOTE b (l.2)"_s),
                       edited(u" 2 * (l.-1) en b (l.2)"_s)};
    QTest::newRow("star beyond the source, with a component behind")
        << u"0 @I1@ INDI|1 NOTE a|2 SOUR s|2 DATA t|3 DATE d"_s << u"INDI.NOTE"_s
        << u"INDI.NOTE.*.DATE"_s << (Copy | Create)
        << u"0 @I1@ INDI|1 NOTE a|2 SOUR s|2 DATA t|3 DATE a"_s
        << QStringList{edited(u"INDI.NOTE.DATA.DATE 3 DATE d (l.5) en a (l.2)"_s)};
    QTest::newRow("star beyond the source, in the parent's place")
        << u"0 @I1@ INDI|1 NOTE a|2 SOUR s|2 DATA t"_s << u"INDI.NOTE"_s << u"INDI.NOTE.*.DATE"_s
        << (Copy | Create) << u"0 @I1@ INDI|1 NOTE a|2 SOUR s|3 DATE a|2 DATA t"_s
        << QStringList{
               created(u"INDI.NOTE.SOUR.DATE 3 DATE fille de la balise INDI.NOTE.SOUR 2 SOUR s "
                       u"(l.3)"_s),
               edited(u"INDI.NOTE.SOUR.DATE 3 DATE (l.-1) en a (l.2)"_s),
           };
}

void TstMove::stars()
{
    compareRow();
}

void TstMove::levels_data()
{
    addColumns();

    // A lone level is written with the blank before its empty tag.
    QTest::newRow("empty last component is created as an empty tag")
        << u"0 @I1@ INDI|1 NOTE|1 NOTE a"_s << u"INDI.NOTE"_s << u"INDI."_s << (Copy | Create)
        << u"0 @I1@ INDI|1 NOTE|1 NOTE a|1 |1  a"_s
        << QStringList{created(u" 1  fille de la balise INDI 0 @I1@ INDI (l.1)"_s),
                       created(u" 1  fille de la balise INDI 0 @I1@ INDI (l.1)"_s),
                       edited(u" 1  (l.-1) en a (l.3)"_s)};
    const QString nine =
        u"0 @I1@ INDI|1 NOTE|2 NOTE|3 NOTE|4 NOTE|5 NOTE|6 NOTE|7 NOTE|8 NOTE|9 NOTE z"_s;
    const QString ninePath = u"INDI.NOTE.NOTE.NOTE.NOTE.NOTE.NOTE.NOTE.NOTE.NOTE"_s;
    // The second digit is cut off in place of the blank after the level, and the tag becomes the
    // value.
    QTest::newRow("level of two digits")
        << nine << ninePath << ninePath + u".TEXT"_s << Create << nine + u"|1  TEXT"_s
        << QStringList{created(ninePath + u".TEXT 1  TEXT fille de la balise "_s + ninePath
                               + u" 9 NOTE z (l.10)"_s)};
    QTest::newRow("level of two digits, with a value")
        << nine << ninePath << ninePath + u".TEXT"_s << (Copy | Create) << nine + u"|1  z"_s
        << QStringList{created(ninePath + u".TEXT 1  TEXT fille de la balise "_s + ninePath
                               + u" 9 NOTE z (l.10)"_s),
                       edited(u" 1  TEXT (l.-1) en z (l.10)"_s)};
}

void TstMove::levels()
{
    compareRow();
}

void TstMove::pairs_data()
{
    addColumns();

    const QString kinds = u"0 @I1@ INDI|1 NOTE a|1 TEXT t|0 @F1@ FAM|1 NOTE b|1 TEXT u|"
                          u"0 @I2@ INDI|1 NOTE c|1 TEXT v"_s;
    QTest::newRow("each pair for its kind of record")
        << kinds << u"FAM.NOTE;INDI.NOTE"_s << u"FAM.TEXT;INDI.TEXT"_s << (Copy | Delete)
        << u"0 @I1@ INDI|1 TEXT a|0 @F1@ FAM|1 TEXT b|0 @I2@ INDI|1 TEXT c"_s
        << QStringList{edited(u"INDI.TEXT 1 TEXT t (l.3) en a (l.2)"_s),
                       deleted(u"INDI.NOTE 1 NOTE a (l.2)"_s),
                       edited(u"FAM.TEXT 1 TEXT u (l.6) en b (l.5)"_s),
                       deleted(u"FAM.NOTE 1 NOTE b (l.5)"_s),
                       edited(u"INDI.TEXT 1 TEXT v (l.9) en c (l.8)"_s),
                       deleted(u"INDI.NOTE 1 NOTE c (l.8)"_s)};
    QTest::newRow("record by record, position by position, source by source")
        << u"0 @I1@ INDI|1 NOTE a|1 TEXT b|1 NOTE c|1 DATE d|0 @I2@ INDI|1 NOTE e|1 TEXT f|"
           u"1 DATE g"_s
        << u"INDI.TEXT;INDI.NOTE"_s << u"INDI.DATE;INDI.DATE"_s << Copy
        << u"0 @I1@ INDI|1 NOTE a|1 TEXT b|1 NOTE c|1 DATE c|0 @I2@ INDI|1 NOTE e|1 TEXT f|"
           u"1 DATE e"_s
        << QStringList{edited(u"INDI.DATE 1 DATE d (l.5) en b (l.3)"_s),
                       edited(u"INDI.DATE 1 DATE b (l.5) en a (l.2)"_s),
                       edited(u"INDI.DATE 1 DATE a (l.5) en c (l.4)"_s),
                       edited(u"INDI.DATE 1 DATE g (l.9) en f (l.8)"_s),
                       edited(u"INDI.DATE 1 DATE f (l.9) en e (l.7)"_s)};
    QTest::newRow("a later position sees what an earlier one created")
        << u"0 @I1@ INDI|1 NOTE a"_s << u"INDI.NOTE;INDI.TEXT"_s << u"INDI.TEXT;INDI.TITL"_s
        << Everything << u"0 @I1@ INDI|1 TITL a"_s
        << QStringList{created(u"INDI.TEXT 1 TEXT fille de la balise INDI 0 @I1@ INDI (l.1)"_s),
                       edited(u"INDI.TEXT 1 TEXT (l.-1) en a (l.2)"_s),
                       deleted(u"INDI.NOTE 1 NOTE a (l.2)"_s),
                       created(u"INDI.TITL 1 TITL fille de la balise INDI 0 @I1@ INDI (l.1)"_s),
                       edited(u"INDI.TITL 1 TITL (l.-1) en a (l.-1)"_s),
                       deleted(u"INDI.TEXT 1 TEXT a (l.-1)"_s)};
    QTest::newRow("a later position does not see what an earlier one deleted")
        << u"0 @I1@ INDI|1 NOTE a|1 TEXT t|1 TITL u"_s << u"INDI.NOTE;INDI.NOTE;INDI.TITL"_s
        << u"INDI.TEXT;INDI.TITL;INDI.NOTE"_s << (Copy | Delete)
        << u"0 @I1@ INDI|1 TEXT a|1 TITL u"_s
        << QStringList{edited(u"INDI.TEXT 1 TEXT t (l.3) en a (l.2)"_s),
                       deleted(u"INDI.NOTE 1 NOTE a (l.2)"_s)};
    const QString three = u"0 @I1@ INDI|1 NOTE a|1 TEXT t|1 DATE d"_s;
    const QStringList moved{edited(u"INDI.TEXT 1 TEXT t (l.3) en a (l.2)"_s),
                            deleted(u"INDI.NOTE 1 NOTE a (l.2)"_s)};
    QTest::newRow("sources without a partner are passed over")
        << three << u"INDI.NOTE;INDI.DATE;INDI.TEXT"_s << u"INDI.TEXT"_s << Everything
        << u"0 @I1@ INDI|1 TEXT a|1 DATE d"_s << moved;
    QTest::newRow("destinations without a partner are passed over")
        << three << u"INDI.NOTE"_s << u"INDI.TEXT;INDI.DATE;INDI.TITL"_s << Everything
        << u"0 @I1@ INDI|1 TEXT a|1 DATE d"_s << moved;
    QTest::newRow("empty patterns keep their position")
        << three << u";INDI.NOTE;"_s << u";INDI.TEXT;"_s << Everything
        << u"0 @I1@ INDI|1 TEXT a|1 DATE d"_s << moved;
    QTest::newRow("pattern with a blank in front keeps its position")
        << three << u" INDI.DATE;INDI.NOTE"_s << u"INDI.TEXT;INDI.TEXT"_s << Everything
        << u"0 @I1@ INDI|1 TEXT a|1 DATE d"_s << moved;
}

void TstMove::pairs()
{
    compareRow();
}

void TstMove::duplicates_data()
{
    addColumns();

    const auto row = [](const char *name, const QString &lines, int flags, const QString &expected,
                        const QStringList &journal, const QString &sources = u"INDI.NAME"_s,
                        const QString &destinations = u"INDI.NAME"_s) {
        QTest::newRow(name) << lines << sources << destinations << flags << expected << journal;
    };
    const QString three = u"0 @I1@ INDI|1 NAME a|1 NAME b|1 SEX M|1 NAME c"_s;
    const QString newName =
        created(u"INDI.NAME 1 NAME fille de la balise INDI 0 @I1@ INDI (l.1)"_s);
    const QStringList folded{
        edited(u"INDI.NAME 1 NAME b (l.3) en a (l.2)"_s), deleted(u"INDI.NAME 1 NAME a (l.2)"_s),
        edited(u"INDI.NAME 1 NAME c (l.5) en a (l.3)"_s), deleted(u"INDI.NAME 1 NAME a (l.3)"_s)};
    const QStringList copied{edited(u"INDI.NAME 1 NAME b (l.3) en a (l.2)"_s),
                             edited(u"INDI.NAME 1 NAME a (l.3) en a (l.3)"_s),
                             edited(u"INDI.NAME 1 NAME a (l.3) en c (l.5)"_s)};
    row("last entry with the first value", three, Copy | Delete, u"0 @I1@ INDI|1 SEX M|1 NAME a"_s,
        folded);
    row("second entry with the last value", three, Copy,
        u"0 @I1@ INDI|1 NAME a|1 NAME c|1 SEX M|1 NAME c"_s, copied);
    row("second entry with the last value, nothing to create", three, Copy | Create,
        u"0 @I1@ INDI|1 NAME a|1 NAME c|1 SEX M|1 NAME c"_s, copied);
    row("last entry with its own value", three, Delete, u"0 @I1@ INDI|1 SEX M|1 NAME c"_s,
        {deleted(u"INDI.NAME 1 NAME a (l.2)"_s), deleted(u"INDI.NAME 1 NAME b (l.3)"_s)});
    row("last entry gives way to a new one", three, Everything, u"0 @I1@ INDI|1 SEX M|1 NAME a"_s,
        folded
            + QStringList{newName, edited(u"INDI.NAME 1 NAME (l.-1) en a (l.5)"_s),
                          deleted(u"INDI.NAME 1 NAME a (l.5)"_s)});
    row("nothing asked for", three, 0, three, {});
    row("first entry without a value", u"0 @I1@ INDI|1 NAME|1 NAME b"_s, Copy | Delete,
        u"0 @I1@ INDI|1 NAME b"_s, {deleted(u"INDI.NAME 1 NAME (l.2)"_s)});

    const QString one = u"0 @I1@ INDI|1 NAME a"_s;
    row("no duplicate", one, Copy | Delete, one, {});
    row("no duplicate, none in another record either",
        u"0 @I1@ INDI|1 NAME a|0 @I2@ INDI|1 NAME b"_s, Copy | Delete,
        u"0 @I1@ INDI|1 NAME a|0 @I2@ INDI|1 NAME b"_s, {});
    row("empty duplicate created", one, Create, u"0 @I1@ INDI|1 NAME a|1 NAME"_s, {newName});
    row("duplicate created with the value", one, Copy | Create, u"0 @I1@ INDI|1 NAME a|1 NAME a"_s,
        {newName, edited(u"INDI.NAME 1 NAME (l.-1) en a (l.2)"_s)});
    row("empty duplicate in place of the entry", one, Delete | Create, u"0 @I1@ INDI|1 NAME"_s,
        {newName, deleted(u"INDI.NAME 1 NAME a (l.2)"_s)});
    row("duplicate of a value that is not there", u"0 @I1@ INDI|1 NAME"_s, Copy | Create,
        u"0 @I1@ INDI|1 NAME|1 NAME"_s, {newName});

    const QString notes =
        u"0 @I1@ INDI|1 BIRT|2 NOTE a|3 SOUR s|2 DATE d|2 NOTE b|1 BIRT|2 NOTE c"_s;
    const QStringList notesFolded{edited(u"INDI.BIRT.NOTE 2 NOTE b (l.6) en a (l.3)"_s),
                                  deleted(u"INDI.BIRT.NOTE 2 NOTE a (l.3)"_s)};
    const QString notesLeft = u"0 @I1@ INDI|1 BIRT|3 SOUR s|2 DATE d|2 NOTE a|1 BIRT|2 NOTE c"_s;
    const QString path = u"INDI.BIRT.NOTE"_s;
    row("below one parent only", notes, Copy | Delete, notesLeft, notesFolded, path, path);
    row("path written with stars", notes, Copy | Delete, notesLeft, notesFolded, path,
        u"*.*.NOTE"_s);
    row("each tag with its like", notes, Copy | Delete, notesLeft, notesFolded, u"INDI.BIRT.*"_s,
        u"INDI.*.*"_s);
    row("created below the parent of each", notes, Copy | Delete | Create,
        u"0 @I1@ INDI|1 BIRT|3 SOUR s|2 DATE d|2 NOTE a|1 BIRT|2 NOTE c"_s,
        notesFolded
            + QStringList{
                created(path + u" 2 NOTE fille de la balise INDI.BIRT 1 BIRT (l.2)"_s),
                edited(path + u" 2 NOTE (l.-1) en a (l.6)"_s),
                deleted(path + u" 2 NOTE a (l.6)"_s),
                created(path + u" 2 NOTE fille de la balise INDI.BIRT 1 BIRT (l.7)"_s),
                edited(path + u" 2 NOTE (l.-1) en c (l.8)"_s),
                deleted(path + u" 2 NOTE c (l.8)"_s),
            },
        path, path);
    row("record of unknown kind", u"0 @X1@ SUBN|1 NAME a|1 NAME b"_s, Copy | Delete,
        u"0 @X1@ SUBN|1 NAME a"_s,
        {edited(u"SUBN.NAME 1 NAME b (l.3) en a (l.2)"_s), deleted(u"SUBN.NAME 1 NAME a (l.2)"_s)},
        u"SUBN.NAME"_s, u"SUBN.NAME"_s);
}

void TstMove::duplicates()
{
    compareRow();
}

void TstMove::withoutDestination_data()
{
    QTest::addColumn<QString>("sources");
    QTest::addColumn<QString>("destinations");

    const auto row = [](const char *name, const QString &sources, const QString &destinations) {
        QTest::newRow(name) << sources << destinations;
    };
    row("bare tag as source", u"NAME"_s, u"INDI.TITL"_s);
    row("bare tag as destination", u"INDI.NOTE"_s, u"NAME"_s);
    row("bare tag of the source as destination", u"INDI.NOTE"_s, u"NOTE"_s);
    row("difference in front of an agreement", u"INDI.BIRT.DATE"_s, u"INDI.DEAT.DATE"_s);
    row("other kind of record, tag agrees", u"INDI.NOTE"_s, u"FAM.NOTE"_s);
    row("other kind of record, tag differs", u"INDI.NOTE"_s, u"FAM.NAME"_s);
    row("agreement names another branch", u"INDI.NOTE.NOTE"_s, u"INDI.SOUR.NOTE"_s);
    row("record to itself", u"INDI"_s, u"INDI"_s);
    row("record to another", u"INDI"_s, u"FAM"_s);
    row("every record to itself", u"*"_s, u"*"_s);
    row("every record to one kind", u"*"_s, u"INDI"_s);
    row("no parent for the new entry", u"INDI.NOTE"_s, u"INDI.CHR.NOTE"_s);
    row("no parent on the way", u"INDI.BIRT.NOTE"_s, u"INDI.BIRT.PLAC.NOTE.TEXT"_s);
    row("empty parent on the way", u"INDI.NOTE"_s, u"INDI..NAME"_s);
    row("parent in another kind of record", u"FAM.NOTE"_s, u"FAM.BIRT.NOTE"_s);
    row("no patterns", QString(), QString());
    row("no source", QString(), u"INDI.NAME"_s);
    row("no destination", u"INDI.NOTE"_s, QString());
    row("empty patterns", u";"_s, u";"_s);
    row("source beyond the destinations", u"INDI.TITL;INDI.NOTE"_s, u"INDI.NAME"_s);
    row("empty components", u"."_s, u"."_s);
    row("empty last component", u"INDI."_s, u"INDI.NAME"_s);
    row("empty first component", u".NOTE"_s, u".NAME"_s);
    row("first component of no record here", u"SOUR.NOTE"_s, u"SOUR.NAME"_s);
    row("tail of a full tag", u"BIRT.DATE"_s, u"BIRT.NOTE"_s);
    row("lower case", u"indi.note"_s, u"INDI.NAME"_s);
    row("blank in front of the source", u" INDI.NOTE"_s, u"INDI.NAME"_s);
    row("blank in front of the destination", u"INDI.NOTE"_s, u" INDI.NAME"_s);
    row("star as a part of a component", u"INDI.NO*"_s, u"INDI.NAME"_s);
    row("star too many", u"INDI.NOTE.NOTE.*"_s, u"INDI.NAME"_s);
    row("entries without a tag", u"ERREUR"_s, u"ERREUR.TEXT"_s);
    row("entries without a tag, to themselves", u"ERREUR"_s, u"ERREUR"_s);
    row("entries below one without a tag", u"NOTE.CONT"_s, u"NOTE.TEXT"_s);
    row("other separator", u"INDI.NOTE,INDI.NAME"_s, u"INDI.NAME,INDI.NOTE"_s);
}

void TstMove::withoutDestination()
{
    QFETCH(QString, sources);
    QFETCH(QString, destinations);

    const QStringList lines =
        cut(u"0 HEAD|1 NOTE h|0 @I1@ INDI|1 NAME n|1 NOTE a|2 NOTE b|1 SOUR s|2 NOTE t|1 BIRT|"
            u"2 DATE d|2 NOTE c|1 DEAT|2 DATE e|0 @F1@ FAM|1 NOTE f|1 NAME g|"
            u"0 @N1@ NOTE texte|1 CONT suite"_s);
    Document doc;
    QVERIFY(doc.load(lines));
    const QStringList before = dumpAll(doc.gedcom.getTabTwItemsRoot());
    doc.newJournal();
    QCOMPARE(runMove(doc, sources, destinations, Everything), 0);
    QCOMPARE(doc.newJournal(), QStringList({u"INFO : Création de 0 balises terminée."_s,
                                            u"INFO : Edition de 0 balises terminée."_s,
                                            u"INFO : Suppression de 0 balises terminée."_s}));
    QCOMPARE(doc.lines(), lines);
    QCOMPARE(dumpAll(doc.gedcom.getTabTwItemsRoot()), before);
    QCOMPARE(doc.status(), u"0 balises traitées."_s);
    QCOMPARE(m_boxes.texts(), QStringList());
}

void TstMove::flags_data()
{
    QTest::addColumn<int>("flags");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QStringList>("journal"); // without the totals

    // With and without a destination, for a source with a value and for one without.
    const QString copied = edited(u"INDI.TEXT 1 TEXT t (l.3) en a (l.2)"_s);
    const QString noteA = deleted(u"INDI.NOTE 1 NOTE a (l.2)"_s);
    const QString newB = created(u"INDI.TEXT 1 TEXT fille de la balise INDI 0 @I2@ INDI (l.4)"_s);
    const QString copiedB = edited(u"INDI.TEXT 1 TEXT (l.-1) en b (l.5)"_s);
    const QString noteB = deleted(u"INDI.NOTE 1 NOTE b (l.5)"_s);
    const QString noteC = deleted(u"INDI.NOTE 1 NOTE (l.7)"_s);
    const QString newD = created(u"INDI.TEXT 1 TEXT fille de la balise INDI 0 @I4@ INDI (l.9)"_s);
    const QString noteD = deleted(u"INDI.NOTE 1 NOTE (l.10)"_s);

    QTest::newRow("none") << 0
                          << u"0 @I1@ INDI|1 NOTE a|1 TEXT t|0 @I2@ INDI|1 NOTE b|"
                             u"0 @I3@ INDI|1 NOTE|1 TEXT u|0 @I4@ INDI|1 NOTE"_s
                          << QStringList();
    QTest::newRow("copy") << Copy
                          << u"0 @I1@ INDI|1 NOTE a|1 TEXT a|0 @I2@ INDI|1 NOTE b|"
                             u"0 @I3@ INDI|1 NOTE|1 TEXT u|0 @I4@ INDI|1 NOTE"_s
                          << QStringList{copied};
    QTest::newRow("delete") << Delete
                            << u"0 @I1@ INDI|1 TEXT t|0 @I2@ INDI|1 NOTE b|"
                               u"0 @I3@ INDI|1 TEXT u|0 @I4@ INDI|1 NOTE"_s
                            << QStringList{noteA, noteC};
    QTest::newRow("copy, delete") << (Copy | Delete)
                                  << u"0 @I1@ INDI|1 TEXT a|0 @I2@ INDI|1 NOTE b|"
                                     u"0 @I3@ INDI|1 TEXT u|0 @I4@ INDI|1 NOTE"_s
                                  << QStringList{copied, noteA, noteC};
    QTest::newRow("create") << Create
                            << u"0 @I1@ INDI|1 NOTE a|1 TEXT t|0 @I2@ INDI|1 NOTE b|1 TEXT|"
                               u"0 @I3@ INDI|1 NOTE|1 TEXT u|0 @I4@ INDI|1 NOTE|1 TEXT"_s
                            << QStringList{newB, newD};
    QTest::newRow("create, copy") << (Create | Copy)
                                  << u"0 @I1@ INDI|1 NOTE a|1 TEXT a|0 @I2@ INDI|1 NOTE b|1 TEXT b|"
                                     u"0 @I3@ INDI|1 NOTE|1 TEXT u|0 @I4@ INDI|1 NOTE|1 TEXT"_s
                                  << QStringList{copied, newB, copiedB, newD};
    QTest::newRow("create, delete") << (Create | Delete)
                                    << u"0 @I1@ INDI|1 TEXT t|0 @I2@ INDI|1 TEXT|"
                                       u"0 @I3@ INDI|1 TEXT u|0 @I4@ INDI|1 TEXT"_s
                                    << QStringList{noteA, newB, noteB, noteC, newD, noteD};
    QTest::newRow("all") << Everything
                         << u"0 @I1@ INDI|1 TEXT a|0 @I2@ INDI|1 TEXT b|"
                            u"0 @I3@ INDI|1 TEXT u|0 @I4@ INDI|1 TEXT"_s
                         << QStringList{copied, noteA, newB, copiedB, noteB, noteC, newD, noteD};
}

void TstMove::flags()
{
    QFETCH(int, flags);
    QFETCH(QString, expected);
    QFETCH(QStringList, journal);

    Document doc;
    QVERIFY(doc.load(cut(u"0 @I1@ INDI|1 NOTE a|1 TEXT t|0 @I2@ INDI|1 NOTE b|"
                         u"0 @I3@ INDI|1 NOTE|1 TEXT u|0 @I4@ INDI|1 NOTE"_s)));
    doc.newJournal();
    QCOMPARE(runMove(doc, u"INDI.NOTE"_s, u"INDI.TEXT"_s, flags), deletionsIn(journal));
    QCOMPARE(doc.newJournal(), withTotals(journal));
    QCOMPARE(doc.lines(), cut(expected));
    QCOMPARE(doc.status(), u"%1 balises traitées."_s.arg(deletionsIn(journal)));
}

void TstMove::createdPlace_data()
{
    QTest::addColumn<QString>("lines");
    QTest::addColumn<QString>("deletedBefore"); // the line of an entry, or empty
    QTest::addColumn<QString>("sources");
    QTest::addColumn<QString>("destinations");
    QTest::addColumn<QString>("tree");
    QTest::addColumn<QString>("written");

    QTest::newRow("below a record, behind children without children")
        << u"0 @I1@ INDI|1 NOTE a|1 SEX M"_s << QString() << u"INDI.NOTE"_s << u"INDI.TEXT"_s
        << u"0 @I1@ INDI|1 NOTE a|1 SEX M|1 TEXT a"_s << u"0 @I1@ INDI|1 NOTE a|1 SEX M|1 TEXT a"_s;
    // The place in the tree counts children, that in the file all lines: the new line is written
    // after as many lines as the record has children.
    QTest::newRow("below a record, behind children with children")
        << u"0 @I1@ INDI|1 BIRT|2 DATE d|2 PLAC p|1 NOTE a|2 CONT c"_s << QString()
        << u"INDI.NOTE"_s << u"INDI.TEXT"_s
        << u"0 @I1@ INDI|1 BIRT|2 DATE d|2 PLAC p|1 NOTE a|2 CONT c|1 TEXT a"_s
        << u"0 @I1@ INDI|1 BIRT|2 DATE d|1 TEXT a|2 PLAC p|1 NOTE a|2 CONT c"_s;
    QTest::newRow("below a record, one after the other")
        << u"0 @I1@ INDI|1 BIRT|2 DATE d|2 PLAC p|1 NOTE a"_s << QString()
        << u"INDI.NOTE;INDI.NOTE"_s << u"INDI.TEXT;INDI.TITL"_s
        << u"0 @I1@ INDI|1 BIRT|2 DATE d|2 PLAC p|1 NOTE a|1 TEXT a|1 TITL a"_s
        << u"0 @I1@ INDI|1 BIRT|2 DATE d|1 TEXT a|1 TITL a|2 PLAC p|1 NOTE a"_s;
    QTest::newRow("below a record, the duplicate of a late line in front of it")
        << u"0 @I1@ INDI|1 BIRT|2 DATE d|1 NAME a"_s << QString() << u"INDI.NAME"_s
        << u"INDI.NAME"_s << u"0 @I1@ INDI|1 BIRT|2 DATE d|1 NAME a|1 NAME a"_s
        << u"0 @I1@ INDI|1 BIRT|2 DATE d|1 NAME a|1 NAME a"_s;
    QTest::newRow("below a record, deleted children count")
        << u"0 @I1@ INDI|1 NOTE a|1 SEX M|1 BIRT|2 DATE d"_s << u"1 SEX M"_s << u"INDI.NOTE"_s
        << u"INDI.TEXT"_s << u"0 @I1@ INDI|1 NOTE a|1 SEX M|1 BIRT|2 DATE d|1 TEXT a"_s
        << u"0 @I1@ INDI|1 NOTE a|1 BIRT|1 TEXT a|2 DATE d"_s;
    QTest::newRow("below another entry, behind its last descendant")
        << u"0 @I1@ INDI|1 BIRT|2 NOTE a|2 DATE d|3 SOUR s|1 DEAT|2 DATE e"_s << QString()
        << u"INDI.BIRT.NOTE"_s << u"INDI.BIRT.TEXT"_s
        << u"0 @I1@ INDI|1 BIRT|2 NOTE a|2 DATE d|3 SOUR s|2 TEXT a|1 DEAT|2 DATE e"_s
        << u"0 @I1@ INDI|1 BIRT|2 NOTE a|2 DATE d|3 SOUR s|2 TEXT a|1 DEAT|2 DATE e"_s;
    QTest::newRow("below an entry without children")
        << u"0 @I1@ INDI|1 NOTE a|1 BIRT|1 DEAT"_s << QString() << u"INDI.NOTE"_s
        << u"INDI.BIRT.NOTE"_s << u"0 @I1@ INDI|1 NOTE a|1 BIRT|2 NOTE a|1 DEAT"_s
        << u"0 @I1@ INDI|1 NOTE a|1 BIRT|2 NOTE a|1 DEAT"_s;
    QTest::newRow("below another entry, behind a deleted child")
        << u"0 @I1@ INDI|1 BIRT|2 NOTE a|2 DATE d|3 SOUR s|1 DEAT"_s << u"2 DATE d"_s
        << u"INDI.BIRT.NOTE"_s << u"INDI.BIRT.TEXT"_s
        << u"0 @I1@ INDI|1 BIRT|2 NOTE a|2 DATE d|3 SOUR s|2 TEXT a|1 DEAT"_s
        << u"0 @I1@ INDI|1 BIRT|2 NOTE a|3 SOUR s|2 TEXT a|1 DEAT"_s;
    // The lines of the record are listed again, in the order of the tree.
    QTest::newRow("below another entry, after one below the record")
        << u"0 @I1@ INDI|1 BIRT|2 DATE d|2 PLAC p|1 NOTE a"_s << QString()
        << u"INDI.NOTE;INDI.NOTE"_s << u"INDI.TEXT;INDI.BIRT.NOTE"_s
        << u"0 @I1@ INDI|1 BIRT|2 DATE d|2 PLAC p|2 NOTE a|1 NOTE a|1 TEXT a"_s
        << u"0 @I1@ INDI|1 BIRT|2 DATE d|2 PLAC p|2 NOTE a|1 NOTE a|1 TEXT a"_s;
    QTest::newRow("below another entry, lines that stand elsewhere than in the tree")
        << u"0 @I1@ INDI|1 BIRT|2 NOTE a|1 DEAT|3 DATE d"_s << QString() << u"INDI.BIRT.NOTE"_s
        << u"INDI.DEAT.TEXT"_s << u"0 @I1@ INDI|1 BIRT|2 NOTE a|3 DATE d|1 DEAT|2 TEXT a"_s
        << u"0 @I1@ INDI|1 BIRT|2 NOTE a|3 DATE d|1 DEAT|2 TEXT a"_s;
    QTest::newRow("below a record, lines that stand elsewhere than in the tree")
        << u"0 @I1@ INDI|1 BIRT|2 NOTE a|1 DEAT|3 DATE d"_s << QString() << u"INDI.BIRT.NOTE"_s
        << u"INDI.TEXT"_s << u"0 @I1@ INDI|1 BIRT|2 NOTE a|3 DATE d|1 DEAT|1 TEXT a"_s
        << u"0 @I1@ INDI|1 BIRT|2 NOTE a|1 TEXT a|1 DEAT|3 DATE d"_s;
    // Such a record lists all its lines although the first one is no root.
    QTest::newRow("below a record that begins at level 1")
        << u"1 FOO x|1 BAR y"_s << QString() << u"FOO"_s << u"FOO.TEXT"_s
        << u"1 FOO x|1 BAR y|2 TEXT x"_s << u"1 FOO x|1 BAR y|2 TEXT x"_s;
}

void TstMove::createdPlace()
{
    QFETCH(QString, lines);
    QFETCH(QString, deletedBefore);
    QFETCH(QString, sources);
    QFETCH(QString, destinations);
    QFETCH(QString, tree);
    QFETCH(QString, written);

    Document doc;
    QVERIFY(doc.load(cut(lines)));
    if (!deletedBefore.isEmpty())
        doc.entry(deletedBefore)->setDelete(true);
    QCOMPARE(runMove(doc, sources, destinations, Copy | Create), 0);
    QCOMPARE(treeLines(doc.gedcom.getTabTwItemsRoot().constFirst()), cut(tree));
    QCOMPARE(doc.lines(), cut(written));
    QVERIFY(doc.gedcom.writeGedFile(doc.path()));
    QCOMPARE(readLines(doc.path()), cut(written) + QStringList{u"0 TRLR"_s});
}

void TstMove::entriesAfterwards()
{
    Document doc;
    QVERIFY(doc.load(cut(u"0 @I1@ INDI|1 BIRT|2 NOTE a|3 CONT c|2 NOTE"_s)));
    TwItem *birt = doc.entry(u"1 BIRT"_s);
    TwItem *note = doc.entry(u"2 NOTE a"_s);
    TwItem *cont = doc.entry(u"3 CONT c"_s);
    TwItem *emptyNote = doc.entry(u"2 NOTE"_s);
    QCOMPARE(runMove(doc, u"INDI.BIRT.NOTE"_s, u"INDI.BIRT.TEXT"_s, Create), 0);

    TwItem *text = doc.entry(u"2 TEXT"_s);
    QVERIFY(text);
    QCOMPARE(text->getParent(), birt);
    QCOMPARE(birt->getTabTwiChilds(false), QList<TwItem *>({note, emptyNote, text}));
    QCOMPARE(text->getTwiValuesList(), QStringList({u"2"_s, u"TEXT"_s}));
    QCOMPARE(text->getNumLineGedFile(), u"-1"_s);
    QCOMPARE(text->toolTip(0), u"ligne -1"_s);
    QCOMPARE(text->toolTip(1), u"ligne -1"_s);
    QVERIFY(!text->isHidden());
    QVERIFY(!text->isToDelete());
    QCOMPARE(text->childCount(), 0);

    QCOMPARE(runMove(doc, u"INDI.BIRT.NOTE"_s, u"INDI.BIRT.TEXT"_s, Copy | Delete), 2);
    for (TwItem *twi : {note, emptyNote}) {
        QVERIFY(twi->isToDelete());
        QVERIFY(twi->isHidden());
    }
    for (TwItem *twi : {birt, cont, text}) {
        QVERIFY(!twi->isToDelete());
        QVERIFY(!twi->isHidden());
    }
    // Everything keeps its place, and the source its value.
    QCOMPARE(treeLines(doc.entry(u"0 @I1@ INDI"_s)),
             cut(u"0 @I1@ INDI|1 BIRT|2 NOTE a|3 CONT c|2 NOTE|2 TEXT a"_s));
    const QStringList left = cut(u"0 @I1@ INDI|1 BIRT|3 CONT c|2 TEXT a"_s);
    QCOMPARE(doc.lines(), left);
    QVERIFY(doc.gedcom.writeGedFile(doc.path()));
    QCOMPARE(readLines(doc.path()), left + QStringList{u"0 TRLR"_s});
}

void TstMove::deletedEntriesAreNotSeen()
{
    Document doc;
    QVERIFY(
        doc.load(cut(u"0 @I1@ INDI|1 NOTE a|1 TEXT t|1 BIRT x|2 NOTE b|2 TEXT u|1 NOTE c|1 TEXT v|"
                     u"1 BIRT y|1 NAME d|1 NAME e|1 NAME f"_s)));
    const QStringList gone{u"1 NOTE a"_s, u"1 TEXT t"_s, u"1 BIRT x"_s, u"1 NAME e"_s};
    for (const QString &line : gone)
        doc.entry(line)->setDelete(true);
    doc.newJournal();

    QCOMPARE(runMove(doc, u"INDI.BIRT.NOTE;INDI.NOTE;INDI.NOTE;INDI.NAME"_s,
                     u"INDI.BIRT.TEXT;INDI.TEXT;INDI.BIRT.DATE;INDI.NAME"_s, Copy | Create),
             0);
    QCOMPARE(doc.newJournal(),
             withTotals({
                 edited(u"INDI.TEXT 1 TEXT v (l.8) en c (l.7)"_s),
                 created(u"INDI.BIRT.DATE 2 DATE fille de la balise INDI.BIRT 1 BIRT y (l.9)"_s),
                 edited(u"INDI.BIRT.DATE 2 DATE (l.-1) en c (l.7)"_s),
                 edited(u"INDI.NAME 1 NAME f (l.12) en d (l.10)"_s),
                 edited(u"INDI.NAME 1 NAME d (l.12) en d (l.12)"_s),
             }));
    QCOMPARE(doc.lines(),
             cut(u"0 @I1@ INDI|2 NOTE b|2 TEXT u|1 NOTE c|1 TEXT c|1 BIRT y|2 DATE c|1 NAME d|"
                 u"1 NAME d"_s));
}

void TstMove::deletedRecordsTakeNoPart()
{
    Document doc;
    QVERIFY(doc.load(cut(u"0 @I1@ INDI|1 NOTE a|1 TEXT t|0 @I2@ INDI|1 NOTE b|1 TEXT u"_s)));
    TwItem *text = doc.entry(u"1 TEXT t"_s);
    doc.entry(u"0 @I1@ INDI"_s)->setDelete(true);
    doc.newJournal();

    QCOMPARE(runMove(doc, u"INDI.NOTE;INDI"_s, u"INDI.TEXT;INDI.DATE"_s, Copy | Create), 0);
    QCOMPARE(doc.newJournal(),
             withTotals({
                 edited(u"INDI.TEXT 1 TEXT u (l.6) en b (l.5)"_s),
                 created(u"INDI.DATE 1 DATE fille de la balise INDI 0 @I2@ INDI (l.4)"_s),
                 edited(u"INDI.DATE 1 DATE (l.-1) en INDI (l.4)"_s),
             }));
    QCOMPARE(lineText(text), u"1 TEXT t"_s);
    QCOMPARE(doc.progress.maximum(), 1);
}

void TstMove::recordDeletedOnTheWay()
{
    // A record can be a source; its entries still take part in the rest of its processing.
    Document doc;
    QVERIFY(doc.load(cut(u"0 @I1@ INDI|1 SEX M|1 NOTE a|0 @F1@ FAM|1 NOTE b"_s)));
    doc.newJournal();
    QCOMPARE(
        runMove(doc, u"INDI;INDI.NOTE;FAM.NOTE"_s, u"INDI.SEX;INDI.TEXT;FAM.TEXT"_s, Everything),
        3);
    QCOMPARE(doc.newJournal(),
             withTotals({
                 edited(u"INDI.SEX 1 SEX M (l.2) en INDI (l.1)"_s),
                 deleted(u"INDI 0 @I1@ INDI (l.1)"_s),
                 created(u"INDI.TEXT 1 TEXT fille de la balise INDI 0 @I1@ INDI (l.1)"_s),
                 edited(u"INDI.TEXT 1 TEXT (l.-1) en a (l.3)"_s),
                 deleted(u"INDI.NOTE 1 NOTE a (l.3)"_s),
                 created(u"FAM.TEXT 1 TEXT fille de la balise FAM 0 @F1@ FAM (l.4)"_s),
                 edited(u"FAM.TEXT 1 TEXT (l.-1) en b (l.5)"_s),
                 deleted(u"FAM.NOTE 1 NOTE b (l.5)"_s),
             }));
    QCOMPARE(doc.status(), u"3 balises traitées."_s);
    QCOMPARE(doc.lines(), cut(u"0 @F1@ FAM|1 TEXT b"_s));

    // The next run no longer sees it.
    QCOMPARE(runMove(doc, u"INDI.SEX"_s, u"INDI.DATE"_s, Everything), 0);
    QCOMPARE(doc.newJournal(), withTotals({}));
}

void TstMove::recordIsDeletedOnce()
{
    Document doc;
    QVERIFY(doc.load(cut(u"0 @I1@ INDI|1 SEX M|1 TEXT t"_s)));
    doc.newJournal();
    QCOMPARE(runMove(doc, u"INDI;INDI"_s, u"INDI.SEX;INDI.TEXT"_s, Copy | Delete), 1);
    QCOMPARE(doc.newJournal(), withTotals({
                                   edited(u"INDI.SEX 1 SEX M (l.2) en INDI (l.1)"_s),
                                   deleted(u"INDI 0 @I1@ INDI (l.1)"_s),
                                   edited(u"INDI.TEXT 1 TEXT t (l.3) en INDI (l.1)"_s),
                               }));
    QCOMPARE(doc.status(), u"1 balises traitées."_s);
}

void TstMove::recordsAreListedBeforeTheyAreChanged()
{
    QStringList lines;
    for (int i = 1; i <= 21; ++i)
        lines += {u"0 @I%1@ INDI"_s.arg(i), u"1 NOTE %1"_s.arg(i), u"1 TEXT t"_s};
    Document doc;
    QVERIFY(doc.load(lines));
    TwItem *last = doc.entry(u"0 @I21@ INDI"_s);
    TwItem *note = doc.entry(u"1 NOTE 21"_s);
    doc.newJournal();
    QStringList before;
    connect(&doc.progress, &QProgressBar::valueChanged, this, [&] {
        QMetaObject::invokeMethod(
            this,
            [&, last] {
                before = doc.newJournal();
                last->setDelete(true);
            },
            Qt::QueuedConnection);
    });
    QCOMPARE(runMove(doc, u"INDI.NOTE"_s, u"INDI.TEXT"_s, Copy | Delete), 21);
    QCOMPARE(before.size(), 40); // of the first 20 records
    QVERIFY(last->isToDelete());
    QVERIFY(note->isToDelete());
    QCOMPARE(treeLines(last), cut(u"0 @I21@ INDI|1 NOTE 21|1 TEXT 21"_s));
    QCOMPARE(doc.newJournal(), QStringList({
                                   edited(u"INDI.TEXT 1 TEXT t (l.63) en 21 (l.62)"_s),
                                   deleted(u"INDI.NOTE 1 NOTE 21 (l.62)"_s),
                                   u"INFO : Création de 0 balises terminée."_s,
                                   u"INFO : Edition de 21 balises terminée."_s,
                                   u"INFO : Suppression de 21 balises terminée."_s,
                               }));
}

void TstMove::laterRuns()
{
    Document doc;
    QVERIFY(doc.load(cut(u"0 @I1@ INDI|1 NOTE a|1 BIRT|2 DATE d"_s)));
    doc.newJournal();
    QCOMPARE(runMove(doc, u"INDI.NOTE"_s, u"INDI.TEXT"_s, Everything), 1);
    QCOMPARE(doc.newJournal(),
             withTotals({
                 created(u"INDI.TEXT 1 TEXT fille de la balise INDI 0 @I1@ INDI (l.1)"_s),
                 edited(u"INDI.TEXT 1 TEXT (l.-1) en a (l.2)"_s),
                 deleted(u"INDI.NOTE 1 NOTE a (l.2)"_s),
             }));
    QCOMPARE(doc.status(), u"1 balises traitées."_s);

    // The same again: the source is gone for good.
    QCOMPARE(runMove(doc, u"INDI.NOTE"_s, u"INDI.TEXT"_s, Everything), 0);
    QCOMPARE(doc.newJournal(), withTotals({}));
    QCOMPARE(doc.status(), u"0 balises traitées."_s);

    // A created entry can be a destination, a parent and a source like any other.
    QCOMPARE(runMove(doc, u"INDI.BIRT.DATE;INDI.TEXT;INDI.TEXT"_s,
                     u"INDI.TEXT;INDI.TEXT.NOTE;INDI.BIRT"_s, Everything),
             2);
    QCOMPARE(doc.newJournal(),
             withTotals({
                 edited(u"INDI.TEXT 1 TEXT a (l.-1) en d (l.4)"_s),
                 deleted(u"INDI.BIRT.DATE 2 DATE d (l.4)"_s),
                 created(u"INDI.TEXT.NOTE 2 NOTE fille de la balise INDI.TEXT 1 TEXT d (l.-1)"_s),
                 edited(u"INDI.TEXT.NOTE 2 NOTE (l.-1) en d (l.-1)"_s),
                 deleted(u"INDI.TEXT 1 TEXT d (l.-1)"_s),
             }));
    QCOMPARE(doc.lines(), cut(u"0 @I1@ INDI|1 BIRT|2 NOTE d"_s));
}

void TstMove::emptyDocument()
{
    Document doc;
    QVERIFY(doc.load({}));
    doc.newJournal();
    QCOMPARE(runMove(doc, u"INDI.NOTE"_s, u"INDI.TEXT"_s, Everything), 0);
    QCOMPARE(doc.newJournal(), QStringList({u"INFO : Création de 0 balises terminée."_s,
                                            u"INFO : Edition de 0 balises terminée."_s,
                                            u"INFO : Suppression de 0 balises terminée."_s}));
    QCOMPARE(doc.status(), u"0 balises traitées."_s);
}

void TstMove::debugStream()
{
    Document doc;
    QVERIFY(doc.load(cut(u"0 @I1@ INDI|1 NOTE a|1 TEXT t"_s)));
    QTest::ignoreMessage(QtDebugMsg, "ON moveTagContent");
    static const QRegularExpression found(u"^twi dest existant : .*INDI.*TEXT"_s);
    QTest::ignoreMessage(QtDebugMsg, found);
    QTest::ignoreMessage(QtDebugMsg, "OFF moveTagContent");
    QCOMPARE(runMove(doc, u"INDI.NOTE"_s, u"INDI.TEXT"_s, 0), 0);
}

void TstMove::frame()
{
    QStringList lines;
    QStringList changes;
    for (int i = 1; i <= 25; ++i) {
        lines += {u"0 @I%1@ INDI"_s.arg(i), u"1 NOTE a"_s};
        changes +=
            {created(u"INDI.TEXT 1 TEXT fille de la balise INDI 0 @I%1@ INDI (l.%2)"_s.arg(i).arg(
                 2 * i - 1)),
             edited(u"INDI.TEXT 1 TEXT (l.-1) en a (l.%1)"_s.arg(2 * i)),
             deleted(u"INDI.NOTE 1 NOTE a (l.%1)"_s.arg(2 * i))};
    }
    Document doc;
    QVERIFY(doc.load(lines));
    Told told(&doc);
    told.inDetail();
    QCOMPARE(runMove(doc, u"INDI.NOTE"_s, u"INDI.TEXT"_s, Everything), 25);

    const QStringList journal = withTotals(changes);
    const QStringList start{u"debug: ON moveTagContent"_s,
                            u"bar at -1 of 51"_s, // the range is still that of the load
                            u"status: Déplacement des balises en cours..."_s, u"bar at -1 of 51"_s};
    const QStringList end{u"status: 25 balises traitées."_s, u"bar at 20 of 25"_s,
                          u"debug: OFF moveTagContent"_s, u"bar at 20 of 25"_s};
    QCOMPARE(told.take(), start + withMoves(journal, {{60, u"20 of 25"_s}}) + end);
    QCOMPARE(doc.progress.minimum(), 0);
    QCOMPARE(doc.progress.value(), -1);
}

void TstMove::progress_data()
{
    QTest::addColumn<int>("records");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("one record") << 1 << QStringList();
    QTest::newRow("one record short of a period") << 19 << QStringList();
    QTest::newRow("one period") << 20 << QStringList{u"20 of 20"_s, u"events at 20"_s};
    QTest::newRow("one record more") << 21 << QStringList{u"20 of 21"_s, u"events at 20"_s};
    QTest::newRow("three periods")
        << 65 << QStringList{u"20 of 65"_s,     u"events at 20"_s, u"40 of 65"_s,
                             u"events at 40"_s, u"60 of 65"_s,     u"events at 60"_s};
}

void TstMove::progress()
{
    QFETCH(int, records);
    QFETCH(QStringList, expected);

    // Each record counts once, whatever it contains and however many pairs there are.
    QStringList lines;
    int sources = 0;
    for (int i = 1; i <= records; ++i) {
        const bool person = i % 3 == 0;
        lines += {(person ? u"0 @I%1@ INDI"_s : u"0 @F%1@ FAM"_s).arg(i), u"1 NOTE a"_s,
                  u"1 NOTE b"_s, u"1 TEXT t"_s};
        sources += person ? 2 : 0;
    }
    Document doc;
    QVERIFY(doc.load(lines));
    const ProgressLog log(&doc.progress);
    QCOMPARE(runMove(doc, u"INDI.NOTE;INDI.DATE"_s, u"INDI.TEXT;INDI.NOTE"_s, Delete), sources);
    QCOMPARE(log.entries(), expected);
    QCOMPARE(doc.progress.minimum(), 0);
    QCOMPARE(doc.progress.maximum(), records);
    QCOMPARE(doc.progress.value(), -1);
}

void TstMove::barKeepsItsVisibility()
{
    Document doc;
    QVERIFY(doc.load(cut(u"0 @I1@ INDI|1 NOTE a"_s)));
    runMove(doc, u"INDI.NOTE"_s, u"INDI.TEXT"_s, Everything);
    QVERIFY(!doc.progress.isVisible());
    doc.progress.show();
    runMove(doc, u"INDI.TEXT"_s, u"INDI.NOTE"_s, Everything);
    QVERIFY(doc.progress.isVisible());
}

void TstMove::agreesWithPlainReading_data()
{
    QTest::addColumn<int>("flags");

    QTest::newRow("nothing") << 0;
    QTest::newRow("copy") << Copy;
    QTest::newRow("delete") << Delete;
    QTest::newRow("copy, delete") << (Copy | Delete);
    QTest::newRow("create") << Create;
    QTest::newRow("create, copy") << (Create | Copy);
    QTest::newRow("create, delete") << (Create | Delete);
    QTest::newRow("all") << Everything;
}

void TstMove::agreesWithPlainReading()
{
    QFETCH(int, flags);

    // Thousands of lines of no interest.
    QLoggingCategory::setFilterRules(u"default.debug=false"_s);
    const auto reset = qScopeGuard([] { QLoggingCategory::setFilterRules(QString()); });

    QStringList changes;
    for (quint32 document = 0; document < 40; ++document) {
        const quint32 seed = 100 * quint32(flags) + document;
        QRandomGenerator random(seed);
        const QStringList lines = generatedLines(random);
        PlainDocument plain(lines);
        Document doc;
        QVERIFY(doc.load(lines));
        doc.newJournal();
        const QList<TwItem *> roots = doc.gedcom.getTabTwItemsRoot();
        QCOMPARE(dumpAll(roots), dumpAll(plain.roots));

        for (int run = 0; run < 4; ++run) {
            QStringList sources;
            QStringList destinations;
            for (int i = random.bounded(3); i >= 0; --i) {
                sources += generatedSource(random, plain);
                destinations += generatedDestination(random, plain, sources.constLast());
            }
            if (random.bounded(8) == 0)
                destinations.removeLast();
            const QString from = sources.join(u';');
            const QString to = destinations.join(u';');
            const QString before = dumpAll(plain.roots).join(u'|');
            const int count = plain.move(from, to, flags);
            const QStringList expected =
                QStringList{QString::number(count), u"%1 balises traitées."_s.arg(count)}
                + plain.journal + plain.lines() + dumpAll(plain.roots);

            const int actualCount = runMove(doc, from, to, flags);
            const QStringList actual = QStringList{QString::number(actualCount), doc.status()}
                                     + doc.newJournal() + doc.lines() + dumpAll(roots);
            if (actual != expected)
                qWarning().noquote() << "seed" << seed << from << "to" << to << "in" << before;
            QCOMPARE(actual, expected);
            changes += plain.journal;
        }
    }
    // The generated documents change enough.
    QCOMPARE(countOf(changes, created(QString())) > 40, bool(flags & Create));
    QCOMPARE(countOf(changes, edited(QString())) > 40, bool(flags & Copy));
    QCOMPARE(countOf(changes, deleted(QString())) > 40, bool(flags & Delete));
    QCOMPARE(m_boxes.texts(), QStringList());
}

VARLUNE_TEST_MAIN(TstMove)
#include "tst_move.moc"
