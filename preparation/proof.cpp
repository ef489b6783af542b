#include "proof.h"

#include "lines.h"
#include "recordlines.h"

namespace {

/// The lines of one record, as far as they have been read.
struct Record
{
    qint64 size = 0; // lines
    bool isPlaced = true; // all of them so far
    RecordLevels levels;
};

int levelOf(QByteArrayView line)
{
    return !line.isEmpty() && line.front() > '0' && line.front() <= '9' ? line.front() - '0' : 0;
}

/// Makes \p proof say that \p line stops the reading.
void stop(Proof *proof, qint64 number, QByteArrayView line)
{
    proof->stoppingLine = number;
    proof->stoppingText = QString::fromUtf8(line);
}

} // namespace

Proof proveOpening(QByteArrayView text)
{
    Proof proof;
    Record record;
    QByteArrayView first; // of the record
    LineReader reader(text);
    while (!reader.atEnd()) {
        const QByteArrayView line = reader.readLine();
        // The last line is taken for the trailer and belongs to no record.
        if ((beginsRecord(line) || reader.atEnd()) && record.size > 0) {
            if (record.size < MinRecordSize) {
                stop(&proof, reader.number() - 1, first);
                return proof;
            }
            ++proof.records;
            record = {};
        }
        if (record.size == 0) {
            first = line;
        } else if (!record.levels.take(levelOf(line))) {
            stop(&proof, reader.number(), line);
            return proof;
        }
        ++record.size;
    }
    return proof;
}
