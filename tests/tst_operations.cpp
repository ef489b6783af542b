#include "boxes.h"
#include "document.h"
#include "testmain.h"
#include "window.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString Data = QStringLiteral(TEST_DATA "/");

/// The names of the cases of a folder, each of which has a sequence file.
QStringList casesOf(const QString &operation)
{
    QStringList names =
        QDir(Data + operation).entryList({u"*.sequence"_s}, QDir::Files, QDir::Name);
    return names.replaceInStrings(u".sequence"_s, QString());
}

/// The folders of the operations that are played from the form.
QStringList operations()
{
    QStringList folders = QDir(Data).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    folders.removeIf([](const QString &folder) { return casesOf(folder).isEmpty(); });
    return folders;
}

} // namespace

/// Plays whole files: a case is "cas.avant.ged", the "cas.sequence" that is played on it, the
/// "cas.apres.ged" that is saved, and "cas.journal.txt", what the journal has gained by then, less
/// its times. The texts of the messages, where there are any, stand in "cas.messages.txt".
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
    session.window->show();
    writeBytes(session.path(), readBytes(path + ".avant.ged"_L1));
    session.open(session.path());
    const qsizetype loaded = session.journal().size();
    session.play(readBytes(path + ".sequence"_L1));
    const QStringList journal = session.journal().mid(loaded);
    session.trigger(u"actionEnregistrerFichier"_s);

    const QString messages = path + ".messages.txt"_L1;
    QCOMPARE(readLines(session.path()), readLines(path + ".apres.ged"_L1));
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
        for (const QString &name : names) {
            known += {name + ".apres.ged"_L1, name + ".avant.ged"_L1, name + ".journal.txt"_L1,
                      name + ".sequence"_L1};
            if (QFile::exists(Data + operation + u'/' + name + ".messages.txt"_L1))
                known += name + ".messages.txt"_L1;
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
