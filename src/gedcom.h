#ifndef GEDCOM_H
#define GEDCOM_H

#include <QCoreApplication>
#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

class QProgressBar;
class QStatusBar;
class QTreeWidget;
class TwItem;

/// The document: the records of one GEDCOM file, the section nodes that sort them in the tree, and
/// the journal of all that is done to them.
///
/// The tree widget, the progress bar and the status bar are borrowed from the window when a load
/// begins; no long operation may run before that. Entries belong to the tree. The journal and the
/// records that are not on screen live to the end of the process.
///
/// Long operations report in the status bar, move the progress bar and process events at a fixed
/// period. Nothing guards against what such an event does: lists of entries are copies, and an
/// entry never goes away. Most operations read an entry only when its turn comes, and find whatever
/// an event has made of it. Those that use what they have read earlier look again:
/// - unConc() and checkOversized() skip an entry that has been deleted since they made their list;
///   its text would be doubled, or come back.
/// - setMediaFileURL() and the two filters keep an index. If the journal has grown, another run has
///   changed entries, and they read everything again. The filters also show once more what an
///   event may have hidden.
class Gedcom
{
    Q_DECLARE_TR_FUNCTIONS(Gedcom)

public:
    Gedcom();

    /// Appends a line with the present time to the journal. \p level is "INFO", "ERROR" or "NONE";
    /// with the last the line has no level word.
    void addToJournal(QString log, QString level);

    /// Reads the file into \p tw. False, with a box shown, if the file cannot be opened or one of
    /// its records is refused; the records before that one stay.
    bool genererVectorGed(QString pathFileGed, QTreeWidget *tw, QProgressBar *pb, QStatusBar *sb);

    /// The path of the file last loaded, empty before.
    [[nodiscard]] QString getPathGedFile() const;

    /// The journal of the whole run, its lines ended by CR LF.
    [[nodiscard]] QString getJournal() const;

    /// Cuts oversized lines, copies the file that is about to be overwritten into the dated archive
    /// directory beside it, writes the document, and the journal beside the archive copy. False,
    /// with a box shown, if one of the two files cannot be opened; false also before a load, when
    /// nothing at all is done.
    bool writeGedFile(QString pathFileGed);

    /// Folds each CONC line into the live line before it. Returns the number of lines folded.
    int unConc();

    /// Cuts each line of over 255 characters into a line and new CONC entries. Returns the number
    /// of lines cut.
    int checkOversized();

    /// The live roots, in file order: all of them, or with \p usePatern those whose line text
    /// matches \p rx; with \p withChilds each is followed by its live descendants, which are
    /// tried on \p rx by themselves.
    [[nodiscard]] QList<TwItem *> getTabTwItemsRootMatch(const QRegularExpression &rx,
                                                         bool usePatern, bool withChilds) const;

    /// The live roots.
    [[nodiscard]] QList<TwItem *> getTabTwItemsRoot() const;

    /// All live entries.
    [[nodiscard]] QList<TwItem *> getTabTotalTwItems();

    /// All live entries whose line text matches \p rx.
    [[nodiscard]] QList<TwItem *> getTabTotalTwItemsMatch(const QRegularExpression &rx);

    /// The entries of \p liste with a column equal to \p strToSearch.
    [[nodiscard]] QList<TwItem *> getTabTwItemsMatch(QString strToSearch,
                                                     QList<TwItem *> &liste) const;

    /// The components on which two full tags agree, position by position; a "*" of the second
    /// agrees with everything. Empty if neither has more than one component.
    [[nodiscard]] QStringList getCommonTag(QStringList tagOneList, QStringList tagTwoList);

    /// Puts the missing blank in front of the surname's slash in each NAME of level 1. A name that
    /// does not end in a slash is reported in a box and in the journal, and left alone. Returns the
    /// number of names edited.
    int setSpaceNames();

    /// Marks the entries that \p tagsToDel names, with their descendants, as deleted; of them only
    /// those without a value, without a live child, or with \p containValue in the entry or its
    /// child list, as the flags say. \p rx makes it a regular expression. Returns the number of
    /// entries marked.
    int delListTag(QStringList tagsToDel, bool emptyOnly, bool noChilds, bool contains, bool rx,
                   QString containValue);

    /// Carries the value of each entry named by a full tag of \p strListTagsOri to the entry named
    /// by the full tag at the same place of \p strListTagDest, in the branch of the record that
    /// both have in common. Both are lists separated by ";". The flags say what is done with each
    /// pair: delete the source, copy its value, create a destination that is not there. Children
    /// are neither moved nor deleted. Returns the number of sources deleted.
    int moveTagContent(QString strListTagsOri, QString strListTagDest, bool deleteTagOri,
                       bool mvOriContent, bool createDestTag);

