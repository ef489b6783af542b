#ifndef MATCHING_H
#define MATCHING_H

// Finds entries by pattern, tag, identifier or column. The forms of pattern that the program itself
// uses are matched without the expression engine.

#include <QHash>
#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <array>

class QTreeWidgetItem;
class TwItem;

/// A pattern whose only variable part is a number, matched without the expression engine:
/// "^@S[0-9]+@$", the identifier of a source, matches "@S12@"; "^0 @I[0-9]+@ INDI$", the first line
/// of a person, matches "0 @I7@ INDI". isEmpty() if the expression has any other form.
class NumberedForm
{
public:
    explicit NumberedForm(const QRegularExpression &rx);

    [[nodiscard]] bool isEmpty() const;

    /// The fixed text that every match begins with.
    [[nodiscard]] QString begin() const;

    /// Whether the expression matches \p text.
    [[nodiscard]] bool matches(QStringView text) const;

private:
    QString m_begin;
    QString m_end;
};

/// Tries one expression on the line texts of many entries. The forms that the program has for lines
/// do without the expression engine, with the same result: "^1 FILE ", a fixed beginning; "^[0-9]
/// DATE", a fixed beginning at any level; and those of NumberedForm.
class LineMatcher
{
public:
    explicit LineMatcher(const QRegularExpression &rx);

    /// Whether lineText() matches.
    [[nodiscard]] bool matches(const QTreeWidgetItem *row) const;

private:
    QRegularExpression m_rx;
    QString m_prefix; // the fixed beginning, if that is the whole pattern
    bool m_beginsWithDigit = false; // whether a digit comes first
    NumberedForm m_record;
};

/// Tries one expression on the columns of many entries, with the outcome of
/// TwItem::getColumnIndexMatchRx. A file has few distinct levels and tags ("1", "DATE"), whose
/// matches are kept. The pattern of an identifier, "^@S[0-9]+@$", does without the expression
/// engine.
class ColumnMatcher
{
public:
    explicit ColumnMatcher(const QRegularExpression &rx);

    /// The first column of \p row that matches, or -1.
    [[nodiscard]] int firstColumn(const QTreeWidgetItem *row);

    /// What the expression, a valid one, finds in \p text; to be read before the next text is
    /// tried.
    [[nodiscard]] const QRegularExpressionMatch &match(const QString &text);

private:
    struct Tried
    {
        QString text;
        QRegularExpressionMatch match;
    };
    QRegularExpression m_rx;
    NumberedForm m_id;
    std::array<Tried, 256> m_tried; // short texts, each at the index that its hash gives
    Tried m_triedLong; // the last long text
};

using EntryIndex = QHash<QString, QList<TwItem *>>;

/// Finds the same as entriesWithColumn(), but by an index: only a text that does not begin with "@"
/// needs a walk through the list.
class ColumnIndex
{
public:
    explicit ColumnIndex(const QList<TwItem *> &entries = {});

    void append(const QList<TwItem *> &entries);
    [[nodiscard]] QList<TwItem *> find(const QString &text) const;

private:
    QList<TwItem *> m_entries;
    EntryIndex m_byId;
};

/// Whether \p tag is the tag of \p twi, or its full tag joined with ".". "*" is not a wildcard
/// here.
[[nodiscard]] bool hasTag(TwItem *twi, const QString &tag);

/// The entries that have one of \p tags, for each tag in turn: an entry that two tags name is
/// listed twice. An empty tag names none.
[[nodiscard]] QList<TwItem *> entriesByTag(const QList<TwItem *> &entries, const QStringList &tags);

/// The first column in which \p url finds a web address, or -1. Each one contains "http", and an
/// entry without it is ruled out much faster.
[[nodiscard]] int urlColumn(const TwItem *twi, ColumnMatcher *url);

/// The live entries in the child list of \p twi whose line text matches.
[[nodiscard]] QList<TwItem *> childsMatching(TwItem *twi, const LineMatcher &matcher);

/// The first of childsMatching(), null if there is none.
[[nodiscard]] TwItem *firstChildMatching(TwItem *twi, const LineMatcher &matcher);

/// childsMatching() of each of the records \p roots, one after the other.
[[nodiscard]] QList<TwItem *> recordChildsMatching(const QList<TwItem *> &roots,
                                                   const QRegularExpression &rx);

/// The entries with a column equal to \p text.
[[nodiscard]] QList<TwItem *> entriesWithColumn(const QString &text,
                                                const QList<TwItem *> &entries);

/// The entries by the file name at the end of each of their columns, in the order of the list. What
/// is found for a name may be too many, never too few: TwItem::getAbsolutFileName, which looks at
/// one column only, tells whether an entry does hold it.
[[nodiscard]] EntryIndex indexByFileName(const QList<TwItem *> &entries);

/// Each identifier of the form \p id that the line text contains. They may overlap: "@S1@S2@"
/// contains two.
[[nodiscard]] QStringList idsIn(const QTreeWidgetItem *row, const NumberedForm &id);

#endif // MATCHING_H
