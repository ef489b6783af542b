#include "document.h"
#include "fenapropos.h"
#include "nofiles.h"
#include "smalldisk.h"
#include "testmain.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QByteArray Whole = "0 HEAD\n1 CHAR UTF-8\n0 @I1@ INDI\n1 NAME René /LEGUÉ/\n0 TRLR\n";
const QByteArray Broken = "0 HEAD\r\n1 CHAR ANSI\r\n 0 @I1@ INDI\r\n1 NAME Ren\xE9 /LEGU\xC9/\r\n";

struct Outcome
{
    int status = -1;
    QStringList output; // its lines
    QStringList errors;
};

QStringList linesOf(const QByteArray &text)
{
    return QString::fromUtf8(text).split(u'\n', Qt::SkipEmptyParts);
}

} // namespace

/// Runs the program itself, without a display.
class TstPreparer : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void copies();
    void nothingToDo();
    void warnings();
    void severalFiles();
    void oneOfThemRefused();
    void outputs();
    void outputForSeveral();
    void neverOverwrites();
    void neverTheInput_data();
    void neverTheInput();
    void neverAnotherInput();
    void repairsSwitchedOff();
    void identifiers();
    void forcedEncoding();
    void reports();
    void reportInTheWay_data();
    void reportInTheWay();
    void refusedReports();
    void fullOutput();
    void json();
    void help();
    void mistakes_data();
    void mistakes();
    void withoutConsole();
    void pipe();
    void fullDisk();
    void brokenOff();

private:
    Outcome run(const QStringList &arguments, const QString &output = {});
    [[nodiscard]] QByteArray bytesOf(const QString &name) const
    {
        return readBytes(m_folder->filePath(name));
    }
    void write(const QString &name, const QByteArray &bytes)
    {
        writeBytes(m_folder->filePath(name), bytes);
    }
    [[nodiscard]] QStringList files() const
    {
        return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    std::optional<QTemporaryDir> m_folder; // where the program runs
};

void TstPreparer::init()
{
    m_folder.emplace();
    write(u"bon.ged"_s, Whole);
    write(u"arbre.ged"_s, Broken);
}

void TstPreparer::cleanup()
{
    QCOMPARE(bytesOf(u"bon.ged"_s), Whole);
    QCOMPARE(bytesOf(u"arbre.ged"_s), Broken);
}

/// What it prints goes into the file \p output if that is named.
Outcome TstPreparer::run(const QStringList &arguments, const QString &output)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(u"DISPLAY"_s);
    // A console that needs a display fails.
    environment.insert(u"QT_QPA_PLATFORM"_s,
                       arguments.contains("--console"_L1) ? u"none"_s : u"offscreen"_s);
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_folder->path());
    if (!output.isEmpty())
        process.setStandardOutputFile(output, QIODevice::Append);
    process.start(QStringLiteral(PREPARER), arguments, QIODevice::ReadWrite | QIODevice::Text);
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), linesOf(process.readAllStandardOutput()),
            linesOf(process.readAllStandardError())};
}

void TstPreparer::copies()
{
    const Outcome outcome = run({u"--console"_s, u"arbre.ged"_s});
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.errors, QStringList());
    QCOMPARE(outcome.output,
             QStringList({
                 u"Fichier : arbre.ged"_s,
                 u"Codage : Windows-1252 (HEAD.CHAR dit « ANSI »)"_s,
                 u"Réparation : Texte mis en UTF-8 : 2"_s,
                 u"Réparation : Lignes vides, retraits, tabulations, zéros de tête du niveau : 1"_s,
                 u"Réparation : Ligne finale 0 TRLR absente ou mal placée : 1"_s,
                 u"Varlune ouvrira ce fichier : 2 enregistrements"_s,
                 u"Copie : ./arbre.prepare.ged"_s,
             }));
    QCOMPARE(bytesOf(u"arbre.prepare.ged"_s), Whole);
    QCOMPARE(files(), QStringList({u"arbre.ged"_s, u"arbre.prepare.ged"_s, u"bon.ged"_s}));
}

