#ifndef OUTPUT_H
#define OUTPUT_H

// What a preparation leaves on disk: the copy, the table of the identifiers, the report. Nothing
// here asks: whether a file may be overwritten is the face's business.

#include <QString>
#include <QStringList>

class QIODevice;
struct Preparation;

/// "arbre.prepare.ged" beside "arbre.ged".
[[nodiscard]] QString copyPath(const QString &input);

/// "arbre.prepare.identifiants.csv" beside the copy "arbre.prepare.ged".
[[nodiscard]] QString identifiersPath(const QString &copy);

/// The files that saveCopy() would overwrite, so that the user can be asked.
[[nodiscard]] QStringList overwrittenFiles(const Preparation &preparation, const QString &copy);

/// Writes the copy, whole or not at all, and beside it the table of the renamed identifiers if
/// there are any. Never writes to \p input, whatever name \p copy gives it. Returns what is wrong
/// and what to do, or nothing.
[[nodiscard]] QString saveCopy(const Preparation &preparation, const QString &input,
                               const QString &copy);

enum class ReportFormat { Text, Json };

/// One prepared file of a report.
struct ReportEntry
{
    QString input;
    QString copy; // empty if none was written
    QString problem; // why it was not written, or empty
    const Preparation *preparation;
};

/// Writes the report on \p entries: all occurrences, one a line, or one JSON document with them.
/// False if the device does not take it.
bool writeReport(QIODevice *out, ReportFormat format, const QList<ReportEntry> &entries);

/// The report as a file, whole or not at all. Neither the input nor the copy of an entry is ever
/// overwritten. Returns what is wrong and what to do, or nothing.
[[nodiscard]] QString saveReport(const QString &path, ReportFormat format,
                                 const QList<ReportEntry> &entries);

#endif // OUTPUT_H
