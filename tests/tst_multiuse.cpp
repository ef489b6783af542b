#include "boxes.h"
#include "document.h"
#include "reviewing.h"
#include "testmain.h"

#include "gedcom.h"
#include "twitem.h"

#include <QBrush>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString Announced = u"Recherche des sources utilisées plusieurs fois"_s;

QString concluded(qsizetype count)
{
    return u"Recherche terminée. %1 occurences dédoublées."_s.arg(count);
}

/// A document to be filtered.
class Review : public ReviewedDocument
{
public:
    using ReviewedDocument::ReviewedDocument;

    void filter() override
    {
        hideAll();
        gedcom.filterSourceMultiUse();
    }
};

/// The lines of the visible rows, without the section nodes.
QStringList shownIn(const ReviewSession &session)
{
    QStringList result;
    const QList<TwItem *> entries = session.entries();
    for (const TwItem *twi : entries) {
        if (!twi->isHidden())
            result += lineText(twi);
    }
    return result;
}

/// A person, either hidden or shown whole with a red birth. \p event are the lines of the birth.
QStringList person(int number, bool flagged, const QStringList &event)
{
    const QChar sign = flagged ? u'+' : u' ';
    QStringList rows{sign + u"0 @I%1@ INDI"_s.arg(number), sign + "1 NAME Jean /DUPONT/"_L1,
                     sign + "2 GIVN Jean"_L1, flagged ? u"*1 BIRT"_s : u" 1 BIRT"_s};
    for (const QString &line : event)
        rows += line.startsWith(u'-') ? line : sign + line;
    return rows + QStringList{sign + "1 SEX M"_L1};
}

/// A person whose birth is dated 12 MAR 1805 and cites the source.
QStringList born(int number, bool flagged, int source = 1)
{
    return person(number, flagged, {u"2 DATE 12 MAR 1805"_s, u"2 SOUR @S%1@"_s.arg(source)});
}

/// Hidden sources of these numbers.
QStringList sources(int first, int last)
{
    QStringList rows;
    for (int i = first; i <= last; ++i)
        rows += {u" 0 @S%1@ SOUR"_s.arg(i), u" 1 TITL registre"_s};
    return rows;
}

/// The lines of a file: two births that cite source 1, two that cite source 100, and one that cites
/// source 101. The last two sources contradict them.
QStringList doubledEarlyAndLate()
{
    QStringList lines;
    const QStringList rows = born(1, false) + born(2, false) + born(3, false, 100)
                           + born(4, false, 100) + born(5, false, 101) + sources(1, 101);
    for (const QString &line : rows)
        lines += line.mid(1);
    for (const QString &root : {u"0 @S100@ SOUR"_s, u"0 @S101@ SOUR"_s})
        lines.insert(lines.indexOf(root) + 1, u"1 DATE 1840"_s);
    return lines;
}

/// The filter in its simplest form, using only the texts and the marks of the rows.
class PlainFilter
{
public:
    explicit PlainFilter(const QList<TwItem *> &entries)
        : m_entries(entries),
          m_shown(entries.begin(), entries.end())
    {
    }

    void run()
    {
        QStringList ids; // of the sources
        QList<TwItem *> citations;
        TwItem *root = nullptr;
        for (TwItem *twi : std::as_const(m_entries)) {
            const QString line = columnTexts(twi).join(u' ');
            if (twi->text(0) == "0"_L1)
                root = twi;
            if (root->isToDelete())
                continue;
            m_shown.remove(twi);
            if (m_idSour.match(line).hasMatch())
                ids += twi->text(1);
            if (!twi->isToDelete() && line.startsWith("2 SOUR @S"_L1)
                && m_idIndi.match(columnTexts(root).join(u' ')).hasMatch())
                citations += twi;
        }

        m_count = 0;
        for (qsizetype i = 0; i + 1 < ids.size(); ++i) {
            TwItem *first = nullptr;
            for (TwItem *citation : std::as_const(citations)) {
                if (!columnTexts(citation).contains(ids.at(i)))
                    continue;
                if (!first)
                    first = citation;
                else if (agree(first->parent(), citation->parent()))
                    flag(first->parent(), citation->parent());
            }
        }
    }

    [[nodiscard]] int count() const
    {
        return m_count;
    }

    [[nodiscard]] QStringList pictures() const
    {
        QStringList result;
        for (TwItem *twi : m_entries)
            result +=
                picture(twi, m_shown.contains(twi) && !twi->isToDelete(), m_red.contains(twi));
        return result;
    }

private:
    /// The columns of the first date, none without one.
    [[nodiscard]] QStringList date(QTreeWidgetItem *event) const
    {
        for (int i = 0; i < event->childCount(); ++i) {
            auto *twi = static_cast<TwItem *>(event->child(i));
            if (!twi->isToDelete() && m_date.match(columnTexts(twi).join(u' ')).hasMatch())
                return columnTexts(twi);
        }
        return {};
    }
    bool agree(QTreeWidgetItem *one, QTreeWidgetItem *other) const
    {
        return !date(one).isEmpty() && date(one) == date(other);
    }

    void flag(QTreeWidgetItem *one, QTreeWidgetItem *other)
    {
        ++m_count;
        for (QTreeWidgetItem *event : {one, other}) {
            m_red += static_cast<TwItem *>(event);
            auto *root = static_cast<TwItem *>(event->parent());
            while (root->text(0) != "0"_L1)
                root = static_cast<TwItem *>(root->parent());
            qsizetype i = m_entries.indexOf(root);
            do
                m_shown += m_entries.at(i++);
            while (i < m_entries.size() && m_entries.at(i)->text(0) != "0"_L1);
        }
    }

    QRegularExpression m_idSour{u"^0 @S[0-9]+@ SOUR$"_s};
    QRegularExpression m_idIndi{u"^0 @I[0-9]+@ INDI$"_s};
    QRegularExpression m_date{u"^[0-9] DATE"_s};
    QList<TwItem *> m_entries;
    QSet<TwItem *> m_shown;
    QSet<TwItem *> m_red; // of all runs
    int m_count = 0; // of the last run
};

