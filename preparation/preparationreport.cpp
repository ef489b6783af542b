#include "preparationreport.h"

#include "output.h"
#include "preparation.h"

#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString quoted(QString text)
{
    return u"« "_s + text.replace(u'\n', u" ⏎ "_s) + u" »"_s;
}

/// What has become of a line, in words.
QString changeOf(const Occurrence &occurrence, const OccurrenceText &text)
{
    if (findingType(occurrence.finding).kind == FindingKind::Warning)
        return quoted(text.before.isEmpty() ? text.after : text.before);
    const bool isWhole = occurrence.before < 0 && occurrence.after < 0;
    if (occurrence.after < 0 && !isWhole)
        return Preparation::tr("%1 est retiré").arg(quoted(text.before));
    if (occurrence.before < 0 && !isWhole)
        return Preparation::tr("%1 est ajouté").arg(quoted(text.after));
    return Preparation::tr("%1 devient %2").arg(quoted(text.before), quoted(text.after));
}

QString occurrenceLine(const Occurrence &occurrence, const Preparation &preparation)
{
    const OccurrenceText text = textOf(occurrence, preparation);
    return Preparation::tr("l.%1 %2 : %3. %4")
        .arg(QString::number(text.line), findingType(occurrence.finding).name,
             changeOf(occurrence, text), text.why);
}

QJsonObject countsOf(const Preparation &preparation)
{
    QJsonObject counts;
    for (const FindingType &type : findingTypes()) {
        if (preparation.count(type.finding) > 0)
            counts.insert(type.name, preparation.count(type.finding));
    }
    return counts;
}

QJsonArray identifiersOf(const Preparation &preparation)
{
    QJsonArray identifiers;
    for (const RenamedIdentifier &renamed : preparation.identifiers)
        identifiers.append(QJsonObject{{u"ancien"_s, QString::fromUtf8(renamed.before)},
                                       {u"nouveau"_s, QString::fromUtf8(renamed.after)}});
    return identifiers;
}

QJsonObject jsonOf(const Occurrence &occurrence, const Preparation &preparation)
{
    const OccurrenceText text = textOf(occurrence, preparation);
    return {{u"ligne"_s, text.line},
            {u"nature"_s, findingType(occurrence.finding).name},
            {u"avant"_s, text.before},
            {u"apres"_s, text.after},
            {u"pourquoi"_s, text.why}};
}

/// All of an entry but its occurrences.
QJsonObject jsonOf(const ReportEntry &entry)
{
    const Preparation &preparation = *entry.preparation;
    QJsonObject object{{u"fichier"_s, entry.input}};
    if (!preparation.isDone()) {
        object.insert(u"refus"_s, preparation.refusal);
        return object;
    }
    if (!entry.copy.isEmpty())
        object.insert(u"copie"_s, entry.copy);
    if (!entry.problem.isEmpty())
        object.insert(u"probleme"_s, entry.problem);
    object.insert(u"codage"_s, encodingName(preparation.encoding.encoding));
    object.insert(u"motif"_s, preparation.encoding.reason);
    object.insert(u"ouvre"_s, preparation.proof.opens());
    object.insert(u"enregistrements"_s, preparation.proof.records);
    object.insert(u"verdict"_s, preparation.verdict());
    object.insert(u"bilan"_s, countsOf(preparation));
    object.insert(u"identifiants"_s, identifiersOf(preparation));
    return object;
}

QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace

QStringList summaryLines(const ReportEntry &entry)
{
    const Preparation &preparation = *entry.preparation;
    QStringList lines{Preparation::tr("Fichier : %1").arg(entry.input)};
    if (!preparation.isDone())
        return lines << preparation.refusal;
    lines << Preparation::tr("Codage : %1 (%2)")
                 .arg(encodingName(preparation.encoding.encoding), preparation.encoding.reason);
    for (const FindingType &type : findingTypes()) {
        if (const qint64 count = preparation.count(type.finding); count > 0)
            lines << Preparation::tr(type.kind == FindingKind::Warning ? "À savoir : %1 : %2"
                                                                       : "Réparation : %1 : %2")
                         .arg(type.title, QString::number(count));
    }
    lines << preparation.verdict();
    if (!entry.copy.isEmpty())
        lines << Preparation::tr("Copie : %1").arg(entry.copy);
    if (!entry.problem.isEmpty())
        lines << entry.problem;
    return lines;
}

ReportWriter::ReportWriter(QIODevice *out, ReportFormat format) : m_out(out), m_format(format)
{
    if (m_format == ReportFormat::Json)
        put("{\"fichiers\":[");
}

void ReportWriter::add(const ReportEntry &entry)
{
    if (m_format == ReportFormat::Text)
        addText(entry);
    else
        addJson(entry);
    ++m_count;
}

bool ReportWriter::finish()
{
    if (m_format == ReportFormat::Json)
        put("\n]}\n");
    return m_isWritten;
}

void ReportWriter::addText(const ReportEntry &entry)
{
    const Preparation &preparation = *entry.preparation;
    put(summaryLines(entry).join(u'\n').toUtf8() + '\n');
    for (const Occurrence &occurrence : preparation.occurrences)
        put(occurrenceLine(occurrence, preparation).toUtf8() + '\n');
    for (const RenamedIdentifier &renamed : preparation.identifiers)
        put(renamed.before + " -> " + renamed.after + '\n');
    put("\n");
}

/// Occurrence by occurrence: as one object, a million of them would not fit in memory.
void ReportWriter::addJson(const ReportEntry &entry)
{
    QByteArray head = compact(jsonOf(entry));
    head.chop(1);
    put((m_count == 0 ? "\n" : ",\n") + head + ",\"occurrences\":[");
    QByteArray separator = "\n";
    for (const Occurrence &occurrence : entry.preparation->occurrences) {
        put(separator + compact(jsonOf(occurrence, *entry.preparation)));
        separator = ",\n";
    }
    put("]}");
}

void ReportWriter::put(const QByteArray &text)
{
    m_isWritten = m_isWritten && m_out->write(text) == text.size();
}

QString saveReport(const QString &path, ReportFormat format, const ReportEntry &entry)
{
    const QStringList others = writtenFiles(*entry.preparation, entry.copy) << entry.input;
    const auto isPath = [&path](const QString &other) { return isSameFile(path, other); };
    if (std::any_of(others.begin(), others.end(), isPath))
        return Preparation::tr(
                   "« %1 » est le fichier d'origine, sa copie ou la table de ses identifiants. "
                   "Donnez un autre nom au rapport.")
            .arg(path);
    return writeWhole(path, [&](QIODevice *out) {
        ReportWriter writer(out, format);
        writer.add(entry);
        return writer.finish();
    });
}
