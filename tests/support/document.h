#ifndef DOCUMENT_H
#define DOCUMENT_H

#include "gedcom.h"
#include "invariant.h"
#include "twitem.h"

#include <QProgressBar>
#include <QStatusBar>
#include <QStringList>
#include <QTemporaryDir>
#include <QTreeWidget>

/// The lines of a journal without their times. The further lines of a quoted record have none and
/// come back unchanged. The empty text after the last line end is left out.
QStringList journalWithoutTimes(const QString &journal);

/// Writes \p lines, each ended by a line feed, to \p path. Fails the test if that cannot be done.
void writeLines(const QString &path, const QStringList &lines);

/// Writes \p bytes to \p path as they are.
void writeBytes(const QString &path, const QByteArray &bytes);

/// The bytes of the file.
QByteArray readBytes(const QString &path);

/// The bytes of a text that the program has written, with a line feed for each end of a line,
/// whatever the system has there.
QByteArray readText(const QString &path);

/// The lines of a UTF-8 file, whatever the system ends them with. Text after the last line feed
/// counts as a line.
QStringList readLines(const QString &path);

/// \p lines with the first \p line replaced by \p other. The line must exist.
QStringList replaced(QStringList lines, const QString &line, const QString &other);

/// \p lines with \p added after the first \p line, which must exist.
QStringList insertedBehind(QStringList lines, const QString &line, const QString &added);

/// The row of the section with this label, which must exist.
TwItem *sectionNode(const QTreeWidget &tree, const QString &label);

/// A document with the three widgets that it borrows, in a temporary folder of its own. Whenever it
/// is asked for its lines or its journal, and at its end, it must be whole.
class Document
{
public:
    Document();
    ~Document();
    Q_DISABLE_COPY_MOVE(Document)

    /// Writes \p lines and the trailer to path() and loads that file.
    bool load(const QStringList &lines);
    /// Loads the existing file path().
    bool loadFile();

    /// The file of load(), "arbre.ged" in the temporary folder.
    [[nodiscard]] QString path() const;
    [[nodiscard]] QString folder() const
    {
        return m_folder.path();
    }
    /// The names in today's archive folder, sorted; empty if there is no such folder.
    [[nodiscard]] QStringList archive() const;

    /// The journal without its times.
    [[nodiscard]] QStringList journal() const;
    /// The journal lines added since the last call, without their times.
    QStringList newJournal();
    /// The lines that a save would write, without the trailer.
    [[nodiscard]] QStringList lines() const;
    /// The first entry with this line text, in file order and including deleted ones; null if none.
    [[nodiscard]] TwItem *entry(const QString &line) const;
    [[nodiscard]] QString status() const
    {
        return statusBar.currentMessage();
    }

    /// What is broken in the document, as faultsOf() has it; or a live record of the tree is lost
    /// to the file, unless a load has been refused.
    [[nodiscard]] QStringList faults() const;

    QTreeWidget tree;
    QProgressBar progress;
    QStatusBar statusBar;
    Gedcom gedcom;

private:
    QTemporaryDir m_folder;
    qsizetype m_journalSeen = 0;
    bool m_refused = false;
};

#endif // DOCUMENT_H