/// Records of all kinds in any order; which events share a date and a source is left to chance.
QStringList generatedLines(QRandomGenerator *random)
{
    const auto below = [random](int limit) { return random->bounded(limit); };
    const auto id = [&below](char letter, int limit) -> QString {
        return u"@%1%2@"_s.arg(QLatin1Char(letter)).arg(1 + below(limit));
    };
    const QStringList dates{u"2 DATE 12 MAR 1800"_s, u"2 DATE 12 MAR 1800"_s, u"2 DATE ABT 1801"_s,
                            u"2 DATE ABT 1801"_s,    u"2 DATE ABT 1801 "_s,   u"2 DATE"_s,
                            u"2 DATES 12 MAR 1800"_s};
    const QStringList tags{u"1 BIRT"_s, u"1 DEAT"_s, u"1 OCCU tailleur"_s};
    const QStringList others{u"2 SOUR @SX@"_s, u"2 SOUR @S1@ p. 3"_s, u"2 NOTE @S1@"_s,
                             u"1 SOUR @S1@"_s, u"2 _DATE 12 MAR 1800"_s};

    QList<QStringList> records;
    for (int i = 0; i < 130; ++i) {
        QStringList lines;
        if (i < 30) {
            lines += "0 "_L1 + id('S', 12) + " SOUR"_L1;
        } else {
            lines += "0 "_L1 + (i < 110 ? id('I', 99) + " INDI"_L1 : id('F', 99) + " FAM"_L1);
            for (int j = below(4); j > 0; --j) {
                lines += tags.at(below(int(tags.size())));
                for (int k = below(7); k > 0; --k) {
                    switch (below(5)) {
                    case 0:
                    case 1:
                        lines += dates.at(below(int(dates.size())));
                        break;
                    case 2:
                        lines += others.at(below(int(others.size())));
                        if (lines.constLast().startsWith(u'1'))
                            lines += tags.constFirst();
                        break;
                    default:
                        lines += "2 SOUR "_L1 + id('S', 12);
                        lines += u"3 SOUR @S1@"_s;
                    }
                }
            }
        }
        lines += u"1 CHAN"_s;
        records.insert(below(int(records.size()) + 1), lines);
    }
    QStringList lines;
    for (const QStringList &record : std::as_const(records))
        lines += record;
    return lines;
}

} // namespace

/// The filter for sources that several events of one date cite.
class TstMultiuse : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void occurrences_data();
    void occurrences();
    void replacedTexts_data();
    void replacedTexts();
    void nothingButShows();
    void sectionNodesStay();
    void manyCitationsOfOneSource();
    void secondRun();
    void saved();
    void frame();
    void progress_data();
    void progress();
    void texts();
    void eventsBeforeTheLoop_data();
    void eventsBeforeTheLoop();
    void documentChangedInTheMidst_data();
    void documentChangedInTheMidst();
    void changedAndHiddenTwice();
    void rowsHiddenInTheMidst();
    void generatedDocuments_data();
    void generatedDocuments();
    void checkBox();
    void twoBoxes();
    void everyStateButUncheckedFilters();
    void uncheckedInTheMidst();
    void otherFilterInTheMidst();

private:
    AnsweredBoxes m_boxes; // none is expected; an unanswered one would block the test for ever
};

void TstMultiuse::cleanup()
{
    QCOMPARE(m_boxes.texts(), QStringList());
}

