#include "medialinks.h"

#include "gedcom.h"
#include "journaltext.h"
#include "twitem.h"

using namespace Qt::StringLiterals;

namespace {

/// Where the link to a source goes in an event.
struct LinkPlace
{
    TwItem *twiParent = nullptr;
    int indexTwiToInsert = -1; // among its children; -1 for a new note at the end
};

/// The first note of the event that holds links takes the next one, behind its last CONT. Deleted
/// entries count like others.
LinkPlace linkPlace(TwItem *event)
{
    LinkPlace place{event};
    // Intentional: once a note is found, the loop goes on among its children, from the next index.
    for (int i = 0; i < place.twiParent->childCount(); ++i) {
        auto *noteChild = static_cast<TwItem *>(place.twiParent->child(i));
        if (!noteChild->text(ValueColumn).startsWith("Source : http"_L1)
            || noteChild->getTag() != "NOTE"_L1)
            continue;
        int behindLastCont = noteChild->childCount();
        while (behindLastCont > 0
               && static_cast<TwItem *>(noteChild->child(behindLastCont - 1))->getTag()
                      != "CONT"_L1)
            --behindLastCont;
        place = {noteChild, behindLastCont};
    }
    return place;
}

} // namespace

MediaIndex::MediaIndex(const QList<TwItem *> &listTwiObjeFile,
                       const QList<TwItem *> &listTwiSourObje,
                       const QList<TwItem *> &listTwiIndiAndFam)
    : objeFilesByName(indexByFileName(listTwiObjeFile)),
      sourObjes(listTwiSourObje),
      citations(listTwiIndiAndFam)
{
}

MediaMatch matchLine(Gedcom *gedcom, const QString &line, const QString &splitStr,
                     ColumnMatcher *colIdObje, MediaIndex *index)
{
    const auto logError = [gedcom](const QString &log) { gedcom->addToJournal(log, u"ERROR"_s); };
    MediaMatch media;
    const qsizetype idx = line.indexOf(splitStr);
    media.nomFichierCsv = line.left(idx);
    // Only the first character of the separator is dropped, normally the comma of the list: the
    // rest is the beginning of the address.
    media.urlFichier = line.mid(idx + 1);
    if (media.nomFichierCsv.isEmpty() || media.urlFichier.isEmpty()) {
        logError(Gedcom::tr("Erreur dans la ligne %1").arg(line));
        return media;
    }

    QList<TwItem *> &candidates = index->objeFilesByName[media.nomFichierCsv];
    media.twiObjeFile = gedcom->getObjeFileFromFileName(media.nomFichierCsv, candidates);
    // A later line of this name finds the same entry, or none again.
    candidates = media.twiObjeFile ? QList{media.twiObjeFile} : QList<TwItem *>();
    if (!media.twiObjeFile) {
        logError(Gedcom::tr("%1 référençant %2 non détecté dans %3")
                     .arg(media.nomFichierCsv, media.urlFichier, gedcom->getPathGedFile()));
        return media;
    }
    TwItem *twiRootObje = rootOf(media.twiObjeFile);
    if (!twiRootObje)
        return media;
    media.indexColObje = colIdObje->firstColumn(twiRootObje);
    if (media.indexColObje == -1) {
        logError(Gedcom::tr("Impossible de déterminer l'id de l'objet %1%2")
                     .arg(entryText(twiRootObje), lineReference(media.twiObjeFile)));
        return media;
    }
    media.twiRootObje = twiRootObje;
    return media;
}

LinkWriter::LinkWriter(Gedcom *gedcom) : m_gedcom(gedcom) { }

void LinkWriter::linkSource(TwItem *twiRootSour, const MediaMatch &media)
{
    TwItem *twiSourUrl = insertEntry(twiRootSour, " WWW "_L1 + media.urlFichier, -1, &m_lists);
    m_gedcom->addToJournal(Gedcom::tr("Ajout de la balise %1 %2 référençant la balise %3 %4%5")
                               .arg(fullTagText(twiSourUrl), media.urlFichier,
                                    fullTagText(media.twiObjeFile), media.nomFichierCsv,
                                    lineReference(media.twiObjeFile)),
                           u"INFO"_s);
}

TwItem *LinkWriter::linkEvent(TwItem *citation, const QString &urlFichier, const QString &idSour,
                              const TwItem *twiRootSour)
{
    TwItem *event = citation->getParent();
    // Only the first link of an event walks through its children, and those of its note: with
    // 16,000 links in one note, the walks took nearly all of 13 s.
    const LinkNote known = m_notes.value(event);
    const auto [twiParent, indexTwiToInsert] =
        known.twi && known.twi->childCount() == known.childCount
            ? LinkPlace{known.twi, known.childCount}
            : linkPlace(event);
    const QString valueToSet =
        (indexTwiToInsert == -1 ? u" NOTE Source : "_s : u" CONT "_s) + urlFichier;
    TwItem *twiChildNoteOrCont = insertEntry(twiParent, valueToSet, indexTwiToInsert, &m_lists);
    // The next link goes behind a CONT at the end, which no other link note can follow.
    if (indexTwiToInsert == twiParent->childCount() - 1)
        m_notes.insert(event, {twiParent, twiParent->childCount()});
    m_gedcom->addToJournal(Gedcom::tr("Ajout de la balise %1 %2 référençant la source %3%4")
                               .arg(fullTagText(twiParent), lineText(twiChildNoteOrCont), idSour,
                                    lineReference(twiRootSour)),
                           u"INFO"_s);
    return twiChildNoteOrCont;
}

void LinkWriter::renewLists()
{
    m_lists.renewAll();
}

void LinkWriter::forgetNotes()
{
    m_notes.clear();
}

bool deleteWithChilds(Gedcom *gedcom, TwItem *twi)
{
    if (!twi->getTabTwiChilds(true).isEmpty()) {
        const QStringList childLogs = twi->delChilds();
        for (const QString &log : childLogs)
            gedcom->addToJournal(log, u"INFO"_s);
    }
    if (!twi->setDelete(true))
        return false;
    gedcom->addToJournal(Gedcom::tr("Suppression de l'enregistrement : %1%2")
                             .arg(entryText(twi), lineReference(twi)),
                         u"INFO"_s);
    return true;
}

void logLinks(Gedcom *gedcom, const LinkCount &count, bool withDeleted)
{
    const auto log = [gedcom](const QString &text) { gedcom->addToJournal(text, u"INFO"_s); };
    if (count.sour > 0)
        log(Gedcom::tr("Ajout de %1 balises SOUR.WWW").arg(count.sour));
    const auto &edited = count.listFullTagsEdited;
    for (auto it = edited.cbegin(); it != edited.cend(); ++it)
        log(Gedcom::tr("Ajout de %1 balises %2").arg(QString::number(it->size()), it.key()));
    if (withDeleted)
        log(Gedcom::tr("Sppression de %1 enregistrements OBJE").arg(count.delObj));
}
