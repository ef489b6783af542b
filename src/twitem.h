#ifndef TWITEM_H
#define TWITEM_H

#include "gedcomline.h"

#include <QCoreApplication>
#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QTreeWidgetItem>

#include <array>

class OutdatedLists;

/// What getTag() gives for an entry without a tag.
inline constexpr QLatin1StringView NoTag{"ERREUR"};

/// One line of a GEDCOM file, and at the same time a row of the tree. The columns are the line: the
/// level (one character), the tag or the identifier, the value; there is no other copy of the text.
///
/// An entry is owned by its parent in the tree, as Qt's item classes own their children; lists of
/// entries only borrow. No entry is destroyed while a document is open: deleting one only marks it.
/// An entry without the mark is called live.
class TwItem : public QTreeWidgetItem
{
    Q_DECLARE_TR_FUNCTIONS(TwItem)

public:
    /// The form of a tag. Every entry has its own instance, all of them copies of one compiled
    /// expression; getTag() gives the same answer by looking at the characters.
    const QRegularExpression m_rxTag;

    /// \p p_numLineGedFile is the line of the loaded file, counted from 1, or -1 for an entry that
    /// was not read from a file.
    explicit TwItem(int p_numLineGedFile);

    /// The line of the loaded file in decimal, "-1" for an entry made by the program.
    [[nodiscard]] QString getNumLineGedFile() const;

    /// Whether the entry begins a record, that is whether its column 0 is "0". Section nodes are
    /// not roots.
    [[nodiscard]] bool isRoot();

    /// The first column that has the form of a tag, or "ERREUR" if none has.
    [[nodiscard]] QString getTag();

    /// The tags from the root down to this entry. Begins below the nearest ancestor that has no
    /// tag; empty if this entry has none.
    [[nodiscard]] QStringList getFullTag();

    /// For a root all its descendants in file order, for any other entry its direct children; if \p
    /// noHidden, without those marked as deleted.
    [[nodiscard]] QList<TwItem *> getTabTwiChilds(bool noHidden);

    /// The texts of all columns.
    [[nodiscard]] QStringList getTwiValuesList() const;

    /// Cuts a line of a file into at most three columns; an empty line gives none.
    [[nodiscard]] QStringList getValuesListFromLine(QString line) const;

    /// The parent in the tree, null at its top level.
    [[nodiscard]] TwItem *getParent();

    /// The index of \p child among the children of its own parent in the tree, -1 at the top level.
    [[nodiscard]] int getThisTwiIndexParent(TwItem *child) const;

    /// The index of \p child in the child list of its parent, deleted entries counted; -1 if it is
    /// not there.
    [[nodiscard]] int getThisTabIndexParent(TwItem *child) const;

    /// The level that column 0 says, 0 if it is no number.
    [[nodiscard]] int getLevel();

    /// The lines of the record for the file: this entry, then its live child list. Empty if this
    /// entry is marked as deleted.
    [[nodiscard]] const QStringList getGedEntryList();

    /// Whether the entry is marked as deleted.
    [[nodiscard]] bool isToDelete();

    /// Stores the line number; the tool tips keep the one given at construction.
    void setLineNumber(int p_numLineGedFile);

    /// Inserts \p strToInsert in front of or behind the first \p strToMatch in column \p twiCol and
    /// trims the column. False, with nothing changed, only for the column -1. A text that is not
    /// found goes unnoticed: with \p before nothing is inserted then, and without it the insertion
    /// lands where it would if the text began one character before the column.
    bool insertStrAtIndex(QString strToInsert, QString strToMatch, int twiCol, bool before);

    /// Inserts \p twiChild, of which this entry takes ownership, at \p twiIndex among the children,
    /// or at the end if the index is out of range. The flat list of the record is rebuilt from the
    /// tree, except where this entry is the root itself: there the child enters the list at the
    /// same index.
    void insertTabChild(int twiIndex, TwItem *twiChild);

