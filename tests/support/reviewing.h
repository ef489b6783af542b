#ifndef REVIEWING_H
#define REVIEWING_H

#include "document.h"
#include "window.h"

#include <QList>
#include <QRandomGenerator>
#include <QString>
#include <QStringList>
#include <QTest>

#include <functional>

class QLineEdit;
class QProgressBar;
class QStatusBar;
class QTreeWidget;
class QTreeWidgetItem;

// The check boxes of the review tools.
inline const QString Sensitive = QStringLiteral("cbFiltreSensible");
inline const QString Regex = QStringLiteral("cbFiltrerRegex");
inline const QString DateDiff = QStringLiteral("cbSourceDateDiff");
inline const QString MultiUse = QStringLiteral("cbSourceMultiUse");

/// The status text after any edit of the search field.
inline const QString Hint = QStringLiteral("Valider la recherche par la touche entrée");

/// The lines of a file. Its records are in the order of the sections, so the rows of the tree
/// follow the file.
inline const QStringList Family{
    QStringLiteral("0 HEAD"), // 1
    QStringLiteral("1 CHAR UTF-8"),
    QStringLiteral("0 @I1@ INDI"), // 3
    QStringLiteral("1 NAME Jean /MARTIN/"),
    QStringLiteral("1 SEX M"),
    QStringLiteral("1 BIRT"), // 6
    QStringLiteral("2 DATE 12 MAR 1805"),
    QStringLiteral("2 PLAC Lyon"),
    QStringLiteral("2 SOUR @S1@"), // 9
    QStringLiteral("3 PAGE 12"),
    QStringLiteral("1 DEAT"), // 11
    QStringLiteral("2 DATE 3 JUN 1870"),
    QStringLiteral("2 SOUR @S2@"),
    QStringLiteral("1 FAMS @F1@"), // 14
    QStringLiteral("0 @I2@ INDI"), // 15
    QStringLiteral("1 NAME Anne /DUPONT/"),
    QStringLiteral("1 BIRT"), // 17
    QStringLiteral("2 DATE 12 MAR 1805"),
    QStringLiteral("2 SOUR @S1@"),
    QStringLiteral("1 OCCU chez Martin"), // 20
    QStringLiteral("0 @I3@ INDI"), // 21
    QStringLiteral("1 NAME Luc /PETIT/"),
    QStringLiteral("1 BIRT"), // 23
    QStringLiteral("2 DATE 4 MAY 1870"),
    QStringLiteral("2 SOUR @S2@"),
    QStringLiteral("0 @F1@ FAM"), // 26
    QStringLiteral("1 HUSB @I1@"),
    QStringLiteral("1 MARR"), // 28
    QStringLiteral("2 DATE 5 SEP 1830"),
    QStringLiteral("2 SOUR @S3@"),
    QStringLiteral("0 @S1@ SOUR"), // 31
    QStringLiteral("1 TITL Registre"),
    QStringLiteral("1 DATE 1840"),
    QStringLiteral("0 @S2@ SOUR"), // 34
    QStringLiteral("1 DATE 1870"),
    QStringLiteral("0 @S3@ SOUR"), // 36
    QStringLiteral("1 DATE 1831"),
    QStringLiteral("1 NOTE de Martin"),
};

/// Stands for all lines in marked().
inline const QString Everything = QStringLiteral("all");

/// The rows of a tree of \p lines. \p shown lists the numbers of the visible ones, separated by
/// blanks; Everything means all but those listed in \p hidden.
QStringList marked(const QStringList &lines, const QString &shown, const QString &hidden = {});

/// The window on screen with a file opened from its menu, and the review tools as a user handles
/// them.
class ReviewSession : public Session
{
public:
    /// \p lines are the file's lines without the trailer.
    explicit ReviewSession(const QStringList &lines);

    [[nodiscard]] QLineEdit *field() const;
    [[nodiscard]] QStatusBar *statusBar() const;

    /// Replaces the text of the search field by typing \p text.
    void type(const QString &text) const;
    /// Presses Enter in it.
    void enter() const;
    void search(const QString &text) const;
    /// Clicks on a box, which must change its state.
    void toggle(const QString &box) const;

    /// The status texts since the last call.
    QStringList takeTold();