void TstMultiuse::occurrences_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("rows");

    const auto row = [](const char *name, int count, const QStringList &rows) {
        QTest::newRow(name) << count << rows;
    };
    const QStringList s12 = sources(1, 2);
    const QString date = u"2 DATE 12 MAR 1805"_s;
    const QString about = u"2 DATE ABT 1805"_s;
    const QString cited = u"2 SOUR @S1@"_s;
    const QStringList bystander{u" 0 @I99@ INDI"_s, u" 1 NAME Anne /MARTIN/"_s, u" 1 BIRT"_s,
                                u" 2 DATE 12 MAR 1805"_s, u" 2 SOUR @S2@"_s};

    row("two births", 1, born(1, true) + bystander + born(2, true) + s12);
    row("sources first", 1, s12 + born(1, true) + born(2, true));
    row("one birth", 0, born(1, false) + s12);
    row("no citation", 0, person(1, false, {date}) + person(2, false, {date}) + s12);
    row("no source", 0, born(1, false) + born(2, false));
    row("no person", 0, s12);
    row("another date", 0, born(1, false) + person(2, false, {about, cited}) + s12);
    row("another source", 0, born(1, false) + born(2, false, 2) + sources(1, 3));
    row("everything else differs", 1,
        person(1, true, {date, u"2 PLAC Paris"_s, cited, u"3 PAGE 1"_s})
            + QStringList{u"+0 @I2@ INDI"_s, u"*1 DEAT"_s, u"+2 SOUR @S1@"_s, u"+3 PAGE 2"_s,
                          u"+2 DATE 12 MAR 1805"_s}
            + s12);

    // The first citation is compared with each of the others.
    row("three of one date", 2, born(1, true) + born(2, true) + born(3, true) + s12);
    row("two of one date behind another one", 0,
        person(1, false, {about, cited}) + born(2, false) + born(3, false) + s12);
    row("two of one date around another one", 1,
        born(1, true) + person(2, false, {about, cited}) + born(3, true) + s12);
    row("two of one date behind one without a date", 0,
        person(1, false, {cited}) + born(2, false) + born(3, false) + s12);
    row("file order, not that of the ids", 0,
        person(3, false, {about, cited}) + born(2, false) + born(1, false) + s12);
    row("the first one deleted", 1,
        person(1, false, {about, u"-2 SOUR @S1@"_s}) + born(2, true) + born(3, true) + s12);
    row("two sources", 2,
        person(1, true, {date, cited, u"2 SOUR @S2@"_s})
            + person(2, true, {date, u"2 SOUR @S2@"_s, cited}) + sources(1, 3));
    row("two sources, two pairs", 2,
        born(1, true) + born(2, true) + born(3, true, 2) + born(4, true, 2) + sources(1, 3));
    row("two events of one person", 1,
        {u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s, u"*1 BIRT"_s, u"+2 DATE ABT 1805"_s,
         u"+2 SOUR @S1@"_s, u"+1 OCCU x"_s, u"+2 DATE ABT 1805"_s, u"*1 CHR"_s,
         u"+2 DATE ABT 1805"_s, u"+2 SOUR @S1@"_s, u" 0 @S1@ SOUR"_s, u" 1 TITL x"_s,
         u" 0 @S2@ SOUR"_s, u" 1 TITL x"_s});
    row("one event that cites it twice", 1, person(1, true, {date, cited, cited}) + s12);
    row("one event that cites it three times, another once", 3,
        person(1, true, {date, cited, cited, cited}) + born(2, true) + s12);

    // The dates.
    row("no date", 0, person(1, false, {cited}) + person(2, false, {cited}) + s12);
    row("no date in the second event", 0, born(1, false) + person(2, false, {cited}) + s12);
    row("dates without a value", 1,
        person(1, true, {u"2 DATE"_s, cited}) + person(2, true, {u"2 DATE"_s, cited}) + s12);
    row("dates that are none", 1,
        person(1, true, {u"2 DATE x"_s, cited}) + person(2, true, {u"2 DATE x"_s, cited}) + s12);
    row("first of several dates", 1,
        person(1, true, {date, about, cited}) + person(2, true, {date, u"2 DATE 1806"_s, cited})
            + s12);
    row("not the second date", 0,
        person(1, false, {about, date, cited}) + person(2, false, {date, about, cited}) + s12);
    row("first date deleted", 1,
        person(1, true, {u"-2 DATE ABT 1805"_s, date, cited}) + born(2, true) + s12);
    row("only date deleted", 0,
        person(1, false, {u"-2 DATE 12 MAR 1805"_s, cited}) + born(2, false) + s12);
    row("same date of another case", 0,
        born(1, false) + person(2, false, {u"2 DATE 12 Mar 1805"_s, cited}) + s12);
    row("blank behind the date", 0,
        born(1, false) + person(2, false, {u"2 DATE 12 MAR 1805 "_s, cited}) + s12);
    row("blank in front of the date", 0,
        born(1, false) + person(2, false, {u"2 DATE  12 MAR 1805"_s, cited}) + s12);
    row("date of another tag", 0,
        born(1, false) + person(2, false, {u"2 DATES 12 MAR 1805"_s, cited}) + s12);
    row("both dates of another tag", 1,
        person(1, true, {u"2 DATES x"_s, cited}) + person(2, true, {u"2 DATES x"_s, cited}) + s12);
    row("date below the place", 0,
        born(1, false) + person(2, false, {u"2 PLAC Paris"_s, u"3 DATE 12 MAR 1805"_s, cited})
            + s12);
    row("dates below the places", 0,
        person(1, false, {u"2 PLAC Paris"_s, u"3 DATE 1805"_s, cited})
            + person(2, false, {u"2 PLAC Paris"_s, u"3 DATE 1805"_s, cited}) + s12);

    // The last source.
    row("last source", 0, born(1, false, 2) + born(2, false, 2) + s12);
    row("single source", 0, born(1, false) + born(2, false) + sources(1, 1));
    row("last source but for a deleted one", 0,
        born(1, false) + born(2, false)
            + QStringList{u" 0 @S1@ SOUR"_s, u" 1 TITL x"_s, u"-0 @S2@ SOUR"_s, u"-1 TITL x"_s});
    row("last source but for one of another form", 0,
        born(1, false) + born(2, false) + sources(1, 1)
            + QStringList{u" 0 @SX@ SOUR"_s, u" 1 TITL x"_s, u" 0 @S2@ SOUR "_s, u" 1 TITL x"_s});
    row("file order of the sources, not that of the ids", 1,
        born(1, true, 3) + born(2, true, 3) + born(3, false) + born(4, false) + sources(3, 3)
            + sources(1, 1));
    row("source deleted", 0,
        born(1, false) + born(2, false) + QStringList{u"-0 @S1@ SOUR"_s, u"+1 TITL x"_s}
            + sources(2, 3));
    row("source not in the file", 0, born(1, false, 9) + born(2, false, 9) + s12);
    row("two sources of one id", 2, born(1, true) + born(2, true) + sources(1, 1) + s12);
    row("two sources of one id, the second is the last", 1,
        born(1, true) + born(2, true) + sources(1, 1) + sources(1, 1));
    row("ids that hold one another", 0,
        born(1, false) + born(2, false, 12) + born(3, false, 11) + sources(11, 12) + s12);

    // The citations.
    row("citations at other levels", 0,
        person(1, false, {date, u"3 SOUR @S1@"_s, u"1 SOUR @S1@"_s})
            + person(2, false, {date, u"3 SOUR @S1@"_s, u"1 SOUR @S1@"_s}) + s12);
    row("text behind the id", 0,
        person(1, false, {date, u"2 SOUR @S1@ p. 1"_s})
            + person(2, false, {date, u"2 SOUR @S1@ p. 1"_s}) + s12);
    row("citations that only look like it", 0,
        born(1, false)
            + person(2, false,
                     {date, u"2 SOUR @s1@"_s, u"2 SOUR  @S1@"_s, u"2 SOUR @S1@ "_s,
                      u"2 NOTE @S1@"_s, u"2 SOURC @S1@"_s})
            + s12);
    row("one citation deleted", 0,
        born(1, false) + person(2, false, {date, u"-2 SOUR @S1@"_s}) + s12);
    row("families", 0,
        QStringList{u" 0 @F1@ FAM"_s, u" 1 MARR"_s, u" 2 DATE 12 MAR 1805"_s, u" 2 SOUR @S1@"_s,
                    u" 1 DIV"_s, u" 2 DATE 12 MAR 1805"_s, u" 2 SOUR @S1@"_s}
            + born(1, false) + s12);
    row("records that only look like persons", 0,
        QStringList{u" 0 @P1@ INDI"_s, u" 1 BIRT"_s, u" 2 DATE 12 MAR 1805"_s, u" 2 SOUR @S1@"_s,
                    u" 0 @I1A@ INDI"_s, u" 1 BIRT"_s, u" 2 DATE 12 MAR 1805"_s, u" 2 SOUR @S1@"_s,
                    u" 0 @I1@ INDI "_s, u" 1 BIRT"_s, u" 2 DATE 12 MAR 1805"_s, u" 2 SOUR @S1@"_s}
            + born(1, false) + s12);

    // Deleted entries stay hidden.
    row("deleted lines", 1,
        person(1, true, {date, cited, u"-2 PLAC Paris"_s, u"3 MAP"_s, u"-1 DEAT"_s, u"-2 DATE x"_s})
            + born(2, true) + s12);
    row("event of a deleted line", 1,
        QStringList{u"+0 @I1@ INDI"_s, u"+1 SEX M"_s, u"=1 BIRT"_s, u"+2 DATE 12 MAR 1805"_s,
                    u"+2 SOUR @S1@"_s}
            + born(2, true) + s12);
    row("person deleted", 0,
        QStringList{u"-0 @I1@ INDI"_s, u"+1 BIRT"_s, u"+2 DATE 12 MAR 1805"_s, u"+2 SOUR @S1@"_s}
            + born(2, false) + s12);
    row("two persons of one id", 1, born(1, true) + born(1, true) + s12);
}

