#include "copywriter.h"

#include <algorithm>
#include <utility>

namespace {

constexpr qsizetype MaxLineSize = 255; // characters that a save leaves on one line

/// The characters of \p text as Qt counts them: two for one beyond the first 65536.
qsizetype utf16Size(QByteArrayView text)
{
    return std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; })
         + std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xF8) == 0xF0; });
}

} // namespace

CopyWriter::CopyWriter(Preparation *preparation)
    : m_preparation(preparation),
      m_copy(preparation->copy)
{
    const qsizetype size = preparation->source.size();
    m_copy.reserve(size + size / 16 + 1024);
}

void CopyWriter::setSource(const SourceLine &line)
{
    m_source = line;
}

void CopyWriter::write(QByteArrayView text, const GedLine &line)
{
    const qint64 begin = m_copy.size();
    m_copy.append(text);
    finish(line, begin);
}

void CopyWriter::write(const GedLine &line)
{
    const qint64 begin = m_copy.size();
    m_copy.append(QByteArray::number(line.level)).append(' ');
    if (!line.identifier.isEmpty())
        m_copy.append(line.identifier).append(line.tag.isEmpty() ? "" : " ");
    m_copy.append(line.tag);
    if (line.hasBlank)
        m_copy.append(' ').append(line.value);
    finish(line, begin);
}

void CopyWriter::insert(const GedLine &line)
{
    const SourceLine present =
        std::exchange(m_source, SourceLine{std::max<qint64>(1, m_last.source.number), -1});
    write(line);
    m_source = present;
}

void CopyWriter::appendToValue(QByteArrayView text)
{
    m_copy.chop(1);
    if (!m_last.hasBlank)
        m_copy.append(' ');
    m_copy.append(text).append('\n');
    m_last.hasBlank = true;
    m_last.hasValue = m_last.hasValue || !text.isEmpty();
    warnOfLength();
}

void CopyWriter::note(Finding finding, qsizetype detail)
{
    m_noted.append(counted(finding, m_source, -1));
    m_noted.last().detail = qint32(detail);
}

void CopyWriter::noteRemoved(Finding finding)
{
    settle(-1);
    m_preparation->occurrences.append(counted(finding, m_source, -1));
}

void CopyWriter::noteLast(Finding finding, int lines)
{
    m_preparation->occurrences.append(counted(finding, m_last.source, m_last.begin));
    m_preparation->occurrences.last().linesAfter = quint8(lines);
}

void CopyWriter::noteJoined(Finding finding)
{
    settle(m_last.begin);
    m_preparation->occurrences.append(counted(finding, m_source, m_last.begin));
}

/// Where the line of the source has come to is now known, and with it what was noted of it.
void CopyWriter::settle(qint64 after)
{
    // A line that is inserted has no place in the source. A trailer waits for the last line.
    if (m_noted.isEmpty() || m_noted.front().before != m_source.begin)
        return;
    for (Occurrence &occurrence : m_noted) {
        occurrence.after = after;
        m_preparation->occurrences.append(occurrence);
    }
    m_noted.clear();
}

/// An occurrence, which counts from now on.
Occurrence CopyWriter::counted(Finding finding, const SourceLine &source, qint64 after)
{
    Occurrence occurrence;
    occurrence.before = source.begin;
    occurrence.after = after;
    occurrence.line = qint32(source.number);
    occurrence.finding = finding;
    ++m_preparation->counts.at(size_t(finding));
    return occurrence;
}

void CopyWriter::finish(const GedLine &line, qint64 begin)
{
    m_copy.append('\n');
    settle(begin);
    ++m_lineCount;
    m_last.source = m_source;
    m_last.begin = begin;
    m_last.level = line.level;
    m_last.isContinuation = line.level > 0 && isContinuation(line.tag);
    m_last.hasBlank = line.hasBlank;
    m_last.hasValue = !line.value.isEmpty();
    m_last.isLong = false;
    warnOfLength();
}

void CopyWriter::warnOfLength()
{
    const QByteArrayView text = QByteArrayView(m_copy).sliced(m_last.begin).chopped(1);
    if (m_last.isLong || text.size() <= MaxLineSize || utf16Size(text) <= MaxLineSize)
        return;
    noteLast(Finding::LongLine);
    m_last.isLong = true;
}
