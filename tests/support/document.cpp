#include "document.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <QTreeWidgetItemIterator>

using namespace Qt::StringLiterals;

namespace {

qsizetype positionOf(const QStringList &lines, const QString &line)
{
    const qsizetype position = lines.indexOf(line);
    if (position == -1)
        qFatal("no line %s", qPrintable(line));
    return position;
}

} // namespace

QStringList journalWithoutTimes(const QString &journal)
{
    static const QRegularExpression time(uR"(^\d\d:\d\d:\d\d\.\d\d\d - )"_s);
    QStringList lines = journal.split(u"\r\n"_s);
    if (!lines.takeLast().isEmpty())
        QTest::qFail("the journal does not end in a line end", __FILE__, __LINE__);
    for (QString &line : lines)
        line.remove(time);
    return lines;
}

void writeLines(const QString &path, const QStringList &lines)
{
    writeBytes(path, (lines.join(u'\n') + u'\n').toUtf8());
}

void writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        QTest::qFail(qPrintable("cannot write " + path), __FILE__, __LINE__);
}

QByteArray readBytes(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        QTest::qFail(qPrintable("cannot read " + path), __FILE__, __LINE__);
    return file.readAll();
}

QByteArray readText(const QString &path)
{
    QByteArray text = readBytes(path);
#ifdef Q_OS_WIN
    text.replace("\r\n", "\n");
#endif
    return text;
}

QStringList readLines(const QString &path)
{
    QStringList lines = QString::fromUtf8(readText(path)).split(u'\n');
    if (lines.constLast().isEmpty())
        lines.removeLast();
    return lines;
}

QStringList replaced(QStringList lines, const QString &line, const QString &other)
{
    lines.replace(positionOf(lines, line), other);
    return lines;
}

QStringList insertedBehind(QStringList lines, const QString &line, const QString &added)
{
    lines.insert(positionOf(lines, line) + 1, added);
    return lines;
}

TwItem *sectionNode(const QTreeWidget &tree, const QString &label)
{
    for (int i = 0; i < tree.topLevelItemCount(); ++i) {
        if (tree.topLevelItem(i)->text(0) == label)
            return static_cast<TwItem *>(tree.topLevelItem(i));
    }
    qFatal("the tree has no section %s", qPrintable(label));
}

Document::Document()
{
    tree.setColumnCount(4);
}

Document::~Document()
{
    failOn(faults());
}

bool Document::load(const QStringList &lines)
{
    writeLines(path(), lines + QStringList{u"0 TRLR"_s});
    return loadFile();
}

bool Document::loadFile()
{
    const bool loaded = gedcom.genererVectorGed(path(), &tree, &progress, &statusBar);
    m_refused = m_refused || !loaded;
    return loaded;
}

QString Document::path() const
{
    return m_folder.filePath(u"arbre.ged"_s);
}

QStringList Document::archive() const
{
    const QDir dir(folder() + u"/ARCH/"_s + QDate::currentDate().toString(u"yyyy.MM.dd"_s));
    return dir.entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

QStringList Document::journal() const
{
    failOn(faults());
    return journalWithoutTimes(gedcom.getJournal());
}

QStringList Document::newJournal()
{
    failOn(faults());
    const QString whole = gedcom.getJournal();
    const QString news = whole.mid(m_journalSeen);
    m_journalSeen = whole.size();
    return journalWithoutTimes(news);
}

QStringList Document::lines() const
{
    failOn(faults());
    QStringList lines;
    const QList<TwItem *> roots = gedcom.getTabTwItemsRoot();
    for (TwItem *root : roots)
        lines += root->getGedEntryList();
    return lines;
}

TwItem *Document::entry(const QString &line) const
{
    const QList<TwItem *> roots = gedcom.getTabTwItemsRoot();
    for (TwItem *root : roots) {
        if (lineText(root) == line)
            return root;
        const QList<TwItem *> tabTwi = root->getTabTwiChilds(false);
        for (TwItem *twi : tabTwi) {
            if (lineText(twi) == line)
                return twi;
        }
    }
    return nullptr;
}

QStringList Document::faults() const
{
    const QList<TwItem *> roots = gedcom.getTabTwItemsRoot();
    QList<TwItem *> records = roots; // those of the submitters stand in no tree
    const QSet<TwItem *> written(roots.begin(), roots.end());
    QStringList lost;
    const QList<TwItem *> shown = recordsIn(tree);
    for (TwItem *record : shown) {
        if (written.contains(record))
            continue;
        records += record;
        if (!record->isToDelete() && !m_refused)
            lost += "the record is not written: "_L1 + lineText(record);
    }
    return lost + faultsOf(records);
}