void TstMultiuse::occurrences()
{
    QFETCH(int, count);
    QFETCH(QStringList, rows);

    Review review(rows);
    const QList<QStringList> columns = review.columns();
    review.filter();
    QCOMPARE(review.pictures(), rows);
    QCOMPARE(review.status(), concluded(count));
    QCOMPARE(review.columns(), columns);
    QCOMPARE(review.newJournal(), QStringList());
}

void TstMultiuse::replacedTexts_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("replacement"); // the arguments of change()
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<int>("count");

    const auto row = [](const char *name, const QStringList &lines, const QStringList &replacement,
                        const QStringList &rows, int count) {
        QTest::newRow(name) << lines << replacement << rows << count;
    };
    const QStringList s12 = sources(1, 2);
    // A birth and a christening, only one of which is changed.
    const auto twoEvents = [](const QString &signs, const QString &birthDate,
                              const QString &christeningDate, const QString &birth = u"1 BIRT"_s,
                              const QString &citation = u"2 SOUR @S1@"_s) -> QStringList {
        const QChar sign = signs.at(0);
        return {sign + "0 @I1@ INDI"_L1, signs.at(1) + birth,      sign + birthDate,
                sign + citation,         signs.at(1) + "1 CHR"_L1, sign + christeningDate,
                sign + "2 SOUR @S1@"_L1};
    };
    const QString date = u"2 DATE 12 MAR 1805"_s;
    const QString hidden = u"  "_s;
    const QString flagged = u"+*"_s;
    row("nothing", twoEvents(hidden, date, date) + s12, {u"x"_s, u"y"_s, u"NONE"_s},
        twoEvents(flagged, date, date) + s12, 1);
    row("level of one date", twoEvents(hidden, date, date) + s12,
        {u"2"_s, u"3"_s, u"INDI.BIRT.DATE"_s},
        twoEvents(hidden, u"3 DATE 12 MAR 1805"_s, date) + s12, 0);
    row("level of both dates", twoEvents(hidden, date, date) + s12, {u"2"_s, u"3"_s, u"DATE"_s},
        twoEvents(flagged, u"3 DATE 12 MAR 1805"_s, u"3 DATE 12 MAR 1805"_s) + s12, 1);
    row("same line in other columns", twoEvents(hidden, u"2 DATEX"_s, u"2 DATE AN 3"_s) + s12,
        {u"DATEX"_s, u"DATE AN 3"_s, u"DATEX"_s},
        twoEvents(hidden, u"2 DATE AN 3"_s, u"2 DATE AN 3"_s) + s12, 0);
    row("empty value and none", twoEvents(hidden, u"2 DATE x"_s, u"2 DATE"_s) + s12,
        {u"x"_s, QString(), u"DATE"_s}, twoEvents(hidden, u"2 DATE "_s, u"2 DATE"_s) + s12, 0);
    row("date that becomes the same", twoEvents(hidden, u"2 DATE ABT 1805"_s, date) + s12,
        {u"ABT"_s, u"12 MAR"_s, u"DATE"_s}, twoEvents(flagged, date, date) + s12, 1);
    row("level of an event", twoEvents(hidden, date, date) + s12, {u"1"_s, u"4"_s, u"INDI.BIRT"_s},
        twoEvents(flagged, date, date, u"4 BIRT"_s) + s12, 1);
    row("event that reads as a root", twoEvents(hidden, date, date) + s12,
        {u"1"_s, u"0"_s, u"INDI.BIRT"_s}, twoEvents(flagged, date, date, u"0 BIRT"_s) + s12, 1);
    row("event that reads as a root in another record",
        QStringList{u" 0 @I1@ INDI"_s, u" 1 SEX M"_s, u" 1 BIRT"_s, u" 2 DATE 1805"_s,
                    u" 2 SOUR @S1@"_s, u" 0 @I2@ INDI"_s, u" 1 CHR"_s, u" 2 DATE 1805"_s,
                    u" 2 SOUR @S1@"_s}
            + s12,
        {u"1"_s, u"0"_s, u"INDI.BIRT"_s},
        QStringList{u"+0 @I1@ INDI"_s, u"+1 SEX M"_s, u"*0 BIRT"_s, u"+2 DATE 1805"_s,
                    u"+2 SOUR @S1@"_s, u"+0 @I2@ INDI"_s, u"*1 CHR"_s, u"+2 DATE 1805"_s,
                    u"+2 SOUR @S1@"_s}
            + s12,
        1);
    row("level of one citation", twoEvents(hidden, date, date) + s12,
        {u"2"_s, u"1"_s, u"INDI.BIRT.SOUR"_s},
        twoEvents(hidden, date, date, u"1 BIRT"_s, u"1 SOUR @S1@"_s) + s12, 0);
    row("id in the tag column", twoEvents(hidden, date, date, u"1 BIRT"_s, u"2 SOURX"_s) + s12,
        {u"SOURX"_s, u"SOUR @S1@"_s, u"SOURX"_s}, twoEvents(hidden, date, date) + s12, 0);
    row("id in two columns, which make one citation",
        twoEvents(hidden, date, u"2 DATE"_s, u"1 BIRT"_s, u"2 @S1@ @S1@"_s) + s12,
        {u"2"_s, u"2 SOUR"_s, u"ERREUR"_s},
        twoEvents(hidden, date, u"2 DATE"_s, u"1 BIRT"_s, u"2 SOUR @S1@ @S1@"_s) + s12, 0);
    row("sources whose id stands in the level column, so that a tag is looked for",
        born(1, false) + born(2, false, 7)
            + QStringList{u" 0 SOUR"_s, u" 1 TITL x"_s, u" 0 SOUR"_s, u" 1 TITL x"_s},
        {u"0"_s, u"0 @S1@"_s, u"SOUR"_s},
        born(1, true) + born(2, true, 7)
            + QStringList{u" 0 @S1@ SOUR"_s, u" 1 TITL x"_s, u" 0 @S1@ SOUR"_s, u" 1 TITL x"_s},
        1);
    row("person that reads as none", twoEvents(hidden, date, date) + s12,
        {u"0"_s, u"9"_s, u"INDI"_s},
        QStringList{u" 9 @I1@ INDI"_s} + twoEvents(hidden, date, date).mid(1) + s12, 0);
    row("last source that reads as none", twoEvents(hidden, date, date) + s12,
        {u"SOUR"_s, u"XSOUR"_s, u"SOUR"_s},
        QStringList(twoEvents(hidden, date, date) + s12).replaceInStrings(u"SOUR"_s, u"XSOUR"_s),
        0);
    // The id is the whole column, whatever it contains.
    const QStringList odd{u" 0 @S1@"_s, u" 1 TITL x"_s};
    const QStringList oddChanged{u" 0 @S1@ SOUR"_s, u" 1 TITL x"_s};
    const QStringList longId{u"@S1@"_s, u"@S1@ SOUR"_s, u"ERREUR"_s};
    row("source whose id does not fill its column",
        twoEvents(hidden, date, date) + odd + s12.mid(2), longId,
        twoEvents(hidden, date, date) + oddChanged + s12.mid(2), 0);
    row("source whose id does not fill its column, cited so",
        QStringList(twoEvents(hidden, date, date)).replaceInStrings(u"@S1@"_s, u"@S1@ SOUR"_s) + odd
            + s12.mid(2),
        longId,
        QStringList(twoEvents(flagged, date, date)).replaceInStrings(u"@S1@"_s, u"@S1@ SOUR"_s)
            + oddChanged + s12.mid(2),
        1);
    row("citation below a place",
        QStringList{u" 0 @I1@ INDI"_s, u" 1 EVEN"_s, u" 2 PLAC Paris"_s, u" 3 DATE 1805"_s,
                    u" 3 SOUR @S1@"_s, u" 2 PLAC Lyon"_s, u" 3 DATE 1805"_s, u" 3 SOUR @S1@"_s}
            + s12,
        {u"3"_s, u"2"_s, u"INDI.EVEN.PLAC.SOUR"_s},
        QStringList{u"+0 @I1@ INDI"_s, u"+1 EVEN"_s, u"*2 PLAC Paris"_s, u"+3 DATE 1805"_s,
                    u"+2 SOUR @S1@"_s, u"*2 PLAC Lyon"_s, u"+3 DATE 1805"_s, u"+2 SOUR @S1@"_s}
            + s12,
        1);
    // The event is the root itself, above which there is none.
    row("citations directly below the root",
        QStringList{u" 0 @I1@ INDI"_s, u" 1 SOUR @S1@"_s, u" 1 BIRT"_s, u" 2 DATE 1805"_s,
                    u" 0 @I2@ INDI"_s, u" 1 SOUR @S1@"_s, u" 1 DEAT"_s, u" 2 DATE 1805"_s}
            + s12,
        {u"1"_s, u"2"_s, u"INDI.SOUR"_s},
        QStringList{u"*0 @I1@ INDI"_s, u" 2 SOUR @S1@"_s, u" 1 BIRT"_s, u" 2 DATE 1805"_s,
                    u"*0 @I2@ INDI"_s, u" 2 SOUR @S1@"_s, u" 1 DEAT"_s, u" 2 DATE 1805"_s}
            + s12,
        1);
    row("citation directly below the root and one of an event",
        QStringList{u" 0 @I1@ INDI"_s, u" 1 BIRT"_s, u" 2 DATE 1805"_s, u" 1 SOUR @S1@"_s,
                    u" 0 @I2@ INDI"_s, u" 1 DEAT"_s, u" 2 DATE 1805"_s, u" 2 SOUR @S1@"_s}
            + s12,
        {u"1"_s, u"2"_s, u"INDI.SOUR"_s},
        QStringList{u"*0 @I1@ INDI"_s, u" 1 BIRT"_s, u" 2 DATE 1805"_s, u" 2 SOUR @S1@"_s,
                    u"+0 @I2@ INDI"_s, u"*1 DEAT"_s, u"+2 DATE 1805"_s, u"+2 SOUR @S1@"_s}
            + s12,
        1);
    // One record is the event of one pair and the record of another pair's event, in either order.
    for (const auto &[name, own, other] :
         {std::array{"record that is an event, then shown"_L1, "@S1@"_L1, "@S2@"_L1},
          std::array{"record that is shown, then an event"_L1, "@S2@"_L1, "@S1@"_L1}}) {
        const auto person = [&own = own, &other = other](const QString &signs, int number,
                                                         const QString &level) -> QStringList {
            return {signs.at(0) + u"0 @I%1@ INDI"_s.arg(number), signs.at(1) + "1 BIRT"_L1,
                    signs.at(2) + "2 DATE 1805"_L1, signs.at(2) + "2 SOUR "_L1 + other,
                    signs.at(2) + level + " SOUR "_L1 + own};
        };
        row(name.data(), person(u"   "_s, 1, u"1"_s) + person(u"   "_s, 2, u"1"_s) + sources(1, 3),
            {u"1"_s, u"2"_s, u"INDI.SOUR"_s},
            person(u"**+"_s, 1, u"2"_s) + person(u"**+"_s, 2, u"2"_s) + sources(1, 3), 2);
    }
}

