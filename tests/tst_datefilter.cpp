#include "boxes.h"
#include "document.h"
#include "reviewing.h"
#include "testmain.h"

#include "gedcom.h"
#include "twitem.h"

#include <QBrush>
#include <QHash>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString Announced = u"Recherche des incohérences sources / évènements"_s;

QString concluded(qsizetype count)
{
    return QString::number(count) + u" incohérences sources / évènements détectées."_s;
}

/// Turns the dates of " | 12 MAR 1805 | 1840" into the text of the tool tip.
QStringList withToolTips(QStringList pictures)
{
    for (QString &line : pictures) {
        const QStringList parts = line.split(u" | "_s);
        if (parts.size() == 3)
            line = parts.at(0) + u" | Date évènement : "_s + parts.at(1) + u"\r\nDate source : "_s
                 + parts.at(2);
    }
    return pictures;
}

/// A document to be filtered.
class Review : public ReviewedDocument
{
public:
    using ReviewedDocument::ReviewedDocument;

    void filter() override
    {
        hideAll();
        gedcom.filterSourceDateDiff();
    }

    /// The pictures of the red rows, each prefixed with its line number and ": ".
    [[nodiscard]] QStringList redRows() const
    {
        QStringList result;
        const QList<TwItem *> tabTwi = entries();
        for (TwItem *twi : tabTwi) {
            if (twi->background(0) != QBrush())
                result += twi->getNumLineGedFile() + ": "_L1 + picture(twi);
        }
        return result;
    }
};

/// A hidden source with one date.
QStringList source(int number, const QString &date)
{
    return {u" 0 @S%1@ SOUR"_s.arg(number), " 1 DATE "_L1 + date};
}

// Building blocks for the rows about citations: two sources, and a birth that cites the first.
const QStringList Source1840 = source(1, u"1840"_s);
const QStringList Source1805 = source(2, u"1805"_s);
const QString BirthDate = u"+2 DATE 12 MAR 1805"_s;
const QString HiddenBirthDate = u" 2 DATE 12 MAR 1805"_s;
const QString Cited = u"*2 SOUR @S1@ | 12 MAR 1805 | 1840"_s;
const QString HiddenCited = u" 2 SOUR @S1@"_s;

// Lines of a family, and persons that they name or do not name.
const QString HusbandLine = u" 1 HUSB @I1@"_s;
const QString WifeLine = u" 1 WIFE @I2@"_s;
const QStringList HiddenHusband{u" 0 @I1@ INDI"_s, u" 1 NAME Jean /DUPONT/"_s, u" 1 FAMS @F1@"_s};
const QStringList Single{u" 0 @I1@ INDI"_s, u" 1 NAME Jean /DUPONT/"_s, u" 1 SEX M"_s};
const QStringList OtherPerson{u" 0 @I2@ INDI"_s, u" 1 NAME Anne /MARTIN/"_s, u" 1 FAMS @F1@"_s};

/// Adds the columns of citationRow().
void addCitationColumns()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("rows");
}

/// A document in pictures, and how many of its citations contradict their source.
void citationRow(const char *name, int count, const QStringList &rows)
{
    QTest::newRow(name) << count << rows;
}

/// A person with one event, whose lines are \p event; the other lines are shown or hidden.
QStringList birth(bool shown, const QStringList &event)
{
    const QChar sign = shown ? u'+' : u' ';
    return QStringList{sign + "0 @I1@ INDI"_L1, sign + "1 NAME Jean /DUPONT/"_L1,
                       sign + "1 BIRT"_L1}
         + event;
}

/// A family of 1805 that cites a source of 1840, shown or hidden. \p others are its other lines.
QStringList family(bool shown, const QStringList &others, const QString &id = u"@F1@"_s)
{
    const QChar sign = shown ? u'+' : u' ';
    return QStringList{sign + "0 "_L1 + id + " FAM"_L1} + others
         + QStringList{sign + "1 MARR"_L1, sign + "2 DATE 5 MAY 1805"_L1, sign + "2 PLAC Lyon"_L1,
                       shown ? u"*2 SOUR @S1@ | 5 MAY 1805 | 1840"_s : u" 2 SOUR @S1@"_s}
         + QStringList{u" 1 DIV"_s};
}

/// A birth of 12 MAR 1805 that cites alternately source 2, of 1840, and source 1, of 1805, from
/// line 5 on. Another source 2, of 1850, comes last.
QStringList citedInTurn(int citations)
{
    QStringList lines = birth(false, {u" 2 DATE 12 MAR 1805"_s});
    for (int i = 1; i <= citations; ++i)
        lines += i % 2 == 1 ? u" 2 SOUR @S2@"_s : u" 2 SOUR @S1@"_s;
    return lines + source(2, u"1840"_s) + source(1, u"1805"_s) + source(2, u"1850"_s);
}

/// The filter in its simplest form: every list is searched from its beginning, using only the texts
/// and the marks of the rows.
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
        static const QRegularExpression idSour(u"^0 @S[0-9]+@ SOUR$"_s);
        static const QRegularExpression idIndi(u"^0 @I[0-9]+@ INDI$"_s);
        static const QRegularExpression idFam(u"^0 @F[0-9]+@ FAM$"_s);
        bool deleted = false;
        for (TwItem *twi : std::as_const(m_entries)) {
            if (twi->text(0) == "0"_L1)
                deleted = twi->isToDelete();
            if (!deleted)
                m_shown.remove(twi);
        }
        m_count = 0;
        m_sources = records(idSour);
        m_indis = records(idIndi);
        m_families = records(idFam);
        const QList<TwItem *> roots = m_indis + m_families;
        for (TwItem *root : roots) {
            const QList<TwItem *> below = descendants(root);
            for (TwItem *twi : below) {
                if (line(twi).startsWith("2 SOUR @S"_L1))
                    judge(root, twi);
            }
        }
    }

    [[nodiscard]] int count() const
    {
        return m_count;
    }
    /// The contradictions of families that are shown at the husband.
    [[nodiscard]] int links() const
    {
        return m_links;
    }
    /// Those that are shown at the family.
    [[nodiscard]] int familyCitations() const
    {
        return m_familyCitations;
    }

    [[nodiscard]] QStringList pictures() const
    {
        QStringList result;
        for (TwItem *twi : m_entries)
            result += picture(twi, m_shown.contains(twi) && !twi->isToDelete(),
                              m_toolTips.contains(twi), m_toolTips.value(twi));
        return result;
    }

private:
    static QString line(const QTreeWidgetItem *twi)
    {
        return columnTexts(twi).join(u' ');
    }

    [[nodiscard]] QList<TwItem *> records(const QRegularExpression &rx) const
    {
        QList<TwItem *> result;
        for (TwItem *twi : m_entries) {
            if (!twi->isToDelete() && rx.match(line(twi)).hasMatch())
                result += twi;
        }
        return result;
    }
    [[nodiscard]] QList<TwItem *> descendants(TwItem *root) const
    {
        QList<TwItem *> result;
        for (qsizetype i = m_entries.indexOf(root) + 1;
             i < m_entries.size() && m_entries.at(i)->text(0) != "0"_L1; ++i) {
            if (!m_entries.at(i)->isToDelete())
                result += m_entries.at(i);
        }
        return result;
    }
    static QList<TwItem *> children(QTreeWidgetItem *parent)
    {
        QList<TwItem *> result;
        for (int i = 0; i < parent->childCount(); ++i) {
            auto *twi = static_cast<TwItem *>(parent->child(i));
            if (!twi->isToDelete())
                result += twi;
        }
        return result;
    }

    /// The value of the first date among the entries, empty if there is none.
    static QString yearText(const QList<TwItem *> &entries)
    {
        static const QRegularExpression date(u"^[0-9] DATE"_s);
        static const QRegularExpression year(u"1[0-9]{3}$"_s);
        for (const TwItem *twi : entries) {
            if (!date.match(line(twi)).hasMatch())
                continue;
            const QStringList texts = columnTexts(twi);
            for (const QString &text : texts) {
                if (year.match(text).hasMatch())
                    return text;
            }
            return {};
        }
        return {};
    }

    void judge(TwItem *root, TwItem *citation)
    {
        static const QRegularExpression period(u"^FROM (1[0-9]{3}) TO (1[0-9]{3})$"_s);
        static const QRegularExpression year(u" (1[0-9]{3})$"_s);
        static const QRegularExpression id(u"^@S[0-9]+@$"_s);
        const QString evtDate = yearText(children(citation->parent()));
        int start = 0;
        int end = 0;
        if (const auto match = period.match(evtDate); match.hasMatch()) {
            start = match.captured(1).toInt();
            end = match.captured(2).toInt();
        } else if (const auto last = year.match(evtDate); last.hasMatch()) {
            start = end = last.captured(1).toInt();
        }
        const QStringList ids = columnTexts(citation).filter(id);
        if (end == 0 || ids.isEmpty())
            return;
        for (TwItem *sour : std::as_const(m_sources)) {
            if (!line(sour).contains(ids.constFirst()))
                continue;
            const QString text = yearText(descendants(sour));
            const int sourDate = text.toInt();
            if (!text.isEmpty() && (sourDate < start || sourDate > end))
                flag(root, citation, evtDate, sourDate);
            return;
        }
    }

    [[nodiscard]] TwItem *linkOfHusband(TwItem *root) const
    {
        const QList<TwItem *> lines = descendants(root);
        for (const TwItem *husb : lines) {
            if (!line(husb).contains("1 HUSB @I"_L1))
                continue;
            const QString id = columnTexts(husb).filter(u"@I"_s).constFirst();
            for (TwItem *indi : m_indis) {
                if (!columnTexts(indi).contains(id))
                    continue;
                const QList<TwItem *> below = descendants(indi);
                for (TwItem *twi : below) {
                    if (columnTexts(twi).contains(root->text(1)))
                        return twi;
                }
                return nullptr;
            }
            return nullptr;
        }
        return nullptr;
    }

    void flag(TwItem *root, TwItem *twi, const QString &evtDate, int sourDate)
    {
        static const QRegularExpression name(u"^.*/.*/$"_s);
        ++m_count;
        if (m_families.contains(root)) {
            TwItem *link = linkOfHusband(root);
            ++(link ? m_links : m_familyCitations);
            if (link)
                twi = link;
        }
        m_toolTips[twi] =
            u"Date évènement : "_s + evtDate + u"\r\nDate source : "_s + QString::number(sourDate);
        m_shown += twi;
        auto *above = static_cast<TwItem *>(twi->parent());
        while (above->text(0) != "0"_L1) {
            const QList<TwItem *> siblings = children(above);
            m_shown += QSet<TwItem *>(siblings.begin(), siblings.end());
            m_shown += above;
            above = static_cast<TwItem *>(above->parent());
        }
        m_shown += above;
        const QList<TwItem *> lines = descendants(above);
        for (TwItem *below : lines) {
            if (name.match(line(below)).hasMatch()) {
                m_shown += below;
                return;
            }
        }
    }

    QList<TwItem *> m_entries;
    QList<TwItem *> m_sources;
    QList<TwItem *> m_indis;
    QList<TwItem *> m_families;
    QSet<TwItem *> m_shown;
    QHash<TwItem *, QString> m_toolTips; // of all runs
    int m_count = 0; // of the last run
    int m_links = 0;
    int m_familyCitations = 0;
};

