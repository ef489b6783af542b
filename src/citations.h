#ifndef CITATIONS_H
#define CITATIONS_H

// What the two filters know of the citations of sources, and of the dates of sources and events. It
// is read once, and again only where another run may have changed entries.

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
    QString evtDate; // as written; set, like sourDate, only if disagrees
    int sourDate = 0; // 0 if the date is more than a bare year
};

/// Compares the dates of events with those of the sources that they cite.
class DateComparer
{
public:
    struct Patterns
    {
        QRegularExpression rxDate; // a date line
        QRegularExpression rxAnnee; // a column that ends in a year from 1000 to 1999
        QRegularExpression rxCatchAnnee; // captures the year at the end of a date
        QRegularExpression rxCatchAnnees; // captures both years of a period
        QRegularExpression rxColIdSour; // the column with the identifier of a source
    };

    /// Reads the dates of the records \p sources.
    DateComparer(const Patterns &patterns, const QList<TwItem *> &sources);

    /// Fastest where citations of the same event come one after the other.
    [[nodiscard]] DatedCitation compare(TwItem *citation);

private:
    struct Period
    {
        QString evtDate;
        int evtStartDate = 0;
        int evtEndDate = 0; // 0: nothing to compare
    };
    [[nodiscard]] QString readDate(TwItem *twi);
    [[nodiscard]] Period readPeriod(TwItem *event);
    void readSources(const QList<TwItem *> &sources);

    Patterns m_patterns;
    LineMatcher m_dateLine;
    ColumnMatcher m_colAnnee;
    ColumnMatcher m_colIdSour;
    QHash<QString, std::optional<int>> m_sourDates; // by the identifiers in the source's line
    TwItem *m_event = nullptr; // the event read last
    Period m_period; // that of m_event
};

/// Finds where to show the disagreement of a family: at the husband's link to it, since users look
/// for people.
class HusbandLinks
{
public:
    /// \p indis are the persons; \p rxColIdFam is the form of a family's identifier.
    HusbandLinks(QRegularExpression rxColIdFam, QList<TwItem *> indis);

    /// The husband's link to the family \p root. Null if it is not a family, or has no such link.
    [[nodiscard]] TwItem *find(TwItem *root);

private:
    [[nodiscard]] TwItem *findLink(TwItem *family, const QString &idFam);

    QRegularExpression m_rxColIdFam;
    QList<TwItem *> m_indis;
    std::optional<ColumnIndex> m_indisById; // built when first needed, which is rare
    QHash<TwItem *, TwItem *> m_links; // by family
};

/// The citations by source, with the dates of the events that they belong to.
class CitedEvents
{
public:
    explicit CitedEvents(const QRegularExpression &rxDate);

    void append(const QList<TwItem *> &citations);

    /// The events that cite a source, in file order; one that cites it twice comes twice.
    [[nodiscard]] QList<TwItem *> citing(const QString &idSour) const;
    /// The columns of the first date of an event; none if it has no date.
    [[nodiscard]] QStringList date(TwItem *event) const;

private:
    LineMatcher m_dateLine;
    ColumnIndex m_citations;
    QHash<TwItem *, QStringList> m_dates; // by event
};

#endif // CITATIONS_H
