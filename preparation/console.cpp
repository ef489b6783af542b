#include "console.h"

#include "output.h"
#include "preparation.h"
#include "preparationreport.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

void print(std::FILE *stream, const QString &text)
{
    const QByteArray line = text.toUtf8() + '\n';
    std::fwrite(line.constData(), 1, size_t(line.size()), stream);
    std::fflush(stream);
}

/// The names that an option takes, as the help tells them.
QString repairNames(FindingKind kind)
{
    QStringList names;
    for (const FindingType &type : findingTypes()) {
        if (type.kind == kind)
            names += type.name;
    }
    return names.join(u", "_s);
}

QString encodingNames()
{
    QStringList names;
    for (const Encoding encoding : allEncodings())
        names += encodingName(encoding);
    return names.join(u", "_s);
}

/// The path of a file, which need not be there yet, without links in its folder.
QString placeOf(const QString &path)
{
    const QFileInfo info(path);
    return QDir(info.dir().canonicalPath()).filePath(info.fileName());
}

/// The command line of a run.
class Console
{
    Q_DECLARE_TR_FUNCTIONS(Console)

public:
    Console();
    int run(const QStringList &arguments);

private:
    [[nodiscard]] QString readOptions();
    [[nodiscard]] QString refusalOfOutputs() const;
    [[nodiscard]] QString copyOf(const QString &input) const;
    [[nodiscard]] QString save(const Preparation &preparation, const QString &input,
                               const QString &copy);
    void prepareAll(const QList<ReportWriter *> &reports);
    void prepareOne(const QString &input, const QList<ReportWriter *> &reports);
    int prepareWithReports();
    void raise(ExitStatus status)
    {
        m_status = std::max(m_status, status);
    }

    QCommandLineParser m_parser;
    const QCommandLineOption m_console;
    const QCommandLineOption m_encoding;
    const QCommandLineOption m_without;
    const QCommandLineOption m_identifiers;
    const QCommandLineOption m_deepLevels;
    const QCommandLineOption m_output;
    const QCommandLineOption m_report;
    const QCommandLineOption m_overwrite;
    const QCommandLineOption m_json;
    const QCommandLineOption m_help;
    const QCommandLineOption m_version;

    Options m_options;
    QStringList m_written; // the places of the files
    ExitStatus m_status = Done;
};

Console::Console()
    : m_console(u"console"_s, tr("Travaille sans fenêtre.")),
      m_encoding(
          u"codage"_s,
          tr("Impose le codage des fichiers, au lieu de le reconnaître : %1.").arg(encodingNames()),
          tr("NOM")),
      m_without(u"sans"_s,
                tr("Ne fait pas cette réparation ; peut être répété : %1.")
                    .arg(repairNames(FindingKind::Repair)),
                tr("REPARATION")),
      m_identifiers(u"identifiants"_s,
                    tr("Met les identifiants sous la forme @I1@, @F1@, @S1@, @O1@, @R1@, et écrit "
                       "leur table à côté de la copie.")),
      m_deepLevels(u"niveaux-profonds"_s,
                   tr("Replie les lignes de niveau 10 et plus dans leur ligne de niveau 9.")),
      m_output({u"o"_s, u"sortie"_s},
               tr("Nom de la copie, ou dossier des copies ; sinon arbre.prepare.ged à côté "
                  "d'arbre.ged."),
               tr("SORTIE")),
      m_report(u"rapport"_s, tr("Écrit dans ce fichier tout ce qui a été trouvé, ligne par ligne."),
               tr("RAPPORT")),
      m_overwrite(u"ecraser"_s, tr("Remplace les copies, tables et rapports qui existent.")),
      m_json(u"json"_s, tr("Donne le rapport complet en JSON, pour un script.")),
      m_help({u"h"_s, u"help"_s, u"aide"_s}, tr("Affiche cette aide.")),
      m_version({u"v"_s, u"version"_s}, tr("Affiche la version."))
{
    m_parser.setApplicationDescription(
        tr("Prépare des fichiers GEDCOM pour Varlune : écrit de chacun une copie que Varlune ouvre "
           "sans perte. Le fichier d'origine n'est jamais modifié.\n\n"
           "Code de retour : 0, rien à faire ou fait ; 1, fait, avec des avertissements ; 2, "
           "impossible."));
    m_parser.addOptions({m_console, m_encoding, m_without, m_identifiers, m_deepLevels, m_output,
                         m_report, m_overwrite, m_json, m_help, m_version});
    m_parser.addPositionalArgument(tr("FICHIER"), tr("Fichiers à préparer."), tr("FICHIER…"));
}

int Console::run(const QStringList &arguments)
{
    const bool isParsed = m_parser.parse(arguments);
    if (isParsed && m_parser.isSet(m_help)) {
        print(stdout, m_parser.helpText());
        return Done;
    }
    if (isParsed && m_parser.isSet(m_version)) {
        print(stdout,
              QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion());
        return Done;
    }
    QString problem = isParsed ? readOptions() : m_parser.errorText();
    if (problem.isEmpty())
        problem = refusalOfOutputs();
    if (!problem.isEmpty()) {
        print(stderr, problem);
        return NotPossible;
    }
    return prepareWithReports();
}