void TstMultiuse::replacedTexts()
{
    QFETCH(QStringList, lines);
    QFETCH(QStringList, replacement);
    QFETCH(QStringList, rows);
    QFETCH(int, count);

    Review review(lines);
    change(&review.gedcom, replacement);
    const QList<QStringList> columns = review.columns();
    review.newJournal();
    review.filter();
    QCOMPARE(review.pictures(), rows);
    QCOMPARE(review.status(), concluded(count));
    QCOMPARE(review.columns(), columns);
    QCOMPARE(review.newJournal(), QStringList());
}

void TstMultiuse::nothingButShows()
{
    Review review(born(1, false) + born(2, false) + born(3, false, 2) + sources(1, 2));
    review.gedcom.filterSourceMultiUse(); // rows that are visible before stay visible
    QCOMPARE(review.pictures(),
             allShown(born(1, true) + born(2, true) + born(3, false, 2) + sources(1, 2)));

    TwItem *event = review.entry(u"1 BIRT"_s);
    QCOMPARE(event->background(0), QBrush(Qt::red, Qt::SolidPattern));
    QCOMPARE(event->background(1), QBrush());
    QCOMPARE(event->toolTip(0), u"ligne 4"_s);
    QVERIFY(review.tree.updatesEnabled());
}

void TstMultiuse::sectionNodesStay()
{
    Review review(
        born(1, false) + sources(1, 2)
        + QStringList{u" 0 @U1@ SUBN"_s, u" 1 NOTE x"_s, u" 0 @N1@ NOTE"_s, u" 1 CONT x"_s});
    review.filter();
    QCOMPARE(topRows(review.tree),
             QStringList({u"en-tête 0"_s, u"personnes 1"_s, u"familles 0"_s, u"sources 2"_s,
                          u"médias 0"_s, u"dépots 0"_s, u"notes 1"_s, u"hidden: 0 @U1@"_s}));
    QCOMPARE(review.status(), u"Recherche terminée. 0 occurences dédoublées."_s);
}

