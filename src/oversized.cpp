#include "oversized.h"

#include "twitem.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int MaxTextSize = MaxLineSize - 2; // less the two blanks between three columns

/// How much of \p value goes on a line that has room for \p size characters of it. Other programs
/// drop a blank at the end of a line, so the cut steps back from one; only from one.
qsizetype sizeOfPiece(QStringView value, qsizetype size)
{
    return size > 0 && value.at(size - 1) == u' ' ? size - 1 : size;
}

QString concLine(const QString &level, QStringView text)
{
    return level + " CONC "_L1 + text.toString();
}

/// New entries for the rest of a line: CONC entries of that level, as many as the text needs.
QList<TwItem *> concEntries(const QString &level, QStringView text)
{
    // A level of two characters does not survive in its column: "10 CONC x" reads as level 1
    // without a tag. Such an entry takes the whole text, and is cut by itself.
    const qsizetype size = level.size() == 1 ? MaxTextSize - level.size() - 4 : text.size();
    QList<TwItem *> pieces;
    while (!text.isEmpty()) {
        const qsizetype piece = text.size() > size ? sizeOfPiece(text, size) : text.size();
        auto *twiConc = new TwItem(-1);
        twiConc->setTwiValuesFromStr(concLine(level, text.first(piece)), twiConc);
        pieces.append(twiConc);
        text = text.sliced(piece);
    }
    return pieces;
}

} // namespace

Cut cutOff(TwItem *twi)
{
    const QString value = twi->text(ValueColumn);
    if (value.isEmpty() || lineSize(twi) <= MaxLineSize)
        return {};

    // Not negative: a level and tag of over 253 characters leave no room for any of the value.
    const qsizetype lenghtColText =
        sizeOfPiece(value, std::max<qsizetype>(0, MaxTextSize - twi->text(LevelColumn).size()
                                                      - twi->text(TagColumn).size()));
    twi->setText(ValueColumn, value.left(lenghtColText));

    // The rest of a continuation stands behind it, that of another line in front of its children.
    // Read only now: what is left of a value can itself have the form of a tag.
    const bool continuation = isContinuation(twi->getTag());
    TwItem *parent = continuation ? twi->getParent() : twi;
    // A continuation at the top of its record stays whole: its rest would stand beside the record,
    // in no list, and never reach the file. A section node lists none of its children.
    if (continuation && (!parent || parent->getTabTwiChilds(false).isEmpty())) {
        twi->setText(ValueColumn, value);
        return {};
    }

    const QString level = continuation ? twi->text(LevelColumn) : QString::number(childLevel(twi));
    const QStringView rest = QStringView(value).sliced(lenghtColText);
    const int index = continuation ? parent->getThisTwiIndexParent(twi) + 1 : 0;
    const QStringList columns = twi->getValuesListFromLine(concLine(level, rest));
    return {parent, index, concEntries(level, rest), columns.join(u' ')};
}

bool mustCutAtOnce(const QList<TwItem *> &tooBigs, qsizetype size)
{
    qsizetype listed = 0;
    for (TwItem *twi : tooBigs) {
        if (TwItem *root = rootOf(twi))
            listed += root->getTabTwiChilds(false).size();
    }
    return listed > 2 * size;
}
