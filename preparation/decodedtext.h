#ifndef DECODEDTEXT_H
#define DECODEDTEXT_H

// The text that a decoder writes, and the record of what could not be decoded.

#include "encoding.h"

/// Takes what is decoded in the order of the file.
class DecodedText
{
public:
    /// \p size is the number of bytes if all is ASCII.
    explicit DecodedText(qsizetype size);

    void append(QByteArrayView utf8);

    /// Appends the hexadecimal digits of \p bytes, and records their place.
    void appendUndecoded(QByteArrayView bytes);

    /// Appends the line end and the beginning of the next line that stand within a character, which
    /// comes whole behind them, and records both lines.
    void appendCut(QByteArrayView utf8);

    /// The whole text, which is no longer here then.
    [[nodiscard]] Decoded take();

private:
    void recordCutLine();
    void advance();

    Decoded m_decoded;
    // The place of the next character to be counted, by its index in the text.
    qsizetype m_index = 0;
    qint64 m_line = 1;
    qint64 m_column = 1;
};

#endif // DECODEDTEXT_H
