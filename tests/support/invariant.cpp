#include "invariant.h"

#include "twitem.h"

#include <QTest>
#include <QTreeWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// The rows below \p row, each in front of what is below it.
void appendDescendants(const QTreeWidgetItem *row, QList<TwItem *> *descendants)
{
    for (int i = 0; i < row->childCount(); ++i) {
        descendants->append(static_cast<TwItem *>(row->child(i)));
        appendDescendants(row->child(i), descendants);
    }
}

QList<TwItem *> childrenOf(const QTreeWidgetItem *row)
{
    QList<TwItem *> children;
    for (int i = 0; i < row->childCount(); ++i)
        children.append(static_cast<TwItem *>(row->child(i)));
    return children;
}

bool isSame(QList<TwItem *> one, QList<TwItem *> other)
{
    std::sort(one.begin(), one.end());
    std::sort(other.begin(), other.end());
    return one == other;
}

QString joinedColumns(const TwItem *twi)
{
    return twi->getTwiValuesList().join(u' ');
}

int lineNumber(const TwItem *twi)
{
    return twi->getNumLineGedFile().toInt();
}

/// Whether the list of \p root may have the order that it has.
bool isInOrder(const QTreeWidgetItem *root, QList<TwItem *> listed, QList<TwItem *> descendants)
{
    if (listed == descendants)
        return true;
    const auto enteredAnywhere = [root](const TwItem *twi) {
        return lineNumber(twi) == -1 && twi->parent() == root;
    };
    listed.removeIf(enteredAnywhere);
    descendants.removeIf(enteredAnywhere);
    if (listed == descendants)
        return true;
    std::sort(descendants.begin(), descendants.end(), [](const TwItem *one, const TwItem *other) {
        return lineNumber(one) < lineNumber(other);
    });
    return listed == descendants && (listed.isEmpty() || lineNumber(listed.constFirst()) > 0);
}

/// Whether the list of \p twi, which is no record, holds its children. An entry that a replacement
/// makes read as a record may have got the rest of its descendants, too.
bool listsChildren(TwItem *twi)
{
    const QList<TwItem *> children = childrenOf(twi);
    QList<TwItem *> listed = twi->getTabTwiChilds(false);
    if (listed.size() <= children.size())
        return listed == children;
    listed.removeIf([twi](const TwItem *child) { return child->parent() != twi; });
    return isSame(listed, children);
}

} // namespace

QStringList faultsOf(const QList<TwItem *> &roots)
{
    QStringList faults;
    const auto fault = [&faults](const QString &what, const TwItem *twi) {
        faults += what + ": "_L1 + joinedColumns(twi) + " (l."_L1 + twi->getNumLineGedFile() + u')';
    };
    for (TwItem *root : roots) {
        QList<TwItem *> descendants;
        appendDescendants(root, &descendants);
        const QList<TwItem *> listed = root->getTabTwiChilds(false);
        if (!isSame(listed, descendants)) {
            fault(u"the list of the record is not what stands below it"_s, root);
            continue;
        }
        if (!isInOrder(root, listed, descendants))
            fault(u"the list of the record has another order than the tree"_s, root);
        QStringList live;
        if (!root->isToDelete())
            live += joinedColumns(root);
        for (TwItem *twi : listed) {
            if (!listsChildren(twi))
                fault(u"the list of the entry is not its children"_s, twi);
            if (!root->isToDelete() && !twi->isToDelete())
                live += joinedColumns(twi);
        }
        if (root->getGedEntryList() != live)
            fault(u"the lines for the file are not the live ones"_s, root);
    }
    return faults;
}

QList<TwItem *> recordsIn(const QTreeWidget &tree)
{
    QList<TwItem *> records;
    for (int i = 0; i < tree.topLevelItemCount(); ++i) {
        if (i < SectionNodes)
            records += childrenOf(tree.topLevelItem(i));
        else
            records.append(static_cast<TwItem *>(tree.topLevelItem(i))); // of unknown kind
    }
    return records;
}

void failOn(const QStringList &faults)
{
    if (!faults.isEmpty())
        QTest::qFail(qPrintable(faults.join(u'\n')), __FILE__, __LINE__);
}