    /// Marks all descendants as deleted and returns one journal text for each that was not marked
    /// before. Leaves this entry alone.
    QStringList delChilds();

    /// Hides or shows the row. A deleted entry is never shown again.
    void setTwiHidden(bool hide);

    /// Marks the entry as deleted, for good, and hides its row; with \p del false only hides it.
    /// False, with nothing changed, if it is marked already.
    bool setDelete(bool del);

    /// Sets the columns of \p twi from a line. Columns beyond those of the line keep their text.
    void setTwiValuesFromStr(QString lineValues, TwItem *twi);

    /// Builds a record: the first line gives this new root its columns, the others become its
    /// descendants. \p currentLineGedFile is the number of the first line. Returns that of the last
    /// one, which is the same for a single line, or 0 if a line has no parent.
    int setEntryTwItems(QStringList listEntryValues, int currentLineGedFile);

    /// Cuts the line of \p twiOri, which is over 255 characters long, and puts the rest into new
    /// CONC entries. Returns \p splitList with one more journal text, for the first cut only, or
    /// unchanged if the line cannot be cut.
    QStringList splitTagOverSized(TwItem *twiOri, QStringList splitList);

    /// splitTagOverSized() for each of \p entries that is live, with each record's list rebuilt
    /// only once. Returns the journal texts of each. The entries must not be in a tree.
    static QList<QStringList> splitAllOverSized(const QList<TwItem *> &entries);

    /// Whether one of the tag patterns names this entry: by its tag, or by its full tag, in which a
    /// component "*" stands for any one tag. An empty list names every entry, an empty pattern only
    /// those whose full tag is empty.
    [[nodiscard]] bool isTagMatch(QStringList fullTagsList);

    /// The live entries of the child list whose line text matches \p rx.
    [[nodiscard]] QList<TwItem *> getTabTwiChildsMatchReg(QRegularExpression rx);

    /// Appends to \p listTwiMatch the entries at the path \p fullTag: \p twiParent itself, or live
    /// entries below it, in file order.
    void getChildsListFromFullTag(QStringList fullTag, QList<TwItem *> *listTwiMatch,
                                  TwItem *twiParent);

    /// \p twi itself or its ancestor with the full tag \p fullTag, null if there is none.
    [[nodiscard]] TwItem *getItemParentFromFullTag(QStringList fullTag, TwItem *twi);

    /// The first column that matches \p rx, or -1.
    [[nodiscard]] int getColumnIndexMatchRx(QRegularExpression rx) const;

    /// The first column equal to \p valueToSearch, or -1.
    [[nodiscard]] int getColumnIndexEqualString(QString valueToSearch, bool sensitive) const;

    /// The first column that contains \p valueToSearch, or -1.
    [[nodiscard]] int getColumnIndexContainsString(QString valueToSearch, bool sensitive) const;

    /// The file name, without its folders, in the first column that contains \p FileName, ignoring
    /// case; empty if none does. It may differ from \p FileName.
    [[nodiscard]] QString getAbsolutFileName(QString FileName) const;

private:
    friend class OutdatedLists;
    /// Inserts the children, the first of them at the index, into the tree and into the list of
    /// this entry. The lists of the records above are then out of date.
    void placeChilds(int twiIndex, const QList<TwItem *> &twiChilds);
    void regenerateRootChilds(TwItem *twiRoot);
    void listChilds(TwItem *twiRoot, TwItem *currentTwi);
    void setIco(const QIcon &ico);

    QList<TwItem *> m_tabTwiChilds; // of a root all descendants in file order, else the children
    bool m_toDelete = false;
    int m_numLineGedFile = -1;
};

/// \p twi itself or its nearest ancestor that is a root, null if there is none.
[[nodiscard]] TwItem *rootOf(TwItem *twi);

/// Inserts a new entry among the children of \p parent, at the end if \p index is -1. \p text is
/// its line without the level: a blank, the tag, a blank, the value.
TwItem *insertEntry(TwItem *parent, const QString &text, int index, OutdatedLists *lists);

#endif // TWITEM_H
