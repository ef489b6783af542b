#ifndef PREPARATIONREPORT_H
#define PREPARATIONREPORT_H

// What users and scripts read of a preparation.

#include <QByteArray>
#include <QString>
#include <QStringList>

class QIODevice;
struct Preparation;

/// One file of a report.
struct ReportEntry
{
    QString input;
    QString copy; // empty if none was written
    QString problem; // why the copy was not written, if it could have been
    const Preparation *preparation;
};

enum class ReportFormat { Text, Json };

/// What a file comes to: its encoding, the count of each finding, the verdict or what is wrong.
/// Lines of text.
[[nodiscard]] QStringList summaryLines(const ReportEntry &entry);

/// Writes a report with all occurrences, file by file, so that no more than one preparation need be
/// kept: lines of text, or one JSON document.
class ReportWriter
{
public:
    ReportWriter(QIODevice *out, ReportFormat format);

    void add(const ReportEntry &entry);
    /// Ends the report. False if the device has not taken all of it.
    [[nodiscard]] bool finish();

private:
    void addText(const ReportEntry &entry);
    void addJson(const ReportEntry &entry);
    void put(const QByteArray &text);

    QIODevice *m_out;
    ReportFormat m_format;
    int m_count = 0;
    bool m_isWritten = true;
};

/// Writes the report on one file, whole or not at all. It never takes the place of the input, the
/// copy or the table of the identifiers. Returns what is wrong and what to do, or nothing.
[[nodiscard]] QString saveReport(const QString &path, ReportFormat format,
                                 const ReportEntry &entry);

#endif // PREPARATIONREPORT_H
