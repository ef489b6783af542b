#ifndef DOCUMENT_H
#define DOCUMENT_H

#include "gedcom.h"
#include "twitem.h"

#include <QProgressBar>
#include <QStatusBar>
#include <QStringList>
#include <QTemporaryDir>
#include <QTreeWidget>

/// The lines of a journal without their times. A quoted record goes on over lines that have none;
/// these come back as they are. The empty text behind the last line end is left out.
QStringList journalWithoutTimes(const QString &journal);

/// Writes \p lines, each ended by a line feed, to \p path. Fails the test if that cannot be done.
void writeLines(const QString &path, const QStringList &lines);

/// Writes \p bytes to \p path as they are.
void writeBytes(const QString &path, const QByteArray &bytes);

/// The bytes of the file.
QByteArray readBytes(const QString &path);

/// The lines of a UTF-8 file; the text behind the last line feed, if any, is the last of them.
QStringList readLines(const QString &path);

/// \p lines with \p other in the place of the first that reads \p line, which must be there.
QStringList replaced(QStringList lines, const QString &line, const QString &other);

/// \p lines with \p added behind the first that reads \p line, which must be there.
QStringList insertedBehind(QStringList lines, const QString &line, const QString &added);

/// The row of the tree that is the section of this label, which must be there.
TwItem *sectionNode(const QTreeWidget &tree, const QString &label);

/// A document with the three widgets that it borrows, in a temporary folder of its own.
class Document
{
public:
    Document();
    Q_DISABLE_COPY_MOVE(Document)

    /// Writes \p lines and the trailer to path() and loads that file.
    bool load(const QStringList &lines);
    /// Loads path() as it is.
    bool loadFile();

    /// The file of load(), "arbre.ged" in the temporary folder.
    [[nodiscard]] QString path() const;
    [[nodiscard]] QString folder() const
    {
        return m_folder.path();
    }
    /// The names in the archive folder of today, sorted; empty if there is none.
    [[nodiscard]] QStringList archive() const;

    /// The journal without its times.
    [[nodiscard]] QStringList journal() const;
    /// The journal lines that have come since the last call of this, without their times.
    QStringList newJournal();
    /// The lines that a save would write, the trailer left out.
    [[nodiscard]] QStringList lines() const;
    /// The first entry in file order, deleted ones counted, with this line text; null if none.
    [[nodiscard]] TwItem *entry(const QString &line) const;
    [[nodiscard]] QString status() const
    {
        return statusBar.currentMessage();
    }

    QTreeWidget tree;
    QProgressBar progress;
    QStatusBar statusBar;
    Gedcom gedcom;

private:
    QTemporaryDir m_folder;
    qsizetype m_journalSeen = 0;
};

#endif // DOCUMENT_H
