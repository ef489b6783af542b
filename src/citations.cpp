#include "citations.h"

#include "twitem.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

DateComparer::DateComparer(const Patterns &patterns, const QList<TwItem *> &sources)
    : m_patterns(patterns),
      m_dateLine(patterns.rxDate),
      m_colAnnee(patterns.rxAnnee),
      m_colIdSour(patterns.rxColIdSour)
{
    readSources(sources);
}

DatedCitation DateComparer::compare(TwItem *citation)
{
    TwItem *event = citation->getParent();
    if (event != m_event) {
        m_event = event;
        m_period = readPeriod(event);
    }
    DatedCitation agreeing;
    agreeing.twi = citation;
    if (m_period.evtEndDate == 0)
        return agreeing;
    const QString idSour = citation->text(m_colIdSour.firstColumn(citation)); // text(-1) is empty
    const std::optional<int> sourDate = m_sourDates.value(idSour);
    if (!sourDate || (*sourDate >= m_period.evtStartDate && *sourDate <= m_period.evtEndDate))
        return agreeing;
    return {citation, true, m_period.evtDate, *sourDate};
}

/// The first date of an event or source, empty unless it ends in a year.
QString DateComparer::readDate(TwItem *twi)
{
    const TwItem *twiDate = firstChildMatching(twi, m_dateLine);
    return twiDate ? twiDate->text(m_colAnnee.firstColumn(twiDate)) : QString();
}

DateComparer::Period DateComparer::readPeriod(TwItem *event)
{
    const QString evtDate = readDate(event);
    if (evtDate.startsWith("FROM "_L1)) {
        const QRegularExpressionMatch years = m_patterns.rxCatchAnnees.match(evtDate);
        if (years.lastCapturedIndex() == 2)
            return {evtDate, years.captured(1).toInt(), years.captured(2).toInt()};
    }
    // A year without a blank in front of it is passed over.
    const int annee = m_patterns.rxCatchAnnee.match(evtDate).captured(1).toInt();
    return {evtDate, annee, annee};
}

/// Of several sources with one identifier the first that is not deleted counts, whatever its date.
void DateComparer::readSources(const QList<TwItem *> &sources)
{
    const NumberedForm sourceId(m_patterns.rxColIdSour);
    for (TwItem *source : sources) {
        if (source->isToDelete())
            continue;
        // Unlike the event's date, this one is read as a whole: with a day or a month it is 0, and
        // therefore disagrees.
        const QString date = readDate(source);
        const auto sourDate = date.isEmpty() ? std::nullopt : std::optional(date.toInt());
        const QStringList ids = idsIn(source, sourceId);
        for (const QString &id : ids) {
            if (!m_sourDates.contains(id))
                m_sourDates.insert(id, sourDate);
        }
    }
}

HusbandLinks::HusbandLinks(QRegularExpression rxColIdFam, QList<TwItem *> indis)
    : m_rxColIdFam(std::move(rxColIdFam)),
      m_indis(std::move(indis))
{
}

TwItem *HusbandLinks::find(TwItem *root)
{
    const int indexColFam = root->getColumnIndexMatchRx(m_rxColIdFam);
    if (indexColFam == -1)
        return nullptr;
    auto link = m_links.find(root);
    if (link == m_links.end())
        link = m_links.insert(root, findLink(root, root->text(indexColFam)));
    return *link;
}

TwItem *HusbandLinks::findLink(TwItem *family, const QString &idFam)
{
    const QList<TwItem *> famChilds = family->getTabTwiChilds(true);
    const auto husb = std::find_if(famChilds.begin(), famChilds.end(), [](const TwItem *twi) {
        return lineText(twi).contains("1 HUSB @I"_L1);
    });
    if (husb == famChilds.end())
        return nullptr;
    const QString idHusb = (*husb)->text((*husb)->getColumnIndexContainsString(u"@I"_s, true));
    if (!m_indisById)
        m_indisById.emplace(m_indis);
    TwItem *husband = m_indisById->find(idHusb).value(0);
    if (!husband)
        return nullptr;
    const QList<TwItem *> indiChilds = husband->getTabTwiChilds(true);
    const auto link =
        std::find_if(indiChilds.begin(), indiChilds.end(), [&idFam](const TwItem *twi) {
            return twi->getColumnIndexEqualString(idFam, true) >= 0;
        });
    return link == indiChilds.end() ? nullptr : *link;
}

CitedEvents::CitedEvents(const QRegularExpression &rxDate) : m_dateLine(rxDate) { }

void CitedEvents::append(const QList<TwItem *> &citations)
{
    m_citations.append(citations);
    for (TwItem *citation : citations) {
        TwItem *event = citation->getParent();
        if (m_dates.contains(event))
            continue;
        const TwItem *date = firstChildMatching(event, m_dateLine);
        m_dates.insert(event, date ? date->getTwiValuesList() : QStringList());
    }
}

QList<TwItem *> CitedEvents::citing(const QString &idSour) const
{
    QList<TwItem *> events = m_citations.find(idSour);
    for (TwItem *&twi : events)
        twi = twi->getParent();
    return events;
}

QStringList CitedEvents::date(TwItem *event) const
{
    return m_dates.value(event);
}
