#include "decodedtext.h"

#include <utility>

DecodedText::DecodedText(qsizetype size)
{
    // Accents take more bytes than in most files; growing later would need room for two texts.
    m_decoded.utf8.reserve(size + size / 8);
}

void DecodedText::append(QByteArrayView utf8)
{
    m_decoded.utf8.append(utf8);
}

void DecodedText::appendUndecoded(QByteArrayView bytes)
{
    advance();
    m_decoded.undecoded.append({m_line, m_column, bytes.toByteArray()});
    m_decoded.utf8 += '<' + bytes.toByteArray().toHex().toUpper() + '>';
    m_index = m_decoded.utf8.size();
    ++m_column;
}

void DecodedText::appendCut(QByteArrayView utf8)
{
    recordCutLine();
    append(utf8);
    recordCutLine();
}

Decoded DecodedText::take()
{
    return std::exchange(m_decoded, {});
}

/// The present line is cut, perhaps once more.
void DecodedText::recordCutLine()
{
    advance();
    QList<qint64> &lines = m_decoded.cutLines;
    if (lines.isEmpty() || lines.constLast() != m_line)
        lines.append(m_line);
}

/// Counts the lines and characters that have come since the last time.
void DecodedText::advance()
{
    for (; m_index < m_decoded.utf8.size(); ++m_index) {
        const char c = m_decoded.utf8.at(m_index);
        const bool isSecondOfPair =
            c == '\n' && m_index > 0 && m_decoded.utf8.at(m_index - 1) == '\r';
        if (c == '\r' || (c == '\n' && !isSecondOfPair)) {
            ++m_line;
            m_column = 1;
        } else if (!isSecondOfPair && (uchar(c) & 0xC0) != 0x80) { // the first byte of a character
            ++m_column;
        }
    }
}
