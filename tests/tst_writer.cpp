#include "boxes.h"
#include "currentfolder.h"
#include "document.h"
#include "filedialogs.h"
#include "markingtranslator.h"
#include "nofiles.h"
#include "smalldisk.h"
#include "testmain.h"
#include "told.h"
#include "unprivileged.h"
#include "window.h"

#include <QDateTime>
#include <QDirIterator>
#include <QLineEdit>
#include <QLocale>
#include <QRegularExpression>

#include <filesystem>
#include <optional>
#include <system_error>

using namespace Qt::StringLiterals;

namespace {

/// The pieces of the path under which a save has archived its target, taken from its journal line:
/// base/ARCH/date/time.name
struct Archived
{
    QString base;
    QString date;
    QString time;
    QString name;

    [[nodiscard]] QString folder() const
    {
        return base + "/ARCH/"_L1 + date;
    }
    [[nodiscard]] QString copy() const
    {
        return folder() + u'/' + time + u'.' + name;
    }
    [[nodiscard]] QString journal() const
    {
        return folder() + "/journal."_L1 + time + u'.' + name;
    }
};

/// Reads these pieces from the last such line of \p journal, for a save of \p path that began at \p
/// begin or later. Fails the test if there is no such line or its date and time do not fit.
Archived archivedIn(const QStringList &journal, const QString &path, const QDateTime &begin)
{
    const QDateTime end = QDateTime::currentDateTime();
    const QString prefix = "INFO : Fichier "_L1 + path + u" copié sous "_s;
    const QStringList lines = journal.filter(prefix);
    static const QRegularExpression rx(
        uR"(^(.*)/ARCH/(\d{4}\.\d\d\.\d\d)/(\d\d\.\d\d\.\d\d)\.(.*)$)"_s);
    const QRegularExpressionMatch match =
        rx.match(lines.value(lines.size() - 1).mid(prefix.size()));
    const Archived archived{match.captured(1), match.captured(2), match.captured(3),
                            match.captured(4)};
    QStringList dates;
    QStringList times;
    // The second may have changed meanwhile, or the day.
    for (QDateTime moment = begin; moment < end.addSecs(1); moment = moment.addSecs(1)) {
        dates += moment.toString(u"yyyy.MM.dd"_s);
        times += moment.toString(u"HH.mm.ss"_s);
    }
    if (!match.hasMatch() || !dates.contains(archived.date) || !times.contains(archived.time))
        QTest::qFail(qPrintable("no archive name of now in: "_L1 + journal.join(u'\n')), __FILE__,
                     __LINE__);
    return archived;
}

struct Saved
{
    bool result = false;
    QStringList journal; // what this save has added
    Archived archived;
};

Saved save(Document *doc, const QString &path)
{
    doc->newJournal();
    const QDateTime begin = QDateTime::currentDateTime();
    const bool result = doc->gedcom.writeGedFile(path);
    const QStringList journal = doc->newJournal();
    return {result, journal, archivedIn(journal, path, begin)};
}

/// The journal of a save without cuts, up to the opening of the target.
QStringList journalOfCopy(const QString &path, const Archived &archived)
{
    return {u"INFO : 0 balises > 255 caractères déconcaténées."_s,
            "INFO : Fichier "_L1 + path + u" copié sous "_s + archived.copy()};
}

QStringList journalOfSave(const QString &path, const Archived &archived)
{
    return journalOfCopy(path, archived)
         + QStringList{"INFO : Fichier "_L1 + path + u" sauvegardé."_s};
}

/// The content of a journal file written from this journal.
QByteArray journalFile(QString journal)
{
    return journal.replace(u"\r\n"_s, u"\n"_s).append(u'\n').toUtf8();
}

QByteArray gedBytes(const QStringList &lines)
{
    return (lines + QStringList{u"0 TRLR\n"_s}).join(u'\n').toUtf8();
}

/// Everything in the folder, sorted; directories end in a slash. The date and time of \p archived
/// are replaced by DATE and TIME.
QStringList listing(const QString &folder, const Archived &archived)
{
    QStringList entries;
    QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QString entry = it.next().mid(folder.size() + 1);
        if (it.fileInfo().isDir())
            entry += u'/';
        entry.replace("ARCH/"_L1 + archived.date, u"ARCH/DATE"_s);
        entry.replace(archived.time, u"TIME"_s);
        entries += entry;
    }
    entries.sort();
    return entries;
}

constexpr QFile::Permissions ForReading =
    QFile::ReadOwner | QFile::ReadUser | QFile::ReadGroup | QFile::ReadOther;
constexpr QFile::Permissions ForWriting =
    ForReading | QFile::WriteOwner | QFile::WriteUser | QFile::WriteGroup | QFile::WriteOther;
constexpr QFile::Permissions ForEntering =
    QFile::ExeOwner | QFile::ExeUser | QFile::ExeGroup | QFile::ExeOther;

/// Gives everyone access to the folder and everything below it.
void openToAll(const QString &folder)
{
    QFile::setPermissions(folder, ForWriting | ForEntering);
    QDirIterator it(folder, QDir::AllEntries | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        QFile::setPermissions(path, it.fileInfo().isDir() ? ForWriting | ForEntering : ForWriting);
    }
}

void closeForWriting(const QString &path)
{
    QFile::setPermissions(path, QFileInfo(path).isDir() ? ForReading | ForEntering : ForReading);
}

QString today()
{
    return QDate::currentDate().toString(u"yyyy.MM.dd"_s);
}

/// Sets the default locale while this object lives.
class DefaultLocale
{
public:
    explicit DefaultLocale(const QLocale &locale)
    {
        QLocale::setDefault(locale);
    }
    ~DefaultLocale()
    {
        QLocale::setDefault(m_former);
    }
    Q_DISABLE_COPY_MOVE(DefaultLocale)

private:
    QLocale m_former;
};

const QStringList &family()
{
    static const QStringList lines{u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s,
                                   u"1 NAME Jean /DUPONT/"_s};
    return lines;
}

} // namespace

/// Saving: the document, its archive copy and the journal file, and what can go wrong.
class TstWriter : public QObject
{
    Q_OBJECT

private slots:
    void threeFiles_data();
    void threeFiles();
    void toldInOrder();
    void cutLinesAreWritten();
    void secondSaveArchivesTheFirst();
    void twoSavesInOneSecond();
    void newFile();
    void newFileBehindALink();
    void otherFileIsArchived();
    void archiveFoldersAreKept();
    void targetIsOverwrittenInPlace();
    void lineEnds();
    void backslashes();
    void recordsInFilePlace();
    void deletedAndHiddenEntries();
    void noRecords();
    void targetFailures_data();
    void targetFailures();
    void journalFailures_data();
    void journalFailures();
    void pipesAreLeftAlone();
    void journalIsAPipe();
    void saveAfterFailure();
    void pathWithoutSlash_data();
    void pathWithoutSlash();
    void emptyPath();
    void beforeALoad_data();
    void beforeALoad();
    void encodings_data();
    void encodings();
    void halfACharacter();
    void fullDisk();
    void numbersWhateverTheLocale();
    void textsAreTranslated();
    void roundTrip_data();
    void roundTrip();
    void saveAction();
    void saveAsThenSave();
    void cancelledSaveAs();
};

void TstWriter::threeFiles_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("archivedName");

    const auto add = [](const char *row, const QString &name, const QString &archivedName) {
        QTest::newRow(row) << u"gen"_s << name << archivedName;
    };
    add("plain name", u"arbre.ged"_s, u"arbre.ged"_s);
    add("another extension stays", u"arbre.TXT"_s, u"arbre.TXT"_s);
    add("no extension", u"arbre"_s, u"arbre"_s);
    add("several points", u"arbre.v1.2.ged"_s, u"arbre.v1.2.ged"_s);
    add("colons become points", u"a:b::c.ged"_s, u"a.b..c.ged"_s);
    add("blanks and accents", u"Ma généalogie.ged"_s, u"Ma généalogie.ged"_s);
    add("what looks like place markers", u"%1 %2 %3.ged"_s, u"%1 %2 %3.ged"_s);
    QTest::newRow("colons of the folder stay") << u"a:b"_s << u"arbre.ged"_s << u"arbre.ged"_s;
    QTest::newRow("folder with a point") << u"gen.1"_s << u"arbre"_s << u"arbre"_s;
    QTest::newRow("folder that looks like place markers")
        << u"%3 %1"_s << u"arbre.ged"_s << u"arbre.ged"_s;
}

