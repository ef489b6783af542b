#include "twitem.h"

#include "journaltext.h"
#include "matching.h"
#include "outdatedlists.h"
#include "oversized.h"
#include "recordlines.h"
#include "treerows.h"

#include <QIcon>
#include <QSet>
#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// A string equal to \p text that all entries with this level or tag share. A file has few of them;
/// shared, they take no memory of their own and stay in the processor's caches.
QString sharedString(QStringView text)
{
    static std::array<QString, 256> known; // each at the index that its hash gives
    QString &found = known.at(qHash(text) % known.size());
    if (found != text)
        found = text.toString();
    return found;
}

} // namespace

TwItem::TwItem(int p_numLineGedFile)
    : QTreeWidgetItem(Type),
      m_rxTag(tagExpression()),
      m_numLineGedFile(p_numLineGedFile)
{
    // One string for both columns: it is shared, not copied.
    static const QString prefix = tr("ligne ");
    const QString toolTip = prefix + QString::number(p_numLineGedFile);
    setToolTip(LevelColumn, toolTip);
    setToolTip(TagColumn, toolTip);
}

QString TwItem::getNumLineGedFile() const
{
    return QString::number(m_numLineGedFile);
}

bool TwItem::isRoot()
{
    return text(LevelColumn) == "0"_L1;
}

namespace {

/// The first column, from \p column on, that has the form of a tag; null if none has.
QString firstTag(const TwItem *twi, int column)
{
    for (; column < twi->columnCount(); ++column) {
        QString value = twi->text(column);
        if (isTag(value))
            return value;
    }
    return {};
}

/// The tag of \p twi as a component of full tags; null if it takes no part in them, and they begin
/// below it. A section node reads as level 0, but has no tag. A record of unknown kind stands at
/// the top of the tree, with no section node above it.
QString fullTagComponent(const TwItem *twi)
{
    if (!twi)
        return {};
    // One character, as in every line of a file, is no tag, nor a negative level.
    const QString level = twi->text(LevelColumn);
    const bool isLong = level.size() > 1;
    const QString tag = firstTag(twi, isLong ? LevelColumn : TagColumn);
    return tag == NoTag || (isLong && !tag.isNull() && level.toInt() < 0) ? QString() : tag;
}

} // namespace

QString TwItem::getTag()
{
    const QString tag = firstTag(this, LevelColumn);
    return tag.isNull() ? QString(NoTag) : tag;
}

QStringList TwItem::getFullTag()
{
    QVarLengthArray<QString, 10> tags; // from this entry up
    TwItem *twi = this;
    for (QString tag = fullTagComponent(twi); !tag.isNull(); tag = fullTagComponent(twi)) {
        tags.append(tag);
        twi = twi->getParent();
    }
    return {tags.crbegin(), tags.crend()};
}

QList<TwItem *> TwItem::getTabTwiChilds(bool noHidden)
{
    if (!noHidden)
        return m_tabTwiChilds;

    QList<TwItem *> live;
    live.reserve(m_tabTwiChilds.size());
    std::copy_if(m_tabTwiChilds.cbegin(), m_tabTwiChilds.cend(), std::back_inserter(live),
                 [](const TwItem *twi) { return !twi->m_toDelete; });
    return live;
}

QStringList TwItem::getTwiValuesList() const
{
    QStringList columns;
    columns.reserve(columnCount());
    for (int column = 0; column < columnCount(); ++column)
        columns.append(text(column));
    return columns;
}

QStringList TwItem::getValuesListFromLine(QString line) const
{
    QStringList list;
    if (line.isEmpty())
        return list;

    // Intentional: the level is one character, and the next one is dropped unseen. "12 NOTE x" is a
    // line of level 1 with an empty tag.
    list.append(sharedString(QStringView(line).first(1)));
    const QStringView rest = QStringView(line).mid(2);
    if (rest.isEmpty())
        return list;

    const qsizetype blank = rest.indexOf(u' ');
    if (blank == -1) {
        list.append(sharedString(rest));
        return list;
    }
    list.append(sharedString(rest.first(blank)));
    const QStringView value = rest.sliced(blank + 1);
    if (!value.isEmpty())
        list.append(value.toString());
    return list;
}