    /// Replaces \p strOri by \p strDest in the first column of each entry where it is found, the
    /// level and the tag included. \p tags, separated by ";", restricts it to entries of these tags
    /// or full tags, unless it is empty or has an empty element. A regular expression only finds
    /// the text that is then replaced, literally and everywhere in the column; "^$" also gives \p
    /// strDest to entries without a value. Returns the number of entries changed.
    int searchAndReplace(QString strOri, QString strDest, QString tags, const bool sensitive,
                         const bool regex);

    /// Puts \p newPath in the place of the directory of each media record's files; without one it
    /// is put in front. Only "/" ends a directory. Returns the number of files rewritten.
    int setMediaFilePath(QString newPath);

    /// Puts the web addresses of media, listed in the correspondence files \p csvFiles, into the
    /// document. A line of these is a file name, \p splitStr and the rest of the address; the
    /// address begins behind the first character of the separator. With \p urlSour each source that
    /// shows the media gets a WWW line, with \p urlEvt each event that cites such a source a NOTE,
    /// or a CONT below the note that holds its links. With \p delTagObjeFile the media records that
    /// have got a link are marked as deleted, with the references of the sources from the first
    /// link on. With \p extractMedias what lies in the folder \p mediasSource is copied to
    /// \p mediasDest, but for the media whose records are marked; failed copies go unseen, and
    /// nothing is overwritten.
    ///
    /// All files are read before the first change. Returns the number of lines added, or 0, with a
    /// box shown and nothing changed, if a file cannot be opened or one of its lines lacks the
    /// separator.
    int setMediaFileURL(const QStringList csvFiles, const QString splitStr, bool urlSour,
                        bool urlEvt, bool delTagObjeFile, bool extractMedias, QString mediasSource,
                        QString mediasDest);

    /// The first entry of the list that holds this file name, whatever its folders; null if none
    /// does. The case counts.
    [[nodiscard]] TwItem *getObjeFileFromFileName(QString nomFichier,
                                                  QList<TwItem *> listTwiObjeFile);

    /// Makes the first web address of each entry a link, in Markdown or in HTML, wherever it stands
    /// in its column, unless that column holds a link to "http..." already. \p tagsToApply
    /// restricts it to these tags or full tags, unless the list is empty. Returns the number of
    /// entries rewritten, one that two tags name counted twice.
    int setURLClickable(bool markdown, QStringList tagsToApply);

    /// Shows the citations whose source has another year than the event, in red and with both dates
    /// in the tool tip; those of a family at the husband's link to it. All entries must be hidden
    /// before. A source whose date has more than a bare year counts as of the year 0, and never
    /// agrees.
    void filterSourceDateDiff();

    /// Shows the persons whose events cite one source for one date, these events in red. All
    /// entries must be hidden before. The first citation of a source is compared with each other
    /// one; the last source of the file is not looked at.
    void filterSourceMultiUse();

private:
    bool createNewTwiEntry(QStringList listEntryValues);
    /// The section node of a record, null for one of unknown kind.
    [[nodiscard]] TwItem *sectionOf(TwItem *twiRoot) const;
    void generateTwiHeaders(QTreeWidget *tw);

    QList<TwItem *> m_tabTwItemRoot;
    QTreeWidget *m_treeWidget = nullptr;
    QProgressBar *m_progress = nullptr;
    QStatusBar *m_status = nullptr;
    QString m_pathGedFile;
    QString *m_journal;
    TwItem *twiHeader;
    TwItem *twiIndi;
    TwItem *twiFam;
    TwItem *twiSour;
    TwItem *twiObje;
    TwItem *twiRepo;
    TwItem *twiNote;
    TwItem *twiSubm;
    int m_currentLineGedFile = 0;
    const QRegularExpression m_rxEmpty;
    const QRegularExpression m_rxName;
    const QRegularExpression m_rxId;
    const QRegularExpression m_rxIdIndi;
    const QRegularExpression m_rxIdFam;
    const QRegularExpression m_rxIdSour;
    const QRegularExpression m_rxIdObje;
    const QRegularExpression m_rxIdRepo;
    const QRegularExpression m_rxColIdObje;
    const QRegularExpression m_rxColIdSour;
    const QRegularExpression m_rxColIdFam;
    const QRegularExpression m_rxWww;
    const QRegularExpression m_rx2Note;
    const QRegularExpression m_rx1File;
    const QRegularExpression m_rx1Obje;
    const QRegularExpression m_rx2Sour;
    const QRegularExpression m_rxDate;
    const QRegularExpression m_rxAnnee;
    const QRegularExpression m_rxCatchAnnee;
    const QRegularExpression m_rxCatchAnnees;
    const QRegularExpression m_rxURL;
};

#endif // GEDCOM_H