void TstPreparer::nothingToDo()
{
    QCOMPARE(run({u"--console"_s, u"bon.ged"_s}).status, 0);
    QCOMPARE(bytesOf(u"bon.prepare.ged"_s), Whole);
}

void TstPreparer::warnings()
{
    write(u"avis.ged"_s, "0 HEAD\n1 CHAR UTF-8\n0 @P1@ INDI\n1 SEX M\n0 TRLR\n");
    const Outcome outcome = run({u"--console"_s, u"avis.ged"_s});
    QCOMPARE(outcome.status, 1);
    QVERIFY(outcome.output.contains(
        u"À savoir : Identifiants d'une autre forme que @I1@, @F1@, @S1@, @O1@, @R1@ : 1"_s));
}

void TstPreparer::severalFiles()
{
    QCOMPARE(run({u"--console"_s, u"bon.ged"_s, u"arbre.ged"_s}).status, 0);
    QCOMPARE(bytesOf(u"bon.prepare.ged"_s), Whole);
    QCOMPARE(bytesOf(u"arbre.prepare.ged"_s), Whole);
}

void TstPreparer::oneOfThemRefused()
{
    write(u"vide.ged"_s, {});
    const Outcome outcome = run({u"--console"_s, u"vide.ged"_s, u"arbre.ged"_s});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.errors,
             QStringList({u"Fichier : vide.ged"_s,
                          u"Ce fichier est vide. Refaites l'export depuis votre logiciel de "
                          "généalogie."_s}));
    QCOMPARE(bytesOf(u"arbre.prepare.ged"_s), Whole);
    QVERIFY(!files().contains(u"vide.prepare.ged"_s));
}

void TstPreparer::outputs()
{
    QCOMPARE(run({u"--console"_s, u"-o"_s, u"été.ged"_s, u"arbre.ged"_s}).status, 0);
    QCOMPARE(bytesOf(u"été.ged"_s), Whole);
    QVERIFY(QDir(m_folder->path()).mkdir(u"copies"_s));
    QCOMPARE(run({u"--console"_s, u"--sortie"_s, u"copies"_s, u"arbre.ged"_s}).status, 0);
    QCOMPARE(bytesOf(u"copies/arbre.prepare.ged"_s), Whole);
}

void TstPreparer::outputForSeveral()
{
    const Outcome refused =
        run({u"--console"_s, u"-o"_s, u"un.ged"_s, u"arbre.ged"_s, u"bon.ged"_s});
    QCOMPARE(refused.status, 2);
    QCOMPARE(refused.errors,
             QStringList{u"« un.ged » n'est pas un dossier. Pour plusieurs fichiers, -o doit en "
                         "nommer un."_s});
    QCOMPARE(files(), QStringList({u"arbre.ged"_s, u"bon.ged"_s}));

    // Two copies of one name: the second does not take the place of the first.
    QVERIFY(QDir(m_folder->path()).mkdir(u"copies"_s));
    QVERIFY(QDir(m_folder->path()).mkdir(u"autres"_s));
    write(u"autres/arbre.ged"_s, "0 HEAD\n1 CHAR UTF-8\n0 TRLR\n");
    QCOMPARE(run({u"--console"_s, u"--ecraser"_s, u"-o"_s, u"copies"_s, u"arbre.ged"_s,
                  u"autres/arbre.ged"_s})
                 .status,
             2);
    QCOMPARE(bytesOf(u"copies/arbre.prepare.ged"_s), Whole);
}