void TstMultiuse::manyCitationsOfOneSource()
{
    QStringList rows{u"+0 @I1@ INDI"_s, u"*1 BIRT"_s, u"+2 DATE 12 MAR 1805"_s};
    rows += QStringList(1000, u"+2 SOUR @S1@"_s);
    for (int i = 2; i <= 500; ++i)
        rows +=
            i % 2 == 0 ? born(i, true) : person(i, false, {u"2 DATE ABT 1805"_s, u"2 SOUR @S1@"_s});
    Review review(rows + sources(1, 2));
    review.filter();
    QCOMPARE(review.pictures(), rows + sources(1, 2));
    QCOMPARE(review.status(), u"Recherche terminée. 1249 occurences dédoublées."_s); // 999 + 250
}

void TstMultiuse::secondRun()
{
    const QStringList rows = born(1, true) + born(2, true) + sources(1, 2);
    Review review(rows);
    review.filter();
    review.filter();
    QCOMPARE(review.pictures(), rows);
    QCOMPARE(review.status(), concluded(1));

    // Nothing is remembered between calls, and red rows stay red.
    change(&review.gedcom, {u"INDI.NAME.GIVN"_s});
    change(&review.gedcom, {u"@S1@"_s, u"@S2@"_s, u"INDI.BIRT.SOUR"_s});
    review.filter();
    QStringList expected = born(1, false, 2) + born(2, false, 2) + sources(1, 2);
    expected.replaceInStrings(u" 1 BIRT"_s, u"#1 BIRT"_s);
    expected.replaceInStrings(u" 2 GIVN Jean"_s, u"-2 GIVN Jean"_s);
    QCOMPARE(review.pictures(), expected);
    QCOMPARE(review.status(), concluded(0));
}

void TstMultiuse::saved()
{
    Review review(born(1, true) + born(2, true) + sources(1, 2));
    compareSave(&review);
}

void TstMultiuse::frame()
{
    Review review(born(1, true) + born(2, true) + sources(1, 250));
    compareFrame(&review, Announced, concluded(1));
}

void TstMultiuse::progress_data()
{
    addProgressColumns();

    const QStringList nothing{u"events at -1"_s};
    QTest::newRow("no source") << 0 << QStringList() << -1 << nothing;
    QTest::newRow("one source") << 1 << QStringList() << -1 << nothing;
    QTest::newRow("100 sources, of which 99 are looked at")
        << 100 << QStringList() << -1 << nothing;
    QTest::newRow("101 sources") << 101 << QStringList{u"100 of 101"_s, u"events at 100"_s} << 100
                                 << QStringList{u"events at 100"_s, u"events at 100"_s};
    const QStringList twice{u"100 of 250"_s, u"events at 100"_s, u"200 of 250"_s,
                            u"events at 200"_s};
    QTest::newRow("250 sources") << 250 << twice << 200 << QStringList{u"events at 200"_s} + twice;
}

void TstMultiuse::progress()
{
    QFETCH(int, size);

    // Deleted sources and other records do not count.
    Review review(
        born(1, true) + sources(1, size)
        + QStringList{u"-0 @S999@ SOUR"_s, u" 1 TITL x"_s, u" 0 @SX@ SOUR"_s, u" 1 TITL x"_s});
    compareProgress(&review);
}

void TstMultiuse::texts()
{
    Review review(born(1, true) + born(2, true) + sources(1, 2));
    compareTranslation(&review);
}

void TstMultiuse::eventsBeforeTheLoop_data()
{
    QTest::addColumn<QStringList>("replacement"); // the arguments of change()
    QTest::addColumn<int>("count");

    QTest::newRow("nothing done") << QStringList{u"x"_s, u"y"_s, u"NONE"_s} << 1;
    QTest::newRow("one date replaced") << QStringList{u"ABT"_s, u"12 MAR"_s, u"DATE"_s} << 2;
    QTest::newRow("dates deleted") << QStringList{u"DATE"_s} << 0;
    QTest::newRow("citations of another source replaced")
        << QStringList{u"@S2@"_s, u"@S1@"_s, u"INDI.BIRT.SOUR"_s} << 2;
    // The lists exist already.
    QTest::newRow("citations deleted") << QStringList{u"INDI.BIRT.SOUR"_s} << 1;
    QTest::newRow("sources and citations deleted") << QStringList{u"SOUR"_s} << 1;
}

void TstMultiuse::eventsBeforeTheLoop()
{
    QFETCH(QStringList, replacement);
    QFETCH(int, count);

    Review review(born(1, true) + born(2, true) + born(3, false, 2)
                  + person(4, false, {u"2 DATE ABT 1805"_s, u"2 SOUR @S1@"_s}) + sources(1, 2));
    review.hideAll();
    QStringList seen;
    QMetaObject::invokeMethod(
        &review.progress,
        [&] {
            seen = review.statusAndBar();
            change(&review.gedcom, replacement);
        },
        Qt::QueuedConnection);
    review.gedcom.filterSourceMultiUse();
    QCOMPARE(seen, QStringList({Announced, u"-1 of 2"_s, u"bar shown"_s}));
    QCOMPARE(review.status(), concluded(count));
}