/// Records of all kinds in any order; which sources are contradicted is left to chance.
QStringList generatedLines(QRandomGenerator *random)
{
    const auto below = [random](int limit) { return random->bounded(limit); };
    const auto oneOf = [&below](const QStringList &texts) -> QString {
        return texts.at(below(int(texts.size())));
    };
    const auto id = [&below](char letter, int limit) -> QString {
        return u"@%1%2@"_s.arg(QLatin1Char(letter)).arg(1 + below(limit));
    };
    const QStringList eventDates{u" 12 MAR 1800"_s,
                                 u" ABT 1801"_s,
                                 u" FROM 1800 TO 1802"_s,
                                 u" FROM 1801 TO 1803"_s,
                                 u" BET 1799 AND 1802"_s,
                                 u" 1801"_s,
                                 u" FROM 1802 TO 1800"_s,
                                 u" 3 MAY 2001"_s,
                                 u" 5 MAY 1802"_s,
                                 u" 5 MAY 1802 "_s,
                                 u"  1803"_s,
                                 QString()};
    const QStringList sourceDates{u" 1800"_s,     u" 1801"_s, u" 1802"_s,  u" 1802"_s, u" 1803"_s,
                                  u" JAN 1801"_s, u" 2001"_s, u" 1801 "_s, QString()};
    const auto events = [&](const QStringList &tags) -> QStringList {
        QStringList lines;
        for (int i = below(5); i > 0; --i) {
            lines += "1 "_L1 + oneOf(tags);
            if (below(4) > 0)
                lines += "2 DATE"_L1 + oneOf(eventDates);
            for (int j = below(9); j > 0; --j) {
                switch (below(6)) {
                case 0:
                    lines += "2 DATE"_L1 + oneOf(eventDates);
                    break;
                case 1:
                    lines += u"2 PLAC Paris"_s;
                    lines += "3 DATE"_L1 + oneOf(eventDates);
                    lines += "3 SOUR "_L1 + id('S', 30);
                    break;
                case 2:
                    lines += oneOf({u"2 SOUR @SX@"_s, u"2 SOUR @S1@ p. 3"_s, u"2 NOTE /x/"_s});
                    break;
                default:
                    lines += "2 SOUR "_L1 + id('S', 30);
                    lines += u"3 PAGE 12"_s;
                }
            }
        }
        return lines;
    };

    QList<QStringList> records;
    const auto add = [&](const QStringList &record) {
        records.insert(below(int(records.size()) + 1), record);
    };
    for (int i = 0; i < 40; ++i) {
        QStringList lines{"0 "_L1 + id('S', 30) + " SOUR"_L1, u"1 TITL acte"_s};
        for (int j = below(4); j > 0; --j) {
            if (below(2) == 0)
                lines += "1 DATE"_L1 + oneOf(sourceDates);
            else
                lines += {u"1 DATA"_s, u"2 EVEN BIRT"_s, "3 DATE"_L1 + oneOf(sourceDates)};
        }
        add(lines);
    }
    for (int i = 0; i < 60; ++i) {
        QStringList lines{"0 "_L1 + id('I', 20) + " INDI"_L1};
        lines += oneOf({u"1 NAME Jean /DUPONT/"_s, u"1 NAME Jean DUPONT"_s, u"1 SEX M"_s});
        lines += events({u"BIRT"_s, u"DEAT"_s, u"OCCU tailleur"_s});
        for (int j = below(7); j > 0; --j)
            lines += (j == 2 ? "1 FAMC "_L1 : "1 FAMS "_L1) + id('F', 4);
        add(lines);
    }
    for (int i = 0; i < 40; ++i) {
        QStringList lines{"0 "_L1 + id('F', 4) + " FAM"_L1};
        const QString husband =
            oneOf({u"1 HUSB "_s, u"1 HUSB "_s, u"1 WIFE "_s, u"1 NOTE 1 HUSB "_s});
        lines += husband + id('I', 24);
        lines += events({u"MARR"_s, u"DIV"_s, u"EVEN"_s});
        lines += "1 HUSB "_L1 + id('I', 24);
        add(lines);
    }
    QStringList lines;
    for (const QStringList &record : std::as_const(records))
        lines += record;
    return lines;
}

} // namespace

/// The filter for sources whose date is not that of the event.
class TstDatefilter : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void eventDates_data();
    void eventDates();
    void sourceDates_data();
    void sourceDates();
    void events_data();
    void events();
    void citations_data();
    void citations();
    void sources_data();
    void sources();
    void names_data();
    void names();
    void husbands_data();
    void husbands();
    void families_data();
    void families();
    void replacedTexts_data();
    void replacedTexts();
    void nothingButShows();
    void sectionNodesStay();
    void manyCitationsOfOneEvent();
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
    void familyChangedInTheMidst_data();
    void familyChangedInTheMidst();
    void personsComeBeforeFamilies();
    void recordLosesItsRootInTheMidst();
    void changedAndHiddenTwice();
    void rowsHiddenInTheMidst();
    void generatedDocuments_data();
    void generatedDocuments();
    void checkBox();
    void everyStateButUncheckedFilters();
    void uncheckedInTheMidst();

private:
    /// Filters the document of a citationRow() and compares.
    void compareCitations();

    AnsweredBoxes m_boxes; // none is expected; an unanswered one would block the test for ever
};

void TstDatefilter::cleanup()
{
    QCOMPARE(m_boxes.texts(), QStringList());
}

void TstDatefilter::eventDates_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QList<int>>("years"); // of the sources
    QTest::addColumn<QList<int>>("disagreeing");

    const auto row = [](const char *name, const QString &value, const QList<int> &years,
                        const QList<int> &disagreeing) {
        QTest::newRow(name) << value << years << disagreeing;
    };
    const QList<int> none;
    const QList<int> around1805{1804, 1805, 1806};
    const QList<int> but1805{1804, 1806};
    row("period", u"FROM 1800 TO 1810"_s, {1799, 1800, 1805, 1810, 1811}, {1799, 1811});
    row("day", u"12 MAR 1805"_s, around1805, but1805);
    row("about a year", u"ABT 1805"_s, around1805, but1805);
    row("between two years, the last counts", u"BET 1800 AND 1810"_s,
        {1799, 1800, 1805, 1809, 1810, 1811}, {1799, 1800, 1805, 1809, 1811});
    row("period that begins on a day, the last year counts", u"FROM 1 JAN 1800 TO 1810"_s,
        {1799, 1800, 1805, 1809, 1810, 1811}, {1799, 1800, 1805, 1809, 1811});
    row("period without an end", u"FROM 1800"_s, {1799, 1800, 1801}, {1799, 1801});
    row("bare year", u"1805"_s, around1805, none);
    row("year behind 1999", u"12 MAR 2005"_s, {1005, 1805, 1999}, none);
    row("period from its end to its start", u"FROM 1810 TO 1800"_s, {1799, 1800, 1805, 1810, 1811},
        {1799, 1800, 1805, 1810, 1811});

    row("period of one year", u"FROM 1805 TO 1805"_s, around1805, but1805);
    row("longest period", u"FROM 1000 TO 1999"_s, {999, 1000, 1500, 1999, 2000}, none);
    row("period that begins before 1000", u"FROM 999 TO 1810"_s, {1800, 1810, 1811}, {1800, 1811});
    row("period that begins behind 1999", u"FROM 2000 TO 1810"_s, {1810, 1811}, {1811});
    row("period that ends behind 1999", u"FROM 1800 TO 2000"_s, {1799, 1800}, none);
    row("period that ends on a day", u"FROM 1800 TO 31 DEC 1810"_s, {1800, 1810}, {1800});
    row("period in lower case", u"from 1800 to 1810"_s, {1800, 1810}, {1800});
    row("period with a word in front", u"INT FROM 1800 TO 1810"_s, {1800, 1810}, {1800});
    row("period with a blank in front", u" FROM 1800 TO 1810"_s, {1800, 1810}, {1800});
    row("period with two blanks", u"FROM  1800 TO 1810"_s, {1800, 1810}, {1800});
    row("period with a blank behind", u"FROM 1800 TO 1810 "_s, {1799, 1811}, none);
    row("end of a period", u"TO 1805"_s, around1805, but1805);
    row("before a year", u"BEF 1805"_s, around1805, but1805);
    row("another calendar", u"@#DJULIAN@ 5 MAR 1805"_s, around1805, but1805);
    row("two years", u"1800 1805"_s, around1805, but1805);
    row("year 999", u"12 MAR 999"_s, {998, 1000, 1999}, none);
    row("year 1000", u"1 JAN 1000"_s, {999, 1000, 1001}, {1001});
    row("year 1999", u"31 DEC 1999"_s, {1998, 1999, 2000}, {1998});
    row("year 2000", u"1 JAN 2000"_s, {1000, 1999, 2000}, none);
    row("year with a blank in front", u" 1805"_s, around1805, but1805);
    row("blank behind the year", u"12 MAR 1805 "_s, around1805, none);
    row("text behind the year", u"12 MAR 1805 ?"_s, around1805, none);
    row("year in brackets", u"(12 MAR 1805)"_s, around1805, none);
    row("double year", u"12 MAR 1804/1805"_s, around1805, none);
    row("five digits", u"12 MAR 11805"_s, around1805, none);
    row("no blank", u"MAR1805"_s, around1805, none);
    row("tab for a blank", u"MAR\t1805"_s, around1805, none);
    row("placeholders", u"%2 %1 %3 1805"_s, around1805, but1805);
    row("no value", QString(), around1805, none);
}