void TstPreparer::neverOverwrites()
{
    write(u"arbre.prepare.ged"_s, "ancien");
    const Outcome outcome = run({u"--console"_s, u"arbre.ged"_s});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.errors.constLast(),
             u"« ./arbre.prepare.ged » existe déjà. Ajoutez --ecraser pour le remplacer, ou donnez "
             "un autre nom par -o."_s);
    QCOMPARE(bytesOf(u"arbre.prepare.ged"_s), "ancien");

    QCOMPARE(run({u"--console"_s, u"--ecraser"_s, u"arbre.ged"_s}).status, 0);
    QCOMPARE(bytesOf(u"arbre.prepare.ged"_s), Whole);
}

void TstPreparer::neverTheInput_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("itself") << u"arbre.ged"_s;
    QTest::newRow("beside itself") << u"./arbre.ged"_s;
    QTest::newRow("link") << u"lien.ged"_s;
}

void TstPreparer::neverTheInput()
{
    QFETCH(QString, name);
    if (name == "lien.ged"_L1) {
        SKIP_ON_WINDOWS(NoLinks);
        QVERIFY(QFile::link(u"arbre.ged"_s, m_folder->filePath(name)));
    }
    const Outcome outcome = run({u"--console"_s, u"--ecraser"_s, u"-o"_s, name, u"arbre.ged"_s});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.errors.constLast(),
             u"« %1 » est un fichier à préparer, qui n'est jamais modifié. Donnez un autre nom à "
             "la copie."_s.arg(name));
    QCOMPARE(bytesOf(u"arbre.ged"_s), Broken);
    QCOMPARE(run({u"--console"_s, u"--ecraser"_s, u"--rapport"_s, name, u"arbre.ged"_s}).status, 2);
    QCOMPARE(bytesOf(u"arbre.ged"_s), Broken);
}

/// The copy or the table of one file would take the place of another one.
void TstPreparer::neverAnotherInput()
{
    write(u"k.ged"_s, "0 HEAD\n1 CHAR UTF-8\n0 @3I@ INDI\n1 SEX M\n0 TRLR\n");
    for (const QString &name : {u"k.prepare.ged"_s, u"k.prepare.identifiants.csv"_s}) {
        write(name, Broken);
        const Outcome outcome =
            run({u"--console"_s, u"--ecraser"_s, u"--identifiants"_s, u"k.ged"_s, name});
        QCOMPARE(outcome.status, 2);
        QCOMPARE(outcome.errors.constLast(),
                 u"« ./%1 » est un fichier à préparer, qui n'est jamais modifié. Donnez un autre "
                 "nom à la copie."_s.arg(name));
        QCOMPARE(bytesOf(name), Broken);
        QVERIFY(QFile::remove(m_folder->filePath(name)));
    }
}

void TstPreparer::repairsSwitchedOff()
{
    const Outcome outcome = run(
        {u"--console"_s, u"--sans"_s, u"mise-en-forme"_s, u"--sans"_s, u"fin"_s, u"arbre.ged"_s});
    QCOMPARE(outcome.status, 1);
    QCOMPARE(bytesOf(u"arbre.prepare.ged"_s),
             "0 HEAD\n1 CHAR UTF-8\n 0 @I1@ INDI\n1 NAME René /LEGUÉ/\n");
    QVERIFY(outcome.output.contains(
        u"Varlune n'ouvrira pas ce fichier : la ligne 3 l'arrête :  0 @I1@ INDI"_s));
}

void TstPreparer::identifiers()
{
    write(u"avis.ged"_s, "0 HEAD\n1 CHAR UTF-8\n0 @3I@ INDI\n1 ALIA @3I@\n0 TRLR\n");
    QCOMPARE(run({u"--console"_s, u"--identifiants"_s, u"avis.ged"_s}).status, 0);
    QCOMPARE(bytesOf(u"avis.prepare.ged"_s),
             "0 HEAD\n1 CHAR UTF-8\n0 @I3@ INDI\n1 ALIA @I3@\n0 TRLR\n");
    QCOMPARE(bytesOf(u"avis.prepare.identifiants.csv"_s), "ancien;nouveau\n@3I@;@I3@\n");
}