TwItem *TwItem::getParent()
{
    return static_cast<TwItem *>(parent());
}

int TwItem::getThisTwiIndexParent(TwItem *child) const
{
    const QTreeWidgetItem *parent = child->parent();
    return parent ? parent->indexOfChild(child) : -1;
}

int TwItem::getThisTabIndexParent(TwItem *child) const
{
    TwItem *parent = child->getParent();
    return parent ? int(parent->getTabTwiChilds(false).indexOf(child)) : -1;
}

int TwItem::getLevel()
{
    return levelOf(this);
}

const QStringList TwItem::getGedEntryList()
{
    QStringList lines;
    if (m_toDelete)
        return lines;

    lines.append(lineText(this));
    const QList<TwItem *> tabTwi = getTabTwiChilds(true);
    for (const TwItem *twi : tabTwi)
        lines.append(lineText(twi));
    return lines;
}

bool TwItem::isToDelete()
{
    return m_toDelete;
}

void TwItem::setLineNumber(int p_numLineGedFile)
{
    m_numLineGedFile = p_numLineGedFile;
}

bool TwItem::insertStrAtIndex(QString strToInsert, QString strToMatch, int twiCol, bool before)
{
    if (twiCol == -1)
        return false;

    QString newText = text(twiCol);
    qsizetype index = newText.indexOf(strToMatch);
    if (!before)
        index += strToMatch.size();
    setText(twiCol, newText.insert(index, strToInsert).trimmed());
    return true;
}

void TwItem::insertTabChild(int twiIndex, TwItem *twiChild)
{
    OutdatedLists().insert(this, twiIndex, {twiChild});
}

QStringList TwItem::delChilds()
{
    QStringList logs;
    for (int i = 0; i < childCount(); ++i) {
        auto *twi = static_cast<TwItem *>(child(i));
        if (twi->setDelete(true))
            logs.append(deletionLog(twi));
        logs.append(twi->delChilds());
    }
    return logs;
}

void TwItem::setTwiHidden(bool hide)
{
    if (hide || !m_toDelete)
        setHidden(hide);
}

bool TwItem::setDelete(bool del)
{
    if (m_toDelete)
        return false;
    m_toDelete = del;
    setHidden(true); // also for del false: the review tools show a live row again
    return true;
}

void TwItem::setTwiValuesFromStr(QString lineValues, TwItem *twi)
{
    const QStringList columns = getValuesListFromLine(lineValues);
    for (int column = 0; column < int(columns.size()); ++column)
        twi->setText(column, columns.at(column));
}

int TwItem::setEntryTwItems(QStringList listEntryValues, int currentLineGedFile)
{
    setTwiValuesFromStr(listEntryValues.value(0), this);

    // The latest entry of each level, parent of the next line one level deeper even if shallower
    // ones have come in between. A search backwards would be quadratic in a note of 200,000 lines.
    std::array<TwItem *, 10> lastOfLevel{}; // a level is one digit
    RecordLevels levels;
    for (qsizetype i = 1; i < listEntryValues.size(); ++i) {
        auto *twiChild = new TwItem(++currentLineGedFile);
        m_tabTwiChilds.append(twiChild);
        setTwiValuesFromStr(listEntryValues.at(i), twiChild);

        const int level = levelOf(twiChild);
        if (!levels.take(level))
            return 0;
        if (level == 1) {
            // It stands in the list of this root already.
            addChild(twiChild);
        } else {
            TwItem *twiParent = lastOfLevel.at(size_t(level - 1));
            twiParent->addChild(twiChild);
            twiParent->m_tabTwiChilds.append(twiChild);
        }
        lastOfLevel.at(size_t(level)) = twiChild;
    }
    return currentLineGedFile;
}

