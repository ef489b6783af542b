#ifndef FILES_H
#define FILES_H

// The files of a load and a save: the lines of what is read, the archive beside what is written,
// and the writing itself.

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class QFile;
class QProgressBar;
class QTextStream;

/// Whether there is a file of that name, or a link to one. What else may have a name is never
/// opened: a pipe waits for its other end, and a device may have no end.
[[nodiscard]] bool isFile(const QString &path);

/// All bytes of a file. Nothing if it is no file, cannot be opened, or not be read to its end.
[[nodiscard]] std::optional<QByteArray> readFile(const QString &path);

/// The number of lines from the beginning of the stream, which is there again afterwards.
[[nodiscard]] int countLines(QTextStream *in);

/// The name of the archive copy of a file: the present time in front of its own. A path without a
/// slash is its own file name.
[[nodiscard]] QString archiveName(const QString &pathFileGed);

/// Makes the archive directory of today beside a file and returns its path. Where it cannot be
/// made, the journal that goes into it cannot be opened, and that is reported.
QString makeArchiveDirectory(const QString &pathFileGed);

/// Opens a file to write it anew, or a new one. False if that cannot be done, or it is no file.
[[nodiscard]] bool openToWrite(QFile *file);

/// Writes the lines that \p linesOf gives for each of \p count pieces, then \p end, to an open file
/// and closes it. Events are processed at every hundredth piece.
void writeLines(QFile *file, qsizetype count, const std::function<QStringList(qsizetype)> &linesOf,
                const char *end, QProgressBar *bar);

#endif // FILES_H
