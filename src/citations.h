#ifndef CITATIONS_H
#define CITATIONS_H

// What the two filters read of the citations of sources below events, and of the dates of both.
// Each entry is read once; the filters have it read again where another run may have changed it.

#include "matching.h"

#include <QHash>
#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <optional>

class TwItem;

/// A citation, and whether the year of its source lies outside the period of its event.
struct DatedCitation
{
    TwItem *twi = nullptr;
    bool disagrees = false;
    QString evtDate; // as written; this and the next are set only where they disagree
    int sourDate = 0; // a year, 0 for a date that is more than a bare year
};

/// Compares the dates of events with those of the sources that they cite.
class DateComparer
{
public:
    struct Patterns
    {
        QRegularExpression rxDate; // a date line
        QRegularExpression rxAnnee; // a column that ends in a year
        QRegularExpression rxCatchAnnee; // captures the year at the end of a date
        QRegularExpression rxCatchAnnees; // captures both years of a period
        QRegularExpression rxColIdSour; // the column with the identifier of a source
    };

    /// Reads the dates of the records \p sources.
    DateComparer(const Patterns &patterns, const QList<TwItem *> &sources);

    /// Fastest where the citations of one event follow each other.
    [[nodiscard]] DatedCitation compare(TwItem *citation);

private:
    struct Period
    {
        QString evtDate;
        int evtStartDate = 0;
        int evtEndDate = 0; // 0: there is none to be compared
    };
    [[nodiscard]] QString readDate(TwItem *twi);
    [[nodiscard]] Period readPeriod(TwItem *event);
    void readSources(const QList<TwItem *> &sources);

    Patterns m_patterns;
    LineMatcher m_dateLine;
    ColumnMatcher m_colAnnee;
    ColumnMatcher m_colIdSour;
    QHash<QString, std::optional<int>> m_sourDates; // by the identifiers in the source's line
    TwItem *m_event = nullptr; // the last one read
    Period m_period; // its
};

/// Finds the entry at which a family's disagreement is shown: a reader of the tree looks for
/// people.
class HusbandLinks
{
public:
    /// \p indis are the persons, \p rxColIdFam the column with the identifier of a family.
    HusbandLinks(const QRegularExpression &rxColIdFam, const QList<TwItem *> &indis);

    /// The husband's link to the family. Null if \p root is no family or has none.
    [[nodiscard]] TwItem *find(TwItem *root);

private:
    [[nodiscard]] TwItem *findLink(TwItem *family, const QString &idFam);

    QRegularExpression m_rxColIdFam;
    QList<TwItem *> m_indis;
    std::optional<ColumnIndex> m_indisById; // made when first needed, which is seldom
    QHash<TwItem *, TwItem *> m_links; // by family
};

/// The citations by source, and the dates of the events that they stand below.
class CitedEvents
{
public:
    explicit CitedEvents(const QRegularExpression &rxDate);

    void append(const QList<TwItem *> &citations);

    /// The parents of the citations of a source, in their order.
    [[nodiscard]] QList<TwItem *> citing(const QString &idSour) const;
    /// The columns of the first date of an event; none if it has no date.
    [[nodiscard]] QStringList date(TwItem *event) const;

private:
    LineMatcher m_dateLine;
    ColumnIndex m_citations;
    QHash<TwItem *, QStringList> m_dates; // by event
};

#endif // CITATIONS_H