namespace {

/// Cuts the line of \p twi and inserts the new entries. Returns the text to log, if the line is cut
/// at all: of several cuts, only the first is logged. Notes in \p parents where it has inserted.
QStringList cutLine(TwItem *twi, OutdatedLists *lists, QSet<TwItem *> *parents)
{
    const Cut cut = cutOff(twi);
    if (!cut.parent)
        return {};
    lists->insert(cut.parent, cut.index, cut.pieces);
    parents->insert(cut.parent);
    const QString concText = fullTagText(cut.pieces.constFirst()) + u' ' + cut.wholeLine;
    QStringList log{cutLog(concText, twi)};
    // Only a piece that is no CONC can still be too long.
    cutLine(cut.pieces.constLast(), lists, parents);
    return log;
}

} // namespace

QStringList TwItem::splitTagOverSized(TwItem *twiOri, QStringList splitList)
{
    OutdatedLists lists;
    QSet<TwItem *> parents;
    return splitList + cutLine(twiOri, &lists, &parents);
}

QList<QStringList> TwItem::splitAllOverSized(const QList<TwItem *> &entries)
{
    QList<QStringList> splitLists;
    OutdatedLists lists;
    QSet<TwItem *> parents;
    for (TwItem *twi : entries)
        splitLists.append(twi->m_toDelete ? QStringList() : cutLine(twi, &lists, &parents));
    for (TwItem *parent : std::as_const(parents))
        renewRows(parent);
    return splitLists;
}

namespace {

/// Whether \p pattern, in which a component "*" stands for any one tag, is the full tag of \p twi,
/// whose own component is \p tag. A null pattern is the full tag without a component.
bool isFullTag(QStringView pattern, TwItem *twi, const QString &tag)
{
    if (pattern.isNull() || tag.isNull())
        return pattern.isNull() && tag.isNull();
    // From the end: most entries differ in their own tag, and need no walk up to the root.
    const qsizetype dot = pattern.lastIndexOf(u'.');
    const QStringView component = pattern.sliced(dot + 1);
    if (component != tag && component != "*"_L1)
        return false;
    TwItem *parent = twi->getParent();
    return isFullTag(dot == -1 ? QStringView() : pattern.first(dot), parent,
                     fullTagComponent(parent));
}

} // namespace

bool TwItem::isTagMatch(QStringList fullTagsList)
{
    if (fullTagsList.isEmpty())
        return true;
    const QString component = fullTagComponent(this);
    const QString tag =
        component.isNull() ? getTag() : component; // which counts by itself in any case
    return std::any_of(fullTagsList.cbegin(), fullTagsList.cend(), [&](const QString &fulltag) {
        return fulltag == tag
            || isFullTag(fulltag.isEmpty() ? QStringView() : fulltag, this, component);
    });
}

QList<TwItem *> TwItem::getTabTwiChildsMatchReg(QRegularExpression rx)
{
    return childsMatching(this, LineMatcher(rx));
}

void TwItem::getChildsListFromFullTag(QStringList fullTag, QList<TwItem *> *listTwiMatch,
                                      TwItem *twiParent)
{
    const QStringList pattern{fullTag.join(u'.')};
    if (twiParent->isTagMatch(pattern)) {
        listTwiMatch->append(twiParent);
        return;
    }

    const qint64 level = childLevel(twiParent);
    // An entry without a tag on the way makes the full tag shorter than the level suggests. The
    // path may then have no component for the children, and none of them takes part.
    if (level < 0 || level >= fullTag.size())
        return;
    const QString &component = fullTag.at(level);
    const QList<TwItem *> tabTwi = twiParent->getTabTwiChilds(true);
    for (TwItem *twi : tabTwi) {
        // The list of a root holds all its descendants.
        if (levelOf(twi) != level)
            continue;
        if (component != "*"_L1 && twi->getTag() != component)
            continue;
        if (level < fullTag.size() - 1)
            getChildsListFromFullTag(fullTag, listTwiMatch, twi);
        else if (twi->isTagMatch(pattern))
            listTwiMatch->append(twi); // isTagMatch() has compared the first component, too
    }
}