void TstDatefilter::eventDates()
{
    QFETCH(QString, value);
    QFETCH(QList<int>, years);
    QFETCH(QList<int>, disagreeing);

    // A person for each source.
    QStringList expected;
    QStringList sources;
    for (int i = 0; i < int(years.size()); ++i) {
        const bool flagged = disagreeing.contains(years.at(i));
        const QString shown = flagged ? u"+"_s : u" "_s;
        const QString year = QString::number(years.at(i));
        expected += shown + u"0 @I%1@ INDI"_s.arg(i + 1);
        expected += shown + u"1 NAME Jean /DUPONT/"_s;
        expected += shown + u"1 BIRT"_s;
        expected += shown + u"2 DATE"_s + (value.isEmpty() ? value : u' ' + value);
        expected += (flagged ? u"*2 SOUR @S%1@"_s : u" 2 SOUR @S%1@"_s).arg(i + 1)
                  + (flagged ? " | "_L1 + value + " | "_L1 + year : QString());
        sources += source(i + 1, year);
    }
    expected += sources;
    Review review(expected);
    review.filter();
    QCOMPARE(review.pictures(), withToolTips(expected));
    QCOMPARE(review.status(), concluded(disagreeing.size()));
}

void TstDatefilter::sourceDates_data()
{
    QTest::addColumn<QStringList>("lines"); // below the source's root
    QTest::addColumn<QString>("sourDate"); // as the tool tip has it; empty if nothing is flagged

    const auto row = [](const char *name, const QStringList &lines, const QString &sourDate) {
        QTest::newRow(name) << lines << sourDate;
    };
    const QString none;
    row("year of the event", {u"1 DATE 1805"_s}, none);
    row("year before", {u"1 DATE 1804"_s}, u"1804"_s);
    row("year behind", {u"1 DATE 1806"_s}, u"1806"_s);
    row("first year", {u"1 DATE 1000"_s}, u"1000"_s);
    row("last year", {u"1 DATE 1999"_s}, u"1999"_s);
    row("year before 1000", {u"1 DATE 999"_s}, none);
    row("year behind 1999", {u"1 DATE 2000"_s}, none);
    row("month of the same year", {u"1 DATE JAN 1805"_s}, u"0"_s);
    row("day of the event", {u"1 DATE 12 MAR 1805"_s}, u"0"_s);
    row("about the same year", {u"1 DATE ABT 1805"_s}, u"0"_s);
    row("period", {u"1 DATE FROM 1800 TO 1810"_s}, u"0"_s);
    row("double year", {u"1 DATE 1804/1805"_s}, u"0"_s);
    row("month of a year behind 1999", {u"1 DATE JAN 2005"_s}, none);
    row("blank in front", {u"1 DATE  1805"_s}, none);
    row("blank in front of another year", {u"1 DATE  1840"_s}, u"1840"_s);
    row("blank behind", {u"1 DATE 1840 "_s}, none);
    row("text behind", {u"1 DATE 1840 ?"_s}, none);
    row("five digits", {u"1 DATE 11805"_s}, u"11805"_s);
    row("zeros in front", {u"1 DATE 001805"_s}, none);
    row("minus in front", {u"1 DATE -1805"_s}, u"-1805"_s);
    row("more than a number can hold", {u"1 DATE 99999999991805"_s}, u"0"_s);
    row("no value", {u"1 DATE"_s}, none);
    row("no date", {u"1 TITL registre de 1840"_s}, none);
    row("year in the tag", {u"1 DATE1805"_s}, u"0"_s);
    row("tag that begins like it", {u"1 DATES 1840"_s}, u"1840"_s);
    row("tag that ends like it", {u"1 _DATE 1840"_s}, none);

    row("date below", {u"1 DATA"_s, u"2 EVEN BIRT"_s, u"3 DATE 1840"_s, u"1 TITL x"_s}, u"1840"_s);
    row("date far below", {u"1 A"_s, u"2 B"_s, u"3 C"_s, u"4 D"_s, u"5 DATE 1840"_s}, u"1840"_s);
    row("first date agrees", {u"1 DATE 1805"_s, u"1 DATE 1840"_s}, none);
    row("first date disagrees", {u"1 DATE 1840"_s, u"1 DATE 1805"_s}, u"1840"_s);
    row("first date has no year", {u"1 DATE inconnue"_s, u"1 DATE 1840"_s}, none);
    row("first date stands below", {u"1 DATA"_s, u"2 DATE 1804"_s, u"1 DATE 1805"_s}, u"1804"_s);
    row("first date deleted", {u"-1 DATE 1805"_s, u"1 DATE 1840"_s}, u"1840"_s);
    row("every date deleted", {u"-1 DATE 1840"_s, u"1 TITL x"_s}, none);
    row("date below a deleted line", {u"-1 DATA"_s, u"2 DATE 1840"_s}, u"1840"_s);
}

void TstDatefilter::sourceDates()
{
    QFETCH(QStringList, lines);
    QFETCH(QString, sourDate);

    const bool flagged = !sourDate.isEmpty();
    QStringList expected = birth(
        flagged, {flagged ? u"+2 DATE 12 MAR 1805"_s : u" 2 DATE 12 MAR 1805"_s,
                  flagged ? u"*2 SOUR @S1@ | 12 MAR 1805 | "_s + sourDate : u" 2 SOUR @S1@"_s});
    expected += u" 0 @S1@ SOUR"_s;
    for (const QString &line : std::as_const(lines))
        expected += line.startsWith(u'-') ? line : u' ' + line;
    Review review(expected);
    review.filter();
    QCOMPARE(review.pictures(), withToolTips(expected));
    QCOMPARE(review.status(), concluded(flagged ? 1 : 0));
}

void TstDatefilter::compareCitations()
{
    QFETCH(int, count);
    QFETCH(QStringList, rows);

    Review review(rows);
    const QList<QStringList> columns = review.columns();
    review.filter();
    QCOMPARE(review.pictures(), withToolTips(rows));
    QCOMPARE(review.status(), concluded(count));
    QCOMPARE(review.columns(), columns);
    QCOMPARE(review.newJournal(), QStringList());
}

void TstDatefilter::events_data()
{
    addCitationColumns();

    citationRow("one of two events", 1,
                {u" 0 HEAD"_s,
                 u" 1 CHAR UTF-8"_s,
                 u"+0 @I1@ INDI"_s,
                 u"+1 NAME Jean /DUPONT/"_s,
                 u" 2 GIVN Jean"_s,
                 u" 1 SEX M"_s,
                 u"+1 BIRT"_s,
                 BirthDate,
                 u"+2 PLAC Paris"_s,
                 u" 3 MAP"_s,
                 Cited,
                 u" 3 PAGE 12"_s,
                 u"+2 NOTE note"_s,
                 u" 1 DEAT"_s,
                 u" 2 DATE 3 APR 1840"_s,
                 u" 2 SOUR @S1@"_s,
                 u" 0 @I2@ INDI"_s,
                 u" 1 NAME Anne /MARTIN/"_s,
                 u" 0 @S1@ SOUR"_s,
                 u" 1 DATE 1840"_s});
    citationRow("nothing cited", 0, birth(false, {HiddenBirthDate}) + Source1840);
    citationRow(
        "several citations of one event", 2,
        birth(true, {BirthDate, Cited, u"+2 SOUR @S2@"_s, u"*2 SOUR @S3@ | 12 MAR 1805 | 0"_s})
            + Source1840 + Source1805 + source(3, u"JAN 1805"_s));
    citationRow("one source cited twice", 2, birth(true, {Cited, BirthDate, Cited}) + Source1840);
    citationRow("several events and persons", 3,
                birth(true, {BirthDate, Cited, u"+1 DEAT"_s, u"+2 DATE ABT 1850"_s,
                             u"*2 SOUR @S1@ | ABT 1850 | 1840"_s, u" 1 BURI"_s,
                             u" 2 DATE ABT 1840"_s, u" 2 SOUR @S1@"_s})
                    + Source1840
                    + QStringList{u"+0 @I2@ INDI"_s, u"+1 NAME Anne /MARTIN/"_s, u"+1 BIRT"_s,
                                  BirthDate, Cited});

    // The event.
    citationRow("first date of the event", 1,
                birth(true, {u"+2 DATE ABT 1805"_s, u"*2 SOUR @S1@ | ABT 1805 | 1840"_s,
                             u"+2 DATE ABT 1840"_s})
                    + Source1840);
    citationRow("first date of the event has no year", 0,
                birth(false, {u" 2 DATE inconnue"_s, HiddenBirthDate, HiddenCited}) + Source1840);
    citationRow("first date of the event deleted", 1,
                birth(true, {u"-2 DATE ABT 1840"_s, BirthDate, Cited}) + Source1840);
    citationRow("every date of the event deleted", 0,
                birth(false, {u"-2 DATE 12 MAR 1805"_s, HiddenCited}) + Source1840);
    citationRow("date below the place", 0,
                birth(false, {u" 2 PLAC Paris"_s, u" 3 DATE ABT 1805"_s, HiddenCited})
                    + Source1840);
    citationRow("date of another event", 0,
                birth(false, {HiddenBirthDate, u" 1 DEAT"_s, HiddenCited}) + Source1840);
    citationRow("tag that begins like a date", 1,
                birth(true, {u"+2 DATES 12 MAR 1805"_s, Cited}) + Source1840);
    citationRow("tag that ends like a date", 0,
                birth(false, {u" 2 _DATE 12 MAR 1805"_s, HiddenCited}) + Source1840);
    citationRow("deleted line of the event", 1,
                birth(true, {BirthDate, u"-2 PLAC Paris"_s, u" 3 MAP"_s, Cited, u"+2 TYPE x"_s})
                    + Source1840);
    citationRow("event of a deleted line", 1,
                {u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s, u"-1 BIRT"_s, BirthDate, Cited,
                 u" 0 @S1@ SOUR"_s, u" 1 DATE 1840"_s});
}

void TstDatefilter::events()
{
    compareCitations();
}

