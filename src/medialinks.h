#ifndef MEDIALINKS_H
#define MEDIALINKS_H

// Applies one correspondence line, a file name and a web address, to the document: finds the media
// record, links sources and events to the address. Each step logs itself in the journal.

#include "matching.h"
#include "outdatedlists.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

class Gedcom;
class TwItem;

/// The indexes in which correspondence lines find what they name.
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
    TwItem *twiRootObje = nullptr; // null unless the record has an id column
    int indexColObje = -1;
};

/// Running totals of what the lines have added and deleted.
struct LinkCount
{
    int sour = 0; // WWW entries
    int evt = 0; // NOTE and CONT entries
    int delObj = 0; // media records newly marked as deleted
    QMap<QString, QList<int>> listFullTagsEdited; // by full tag of a NOTE or CONT, the numbers of
                                                  // the correspondence lines that have added one
};

/// Finds the media record of a line, or logs why there is none. \p colIdObje finds the column of
/// its id. What is found is kept in \p index for later lines with the same name.
[[nodiscard]] MediaMatch matchLine(Gedcom *gedcom, const QString &line, const QString &splitStr,
                                   ColumnMatcher *colIdObje, MediaIndex *index);

/// Adds the addresses of one run to the document.
class LinkWriter
{
public:
    explicit LinkWriter(Gedcom *gedcom);

    /// Adds the address to a source.
    void linkSource(TwItem *twiRootSour, const MediaMatch &media);

    /// Adds the address to the event of a citation. Returns the new entry.
    TwItem *linkEvent(TwItem *citation, const QString &urlFichier, const QString &idSour,
                      const TwItem *twiRootSour);

    /// Brings the lists of the records up to date, which must be done before events are processed.
    void renewLists();

    /// Forgets which notes hold links. To be called if another run has changed entries.
    void forgetNotes();

private:
    /// A note to whose end the next link goes.
    struct LinkNote
    {
        TwItem *twi = nullptr;
        int childCount = 0; // if it has another number, it must be looked for again
    };

    Gedcom *m_gedcom;
    OutdatedLists m_lists;
    QHash<TwItem *, LinkNote> m_notes; // by event
};

/// Logs the totals. That of deleted records is logged only if \p withDeleted, but then even if it
/// is 0.
void logLinks(Gedcom *gedcom, const LinkCount &count, bool withDeleted);

/// Marks the entry and all below it as deleted. False if the entry itself was marked already.
bool deleteWithChilds(Gedcom *gedcom, TwItem *twi);

#endif // MEDIALINKS_H
