#include "occurrencemodel.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype SliceSize = 5000; // occurrences whose texts are searched between two events

QString columnText(const OccurrenceText &text, int column)
{
    switch (column) {
    case OccurrenceModel::Line:
        return QString::number(text.line);
    case OccurrenceModel::Before:
        return text.before;
    case OccurrenceModel::After:
        return text.after;
    default:
        return text.why;
    }
}

/// Several lines as one, since a row shows one.
QString onOneLine(QString text)
{
    return text.replace(u'\n', u" \u21b5 "_s);
}

} // namespace

OccurrenceModel::OccurrenceModel(QObject *parent) : QAbstractTableModel(parent)
{
    m_timer.callOnTimeout(this, &OccurrenceModel::filterNext);
}

void OccurrenceModel::setPreparation(const Preparation &preparation)
{
    beginResetModel();
    m_rows.clear(); // they are those of the former one
    m_preparation = preparation;
    endResetModel();
    startFilter();
}

void OccurrenceModel::setFilter(const FindingSet &findings, const QString &text)
{
    m_findings = findings;
    m_text = text;
    startFilter();
}

OccurrenceText OccurrenceModel::textAt(int row) const
{
    return textOf(m_preparation.occurrences.at(m_rows.at(row)), m_preparation);
}

int OccurrenceModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int OccurrenceModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant OccurrenceModel::data(const QModelIndex &index, int role) const
{
    if (role == Qt::TextAlignmentRole && index.column() == Line)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    return onOneLine(columnText(textAt(index.row()), index.column()));
}

QVariant OccurrenceModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QString titles[] = {tr("Ligne"), tr("Avant"), tr("Après"), tr("Pourquoi")};
    return titles[section];
}

void OccurrenceModel::startFilter()
{
    beginResetModel();
    m_rows.clear();
    m_next = 0;
    endResetModel();
    m_timer.start(0);
    filterNext();
}

void OccurrenceModel::filterNext()
{
    const QList<Occurrence> &all = m_preparation.occurrences;
    // Without a text to look for, no text is made.
    const qsizetype end = m_text.isEmpty() ? all.size() : std::min(all.size(), m_next + SliceSize);
    QList<qint32> found;
    for (; m_next < end; ++m_next) {
        if (passes(all.at(m_next)))
            found += qint32(m_next);
    }
    if (!found.isEmpty()) {
        beginInsertRows({}, int(m_rows.size()), int(m_rows.size() + found.size() - 1));
        m_rows += found;
        endInsertRows();
    }
    if (!isFiltering()) {
        m_timer.stop();
        emit filtered();
    }
}

bool OccurrenceModel::passes(const Occurrence &occurrence) const
{
    if (!m_findings.contains(occurrence.finding))
        return false;
    if (m_text.isEmpty())
        return true;
    const OccurrenceText text = textOf(occurrence, m_preparation);
    for (int column = 0; column < ColumnCount; ++column) {
        if (columnText(text, column).contains(m_text, Qt::CaseInsensitive))
            return true;
    }
    return false;
}
