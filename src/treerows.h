#ifndef TREEROWS_H
#define TREEROWS_H

// What is done to many rows of the tree at once: putting off their layout, taking them out and
// back, inserting, hiding and showing them.

#include <QList>
#include <QObject>
#include <QPoint>

class QTreeWidget;
class QTreeWidgetItem;
class TwItem;

/// Puts off the layout and the painting of the rows of a tree for as long as it lives.
///
/// Hiding a row lays out every row on screen, changing one makes Qt search for it, and each layout
/// repaints: with 20,000 expanded rows, a fold of 67,000 lines took 86 s. All of this is done once,
/// at the end. Only a tree that is resized is painted at once.
class PausedLayout : public QObject
{
public:
    explicit PausedLayout(QTreeWidget *tree);
    ~PausedLayout() override;
    Q_DISABLE_COPY_MOVE(PausedLayout)

    /// Swallows the timer events of the tree and of its header, which are due for the layout and
    /// the column widths; but not while a dialog is open, where an unhandled zero timer would spin
    /// the dialog's event loop.
    bool eventFilter(QObject *watched, QEvent *event) override;

    /// Puts the layout off again. To be called once events have been processed or a box has been
    /// shown: a tool tip, a key or a click makes the view lay out its rows, and each change after
    /// that would do so again. 500 changes took 9 s instead of 0.2 s.
    static void putOffAgain();

private:
    void leaveLayoutPending();
    void paintOnce();

    QTreeWidget *m_tree;
    bool m_updates;
};

/// Takes all rows out of a tree for as long as it lives, and puts them back as they were.
///
/// Whenever a row is inserted in front of another, Qt walks its table of hidden, expanded and
/// current rows, which never shrinks: 26,000 cuts beside 80,000 hidden rows took 9 s. Taking a
/// million rows out and back takes a few tenths of a second. No event may be processed in the
/// meantime: the tree is empty.
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
    bool m_currentSelected; // only the current row can be selected in this tree
    QPoint m_scrolled;
    QList<QTreeWidgetItem *> m_hidden;
    QList<QTreeWidgetItem *> m_expanded;
    QList<QTreeWidgetItem *> m_rows;
};

/// Inserts \p rows among the children of \p parent, the first of them at \p index.
void insertRows(QTreeWidgetItem *parent, int index, const QList<QTreeWidgetItem *> &rows);

/// Re-adds the children, which resets the row numbers that Qt caches: after an insertion these are
/// out of date and Qt would search for each child, which is quadratic in a note of 200,000 lines.
/// \p parent must not be in a tree.
void renewRows(QTreeWidgetItem *parent);

/// Shows the rows of \p entries, except deleted ones.
void showRows(const QList<TwItem *> &entries);

/// Hides the rows of the records \p roots and everything below them, or shows them, except deleted
/// ones. A record outside the tree stays as it is.
void setRecordsHidden(const QList<TwItem *> &roots, bool hide);

#endif // TREEROWS_H
