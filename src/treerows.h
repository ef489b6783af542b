#ifndef TREEROWS_H
#define TREEROWS_H

// Many rows of the tree at once: their layout held back, rows taken out and put back, the rows of
// records shown or hidden.

#include <QList>
#include <QObject>
#include <QPoint>

class QTreeWidget;
class QTreeWidgetItem;
class TwItem;

/// Keeps the tree widget from laying out and painting its rows while it lives.
///
/// Hiding a row lays out every row on screen; changing one searches for it; each layout paints. We
/// do all that once, at the end: with 20,000 expanded rows a fold of 67,000 lines took 86 s. Only
/// where the tree is resized meanwhile, it is painted at once.
class PausedLayout : public QObject
{
public:
    explicit PausedLayout(QTreeWidget *tree);
    ~PausedLayout() override;
    Q_DISABLE_COPY_MOVE(PausedLayout)

    /// Holds back the timers of the tree and of its header, those of the layout and of the widths
    /// of the columns among them; but not behind a dialog, where an unhandled zero timer would spin
    /// the dialog's event loop.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void leaveLayoutPending();
    void paintOnce();

    QTreeWidget *m_tree;
    bool m_updates;
};

/// Takes all rows out of the tree widget while it lives, and puts them back as they were.
///
/// At every insertion in front of another row the framework walks its table of hidden, expanded and
/// current rows, which does not shrink when rows are shown again: 26,000 cuts beside 80,000 hidden
/// rows took 9 s. To take all rows out and back is a few tenths of a second for a million. No event
/// may be processed meanwhile: it would find an empty tree.
class DetachedRows
{
public:
    explicit DetachedRows(QTreeWidget *tree);
    ~DetachedRows();
    Q_DISABLE_COPY_MOVE(DetachedRows)

private:
    QTreeWidget *m_tree;
    QTreeWidgetItem *m_current;
    int m_currentColumn;
    bool m_currentSelected; // a row that is not current cannot be selected in this tree
    QPoint m_scrolled;
    QList<QTreeWidgetItem *> m_hidden;
    QList<QTreeWidgetItem *> m_expanded;
    QList<QTreeWidgetItem *> m_rows;
};

/// Inserts \p rows among the children of \p parent, the first of them at \p index.
void insertRows(QTreeWidgetItem *parent, int index, const QList<QTreeWidgetItem *> &rows);

/// Re-adds the children, which resets the row numbers that Qt caches: once an insertion has moved
/// them it would search for every one, which is quadratic in a note of 200,000 lines. \p parent
/// must be out of the view.
void renewRows(QTreeWidgetItem *parent);

/// Shows the rows of \p entries, but for the deleted ones.
void showRows(const QList<TwItem *> &entries);

/// Hides the rows of the records \p roots and all below them, or shows them but for the deleted
/// ones; a record outside the tree stays as it is.
void setRecordsHidden(const QList<TwItem *> &roots, bool hide);

#endif // TREEROWS_H