QString Console::readOptions()
{
    if (m_parser.positionalArguments().isEmpty())
        return tr("Il manque le fichier à préparer. L'option --help dit comment faire.");
    if (m_parser.isSet(m_encoding)) {
        m_options.encoding = encodingFromName(m_parser.value(m_encoding));
        if (!m_options.encoding)
            return tr("Le codage %1 est inconnu. Choisissez parmi : %2.")
                .arg(m_parser.value(m_encoding), encodingNames());
    }
    const QStringList without = m_parser.values(m_without);
    for (const QString &name : without) {
        const std::optional<Finding> repair = repairFromName(name);
        if (!repair)
            return tr("La réparation %1 est inconnue. Choisissez parmi : %2.")
                .arg(name, repairNames(FindingKind::Repair));
        m_options.repairs.set(*repair, false);
    }
    m_options.repairs.set(Finding::Identifier, m_parser.isSet(m_identifiers));
    m_options.repairs.set(Finding::DeepLevelFolded, m_parser.isSet(m_deepLevels));
    return {};
}

/// What can be said of the outputs before any work is done.
QString Console::refusalOfOutputs() const
{
    const QStringList inputs = m_parser.positionalArguments();
    if (inputs.size() > 1 && m_parser.isSet(m_output) && !QDir(m_parser.value(m_output)).exists())
        return tr("« %1 » n'est pas un dossier. Pour plusieurs fichiers, -o doit en nommer un.")
            .arg(m_parser.value(m_output));
    if (!m_parser.isSet(m_report))
        return {};
    const QString report = m_parser.value(m_report);
    for (const QString &input : inputs) {
        const QString copy = copyOf(input);
        if (isSameFile(report, input) || placeOf(report) == placeOf(copy)
            || (m_parser.isSet(m_identifiers) && placeOf(report) == placeOf(identifiersPath(copy))))
            return tr("« %1 » est un fichier à préparer, sa copie ou la table de ses identifiants. "
                      "Donnez un autre nom au rapport.")
                .arg(report);
    }
    if (QFileInfo::exists(report) && !m_parser.isSet(m_overwrite))
        return tr("« %1 » existe déjà. Ajoutez --ecraser pour le remplacer, ou donnez un autre "
                  "nom.")
            .arg(report);
    return {};
}

QString Console::copyOf(const QString &input) const
{
    if (!m_parser.isSet(m_output))
        return copyPath(input);
    const QDir folder(m_parser.value(m_output));
    return folder.exists() ? folder.filePath(QFileInfo(copyPath(input)).fileName())
                           : m_parser.value(m_output);
}

int Console::prepareWithReports()
{
    QFile standard;
    if (!standard.open(stdout, QIODevice::WriteOnly))
        return NotPossible;
    QList<ReportWriter *> reports;
    std::optional<ReportWriter> json;
    if (m_parser.isSet(m_json))
        reports += &json.emplace(&standard, ReportFormat::Json);

    const auto format = m_parser.isSet(m_json) ? ReportFormat::Json : ReportFormat::Text;
    if (m_parser.isSet(m_report)) {
        const QString problem = writeWhole(m_parser.value(m_report), [&](QIODevice *out) {
            ReportWriter report(out, format);
            prepareAll(reports + QList<ReportWriter *>{&report});
            return report.finish();
        });
        if (!problem.isEmpty()) {
            print(stderr, problem);
            raise(NotPossible);
        }
    } else {
        prepareAll(reports);
    }
    const bool isComplete = !json || json->finish();
    if (!standard.flush() || std::ferror(stdout) != 0 || !isComplete) {
        print(stderr, tr("La sortie n'a pas pu être écrite. Vérifiez la place sur le disque."));
        raise(NotPossible);
    }
    return m_status;
}

void Console::prepareAll(const QList<ReportWriter *> &reports)
{
    const QStringList inputs = m_parser.positionalArguments();
    for (const QString &input : inputs)
        prepareOne(input, reports);
}

void Console::prepareOne(const QString &input, const QList<ReportWriter *> &reports)
{
    const Preparation preparation = prepareFile(input, m_options);
    ReportEntry entry{input, {}, {}, &preparation};
    if (preparation.isDone()) {
        const QString copy = copyOf(input);
        entry.problem = save(preparation, input, copy);
        if (entry.problem.isEmpty())
            entry.copy = copy;
    }
    const bool isWritten = !entry.copy.isEmpty();
    raise(!isWritten ? NotPossible : preparation.hasWarnings() ? DoneWithWarnings : Done);
    if (!m_parser.isSet(m_json))
        print(isWritten ? stdout : stderr, summaryLines(entry).join(u'\n') + u'\n');
    for (ReportWriter *report : reports)
        report->add(entry);
}

QString Console::save(const Preparation &preparation, const QString &input, const QString &copy)
{
    const QStringList inputs = m_parser.positionalArguments();
    const QStringList paths = writtenFiles(preparation, copy);
    for (const QString &path : paths) {
        const auto isPath = [&path](const QString &other) { return isSameFile(path, other); };
        if (std::any_of(inputs.begin(), inputs.end(), isPath))
            return tr("« %1 » est un fichier à préparer, qui n'est jamais modifié. Donnez un autre "
                      "nom à la copie.")
                .arg(path);
        // A file of this very run is not one that the user knows of.
        if (QFileInfo::exists(path)
            && (!m_parser.isSet(m_overwrite) || m_written.contains(placeOf(path))))
            return tr("« %1 » existe déjà. Ajoutez --ecraser pour le remplacer, ou donnez un autre "
                      "nom par -o.")
                .arg(path);
        m_written += placeOf(path);
    }
    return saveCopy(preparation, input, copy);
}

} // namespace

int runConsole(const QStringList &arguments)
{
    return Console().run(arguments);
}