void TstDatefilter::citations_data()
{
    addCitationColumns();

    citationRow("citation at another level", 0,
                birth(false, {HiddenBirthDate, u" 3 SOUR @S1@"_s, u" 1 SOUR @S1@"_s}) + Source1840);
    citationRow("citation deleted", 0,
                birth(false, {HiddenBirthDate, u"-2 SOUR @S1@"_s}) + Source1840);
    citationRow("one of two citations deleted", 1,
                birth(true, {BirthDate, u"-2 SOUR @S1@"_s, Cited}) + Source1840);
    // Live entries in a deleted record are hidden with it and ignored.
    citationRow("person deleted", 0,
                QStringList{u"-0 @I1@ INDI"_s, u"+1 BIRT"_s, BirthDate, u"+2 SOUR @S1@"_s}
                    + Source1840);
    citationRow("citations that only look like it", 0,
                birth(false, {HiddenBirthDate, u" 2 SOUR @SX@"_s, u" 2 SOUR @S1@ p. 12"_s,
                              u" 2 SOUR @S1"_s, u" 2 SOUR  @S1@"_s, u" 2 SOUR @S1@ "_s,
                              u" 2 SOUR @s1@"_s, u" 2 SOUR registre"_s, u" 2 SOUR"_s,
                              u" 2 SOURC @S1@"_s, u" 2 NOTE 2 SOUR @S1@"_s, u" 2 SOUR @S@"_s})
                    + Source1840 + QStringList{u" 0 @SX@ SOUR"_s, u" 1 DATE 1840"_s});
    citationRow("records that only look like persons or families", 0,
                QStringList{u" 0 @P1@ INDI"_s,  u" 1 BIRT"_s, HiddenBirthDate, HiddenCited,
                            u" 0 @I1A@ INDI"_s, u" 1 BIRT"_s, HiddenBirthDate, HiddenCited,
                            u" 0 @I1@ INDI "_s, u" 1 BIRT"_s, HiddenBirthDate, HiddenCited,
                            u" 0 @I@ INDI"_s,   u" 1 BIRT"_s, HiddenBirthDate, HiddenCited,
                            u" 0 @FA1@ FAM"_s,  u" 1 MARR"_s, HiddenBirthDate, HiddenCited,
                            u" 0 @F1@ FAMI"_s,  u" 1 MARR"_s, HiddenBirthDate, HiddenCited,
                            u" 0 @O1@ OBJE"_s,  u" 1 DATA"_s, HiddenBirthDate, HiddenCited,
                            u" 0 @N1@ NOTE"_s,  u" 1 DATA"_s, HiddenBirthDate, HiddenCited,
                            u" 0 @U1@ SUBN"_s,  u" 1 DATA"_s, HiddenBirthDate, HiddenCited,
                            u" 0 @S9@ SOUR"_s,  u" 1 DATA"_s, HiddenBirthDate, HiddenCited}
                    + Source1840);
}

void TstDatefilter::citations()
{
    compareCitations();
}

void TstDatefilter::sources_data()
{
    addCitationColumns();

    citationRow("source not in the file", 0,
                birth(false, {HiddenBirthDate, HiddenCited}) + source(2, u"1840"_s));
    citationRow("source deleted", 0,
                birth(false, {HiddenBirthDate, HiddenCited})
                    + QStringList{u"-0 @S1@ SOUR"_s, u"+1 DATE 1840"_s});
    citationRow("ids that hold one another", 1,
                birth(true, {BirthDate, u"+2 SOUR @S1@"_s, u"*2 SOUR @S12@ | 12 MAR 1805 | 1840"_s})
                    + source(12, u"1840"_s) + source(11, u"1841"_s) + source(1, u"1805"_s));
    citationRow("two sources of one id, the first agrees", 0,
                birth(false, {HiddenBirthDate, HiddenCited}) + source(1, u"1805"_s) + Source1840);
    citationRow("two sources of one id, the first disagrees", 1,
                birth(true, {BirthDate, Cited}) + Source1840 + source(1, u"1805"_s));
    citationRow("two sources of one id, the first has no date", 0,
                birth(false, {HiddenBirthDate, HiddenCited})
                    + QStringList{u" 0 @S1@ SOUR"_s, u" 1 TITL x"_s} + Source1840);
    citationRow("two sources of one id, the first deleted", 1,
                birth(true, {BirthDate, Cited}) + QStringList{u"-0 @S1@ SOUR"_s, u"-1 DATE 1805"_s}
                    + Source1840);
    citationRow("records that only look like the source", 0,
                birth(false, {HiddenBirthDate, HiddenCited})
                    + QStringList{u" 0 @S1@ SOURC"_s, u" 1 DATE 1840"_s, u" 0 @S1@ SOUR "_s,
                                  u" 1 DATE 1840"_s, u" 0 @S1@ NOTE @S1@"_s, u" 1 DATE 1840"_s,
                                  u" 0 @s1@ SOUR"_s, u" 1 DATE 1840"_s});
}

void TstDatefilter::sources()
{
    compareCitations();
}

void TstDatefilter::names_data()
{
    addCitationColumns();

    const QStringList event{u"+1 BIRT"_s, BirthDate, Cited};
    citationRow("no name", 1,
                QStringList{u"+0 @I1@ INDI"_s, u" 1 NAME Jean DUPONT"_s} + event + Source1840);
    citationRow("name behind the event", 1,
                QStringList{u"+0 @I1@ INDI"_s} + event
                    + QStringList{u"+1 NAME Jean /DUPONT/"_s, u" 1 NAME Jean /DUPOND/"_s}
                    + Source1840);
    citationRow("first name does not end in the surname", 1,
                QStringList{u"+0 @I1@ INDI"_s, u" 1 NAME Jean /DUPONT/ fils"_s,
                            u" 1 NAME Jean /DUPONT"_s, u"+1 NAME //"_s, u" 1 NAME Jean /DUPONT/"_s}
                    + event + Source1840);
    citationRow(
        "first name deleted", 1,
        QStringList{u"+0 @I1@ INDI"_s, u"-1 NAME Jean /DUPONT/"_s, u"+1 NAME Jean /DUPOND/"_s}
            + event + Source1840);
    citationRow("another line that ends like a name", 1,
                QStringList{u"+0 @I1@ INDI"_s, u" 1 RESI"_s, u"+2 NOTE http://a.fr/"_s,
                            u" 1 NAME Jean /DUPONT/"_s}
                    + event + Source1840);
}

void TstDatefilter::names()
{
    compareCitations();
}

void TstDatefilter::husbands_data()
{
    addCitationColumns();

    // The contradictions of a family are shown at the husband.
    const QStringList husband{u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s, u" 1 BIRT"_s,
                              u" 2 DATE ABT 1780"_s, u"*1 FAMS @F1@ | 5 MAY 1805 | 1840"_s};
    citationRow("family with a husband", 1,
                husband + OtherPerson + family(false, {HusbandLine, WifeLine}) + Source1840);
    citationRow("family with a husband, families first", 1,
                Source1840 + family(false, {WifeLine, HusbandLine}) + OtherPerson + husband);
    citationRow("husband behind the event", 1,
                husband
                    + QStringList{u" 0 @F1@ FAM"_s, u" 1 MARR"_s, u" 2 DATE 5 MAY 1805"_s,
                                  u" 2 SOUR @S1@"_s, u" 1 HUSB @I1@"_s}
                    + Source1840);
    citationRow("first of two husbands", 1,
                husband + OtherPerson + family(false, {HusbandLine, u" 1 HUSB @I2@"_s})
                    + Source1840);
    citationRow(
        "husband of another form, then one that is right", 1,
        husband + family(false, {u" 1 HUSB @H1@"_s, u" 1 HUSB"_s, u" 2 HUSB @I2@"_s, HusbandLine})
            + OtherPerson + Source1840);
    citationRow("first line of the husband with the family's id", 1,
                QStringList{u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s, u" 1 FAMS @F10@"_s,
                            u" 1 FAMS @F1@ x"_s, u" 1 NOTE voir @F1@"_s,
                            u"*1 FAMC @F1@ | 5 MAY 1805 | 1840"_s, u" 1 FAMS @F1@"_s}
                    + family(false, {HusbandLine}) + Source1840);
    citationRow("line of the husband with the family's id further down", 1,
                QStringList{u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s, u"+1 EVEN"_s,
                            u"+2 TYPE mariage"_s, u"+2 ASSO"_s, u"+3 RELA x"_s, u"-3 NOTE x"_s,
                            u"*3 NOTE @F1@ | 5 MAY 1805 | 1840"_s, u" 1 FAMS @F1@"_s}
                    + family(false, {HusbandLine}) + Source1840);
    citationRow("first line of the husband with the family's id deleted", 1,
                QStringList{u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s, u"-1 FAMS @F1@"_s,
                            u"*1 FAMS @F1@ | 5 MAY 1805 | 1840"_s}
                    + family(false, {HusbandLine}) + Source1840);
    citationRow(
        "three events of a family", 3,
        QStringList{u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s,
                    u"*1 FAMS @F1@ | ABT 1815 | 1840"_s}
            + family(false, {HusbandLine, u" 1 MARB"_s, u" 2 DATE ABT 1804"_s, u" 2 SOUR @S1@"_s})
            + QStringList{u" 2 DATE ABT 1815"_s, u" 2 SOUR @S1@"_s} + Source1840);
    citationRow("two families of one id", 2,
                QStringList{u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s,
                            u"*1 FAMS @F1@ | ABT 1815 | 1840"_s}
                    + family(false, {HusbandLine})
                    + QStringList{u" 0 @F1@ FAM"_s, u" 1 HUSB @I1@"_s, u" 1 DIV"_s,
                                  u" 2 DATE ABT 1815"_s, u" 2 SOUR @S1@"_s}
                    + Source1840);
    citationRow("two families of one husband", 2,
                husband + QStringList{u"*1 FAMS @F2@ | 5 MAY 1805 | 1840"_s}
                    + family(false, {HusbandLine}, u"@F2@"_s) + family(false, {HusbandLine})
                    + Source1840);
    citationRow("events of the husband and of the family", 2,
                birth(true, {BirthDate, Cited, u"*1 FAMS @F1@ | 5 MAY 1805 | 1840"_s, u" 1 DEAT"_s})
                    + family(false, {HusbandLine}) + Source1840);
    citationRow("family that agrees", 0,
                HiddenHusband
                    + QStringList{u" 0 @F1@ FAM"_s, u" 1 HUSB @I1@"_s, u" 1 MARR"_s,
                                  u" 2 DATE ABT 1840"_s, u" 2 SOUR @S1@"_s}
                    + Source1840);
    citationRow("two persons of one id, the first is the husband", 1,
                husband + HiddenHusband + family(false, {HusbandLine}) + Source1840);
    citationRow("two persons of one id, the first deleted", 1,
                QStringList{u"-0 @I1@ INDI"_s, u"-1 FAMS @F1@"_s} + husband
                    + family(false, {HusbandLine}) + Source1840);
}

void TstDatefilter::husbands()
{
    compareCitations();
}

