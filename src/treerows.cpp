#include "treerows.h"

#include "twitem.h"

#include <QApplication>
#include <QEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Hides or shows the rows below \p twi, which is at \p index, without looking for the row of each.
void setChildsHidden(TwItem *twi, QTreeWidget *tree, const QModelIndex &index, bool hide)
{
    // Last to first, which is the faster order to show rows.
    for (int row = twi->childCount() - 1; row >= 0; --row) {
        auto *child = static_cast<TwItem *>(twi->child(row));
        if (child->childCount() > 0)
            setChildsHidden(child, tree, tree->model()->index(row, 0, index), hide);
        if (hide || !child->isToDelete())
            tree->setRowHidden(row, index, hide);
    }
}

/// Inserts rows in front of others by adding them behind the last one and sorting.
///
/// Qt walks all hidden, expanded and current rows of the tree at each insertion in front of a row,
/// and its table of them does not shrink. Sorting looks at the siblings alone. It goes by the texts
/// of a column, so those of the levels give way to two that put the rows behind the new ones.
void insertWithoutWalkingHiddenRows(QTreeWidgetItem *parent, int index,
                                    const QList<QTreeWidgetItem *> &rows)
{
    const int behind = parent->childCount();
    parent->addChildren(rows);

    const QString level = rows.constFirst()->text(LevelColumn);
    QList<std::pair<QTreeWidgetItem *, QString>> replaced;
    const QSignalBlocker nobodySees(parent->treeWidget()->model());
    for (int i = 0; i < behind; ++i) {
        QTreeWidgetItem *row = parent->child(i);
        const QString text = i < index ? level : level + u'+';
        if (row->text(LevelColumn) == text)
            continue;
        replaced.append({row, row->text(LevelColumn)});
        row->setText(LevelColumn, text);
    }
    parent->sortChildren(LevelColumn, Qt::AscendingOrder); // which is stable
    for (const auto &[row, text] : std::as_const(replaced))
        row->setText(LevelColumn, text);
}

/// One inside the other, where an event has started another run.
QList<PausedLayout *> &alive()
{
    static QList<PausedLayout *> paused;
    return paused;
}

} // namespace

PausedLayout::PausedLayout(QTreeWidget *tree) : m_tree(tree), m_updates(tree->updatesEnabled())
{
    alive().append(this);
    m_tree->setUpdatesEnabled(false);
    m_tree->installEventFilter(this);
    m_tree->header()->installEventFilter(this);
    leaveLayoutPending();
}

PausedLayout::~PausedLayout()
{
    alive().removeOne(this);
    m_tree->setUpdatesEnabled(m_updates);
}

bool PausedLayout::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_tree && event->type() == QEvent::Resize)
        QMetaObject::invokeMethod(
            this, [this] { paintOnce(); }, Qt::QueuedConnection);
    return event->type() == QEvent::Timer && !QApplication::activeModalWidget();
}

void PausedLayout::putOffAgain()
{
    for (PausedLayout *paused : std::as_const(alive()))
        paused->leaveLayoutPending();
}

/// While a layout is pending, the view does not look for the place of a changed row. Hiding a row
/// asks for one, even where it changes nothing.
void PausedLayout::leaveLayoutPending()
{
    if (QTreeWidgetItem *row = m_tree->topLevelItem(0))
        row->setHidden(row->isHidden());
}

void PausedLayout::paintOnce()
{
    m_tree->setUpdatesEnabled(m_updates);
    m_tree->repaint();
    m_tree->setUpdatesEnabled(false);
    leaveLayoutPending();
}

DetachedRows::DetachedRows(QTreeWidget *tree)
    : m_tree(tree),
      m_current(tree->currentItem()),
      m_currentColumn(tree->currentColumn()),
      m_currentSelected(m_current && m_current->isSelected()),
      m_scrolled(tree->horizontalScrollBar()->value(), tree->verticalScrollBar()->value())
{
    for (QTreeWidgetItemIterator it(m_tree); *it; ++it) {
        if ((*it)->isHidden())
            m_hidden.append(*it);
        if ((*it)->isExpanded())
            m_expanded.append(*it);
    }
    // The view would keep what it knows of rows that are gone.
    for (QTreeWidgetItem *row : std::as_const(m_hidden))
        row->setHidden(false);
    m_tree->collapseAll();
    m_rows = m_tree->invisibleRootItem()->takeChildren();
}

DetachedRows::~DetachedRows()
{
    m_tree->addTopLevelItems(m_rows);
    for (QTreeWidgetItem *row : std::as_const(m_hidden))
        row->setHidden(true);
    for (QTreeWidgetItem *row : std::as_const(m_expanded))
        row->setExpanded(true);
    if (m_current) {
        const bool autoScroll = m_tree->hasAutoScroll();
        m_tree->setAutoScroll(false); // which would also expand what hides the current row
        m_tree->setCurrentItem(m_current, m_currentColumn,
                               m_currentSelected
                                   ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
                                   : QItemSelectionModel::NoUpdate);
        m_tree->setAutoScroll(autoScroll);
    }
    m_tree->doItemsLayout(); // before it the scroll bars have no range
    m_tree->horizontalScrollBar()->setValue(m_scrolled.x());
    m_tree->verticalScrollBar()->setValue(m_scrolled.y());
}

void insertRows(QTreeWidgetItem *parent, int index, const QList<QTreeWidgetItem *> &rows)
{
    const int behind = parent->childCount() - index;
    if (behind == 0 || !parent->treeWidget())
        parent->insertChildren(index, rows);
    else
        insertWithoutWalkingHiddenRows(parent, index, rows);
}

void renewRows(QTreeWidgetItem *parent)
{
    const QList<QTreeWidgetItem *> children = parent->takeChildren();
    for (QTreeWidgetItem *child : children)
        parent->addChild(child);
}

void showRows(const QList<TwItem *> &entries)
{
    for (TwItem *twi : entries)
        twi->setTwiHidden(false);
}

void setRecordsHidden(const QList<TwItem *> &roots, bool hide)
{
    // Last to first: the framework frees what it knows of hidden rows faster in this order.
    for (auto it = roots.crbegin(); it != roots.crend(); ++it) {
        if (QTreeWidget *tree = (*it)->treeWidget()) // a record below a submitter stands in none
            setChildsHidden(*it, tree, tree->indexFromItem(*it), hide);
        (*it)->setTwiHidden(hide);
    }
}
