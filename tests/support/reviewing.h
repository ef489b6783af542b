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

// The boxes of the review tools.
inline const QString Sensitive = QStringLiteral("cbFiltreSensible");
inline const QString Regex = QStringLiteral("cbFiltrerRegex");
inline const QString DateDiff = QStringLiteral("cbSourceDateDiff");
inline const QString MultiUse = QStringLiteral("cbSourceMultiUse");

/// What the status bar says at any edit of the search field.
inline const QString Hint = QStringLiteral("Valider la recherche par la touche entrée");

/// The lines of a file. The records stand in the order of their sections, so that the rows of the
/// tree are in the order of the file.
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

inline constexpr int SectionNodes = 7; // the first rows at the top of the tree

/// For marked(), all lines.
inline const QString Everything = QStringLiteral("all");

/// The rows of a tree in which those lines are visible that \p shown tells by their numbers, with
/// blanks between them; Everything means all but those of \p hidden.
QStringList marked(const QStringList &lines, const QString &shown, const QString &hidden = {});

/// The window on screen, with a file that was opened by its menu, and the review tools as a user
/// handles them.
class ReviewSession : public Session
{
public:
    /// \p lines are those of the file, without the trailer.
    explicit ReviewSession(const QStringList &lines);

    [[nodiscard]] QLineEdit *field() const;
    [[nodiscard]] QStatusBar *statusBar() const;

    /// Types \p text over what stands in the search field.
    void type(const QString &text) const;
    /// Presses Enter in it.
    void enter() const;
    void search(const QString &text) const;
    /// Clicks on a box, which must change by that.
    void toggle(const QString &box) const;

    /// The status texts that have come since the last call of this.
    QStringList takeTold();

    /// All rows of the tree but the section nodes, the hidden ones too.
    [[nodiscard]] QList<TwItem *> entries() const;
    /// Each of them as marked() has it, with its own state, whatever that of those above it.
    [[nodiscard]] QStringList rows() const;
    /// Their pictures.
    [[nodiscard]] QStringList pictures() const;

private:
    mutable QStringList m_told; // a session that only looks on is const
};

/// A row as text: a sign, the line, and behind " | " the tool tip, if it is given. The sign is ' '
/// for a hidden row, '+' for a shown one, '*' for a shown red one, '#' for a red one that is
/// hidden, '-' for a deleted one and '=' for a deleted red one.
QString picture(TwItem *twi, bool shown, bool red, const QString &toolTip = {});

/// The row as it is, with the tool tip if a filter gave it one. What the filters have no business
/// with is told, too.
QString picture(TwItem *twi);

/// The pictures with all rows shown that are not deleted.
QStringList allShown(QStringList pictures);

/// A document made of pictures, of which only the lines and the deletions count.
class ReviewedDocument : public Document
{
public:
    explicit ReviewedDocument(const QStringList &pictures);
    virtual ~ReviewedDocument() = default;

    /// All entries in file order, deleted ones too.
    [[nodiscard]] QList<TwItem *> entries() const
    {
        return m_entries;
    }
    [[nodiscard]] QStringList pictures() const;
    [[nodiscard]] QList<QStringList> columns() const;
    /// The status text, "100 of 250" for the bar, and "bar shown" or "bar hidden".
    [[nodiscard]] QStringList statusAndBar() const;

    void hideAll();
    /// What the check box of the filter does.
    virtual void filter() = 0;

private:
    QList<TwItem *> m_entries;
};

/// Filters a document of 250 entries that count, and compares all that it reports.
void compareFrame(ReviewedDocument *review, const QString &announced, const QString &concluded);

/// The columns of what compareProgress() expects.
void addProgressColumns();

/// Filters twice, and compares what the bar goes through with what the row says of \p review, whose
/// range is the size of the row.
void compareProgress(ReviewedDocument *review);

/// Filters with every text translated, and looks for a translation in both status texts.
void compareTranslation(ReviewedDocument *review);

/// Checks the box of a filter on top of a search, unchecks it and does so again, and compares the
/// rows and the status text each time. \p filtered are the pictures under the filter.
void compareCheckBox(const ReviewSession &session, const QString &box, const QStringList &filtered,
                     const QString &concluded);

/// Calls the slot of a filter's box with each state, of which only the unchecked one shows all.
void compareBoxStates(const char *slot);

/// Filters the document that has been loaded, and compares what a save writes with its file.
void compareSave(ReviewedDocument *review);

/// The column "seed" with a row for each generated document.
void addSeeds();

/// The pictures of \p lines when all are hidden.
QStringList allHidden(QStringList lines);

/// Runs a filter over \p review, and the same put down plainly as \p plain, while more and more
/// entries are deleted, and compares what they leave. \p concluded makes the status text of a
/// count, which must each time be more than \p least, or chance has done little.
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

/// The labels and counts of the section nodes, and the beginnings of what else is at the top of the
/// tree; behind "hidden: " if the row is.
QStringList topRows(const QTreeWidget &tree);

/// The texts of all columns of the row.
QStringList columnTexts(const QTreeWidgetItem *row);

/// Does \p what among the events that are processed at the next move of the bar.
void atNextMove(QProgressBar *bar, const std::function<void()> &what);

/// Replaces, given a text, the new text and the tags; deletes, given a tag, or a tag and a value.
void change(Gedcom *gedcom, const QStringList &arguments);

#endif // REVIEWING_H
