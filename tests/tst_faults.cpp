#include "boxes.h"
#include "currentfolder.h"
#include "document.h"
#include "fenjournal.h"
#include "nofiles.h"
#include "smalldisk.h"
#include "testmain.h"
#include "window.h"

#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTest>

#include <filesystem>
#include <memory>
#include <system_error>

using namespace Qt::StringLiterals;

namespace {

const QStringList Family{u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"1 NOTE ancien"_s};
const QStringList Reworked{u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @I1@ INDI"_s, u"1 NOTE neuf"_s};

QByteArray bytesOf(const QStringList &lines)
{
    return (lines + QStringList{u"0 TRLR\n"_s}).join(u'\n').toUtf8();
}

/// The text with DATE and TIME in place of those of a save.
QString undated(QString text)
{
    static const QRegularExpression date(uR"(\d{4}\.\d\d\.\d\d/)"_s);
    static const QRegularExpression time(uR"(\b\d\d\.\d\d\.\d\d\.)"_s);
    return text.replace(date, u"DATE/"_s).replace(time, u"TIME."_s);
}

QStringList undated(QStringList texts)
{
    for (QString &text : texts)
        text = undated(text);
    return texts;
}

/// What a save has left behind.
struct Outcome
{
    explicit Outcome(Document *doc, const QString &path)
    {
        const AnsweredBoxes answered;
        doc->newJournal();
        result = doc->gedcom.writeGedFile(path);
        boxes = undated(answered.texts());
        journal = undated(doc->newJournal());
        status = undated(doc->status());
    }

    bool result = false;
    QStringList boxes;
    QStringList journal;
    QString status;
};

const QString NothingCut = u"INFO : 0 balises > 255 caractères déconcaténées."_s;

/// The journal up to the line of the copy, of a save to the file \p name of \p folder.
QStringList journalOfCopy(const QString &folder, const QString &name)
{
    return {NothingCut,
            u"INFO : Fichier %1/%2 copié sous %1/ARCH/DATE/TIME.%2"_s.arg(folder, name)};
}

void compareSuccess(const Outcome &outcome, const QString &folder, const QString &name)
{
    QCOMPARE(outcome.boxes, QStringList());
    QVERIFY(outcome.result);
    QCOMPARE(outcome.journal,
             journalOfCopy(folder, name)
                 + QStringList{u"INFO : Fichier %1/%2 sauvegardé."_s.arg(folder, name)});
    QCOMPARE(outcome.status,
             u"Fichier journal %1/ARCH/DATE/journal.TIME.%2 sauvegardé."_s.arg(folder, name));
}

void compareLostJournal(const Outcome &outcome, const QString &folder, const QString &name)
{
    const QString journal = "%1/ARCH/DATE/journal.TIME.%2"_L1.arg(folder, name);
    QCOMPARE(
        outcome.boxes,
        QStringList{u"Modification non prise en compte, vérifier l'accès au fichier "_s + journal});
    QVERIFY(!outcome.result);
    const QStringList behind{u"INFO : Fichier %1/%2 sauvegardé."_s.arg(folder, name),
                             u"ERROR : Erreur d'écriture du fichier journal "_s + journal};
    QCOMPARE(outcome.journal, journalOfCopy(folder, name) + behind);
    QCOMPARE(outcome.status, "Sauvegarde du journal "_L1 + journal);
}

/// The files of the archive by their undated names.
QStringList archived(const QString &folder)
{
    const QDir archive(folder + "/ARCH"_L1);
    const QStringList days = archive.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return days.isEmpty() ? QStringList()
                          : undated(QDir(archive.filePath(days.constFirst()))
                                        .entryList(QDir::Files | QDir::Hidden, QDir::Name));
}

/// The bytes of the file of the archive that has this undated name.
QByteArray archivedBytes(const QString &folder, const QString &name)
{
    const QDir archive(folder + "/ARCH"_L1);
    const QDir day(archive.filePath(archive.entryList(QDir::Dirs | QDir::NoDotAndDotDot).value(0)));
    const QStringList files = day.entryList(QDir::Files | QDir::Hidden);
    for (const QString &file : files) {
        if (undated(file) == name)
            return readText(day.filePath(file));
    }
    return {};
}

/// All bytes that there are, several times.
QByteArray binary()
{
    QByteArray bytes;
    for (int i = 0; i < 256; ++i)
        bytes += char(i);
    return bytes.repeated(3);
}

/// What the form holds.
QStringList formOf(const Session &session)
{
    QStringList form;
    const auto fields = session.window->findChildren<QLineEdit *>();
    for (const QLineEdit *field : fields)
        form += field->objectName() + '='_L1 + field->text();
    const auto buttons = session.window->findChildren<QAbstractButton *>();
    for (const QAbstractButton *button : buttons)
        form += button->objectName() + (button->isChecked() ? " on"_L1 : " off"_L1);
    return form;
}

} // namespace

/// What the disk and the files do to the program: the outcome is exact each time, and what the
/// target held before a save stands in the archive wherever that can be made.
class TstFaults : public QObject
{
    Q_OBJECT

private slots:
    void symbolicLink();
    void hardLink();
    void linkToNothing();
    void linkToItself();
    void archiveElsewhere();
    void longNames_data();
    void longNames();
    void noRoom_data();
    void noRoom();
    void fullDisk();
    void binaryParameters();
    void binarySequence();
    void binaryCorrespondences_data();
    void binaryCorrespondences();
    void vanishingFolders_data();
    void vanishingFolders();
};

namespace {

/// Loads the family and reworks it.
void rework(Document *doc)
{
    QVERIFY(doc->load(Family));
    QCOMPARE(doc->gedcom.searchAndReplace(u"ancien"_s, u"neuf"_s, u"NOTE"_s, true, false), 1);
}

} // namespace

void TstFaults::symbolicLink()
{
    SKIP_ON_WINDOWS(NoLinks);
    Document doc;
    rework(&doc);
    const QString real = doc.folder() + "/ailleurs/vrai.ged"_L1;
    QVERIFY(QDir(doc.folder()).mkdir(u"ailleurs"_s));
    writeBytes(real, bytesOf(Family));
    QVERIFY(QFile::link(u"ailleurs/vrai.ged"_s, doc.folder() + "/lien.ged"_L1));

    // It is written through, and what was behind it is archived beside the link.
    compareSuccess(Outcome(&doc, doc.folder() + "/lien.ged"_L1), doc.folder(), u"lien.ged"_s);
    QVERIFY(QFileInfo(doc.folder() + "/lien.ged"_L1).isSymLink());
    QCOMPARE(readText(real), bytesOf(Reworked));
    QCOMPARE(archived(doc.folder()), QStringList({u"TIME.lien.ged"_s, u"journal.TIME.lien.ged"_s}));
    QCOMPARE(archivedBytes(doc.folder(), u"TIME.lien.ged"_s), bytesOf(Family));
    QVERIFY(!QFileInfo::exists(doc.folder() + "/ailleurs/ARCH"_L1));
}

void TstFaults::hardLink()
{
    Document doc;
    rework(&doc);
    const QString other = doc.folder() + "/autre nom.ged"_L1;
    std::error_code error;
    std::filesystem::create_hard_link(QFile(doc.path()).filesystemFileName(),
                                      QFile(other).filesystemFileName(), error);
    QVERIFY2(!error, error.message().c_str());

    // The file stays one with two names; the archive holds another one.
    compareSuccess(Outcome(&doc, doc.path()), doc.folder(), u"arbre.ged"_s);
    QCOMPARE(readText(doc.path()), bytesOf(Reworked));
    QCOMPARE(readText(other), bytesOf(Reworked));
    QCOMPARE(archivedBytes(doc.folder(), u"TIME.arbre.ged"_s), bytesOf(Family));
}

void TstFaults::linkToNothing()
{
    SKIP_ON_WINDOWS(NoLinks);
    Document doc;
    rework(&doc);
    QVERIFY(QFile::link(u"rien.ged"_s, doc.folder() + "/lien.ged"_L1));

    // A new file, as far as the archive can tell.
    compareSuccess(Outcome(&doc, doc.folder() + "/lien.ged"_L1), doc.folder(), u"lien.ged"_s);
    QVERIFY(QFileInfo(doc.folder() + "/lien.ged"_L1).isSymLink());
    QCOMPARE(readText(doc.folder() + "/rien.ged"_L1), bytesOf(Reworked));
    QCOMPARE(archived(doc.folder()), QStringList{u"journal.TIME.lien.ged"_s});
}

void TstFaults::linkToItself()
{
    SKIP_ON_WINDOWS(NoLinks);
    Document doc;
    rework(&doc);
    const QString path = doc.folder() + "/lien.ged"_L1;
    QVERIFY(QFile::link(u"lien.ged"_s, path));

    const Outcome outcome(&doc, path);
    QVERIFY(!outcome.result);
    QCOMPARE(
        outcome.boxes,
        QStringList{u"Modification non prise en compte, vérifier l'accès au fichier "_s + path});
    QCOMPARE(outcome.journal, journalOfCopy(doc.folder(), u"lien.ged"_s)
                                  + QStringList{u"ERROR : Erreur d'écriture du fichier "_s + path});
    QCOMPARE(outcome.status, "Sauvegarde du fichier "_L1 + path);
    QCOMPARE(archived(doc.folder()), QStringList());

    const AnsweredBoxes boxes;
    Document other;
    QVERIFY(!other.gedcom.genererVectorGed(path, &other.tree, &other.progress, &other.statusBar));
    QCOMPARE(boxes.texts(), QStringList{"Impossible d'ouvrir le fichier "_L1 + path});
    QCOMPARE(other.journal().constLast(), u"ERROR : Chargement du fichier impossible."_s);
}

void TstFaults::archiveElsewhere()
{
    SKIP_ON_WINDOWS(NoLinks);
    Document doc;
    rework(&doc);
    QVERIFY(QDir(doc.folder()).mkdir(u"coffre"_s));
    QVERIFY(QFile::link(u"coffre"_s, doc.folder() + "/ARCH"_L1));

    compareSuccess(Outcome(&doc, doc.path()), doc.folder(), u"arbre.ged"_s);
    QVERIFY(QFileInfo(doc.folder() + "/ARCH"_L1).isSymLink());
    QCOMPARE(archivedBytes(doc.folder(), u"TIME.arbre.ged"_s), bytesOf(Family));
}

void TstFaults::longNames_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("copied");
    QTest::addColumn<bool>("journalled");

