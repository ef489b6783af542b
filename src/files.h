#ifndef FILES_H
#define FILES_H

// The files of a load and a save: the lines of what is read, the archive beside what is written,
// and the writing itself.

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

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

/// A file that a save writes anew. Events come between its lines, and one of them may start another
/// save to the same file, under this name or another. The file is then that save's, which began
/// last: this one goes through its steps, and writes nothing any more.
class SavedFile
{
public:
    /// Nothing is opened yet, but the file can be lost to another save from now on.
    explicit SavedFile(const QString &path);
    ~SavedFile();
    Q_DISABLE_COPY_MOVE(SavedFile)

    [[nodiscard]] QString path() const;

    /// Opens it, which empties it, or makes it. False if that cannot be done, or it is no file.
    [[nodiscard]] bool open();

    /// Writes the lines that \p linesOf gives for each of \p count pieces, then \p end, and closes
    /// the file. Events are processed at every hundredth piece.
    void write(qsizetype count, const std::function<QStringList(qsizetype)> &linesOf,
               const char *end, QProgressBar *bar);

private:
    QString m_path; // as given; an open file has one of its own
    QFile m_file;
    bool m_isLost = false; // to a save that began later
};

#endif // FILES_H
