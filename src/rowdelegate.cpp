#include "rowdelegate.h"

#include "contrast.h"

void RowDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (option->backgroundBrush.style() != Qt::SolidPattern)
        return;
    // A selected row has other colours, which go with each other.
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const QColor text = option->palette.color(group, QPalette::Text);
        option->palette.setColor(group, QPalette::Text,
                                 readableOn(option->backgroundBrush.color(), text));
    }
}
