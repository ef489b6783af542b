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
/// period. An event can start another operation, and nothing prevents that; lists of entries are
/// copies, and an entry never goes away. Most operations read an entry only when its turn comes,
/// and see any change made by then. Those that use what they have read earlier look again:
/// - unConc() and checkOversized() skip an entry that has been deleted since they made their list;
/// its text would be duplicated, or reappear.
/// - setMediaFileURL() and the two filters keep an index. If the journal has grown, another run has
/// changed entries, and they build it again. The filters also show again what an event may have
/// hidden.
class Gedcom
{
    Q_DECLARE_TR_FUNCTIONS(Gedcom)

public:
    Gedcom();

    /// Appends a line with the present time to the journal. \p level is "INFO", "ERROR" or "NONE";
    /// "NONE" leaves out the level word.
    void addToJournal(QString log, QString level);

    /// Reads the file into \p tw. False, with a box shown, if the file cannot be opened or one of
    /// its records is refused; the records before that one stay.
    bool genererVectorGed(QString pathFileGed, QTreeWidget *tw, QProgressBar *pb, QStatusBar *sb);

    /// The path of the file last loaded, empty if there is none.
    [[nodiscard]] QString getPathGedFile() const;

    /// The journal of the whole run, its lines ended by CR LF.
    [[nodiscard]] QString getJournal() const;

    /// Cuts oversized lines, copies the file that is about to be overwritten into the dated archive
    /// directory beside it, writes the document, and the journal beside the archive copy. False,
    /// with a box shown, if one of the two files cannot be opened; false also before a load, when
    /// nothing at all is done. Of saves to one file that an event has started one inside the other,
    /// the file holds the one that began last.
    bool writeGedFile(QString pathFileGed);

    /// Folds each CONC line into the live line before it. Returns the number of lines folded.
    int unConc();

    /// Cuts each line of over 255 characters into a line and new CONC entries. Returns the number
    /// of lines cut.
    int checkOversized();

    /// The live roots, in file order: all of them, or with \p usePatern those whose line text
    /// matches \p rx; with \p withChilds each is followed by its live descendants, each of them
    /// matched against \p rx for itself.
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

    /// Marks the entries that \p tagsToDel names, with their descendants, as deleted; but only
    /// those that meet each condition that is set: no value, no live child, \p containValue in the
    /// entry or its child list. If \p rx, \p containValue is a regular expression. Returns the
    /// number of entries marked.
    int delListTag(QStringList tagsToDel, bool emptyOnly, bool noChilds, bool contains, bool rx,
                   QString containValue);

    /// Carries the value of each entry named by a full tag of \p strListTagsOri to the entry named
    /// by the full tag at the same place of \p strListTagDest, within the branch of the record that
    /// both paths share. Both are lists separated by ";". The flags say what is done with each
    /// pair: delete the origin, copy its value, create a destination that is not there. Children
    /// are neither moved nor deleted. Returns the number of origins deleted.
    int moveTagContent(QString strListTagsOri, QString strListTagDest, bool deleteTagOri,
                       bool mvOriContent, bool createDestTag);

    /// Replaces \p strOri by \p strDest in the first column of each entry where it is found, the
    /// level and the tag included. \p tags, separated by ";", restricts it to entries of these tags
    /// or full tags, unless it is empty or has an empty element. A regular expression only locates
    /// a text, which is then replaced literally and throughout the column; "^$" also gives \p
    /// strDest to entries without a value. Returns the number of entries changed.
    int searchAndReplace(QString strOri, QString strDest, QString tags, const bool sensitive,
                         const bool regex);

    /// Replaces the directory of each media record's file by \p newPath, which is empty or ends in
    /// "/"; a file without a directory gets it in front. Only "/" separates directories. Returns
    /// the number of files rewritten.
    int setMediaFilePath(QString newPath);

    /// Puts the web addresses of media, listed in the correspondence files \p csvFiles, into the
    /// document. Each line is a file name, \p splitStr and the rest of the address; the address
    /// begins after the first character of the separator. With \p urlSour each source that shows
    /// the media gets a WWW line, with \p urlEvt each event that cites such a source a NOTE, or a
    /// CONT below the note that holds its links. With \p delTagObjeFile the media records that have
    /// received a link are marked as deleted, and so are the sources' references to them, except
    /// those handled before the line's first link. With \p extractMedias the files in the folder \p
    /// mediasSource are copied to \p mediasDest, except those that a link has replaced; a failed
    /// copy is not reported, and nothing is overwritten. If one of the folders is missing, a box
    /// says so and the links are made without copying.
    ///
    /// All files are read before the first change. Returns the number of lines added, or 0, with a
    /// box shown and nothing changed, if a file cannot be opened or one of its lines lacks the
    /// separator.
    int setMediaFileURL(const QStringList csvFiles, const QString splitStr, bool urlSour,
                        bool urlEvt, bool delTagObjeFile, bool extractMedias, QString mediasSource,
                        QString mediasDest);

    /// The first entry of the list that holds this file name, whatever its folders; null if none
    /// does. Case-sensitive.
    [[nodiscard]] TwItem *getObjeFileFromFileName(QString nomFichier,
                                                  QList<TwItem *> listTwiObjeFile);

    /// Makes the first web address of each entry a link, in Markdown or in HTML, at each of its
    /// occurrences in that column, unless the column holds a link to "http..." already. \p
    /// tagsToApply restricts it to these tags or full tags, unless the list is empty. Returns the
    /// number of entries rewritten, an entry that two tags name counts twice.
    int setURLClickable(bool markdown, QStringList tagsToApply);

    /// Shows the citations whose source is dated outside the year or period of the event, in red
    /// and with both dates in the tool tip; those of a family at the husband's link to it, if there
    /// is one. All entries must be hidden before. Only years from 1000 to 1999 are recognised, in
    /// an event only behind a blank; without one on either side there is nothing to compare. A
    /// source whose date is more than a bare year counts as of the year 0, and never agrees.
    void filterSourceDateDiff();

    /// Shows the persons whose events cite the same source for the same date, these events in red.
    /// All entries must be hidden before. The first citation of a source is compared with each
    /// other one; the last source of the file is not looked at.
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
    qint64 m_journalMsecs = 0; // since the epoch, of the last line
    QString m_journalTime; // the same as text
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