    // A name may have 255 bytes. The time takes 9, the word in front of it 8.
    QTest::newRow("the journal just fits") << 238 << true << true;
    QTest::newRow("the journal just does not") << 239 << true << false;
    QTest::newRow("244 bytes") << 244 << true << false;
    QTest::newRow("the copy just fits") << 246 << true << false;
    QTest::newRow("the copy just does not") << 247 << false << false;
    QTest::newRow("254 bytes") << 254 << false << false;
    QTest::newRow("255 bytes") << 255 << false << false;
}

void TstFaults::longNames()
{
    SKIP_ON_WINDOWS("Windows limits the characters of a name, not its bytes");
    QFETCH(int, size);
    QFETCH(bool, copied);
    QFETCH(bool, journalled);

    // Half as many characters as bytes, and one more.
    const QString name = u"é"_s.repeated((size - 5) / 2) + (size % 2 ? "x.ged"_L1 : "xx.ged"_L1);
    QString fitted = name;
    while (fitted.toUtf8().size() > size)
        fitted.remove(0, 1);
    QCOMPARE(fitted.toUtf8().size(), size);

    Document doc;
    rework(&doc);
    const QString path = doc.folder() + u'/' + fitted;
    writeBytes(path, bytesOf(Family));
    const Outcome outcome(&doc, path);
    if (journalled)
        compareSuccess(outcome, doc.folder(), fitted);
    else
        compareLostJournal(outcome, doc.folder(), fitted);
    QCOMPARE(readText(path), bytesOf(Reworked));
    QStringList left;
    if (copied)
        left += "TIME."_L1 + fitted;
    if (journalled)
        left += "journal.TIME."_L1 + fitted;
    QCOMPARE(archived(doc.folder()), left);
    if (copied)
        QCOMPARE(archivedBytes(doc.folder(), "TIME."_L1 + fitted), bytesOf(Family));
}

