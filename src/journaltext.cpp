#include "journaltext.h"

#include "twitem.h"

using namespace Qt::StringLiterals;

QString fullTagText(TwItem *twi)
{
    return twi->getFullTag().join(u'.');
}

QString entryText(TwItem *twi)
{
    return fullTagText(twi) + u' ' + lineText(twi);
}

QString lineReference(const TwItem *twi)
{
    return " (l."_L1 + twi->getNumLineGedFile() + u')';
}

QString editLog(TwItem *twi, const QString &before, const QString &after)
{
    return TwItem::tr("Modification de %1 %2 en %3%4")
        .arg(fullTagText(twi), before, after, lineReference(twi));
}

QString deletionLog(TwItem *twi)
{
    return TwItem::tr("Suppression de l'entrée : %1%2").arg(entryText(twi), lineReference(twi));
}

QString foldLog(TwItem *twiConc, TwItem *twiTarget)
{
    const auto quote = [](TwItem *twi) -> QString {
        return fullTagText(twi) + u' ' + twi->text(ValueColumn) + lineReference(twi);
    };
    return TwItem::tr("Balise '%1 concaténée dans la balise %2")
        .arg(quote(twiConc), quote(twiTarget));
}

QString cutLog(const QString &concText, TwItem *twiOri)
{
    return TwItem::tr("Ajout de la balise %1 complétant la balise %2%3")
        .arg(concText, entryText(twiOri), lineReference(twiOri));
}