TwItem *TwItem::getItemParentFromFullTag(QStringList fullTag, TwItem *twi)
{
    // The full tags of the ancestors are those that this one begins with.
    const QStringList thisFullTag = twi->getFullTag();
    if (fullTag.isEmpty() || fullTag != thisFullTag.mid(0, fullTag.size()))
        return nullptr;
    for (qsizetype above = thisFullTag.size() - fullTag.size(); above > 0; --above)
        twi = twi->getParent();
    return twi;
}

int TwItem::getColumnIndexMatchRx(QRegularExpression rx) const
{
    if (!rx.isValid())
        return -1; // an invalid expression matches nothing, and would warn at each attempt
    for (int column = 0; column < columnCount(); ++column) {
        if (rx.match(text(column)).hasMatch())
            return column;
    }
    return -1;
}

int TwItem::getColumnIndexEqualString(QString valueToSearch, bool sensitive) const
{
    const QString upper = sensitive ? QString() : valueToSearch.toUpper();
    for (int column = 0; column < columnCount(); ++column) {
        const QString value = text(column);
        if (sensitive ? value == valueToSearch : value.toUpper() == upper)
            return column;
    }
    return -1;
}

int TwItem::getColumnIndexContainsString(QString valueToSearch, bool sensitive) const
{
    const Qt::CaseSensitivity cs = sensitive ? Qt::CaseSensitive : Qt::CaseInsensitive;
    for (int column = 0; column < columnCount(); ++column) {
        if (text(column).contains(valueToSearch, cs))
            return column;
    }
    return -1;
}

QString TwItem::getAbsolutFileName(QString FileName) const
{
    // Intentional: the level and the tag are searched, too. For the name "1" this is the level.
    const int column = getColumnIndexContainsString(FileName, false);
    return column == -1 ? QString() : bareFileName(text(column));
}

void TwItem::placeChilds(int twiIndex, const QList<TwItem *> &twiChilds)
{
    if (twiIndex < 0 || twiIndex > childCount())
        twiIndex = childCount();
    insertRows(this, twiIndex, {twiChilds.begin(), twiChilds.end()});
    // Intentional: a root uses the index in the tree although its list holds all descendants. The
    // new entry lands in file order only if the children before it have no children of their own.
    twiIndex = int(std::min<qsizetype>(twiIndex, m_tabTwiChilds.size()));
    m_tabTwiChilds.insert(twiIndex, twiChilds.size(), nullptr);
    std::copy(twiChilds.begin(), twiChilds.end(), m_tabTwiChilds.begin() + twiIndex);
}

void TwItem::regenerateRootChilds(TwItem *twiRoot)
{
    twiRoot->m_tabTwiChilds.clear();
    listChilds(twiRoot, twiRoot);
}

void TwItem::listChilds(TwItem *twiRoot, TwItem *currentTwi)
{
    for (int i = 0; i < currentTwi->childCount(); ++i) {
        auto *twi = static_cast<TwItem *>(currentTwi->child(i));
        twiRoot->m_tabTwiChilds.append(twi);
        listChilds(twiRoot, twi);
    }
}

void TwItem::setIco(const QIcon &ico)
{
    setIcon(LevelColumn, ico);
}

TwItem *rootOf(TwItem *twi)
{
    while (twi && !twi->isRoot())
        twi = twi->getParent();
    return twi;
}

TwItem *insertEntry(TwItem *parent, const QString &text, int index, OutdatedLists *lists)
{
    auto *twi = new TwItem(-1);
    twi->setTwiValuesFromStr(QString::number(childLevel(parent)) + text, twi);
    lists->insert(parent, index, {twi});
    return twi;
}