namespace {

/// As many persons as make a file of about 40 bytes for each, with a name of \p length characters.
QStringList persons(int count, int length)
{
    QStringList lines{u"0 HEAD"_s, u"1 CHAR UTF-8"_s};
    for (int i = 1; i <= count; ++i)
        lines += {u"0 @I%1@ INDI"_s.arg(i), u"1 NAME "_s + u"x"_s.repeated(length)};
    return lines;
}

} // namespace

void TstFaults::noRoom_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("limit");
    QTest::addColumn<bool>("copied");

    QTest::newRow("for the new content") << 10 << 20'000 << true;
    QTest::newRow("for the copy either") << 180 << 20'000 << false;
}

void TstFaults::noRoom()
{
    SKIP_ON_WINDOWS("Windows limits no process in the size of its files");
    QFETCH(int, before);
    QFETCH(int, limit);
    QFETCH(bool, copied);

    const QStringList lines = persons(200, 200);
    Document doc;
    QVERIFY(doc.load(lines));
    const QByteArray former = bytesOf(persons(200, before));
    writeBytes(doc.path(), former);
    const auto saved = [&] {
        const FileSizeLimit fileSizeLimit(limit);
        return Outcome(&doc, doc.path());
    };
    // Nobody tells the user: the program looks at the opening of files alone.
    compareSuccess(saved(), doc.folder(), u"arbre.ged"_s);
    QCOMPARE(readText(doc.path()), bytesOf(lines).left(limit));
    QCOMPARE(archived(doc.folder()), (copied ? QStringList{u"TIME.arbre.ged"_s} : QStringList())
                                         + QStringList{u"journal.TIME.arbre.ged"_s});
    if (copied)
        QCOMPARE(archivedBytes(doc.folder(), u"TIME.arbre.ged"_s), former);
    QVERIFY(doc.progress.isHidden());

    // With room again the next save is whole.
    compareSuccess(Outcome(&doc, doc.folder() + "/neuf.ged"_L1), doc.folder(), u"neuf.ged"_s);
    QCOMPARE(readText(doc.folder() + "/neuf.ged"_L1), bytesOf(lines));
}

