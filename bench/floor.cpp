#include "floor.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextStream>
#include <QTreeWidget>

#include <array>

using namespace Qt::StringLiterals;

namespace {

class FloorItem : public QTreeWidgetItem
{
public:
    explicit FloorItem(const QRegularExpression &rx) : m_rx(rx) { }

private:
    const QRegularExpression m_rx;
};

int writeItem(QTextStream &out, const QTreeWidgetItem *item)
{
    QStringList columns;
    for (int column = 0; column < item->columnCount(); ++column)
        columns.append(item->text(column));
    out << columns.join(u' ') << Qt::endl;
    int lines = 1;
    for (int i = 0; i < item->childCount(); ++i)
        lines += writeItem(out, item->child(i));
    return lines;
}

} // namespace

int floorLoad(const QString &path, QTreeWidget *tree)
{
    static const QRegularExpression rx(u"^_?[A-Z]{3,6}$"_s);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        qFatal("cannot read %s", qPrintable(path));
    QTextStream in(&file);
    int count = 0;
    for (QString line; !in.atEnd(); ++count)
        in.readLineInto(&line);
    in.seek(0);

    QList<QTreeWidgetItem *> roots;
    std::array<QTreeWidgetItem *, 10> lastOfLevel{};
    for (int number = 1; !in.atEnd(); ++number) {
        const QString line = in.readLine();
        auto *item = new FloorItem(rx);
        const QString toolTip = u"ligne "_s + QString::number(number);
        item->setToolTip(0, toolTip);
        item->setToolTip(1, toolTip);
        item->setText(0, line.left(1));
        const qsizetype blank = line.indexOf(u' ', 2);
        item->setText(1, line.mid(2, blank == -1 ? -1 : blank - 2));
        if (blank != -1)
            item->setText(2, line.mid(blank + 1));
        const auto level = size_t(line.at(0).digitValue());
        if (level == 0)
            roots.append(item);
        else
            lastOfLevel.at(level - 1)->addChild(item);
        lastOfLevel.at(level) = item;
    }
    // The view lays out one row, as it does the few section nodes of the program.
    auto *section = new QTreeWidgetItem;
    section->addChildren(roots);
    tree->addTopLevelItem(section);
    return count;
}

int floorSave(const QString &path, const QTreeWidget *tree)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        qFatal("cannot write %s", qPrintable(path));
    QTextStream out(&file);
    int lines = 0;
    const QTreeWidgetItem *section = tree->topLevelItem(0);
    for (int i = 0; i < section->childCount(); ++i)
        lines += writeItem(out, section->child(i));
    return lines;
}
