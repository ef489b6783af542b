#include "lines.h"

#include <QByteArray>

#include <algorithm>

namespace {

constexpr int MaxLevelDigits = 9; // a number of more digits is none

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isControl(char c)
{
    return (c >= 0 && c < ' ' && c != '\t') || c == '\x7F';
}

qsizetype skipBlanks(QByteArrayView text, qsizetype i)
{
    while (i < text.size() && isBlank(text[i]))
        ++i;
    return i;
}

/// Where the line begins behind its indentation. Files that were joined have byte-order marks in
/// their middle.
qsizetype skipIndentation(QByteArrayView text)
{
    qsizetype i = skipBlanks(text, 0);
    while (text.sliced(i).startsWith("\xEF\xBB\xBF"))
        i = skipBlanks(text, i + 3);
    return i;
}

/// The end of the word that begins at \p i.
qsizetype wordEnd(QByteArrayView text, qsizetype i)
{
    while (i < text.size() && !isBlank(text[i]))
        ++i;
    return i;
}

/// The end of the identifier that begins at \p i, or \p i if none does. It may hold blanks; in a
/// record's first line the blank behind it may be missing.
qsizetype identifierEnd(QByteArrayView text, qsizetype i, int level)
{
    if (text[i] != '@')
        return i;
    const qsizetype end = text.indexOf('@', i + 1) + 1;
    if (end <= i + 2)
        return i;
    if (end == text.size() || isBlank(text[end]))
        return end;
    return level == 0 && wordEnd(text, i) > end ? end : i;
}

} // namespace

QByteArrayView LineReader::readLine()
{
    const auto find = [this](char c, qsizetype known) {
        if (known >= m_next)
            return known;
        const qsizetype found = m_text.indexOf(c, m_next);
        return found < 0 ? m_text.size() : found;
    };
    m_lineFeed = find('\n', m_lineFeed);
    m_return = find('\r', m_return);
    m_begin = m_next;
    const qsizetype end = std::min(m_lineFeed, m_return);
    m_hasReturns = m_hasReturns || m_return < m_lineFeed;
    m_next = end + (m_return < m_lineFeed && m_return + 1 == m_lineFeed ? 2 : 1);
    ++m_number;
    return m_text.sliced(m_begin, end - m_begin);
}

GedLine readGedLine(QByteArrayView text)
{
    const qsizetype begin = skipIndentation(text);
    qsizetype i = begin;
    int level = 0;
    while (i < text.size() && isDigit(text[i]) && i - begin < MaxLevelDigits)
        level = 10 * level + (text[i++] - '0');
    const qsizetype levelEnd = i;
    i = skipBlanks(text, i);
    if (levelEnd == begin || i == levelEnd || i == text.size())
        return {};

    GedLine line;
    line.level = level;
    line.isPlain = begin == 0 && (levelEnd == 1 || text[0] != '0') && i == levelEnd + 1
                && text[levelEnd] == ' ';
    const qsizetype idEnd = identifierEnd(text, i, level);
    if (idEnd > i) {
        line.identifier = text.sliced(i, idEnd - i);
        i = skipBlanks(text, idEnd);
        line.isPlain =
            line.isPlain && (idEnd == text.size() || (i == idEnd + 1 && text[idEnd] == ' '));
    }
    const qsizetype tagEnd = wordEnd(text, i);
    line.tag = text.sliced(i, tagEnd - i);
    if (tagEnd < text.size()) {
        line.hasBlank = true;
        line.value = text.sliced(tagEnd + 1);
        line.isPlain = line.isPlain && text[tagEnd] == ' ';
    }
    return line;
}

bool isBlankLine(QByteArrayView text)
{
    return skipIndentation(text) == text.size();
}

bool isTag(QByteArrayView tag, const char *name)
{
    return tag.compare(QByteArrayView(name), Qt::CaseInsensitive) == 0;
}

bool isContinuation(QByteArrayView tag)
{
    return tag == "CONT" || tag == "CONC";
}

QByteArrayView pointerOf(const GedLine &line)
{
    QByteArrayView value = line.value.sliced(skipBlanks(line.value, 0));
    while (!value.isEmpty() && isBlank(value.back()))
        value.chop(1);
    const bool isPointer = value.size() > 2 && value.front() == '@' && value[1] != '#'
                        && value.indexOf('@', 1) == value.size() - 1;
    return isPointer && !isContinuation(line.tag) ? value : QByteArrayView();
}

bool hasControls(QByteArrayView text)
{
    return std::any_of(text.begin(), text.end(), isControl);
}

QByteArray withoutControls(QByteArrayView text)
{
    QByteArray clean;
    clean.reserve(text.size());
    std::copy_if(text.begin(), text.end(), std::back_inserter(clean),
                 [](char c) { return !isControl(c); });
    return clean;
}