void TstWriter::threeFiles()
{
    QFETCH(QString, folder);
    QFETCH(QString, name);
    QFETCH(QString, archivedName);

    Document doc;
    QVERIFY(doc.load(family()));
    const QString base = doc.folder() + u'/' + folder;
    QVERIFY(QDir().mkdir(base));
    const QString path = base + u'/' + name;
    // The former file is copied unchanged; it is longer than the one that replaces it.
    const QByteArray former = QByteArray("\xFF\xFE\0 ancien\r\n\x80", 14).repeated(50);
    writeBytes(path, former);

    const AnsweredBoxes boxes;
    const Saved saved = save(&doc, path);
    QVERIFY(saved.result);
    QCOMPARE(boxes.texts(), QStringList{});
    QCOMPARE(saved.archived.base, base);
    QCOMPARE(saved.archived.name, archivedName);
    QCOMPARE(saved.journal, journalOfSave(path, saved.archived));
    QStringList entries{u"ARCH/"_s, u"ARCH/DATE/"_s, "ARCH/DATE/TIME."_L1 + archivedName,
                        "ARCH/DATE/journal.TIME."_L1 + archivedName, name};
    entries.sort();
    QCOMPARE(listing(base, saved.archived), entries);
    QCOMPARE(readText(path), gedBytes(family()));
    QCOMPARE(readBytes(saved.archived.copy()), former);
    QCOMPARE(readText(saved.archived.journal()), journalFile(doc.gedcom.getJournal()));
    QCOMPARE(doc.status(), "Fichier journal "_L1 + saved.archived.journal() + u" sauvegardé."_s);
    QVERIFY(doc.progress.isHidden());
    QCOMPARE(doc.gedcom.getPathGedFile(), doc.path());
    QCOMPARE(doc.lines(), family());
}

void TstWriter::toldInOrder()
{
    QStringList lines;
    for (int person = 1; person <= 250; ++person)
        lines += {u"0 @I%1@ INDI"_s.arg(person), u"1 SEX M"_s};
    Document doc;
    QVERIFY(doc.load(lines));
    for (int i = 0; i < 120; ++i)
        doc.gedcom.addToJournal(u"une ligne"_s, u"INFO"_s);

    // What has reached the disk at a step of the bar, since every line is flushed.
    QByteArray document;
    QByteArray journal;
    connect(&doc.progress, &QProgressBar::valueChanged, this, [&](int value) {
        if (value == 100 && doc.status().startsWith("Sauvegarde du fichier "_L1))
            document = readText(doc.path());
        if (value == 100 && doc.status().startsWith("Sauvegarde du journal "_L1))
            journal = readText(doc.status().mid(22));
    });

    Told told(&doc);
    const QDateTime begin = QDateTime::currentDateTime();
    QTest::ignoreMessage(QtDebugMsg, "ON writeGedFile");
    QTest::ignoreMessage(QtDebugMsg, "OFF writeGedFile");
    QVERIFY(doc.gedcom.writeGedFile(doc.path()));
    QCOMPARE(document, (lines.first(202).join(u'\n') + u'\n').toUtf8());
    QCOMPARE(journal,
             journalFile(doc.gedcom.getJournal()).split('\n').first(101).join('\n') + '\n');
    const QStringList all = told.take();
    const Archived archived = archivedIn(all, doc.path(), begin);
    QStringList expected{u"status: Vérification de la taille des balises en cours..."_s};
    const auto addBar = [&expected](int value, qsizetype last) {
        expected += {u"bar: %1 of %2"_s.arg(value).arg(last), u"events"_s};
    };
    for (int value : {100, 200, 300, 400})
        addBar(value, 499);
    expected += journalOfCopy(doc.path(), archived).first();
    expected += u"status: Vérification de la taille des balises terminée. 0 balises "
                "déconcaténées. "_s;
    expected += "status: Sauvegarde du fichier "_L1 + doc.path();
    expected += journalOfCopy(doc.path(), archived).last();
    expected += u"bar shown"_s;
    // One step for each record, the first included; then one for each line of the journal.
    for (int value : {0, 100, 200})
        addBar(value, 250);
    expected += journalOfSave(doc.path(), archived).last();
    expected += "status: Fichier "_L1 + doc.path() + u" sauvegardé."_s;
    expected += "status: Sauvegarde du journal "_L1 + archived.journal();
    // The load has two lines, the save three; after the last line end there is an empty element.
    for (int value : {0, 100})
        addBar(value, 2 + 120 + 3 + 1);
    expected += "status: Fichier journal "_L1 + archived.journal() + u" sauvegardé."_s;
    expected += u"bar hidden"_s;
    QCOMPARE(all, expected);
    QCOMPARE(doc.progress.value(), 100); // hidden, not reset
}

void TstWriter::cutLinesAreWritten()
{
    const QString a = QString(248, u'a');
    const QString b = QString(248, u'b');
    const QStringList lines{u"0 @I1@ INDI"_s, "1 NOTE "_L1 + a + b + u'c', u"2 CONT d"_s};
    const QStringList cut{u"0 @I1@ INDI"_s, "1 NOTE "_L1 + a, "2 CONC "_L1 + b, u"2 CONC c"_s,
                          u"2 CONT d"_s};
    Document doc;
    QVERIFY(doc.load(lines));
    const Saved first = save(&doc, doc.path());
    QVERIFY(first.result);
    QCOMPARE(first.journal,
             (QStringList{u"INFO : 1 balises > 255 caractères détectées, déconcaténation..."_s,
                          "INFO : Ajout de la balise INDI.NOTE.CONC 2 CONC "_L1 + b
                              + u"c complétant la balise INDI.NOTE 1 NOTE "_s + a + " (l.2)"_L1,
                          u"INFO : 1 balises > 255 caractères déconcaténées."_s}
              + journalOfSave(doc.path(), first.archived).mid(1)));
    QCOMPARE(readText(doc.path()), gedBytes(cut));
    QCOMPARE(readText(first.archived.copy()), gedBytes(lines));
    QCOMPARE(readText(first.archived.journal()), journalFile(doc.gedcom.getJournal()));
    QCOMPARE(doc.entry(u"2 CONC c"_s)->getNumLineGedFile(), u"-1"_s);

    // The lines are cut in the document: a second save finds nothing more to do.
    const Saved second = save(&doc, doc.path());
    QCOMPARE(second.journal, journalOfSave(doc.path(), second.archived));
    QCOMPARE(readText(doc.path()), gedBytes(cut));
    // The next run folds them, and the next save cuts them again.
    QCOMPARE(doc.gedcom.unConc(), 2);
    QCOMPARE(doc.lines(), lines);
    QVERIFY(save(&doc, doc.path()).result);
    QCOMPARE(readText(doc.path()), gedBytes(cut));
}

