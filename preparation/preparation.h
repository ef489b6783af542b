#ifndef PREPARATION_H
#define PREPARATION_H

// What varlune-preparer does to a file: it reads any text that means to be GEDCOM, makes a copy
// that Varlune opens without loss, and remembers each change and each thing to be told. The two
// faces, console and window, show this and ask the user; they decide nothing.

#include "encoding.h"
#include "findings.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDate>
#include <QList>
#include <QString>

#include <array>
#include <functional>
#include <optional>

struct Options
{
    std::optional<Encoding> encoding; // in place of the one that the file shows
    FindingSet repairs = defaultRepairs();
    QDate today = QDate::currentDate(); // the date of a CHAN line that a repair adds
};

/// Is told the bytes done and their total, some hundred times in all and in the thread of
/// prepare(); returns false to stop.
using Progress = std::function<bool(qint64 done, qint64 total)>;

/// What Varlune's own reading of records says of the copy.
struct Proof
{
    qint64 records = 0; // that will be loaded, the trailer not among them
    qint64 stoppingLine =
        0; // of the copy, counted from 1, where the refused record ends; 0 if none
    QString stoppingText;
    [[nodiscard]] bool opens() const
    {
        return stoppingLine == 0;
    }
};

/// An identifier and what has taken its place.
struct RenamedIdentifier
{
    QByteArray before;
    QByteArray after;
};

/// The outcome for one file. A value: it may be made in one thread and shown in another.
struct Preparation
{
    Q_DECLARE_TR_FUNCTIONS(Preparation)

public:
    // What is wrong with the file and what to do, if there is no copy; else empty. Where there is
    // none, there are no occurrences, counts and identifiers.
    QString refusal;
    bool cancelled = false; // there is no copy either
    EncodingChoice encoding{Encoding::Utf8, {}};
    bool hasMark = false; // a byte-order mark in front
    QByteArray file; // the bytes, where the text of valid UTF-8 stands in them
    QByteArray source; // the text of the file, decoded to UTF-8; may point into the above
    QByteArray copy; // the text of the copy
    QList<Occurrence> occurrences; // in the order of the file; textOf() makes texts of them
    std::array<qint64, FindingCount> counts{}; // of the occurrences
    QList<Undecoded> undecoded;
    QList<qint64> cutLines; // of the file, as decode() tells them
    QList<RenamedIdentifier> identifiers; // in the order of the records
    Proof proof;

    [[nodiscard]] bool isDone() const
    {
        return refusal.isEmpty() && !cancelled;
    }
    [[nodiscard]] qint64 count(Finding finding) const
    {
        return counts.at(size_t(finding));
    }
    /// Whether something is to be told, the repairs apart: a warning, or a copy that does not open.
    [[nodiscard]] bool hasWarnings() const;
    /// One sentence: "Varlune ouvrira ce fichier : 12 enregistrements", or the line that stops it.
    [[nodiscard]] QString verdict() const;
};

/// Reads the file \p path and prepares it. What cannot be read is refused.
[[nodiscard]] Preparation prepareFile(const QString &path, const Options &options,
                                      const Progress &progress = {});

/// The same for the content \p bytes of a file.
[[nodiscard]] Preparation prepare(QByteArray bytes, const Options &options,
                                  const Progress &progress = {});

#endif // PREPARATION_H