void TstDatefilter::families_data()
{
    addCitationColumns();

    // Without a husband, or without a line in his record, they are shown at the family.
    citationRow("no husband", 1, OtherPerson + family(true, {WifeLine}) + Source1840);
    citationRow("no line with the family's id", 1,
                Single + family(true, {HusbandLine}) + Source1840);
    citationRow("line with the family's id deleted", 1,
                QStringList{u" 0 @I1@ INDI"_s, u" 1 SEX M"_s, u"-1 FAMS @F1@"_s}
                    + family(true, {HusbandLine}) + Source1840);
    citationRow("husband not in the file", 1,
                OtherPerson + family(true, {HusbandLine}) + Source1840);
    citationRow("first of two husbands not in the file", 1,
                OtherPerson + family(true, {HusbandLine, u" 1 HUSB @I2@"_s}) + Source1840);
    citationRow("husband's record deleted", 1,
                QStringList{u"-0 @I1@ INDI"_s, u"+1 FAMS @F1@"_s} + family(true, {HusbandLine})
                    + Source1840);
    citationRow("husband's record of another form", 1,
                QStringList{u" 0 @I1A@ INDI"_s, u" 1 FAMS @F1@"_s}
                    + family(true, {u" 1 HUSB @I1A@"_s}) + Source1840);
    citationRow("two persons of one id, the first has no line", 1,
                Single + HiddenHusband + family(true, {HusbandLine}) + Source1840);
    citationRow("husband's line deleted", 1,
                HiddenHusband + family(true, {u"-1 HUSB @I1@"_s}) + Source1840);
    citationRow("text behind the husband's id", 1,
                HiddenHusband + family(true, {u" 1 HUSB @I1@ x"_s}) + Source1840);
    citationRow("husband at another level", 1,
                HiddenHusband + family(true, {u" 1 EVEN"_s, u" 2 HUSB @I1@"_s}) + Source1840);
    citationRow("husband of another form", 1,
                HiddenHusband + family(true, {u" 1 HUSB @H1@"_s}) + Source1840);
    citationRow("husband in lower case", 1,
                HiddenHusband + family(true, {u" 1 husb @I1@"_s}) + Source1840);
    citationRow("husband named in a note first", 1,
                HiddenHusband + family(true, {u" 1 NOTE 1 HUSB @I1@"_s, HusbandLine}) + Source1840);
    citationRow("husband named behind another tag first", 1,
                HiddenHusband + family(true, {u" 1 REF1 HUSB @I1@"_s, HusbandLine}) + Source1840);
    citationRow("family with a line that ends like a name", 1,
                family(true, {u"+1 NOTE à/b/"_s, u" 1 NOTE c/d/"_s}) + Source1840);
}

void TstDatefilter::families()
{
    compareCitations();
}

void TstDatefilter::replacedTexts_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("replacement"); // the arguments of change()
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<int>("count");

    const auto row = [](const char *name, const QStringList &lines, const QStringList &replacement,
                        const QStringList &rows, int count) {
        QTest::newRow(name) << lines << replacement << rows << count;
    };
    const QStringList s1 = source(1, u"1840"_s);
    const QStringList birth{u" 0 @I1@ INDI"_s, u" 1 NAME Jean /DUPONT/"_s, u" 1 BIRT"_s,
                            u" 2 DATE 12 MAR 1805"_s, u" 2 SOUR @S1@"_s};
    const QStringList marriage{u" 0 @I1@ INDI"_s, u" 1 FAMS @F1@"_s, u" 0 @F1@ FAM"_s,
                               u" 1 HUSB @I1@"_s, u" 1 MARR"_s,      u" 2 DATE 12 MAR 1805"_s,
                               u" 2 SOUR @S1@"_s};
    row("citation directly below the root, judged by the first date of the record",
        QStringList{u" 0 @I1@ INDI"_s, u" 1 SOUR @S1@"_s, u" 1 NAME Jean /DUPONT/"_s, u" 1 EVEN"_s,
                    u" 2 PLAC Paris"_s, u" 3 DATE ABT 1805"_s, u" 1 BIRT"_s, u" 2 DATE ABT 1840"_s}
            + s1,
        {u"1"_s, u"2"_s, u"INDI.SOUR"_s},
        QStringList{u"+0 @I1@ INDI"_s, u"*2 SOUR @S1@ | ABT 1805 | 1840"_s,
                    u"+1 NAME Jean /DUPONT/"_s, u" 1 EVEN"_s, u" 2 PLAC Paris"_s,
                    u" 3 DATE ABT 1805"_s, u" 1 BIRT"_s, u" 2 DATE ABT 1840"_s}
            + s1,
        1);
    row("citation directly below a family without a husband",
        QStringList{u" 0 @F1@ FAM"_s, u" 1 SOUR @S1@"_s, u" 1 MARR"_s, u" 2 DATE ABT 1805"_s} + s1,
        {u"1"_s, u"2"_s, u"FAM.SOUR"_s},
        QStringList{u"+0 @F1@ FAM"_s, u"*2 SOUR @S1@ | ABT 1805 | 1840"_s, u" 1 MARR"_s,
                    u" 2 DATE ABT 1805"_s}
            + s1,
        1);
    row("citation below a place, judged by the place's date",
        QStringList{u" 0 @I1@ INDI"_s, u" 1 NAME Jean /DUPONT/"_s, u" 2 GIVN Jean"_s, u" 1 BIRT"_s,
                    u" 2 DATE ABT 1840"_s, u" 2 PLAC Paris"_s, u" 3 DATE ABT 1805"_s,
                    u" 3 SOUR @S1@"_s, u" 3 MAP"_s, u" 4 LATI N0"_s, u" 1 DEAT"_s}
            + s1,
        {u"3"_s, u"2"_s, u"INDI.BIRT.PLAC.SOUR"_s},
        QStringList{u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s, u" 2 GIVN Jean"_s, u"+1 BIRT"_s,
                    u"+2 DATE ABT 1840"_s, u"+2 PLAC Paris"_s, u"+3 DATE ABT 1805"_s,
                    u"*2 SOUR @S1@ | ABT 1805 | 1840"_s, u"+3 MAP"_s, u" 4 LATI N0"_s, u" 1 DEAT"_s}
            + s1,
        1);
    row("citation that has another level now", birth + s1, {u"2"_s, u"3"_s, u"INDI.BIRT.SOUR"_s},
        QStringList{u" 0 @I1@ INDI"_s, u" 1 NAME Jean /DUPONT/"_s, u" 1 BIRT"_s,
                    u" 2 DATE 12 MAR 1805"_s, u" 3 SOUR @S1@"_s}
            + s1,
        0);
    row("date that has another level now", birth + s1, {u"2"_s, u"9"_s, u"INDI.BIRT.DATE"_s},
        QStringList{u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s, u"+1 BIRT"_s,
                    u"+9 DATE 12 MAR 1805"_s, u"*2 SOUR @S1@ | 12 MAR 1805 | 1840"_s}
            + s1,
        1);
    row("person that reads as none", birth + s1, {u"0"_s, u"9"_s, u"INDI"_s},
        QStringList{u" 9 @I1@ INDI"_s, u" 1 NAME Jean /DUPONT/"_s, u" 1 BIRT"_s,
                    u" 2 DATE 12 MAR 1805"_s, u" 2 SOUR @S1@"_s}
            + s1,
        0);
    row("source that reads as none", birth + s1, {u"0"_s, u"9"_s, u"SOUR"_s},
        birth + QStringList{u" 9 @S1@ SOUR"_s, u" 1 DATE 1840"_s}, 0);
    row("family that reads as none", marriage + s1, {u"0"_s, u"9"_s, u"FAM"_s},
        QStringList{u" 0 @I1@ INDI"_s, u" 1 FAMS @F1@"_s, u" 9 @F1@ FAM"_s, u" 1 HUSB @I1@"_s,
                    u" 1 MARR"_s, u" 2 DATE 12 MAR 1805"_s, u" 2 SOUR @S1@"_s}
            + s1,
        0);
    row("husband that reads as none", marriage + s1, {u"0"_s, u"9"_s, u"INDI"_s},
        QStringList{u" 9 @I1@ INDI"_s, u" 1 FAMS @F1@"_s, u"+0 @F1@ FAM"_s, u" 1 HUSB @I1@"_s,
                    u"+1 MARR"_s, u"+2 DATE 12 MAR 1805"_s, u"*2 SOUR @S1@ | 12 MAR 1805 | 1840"_s}
            + s1,
        1);
    row("another id in the tag column of the husband, which comes first", marriage + s1,
        {u"HUSB"_s, u"HUSB @I9@"_s, u"FAM.HUSB"_s},
        QStringList{u" 0 @I1@ INDI"_s, u" 1 FAMS @F1@"_s, u"+0 @F1@ FAM"_s, u" 1 HUSB @I9@ @I1@"_s,
                    u"+1 MARR"_s, u"+2 DATE 12 MAR 1805"_s, u"*2 SOUR @S1@ | 12 MAR 1805 | 1840"_s}
            + s1,
        1);
    row("another id in the tag column of the citation, which is none", birth + s1,
        {u"SOUR"_s, u"SOUR @S9@"_s, u"INDI.BIRT.SOUR"_s},
        QStringList{u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s, u"+1 BIRT"_s,
                    u"+2 DATE 12 MAR 1805"_s, u"*2 SOUR @S9@ @S1@ | 12 MAR 1805 | 1840"_s}
            + s1,
        1);
    row("another id in a column of the citation, which comes first",
        QStringList{u" 0 @I1@ INDI"_s, u" 1 NAME Jean /DUPONT/"_s, u" 1 BIRT"_s,
                    u" 2 DATE 12 MAR 1805"_s, u" 2 @S3@ @S1@"_s}
            + s1 + source(3, u"1850"_s),
        {u"2"_s, u"2 SOUR"_s, u"ERREUR"_s},
        QStringList{u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s, u"+1 BIRT"_s,
                    u"+2 DATE 12 MAR 1805"_s, u"*2 SOUR @S3@ @S1@ | 12 MAR 1805 | 1850"_s}
            + s1 + source(3, u"1850"_s),
        1);
    row("event that reads as a root",
        birth + QStringList{u" 2 NOTE a/b/"_s, u" 2 NOTE c/d/"_s} + s1,
        {u"1"_s, u"0"_s, u"INDI.BIRT"_s},
        QStringList{u" 0 @I1@ INDI"_s, u" 1 NAME Jean /DUPONT/"_s, u"+0 BIRT"_s,
                    u" 2 DATE 12 MAR 1805"_s, u"*2 SOUR @S1@ | 12 MAR 1805 | 1840"_s,
                    u"+2 NOTE a/b/"_s, u" 2 NOTE c/d/"_s}
            + s1,
        1);
    row("event of a family that reads as a root", marriage + s1, {u"1"_s, u"0"_s, u"FAM.MARR"_s},
        QStringList{u" 0 @I1@ INDI"_s, u" 1 FAMS @F1@"_s, u" 0 @F1@ FAM"_s, u" 1 HUSB @I1@"_s,
                    u"+0 MARR"_s, u" 2 DATE 12 MAR 1805"_s, u"*2 SOUR @S1@ | 12 MAR 1805 | 1840"_s}
            + s1,
        1);
    const QStringList reader{u" 0 @I2@ INDI"_s, u" 1 SEX F"_s};
    row("line of another record that reads as the husband, who comes later",
        reader + QStringList{u" 1 @I1@ INDI"_s, u" 0 @I1@ INDI"_s, u" 1 FAMS @F1@"_s}
            + family(false, {HusbandLine}) + s1,
        {u"1"_s, u"0"_s, u"INDI.INDI"_s},
        reader
            + QStringList{u" 0 @I1@ INDI"_s, u"+0 @I1@ INDI"_s,
                          u"*1 FAMS @F1@ | 5 MAY 1805 | 1840"_s}
            + family(false, {HusbandLine}) + s1,
        1);
    row("husband's line below the event",
        QStringList{u" 0 @I1@ INDI"_s, u" 1 FAMS @F1@"_s}
            + family(false, {u" 1 EVEN"_s, u" 2 HUSB @I1@"_s}) + s1,
        {u"2"_s, u"1"_s, u"FAM.EVEN.HUSB"_s},
        QStringList{u"+0 @I1@ INDI"_s, u"*1 FAMS @F1@ | 5 MAY 1805 | 1840"_s}
            + family(false, {u" 1 EVEN"_s, u" 1 HUSB @I1@"_s}) + s1,
        1);
    row("year of the event in the tag column, which comes first", birth + s1,
        {u"DATE"_s, u"DATE AN 1803"_s, u"INDI.BIRT.DATE"_s},
        QStringList{u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s, u"+1 BIRT"_s,
                    u"+2 DATE AN 1803 12 MAR 1805"_s, u"*2 SOUR @S1@ | DATE AN 1803 | 1840"_s}
            + s1,
        1);
    row("year of the source in the tag column, which comes first", birth + source(1, u"1805"_s),
        {u"DATE"_s, u"DATE 1805"_s, u"SOUR.DATE"_s},
        QStringList{u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s, u"+1 BIRT"_s,
                    u"+2 DATE 12 MAR 1805"_s, u"*2 SOUR @S1@ | 12 MAR 1805 | 0"_s,
                    u" 0 @S1@ SOUR"_s, u" 1 DATE 1805 1805"_s},
        1);
    row("citation whose id stands in the tag column",
        QStringList{u" 0 @I1@ INDI"_s, u" 1 NAME Jean /DUPONT/"_s, u" 1 BIRT"_s,
                    u" 2 DATE 12 MAR 1805"_s, u" 2 SOURX"_s}
            + s1,
        {u"SOURX"_s, u"SOUR @S1@"_s, u"SOURX"_s},
        QStringList{u" 0 @I1@ INDI"_s, u" 1 NAME Jean /DUPONT/"_s, u" 1 BIRT"_s,
                    u" 2 DATE 12 MAR 1805"_s, u" 2 SOUR @S1@"_s}
            + s1,
        0);
    // The id of the source is looked up in its line, not in a column.
    row("source whose id does not fill its column",
        birth + QStringList{u" 0 @S1@"_s, u" 1 DATE 1840"_s},
        {u"@S1@"_s, u"@S1@ SOUR"_s, u"ERREUR"_s},
        QStringList{u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s, u"+1 BIRT"_s,
                    u"+2 DATE 12 MAR 1805"_s, u"*2 SOUR @S1@ | 12 MAR 1805 | 1840"_s,
                    u" 0 @S1@ SOUR"_s, u" 1 DATE 1840"_s},
        1);
}