void TstFaults::fullDisk()
{
    SKIP_ON_WINDOWS("Windows limits no process in the size of its files");
    constexpr int Size = 64 * 1024;
    const QStringList lines = persons(400, 200);
    Document doc;
    QVERIFY(doc.load(lines));
    const QString folder = doc.folder() + "/disque"_L1;
    QVERIFY(QDir().mkdir(folder));
    const SmallDisk disk(folder, Size);
    std::unique_ptr<FileSizeLimit> limit;
    if (!disk.isMounted()) {
        qInfo("a limit stands for the small disk, which cannot be mounted: %s",
              qPrintable(disk.reason()));
        limit = std::make_unique<FileSizeLimit>(Size);
    }
    const QByteArray former = bytesOf(persons(400, 10));
    writeBytes(folder + "/arbre.ged"_L1, former);

    compareSuccess(Outcome(&doc, folder + "/arbre.ged"_L1), folder, u"arbre.ged"_s);
    const QByteArray left = readBytes(folder + "/arbre.ged"_L1);
    QVERIFY(left.size() <= Size);
    QCOMPARE(left, bytesOf(lines).left(left.size()));
    QCOMPARE(archivedBytes(folder, u"TIME.arbre.ged"_s), former);
}

void TstFaults::binaryParameters()
{
    const AnsweredBoxes boxes;
    const QStringList form = formOf(Session());
    QCOMPARE(formOf(Session(binary())), form);
    QCOMPARE(formOf(Session(binary().repeated(2000) + "delTags=true")), form);
    QCOMPARE(boxes.texts(), QStringList());
}

void TstFaults::binarySequence()
{
    const AnsweredBoxes boxes;
    const Session session;
    session.load(Family + QStringList{u"0 TRLR"_s});
    const qsizetype before = session.journal().size();
    session.play(binary());
    // A line ends at each of the three line feeds, and none defines a separator.
    QCOMPARE(boxes.texts(),
             QStringList(4, u"chaine de séparation 'separator' non définie dans la séquence."_s));
    QCOMPARE(session.journal().mid(before), QStringList{u"INFO : 0 balises CONC reconcaténées."_s});
    QCOMPARE(session.journalWindows().size(), 1);
    session.trigger(u"actionEnregistrerFichier"_s);
    QCOMPARE(readText(session.path()), bytesOf(Family));
}

