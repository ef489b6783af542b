#include "boxes.h"
#include "currentfolder.h"
#include "document.h"
#include "testmain.h"
#include "window.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString Data = QStringLiteral(TEST_DATA "/");

/// The names of the cases in a folder: each has a sequence file.
QStringList casesOf(const QString &operation)
{
    QStringList names =
        QDir(Data + operation).entryList({u"*.sequence"_s}, QDir::Files, QDir::Name);
    return names.replaceInStrings(u".sequence"_s, QString());
}

/// The folders of the operations, each with its cases.
QStringList operations()
{
    QStringList folders = QDir(Data).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    folders.removeOne(u"exemple"_s); // the sample family, which has its own test
    return folders;
}

/// The contents of all files below a folder, by relative path.
QMap<QString, QByteArray> filesBelow(const QString &folder)
{
    QMap<QString, QByteArray> files;
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        files.insert(QDir(folder).relativeFilePath(path), readBytes(path));
    }
    return files;
}

} // namespace

/// Every operation on whole files, played from the form as a sequence. A case in data/<operation>/:
///
///   cas.avant.ged     the file
///   cas.sequence      what is played
///   cas.apres.ged     the saved file
///   cas.journal.txt   what the sequence adds to the journal, without times; DOSSIER stands for the
///                     folder of the file
///   cas.messages.txt  the texts of the message boxes, if there are any
///   cas.fichiers/     files beside the file, in the current folder; an empty folder "choix" is
///                     there as well
///   cas.copies/       what "choix" contains afterwards
class TstOperations : public QObject
{
    Q_OBJECT

private slots:
    void cases_data();
    void cases();
    void everyFileBelongsToACase();
};

void TstOperations::cases_data()
{
    QTest::addColumn<QString>("path");

    const QStringList folders = operations();
    for (const QString &operation : folders) {
        const QStringList names = casesOf(operation);
        for (const QString &name : names)
            QTest::addRow("%s: %s", qPrintable(operation), qPrintable(name))
                << Data + operation + u'/' + name;
    }
}

void TstOperations::cases()
{
    QFETCH(QString, path);

    const AnsweredBoxes boxes;
    const Session session;
    QMap<QString, QByteArray> files = filesBelow(path + ".fichiers"_L1);
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        QDir().mkpath(QFileInfo(session.path(it.key())).path());
        writeBytes(session.path(it.key()), it.value());
    }
    QVERIFY(QDir().mkdir(session.path(u"choix"_s)));
    const CurrentFolder current(session.folder());

    session.window->show();
    const QByteArray before = readBytes(path + ".avant.ged"_L1);
    writeBytes(session.path(), before);
    session.open(session.path());
    const qsizetype loaded = session.journal().size();
    session.play(readBytes(path + ".sequence"_L1));
    QStringList journal = session.journal().mid(loaded);
    journal.replaceInStrings(session.folder(), u"DOSSIER"_s);

    const QMap<QString, QByteArray> copies = filesBelow(path + ".copies"_L1);
    for (auto it = copies.cbegin(); it != copies.cend(); ++it)
        files.insert("choix/"_L1 + it.key(), it.value());
    files.insert(u"arbre.ged"_s, before);
    const QMap<QString, QByteArray> found = filesBelow(session.folder());
    QCOMPARE(QStringList(found.keys()), QStringList(files.keys()));
    QCOMPARE(found, files);

    session.trigger(u"actionEnregistrerFichier"_s);
    const QString messages = path + ".messages.txt"_L1;
    QCOMPARE(readLines(session.path()), readLines(path + ".apres.ged"_L1));
    QCOMPARE(readText(session.path()), readText(path + ".apres.ged"_L1));
    QCOMPARE(journal, readLines(path + ".journal.txt"_L1));
    QCOMPARE(boxes.texts(), QFile::exists(messages) ? readLines(messages) : QStringList());
}

void TstOperations::everyFileBelongsToACase()
{
    const QStringList folders = operations();
    QVERIFY(!folders.isEmpty());
    for (const QString &operation : folders) {
        QStringList known;
        const QStringList names = casesOf(operation);
        QVERIFY2(!names.isEmpty(), qPrintable(operation));
        for (const QString &name : names) {
            known += {name + ".apres.ged"_L1, name + ".avant.ged"_L1, name + ".journal.txt"_L1,
                      name + ".sequence"_L1};
            for (const QString &extra :
                 {name + ".messages.txt"_L1, name + ".fichiers"_L1, name + ".copies"_L1}) {
                if (QFile::exists(Data + operation + u'/' + extra))
                    known += extra;
            }
        }
        known.sort();
        QStringList found =
            QDir(Data + operation)
                .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        found.sort();
        QCOMPARE(found, known);
    }
}

VARLUNE_TEST_MAIN(TstOperations)
#include "tst_operations.moc"