void TstDatefilter::replacedTexts()
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
    QCOMPARE(review.pictures(), withToolTips(rows));
    QCOMPARE(review.status(), concluded(count));
    QCOMPARE(review.columns(), columns);
    QCOMPARE(review.newJournal(), QStringList());
}

void TstDatefilter::nothingButShows()
{
    const QStringList rows =
        birth(true, {u"+2 DATE 12 MAR 1805"_s, u"*2 SOUR @S1@ | 12 MAR 1805 | 1840"_s})
        + QStringList{u"+0 @I2@ INDI"_s, u"+1 SEX M"_s, u"+0 @S1@ SOUR"_s, u"+1 DATE 1840"_s};
    Review review(rows);
    review.gedcom.filterSourceDateDiff(); // rows that are visible before stay visible
    QCOMPARE(review.pictures(), withToolTips(rows));

    // The exact tool tip.
    QCOMPARE(review.entry(u"2 SOUR @S1@"_s)->toolTip(0),
             u"Date évènement : 12 MAR 1805\r\nDate source : 1840"_s);
    QCOMPARE(review.entry(u"2 SOUR @S1@"_s)->toolTip(1), u"ligne 5"_s);
    QCOMPARE(review.entry(u"2 SOUR @S1@"_s)->background(0), QBrush(Qt::red, Qt::SolidPattern));
    QCOMPARE(review.entry(u"2 SOUR @S1@"_s)->background(1), QBrush());
    QVERIFY(review.tree.updatesEnabled());
}

void TstDatefilter::sectionNodesStay()
{
    Review review(birth(false, {u" 2 DATE 12 MAR 1805"_s}) + source(1, u"1840"_s)
                  + QStringList{u" 0 @U1@ SUBN"_s, u" 1 NOTE x"_s});
    review.filter();
    QCOMPARE(topRows(review.tree), QStringList({u"en-tête 0"_s, u"personnes 1"_s, u"familles 0"_s,
                                                u"sources 1"_s, u"médias 0"_s, u"dépots 0"_s,
                                                u"hidden: notes 0"_s, u"hidden: 0 @U1@"_s}));
    QCOMPARE(review.status(), u"0 incohérences sources / évènements détectées."_s);
}

void TstDatefilter::manyCitationsOfOneEvent()
{
    QStringList rows = birth(true, {u"+2 DATE 12 MAR 1805"_s});
    for (int i = 0; i < 1500; ++i) {
        rows += {u"+2 SOUR @S2@"_s, u"*2 SOUR @S1@ | 12 MAR 1805 | 1840"_s, u" 3 PAGE 1"_s};
        if (i % 100 == 0)
            rows += u"-2 SOUR @S1@"_s;
    }
    rows += source(1, u"1840"_s) + source(2, u"1805"_s);
    Review review(rows);
    review.filter();
    QCOMPARE(review.pictures(), withToolTips(rows));
    QCOMPARE(review.status(), u"1500 incohérences sources / évènements détectées."_s);
}

void TstDatefilter::secondRun()
{
    const QStringList rows =
        birth(true,
              {u"+2 DATE 12 MAR 1805"_s, u"*2 SOUR @S1@ | 12 MAR 1805 | 1840"_s, u"+2 SOUR @S2@"_s})
        + source(1, u"1840"_s) + source(2, u"1805"_s);
    Review review(rows);
    review.filter();
    review.filter();
    QCOMPARE(review.pictures(), withToolTips(rows));
    QCOMPARE(review.status(), concluded(1));

    // Nothing is remembered between calls, and red rows stay red.
    change(&review.gedcom, {u"1840"_s, u"1805"_s, u"SOUR.DATE"_s});
    review.filter();
    QCOMPARE(review.pictures(),
             withToolTips(birth(false, {u" 2 DATE 12 MAR 1805"_s,
                                        u"#2 SOUR @S1@ | 12 MAR 1805 | 1840"_s, u" 2 SOUR @S2@"_s})
                          + source(1, u"1805"_s) + source(2, u"1805"_s)));
    QCOMPARE(review.status(), concluded(0));

    change(&review.gedcom, {u"12 MAR 1805"_s, u"ABT 1806"_s, u"DATE"_s});
    review.filter();
    QCOMPARE(review.pictures(),
             withToolTips(birth(true, {u"+2 DATE ABT 1806"_s, u"*2 SOUR @S1@ | ABT 1806 | 1805"_s,
                                       u"*2 SOUR @S2@ | ABT 1806 | 1805"_s})
                          + source(1, u"1805"_s) + source(2, u"1805"_s)));
    QCOMPARE(review.status(), concluded(2));
}

void TstDatefilter::saved()
{
    Review review(citedInTurn(3));
    compareSave(&review);
}

void TstDatefilter::frame()
{
    Review review(citedInTurn(250));
    compareFrame(&review, Announced, concluded(125));
}

void TstDatefilter::progress_data()
{
    addProgressColumns();

    const QStringList nothing{u"events at -1"_s};
    QTest::newRow("no citation") << 0 << QStringList() << -1 << nothing;
    QTest::newRow("99 citations") << 99 << QStringList() << -1 << nothing;
    QTest::newRow("100 citations") << 100 << QStringList{u"100 of 100"_s, u"events at 100"_s} << 100
                                   << QStringList{u"events at 100"_s, u"events at 100"_s};
    const QStringList twice{u"100 of 250"_s, u"events at 100"_s, u"200 of 250"_s,
                            u"events at 200"_s};
    QTest::newRow("250 citations")
        << 250 << twice << 200 << QStringList{u"events at 200"_s} + twice;
}

void TstDatefilter::progress()
{
    QFETCH(int, size);

    // All live citations of events count, also those of families and those of undated events.
    QStringList lines{u" 0 @F1@ FAM"_s, u" 1 MARR"_s};
    for (int i = 0; i < size; ++i) {
        if (i == size / 3)
            lines += {u" 0 @I1@ INDI"_s, u" 1 SOUR @S1@"_s, u" 1 BIRT"_s, u" 2 DATE ABT 1805"_s};
        lines += i % 2 == 0 ? u" 2 SOUR @S1@"_s : u" 2 SOUR @S9@"_s;
        lines += u" 3 SOUR @S1@"_s;
        lines += u"-2 SOUR @S1@"_s;
    }
    Review review(lines + source(1, u"1840"_s));
    compareProgress(&review);
}

void TstDatefilter::texts()
{
    Review review(citedInTurn(1));
    compareTranslation(&review);
    QVERIFY(review.entry(u"2 SOUR @S2@"_s)->toolTip(0).contains(u"[Gedcom]"_s));
}

