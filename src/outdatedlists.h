#ifndef OUTDATEDLISTS_H
#define OUTDATEDLISTS_H

#include <QList>
#include <QSet>
#include <QtGlobal>

class TwItem;

/// Insertions below records whose flat lists are renewed later, each list once.
///
/// To renew a list takes as long as its record is large, and a run that inserts thousands of
/// entries into one record must not do so for each: 8,000 of them took 12 s. The lists must be
/// right wherever somebody reads them: when events are processed, and where the run itself looks
/// for the children of a record. At the end of this object's life they are.
class OutdatedLists
{
public:
    OutdatedLists() = default;
    ~OutdatedLists();
    Q_DISABLE_COPY_MOVE(OutdatedLists)

    /// Inserts \p childs, of which \p parent takes ownership, like TwItem::insertTabChild().
    void insert(TwItem *parent, int index, const QList<TwItem *> &childs);

    /// Renews the list of \p twi, if it is out of date.
    void renew(TwItem *twi);

    /// Renews all lists that are out of date.
    void renewAll();

private:
    QSet<TwItem *> m_outdated;
};

#endif // OUTDATEDLISTS_H
