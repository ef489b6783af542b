#include "document.h"
#include "testmain.h"

#include <QApplication>
#include <QDate>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int Kills = 20;

/// The lines of a file of 20,000, and a few.
QStringList family()
{
    QStringList lines{u"0 HEAD"_s, u"1 CHAR UTF-8"_s};
    for (int i = 1; i <= 4000; ++i) {
        lines += {u"0 @I%1@ INDI"_s.arg(i), u"1 NAME Zoé %1 /DUPRÉ/"_s.arg(i), u"1 BIRT"_s,
                  u"2 DATE 1850"_s, u"1 NOTE ancien texte de %1"_s.arg(i)};
    }
    return lines;
}

void rework(Gedcom *gedcom)
{
    gedcom->searchAndReplace(u"ancien texte"_s, u"neuf"_s, u"NOTE"_s, true, false);
}

/// The whole of a process that reworks the file and saves it, once it has been told to go on. It
/// makes nothing that would have to be tidied up.
int saveInThisProcess(int argc, char **argv)
{
    QApplication app(argc, argv);
    QTreeWidget tree;
    QProgressBar progress;
    QStatusBar statusBar;
    Gedcom gedcom;
    const QString path = QString::fromLocal8Bit(argv[2]);
    if (!gedcom.genererVectorGed(path, &tree, &progress, &statusBar))
        return 1;
    rework(&gedcom);
    std::puts("ready");
    std::fflush(stdout);
    if (std::getchar() == EOF)
        return 1;
    gedcom.writeGedFile(path);
    return 0;
}

/// A process that has reworked the file and saves it when it is told to.
class Saver : public QProcess
{
public:
    explicit Saver(const QString &path)
    {
        start(QCoreApplication::applicationFilePath(), {u"--save"_s, path});
        while (waitForReadyRead(-1) && !readAllStandardOutput().contains("ready")) {
        }
    }
    void save()
    {
        write("\n");
        waitForBytesWritten(-1);
    }
};

} // namespace

class TstKill : public QObject
{
    Q_OBJECT

private slots:
    void killedSave();
};

void TstKill::killedSave()
{
    Document doc;
    QVERIFY(doc.load(family()));
    const QByteArray before = readBytes(doc.path());
    rework(&doc.gedcom);
    const QByteArray after = (doc.lines() + QStringList{u"0 TRLR\n"_s}).join(u'\n').toUtf8();

    // How long a save takes tells between which moments to draw.
    qint64 duration = 0;
    {
        Saver saver(doc.path());
        QElapsedTimer timer;
        timer.start();
        saver.save();
        QVERIFY(saver.waitForFinished(-1));
        duration = timer.nsecsElapsed() / 1000;
        QCOMPARE(saver.exitCode(), 0);
        QCOMPARE(readText(doc.path()), after);
    }

    const QRegularExpression copyName(uR"(^[0-9.]+arbre\.ged$)"_s);
    QRandomGenerator moments(1); // the same each time, for the same duration
    for (int i = 0; i < Kills; ++i) {
        QVERIFY(QDir(doc.folder() + "/ARCH"_L1).removeRecursively());
        writeBytes(doc.path(), before);
        const qint64 moment = moments.bounded(duration);
        Saver saver(doc.path());
        saver.save();
        QThread::usleep(ulong(moment));
        saver.kill();
        QVERIFY(saver.waitForFinished(-1));

        bool stands = readBytes(doc.path()) == before;
        const QString today =
            doc.folder() + "/ARCH/"_L1 + QDate::currentDate().toString(u"yyyy.MM.dd"_s) + u'/';
        const QStringList copies = doc.archive().filter(copyName);
        for (const QString &copy : copies) {
            // A copy that bears the name is whole.
            QCOMPARE(readBytes(today + copy), before);
            stands = true;
        }
        QVERIFY2(stands, qPrintable(u"killed after %1 µs of %2"_s.arg(moment).arg(duration)));
    }
}

int main(int argc, char **argv)
{
    if (argc == 3 && qstrcmp(argv[1], "--save") == 0)
        return saveInThisProcess(argc, argv);
    return runTest(argc, argv, []() -> QObject * { return new TstKill; });
}

#include "tst_kill.moc"
