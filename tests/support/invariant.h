#ifndef INVARIANT_H
#define INVARIANT_H

#include <QList>
#include <QStringList>

class QTreeWidget;
class TwItem;

inline constexpr int SectionNodes = 7; // the first rows at the top of the tree

/// What is broken in the records \p roots, a text for each fault; empty if nothing is.
///
/// The list of a record holds its descendants, each once, in the order of the tree; that of any
/// other entry holds its children; and the lines for the file are those of the live entries. The
/// list of a record has an order of its own in two wanted cases: lines that hang under an earlier
/// parent stay where the file has them until an insertion further down renews the list, and an
/// entry that is inserted at the record itself enters the list at the index of the tree.
[[nodiscard]] QStringList faultsOf(const QList<TwItem *> &roots);

/// The records that stand in the tree, the deleted ones too.
[[nodiscard]] QList<TwItem *> recordsIn(const QTreeWidget &tree);

/// Fails the running test if there are \p faults.
void failOn(const QStringList &faults);

#endif // INVARIANT_H