void TstFaults::binaryCorrespondences_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("line");

    QTest::newRow("all bytes") << binary() << u"\0\1\2\3\4\5\6\a\b\t"_s;
    QTest::newRow("picture") << "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\x20"_ba << u"\ufffdPNG"_s;
    QTest::newRow("no line end at all")
        << QByteArray(100'000, '\xFF') << QString(100'000, QChar(0xFFFD));
}

void TstFaults::binaryCorrespondences()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, line);

    Document doc;
    QVERIFY(doc.load(Family));
    doc.newJournal();
    const QString csv = doc.folder() + "/liens.csv"_L1;
    writeBytes(csv, file);
    const AnsweredBoxes boxes;
    QCOMPARE(doc.gedcom.setMediaFileURL({csv}, u",http"_s, true, true, true, false, {}, {}), 0);
    QCOMPARE(boxes.texts(), QStringList{u"Correspondance non détectée dans la ligne "_s + line
                                        + " du fichier "_L1 + csv});
    QCOMPARE(doc.newJournal(),
             QStringList({"INFO : Chargement du fichier de correspondance "_L1 + csv,
                          u"ERROR : Correspondance non détectée dans la ligne "_s + line}));
    QCOMPARE(doc.lines(), Family);
}

void TstFaults::vanishingFolders_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("replaced");

    QTest::newRow("of the media") << u"medias"_s << false;
    QTest::newRow("of the copies") << u"choix"_s << false;
    QTest::newRow("of the media, a file in its place") << u"medias"_s << true;
    QTest::newRow("of the copies, a file in its place") << u"choix"_s << true;
}

void TstFaults::vanishingFolders()
{
    QFETCH(QString, folder);
    QFETCH(bool, replaced);

    Document doc;
    QVERIFY(doc.load({u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s,
                      u"0 @O1@ OBJE"_s, u"1 FILE a.jpg"_s}));
    doc.newJournal();
    const CurrentFolder current(doc.folder());
    QDir().mkdir(u"choix"_s);
    QDir().mkdir(u"medias"_s);
    for (const QString &name : {u"medias/a.jpg"_s, u"medias/b.jpg"_s})
        writeBytes(name, "image");
    writeLines(u"liens.csv"_s, QStringList(100, u"z.jpg,x"_s) + QStringList{u"a.jpg,x"_s});

    // Both were there when the run looked at them.
    const auto vanish = [&] {
        QVERIFY(QDir(folder).removeRecursively());
        if (replaced)
            writeBytes(folder, "x");
    };
    QObject context;
    connect(&doc.progress, &QProgressBar::valueChanged, &context, [&](int value) {
        if (value == 100)
            QMetaObject::invokeMethod(&context, vanish, Qt::QueuedConnection);
    });
    const AnsweredBoxes boxes;
    QCOMPARE(doc.gedcom.setMediaFileURL({u"liens.csv"_s}, u","_s, true, false, false, true,
                                        u"medias"_s, u"choix"_s),
             1);
    // The copies fail unseen.
    QCOMPARE(boxes.texts(), QStringList());
    const QStringList journal = doc.newJournal();
    QCOMPARE(journal.mid(journal.size() - 2),
             QStringList({u"INFO : Copie de 2 objets média dans le dossier choix"_s,
                          u"INFO : Ajout de 1 balises SOUR.WWW"_s}));
    QVERIFY(!QFileInfo(folder).isDir());
    QVERIFY(folder == "choix"_L1 || QDir(u"choix"_s).isEmpty());
    QCOMPARE(doc.lines(),
             QStringList({u"0 HEAD"_s, u"1 CHAR UTF-8"_s, u"0 @S1@ SOUR"_s, u"1 OBJE @O1@"_s,
                          u"1 WWW x"_s, u"0 @O1@ OBJE"_s, u"1 FILE a.jpg"_s}));
}

VARLUNE_TEST_MAIN(TstFaults)
#include "tst_faults.moc"
