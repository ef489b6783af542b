#ifndef MEDIALINKS_H
#define MEDIALINKS_H

// A correspondence line and the document: the media that it names, the links to its address in a
// source and in an event. Each step logs itself in the document's journal.

#include "matching.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

class Gedcom;
class QRegularExpression;
class TwItem;

/// Where the correspondence lines find what they name.
struct MediaIndex
{
    MediaIndex(const QList<TwItem *> &listTwiObjeFile, const QList<TwItem *> &listTwiSourObje,
               const QList<TwItem *> &listTwiIndiAndFam);

    EntryIndex objeFilesByName; // file lines of media records
    ColumnIndex sourObjes; // references of sources to media records
    ColumnIndex citations; // of sources
};

/// What a correspondence line names.
struct MediaMatch
{
    QString nomFichierCsv;
    QString urlFichier;
    TwItem *twiObjeFile = nullptr;
    TwItem *twiRootObje = nullptr; // null unless the record and the column of its id are found
    int indexColObje = -1;
};

/// What the lines have added and deleted so far.
struct LinkCount
{
    int sour = 0; // WWW entries
    int evt = 0; // NOTE and CONT entries
    int delObj = 0; // media records that were not marked as deleted before
    QMap<QString, QList<int>> listFullTagsEdited; // by full tag of a NOTE or CONT, its lines
};

/// Finds the media of a line, or logs why there is none. \p rxColIdObje is the form of the id.
[[nodiscard]] MediaMatch matchLine(Gedcom *gedcom, const QString &line, const QString &splitStr,
                                   const QRegularExpression &rxColIdObje, MediaIndex *index);

/// Adds the address to a source.
void linkSource(Gedcom *gedcom, TwItem *twiRootSour, const MediaMatch &media);

/// Adds the address to the event of a citation. Returns the new entry.
TwItem *linkEvent(Gedcom *gedcom, TwItem *citation, const QString &urlFichier,
                  const QString &idSour, const TwItem *twiRootSour);

/// Logs the totals; the deleted records, even if there are none, \p withDeleted alone.
void logLinks(Gedcom *gedcom, const LinkCount &count, bool withDeleted);

/// Marks the entry and all below it as deleted. False if the entry itself was marked.
bool deleteWithChilds(Gedcom *gedcom, TwItem *twi);

#endif // MEDIALINKS_H
