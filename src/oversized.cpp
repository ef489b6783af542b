#include "oversized.h"

#include "twitem.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int MaxTextSize = MaxLineSize - 2; // less the two blanks between three columns

/// The characters of the value that stay on a line of \p size characters for it. A line that ends
/// in a blank would lose it in other programs; only this one blank is looked at.
qsizetype sizeOfPiece(QStringView value, qsizetype size)
{
    return size > 0 && value.at(size - 1) == u' ' ? size - 1 : size;
}

/// Shares out the value of \p twiConc, a CONC entry, over as many new ones as it needs behind it.
QList<TwItem *> shareOut(TwItem *twiConc)
{
    QList<TwItem *> pieces{twiConc};
    const QString level = twiConc->text(LevelColumn);
    const QString value = twiConc->text(ValueColumn);
    const qsizetype size = MaxTextSize - level.size() - twiConc->text(TagColumn).size();
    for (QStringView rest = value; rest.size() > size;) {
        const qsizetype piece = sizeOfPiece(rest, size);
        pieces.constLast()->setText(ValueColumn, rest.first(piece).toString());
        rest = rest.sliced(piece);
        pieces.append(new TwItem(-1));
        pieces.constLast()->setText(LevelColumn, level);
        pieces.constLast()->setText(TagColumn, twiConc->text(TagColumn));
        if (rest.size() <= size)
            pieces.constLast()->setText(ValueColumn, rest.toString());
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

    auto *twiConc = new TwItem(-1);
    QString line = continuation ? twi->text(LevelColumn) : QString::number(childLevel(twi));
    line.append(" CONC "_L1).append(QStringView(value).mid(lenghtColText));
    twi->setTwiValuesFromStr(line, twiConc);
    Cut cut{parent,
            continuation ? parent->getThisTwiIndexParent(twi) + 1 : 0,
            {twiConc},
            lineText(twiConc)};
    if (isContinuation(twiConc->getTag())) // not behind level 9: "10 CONC" reads as level 1, no tag
        cut.pieces = shareOut(twiConc);
    return cut;
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