void TstMultiuse::documentChangedInTheMidst_data()
{
    QTest::addColumn<QStringList>("replacement"); // the arguments of change()
    QTest::addColumn<QString>("early"); // the signs of the births that cite source 99
    QTest::addColumn<QString>("late"); // and of those that cite source 100
    QTest::addColumn<int>("count");

    const auto row = [](const char *name, const QStringList &replacement, const QString &early,
                        const QString &late, int count) {
        QTest::newRow(name) << replacement << early << late << count;
    };
    // Source 99 is cited for 12 MAR 1805 twice and ABT 1805 once, source 100 the other way round.
    row("nothing", {u"x"_s, u"y"_s, u"NONE"_s}, u"** "_s, u"** "_s, 2);
    row("dates become the same", {u"ABT"_s, u"12 MAR"_s, u"DATE"_s}, u"** "_s, u"***"_s, 3);
    row("no dates any more", {u"DATE"_s, u"XDATE"_s, u"DATE"_s}, u"** "_s, u"   "_s, 1);
    row("levels of the dates", {u"2"_s, u"3"_s, u"DATE"_s}, u"** "_s, u"** "_s, 2);
    row("dates deleted", {u"DATE"_s}, u"** "_s, u"   "_s, 1);
    row("citations become those of the later source", {u"@S99@"_s, u"@S100@"_s, u"SOUR"_s},
        u"** "_s, u"  *"_s, 3);
    row("citations become those of the earlier source", {u"@S100@"_s, u"@S99@"_s, u"SOUR"_s},
        u"** "_s, u"  *"_s, 3);
    row("citations become those of another source", {u"@S100@"_s, u"@S500@"_s, u"INDI.BIRT.SOUR"_s},
        u"** "_s, u"   "_s, 1);
    // The lists exist already.
    row("citations deleted", {u"INDI.BIRT.SOUR"_s}, u"** "_s, u"** "_s, 2);
    row("sources and citations deleted", {u"SOUR"_s}, u"** "_s, u"** "_s, 2);
    row("tags of the citations", {u"SOUR"_s, u"XSOUR"_s, u"SOUR"_s}, u"** "_s, u"** "_s, 2);
}

void TstMultiuse::documentChangedInTheMidst()
{
    QFETCH(QStringList, replacement);
    QFETCH(QString, early);
    QFETCH(QString, late);
    QFETCH(int, count);

    const QString date = u"2 DATE 12 MAR 1805"_s;
    const QString about = u"2 DATE ABT 1805"_s;
    QStringList lines;
    int number = 0;
    for (const QString &eventDate : {date, date, about})
        lines += person(++number, false, {eventDate, u"2 SOUR @S99@"_s});
    // Sources 50 and 51 are cited there as well, earlier, and match nothing.
    lines += person(4, false, {about, u"2 SOUR @S100@"_s, u"2 SOUR @S50@"_s});
    lines += person(5, false, {about, u"2 SOUR @S100@"_s, u"2 SOUR @S51@"_s});
    lines += person(6, false, {date, u"2 SOUR @S100@"_s, u"2 SOUR @S50@"_s, u"2 SOUR @S51@"_s});
    Review review(lines + sources(1, 101));
    review.hideAll();
    atNextMove(&review.progress, [&] { change(&review.gedcom, replacement); });
    review.gedcom.filterSourceMultiUse();

    // A red birth is shown with its record, except for entries deleted meanwhile.
    QString red;
    QString shown;
    const QList<TwItem *> entries = review.entries();
    for (TwItem *twi : entries) {
        if (twi->getTag() == "BIRT"_L1)
            red += picture(twi).at(0);
        if (twi->getTag() == "SEX"_L1)
            shown += twi->isHidden() ? u' ' : u'*';
    }
    QCOMPARE(red, early + late);
    QCOMPARE(shown, early + late);
    QCOMPARE(review.status(), concluded(count));
}

void TstMultiuse::changedAndHiddenTwice()
{
    // Sources 100 and 200 are cited for dates that differ, are equal from the 100th source on, and
    // differ again from the 200th on; sources 1, 150 and 201 for dates that stay equal.
    const QStringList lines{u" 0 @I1@ INDI"_s,     u" 1 BIRT"_s,        u" 2 DATE 12 MAR 1805"_s,
                            u" 2 SOUR @S100@"_s,   u" 2 SOUR @S200@"_s, u" 1 CHR"_s,
                            u" 2 DATE ABT 1805"_s, u" 2 SOUR @S100@"_s, u" 2 SOUR @S200@"_s};
    const QStringList cited{u"2 DATE 1700"_s, u"2 SOUR @S1@"_s, u"2 SOUR @S150@"_s,
                            u"2 SOUR @S201@"_s};
    Review review(lines + person(2, false, cited) + person(3, false, cited) + sources(1, 202));
    review.hideAll();
    atNextMove(&review.progress, [&] {
        change(&review.gedcom, {u"ABT"_s, u"12 MAR"_s, u"DATE"_s});
        review.hideAll();
        atNextMove(&review.progress, [&] {
            change(&review.gedcom, {u"12 MAR"_s, u"ABT"_s, u"INDI.BIRT.DATE"_s});
            review.hideAll();
        });
    });
    review.gedcom.filterSourceMultiUse();
    // The dates have changed places.
    const QStringList events{u" 0 @I1@ INDI"_s,        u"#1 BIRT"_s,        u" 2 DATE ABT 1805"_s,
                             u" 2 SOUR @S100@"_s,      u" 2 SOUR @S200@"_s, u"#1 CHR"_s,
                             u" 2 DATE 12 MAR 1805"_s, u" 2 SOUR @S100@"_s, u" 2 SOUR @S200@"_s};
    QCOMPARE(review.pictures(),
             events + person(2, true, cited) + person(3, true, cited) + sources(1, 202));
    QCOMPARE(review.status(), concluded(4));
}

void TstMultiuse::rowsHiddenInTheMidst()
{
    // Source 1 is cited by the first two, source 100 by the last two.
    QStringList expected =
        born(1, false)
        + person(2, true,
                 {u"2 DATE 12 MAR 1805"_s, u"2 SOUR @S1@"_s, u"2 SOUR @S100@"_s, u"-2 NOTE x"_s})
        + born(3, true, 100) + sources(1, 101);
    expected = replaced(expected, u" 1 BIRT"_s, u"#1 BIRT"_s); // of the first person
    Review review(expected);
    review.hideAll();
    QStringList before;
    atNextMove(&review.progress, [&] {
        before = review.pictures().mid(0, 5);
        review.hideAll();
    });
    review.gedcom.filterSourceMultiUse();
    QCOMPARE(before, born(1, true).mid(0, 5));
    QCOMPARE(review.pictures(), expected);
    QCOMPARE(review.status(), concluded(2));
}

