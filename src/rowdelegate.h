#ifndef ROWDELEGATE_H
#define ROWDELEGATE_H

#include <QStyledItemDelegate>

/// Draws rows as the framework does, but for a text that could not be read on the background that
/// its row was given, such as white on red: that one is black or white, whichever stands out more.
class RowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
};

#endif // ROWDELEGATE_H
