#include "matching.h"

#include "journaltext.h"
#include "twitem.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

constexpr int MaxTriedSize = 4; // characters of a level or tag; few texts are as short

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

/// Whether \p text stands for itself in an expression, as far as the program's own go.
bool isPlain(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) {
        return isDigit(c) || (c >= u'A' && c <= u'Z') || c == u' ' || c == u'@';
    });
}

} // namespace

NumberedForm::NumberedForm(const QRegularExpression &rx)
{
    if (rx.patternOptions() != QRegularExpression::NoPatternOption)
        return;
    // To the very end: a pattern pasted with its line feed asks for one.
    static const QRegularExpression form(uR"(^\^([0-9A-Z@ ]+)\[0-9\]\+([A-Z@ ]+)\$\z)"_s);
    const QRegularExpressionMatch match = form.match(rx.pattern());
    m_begin = match.captured(1);
    m_end = match.captured(2);
}

bool NumberedForm::isEmpty() const
{
    return m_begin.isEmpty();
}

QString NumberedForm::begin() const
{
    return m_begin;
}

bool NumberedForm::matches(QStringView text) const
{
    // "$" also matches in front of a final line feed.
    if (text.endsWith(u'\n'))
        text.chop(1);
    const qsizetype digits = text.size() - m_begin.size() - m_end.size();
    if (digits < 1 || !text.startsWith(m_begin) || !text.endsWith(m_end))
        return false;
    text = text.sliced(m_begin.size(), digits);
    return std::all_of(text.begin(), text.end(), isDigit);
}

LineMatcher::LineMatcher(const QRegularExpression &rx) : m_rx(rx), m_record(rx)
{
    const QString pattern = rx.pattern();
    if (rx.patternOptions() != QRegularExpression::NoPatternOption || !pattern.startsWith(u'^'))
        return;
    QStringView prefix = QStringView(pattern).sliced(1);
    m_beginsWithDigit = prefix.startsWith("[0-9]"_L1);
    if (m_beginsWithDigit)
        prefix = prefix.sliced(5);
    if (isPlain(prefix))
        m_prefix = prefix.toString();
}

bool LineMatcher::matches(const QTreeWidgetItem *row) const
{
    if (!m_prefix.isEmpty()) {
        if (!m_beginsWithDigit)
            return lineBeginsWith(row, m_prefix);
        const QString level = row->text(LevelColumn);
        return !level.isEmpty() && isDigit(level.front())
            && lineBeginsWith(row, QString(level.front() + m_prefix));
    }
    if (!m_record.isEmpty())
        return lineBeginsWith(row, m_record.begin()) && m_record.matches(lineText(row));
    return m_rx.isValid() && m_rx.match(lineText(row)).hasMatch(); // an invalid one would warn
}

ColumnMatcher::ColumnMatcher(const QRegularExpression &rx) : m_rx(rx), m_id(rx) { }

int ColumnMatcher::firstColumn(const QTreeWidgetItem *row)
{
    if (!m_rx.isValid())
        return -1; // matches nothing, and would warn at every try
    for (int column = 0; column < row->columnCount(); ++column) {
        const QString text = row->text(column);
        if (m_id.isEmpty() ? match(text).hasMatch() : m_id.matches(text))
            return column;
    }
    return -1;
}

const QRegularExpressionMatch &ColumnMatcher::match(const QString &text)
{
    Tried &tried =
        text.size() > MaxTriedSize ? m_triedLong : m_tried.at(qHash(text) % m_tried.size());
    if (tried.text != text || text.isEmpty())
        tried = {text, m_rx.match(text)};
    return tried.match;
}

ColumnIndex::ColumnIndex(const QList<TwItem *> &entries)
{
    append(entries);
}

void ColumnIndex::append(const QList<TwItem *> &entries)
{
    m_entries += entries;
    for (TwItem *twi : entries) {
        for (int column = 0; column < twi->columnCount(); ++column) {
            const QString text = twi->text(column);
            if (!text.startsWith(u'@'))
                continue; // levels and tags are the same all over, and not looked for
            QList<TwItem *> &found = m_byId[text];
            if (found.isEmpty() || found.constLast() != twi)
                found.append(twi);
        }
    }
}

QList<TwItem *> ColumnIndex::find(const QString &text) const
{
    return text.startsWith(u'@') ? m_byId.value(text) : entriesWithColumn(text, m_entries);
}

bool hasTag(TwItem *twi, const QString &tag)
{
    const QString ownTag = twi->getTag();
    if (tag == ownTag)
        return true;
    // A full tag ends in the entry's own tag, or is empty: most entries need no walk to the root.
    if (!tag.isEmpty() && !tag.endsWith(ownTag))
        return false;
    return tag == fullTagText(twi);
}

QList<TwItem *> entriesByTag(const QList<TwItem *> &entries, const QStringList &tags)
{
    QList<TwItem *> matches;
    for (const QString &tag : tags) {
        if (tag.isEmpty())
            continue; // as behind a trailing ";": not even an entry without a tag answers to it
        std::copy_if(entries.cbegin(), entries.cend(), std::back_inserter(matches),
                     [&tag](TwItem *twi) { return hasTag(twi, tag); });
    }
    return matches;
}

int urlColumn(const TwItem *twi, ColumnMatcher *url)
{
    for (int column = 0; column < twi->columnCount(); ++column) {
        if (twi->text(column).contains("http"_L1))
            return url->firstColumn(twi);
    }
    return -1;
}

QList<TwItem *> childsMatching(TwItem *twi, const LineMatcher &matcher)
{
    QList<TwItem *> matches;
    const QList<TwItem *> tabTwi = twi->getTabTwiChilds(false);
    std::copy_if(
        tabTwi.begin(), tabTwi.end(), std::back_inserter(matches),
        [&matcher](TwItem *child) { return !child->isToDelete() && matcher.matches(child); });
    return matches;
}

TwItem *firstChildMatching(TwItem *twi, const LineMatcher &matcher)
{
    const QList<TwItem *> tabTwi = twi->getTabTwiChilds(false);
    const auto match = std::find_if(tabTwi.begin(), tabTwi.end(), [&matcher](TwItem *child) {
        return !child->isToDelete() && matcher.matches(child);
    });
    return match == tabTwi.end() ? nullptr : *match;
}

QList<TwItem *> recordChildsMatching(const QList<TwItem *> &roots, const QRegularExpression &rx)
{
    QList<TwItem *> matches;
    const LineMatcher matcher(rx);
    for (TwItem *root : roots)
        matches += childsMatching(root, matcher);
    return matches;
}

QList<TwItem *> entriesWithColumn(const QString &text, const QList<TwItem *> &entries)
{
    QList<TwItem *> matches;
    std::copy_if(
        entries.cbegin(), entries.cend(), std::back_inserter(matches),
        [&text](const TwItem *twi) { return twi->getColumnIndexEqualString(text, true) >= 0; });
    return matches;
}

EntryIndex indexByFileName(const QList<TwItem *> &entries)
{
    EntryIndex index;
    for (TwItem *twi : entries) {
        for (int column = 0; column < twi->columnCount(); ++column)
            index[bareFileName(twi->text(column))].append(twi);
    }
    return index;
}

QStringList idsIn(const QTreeWidgetItem *row, const NumberedForm &id)
{
    QStringList ids;
    const QStringList pieces = lineText(row).split(u'@');
    for (qsizetype i = 1; i < pieces.size() - 1; ++i) {
        const QString text = u'@' + pieces.at(i) + u'@';
        if (id.matches(text))
            ids.append(text);
    }
    return ids;
}