void TstMultiuse::generatedDocuments_data()
{
    addSeeds();
}

void TstMultiuse::generatedDocuments()
{
    QFETCH(uint, seed);

    QRandomGenerator random(seed);
    Review review(allHidden(generatedLines(&random)));
    PlainFilter plain(review.entries());
    compareWithPlainFilter(&review, &plain, &random, concluded, 3);
}

void TstMultiuse::checkBox()
{
    const ReviewSession session(
        {u"0 @I1@ INDI"_s, u"1 NAME Jean /DUPONT/"_s, u"1 BIRT"_s, u"2 DATE 12 MAR 1805"_s,
         u"2 SOUR @S1@"_s, u"1 NOTE x"_s, u"0 @I2@ INDI"_s, u"1 BIRT"_s, u"2 DATE 12 MAR 1805"_s,
         u"2 SOUR @S1@"_s, u"0 @S1@ SOUR"_s, u"1 DATE 1840"_s, u"0 @S2@ SOUR"_s, u"1 DATE 1840"_s});
    session.apply({u"gbDelTags"_s, u"leTagsToDel=NOTE"_s});
    const QStringList journal = session.journal();

    session.search(u"Jean"_s);
    QCOMPARE(session.status(), u"2/13 entrées affichées."_s);
    const QStringList filtered{u"+0 @I1@ INDI"_s,
                               u"+1 NAME Jean /DUPONT/"_s,
                               u"*1 BIRT"_s,
                               u"+2 DATE 12 MAR 1805"_s,
                               u"+2 SOUR @S1@"_s,
                               u"-1 NOTE x"_s,
                               u"+0 @I2@ INDI"_s,
                               u"*1 BIRT"_s,
                               u"+2 DATE 12 MAR 1805"_s,
                               u"+2 SOUR @S1@"_s,
                               u" 0 @S1@ SOUR"_s,
                               u" 1 DATE 1840"_s,
                               u" 0 @S2@ SOUR"_s,
                               u" 1 DATE 1840"_s};
    compareCheckBox(session, MultiUse, filtered, concluded(1));
    QCOMPARE(session.journal(), journal);
}

void TstMultiuse::twoBoxes()
{
    const QStringList doubled{u"0 @I1@ INDI"_s,     u"1 SEX M"_s,     u"1 BIRT"_s,
                              u"2 DATE ABT 1840"_s, u"2 SOUR @S1@"_s, u"1 CHR"_s,
                              u"2 DATE ABT 1840"_s, u"2 SOUR @S1@"_s};
    const QStringList contradicted{u"0 @I2@ INDI"_s, u"1 DEAT"_s, u"2 DATE ABT 1850"_s,
                                   u"2 SOUR @S1@"_s};
    const QStringList others{u"0 @S1@ SOUR"_s, u"1 DATE 1840"_s, u"0 @S2@ SOUR"_s,
                             u"1 DATE 1840"_s};
    const QStringList all = doubled + contradicted + others;
    const ReviewSession session(all);

    // The box checked last decides; unchecking either one shows everything.
    session.toggle(MultiUse);
    QCOMPARE(shownIn(session), doubled);
    QCOMPARE(session.status(), u"Recherche terminée. 1 occurences dédoublées."_s);
    session.toggle(DateDiff);
    QCOMPARE(shownIn(session), contradicted);
    QCOMPARE(session.status(), u"1 incohérences sources / évènements détectées."_s);
    session.toggle(MultiUse);
    QCOMPARE(shownIn(session), all);
    QVERIFY(session.isChecked(DateDiff));
    session.toggle(MultiUse);
    QCOMPARE(shownIn(session), doubled);
    session.toggle(DateDiff);
    QCOMPARE(shownIn(session), all);
    QVERIFY(session.isChecked(MultiUse));
    session.toggle(MultiUse);
    QCOMPARE(shownIn(session), all);

    // Both have left their red rows.
    QStringList red;
    const QList<TwItem *> entries = session.entries();
    for (const TwItem *twi : entries) {
        if (twi->background(0) == QBrush(Qt::red, Qt::SolidPattern))
            red += lineText(twi);
    }
    QCOMPARE(red, QStringList({u"1 BIRT"_s, u"1 CHR"_s, u"2 SOUR @S1@"_s}));
}

void TstMultiuse::everyStateButUncheckedFilters()
{
    compareBoxStates("on_cbSourceMultiUse_stateChanged");
}

void TstMultiuse::uncheckedInTheMidst()
{
    const QStringList lines = doubledEarlyAndLate();
    const ReviewSession session(lines);
    QString status;
    bool wasShown = false;
    atNextMove(session.progress(), [&] {
        status = session.status();
        wasShown = session.progress()->isVisible();
        session.toggle(MultiUse);
    });
    session.toggle(MultiUse);
    QCOMPARE(status, Announced);
    QVERIFY(wasShown);
    QVERIFY(!session.isChecked(MultiUse));
    QCOMPARE(session.status(), u"Recherche terminée. 2 occurences dédoublées."_s);
    // Everything is shown, and the later births have been found.
    QCOMPARE(shownIn(session), lines);
    QCOMPARE(session.pictures().filter(u"BIRT"_s),
             QStringList({u"*1 BIRT"_s, u"*1 BIRT"_s, u"*1 BIRT"_s, u"*1 BIRT"_s, u"+1 BIRT"_s}));
}

void TstMultiuse::otherFilterInTheMidst()
{
    const QStringList lines = doubledEarlyAndLate();
    const ReviewSession session(lines);
    QString status;
    atNextMove(session.progress(), [&] {
        session.toggle(DateDiff);
        status = session.status();
    });
    session.toggle(MultiUse);
    QCOMPARE(status, u"3 incohérences sources / évènements détectées."_s);
    QCOMPARE(session.status(), u"Recherche terminée. 2 occurences dédoublées."_s);
    // It has hidden the rows of source 1; those of source 100 are added to what it shows.
    const QStringList contradicted{u"0 @I5@ INDI"_s, u"1 NAME Jean /DUPONT/"_s, u"1 BIRT"_s,
                                   u"2 DATE 12 MAR 1805"_s, u"2 SOUR @S101@"_s};
    QCOMPARE(shownIn(session), lines.mid(14, 14) + contradicted);
}

VARLUNE_TEST_MAIN(TstMultiuse)
#include "tst_multiuse.moc"