void TstDatefilter::eventsBeforeTheLoop_data()
{
    QTest::addColumn<QStringList>("replacement"); // the arguments of change()
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("redRows");

    const QString red = u"*2 SOUR @S2@ | 12 MAR 1805 | 1840"_s;
    QTest::newRow("nothing done") << QStringList{u"x"_s, u"y"_s, u"NONE"_s} << 2
                                  << QStringList{"5: "_L1 + red, "7: "_L1 + red};
    QTest::newRow("source dates replaced")
        << QStringList{u"1840"_s, u"1805"_s, u"SOUR.DATE"_s} << 0 << QStringList();
    QTest::newRow("event dates replaced")
        << QStringList{u"1805"_s, u"1840"_s, u"INDI.BIRT.DATE"_s} << 1
        << QStringList{u"6: *2 SOUR @S1@ | 12 MAR 1840 | 1805"_s};
    QTest::newRow("sources swapped") << QStringList{u"@S2@"_s, u"@S1@"_s, u"SOUR"_s} << 3
                                     << QStringList{u"5: *2 SOUR @S1@ | 12 MAR 1805 | 1840"_s,
                                                    u"6: *2 SOUR @S1@ | 12 MAR 1805 | 1840"_s,
                                                    u"7: *2 SOUR @S1@ | 12 MAR 1805 | 1840"_s};
    // The list of citations exists already; deleted ones stay hidden.
    QTest::newRow("citations deleted") << QStringList{u"INDI.BIRT.SOUR"_s} << 2
                                       << QStringList{u"5: =2 SOUR @S2@ | 12 MAR 1805 | 1840"_s,
                                                      u"7: =2 SOUR @S2@ | 12 MAR 1805 | 1840"_s};
    QTest::newRow("citations and sources deleted") << QStringList{u"SOUR"_s} << 0 << QStringList();
    QTest::newRow("first source of an id deleted")
        << QStringList{u"SOUR"_s, u"1840"_s} << 2
        << QStringList{u"5: *2 SOUR @S2@ | 12 MAR 1805 | 1850"_s,
                       u"7: *2 SOUR @S2@ | 12 MAR 1805 | 1850"_s};
    QTest::newRow("event dates deleted") << QStringList{u"INDI.BIRT.DATE"_s} << 0 << QStringList();
}

void TstDatefilter::eventsBeforeTheLoop()
{
    QFETCH(QStringList, replacement);
    QFETCH(int, count);
    QFETCH(QStringList, redRows);

    Review review(citedInTurn(3));
    review.hideAll();
    QStringList seen;
    QMetaObject::invokeMethod(
        &review.progress,
        [&] {
            seen = review.statusAndBar();
            seen += review.redRows();
            change(&review.gedcom, replacement);
        },
        Qt::QueuedConnection);
    review.gedcom.filterSourceDateDiff();
    QCOMPARE(seen, QStringList({Announced, u"-1 of 3"_s, u"bar shown"_s}));
    QCOMPARE(review.redRows(), withToolTips(redRows));
    QCOMPARE(review.status(), concluded(count));
}

void TstDatefilter::documentChangedInTheMidst_data()
{
    QTest::addColumn<QStringList>("replacement"); // the arguments of change()
    QTest::addColumn<QString>("odd"); // from the 100th citation on, the year of source 2
    QTest::addColumn<QString>("even"); // and that of source 1

    const QString none;
    QTest::newRow("nothing changed")
        << QStringList{u"x"_s, u"y"_s, u"NONE"_s} << u" | 12 MAR 1805 | 1840"_s << none;
    QTest::newRow("date of the event") << QStringList{u"1805"_s, u"1840"_s, u"INDI.BIRT.DATE"_s}
                                       << none << u" | 12 MAR 1840 | 1805"_s;
    QTest::newRow("date of the event, which has no year then")
        << QStringList{u"1805"_s, u"x"_s, u"INDI.BIRT.DATE"_s} << none << none;
    QTest::newRow("date of the source that disagrees")
        << QStringList{u"1840"_s, u"1805"_s, u"SOUR.DATE"_s} << none << none;
    QTest::newRow("date of the source that agrees")
        << QStringList{u"1805"_s, u"1806"_s, u"SOUR.DATE"_s} << u" | 12 MAR 1805 | 1840"_s
        << u" | 12 MAR 1805 | 1806"_s;
    QTest::newRow("every date") << QStringList{u"18"_s, u"19"_s, u"DATE"_s}
                                << u" | 12 MAR 1905 | 1940"_s << none;
    QTest::newRow("column of the date of the event")
        << QStringList{u"DATE"_s, u"DATE 1840"_s, u"INDI.BIRT.DATE"_s} << none
        << u" | DATE 1840 | 1805"_s;
    QTest::newRow("tag of the date of the event")
        << QStringList{u"DATE"_s, u"DAT"_s, u"INDI.BIRT.DATE"_s} << none << none;
    QTest::newRow("tag of the dates of the sources")
        << QStringList{u"DATE"_s, u"DAT"_s, u"SOUR.DATE"_s} << none << none;
    QTest::newRow("id of the source that agrees") // the other one comes first
        << QStringList{u"@S1@"_s, u"@S2@"_s, u"SOUR"_s} << u" | 12 MAR 1805 | 1840"_s
        << u" | 12 MAR 1805 | 1840"_s;
    QTest::newRow("id of the source that disagrees")
        << QStringList{u"@S2@"_s, u"@S1@"_s, u"SOUR"_s} << u" | 12 MAR 1805 | 1840"_s
        << u" | 12 MAR 1805 | 1840"_s;
    QTest::newRow("id that has no form any more")
        << QStringList{u"@S2@"_s, u"@SX@"_s, u"SOUR"_s} << none << none;
    QTest::newRow("tag of the sources and the citations")
        << QStringList{u"SOUR"_s, u"XSOUR"_s, u"SOUR"_s} << u" | 12 MAR 1805 | 1840"_s << none;
    // The id is looked up in the line of the source, not in a column.
    QTest::newRow("line of each source, which holds the id of one then")
        << QStringList{u"SOUR"_s, u"SOUR @S1@"_s, u"SOUR"_s} << u" | 12 MAR 1805 | 1840"_s
        << u" | 12 MAR 1805 | 1840"_s;
    QTest::newRow("line of each source, which holds two more ids that share a sign then")
        << QStringList{u"SOUR"_s, u"SOUR @S7@S1@"_s, u"SOUR"_s} << u" | 12 MAR 1805 | 1840"_s
        << u" | 12 MAR 1805 | 1840"_s;
    QTest::newRow("date of the event deleted") << QStringList{u"INDI.BIRT.DATE"_s} << none << none;
    QTest::newRow("dates of the sources deleted") << QStringList{u"SOUR.DATE"_s} << none << none;
    QTest::newRow("sources and citations deleted") << QStringList{u"SOUR"_s} << none << none;
    QTest::newRow("first source of an id deleted")
        << QStringList{u"SOUR"_s, u"1840"_s} << u" | 12 MAR 1805 | 1850"_s << none;
    QTest::newRow("citations deleted")
        << QStringList{u"INDI.BIRT.SOUR"_s} << u" | 12 MAR 1805 | 1840"_s << none;
}

void TstDatefilter::documentChangedInTheMidst()
{
    QFETCH(QStringList, replacement);
    QFETCH(QString, odd);
    QFETCH(QString, even);

    constexpr int Citations = 204;
    Review review(citedInTurn(Citations));
    review.hideAll();
    atNextMove(&review.progress, [&] { change(&review.gedcom, replacement); });
    review.gedcom.filterSourceDateDiff();

    QStringList expected;
    for (int i = 1; i <= Citations; ++i) {
        const QString old = i % 2 == 1 ? u" | 12 MAR 1805 | 1840"_s : QString();
        const QString dates = i < 100 ? old : i % 2 == 1 ? odd : even;
        if (!dates.isEmpty())
            expected += QString::number(i + 4) + dates;
    }
    QStringList actual;
    const QList<TwItem *> entries = review.entries();
    for (TwItem *twi : entries) {
        if (twi->background(0) != QBrush())
            actual += twi->getNumLineGedFile() + " | "_L1 + twi->toolTip(0);
    }
    QCOMPARE(actual, withToolTips(expected));
    QCOMPARE(review.status(), concluded(expected.size()));
}

void TstDatefilter::familyChangedInTheMidst_data()
{
    QTest::addColumn<QStringList>("replacement"); // the arguments of change()
    QTest::addColumn<QStringList>("redRows");

    const auto row = [](const char *name, const QStringList &replacement,
                        const QStringList &redRows) {
        QTest::newRow(name) << replacement << redRows;
    };
    QStringList citations; // from the 100th on
    for (int line = 112; line <= 116; ++line)
        citations += u"%1: *2 SOUR @S1@ | 5 MAY 1805 | 1840"_s.arg(line);
    const QString link = u"3: *1 FAMS @F1@ | 5 MAY 1805 | 1840"_s;
    row("nothing", {u"x"_s, u"y"_s, u"NONE"_s}, {link});
    row("date of the event", {u"1805"_s, u"1806"_s, u"FAM.MARR.DATE"_s},
        {u"3: *1 FAMS @F1@ | 5 MAY 1806 | 1840"_s});
    row("husband", {u"@I1@"_s, u"@I2@"_s, u"FAM.HUSB"_s},
        {link, u"6: *1 FAMS @F1@ | 5 MAY 1805 | 1840"_s});
    row("husband's tag", {u"HUSB"_s, u"XUSB"_s, u"FAM.HUSB"_s}, QStringList{link} + citations);
    row("husband's id", {u"@I1@"_s, u"@I9@"_s, u"INDI"_s}, QStringList{link} + citations);
    row("two husbands of one id", {u"@I2@"_s, u"@I1@"_s, u"INDI"_s}, {link});
    row("husband's line", {u"@F1@"_s, u"@F9@"_s, u"INDI.FAMS"_s},
        QStringList{u"3: *1 FAMS @F9@ | 5 MAY 1805 | 1840"_s} + citations);
    row("family's id", {u"@F1@"_s, u"@F9@"_s, u"FAM"_s}, QStringList{link} + citations);
    row("family's id, which is no id then", {u"@F1@"_s, u"@FX@"_s, u"FAM"_s},
        QStringList{link} + citations);
    row("family's root", {u"0"_s, u"9"_s, u"FAM"_s}, QStringList{link} + citations);
    const QString deletedLink = u"3: =1 FAMS @F1@ | 5 MAY 1805 | 1840"_s;
    row("line to the husband deleted", {u"FAM.HUSB"_s}, QStringList{link} + citations);
    row("husband's line deleted", {u"INDI.FAMS"_s}, QStringList{deletedLink} + citations);
    row("husband deleted", {u"INDI"_s}, QStringList{deletedLink} + citations);
    // The list of persons exists already.
    row("husband's root", {u"INDI"_s, u"XNDI"_s, u"INDI"_s}, {link});
}

