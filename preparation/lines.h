#ifndef LINES_H
#define LINES_H

// The lines of a text and what stands in them, read as generously as a file of unknown origin
// needs. All views point into the text.

#include <QByteArrayView>

/// Takes a text apart into lines, which end at LF, CR or CR LF.
class LineReader
{
public:
    explicit LineReader(QByteArrayView text) : m_text(text) { }

    [[nodiscard]] bool atEnd() const
    {
        return m_next >= m_text.size();
    }
    /// The next line, without its end.
    QByteArrayView readLine();

    /// Where the line that was read last begins.
    [[nodiscard]] qsizetype begin() const
    {
        return m_begin;
    }
    /// Its number, counted from 1.
    [[nodiscard]] qint64 number() const
    {
        return m_number;
    }
    /// Whether a line so far has ended in CR or CR LF.
    [[nodiscard]] bool hasReturns() const
    {
        return m_hasReturns;
    }

private:
    QByteArrayView m_text;
    qsizetype m_begin = 0;
    qsizetype m_next = 0;
    // Where they come next. Each is looked for once only: a text without the one or the other must
    // not be searched through for every line.
    qsizetype m_lineFeed = -1;
    qsizetype m_return = -1;
    qint64 m_number = 0;
    bool m_hasReturns = false;
};

/// A line taken apart: level, identifier if there is one, tag, value.
struct GedLine
{
    int level = NoLevel;
    QByteArrayView identifier; // with its at-signs
    QByteArrayView tag;
    QByteArrayView value; // all behind the one blank after the tag
    bool hasBlank = false; // the one in front of the value, which may be empty
    bool isPlain = false; // nothing else stands in the line, and no blank or zero too many

    static constexpr int NoLevel = -1; // of a line that does not begin with a number and a blank
};

/// Takes a line apart. One that has a number and a blank in front but no word behind has no level.
[[nodiscard]] GedLine readGedLine(QByteArrayView text);

/// Whether nothing stands in the line but blanks, tabs and byte-order marks.
[[nodiscard]] bool isBlankLine(QByteArrayView text);

/// Whether \p tag reads \p name, in capitals or not.
[[nodiscard]] bool isTag(QByteArrayView tag, const char *name);

/// Whether \p tag marks a continuation line: CONT or CONC.
[[nodiscard]] bool isContinuation(QByteArrayView tag);

/// The pointer to a record, "@I1@", that all of the value is but for blanks around it. Empty if it
/// is none: an escape, "@#DJULIAN@", or the text of a continuation line.
[[nodiscard]] QByteArrayView pointerOf(const GedLine &line);

/// Whether there are characters in the text that no line of text has: those below the blank, but
/// for the tab, and DEL.
[[nodiscard]] bool hasControls(QByteArrayView text);

/// \p text without them.
[[nodiscard]] QByteArray withoutControls(QByteArrayView text);

#endif // LINES_H
