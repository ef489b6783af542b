#include "gedcomline.h"

#include <QRegularExpression>
#include <QTreeWidgetItem>
#include <QVarLengthArray>

#include <algorithm>
#include <utility>

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
    QVarLengthArray<QString, 3> columns;
    qsizetype size = 0;
    for (int column = 0; column < row->columnCount(); ++column) {
        columns.append(row->text(column));
        size += columns.last().size() + 1;
    }
    QString line;
    line.reserve(size);
    for (const QString &column : std::as_const(columns)) {
        if (&column != columns.constData())
            line += u' ';
        line += column;
    }
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

qint64 childLevel(const QTreeWidgetItem *row)
{
    return qint64(row->text(LevelColumn).toInt()) + 1;
}

QString bareFileName(const QString &path)
{
    return path.mid(std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\')) + 1);
}
