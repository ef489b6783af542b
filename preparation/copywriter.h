#ifndef COPYWRITER_H
#define COPYWRITER_H

// Writes the lines of the copy, and keeps what has been found in them.

#include "findings.h"
#include "lines.h"
#include "preparation.h"

#include <QByteArrayView>
#include <QVarLengthArray>

/// A line of the source; none, for what is inserted, if it begins at -1.
struct SourceLine
{
    qint64 number = 0;
    qint64 begin = -1;
};

class CopyWriter
{
public:
    /// Fills the copy and the occurrences of \p preparation.
    explicit CopyWriter(Preparation *preparation);

    /// What is written and noted from now on belongs to this line of the source.
    void setSource(const SourceLine &line);
    [[nodiscard]] SourceLine source() const
    {
        return m_source;
    }

    /// Writes \p text as a line, whose parts are those of \p line.
    void write(QByteArrayView text, const GedLine &line);
    /// Writes \p line in its plain form.
    void write(const GedLine &line);
    /// Writes a line that is not in the source, behind the one written last.
    void insert(const GedLine &line);
    /// Lengthens the value of the line written last.
    void appendToValue(QByteArrayView text);

    /// Notes something about what becomes of the line of the source.
    void note(Finding finding, qsizetype detail = 0);
    /// Notes that the line of the source is taken away.
    void noteRemoved(Finding finding);
    /// Notes something about the line written last, and about those that are inserted behind it if
    /// \p lines is more than 1.
    void noteLast(Finding finding, int lines = 1);
    /// Notes that the line of the source has gone into the line written last.
    void noteJoined(Finding finding);

    [[nodiscard]] qint64 lineCount() const
    {
        return m_lineCount;
    }
    // The line written last. Without one its level is GedLine::NoLevel.
    [[nodiscard]] int lastLevel() const
    {
        return m_last.level;
    }
    [[nodiscard]] bool lastIsContinuation() const
    {
        return m_last.isContinuation;
    }
    [[nodiscard]] bool lastHasValue() const
    {
        return m_last.hasValue;
    }

private:
    [[nodiscard]] Occurrence counted(Finding finding, const SourceLine &source, qint64 after);
    void settle(qint64 after);
    void finish(const GedLine &line, qint64 begin);
    void warnOfLength();

    struct Last
    {
        SourceLine source;
        qint64 begin = 0; // in the copy
        int level = GedLine::NoLevel;
        bool isContinuation = false;
        bool hasBlank = false;
        bool hasValue = false;
        bool isLong = false;
    };

    Preparation *m_preparation;
    QByteArray &m_copy;
    Last m_last;
    SourceLine m_source;
    // Of one line of the source, which has not come to the copy yet.
    QVarLengthArray<Occurrence, 4> m_noted;
    qint64 m_lineCount = 0;
};

#endif // COPYWRITER_H