void TstPreparer::forcedEncoding()
{
    const Outcome outcome = run({u"--console"_s, u"--codage"_s, u"macroman"_s, u"arbre.ged"_s});
    QCOMPARE(outcome.output.value(1), u"Codage : MacRoman (imposé)"_s);
    QVERIFY(bytesOf(u"arbre.prepare.ged"_s).contains("1 NAME RenÈ /LEGU…/"));
}

void TstPreparer::reports()
{
    QCOMPARE(run({u"--console"_s, u"--rapport"_s, u"r.txt"_s, u"bon.ged"_s, u"arbre.ged"_s}).status,
             0);
    const QStringList lines = linesOf(bytesOf(u"r.txt"_s));
    QCOMPARE(lines.filter(u"Fichier : "_s),
             QStringList({u"Fichier : bon.ged"_s, u"Fichier : arbre.ged"_s}));
    QVERIFY(lines.contains(u"l.3 mise-en-forme : «  0 @I1@ INDI » devient « 0 @I1@ INDI ». Varlune "
                           "veut le niveau au début de la ligne, puis un blanc et la balise."_s));

    const Outcome again =
        run({u"--console"_s, u"--rapport"_s, u"r.txt"_s, u"-o"_s, u"x.ged"_s, u"arbre.ged"_s});
    QCOMPARE(again.status, 2);
    QVERIFY(!files().contains(u"x.ged"_s));
}

void TstPreparer::reportInTheWay_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("copy") << u"bon.prepare.ged"_s;
    QTest::newRow("table") << u"bon.prepare.identifiants.csv"_s;
    QTest::newRow("copy, by a link") << u"lien/bon.prepare.ged"_s;
    QTest::newRow("table, by a link") << u"lien/bon.prepare.identifiants.csv"_s;
}

/// Nor does the report take the place of what is written beside it, by whatever name.
void TstPreparer::reportInTheWay()
{
    QFETCH(QString, name);
    if (name.startsWith("lien/"_L1)) {
        SKIP_ON_WINDOWS(NoLinks);
        QVERIFY(QFile::link(m_folder->path(), m_folder->filePath(u"lien"_s)));
    }
    const Outcome outcome =
        run({u"--console"_s, u"--identifiants"_s, u"--rapport"_s, name, u"bon.ged"_s});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.errors,
             QStringList{u"« %1 » est un fichier à préparer, sa copie ou la table de ses "
                         "identifiants. Donnez un autre nom au rapport."_s.arg(name)});
    QCOMPARE(files(), QStringList({u"arbre.ged"_s, u"bon.ged"_s}));
}

/// A file without records has found nothing that could be told.
void TstPreparer::refusedReports()
{
    write(u"texte.ged"_s, "bonjour\n");
    write(u"fin.ged"_s, "0 TRLR\n");
    const Outcome json = run({u"--console"_s, u"--json"_s, u"texte.ged"_s, u"fin.ged"_s});
    QCOMPARE(json.status, 2);
    const QByteArray text = json.output.join(u'\n').toUtf8();
    const QJsonArray files = QJsonDocument::fromJson(text).object().value("fichiers"_L1).toArray();
    QCOMPARE(files.size(), 2);
    for (const QJsonValue &file : files) {
        QVERIFY(file["refus"_L1].toString().startsWith(u"Ce fichier n'est pas un texte GEDCOM"));
        QVERIFY(file["occurrences"_L1].toArray().isEmpty());
    }
    QCOMPARE(run({u"--console"_s, u"--codage"_s, u"UTF-16LE"_s, u"--json"_s, u"bon.ged"_s}).status,
             2);
    QCOMPARE(run({u"--console"_s, u"--rapport"_s, u"r.txt"_s, u"fin.ged"_s}).status, 2);
    QCOMPARE(linesOf(bytesOf(u"r.txt"_s)).value(0), u"Fichier : fin.ged"_s);
}