void TstDatefilter::familyChangedInTheMidst()
{
    QFETCH(QStringList, replacement);
    QFETCH(QStringList, redRows);

    QStringList lines{u" 0 @I1@ INDI"_s,
                      u" 1 NAME Jean /DUPONT/"_s,
                      u" 1 FAMS @F1@"_s,
                      u" 0 @I2@ INDI"_s,
                      u" 1 NAME Paul /MARTIN/"_s,
                      u" 1 FAMS @F1@"_s,
                      u" 0 @S1@ SOUR"_s,
                      u" 1 DATE 1840"_s,
                      u" 0 @F1@ FAM"_s,
                      u" 1 HUSB @I1@"_s,
                      u" 1 MARR"_s,
                      u" 2 DATE 5 MAY 1805"_s};
    lines += QStringList(104, u" 2 SOUR @S1@"_s);
    Review review(lines);
    review.hideAll();
    atNextMove(&review.progress, [&] { change(&review.gedcom, replacement); });
    review.gedcom.filterSourceDateDiff();
    QCOMPARE(review.redRows(), withToolTips(redRows));
    QCOMPARE(review.status(), concluded(104));
}

void TstDatefilter::personsComeBeforeFamilies()
{
    // The source has another date from the 100th citation on.
    const QString early = u"*2 SOUR @S1@ | ABT 1805 | 1840"_s;
    const QString late = u"*2 SOUR @S1@ | ABT 1805 | 1850"_s;
    const QStringList expected = QStringList{u"+0 @F1@ FAM"_s, u"+1 MARR"_s, u"+2 DATE ABT 1805"_s}
                               + QStringList(29, early) + QStringList(11, late)
                               + birth(true, {u"+2 DATE ABT 1805"_s}) + QStringList(70, early);
    Review review(expected + source(1, u"1840"_s));
    review.hideAll();
    atNextMove(&review.progress, [&] {
        change(&review.gedcom, {u"1840"_s, u"1850"_s, u"SOUR.DATE"_s});
    });
    review.gedcom.filterSourceDateDiff();
    QCOMPARE(review.pictures(), withToolTips(expected + source(1, u"1850"_s)));
    QCOMPARE(review.status(), concluded(110));
}

void TstDatefilter::recordLosesItsRootInTheMidst()
{
    QStringList first{u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s, u"+1 BIRT"_s,
                      u"+2 DATE ABT 1805"_s};
    first += QStringList(99, u"*2 SOUR @S1@ | ABT 1805 | 1840"_s);
    first += u" 1 SEX M"_s;
    const QStringList second{u"+0 @I2@ INDI"_s,           u"+1 NAME Paul /MARTIN/"_s,
                             u"+1 NAME Paul /MARTINE/"_s, u"+1 BIRT"_s,
                             u"+2 DATE ABT 1805"_s,       u"*2 SOUR @S1@ | ABT 1805 | 1840"_s,
                             u"-2 PLAC Paris"_s,          u"+1 RESI"_s,
                             u"+2 PLAC Paris"_s};
    QStringList expected = first + second + source(1, u"1840"_s);
    Review review(expected);
    review.hideAll();
    atNextMove(&review.progress, [&] { change(&review.gedcom, {u"0"_s, u"9"_s, u"INDI"_s}); });
    review.gedcom.filterSourceDateDiff();
    // A former root is now a line with children like any other.
    expected.replaceInStrings(u"+0 @I"_s, u"+9 @I"_s);
    QCOMPARE(review.pictures(), withToolTips(expected));
    QCOMPARE(review.status(), concluded(100));
}

void TstDatefilter::changedAndHiddenTwice()
{
    // Source 1 contradicts the event from the 100th to the 199th citation.
    Review review(citedInTurn(250));
    review.hideAll();
    atNextMove(&review.progress, [&] {
        change(&review.gedcom, {u"1805"_s, u"1806"_s, u"SOUR.DATE"_s});
        review.hideAll();
        atNextMove(&review.progress, [&] {
            change(&review.gedcom, {u"1806"_s, u"1805"_s, u"SOUR.DATE"_s});
            review.hideAll();
        });
    });
    review.gedcom.filterSourceDateDiff();

    QStringList expected = birth(true, {u"+2 DATE 12 MAR 1805"_s});
    for (int i = 1; i <= 250; ++i)
        expected += i % 2 == 1          ? u"*2 SOUR @S2@ | 12 MAR 1805 | 1840"_s
                  : i >= 100 && i < 200 ? u"*2 SOUR @S1@ | 12 MAR 1805 | 1806"_s
                                        : u"+2 SOUR @S1@"_s;
    expected += source(2, u"1840"_s) + source(1, u"1805"_s) + source(2, u"1850"_s);
    QCOMPARE(review.pictures(), withToolTips(expected));
    QCOMPARE(review.status(), concluded(125 + 50));
}

void TstDatefilter::rowsHiddenInTheMidst()
{
    QStringList expected{u" 0 @I1@ INDI"_s, u" 1 NAME Paul /MARTIN/"_s, u" 1 BIRT"_s,
                         u" 2 DATE ABT 1805"_s, u"#2 SOUR @S1@ | ABT 1805 | 1840"_s};
    expected += {u"+0 @I2@ INDI"_s,
                 u"+1 NAME Jean /DUPONT/"_s,
                 u" 1 DEAT"_s,
                 u" 2 DATE ABT 1805"_s,
                 u"#2 SOUR @S1@ | ABT 1805 | 1840"_s,
                 u"+1 BIRT"_s,
                 u"+2 DATE ABT 1805"_s,
                 u"+2 PLAC Paris"_s,
                 u" 3 MAP"_s};
    expected += QStringList(99, u"*2 SOUR @S1@ | ABT 1805 | 1840"_s); // 3rd to 101st
    expected +=
        {u"+0 @I3@ INDI"_s,     u"+1 NAME Jean /DUPONT/"_s, u"*1 FAMS @F1@ | ABT 1805 | 1840"_s,
         u" 0 @F1@ FAM"_s,      u" 1 HUSB @I3@"_s,          u" 1 MARR"_s,
         u" 2 DATE ABT 1805"_s, u" 2 SOUR @S1@"_s};
    expected += source(1, u"1840"_s);
    Review review(expected);
    review.hideAll();
    QStringList before;
    atNextMove(&review.progress, [&] {
        before = review.redRows();
        review.hideAll();
    });
    review.gedcom.filterSourceDateDiff();
    QCOMPARE(before.size(), 99);
    QCOMPARE(review.pictures(), withToolTips(expected));
    QCOMPARE(review.status(), concluded(102));
}

void TstDatefilter::generatedDocuments_data()
{
    addSeeds();
}

void TstDatefilter::generatedDocuments()
{
    QFETCH(uint, seed);

    QRandomGenerator random(seed);
    Review review(allHidden(generatedLines(&random)));
    PlainFilter plain(review.entries());
    compareWithPlainFilter(&review, &plain, &random, concluded, 10);
    // The document contains both kinds of families.
    QVERIFY(plain.links() > 0);
    QVERIFY(plain.familyCitations() > 0);
}

void TstDatefilter::checkBox()
{
    const ReviewSession session({u"0 @I1@ INDI"_s, u"1 NAME Jean /DUPONT/"_s, u"1 BIRT"_s,
                                 u"2 DATE 12 MAR 1805"_s, u"2 SOUR @S1@"_s, u"2 NOTE x"_s,
                                 u"1 SEX M"_s, u"0 @I2@ INDI"_s, u"1 NAME Anne /MARTIN/"_s,
                                 u"0 @S1@ SOUR"_s, u"1 DATE 1840"_s});
    session.apply({u"gbDelTags"_s, u"leTagsToDel=INDI.BIRT.NOTE"_s});
    const QStringList journal = session.journal();

    session.search(u"Anne"_s);
    QCOMPARE(session.status(), u"2/10 entrées affichées."_s);
    const QStringList filtered = withToolTips(
        {u"+0 @I1@ INDI"_s, u"+1 NAME Jean /DUPONT/"_s, u"+1 BIRT"_s, u"+2 DATE 12 MAR 1805"_s,
         u"*2 SOUR @S1@ | 12 MAR 1805 | 1840"_s, u"-2 NOTE x"_s, u" 1 SEX M"_s, u" 0 @I2@ INDI"_s,
         u" 1 NAME Anne /MARTIN/"_s, u" 0 @S1@ SOUR"_s, u" 1 DATE 1840"_s});
    compareCheckBox(session, DateDiff, filtered, concluded(1));

    // A search shows other rows again while the box stays checked.
    session.toggle(DateDiff);
    session.enter();
    QCOMPARE(session.pictures(), allShown(filtered));
    QVERIFY(session.isChecked(DateDiff));
    QCOMPARE(session.journal(), journal);

    // The result changes with the document.
    session.toggle(DateDiff);
    session.apply({u"gbReplaceString"_s, u"leTextOri=1840"_s, u"leTextDest=1805"_s,
                   u"leTagToApply=SOUR.DATE"_s});
    session.toggle(DateDiff);
    QCOMPARE(session.pictures(),
             withToolTips({u" 0 @I1@ INDI"_s, u" 1 NAME Jean /DUPONT/"_s, u" 1 BIRT"_s,
                           u" 2 DATE 12 MAR 1805"_s, u"#2 SOUR @S1@ | 12 MAR 1805 | 1840"_s,
                           u"-2 NOTE x"_s, u" 1 SEX M"_s, u" 0 @I2@ INDI"_s,
                           u" 1 NAME Anne /MARTIN/"_s, u" 0 @S1@ SOUR"_s, u" 1 DATE 1805"_s}));
    QCOMPARE(session.status(), u"0 incohérences sources / évènements détectées."_s);
}

void TstDatefilter::everyStateButUncheckedFilters()
{
    compareBoxStates("on_cbSourceDateDiff_stateChanged");
}

void TstDatefilter::uncheckedInTheMidst()
{
    QStringList lines;
    for (const QString &line : citedInTurn(150))
        lines += line.mid(1);
    const ReviewSession session(lines);
    QString status;
    bool wasShown = false;
    atNextMove(session.progress(), [&] {
        status = session.status();
        wasShown = session.progress()->isVisible();
        session.toggle(DateDiff);
    });
    session.toggle(DateDiff);
    QCOMPARE(status, Announced);
    QVERIFY(wasShown);
    QVERIFY(!session.isChecked(DateDiff));
    QCOMPARE(session.status(), u"75 incohérences sources / évènements détectées."_s);
    QStringList expected;
    for (const QString &line : std::as_const(lines))
        expected += line == "2 SOUR @S2@"_L1 ? u"*2 SOUR @S2@ | 12 MAR 1805 | 1840"_s : u'+' + line;
    QCOMPARE(session.pictures(), withToolTips(expected));
}

VARLUNE_TEST_MAIN(TstDatefilter)
#include "tst_datefilter.moc"