void TstWriter::secondSaveArchivesTheFirst()
{
    Document doc;
    QVERIFY(doc.load(family()));
    const Saved first = save(&doc, doc.path());
    const QByteArray firstJournal = readText(first.archived.journal());
    doc.entry(u"1 NAME Jean /DUPONT/"_s)->setText(2, u"Jean /DURAND/"_s);
    // Names of the same second would be taken already.
    QTRY_VERIFY(QTime::currentTime().toString(u"HH.mm.ss"_s) != first.archived.time);
    const Saved second = save(&doc, doc.path());

    QVERIFY(first.result && second.result);
    QCOMPARE(readText(first.archived.copy()), gedBytes(family()));
    QCOMPARE(readText(second.archived.copy()), gedBytes(family()));
    QCOMPARE(readText(doc.path()),
             gedBytes(family().mid(0, 3) + QStringList{u"1 NAME Jean /DURAND/"_s}));
    QCOMPARE(readText(first.archived.journal()), firstJournal);
    // The second journal file holds the whole run again.
    QCOMPARE(readText(second.archived.journal()), journalFile(doc.gedcom.getJournal()));
    QVERIFY(readText(second.archived.journal()).startsWith(firstJournal.chopped(1)));
    QStringList names{first.archived.time + ".arbre.ged"_L1, second.archived.time + ".arbre.ged"_L1,
                      "journal."_L1 + first.archived.time + ".arbre.ged"_L1,
                      "journal."_L1 + second.archived.time + ".arbre.ged"_L1};
    names.sort();
    QCOMPARE(doc.archive(), names);
}

void TstWriter::twoSavesInOneSecond()
{
    Document doc;
    QVERIFY(doc.load(family()));
    TwItem *name = doc.entry(u"1 NAME Jean /DUPONT/"_s);
    // The second may change between the two saves: then they are repeated in a new folder.
    for (int attempt = 0; attempt < 50; ++attempt) {
        const QString path = doc.folder() + u"/%1/arbre.ged"_s.arg(attempt);
        QVERIFY(QDir().mkdir(QFileInfo(path).path()));
        writeBytes(path, "avant\n");
        name->setText(2, u"premier"_s);
        const Saved first = save(&doc, path);
        name->setText(2, u"second"_s);
        const Saved second = save(&doc, path);
        QVERIFY(first.result && second.result);
        if (first.archived.time != second.archived.time)
            continue;

        QCOMPARE(listing(QFileInfo(path).path(), second.archived),
                 (QStringList{u"ARCH/"_s, u"ARCH/DATE/"_s, u"ARCH/DATE/TIME.arbre.ged"_s,
                              u"ARCH/DATE/journal.TIME.arbre.ged"_s, u"arbre.ged"_s}));
        // The copy comes from the first save, the journal from the second.
        QCOMPARE(readText(second.archived.copy()), QByteArray("avant\n"));
        QCOMPARE(readText(second.archived.journal()), journalFile(doc.gedcom.getJournal()));
        QCOMPARE(readText(path), gedBytes(family().mid(0, 3) + QStringList{u"1 NAME second"_s}));
        QCOMPARE(second.journal, journalOfSave(path, second.archived));
        return;
    }
    QFAIL("no two saves fell into the same second");
}

void TstWriter::newFile()
{
    Document doc;
    QVERIFY(doc.load(family()));
    QVERIFY(QDir(doc.folder()).mkdir(u"ailleurs"_s));
    const QString path = doc.folder() + "/ailleurs/neuf.ged"_L1;
    const AnsweredBoxes boxes;
    const Saved saved = save(&doc, path);
    QVERIFY(saved.result);
    QCOMPARE(boxes.texts(), QStringList{});
    // The journal reports a copy although there was nothing to copy.
    QCOMPARE(saved.archived.base, doc.folder() + "/ailleurs"_L1);
    QCOMPARE(saved.journal, journalOfSave(path, saved.archived));
    QCOMPARE(listing(doc.folder(), saved.archived),
             (QStringList{u"ailleurs/"_s, u"ailleurs/ARCH/"_s, u"ailleurs/ARCH/DATE/"_s,
                          u"ailleurs/ARCH/DATE/journal.TIME.neuf.ged"_s, u"ailleurs/neuf.ged"_s,
                          u"arbre.ged"_s}));
    QCOMPARE(readText(path), gedBytes(family()));
    QCOMPARE(readText(saved.archived.journal()), journalFile(doc.gedcom.getJournal()));
    QCOMPARE(doc.gedcom.getPathGedFile(), doc.path());
}

void TstWriter::newFileBehindALink()
{
    SKIP_ON_WINDOWS(NoLinks);
    Document doc;
    QVERIFY(doc.load(family()));
    const QString path = doc.folder() + "/lien.ged"_L1;
    QVERIFY(QFile::link(u"neuf.ged"_s, path));
    const Saved saved = save(&doc, path);
    QVERIFY(saved.result);
    QCOMPARE(readText(doc.folder() + "/neuf.ged"_L1), gedBytes(family()));
    QCOMPARE(QFileInfo(path).symLinkTarget(), doc.folder() + "/neuf.ged"_L1);
    QCOMPARE(readText(saved.archived.journal()), journalFile(doc.gedcom.getJournal()));
}

void TstWriter::otherFileIsArchived()
{
    Document doc;
    QVERIFY(doc.load(family()));
    const QString path = doc.folder() + "/autre.ged"_L1;
    writeBytes(path, "un autre arbre\n");
    const Saved saved = save(&doc, path);
    QVERIFY(saved.result);
    QCOMPARE(readText(saved.archived.copy()), QByteArray("un autre arbre\n"));
    QCOMPARE(readText(path), gedBytes(family()));
    QCOMPARE(listing(doc.folder(), saved.archived),
             (QStringList{u"ARCH/"_s, u"ARCH/DATE/"_s, u"ARCH/DATE/TIME.autre.ged"_s,
                          u"ARCH/DATE/journal.TIME.autre.ged"_s, u"arbre.ged"_s, u"autre.ged"_s}));
}

void TstWriter::archiveFoldersAreKept()
{
    Document doc;
    QVERIFY(doc.load(family()));
    const QString day = doc.folder() + "/ARCH/"_L1 + today();
    QVERIFY(QDir().mkpath(doc.folder() + "/ARCH/2001.02.03"_L1));
    QVERIFY(QDir().mkpath(day));
    writeBytes(doc.folder() + "/ARCH/2001.02.03/journal.04.05.06.arbre.ged"_L1, "vieux\n");
    writeBytes(day + "/00.00.00.autre.ged"_L1, "du jour\n");
    const Saved saved = save(&doc, doc.path());
    QVERIFY(saved.result);
    QCOMPARE(readText(doc.folder() + "/ARCH/2001.02.03/journal.04.05.06.arbre.ged"_L1),
             QByteArray("vieux\n"));
    QCOMPARE(readText(day + "/00.00.00.autre.ged"_L1), QByteArray("du jour\n"));
    QCOMPARE(readText(saved.archived.copy()), gedBytes(family()));
}

