#ifndef OCCURRENCEMODEL_H
#define OCCURRENCEMODEL_H

#include "preparation.h"

#include <QAbstractTableModel>
#include <QTimer>

/// The occurrences of a preparation that a filter lets through, one a row. There may be a million:
/// a row is a number until its texts are asked for, and a filter by text looks at some thousand
/// occurrences between two events, so that its rows come little by little.
class OccurrenceModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Line, Before, After, Why, ColumnCount };

    explicit OccurrenceModel(QObject *parent = nullptr);

    /// Shows another preparation, all of whose occurrences may come.
    void setPreparation(const Preparation &preparation);
    [[nodiscard]] const Preparation &preparation() const
    {
        return m_preparation;
    }

    /// Shows the occurrences of \p findings that have \p text in one of their columns, in capitals
    /// or not.
    void setFilter(const FindingSet &findings, const QString &text);
    /// Whether more rows may come.
    [[nodiscard]] bool isFiltering() const
    {
        return m_next < m_preparation.occurrences.size();
    }

    [[nodiscard]] OccurrenceText textAt(int row) const;
    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

signals:
    /// All occurrences have been looked at.
    void filtered();

private:
    void startFilter();
    /// Looks at the next occurrences.
    void filterNext();
    [[nodiscard]] bool passes(const Occurrence &occurrence) const;

    Preparation m_preparation;
    FindingSet m_findings;
    QString m_text;
    QList<qint32> m_rows; // indexes of the occurrences shown
    qsizetype m_next = 0; // the first occurrence that has not been looked at
    QTimer m_timer;
};

#endif // OCCURRENCEMODEL_H