/// What scripts read must be whole.
void TstPreparer::fullOutput()
{
    SKIP_ON_WINDOWS(NoSuchFiles);
    for (const QString &format : {u"--json"_s, u"--ecraser"_s}) {
        const Outcome outcome =
            run({u"--console"_s, u"--ecraser"_s, format, u"bon.ged"_s}, u"/dev/full"_s);
        QCOMPARE(outcome.status, 2);
        QCOMPARE(outcome.errors, QStringList{u"La sortie n'a pas pu être écrite. Vérifiez la place "
                                             "sur le disque."_s});
    }
}

void TstPreparer::json()
{
    write(u"vide.ged"_s, {});
    const Outcome outcome = run(
        {u"--console"_s, u"--json"_s, u"--rapport"_s, u"r.json"_s, u"arbre.ged"_s, u"vide.ged"_s});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.errors, QStringList());
    const QByteArray text = outcome.output.join(u'\n').toUtf8() + '\n';
    QCOMPARE(bytesOf(u"r.json"_s), text);
    const QJsonArray files = QJsonDocument::fromJson(text).object().value("fichiers"_L1).toArray();
    QCOMPARE(files.size(), 2);
    const QJsonObject tree = files.at(0).toObject();
    QCOMPARE(tree.value("copie"_L1).toString(), u"./arbre.prepare.ged"_s);
    QCOMPARE(tree.value("enregistrements"_L1).toInt(), 2);
    QCOMPARE(tree.value("bilan"_L1).toObject().toVariantMap(),
             QVariantMap({{u"codage"_s, 2}, {u"fin"_s, 1}, {u"mise-en-forme"_s, 1}}));
    QCOMPARE(tree.value("occurrences"_L1).toArray().size(), 4);
    QVERIFY(files.at(1).toObject().value("refus"_L1).toString().startsWith(u"Ce fichier est vide"));
}

void TstPreparer::help()
{
    for (const QString &option : {u"--help"_s, u"-h"_s, u"--aide"_s}) {
        const Outcome outcome = run({option});
        QCOMPARE(outcome.status, 0);
        QVERIFY(outcome.output.constFirst().startsWith(u"Utilisation : "));
        QVERIFY(outcome.output.contains(u"  --console              Travaille sans fenêtre."_s));
        QVERIFY(outcome.output.filter(u"codage, mise-en-forme, sans-niveau"_s).size() == 1);
    }
    const Outcome version = run({u"--version"_s});
    QCOMPARE(version.status, 0);
    QCOMPARE(version.output, QStringList{"varlune-preparer "_L1 + FenAPropos::getVersion()});
}

void TstPreparer::mistakes_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("begin");

    QTest::newRow("no file") << QStringList() << u"Il manque le fichier à préparer."_s;
    QTest::newRow("encoding") << QStringList{u"--codage"_s, u"EBCDIC"_s, u"bon.ged"_s}
                              << u"Le codage EBCDIC est inconnu. Choisissez parmi : UTF-8,"_s;
    QTest::newRow("repair") << QStringList{u"--sans"_s, u"tout"_s, u"bon.ged"_s}
                            << u"La réparation tout est inconnue. Choisissez parmi : codage,"_s;
    QTest::newRow("option") << QStringList{u"--tout"_s, u"bon.ged"_s} << u"Option inconnue"_s;
    QTest::newRow("absent file") << QStringList{u"absent.ged"_s} << u"Fichier : absent.ged"_s;
    QTest::newRow("folder") << QStringList{u"."_s} << u"Fichier : ."_s;
    QTest::newRow("report without a folder")
        << QStringList{u"--rapport"_s, u"absent/r.txt"_s, u"bon.ged"_s}
        << u"« absent/r.txt » n'a pas pu être écrit"_s;
}

void TstPreparer::mistakes()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, begin);

    const Outcome outcome = run(QStringList{u"--console"_s} + arguments);
    QCOMPARE(outcome.status, 2);
    QVERIFY2(outcome.errors.value(0).startsWith(begin), qPrintable(outcome.errors.join(u'\n')));
    QCOMPARE(files(), QStringList({u"arbre.ged"_s, u"bon.ged"_s}));
}

