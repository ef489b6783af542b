#include "outdatedlists.h"

#include "twitem.h"

#include <utility>

namespace {

/// The entries above \p twi whose lists hold what stands below it: normally the root.
QList<TwItem *> recordsAbove(TwItem *twi)
{
    TwItem *root = rootOf(twi);
    QList<TwItem *> records;
    if (root && root != twi)
        records.append(root);
    // What is written is the list of the record's head. This need not be that root: a replacement
    // can change any level, and the first record of a file can begin with any.
    TwItem *head = twi;
    for (TwItem *above = twi->getParent(); above && !above->getTabTwiChilds(false).isEmpty();
         above = above->getParent()) {
        head = above; // a section node lists none of its children
    }
    if (head != twi && head != root)
        records.append(head);
    return records;
}

} // namespace

OutdatedLists::~OutdatedLists()
{
    renewAll();
}

void OutdatedLists::insert(TwItem *parent, int index, const QList<TwItem *> &childs)
{
    renew(parent); // a record uses the child's index in the tree for its own list
    parent->placeChilds(index, childs);
    for (TwItem *record : recordsAbove(parent))
        m_outdated.insert(record);
}

void OutdatedLists::renew(TwItem *twi)
{
    if (m_outdated.remove(twi))
        twi->regenerateRootChilds(twi);
}

void OutdatedLists::renewAll()
{
    for (TwItem *record : std::as_const(m_outdated))
        record->regenerateRootChilds(record);
    m_outdated.clear();
}