    /// All rows of the tree, hidden ones included, except the section nodes.
    [[nodiscard]] QList<TwItem *> entries() const;
    /// Each of them in the form of marked(), by its own hidden state whatever its parents' state.
    [[nodiscard]] QStringList rows() const;
    /// Their pictures.
    [[nodiscard]] QStringList pictures() const;

private:
    mutable QStringList m_told; // filled by a signal, also in const sessions
};

/// A row as text: a sign, the line and, if given, " | " with the tool tip. The signs: ' ' hidden,
/// '+' shown, '*' shown and red, '#' hidden and red, '-' deleted, '=' deleted and red.
QString picture(TwItem *twi, bool shown, bool red, const QString &toolTip = {});

/// The row as it is now, with its tool tip if a filter has set one. Anything that no filter may
/// touch is appended if it has changed.
QString picture(TwItem *twi);

/// The pictures with every row shown that is not deleted.
QStringList allShown(QStringList pictures);

/// A document made from pictures, of which only the lines and the deletion marks are used.
class ReviewedDocument : public Document
{
public:
    explicit ReviewedDocument(const QStringList &pictures);
    virtual ~ReviewedDocument() = default;

    /// All entries in file order, deleted ones included.
    [[nodiscard]] QList<TwItem *> entries() const
    {
        return m_entries;
    }
    [[nodiscard]] QStringList pictures() const;
    [[nodiscard]] QList<QStringList> columns() const;
    /// The status text, "100 of 250" for the bar, and "bar shown" or "bar hidden".
    [[nodiscard]] QStringList statusAndBar() const;

    void hideAll();
    /// Does what the check box of the filter does.
    virtual void filter() = 0;

private:
    QList<TwItem *> m_entries;
};

/// Filters a document with 250 entries that count, and compares everything it reports.
void compareFrame(ReviewedDocument *review, const QString &announced, const QString &concluded);

/// Adds the columns that compareProgress() reads.
void addProgressColumns();

/// Filters \p review twice and compares the moves of the bar with the row; the row's size is the
/// bar's range.
void compareProgress(ReviewedDocument *review);

/// Filters with every text translated, and checks that both status texts are.
void compareTranslation(ReviewedDocument *review);

/// Checks and unchecks a filter's box twice after a search, comparing rows and status text each
/// time. \p filtered are the pictures under the filter.
void compareCheckBox(const ReviewSession &session, const QString &box, const QStringList &filtered,
                     const QString &concluded);

/// Calls the slot of a filter's box with each state; only the unchecked one shows everything.
void compareBoxStates(const char *slot);

/// Filters the loaded document and checks that a save writes the file it came from.
void compareSave(ReviewedDocument *review);

/// Adds the column "seed" with a row for each generated document.
void addSeeds();

/// The pictures of \p lines, all hidden.
QStringList allHidden(QStringList lines);

/// Compares a filter with \p plain, its simplest form, while more and more entries are deleted. \p
/// concluded is the status text for a count. Each count must exceed \p least, or the generated
/// document shows too little.
template <typename PlainFilter>
void compareWithPlainFilter(ReviewedDocument *review, PlainFilter *plain, QRandomGenerator *random,
                            QString (*concluded)(qsizetype), qsizetype least)
{
    const QList<QStringList> columns = review->columns();
    for (const int percentDeleted : {0, 5, 15}) {
        const QList<TwItem *> entries = review->entries();
        for (TwItem *twi : entries) {
            if (random->bounded(100) < percentDeleted)
                twi->setDelete(true);
        }
        review->filter();
        plain->run();
        QCOMPARE(review->pictures(), plain->pictures());
        QCOMPARE(review->status(), concluded(plain->count()));
        QVERIFY2(plain->count() > least, qPrintable(review->status()));
    }
    QCOMPARE(review->columns(), columns);
}

/// The first two columns of the top-level rows, that is the labels and counts of the sections,
/// prefixed with "hidden: " where the row is hidden.
QStringList topRows(const QTreeWidget &tree);

/// The texts of all columns of the row.
QStringList columnTexts(const QTreeWidgetItem *row);

/// Does \p what as one of the events processed at the next move of the bar.
void atNextMove(QProgressBar *bar, const std::function<void()> &what);

/// With three arguments (text, new text, tags) replaces; with one or two (tag, value) deletes.
void change(Gedcom *gedcom, const QStringList &arguments);

#endif // REVIEWING_H