void TstPreparer::withoutConsole()
{
    const QList<QStringList> lines{{u"arbre.ged"_s, u"bon.ged"_s}, {u"--json"_s, u"arbre.ged"_s}};
    for (const QStringList &arguments : lines) {
        const Outcome outcome = run(arguments);
        QCOMPARE(outcome.status, 2);
        QCOMPARE(outcome.errors,
                 QStringList{u"La fenêtre prend un fichier et pas d'option ; ajoutez --console, ou "
                             "voyez --help."_s});
    }
}

void TstPreparer::pipe()
{
    SKIP_ON_WINDOWS(NoSuchFiles);
    makePipe(m_folder->filePath(u"tube.ged"_s));
    const Outcome outcome = run({u"--console"_s, u"tube.ged"_s}); // which does not wait for anybody
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.errors.constLast(),
             u"« tube.ged » n'est pas un fichier ordinaire. Choisissez un fichier .ged."_s);
}

void TstPreparer::fullDisk()
{
    QVERIFY(QDir(m_folder->path()).mkdir(u"petit"_s));
    const QString folder = m_folder->filePath(u"petit"_s);
    const SmallDisk disk(folder, 64 * 1024);
    if (!disk.isMounted())
        QSKIP(qPrintable("the small disk cannot be mounted: "_L1 + disk.reason()));
    write(u"petit/copie.ged"_s, "ancien");
    write(u"grand.ged"_s, Whole.chopped(7) + QByteArray("1 NOTE x\n").repeated(20000));
    const Outcome outcome =
        run({u"--console"_s, u"--ecraser"_s, u"-o"_s, u"petit/copie.ged"_s, u"grand.ged"_s});
    const QStringList left = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    QCOMPARE(outcome.status, 2);
    QVERIFY(outcome.errors.constLast().startsWith(
        u"Il n'y a pas assez de place pour « petit/copie.ged » : il faut 180"));
    QCOMPARE(left, QStringList{u"copie.ged"_s});
    QCOMPARE(bytesOf(u"petit/copie.ged"_s), "ancien");
}

/// The copy has room, but what is written beside it has not: nothing of either is left.
void TstPreparer::brokenOff()
{
    QVERIFY(QDir(m_folder->path()).mkdir(u"petit"_s));
    const QString folder = m_folder->filePath(u"petit"_s);
    const SmallDisk disk(folder, 64 * 1024);
    if (!disk.isMounted())
        QSKIP(qPrintable("the small disk cannot be mounted: "_L1 + disk.reason()));
    // The table has the long identifiers, the copy the short ones.
    QByteArray file = "0 HEAD\n1 CHAR UTF-8\n";
    for (int i = 0; i < 1000; ++i)
        file += "0 @" + QByteArray::number(i).rightJustified(100, 'x') + "@ INDI\n1 SEX M\n";
    write(u"long.ged"_s, file + "0 TRLR\n");

    const Outcome table =
        run({u"--console"_s, u"--identifiants"_s, u"-o"_s, u"petit"_s, u"long.ged"_s});
    const QStringList leftOfTable = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    const Outcome report = run({u"--console"_s, u"--rapport"_s, u"petit/r.txt"_s, u"long.ged"_s});
    const QStringList leftOfReport = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    QCOMPARE(table.status, 2);
    QVERIFY(table.errors.constLast().startsWith(
        u"« petit/long.prepare.identifiants.csv » n'a pas pu être écrit ("_s));
    QCOMPARE(leftOfTable, QStringList());
    QCOMPARE(report.status, 2);
    QVERIFY(report.errors.constLast().startsWith(u"« petit/r.txt » n'a pas pu être écrit ("_s));
    QCOMPARE(leftOfReport, QStringList());
}

VARLUNE_TEST_MAIN(TstPreparer)
#include "tst_preparer.moc"