void TstWriter::targetIsOverwrittenInPlace()
{
    Document doc;
    QVERIFY(doc.load(family()));
    const QString other = doc.folder() + "/lien.ged"_L1;
    std::filesystem::create_hard_link(doc.path().toStdString(), other.toStdString());
    QVERIFY(QFile::setPermissions(doc.path(), QFile::ReadOwner | QFile::WriteOwner));
    doc.entry(u"1 CHAR UTF-8"_s)->setText(2, u"ANSI"_s);
    QVERIFY(save(&doc, doc.path()).result);
    // Still the same file under both names, with its permissions.
    const QByteArray expected = readText(doc.path());
    QVERIFY(expected.startsWith("0 HEAD\n1 CHAR ANSI\n"));
    QCOMPARE(readText(other), expected);
    SKIP_ON_WINDOWS(NoRights);
    QCOMPARE(QFileInfo(doc.path()).permissions() & ForWriting,
             QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
}

void TstWriter::lineEnds()
{
    Document doc;
    QVERIFY(doc.load({u"0 HEAD"_s, u"1 CHAR UTF-8"_s}));
    const Saved saved = save(&doc, doc.path());
#ifdef Q_OS_WIN
    QCOMPARE(readBytes(doc.path()), QByteArray("0 HEAD\r\n1 CHAR UTF-8\r\n0 TRLR\r\n"));
    const QByteArray end = "\r\n";
#else
    QCOMPARE(readBytes(doc.path()), QByteArray("0 HEAD\n1 CHAR UTF-8\n0 TRLR\n"));
    const QByteArray end = "\n";
#endif
    QByteArray journal = readBytes(saved.archived.journal());
    QVERIFY(journal.endsWith(" sauvegardé." + end + end));
    journal.replace(end, QByteArray());
    QVERIFY(!journal.contains('\r') && !journal.contains('\n'));
}

void TstWriter::backslashes()
{
#ifndef Q_OS_WIN
    QSKIP("only Windows sets folders apart by backslashes");
#else
    Document doc;
    QVERIFY(doc.load(family()));
    doc.entry(u"1 CHAR UTF-8"_s)->setText(2, u"ANSI"_s);
    const AnsweredBoxes boxes;
    // The document is written, and is the only thing that is: the archive knows folders by slashes,
    // as the dialogs of the framework give them.
    QVERIFY(!doc.gedcom.writeGedFile(QDir::toNativeSeparators(doc.path())));
    QCOMPARE(boxes.titles(), QStringList{u"Erreur d'écriture du journal"_s});
    QCOMPARE(readText(doc.path()).left(19), QByteArray("0 HEAD\n1 CHAR ANSI\n"));
    QVERIFY(!QFileInfo::exists(doc.folder() + "/ARCH"_L1));
#endif
}

void TstWriter::recordsInFilePlace()
{
    const QStringList lines{
        u"0 @N1@ NOTE texte libre"_s,
        u"1 CONT suite"_s,
        u"0 @U1@ SUBM"_s,
        u"1 NAME Anne /LE GOFF/"_s,
        u"0 @X1@ SUBN"_s,
        u"1 NOTE inconnu"_s,
        u"0 @S1@ SOUR"_s,
        u"1 TITL a"_s,
        u"0 @I2@ INDI"_s,
        u"1 BIRT"_s,
        u"2 DATE 1 JAN 1900"_s,
        u"0 @F1@ FAM"_s,
        u"1 HUSB @I1@"_s,
        u"0 @R1@ REPO"_s,
        u"1 NAME b"_s,
        u"0 @O1@ OBJE"_s,
        u"1 FILE c.jpg"_s,
        u"0 @I1@ INDI"_s,
        u"1 NAME d  e"_s,
        u"0 HEAD"_s,
        u"1 CHAR UTF-8"_s,
    };
    Document doc;
    QVERIFY(doc.load(lines));
    const Saved saved = save(&doc, doc.path());
    QVERIFY(saved.result);
    QCOMPARE(readText(doc.path()), gedBytes(lines));
    // The unknown record is quoted in the journal over several lines.
    const QByteArray journal = readText(saved.archived.journal());
    QCOMPARE(journal, journalFile(doc.gedcom.getJournal()));
    QVERIFY(journal.contains(" - 0 @X1@ SUBN\n1 NOTE inconnu\n"));
}

void TstWriter::deletedAndHiddenEntries()
{
    Document doc;
    QVERIFY(doc.load({u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"1 NAME a"_s,
                      u"0 @I2@ INDI"_s, u"1 BIRT"_s, u"2 DATE 1900"_s, u"2 PLAC b"_s, u"3 MAP"_s,
                      u"1 DEAT"_s, u"2 DATE 1950"_s, u"0 @U1@ SUBM"_s, u"1 NAME c"_s,
                      u"0 @U2@ SUBM"_s, u"1 NAME d"_s}));
    for (const QString &line :
         {u"0 @I1@ INDI"_s, u"1 BIRT"_s, u"2 PLAC b"_s, u"2 DATE 1950"_s, u"0 @U1@ SUBM"_s})
        QVERIFY(doc.entry(line)->setDelete(true));
    for (const QString &line : {u"0 HEAD"_s, u"1 DEAT"_s})
        doc.entry(line)->setTwiHidden(true); // an entry hidden by a search is still written
    QVERIFY(save(&doc, doc.path()).result);
    // Live entries below a deleted one are written; those below a deleted root are not.
    QCOMPARE(readText(doc.path()),
             gedBytes({u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I2@ INDI"_s, u"2 DATE 1900"_s,
                       u"3 MAP"_s, u"1 DEAT"_s, u"0 @U2@ SUBM"_s, u"1 NAME d"_s}));
}

void TstWriter::noRecords()
{
    Document empty;
    QVERIFY(empty.load({}));
    Document emptied;
    QVERIFY(emptied.load({u"0 @I1@ INDI"_s, u"1 NAME a"_s}));
    QVERIFY(emptied.entry(u"0 @I1@ INDI"_s)->setDelete(true));
    for (Document *doc : {&empty, &emptied}) {
        const Saved saved = save(doc, doc->path());
        QVERIFY(saved.result);
        QCOMPARE(saved.journal, journalOfSave(doc->path(), saved.archived));
        QCOMPARE(readText(doc->path()), QByteArray("0 TRLR\n"));
        QCOMPARE(readText(saved.archived.journal()), journalFile(doc->gedcom.getJournal()));
    }
}

void TstWriter::targetFailures_data()
{
    using Prepare = void (*)(const QString &folder);
    QTest::addColumn<Prepare>("prepare");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("left");

    QTest::newRow("the target is read-only")
        << Prepare([](const QString &folder) { closeForWriting(folder + "/arbre.ged"_L1); })
        << u"./arbre.ged"_s
        << QStringList{u"ARCH/"_s, u"ARCH/DATE/"_s, u"ARCH/DATE/TIME.arbre.ged"_s, u"arbre.ged"_s};
    QTest::newRow("the target is a directory")
        << Prepare([](const QString &folder) { QDir(folder).mkdir(u"gen"_s); }) << u"./gen"_s
        << QStringList{u"ARCH/"_s, u"ARCH/DATE/"_s, u"arbre.ged"_s, u"gen/"_s};
    const QStringList leftOfPipe{u"ARCH/"_s, u"ARCH/DATE/"_s, u"arbre.ged"_s, u"tube.ged"_s};
    const Prepare pipe = [](const QString &folder) { makePipe(folder + "/tube.ged"_L1); };
    QTest::newRow("the target is a pipe") << pipe << u"./tube.ged"_s << leftOfPipe;
    QTest::newRow("the target is a link to a pipe")
        << Prepare([](const QString &folder) {
               makePipe(folder + "/tube.ged"_L1);
               QFile::link(u"tube.ged"_s, folder + "/lien.ged"_L1);
           })
        << u"./lien.ged"_s
        << QStringList{u"ARCH/"_s, u"ARCH/DATE/"_s, u"arbre.ged"_s, u"lien.ged"_s, u"tube.ged"_s};
    QTest::newRow("the target is a device")
        << Prepare(
               [](const QString &folder) { QFile::link(u"/dev/null"_s, folder + "/rien.ged"_L1); })
        << u"./rien.ged"_s
        << QStringList{u"ARCH/"_s, u"ARCH/DATE/"_s, u"arbre.ged"_s, u"rien.ged"_s};
    QTest::newRow("the target is a socket")
        << Prepare([](const QString &folder) { makeSocket(folder + "/prise.ged"_L1); })
        << u"./prise.ged"_s
        << QStringList{u"ARCH/"_s, u"ARCH/DATE/"_s, u"arbre.ged"_s, u"prise.ged"_s};
    QTest::newRow("the folder of the target is not there")
        << Prepare([](const QString &) {}) << u"./rien/arbre.ged"_s << QStringList{u"arbre.ged"_s};
    QTest::newRow("the folder of the target is a file")
        << Prepare([](const QString &) {}) << u"./arbre.ged/arbre.ged"_s
        << QStringList{u"arbre.ged"_s};
    QTest::newRow("the folder of a new target is read-only") << Prepare([](const QString &folder) {
        QDir(folder).mkdir(u"gen"_s);
        closeForWriting(folder + "/gen"_L1);
    }) << u"./gen/arbre.ged"_s << QStringList{u"arbre.ged"_s, u"gen/"_s};
}

void TstWriter::targetFailures()
{
    using Prepare = void (*)(const QString &folder);
    QFETCH(Prepare, prepare);
    QFETCH(QString, path);
    QFETCH(QStringList, left);
    if (QStringList{u"./tube.ged"_s, u"./lien.ged"_s, u"./rien.ged"_s, u"./prise.ged"_s}.contains(
            path))
        SKIP_ON_WINDOWS(NoSuchFiles);
    if (path == "./gen/arbre.ged"_L1)
        SKIP_ON_WINDOWS(NoRights);

    Document doc;
    QVERIFY(doc.load(family()));
    openToAll(doc.folder());
    prepare(doc.folder());
    const CurrentFolder current(doc.folder());
    AnsweredBoxes boxes;
    // The journal line comes before the box, and the bar is not shown.
    QString last;
    boxes.setInspector([&](QMessageBox *) { last = doc.journal().constLast(); });
    Told told(&doc);
    std::optional<Unprivileged> unprivileged(std::in_place);
    // The framework copies files by their absolute names, through all the folders above.
    std::error_code error;
    if (!std::filesystem::exists(doc.path().toStdString(), error))
        left.removeOne(u"ARCH/DATE/TIME.arbre.ged"_s);
    const QDateTime begin = QDateTime::currentDateTime();
    const bool result = doc.gedcom.writeGedFile(path);
    unprivileged.reset();
    openToAll(doc.folder());

    QVERIFY(!result);
    QCOMPARE(boxes.titles(), QStringList{u"Erreur d'écriture"_s});
    QCOMPARE(
        boxes.texts(),
        QStringList{u"Modification non prise en compte, vérifier l'accès au fichier "_s + path});
    QVERIFY(boxes.allCritical(nullptr));
    const QString log = u"ERROR : Erreur d'écriture du fichier "_s + path;
    QCOMPARE(last, log);
    const QStringList all = told.take();
    const Archived archived = archivedIn(all, path, begin);
    QCOMPARE(all, (QStringList{u"status: Vérification de la taille des balises en cours..."_s,
                               u"INFO : 0 balises > 255 caractères déconcaténées."_s,
                               u"status: Vérification de la taille des balises terminée. 0 balises "
                               "déconcaténées. "_s,
                               "status: Sauvegarde du fichier "_L1 + path,
                               journalOfCopy(path, archived).last(), log}));
    QCOMPARE(doc.status(), "Sauvegarde du fichier "_L1 + path);
    QVERIFY(doc.progress.isHidden());
    QCOMPARE(listing(doc.folder(), archived), left);
    QCOMPARE(readText(doc.path()), gedBytes(family()));
    if (left.contains(u"ARCH/DATE/TIME.arbre.ged"_s))
        QCOMPARE(readText(archived.copy()), gedBytes(family()));
}

void TstWriter::journalFailures_data()
{
    using Prepare = void (*)(const QString &folder);
    QTest::addColumn<Prepare>("prepare");
    QTest::addColumn<QStringList>("left");

    QTest::newRow("the archive is a file")
        << Prepare([](const QString &folder) { writeBytes(folder + "/ARCH"_L1, "x"); })
        << QStringList{u"ARCH"_s, u"arbre.ged"_s};
    QTest::newRow("the folder of the day is a file") << Prepare([](const QString &folder) {
        QDir(folder).mkdir(u"ARCH"_s);
        writeBytes(folder + "/ARCH/"_L1 + today(), "x");
    }) << QStringList{u"ARCH/"_s, u"ARCH/DATE"_s, u"arbre.ged"_s};
    QTest::newRow("the archive cannot be made")
        << Prepare([](const QString &folder) { closeForWriting(folder); })
        << QStringList{u"arbre.ged"_s};
    QTest::newRow("the folder of the day cannot be made") << Prepare([](const QString &folder) {
        QDir(folder).mkdir(u"ARCH"_s);
        closeForWriting(folder + "/ARCH"_L1);
    }) << QStringList{u"ARCH/"_s, u"arbre.ged"_s};
    QTest::newRow("the folder of the day is read-only") << Prepare([](const QString &folder) {
        QDir(folder).mkpath("ARCH/"_L1 + today());
        closeForWriting(folder + "/ARCH/"_L1 + today());
    }) << QStringList{u"ARCH/"_s, u"ARCH/DATE/"_s, u"arbre.ged"_s};
}

void TstWriter::journalFailures()
{
    using Prepare = void (*)(const QString &folder);
    QFETCH(Prepare, prepare);
    QFETCH(QStringList, left);
    if (!left.contains(u"ARCH"_s) && !left.contains(u"ARCH/DATE"_s)) // a folder is closed
        SKIP_ON_WINDOWS(NoRights);

    const QString path = u"./arbre.ged"_s;
    Document doc;
    QVERIFY(doc.load(family()));
    writeBytes(doc.path(), "avant\n");
    openToAll(doc.folder());
    prepare(doc.folder());
    const CurrentFolder current(doc.folder());
    AnsweredBoxes boxes;
    QString last;
    boxes.setInspector([&](QMessageBox *) { last = doc.journal().constLast(); });
    Told told(&doc);
    std::optional<Unprivileged> unprivileged(std::in_place);
    const QDateTime begin = QDateTime::currentDateTime();
    const bool result = doc.gedcom.writeGedFile(path);
    unprivileged.reset();
    openToAll(doc.folder());

    QVERIFY(!result);
    const QStringList all = told.take();
    const Archived archived = archivedIn(all, path, begin);
    QCOMPARE(archived.base, u"."_s);
    QCOMPARE(archived.name, u"arbre.ged"_s);
    QCOMPARE(boxes.titles(), QStringList{u"Erreur d'écriture du journal"_s});
    QCOMPARE(boxes.texts(),
             QStringList{u"Modification non prise en compte, vérifier l'accès au fichier "_s
                         + archived.journal()});
    QVERIFY(boxes.allCritical(nullptr));
    const QString error = u"ERROR : Erreur d'écriture du fichier journal "_s + archived.journal();
    QCOMPARE(last, error);
    QCOMPARE(all, (QStringList{u"status: Vérification de la taille des balises en cours..."_s,
                               u"INFO : 0 balises > 255 caractères déconcaténées."_s,
                               u"status: Vérification de la taille des balises terminée. 0 balises "
                               "déconcaténées. "_s,
                               "status: Sauvegarde du fichier "_L1 + path,
                               journalOfCopy(path, archived).last(), u"bar shown"_s,
                               u"bar: 0 of 2"_s, u"events"_s, journalOfSave(path, archived).last(),
                               "status: Fichier "_L1 + path + u" sauvegardé."_s,
                               "status: Sauvegarde du journal "_L1 + archived.journal(), error}));
    QCOMPARE(doc.status(), "Sauvegarde du journal "_L1 + archived.journal());
    QVERIFY(doc.progress.isVisible()); // nothing hides it in this case
    QCOMPARE(listing(doc.folder(), archived), left);
    QCOMPARE(readText(doc.path()), gedBytes(family()));
}

void TstWriter::pipesAreLeftAlone()
{
    SKIP_ON_WINDOWS(NoSuchFiles);
    Document doc;
    QVERIFY(doc.load(family()));
    const QString path = doc.folder() + "/tube.ged"_L1;
    makePipe(path);
    // With somebody at the other end nothing would wait: neither the copy for the archive takes
    // anything out, nor does the save put anything in.
    const PipeEnd otherEnd(path, "avant");
    const AnsweredBoxes boxes;
    QVERIFY(!save(&doc, path).result);
    QCOMPARE(boxes.titles(), QStringList{u"Erreur d'écriture"_s});
    QCOMPARE(otherEnd.unread(), 5);
    QCOMPARE(doc.archive(), QStringList{});
}

void TstWriter::journalIsAPipe()
{
    SKIP_ON_WINDOWS(NoSuchFiles);
    Document doc;
    QVERIFY(doc.load(family()));
    QString journal;
    connect(&doc.statusBar, &QStatusBar::messageChanged, this, [&](const QString &text) {
        if (text.startsWith("Sauvegarde du journal "_L1)) {
            journal = text.mid(22);
            makePipe(journal);
        }
    });
    const AnsweredBoxes boxes;
    const Saved saved = save(&doc, doc.path());
    QVERIFY(!saved.result);
    QCOMPARE(journal, saved.archived.journal());
    QCOMPARE(boxes.titles(), QStringList{u"Erreur d'écriture du journal"_s});
    QCOMPARE(saved.journal,
             journalOfSave(doc.path(), saved.archived)
                 + QStringList{u"ERROR : Erreur d'écriture du fichier journal "_s + journal});
    QCOMPARE(readText(doc.path()), gedBytes(family()));
}

void TstWriter::saveAfterFailure()
{
    Document doc;
    QVERIFY(doc.load(family()));
    writeBytes(doc.folder() + "/ARCH"_L1, "x");
    {
        const AnsweredBoxes boxes;
        QVERIFY(!doc.gedcom.writeGedFile(doc.path()));
        QCOMPARE(boxes.texts().size(), 1);
    }
    QVERIFY(QFile::remove(doc.folder() + "/ARCH"_L1));
    const Saved saved = save(&doc, doc.path());
    QVERIFY(saved.result);
    QVERIFY(doc.progress.isHidden());
    QCOMPARE(readText(saved.archived.copy()), gedBytes(family()));
    // The journal file reports the failure as well.
    QCOMPARE(readText(saved.archived.journal()), journalFile(doc.gedcom.getJournal()));
    QVERIFY(readText(saved.archived.journal())
                .contains(u" - ERROR : Erreur d'écriture du fichier journal "_s.toUtf8()));
}

void TstWriter::pathWithoutSlash_data()
{
    QTest::addColumn<bool>("folderIsThere");

    QTest::newRow("the name less its last character is no folder") << false;
    QTest::newRow("the name less its last character is a folder") << true;
}

void TstWriter::pathWithoutSlash()
{
    QFETCH(bool, folderIsThere);

    Document doc;
    QVERIFY(doc.load(family()));
    if (folderIsThere)
        QVERIFY(QDir(doc.folder()).mkdir(u"fals"_s));
    const CurrentFolder current(doc.folder());
    const AnsweredBoxes boxes;
    const Saved saved = save(&doc, u"false"_s);
    QCOMPARE(saved.result, folderIsThere);
    QCOMPARE(saved.archived.base, u"fals"_s);
    QCOMPARE(saved.archived.name, u"false"_s);
    QCOMPARE(readText(doc.folder() + "/false"_L1), gedBytes(family()));

    QStringList journal = journalOfSave(u"false"_s, saved.archived);
    if (folderIsThere) {
        QCOMPARE(boxes.texts(), QStringList{});
        QCOMPARE(saved.journal, journal);
        QCOMPARE(listing(doc.folder(), saved.archived),
                 (QStringList{u"arbre.ged"_s, u"fals/"_s, u"fals/ARCH/"_s, u"fals/ARCH/DATE/"_s,
                              u"fals/ARCH/DATE/journal.TIME.false"_s, u"false"_s}));
        return;
    }
    QCOMPARE(boxes.titles(), QStringList{u"Erreur d'écriture du journal"_s});
    QCOMPARE(boxes.texts(),
             QStringList{u"Modification non prise en compte, vérifier l'accès au fichier "_s
                         + saved.archived.journal()});
    QVERIFY(boxes.allCritical(nullptr));
    journal += u"ERROR : Erreur d'écriture du fichier journal "_s + saved.archived.journal();
    QCOMPARE(saved.journal, journal);
    QCOMPARE(doc.status(), "Sauvegarde du journal "_L1 + saved.archived.journal());
    QCOMPARE(listing(doc.folder(), saved.archived), (QStringList{u"arbre.ged"_s, u"false"_s}));
}

void TstWriter::emptyPath()
{
    Document doc;
    QVERIFY(doc.load(family()));
    const AnsweredBoxes boxes;
    const bool wasThere = QFileInfo::exists(u"/ARCH"_s);
    std::optional<Unprivileged> unprivileged(std::in_place);
    const Saved saved = save(&doc, QString());
    unprivileged.reset();
    // A user who may write to the root of the file system has made an empty folder there.
    if (!wasThere) {
        QDir().rmdir(saved.archived.folder());
        QDir().rmdir(u"/ARCH"_s);
    }

    QVERIFY(!saved.result);
    QCOMPARE(saved.archived.base, QString());
    QCOMPARE(saved.archived.name, QString());
    QCOMPARE(boxes.titles(), QStringList{u"Erreur d'écriture"_s});
    QCOMPARE(boxes.texts(),
             QStringList{u"Modification non prise en compte, vérifier l'accès au fichier "_s});
    QVERIFY(boxes.allCritical(nullptr));
    QCOMPARE(saved.journal, journalOfCopy(QString(), saved.archived)
                                + QStringList{u"ERROR : Erreur d'écriture du fichier "_s});
    QCOMPARE(doc.status(), u"Sauvegarde du fichier "_s);
    QVERIFY(doc.progress.isHidden());
    QCOMPARE(listing(doc.folder(), saved.archived), QStringList{u"arbre.ged"_s});
}

void TstWriter::beforeALoad_data()
{
    QTest::addColumn<bool>("tried");

    QTest::newRow("nothing was ever opened") << false;
    QTest::newRow("the only file could not be opened") << true;
}

void TstWriter::beforeALoad()
{
    QFETCH(bool, tried);

    Document doc;
    const AnsweredBoxes boxes;
    if (tried)
        QVERIFY(!doc.loadFile());
    writeBytes(doc.path(), "avant\n");
    doc.newJournal();
    const QStringList texts = boxes.texts();
    for (const QString &path : {doc.path(), doc.folder() + "/neuf.ged"_L1, QString()})
        QVERIFY(!doc.gedcom.writeGedFile(path));
    QCOMPARE(doc.newJournal(), QStringList{});
    QCOMPARE(boxes.texts(), texts);
    QCOMPARE(doc.status(), QString());
    QCOMPARE(QDir(doc.folder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{u"arbre.ged"_s});
    QCOMPARE(readText(doc.path()), QByteArray("avant\n"));
}

void TstWriter::encodings_data()
{
    QTest::addColumn<QByteArray>("file");

    const QString text = u"0 HEAD\n1 NOTE Éloïse œuvre à Łódź — 家族 \U0001F600\n0 TRLR\n"_s;
    const auto utf16 = [&text](bool little) {
        QByteArray bytes;
        const QString marked = u'\uFEFF' + text;
        for (const QChar c : marked) {
            const char low = char(c.unicode() & 0xFF);
            const char high = char(c.unicode() >> 8);
            bytes += little ? low : high;
            bytes += little ? high : low;
        }
        return bytes;
    };
    QTest::newRow("UTF-8") << text.toUtf8();
    QTest::newRow("UTF-8 with a byte-order mark") << "\xEF\xBB\xBF" + text.toUtf8();
    QTest::newRow("UTF-8 with CR LF") << QString(text).replace(u"\n"_s, u"\r\n"_s).toUtf8();
    QTest::newRow("UTF-16, little end first") << utf16(true);
    QTest::newRow("UTF-16, big end first") << utf16(false);
}

void TstWriter::encodings()
{
    QFETCH(QByteArray, file);

    Document doc;
    writeBytes(doc.path(), file);
    QVERIFY(doc.loadFile());
    doc.gedcom.addToJournal(u"家族 \U0001F600 é"_s, u"INFO"_s);
    const Saved saved = save(&doc, doc.path());
    QVERIFY(saved.result);
    // Whatever the encoding was, the document is written as UTF-8 without a byte-order mark, with
    // line feeds; the copy is not recoded.
    QCOMPARE(readText(doc.path()),
             u"0 HEAD\n1 NOTE Éloïse œuvre à Łódź — 家族 \U0001F600\n0 TRLR\n"_s.toUtf8());
    QCOMPARE(readBytes(saved.archived.copy()), file);
    QCOMPARE(readText(saved.archived.journal()), journalFile(doc.gedcom.getJournal()));
    QVERIFY(
        readText(saved.archived.journal()).contains(u" - INFO : 家族 \U0001F600 é\n"_s.toUtf8()));
}

void TstWriter::halfACharacter()
{
    Document doc;
    QVERIFY(doc.load({u"0 HEAD"_s, u"1 NOTE a"_s, u"1 NOTE b"_s, u"1 NOTE c"_s}));
    doc.entry(u"1 NOTE a"_s)->setText(2, u"a"_s + QChar(0xD83D) + u'a');
    doc.entry(u"1 NOTE b"_s)->setText(2, u"b"_s + QChar(0xDE00) + u'b');
    const Saved saved = save(&doc, doc.path());
    QVERIFY(saved.result);
    // The framework chooses what replaces the half; everything around it is unchanged.
    QStringList lines = readLines(doc.path());
    QCOMPARE(lines.size(), 5);
    QVERIFY2(lines.at(1).startsWith("1 NOTE a"_L1) && lines.at(1).endsWith(u'a'),
             qPrintable(lines.at(1)));
    QVERIFY2(lines.at(2).startsWith("1 NOTE b"_L1) && lines.at(2).endsWith(u'b'),
             qPrintable(lines.at(2)));
    lines.remove(1, 2);
    QCOMPARE(lines, (QStringList{u"0 HEAD"_s, u"1 NOTE c"_s, u"0 TRLR"_s}));
}

void TstWriter::fullDisk()
{
    SKIP_ON_WINDOWS("Windows limits no process in the size of its files");
    constexpr qsizetype limit = 16384;
    QStringList lines{u"0 @I1@ INDI"_s};
    for (int i = 0; i < 200; ++i)
        lines += u"1 NOTE a"_s;
    Document doc;
    QVERIFY(doc.load(lines));
    const QByteArray former = readBytes(doc.path());
    const QList<TwItem *> tabTwi = doc.entry(u"0 @I1@ INDI"_s)->getTabTwiChilds(true);
    for (TwItem *twi : tabTwi)
        twi->setText(2, QString(200, u'b'));
    const QByteArray whole = gedBytes(doc.lines());
    QVERIFY(former.size() < limit && whole.size() > 2 * limit);

    const AnsweredBoxes boxes;
    std::optional<FileSizeLimit> full(limit);
    const Saved saved = save(&doc, doc.path());
    full.reset();
    // The state of the stream is not checked: the save counts as done. Only the archive copy is
    // left of the document.
    QVERIFY(saved.result);
    QCOMPARE(boxes.texts(), QStringList{});
    QCOMPARE(saved.journal, journalOfSave(doc.path(), saved.archived));
    QCOMPARE(doc.status(), "Fichier journal "_L1 + saved.archived.journal() + u" sauvegardé."_s);
    QVERIFY(doc.progress.isHidden());
    QCOMPARE(readText(doc.path()), whole.first(limit));
    QCOMPARE(readBytes(saved.archived.copy()), former);
    QCOMPARE(readText(saved.archived.journal()), journalFile(doc.gedcom.getJournal()));
}

void TstWriter::numbersWhateverTheLocale()
{
    // Other digits, and grouped thousands.
    const DefaultLocale locale(QLocale(QLocale::Arabic, QLocale::Egypt));
    QCOMPARE(QLocale().toString(1234), u"١٬٢٣٤"_s);
    Document doc;
    QVERIFY(
        doc.load(QStringList{u"0 @I1@ INDI"_s, u"1 NOTE a"_s} + QStringList(1'100, u"2 CONC b"_s)));
    QCOMPARE(doc.newJournal().constLast(), u"INFO : Chargement de 1103 lignes terminé."_s);
    QCOMPARE(sectionNode(doc.tree, u"personnes"_s)->text(1), u"1"_s);
    TwItem *last = doc.gedcom.getTabTotalTwItems().constLast();
    QCOMPARE(last->toolTip(0), u"ligne 1102"_s);
    QCOMPARE(doc.gedcom.unConc(), 1'100);
    QCOMPARE(doc.newJournal().constLast(), u"INFO : 1100 balises CONC reconcaténées."_s);
    QCOMPARE(doc.status(), u"1100 balises CONC reconcaténées."_s);

    const Saved saved = save(&doc, doc.path()); // which checks the digits of the names
    QVERIFY(saved.result);
    QCOMPARE(saved.journal.first(), u"INFO : 1 balises > 255 caractères détectées, "
                                    "déconcaténation..."_s);
    QVERIFY2(saved.journal.at(1).endsWith(" (l.2)"_L1), qPrintable(saved.journal.at(1)));
    QVERIFY(readLines(doc.path()).at(2).startsWith("2 CONC "_L1));
}

void TstWriter::textsAreTranslated()
{
    // The word of the tool tips is translated only once, for the first entry.
    const TwItem first(1);
    const MarkingTranslator translator;
    const AnsweredBoxes boxes;
    Document doc;
    QStringList told;
    connect(&doc.statusBar, &QStatusBar::messageChanged, this,
            [&told](const QString &text) { told += text; });
    QVERIFY(!doc.loadFile());
    QVERIFY(!doc.load({u"0 HEAD"_s}));
    QVERIFY(doc.load(
        {u"0 @I1@ INDI"_s, "1 NOTE "_L1 + QString(200, u'a'), "2 CONC "_L1 + QString(200, u'b')}));
    QCOMPARE(doc.gedcom.unConc(), 1);
    QVERIFY(doc.gedcom.writeGedFile(doc.path()));
    QVERIFY(QDir(doc.folder()).mkdir(u"gen"_s));
    QVERIFY(!doc.gedcom.writeGedFile(doc.folder() + "/gen"_L1));
    writeBytes(doc.folder() + "/gen/ARCH"_L1, {});
    QVERIFY(!doc.gedcom.writeGedFile(doc.folder() + "/gen/a.ged"_L1));

    QStringList labels;
    for (int i = 0; i < doc.tree.topLevelItemCount(); ++i)
        labels += doc.tree.topLevelItem(i)->text(0);
    QCOMPARE(labels, (QStringList{u"[Gedcom]en-tête"_s, u"[Gedcom]personnes"_s,
                                  u"[Gedcom]familles"_s, u"[Gedcom]sources"_s, u"[Gedcom]médias"_s,
                                  u"[Gedcom]dépots"_s, u"[Gedcom]notes"_s}));
    QCOMPARE(boxes.titles(),
             (QStringList{u"[Gedcom]Erreur"_s, u"[Gedcom]Erreur"_s, u"[Gedcom]Erreur d'écriture"_s,
                          u"[Gedcom]Erreur d'écriture du journal"_s}));
    told += boxes.texts();
    // Without the quoted record.
    static const QRegularExpression level(u"^(INFO|ERROR) : "_s);
    told += doc.journal().filter(level).replaceInStrings(level, QString());
    QCOMPARE(told.size(), 41);
    static const QRegularExpression translated(uR"(^\[(Gedcom|TwItem)\])"_s);
    QCOMPARE(told.filter(translated), told);
}

void TstWriter::roundTrip_data()
{
    QTest::addColumn<QByteArray>("file");

    const QString text = QString(300, u'v') + ' ' + QString(300, u'w');
    const QStringList lines{
        u"0 HEAD"_s,
        u"1 SOUR Varlune"_s,
        u"2 VERS 1.0"_s,
        u"1 CHAR UTF-8"_s,
        u"0 @U1@ SUBM"_s,
        u"1 NAME Anne /LE GOFF/"_s,
        u"0 @I1@ INDI"_s,
        u"1 NAME  Jean  /DUPONT/  "_s,
        u"1 BIRT"_s,
        u"2 DATE 1 JAN 1900"_s,
        u"2 SOUR @S1@"_s,
        u"3 PAGE 4"_s,
        u"1 _UID é"_s,
        "1 NOTE "_L1 + text,
        u"2 CONC  suite"_s,
        u"2 CONC"_s,
        "2 CONT "_L1 + text,
        u"0 @F1@ FAM"_s,
        u"1 HUSB @I1@"_s,
        u"1 MARR"_s,
        u"2 PLAC Brest,,,"_s,
        u"0 @S1@ SOUR"_s,
        u"1 TITL Registre"_s,
        u"0 @O1@ OBJE"_s,
        u"1 FILE C:\\photos\\a.jpg"_s,
        u"0 @R1@ REPO"_s,
        u"1 NAME Archives"_s,
        u"0 @N1@ NOTE texte"_s,
        u"1 CONT suite"_s,
        "0 @N2@ NOTE "_L1 + text,
        u"1 CONT suite"_s,
        u"0 @X1@ SUBN"_s,
        u"1 FAMF x"_s,
    };
    QTest::newRow("a record of every kind") << gedBytes(lines);
    QTest::newRow("the sample family") << readBytes(QStringLiteral(SAMPLES "/famille.ged"));
}

void TstWriter::roundTrip()
{
    QFETCH(QByteArray, file);

    Document doc;
    writeBytes(doc.path(), file);
    QVERIFY(doc.loadFile());
    const QStringList former = readLines(doc.path());
    QVERIFY(former.size() > 30);
    QCOMPARE(former.constLast(), u"0 TRLR"_s);
    const Saved saved = save(&doc, doc.path());
    QVERIFY(saved.result);
    QCOMPARE(readBytes(saved.archived.copy()), file);

    // A line over the limit comes back in pieces, which together give that line again.
    const QStringList lines = readLines(doc.path());
    QStringList together;
    qsizetype next = 0;
    for (const QString &line : former) {
        QString whole = lines.value(next++);
        while (line.size() > 255 && whole.size() < line.size() && next < lines.size()) {
            const QString piece = lines.at(next++);
            const bool continuation = line.startsWith(line.first(1) + " CON"_L1);
            const QString conc =
                QString::number(line.first(1).toInt() + (continuation ? 0 : 1)) + " CONC "_L1;
            QVERIFY2(piece.startsWith(conc), qPrintable(piece));
            whole += piece.mid(conc.size());
        }
        together += whole;
    }
    QCOMPARE(next, lines.size());
    QCOMPARE(together, former);
    for (const QString &line : lines)
        QVERIFY2(line.size() <= 255, qPrintable(line));
}

void TstWriter::saveAction()
{
    const Session session;
    session.load(family() + QStringList{u"0 TRLR"_s});
    const QByteArray former = gedBytes(family());
    QVERIFY(session.isEnabled(u"actionEnregistrerFichier"_s));

    const AnsweredBoxes boxes;
    const AnsweredFileDialogs dialogs{QString()};
    const QDateTime begin = QDateTime::currentDateTime();
    session.trigger(u"actionEnregistrerFichier"_s);
    QCOMPARE(dialogs.count(), 0); // nothing is asked
    QCOMPARE(boxes.texts(), QStringList{});
    const QStringList journal = session.journal();
    const Archived archived = archivedIn(journal, session.path(), begin);
    QCOMPARE(journal, (QStringList{"INFO : Chargement du fichier "_L1 + session.path(),
                                   u"INFO : Chargement de 5 lignes terminé."_s,
                                   u"INFO : Chargement du fichier GED terminé."_s,
                                   u"INFO : 2 entrées trouvées."_s}
                       + journalOfSave(session.path(), archived)));
    QCOMPARE(session.status(), "Fichier journal "_L1 + archived.journal() + u" sauvegardé."_s);
    QVERIFY(session.progress()->isHidden());
    QCOMPARE(listing(session.folder(), archived),
             (QStringList{u"ARCH/"_s, u"ARCH/DATE/"_s, u"ARCH/DATE/TIME.arbre.ged"_s,
                          u"ARCH/DATE/journal.TIME.arbre.ged"_s, u"arbre.ged"_s}));
    QCOMPARE(readText(session.path()), former);
    QCOMPARE(readBytes(archived.copy()), former);
}

void TstWriter::saveAsThenSave()
{
    const Session session;
    session.load(family() + QStringList{u"0 TRLR"_s});
    const QString other = session.path(u"autre.ged"_s);
    QVERIFY(session.isEnabled(u"actionEnregistrerFichier_sous"_s));
    const AnsweredBoxes boxes;
    {
        AnsweredFileDialogs dialogs(other);
        QFileDialog::AcceptMode mode = QFileDialog::AcceptOpen;
        QString name;
        dialogs.setInspector([&](QFileDialog *dialog) {
            mode = dialog->acceptMode();
            name = dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->text();
        });
        session.trigger(u"actionEnregistrerFichier_sous"_s);
        QCOMPARE(dialogs.count(), 1);
        QCOMPARE(dialogs.title(), u"Enregistrer sous"_s);
        QCOMPARE(QDir(dialogs.directory()).canonicalPath(), QDir(session.folder()).canonicalPath());
        QCOMPARE(name, u"arbre.ged"_s);
        QCOMPARE(dialogs.nameFilters(), QStringList{u"Ged (*.ged)"_s});
        QCOMPARE(dialogs.parentWidget(), session.window.get());
        QCOMPARE(dialogs.fileMode(), QFileDialog::AnyFile);
        QCOMPARE(mode, QFileDialog::AcceptSave);
    }
    QCOMPARE(readText(other), gedBytes(family()));
    QVERIFY(session.progress()->isHidden());

    // The document still belongs to the first file.
    writeBytes(other, "autre\n");
    writeBytes(session.path(), "avant\n");
    const QDateTime begin = QDateTime::currentDateTime();
    session.trigger(u"actionEnregistrerFichier"_s);
    QCOMPARE(boxes.texts(), QStringList{});
    QCOMPARE(readText(other), QByteArray("autre\n"));
    QCOMPARE(readText(session.path()), gedBytes(family()));
    const Archived archived = archivedIn(session.journal(), session.path(), begin);
    QCOMPARE(readText(archived.copy()), QByteArray("avant\n"));
}

void TstWriter::cancelledSaveAs()
{
    const Session session;
    session.load(family() + QStringList{u"0 TRLR"_s});
    const qsizetype before = session.journal().size();
    const AnsweredBoxes boxes;
    AnsweredFileDialogs dialogs{QString()};
    const bool wasThere = QFileInfo::exists(u"/ARCH"_s);
    // The save after it goes to the root of the file system.
    std::optional<Unprivileged> unprivileged;
    dialogs.setInspector([&](QFileDialog *) { unprivileged.emplace(); });
    const QDateTime begin = QDateTime::currentDateTime();
    session.trigger(u"actionEnregistrerFichier_sous"_s);
    unprivileged.reset();
    const QStringList journal = session.journal().mid(before);
    const Archived archived = archivedIn(journal, QString(), begin);
    if (!wasThere) {
        QDir().rmdir(archived.folder());
        QDir().rmdir(u"/ARCH"_s);
    }

    QCOMPARE(dialogs.count(), 1);
    QCOMPARE(boxes.titles(), QStringList{u"Erreur d'écriture"_s});
    QCOMPARE(boxes.texts(),
             QStringList{u"Modification non prise en compte, vérifier l'accès au fichier "_s});
    QVERIFY(boxes.allCritical(nullptr));
    QCOMPARE(journal, journalOfCopy(QString(), archived)
                          + QStringList{u"ERROR : Erreur d'écriture du fichier "_s});
    QCOMPARE(session.status(), u"Sauvegarde du fichier "_s);
    QVERIFY(session.progress()->isHidden());
    QCOMPARE(listing(session.folder(), archived), QStringList{u"arbre.ged"_s});
    QCOMPARE(readText(session.path()), gedBytes(family()));
}

VARLUNE_TEST_MAIN(TstWriter)
#include "tst_writer.moc"
