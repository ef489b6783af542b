#include "gedcomline.h"

#include <QRegularExpression>
#include <QTreeWidgetItem>

#include <algorithm>

using namespace Qt::StringLiterals;

const QRegularExpression &tagExpression()
{
    static const QRegularExpression rx(u"^_?[A-Z]{3,6}$"_s);
    return rx;
}

bool isTag(QStringView text)
{
    // "$" also matches in front of a final line feed.
    if (text.endsWith(u'\n'))
        text.chop(1);
    if (text.startsWith(u'_'))
        text = text.sliced(1);
    return text.size() >= 3 && text.size() <= 6
        && std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'A' && c <= u'Z'; });
}

bool isContinuation(const QString &tag)
{
    return tag == "CONT"_L1 || tag == "CONC"_L1;
}

QString lineText(const QTreeWidgetItem *row)
{
    // A line of a file has three columns at most, and is put together at once: a list of them took
    // 1,200 instructions instead of 700.
    const int count = row->columnCount();
    if (count <= TagColumn)
        return row->text(LevelColumn);
    if (count <= ValueColumn)
        return row->text(LevelColumn) + u' ' + row->text(TagColumn);
    QString line =
        row->text(LevelColumn) + u' ' + row->text(TagColumn) + u' ' + row->text(ValueColumn);
    for (int column = ValueColumn + 1; column < count; ++column)
        line += u' ' + row->text(column);
    return line;
}

qsizetype lineSize(const QTreeWidgetItem *row)
{
    qsizetype size = row->columnCount() - 1;
    for (int column = 0; column < row->columnCount(); ++column)
        size += row->text(column).size();
    return size;
}

bool lineBeginsWith(const QTreeWidgetItem *row, QStringView prefix)
{
    for (int column = 0; column < row->columnCount(); ++column) {
        if (column > 0) {
            if (!prefix.startsWith(u' '))
                return false;
            prefix = prefix.sliced(1);
            if (prefix.isEmpty())
                return true;
        }
        const QString text = row->text(column);
        if (text.size() >= prefix.size())
            return text.startsWith(prefix);
        if (!prefix.startsWith(text))
            return false;
        prefix = prefix.sliced(text.size());
    }
    return false;
}

int levelOf(const QTreeWidgetItem *row)
{
    const QString text = row->text(LevelColumn);
    // One character, as in every line of a file, does without the 220 instructions of toInt().
    if (text.size() == 1)
        return text.front() >= u'0' && text.front() <= u'9' ? text.front().unicode() - u'0' : 0;
    return text.toInt();
}

qint64 childLevel(const QTreeWidgetItem *row)
{
    return qint64(levelOf(row)) + 1;
}

QString bareFileName(const QString &path)
{
    return path.mid(std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\')) + 1);
}
